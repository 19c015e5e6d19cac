// The hypergeometric distribution: its log mass, both tails and the
// quantiles.
//
// The log mass is written as the Stirling remainders of the nine factorials
// plus, for each of the four cells of the 2 x 2 table (k, n - k, M - k,
// N - M - n + k), the term c log(e / c) with e the cell's expected count.
// Each of these is c log(1 + x) with x the deviation d = k N - n M over a
// cell product, taken by ln_1_plus on the side where x is positive, so that
// the large terms cancel before they are formed (the saddle-point form of
// Loader, "Fast and accurate computation of binomial probabilities", 2000).
// A tail is the mass at k times a positive series of ratios of neighbouring
// masses, found in length by a forward scan and summed backward from its
// smallest term.  Left of the centre (M + 1)(n + 1)/(N + 2) - 1 the lower
// tail is computed, right of it the upper, and the other is the complement,
// so the series runs away from the mode and its terms fall.  A tail whose
// logarithm falls below KERNEL_LOG_FLOOR is an exact zero with code 1,
// decided by the geometric bound of the series before it is run where
// possible.
//
// The distribution is symmetric under three reflections: X -> n - X counts
// the failures drawn (M -> N - M), X -> M - X the successes left behind
// (n -> N - n), and both together.  They bring every problem to M and n at
// most N / 2, where the series are shortest.
//
// The quantiles start from the normal approximation with the skewness
// correction of the Cornish-Fisher expansion, k = n a + z s - 1/2
// + (z^2 - 1)(1 - 2a)(1 - 2b)/6 with a = M/N, b = n/N and
// s^2 = N a (1 - a) b (1 - b), or at an end for a small mean, and walk from
// there by the ratio of neighbouring masses.
#include "qelmath/kernels/hypergeo.h"

#include "qelmath/kernels/kernel_helpers.h"
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/normal.h"

#include <algorithm>
#include <cmath>

namespace
{
// One more than the largest admissible population.
constexpr std::uint32_t kMaxPopulation = 94906266u;
// Longest series scan; far below the caps of the binomial and Poisson
// kernels, as the hypergeometric series never needs more than a few
// standard deviations of a population below 94906266.
constexpr double kMaxTerms = 100000.0;
constexpr int kMaxWalkSteps = 40;
constexpr double kSmallMean = 36.0;
const char* const kHypergeoDf = "hypergeo_df";
const char* const kHyperIk = "hyper_Ik";
const char* const kHyperJk = "hyper_Jk";
const char* const kLowerQuant = "hypergeo_lower_quant";
const char* const kUpperQuant = "hypergeo_upper_quant";

// c log(e / c) for a cell with count c, expected count e = eN / N and
// c N - eN = dev, with the argument of ln_1_plus kept positive.
double mCellTerm(double c, double eN, double dev, double dN)
{
    if (c == 0.0)
        return 0.0;
    return dev >= 0.0 ? -c * ln_1_plus(dev / eN) : c * ln_1_plus(-dev / (c * dN));
}

// P(X = j) / P(X = j - 1).
double mUpRatio(double j, double dN, double dM, double dn)
{
    return (dn - j + 1.0) * (dM - j + 1.0) / (j * (dN - dM - dn + j));
}

// P(X = j - 1) / P(X = j).
double mDownRatio(double j, double dN, double dM, double dn)
{
    return j * (dN - dM - dn + j) / ((dn - j + 1.0) * (dM - j + 1.0));
}

bool mIsBadQuantArgument(double q, std::uint32_t N, std::uint32_t M, std::uint32_t n)
{
    // Written so that a NaN is rejected as well.
    return N < 2u || N >= kMaxPopulation || M == 0u || M >= N || n == 0u || n >= N ||
           !(q >= KERNEL_MIN_P) || q > 0.5;
}

// The normal start of the quantile walks, with its skewness correction.
double mNormalStart(double z, double dN, double dM, double dn)
{
    const double a = dM / dN;
    const double b = dn / dN;
    const double m = dn * a;
    const double s = std::sqrt((1.0 - a) * dN * a * b * (1.0 - b));
    return std::trunc(z * s + m - 0.5 + (z * z - 1.0) * (1.0 - 2.0 * a) * (1.0 - 2.0 * b) / 6.0);
}
} // namespace

