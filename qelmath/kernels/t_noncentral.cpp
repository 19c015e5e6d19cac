// The noncentral t distribution function.  T = (Z + delta)/sqrt(W/df) with
// Z standard normal and W chi-square on df degrees of freedom.
//
// Routes (Lenth, Applied Statistics AS 243, extended):
//   * the noncentral-beta form: for t delta >= 0 the lower tail is
//         Q(delta) + (1/2) sum Pois(j; L) I_y(j + 1/2, h)
//                  + (1/2) sum w(j) I_y(j + 1, h),
//     y = t^2/(df + t^2), h = df/2, L = delta^2/2 (beta_ncdf for the even
//     part, the sums of t_noncentral_sums.cpp for the odd part); for t < 0
//     the reflection P(T <= t; delta) = 1 - P(T <= -t; -delta) turns it into
//     a difference, which may cancel: the digits kept are judged by how the
//     result compares with the even part.
//   * a saddlepoint value of the lower tail for t < 0 < delta (Laplace's
//     method on the mixture over the chi variable, with the Lugannani-Rice
//     form of the normal tail), the last resort, and the only route from
//     df = 1000 on;
//   * Owen's recursion for integer df (t_owen.cpp);
//   * closed forms of the far lower tail for df = 1 to 12 (t_table.cpp).
#include "qelmath/kernels/t.h"

#include "qelmath/kernels/beta.h"
#include "qelmath/kernels/kernel_helpers.h"
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/normal.h"

#include <cmath>

namespace
{
const char* const kTNcdf = "t_ncdf";
constexpr double kSpreadFactor = 6.1738;
constexpr double kSwitch = 0.9;
constexpr double kLnSqrt2Pi = 0.91893853320467274178;

void mZeroCounters()
{
    kernel_terms = 0;
    kernel_terms_a = 0;
    kernel_terms_b = 0;
}

// The odd part ql + qu = c: the side chosen first is summed; past 0.9 c the
// opposite side is summed and the first obtained as c minus it.
void mOddPart(double y, double h, double L, double c, bool bDirect, bool bLowerFirst, double* ql,
              double* qu, int* code)
{
    double (*lowSum)(double, double, double, double, int*) = bDirect ? t_ncdf_low_i : t_ncdf_low_i2;
    double (*upSum)(double, double, double, double, int*) = bDirect ? t_ncdf_up_j : t_ncdf_up_j2;
    const double first = (bLowerFirst ? lowSum : upSum)(y, h, L, c, code);
    if (*code >= 2)
        return;
    if (first / 2.0 <= kSwitch * c)
    {
        *(bLowerFirst ? ql : qu) = first / 2.0;
        *(bLowerFirst ? qu : ql) = c - first / 2.0;
        return;
    }
    const double second = (bLowerFirst ? upSum : lowSum)(y, h, L, c, code);
    *(bLowerFirst ? qu : ql) = second / 2.0;
    *(bLowerFirst ? ql : qu) = c - second / 2.0;
}
} // namespace

