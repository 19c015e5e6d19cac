// The Cauchy, logistic and loglogistic families: edge values, the overflow
// handlers (0 in the density's far tail, the limit in the distribution
// function with the assertion that holds there, the missing value in the
// quantile), the probability ends of the quantiles and the assertion texts.
#include "qel/closedform.h"

#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace
{
const double kMissing = mGetMissingValueCode();
const double kPi = 3.14159265358979323846;

std::vector<std::string> mTexts(std::initializer_list<const char*> texts)
{
    return std::vector<std::string>(texts.begin(), texts.end());
}
} // namespace

TEST(CauchyFlat, QuantileEndsAreMissingAndTheCentreIsExact)
{
    CmAssertCapture capture;
    EXPECT_EQ(mCauchyInvCdf(0.0, 0.0, 1.0), kMissing);
    EXPECT_EQ(mCauchyInvCdf(1.0, 0.0, 1.0), kMissing);
    EXPECT_EQ(mCauchyInvCdf(0.5, 3.0, 2.0), 3.0);
    // Within the fuzz of 0.5 the location is returned as it is.
    EXPECT_EQ(mCauchyInvCdf(std::nextafter(0.5, 1.0), 3.0, 2.0), 3.0);
    EXPECT_NEAR(mCauchyInvCdf(0.75, 3.0, 2.0), 5.0, 1e-15);
    EXPECT_NEAR(mCauchyInvCdf(0.25, 3.0, 2.0), 1.0, 1e-15);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(CauchyFlat, TangentDomainErrorIsCaughtAsMissing)
{
    CmAssertCapture capture;
    // A NaN fails the probability assertion and then the range test of the
    // guarded tangent, whose CmInvalidArgument becomes the missing value.
    EXPECT_EQ(mCauchyInvCdf(std::numeric_limits<double>::quiet_NaN(), 0.0, 1.0), kMissing);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"(0.0 <= dProb) && (dProb <= 1.0)"}));
}

