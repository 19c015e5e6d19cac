// Student's t distribution, central and noncentral: density by formula at the
// centre or without noncentrality, otherwise as a difference of two
// distribution functions; both tails from the t kernel (qelmath/kernels/t.h),
// with a clamp for a noncentrality beyond the kernel's reach; central quantile
// from the kernel's pair of quantile routines; noncentral quantile by root
// finding (false position, qel/rootsandoptima.h) in a bracket sought around
// the normal approximation with the mean and variance of the noncentral t.
//
// Away from the centre the noncentral density comes from the identity
// f(x; n, d) = n / x (F(x sqrt((n + 2) / n); n + 2, d) - F(x; n, d)) between
// the density and the distribution functions at n and n + 2 degrees of
// freedom.
#include "qel/kernelbacked.h"

#include "qelmath/distributions/flat_inversion.h"
#include "qelmath/distributions/flat_tails.h"
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/t.h"

#include "qel/elementary.h"
#include "qel/fuzzy.h"
#include "qel/normal.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"
#include "qel/rootsandoptima.h"

#include <algorithm>
#include <cmath>

namespace
{
// The t kernel refuses with code 3 a noncentrality delta for which
// df / 2 + delta^2 / 2 + 6.1738 sqrt(delta^2 / 2) passes the largest shape of
// the gamma kernels.
constexpr double kQuadraticLinear = 6.1738;
constexpr double kLargestShape = 94906265.0;
constexpr double kWideEnd = 1e+30;

void mSetMissing(double* pdLower, double* pdUpper)
{
    *pdLower = mGetMissingValueCode();
    *pdUpper = mGetMissingValueCode();
}
} // namespace

bool mTTails(double dX, double dDF, double dNoncentrality, double* pdLower, double* pdUpper)
{
    QEL_ASSERT(dDF > 0.0);
    t_ncdf(dX, dDF, dNoncentrality, pdLower, pdUpper);
    if (kernel_error_code != 3 || dNoncentrality == 0.0)
    {
        if (kernel_take_failure())
        {
            mSetMissing(pdLower, pdUpper);
            return false;
        }
        return true;
    }
    // The noncentrality is out of the kernel's reach: try the largest one it
    // takes, which settles a point far enough in the tail.
    const double dY = mRootOfQuadratic(1.0, kQuadraticLinear, dDF * 0.5 - kLargestShape);
    if (mIsNumericMissing(dY) || dY < 0.0)
    {
        // Deliberate: the kernel's code 3 is left standing here.
        mSetMissing(pdLower, pdUpper);
        return false;
    }
    const double dClamp = mTransferSign(
        (1.0 - CmQELConst::mInstance()->mGetEps()) * mSqrt(dY + dY, true), dNoncentrality);
    t_ncdf(dX, dDF, dClamp, pdLower, pdUpper);
    if (kernel_take_failure())
    {
        mSetMissing(pdLower, pdUpper);
        return false;
    }
    // Deliberate: a negative noncentrality is accepted only with the upper
    // tail exactly 1, not with the mirror of the positive case.
    const bool bAtLimit = dNoncentrality > 0.0 ? *pdLower == 0.0 : *pdUpper == 1.0;
    if (!bAtLimit)
    {
        mSetMissing(pdLower, pdUpper);
        return false;
    }
    return true;
}

double mTCdf(double dX, double dDF, double dNoncentrality, bool bUpper)
{
    double dLower;
    double dUpper;
    if (mIsNumericMissing(dX))
        mSetMissing(&dLower, &dUpper);
    else
        mTTails(dX, dDF, dNoncentrality, &dLower, &dUpper);
    return bUpper ? dUpper : dLower;
}

double mTPdf(double dX, double dDF, double dNoncentrality)
{
    QEL_ASSERT(dDF > 0.0);
    if (dNoncentrality == 0.0 || dX == 0.0)
    {
        try
        {
            return mExponential(mLogGamma((dDF + 1.0) / 2.0) - mLogGamma(dDF / 2.0) -
                                    mLog(std::sqrt(CmQELConst::mInstance()->mGetPi() * dDF), true) -
                                    ((dDF + 1.0) / 2.0) * mLog(1.0 + dX * dX / dDF, true) -
                                    dNoncentrality * dNoncentrality * 0.5,
                                true);
        }
        catch (const CmFloatOverflow&)
        {
            // The exponent is bounded above by the log of the central density
            // at 0 and cannot overflow.
            QEL_ASSERT_FALSE();
            return mGetMissingValueCode();
        }
    }
    const double dA = mTCdf(dX * std::sqrt((dDF + 2.0) / dDF), dDF + 2.0, dNoncentrality, false);
    const double dB = mTCdf(dX, dDF, dNoncentrality, false);
    if (mIsNumericMissing(dA) || mIsNumericMissing(dB))
        return mGetMissingValueCode();
    return (dA - dB) * dDF / dX;
}

double mTInvCdf(double dProb, double dDF, double dNoncentrality)
{
    QEL_ASSERT(dDF > 0.0);
    QEL_ASSERT(dProb >= 0.0);
    QEL_ASSERT(dProb <= 1.0);
    if (dProb == 0.0 || dProb == 1.0)
        return mGetMissingValueCode();
    if (dNoncentrality == 0.0)
    {
        double dX = 0.0;
        if (dProb <= 0.5)
            t_lower_qt(dProb, dDF, &dX);
        else
            t_upper_qt(1.0 - dProb, dDF, &dX);
        if (kernel_take_failure())
            return mGetMissingValueCode();
        return dX;
    }

    CmTCdf oFunction(dDF, dNoncentrality, dProb);
    double dLo = -kWideEnd;
    double dHi = kWideEnd;
    if (dDF > 1.0)
    {
        // A bracket around the normal approximation with the mean (and, for
        // more than 2 degrees of freedom, the variance) of the noncentral t.
        try
        {
            const double dH = dDF / 2.0;
            const double dG = mExponential(mLogGamma((dDF - 1.0) / 2.0) - mLogGamma(dH), true);
            const double dMean = dNoncentrality * std::sqrt(dH) * dG;
            double dLeft;
            double dRight;
            if (dDF > 2.0)
            {
                const double dVar =
                    (1.0 + mRaiseToPower(dNoncentrality, 2.0, true)) * dDF / (dDF - 2.0) -
                    mRaiseToPower(dNoncentrality * dG, 2.0, true) * dDF * 0.5;
                double dPa;
                double dPb;
                if (dProb >= 0.5)
                {
                    dPa = dProb;
                    dPb = 1.0 - (1.0 - dProb) / 1.1;
                }
                else
                {
                    dPa = dProb / 1.1;
                    dPb = dProb;
                }
                const double dSd = mSqrt(dVar, true);
                dLeft = mNormalInvCdf(dPa, dMean, dSd);
                dRight = mNormalInvCdf(dPb, dMean, dSd);
            }
            else
            {
                dLeft = std::min(dMean, 2.0 * dMean);
                dRight = std::max(dMean, 2.0 * dMean);
            }
            if (mBracketFinder(&dLeft, &dRight, oFunction, -kWideEnd, kWideEnd))
            {
                dLo = dLeft;
                dHi = dRight;
            }
        }
        catch (const CmInvalidArgument&)
        {
            // A negative variance: the wide bracket stays.
        }
        catch (const CmFloatException&)
        {
            // An overflow in the moments: the wide bracket stays.
        }
    }
    return mRootFinder(dLo, dHi, oFunction);
}
