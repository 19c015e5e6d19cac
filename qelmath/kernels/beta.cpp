// The central beta distribution: its log density, both tails, and Newton
// refinement of a quantile.
//
// The log density is formed from the deviation d = (a + b) x - a, so that
// the large terms a log(x (a+b)/a) and b log((1-x)(a+b)/b) never cancel, and
// the Stirling remainders of the three gamma functions carry the rest.
//
// A rough median chooses the tail.  Left of it the lower tail is
// density I(a, b, x) with I the series obtained by integrating by parts,
//     I = (x/a) sum_n prod_{k<=n} ((b - k)/(a + k)) (x/(1 - x)),
// or, where those terms alternate without shrinking fast enough, the
// hypergeometric form (x (1-x)/a) sum_k (a+b)_k / (a+1)_k x^k.  Right of it
// the upper tail is density ((1-x)/b) J with J the mirror series in
// (1-x)/x, which ends at the integer part of a and is closed for the
// fractional part by a continued fraction of the incomplete beta ratio in the
// variable (1-x)/x, evaluated two convergents at a time, or, when x times
// the second shape of that fractional problem is below 1, by a power series
// of the lower integral subtracted from the complete one.  For a < 1 and
// x b < 1 that small-x form gives the upper tail directly.
// Both series are found in length by a forward scan and summed backward.
// Series stop at a term of 1e-9.  A tail whose logarithm falls below
// KERNEL_LOG_FLOOR is an exact zero with code 1; where a bound on the series
// shows that this must happen the series is not run.
//
// beta_ln_ratio, log(Gamma(b) b^a / Gamma(a + b)) for small a, uses the
// expansion of the log gamma difference in 1/b for large b, the Maclaurin
// series of log Gamma about 0 (zeta(2), zeta(3)) for small b, and the Taylor
// expansion in a through the polygamma functions otherwise.  The polygamma
// functions are the asymptotic series with seven Bernoulli numbers for
// x >= 10 and the recurrence psi(x) = psi(x + 1) - 1/x and its derivatives
// below.
#include "qelmath/kernels/beta.h"

#include "qelmath/kernels/kernel_helpers.h"
#include "qelmath/kernels/kernel_protocol.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr int kMaxSeriesTerms = 1000000;
constexpr int kMaxFractionTerms = 160;
constexpr int kMaxSmallTailTerms = 30;
constexpr int kMaxNewtonRounds = 500;
constexpr double kMinShape = 1.50978783374313e-12;
constexpr double kDoubleEps = 2.220446049250313e-16;
constexpr double kEuler = 0.5772156649015329;
constexpr double kZeta2 = 1.6449340668482264;
constexpr double kTwoZeta3 = 2.4041138063191885;
constexpr double kLn2 = 0.6931471805599453;
const char* const kBetaDf = "beta_df";
const char* const kBetaNewton = "beta_newton";

// Bernoulli numbers B2 ... B14.
constexpr double kBernoulli[7] = {1.0 / 6.0,   -1.0 / 30.0,     1.0 / 42.0, -1.0 / 30.0,
                                  5.0 / 66.0, -691.0 / 2730.0, 7.0 / 6.0};

// log(1 - y) for the bounds of the tails: a bound holds only while y < 1;
// past that the series has to be run, which a log of +inf tells the caller.
double mLogOneMinus(double y)
{
    if (!(y < 1.0))
        return -HUGE_VAL;
    return std::log1p(-y);
}
} // namespace

void beta_log_pdf(double a, double b, double x, double* out)
{
    const double s = a + b;
    const double d = s * x - a;
    double L1;
    if (a <= 1.0)
        L1 = std::log(s) + std::log(x) - std::log(a);
    else if (d >= 0.0)
        L1 = ln_1_plus(d / a);
    else
        L1 = -ln_1_plus(-d / (s * x));
    double L2;
    if (b > 1.0)
    {
        if (d >= 0.0)
            L2 = -ln_1_plus(d / (s * (1.0 - x)));
        else
            L2 = ln_1_plus(-d / b);
    }
    else
    {
        L2 = std::log(1.0 - x) + std::log(s) - std::log(b);
    }
    *out = stirling_rem(s) - stirling_rem(a) - stirling_rem(b) + L1 * a + L2 * b - L1 - L2 +
           std::log(s);
}

