// The families built on the exponential: exponential, largest and smallest
// extreme value, Laplace and Weibull.  Edge values at the threshold, the
// accurate lower tail near the threshold, the overflow handlers with their
// values, the assertion texts (and their absence where no parameter is
// checked), and the reflection that defines the smallest extreme value.
#include "qel/closedform.h"

#include "qelmath/kernels/kernel_protocol.h"

#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"

#include <gtest/gtest.h>

#include <cfloat>
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

TEST(ExponentialFlat, DensityIncludesTheThresholdAndTheDistributionFunctionExcludesIt)
{
    CmAssertCapture capture;
    EXPECT_EQ(mExponentialCdf(2.0, 4.0, 2.0, false), 0.0);
    EXPECT_EQ(mExponentialCdf(2.0, 4.0, 2.0, true), 1.0);
    EXPECT_EQ(mExponentialPdf(2.0, 4.0, 2.0), 0.25);
    EXPECT_EQ(mExponentialPdf(-3.5, 0.1, -3.5), 1.0 / 0.1);
    // Below the threshold: no density, the whole mass above.
    EXPECT_EQ(mExponentialPdf(1.999, 4.0, 2.0), 0.0);
    EXPECT_EQ(mExponentialCdf(1.0, 4.0, 2.0, false), 0.0);
    EXPECT_EQ(mExponentialCdf(1.0, 4.0, 2.0, true), 1.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(ExponentialFlat, LowerTailNearTheThresholdKeepsRelativeAccuracy)
{
    // Where exp(-z) rounds to 1, 1 - exp(-z) would be 0; the chi-square route
    // gives z (1 - z/2 + ...) to the accuracy of the chi-square kernel, which
    // is about 1e-14 relative here (worst seen 1.2e-14 at z = 1e-100).
    for (double z : {1e-287, 1e-200, 1e-100, 1e-20, 1e-17, 1e-12, 1e-8, 1e-5, 1e-4, 5e-4, 1e-3})
    {
        const double dLower = mExponentialCdf(z, 1.0, 0.0, false);
        const double dExact = -std::expm1(-z);
        EXPECT_LE(std::fabs(dLower - dExact), 1e-13 * dExact) << z;
        EXPECT_GT(dLower, 0.0) << z;
        EXPECT_EQ(kernel_error_code, 0) << z;
    }
    EXPECT_EQ(1.0 - std::exp(-1e-20), 0.0);
    EXPECT_NEAR(mExponentialCdf(3.0 + 1e-12, 1.0, 3.0, false) / 1.0000889005818409e-12, 1.0, 1e-13);
    // The chi-square kernel hands half its point, z itself, to the gamma
    // kernel, which treats a point below 2.2250738585072014e-288 as 0.
    EXPECT_EQ(mExponentialCdf(1e-300, 1.0, 0.0, false), 0.0);
    // Above the switch (exp(-z) at most 0.999) the complement is used.
    EXPECT_EQ(mExponentialCdf(0.5, 1.0, 0.0, false), 1.0 - std::exp(-0.5));
    EXPECT_EQ(mExponentialCdf(0.5, 1.0, 0.0, true), std::exp(-0.5));
    EXPECT_EQ(mExponentialCdf(0.002, 1.0, 0.0, false), 1.0 - std::exp(-0.002));
}

TEST(ExponentialFlat, QuantileAssertsOneTextAndGivesMissingAtOne)
{
    CmAssertCapture capture;
    EXPECT_EQ(mExponentialInvCdf(0.0, 2.0, 7.0), 7.0);
    EXPECT_EQ(mExponentialInvCdf(1.0, 2.0, 7.0), kMissing);
    EXPECT_NEAR(mExponentialInvCdf(0.5, 2.0, 7.0), 7.0 + 2.0 * std::log(2.0), 4e-15);
    EXPECT_EQ(capture.mGetCount(), 0);
    // A probability below 0 is reported, then the formula runs on.
    EXPECT_NEAR(mExponentialInvCdf(-1.0, 1.0, 0.0), -std::log(2.0), 1e-16);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"(0.0 <= dProb) && (dProb <= 1.0)"}));
    // Above 1 the logarithm meets a negative argument: its domain error is not
    // an overflow and reaches the caller.
    try
    {
        mExponentialInvCdf(1.5, 1.0, 0.0);
        ADD_FAILURE() << "no exception";
    }
    catch (const CmInvalidArgument& e)
    {
        EXPECT_EQ(e.mGetMessage().mGetString(), "Log of a negative argument.");
    }
    EXPECT_EQ(capture.mGetCount(), 2);
}

