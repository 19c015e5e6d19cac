// The Poisson kernels: log of the probability mass, both tails with the mass,
// and the two quantiles.
//
// The mass is formed in logarithms from Stirling's remainder, so that no
// factorial and no power is ever evaluated.  The tail on the far side of the
// mean is the one summed, as a multiple of the mass:
//     P(X > k)  = P(X = k) I,  I = sum over j >= 1 of lambda^j / ((k+1)...(k+j)),
//     P(X <= k) = P(X = k) J,  J = 1 + k/lambda + k(k-1)/lambda^2 + ...,
// each series found in length by a forward scan to a term of 1e-9 and then
// summed backward from its smallest term.  The other tail is the complement.
// Where a geometric bound on the series shows that the tail falls below
// KERNEL_LOG_FLOOR, the series is not run and the tail is an exact 0 (code 1).
//
// The quantiles start at the count given by the normal approximation with the
// first Cornish-Fisher correction for skewness, k ~ lambda + sqrt(lambda) z
// + (z^2 - 1)/6 - 1/2, or at 0 for small means, and walk to the exact count by
// the recurrence of the mass.
#include "qelmath/kernels/poisson.h"

#include "qelmath/kernels/kernel_helpers.h"
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/normal.h"

#include <cerrno>
#include <cmath>

namespace
{
const char* const kPoissonDf = "poisson_df";
const char* const kPoissonIk = "poisson_Ik";
const char* const kPoissonJk = "poisson_Jk";
const char* const kPoissonLowerQuant = "poisson_lower_quant";
const char* const kPoissonUpperQuant = "poisson_upper_quant";

// One more than the largest admissible count: the caps of the series scans.
constexpr double kMaxScan = 94906266.0;
constexpr int kMaxWalkSteps = 40;
// Largest mean whose quantile walk starts at the count 0.
constexpr double kSmallMean = 36.0;

bool mIsBadQuantArgument(double p, double lambda)
{
    // Written so that a NaN is rejected as well.
    return !(lambda >= 0.0) || lambda > KERNEL_MAX_PARAM || !(p >= KERNEL_MIN_P) || p > 0.5;
}

// k = trunc(sqrt(lambda) z + lambda - 1/2 + (z^2 - 1)/6), the normal start of
// the quantile walks.
double mNormalStart(double z, double lambda)
{
    return std::trunc(std::sqrt(lambda) * z + lambda - 0.5 + (z * z - 1.0) / 6.0);
}
} // namespace

void poisson_log_pmf(double k, double lambda, double* out)
{
    if (!(k >= 0.0) || !(lambda >= 0.0))
    {
        errno = 33;
        *out = -KERNEL_SENTINEL;
        return;
    }
    if (k == 0.0)
    {
        *out = -lambda;
        return;
    }
    // No mass at a positive count when the mean is 0: the log is minus the
    // largest double, far below the floor.
    if (lambda == 0.0)
    {
        *out = -KERNEL_SENTINEL;
        return;
    }
    // log(lambda^k e^-lambda / k!) with m = k + 1: d (m - 1) + m - lambda
    // - stirling_rem(m), written so that d = log(lambda / m) carries no
    // cancellation when lambda and m are close.
    const double m = k + 1.0;
    const double d = lambda > 1.0 ? ln_1_plus((lambda - m) / m) : std::log(lambda) - std::log(m);
    *out = d * m + (m - lambda) - stirling_rem(m) - d;
}

int poisson_Ik(std::uint32_t k, double lambda, double* I)
{
    const double dk = static_cast<double>(k);
    double t = 1.0;
    double n = 0.0;
    // Written so that a term that is not a number runs to the cap and fails.
    while (n < kMaxScan && !(t < KERNEL_SERIES_EPS))
    {
        n += 1.0;
        t *= lambda / (n + dk);
    }
    if (!(t < KERNEL_SERIES_EPS))
    {
        kernel_terms = 0;
        kernel_raise(kPoissonIk, 4, 'F');
        return 4;
    }
    double r = 0.0;
    for (double m = n + dk; m >= dk + 1.0; m -= 1.0)
        r = (lambda / m) * (r + 1.0);
    *I = r;
    kernel_terms = static_cast<std::int32_t>(n);
    kernel_raise(kPoissonIk, 0, 'N');
    return 0;
}

