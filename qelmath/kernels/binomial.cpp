// The binomial distribution: its log mass, both tails and the quantiles.
//
// The log mass is formed from the deviation d = k - n p and the Stirling
// remainders of the three factorials, so that the large terms
// k log(n p / k) and (n - k) log(n (1 - p) / (n - k)) carry no cancellation.
// A tail is the mass at k times a positive series of ratios of neighbouring
// masses, found in length by a forward scan and summed backward from its
// smallest term; the series runs away from the mean, so its terms fall at
// least geometrically.  Left of the mean (m = (n + 1) p) the lower tail is
// computed, right of it the upper, and the other is the complement.  For
// p > 0.5 the problem is reflected, X -> n - X, so that the series always
// works with the smaller success probability.  A tail whose logarithm falls
// below KERNEL_LOG_FLOOR is an exact zero with code 1, decided by the
// geometric bound of the series before it is run where possible.
//
// The quantiles start from the normal approximation with the skewness
// correction of the Cornish-Fisher expansion, k = n p + z sqrt(n p (1 - p))
// - 1/2 + (1 - 2 p)(z^2 - 1)/6, or at an end for a small mean, and walk
// from there by the ratio of neighbouring masses.
#include "qelmath/kernels/binomial.h"

#include "qelmath/kernels/kernel_helpers.h"
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/normal.h"

#include <algorithm>
#include <cmath>

namespace
{
// One more than the largest admissible count: the caps of the series scans.
constexpr double kMaxScan = 94906266.0;
constexpr int kMaxWalkSteps = 40;
constexpr double kSmallMean = 36.0;
const char* const kBinomialDf = "binomial_df";
const char* const kLowerQuant = "binomial_lower_quant";
const char* const kUpperQuant = "binomial_upper_quant";

bool mIsBadQuantArgument(double q, std::uint32_t n, double p)
{
    // Written so that a NaN is rejected as well.
    return n == 0 || static_cast<double>(n) >= kMaxScan || !(p >= 0.0 && p <= 1.0) ||
           !(q >= KERNEL_MIN_P) || q > 0.5;
}

// The normal start of the quantile walks, with its skewness correction.
double mNormalStart(double z, double m, double g, double p)
{
    return std::trunc(z * std::sqrt(m * g) + m - 0.5 + (1.0 - 2.0 * p) * (z * z - 1.0) / 6.0);
}
} // namespace

void binomial_log_pmf(std::uint32_t k, std::uint32_t n, double p, double* out)
{
    const double dk = static_cast<double>(k);
    const double dn = static_cast<double>(n);
    const double m = dn * p;
    const double d = dk - m;
    double A = 0.0;
    if (k != 0)
        A = d >= 0.0 ? -dk * ln_1_plus(d / m) : dk * ln_1_plus(-d / dk);
    double B = 0.0;
    if (k != n)
    {
        const double r = dn - dk;
        B = d >= 0.0 ? r * ln_1_plus(d / r) : -r * ln_1_plus(-d / ((1.0 - p) * dn));
    }
    *out = stirling_rem(dn) - stirling_rem(dk) - stirling_rem(dn - dk) + A + B;
}

int binomial_Ik(std::uint32_t k, std::uint32_t n, double p, double* I)
{
    const double dk = static_cast<double>(k);
    const double dn = static_cast<double>(n);
    const double g = 1.0 - p;
    double t = 1.0;
    double c = 0.0;
    // The factor n - j + 1 reaches 0 at j = n + 1, which ends every series.
    while (c < kMaxScan && t >= KERNEL_SERIES_EPS)
    {
        c += 1.0;
        const double j = dk + c;
        t *= (dn - j + 1.0) * p / (j * g);
    }
    if (t >= KERNEL_SERIES_EPS)
    {
        kernel_terms = 0;
        kernel_raise(kBinomialDf, 4, 'F');
        return 4;
    }
    double r = 0.0;
    for (double j = dk + c; j >= dk + 1.0; j -= 1.0)
        r = ((dn - j + 1.0) * p / (j * g)) * (r + 1.0);
    *I = r;
    kernel_terms = static_cast<std::int32_t>(c);
    kernel_raise(kBinomialDf, 0, 'N');
    return 0;
}

int binomial_Jk(std::uint32_t k, std::uint32_t n, double p, double* J)
{
    const double dk = static_cast<double>(k);
    const double dn = static_cast<double>(n);
    const double g = 1.0 - p;
    double t = 1.0;
    double c = 0.0;
    // The factor j reaches 0 at j = 0, which ends every series.
    while (c < kMaxScan && t >= KERNEL_SERIES_EPS)
    {
        const double j = dk - c;
        t *= g * j / ((dn - j + 1.0) * p);
        c += 1.0;
    }
    if (t >= KERNEL_SERIES_EPS)
    {
        kernel_terms = 0;
        kernel_raise(kBinomialDf, 4, 'F');
        return 4;
    }
    double r = 1.0;
    for (double j = dk - c + 1.0; j <= dk; j += 1.0)
        r = r * (g * j / ((dn - j + 1.0) * p)) + 1.0;
    *J = r;
    kernel_terms = static_cast<std::int32_t>(c);
    kernel_raise(kBinomialDf, 0, 'N');
    return 0;
}