TEST(CauchyFlat, DensityAndTailsAtSimplePoints)
{
    CmAssertCapture capture;
    EXPECT_EQ(mCauchyPdf(3.0, 3.0, 2.0), 1.0 / (kPi * 2.0));
    EXPECT_EQ(mCauchyPdf(5.0, 3.0, 2.0), 1.0 / (kPi * 2.0 * 2.0));
    EXPECT_EQ(mCauchyCdf(3.0, 3.0, 2.0, false), 0.5);
    EXPECT_EQ(mCauchyCdf(3.0, 3.0, 2.0, true), 0.5);
    EXPECT_NEAR(mCauchyCdf(5.0, 3.0, 2.0, false), 0.75, 1e-16);
    EXPECT_NEAR(mCauchyCdf(5.0, 3.0, 2.0, true), 0.25, 1e-16);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(CauchyFlat, EveryFunctionAssertsTheScale)
{
    CmAssertCapture capture;
    mCauchyPdf(0.0, 0.0, 0.0);
    mCauchyCdf(1.0, 0.0, -1.0, false);
    mCauchyInvCdf(0.3, 0.0, -1.0);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dScale > 0.0", "dScale > 0.0", "dScale > 0.0"}));
    capture.mClear();
    // Both texts in order when both fail; 1.5 is out of range and then
    // simply computed: tan(pi) * 1, about -1.2e-16.
    EXPECT_NEAR(mCauchyInvCdf(1.5, 0.0, -1.0), 0.0, 1e-15);
    EXPECT_EQ(capture.mGetTexts(),
              mTexts({"dScale > 0.0", "(0.0 <= dProb) && (dProb <= 1.0)"}));
}

TEST(LogisticFlat, FarLowerTailIsZeroByTheHandlerWhoseAssertionHolds)
{
    CmAssertCapture capture;
    EXPECT_EQ(mLogisticCdf(-1000.0, 0.0, 1.0, false), 0.0);
    EXPECT_EQ(mLogisticCdf(-1000.0, 0.0, 1.0, true), 1.0);
    // The overflow means a negative standardised point: "dStandard < 0.0"
    // holds and nothing is reported.
    EXPECT_EQ(capture.mGetCount(), 0);
    // exp(-z) is 0 at the other end: no overflow, the limits by formula.
    EXPECT_EQ(mLogisticCdf(1000.0, 0.0, 1.0, false), 1.0);
    EXPECT_EQ(mLogisticCdf(1000.0, 0.0, 1.0, true), 0.0);
}

TEST(LogisticFlat, DensityIsZeroInBothFarTails)
{
    CmAssertCapture capture;
    EXPECT_EQ(mLogisticPdf(-1000.0, 0.0, 1.0), 0.0); // by the overflow handler
    EXPECT_EQ(mLogisticPdf(1000.0, 0.0, 1.0), 0.0);  // exp(-z) is 0
    EXPECT_EQ(mLogisticPdf(0.0, 0.0, 1.0), 0.25);
    EXPECT_EQ(mLogisticPdf(1.0, 1.0, 4.0), 0.0625);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(LogisticFlat, QuantileEndsOverflowToMissingAndTheCentreIsExact)
{
    CmAssertCapture capture;
    EXPECT_EQ(mLogisticInvCdf(0.0, 1.0, 2.0), kMissing);
    EXPECT_EQ(mLogisticInvCdf(1.0, 1.0, 2.0), kMissing);
    EXPECT_EQ(mLogisticInvCdf(0.5, 1.0, 2.0), 1.0);
    EXPECT_NEAR(mLogisticInvCdf(0.75, 1.0, 2.0), 1.0 + 2.0 * std::log(3.0), 1e-15);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(LogisticFlat, AssertionTexts)
{
    CmAssertCapture capture;
    mLogisticPdf(0.0, 0.0, -1.0);
    mLogisticCdf(0.0, 0.0, 0.0, true);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dScale > 0.0", "dScale > 0.0"}));
    capture.mClear();
    EXPECT_THROW(mLogisticInvCdf(1.5, 0.0, -1.0), CmInvalidArgument);
    EXPECT_EQ(capture.mGetTexts(),
              mTexts({"dScale > 0.0", "(0.0 <= dProb) && (dProb <= 1.0)"}));
}

TEST(LogLogisticFlat, ThresholdEdges)
{
    CmAssertCapture capture;
    EXPECT_EQ(mLogLogisticPdf(2.0, 0.0, 1.0, 2.0), 0.0);
    EXPECT_EQ(mLogLogisticCdf(2.0, 0.0, 1.0, 2.0, false), 0.0);
    EXPECT_EQ(mLogLogisticCdf(2.0, 0.0, 1.0, 2.0, true), 1.0);
    EXPECT_EQ(mLogLogisticCdf(1.0, 0.0, 1.0, 2.0, true), 1.0);
    // At threshold + exp(location) the median: 1/2, density 1 / (4 s y).
    EXPECT_EQ(mLogLogisticCdf(3.0, 0.0, 1.0, 2.0, false), 0.5);
    EXPECT_EQ(mLogLogisticPdf(3.0, 0.0, 0.5, 2.0), 0.5);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(LogLogisticFlat, QuantileEndsAndOverflow)
{
    CmAssertCapture capture;
    EXPECT_EQ(mLogLogisticInvCdf(0.0, 0.0, 1.0, 2.0), kMissing);
    EXPECT_EQ(mLogLogisticInvCdf(1.0, 0.0, 1.0, 2.0), kMissing);
    EXPECT_EQ(mLogLogisticInvCdf(0.5, 0.0, 1.0, 2.0), 3.0);
    // The logistic quantile is about 3670 here: exp overflows, M.
    EXPECT_EQ(mLogLogisticInvCdf(1.0 - 0x1p-53, 0.0, 100.0, 0.0), kMissing);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(LogLogisticFlat, QuantileAssertsBothTextsBeforeTheLogistic)
{
    CmAssertCapture capture;
    EXPECT_THROW(mLogLogisticInvCdf(-0.5, 0.0, 1.0, 0.0), CmInvalidArgument);
    EXPECT_EQ(capture.mGetTexts(),
              mTexts({"dProb >= 0.0", "(0.0 <= dProb) && (dProb <= 1.0)"}));
    capture.mClear();
    // The density and distribution function have none of their own.
    mLogLogisticPdf(1.0, 0.0, -1.0, 0.0);
    mLogLogisticCdf(1.0, 0.0, -1.0, 0.0, false);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dScale > 0.0", "dScale > 0.0"}));
}