void t_ncdf_beta(double t, double df, double delta, double fallback, int* accurate,
                 double* lower, double* upper)
{
    const double h = df / 2.0;
    const double L = delta * delta / 2.0;
    double Phi = 0.0, Q = 0.0;
    normal_df(-delta, &Q, &Phi);
    const double c = Phi - 0.5;
    // A t whose square falls below the smallest argument is t = 0: the
    // tails differ from it by less than that.
    if (t * t < KERNEL_TINY)
    {
        *lower = Q;
        *upper = Phi;
        *accurate = 1;
        kernel_method_code = 3;
        kernel_raise(kTNcdf, 0, 'F');
        return;
    }
    const double u = t * t;
    const bool bDirect = df >= u;
    double y = 0.0, bl = 0.0, bu = 0.0;
    if (bDirect)
    {
        y = u / (df + u);
        beta_ncdf(y, 0.5, h, L, &bl, &bu);
    }
    else
    {
        y = df / (u + df);
        beta_ncdf2(y, h, 0.5, L, &bu, &bl);
    }
    if (kernel_take_failure())
    {
        *lower = -1.0;
        *upper = -1.0;
        kernel_raise(kTNcdf, 4, 'F');
        return;
    }
    bl /= 2.0;
    bu /= 2.0;
    kernel_method_code = bDirect ? 0 : 1000;

    double ql = 0.0, qu = 0.0;
    int code = 0;
    if (L < KERNEL_TINY)
    {
        // delta^2/2 underflows: the odd part is its first term, 2c times the
        // lower tail of Beta(1, h), 1 - (1 - x)^h with x = t^2/(df + t^2).
        const double I = bDirect ? -expm1_guarded(h * ln_1_plus(-y)) : 1.0 - std::pow(y, h);
        ql = c * I;
        qu = c - ql;
    }
    else
    {
        mOddPart(y, h, L, c, bDirect, std::fabs(t) <= delta, &ql, &qu, &code);
    }
    if (code >= 2)
    {
        *lower = -1.0;
        *upper = -1.0;
        kernel_raise(kTNcdf, 4, 'F');
        return;
    }
    kernel_raise(kTNcdf, code, 'N');
    if (t >= 0.0)
    {
        *lower = ql + bl + Q;
        *upper = qu + bu;
        return;
    }
    *lower = bu - qu;
    *upper = bl - ql + Phi;
    const double V = *lower;
    if (V * 1000.0 > bu)
    {
        *accurate = 1;
        return;
    }
    if (V * 1000000.0 > bu)
    {
        kernel_method_code += 10000;
        kernel_error_code = 1;
        return;
    }
    *lower = fallback;
    *upper = 1.0 - fallback;
    mZeroCounters();
    kernel_error_code = 1;
    kernel_method_code = df <= 30.0 ? 2003 : 2002;
}

double t_ncdf_left(double t, double df, double delta)
{
    const double a = t / std::sqrt(df);
    const double d = delta / std::sqrt(df);
    const double B = a * a + 1.0;
    // The saddle s = sqrt(y) solves B s^2 - a d s - 1 = 0.
    const double s = (std::sqrt(a * a * d * d + 4.0 * B) + a * d) / (2.0 * B);
    const double y = s * s;
    const double e = d - a * s;
    const double c = y + e * e - std::log(y) - 1.0;
    const double r = std::sqrt(df * c);
    // Laplace's method on the mixture over S = sqrt(W/df), with
    // Q(x) ~ phi(x)/x inside, gives phi(r) K; the Lugannani-Rice form keeps
    // Q(r) exact and corrects by phi(r) (K - 1/r).  The same Laplace step
    // applied to the chi density alone integrates it to exp(-1/(12 h)), not
    // 1 (h = df/2); dividing by that (the ratio form of Tierney and Kadane,
    // JASA 81, 1986) takes -1/(12 h) off the Stirling remainder.
    const double h = df / 2.0;
    const double lnK = kLnSqrt2Pi - (stirling_rem(h) - 1.0 / (12.0 * h)) - std::log(e) -
                       0.5 * std::log(B * y + 1.0);
    const double lnPhiR = -r * r / 2.0 - kLnSqrt2Pi;
    if (lnPhiR + lnK < KERNEL_LOG_FLOOR)
        return 0.0;
    double lowerR = 0.0, upperR = 0.0;
    normal_df(r, &lowerR, &upperR);
    const double P = upperR + normal_density(r) * (std::exp(lnK) - 1.0 / r);
    if (!(P > 0.0) || std::log(P) < KERNEL_LOG_FLOOR)
        return 0.0;
    return P;
}