int beta_Iabx(double a, double b, double x, double* I)
{
    const double w = x / (1.0 - x);
    double t = 1.0;
    double r = 0.0;
    int n = 0;
    while (std::fabs(t) >= KERNEL_SERIES_EPS && r >= -0.5 && n <= kMaxSeriesTerms)
    {
        ++n;
        r = ((b - n) / (n + a)) * w;
        t *= r;
    }
    if (n > kMaxSeriesTerms)
    {
        kernel_raise(kBetaDf, 4, 'F');
        return 4;
    }
    if (std::fabs(t) < KERNEL_SERIES_EPS)
    {
        double v = b - 1.0 >= n ? 1.0 : 1.0 - x;
        for (int k = n; k >= 1; --k)
            v = v * ((b - k) / (k + a)) * w + 1.0;
        *I = v * x / a;
    }
    else
    {
        // The terms alternate and shrink too slowly: the hypergeometric form,
        // whose terms are all positive.
        double u = 1.0;
        int k = 0;
        while (std::fabs(u) >= KERNEL_SERIES_EPS && k <= kMaxSeriesTerms)
        {
            ++k;
            u *= (a + b + k - 1.0) * x / (k + a);
        }
        kernel_terms_a = k;
        if (k > kMaxSeriesTerms)
        {
            kernel_raise(kBetaDf, 4, 'F');
            return 4;
        }
        double v = 1.0 / (1.0 - x);
        for (int i = k; i >= 1; --i)
            v = v * ((a + b + i - 1.0) * x / (i + a)) + 1.0;
        *I = v * (1.0 - x) * x / a;
    }
    kernel_terms = n;
    kernel_raise(kBetaDf, 0, 'N');
    return 0;
}

int beta_Jcf(double p, double q, double x, double* out)
{
    if (q * x >= 1.0)
    {
        const double w = (1.0 - x) / x;
        double A = 1.0, B = 1.0, Ap = 0.0, Bp = 1.0;
        double r1 = 0.0, r2 = 0.0;
        int m = 0;
        bool bSettled = false;
        while (2 * m < kMaxFractionTerms)
        {
            ++m;
            const double c = 2.0 * m + q;
            const double d1 = (m - p) * w * (m + q - 1.0) / (c - 2.0) / (c - 1.0);
            Ap = Ap * d1 + A;
            Bp = Bp * d1 + B;
            r1 = Ap / Bp;
            const double d2 = (p + q + m - 1.0) * m * w / (c - 1.0) / c;
            A = A * d2 + Ap;
            B = B * d2 + Bp;
            r2 = A / B;
            // The convergents rise, so the test is signed.
            bSettled = (r2 - r1) / r1 < KERNEL_SERIES_EPS;
            if (bSettled)
                break;
        }
        if (!bSettled)
            return 4;
        *out = (r1 + r2) / 2.0;
        kernel_method_code = 1;
        kernel_terms_a = m - 1;
        return 0;
    }
    *out = beta_small_tail(x, p, q) / std::pow(q, p - 1.0) / std::pow(x, p - 1.0) /
           std::pow(1.0 - x, q);
    kernel_method_code = 2;
    kernel_terms_a = 12;
    return 0;
}

