// Log gamma, gamma and log beta for the special-function routines.
//
// XGAMMLN is the library's Lanczos sum (nine coefficients, g = 7), the same
// form as the guarded log gamma of the elementary functions but without any
// test of its argument; XGAMMA is its exponential.
//
// The others are the helpers of DiDonato and Morris, ACM TOMS 708, with the
// published coefficients to fifteen digits (they were tuned with those
// truncated values, so they are kept as published):
//   GAMLN1  log Gamma(1 + a) on [-0.2, 1.25] by two rational forms;
//   GAMLN   log Gamma(a), a > 0: GAMLN1 below 2.25, a product reduction below
//           10, Stirling's series with a six-term remainder above;
//   GAM1    1/Gamma(a + 1) - 1 on [-0.5, 1.5];
//   ALNREL  log(1 + a), by a rational in a/(a + 2) for |a| <= 0.375;
//   BCORR   the Stirling remainders del(a) + del(b) - del(a + b), a, b >= 8;
//   ALGDIV  log(Gamma(b) / Gamma(a + b)) for b >= 8;
//   GSUMLN  log Gamma(a + b) for 1 <= a, b <= 2;
//   BETALN  log B(a, b), reducing the arguments into the ranges above.

#include "qel/specialroutines.h"

#include <algorithm>
#include <cmath>

namespace
{

// Coefficients of the remainder del(x) of Stirling's series,
// log Gamma(x) = (x - 0.5) log x - x + 0.5 log(2 pi) + del(x), in powers of
// 1/x^2 (TOMS 708).
const double kStirlingC0 = 0.0833333333333333;
const double kStirlingC1 = -0.00277777777760991;
const double kStirlingC2 = 7.9365066682539e-4;
const double kStirlingC3 = -5.9520293135187e-4;
const double kStirlingC4 = 8.37308034031215e-4;
const double kStirlingC5 = -0.00165322962780713;

double mStirlingPolynomial(double dT)
{
    return ((((kStirlingC5 * dT + kStirlingC4) * dT + kStirlingC3) * dT + kStirlingC2) * dT +
            kStirlingC1) *
               dT +
           kStirlingC0;
}

// del(b) - del(a + b) for b >= 8, with x = b/(a + b) and c = a/(a + b):
// each power series term of del(a + b) is x^(2k+1)/b^(2k+1), and
// 1 - x^(2k+1) = (1 - x) s_(2k+1) with s_n = (1 - x^n)/(1 - x).
double mStirlingDifference(double dB, double dX, double dC)
{
    const double dX2 = dX * dX;
    const double dS3 = 1.0 + dX + dX2;
    const double dS5 = 1.0 + dX + dX2 * dS3;
    const double dS7 = 1.0 + dX + dX2 * dS5;
    const double dS9 = 1.0 + dX + dX2 * dS7;
    const double dS11 = 1.0 + dX + dX2 * dS9;

    const double dT = 1.0 / (dB * dB);
    double dW = ((((kStirlingC5 * dS11 * dT + kStirlingC4 * dS9) * dT + kStirlingC3 * dS7) * dT +
                  kStirlingC2 * dS5) *
                     dT +
                 kStirlingC1 * dS3) *
                    dT +
                kStirlingC0;
    return dW * dC / dB;
}

double mGamln(double dA)
{
    return GAMLN(&dA);
}
double mGamln1(double dA)
{
    return GAMLN1(&dA);
}
double mAlnrel(double dA)
{
    return ALNREL(&dA);
}
double mAlgdiv(double dA, double dB)
{
    return ALGDIV(&dA, &dB);
}
double mGsumln(double dA, double dB)
{
    return GSUMLN(&dA, &dB);
}
double mBcorr(double dA, double dB)
{
    return BCORR(&dA, &dB);
}

// The Lanczos sum of the library (g = 7, nine terms).
const double kLanczos[9] = {0.9999999999995183,   676.5203681218835,     -1259.139216722289,
                            771.3234287757674,    -176.6150291498386,    12.50734324009056,
                            -0.1385710331296526,  9.934937113930748e-06, 1.659470187408462e-07};

} // namespace

