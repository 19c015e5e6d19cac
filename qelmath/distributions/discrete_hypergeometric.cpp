// Hypergeometric distribution of the successes in a sample of iN drawn
// without replacement from iNPop items of which iK are successes.  The mass
// is a ratio of binomial coefficients taken in logarithms; the distribution
// function and the quantile come from the hypergeometric kernel.
#include <algorithm>
#include <cstdint>

#include "qel/checkedcast.h"
#include "qel/combinatorics.h"
#include "qel/discrete.h"
#include "qel/elementary.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"
#include "qelmath/distributions/discrete_rules.h"
#include "qelmath/kernels/hypergeo.h"
#include "qelmath/kernels/kernel_protocol.h"

namespace
{

long long mSupportLow(int iNPop, int iK, int iN)
{
    return std::max(0LL, static_cast<long long>(iK) + iN - iNPop);
}

long long mSupportHigh(int iK, int iN)
{
    return std::min(iK, iN);
}

}  // namespace

double mHypergeometricPdf(double dX, int iNPop, int iK, int iN)
{
    double dCount = 0.0;
    if (!qeldiscrete::mIsPoint(dX, dCount))
        return 0.0;
    if (dCount < static_cast<double>(mSupportLow(iNPop, iK, iN)) ||
        dCount > static_cast<double>(mSupportHigh(iK, iN)))
        return 0.0;
    const int iX = mCheckedCast<int>(dCount);
    try
    {
        return mExponential(mLogNChooseK(iNPop - iK, iN - iX) + mLogNChooseK(iK, iX) -
                                mLogNChooseK(iNPop, iN),
                            true);
    }
    catch (const CmFloatOverflow&)
    {
        QEL_ASSERT_FALSE();
        return 0.0;
    }
}

double mHypergeometricCdf(double dX, int iNPop, int iK, int iN, bool bUpper)
{
    const double dCount = qeldiscrete::mPointCount(dX);
    if (dCount < static_cast<double>(mSupportLow(iNPop, iK, iN)))
        return bUpper ? 1.0 : 0.0;
    if (dCount > static_cast<double>(mSupportHigh(iK, iN)))
        return bUpper ? 0.0 : 1.0;
    double dLower = 0.0;
    double dUpper = 0.0;
    double dMass = 0.0;
    hypergeo_df(mCheckedCast<std::uint32_t>(dCount), qeldiscrete::mKernelCount(iNPop),
                qeldiscrete::mKernelCount(iK), qeldiscrete::mKernelCount(iN), &dLower, &dUpper,
                &dMass);
    if (kernel_take_failure())
        return mGetMissingValueCode();
    return bUpper ? dUpper + dMass : dLower;
}

double mHypergeometricInvCdf(double dProb, int iNPop, int iK, int iN)
{
    QEL_ASSERT(dProb >= 0.0);
    QEL_ASSERT(dProb <= 1.0);
    if (iNPop == iK)
        return iN;
    if (iK == 0)
        return 0.0;
    if (iNPop == iN)
        return iK;
    if (iN == 0)
        return 0.0;
    if (dProb == 0.0)
        return static_cast<double>(mSupportLow(iNPop, iK, iN));
    std::uint32_t uK = 0;
    double dFrac = 0.0;
    const bool bLower = dProb <= 0.5;
    if (bLower)
    {
        hypergeo_lower_quant(dProb, qeldiscrete::mKernelCount(iNPop),
                             qeldiscrete::mKernelCount(iK), qeldiscrete::mKernelCount(iN), &uK,
                             &dFrac);
    }
    else
    {
        if (dProb == 1.0)
            return static_cast<double>(mSupportHigh(iK, iN));
        hypergeo_upper_quant(1.0 - dProb, qeldiscrete::mKernelCount(iNPop),
                             qeldiscrete::mKernelCount(iK), qeldiscrete::mKernelCount(iN), &uK,
                             &dFrac);
    }
    if (kernel_take_failure())
        return mGetMissingValueCode();
    return qeldiscrete::mQuantileCount(uK, dFrac, bLower);
}