int beta_Jabx(double a, double b, double x, double* J)
{
    const double w = (1.0 - x) / x;
    double t = 1.0;
    double r = 0.0;
    int n = 0;
    while (std::fabs(t) >= KERNEL_SERIES_EPS && r >= -0.5 && n <= kMaxSeriesTerms)
    {
        ++n;
        r = ((a - n) / (n + b)) * w;
        t *= r;
    }
    if (n > kMaxSeriesTerms)
    {
        kernel_raise(kBetaDf, 4, 'F');
        return 4;
    }
    double v;
    if (std::fabs(t) < KERNEL_SERIES_EPS)
    {
        v = a - 1.0 < n ? x : 1.0;
        kernel_method_code = 0;
    }
    else
    {
        // The scan stopped on alternating terms; only a shape that is not a
        // number, or beyond every admissible size, fails this test.
        const double whole = std::floor(a);
        if (!(whole >= 0.0 && whole <= 2.0 * KERNEL_MAX_X))
        {
            kernel_raise(kBetaDf, 4, 'F');
            return 4;
        }
        n = static_cast<int>(whole);
        if (beta_Jcf(a - whole, b + whole, x, &v) != 0)
        {
            kernel_raise(kBetaDf, 4, 'F');
            return 4;
        }
    }
    for (int k = n; k >= 1; --k)
        v = v * ((a - k) / (k + b)) * w + 1.0;
    *J = v;
    kernel_terms = n;
    kernel_raise(kBetaDf, 0, 'N');
    return 0;
}

double digamma_fn(double x)
{
    double shift = 0.0;
    while (x < 10.0)
    {
        shift -= 1.0 / x;
        x += 1.0;
    }
    const double x2 = 1.0 / (x * x);
    double series = 0.0;
    double power = x2;
    for (int k = 1; k <= 7; ++k)
    {
        series += kBernoulli[k - 1] / (2.0 * k) * power;
        power *= x2;
    }
    return shift + std::log(x) - 0.5 / x - series;
}

double trigamma_fn(double x)
{
    double shift = 0.0;
    while (x < 10.0)
    {
        shift += 1.0 / (x * x);
        x += 1.0;
    }
    const double x2 = 1.0 / (x * x);
    double series = 0.0;
    double power = x2 / x;
    for (int k = 1; k <= 7; ++k)
    {
        series += kBernoulli[k - 1] * power;
        power *= x2;
    }
    return shift + 1.0 / x + 0.5 * x2 + series;
}

double tetragamma_fn(double x)
{
    double shift = 0.0;
    while (x < 10.0)
    {
        shift -= 2.0 / (x * x * x);
        x += 1.0;
    }
    const double x2 = 1.0 / (x * x);
    double series = 0.0;
    double power = x2 * x2;
    for (int k = 1; k <= 7; ++k)
    {
        series += (2.0 * k + 1.0) * kBernoulli[k - 1] * power;
        power *= x2;
    }
    return shift - x2 - x2 / x - series;
}

double beta_ln_ratio(double a, double b)
{
    const double u = a + b;
    if (a >= 1e-5 && b < 50.0)
        return a * std::log(b) + ln_gamma(b) - ln_gamma(u);
    if (b >= 50.0)
    {
        const double c = 1.0 - 2.0 * a;
        const double v = (1.0 - a) * a;
        return (1.0 + (c - v / b - c * (1.0 + 3.0 * a - 3.0 * a * a) / (10.0 * b * b)) / (6.0 * b)) *
               v / (2.0 * b);
    }
    if (b < 0.006)
    {
        return (a - 1.0) * std::log(b) + std::log(u) + kEuler * a -
               (2.0 * b + a) * a * 0.5 * kZeta2 -
               a * (3.0 * b * b + 3.0 * a * b + a * a) / 6.0 * (-kTwoZeta3);
    }
    return (std::log(b) - digamma_fn(b)) * a - trigamma_fn(b) * a * a / 2.0 -
           tetragamma_fn(b) * a * a * a / 6.0;
}

double beta_small_tail(double x, double a, double b)
{
    const double g = gamma_one_minus(a);
    double h;
    if (a < 1e-5 || b >= 50.0)
        h = gamma_fn(a) * expm1_guarded(beta_ln_ratio(a, b));
    else
        h = gamma_fn(a) * (gamma_fn(b) * std::pow(b, a) / gamma_fn(a + b) - 1.0);
    const double y = x * b;
    const double ly = std::log(y);
    // (1 - y^a) / a, which tends to -log y as a |log y| vanishes.
    double p;
    if (KERNEL_TINY / a > std::fabs(ly))
        p = -ly;
    else
        p = -expm1_guarded(a * ly) / a;
    double t = (b - 1.0) * std::pow(y, a) * x / (1.0 + a);
    double s = t;
    int i = 2;
    for (; i <= kMaxSmallTailTerms; ++i)
    {
        if (!(std::fabs(t) > KERNEL_SERIES_EPS))
            break;
        t = -((b - i) / i) * ((a + i - 1.0) / (a + i)) * x * t;
        s += t;
    }
    kernel_terms_a = i - 1;
    return h - g + p + s;
}

