// The uniform and triangular families: the closed interval of the density,
// tails computed each from its own end, exact quantile ends, the degenerate
// triangles whose mode sits at an end, and the assertion texts.
#include "qel/closedform.h"

#include "qel/qelmessaging.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace
{
std::vector<std::string> mTexts(std::initializer_list<const char*> texts)
{
    return std::vector<std::string>(texts.begin(), texts.end());
}

const char* const kTriangle = "(dMin <= dMode) && (dMode <= dMax) && (dMin < dMax)";
const char* const kProb = "(0.0 <= dProb) && (dProb <= 1.0)";
} // namespace

TEST(UniformFlat, QuantileEndsAreExact)
{
    CmAssertCapture capture;
    EXPECT_EQ(mUniformInvCdf(1.0, 2.0, 5.0), 5.0);
    EXPECT_EQ(mUniformInvCdf(0.0, 2.0, 5.0), 2.0);
    // At the top, (max - min) * p + min would not return max here:
    // (0.9 - 0.3) * 1 + 0.3 rounds to 0.9000000000000001.
    EXPECT_NE((0.9 - 0.3) * 1.0 + 0.3, 0.9);
    EXPECT_EQ(mUniformInvCdf(1.0, 0.3, 0.9), 0.9);
    EXPECT_EQ(mUniformInvCdf(0.5, 2.0, 5.0), 3.5);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(UniformFlat, DensityOnTheClosedIntervalAndTailsFromTheirOwnEnds)
{
    CmAssertCapture capture;
    EXPECT_EQ(mUniformPdf(2.0, 2.0, 6.0), 0.25);
    EXPECT_EQ(mUniformPdf(6.0, 2.0, 6.0), 0.25);
    EXPECT_EQ(mUniformPdf(6.5, 2.0, 6.0), 0.0);
    EXPECT_EQ(mUniformPdf(1.5, 2.0, 6.0), 0.0);
    EXPECT_EQ(mUniformCdf(2.0, 2.0, 6.0, false), 0.0);
    EXPECT_EQ(mUniformCdf(2.0, 2.0, 6.0, true), 1.0);
    EXPECT_EQ(mUniformCdf(6.0, 2.0, 6.0, false), 1.0);
    EXPECT_EQ(mUniformCdf(6.0, 2.0, 6.0, true), 0.0);
    EXPECT_EQ(mUniformCdf(3.0, 2.0, 6.0, false), 0.25);
    EXPECT_EQ(mUniformCdf(3.0, 2.0, 6.0, true), 0.75);
    // Next to the top the upper tail is one step of the grid, not 1 - lower.
    const double x = std::nextafter(1.0, 0.0);
    EXPECT_EQ(mUniformCdf(x, 0.0, 1.0, true), 1.0 - x);
    EXPECT_EQ(mUniformCdf(x, 0.0, 1.0, true), 0x1p-53);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(UniformFlat, AssertionTexts)
{
    CmAssertCapture capture;
    mUniformPdf(0.0, 1.0, 1.0);
    mUniformCdf(0.5, 1.0, 0.0, false);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dMin < dMax", "dMin < dMax"}));
    capture.mClear();
    // Out of range the formula runs on.
    EXPECT_EQ(mUniformInvCdf(2.0, 2.0, 5.0), 8.0);
    EXPECT_EQ(capture.mGetTexts(), mTexts({kProb}));
    capture.mClear();
    mUniformInvCdf(0.5, 5.0, 2.0);
    EXPECT_EQ(capture.mGetTexts(), mTexts({"dMin < dMax"}));
}

TEST(TriangularFlat, DensityAtAModeOnTheLowerEnd)
{
    CmAssertCapture capture;
    EXPECT_EQ(mTriangularPdf(0.0, 0.0, 0.0, 1.0), 2.0);
    EXPECT_EQ(mTriangularPdf(2.0, 2.0, 2.0, 6.0), 0.5);
    EXPECT_EQ(mTriangularPdf(6.0, 2.0, 6.0, 6.0), 0.5);
    EXPECT_EQ(mTriangularPdf(4.0, 2.0, 2.0, 6.0), 0.25);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(TriangularFlat, DensityPiecesAndOutside)
{
    CmAssertCapture capture;
    // min 0, mode 1, max 4: peak 2 / 4.
    EXPECT_EQ(mTriangularPdf(1.0, 0.0, 1.0, 4.0), 0.5);
    EXPECT_EQ(mTriangularPdf(0.5, 0.0, 1.0, 4.0), 0.25);
    EXPECT_EQ(mTriangularPdf(2.5, 0.0, 1.0, 4.0), 0.25);
    EXPECT_EQ(mTriangularPdf(0.0, 0.0, 1.0, 4.0), 0.0);
    EXPECT_EQ(mTriangularPdf(4.0, 0.0, 1.0, 4.0), 0.0);
    EXPECT_EQ(mTriangularPdf(-1.0, 0.0, 1.0, 4.0), 0.0);
    EXPECT_EQ(mTriangularPdf(5.0, 0.0, 1.0, 4.0), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(TriangularFlat, DistributionFunctionEachTailFromItsOwnEnd)
{
    CmAssertCapture capture;
    // min 0, mode 1, max 4: P(X <= 1) = 1/4, P(X <= 0.5) = 1/16,
    // P(X > 2.5) = 1.5^2 / 12 = 0.1875.
    EXPECT_EQ(mTriangularCdf(1.0, 0.0, 1.0, 4.0, false), 0.25);
    EXPECT_NEAR(mTriangularCdf(1.0, 0.0, 1.0, 4.0, true), 0.75, 2.3e-16);
    EXPECT_EQ(mTriangularCdf(0.5, 0.0, 1.0, 4.0, false), 0.0625);
    EXPECT_NEAR(mTriangularCdf(2.5, 0.0, 1.0, 4.0, true), 0.1875, 1e-16);
    EXPECT_EQ(mTriangularCdf(2.5, 0.0, 1.0, 4.0, false), 0.8125);
    EXPECT_EQ(mTriangularCdf(0.0, 0.0, 1.0, 4.0, false), 0.0);
    EXPECT_EQ(mTriangularCdf(0.0, 0.0, 1.0, 4.0, true), 1.0);
    EXPECT_EQ(mTriangularCdf(4.0, 0.0, 1.0, 4.0, false), 1.0);
    EXPECT_EQ(mTriangularCdf(4.0, 0.0, 1.0, 4.0, true), 0.0);
    // The modes at either end.
    EXPECT_EQ(mTriangularCdf(0.5, 0.0, 0.0, 1.0, true), 0.25);
    EXPECT_EQ(mTriangularCdf(0.5, 0.0, 1.0, 1.0, false), 0.25);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(TriangularFlat, QuantileEndsAndBothSidesOfTheMode)
{
    CmAssertCapture capture;
    EXPECT_EQ(mTriangularInvCdf(1.0, 0.0, 1.0, 4.0), 4.0);
    EXPECT_EQ(mTriangularInvCdf(0.0, 0.0, 1.0, 4.0), 0.0);
    EXPECT_EQ(mTriangularInvCdf(0.25, 0.0, 1.0, 4.0), 1.0);
    EXPECT_EQ(mTriangularInvCdf(0.0625, 0.0, 1.0, 4.0), 0.5);
    EXPECT_EQ(mTriangularInvCdf(0.8125, 0.0, 1.0, 4.0), 2.5);
    EXPECT_EQ(mTriangularInvCdf(0.0, 0.0, 0.0, 1.0), 0.0);
    EXPECT_EQ(mTriangularInvCdf(0.75, 0.0, 0.0, 1.0), 0.5);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(TriangularFlat, AssertionTexts)
{
    CmAssertCapture capture;
    mTriangularPdf(0.5, 0.0, 2.0, 1.0);
    mTriangularCdf(0.5, 1.0, 1.0, 1.0, false);
    EXPECT_EQ(capture.mGetTexts(), mTexts({kTriangle, kTriangle}));
    capture.mClear();
    // Out of range the formula runs on into the square root of a negative.
    EXPECT_TRUE(std::isnan(mTriangularInvCdf(-0.5, 0.0, 0.5, 1.0)));
    EXPECT_EQ(capture.mGetTexts(), mTexts({kProb}));
    capture.mClear();
    mTriangularInvCdf(0.5, 1.0, 0.5, 0.0);
    // The quantile's own triple, the probability holds, then the triple of
    // the distribution function it consults at the mode.
    EXPECT_EQ(capture.mGetTexts(), mTexts({kTriangle, kTriangle}));
}
