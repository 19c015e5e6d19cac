// Numeric helpers of the distribution kernels.
//
// The gamma function and its logarithm follow Stirling's series: an argument
// below 10 is raised by one at a time to 10 (Gamma(x) = Gamma(x + n) / (x (x+1)
// ... (x+n-1))), and from there log Gamma(x) = (x - 1/2) log x - x +
// log sqrt(2 pi) + c(x), with the correction c(x) summed from the first seven
// Bernoulli terms 1/12, -1/360, 1/1260, -1/1680, 1/1188, -691/360360, 1/156 in
// powers of 1/x^2, over x.  At x >= 10 the first omitted term is below 3e-17.
//
// Small arguments are kept out of cancellation by short Taylor polynomials:
// nine terms for exp(x) - 1 and log(1 + x) at |x| <= 0.01 (truncation below
// 1e-22 relative), the Maclaurin series of log Gamma(1 + x) for the Stirling
// remainder and of Gamma(1 + x) for (1 - Gamma(1 + x)) / x.
#include "qelmath/kernels/kernel_helpers.h"

#include "qelmath/kernels/kernel_protocol.h"

#include <cerrno>
#include <cmath>

static_assert(EDOM == 33 && ERANGE == 34, "the kernels record domain errors as 33, overflow as 34");

namespace
{
constexpr double kE = 2.718281828459045;
constexpr double kTwoPi = 6.283185307179586;
constexpr double kLn2Pi = 1.8378770664093453;
constexpr double kMachineEps = 2.220446049250313e-16;
constexpr double kStirlingStart = 10.0;

// Sum of the seven Bernoulli terms of Stirling's series, over x.
double mStirlingCorrection(double x)
{
    const double y = 1.0 / (x * x);
    const double s =
        1.0 / 12.0 +
        y * (-1.0 / 360.0 +
             y * (1.0 / 1260.0 +
                  y * (-1.0 / 1680.0 +
                       y * (1.0 / 1188.0 + y * (-691.0 / 360360.0 + y * (1.0 / 156.0))))));
    return s / x;
}
} // namespace

double expm1_guarded(double x)
{
    if (!(x >= KERNEL_LOG_FLOOR && x <= KERNEL_LOG_CEILING))
    {
        errno = EDOM;
        return -KERNEL_SENTINEL;
    }
    errno = 0;
    if (std::fabs(x) > 0.01)
        return std::exp(x) - 1.0;
    double v = 0.0;
    for (int k = 9; k >= 1; --k)
        v = (v + 1.0) * x / k;
    return v;
}

double ln_1_plus(double x)
{
    if (x <= -1.0)
    {
        errno = EDOM;
        return -KERNEL_SENTINEL;
    }
    if (std::fabs(x) > 0.01)
        return std::log(1.0 + x);
    double r = 0.0;
    for (int k = 9; k >= 1; --k)
        r = (1.0 / k - r) * x;
    return r;
}

double gamma_fn(double x)
{
    if (x <= 0.0)
    {
        errno = EDOM;
        return 0.0;
    }
    if (x < kMachineEps)
        return 1.0 / x;
    double factor = 1.0;
    while (x < kStirlingStart)
    {
        factor /= x;
        x += 1.0;
    }
    const double c = mStirlingCorrection(x);
    const double lg = x * std::log(x) - x + 0.5 * std::log(kTwoPi / x) + c + std::log(factor);
    if (lg > KERNEL_LOG_CEILING)
    {
        errno = ERANGE;
        return KERNEL_SENTINEL;
    }
    // (x/e)^x alone overflows before the whole product does; take it in halves.
    const double half = std::pow(x / kE, 0.5 * x);
    return half * (std::sqrt(kTwoPi / x) * std::exp(c) * factor) * half;
}

double ln_gamma(double x)
{
    if (x <= 0.0)
    {
        errno = EDOM;
        return -KERNEL_SENTINEL;
    }
    double product = 1.0;
    while (x < kStirlingStart)
    {
        product *= x;
        x += 1.0;
    }
    return (x - 0.5) * std::log(x) - x + 0.5 * kLn2Pi + mStirlingCorrection(x) -
           std::log(product);
}

double stirling_rem(double x)
{
    if (x < 0.0)
    {
        errno = EDOM;
        return KERNEL_SENTINEL;
    }
    if (x == 0.0)
        return 0.0;
    if (x <= 1e-5)
        return x * (0.42278433509846713 - std::log(x)) + 0.8224670334241132 * x * x;
    if (x <= 9.0)
        return ln_gamma(x + 1.0) - std::log(std::pow(x / kE, x));
    return 0.5 * std::log(kTwoPi * x) + mStirlingCorrection(x);
}

double gamma_one_minus(double x)
{
    if (!(x >= 0.0 && x <= 1.0))
    {
        errno = EDOM;
        return KERNEL_SENTINEL;
    }
    if (x <= 0.0001)
        return 0.5772156649015329 - 0.5 * x * 1.978111990655945 -
               (x * x / 6.0) * (-5.4448744564853175);
    return (1.0 - gamma_fn(1.0 + x)) / x;
}

void gamma_log_pdf(double a, double x, double* out)
{
    // d = log(x / a), by the form that does not cancel for x near a.
    double d;
    if ((x < 1.0 && a > 1.0) || (x > 1.0 && a < 1.0))
        d = std::log(x) - std::log(a);
    else if (a <= x)
        d = ln_1_plus((x - a) / a);
    else
        d = -ln_1_plus((a - x) / x);
    *out = d * a + (a - x) - stirling_rem(a) - d;
}
