// Factorials, binomial coefficients, permutations and combinations.
//
// Every count is formed as the exponential of a sum of log-gamma values and
// rounded to the nearest integer, so it is exact as long as the relative error
// of the logarithm times the size of the count stays below one half.  The two
// int-valued functions turn overflow of the exponential into 0 (mNFactorial
// also a value above mGetMaxInteger()); mNChooseK converts a value too large
// for int without notice.  The two double-valued functions have no handler:
// CmFloatOverflow reaches their caller.  The differences are deliberate.
//
// After a failed precondition the computation goes on; an argument outside the
// domain of the log-gamma function then raises its CmInvalidArgument.
#include "qel/combinatorics.h"

#include "qel/elementary.h"
#include "qel/fuzzy.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"

#include "wholenumber.h"

int mNFactorial(int iN)
{
    QEL_ASSERT(iN >= 0);
    try
    {
        const double dValue = mExponential(mLogGamma(static_cast<double>(iN) + 1.0), true);
        if (dValue > mGetMaxInteger())
            return 0;
        return qelcount::mTruncateToInt(mNearestInteger(dValue));
    }
    catch (const CmFloatOverflow&)
    {
        return 0;
    }
}

double mLogNChooseK(int iN, int iK)
{
    QEL_ASSERT(iN >= 0);
    QEL_ASSERT(iK >= 0);
    QEL_ASSERT(iK <= iN);
    if (iN == 0)
        return 0.0;
    const double dN = static_cast<double>(iN);
    const double dK = static_cast<double>(iK);
    return mLogGamma(dN + 1.0) - mLogGamma(dK + 1.0) - mLogGamma(dN - dK + 1.0);
}

int mNChooseK(int iN, int iK)
{
    // mLogNChooseK makes the three assertions.
    try
    {
        return qelcount::mTruncateToInt(mNearestInteger(mExponential(mLogNChooseK(iN, iK), true)));
    }
    catch (const CmFloatOverflow&)
    {
        return 0;
    }
}

namespace
{
// The preconditions shared by mPermutations and mCombinations.
void mCheckSelection(double dN, double dK)
{
    QEL_ASSERT(dN >= 0.0);
    QEL_ASSERT(dK >= 0.0);
    QEL_ASSERT(dK <= dN);
    QEL_ASSERT_TEXT(mIsIntegerWithinFuzz(dN, 0.0), "mIsIntegerWithinFuzz( dN )");
    QEL_ASSERT_TEXT(mIsIntegerWithinFuzz(dK, 0.0), "mIsIntegerWithinFuzz( dK )");
}
} // namespace

double mPermutations(double dN, double dK)
{
    mCheckSelection(dN, dK);
    const double dWholeN = mNearestInteger(dN);
    const double dWholeK = mNearestInteger(dK);
    return mNearestInteger(
        mExponential(mLogGamma(dWholeN + 1.0) - mLogGamma(dWholeN - dWholeK + 1.0), true));
}

double mCombinations(double dN, double dK)
{
    mCheckSelection(dN, dK);
    const double dWholeN = mNearestInteger(dN);
    const double dWholeK = mNearestInteger(dK);
    return mNearestInteger(mExponential(mLogGamma(dWholeN + 1.0) - mLogGamma(dWholeK + 1.0) -
                                            mLogGamma(dWholeN - dWholeK + 1.0),
                                        true));
}

int N_CHOOSE_K(int* iN, int* iK)
{
    if (iN == nullptr || iK == nullptr)
    {
        QEL_ASSERT_FALSE();
        return 0;
    }
    return mNChooseK(*iN, *iK);
}