void t_ncdf(double t, double df, double delta, double* lower, double* upper)
{
    kernel_enter(kTNcdf);
    kernel_clear_diagnostics();
    // A NaN noncentrality is refused with the degrees of freedom.
    if (!(df > 0.0) || df > KERNEL_MAX_X || delta != delta)
    {
        kernel_raise(kTNcdf, 2, 'F');
        return;
    }
    const double L = delta * delta / 2.0;
    if (!(L + df / 2.0 + kSpreadFactor * std::sqrt(L) <= KERNEL_MAX_PARAM))
    {
        kernel_raise(kTNcdf, 3, 'F');
        return;
    }
    if (t != t)
    {
        kernel_raise(kTNcdf, 2, 'F');
        return;
    }
    if (std::fabs(t) > 1.0 && std::fabs(1.0 / t) < std::sqrt(KERNEL_TINY))
    {
        *lower = t > 0.0 ? 1.0 : 0.0;
        *upper = 1.0 - *lower;
        kernel_raise(kTNcdf, 0, 'N');
        return;
    }
    if (delta == 0.0)
    {
        t_df(t, df, lower, upper);
        kernel_raise(kTNcdf, 0, 'N');
        return;
    }
    const bool bSwap = delta < 0.0;
    if (bSwap)
    {
        t = -t;
        delta = -delta;
    }
    double lo = 0.0, up = 0.0;
    int code = 0;
    auto mFinish = [&]() {
        if (bSwap)
        {
            *lower = up;
            *upper = lo;
        }
        else
        {
            *lower = lo;
            *upper = up;
        }
        kernel_raise(kTNcdf, code, 'N');
    };
    int accurate = 0;
    if (t * delta >= 0.0)
    {
        t_ncdf_beta(t, df, delta, 0.0, &accurate, &lo, &up);
        code = kernel_error_code;
        return mFinish();
    }
    if (delta > 21.3)
    {
        lo = 0.0;
        up = 1.0;
        kernel_method_code = 1;
        kernel_raise(kTNcdf, 0, 'F');
        return mFinish();
    }
    const double P = t_ncdf_left(t, df, delta);
    if (df < 1000.0)
    {
        t_ncdf_beta(t, df, delta, P, &accurate, &lo, &up);
        code = kernel_error_code;
        if (code >= 2)
            return mFinish();
    }
    if (P == 0.0)
    {
        lo = 0.0;
        up = 1.0;
        kernel_method_code = 2000;
        mZeroCounters();
        return mFinish();
    }
    if (df >= 1000.0)
    {
        lo = P;
        up = 1.0 - P;
        kernel_method_code = 2001;
        return mFinish();
    }
    if (accurate)
    {
        kernel_method_code = 2;
        return mFinish();
    }
    const double n = std::trunc(df);
    const bool bFallback = kernel_method_code == 2002 || kernel_method_code == 2003;
    const int mark = kernel_method_code >= 10000 ? 10000 : 0;
    double R = 0.0;
    if (n < 1.0)
    {
        // Below one degree of freedom no exact route exists: the sum stands.
        if (!bFallback)
            kernel_method_code = 3 + mark;
        return mFinish();
    }
    if (n == 1.0)
    {
        R = t_ncdf_owen(t, df, delta);
        kernel_method_code = 4000;
        code = R < 0.0 ? 4 : 0;
    }
    else if (n <= 6.0 && t > -10.0)
    {
        R = t_ncdf_owen(t, df, delta);
        kernel_method_code = 4001;
        code = R < 0.0 ? 4 : 1;
    }
    else if (n <= 6.0)
    {
        R = t_ncdf_table(t, df, delta);
        kernel_method_code = 3000;
        code = R < 0.0 ? 4 : 1;
    }
    else if (n <= 12.0 && t > -2.0)
    {
        R = t_ncdf_owen(t, df, delta);
        kernel_method_code = 4002;
        code = R < 0.0 ? 4 : 1;
    }
    else if (n <= 12.0 && t < -25.0)
    {
        R = t_ncdf_table(t, df, delta);
        kernel_method_code = 3001;
        code = R < 0.0 ? 4 : 1;
    }
    else
    {
        // The sum stands; when its digits were all lost it already holds the
        // saddlepoint value and keeps that route's code.
        if (!bFallback)
            kernel_method_code = 3 + mark;
        return mFinish();
    }
    if (R < 0.0)
    {
        lo = -1.0;
        up = -1.0;
        kernel_raise(kTNcdf, 4, 'F');
        return mFinish();
    }
    lo = R;
    up = 1.0 - R;
    kernel_error_code = 0;
    return mFinish();
}
