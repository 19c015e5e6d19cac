// The gamma distribution with shape, scale and threshold: density and both
// tails from the central gamma kernel (qelmath/kernels/gamma_core.h),
// quantile from the kernel's pair of quantile routines for the standard
// distribution, checked against the distribution function and refined by
// root finding (false position, qel/rootsandoptima.h) when it misses.
#include "qel/kernelbacked.h"

#include "qelmath/distributions/flat_inversion.h"
#include "qelmath/distributions/flat_tails.h"
#include "qelmath/kernels/gamma.h"
#include "qelmath/kernels/gamma_core.h"
#include "qelmath/kernels/kernel_protocol.h"

#include "qel/qelbt.h"
#include "qel/qelmessaging.h"

#include <cmath>

namespace
{
constexpr double kPolishTolerance = 1e-9;
} // namespace

double mGammaPdf(double dX, double dShape, double dScale, double dThreshold)
{
    QEL_ASSERT(dShape > 0.0);
    QEL_ASSERT(dScale > 0.0);
    const double dZ = dX - dThreshold;
    if (dZ <= 0.0)
        return 0.0;
    double dLower;
    double dUpper;
    double dDensity;
    gamma_df(dZ / dScale, dShape, &dLower, &dUpper, &dDensity);
    if (kernel_take_failure())
        return mGetMissingValueCode();
    return dDensity / dScale;
}

double mGammaCdf(double dX, double dShape, double dScale, double dThreshold, bool bUpper)
{
    QEL_ASSERT(dShape > 0);
    QEL_ASSERT(dScale > 0);
    const double dZ = dX - dThreshold;
    if (dZ < 0.0)
        return bUpper ? 1.0 : 0.0;
    // The threshold itself is a point of the kernel's domain: it is not
    // answered here.
    double dLower;
    double dUpper;
    double dDensity;
    gamma_df(dZ / dScale, dShape, &dLower, &dUpper, &dDensity);
    if (kernel_take_failure())
        return mGetMissingValueCode();
    return bUpper ? dUpper : dLower;
}

double mGammaNumericInverse(double dStart, double dProb, double dShape)
{
    CmGammaCdf oFunction(dShape, dProb);
    return mInvertByDoubling(oFunction, dStart);
}

double mGammaInvCdf(double dProb, double dShape, double dScale, double dThreshold)
{
    QEL_ASSERT(dProb >= 0.0);
    QEL_ASSERT(dProb <= 1.0);
    // dProb 1 is not settled here: the upper quantile routine refuses a zero
    // tail and the result is the missing value.
    double dX = 0.0;
    if (dProb != 0.0)
    {
        if (dProb <= 0.5)
            gamma_lower_quant(dProb, dShape, &dX);
        else
            gamma_upper_quant(1.0 - dProb, dShape, &dX);
        if (kernel_take_failure())
            return mGetMissingValueCode();
    }
    // Deliberate: a zero quantile is returned without scale and threshold,
    // so that dProb 0 gives 0 whatever the threshold.
    if (dX == 0.0)
        return dX;
    if (std::fabs(mGammaCdf(dX, dShape, 1.0, 0.0, false) - dProb) > dProb * kPolishTolerance)
    {
        dX = mGammaNumericInverse(dX, dProb, dShape);
        if (mIsNumericMissing(dX))
            return dX;
    }
    return dX * dScale + dThreshold;
}
