// The chi-square distribution, central and noncentral: density by formula,
// both tails from the chi-square kernel (qelmath/kernels/chi2.h), quantile
// from the kernel's pair of quantile routines, checked against the
// distribution function and refined by root finding (false position,
// qel/rootsandoptima.h) when it misses; the noncentral quantile by root
// finding alone.
#include "qel/kernelbacked.h"

#include "qelmath/distributions/flat_inversion.h"
#include "qelmath/distributions/flat_tails.h"
#include "qelmath/kernels/chi2.h"
#include "qelmath/kernels/kernel_protocol.h"

#include "qel/elementary.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"

#include <cmath>

namespace
{
// Relative agreement that a kernel quantile must reach before it is returned
// unrefined.
constexpr double kPolishTolerance = 1e-9;
// The upper end of the root search of a noncentral quantile.
constexpr double kNoncentralStart = 1e+30;
} // namespace

double mChiSqPdf(double dX, double dDF)
{
    if (dX <= 0.0)
        return 0.0;
    const double dHalf = dDF / 2.0;
    try
    {
        return mExponential((dHalf - 1.0) * mLog(dX, true) - dHalf * mLog(2.0, true) -
                                mLogGamma(dHalf) - dX / 2.0,
                            true);
    }
    catch (const CmFloatOverflow&)
    {
        // The exponent is at most of the order of log(dX) for dX > 0 and is
        // held never to reach the overflow threshold.
        QEL_ASSERT_FALSE();
        return mGetMissingValueCode();
    }
}

bool mChiSqTails(double dX, double dDF, double dNoncentrality, double* pdLower, double* pdUpper)
{
    if (dX <= 0.0)
    {
        *pdLower = 0.0;
        *pdUpper = 1.0;
        return true;
    }
    chi2_ncdf(dX, dDF, dNoncentrality, pdLower, pdUpper);
    if (kernel_take_failure())
    {
        *pdLower = mGetMissingValueCode();
        *pdUpper = mGetMissingValueCode();
        return false;
    }
    return true;
}

double mChiSqCdf(double dX, double dDF, double dNoncentrality, bool bUpper)
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
        mChiSqTails(dX, dDF, dNoncentrality, &dLower, &dUpper);
    }
    return bUpper ? dUpper : dLower;
}

double mChiSqNumericInverse(double dStart, double dProb, double dDF, double dNoncentrality)
{
    CmChiSqCdf oFunction(dDF, dNoncentrality, dProb);
    return mInvertByDoubling(oFunction, dStart);
}

double mChiSqInvCdf(double dProb, double dDF, double dNoncentrality)
{
    QEL_ASSERT(dDF > 0.0);
    QEL_ASSERT(dNoncentrality >= 0.0);
    QEL_ASSERT(dProb >= 0.0);
    QEL_ASSERT(dProb <= 1.0);
    if (dProb == 0.0)
        return 0.0;
    // The upper end of the distribution is unbounded.
    if (dProb == 1.0)
        return mGetMissingValueCode();
    if (dNoncentrality != 0.0)
        return mChiSqNumericInverse(kNoncentralStart, dProb, dDF, dNoncentrality);

    double dX = 0.0;
    if (dProb <= 0.5)
        chi2_lower_quant(dProb, dDF, &dX);
    else
        chi2_upper_quant(1.0 - dProb, dDF, &dX);
    if (kernel_take_failure())
        return mGetMissingValueCode();
    if (dX == 0.0)
        return dX;
    if (std::fabs(mChiSqCdf(dX, dDF, 0.0, false) - dProb) <= dProb * kPolishTolerance)
        return dX;
    return mChiSqNumericInverse(dX, dProb, dDF, dNoncentrality);
}
