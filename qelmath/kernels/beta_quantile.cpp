// Quantiles of the beta distribution: starting values, the search that picks
// one for each region of the shapes, and the two entry routines.
//
// Near 0 the lower tail behaves as x^a / (a B(a, b)), which gives two
// power-law starts: the crude p^(1/a) and (p a B(a, b))^(1/a) with
// log(a B(a, b)) written through Stirling remainders so that nothing cancels
// for large shapes.  For two large shapes the start is the Cornish-Fisher
// type expansion of the beta quantile about the normal quantile z, to the
// order 1/h^2 with h = a b / (a + b), obtained by inverting the Edgeworth
// expansion of the beta distribution.  From h = 20000 on the expansion is the
// answer (its error there is reported in the accuracy notes); everywhere
// else the start is refined by Newton's method on the tail that is small at
// the answer.  When the answer lies right of the middle the search solves for
// y = 1 - x in the mirrored distribution, so that the small quantity is the
// one computed.
#include "qelmath/kernels/beta.h"

#include "qelmath/kernels/kernel_helpers.h"
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/normal.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr double kMinQuantShape = 0.001;
const char* const kLowerQuant = "beta_lower_quant";
const char* const kUpperQuant = "beta_upper_quant";

// The lower tail of Beta(a, b) at t.
double mLowerTail(double t, double a, double b)
{
    double lower = 0.0, upper = 0.0, density = 0.0;
    beta_df(t, a, b, &lower, &upper, &density);
    return lower;
}

double mExpOrTiny(double v)
{
    return v < KERNEL_LOG_FLOOR ? KERNEL_TINY : std::exp(v);
}

bool mValidQuantArgs(double p, double a, double b)
{
    return p >= KERNEL_MIN_P && p <= 0.5 && a >= kMinQuantShape && a < KERNEL_MAX_PARAM &&
           b >= kMinQuantShape && b < KERNEL_MAX_PARAM;
}
} // namespace

void beta_start(double p, double a, double b, int mode, double* first, double* second)
{
    const double s = a + b;
    if (mode == -1 || mode == 1)
    {
        const double L = mode == -1 ? std::log(p) : ln_1_plus(-p);
        *first = mExpOrTiny(L / a);
        const double W = (L + std::log(s) - std::log(b) + stirling_rem(a) + stirling_rem(b) -
                          stirling_rem(s) - a * ln_1_plus(b / a) - b * ln_1_plus(a / b)) /
                         a;
        *second = mExpOrTiny(W);
        return;
    }
    double z = 0.0;
    inv_normal_df(mode == -2 ? p : 1.0 - p, &z);
    const double z2 = z * z;
    const double m = a / s;
    const double v = m * (1.0 - m);
    const double h = a * b / s;
    const double r = std::sqrt(h);
    const double w = (1.0 - 2.0 * m) * v;
    *first = m + v * z / r + (z2 - 1.0) * w / (3.0 * h) +
             ((1.0 - 13.0 * v) * z2 - (7.0 - 37.0 * v)) * z * v / (36.0 * h * r) -
             ((7.0 - 379.0 * v + 3.0 * (1.0 + 23.0 * v) * z2) * z2 - 4.0 * (4.0 - 43.0 * v)) * w /
                 (810.0 * h * h);
}

void beta_right_start(double p, double a, double b, double* x)
{
    double lower = 0.0, upper = 0.0, density = 0.0;
    beta_df(KERNEL_TINY, a, b, &lower, &upper, &density);
    if (p > upper)
    {
        *x = 0.0;
        kernel_terms = 0;
        kernel_error_code = 1;
        kernel_method_code = 51;
        return;
    }
    double first = 0.0, second = 0.0;
    beta_start(p, a, b, 1, &first, &second);
    int route;
    if (a <= 1.0 && b >= 1.0)
    {
        *x = second;
        route = 52;
    }
    else if (second < 0.001)
    {
        *x = second;
        route = 61;
    }
    else
    {
        *x = first;
        route = 62;
    }
    beta_newton(p, a, b, x, 'U');
    kernel_method_code = route;
}

