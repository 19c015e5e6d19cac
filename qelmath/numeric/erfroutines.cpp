// The error function and the complementary error function, by the rational
// approximations of DiDonato and Morris (ACM TOMS 708, after Cody's forms):
//   |x| <= 0.5      erf(x) = x R(x^2), a rational of degree (4, 3);
//   0.5 < |x| <= 4  erfc(|x|) = exp(-x^2) P(|x|)/Q(|x|), degree (7, 7);
//   |x| > 4         erfc(|x|) = exp(-x^2)/|x| (1/sqrt(pi) - R(1/x^2)/x^2).
// ERF is exactly +-1 from |x| = 5.8 on.  ERFC1 gives either erfc(x) or the
// scaled exp(x^2) erfc(x), which stays representable for large x; unscaled it
// is exactly 2 below -5.6 and exactly 0 where exp(-x^2) would underflow.

#include "qel/specialroutines.h"

#include <cmath>

namespace
{

const double kRootPiInverse = 0.564189583547756;

// |x| <= 0.5: erf(x) = x (1 + A(t)) / (1 + B(t)), t = x^2.
const double kA[5] = {7.7105849500132e-5, -0.00133733772997339, 0.0323076579225834,
                      0.0479137145607681, 0.128379167095513};
const double kB[3] = {0.00301048631703895, 0.0538971687740286, 0.375795757275549};

// 0.5 < |x| <= 4: erfc(|x|) exp(x^2) = P(|x|) / Q(|x|).
const double kP[8] = {-1.36864857382717e-7, 0.564195517478974, 7.21175825088309,
                      43.1622272220567,     152.98928504694,   339.320816734344,
                      451.918953711873,     300.459261020162};
const double kQ[8] = {1.0,              12.7827273196294, 77.0001529352295, 277.585444743988,
                      638.980264465631, 931.35409485061,  790.950925327898, 300.459260956983};

// |x| > 4: erfc(|x|) exp(x^2) |x| = 1/sqrt(pi) - R(t)/(S(t) x^2), t = 1/x^2.
const double kR[5] = {2.10144126479064, 26.2370141675169, 21.3688200555087, 4.6580782871847,
                      0.282094791773523};
const double kS[4] = {94.153775055546, 187.11481179959, 99.0191814623914, 18.0124575948747};

// x (1 + A)/(1 + B) of the central interval.
double mCentral(double dX)
{
    const double dT = dX * dX;
    const double dTop = (((kA[0] * dT + kA[1]) * dT + kA[2]) * dT + kA[3]) * dT + kA[4] + 1.0;
    const double dBottom = ((kB[0] * dT + kB[1]) * dT + kB[2]) * dT + 1.0;
    return dX * (dTop / dBottom);
}

// P(ax)/Q(ax) of the middle interval.
double mMiddle(double dAx)
{
    double dTop = kP[0];
    double dBottom = kQ[0];
    for (int i = 1; i < 8; ++i)
    {
        dTop = dTop * dAx + kP[i];
        dBottom = dBottom * dAx + kQ[i];
    }
    return dTop / dBottom;
}

// R(t)/S(t) of the outer interval, t = 1/x^2.
double mOuterRatio(double dT)
{
    const double dTop = (((kR[0] * dT + kR[1]) * dT + kR[2]) * dT + kR[3]) * dT + kR[4];
    const double dBottom = (((kS[0] * dT + kS[1]) * dT + kS[2]) * dT + kS[3]) * dT + 1.0;
    return dTop / dBottom;
}

} // namespace

extern "C" {

double ERF(double* x)
{
    const double dX = *x;
    const double dAx = std::fabs(dX);
    if (dAx <= 0.5)
        return mCentral(dX);

    double dResult;
    if (dAx <= 4.0)
    {
        dResult = (0.5 - std::exp(-dX * dX) * mMiddle(dAx)) + 0.5;
    }
    else
    {
        if (dAx >= 5.8)
            return dX > 0.0 ? 1.0 : -1.0;
        const double dX2 = dX * dX;
        const double dT = 1.0 / dX2;
        const double dScaled = (kRootPiInverse - mOuterRatio(dT) / dX2) / dAx;
        dResult = (0.5 - std::exp(-dX2) * dScaled) + 0.5;
    }
    return dX < 0.0 ? -dResult : dResult;
}

double ERFC1(int* ind, double* x)
{
    const int iScaled = *ind;
    const double dX = *x;
    const double dAx = std::fabs(dX);

    if (dAx <= 0.5)
    {
        const double dResult = (0.5 - mCentral(dX)) + 0.5;
        return iScaled != 0 ? std::exp(dX * dX) * dResult : dResult;
    }

    // dScaled is exp(x^2) erfc(|x|).
    double dScaled;
    if (dAx <= 4.0)
    {
        dScaled = mMiddle(dAx);
    }
    else
    {
        if (dX < -5.6)
            return iScaled != 0 ? 2.0 * std::exp(dX * dX) : 2.0;
        if (iScaled == 0)
        {
            int iLower = 1;
            if (dX > 100.0 || dX * dX > -EXPARG(&iLower))
                return 0.0;
        }
        const double dT = 1.0 / (dX * dX);
        dScaled = (kRootPiInverse - dT * mOuterRatio(dT)) / dAx;
    }

    if (iScaled != 0)
    {
        // erfc(x) = 2 - erfc(|x|) for negative x.
        if (dX < 0.0)
            return 2.0 * std::exp(dX * dX) - dScaled;
        return dScaled;
    }
    const double dResult = std::exp(-dX * dX) * dScaled;
    return dX < 0.0 ? 2.0 - dResult : dResult;
}

} // extern "C"
