// The noncentral gamma distribution function and the quantiles of the central
// gamma distribution.
//
// Noncentral gamma.  With T(j) = Pois(j; delta) G(j), G the lower or upper
// tail of the gamma distribution of shape a + j at x, the tail is the sum of
// the T(j) over j >= 0, the Poisson mixture behind Ding's noncentral
// chi-square (Applied Statistics AS 275).  The sum is taken outward from its
// largest term, after Benton and Krishnamoorthy (Computational Statistics and
// Data Analysis 43, 2003): a Poisson quantile at 5e-10 fixes the index beyond which the weights do not count, the ratio of each
// gamma tail to its density (the series I and J of the incomplete gamma core)
// is carried by a two-term recurrence from there toward the peak while the
// ratios T(j)/T(j-1) are accumulated, so that no term is formed before the
// peak is known, and the peak term itself is formed in logarithms.  From the
// peak the sum moves away until the remaining geometric tail is below 5e-10 of
// the sum.  The tail on the far side of the mean a + delta is summed first; if
// that sum passes 0.9 the other side is summed and complemented, so that no
// tail is taken from 1 minus a small quantity of the wrong side.
//
// Quantiles.  Above shape 1 the start is the Cornish-Fisher expansion of the
// gamma quantile in the normal quantile z (Cornish and Fisher 1937; Johnson,
// Kotz and Balakrishnan, Continuous Univariate Distributions, vol. 1, ch. 17),
//     x = a + sqrt(a) z + (z^2 - 1)/3 + (z^2 - 7) z / (36 sqrt(a))
//         - ((3 z^2 + 7) z^2 - 16) / (810 a),
// refined by Newton's method up to shape 10000 and returned as it stands
// above; between 1 and 10 the lower quantile starts at the mode a - 1.  At or
// below shape 1 the start comes from the leading term of the lower tail,
// P(a, x) ~ x^a / Gamma(a + 1).
#include "qelmath/kernels/gamma.h"

#include "qelmath/kernels/gamma_core.h"
#include "qelmath/kernels/kernel_helpers.h"
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/normal.h"
#include "qelmath/kernels/poisson.h"

#include <cmath>

