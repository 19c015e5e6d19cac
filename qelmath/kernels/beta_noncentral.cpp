// The noncentral beta distribution as a Poisson mixture of central ones:
// beta_ncdf mixes Beta(a + j, b) and beta_ncdf2 mixes Beta(a, b + j), each
// with the weights of a Poisson distribution of mean delta.
//
// Each tail is a sum of terms T(j) = Pois(j; delta) G(j), G the tail of the
// j-th beta.  The sum starts where the Poisson weights become negligible
// (their quantile at 5e-10), walks the ratio T(j)/T(j +- 1) towards the peak
// without forming a term, evaluates the peak term in logarithms, and then
// sums away from the peak until the remaining geometric bound is below
// 5e-10 of the sum.  The ratios come from the recurrences between the tails
// of neighbouring shapes,
//     I_x(a, b) = I_x(a + 1, b) + x^a (1-x)^b / (a B(a, b))
// (Abramowitz and Stegun 26.5.16) and its mirror in b, carried as ratios of
// tail to density so that nothing underflows.  The side whose sum starts
// small is summed first; should it pass 0.9, the opposite sum is computed
// and complemented instead, so a small tail never comes from 1 minus a
// quantity of the wrong side.  The mixture follows the construction of the
// noncentral beta distribution by Poisson weighting (Johnson, Kotz and
// Balakrishnan, Continuous Univariate Distributions, vol. 2).
#include "qelmath/kernels/beta.h"

#include "qelmath/kernels/kernel_helpers.h"
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/poisson.h"

#include <cmath>
#include <cstdint>

