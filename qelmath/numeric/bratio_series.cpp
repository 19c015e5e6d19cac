// The series forms of the incomplete beta ratio I_x(a, b), after DiDonato and
// Morris, ACM TOMS 708 (1992):
//   * BPSER, the power series
//       I_x(a, b) = x^a / (a B(a, b)) (1 + a sum_j (1 - b)_j x^j / (j! (a + j))),
//     for b <= 1 or b x <= 0.7, where it converges fast;
//   * APSER, the expansion of I_{1-x}(b, a) in the very small shape a
//     (a <= min(eps, eps b)), for b x <= 1 and x <= 0.5;
//   * FPSER, the expansion of I_x(a, b) in the very small shape b
//     (b < min(eps, eps a)), for x <= 0.5, using 1/B(a, b) = b to first order;
//   * BUP, the finite difference I_x(a, b) - I_x(a + n, b) as a sum of n
//     terms; when the terms grow, the leading factor is formed times exp(mu)
//     and the terms times exp(-mu), so that a leading factor below the
//     smallest double does not take the whole sum to 0.
// APSER takes the digamma function from the polygamma routine of Amos
// (ACM TOMS 610) through PSI.
//
// The open-ended loops stop on convergence; they also stop after kMaxTerms
// terms, far more than any argument within their regimes needs (their terms
// shrink at least like 0.7^j there), so that an argument outside the regimes
// or a NaN cannot keep a loop running.
#include "qel/betaroutines.h"
#include "qel/specialroutines.h"

#include <algorithm>
#include <cmath>

namespace
{

const int kMaxTerms = 10000;

// Euler's constant, to the fifteen digits of the publication.
const double kEulerGamma = 0.577215664901533;

double gam1(double dA)
{
    return GAM1(&dA);
}
double gamln1(double dA)
{
    return GAMLN1(&dA);
}
double betaln(double dA, double dB)
{
    return BETALN(&dA, &dB);
}
double algdiv(double dA, double dB)
{
    return ALGDIV(&dA, &dB);
}
double exparg(int iL)
{
    return EXPARG(&iL);
}
double psi(double dX)
{
    return PSI(&dX);
}

// 1 / Gamma(1 + s) for 0 < s <= 2, within the range of GAM1.
double reciprocalGammaOnePlus(double dS)
{
    if (dS <= 1.0)
        return 1.0 + gam1(dS);
    return (1.0 + gam1(dS - 1.0)) / dS;
}

} // namespace

extern "C" double BPSER(double* pa, double* pb, double* px, double* peps)
{
    const double a = *pa, b = *pb, x = *px, eps = *peps;
    if (x == 0.0)
        return 0.0;

    // The leading factor x^a / (a B(a, b)).
    double result;
    double a0 = std::min(a, b);
    if (a0 >= 1.0)
    {
        result = std::exp(a * std::log(x) - betaln(a, b)) / a;
    }
    else
    {
        double b0 = std::max(a, b);
        if (b0 >= 8.0)
        {
            const double u = gamln1(a0) + algdiv(a0, b0);
            result = (a0 / a) * std::exp(a * std::log(x) - u);
        }
        else if (b0 > 1.0)
        {
            // Reduce b0 into (0, 1] by the recurrence of the gamma function.
            double u = gamln1(a0);
            const int m = static_cast<int>(b0 - 1.0);
            if (m >= 1)
            {
                double c = 1.0;
                for (int i = 1; i <= m; ++i)
                {
                    b0 -= 1.0;
                    c *= b0 / (a0 + b0);
                }
                u += std::log(c);
            }
            const double z = a * std::log(x) - u;
            b0 -= 1.0;
            const double t = reciprocalGammaOnePlus(a0 + b0);
            result = std::exp(z) * (a0 / a) * (1.0 + gam1(b0)) / t;
        }
        else
        {
            result = std::pow(x, a);
            if (result == 0.0)
                return 0.0;
            const double apb = a + b;
            const double c = (1.0 + gam1(a)) * (1.0 + gam1(b)) / reciprocalGammaOnePlus(apb);
            result *= c * (b / apb);
        }
    }
    if (result == 0.0 || a <= 0.1 * eps)
        return result;

    double sum = 0.0;
    double c = 1.0;
    const double tol = eps / a;
    for (int n = 1; n <= kMaxTerms; ++n)
    {
        const double dn = n;
        c *= (0.5 + (0.5 - b / dn)) * x;
        const double w = c / (a + dn);
        sum += w;
        if (!(std::fabs(w) > tol))
            break;
    }
    return result * (1.0 + a * sum);
}

