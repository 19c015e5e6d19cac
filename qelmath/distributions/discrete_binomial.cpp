// Binomial distribution: the mass from the log-binomial coefficient, the
// distribution function from the binomial kernel (the mass times the series of
// mass ratios behind the smaller tail), falling back to the regularised incomplete beta
// ratio (DiDonato and Morris, ACM TOMS 708) when the kernel cannot serve or
// the count is beyond the integer range; the quantile from the kernel pair.
#include <cstdint>

#include "qel/checkedcast.h"
#include "qel/combinatorics.h"
#include "qel/discrete.h"
#include "qel/elementary.h"
#include "qel/incompletebeta.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"
#include "qelmath/distributions/discrete_rules.h"
#include "qelmath/kernels/binomial.h"
#include "qelmath/kernels/kernel_protocol.h"

double mBinomialPdf(double dX, int iN, double dP)
{
    QEL_ASSERT(iN > 0);
    QEL_ASSERT(dP >= 0.0);
    QEL_ASSERT(dP <= 1.0);
    double dCount = 0.0;
    if (!qeldiscrete::mIsPoint(dX, dCount))
        return 0.0;
    if (dP == 0.0)
        return dCount == 0.0 ? 1.0 : 0.0;
    if (dP == 1.0)
        return dCount == static_cast<double>(iN) ? 1.0 : 0.0;
    if (dCount < 0.0 || dCount > static_cast<double>(iN))
        return 0.0;
    const int iX = mCheckedCast<int>(dCount);
    try
    {
        return mExponential(iX * mLog(dP, true) + mLogNChooseK(iN, iX) +
                                (iN - iX) * mLog(1.0 - dP, true),
                            true);
    }
    catch (const CmFloatOverflow&)
    {
        // A log-mass is never positive; an overflow means no probability.
        return 0.0;
    }
}

double mBinomialCdf(double dX, double dN, double dP, bool bUpper)
{
    QEL_ASSERT(dN >= 0);
    QEL_ASSERT(dP > 0.0);
    QEL_ASSERT(dP < 1.0);
    // P(X >= x) for X ~ B(n, p) is P(Y <= n - x) for Y ~ B(n, 1 - p).
    if (bUpper)
    {
        dP = 1.0 - dP;
        dX = dN - dX;
    }
    dX = qeldiscrete::mPointCount(dX);
    if (dX < 0.0)
        return 0.0;
    if (dX >= dN)
        return 1.0;
    if (dN <= mGetMaxInteger())
    {
        const INTG iX = mToINTG(dX);
        const INTG iN = mToINTG(dN);
        double dLower = 0.0;
        double dUpper = 0.0;
        double dMass = 0.0;
        binomial_df(static_cast<std::uint32_t>(iX), static_cast<std::uint32_t>(iN), dP, &dLower,
                    &dUpper, &dMass);
        if (!kernel_take_failure())
            return dLower;
        return mIncompleteBetaRatio(dP, 1.0 - dP, static_cast<double>(iX) + 1.0,
                                    static_cast<double>(iN) - static_cast<double>(iX), true);
    }
    return mIncompleteBetaRatio(dP, 1.0 - dP, dX + 1.0, dN - dX, true);
}

double mBinomialInvCdf(double dProb, int iN, double dP)
{
    QEL_ASSERT(iN > 0);
    QEL_ASSERT(dP > 0.0);
    QEL_ASSERT(dP < 1.0);
    QEL_ASSERT(dProb >= 0.0);
    QEL_ASSERT(dProb <= 1.0);
    if (dProb == 0.0)
        return 0.0;
    if (dProb == 1.0)
        return static_cast<double>(iN);
    const std::uint32_t uN = qeldiscrete::mKernelCount(iN);
    std::uint32_t uK = 0;
    double dFrac = 0.0;
    const bool bLower = dProb <= 0.5;
    if (bLower)
        binomial_lower_quant(dProb, uN, dP, &uK, &dFrac);
    else
        binomial_upper_quant(1.0 - dProb, uN, dP, &uK, &dFrac);
    if (kernel_take_failure())
        return mGetMissingValueCode();
    return qeldiscrete::mQuantileCount(uK, dFrac, bLower);
}