namespace
{
constexpr double kPoissonCut = 5e-10;
constexpr double kSwitch = 0.9;
constexpr double kMaxIndex = 1e8;
constexpr double kSqrtFactor = 6.1738;
const char* const kBetaNcdf = "beta_ncdf";
const char* const kBetaNcdf2 = "beta_ncdf2";

bool mInvalidNcdfArgs(double x, double a, double b, double delta)
{
    // Written so that a NaN is rejected as well.
    return !(a >= 0.0) || a > KERNEL_MAX_PARAM || !(b >= 0.0) || b > KERNEL_MAX_PARAM ||
           !(x >= 0.0 && x <= 1.0) || !(delta >= 0.0);
}

double mPoissonUpperCut(double delta)
{
    std::uint32_t k = 0;
    double frac = 0.0;
    poisson_upper_quant(kPoissonCut, delta, &k, &frac);
    return static_cast<double>(k);
}

double mPoissonLowerCut(double delta)
{
    std::uint32_t k = 0;
    double frac = 0.0;
    poisson_lower_quant(kPoissonCut, delta, &k, &frac);
    return k > 0 ? static_cast<double>(k - 1) : 0.0;
}

// log of the peak term: Poisson weight times tail, the tail as its ratio r
// to the density of Beta(a, b) at x.
double mLogTerm(double j, double delta, double a, double b, double x, double r)
{
    double lnWeight = 0.0, lnDensity = 0.0;
    gamma_log_pdf(1.0 + j, delta, &lnWeight);
    beta_log_pdf(a, b, x, &lnDensity);
    return lnWeight + lnDensity + std::log(r);
}

// A summing step of the tail from its peak: true when the sum may stop.
bool mNegligible(double rho, double T, double sum)
{
    return rho < 1.0 && T / (1.0 - rho) / sum < kPoissonCut;
}

void mFinish(const char* name, int code, int* route, int add, double k, double j)
{
    *route += add;
    kernel_terms_a = static_cast<std::int32_t>(k);
    kernel_terms_b = static_cast<std::int32_t>(j);
    kernel_raise(name, code, 'F');
}

// Lower tail of the mixture of Beta(a + j, b): descends from the upper cut.
double mNcdfLowerSum(double x, double a, double b, double delta, int* route)
{
    const double k = mPoissonUpperCut(delta);
    double t = 0.0;
    // Run first, x <= (a + delta)/(a + b + delta) gives b x/(1-x) < A = a + k + 1,
    // so every ratio of the series is below A/(A + n) and its n-th term below
    // prod A/(A + i), under 1e-9 by n = sqrt(41.4 A) < 65000: the cap of a
    // million is not reached.  The second form has x (A + b) < A, ratios
    // below (A + i/2)/(A + i), and ends by n = sqrt(82.8 A) < 92000.
    // Run second, after the upper sum passed 0.9, no failure has been found.
    if (beta_Iabx(a + k + 1.0, b, x, &t) != 0)
    {
        mFinish(kBetaNcdf, 4, route, 11, k, k);
        return -1.0;
    }
    const double s = a + b;
    double j = k;
    t = (x / (a + j)) * ((s + j) * t + 1.0 - x);
    double S = 0.0;
    while (j > 0.0)
    {
        const double rho = (delta / j) * (s + j - 1.0) * t / ((s + j - 1.0) * t + 1.0 - x);
        if (rho >= 1.0)
            break;
        S = rho * (S + 1.0);
        j -= 1.0;
        t = (x / (a + j)) * ((s + j) * t + 1.0 - x);
    }
    const double lnT = mLogTerm(j, delta, j + a, b, x, t);
    if (lnT < KERNEL_LOG_FLOOR)
    {
        mFinish(kBetaNcdf, 1, route, 12, k, j);
        return 0.0;
    }
    double T = std::exp(lnT);
    double sum = T * (1.0 + S);
    if (sum > kSwitch)
    {
        *route += 100;
        return sum;
    }
    while (j > 0.0)
    {
        const double rho = ((1.0 - x) / ((s + j - 1.0) * t) + 1.0) * (j / delta);
        T *= rho;
        sum += T;
        if (sum > kSwitch)
        {
            *route += 100;
            return sum;
        }
        if (mNegligible(rho, T, sum))
            break;
        j -= 1.0;
        t = (x / (a + j)) * ((s + j) * t + 1.0 - x);
    }
    mFinish(kBetaNcdf, 0, route, 13, k, j);
    return sum;
}

// Upper tail of the mixture of Beta(a + j, b): ascends from the lower cut.
double mNcdfUpperSum(double x, double a, double b, double delta, int* route)
{
    const double k = mPoissonLowerCut(delta);
    double J = 0.0;
    // Run first, x > (a + delta)/(a + b + delta) gives (a + k)(1-x)/x < b, and
    // the finite series ends by n = sqrt(41.4 b) as in the lower sum; it fails
    // for a second shape of 0, whose ratios are not bounded.
    if (beta_Jabx(a + k, b, x, &J) != 0)
    {
        mFinish(kBetaNcdf, 4, route, 21, k, k);
        return -1.0;
    }
    const double s = a + b;
    const double xx = x * (1.0 - x);
    double u = J * (1.0 - x) / b;
    double j = k;
    double S = 0.0;
    for (;;)
    {
        if (j >= kMaxIndex)
        {
            mFinish(kBetaNcdf, 4, route, 22, k, j);
            return -2.0;
        }
        const double rho = (a + j) * ((j + 1.0) / delta) * u / (xx + (a + j) * u);
        // A ratio that is not a number (a degenerate shape of 0) would walk to
        // the index limit; it ends the same way at once.
        if (std::isnan(rho))
        {
            mFinish(kBetaNcdf, 4, route, 22, k, j);
            return -2.0;
        }
        if (rho >= 1.0)
            break;
        S = rho * (S + 1.0);
        u = (1.0 - x) / (s + j) + (a + j) * u / ((s + j) * x);
        j += 1.0;
    }
    const double lnT = mLogTerm(j, delta, a + j, b, x, u);
    if (lnT < KERNEL_LOG_FLOOR)
    {
        mFinish(kBetaNcdf, 1, route, 23, k, j);
        return 0.0;
    }
    double T = std::exp(lnT);
    double sum = T * (1.0 + S);
    if (sum > kSwitch)
    {
        *route += 100;
        return sum;
    }
    for (;;)
    {
        const double rho = (xx / ((a + j) * u) + 1.0) * (delta / (j + 1.0));
        T *= rho;
        sum += T;
        if (std::isnan(sum))
        {
            mFinish(kBetaNcdf, 4, route, 22, k, j);
            return -2.0;
        }
        if (sum > kSwitch)
        {
            *route += 100;
            return sum;
        }
        if (mNegligible(rho, T, sum))
            break;
        u = (1.0 - x) / (s + j) + (a + j) * u / ((s + j) * x);
        j += 1.0;
        if (j >= kMaxIndex)
            break;
    }
    mFinish(kBetaNcdf, 0, route, 24, k, j);
    return sum;
}

// Lower tail of the mixture of Beta(a, b + j): ascends from the lower cut.
double mNcdf2LowerSum(double x, double a, double b, double delta, int* route)
{
    const double k = mPoissonLowerCut(delta);
    double u = 0.0;
    // Run first, x < a/(a + b + delta) gives (b + k) x/(1-x) < a and the series
    // ends by n = sqrt(41.4 a); it fails for a first shape of 0.
    if (beta_Iabx(a, b + k, x, &u) != 0)
    {
        mFinish(kBetaNcdf2, 4, route, 11, k, k);
        return -1.0;
    }
    const double s = a + b;
    const double xx = x * (1.0 - x);
    double j = k;
    double S = 0.0;
    for (;;)
    {
        if (j >= kMaxIndex)
        {
            mFinish(kBetaNcdf2, 4, route, 12, k, j);
            return -2.0;
        }
        const double rho = (b + j) * ((j + 1.0) / delta) * u / (xx + (b + j) * u);
        // A ratio that is not a number (a degenerate shape of 0) would walk to
        // the index limit; it ends the same way at once.
        if (std::isnan(rho))
        {
            mFinish(kBetaNcdf2, 4, route, 12, k, j);
            return -2.0;
        }
        if (rho >= 1.0)
            break;
        S = rho * (S + 1.0);
        u = x / (s + j) + (b + j) * u / ((s + j) * (1.0 - x));
        j += 1.0;
    }
    const double lnT = mLogTerm(j, delta, a, j + b, x, u);
    if (lnT < KERNEL_LOG_FLOOR)
    {
        mFinish(kBetaNcdf2, 1, route, 13, k, j);
        return 0.0;
    }
    double T = std::exp(lnT);
    double sum = T * (1.0 + S);
    if (sum > kSwitch)
    {
        *route += 100;
        return sum;
    }
    for (;;)
    {
        const double rho = (xx / ((b + j) * u) + 1.0) * (delta / (j + 1.0));
        T *= rho;
        sum += T;
        if (std::isnan(sum))
        {
            mFinish(kBetaNcdf2, 4, route, 12, k, j);
            return -2.0;
        }
        if (sum > kSwitch)
        {
            *route += 100;
            return sum;
        }
        if (mNegligible(rho, T, sum))
            break;
        u = x / (s + j) + (b + j) * u / ((s + j) * (1.0 - x));
        j += 1.0;
        if (j >= kMaxIndex)
            break;
    }
    mFinish(kBetaNcdf2, 0, route, 14, k, j);
    return sum;
}

// Upper tail of the mixture of Beta(a, b + j): descends from the upper cut.
double mNcdf2UpperSum(double x, double a, double b, double delta, int* route)
{
    const double k = mPoissonUpperCut(delta);
    double t0 = 0.0;
    // Run first, x >= a/(a + b + delta) gives a (1-x)/x < B = b + k + 1 and the
    // finite series ends by n = sqrt(41.4 B) < 65000; the continued fraction
    // that may close it settled within 38 steps of its 80 on a scan of
    // p in [0, 1), q from 1 to 1.9e8 and q x >= 1.  Run second, after the
    // lower sum passed 0.9, no failure has been found.
    if (beta_Jabx(a, b + k + 1.0, x, &t0) != 0)
    {
        mFinish(kBetaNcdf2, 4, route, 21, k, k);
        return -1.0;
    }
    const double s = a + b;
    double t = ((1.0 - x) / (b + k + 1.0)) * t0;
    double j = k;
    t = ((1.0 - x) / (b + j)) * ((s + j) * t + x);
    double S = 0.0;
    while (j > 0.0)
    {
        const double rho = (delta / j) * (s + j - 1.0) * t / ((s + j - 1.0) * t + x);
        if (rho >= 1.0)
            break;
        S = rho * (S + 1.0);
        j -= 1.0;
        t = ((1.0 - x) / (b + j)) * ((s + j) * t + x);
    }
    const double lnT = mLogTerm(j, delta, a, j + b, x, t);
    if (lnT < KERNEL_LOG_FLOOR)
    {
        mFinish(kBetaNcdf2, 1, route, 22, k, j);
        return 0.0;
    }
    double T = std::exp(lnT);
    double sum = T * (1.0 + S);
    if (sum > kSwitch)
    {
        *route += 100;
        return sum;
    }
    while (j > 0.0)
    {
        const double rho = (x / ((s + j - 1.0) * t) + 1.0) * (j / delta);
        T *= rho;
        sum += T;
        if (sum > kSwitch)
        {
            *route += 100;
            return sum;
        }
        if (mNegligible(rho, T, sum))
            break;
        j -= 1.0;
        t = ((1.0 - x) / (b + j)) * ((s + j) * t + x);
    }
    mFinish(kBetaNcdf2, 0, route, 23, k, j);
    return sum;
}

using SumFn = double (*)(double, double, double, double, int*);

// Sums the side chosen first; above 0.9 the opposite side is summed and
// complemented instead.
void mMixture(double x, double a, double b, double delta, bool bUpperFirst, SumFn lowerSum,
              SumFn upperSum, int* route, double* lower, double* upper)
{
    if (bUpperFirst)
    {
        const double U = upperSum(x, a, b, delta, route);
        if (U <= kSwitch)
        {
            *upper = U;
            *lower = 1.0 - U;
            return;
        }
        const double L = lowerSum(x, a, b, delta, route);
        *lower = L;
        *upper = 1.0 - L;
        return;
    }
    const double L = lowerSum(x, a, b, delta, route);
    if (L <= kSwitch)
    {
        *lower = L;
        *upper = 1.0 - L;
        return;
    }
    const double U = upperSum(x, a, b, delta, route);
    *upper = U;
    *lower = 1.0 - U;
}
} // namespace

