// The incomplete gamma ratios P(a, x) and Q(a, x), worked in logarithms.
//
// The density is formed first as a logarithm L (gamma_log_pdf).  A rough median
// decides which tail is summed: at or left of it the lower tail by the series
// P = density (x / a) I(a, x), I = sum x^k / ((a+1)...(a+k)); right of it the
// upper tail Q = density J(a, x), where J is the finite (asymptotic) series
// sum of (a-1)...(a-k) / x^k, ended at the integer part of a and closed by
// the continued fraction of Legendre for the fractional part,
//     Gamma(p, x) = e^(-x) x^p / (x + (1-p) / (1 + 1 / (x + (2-p) / (1 + ...)))),
// evaluated by two-step recurrences, or, for x < 1, by the power series of the
// lower incomplete gamma function subtracted from Gamma(p).  The other tail is
// the complement of the one computed.  Series stop at a term of 1e-9, which
// bounds the attainable relative accuracy to about that size.
//
// A tail whose logarithm falls below KERNEL_LOG_FLOOR is set to 0 with code 1;
// where a bound on the series shows that this must happen, the series is not
// run at all.
//
// The median used to choose the tail is a - 1/3 for a >= 0.59, the first two
// terms of the median's expansion in large a, and below that the small-shape
// form (Gamma(a + 1) / 2)^(1/a), the point where x^a / Gamma(a + 1), the
// leading term of P(a, x), reaches one half.
//
// gamma_newton is Newton's method on the selected tail, with the step written
// relative to the tail-to-density ratio so that its stopping rule is relative.
#include "qelmath/kernels/gamma_core.h"

#include "qelmath/kernels/kernel_helpers.h"
#include "qelmath/kernels/kernel_protocol.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr int kMaxSeriesTerms = 1000000;
constexpr int kMaxFractionSteps = 80;
constexpr int kMaxSmallTailTerms = 40;
constexpr int kMaxNewtonRounds = 35;
constexpr double kLn2 = 0.6931471805599453;
const char* const kGammaDf = "gamma_df";
const char* const kGammaNewton = "gamma_newton";
} // namespace

int gamma_Iax(double a, double x, double* I)
{
    double t = 1.0;
    int n = 0;
    while (t >= KERNEL_SERIES_EPS && n <= kMaxSeriesTerms)
    {
        ++n;
        t *= x / (a + n);
    }
    if (n > kMaxSeriesTerms)
    {
        kernel_terms = 0;
        kernel_raise(kGammaDf, 4, 'F');
        return 4;
    }
    // Summed backward, from the smallest term up.
    double r = 1.0;
    for (int k = n; k >= 1; --k)
        r = r * x / (k + a) + 1.0;
    *I = r;
    kernel_terms = n;
    kernel_raise(kGammaDf, 0, 'N');
    return 0;
}

double gamma_small_tail(double x, double a)
{
    const double g = gamma_one_minus(a);
    const double lx = std::log(x);
    // (1 - x^a) / a, which tends to -log x as a |log x| vanishes.
    double p;
    if (KERNEL_TINY / a > std::fabs(lx))
        p = -lx;
    else
        p = -expm1_guarded(a * lx) / a;
    double t = std::pow(x, a + 1.0) / (a + 1.0);
    double s = t;
    int i = 2;
    for (; i <= kMaxSmallTailTerms; ++i)
    {
        if (std::fabs(t) <= KERNEL_SERIES_EPS)
            break;
        t = -(x / i) * ((a + i - 1.0) / (a + i)) * t;
        s += t;
    }
    kernel_terms_a = i - 1;
    return p - g + s;
}

