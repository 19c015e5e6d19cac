// The binomial p-value.  One-sided values are the binomial tails; the
// two-sided value orders the outcomes by the likelihood ratio of the
// observed proportion against the null probability (the likelihood-ratio
// test, Wilks, Ann. Math. Statist. 9, 1938): it adds the tail on the
// observed side to the tail beyond the first count on the far side of the
// mean whose log-likelihood ratio reaches the observed one, found by root
// finding in integer mode.  A symmetric null (p = 1/2) doubles the smaller
// tail.
#include "qel/pvalues.h"

#include "qelmath/distributions/lratio.h"

#include "qel/checkedcast.h"
#include "qel/discrete.h"
#include "qel/fuzzy.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "qel/rootsandoptima.h"

#include <algorithm>
#include <cmath>

namespace
{
double mSumOrMissing(double dA, double dB)
{
    if (mIsNumericMissing(dA) || mIsNumericMissing(dB))
    {
        return mGetMissingValueCode();
    }
    return dA + dB;
}

double mBinomialTwoSided(int iX, int iN, double dP)
{
    // An impossible count: no outcome is as unlikely.
    if (iX < 0 || iX > iN)
    {
        return 0.0;
    }
    if (mEqualWithinFuzz(dP, 0.5, 0.0))
    {
        if (iX == iN / 2)
        {
            return 1.0;
        }
        const double dTail = mBinomialCdf(static_cast<double>(std::min(iX, iN - iX)),
                                          static_cast<double>(iN), dP, false);
        return mIsNumericMissing(dTail) ? dTail : 2.0 * dTail;
    }
    if (mEqualWithinFuzz(static_cast<double>(iX) / static_cast<double>(iN), dP, 0.0))
    {
        return 1.0;
    }
    double dMean = static_cast<double>(iN) * dP;
    double dQ = dP;
    int iXBelow = iX;
    if (static_cast<double>(iX) > dMean)
    {
        iXBelow = iN - iX;
        dQ = 1.0 - dP;
        dMean = static_cast<double>(iN) * dQ;
    }
    const double dTarget = mBinomialLogRatio(iN, iXBelow, dQ);
    const double dCeilMean = std::ceil(dMean);
    double dY = 0.0;
    if (mBinomialLogRatio(iN, iN, dQ) < dTarget)
    {
        dY = static_cast<double>(iN) + 1.0;
    }
    else if (mBinomialLogRatio(iN, static_cast<int>(dCeilMean), dQ) >= dTarget)
    {
        dY = dCeilMean;
    }
    else
    {
        CmLRatio ratio(iN, dQ, dTarget);
        dY = std::trunc(mRootFinder(dCeilMean, static_cast<double>(iN), ratio));
    }
    if (dY == static_cast<double>(iXBelow))
    {
        return 1.0;
    }
    const double dN = static_cast<double>(iN);
    return mSumOrMissing(mBinomialCdf(dY, dN, dQ, true),
                         mBinomialCdf(static_cast<double>(iXBelow), dN, dQ, false));
}
}  // namespace

double mBinomialPValue(double dX, int iN, double dP, EAlternative eAlternative)
{
    QEL_ASSERT(iN > 0);
    QEL_ASSERT(dP > 0.0);
    QEL_ASSERT(dP < 1.0);
    const int iX = mCheckedCast<int>(dX);
    switch (eAlternative)
    {
    case eLowerTailed:
        return mBinomialCdf(dX, static_cast<double>(iN), dP, false);
    case eUpperTailed:
        return mBinomialCdf(dX, static_cast<double>(iN), dP, true);
    case eTwoSided:
        if (iN <= 0 || !(dP > 0.0) || !(dP < 1.0))
        {
            return mGetMissingValueCode();
        }
        return mBinomialTwoSided(iX, iN, dP);
    default:
        QEL_ASSERT_FALSE();
        return mGetMissingValueCode();
    }
}