int poisson_Jk(std::uint32_t k, double lambda, double* J)
{
    const double dk = static_cast<double>(k);
    double t = 1.0;
    double n = 0.0;
    // The factor k - n reaches 0 at n = k, which ends every finite series.
    while (n < kMaxScan && !(t < KERNEL_SERIES_EPS))
    {
        t *= (dk - n) / lambda;
        n += 1.0;
    }
    if (!(t < KERNEL_SERIES_EPS))
    {
        kernel_terms = 0;
        kernel_raise(kPoissonJk, 4, 'F');
        return 4;
    }
    double r = 1.0;
    for (double m = dk - n + 1.0; m <= dk; m += 1.0)
        r = r * m / lambda + 1.0;
    *J = r;
    kernel_terms = static_cast<std::int32_t>(n);
    kernel_raise(kPoissonJk, 0, 'N');
    return 0;
}

void poisson_df(std::uint32_t k, double lambda, double* lower, double* upper, double* mass)
{
    kernel_enter(kPoissonDf);
    kernel_clear_diagnostics();

    const double dk = static_cast<double>(k);
    if (!(lambda >= 0.0) || lambda > KERNEL_MAX_PARAM || dk > KERNEL_MAX_PARAM)
    {
        kernel_raise(kPoissonDf, 2, 'F');
        return;
    }
    if (lambda == 0.0)
    {
        *lower = 1.0;
        *upper = 0.0;
        *mass = k == 0 ? 1.0 : 0.0;
        kernel_method_code = 1;
        kernel_raise(kPoissonDf, 0, 'F');
        return;
    }

    double L;
    poisson_log_pmf(dk, lambda, &L);
    *mass = L >= KERNEL_LOG_FLOOR ? std::exp(L) : 0.0;

    if (dk > lambda - 1.0)
    {
        double I = 0.0;
        if (L >= KERNEL_LOG_FLOOR)
        {
            kernel_method_code = 20;
            if (poisson_Ik(k, lambda, &I) != 0)
                return;
            *upper = *mass * I;
            *lower = 1.0 - *upper;
            kernel_raise(kPoissonDf, 0, 'F');
            return;
        }
        // The terms of I are at most r^j, so I <= r / (1 - r).
        const double r = lambda / (dk + 1.0);
        if (std::log(r / (1.0 - r)) + L < KERNEL_LOG_FLOOR)
        {
            *upper = 0.0;
            *lower = 1.0;
            kernel_method_code = 21;
            kernel_raise(kPoissonDf, 1, 'F');
            return;
        }
        if (poisson_Ik(k, lambda, &I) != 0)
            return;
        const double lnUpper = std::log(I) + L;
        if (lnUpper >= KERNEL_LOG_FLOOR)
        {
            *upper = std::exp(lnUpper);
            *lower = 1.0 - *upper;
            kernel_method_code = 23;
            kernel_raise(kPoissonDf, 0, 'F');
            return;
        }
        *upper = 0.0;
        *lower = 1.0;
        kernel_method_code = 22;
        kernel_raise(kPoissonDf, 1, 'F');
        return;
    }

    double J = 1.0;
    if (L >= KERNEL_LOG_FLOOR)
    {
        kernel_method_code = 10;
        if (poisson_Jk(k, lambda, &J) != 0)
            return;
        *lower = *mass * J;
        *upper = 1.0 - *lower;
        kernel_raise(kPoissonDf, 0, 'F');
        return;
    }
    // The terms of J are at most (k / lambda)^j, so J <= 1 / (1 - k / lambda).
    if (L - std::log(1.0 - dk / lambda) < KERNEL_LOG_FLOOR)
    {
        *lower = 0.0;
        *upper = 1.0;
        kernel_method_code = 11;
        kernel_raise(kPoissonDf, 1, 'F');
        return;
    }
    if (poisson_Jk(k, lambda, &J) != 0)
        return;
    const double lnLower = std::log(J) + L;
    if (lnLower >= KERNEL_LOG_FLOOR)
    {
        *lower = std::exp(lnLower);
        *upper = 1.0 - *lower;
        kernel_method_code = 13;
        kernel_raise(kPoissonDf, 0, 'F');
        return;
    }
    *lower = 0.0;
    *upper = 1.0;
    kernel_method_code = 12;
    kernel_raise(kPoissonDf, 1, 'F');
}