void hypergeo_log_pmf(std::uint32_t k, std::uint32_t N, std::uint32_t M, std::uint32_t n,
                      double* out)
{
    const double dk = static_cast<double>(k);
    const double dN = static_cast<double>(N);
    const double dM = static_cast<double>(M);
    const double dn = static_cast<double>(n);
    // Products of counts below 94906266 stay below 2^53 and are exact.
    const double d = dk * dN - dn * dM;
    const double c2 = dn - dk;
    const double c3 = dM - dk;
    const double c4 = dN - dM - dn + dk;
    const double A = mCellTerm(dk, dn * dM, d, dN);
    const double B = mCellTerm(c2, dn * (dN - dM), -d, dN);
    const double C = mCellTerm(c3, dM * (dN - dn), -d, dN);
    const double D = mCellTerm(c4, (dN - dM) * (dN - dn), d, dN);
    *out = stirling_rem(dN - dM) + stirling_rem(dM) + stirling_rem(dn) + stirling_rem(dN - dn) -
           stirling_rem(dk) - stirling_rem(c2) - stirling_rem(c3) - stirling_rem(c4) -
           stirling_rem(dN) + A + B + C + D;
}

int hyper_Ik(std::uint32_t k, std::uint32_t N, std::uint32_t M, std::uint32_t n, double* I)
{
    const double dk = static_cast<double>(k);
    const double dN = static_cast<double>(N);
    const double dM = static_cast<double>(M);
    const double dn = static_cast<double>(n);
    double t = 1.0;
    double c = 0.0;
    // The factor reaches 0 one past the top of the support, which ends the scan.
    while (t >= KERNEL_SERIES_EPS && c <= kMaxTerms)
    {
        c += 1.0;
        t *= mUpRatio(dk + c, dN, dM, dn);
    }
    if (c > kMaxTerms)
    {
        kernel_terms = 0;
        kernel_raise(kHyperIk, 4, 'F');
        return 4;
    }
    double r = 0.0;
    for (double j = dk + c; j >= dk + 1.0; j -= 1.0)
        r = mUpRatio(j, dN, dM, dn) * (r + 1.0);
    *I = r;
    kernel_terms = static_cast<std::int32_t>(c);
    kernel_raise(kHyperIk, 0, 'N');
    return 0;
}

int hyper_Jk(std::uint32_t k, std::uint32_t N, std::uint32_t M, std::uint32_t n, double* J)
{
    const double dk = static_cast<double>(k);
    const double dN = static_cast<double>(N);
    const double dM = static_cast<double>(M);
    const double dn = static_cast<double>(n);
    double t = 1.0;
    double c = 0.0;
    // The factor reaches 0 at the bottom of the support, which ends the scan.
    while (t >= KERNEL_SERIES_EPS && c <= kMaxTerms)
    {
        t *= mDownRatio(dk - c, dN, dM, dn);
        c += 1.0;
    }
    if (c > kMaxTerms)
    {
        kernel_terms = 0;
        kernel_raise(kHyperJk, 4, 'F');
        return 4;
    }
    double r = 1.0;
    for (double j = dk - c + 1.0; j <= dk; j += 1.0)
        r = r * mDownRatio(j, dN, dM, dn) + 1.0;
    *J = r;
    kernel_terms = static_cast<std::int32_t>(c);
    kernel_raise(kHyperJk, 0, 'N');
    return 0;
}

