// The families on the normal flat functions: lognormal and half-normal.
// Threshold edges, the quantile's ends, the overflow of the lognormal
// quantile, the assertion texts (the half-normal's own and those of the
// normal functions it calls), and the relations to the normal family.
#include "qel/closedform.h"

#include "qel/normal.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace
{
const double kMissing = mGetMissingValueCode();

std::vector<std::string> mTexts(std::initializer_list<const char*> texts)
{
    return std::vector<std::string>(texts.begin(), texts.end());
}
} // namespace

TEST(LogNormalFlat, ThresholdEdgesAndTheMedian)
{
    CmAssertCapture capture;
    EXPECT_EQ(mLogNormalPdf(2.0, 0.0, 1.0, 2.0), 0.0);
    EXPECT_EQ(mLogNormalPdf(-5.0, 0.0, 1.0, 2.0), 0.0);
    EXPECT_EQ(mLogNormalCdf(2.0, 0.0, 1.0, 2.0, false), 0.0);
    EXPECT_EQ(mLogNormalCdf(2.0, 0.0, 1.0, 2.0, true), 1.0);
    // log(1) = 0 = mu: both tails 1/2 exactly, the density 1 / sqrt(2 pi).
    EXPECT_EQ(mLogNormalCdf(3.0, 0.0, 1.0, 2.0, false), 0.5);
    EXPECT_EQ(mLogNormalCdf(3.0, 0.0, 1.0, 2.0, true), 0.5);
    EXPECT_EQ(mLogNormalPdf(3.0, 0.0, 1.0, 2.0), mNormalPdf(0.0, 0.0, 1.0));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(LogNormalFlat, QuantileEndsCentreAndOverflow)
{
    CmAssertCapture capture;
    EXPECT_EQ(mLogNormalInvCdf(0.0, 1.0, 2.0, 4.0), 4.0);
    EXPECT_EQ(mLogNormalInvCdf(1.0, 1.0, 2.0, 4.0), kMissing);
    EXPECT_EQ(mLogNormalInvCdf(0.5, 0.0, 2.0, 4.0), 5.0);
    // log-scale quantile near 800: the exponential overflows, M.
    EXPECT_EQ(mLogNormalInvCdf(0.5, 800.0, 1.0, 0.0), kMissing);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(LogNormalFlat, AssertionTextsOwnAndOfTheNormalFunctions)
{
    CmAssertCapture capture;
    // Quantile: its own probability texts, then those of mNormalInvCdf.
    EXPECT_EQ(mLogNormalInvCdf(1.5, 0.0, 1.0, 0.0), kMissing);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dProb <= 1.0", "dProb <= 1.0"}));
    capture.mClear();
    EXPECT_EQ(mLogNormalInvCdf(0.5, 0.0, -1.0, 0.0), 1.0);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dSigma > 0.0"}));
    capture.mClear();
    mLogNormalPdf(1.0, 0.0, -1.0, 0.0);
    mLogNormalCdf(2.0, 0.0, -1.0, 0.0, true);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dSigma > 0.0", "dSigma > 0.0"}));
}

TEST(HalfNormalFlat, ThresholdEdges)
{
    CmAssertCapture capture;
    // The density includes the threshold: twice the normal density at the mean.
    EXPECT_EQ(mHalfNormalPdf(3.0, 2.0, 3.0), 2.0 * mNormalPdf(3.0, 3.0, 2.0));
    EXPECT_EQ(mHalfNormalPdf(2.9, 2.0, 3.0), 0.0);
    EXPECT_EQ(mHalfNormalCdf(3.0, 2.0, 3.0, false), 0.0);
    EXPECT_EQ(mHalfNormalCdf(3.0, 2.0, 3.0, true), 1.0);
    EXPECT_EQ(mHalfNormalCdf(2.0, 2.0, 3.0, false), 0.0);
    EXPECT_EQ(mHalfNormalCdf(2.0, 2.0, 3.0, true), 1.0);
    EXPECT_EQ(mHalfNormalCdf(3.0 + 2.0 * 50.0, 2.0, 3.0, false), 1.0);
    EXPECT_EQ(mHalfNormalCdf(3.0 + 2.0 * 50.0, 2.0, 3.0, true), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(HalfNormalFlat, QuantileIsTheNormalQuantileAtTheMidpoint)
{
    CmAssertCapture capture;
    EXPECT_EQ(mHalfNormalInvCdf(0.0, 2.0, 3.0), 3.0);
    EXPECT_EQ(mHalfNormalInvCdf(1.0, 2.0, 3.0), kMissing);
    EXPECT_EQ(mHalfNormalInvCdf(0.6, 2.0, 3.0), mNormalInvCdf(0.8, 3.0, 2.0));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(HalfNormalFlat, AssertionTexts)
{
    CmAssertCapture capture;
    mHalfNormalPdf(1.0, -1.0, 0.0);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dScale > 0.0", "dSigma > 0.0"}));
    capture.mClear();
    mHalfNormalCdf(1.0, -1.0, 0.0, false);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dScale > 0.0", "dSigma > 0.0"}));
    capture.mClear();
    // Below the threshold the normal function is not called.
    mHalfNormalCdf(-1.0, -1.0, 0.0, false);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dScale > 0.0"}));
    capture.mClear();
    EXPECT_EQ(mHalfNormalInvCdf(-2.0, 1.0, 0.0), kMissing);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dProb >= 0.0", "dProb >= 0.0"}));
}
