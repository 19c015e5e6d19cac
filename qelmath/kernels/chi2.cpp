// The chi-square kernels.  A chi-square variable with df degrees of freedom and
// noncentrality delta is twice a gamma variable of shape df/2 and
// noncentrality delta/2, so each routine checks its own arguments and hands
// the halved question to the gamma kernel.
#include "qelmath/kernels/chi2.h"

#include "qelmath/kernels/gamma.h"
#include "qelmath/kernels/kernel_protocol.h"

#include <cmath>

namespace
{
const char* const kChi2Ncdf = "chi2_ncdf";
const char* const kChi2UpperQuant = "chi2_upper_quant";
const char* const kChi2LowerQuant = "chi2_lower_quant";

constexpr double kSpreadFactor = 6.1738;

bool mIsBadQuantArgument(double p, double df)
{
    // Written so that a NaN is rejected as well.
    return !(p >= KERNEL_MIN_P) || p > 0.5 || !(df > 0.0) || df >= KERNEL_MAX_X;
}
} // namespace

void chi2_ncdf(double x, double df, double delta, double* lower, double* upper)
{
    kernel_enter(kChi2Ncdf);
    kernel_clear_diagnostics();
    if (!(df >= 0.0) || !(x >= 0.0) || df > KERNEL_MAX_X || !(delta >= 0.0))
    {
        kernel_raise(kChi2Ncdf, 2, 'F');
        return;
    }
    // Deliberately the whole delta, although the mixture runs on half of it.
    if (df / 2.0 + delta + kSpreadFactor * std::sqrt(delta) > KERNEL_MAX_PARAM)
    {
        kernel_raise(kChi2Ncdf, 3, 'F');
        return;
    }
    gamma_ncdf(x / 2.0, df / 2.0, delta / 2.0, lower, upper);
    kernel_raise(kChi2Ncdf, 0, 'N');
}

void chi2_upper_quant(double p, double df, double* x)
{
    kernel_enter(kChi2UpperQuant);
    kernel_clear_diagnostics();
    if (mIsBadQuantArgument(p, df))
    {
        *x = -KERNEL_SENTINEL;
        kernel_raise(kChi2UpperQuant, 2, 'F');
        return;
    }
    gamma_upper_quant(p, df / 2.0, x);
    *x *= 2.0;
    kernel_raise(kChi2UpperQuant, 0, 'N');
}

void chi2_lower_quant(double p, double df, double* x)
{
    kernel_enter(kChi2LowerQuant);
    kernel_clear_diagnostics();
    if (mIsBadQuantArgument(p, df))
    {
        *x = -KERNEL_SENTINEL;
        kernel_raise(kChi2LowerQuant, 2, 'F');
        return;
    }
    gamma_lower_quant(p, df / 2.0, x);
    *x *= 2.0;
    kernel_raise(kChi2LowerQuant, 0, 'N');
}
