// Poisson distribution with mean mu.  The mass is taken in logarithms; the
// distribution function uses the identity P(X <= x) = P(chi-square with
// 2 (x + 1) degrees of freedom > 2 mu), which follows from the gamma integral
// of the Poisson tail; the quantile comes from the Poisson kernel.
#include <cstdint>

#include "qel/discrete.h"
#include "qel/elementary.h"
#include "qel/kernelbacked.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"
#include "qelmath/distributions/discrete_rules.h"
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/poisson.h"

double mPoissonPdf(double dX, double dMu)
{
    QEL_ASSERT(dMu > 0.0);
    double dCount = 0.0;
    if (!qeldiscrete::mIsPoint(dX, dCount) || dCount < 0.0)
        return 0.0;
    try
    {
        return mExponential(dCount * mLog(dMu, true) - dMu - mLogGamma(dCount + 1.0), true);
    }
    catch (const CmFloatOverflow&)
    {
        QEL_ASSERT_FALSE();
        return 0.0;
    }
}

double mPoissonCdf(double dX, double dMu, bool bUpper)
{
    QEL_ASSERT(dMu > 0.0);
    double dCount = qeldiscrete::mPointCount(dX);
    // P(X >= x) = 1 - P(X <= x - 1).
    if (bUpper)
        dCount -= 1.0;
    if (dCount < 0.0)
        return bUpper ? 1.0 : 0.0;
    return mChiSqCdf(2.0 * dMu, 2.0 * (dCount + 1.0), 0.0, !bUpper);
}

double mPoissonInvCdf(double dProb, double dMu)
{
    QEL_ASSERT(dMu > 0.0);
    QEL_ASSERT(dProb >= 0.0);
    QEL_ASSERT(dProb <= 1.0);
    if (dProb == 0.0)
        return 0.0;
    if (dProb == 1.0)
        return mGetMissingValueCode();
    std::uint32_t uK = 0;
    double dFrac = 0.0;
    const bool bLower = dProb <= 0.5;
    if (bLower)
        poisson_lower_quant(dProb, dMu, &uK, &dFrac);
    else
        poisson_upper_quant(1.0 - dProb, dMu, &uK, &dFrac);
    if (kernel_take_failure())
        return mGetMissingValueCode();
    return qeldiscrete::mQuantileCount(uK, dFrac, bLower);
}
