// The central Student t kernels.  With u = t^2, the two-sided tail
// P(|T| > |t|) is the upper tail of Beta(1/2, df/2) at u/(df + u), or, when
// t^2 exceeds df, the lower tail of Beta(df/2, 1/2) at df/(df + u): the form
// whose argument stays below one half keeps its digits.  The quantiles invert
// the same beta distributions, choosing the shape order so that the searched
// tail is the small one.
#include "qelmath/kernels/t.h"

#include "qelmath/kernels/beta.h"
#include "qelmath/kernels/kernel_protocol.h"

#include <cmath>

namespace
{
const char* const kTDf = "t_df";
const char* const kTUpperQt = "t_upper_qt";
const char* const kTLowerQt = "t_lower_qt";

bool mIsBadQuantArgument(double p, double df)
{
    // Written so that a NaN is rejected as well.
    return !(p >= KERNEL_MIN_P) || p > 0.5 || !(df >= 0.002) || df > KERNEL_MAX_X;
}

// The quantile once the arguments are known to be admissible.
void mUpperQuantile(double p, double df, double* x, const char* name)
{
    const double d = 1.0 - 2.0 * p;
    if (d < 1e-12)
    {
        *x = 0.0;
        kernel_raise(name, 0, 'N');
        return;
    }
    const double h = df / 2.0;
    double w = 0.0;
    if (p <= 0.25)
        beta_search(2.0 * p, h, 0.5, &w, x);
    else
        beta_search(d, 0.5, h, x, &w);
    if (w == 0.0)
    {
        *x = -KERNEL_SENTINEL;
        kernel_raise(name, 4, 'F');
        return;
    }
    *x = std::sqrt(*x * h / (w / 2.0));
    kernel_raise(name, 0, 'N');
}
} // namespace

void t_df(double t, double df, double* lower, double* upper)
{
    kernel_enter(kTDf);
    kernel_clear_diagnostics();
    if (!(df > 0.0) || df > KERNEL_MAX_X)
    {
        kernel_raise(kTDf, 2, 'F');
        return;
    }
    if (std::fabs(t) > 1.0 && std::fabs(1.0 / t) < std::sqrt(KERNEL_TINY))
    {
        *lower = t > 0.0 ? 1.0 : 0.0;
        *upper = 1.0 - *lower;
        kernel_raise(kTDf, 0, 'N');
        return;
    }
    const double u = t * t;
    double density = 0.0;
    if (df >= u)
        beta_df(u / (df + u), 0.5, df / 2.0, lower, upper, &density);
    else if (df < u)
        beta_df(df / (u + df), df / 2.0, 0.5, upper, lower, &density);
    else
    {
        // t is NaN.
        kernel_raise(kTDf, 2, 'F');
        return;
    }
    const double h = *upper / 2.0;
    if (t >= 0.0)
    {
        *upper = h;
        *lower = 1.0 - h;
    }
    else
    {
        *lower = h;
        *upper = 1.0 - h;
    }
    kernel_raise(kTDf, 0, 'N');
}

void t_upper_qt(double p, double df, double* x)
{
    kernel_enter(kTUpperQt);
    kernel_clear_diagnostics();
    if (mIsBadQuantArgument(p, df))
    {
        *x = -KERNEL_SENTINEL;
        kernel_raise(kTUpperQt, 2, 'F');
        return;
    }
    mUpperQuantile(p, df, x, kTUpperQt);
}

void t_lower_qt(double p, double df, double* x)
{
    kernel_enter(kTLowerQt);
    kernel_clear_diagnostics();
    if (mIsBadQuantArgument(p, df))
    {
        *x = -KERNEL_SENTINEL;
        kernel_raise(kTLowerQt, 2, 'F');
        return;
    }
    mUpperQuantile(p, df, x, kTLowerQt);
    // Minus the upper quantile always, the failure sentinel included.
    *x = -*x;
}