void binomial_df(std::uint32_t k, std::uint32_t n, double p, double* lower, double* upper,
                 double* mass)
{
    kernel_enter(kBinomialDf);
    kernel_clear_diagnostics();
    int route = 100;

    if (static_cast<double>(n) >= kMaxScan || k > n || !(p >= 0.0 && p <= 1.0))
    {
        kernel_raise(kBinomialDf, 2, 'F');
        return;
    }
    if (n == 0 || p == 0.0 || p == 1.0)
    {
        if (n == 0)
        {
            *mass = 1.0;
            *lower = 1.0;
            *upper = 0.0;
            route = 1;
        }
        else if (p == 0.0)
        {
            *lower = 1.0;
            *upper = 0.0;
            *mass = k == 0 ? 1.0 : 0.0;
            route = 2;
        }
        else
        {
            *lower = k == n ? 1.0 : 0.0;
            *mass = *lower;
            *upper = 1.0 - *lower;
            route = 3;
        }
        kernel_method_code = route;
        kernel_terms = 0;
        kernel_raise(kBinomialDf, 0, 'F');
        return;
    }

    double L;
    binomial_log_pmf(k, n, p, &L);
    *mass = L >= KERNEL_LOG_FLOOR ? std::exp(L) : 0.0;
    if (k == n)
    {
        *lower = 1.0;
        *upper = 0.0;
        kernel_method_code = 4;
        kernel_raise(kBinomialDf, 0, 'F');
        return;
    }

    // The reflected problem, X -> n - X, keeps the success probability at or
    // below one half; its lower tail is the upper tail asked for.
    double* pLower = lower;
    double* pUpper = upper;
    double pp = p;
    std::uint32_t kk = k;
    double mk = *mass;
    if (p > 0.5)
    {
        route += 100;
        pp = 1.0 - p;
        kk = n - k - 1;
        const double r = (1.0 - pp) * (static_cast<double>(n) - k) / ((k + 1.0) * pp);
        L += std::log(r);
        // A mass below the floor (stored as 0) may have a reflected neighbour
        // above it, r being as large as n; that one is formed from its log.
        mk = *mass > 0.0 ? mk * r : (L >= KERNEL_LOG_FLOOR ? std::exp(L) : 0.0);
        std::swap(pLower, pUpper);
    }

    const double dk = static_cast<double>(kk);
    const double dn = static_cast<double>(n);
    const double m = (dn + 1.0) * pp;
    if (m - 1.0 >= dk)
    {
        double J = 1.0;
        if (L >= KERNEL_LOG_FLOOR)
        {
            if (binomial_Jk(kk, n, pp, &J) != 0)
                return;
            *pLower = mk * J;
            *pUpper = 1.0 - *pLower;
            kernel_method_code = route + 10;
            kernel_raise(kBinomialDf, 0, 'F');
            return;
        }
        // J <= 1 / (1 - k (1 - p) / (p (n - k + 1))).
        const double bound = 1.0 / (1.0 - dk * (1.0 - pp) / (pp * (dn - dk + 1.0)));
        if (std::log(bound) + L < KERNEL_LOG_FLOOR)
        {
            *pLower = 0.0;
            *pUpper = 1.0;
            kernel_method_code = route + 11;
            kernel_raise(kBinomialDf, 1, 'F');
            return;
        }
        if (binomial_Jk(kk, n, pp, &J) != 0)
            return;
        const double lnLower = std::log(J) + L;
        if (lnLower >= KERNEL_LOG_FLOOR)
        {
            *pLower = std::exp(lnLower);
            *pUpper = 1.0 - *pLower;
            kernel_method_code = route + 13;
            kernel_raise(kBinomialDf, 0, 'F');
            return;
        }
        *pLower = 0.0;
        *pUpper = 1.0;
        kernel_method_code = route + 12;
        kernel_raise(kBinomialDf, 1, 'F');
        return;
    }

    double I = 0.0;
    if (L >= KERNEL_LOG_FLOOR)
    {
        if (binomial_Ik(kk, n, pp, &I) != 0)
            return;
        *pUpper = mk * I;
        *pLower = 1.0 - *pUpper;
        kernel_method_code = route + 20;
        kernel_raise(kBinomialDf, 0, 'F');
        return;
    }
    // I <= r / (1 - r) with r = (n - k) p / ((1 - p)(k + 1)).
    const double r = (dn - dk) * pp / ((1.0 - pp) * (dk + 1.0));
    if (std::log(r / (1.0 - r)) + L < KERNEL_LOG_FLOOR)
    {
        *pUpper = 0.0;
        *pLower = 1.0;
        kernel_method_code = route + 21;
        kernel_raise(kBinomialDf, 1, 'F');
        return;
    }
    if (binomial_Ik(kk, n, pp, &I) != 0)
        return;
    const double lnUpper = std::log(I) + L;
    if (lnUpper >= KERNEL_LOG_FLOOR)
    {
        *pUpper = std::exp(lnUpper);
        *pLower = 1.0 - *pUpper;
        kernel_method_code = route + 23;
        kernel_raise(kBinomialDf, 0, 'F');
        return;
    }
    *pUpper = 0.0;
    *pLower = 1.0;
    kernel_method_code = route + 22;
    kernel_raise(kBinomialDf, 1, 'F');
}

