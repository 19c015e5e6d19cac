// Negative binomial and geometric: the support from dR, the unrounded
// distribution function, the quantile's search, and exact rational sums
// from tests/data/gen_discrete.py.
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

TEST(NegBinomialCdf, SupportStartsAtR)
{
    EXPECT_EQ(mNegBinomialCdf(2, 0.5, 3, false), 0.0);
    EXPECT_EQ(mNegBinomialCdf(3, 0.5, 3, true), 1.0);
    EXPECT_EQ(mNegBinomialPdf(2, 0.5, 3), 0.0);
    EXPECT_NEAR(mNegBinomialPdf(3, 0.5, 3), 0.125, 1e-16);
}

TEST(GeometricPdf, FirstTrial)
{
    EXPECT_EQ(mGeometricPdf(1, 0.25), 0.25);
    EXPECT_EQ(mGeometricPdf(2, 0.25), 0.25 * 0.75);
    EXPECT_EQ(mGeometricPdf(1.5, 0.25), 0.0);
    EXPECT_EQ(mGeometricPdf(0, 0.25), 0.0);
}

TEST(GeometricCdf, ClosedFormIsNotRounded)
{
    EXPECT_NEAR(mGeometricCdf(3, 0.25, false), 1.0 - 0.75 * 0.75 * 0.75, 1e-15);
    EXPECT_NEAR(mGeometricCdf(3, 0.25, true), 0.75 * 0.75, 1e-15);
    // Deliberately unrounded: the closed form is taken at 2.5.
    EXPECT_NEAR(mGeometricCdf(2.5, 0.25, false), 1.0 - std::pow(0.75, 2.5), 1e-15);
}

TEST(NegBinomialInvCdf, EndsAndAssertions)
{
    CmAssertCapture capture;
    EXPECT_EQ(mNegBinomialInvCdf(0.1, 0.5, 3), 3.0);
    EXPECT_EQ(mNegBinomialInvCdf(0, 0.5, 3), 3.0);
    EXPECT_TRUE(mIsNumericMissing(mNegBinomialInvCdf(1, 0.5, 3)));
    EXPECT_TRUE(mIsNumericMissing(mGeometricInvCdf(1, 0.5)));
    EXPECT_EQ(capture.mGetCount(), 0);
    mNegBinomialInvCdf(0.5, 1.5, 3);
    EXPECT_TRUE(capture.mHas("( dP > 0 ) && ( dP < 1 )"));
    capture.mClear();
    EXPECT_TRUE(mIsNumericMissing(mNegBinomialInvCdf(mGetMissingValueCode(), 0.5, 3)));
    EXPECT_TRUE(capture.mHas("( dProb >= 0.0 ) && ( dProb <= 1.0 )"));
}

TEST(NegBinomialQuantile, InvertsTheDistributionFunction)
{
    for (int k = 4; k < 40; ++k)
        EXPECT_EQ(mNegBinomialInvCdf(mNegBinomialCdf(k, 0.3, 4, false), 0.3, 4), k) << k;
    for (int k = 1; k < 30; ++k)
        EXPECT_EQ(mGeometricInvCdf(mGeometricCdf(k, 0.2, false), 0.2), k) << k;
}

TEST(NegBinomialReference, ExactSums)
{
    qeltest::mCheckDiscreteFamily("negbinomial",
        1, [](double dX, const std::vector<double>& r) { return mNegBinomialPdf(dX, r[1], r[2]); },
        [](double dX, const std::vector<double>& r, bool b) { return mNegBinomialCdf(dX, r[1], r[2], b); },
        [](double dP, const std::vector<double>& r) { return mNegBinomialInvCdf(dP, r[1], r[2]); },
        // The root search has no step rule: a probability on a step is
        // settled by the rounding of the distribution function there.
        false);
}
