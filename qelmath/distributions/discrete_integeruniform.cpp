// Discrete uniform distribution on the integers iMin to iMax, in closed form.
// The upper tail reflects the point about the middle of the support.
#include <cmath>

#include "qel/discrete.h"
#include "qel/qelmessaging.h"
#include "qelmath/distributions/discrete_rules.h"

double mIntegerUniformPdf(double dX, int iMin, int iMax)
{
    double dCount = 0.0;
    if (!qeldiscrete::mIsPoint(dX, dCount))
        return 0.0;
    if (dCount < iMin || dCount > iMax)
        return 0.0;
    return 1.0 / (static_cast<double>(iMax) - static_cast<double>(iMin) + 1.0);
}

double mIntegerUniformCdf(double dX, int iMin, int iMax, bool bUpper)
{
    if (bUpper)
        dX = static_cast<double>(iMax) + static_cast<double>(iMin) - dX;
    const double dCount = qeldiscrete::mPointCount(dX);
    if (dCount < iMin)
        return 0.0;
    if (dCount >= iMax)
        return 1.0;
    return (dCount - iMin + 1.0) / (static_cast<double>(iMax) - static_cast<double>(iMin) + 1.0);
}

double mIntegerUniformInvCdf(double dProb, int iMin, int iMax)
{
    QEL_ASSERT(dProb >= 0.0);
    QEL_ASSERT(dProb <= 1.0);
    if (dProb == 0.0)
        return iMin;
    if (dProb == 1.0)
        return iMax;
    return std::ceil((static_cast<double>(iMax) - static_cast<double>(iMin) + 1.0) * dProb + iMin -
                     1.0);
}