namespace
{
const char* const kGammaNcdf = "gamma_ncdf";
const char* const kGammaUpperQuant = "gamma_upper_quant";
const char* const kGammaLowerQuant = "gamma_lower_quant";

// Poisson tail beyond which the weights of the mixture are dropped, and the
// relative size of the remaining geometric tail at which a sum stops.
constexpr double kWeightCut = 5e-10;
// Share of the sum at which the opposite side is summed instead.
constexpr double kSwitchShare = 0.9;
// Bound on the index of the ascending sum.
constexpr double kMaxIndex = 1e8;
// Bound on a + delta + 6.1738 sqrt(delta) for the mixture to be attempted.
constexpr double kSpreadFactor = 6.1738;
// Largest shape whose Cornish-Fisher start is refined by Newton's method.
constexpr double kLargestRefinedShape = 10000.0;
// Shapes below which the quantiles are 0: 1e-12 / 662.34472 for the upper
// quantile, log 2 / 662.34472 for the lower.
constexpr double kUpperNegligibleShape = 1.5097878337431298e-15;
constexpr double kLowerNegligibleShape = 0.001046505180202758;

bool mIsBadQuantArgument(double p, double a)
{
    // Written so that a NaN is rejected as well; the bound on a is strict.
    return !(p >= KERNEL_MIN_P) || p > 0.5 || !(a > 0.0) || a >= KERNEL_MAX_PARAM;
}

double mCornishFisher(double a, double z)
{
    const double rootA = std::sqrt(a);
    const double z2 = z * z;
    return a + rootA * z + (z2 - 1.0) / 3.0 + (z2 - 7.0) * z / (36.0 * rootA) -
           ((3.0 * z2 + 7.0) * z2 - 16.0) / (810.0 * a);
}

// Sum of the mixture of lower tails P(a + j, x).  Adds its number to route.
double mLowerSum(double x, double a, double delta, int& route)
{
    std::uint32_t k = 0;
    double frac = 0.0;
    poisson_upper_quant(kWeightCut, delta, &k, &frac);
    if (kernel_error_code >= 2)
    {
        kernel_terms = 0;
        route += 11;
        kernel_method_code = route;
        kernel_raise(kGammaNcdf, 4, 'F');
        return -1.0;
    }
    const double dk = static_cast<double>(k);

    double I = 0.0;
    if (gamma_Iax(a + dk + 1.0, x, &I) != 0)
    {
        route += 11;
        kernel_method_code = route;
        kernel_raise(kGammaNcdf, 4, 'F');
        return -1.0;
    }

    // t: P / density at the current shape a + j; S: sum over i > j of
    // T(i) / T(j) once the peak j is found.
    double t = (x / (a + dk + 1.0)) * I;
    double S = 0.0;
    double j = dk;
    bool bPeak = false;
    for (; j >= 1.0; j -= 1.0)
    {
        t = (t + 1.0) * x / (a + j);
        const double rho = (delta / j) * t / (t + 1.0);
        if (rho >= 1.0)
        {
            bPeak = true;
            break;
        }
        S = (S + 1.0) * rho;
    }

    double logTail;
    if (bPeak || a >= KERNEL_TINY)
    {
        if (!bPeak)
        {
            j = 0.0;
            t = (t + 1.0) * x / a;
        }
        double logWeight, logDensity;
        gamma_log_pdf(1.0 + j, delta, &logWeight);
        gamma_log_pdf(j + a, x, &logDensity);
        logTail = logWeight + logDensity;
        if (logTail + std::log(t) < KERNEL_LOG_FLOOR)
        {
            kernel_terms_a = static_cast<std::int32_t>(j);
            kernel_terms_b = static_cast<std::int32_t>(j);
            kernel_terms = static_cast<std::int32_t>(k);
            route += 12;
            kernel_method_code = route;
            kernel_raise(kGammaNcdf, 1, 'F');
            return 0.0;
        }
    }
    else
    {
        // Shape 0 (or below KERNEL_TINY) at the peak j = 0: the distribution
        // of shape 0 is a point mass at 0, its lower tail at x > 0 is 1, and
        // T(0) = e^-delta.  The ratio t is infinite there and is not used.
        j = 0.0;
        t = 1.0;
        logTail = -delta;
        if (logTail < KERNEL_LOG_FLOOR)
        {
            kernel_terms_a = 0;
            kernel_terms_b = 0;
            kernel_terms = static_cast<std::int32_t>(k);
            route += 12;
            kernel_method_code = route;
            kernel_raise(kGammaNcdf, 1, 'F');
            return 0.0;
        }
    }
    kernel_terms_a = static_cast<std::int32_t>(j);

    // The whole logarithm is exponentiated: exp(logTail) alone can underflow
    // when the ratio t is very large, although the term itself is not small.
    double T = std::exp(logTail + std::log(t));
    double sum = T * (1.0 + S);
    if (sum > kSwitchShare)
    {
        route = 100;
        kernel_method_code = route;
        return sum;
    }

    // Down from the peak: T(j - 1) / T(j) = (j / delta)(1 + 1 / t).
    while (j > 0.0)
    {
        const double rho = (j / delta) * (1.0 + 1.0 / t);
        T *= rho;
        sum += T;
        if (sum > kSwitchShare)
        {
            route = 100;
            kernel_method_code = route;
            return sum;
        }
        // A negative quotient (rho above 1) ends the sum as well.
        if (T / (1.0 - rho) / sum < kWeightCut)
            break;
        j -= 1.0;
        if (j == 0.0)
            break;
        t = x / (a + j) * (t + 1.0);
    }
    kernel_terms_b = j > 0.0 ? static_cast<std::int32_t>(j - 1.0) : 0;
    kernel_terms = static_cast<std::int32_t>(k);
    route += 13;
    kernel_method_code = route;
    kernel_raise(kGammaNcdf, 0, 'F');
    return sum;
}

// Sum of the mixture of upper tails Q(a + j, x).  Adds its number to route.
double mUpperSum(double x, double a, double delta, int& route)
{
    std::uint32_t k = 0;
    double frac = 0.0;
    poisson_lower_quant(kWeightCut, delta, &k, &frac);
    if (kernel_error_code >= 2)
    {
        kernel_terms = 0;
        route += 21;
        kernel_method_code = route;
        kernel_raise(kGammaNcdf, 4, 'F');
        return -1.0;
    }
    const double dk = static_cast<double>(k);

    double J = 0.0;
    if (gamma_Jax(a + dk, x, &J) != 0)
    {
        kernel_terms = 0;
        route += 21;
        kernel_method_code = route;
        kernel_raise(kGammaNcdf, 4, 'F');
        return -1.0;
    }

    // J: Q / density at the shape a + j; S: sum over i < j of T(i) / T(j).
    double S = 0.0;
    double j = dk;
    double rho = 0.0;
    while (j < kMaxIndex)
    {
        const double u = (a + j) / x;
        const double J2 = J * u + 1.0;
        rho = u * ((j + 1.0) / delta) * J / J2;
        S = (S + 1.0) * rho;
        J = J2;
        j += 1.0;
        if (rho >= 1.0)
            break;
    }
    if (rho < 1.0)
    {
        kernel_terms_a = static_cast<std::int32_t>(j);
        kernel_terms_b = static_cast<std::int32_t>(j);
        kernel_terms = static_cast<std::int32_t>(k);
        route += 22;
        kernel_method_code = route;
        kernel_raise(kGammaNcdf, 4, 'F');
        return -2.0;
    }
    kernel_terms_a = static_cast<std::int32_t>(j);

    double logWeight, logDensity;
    gamma_log_pdf(1.0 + j, delta, &logWeight);
    gamma_log_pdf(j + a, x, &logDensity);
    const double logPeak = logWeight + logDensity + std::log(J);
    if (logPeak < KERNEL_LOG_FLOOR)
    {
        kernel_terms_b = static_cast<std::int32_t>(j);
        kernel_terms = static_cast<std::int32_t>(k);
        route += 23;
        kernel_method_code = route;
        kernel_raise(kGammaNcdf, 1, 'F');
        return 0.0;
    }

    // As in the lower sum, the whole logarithm is exponentiated: J can be
    // near the largest double while the density underflows.
    double T = std::exp(logPeak);
    double sum = T * (1.0 + S);
    if (sum > kSwitchShare)
    {
        route = 100;
        kernel_method_code = route;
        return sum;
    }

    // Up from the peak: T(j + 1) / T(j) = (1 / w + 1) delta / (j + 1).
    while (true)
    {
        const double w = ((j + a) / x) * J;
        const double r = (1.0 / w + 1.0) * delta / (j + 1.0);
        T *= r;
        sum += T;
        if (sum > kSwitchShare)
        {
            route = 100;
            kernel_method_code = route;
            return sum;
        }
        if (T / (1.0 - r) / sum < kWeightCut)
            break;
        J = w + 1.0;
        j += 1.0;
        if (j >= kMaxIndex)
            break;
    }
    kernel_terms_b = static_cast<std::int32_t>(j);
    kernel_terms = static_cast<std::int32_t>(k);
    route += 24;
    kernel_method_code = route;
    kernel_raise(kGammaNcdf, 0, 'F');
    return sum;
}
} // namespace

