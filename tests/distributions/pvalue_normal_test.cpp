// The normal p-value and critical value: the exact ends (two-sided 1 at 0,
// missing in, missing out), the tie rule, the one-sided critical values as
// one positive magnitude, the refused alternative, the shared tail chooser,
// and accuracy against the mpmath tables.
#include "qel/pvalues.h"
#include "qelmath/distributions/pvalue_tails.h"

#include "qel/normal.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "pvalue_support.h"

#include <gtest/gtest.h>

#include <iostream>

TEST(NormalPValue, TwoSidedAtZeroIsExactlyOne)
{
    CmAssertCapture capture;
    EXPECT_EQ(mNormalPValue(0.0, eTwoSided), 1.0);
    EXPECT_EQ(mNormalPValue(0.0, eLowerTailed), 0.5);
    EXPECT_EQ(mNormalPValue(0.0, eUpperTailed), 0.5);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(NormalPValue, MissingInIsMissingOutWithoutAssertion)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mNormalPValue(mGetMissingValueCode(), eTwoSided)));
    EXPECT_TRUE(mIsNumericMissing(mNormalPValue(mGetMissingValueCode(), eLowerTailed)));
    EXPECT_TRUE(mIsNumericMissing(mNormalPValue(mGetMissingValueCode(), eUpperTailed)));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(NormalPValue, OneSidedValuesAreTheTails)
{
    EXPECT_EQ(mNormalPValue(-1.3, eLowerTailed), mNormalCdf(-1.3, 0.0, 1.0, false));
    EXPECT_EQ(mNormalPValue(-1.3, eUpperTailed), mNormalCdf(-1.3, 0.0, 1.0, true));
    EXPECT_EQ(mNormalPValue(2.2, eTwoSided), 2.0 * mNormalCdf(2.2, 0.0, 1.0, true));
    EXPECT_EQ(mNormalPValue(-2.2, eTwoSided), 2.0 * mNormalCdf(-2.2, 0.0, 1.0, false));
    EXPECT_EQ(mNormalPValue(-40.0, eLowerTailed), 0.0);
    EXPECT_EQ(mNormalPValue(-40.0, eTwoSided), 0.0);
    EXPECT_EQ(mNormalPValue(-40.0, eUpperTailed), 1.0);
}

TEST(NormalPValue, UnknownAlternativeAssertsFalseAndIsMissing)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mNormalPValue(1.0, static_cast<EAlternative>(2))));
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "false");
}

TEST(PValueFromTails, TwoSidedTieTakesTheLowerAndFailureIsMissing)
{
    EXPECT_EQ(mPValueFromTails(true, 0.25, 0.25, eTwoSided), 0.5);
    EXPECT_EQ(mPValueFromTails(true, 0.2, 0.8, eTwoSided), 0.4);
    EXPECT_EQ(mPValueFromTails(true, 0.9, 0.1, eTwoSided), 0.2);
    EXPECT_EQ(mPValueFromTails(true, 0.9, 0.1, eLowerTailed), 0.9);
    EXPECT_EQ(mPValueFromTails(true, 0.9, 0.1, eUpperTailed), 0.1);
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mPValueFromTails(false, 0.9, 0.1, eLowerTailed)));
    EXPECT_TRUE(mIsNumericMissing(mPValueFromTails(false, 0.9, 0.1, eUpperTailed)));
    EXPECT_TRUE(mIsNumericMissing(mPValueFromTails(false, 0.9, 0.1, eTwoSided)));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(NormalCritValue, OneSidedValuesAreTheSamePositiveMagnitude)
{
    CmAssertCapture capture;
    const double dLower = mNormalCritValue(0.05, eLowerTailed);
    const double dUpper = mNormalCritValue(0.05, eUpperTailed);
    EXPECT_EQ(dLower, dUpper);
    EXPECT_GT(dLower, 0.0);
    EXPECT_NEAR(dLower, 1.6448536269514722, 1e-9);
    EXPECT_NEAR(mNormalCritValue(0.05, eTwoSided), 1.959963984540054, 1e-9);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(NormalCritValue, UnknownAlternativeAssertsFalseAndUsesTheRawProbability)
{
    CmAssertCapture capture;
    EXPECT_EQ(mNormalCritValue(0.05, static_cast<EAlternative>(7)), mNormalInvCdf(0.05, 0.0, 1.0));
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "false");
}

TEST(NormalCritValue, ProbabilityOutsideTheOpenIntervalIsReported)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mNormalCritValue(0.0, eUpperTailed)));
    EXPECT_TRUE(capture.mHas("dProb > 0.0"));
    EXPECT_TRUE(mIsNumericMissing(mNormalCritValue(1.0, eUpperTailed)));
    EXPECT_TRUE(capture.mHas("dProb < 1.0"));
}

TEST(NormalPValue, AgreesWithReferenceTable)
{
    int iRows = 0;
    const qeltest::WorstError worst =
        qeltest::mPValueAgainstTable(qeltest::ePValueNormal, "mNormalPValue", &iRows);
    EXPECT_GT(iRows, 20);
    EXPECT_LT(worst.mGetError(), 1e-9);
    std::cout << worst.mReport() << std::endl;
}

TEST(NormalCritValue, AgreesWithReferenceTable)
{
    int iRows = 0;
    const qeltest::WorstError worst =
        qeltest::mCritValueAgainstTable(qeltest::ePValueNormal, "mNormalCritValue", &iRows);
    EXPECT_GT(iRows, 20);
    // 1 - dProb carries dProb's rounding into the quantile far out in the tail.
    EXPECT_LT(worst.mGetError(), 1e-8);
    std::cout << worst.mReport() << std::endl;
}
