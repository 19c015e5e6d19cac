// The continuous uniform distribution on [min, max].  Each tail is computed
// from its own end, (x - min) / (max - min) and (max - x) / (max - min), so
// that neither is the complement of the other; the quantile returns the ends
// exactly at 0 and 1.
#include "qel/closedform.h"

#include "qel/qelmessaging.h"

double mUniformPdf(double dX, double dMin, double dMax)
{
    QEL_ASSERT(dMin < dMax);
    if (dX < dMin || dX > dMax)
        return 0.0;
    return 1.0 / (dMax - dMin);
}

double mUniformCdf(double dX, double dMin, double dMax, bool bUpper)
{
    QEL_ASSERT(dMin < dMax);
    if (dX <= dMin)
        return bUpper ? 1.0 : 0.0;
    if (dX >= dMax)
        return bUpper ? 0.0 : 1.0;
    if (bUpper)
        return (dMax - dX) / (dMax - dMin);
    return (dX - dMin) / (dMax - dMin);
}

double mUniformInvCdf(double dProb, double dMin, double dMax)
{
    QEL_ASSERT(dMin < dMax);
    QEL_ASSERT((0.0 <= dProb) && (dProb <= 1.0));
    if (dProb == 0.0)
        return dMin;
    if (dProb == 1.0)
        return dMax;
    return (dMax - dMin) * dProb + dMin;
}
