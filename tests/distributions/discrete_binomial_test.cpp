// Binomial density, distribution function and quantile: the edge cases of the
// point rule, the upper tail and the degenerate probabilities, the identities
// of the family, and exact rational sums from tests/data/gen_discrete.py.
#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <string>
#include <vector>

#include "qel/discrete.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"
#include "tests/support/reftable.h"
#include "tests/distributions/discrete_support.h"

TEST(BinomialCdf, TailsAddUpToOnePlusTheMass)
{
    const double dLower = mBinomialCdf(3, 10, 0.3, false);
    const double dUpper = mBinomialCdf(3, 10, 0.3, true);
    EXPECT_NEAR(dLower + dUpper - 1.0, mBinomialPdf(3, 10, 0.3), 1e-15);
    EXPECT_NEAR(mBinomialPdf(3, 10, 0.3), 0.266827932, 1e-15);
}

TEST(BinomialCdf, NonIntegerCountsAsItsFloor)
{
    EXPECT_EQ(mBinomialCdf(2.7, 10, 0.3, false), mBinomialCdf(2, 10, 0.3, false));
    EXPECT_EQ(mBinomialPdf(2.7, 10, 0.3), 0.0);
}

TEST(BinomialCdf, CountWithinFuzzIsTheWholeNumber)
{
    EXPECT_EQ(mBinomialCdf(2 + 1e-17, 10, 0.3, false), mBinomialCdf(2, 10, 0.3, false));
    EXPECT_EQ(mBinomialCdf(std::nextafter(3.0, 0.0), 10, 0.3, false), mBinomialCdf(3, 10, 0.3, false));
    EXPECT_EQ(mBinomialPdf(std::nextafter(3.0, 0.0), 10, 0.3), mBinomialPdf(3, 10, 0.3));
    EXPECT_EQ(mBinomialCdf(3 - 1e-12, 10, 0.3, false), mBinomialCdf(2, 10, 0.3, false));
    EXPECT_EQ(mBinomialPdf(3 - 1e-12, 10, 0.3), 0.0);
    EXPECT_EQ(mBinomialCdf(2.999, 10, 0.3, false), mBinomialCdf(2, 10, 0.3, false));
}

