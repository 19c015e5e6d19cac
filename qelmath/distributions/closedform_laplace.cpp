// The Laplace (double exponential) distribution: density exp(-|z|) / (2 s),
// and each tail half of an exponential tail, P(X <= x) = exp(z) / 2 below the
// location and 1/2 + (1 - exp(-z)) / 2 above it.  The quantile is
// location + s log(2p) for p <= 1/2 and location - s log(2 - 2p) above.
#include "qel/closedform.h"

#include "qel/elementary.h"
#include "qel/fuzzy.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"

#include <cmath>

double mLaplacePdf(double dX, double dLocation, double dScale)
{
    try
    {
        return mExponential(-(std::fabs(dX - dLocation) / dScale), true) / (2.0 * dScale);
    }
    catch (const CmFloatOverflow&)
    {
        return mGetMissingValueCode();
    }
}

double mLaplaceCdf(double dX, double dLocation, double dScale, bool bUpper)
{
    double dZ = (dX - dLocation) / dScale;
    if (bUpper)
        dZ = -dZ;
    if (dZ < 0.0)
        return 0.5 * mExponentialCdf(-dZ, 1.0, 0.0, true);
    return 0.5 * mExponentialCdf(dZ, 1.0, 0.0, false) + 0.5;
}

double mLaplaceInvCdf(double dProb, double dLocation, double dScale)
{
    QEL_ASSERT(dProb >= 0.0);
    QEL_ASSERT(dProb <= 1.0);
    if (dProb == 0.0 || dProb == 1.0)
        return mGetMissingValueCode();
    if (mEqualWithinFuzz(dProb, 0.5, 0.0))
        return dLocation;
    const double dA = (dProb <= 0.5) ? 2.0 * dProb : 1.0 / (2.0 - 2.0 * dProb);
    try
    {
        return dScale * mLog(dA, true) + dLocation;
    }
    catch (const CmFloatOverflow&)
    {
        return mGetMissingValueCode();
    }
}
