// The continued fraction and the asymptotic expansions of the incomplete beta
// ratio I_x(a, b), after DiDonato and Morris, ACM TOMS 708 (1992):
//   * BFRAC, the continued fraction of the publication for a, b > 1 and
//     lambda = (a + b) y - b >= 0, evaluated forward with the convergents
//     rescaled at every step; the leading factor comes from BRCOMP;
//   * BASYM, the asymptotic expansion for large a and b near the mean
//     (lambda small against a and b), in terms of erfc and the coefficients
//     of the expansion generated recursively, up to 20 terms;
//   * BGRAT, the asymptotic expansion for large a and b <= 1 in terms of the
//     incomplete gamma ratio Q(b, z) from GRAT1, up to 30 terms; the result is
//     added to the caller's partial sum so that the convergence test can
//     take it into account.
// The continued fraction stops on convergence, and at the latest after
// kMaxFractionSteps steps (NaN arguments would otherwise never satisfy the
// test); the arguments BRATIO gives it converge long before.
#include "qel/betaroutines.h"
#include "qel/specialroutines.h"

#include <cmath>

namespace
{

const int kMaxFractionSteps = 10000;

// The publication's constants to fifteen digits: 2/sqrt(pi), 2^(-3/2) and
// sqrt(pi)/4.
const double kTwoOverSqrtPi = 1.12837916709551;
const double kTwoPowMinus1p5 = 0.353553390593274;
const double kSqrtPiOver4 = 0.443113462726380;

// The number of terms of BASYM; even, the arrays hold one more.
const int kAsymTerms = 20;

// The number of terms of BGRAT.
const int kGratTerms = 30;

double alnrel(double dA)
{
    return ALNREL(&dA);
}
double gam1(double dA)
{
    return GAM1(&dA);
}
double rlog1(double dX)
{
    return RLOG1(&dX);
}
double algdiv(double dA, double dB)
{
    return ALGDIV(&dA, &dB);
}
double bcorr(double dA, double dB)
{
    return BCORR(&dA, &dB);
}
double erfc1Scaled(double dX)
{
    int iInd = 1;
    return ERFC1(&iInd, &dX);
}

} // namespace

extern "C" double BFRAC(double* pa, double* pb, double* px, double* py, double* plambda,
                        double* peps)
{
    const double a = *pa, b = *pb, x = *px, y = *py, lambda = *plambda, eps = *peps;
    const double factor = BRCOMP(pa, pb, px, py);
    if (factor == 0.0)
        return 0.0;

    const double c = 1.0 + lambda;
    const double c0 = b / a;
    const double c1 = 1.0 + 1.0 / a;
    const double yp1 = y + 1.0;

    double p = 1.0;
    double s = a + 1.0;
    double an = 0.0;
    double bn = 1.0;
    double anp1 = 1.0;
    double bnp1 = c / c1;
    double r = c1 / c;

    for (int n = 1; n <= kMaxFractionSteps; ++n)
    {
        const double dn = n;
        double t = dn / a;
        const double w = dn * (b - dn) * x;
        double e = a / s;
        const double alpha = (p * (p + c0) * e * e) * (w * x);
        e = (1.0 + t) / (c1 + t + t);
        const double beta = dn + w / s + e * (c + dn * yp1);
        p = 1.0 + t;
        s += 2.0;

        t = alpha * an + beta * anp1;
        an = anp1;
        anp1 = t;
        t = alpha * bn + beta * bnp1;
        bn = bnp1;
        bnp1 = t;

        const double r0 = r;
        r = anp1 / bnp1;
        if (std::fabs(r - r0) <= eps * r)
            break;

        an /= bnp1;
        bn /= bnp1;
        anp1 = r;
        bnp1 = 1.0;
    }
    return factor * r;
}

