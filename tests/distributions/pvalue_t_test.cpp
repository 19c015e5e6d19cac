// The t p-value and critical values: the exact two-sided 1 at 0, the
// Bonferroni and per-comparison sizes, the one-sided critical values as one
// positive magnitude, the admitted probability 1 of the Bonferroni version,
// the assertions, and accuracy against the mpmath tables.
#include "qel/pvalues.h"

#include "qel/kernelbacked.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"
#include "pvalue_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>

TEST(TPValue, TwoSidedAtZeroIsOneAndMissingIsMissing)
{
    CmAssertCapture capture;
    EXPECT_EQ(mTPValue(0.0, 7.0, eTwoSided), 1.0);
    EXPECT_TRUE(mIsNumericMissing(mTPValue(mGetMissingValueCode(), 7.0, eTwoSided)));
    EXPECT_EQ(capture.mGetCount(), 0);
    EXPECT_EQ(mTPValue(-2.0, 7.0, eTwoSided), 2.0 * mTCdf(-2.0, 7.0, 0.0, false));
    mTPValue(1.0, 0.0, eUpperTailed);
    EXPECT_TRUE(capture.mHas("dDF > 0.0"));
}

TEST(TCritValue, TwoSidedBonferroniIsThePointForOneMinusSizeOverTwiceTheCount)
{
    CmAssertCapture capture;
    EXPECT_EQ(mTCritValue(0.05, 10.0, eTwoSided, 3), mTInvCdf(1.0 - 0.05 / 3.0 / 2.0, 10.0, 0.0));
    EXPECT_NEAR(mTCritValue(0.05, 10.0, eTwoSided, 3), 2.8700725556589784, 1e-8);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(TCritValue, OneSidedValuesAreTheSamePositiveMagnitude)
{
    const double dLower = mTCritValue(0.05, 10.0, eLowerTailed, 1);
    EXPECT_EQ(dLower, mTCritValue(0.05, 10.0, eUpperTailed, 1));
    EXPECT_GT(dLower, 0.0);
    EXPECT_EQ(mTSidakCritValue(0.05, 10.0, eLowerTailed, 4),
              mTSidakCritValue(0.05, 10.0, eUpperTailed, 4));
}

TEST(TCritValue, ProbabilityOneIsAdmittedForBonferroniButNotForSidak)
{
    CmAssertCapture capture;
    EXPECT_EQ(mTCritValue(1.0, 10.0, eTwoSided, 1), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
    mTSidakCritValue(1.0, 10.0, eTwoSided, 1);
    EXPECT_TRUE(capture.mHas("dProb < 1.0"));
}

TEST(TCritValue, AssertionsAndTheUnknownAlternative)
{
    CmAssertCapture capture;
    mTCritValue(0.05, 0.0, eUpperTailed, 1);
    EXPECT_TRUE(capture.mHas("dDF > 0.0"));
    mTCritValue(0.05, 10.0, eUpperTailed, 0);
    EXPECT_TRUE(capture.mHas("iBonferroniCt >= 1"));
    mTCritValue(0.0, 10.0, eUpperTailed, 1);
    EXPECT_TRUE(capture.mHas("dProb > 0.0"));
    mTSidakCritValue(0.05, 10.0, eUpperTailed, 0);
    EXPECT_TRUE(capture.mHas("iComparisonCt >= 1"));

    CmAssertCapture unknown;
    EXPECT_EQ(mTCritValue(0.05, 10.0, static_cast<EAlternative>(9), 2), mTInvCdf(0.05, 10.0, 0.0));
    EXPECT_EQ(mTSidakCritValue(0.05, 10.0, static_cast<EAlternative>(9), 2),
              mTInvCdf(0.05, 10.0, 0.0));
    ASSERT_EQ(unknown.mGetCount(), 2);
    EXPECT_EQ(unknown.mGetTexts()[0], "false");
}

TEST(TSidakCritValue, OneComparisonIsThePlainCriticalValue)
{
    EXPECT_NEAR(mTSidakCritValue(0.05, 10.0, eTwoSided, 1), mTCritValue(0.05, 10.0, eTwoSided, 1),
                1e-12);
    // The per-comparison size of the Sidak correction is just above the
    // Bonferroni one, so its critical value is just below.
    EXPECT_LT(mTSidakCritValue(0.05, 10.0, eTwoSided, 5), mTCritValue(0.05, 10.0, eTwoSided, 5));
}

TEST(TPValue, AgreesWithReferenceTable)
{
    int iRows = 0;
    const qeltest::WorstError worst =
        qeltest::mPValueAgainstTable(qeltest::ePValueT, "mTPValue", &iRows);
    EXPECT_GT(iRows, 50);
    EXPECT_LT(worst.mGetError(), 2e-9);
    std::cout << worst.mReport() << std::endl;
}

TEST(TCritValue, AgreesWithReferenceTable)
{
    int iRows = 0;
    const qeltest::WorstError worst =
        qeltest::mCritValueAgainstTable(qeltest::ePValueT, "mTCritValue", &iRows);
    EXPECT_GT(iRows, 100);
    // 1 - dProb rounds a tiny size, and the quantile carries that rounding.
    EXPECT_LT(worst.mGetError(), 5e-7);
    std::cout << worst.mReport() << std::endl;
}

TEST(TSidakCritValue, ProbabilityAboveOneIsReportedAndThePowerRefusesIt)
{
    CmAssertCapture capture;
    // 1 - dProb is negative: the guarded power throws for a fractional exponent.
    EXPECT_THROW(mTSidakCritValue(1.5, 10.0, eTwoSided, 3), CmInvalidArgument);
    EXPECT_TRUE(capture.mHas("dProb < 1.0"));
}
