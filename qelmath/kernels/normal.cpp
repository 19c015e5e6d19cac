// The standard normal distribution for the kernels.
//
// Tails: erfc(t) = Q(1/2, t^2) for t >= 0, the regularised upper incomplete
// gamma function of shape one half (gamma_core), and 1 + P(1/2, t^2) for t < 0.
// The tail away from the centre is the one computed, the other is its
// complement.  erfc is taken as 0 above t = 26.5694, where it falls below
// KERNEL_TINY, so that each tail is exactly 0 beyond |x| = 26.5694 sqrt(2),
// about 37.5748.
//
// Quantiles: the starting value is algorithm AS 111 of Beasley and Springer,
// "The percentage points of the normal distribution", Applied Statistics 26
// (1977) 118-121, a rational function of p - 1/2 in the centre and of
// sqrt(-log p) in the tails, split at |p - 1/2| = 0.42.  It is refined by
// Newton's method on the gamma variable z^2 / 2 of shape one half, whose upper
// tail is the two-sided normal tail 2p; the smaller of the targets 2p and
// 1 - 2p is the one solved.  Within 1e-5 of the centre the quantile is linear,
// z = (1 - 2p) sqrt(pi / 2).
#include "qelmath/kernels/normal.h"

#include "qelmath/kernels/gamma_core.h"
#include "qelmath/kernels/kernel_protocol.h"

#include <cerrno>
#include <cmath>

namespace
{
constexpr double kInvSqrt2Pi = 0.39894228040143265;
constexpr double kSqrtHalfPi = 1.2533141373155003;
constexpr double kErfcZeroAbove = 26.5694;
constexpr double kErfcTwoBelow = -5.625;
constexpr double kErfcOneWithin = 1e-14;
constexpr double kMinQuantileP = 1e-100;
constexpr double kLinearWithin = 1e-5;

// AS 111: coefficients of the central form, |p - 1/2| <= 0.42 ...
constexpr double kSplit = 0.42;
constexpr double kA0 = 2.50662823884;
constexpr double kA1 = -18.61500062529;
constexpr double kA2 = 41.39119773534;
constexpr double kA3 = -25.44106049637;
constexpr double kB1 = -8.47351093090;
constexpr double kB2 = 23.08336743743;
constexpr double kB3 = -21.06224101826;
constexpr double kB4 = 3.13082909833;
// ... and of the tail form in r = sqrt(-log(min(p, 1 - p))).
constexpr double kC0 = -2.78718931138;
constexpr double kC1 = -2.29796479134;
constexpr double kC2 = 4.85014127135;
constexpr double kC3 = 2.32121276858;
constexpr double kD1 = 3.54388924762;
constexpr double kD2 = 1.63706781897;
} // namespace

double normal_density(double x) { return std::exp(-0.5 * x * x) * kInvSqrt2Pi; }

double normal_erfc(double t)
{
    if (t > kErfcZeroAbove)
        return 0.0;
    if (t < kErfcTwoBelow)
        return 2.0;
    if (std::fabs(t) < kErfcOneWithin)
        return 1.0;
    double lower = 0.0, upper = 0.0, density = 0.0;
    gamma_df(t * t, 0.5, &lower, &upper, &density);
    if (t < 0.0)
        return lower + 1.0;
    return upper;
}

void normal_df(double x, double* lower, double* upper)
{
    kernel_enter("normal_df");
    const double root2 = std::sqrt(2.0);
    if (!(x < 0.0))
    {
        *upper = 0.5 * normal_erfc(x / root2);
        *lower = 1.0 - *upper;
    }
    else
    {
        *lower = 0.5 * normal_erfc(-x / root2);
        *upper = 1.0 - *lower;
    }
    if (kernel_error_code >= 2)
    {
        *lower = KERNEL_SENTINEL;
        *upper = KERNEL_SENTINEL;
    }
    kernel_raise("normal_df", 0, 'N');
}

void normal_quantile_estimate(double p, double* out)
{
    if (!(p > 0.0 && p < 1.0))
    {
        *out = -KERNEL_SENTINEL;
        errno = EDOM;
        return;
    }
    errno = 0;
    const double q = p - 0.5;
    if (std::fabs(q) <= kSplit)
    {
        const double r = q * q;
        *out = q * (((kA3 * r + kA2) * r + kA1) * r + kA0) /
               ((((kB4 * r + kB3) * r + kB2) * r + kB1) * r + 1.0);
        return;
    }
    const double r = std::sqrt(-std::log(q > 0.0 ? 1.0 - p : p));
    const double z = (((kC3 * r + kC2) * r + kC1) * r + kC0) / ((kD2 * r + kD1) * r + 1.0);
    *out = q < 0.0 ? -z : z;
}

void normal_upper_quant(double p, double* out)
{
    kernel_enter("normal_upper_quant");
    kernel_clear_diagnostics();
    // A NaN probability is out of range as well.
    if (!(p >= kMinQuantileP) || p > 0.5)
    {
        *out = -KERNEL_SENTINEL;
        kernel_raise("normal_upper_quant", 2, 'F');
        return;
    }
    const double d = 1.0 - (p + p);
    if (d <= kLinearWithin)
    {
        *out = d * kSqrtHalfPi;
    }
    else
    {
        normal_quantile_estimate(p, out);
        *out = std::pow(*out, 2) * 0.5;
        if (p <= 0.25)
            gamma_newton(p + p, 0.5, out, 'U');
        else
            gamma_newton(d, 0.5, out, 'L');
        *out = std::sqrt(*out + *out);
    }
    kernel_raise("normal_upper_quant", 0, 'N');
}

void inv_normal_df(double p, double* out)
{
    kernel_enter("inv_normal_df");
    kernel_clear_diagnostics();
    if (!(p >= kMinQuantileP) || p > 1.0)
    {
        *out = -KERNEL_SENTINEL;
        kernel_raise("inv_normal_df", 2, 'F');
        return;
    }
    if (p < 0.5)
    {
        normal_upper_quant(p, out);
        *out *= -1.0;
    }
    else
    {
        normal_upper_quant(1.0 - p, out);
    }
    kernel_raise("inv_normal_df", 0, 'N');
}