void binomial_lower_quant(double q, std::uint32_t n, double p, std::uint32_t* k, double* frac)
{
    kernel_enter(kLowerQuant);
    kernel_clear_diagnostics();
    if (mIsBadQuantArgument(q, n, p))
    {
        *k = 94906265u;
        kernel_raise(kLowerQuant, 2, 'F');
        return;
    }
    if (p == 0.0 || p == 1.0)
    {
        *k = p == 0.0 ? 0u : n;
        *frac = q;
        kernel_method_code = p == 0.0 ? 1 : 2;
        kernel_raise(kLowerQuant, 0, 'F');
        return;
    }
    if (p > 0.5)
    {
        std::uint32_t kMirror = 0;
        binomial_upper_quant(q, n, 1.0 - p, &kMirror, frac);
        // On a failure of the mirror the outputs stay as they were.
        if (kernel_error_code < 2)
            *k = n - kMirror;
        kernel_raise(kLowerQuant, 0, 'N');
        return;
    }

    const double dn = static_cast<double>(n);
    const double m = dn * p;
    const double g = 1.0 - p;
    double lower = 0.0, upper = 0.0, mass = 0.0;
    // count: the candidate k; below: P(X <= count - 1); mass: P(X = count).
    double count = 0.0;
    double below = 0.0;
    if (m > kSmallMean)
    {
        double z = 0.0;
        normal_upper_quant(q, &z);
        z = -z;
        count = std::min(mNormalStart(z, m, g, p), dn);
    }
    if (count >= 1.0)
    {
        double massPrev = 0.0;
        binomial_df(static_cast<std::uint32_t>(count - 1.0), n, p, &lower, &upper, &massPrev);
        if (kernel_error_code >= 2)
        {
            kernel_raise(kLowerQuant, 4, 'F');
            return;
        }
        below = lower;
        mass = massPrev * (dn - count + 1.0) * p / (count * g);
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
        binomial_df(0, n, p, &lower, &upper, &mass);
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
        mass *= (dn - count + 1.0) * p / (count * g);
        ++steps;
    }
    if (mass < q - below)
    {
        kernel_raise(kLowerQuant, 4, 'F');
        return;
    }
    *k = static_cast<std::uint32_t>(count);
    *frac = (q - below) / mass;
    kernel_terms = steps + 1;
    kernel_method_code = 3;
    kernel_raise(kLowerQuant, 0, 'N');
}

void binomial_upper_quant(double q, std::uint32_t n, double p, std::uint32_t* k, double* frac)
{
    kernel_enter(kUpperQuant);
    kernel_clear_diagnostics();
    if (mIsBadQuantArgument(q, n, p))
    {
        *k = 94906265u;
        kernel_raise(kUpperQuant, 2, 'F');
        return;
    }
    if (p == 0.0 || p == 1.0)
    {
        *k = p == 0.0 ? 0u : n;
        *frac = q;
        kernel_method_code = p == 0.0 ? 1 : 2;
        kernel_raise(kUpperQuant, 0, 'F');
        return;
    }
    if (p > 0.5)
    {
        std::uint32_t kMirror = 0;
        binomial_lower_quant(q, n, 1.0 - p, &kMirror, frac);
        if (kernel_error_code < 2)
            *k = n - kMirror;
        kernel_raise(kUpperQuant, 0, 'N');
        return;
    }

    const double dn = static_cast<double>(n);
    const double m = dn * p;
    const double g = 1.0 - p;
    double count;
    if (m < 0.001)
    {
        // A shorter ladder than the Poisson one, on purpose.
        count = 3.0;
    }
    else
    {
        double z = 0.0;
        normal_upper_quant(q, &z);
        count = mNormalStart(z, m, g, p) + 2.0;
    }
    count = std::max(0.0, std::min(count, dn));

    double lower = 0.0, above = 0.0, mass = 0.0;
    binomial_df(static_cast<std::uint32_t>(count), n, p, &lower, &above, &mass);
    if (kernel_error_code >= 2 || q - above < 0.0)
    {
        kernel_raise(kUpperQuant, 4, 'F');
        return;
    }
    int steps = 0;
    while (steps < kMaxWalkSteps && mass <= q - above)
    {
        above += mass;
        mass *= count * g / ((dn - count + 1.0) * p);
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
    kernel_method_code = 4;
    kernel_raise(kUpperQuant, 0, 'N');
}