void gamma_ncdf(double x, double a, double delta, double* lower, double* upper)
{
    kernel_enter(kGammaNcdf);
    kernel_clear_diagnostics();

    if (!(a >= 0.0) || !(x >= 0.0) || a > KERNEL_MAX_PARAM || !(delta >= 0.0))
    {
        kernel_raise(kGammaNcdf, 2, 'F');
        return;
    }
    if (a + delta + kSpreadFactor * std::sqrt(delta) > KERNEL_MAX_PARAM)
    {
        kernel_raise(kGammaNcdf, 3, 'F');
        return;
    }
    // A noncentrality below KERNEL_TINY, the smallest argument treated as
    // nonzero, is 0: the weights of j >= 1 are below it as well.
    if (delta < KERNEL_TINY)
    {
        double density = 0.0;
        gamma_df(x, a, lower, upper, &density);
        kernel_raise(kGammaNcdf, 0, 'N');
        return;
    }

    kernel_enter(kGammaNcdf);
    // Below KERNEL_TINY the point is 0, as in gamma_df.
    if (x < KERNEL_TINY)
    {
        *lower = 0.0;
        *upper = 1.0;
        kernel_method_code = 1;
        kernel_raise(kGammaNcdf, 0, 'F');
        return;
    }
    if (x > KERNEL_MAX_X)
    {
        *lower = 1.0;
        *upper = 0.0;
        kernel_method_code = 2;
        kernel_raise(kGammaNcdf, 0, 'F');
        return;
    }

    // A negative sum (failed series) passes through the arithmetic; the code
    // 4 it left is what the caller reads.
    int route = 0;
    if (x > a + delta)
    {
        const double sum = mUpperSum(x, a, delta, route);
        if (sum <= kSwitchShare)
        {
            *upper = sum;
            *lower = 1.0 - sum;
        }
        else
        {
            *lower = mLowerSum(x, a, delta, route);
            *upper = 1.0 - *lower;
        }
    }
    else
    {
        const double sum = mLowerSum(x, a, delta, route);
        if (sum <= kSwitchShare)
        {
            *lower = sum;
            *upper = 1.0 - sum;
        }
        else
        {
            *upper = mUpperSum(x, a, delta, route);
            *lower = 1.0 - *upper;
        }
    }
    kernel_raise(kGammaNcdf, 0, 'N');
}