extern "C" {

double XGAMMLN(double* x)
{
    const double dX = *x;
    if (dX == 1.0 || dX == 2.0)
        return 0.0;
    double dSum = 0.0;
    for (int i = 8; i >= 1; --i)
        dSum += kLanczos[i] / (dX + i - 1.0);
    const double dT = dX + 6.5;
    return std::log(kLanczos[0] + dSum) + 0.9189385332046727 - dT + (dX - 0.5) * std::log(dT);
}

double GAMMLN(double* x)
{
    return XGAMMLN(x);
}

double XGAMMA(double* x)
{
    return std::exp(XGAMMLN(x));
}

double GAMMA(double* x)
{
    return XGAMMA(x);
}

double GAMLN1(double* a)
{
    const double dA = *a;
    if (dA < 0.6)
    {
        static const double p[7] = {0.577215664901533,  0.844203922187225,   -0.168860593646662,
                                    -0.780427615533591, -0.402055799310489,  -0.0673562214325671,
                                    -0.00271935708322958};
        static const double q[7] = {1.0,               2.88743195473681,  3.12755088914843,
                                    1.56875193295039,  0.361951990101499, 0.0325038868253937,
                                    6.67465618796164e-4};
        double dTop = p[6];
        double dBottom = q[6];
        for (int i = 5; i >= 0; --i)
        {
            dTop = dTop * dA + p[i];
            dBottom = dBottom * dA + q[i];
        }
        return -dA * (dTop / dBottom);
    }

    static const double r[6] = {0.422784335098467, 0.848044614534529, 0.565221050691933,
                                0.156513060486551, 0.017050248402265, 4.97958207639485e-4};
    static const double s[6] = {1.0,              1.24313399877507,  0.548042109832463,
                                0.10155218743983, 0.00713309612391, 1.16165475989616e-4};
    const double dX = (dA - 0.5) - 0.5;
    double dTop = r[5];
    double dBottom = s[5];
    for (int i = 4; i >= 0; --i)
    {
        dTop = dTop * dX + r[i];
        dBottom = dBottom * dX + s[i];
    }
    return dX * (dTop / dBottom);
}

double GAMLN(double* a)
{
    const double dA = *a;
    if (dA <= 0.8)
        return mGamln1(dA) - std::log(dA);
    if (dA <= 2.25)
        return mGamln1((dA - 0.5) - 0.5);
    if (dA < 10.0)
    {
        // Gamma(a) = (a - 1)(a - 2)...(a - n) Gamma(a - n), a - n in [1.25, 2.25).
        const int n = static_cast<int>(dA - 1.25);
        double dT = dA;
        double dProduct = 1.0;
        for (int i = 0; i < n; ++i)
        {
            dT -= 1.0;
            dProduct *= dT;
        }
        return mGamln1(dT - 1.0) + std::log(dProduct);
    }
    // 0.418938533204673 = 0.5 (log(2 pi) - 1).
    const double dT = 1.0 / (dA * dA);
    const double dW = mStirlingPolynomial(dT) / dA;
    return 0.418938533204673 + dW + (dA - 0.5) * (std::log(dA) - 1.0);
}

double GAM1(double* a)
{
    const double dA = *a;
    const double dD = dA - 0.5;
    const double dT = (dD > 0.0) ? dD - 0.5 : dA;

    if (dT == 0.0)
        return 0.0;

    if (dT > 0.0)
    {
        static const double p[7] = {0.577215664901533,   -0.409078193005776, -0.230975380857675,
                                    0.0597275330452234,  0.0076696818164949, -0.00514889771323592,
                                    5.89597428611429e-4};
        static const double q[5] = {1.0, 0.427569613095214, 0.158451672430138, 0.0261132021441447,
                                    0.00423244297896961};
        double dTop = p[6];
        for (int i = 5; i >= 0; --i)
            dTop = dTop * dT + p[i];
        double dBottom = q[4];
        for (int i = 3; i >= 0; --i)
            dBottom = dBottom * dT + q[i];
        const double dW = dTop / dBottom;
        if (dD > 0.0)
            return dT / dA * ((dW - 0.5) - 0.5);
        return dA * dW;
    }

    static const double r[9] = {-0.422784335098468,  -0.771330383816272, -0.244757765222226,
                                0.118378989872749,   9.30357293360349e-4, -0.0118290993445146,
                                0.00223047661158249, 2.66505979058923e-4, -1.32674909766242e-4};
    const double s1 = 0.273076135303957;
    const double s2 = 0.0559398236957378;
    double dTop = r[8];
    for (int i = 7; i >= 0; --i)
        dTop = dTop * dT + r[i];
    const double dBottom = (s2 * dT + s1) * dT + 1.0;
    const double dW = dTop / dBottom;
    if (dD > 0.0)
        return dT * dW / dA;
    return dA * ((dW + 0.5) + 0.5);
}

double ALNREL(double* a)
{
    const double dA = *a;
    if (std::fabs(dA) > 0.375)
        return std::log(1.0 + dA);

    const double p1 = -1.29418923021993;
    const double p2 = 0.405303492862024;
    const double p3 = -0.0178874546012214;
    const double q1 = -1.62752256355323;
    const double q2 = 0.747811014037616;
    const double q3 = -0.0845104217945565;
    const double dT = dA / (dA + 2.0);
    const double dT2 = dT * dT;
    const double dW =
        (((p3 * dT2 + p2) * dT2 + p1) * dT2 + 1.0) / (((q3 * dT2 + q2) * dT2 + q1) * dT2 + 1.0);
    return 2.0 * dT * dW;
}

double BCORR(double* a, double* b)
{
    const double dA = std::min(*a, *b);
    const double dB = std::max(*a, *b);
    const double dH = dA / dB;
    const double dC = dH / (1.0 + dH);
    const double dX = 1.0 / (1.0 + dH);

    const double dW = mStirlingDifference(dB, dX, dC);
    const double dT = 1.0 / (dA * dA);
    return mStirlingPolynomial(dT) / dA + dW;
}

double ALGDIV(double* a, double* b)
{
    const double dA = *a;
    const double dB = *b;
    double dC;
    double dX;
    double dD;
    if (dA > dB)
    {
        const double dH = dB / dA;
        dC = 1.0 / (1.0 + dH);
        dX = dH / (1.0 + dH);
        dD = dA + (dB - 0.5);
    }
    else
    {
        const double dH = dA / dB;
        dC = dH / (1.0 + dH);
        dX = 1.0 / (1.0 + dH);
        dD = dB + (dA - 0.5);
    }

    const double dW = mStirlingDifference(dB, dX, dC);

    // The two large terms are subtracted in the order that keeps the smaller
    // one last.
    const double dU = dD * mAlnrel(dA / dB);
    const double dV = dA * (std::log(dB) - 1.0);
    if (dU > dV)
        return (dW - dV) - dU;
    return (dW - dU) - dV;
}

double GSUMLN(double* a, double* b)
{
    const double dX = *a + *b - 2.0;
    if (dX <= 0.25)
        return mGamln1(1.0 + dX);
    if (dX <= 1.25)
        return mGamln1(dX) + mAlnrel(dX);
    return mGamln1(dX - 1.0) + std::log(dX * (1.0 + dX));
}

double BETALN(double* a0, double* b0)
{
    // A NaN passes straight through; it must not reach the whole-number
    // counts of the reductions below.
    if (std::isnan(*a0) || std::isnan(*b0))
        return *a0 + *b0;
    double dA = std::min(*a0, *b0);
    double dB = std::max(*a0, *b0);

    if (dA >= 8.0)
    {
        // 0.918938533204673 = 0.5 log(2 pi).
        const double dW = mBcorr(dA, dB);
        const double dH = dA / dB;
        const double dC = dH / (1.0 + dH);
        const double dU = -(dA - 0.5) * std::log(dC);
        const double dV = dB * mAlnrel(dH);
        const double dBase = -0.5 * std::log(dB) + 0.918938533204673 + dW;
        if (dU > dV)
            return (dBase - dV) - dU;
        return (dBase - dU) - dV;
    }

    if (dA < 1.0)
    {
        if (dB >= 8.0)
            return mGamln(dA) + mAlgdiv(dA, dB);
        return mGamln(dA) + (mGamln(dB) - mGamln(dA + dB));
    }

    // 1 <= a < 8.
    double dLogFactor = 0.0;
    if (dA < 2.0)
    {
        if (dB <= 2.0)
            return mGamln(dA) + mGamln(dB) - mGsumln(dA, dB);
        if (dB >= 8.0)
            return mGamln(dA) + mAlgdiv(dA, dB);
    }
    else if (dB > 1000.0)
    {
        // Reduce a to [1, 2) by B(a, b) = B(a - 1, b) (a - 1)/(a - 1 + b),
        // with the powers of b taken out to keep the product in range.
        const int n = static_cast<int>(dA - 1.0);
        double dProduct = 1.0;
        for (int i = 0; i < n; ++i)
        {
            dA -= 1.0;
            dProduct *= dA / (1.0 + dA / dB);
        }
        return (std::log(dProduct) - n * std::log(dB)) + (mGamln(dA) + mAlgdiv(dA, dB));
    }
    else
    {
        // Reduce a to [1, 2) while b <= 1000.
        const int n = static_cast<int>(dA - 1.0);
        double dProduct = 1.0;
        for (int i = 0; i < n; ++i)
        {
            dA -= 1.0;
            const double dH = dA / dB;
            dProduct *= dH / (1.0 + dH);
        }
        dLogFactor = std::log(dProduct);
        if (dB >= 8.0)
            return dLogFactor + mGamln(dA) + mAlgdiv(dA, dB);
    }

    // Reduce b to [1, 2]: B(a, b) = B(a, b - 1) (b - 1)/(a + b - 1).
    const int n = static_cast<int>(dB - 1.0);
    double dProduct = 1.0;
    for (int i = 0; i < n; ++i)
    {
        dB -= 1.0;
        dProduct *= dB / (dA + dB);
    }
    return dLogFactor + std::log(dProduct) + (mGamln(dA) + (mGamln(dB) - mGsumln(dA, dB)));
}

} // extern "C"
