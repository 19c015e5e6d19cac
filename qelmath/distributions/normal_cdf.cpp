// The normal distribution function: both tails from the normal kernel
// (qelmath/kernels/normal.h), standardised here, with the kernel's failure
// turned into the missing value.
#include "qel/normal.h"

#include "qelmath/distributions/normal_tails.h"
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/normal.h"

#include "qel/qelbt.h"
#include "qel/qelmessaging.h"

bool mNormalTails(double dX, double dMu, double dSigma, double* pdLower, double* pdUpper)
{
    QEL_ASSERT(dSigma > 0.0);
    // The centre is answered without entering the kernel.
    if (dX == dMu)
    {
        *pdLower = 0.5;
        *pdUpper = 0.5;
        return true;
    }
    normal_df((dX - dMu) / dSigma, pdLower, pdUpper);
    if (kernel_take_failure())
    {
        *pdLower = mGetMissingValueCode();
        *pdUpper = mGetMissingValueCode();
        return false;
    }
    return true;
}

double mNormalCdf(double dX, double dMu, double dSigma, bool bUpper)
{
    double dLower;
    double dUpper;
    if (mIsNumericMissing(dX))
    {
        dLower = mGetMissingValueCode();
        dUpper = mGetMissingValueCode();
    }
    else
    {
        mNormalTails(dX, dMu, dSigma, &dLower, &dUpper);
    }
    return bUpper ? dUpper : dLower;
}