extern "C" double BASYM(double* pa, double* pb, double* plambda, double* peps)
{
    const double a = *pa, b = *pb, lambda = *plambda, eps = *peps;

    // Index 0 is unused, so that the indices read as in the recurrences.
    double a0[kAsymTerms + 2], b0[kAsymTerms + 2], c[kAsymTerms + 2], d[kAsymTerms + 2];

    double h, r0, r1, w0;
    if (a < b)
    {
        h = a / b;
        r0 = 1.0 / (1.0 + h);
        r1 = (b - a) / b;
        w0 = 1.0 / std::sqrt(a * (1.0 + h));
    }
    else
    {
        h = b / a;
        r0 = 1.0 / (1.0 + h);
        r1 = (b - a) / a;
        w0 = 1.0 / std::sqrt(b * (1.0 + h));
    }

    const double f = a * rlog1(-lambda / a) + b * rlog1(lambda / b);
    const double t = std::exp(-f);
    if (t == 0.0)
        return 0.0;
    const double z0 = std::sqrt(f);
    const double z = 0.5 * (z0 / kTwoPowMinus1p5);
    const double z2 = f + f;

    a0[1] = (2.0 / 3.0) * r1;
    c[1] = -0.5 * a0[1];
    d[1] = -c[1];
    double j0 = kSqrtPiOver4 * erfc1Scaled(z0);
    double j1 = kTwoPowMinus1p5;
    double sum = j0 + d[1] * w0 * j1;

    double s = 1.0;
    const double h2 = h * h;
    double hn = 1.0;
    double w = w0;
    double znm1 = z;
    double zn = z2;
    for (int n = 2; n <= kAsymTerms; n += 2)
    {
        hn *= h2;
        a0[n] = 2.0 * r0 * (1.0 + h * hn) / (n + 2.0);
        const int np1 = n + 1;
        s += hn;
        a0[np1] = 2.0 * r1 * s / (n + 3.0);

        for (int i = n; i <= np1; ++i)
        {
            const double r = -0.5 * (i + 1.0);
            b0[1] = r * a0[1];
            for (int m = 2; m <= i; ++m)
            {
                double bsum = 0.0;
                for (int j = 1; j <= m - 1; ++j)
                    bsum += (j * r - (m - j)) * a0[j] * b0[m - j];
                b0[m] = r * a0[m] + bsum / m;
            }
            c[i] = b0[i] / (i + 1.0);
            double dsum = 0.0;
            for (int j = 1; j <= i - 1; ++j)
                dsum += d[i - j] * c[j];
            d[i] = -(dsum + c[i]);
        }

        j0 = kTwoPowMinus1p5 * znm1 + (n - 1.0) * j0;
        j1 = kTwoPowMinus1p5 * zn + n * j1;
        znm1 *= z2;
        zn *= z2;
        w *= w0;
        const double t0 = d[n] * w * j0;
        w *= w0;
        const double t1 = d[np1] * w * j1;
        sum += t0 + t1;
        if (std::fabs(t0) + std::fabs(t1) <= eps * sum)
            break;
    }

    const double u = std::exp(-bcorr(a, b));
    return kTwoOverSqrtPi * t * u * sum;
}

extern "C" void BGRAT(double* pa, double* pb, double* px, double* py, double* pw, double* peps,
                      int* ierr)
{
    const double a = *pa, b = *pb, x = *px, y = *py, eps = *peps;
    *ierr = 1;

    const double bm1 = (b - 0.5) - 0.5;
    const double nu = a + 0.5 * bm1;
    const double lnx = y > 0.375 ? std::log(x) : alnrel(-y);
    double z = -nu * lnx;
    if (b * z == 0.0)
        return;

    // r = exp(-z) z^b / Gamma(b), as GRAT1 wants it (x^nu = exp(-z)); u is
    // the scale of the expansion, r Gamma(a + b) / (Gamma(a) nu^b).
    double r = b * (1.0 + gam1(b)) * std::exp(b * std::log(z));
    r *= std::exp(a * lnx) * std::exp(0.5 * bm1 * lnx);
    const double u = r * std::exp(-(algdiv(b, a) + b * std::log(nu)));
    if (u == 0.0)
        return;

    double bb = b, eps1 = eps, p = 0.0, q = 0.0;
    GRAT1(&bb, &z, &r, &p, &q, &eps1);

    const double v = 0.25 * ((1.0 / nu) * (1.0 / nu));
    const double t2 = 0.25 * lnx * lnx;
    const double l = *pw / u;
    double j = q / r;
    double sum = j;
    double t = 1.0;
    double cn = 1.0;
    double n2 = 0.0;
    double cTerms[kGratTerms + 1], dTerms[kGratTerms + 1];
    for (int n = 1; n <= kGratTerms; ++n)
    {
        const double bp2n = b + n2;
        j = (bp2n * (bp2n + 1.0) * j + (z + bp2n + 1.0) * t) * v;
        n2 += 2.0;
        t *= t2;
        cn /= n2 * (n2 + 1.0);
        cTerms[n] = cn;
        double s = 0.0;
        double coef = b - n;
        for (int i = 1; i <= n - 1; ++i)
        {
            s += coef * cTerms[i] * dTerms[n - i];
            coef += b;
        }
        dTerms[n] = bm1 * cn + s / n;
        const double dj = dTerms[n] * j;
        sum += dj;
        if (!(sum > 0.0))
            return;
        if (std::fabs(dj) <= eps * (sum + l))
            break;
    }
    *ierr = 0;
    *pw += u * sum;
}