void beta_ncdf(double x, double a, double b, double delta, double* lower, double* upper)
{
    kernel_enter(kBetaNcdf);
    kernel_clear_diagnostics();
    if (mInvalidNcdfArgs(x, a, b, delta))
    {
        kernel_raise(kBetaNcdf, 2, 'F');
        return;
    }
    if (a + delta + kSqrtFactor * std::sqrt(delta) > KERNEL_MAX_PARAM)
    {
        kernel_raise(kBetaNcdf, 3, 'F');
        return;
    }
    if (delta == 0.0)
    {
        double density = 0.0;
        beta_df(x, a, b, lower, upper, &density);
        kernel_raise(kBetaNcdf, 0, 'N');
        return;
    }
    if (x > 0.5)
    {
        beta_ncdf2(1.0 - x, b, a, delta, upper, lower);
        kernel_raise(kBetaNcdf, 0, 'N');
        return;
    }
    kernel_enter(kBetaNcdf);
    int route = 0;
    if (x == 0.0)
    {
        *lower = 0.0;
        *upper = 1.0;
        kernel_method_code = route;
        kernel_raise(kBetaNcdf, 0, 'F');
        return;
    }
    const bool bUpperFirst = x > (a + delta) / (a + b + delta);
    mMixture(x, a, b, delta, bUpperFirst, mNcdfLowerSum, mNcdfUpperSum, &route, lower, upper);
    kernel_method_code = route;
    kernel_raise(kBetaNcdf, 0, 'N');
}