void beta_search(double p, double a, double b, double* x, double* y)
{
    double first = 0.0, second = 0.0;
    int route = 0;

    // The answer underflows to 0: stored code 1 says so.
    auto mAtZero = [&](int iRoute) {
        *x = 0.0;
        *y = 1.0;
        kernel_error_code = 1;
        kernel_method_code = iRoute;
    };
    // Newton on the lower tail from the start in *x.
    auto mRefineLower = [&](int iRoute) {
        beta_newton(p, a, b, x, 'L');
        *y = 1.0 - *x;
        kernel_method_code = iRoute;
    };
    // Near the right end: y = 1 - x solved in the mirrored distribution.
    auto mRightEnd = [&]() {
        beta_right_start(p, b, a, y);
        *x = 1.0 - *y;
    };

    if (a <= 1.0 && b >= 1.0)
    {
        if (p < mLowerTail(KERNEL_TINY, a, b))
            return mAtZero(11);
        beta_start(p, a, b, -1, &first, &second);
        *x = second;
        return mRefineLower(12);
    }
    if (b <= 1.0 && a >= 1.0)
    {
        if (p > mLowerTail(0.5, a, b))
            return mRightEnd();
        beta_start(p, a, b, -1, &first, &second);
        *x = std::min(second, 0.5);
        return mRefineLower(20);
    }
    if (a <= 1.0 && b <= 1.0 && a <= b)
    {
        if (p < mLowerTail(KERNEL_TINY, a, b))
            return mAtZero(31);
        beta_start(p, a, b, -1, &first, &second);
        if (second < 0.001)
        {
            *x = second;
            route = 32;
        }
        else
        {
            *x = first;
            route = 33;
        }
        return mRefineLower(route);
    }
    if (a <= 1.0 && b <= 1.0)
    {
        if (p > mLowerTail(0.5, a, b))
            return mRightEnd();
        if (p >= mLowerTail((a - 1.0) / (a + b - 2.0), a, b))
        {
            beta_start(p, a, b, -1, &first, &second);
            *x = std::min(second, 0.5);
            return mRefineLower(41);
        }
        if (p < mLowerTail(KERNEL_TINY, a, b))
            return mAtZero(42);
        beta_start(p, a, b, -1, &first, &second);
        if (second < 0.001)
        {
            *x = second;
            route = 43;
        }
        else
        {
            *x = first;
            route = 44;
        }
        return mRefineLower(route);
    }

    // Both shapes above 1.
    const double h = a * b / (a + b);
    // From h = 20000 on (a = b = 40000 included) the expansion is the answer.
    if (h >= 20000.0)
    {
        if (a <= b)
        {
            beta_start(p, a, b, -2, x, &second);
            *y = 1.0 - *x;
            kernel_method_code = 71;
        }
        else
        {
            beta_start(p, b, a, 2, y, &second);
            *x = 1.0 - *y;
            kernel_method_code = 72;
        }
        return;
    }
    if (h < 10.0)
    {
        const double mode = (a - 1.0) / (a + b - 2.0);
        if (a <= b)
        {
            *x = mode;
            return mRefineLower(91);
        }
        if (p <= mLowerTail(0.5, a, b))
        {
            *x = mode;
            return mRefineLower(92);
        }
        *y = (b - 1.0) / (a + b - 2.0);
        beta_newton(p, b, a, y, 'U');
        *x = 1.0 - *y;
        kernel_method_code = 93;
        return;
    }
    beta_start(p, a, b, -2, x, &second);
    if (a <= b)
        return mRefineLower(81);
    if (*x <= 0.5)
        return mRefineLower(82);
    beta_start(p, b, a, 2, y, &second);
    beta_newton(p, b, a, y, 'U');
    *x = 1.0 - *y;
    kernel_method_code = 83;
}

void beta_lower_quant(double p, double a, double b, double* x)
{
    kernel_enter(kLowerQuant);
    kernel_clear_diagnostics();
    if (!mValidQuantArgs(p, a, b))
    {
        *x = -KERNEL_SENTINEL;
        kernel_raise(kLowerQuant, 2, 'F');
        return;
    }
    double other = 0.0;
    beta_search(p, a, b, x, &other);
    kernel_raise(kLowerQuant, 0, 'N');
}

void beta_upper_quant(double p, double a, double b, double* x)
{
    kernel_enter(kUpperQuant);
    kernel_clear_diagnostics();
    if (!mValidQuantArgs(p, a, b))
    {
        *x = -KERNEL_SENTINEL;
        kernel_raise(kUpperQuant, 2, 'F');
        return;
    }
    double other = 0.0;
    beta_search(p, b, a, &other, x);
    // The stored code of the search is restated under this routine's name.
    kernel_raise(kUpperQuant, kernel_error_code, 'F');
}
