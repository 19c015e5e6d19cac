// The extreme-value distributions (Gumbel, Statistics of Extremes, 1958).
// Largest extreme value: P(X <= x) = exp(-exp(-z)), density
// exp(-z) exp(-exp(-z)) / s, quantile location - s log(-log p).  Its
// distribution function is the exponential distribution function at e = exp(-z)
// with the tail turned, so the upper tail 1 - exp(-e) keeps its relative
// accuracy for large z.  The smallest extreme value is the mirror image,
// X = -Y, and is computed through the largest at the reflected point.
//
// An overflow of exp(-z) means z far below the location: the density is 0
// there and the distribution function is at its limit.
#include "qel/closedform.h"

#include "qel/elementary.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"

double mLargestExtremeValuePdf(double dX, double dLocation, double dScale)
{
    QEL_ASSERT(dScale > 0.0);
    const double dZ = (dX - dLocation) / dScale;
    try
    {
        const double dE = mExponential(-dZ, true);
        return mExponential(-dE, true) * dE / dScale;
    }
    catch (const CmFloatOverflow&)
    {
        return 0.0;
    }
}

double mSmallestExtremeValuePdf(double dX, double dLocation, double dScale)
{
    return mLargestExtremeValuePdf(-dX, -dLocation, dScale);
}

double mLargestExtremeValueCdf(double dX, double dLocation, double dScale, bool bUpper)
{
    QEL_ASSERT(dScale > 0.0);
    const double dZ = (dX - dLocation) / dScale;
    try
    {
        const double dE = mExponential(-dZ, true);
        return mExponentialCdf(dE, 1.0, 0.0, !bUpper);
    }
    catch (const CmFloatOverflow&)
    {
        return bUpper ? 1.0 : 0.0;
    }
}

double mSmallestExtremeValueCdf(double dX, double dLocation, double dScale, bool bUpper)
{
    return mLargestExtremeValueCdf(-dX, -dLocation, dScale, !bUpper);
}

double mLargestExtremeValueInvCdf(double dProb, double dLocation, double dScale)
{
    QEL_ASSERT(dProb >= 0.0);
    QEL_ASSERT(dProb <= 1.0);
    try
    {
        return dLocation - dScale * mLog(-mLog(dProb, true), true);
    }
    catch (const CmFloatOverflow&)
    {
        return mGetMissingValueCode();
    }
}

double mSmallestExtremeValueInvCdf(double dProb, double dLocation, double dScale)
{
    const double dR = mLargestExtremeValueInvCdf(1.0 - dProb, -dLocation, dScale);
    return (dR < mGetMissingValueCode()) ? -dR : dR;
}