extern "C" double APSER(double* pa, double* pb, double* px, double* peps)
{
    const double a = *pa, b = *pb, x = *px, eps = *peps;
    const double bx = b * x;
    double t = x - bx;
    double c;
    if (b * eps <= 0.02)
        c = std::log(x) + psi(b) + kEulerGamma + t;
    else
        c = std::log(bx) + kEulerGamma + t;

    const double tol = 5.0 * eps * std::fabs(c);
    double s = 0.0;
    double j = 1.0;
    for (int n = 0; n < kMaxTerms; ++n)
    {
        j += 1.0;
        t *= x - bx / j;
        const double aj = t / j;
        s += aj;
        if (!(std::fabs(aj) > tol))
            break;
    }
    return -a * (c + s);
}

extern "C" double FPSER(double* pa, double* pb, double* px, double* peps)
{
    const double a = *pa, b = *pb, x = *px, eps = *peps;
    double result = 1.0;
    if (a > 1.0e-3 * eps)
    {
        const double t = a * std::log(x);
        if (t < exparg(1))
            return 0.0;
        result = std::exp(t);
    }
    // 1 / B(a, b) is b to the first order in b.
    result *= b / a;

    const double tol = eps / a;
    double an = a + 1.0;
    double t = x;
    double s = t / an;
    for (int n = 0; n < kMaxTerms; ++n)
    {
        an += 1.0;
        t *= x;
        const double c = t / an;
        s += c;
        if (!(std::fabs(c) > tol))
            break;
    }
    return result * (1.0 + a * s);
}

extern "C" double BUP(double* pa, double* pb, double* px, double* py, int* pn, double* peps)
{
    double a = *pa, b = *pb, x = *px, y = *py;
    const int n = *pn;
    const double eps = *peps;

    // Scale the first term by exp(-mu) when the terms grow, so that the first
    // one may be below the smallest double while their sum is not.
    const double apb = a + b;
    const double ap1 = a + 1.0;
    int mu = 0;
    double d = 1.0;
    if (n != 1 && a >= 1.0 && apb >= 1.1 * ap1)
    {
        mu = static_cast<int>(std::fabs(exparg(1)));
        const int k = static_cast<int>(exparg(0));
        if (k < mu)
            mu = k;
        d = std::exp(-static_cast<double>(mu));
    }

    double result = BRCMP1(&mu, &a, &b, &x, &y) / a;
    if (n == 1 || result == 0.0)
        return result;

    const int nm1 = n - 1;
    double w = d;

    // k is the index of the largest term: up to it the terms grow and are
    // all added; beyond it they shrink and the sum stops on convergence.
    int k = 0;
    if (b > 1.0)
    {
        if (y <= 1.0e-4)
        {
            k = nm1;
        }
        else
        {
            const double r = (b - 1.0) * x / y - a;
            if (r >= 1.0)
                k = r < static_cast<double>(nm1) ? static_cast<int>(r) : nm1;
        }
    }
    for (int i = 1; i <= k; ++i)
    {
        const double l = i - 1;
        d *= ((apb + l) / (ap1 + l)) * x;
        w += d;
    }
    if (k != nm1)
    {
        for (int i = k + 1; i <= nm1; ++i)
        {
            const double l = i - 1;
            d *= ((apb + l) / (ap1 + l)) * x;
            w += d;
            if (d <= eps * w)
                break;
        }
    }
    return result * w;
}