double beta_median_guess(double a, double b)
{
    if (b >= 1.0 && a >= 0.6)
    {
        const double s = a + b;
        return a / s - (b - a) / (3.0 * s * s);
    }
    double v = ln_gamma(1.0 + a) - kLn2;
    if (b > 100.0)
        v += -a * std::log(b);
    else
        v += ln_gamma(b) - ln_gamma(a + b);
    if (std::fabs(v) < a * KERNEL_TINY)
        return 0.5;
    return std::min(0.5, std::exp(v / a));
}

void beta_df(double x, double a, double b, double* lower, double* upper, double* density)
{
    kernel_enter(kBetaDf);
    kernel_clear_diagnostics();

    // A NaN argument fails these tests as well.
    if (!(x >= 0.0 && x <= 1.0) || !(a > 0.0) || !(b > 0.0) || a > KERNEL_MAX_PARAM ||
        b > KERNEL_MAX_PARAM)
    {
        kernel_raise(kBetaDf, 2, 'F');
        return;
    }
    if (x < KERNEL_TINY)
    {
        *lower = 0.0;
        *upper = 1.0;
        *density = -1.0;
        kernel_method_code = 1;
        kernel_raise(kBetaDf, 0, 'F');
        return;
    }
    if (x == 1.0)
    {
        *lower = 1.0;
        *upper = 0.0;
        *density = -1.0;
        kernel_method_code = 2;
        kernel_raise(kBetaDf, 0, 'F');
        return;
    }
    if (std::min(a, b) < kMinShape)
    {
        *lower = b / (a + b);
        *upper = a / (a + b);
        *density = -1.0;
        kernel_method_code = 3;
        kernel_raise(kBetaDf, 1, 'F');
        return;
    }

    // The work is done left of the centre; the tails are swapped back at the end.
    const bool bSwap = x > 0.5;
    double* pLower = lower;
    double* pUpper = upper;
    if (bSwap)
    {
        std::swap(a, b);
        x = 1.0 - x;
        std::swap(pLower, pUpper);
    }

    double L;
    beta_log_pdf(a, b, x, &L);
    const double dens = L >= KERNEL_LOG_FLOOR ? std::exp(L) : 0.0;
    *density = dens;

    if (!(beta_median_guess(a, b) < x))
    {
        double I = 1.0;
        if (L >= KERNEL_LOG_FLOOR)
        {
            if (beta_Iabx(a, b, x, &I) != 0)
                return;
            if (std::log(I) + L >= KERNEL_LOG_FLOOR)
            {
                *pLower = dens * I;
                *pUpper = 1.0 - *pLower;
                kernel_method_code = 10;
                kernel_raise(kBetaDf, 0, 'F');
            }
            else
            {
                *pLower = 0.0;
                *pUpper = 1.0;
                kernel_method_code = 15;
                kernel_raise(kBetaDf, 1, 'F');
            }
            return;
        }
        // I <= 1 / (1 - ((b-1)/(a+1)) x/(1-x)) bounds the series before it is run.
        // Of the two outcomes below only 30 can occur: 40 needs a lower tail
        // F(x) above exp(floor) > f(x), so F(x) > f(x), at an x left of the
        // median guess m.  Where the density rises on (0, x] (a >= 1, x at or
        // left of the mode) F(x) <= x f(x) <= f(x)/2.  Otherwise the density
        // falls on [x, m'] with m' = min(m, 1/2) (everywhere for a < 1 < b,
        // right of the mode for a >= 1), so log f(x) >= log f(m'), and
        // log f(m') > -0.07 for every admissible pair with b > 1 (checked on
        // a grid of step 0.05 in log a and log b): L < floor cannot hold.
        if (b > 1.0 &&
            L - mLogOneMinus(((b - 1.0) / (a + 1.0)) * x / (1.0 - x)) >= KERNEL_LOG_FLOOR)
        {
            if (beta_Iabx(a, b, x, &I) != 0)
                return;
            const double lnLower = std::log(I) + L;
            if (lnLower >= KERNEL_LOG_FLOOR)
            {
                *pLower = std::exp(lnLower);
                *pUpper = 1.0 - *pLower;
                kernel_method_code = 40;
                kernel_raise(kBetaDf, 0, 'F');
            }
            else
            {
                *pLower = 0.0;
                *pUpper = 1.0;
                kernel_method_code = 30;
                kernel_raise(kBetaDf, 1, 'F');
            }
            return;
        }
        *pLower = 0.0;
        *pUpper = 1.0;
        kernel_method_code = 20;
        kernel_raise(kBetaDf, 1, 'F');
        return;
    }

    const double E = L + std::log(1.0 - x) - std::log(b);
    if (a < 1.0 && x * b < 1.0)
    {
        const double T = beta_small_tail(x, a, b);
        const double lnRatio = beta_ln_ratio(a, b);
        if (std::log(T) - ln_gamma(a) - lnRatio < KERNEL_LOG_FLOOR)
            *pUpper = 0.0;
        else
            *pUpper = T / gamma_fn(a) / std::exp(lnRatio);
        *pLower = 1.0 - *pUpper;
        kernel_method_code += 50;
        kernel_raise(kBetaDf, 0, 'F');
        return;
    }
    double J = 1.0;
    if (E >= KERNEL_LOG_FLOOR)
    {
        if (beta_Jabx(a, b, x, &J) != 0)
            return;
        *pUpper = std::exp(E) * J;
        *pLower = 1.0 - *pUpper;
        kernel_method_code += 60;
        kernel_raise(kBetaDf, 0, 'F');
        return;
    }
    // J <= 1 / (1 - ((a-1)/(b+1)) (1-x)/x) bounds the series before it is run.
    if (a <= 1.0 ||
        E - mLogOneMinus(((a - 1.0) / (b + 1.0)) * (1.0 - x) / x) < KERNEL_LOG_FLOOR)
    {
        *pUpper = 0.0;
        *pLower = 1.0;
        kernel_method_code = 70;
        kernel_raise(kBetaDf, 1, 'F');
        return;
    }
    if (beta_Jabx(a, b, x, &J) != 0)
        return;
    const double lnUpper = std::log(J) + E;
    if (lnUpper >= KERNEL_LOG_FLOOR)
    {
        *pUpper = std::exp(lnUpper);
        *pLower = 1.0 - *pUpper;
        kernel_method_code += 90;
        kernel_raise(kBetaDf, 0, 'F');
        return;
    }
    *pUpper = 0.0;
    *pLower = 1.0;
    kernel_method_code += 80;
    kernel_raise(kBetaDf, 1, 'F');
}

