// The incomplete gamma ratios P(a, x) and Q(a, x) = 1 - P(a, x), by GRATIO
// of DiDonato and Morris, "Computation of the incomplete gamma function
// ratios and their inverse", ACM TOMS 12 (1986), Algorithm 654, in double
// precision, with the small-argument form GRAT1 and the elementary helpers
// that ACM TOMS 708 shares with it.
//
// Regimes of XGRATIO (big, x0, e0 depend on the accuracy asked for):
//   * 1 <= a < big, a <= x < x0, 2a whole: finite sums for Q, exact for
//     whole and half-whole a;
//   * a = 0.5: the error function of sqrt(x);
//   * a < 1, x < 1.1: the Taylor series of P/x^a;
//   * a < 1, x >= 1.1: r = a x^a e^-x (1 + GAM1(a)), then the continued
//     fraction;
//   * 1 <= a < big: r = x^a e^-x / Gamma(a); the Taylor series of P/r for
//     x <= max(a, ln 10), Legendre's continued fraction of Q/r for x < x0,
//     and the asymptotic series in a/x beyond;
//   * a >= big: Temme's uniform expansion near the transition
//     (|1 - x/a| <= 0.4; the special form for |1 - x/a| <= e0/sqrt(a)),
//     otherwise r by Stirling's series and the three forms above.
// Here Gamma(a) in r is taken from the library's Lanczos log gamma XGAMMLN,
// not from the gamma routine of the publication.
//
// The published constants are kept to fifteen digits as published.

#include "qel/specialroutines.h"

#include <algorithm>
#include <cmath>

