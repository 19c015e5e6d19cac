// Poisson density, distribution function (through the chi-square identity)
// and quantile: edge cases, identities and 60-digit sums from
// tests/data/gen_discrete.py.
#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <string>
#include <vector>

#include "qel/discrete.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "tests/support/reftable.h"
#include "tests/distributions/discrete_support.h"

TEST(PoissonCdf, UpperTailAtZeroIsOne)
{
    EXPECT_EQ(mPoissonCdf(0, 2, true), 1.0);
    EXPECT_NEAR(mPoissonCdf(1, 2, true), 1.0 - std::exp(-2.0), 1e-15);
    EXPECT_EQ(mPoissonCdf(-1, 2, false), 0.0);
    EXPECT_EQ(mPoissonCdf(-0.5, 2, false), 0.0);
    EXPECT_NEAR(mPoissonCdf(0.5, 2, false), std::exp(-2.0), 1e-15);
}

TEST(PoissonPdf, PointTest)
{
    EXPECT_EQ(mPoissonPdf(1.5, 2), 0.0);
    EXPECT_EQ(mPoissonPdf(-1, 2), 0.0);
    EXPECT_NEAR(mPoissonPdf(2, 2), 2.0 * std::exp(-2.0), 1e-15);
}

TEST(PoissonInvCdf, EndsAndAssertions)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mPoissonInvCdf(1, 2)));
    EXPECT_EQ(mPoissonInvCdf(0, 2), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
    mPoissonInvCdf(0.5, -1);
    EXPECT_TRUE(capture.mHas("dMu > 0.0"));
    capture.mClear();
    mPoissonInvCdf(-0.5, 2);
    EXPECT_TRUE(capture.mHas("dProb >= 0.0"));
    capture.mClear();
    mPoissonCdf(1, 0, false);
    EXPECT_TRUE(capture.mHas("dMu > 0.0"));
}

TEST(PoissonQuantile, InvertsTheDistributionFunction)
{
    for (int k = 0; k < 25; ++k)
        EXPECT_EQ(mPoissonInvCdf(mPoissonCdf(k, 6.5, false), 6.5), k) << k;
}

TEST(PoissonReference, SixtyDigitSums)
{
    qeltest::mCheckDiscreteFamily("poisson",
        3, [](double dX, const std::vector<double>& r) { return mPoissonPdf(dX, r[1]); },
        [](double dX, const std::vector<double>& r, bool b) { return mPoissonCdf(dX, r[1], b); },
        [](double dP, const std::vector<double>& r) { return mPoissonInvCdf(dP, r[1]); });
}

TEST(PoissonPdf, OverflowAtZeroMeanIsReportedAndZero)
{
    CmAssertCapture capture;
    EXPECT_EQ(mPoissonPdf(1, 0), 0.0);
    EXPECT_TRUE(capture.mHas("dMu > 0.0"));
    EXPECT_TRUE(capture.mHas("false"));
}

TEST(PoissonInvCdf, MissingProbabilityFailsItsAssertionAndIsMissing)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mPoissonInvCdf(mGetMissingValueCode(), 2)));
    EXPECT_TRUE(capture.mHas("dProb <= 1.0"));
}