void beta_ncdf2(double x, double a, double b, double delta, double* lower, double* upper)
{
    kernel_enter(kBetaNcdf2);
    kernel_clear_diagnostics();
    if (mInvalidNcdfArgs(x, a, b, delta))
    {
        kernel_raise(kBetaNcdf2, 2, 'F');
        return;
    }
    // The second shape is the one that grows with the mixing index.
    if (b + delta + kSqrtFactor * std::sqrt(delta) > KERNEL_MAX_PARAM)
    {
        kernel_raise(kBetaNcdf2, 3, 'F');
        return;
    }
    if (delta == 0.0)
    {
        double density = 0.0;
        beta_df(x, a, b, lower, upper, &density);
        kernel_raise(kBetaNcdf2, 0, 'N');
        return;
    }
    // beta_ncdf mirrors only above 0.5, strictly, so x = 0.5 goes there once.
    if (x >= 0.5)
    {
        beta_ncdf(1.0 - x, b, a, delta, upper, lower);
        kernel_raise(kBetaNcdf2, 0, 'N');
        return;
    }
    kernel_enter(kBetaNcdf2);
    int route = 1000;
    if (x == 0.0)
    {
        *lower = 0.0;
        *upper = 1.0;
        kernel_method_code = route;
        kernel_raise(kBetaNcdf2, 0, 'F');
        return;
    }
    const bool bUpperFirst = x >= a / (a + b + delta);
    mMixture(x, a, b, delta, bUpperFirst, mNcdf2LowerSum, mNcdf2UpperSum, &route, lower, upper);
    kernel_method_code = route;
    kernel_raise(kBetaNcdf2, 0, 'N');
}
