// The lognormal distribution: log(X - threshold) is normal with mean mu and
// standard deviation sigma.  Density, tails and quantile are those of the
// normal family (qel/normal.h) on the logarithmic scale.
#include "qel/closedform.h"

#include "qel/elementary.h"
#include "qel/normal.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"

double mLogNormalPdf(double dX, double dMu, double dSigma, double dThreshold)
{
    if (dX <= dThreshold)
        return 0.0;
    const double dY = dX - dThreshold;
    try
    {
        return mNormalPdf(mLog(dY, true), dMu, dSigma) / dY;
    }
    catch (const CmFloatOverflow&)
    {
        // dY is positive, so its logarithm cannot overflow.
        QEL_ASSERT_FALSE();
        return mGetMissingValueCode();
    }
}

double mLogNormalCdf(double dX, double dMu, double dSigma, double dThreshold, bool bUpper)
{
    if (dX <= dThreshold)
        return bUpper ? 1.0 : 0.0;
    try
    {
        return mNormalCdf(mLog(dX - dThreshold, true), dMu, dSigma, bUpper);
    }
    catch (const CmFloatOverflow&)
    {
        // dX - dThreshold is positive, so its logarithm cannot overflow.
        QEL_ASSERT_FALSE();
        return mGetMissingValueCode();
    }
}

double mLogNormalInvCdf(double dProb, double dMu, double dSigma, double dThreshold)
{
    QEL_ASSERT(dProb >= 0.0);
    QEL_ASSERT(dProb <= 1.0);
    if (dProb == 0.0)
        return dThreshold;
    const double dR = mNormalInvCdf(dProb, dMu, dSigma);
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
