// The beta distribution on [0, 1]: density by formula over the logarithm of
// the gamma function, both tails from the beta kernel (qelmath/kernels/beta.h),
// quantile from the kernel's pair of quantile routines.
#include "qel/kernelbacked.h"

#include "qelmath/kernels/beta.h"
#include "qelmath/kernels/kernel_protocol.h"

#include "qel/elementary.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"

double mBetaPdf(double dX, double dA, double dB)
{
    QEL_ASSERT(dA > 0);
    QEL_ASSERT(dB > 0);
    if (dX < 0.0 || dX > 1.0)
        return 0.0;
    // At an end the density is unbounded, the other shape, or 0, as the
    // shape at that end is below, at or above 1.
    if (dX == 0.0)
    {
        if (dA < 1.0)
            return mGetMissingValueCode();
        return dA == 1.0 ? dB : 0.0;
    }
    if (dX == 1.0)
    {
        if (dB < 1.0)
            return mGetMissingValueCode();
        return dB == 1.0 ? dA : 0.0;
    }
    try
    {
        return mExponential((dB - 1.0) * mLog(1.0 - dX, true) + (dA - 1.0) * mLog(dX, true) -
                                (mLogGamma(dA) + mLogGamma(dB) - mLogGamma(dA + dB)),
                            true);
    }
    catch (const CmFloatOverflow&)
    {
        return mGetMissingValueCode();
    }
}

double mBetaCdf(double dX, double dA, double dB, bool bUpper)
{
    QEL_ASSERT(dA > 0);
    QEL_ASSERT(dB > 0);
    if (dX <= 0.0)
        return bUpper ? 1.0 : 0.0;
    if (dX >= 1.0)
        return bUpper ? 0.0 : 1.0;
    double dLower;
    double dUpper;
    double dDensity;
    beta_df(dX, dA, dB, &dLower, &dUpper, &dDensity);
    if (kernel_take_failure())
        return mGetMissingValueCode();
    return bUpper ? dUpper : dLower;
}

double mBetaInvCdf(double dProb, double dA, double dB)
{
    QEL_ASSERT(dProb >= 0.0);
    QEL_ASSERT(dProb <= 1.0);
    if (dProb == 0.0)
        return 0.0;
    if (dProb == 1.0)
        return 1.0;
    double dX = 0.0;
    if (dProb <= 0.5)
        beta_lower_quant(dProb, dA, dB, &dX);
    else
        beta_upper_quant(1.0 - dProb, dA, dB, &dX);
    if (kernel_take_failure())
        return mGetMissingValueCode();
    return dX;
}