TEST(ExponentialFlat, NoScaleAssertionAndANegativeScaleRunsOn)
{
    CmAssertCapture capture;
    // exp(-(1 - 0) / -1) / -1 = -e.
    EXPECT_DOUBLE_EQ(mExponentialPdf(1.0, -1.0, 0.0), -std::exp(1.0));
    EXPECT_EQ(mExponentialInvCdf(0.5, -1.0, 0.0), -std::log(2.0));
    // The density has no overflow handler: the exponential's exception passes.
    EXPECT_THROW(mExponentialPdf(1000.0, -1.0, 0.0), CmFloatOverflow);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(ExtremeValueFlat, FarLowerTailIsTheLimitByTheOverflowHandler)
{
    CmAssertCapture capture;
    EXPECT_EQ(mLargestExtremeValueCdf(-1000.0, 0.0, 1.0, false), 0.0);
    EXPECT_EQ(mLargestExtremeValueCdf(-1000.0, 0.0, 1.0, true), 1.0);
    EXPECT_EQ(mLargestExtremeValuePdf(-1000.0, 0.0, 1.0), 0.0);
    // The mirror image: the far upper tail of the smallest extreme value.
    EXPECT_EQ(mSmallestExtremeValueCdf(1000.0, 0.0, 1.0, false), 1.0);
    EXPECT_EQ(mSmallestExtremeValueCdf(1000.0, 0.0, 1.0, true), 0.0);
    EXPECT_EQ(mSmallestExtremeValuePdf(1000.0, 0.0, 1.0), 0.0);
    // exp(-z) still finite, exp(-exp(-z)) underflows: 0 without the handler.
    EXPECT_EQ(mLargestExtremeValueCdf(-7.0, 0.0, 1.0, false), 0.0);
    EXPECT_EQ(mLargestExtremeValueCdf(-7.0, 0.0, 1.0, true), 1.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(ExtremeValueFlat, FarUpperTailKeepsRelativeAccuracy)
{
    // P(X > x) = 1 - exp(-exp(-z)) = exp(-z) (1 - exp(-z)/2 + ...).
    // It is the exponential lower tail at exp(-z), taken from the chi-square
    // kernel, to about 1e-14.
    for (double z : {7.0, 10.0, 40.0, 200.0, 600.0})
    {
        const double e = std::exp(-z);
        const double dUpper = mLargestExtremeValueCdf(z, 0.0, 1.0, true);
        EXPECT_LE(std::fabs(dUpper - (-std::expm1(-e))), 1e-13 * dUpper) << z;
    }
    // exp(-700) = 9.9e-305 lies below the kernel's smallest nonzero point.
    EXPECT_EQ(mLargestExtremeValueCdf(700.0, 0.0, 1.0, true), 0.0);
    // Beyond the exponent limit exp(-z) is 0: the upper tail is exactly 0.
    EXPECT_EQ(mLargestExtremeValueCdf(800.0, 0.0, 1.0, true), 0.0);
    EXPECT_EQ(mLargestExtremeValueCdf(800.0, 0.0, 1.0, false), 1.0);
}

TEST(ExtremeValueFlat, SmallestIsTheReflectionOfTheLargest)
{
    for (double x : {-5.0, -1.0, 0.0, 0.3, 2.0, 6.0})
    {
        EXPECT_EQ(mSmallestExtremeValuePdf(x, 1.0, 2.0), mLargestExtremeValuePdf(-x, -1.0, 2.0));
        EXPECT_EQ(mSmallestExtremeValueCdf(x, 1.0, 2.0, false),
                  mLargestExtremeValueCdf(-x, -1.0, 2.0, true));
        EXPECT_EQ(mSmallestExtremeValueCdf(x, 1.0, 2.0, true),
                  mLargestExtremeValueCdf(-x, -1.0, 2.0, false));
    }
    EXPECT_EQ(mSmallestExtremeValueInvCdf(0.25, 1.0, 2.0),
              -mLargestExtremeValueInvCdf(0.75, -1.0, 2.0));
}

TEST(ExtremeValueFlat, AssertionTextsOfEachFunction)
{
    CmAssertCapture capture;
    mLargestExtremeValuePdf(0.0, 0.0, -1.0);
    mLargestExtremeValueCdf(0.0, 0.0, 0.0, false);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dScale > 0.0", "dScale > 0.0"}));
    capture.mClear();
    // The smallest extreme value has none of its own: one report each.
    mSmallestExtremeValuePdf(0.0, 0.0, -1.0);
    mSmallestExtremeValueCdf(0.0, 0.0, -1.0, true);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dScale > 0.0", "dScale > 0.0"}));
    capture.mClear();
    // The quantile checks the probability, never the scale.
    EXPECT_NEAR(mLargestExtremeValueInvCdf(std::exp(-1.0), 3.0, -2.0), 3.0, 1e-15);
    EXPECT_EQ(capture.mGetCount(), 0);
    // Outside [0, 1] the inner logarithm meets a negative argument and its
    // domain error reaches the caller after the report.
    EXPECT_THROW(mLargestExtremeValueInvCdf(-0.5, 0.0, 1.0), CmInvalidArgument);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dProb >= 0.0"}));
    capture.mClear();
    EXPECT_THROW(mLargestExtremeValueInvCdf(1.5, 0.0, 1.0), CmInvalidArgument);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dProb <= 1.0"}));
}

TEST(ExtremeValueFlat, QuantileIsMissingAtBothEnds)
{
    CmAssertCapture capture;
    EXPECT_EQ(mLargestExtremeValueInvCdf(0.0, 0.0, 1.0), kMissing);
    EXPECT_EQ(mLargestExtremeValueInvCdf(1.0, 0.0, 1.0), kMissing);
    EXPECT_EQ(mSmallestExtremeValueInvCdf(0.0, 0.0, 1.0), kMissing);
    EXPECT_EQ(mSmallestExtremeValueInvCdf(1.0, 0.0, 1.0), kMissing);
    // Euler's median: -log(log 2).
    EXPECT_NEAR(mLargestExtremeValueInvCdf(0.5, 0.0, 1.0), 0.36651292058166432701, 2e-16);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(LaplaceFlat, TailsAreHalvesOfExponentialTails)
{
    CmAssertCapture capture;
    EXPECT_EQ(mLaplaceCdf(2.0, 2.0, 3.0, false), 0.5);
    EXPECT_EQ(mLaplaceCdf(2.0, 2.0, 3.0, true), 0.5);
    EXPECT_EQ(mLaplaceCdf(-1.0, 2.0, 3.0, false), 0.5 * std::exp(-1.0));
    EXPECT_EQ(mLaplaceCdf(5.0, 2.0, 3.0, true), 0.5 * std::exp(-1.0));
    EXPECT_EQ(mLaplaceCdf(5.0, 2.0, 3.0, false), 0.5 * (1.0 - std::exp(-1.0)) + 0.5);
    EXPECT_EQ(mLaplacePdf(2.0, 2.0, 3.0), 1.0 / 6.0);
    EXPECT_EQ(mLaplaceCdf(-2000.0, 0.0, 1.0, false), 0.0);
    EXPECT_EQ(mLaplaceCdf(-2000.0, 0.0, 1.0, true), 1.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(LaplaceFlat, OverflowOfTheDensityGivesMissing)
{
    CmAssertCapture capture;
    // No scale assertion: a negative scale turns the exponent positive.
    EXPECT_EQ(mLaplacePdf(1000.0, 0.0, -1.0), kMissing);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(LaplaceFlat, QuantileEndsCentreAndTexts)
{
    CmAssertCapture capture;
    EXPECT_EQ(mLaplaceInvCdf(0.0, 1.0, 2.0), kMissing);
    EXPECT_EQ(mLaplaceInvCdf(1.0, 1.0, 2.0), kMissing);
    EXPECT_EQ(mLaplaceInvCdf(0.5, 1.0, 2.0), 1.0);
    EXPECT_EQ(mLaplaceInvCdf(0.25, 1.0, 2.0), 1.0 + 2.0 * std::log(0.5));
    EXPECT_EQ(mLaplaceInvCdf(0.75, 1.0, 2.0), 1.0 + 2.0 * std::log(2.0));
    EXPECT_EQ(capture.mGetCount(), 0);
    // Outside [0, 1] the argument of the logarithm is negative: reported,
    // then the logarithm's domain error reaches the caller.
    EXPECT_THROW(mLaplaceInvCdf(2.0, 1.0, 2.0), CmInvalidArgument);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dProb <= 1.0"}));
    capture.mClear();
    EXPECT_THROW(mLaplaceInvCdf(-0.5, 1.0, 2.0), CmInvalidArgument);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dProb >= 0.0"}));
}

TEST(WeibullFlat, QuantileAtTheEnds)
{
    CmAssertCapture capture;
    EXPECT_EQ(mWeibullInvCdf(0.0, 2.0, 3.0, 5.0), 5.0);
    EXPECT_EQ(mWeibullInvCdf(1.0, 2.0, 3.0, 5.0), kMissing);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(WeibullFlat, ThresholdAndShapeOne)
{
    CmAssertCapture capture;
    EXPECT_EQ(mWeibullPdf(5.0, 2.0, 3.0, 5.0), 0.0);
    EXPECT_EQ(mWeibullCdf(5.0, 2.0, 3.0, 5.0, false), 0.0);
    EXPECT_EQ(mWeibullCdf(5.0, 2.0, 3.0, 5.0, true), 1.0);
    // Shape 1 is the exponential.
    for (double x : {0.1, 1.0, 4.0})
    {
        EXPECT_EQ(mWeibullCdf(x, 1.0, 2.0, 0.0, true), mExponentialCdf(x, 2.0, 0.0, true));
        EXPECT_EQ(mWeibullCdf(x, 1.0, 2.0, 0.0, false), mExponentialCdf(x, 2.0, 0.0, false));
        EXPECT_DOUBLE_EQ(mWeibullPdf(x, 1.0, 2.0, 0.0), mExponentialPdf(x, 2.0, 0.0));
    }
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(WeibullFlat, OverflowsGiveMissing)
{
    CmAssertCapture capture;
    // z^(k-1) overflows in the density, z^k in the distribution function.
    EXPECT_EQ(mWeibullPdf(1e300, 3.0, 1.0, 0.0), kMissing);
    EXPECT_EQ(mWeibullCdf(1e300, 3.0, 1.0, 0.0, false), kMissing);
    EXPECT_EQ(mWeibullCdf(1e300, 3.0, 1.0, 0.0, true), kMissing);
    // (-log(1 - p))^(1/k) overflows for a tiny shape.
    EXPECT_EQ(mWeibullInvCdf(0.9, 0.001, 1.0, 0.0), kMissing);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(WeibullFlat, AssertionTexts)
{
    CmAssertCapture capture;
    mWeibullPdf(1.0, 0.0, 1.0, 0.0);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dShape > 0.0"}));
    capture.mClear();
    mWeibullCdf(1.0, 1.0, -1.0, 0.0, false);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dScale > 0.0"}));
    capture.mClear();
    // p = -0.5: (-log 1.5)^(1 / -1) * 0 + 0, a whole power of a negative base.
    EXPECT_EQ(mWeibullInvCdf(-0.5, -1.0, 0.0, 0.0), 0.0);
    EXPECT_EQ(capture.mGetTexts(),
              mTexts({"dShape > 0.0", "dScale > 0.0", "(0.0 <= dProb) && (dProb <= 1.0)"}));
}