void hypergeo_core(std::uint32_t k, std::uint32_t N, std::uint32_t M, std::uint32_t n,
                   double* lower, double* upper, double* mass)
{
    const std::uint32_t top = std::min(M, n);
    if (k > top)
    {
        *mass = 0.0;
        *upper = 0.0;
        *lower = 1.0;
        kernel_method_code += 5;
        kernel_raise(kHypergeoDf, 0, 'F');
        return;
    }
    double L;
    hypergeo_log_pmf(k, N, M, n, &L);
    *mass = L >= KERNEL_LOG_FLOOR ? std::exp(L) : 0.0;
    if (k == top)
    {
        *lower = 1.0;
        *upper = 0.0;
        kernel_method_code += 6;
        kernel_raise(kHypergeoDf, 0, 'F');
        return;
    }

    const double dk = static_cast<double>(k);
    const double dN = static_cast<double>(N);
    const double dM = static_cast<double>(M);
    const double dn = static_cast<double>(n);
    const double rest = dN - dM - dn + dk;
    if ((dM + 1.0) * (dn + 1.0) / (dN + 2.0) - 1.0 >= dk)
    {
        double J = 1.0;
        if (L >= KERNEL_LOG_FLOOR)
        {
            if (hyper_Jk(k, N, M, n, &J) != 0)
            {
                kernel_raise(kHypergeoDf, 4, 'N');
                return;
            }
            *lower = *mass * J;
            *upper = 1.0 - *lower;
            kernel_method_code += 10;
            kernel_raise(kHypergeoDf, 0, 'F');
            return;
        }
        // J <= 1 / (1 - P(X = k - 1) / P(X = k)), the ratios falling leftward.
        if (L - std::log(1.0 - dk * rest / ((dM - dk + 1.0) * (dn - dk + 1.0))) < KERNEL_LOG_FLOOR)
        {
            *lower = 0.0;
            *upper = 1.0;
            kernel_method_code += 11;
            kernel_raise(kHypergeoDf, 1, 'F');
            return;
        }
        if (hyper_Jk(k, N, M, n, &J) != 0)
        {
            kernel_raise(kHypergeoDf, 4, 'N');
            return;
        }
        const double lnLower = std::log(J) + L;
        if (lnLower >= KERNEL_LOG_FLOOR)
        {
            *lower = std::exp(lnLower);
            *upper = 1.0 - *lower;
            kernel_method_code += 13;
            kernel_raise(kHypergeoDf, 0, 'F');
            return;
        }
        *lower = 0.0;
        *upper = 1.0;
        kernel_method_code += 12;
        kernel_raise(kHypergeoDf, 1, 'F');
        return;
    }

    double I = 0.0;
    if (L >= KERNEL_LOG_FLOOR)
    {
        if (hyper_Ik(k, N, M, n, &I) != 0)
        {
            kernel_raise(kHypergeoDf, 4, 'N');
            return;
        }
        *upper = *mass * I;
        *lower = 1.0 - *upper;
        kernel_method_code += 20;
        kernel_raise(kHypergeoDf, 0, 'F');
        return;
    }
    // I <= r / (1 - r) with r = P(X = k + 1) / P(X = k), the ratios falling
    // rightward.
    const double r = (dM - dk) * (dn - dk) / ((rest + 1.0) * (dk + 1.0));
    if (std::log(r / (1.0 - r)) + L < KERNEL_LOG_FLOOR)
    {
        *upper = 0.0;
        *lower = 1.0;
        kernel_method_code += 21;
        kernel_raise(kHypergeoDf, 1, 'F');
        return;
    }
    if (hyper_Ik(k, N, M, n, &I) != 0)
    {
        kernel_raise(kHypergeoDf, 4, 'N');
        return;
    }
    const double lnUpper = std::log(I) + L;
    if (lnUpper >= KERNEL_LOG_FLOOR)
    {
        *upper = std::exp(lnUpper);
        *lower = 1.0 - *upper;
        kernel_method_code += 23;
        kernel_raise(kHypergeoDf, 0, 'F');
        return;
    }
    *upper = 0.0;
    *lower = 1.0;
    kernel_method_code += 22;
    kernel_raise(kHypergeoDf, 1, 'F');
}