int gamma_Jcf(double x, double p, double* out)
{
    if (x < 1.0)
    {
        *out = std::pow(x, 1.0 - p) * std::exp(x) * gamma_small_tail(x, p);
        kernel_method_code = 2;
        return 0;
    }
    // Convergents of Legendre's fraction two at a time: r1 after the partial
    // numerator k - p, r2 after the numerator k.  No rescaling is needed for
    // the 160 convergents this takes at most.
    double A = 1.0, Aprev = 0.0, B = 1.0, Bprev = 1.0;
    double r1 = 0.0, r2 = 0.0;
    int k = 0;
    bool bSettled = false;
    while (k < kMaxFractionSteps)
    {
        ++k;
        const double d = k - p;
        const double A2 = Aprev * d + A * x;
        const double B2 = Bprev * d + B * x;
        r1 = A2 / B2;
        const double A3 = A2 + k * A;
        const double B3 = B2 + k * B;
        r2 = A3 / B3;
        Aprev = A2;
        A = A3;
        Bprev = B2;
        B = B3;
        // The convergents rise, so the test is signed.
        bSettled = (r2 - r1) / r1 < KERNEL_SERIES_EPS;
        if (bSettled)
            break;
    }
    kernel_terms_a = k;
    if (!bSettled)
        return 4;
    *out = (r1 + r2) / 2.0;
    kernel_method_code = 1;
    return 0;
}

int gamma_Jax(double a, double x, double* J)
{
    double t = 1.0;
    int i = 0;
    // Past i = a - 1 the factors a - i turn negative and the series is only
    // asymptotic; an integer a ends on the factor a - a = 0.
    while (i <= a - 1.0 && i <= kMaxSeriesTerms)
    {
        ++i;
        t *= (a - i) / x;
        if (t < KERNEL_SERIES_EPS)
            break;
    }
    if (i > kMaxSeriesTerms)
    {
        kernel_raise(kGammaDf, 4, 'F');
        return 4;
    }
    double r = 1.0;
    if (t < KERNEL_SERIES_EPS)
    {
        kernel_method_code = 0;
    }
    else
    {
        const double whole = std::trunc(a);
        // Only a shape that is not a number can fail this test here.
        if (!(whole >= 0.0 && whole <= kMaxSeriesTerms))
        {
            kernel_raise(kGammaDf, 4, 'F');
            return 4;
        }
        i = static_cast<int>(whole);
        if (gamma_Jcf(x, a - whole, &r) != 0)
        {
            kernel_raise(kGammaDf, 4, 'F');
            return 4;
        }
    }
    for (int k = i; k >= 1; --k)
        r = r * (a - k) / x + 1.0;
    *J = r;
    kernel_terms = i;
    kernel_raise(kGammaDf, 0, 'N');
    return 0;
}