TEST(BinomialCdf, UpperTailBelowSupportReflectsToOne)
{
    CmAssertCapture capture;
    EXPECT_EQ(mBinomialCdf(-1, 10, 0.3, true), 1.0);
    EXPECT_EQ(mBinomialCdf(0, 10, 0.3, true), 1.0);
    EXPECT_EQ(mBinomialCdf(11, 10, 0.3, true), 0.0);
    EXPECT_EQ(mBinomialCdf(-1, 10, 0.3, false), 0.0);
    EXPECT_EQ(mBinomialCdf(10, 10, 0.3, false), 1.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(BinomialPdf, DegenerateProbabilities)
{
    CmAssertCapture capture;
    EXPECT_EQ(mBinomialPdf(0, 5, 0), 1.0);
    EXPECT_EQ(mBinomialPdf(1, 5, 0), 0.0);
    EXPECT_EQ(mBinomialPdf(5, 5, 1), 1.0);
    EXPECT_EQ(mBinomialPdf(4, 5, 1), 0.0);
    EXPECT_EQ(mBinomialPdf(6, 5, 0.5), 0.0);
    EXPECT_EQ(mBinomialPdf(-1, 5, 0.5), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(BinomialCdf, ZeroProbabilityFailsItsAssertion)
{
    CmAssertCapture capture;
    mBinomialCdf(0, 5, 0, false);
    EXPECT_TRUE(capture.mHas("dP > 0.0"));
    capture.mClear();
    mBinomialCdf(0, 5, 1, false);
    EXPECT_TRUE(capture.mHas("dP < 1.0"));
    capture.mClear();
    mBinomialCdf(0, -5, 0.5, false);
    EXPECT_TRUE(capture.mHas("dN >= 0"));
}

TEST(BinomialPdf, AssertionTexts)
{
    CmAssertCapture capture;
    mBinomialPdf(0, 0, 0.5);
    EXPECT_TRUE(capture.mHas("iN > 0"));
    capture.mClear();
    // The computation goes on, and the logarithm of the negative
    // probability throws.
    EXPECT_THROW(mBinomialPdf(0, 5, -0.5), CmInvalidArgument);
    EXPECT_TRUE(capture.mHas("dP >= 0.0"));
    capture.mClear();
    EXPECT_THROW(mBinomialPdf(0, 5, 1.5), CmInvalidArgument);
    EXPECT_TRUE(capture.mHas("dP <= 1.0"));
}

TEST(BinomialInvCdf, EndsAndAssertions)
{
    CmAssertCapture capture;
    EXPECT_EQ(mBinomialInvCdf(1, 5, 0.3), 5.0);
    EXPECT_EQ(mBinomialInvCdf(0, 5, 0.3), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
    mBinomialInvCdf(1.5, 5, 0.3);
    EXPECT_TRUE(capture.mHas("dProb <= 1.0"));
    capture.mClear();
    mBinomialInvCdf(-0.5, 5, 0.3);
    EXPECT_TRUE(capture.mHas("dProb >= 0.0"));
    capture.mClear();
    mBinomialInvCdf(0.5, 5, 0.0);
    EXPECT_TRUE(capture.mHas("dP > 0.0"));
}

TEST(BinomialCdf, CountBeyondIntegerRangeUsesTheBetaRatio)
{
    // n = 3e9, p = 1/2: by symmetry P(X <= n/2) = 1/2 + P(X = n/2) / 2, and
    // P(X = n/2) = sqrt(2 / (pi n)) (1 - 1/(4n) + ...) by Stirling's series.
    const double dN = 3e9;
    const double dMass = std::sqrt(2.0 / (3.14159265358979323846 * dN)) * (1.0 - 0.25 / dN);
    const double dLower = mBinomialCdf(1.5e9, dN, 0.5, false);
    EXPECT_NEAR(dLower, 0.5 + 0.5 * dMass, 1e-9);
}

TEST(BinomialInvCdf, TailBeyondTheKernelIsMissing)
{
    EXPECT_TRUE(mIsNumericMissing(mBinomialInvCdf(1.0 - 1e-14, 57, 0.125)));
}

TEST(BinomialQuantile, InvertsTheDistributionFunction)
{
    // Up to the count whose upper tail is still well above the rounding of
    // 1 - p.
    for (int k = 0; k < 16; ++k)
        EXPECT_EQ(mBinomialInvCdf(mBinomialCdf(k, 20, 0.35, false), 20, 0.35), k) << k;
}

TEST(BinomialReference, ExactSums)
{
    qeltest::mCheckDiscreteFamily("binomial",
        0, [](double dX, const std::vector<double>& r) { return mBinomialPdf(dX, static_cast<int>(r[1]), r[2]); },
        [](double dX, const std::vector<double>& r, bool b) { return mBinomialCdf(dX, r[1], r[2], b); },
        [](double dP, const std::vector<double>& r) { return mBinomialInvCdf(dP, static_cast<int>(r[1]), r[2]); });
}

TEST(BinomialInvCdf, MissingProbabilityFailsItsAssertionAndIsMissing)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mBinomialInvCdf(mGetMissingValueCode(), 5, 0.3)));
    EXPECT_TRUE(capture.mHas("dProb <= 1.0"));
}

TEST(BinomialQuantile, ProbabilityOnAStepGetsTheLowerCount)
{
    // P(X <= 2) for n = 4, p = 1/2 is 11/16, exact in binary.
    EXPECT_EQ(mBinomialInvCdf(11.0 / 16.0, 4, 0.5), 2.0);
    EXPECT_EQ(mBinomialInvCdf(11.0 / 16.0 + 1e-6, 4, 0.5), 3.0);
    // P(X <= 0) = 1/16 on the lower-quantile side.
    EXPECT_EQ(mBinomialInvCdf(1.0 / 16.0, 4, 0.5), 0.0);
    EXPECT_EQ(mBinomialInvCdf(1.0 / 16.0 + 1e-6, 4, 0.5), 1.0);
}