void beta_newton(double p, double a, double b, double* x, char tail)
{
    double delta = 0.0;
    double s = 1.0;
    double prev = -1.0;
    double lower = 0.0, upper = 0.0, density = 0.0;
    int rounds = 0;
    while (rounds < kMaxNewtonRounds)
    {
        ++rounds;
        // A step back onto the point before would start a two-cycle; half of
        // it breaks the cycle.
        if (std::fabs(*x + delta - prev) < kDoubleEps)
            delta *= 0.5;
        prev = *x;
        *x += delta;
        beta_df(*x, a, b, &lower, &upper, &density);
        if (kernel_error_code > 1)
        {
            kernel_raise(kBetaNewton, 4, 'F');
            return;
        }
        if (tail == 'L')
        {
            delta = (p - lower) / density;
            s = lower / density;
        }
        else
        {
            delta = (upper - p) / density;
            s = upper / density;
        }
        s = std::min(s, *x);
        if (std::fabs(delta) <= s * KERNEL_SERIES_EPS)
            break;
    }
    if (std::fabs(delta) < s * KERNEL_SERIES_EPS)
    {
        kernel_terms = rounds;
        kernel_raise(kBetaNewton, 0, 'N');
    }
    else
    {
        kernel_raise(kBetaNewton, 4, 'F');
    }
}