void hypergeo_df(std::uint32_t k, std::uint32_t N, std::uint32_t M, std::uint32_t n, double* lower,
                 double* upper, double* mass)
{
    kernel_enter(kHypergeoDf);
    kernel_clear_diagnostics();

    // Written so that no difference of unsigned counts can wrap.
    if (N < 2u || N >= kMaxPopulation || M > N || n > N || k > n || k > M || n - k > N - M)
    {
        kernel_raise(kHypergeoDf, 2, 'F');
        return;
    }

    // Certain outcomes.  With the arguments legal, n = N forces k = M and
    // M = N forces k = n; the other rows are kept for completeness.
    int trivial = 0;
    bool certain = true;
    if (n == 0u)
        trivial = 1;
    else if (n == N)
    {
        trivial = 2;
        certain = k == M;
    }
    else if (M == 0u)
        trivial = 3;
    else if (M == N)
    {
        trivial = 4;
        certain = k == n;
    }
    if (trivial != 0)
    {
        *mass = certain ? 1.0 : 0.0;
        *lower = *mass;
        *upper = 1.0 - *lower;
        kernel_method_code = trivial;
        kernel_raise(kHypergeoDf, 0, 'F');
        return;
    }

    const bool smallM = 2.0 * static_cast<double>(M) <= static_cast<double>(N);
    const bool smallN = 2.0 * static_cast<double>(n) <= static_cast<double>(N);
    bool stepBack = false;
    if (k == std::min(M, n) || (smallM && smallN))
    {
        kernel_method_code = 100;
        hypergeo_core(k, N, M, n, lower, upper, mass);
    }
    else if (smallN)
    {
        // n - X: the failures drawn; its lower tail at n - k - 1 is P(X > k).
        kernel_method_code = 200;
        stepBack = true;
        hypergeo_core(n - k - 1u, N, N - M, n, upper, lower, mass);
    }
    else if (smallM)
    {
        // M - X: the successes left behind, by the symmetry of M and n.
        kernel_method_code = 300;
        stepBack = true;
        hypergeo_core(M - k - 1u, N, N - n, M, upper, lower, mass);
    }
    else
    {
        kernel_method_code = 400;
        hypergeo_core(k + N - M - n, N, N - n, N - M, lower, upper, mass);
    }
    if (stepBack && *mass > 0.0)
    {
        // The reflected core gave P(X = k + 1); step back to k.
        const double dk = static_cast<double>(k);
        const double dN = static_cast<double>(N);
        const double dM = static_cast<double>(M);
        const double dn = static_cast<double>(n);
        *mass *= (dk - dM - dn + dN + 1.0) * (dk + 1.0) / ((dM - dk) * (dn - dk));
    }
    kernel_raise(kHypergeoDf, 0, 'N');
}

void hypergeo_lower_quant(double q, std::uint32_t N, std::uint32_t M, std::uint32_t n,
                          std::uint32_t* k, double* frac)
{
    kernel_enter(kLowerQuant);
    kernel_clear_diagnostics();
    if (mIsBadQuantArgument(q, N, M, n))
    {
        *k = 94906265u;
        kernel_raise(kLowerQuant, 2, 'F');
        return;
    }
    const bool largeM = M > N - M;
    const bool largeN = n > N - n;
    if (largeM || largeN)
    {
        std::uint32_t kMirror = 0;
        if (largeM && !largeN)
            hypergeo_upper_quant(q, N, N - M, n, &kMirror, frac);
        else if (largeM)
            hypergeo_lower_quant(q, N, N - M, N - n, &kMirror, frac);
        else
            hypergeo_upper_quant(q, N, M, N - n, &kMirror, frac);
        // On a failure of the mirror the count stays as it was.
        if (kernel_error_code < 2)
        {
            if (largeM && !largeN)
                *k = n - kMirror;
            else if (largeM)
                *k = kMirror + (M + n - N);
            else
                *k = M - kMirror;
        }
        kernel_raise(kLowerQuant, 0, 'N');
        return;
    }

    const double dN = static_cast<double>(N);
    const double dM = static_cast<double>(M);
    const double dn = static_cast<double>(n);
    const double top = std::min(dM, dn);
    const double m = dn * dM / dN;
    double lower = 0.0, upper = 0.0, mass = 0.0;
    // count: the candidate k; below: P(X <= count - 1); mass: P(X = count).
    double count = 0.0;
    double below = 0.0;
    if (m > kSmallMean)
    {
        double z = 0.0;
        normal_upper_quant(q, &z);
        count = std::min(mNormalStart(-z, dN, dM, dn), top);
    }
    if (count >= 1.0)
    {
        double massPrev = 0.0;
        hypergeo_df(static_cast<std::uint32_t>(count - 1.0), N, M, n, &lower, &upper, &massPrev);
        if (kernel_error_code >= 2)
        {
            kernel_raise(kLowerQuant, 4, 'F');
            return;
        }
        below = lower;
        mass =
            massPrev * (dM - count + 1.0) * (dn - count + 1.0) / ((count - dM - dn + dN) * count);
        if (q - below < 0.0)
        {
            kernel_raise(kLowerQuant, 4, 'F');
            return;
        }
    }
    else
    {
        // A small mean, or a normal start at or below 0: the walk starts at 0.
        count = 0.0;
        hypergeo_df(0u, N, M, n, &lower, &upper, &mass);
        if (kernel_error_code >= 2)
        {
            kernel_raise(kLowerQuant, 4, 'F');
            return;
        }
    }

    int steps = 0;
    while (steps < kMaxWalkSteps && mass <= q - below)
    {
        count += 1.0;
        below += mass;
        mass *= (dM - count + 1.0) * (dn - count + 1.0) / ((count - dM - dn + dN) * count);
        ++steps;
    }
    if (mass < q - below || count > top)
    {
        kernel_raise(kLowerQuant, 4, 'F');
        return;
    }
    *k = static_cast<std::uint32_t>(count);
    *frac = (q - below) / mass;
    kernel_terms = steps + 1;
    kernel_method_code = 1;
    kernel_raise(kLowerQuant, 0, 'N');
}

