// The F kernels.  With h1 = df1/2, h2 = df2/2 and u = x h1, the variable
// u/(h2 + u) of an F variable is a (noncentral) beta variable of shapes h1
// and h2 whose Poisson mixing mean is half the noncentrality; when that
// argument would pass one half, its complement h2/(u + h2) is used with the
// shapes exchanged, so that no digits are lost to 1 - y.  The quantiles
// invert the central beta distribution in the shape order whose searched
// tail is the given one.
#include "qelmath/kernels/F.h"

#include "qelmath/kernels/beta.h"
#include "qelmath/kernels/kernel_protocol.h"

#include <algorithm>
#include <cmath>

namespace
{
const char* const kFNcdf = "F_ncdf";
// Both quantiles report under this name; the lower one keeps it deliberately.
const char* const kFUpperQt = "F_upper_qt";

bool mIsBadQuantArgument(double p, double df1, double df2)
{
    // Written so that a NaN is rejected as well.
    return !(p >= KERNEL_MIN_P) || p > 0.5 || !(std::min(df1, df2) >= 0.002) ||
           !(std::max(df1, df2) <= KERNEL_MAX_X) || df1 != df1 || df2 != df2;
}
} // namespace

void F_ncdf(double x, double df1, double df2, double delta, double* lower, double* upper)
{
    kernel_enter(kFNcdf);
    kernel_clear_diagnostics();
    if (!(x >= 0.0) || !(df1 >= 0.0) || !(df2 >= 0.0) || std::max(df1, df2) > KERNEL_MAX_X ||
        !(delta >= 0.0))
    {
        kernel_raise(kFNcdf, 2, 'F');
        return;
    }
    const double h1 = df1 / 2.0;
    const double h2 = df2 / 2.0;
    const double u = x * h1;
    if (h2 / h1 >= x)
        beta_ncdf(u / (h2 + u), h1, h2, delta / 2.0, lower, upper);
    else
        beta_ncdf2(h2 / (u + h2), h2, h1, delta / 2.0, upper, lower);
    kernel_raise(kFNcdf, 0, 'N');
}

void F_upper_qt(double p, double df1, double df2, double* x)
{
    kernel_enter(kFUpperQt);
    kernel_clear_diagnostics();
    if (mIsBadQuantArgument(p, df1, df2))
    {
        *x = -KERNEL_SENTINEL;
        kernel_raise(kFUpperQt, 2, 'F');
        return;
    }
    const double h1 = df1 / 2.0;
    const double h2 = df2 / 2.0;
    double w = 0.0;
    beta_search(p, h2, h1, &w, x);
    if (w == 0.0)
    {
        *x = -KERNEL_SENTINEL;
        kernel_raise(kFUpperQt, 4, 'F');
        return;
    }
    *x = (h2 / (w * h1)) * *x;
    kernel_raise(kFUpperQt, 0, 'N');
}

void F_lower_qt(double p, double df1, double df2, double* x)
{
    kernel_enter(kFUpperQt);
    kernel_clear_diagnostics();
    if (mIsBadQuantArgument(p, df1, df2))
    {
        *x = -KERNEL_SENTINEL;
        kernel_raise(kFUpperQt, 2, 'F');
        return;
    }
    const double h1 = df1 / 2.0;
    const double h2 = df2 / 2.0;
    double w = 0.0;
    beta_search(p, h1, h2, x, &w);
    if (w == 0.0)
    {
        *x = -KERNEL_SENTINEL;
        kernel_raise(kFUpperQt, 4, 'F');
        return;
    }
    *x = (h2 / (w * h1)) * *x;
    kernel_raise(kFUpperQt, 0, 'N');
}
