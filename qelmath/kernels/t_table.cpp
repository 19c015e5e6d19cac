// Closed forms of the far lower tail of the noncentral t for integer degrees
// of freedom n = 1 to 12, t far below 0 and delta > 0.
//
// With S = sqrt(W/n), W chi-square on n degrees of freedom,
//     P(T <= t) = integral from 0 to infinity of Q(delta + |t| s) f_S(s) ds,
//     f_S(s) = C_n s^(n-1) e^(-n s^2/2),  C_n = 2 (n/2)^(n/2) / Gamma(n/2).
// Expanding e^(-n s^2/2) in powers of s and substituting v = |t| s,
//     P(T <= t) = C_n sum over k >= 0 of (-n/2)^k / k! |t|^(-(n+2k))
//                 (n + 2k - 1)! i^(n+2k) Q(delta),
// since integral from 0 to infinity of v^m Q(delta + v) dv = m! i^(m+1) Q(delta),
// i^m Q the m-th repeated integral of the normal upper tail (Cauchy's formula
// for repeated integration).  The terms fall like (n/(2 t^2))^k k^(n/2 - 1),
// so for |t| >= 10 a few dozen terms reach full precision.  The repeated
// integrals satisfy m i^m Q(x) = i^(m-2) Q(x) - x i^(m-1) Q(x), with
// i^(-1) Q = phi and i^0 Q = Q; upward this recurrence loses digits for x > 0,
// so it is run downward from a high order and normalised by Q(x) (Miller's
// algorithm; W. Gautschi, "Recursive computation of the repeated integrals of
// the error function", Math. Comp. 15, 1961).  The constants 1, 3, 15, 105,
// 945, ... of the expansion of these integrals at large argument are carried
// by the recurrence.  C_n comes from the normalisation of the Student density,
// Gamma(n/2) Gamma(1/2) / Gamma((n + 1)/2).
#include "qelmath/kernels/t.h"

#include "qelmath/kernels/kernel_helpers.h"
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/normal.h"

#include <cmath>

namespace
{
const char* const kTNcdf = "t_ncdf";
constexpr int kTerms = 40;
constexpr int kOrders = 12 + 2 * kTerms + 2;
constexpr int kMillerExtra = 300;
constexpr double kUpwardLimit = 0.7;
constexpr double kLnSqrtPi = 0.57236494292470008707;
constexpr double kRescale = 1e250;

// i^m Q(x) for m = 0 .. count - 1, x >= 0, into out.  The recurrence has a
// second solution, (-1)^m i^m Q(-x), that outgrows the wanted one upward, the
// faster the larger x and m: below x = 0.7 the upward run from phi and Q is
// kept (at x = 0 the downward run would split into even and odd orders, and
// near 0.5 its start 300 orders up no longer settles to 1e-9); from x = 0.7
// on it runs downward from a high order (upward, the far tail of n = 12 lost
// 4e-9 relative at x = 0.99; downward at 0.7 it keeps 1e-10).
void mRepeatedTails(double x, int count, double* out)
{
    double lower = 0.0, Q = 0.0;
    normal_df(x, &lower, &Q);
    out[0] = Q;
    if (x < kUpwardLimit)
    {
        double before = normal_density(x);
        for (int m = 1; m < count; ++m)
        {
            out[m] = (before - x * out[m - 1]) / m;
            before = out[m - 1];
        }
        return;
    }
    const int top = count + kMillerExtra;
    double next = 0.0;   // f(m + 1)
    double cur = 1e-300; // f(m)
    // f(m - 1) = (m + 1) f(m + 1) + x f(m)
    for (int m = top; m >= 1; --m)
    {
        const double prev = (m + 1.0) * next + x * cur;
        if (m < count)
            out[m] = cur;
        next = cur;
        cur = prev;
        if (std::fabs(cur) > kRescale)
        {
            next /= kRescale;
            cur /= kRescale;
            for (int i = m; i < count; ++i)
                out[i] /= kRescale;
        }
    }
    for (int m = 1; m < count; ++m)
        out[m] = out[m] / cur * Q;
}
} // namespace

double t_ncdf_table(double t, double df, double delta)
{
    const double n = std::trunc(df);
    const double lnC = ln_gamma(n / 2.0) + kLnSqrtPi - ln_gamma((n + 1.0) / 2.0);
    if (lnC > KERNEL_LOG_CEILING)
    {
        kernel_raise(kTNcdf, 4, 'F');
        return -1.0;
    }
    const int ni = static_cast<int>(n);
    double tails[kOrders + 1];
    const int count = ni + 2 * kTerms + 1;
    mRepeatedTails(delta, count, tails);
    const double at = std::fabs(t);
    // log of C_n |t|^(-n) (n - 1)!
    const double lnLead = std::log(2.0) + (n / 2.0) * std::log(n / 2.0) - ln_gamma(n / 2.0) -
                          n * std::log(at) + ln_gamma(n);
    // coefficient of term k relative to the lead: (-n/2)^k / k! t^(-2k)
    // (n + 2k - 1)! / (n - 1)!
    double coef = 1.0;
    double sum = tails[ni];
    const double z = -n / (2.0 * at * at);
    for (int k = 1; k < kTerms; ++k)
    {
        const double m = n + 2.0 * k;
        coef *= z / k * (m - 2.0) * (m - 1.0);
        const double term = coef * tails[ni + 2 * k];
        sum += term;
        if (std::fabs(term) <= 1e-17 * std::fabs(sum))
            break;
    }
    if (!(sum > 0.0))
        return 0.0;
    const double lnP = lnLead + std::log(sum);
    if (lnP < KERNEL_LOG_FLOOR)
        return 0.0;
    return std::exp(lnP);
}