void hypergeo_upper_quant(double q, std::uint32_t N, std::uint32_t M, std::uint32_t n,
                          std::uint32_t* k, double* frac)
{
    kernel_enter(kUpperQuant);
    kernel_clear_diagnostics();
    if (mIsBadQuantArgument(q, N, M, n))
    {
        *k = 94906265u;
        kernel_raise(kUpperQuant, 2, 'F');
        return;
    }
    const bool largeM = M > N - M;
    const bool largeN = n > N - n;
    if (largeM || largeN)
    {
        std::uint32_t kMirror = 0;
        if (largeM && !largeN)
            hypergeo_lower_quant(q, N, N - M, n, &kMirror, frac);
        else if (largeM)
            hypergeo_upper_quant(q, N, N - M, N - n, &kMirror, frac);
        else
            hypergeo_lower_quant(q, N, M, N - n, &kMirror, frac);
        if (kernel_error_code < 2)
        {
            if (largeM && !largeN)
                *k = n - kMirror;
            else if (largeM)
                *k = kMirror + (M + n - N);
            else
                *k = M - kMirror;
        }
        kernel_raise(kUpperQuant, 0, 'N');
        return;
    }

    const double dN = static_cast<double>(N);
    const double dM = static_cast<double>(M);
    const double dn = static_cast<double>(n);
    const double top = std::min(dM, dn);
    const double m = dn * dM / dN;
    double count;
    if (m < 0.001)
    {
        count = std::min(3.0, top);
    }
    else
    {
        double z = 0.0;
        normal_upper_quant(q, &z);
        count = std::min(mNormalStart(z, dN, dM, dn) + 2.0, top);
    }
    count = std::max(0.0, count);

    double lower = 0.0, above = 0.0, mass = 0.0;
    hypergeo_df(static_cast<std::uint32_t>(count), N, M, n, &lower, &above, &mass);
    if (kernel_error_code >= 2 || q - above < 0.0)
    {
        kernel_raise(kUpperQuant, 4, 'F');
        return;
    }
    int steps = 0;
    while (steps < kMaxWalkSteps && mass <= q - above)
    {
        above += mass;
        mass *= count * (count - dM - dn + dN) / ((dM - count + 1.0) * (dn - count + 1.0));
        count -= 1.0;
        ++steps;
    }
    if (mass < q - above || count < 0.0)
    {
        kernel_raise(kUpperQuant, 4, 'F');
        return;
    }
    *k = static_cast<std::uint32_t>(count);
    *frac = (q - above) / mass;
    kernel_terms = steps + 1;
    kernel_method_code = 2;
    kernel_raise(kUpperQuant, 0, 'N');
}
