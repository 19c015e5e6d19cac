// The exponential distribution with a threshold: density exp(-z) / s, upper
// tail exp(-z), lower tail 1 - exp(-z) and quantile t - s log(1 - p), with
// z = (x - t) / s.
//
// Near the threshold 1 - exp(-z) is the difference of two nearly equal
// numbers; once exp(-z) exceeds 0.999 the lower tail is taken instead from
// the chi-square distribution with two degrees of freedom at 2z, whose kernel
// sums the series of the incomplete gamma ratio at shape 1 and so keeps full
// relative accuracy down to the smallest z.
#include "qel/closedform.h"

#include "qel/kernelbacked.h"
#include "qel/elementary.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"

double mExponentialPdf(double dX, double dScale, double dThreshold)
{
    if (dX < dThreshold)
        return 0.0;
    return mExponential(-(dX - dThreshold) / dScale, true) / dScale;
}

double mExponentialCdf(double dX, double dScale, double dThreshold, bool bUpper)
{
    if (dX <= dThreshold)
        return bUpper ? 1.0 : 0.0;
    const double dZ = (dX - dThreshold) / dScale;
    const double dE = mExponential(-dZ, true);
    if (bUpper)
        return dE;
    if (dE <= 0.999)
        return 1.0 - dE;
    return mChiSqCdf(2.0 * dZ, 2.0, 0.0, false);
}

double mExponentialInvCdf(double dProb, double dScale, double dThreshold)
{
    QEL_ASSERT((0.0 <= dProb) && (dProb <= 1.0));
    try
    {
        return dThreshold - dScale * mLog(1.0 - dProb, true);
    }
    catch (const CmFloatOverflow&)
    {
        return mGetMissingValueCode();
    }
}
