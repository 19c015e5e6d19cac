// The triangular distribution on [min, max] with its peak at the mode.  The
// density rises linearly to 2 / (max - min) at the mode and falls linearly
// after it.  The distribution function is written for the lower tail; the
// upper tail is the lower tail of the reflected distribution (x, min, mode,
// max turned into -x, -max, -mode, -min), so each tail is formed from its own
// end.  The quantile inverts the quadratic piece on the side of the mode on
// which p falls.
#include "qel/closedform.h"

#include "qel/qelmessaging.h"

#include <cmath>

double mTriangularPdf(double dX, double dMin, double dMode, double dMax)
{
    QEL_ASSERT((dMin <= dMode) && (dMode <= dMax) && (dMin < dMax));
    if (dX < dMin || dX > dMax)
        return 0.0;
    if (dX == dMode)
        return 2.0 / (dMax - dMin);
    if (dX < dMode)
        return 2.0 * (dX - dMin) / ((dMax - dMin) * (dMode - dMin));
    return 2.0 * (dMax - dX) / ((dMax - dMin) * (dMax - dMode));
}

double mTriangularCdf(double dX, double dMin, double dMode, double dMax, bool bUpper)
{
    QEL_ASSERT((dMin <= dMode) && (dMode <= dMax) && (dMin < dMax));
    double dPoint = dX;
    double dLo = dMin;
    double dPeak = dMode;
    double dHi = dMax;
    if (bUpper)
    {
        dPoint = -dX;
        dLo = -dMax;
        dPeak = -dMode;
        dHi = -dMin;
    }
    if (dPoint >= dHi)
        return 1.0;
    if (dPoint > dPeak)
        return (dPeak - dLo) / (dHi - dLo) +
               (dPoint - dPeak) * (1.0 + (dHi - dPoint) / (dHi - dPeak)) / (dHi - dLo);
    if (dPoint <= dLo)
        return 0.0;
    const double dRoot = (dPoint - dLo) / std::sqrt((dHi - dLo) * (dPeak - dLo));
    return dRoot * dRoot;
}

double mTriangularInvCdf(double dProb, double dMin, double dMode, double dMax)
{
    QEL_ASSERT((dMin <= dMode) && (dMode <= dMax) && (dMin < dMax));
    QEL_ASSERT((0.0 <= dProb) && (dProb <= 1.0));
    if (dProb == 1.0)
        return dMax;
    if (mTriangularCdf(dMode, dMin, dMode, dMax, false) <= dProb)
        return dMax - std::sqrt((1.0 - dProb) * (dMax - dMin) * (dMax - dMode));
    return dMin + std::sqrt(dProb * (dMax - dMin) * (dMode - dMin));
}