namespace
{

double mSpmpar(int iIndex)
{
    return SPMPAR(&iIndex);
}
double mGam1(double dA)
{
    return GAM1(&dA);
}
double mRexp(double dX)
{
    return REXP(&dX);
}
double mRlog(double dX)
{
    return RLOG(&dX);
}
double mErf(double dX)
{
    return ERF(&dX);
}
double mErfc1(int iScaled, double dX)
{
    return ERFC1(&iScaled, &dX);
}

// Rational part shared by RLOG and RLOG1: for u near 0 and r = u/(u + 2),
// u - log(1 + u) = 2 r^2 (1/(1 - r) - r w(r^2)).
double mLogRemainder(double dU)
{
    const double p0 = 0.333333333333333;
    const double p1 = -0.224696413112536;
    const double p2 = 0.00620886815375787;
    const double q1 = -1.27408923933623;
    const double q2 = 0.354508718369557;
    const double dR = dU / (dU + 2.0);
    const double dT = dR * dR;
    const double dW = ((p2 * dT + p1) * dT + p0) / ((q2 * dT + q1) * dT + 1.0);
    return 2.0 * dT * (1.0 / (1.0 - dR) - dR * dW);
}

// Shifts of the two outer arms: the value of u - log(1 + u) at the point
// about which the argument is re-expanded.
const double kRlogShiftLow = 0.0566749439387324;
const double kRlogShiftHigh = 0.0456512608815524;

// Continued fraction for Q(a, x)/r (Legendre), evaluated by the
// even and odd convergents; stops when two successive convergents agree to
// dTol relative.
double mContinuedFraction(double dA, double dX, double dTol)
{
    double dA2nm1 = 1.0;
    double dA2n = 1.0;
    double dB2nm1 = dX;
    double dB2n = dX + (1.0 - dA);
    double dC = 1.0;
    for (;;)
    {
        dA2nm1 = dX * dA2n + dC * dA2nm1;
        dB2nm1 = dX * dB2n + dC * dB2nm1;
        const double dAm0 = dA2nm1 / dB2nm1;
        dC += 1.0;
        const double dCma = dC - dA;
        dA2n = dA2nm1 + dCma * dA2n;
        dB2n = dB2nm1 + dCma * dB2n;
        const double dAn0 = dA2n / dB2n;
        if (!(std::fabs(dAn0 - dAm0) >= dTol * dAn0))
            return dAn0;
    }
}

// Taylor series of P(a, x)/x^a for a <= 1, x < 1.1, turned into P and Q:
// the second form through REXP is used where P is close to 1 and Q must be
// taken without cancellation.
void mSmallShapeSeries(double dA, double dX, double dTol, double* pdP, double* pdQ)
{
    double dAn = 3.0;
    double dC = dX;
    double dSum = dX / (dA + 3.0);
    double dT;
    do
    {
        dAn += 1.0;
        dC = -dC * (dX / dAn);
        dT = dC / (dA + dAn);
        dSum += dT;
    } while (std::fabs(dT) > dTol);

    const double dJ = dA * dX * ((dSum / 6.0 - 0.5 / (dA + 2.0)) * dX + 1.0 / (dA + 1.0));
    const double dZ = dA * std::log(dX);
    const double dH = mGam1(dA);
    const double dG = 1.0 + dH;

    const bool bComplementForm = (dX < 0.25) ? (dZ > -0.13394) : (dA < dX / 2.59);
    if (!bComplementForm)
    {
        const double dW = std::exp(dZ);
        *pdP = dW * dG * (0.5 + (0.5 - dJ));
        *pdQ = 0.5 + (0.5 - *pdP);
        return;
    }
    const double dL = mRexp(dZ);
    const double dW = 0.5 + (0.5 + dL);
    *pdQ = (dW * dJ - dL) * dG - dH;
    if (*pdQ < 0.0)
    {
        *pdP = 1.0;
        *pdQ = 0.0;
        return;
    }
    *pdP = 0.5 + (0.5 - *pdQ);
}

// Temme's coefficients d_k,n of the uniform expansion (TOMS 654).
const double kD0[13] = {0.833333333333333e-01,  -0.148148148148148e-01, 0.115740740740741e-02,
                        0.352733686067019e-03,  -0.178755144032922e-03, 0.391926317852244e-04,
                        -0.218544851067999e-05, -0.185406221071516e-05, 0.829671134095309e-06,
                        -0.176659527368261e-06, 0.670785354340150e-08,  0.102618097842403e-07,
                        -0.438203601845335e-08};
const double kD10 = -0.185185185185185e-02;
const double kD1[12] = {-0.347222222222222e-02, 0.264550264550265e-02,  -0.990226337448560e-03,
                        0.205761316872428e-03,  -0.401877572016461e-06, -0.180985503344900e-04,
                        0.764916091608111e-05,  -0.161209008945634e-05, 0.464712780280743e-08,
                        0.137863344691572e-06,  -0.575254560351770e-07, 0.119516285997781e-07};
const double kD20 = 0.413359788359788e-02;
const double kD2[10] = {-0.268132716049383e-02, 0.771604938271605e-03,  0.200938786008230e-05,
                        -0.107366532263652e-03, 0.529234488291201e-04,  -0.127606351886187e-04,
                        0.342357873409614e-07,  0.137219573090629e-05,  -0.629899213838006e-06,
                        0.142806142060642e-06};
const double kD30 = 0.649434156378601e-03;
const double kD3[8] = {0.229472093621399e-03,  -0.469189494395256e-03, 0.267720632062839e-03,
                       -0.756180167188398e-04, -0.239650511386730e-06, 0.110826541153473e-04,
                       -0.567495282699160e-05, 0.142309007324359e-05};
const double kD40 = -0.861888290916712e-03;
const double kD4[6] = {0.784039221720067e-03,  -0.299072480303190e-03, -0.146384525788434e-05,
                       0.664149821546512e-04,  -0.396836504717943e-04, 0.113757269706784e-04};
const double kD50 = -0.336798553366358e-03;
const double kD5[4] = {-0.697281375836586e-04, 0.277275324495939e-03, -0.199325705161888e-03,
                       0.679778047793721e-04};
const double kD60 = 0.531307936463992e-03;
const double kD6[2] = {-0.592166437353694e-03, 0.270878209671804e-03};
const double kD70 = 0.344367606892378e-03;

const double kThird = 0.333333333333333;
const double kRootTwoPiInverse = 0.398942280401433;
const double kRootPi = 1.77245385090552;
const double kLog10 = 2.30258509299405;

// c0 + d[0] z + ... + d[n-1] z^n, by Horner's rule.
double mPoly(const double* pdD, int n, double dZ, double dC0)
{
    double dSum = pdD[n - 1];
    for (int i = n - 2; i >= 0; --i)
        dSum = dSum * dZ + pdD[i];
    return dSum * dZ + dC0;
}

// The sum over k of C_k(z) u^k of Temme's expansion, with the number of terms
// in each coefficient chosen by the accuracy setting.  bNear is the form for
// |1 - x/a| <= 1e-3 or e0/sqrt(a), where fewer powers of z are needed.
double mTemmeSum(int iOption, bool bNear, double dZ, double dU)
{
    if (iOption == 1)
    {
        if (!bNear)
        {
            const double c0 = mPoly(kD0, 13, dZ, -kThird);
            const double c1 = mPoly(kD1, 12, dZ, kD10);
            const double c2 = mPoly(kD2, 10, dZ, kD20);
            const double c3 = mPoly(kD3, 8, dZ, kD30);
            const double c4 = mPoly(kD4, 6, dZ, kD40);
            const double c5 = mPoly(kD5, 4, dZ, kD50);
            const double c6 = mPoly(kD6, 2, dZ, kD60);
            return ((((((kD70 * dU + c6) * dU + c5) * dU + c4) * dU + c3) * dU + c2) * dU + c1) *
                       dU +
                   c0;
        }
        const double c0 = mPoly(kD0, 7, dZ, -kThird);
        const double c1 = mPoly(kD1, 6, dZ, kD10);
        const double c2 = mPoly(kD2, 5, dZ, kD20);
        const double c3 = mPoly(kD3, 4, dZ, kD30);
        const double c4 = mPoly(kD4, 2, dZ, kD40);
        const double c5 = mPoly(kD5, 2, dZ, kD50);
        const double c6 = mPoly(kD6, 1, dZ, kD60);
        return ((((((kD70 * dU + c6) * dU + c5) * dU + c4) * dU + c3) * dU + c2) * dU + c1) * dU +
               c0;
    }
    if (iOption == 2)
    {
        if (!bNear)
        {
            const double c0 = mPoly(kD0, 6, dZ, -kThird);
            const double c1 = mPoly(kD1, 4, dZ, kD10);
            const double c2 = mPoly(kD2, 1, dZ, kD20);
            return (c2 * dU + c1) * dU + c0;
        }
        const double c0 = mPoly(kD0, 2, dZ, -kThird);
        const double c1 = mPoly(kD1, 1, dZ, kD10);
        return (kD20 * dU + c1) * dU + c0;
    }
    if (!bNear)
        return mPoly(kD0, 3, dZ, -kThird);
    return mPoly(kD0, 1, dZ, -kThird);
}

void mSetLimit(bool bLowerIsZero, double* pdAns, double* pdQans)
{
    *pdAns = bLowerIsZero ? 0.0 : 1.0;
    *pdQans = bLowerIsZero ? 1.0 : 0.0;
}

} // namespace

