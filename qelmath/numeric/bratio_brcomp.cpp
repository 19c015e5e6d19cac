// The leading factor of the incomplete beta ratio, x^a y^b / B(a, b), and the
// same scaled by exp(mu), after DiDonato and Morris, ACM TOMS 708 (1992).
//
// Regimes, with a0 = min(a, b) and b0 = max(a, b):
//   * a0 >= 8: the factor is written about the mean x0 = a / (a + b) as
//     exp(-(a u + b v)) with u, v from rlog1 of the relative displacement, so
//     that neither x^a nor y^b is formed; Stirling's form of 1/B(a, b)
//     supplies sqrt(b x0) / sqrt(2 pi) and the correction BCORR;
//   * a0 >= 1: a log x + b log y minus BETALN, with log y taken as
//     log1p(-x) when x <= 0.375 and log x as log1p(-y) when y <= 0.375;
//   * a0 < 1: the same logarithms, and 1/B(a, b) through GAM1 and GAMLN1
//     (ALGDIV for b0 >= 8), which stay accurate for the small shape.
// BRCMP1 keeps exp(mu) apart until the last step, through ESUM, so that a
// factor below the smallest double can still be scaled back into range.
#include "qel/betaroutines.h"
#include "qel/specialroutines.h"

#include <algorithm>
#include <cmath>

namespace
{

// 1 / sqrt(2 pi), to the fifteen digits of the publication.
const double kInvSqrt2Pi = 0.398942280401433;

double alnrel(double dA)
{
    return ALNREL(&dA);
}
double gam1(double dA)
{
    return GAM1(&dA);
}
double gamln1(double dA)
{
    return GAMLN1(&dA);
}
double rlog1(double dX)
{
    return RLOG1(&dX);
}
double betaln(double dA, double dB)
{
    return BETALN(&dA, &dB);
}
double algdiv(double dA, double dB)
{
    return ALGDIV(&dA, &dB);
}
double bcorr(double dA, double dB)
{
    return BCORR(&dA, &dB);
}

// The exponential of z, times exp(mu) when a scale is given.
struct Scale
{
    const int* piMu;
    double mExp(double dZ) const
    {
        if (piMu == nullptr)
            return std::exp(dZ);
        int iMu = *piMu;
        return ESUM(&iMu, &dZ);
    }
};

// 1 / Gamma(1 + s) for 0 < s <= 2, within the range of GAM1: directly for
// s <= 1, through Gamma(1 + s) = s Gamma(s) above.
double reciprocalGammaOnePlus(double dS)
{
    if (dS <= 1.0)
        return 1.0 + gam1(dS);
    return (1.0 + gam1(dS - 1.0)) / dS;
}

double leadingFactor(const Scale& scale, double a, double b, double x, double y)
{
    if (x == 0.0 || y == 0.0)
        return 0.0;
    double a0 = std::min(a, b);
    if (a0 >= 8.0)
    {
        double h, x0, y0, lambda;
        if (a > b)
        {
            h = b / a;
            x0 = 1.0 / (1.0 + h);
            y0 = h / (1.0 + h);
            lambda = (a + b) * y - b;
        }
        else
        {
            h = a / b;
            x0 = h / (1.0 + h);
            y0 = 1.0 / (1.0 + h);
            lambda = a - (a + b) * x;
        }
        double e = -lambda / a;
        const double u = std::fabs(e) > 0.6 ? e - std::log(x / x0) : rlog1(e);
        e = lambda / b;
        const double v = std::fabs(e) > 0.6 ? e - std::log(y / y0) : rlog1(e);
        const double z = scale.mExp(-(a * u + b * v));
        return kInvSqrt2Pi * std::sqrt(b * x0) * z * std::exp(-bcorr(a, b));
    }

    double lnx, lny;
    if (x <= 0.375)
    {
        lnx = std::log(x);
        lny = alnrel(-x);
    }
    else if (y <= 0.375)
    {
        lnx = alnrel(-y);
        lny = std::log(y);
    }
    else
    {
        lnx = std::log(x);
        lny = std::log(y);
    }
    double z = a * lnx + b * lny;
    if (a0 >= 1.0)
        return scale.mExp(z - betaln(a, b));

    double b0 = std::max(a, b);
    if (b0 >= 8.0)
    {
        const double u = gamln1(a0) + algdiv(a0, b0);
        return a0 * scale.mExp(z - u);
    }
    if (b0 > 1.0)
    {
        // 1 < b0 < 8: reduce b0 to (0, 1] by the recurrence of the gamma
        // function, collecting the product in c.
        double u = gamln1(a0);
        const int n = static_cast<int>(b0 - 1.0);
        if (n >= 1)
        {
            double c = 1.0;
            for (int i = 1; i <= n; ++i)
            {
                b0 -= 1.0;
                c *= b0 / (a0 + b0);
            }
            u += std::log(c);
        }
        z -= u;
        b0 -= 1.0;
        const double t = reciprocalGammaOnePlus(a0 + b0);
        return a0 * scale.mExp(z) * (1.0 + gam1(b0)) / t;
    }

    // b0 <= 1.
    const double w = scale.mExp(z);
    if (w == 0.0)
        return 0.0;
    const double apb = a + b;
    const double c = (1.0 + gam1(a)) * (1.0 + gam1(b)) / reciprocalGammaOnePlus(apb);
    return w * (a0 * c) / (1.0 + a0 / b0);
}

} // namespace

extern "C" double BRCOMP(double* a, double* b, double* x, double* y)
{
    return leadingFactor(Scale{nullptr}, *a, *b, *x, *y);
}

extern "C" double BRCMP1(int* mu, double* a, double* b, double* x, double* y)
{
    return leadingFactor(Scale{mu}, *a, *b, *x, *y);
}