void gamma_upper_quant(double p, double a, double* x)
{
    kernel_enter(kGammaUpperQuant);
    kernel_clear_diagnostics();
    if (mIsBadQuantArgument(p, a))
    {
        *x = -KERNEL_SENTINEL;
        kernel_raise(kGammaUpperQuant, 2, 'F');
        return;
    }
    if (a < kUpperNegligibleShape)
    {
        *x = 0.0;
        kernel_method_code = 0;
        kernel_raise(kGammaUpperQuant, 1, 'N');
        return;
    }

    if (a > 1.0)
    {
        double z = 0.0;
        normal_upper_quant(p, &z);
        *x = mCornishFisher(a, z);
        kernel_method_code = 5;
        if (a <= kLargestRefinedShape)
        {
            gamma_newton(p, a, x, 'U');
            kernel_method_code = 6;
        }
    }
    else
    {
        double lowerAtOne = 0.0, upperAtOne = 0.0, density = 0.0;
        gamma_df(1.0, a, &lowerAtOne, &upperAtOne, &density);
        if (p <= upperAtOne)
        {
            *x = 1.0;
            gamma_newton(p, a, x, 'U');
            kernel_method_code = 1;
        }
        else
        {
            // Deliberately log(2 - Gamma(a + 1)), not log Gamma(a + 1).
            const double v = ln_1_plus(-p) - ln_1_plus(a * gamma_one_minus(a));
            const double logX = v / a;
            if (logX < KERNEL_LOG_FLOOR)
            {
                *x = 0.0;
                kernel_method_code = 2;
                kernel_raise(kGammaUpperQuant, 1, 'N');
                return;
            }
            *x = std::exp(logX);
            if (*x >= KERNEL_SERIES_EPS)
            {
                gamma_newton(p, a, x, 'U');
                kernel_method_code = 4;
            }
            else
            {
                kernel_method_code = 3;
            }
        }
    }
    kernel_raise(kGammaUpperQuant, 0, 'N');
}

void gamma_lower_quant(double p, double a, double* x)
{
    kernel_enter(kGammaLowerQuant);
    kernel_clear_diagnostics();
    if (mIsBadQuantArgument(p, a))
    {
        *x = -KERNEL_SENTINEL;
        kernel_raise(kGammaLowerQuant, 2, 'F');
        return;
    }
    if (a < kLowerNegligibleShape)
    {
        *x = 0.0;
        kernel_method_code = 0;
        kernel_raise(kGammaLowerQuant, 1, 'N');
        return;
    }

    if (a > 10.0)
    {
        double z = 0.0;
        normal_upper_quant(p, &z);
        *x = mCornishFisher(a, -z);
        kernel_method_code = 5;
        if (a <= kLargestRefinedShape)
        {
            gamma_newton(p, a, x, 'L');
            kernel_method_code = 6;
        }
    }
    else if (a > 1.0)
    {
        *x = a - 1.0;
        gamma_newton(p, a, x, 'L');
        kernel_method_code = 4;
    }
    else
    {
        // log x = (log p + log Gamma(a + 1)) / a, from P(a, x) ~ x^a / Gamma(a + 1).
        const double v = std::log(p) + ln_1_plus(-a * gamma_one_minus(a));
        const double logX = v / a;
        if (logX < KERNEL_LOG_FLOOR)
        {
            *x = 0.0;
            kernel_method_code = 1;
            kernel_raise(kGammaLowerQuant, 1, 'N');
            return;
        }
        *x = std::exp(logX);
        if (*x >= KERNEL_SERIES_EPS)
        {
            gamma_newton(p, a, x, 'L');
            kernel_method_code = 3;
        }
        else
        {
            kernel_method_code = 2;
        }
    }
    kernel_raise(kGammaLowerQuant, 0, 'N');
}