void gamma_df(double x, double a, double* lower, double* upper, double* density)
{
    kernel_enter(kGammaDf);
    kernel_clear_diagnostics();

    // A NaN shape or point is out of range as well.
    if (!(a > 0.0) || !(x >= 0.0) || a > KERNEL_MAX_PARAM)
    {
        kernel_raise(kGammaDf, 2, 'F');
        return;
    }
    if (x < KERNEL_TINY)
    {
        *lower = 0.0;
        *upper = 1.0;
        kernel_method_code = 1;
        kernel_raise(kGammaDf, 0, 'F');
        return;
    }
    if (x > KERNEL_MAX_X)
    {
        *lower = 1.0;
        *upper = 0.0;
        kernel_method_code = 2;
        kernel_raise(kGammaDf, 0, 'F');
        return;
    }

    double L;
    gamma_log_pdf(a, x, &L);
    *density = L >= KERNEL_LOG_FLOOR ? std::exp(L) : 0.0;

    double m;
    if (a >= 0.59)
    {
        m = a - 1.0 / 3.0;
    }
    else
    {
        const double e = (ln_gamma(a + 1.0) - kLn2) / a;
        m = e < KERNEL_LOG_FLOOR ? 0.0 : std::exp(e);
    }

    if (m >= x)
    {
        const double E = std::log(x / a) + L;
        double I = 1.0;
        if (E >= KERNEL_LOG_FLOOR)
        {
            kernel_method_code = 10;
            if (gamma_Iax(a, x, &I) != 0)
                return;
            *lower = std::exp(E) * I;
            *upper = 1.0 - *lower;
            kernel_raise(kGammaDf, 0, 'F');
            return;
        }
        // I <= 1 / (1 - x / (a + 1)) bounds the series before it is run.
        if (E - std::log(1.0 - x / (a + 1.0)) < KERNEL_LOG_FLOOR)
        {
            *lower = 0.0;
            *upper = 1.0;
            kernel_method_code = 20;
            kernel_raise(kGammaDf, 1, 'F');
            return;
        }
        kernel_method_code = 40;
        if (gamma_Iax(a, x, &I) != 0)
            return;
        const double lnLower = std::log(I) + E;
        if (lnLower >= KERNEL_LOG_FLOOR)
        {
            *lower = std::exp(lnLower);
            *upper = 1.0 - *lower;
            kernel_raise(kGammaDf, 0, 'F');
            return;
        }
        *lower = 0.0;
        *upper = 1.0;
        kernel_method_code = 30;
        kernel_raise(kGammaDf, 1, 'F');
        return;
    }

    if (a < 1.0 && x < 1.0)
    {
        const double T = gamma_small_tail(x, a);
        *upper = std::log(T) - ln_gamma(a) < KERNEL_LOG_FLOOR ? 0.0 : T / gamma_fn(a);
        *lower = 1.0 - *upper;
        kernel_method_code = 50;
        kernel_raise(kGammaDf, 0, 'F');
        return;
    }
    double J = 1.0;
    if (L >= KERNEL_LOG_FLOOR)
    {
        if (gamma_Jax(a, x, &J) != 0)
            return;
        kernel_method_code += 60;
        *upper = *density * J;
        *lower = 1.0 - *upper;
        kernel_raise(kGammaDf, 0, 'F');
        return;
    }
    if (a <= 1.0)
    {
        *upper = 0.0;
        *lower = 1.0;
        kernel_method_code = 70;
        kernel_raise(kGammaDf, 1, 'F');
        return;
    }
    // J <= 1 / (1 - (a - 1) / x) bounds the series before it is run.
    if (L - std::log(1.0 - (a - 1.0) / x) < KERNEL_LOG_FLOOR)
    {
        *upper = 0.0;
        *lower = 1.0;
        kernel_method_code = 80;
        kernel_raise(kGammaDf, 1, 'F');
        return;
    }
    if (gamma_Jax(a, x, &J) != 0)
        return;
    const double lnUpper = std::log(J) + L;
    if (lnUpper >= KERNEL_LOG_FLOOR)
    {
        *upper = std::exp(lnUpper);
        *lower = 1.0 - *upper;
        kernel_method_code += 100;
        kernel_raise(kGammaDf, 0, 'F');
        return;
    }
    *upper = 0.0;
    *lower = 1.0;
    kernel_method_code += 90;
    kernel_raise(kGammaDf, 1, 'F');
}

void gamma_newton(double p, double a, double* x, char tail)
{
    double delta = 0.0;
    double s = -1.0;
    double lower = 0.0, upper = 0.0, density = 0.0;
    int rounds = 0;
    while (rounds < kMaxNewtonRounds && std::fabs(delta) >= s * KERNEL_SERIES_EPS)
    {
        ++rounds;
        *x += delta;
        gamma_df(*x, a, &lower, &upper, &density);
        if (kernel_error_code >= 2)
        {
            kernel_raise(kGammaNewton, 4, 'F');
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
    }
    if (std::fabs(delta) < s * KERNEL_SERIES_EPS)
    {
        kernel_terms = rounds;
        kernel_raise(kGammaNewton, 0, 'N');
    }
    else
    {
        kernel_raise(kGammaNewton, 4, 'F');
    }
}
