// The Cauchy distribution: density 1 / (pi s (1 + z^2)), distribution function
// atan(z) / pi + 1/2 and quantile s tan(pi (p - 1/2)) + location, with z the
// standardised point.  The distribution function is formed for the lower tail
// at -z when the upper tail is asked for; far out in the tail it is the
// difference of two nearly equal numbers and keeps only absolute accuracy.
#include "qel/closedform.h"

#include "qel/elementary.h"
#include "qel/fuzzy.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"

#include <cmath>

double mCauchyPdf(double dX, double dLocation, double dScale)
{
    QEL_ASSERT(dScale > 0.0);
    const double dZ = (dX - dLocation) / dScale;
    return 1.0 / (mGetPi() * dScale * (1.0 + dZ * dZ));
}

double mCauchyCdf(double dX, double dLocation, double dScale, bool bUpper)
{
    QEL_ASSERT(dScale > 0.0);
    double dZ = (dX - dLocation) / dScale;
    if (bUpper)
        dZ = -dZ;
    return std::atan(dZ) / mGetPi() + 0.5;
}

double mCauchyInvCdf(double dProb, double dLocation, double dScale)
{
    QEL_ASSERT(dScale > 0.0);
    QEL_ASSERT((0.0 <= dProb) && (dProb <= 1.0));
    if (dProb == 0.0 || dProb == 1.0)
        return mGetMissingValueCode();
    if (mEqualWithinFuzz(dProb, 0.5, 0.0))
        return dLocation;
    try
    {
        return mTan((dProb - 0.5) * mGetPi()) * dScale + dLocation;
    }
    catch (const CmInvalidArgument&)
    {
        return mGetMissingValueCode();
    }
}