extern "C" {

double RLOG(double* x)
{
    const double dX = *x;
    if (dX < 0.61 || dX > 1.57)
        return ((dX - 0.5) - 0.5) - std::log(dX);
    if (dX < 0.82)
        return mLogRemainder((dX - 0.7) / 0.7) + (kRlogShiftLow - 0.3 * ((dX - 0.7) / 0.7));
    if (dX > 1.18)
    {
        const double dU = 0.75 * dX - 1.0;
        return mLogRemainder(dU) + (kRlogShiftHigh + dU / 3.0);
    }
    return mLogRemainder((dX - 0.5) - 0.5);
}

double RLOG1(double* x)
{
    const double dX = *x;
    if (dX < -0.39 || dX > 0.57)
        return dX - std::log((dX + 0.5) + 0.5);
    if (dX < -0.18)
    {
        const double dH = (dX + 0.3) / 0.7;
        return mLogRemainder(dH) + (kRlogShiftLow - 0.3 * dH);
    }
    if (dX > 0.18)
    {
        const double dH = 0.75 * dX - 0.25;
        return mLogRemainder(dH) + (kRlogShiftHigh + dH / 3.0);
    }
    return mLogRemainder(dX);
}

double REXP(double* x)
{
    const double dX = *x;
    if (std::fabs(dX) <= 0.15)
    {
        const double p1 = 9.14041914819518e-10;
        const double p2 = 0.0238082361044469;
        const double q1 = -0.499999999085958;
        const double q2 = 0.107141568980644;
        const double q3 = -0.0119041179760821;
        const double q4 = 5.95130811860248e-4;
        return dX * (((p2 * dX + p1) * dX + 1.0) /
                     ((((q4 * dX + q3) * dX + q2) * dX + q1) * dX + 1.0));
    }
    const double dW = std::exp(dX);
    if (dX > 0.0)
        return dW * (0.5 + (0.5 - 1.0 / dW));
    return (dW - 0.5) - 0.5;
}

double ESUM(int* mu, double* x)
{
    const double dMu = static_cast<double>(*mu);
    const double dX = *x;
    // Of opposite signs the sum is formed first; of equal signs it could
    // overflow or underflow, so the exponentials are multiplied.
    if (dX > 0.0)
    {
        if (*mu <= 0)
        {
            const double dW = dMu + dX;
            if (dW >= 0.0)
                return std::exp(dW);
        }
    }
    else if (*mu >= 0)
    {
        const double dW = dMu + dX;
        if (dW <= 0.0)
            return std::exp(dW);
    }
    return std::exp(dMu) * std::exp(dX);
}

void GRAT1(double* a, double* x, double* r, double* p, double* q, double* eps)
{
    const double dA = *a;
    const double dX = *x;

    if (dA * dX == 0.0)
    {
        mSetLimit(dX <= dA, p, q);
        return;
    }
    if (dA == 0.5)
    {
        if (dX < 0.25)
        {
            *p = mErf(std::sqrt(dX));
            *q = 0.5 + (0.5 - *p);
        }
        else
        {
            *q = mErfc1(0, std::sqrt(dX));
            *p = 0.5 + (0.5 - *q);
        }
        return;
    }
    if (dX < 1.1)
    {
        mSmallShapeSeries(dA, dX, 0.1 * *eps / (dA + 1.0), p, q);
        return;
    }
    *q = *r * mContinuedFraction(dA, dX, *eps);
    *p = 0.5 + (0.5 - *q);
}

void XGRATIO(double* a, double* x, double* ans, double* qans, int* ind)
{
    const double dA = *a;
    const double dX = *x;

    if (dA < 0.0 || dX < 0.0 || (dA == 0.0 && dX == 0.0))
    {
        *ans = 2.0;
        return;
    }
    if (dA * dX == 0.0)
    {
        mSetLimit(dX <= dA, ans, qans);
        return;
    }

    static const double kAccuracy[3] = {5e-15, 5e-07, 0.0005};
    static const double kBig[3] = {20.0, 14.0, 10.0};
    static const double kE0[3] = {0.00025, 0.025, 0.14};
    static const double kX0[3] = {31.0, 17.0, 9.7};

    const int iOption = (*ind == 0) ? 1 : (*ind == 1 ? 2 : 3);
    const double dE = mSpmpar(1);
    const double dAcc = std::max(kAccuracy[iOption - 1], dE);
    const double dE0 = kE0[iOption - 1];
    const double dX0 = kX0[iOption - 1];

    // r = x^a e^-x / Gamma(a), the common factor of the series and fractions.
    double dR;

    if (dA < 1.0)
    {
        if (dA == 0.5)
        {
            if (dX < 0.25)
            {
                *ans = mErf(std::sqrt(dX));
                *qans = 0.5 + (0.5 - *ans);
            }
            else
            {
                *qans = mErfc1(0, std::sqrt(dX));
                *ans = 0.5 + (0.5 - *qans);
            }
            return;
        }
        if (dX < 1.1)
        {
            mSmallShapeSeries(dA, dX, 3.0 * dAcc / (dA + 1.0), ans, qans);
            return;
        }
        const double dU = dA * std::exp(dA * std::log(dX) - dX);
        if (dU == 0.0)
        {
            mSetLimit(false, ans, qans);
            return;
        }
        dR = dU * (1.0 + mGam1(dA));
        *qans = dR * mContinuedFraction(dA, dX, std::max(5.0 * dE, dAcc));
        *ans = 0.5 + (0.5 - *qans);
        return;
    }

    if (dA < kBig[iOption - 1])
    {
        if (dA <= dX && dX < dX0)
        {
            const double dTwoA = dA + dA;
            const int m = static_cast<int>(dTwoA);
            if (dTwoA == static_cast<double>(m))
            {
                // Q(n, x) = e^-x (1 + x + ... + x^(n-1)/(n-1)!), and for
                // a = n + 1/2 the same sum over half-whole powers added to
                // erfc(sqrt(x)).
                const int i = m / 2;
                double dSum;
                double dT;
                double dC;
                int n;
                if (dA == static_cast<double>(i))
                {
                    dSum = std::exp(-dX);
                    dT = dSum;
                    n = 1;
                    dC = 0.0;
                }
                else
                {
                    const double dRootX = std::sqrt(dX);
                    dSum = mErfc1(0, dRootX);
                    dT = std::exp(-dX) / (kRootPi * dRootX);
                    n = 0;
                    dC = -0.5;
                }
                while (n != i)
                {
                    ++n;
                    dC += 1.0;
                    dT = (dX * dT) / dC;
                    dSum += dT;
                }
                *qans = dSum;
                *ans = 0.5 + (0.5 - *qans);
                return;
            }
        }
        double dShape = dA;
        dR = std::exp(dA * std::log(dX) - dX - XGAMMLN(&dShape));
    }
    else
    {
        const double dL = dX / dA;
        if (dL == 0.0)
        {
            mSetLimit(true, ans, qans);
            return;
        }
        const double dS = 0.5 + (0.5 - dL);
        double dZ = mRlog(dL);
        if (dZ >= 700.0 / dA)
        {
            if (std::fabs(dS) <= 2.0 * dE)
            {
                *ans = 2.0;
                return;
            }
            mSetLimit(dX <= dA, ans, qans);
            return;
        }
        const double dY = dA * dZ;
        const double dRootA = std::sqrt(dA);

        if (std::fabs(dS) <= dE0 / dRootA)
        {
            // Temme's expansion at the transition point x = a.
            if (dA * dE * dE > 3.28e-3)
            {
                *ans = 2.0;
                return;
            }
            const double dC = 0.5 + (0.5 - dY);
            const double dW = (0.5 - std::sqrt(dY) * (0.5 + (0.5 - dY / 3.0)) / kRootPi) / dC;
            const double dU = 1.0 / dA;
            dZ = std::sqrt(dZ + dZ);
            if (dL < 1.0)
                dZ = -dZ;
            const double dT = mTemmeSum(iOption, true, dZ, dU);
            if (dL < 1.0)
            {
                *ans = dC * (dW - kRootTwoPiInverse * dT / dRootA);
                *qans = 0.5 + (0.5 - *ans);
            }
            else
            {
                *qans = dC * (dW + kRootTwoPiInverse * dT / dRootA);
                *ans = 0.5 + (0.5 - *qans);
            }
            return;
        }

        if (std::fabs(dS) <= 0.4)
        {
            // Temme's uniform expansion with the scaled complementary error
            // function.
            if (std::fabs(dS) <= 2.0 * dE && dA * dE * dE > 3.28e-3)
            {
                *ans = 2.0;
                return;
            }
            const double dC = std::exp(-dY);
            const double dW = 0.5 * mErfc1(1, std::sqrt(dY));
            const double dU = 1.0 / dA;
            dZ = std::sqrt(dZ + dZ);
            if (dL < 1.0)
                dZ = -dZ;
            const bool bNear = (iOption == 1) && std::fabs(dS) <= 1e-3;
            const double dT = mTemmeSum(iOption, bNear, dZ, dU);
            if (dL < 1.0)
            {
                *ans = dC * (dW - kRootTwoPiInverse * dT / dRootA);
                *qans = 0.5 + (0.5 - *ans);
            }
            else
            {
                *qans = dC * (dW + kRootTwoPiInverse * dT / dRootA);
                *ans = 0.5 + (0.5 - *qans);
            }
            return;
        }

        // r by Stirling's series for log Gamma(a).
        const double dT = (1.0 / dA) * (1.0 / dA);
        double dT1 = (((0.75 * dT - 1.0) * dT + 3.5) * dT - 105.0) / (dA * 1260.0);
        dT1 -= dY;
        dR = kRootTwoPiInverse * dRootA * std::exp(dT1);
    }

    if (dR == 0.0)
    {
        mSetLimit(dX <= dA, ans, qans);
        return;
    }

    if (dX <= std::max(dA, kLog10))
    {
        // Taylor series for P/r; the first terms (at most 20) are kept and
        // added last, smallest first.
        double dWork[20];
        double dApn = dA + 1.0;
        double dT = dX / dApn;
        dWork[0] = dT;
        int n = 20;
        for (int k = 2; k <= 20; ++k)
        {
            dApn += 1.0;
            dT *= dX / dApn;
            if (dT <= 1e-3)
            {
                n = k;
                break;
            }
            dWork[k - 1] = dT;
        }
        double dSum = dT;
        const double dTol = 0.5 * dAcc;
        do
        {
            dApn += 1.0;
            dT *= dX / dApn;
            dSum += dT;
        } while (dT > dTol);
        for (int k = n - 1; k >= 1; --k)
            dSum += dWork[k - 1];
        *ans = (dR / dA) * (1.0 + dSum);
        *qans = 0.5 + (0.5 - *ans);
        return;
    }

    if (dX < dX0)
    {
        *qans = dR * mContinuedFraction(dA, dX, std::max(5.0 * dE, dAcc));
        *ans = 0.5 + (0.5 - *qans);
        return;
    }

    // Asymptotic series for Q/r in powers of (a - 1)/x, (a - 2)/x, ...; the
    // first terms (at most 20) are kept and added last.
    double dWork[20];
    double dAmn = dA - 1.0;
    double dT = dAmn / dX;
    dWork[0] = dT;
    int n = 20;
    for (int k = 2; k <= 20; ++k)
    {
        dAmn -= 1.0;
        dT *= dAmn / dX;
        if (std::fabs(dT) <= 1e-3)
        {
            n = k;
            break;
        }
        dWork[k - 1] = dT;
    }
    double dSum = dT;
    while (std::fabs(dT) > dAcc)
    {
        dAmn -= 1.0;
        dT *= dAmn / dX;
        dSum += dT;
    }
    for (int k = n - 1; k >= 1; --k)
        dSum += dWork[k - 1];
    *qans = (dR / dX) * (1.0 + dSum);
    *ans = 0.5 + (0.5 - *qans);
}

void GRATIO(double* a, double* x, double* ans, double* qans, int* ind)
{
    XGRATIO(a, x, ans, qans, ind);
}

} // extern "C"
