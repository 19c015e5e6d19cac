// The F p-value and critical value: the exact end at 0, the assertions (none
// on the probability of the critical value), the lower and upper quantiles,
// the refused two-sided critical value, and accuracy against the mpmath
// tables.
#include "qel/pvalues.h"

#include "qel/kernelbacked.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "pvalue_support.h"

#include <gtest/gtest.h>

#include <iostream>

TEST(FPValue, EndsAtZeroAreExact)
{
    CmAssertCapture capture;
    EXPECT_EQ(mFPValue(0.0, 4.0, 9.0, eUpperTailed), 1.0);
    EXPECT_EQ(mFPValue(0.0, 4.0, 9.0, eLowerTailed), 0.0);
    EXPECT_EQ(mFPValue(0.0, 4.0, 9.0, eTwoSided), 0.0);
    EXPECT_TRUE(mIsNumericMissing(mFPValue(mGetMissingValueCode(), 4.0, 9.0, eTwoSided)));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(FPValue, TwoSidedDoublesTheSmallerTail)
{
    EXPECT_EQ(mFPValue(0.2, 4.0, 9.0, eTwoSided), 2.0 * mFCdf(0.2, 4.0, 9.0, 0.0, false));
    EXPECT_EQ(mFPValue(5.0, 4.0, 9.0, eTwoSided), 2.0 * mFCdf(5.0, 4.0, 9.0, 0.0, true));
}

TEST(FPValue, AssertsThePointAndBothDegrees)
{
    CmAssertCapture capture;
    mFPValue(-1.0, 4.0, 9.0, eUpperTailed);
    mFPValue(1.0, 0.0, 9.0, eUpperTailed);
    mFPValue(1.0, 4.0, -2.0, eUpperTailed);
    EXPECT_TRUE(capture.mHas("dX >= 0.0"));
    EXPECT_TRUE(capture.mHas("dDFNum > 0.0"));
    EXPECT_TRUE(capture.mHas("dDFDenom > 0.0"));
}

TEST(FCritValue, LowerAndUpperQuantilesWithNoAssertionOnTheProbability)
{
    CmAssertCapture capture;
    EXPECT_EQ(mFCritValue(0.05, 4.0, 9.0, eLowerTailed), mFInvCdf(0.05, 4.0, 9.0, 0.0));
    EXPECT_EQ(mFCritValue(0.05, 4.0, 9.0, eUpperTailed), mFInvCdf(0.95, 4.0, 9.0, 0.0));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(FCritValue, TwoSidedAndUnknownAlternativesAssertFalseAndAreMissing)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mFCritValue(0.05, 4.0, 9.0, eTwoSided)));
    EXPECT_TRUE(mIsNumericMissing(mFCritValue(0.05, 4.0, 9.0, static_cast<EAlternative>(3))));
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "false");
    EXPECT_EQ(capture.mGetTexts()[1], "false");
    mFCritValue(0.05, 0.0, -1.0, eUpperTailed);
    EXPECT_TRUE(capture.mHas("dDFNum > 0.0"));
    EXPECT_TRUE(capture.mHas("dDFDenom > 0.0"));
}

TEST(FPValue, AgreesWithReferenceTable)
{
    int iRows = 0;
    const qeltest::WorstError worst =
        qeltest::mPValueAgainstTable(qeltest::ePValueF, "mFPValue", &iRows);
    EXPECT_GT(iRows, 50);
    EXPECT_LT(worst.mGetError(), 5e-10);
    std::cout << worst.mReport() << std::endl;
}

TEST(FCritValue, AgreesWithReferenceTable)
{
    int iRows = 0;
    const qeltest::WorstError worst =
        qeltest::mCritValueAgainstTable(qeltest::ePValueF, "mFCritValue", &iRows);
    EXPECT_GT(iRows, 30);
    // 1 - dProb rounds a tiny size, and the quantile carries that rounding.
    EXPECT_LT(worst.mGetError(), 1e-6);
    std::cout << worst.mReport() << std::endl;
}
