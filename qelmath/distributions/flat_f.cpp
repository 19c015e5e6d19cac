// The F distribution, central and noncentral: density by formula, both tails
// from the F kernel (qelmath/kernels/F.h), central quantile from the kernel's
// pair of quantile routines without refinement, noncentral quantile by root
// finding (false position, qel/rootsandoptima.h) on [0, 1e+30].
#include "qel/kernelbacked.h"

#include "qelmath/distributions/flat_inversion.h"
#include "qelmath/distributions/flat_tails.h"
#include "qelmath/kernels/F.h"
#include "qelmath/kernels/kernel_protocol.h"

#include "qel/elementary.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"
#include "qel/rootsandoptima.h"

namespace
{
// A noncentrality below the smallest normal double is the central
// distribution.
constexpr double kSmallestNoncentrality = 2.2250738585072014e-307;
constexpr double kNoncentralUpperEnd = 1e+30;
} // namespace

double mFPdf(double dX, double dDFNum, double dDFDenom)
{
    if (dX <= 0.0)
        return 0.0;
    const double dN = dDFNum;
    const double dD = dDFDenom;
    try
    {
        return mExponential(mLogGamma((dN + dD) / 2.0) - mLogGamma(dN / 2.0) - mLogGamma(dD / 2.0) +
                                (dN / 2.0) * mLog(dN / dD, true) +
                                (dN / 2.0 - 1.0) * mLog(dX, true) -
                                ((dN + dD) / 2.0) * mLog(1.0 + dN * dX / dD, true),
                            true);
    }
    catch (const CmFloatOverflow&)
    {
        return mGetMissingValueCode();
    }
}

bool mFTails(double dX, double dDFNum, double dDFDenom, double dNoncentrality, double* pdLower,
             double* pdUpper)
{
    QEL_ASSERT(dDFNum > 0.0);
    QEL_ASSERT(dDFDenom > 0.0);
    QEL_ASSERT(dNoncentrality >= 0.0);
    if (dX <= 0.0)
    {
        *pdLower = 0.0;
        *pdUpper = 1.0;
        return true;
    }
    if (dNoncentrality < kSmallestNoncentrality)
        dNoncentrality = 0.0;
    F_ncdf(dX, dDFNum, dDFDenom, dNoncentrality, pdLower, pdUpper);
    if (kernel_take_failure())
    {
        *pdLower = mGetMissingValueCode();
        *pdUpper = mGetMissingValueCode();
        return false;
    }
    return true;
}

double mFCdf(double dX, double dDFNum, double dDFDenom, double dNoncentrality, bool bUpper)
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
        mFTails(dX, dDFNum, dDFDenom, dNoncentrality, &dLower, &dUpper);
    }
    return bUpper ? dUpper : dLower;
}

double mFInvCdf(double dProb, double dDFNum, double dDFDenom, double dNoncentrality)
{
    QEL_ASSERT(dDFNum > 0.0);
    QEL_ASSERT(dDFDenom > 0.0);
    QEL_ASSERT(dNoncentrality >= 0.0);
    QEL_ASSERT(dProb >= 0.0);
    QEL_ASSERT(dProb <= 1.0);
    if (dNoncentrality < kSmallestNoncentrality)
        dNoncentrality = 0.0;
    if (dProb >= mGetMissingValueCode())
        return mGetMissingValueCode();
    if (dProb == 0.0)
        return 0.0;
    if (dProb == 1.0)
        return mGetMissingValueCode();
    if (dNoncentrality != 0.0)
    {
        CmFCdf oFunction(dDFNum, dDFDenom, dNoncentrality, dProb);
        return mRootFinder(0.0, kNoncentralUpperEnd, oFunction);
    }
    double dX = 0.0;
    try
    {
        if (dProb <= 0.5)
            F_lower_qt(dProb, dDFNum, dDFDenom, &dX);
        else
            F_upper_qt(1.0 - dProb, dDFNum, dDFDenom, &dX);
    }
    catch (const CmFloatException&)
    {
        kernel_take_failure();
        return mGetMissingValueCode();
    }
    if (kernel_take_failure())
        return mGetMissingValueCode();
    return dX;
}
