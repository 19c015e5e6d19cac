// The chi-square p-value and critical value: the exact end at 0, the
// assertions, the lower and upper quantiles as critical values, the refused
// two-sided critical value, and accuracy against the mpmath tables.
#include "qel/pvalues.h"

#include "qel/kernelbacked.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "pvalue_support.h"

#include <gtest/gtest.h>

#include <iostream>

TEST(ChiSqPValue, UpperTailAtZeroIsExactlyOne)
{
    CmAssertCapture capture;
    EXPECT_EQ(mChiSqPValue(0.0, 3.0, eUpperTailed), 1.0);
    EXPECT_EQ(mChiSqPValue(0.0, 3.0, eLowerTailed), 0.0);
    EXPECT_EQ(mChiSqPValue(0.0, 3.0, eTwoSided), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(ChiSqPValue, MissingInIsMissingOutWithoutAssertion)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mChiSqPValue(mGetMissingValueCode(), -1.0, eTwoSided)));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(ChiSqPValue, TwoSidedDoublesTheSmallerTail)
{
    EXPECT_EQ(mChiSqPValue(0.4, 3.0, eTwoSided), 2.0 * mChiSqCdf(0.4, 3.0, 0.0, false));
    EXPECT_EQ(mChiSqPValue(9.0, 3.0, eTwoSided), 2.0 * mChiSqCdf(9.0, 3.0, 0.0, true));
}

TEST(ChiSqPValue, AssertsThePointAndTheDegrees)
{
    CmAssertCapture capture;
    mChiSqPValue(-1.0, 3.0, eUpperTailed);
    mChiSqPValue(1.0, 0.0, eUpperTailed);
    EXPECT_TRUE(capture.mHas("dX >= 0.0"));
    EXPECT_TRUE(capture.mHas("dDF > 0.0"));
}

TEST(ChiSqPValue, UnknownAlternativeAssertsFalseAndIsMissing)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mChiSqPValue(1.0, 3.0, static_cast<EAlternative>(-5))));
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "false");
}

TEST(ChiSqCritValue, LowerIsTheFivePercentPointAndUpperTheNinetyFivePercentPoint)
{
    CmAssertCapture capture;
    EXPECT_EQ(mChiSqCritValue(0.05, 3.0, eLowerTailed), mChiSqInvCdf(0.05, 3.0, 0.0));
    EXPECT_EQ(mChiSqCritValue(0.05, 3.0, eUpperTailed), mChiSqInvCdf(0.95, 3.0, 0.0));
    EXPECT_NEAR(mChiSqCritValue(0.05, 3.0, eLowerTailed), 0.35184631774927172, 1e-9);
    EXPECT_NEAR(mChiSqCritValue(0.05, 3.0, eUpperTailed), 7.8147279032511765, 1e-8);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(ChiSqCritValue, TwoSidedAndUnknownAlternativesAssertFalseAndAreMissing)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mChiSqCritValue(0.05, 3.0, eTwoSided)));
    EXPECT_TRUE(mIsNumericMissing(mChiSqCritValue(0.05, 3.0, static_cast<EAlternative>(4))));
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "false");
    EXPECT_EQ(capture.mGetTexts()[1], "false");
}

TEST(ChiSqCritValue, ProbabilityOutsideTheOpenIntervalIsReported)
{
    CmAssertCapture capture;
    mChiSqCritValue(0.0, 3.0, eUpperTailed);
    EXPECT_TRUE(capture.mHas("dProb > 0.0"));
    mChiSqCritValue(1.0, 3.0, eUpperTailed);
    EXPECT_TRUE(capture.mHas("dProb < 1.0"));
}

TEST(ChiSqPValue, AgreesWithReferenceTable)
{
    int iRows = 0;
    const qeltest::WorstError worst =
        qeltest::mPValueAgainstTable(qeltest::ePValueChiSq, "mChiSqPValue", &iRows);
    EXPECT_GT(iRows, 50);
    EXPECT_LT(worst.mGetError(), 2e-9);
    std::cout << worst.mReport() << std::endl;
}

TEST(ChiSqCritValue, AgreesWithReferenceTable)
{
    int iRows = 0;
    const qeltest::WorstError worst =
        qeltest::mCritValueAgainstTable(qeltest::ePValueChiSq, "mChiSqCritValue", &iRows);
    EXPECT_GT(iRows, 50);
    // 1 - dProb rounds a tiny size, and the quantile carries that rounding.
    EXPECT_LT(worst.mGetError(), 2e-8);
    std::cout << worst.mReport() << std::endl;
}
