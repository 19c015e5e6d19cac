// The logistic and loglogistic distributions.  Logistic: with e = exp(-z),
// P(X <= x) = 1 / (1 + e), P(X > x) = e / (1 + e), density
// e / (1 + e)^2 / s written as 1 / (1/e + 2 + e) / s so that neither tail
// overflows, and quantile location - s (log(1 - p) - log p).  The loglogistic
// is the distribution of threshold + exp(Y) with Y logistic.
//
// exp(-z) overflows only for z far below the location: the density is 0
// there and the distribution function at its limit.
#include "qel/closedform.h"

#include "qel/elementary.h"
#include "qel/fuzzy.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"

double mLogisticPdf(double dX, double dLocation, double dScale)
{
    QEL_ASSERT(dScale > 0.0);
    const double dZ = (dX - dLocation) / dScale;
    try
    {
        const double dE = mExponential(-dZ, true);
        if (dE == 0.0)
            return 0.0;
        return (1.0 / (1.0 / dE + 2.0 + dE)) / dScale;
    }
    catch (const CmFloatOverflow&)
    {
        return 0.0;
    }
}

double mLogisticCdf(double dX, double dLocation, double dScale, bool bUpper)
{
    QEL_ASSERT(dScale > 0.0);
    const double dStandard = (dX - dLocation) / dScale;
    try
    {
        const double dE = mExponential(-dStandard, true);
        return bUpper ? dE / (1.0 + dE) : 1.0 / (1.0 + dE);
    }
    catch (const CmFloatOverflow&)
    {
        QEL_ASSERT(dStandard < 0.0);
        return bUpper ? 1.0 : 0.0;
    }
}

double mLogisticInvCdf(double dProb, double dLocation, double dScale)
{
    QEL_ASSERT(dScale > 0.0);
    QEL_ASSERT((0.0 <= dProb) && (dProb <= 1.0));
    if (mEqualWithinFuzz(dProb, 0.5, 0.0))
        return dLocation;
    try
    {
        return dLocation - dScale * (mLog(1.0 - dProb, true) - mLog(dProb, true));
    }
    catch (const CmFloatOverflow&)
    {
        return mGetMissingValueCode();
    }
}

double mLogLogisticPdf(double dX, double dLocation, double dScale, double dThreshold)
{
    if (dX <= dThreshold)
        return 0.0;
    const double dY = dX - dThreshold;
    try
    {
        const double dR = mLogisticPdf(mLog(dY, true), dLocation, dScale);
        return (dR < mGetMissingValueCode()) ? dR / dY : dR;
    }
    catch (const CmFloatOverflow&)
    {
        // dY is positive, so its logarithm cannot overflow.
        QEL_ASSERT_FALSE();
        return mGetMissingValueCode();
    }
}

double mLogLogisticCdf(double dX, double dLocation, double dScale, double dThreshold,
                       bool bUpper)
{
    if (dX <= dThreshold)
        return bUpper ? 1.0 : 0.0;
    try
    {
        return mLogisticCdf(mLog(dX - dThreshold, true), dLocation, dScale, bUpper);
    }
    catch (const CmFloatOverflow&)
    {
        // dX - dThreshold is positive, so its logarithm cannot overflow.
        QEL_ASSERT_FALSE();
        return mGetMissingValueCode();
    }
}

double mLogLogisticInvCdf(double dProb, double dLocation, double dScale, double dThreshold)
{
    QEL_ASSERT(dProb >= 0.0);
    QEL_ASSERT(dProb <= 1.0);
    const double dR = mLogisticInvCdf(dProb, dLocation, dScale);
    if (dR >= mGetMissingValueCode())
        return dR;
    try
    {
        return mExponential(dR, true) + dThreshold;
    }
    catch (const CmFloatOverflow&)
    {
        return mGetMissingValueCode();
    }
}