void poisson_lower_quant(double p, double lambda, std::uint32_t* k, double* frac)
{
    kernel_enter(kPoissonLowerQuant);
    kernel_clear_diagnostics();
    if (mIsBadQuantArgument(p, lambda))
    {
        kernel_raise(kPoissonLowerQuant, 2, 'F');
        return;
    }

    // count: the candidate k; below: P(X <= count - 1); mass: P(X = count).
    double count = 0.0;
    double below = 0.0;
    double mass = std::exp(-lambda);
    if (lambda > kSmallMean)
    {
        double z = 0.0;
        normal_upper_quant(p, &z);
        z = -z;
        count = mNormalStart(z, lambda);
        // For lambda > 36 and p >= 1e-12 the start is at least 1; the guard
        // keeps the count meaningful whatever the arithmetic gives.
        if (count >= 1.0)
        {
            double lowerPrev = 0.0, upperPrev = 0.0, massPrev = 0.0;
            poisson_df(static_cast<std::uint32_t>(count - 1.0), lambda, &lowerPrev, &upperPrev,
                       &massPrev);
            if (kernel_error_code >= 2)
            {
                kernel_raise(kPoissonLowerQuant, 4, 'F');
                return;
            }
            below = lowerPrev;
            mass = massPrev * lambda / count;
        }
        else
        {
            count = 0.0;
        }
        if (p - below < 0.0)
        {
            kernel_raise(kPoissonLowerQuant, 4, 'F');
            return;
        }
    }

    int steps = 0;
    while (steps < kMaxWalkSteps && mass <= p - below)
    {
        count += 1.0;
        below += mass;
        mass *= lambda / count;
        ++steps;
    }
    if (mass < p - below)
    {
        kernel_raise(kPoissonLowerQuant, 4, 'F');
        return;
    }
    *k = static_cast<std::uint32_t>(count);
    *frac = (p - below) / mass;
    kernel_terms = steps + 1;
    kernel_raise(kPoissonLowerQuant, 0, 'N');
}

void poisson_upper_quant(double p, double lambda, std::uint32_t* k, double* frac)
{
    kernel_enter(kPoissonUpperQuant);
    kernel_clear_diagnostics();
    if (mIsBadQuantArgument(p, lambda))
    {
        kernel_raise(kPoissonUpperQuant, 2, 'F');
        return;
    }

    double count;
    if (lambda <= 5e-13)
        count = 0.0;
    else if (lambda <= 1e-6)
        count = 1.0;
    else if (lambda <= 0.001)
        count = 3.0;
    else
    {
        double z = 0.0;
        normal_upper_quant(p, &z);
        count = mNormalStart(z, lambda) + 2.0;
        // z >= 0 keeps the start at 2 or more; the guard is for the
        // arithmetic alone.
        if (count < 0.0)
            count = 0.0;
    }

    // above: P(X > count); mass: P(X = count).
    double above = 0.0, lowerTail = 0.0, mass = 0.0;
    poisson_df(static_cast<std::uint32_t>(count), lambda, &lowerTail, &above, &mass);
    if (kernel_error_code >= 2 || p - above < 0.0)
    {
        kernel_raise(kPoissonUpperQuant, 4, 'F');
        return;
    }

    int steps = 0;
    while (steps < kMaxWalkSteps && mass <= p - above)
    {
        above += mass;
        mass *= count / lambda;
        count -= 1.0;
        ++steps;
    }
    if (mass < p - above || count < 0.0)
    {
        kernel_raise(kPoissonUpperQuant, 4, 'F');
        return;
    }
    *k = static_cast<std::uint32_t>(count);
    *frac = (p - above) / mass;
    kernel_terms = steps + 1;
    kernel_raise(kPoissonUpperQuant, 0, 'N');
}
