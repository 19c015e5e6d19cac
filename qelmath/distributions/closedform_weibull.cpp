// The Weibull distribution with a threshold: with z = (x - t) / s and shape k,
// density k z^(k-1) exp(-z^k) / s, upper tail exp(-z^k), lower tail
// 1 - exp(-z^k) (taken, like the exponential's, from the chi-square kernel
// near the threshold), quantile t + s (-log(1 - p))^(1/k).
#include "qel/closedform.h"

#include "qel/elementary.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"

double mWeibullPdf(double dX, double dShape, double dScale, double dThreshold)
{
    QEL_ASSERT(dShape > 0.0);
    QEL_ASSERT(dScale > 0.0);
    if (dX <= dThreshold)
        return 0.0;
    const double dZ = (dX - dThreshold) / dScale;
    try
    {
        return mRaiseToPower(dZ, dShape - 1.0, true) * dShape *
               mExponential(-mRaiseToPower(dZ, dShape, true), true) / dScale;
    }
    catch (const CmFloatOverflow&)
    {
        return mGetMissingValueCode();
    }
}

double mWeibullCdf(double dX, double dShape, double dScale, double dThreshold, bool bUpper)
{
    QEL_ASSERT(dShape > 0.0);
    QEL_ASSERT(dScale > 0.0);
    if (dX <= dThreshold)
        return bUpper ? 1.0 : 0.0;
    try
    {
        return mExponentialCdf(mRaiseToPower((dX - dThreshold) / dScale, dShape, true), 1.0, 0.0,
                               bUpper);
    }
    catch (const CmFloatOverflow&)
    {
        return mGetMissingValueCode();
    }
}

double mWeibullInvCdf(double dProb, double dShape, double dScale, double dThreshold)
{
    QEL_ASSERT(dShape > 0.0);
    QEL_ASSERT(dScale > 0.0);
    QEL_ASSERT((0.0 <= dProb) && (dProb <= 1.0));
    if (dProb == 0.0)
        return dThreshold;
    if (dProb == 1.0)
        return mGetMissingValueCode();
    try
    {
        return mRaiseToPower(-mLog(1.0 - dProb, true), 1.0 / dShape, true) * dScale + dThreshold;
    }
    catch (const CmFloatOverflow&)
    {
        return mGetMissingValueCode();
    }
}
