// Hypergeometric density, distribution function and quantile: support
// edges, degenerate populations, identities and exact rational sums from
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

TEST(HypergeometricPdf, OutsideSupportIsZero)
{
    EXPECT_EQ(mHypergeometricPdf(6, 10, 4, 3), 0.0);
    EXPECT_EQ(mHypergeometricPdf(1.5, 10, 4, 3), 0.0);
    EXPECT_NEAR(mHypergeometricPdf(1, 10, 4, 3), 0.5, 1e-15);
}

TEST(HypergeometricCdf, OutsideSupport)
{
    // Support of (50, 40, 15) is 5 to 15.
    EXPECT_EQ(mHypergeometricCdf(4, 50, 40, 15, false), 0.0);
    EXPECT_EQ(mHypergeometricCdf(4, 50, 40, 15, true), 1.0);
    EXPECT_EQ(mHypergeometricCdf(16, 50, 40, 15, false), 1.0);
    EXPECT_EQ(mHypergeometricCdf(16, 50, 40, 15, true), 0.0);
    EXPECT_EQ(mHypergeometricCdf(2.5, 10, 4, 3, false), mHypergeometricCdf(2, 10, 4, 3, false));
}

TEST(HypergeometricInvCdf, EndsAndDegenerateCases)
{
    CmAssertCapture capture;
    EXPECT_EQ(mHypergeometricInvCdf(1, 10, 4, 3), 3.0);
    EXPECT_EQ(mHypergeometricInvCdf(0, 50, 40, 15), 5.0);
    EXPECT_EQ(mHypergeometricInvCdf(0.3, 10, 10, 3), 3.0);
    EXPECT_EQ(mHypergeometricInvCdf(0.3, 10, 0, 3), 0.0);
    EXPECT_EQ(mHypergeometricInvCdf(0.3, 10, 4, 10), 4.0);
    EXPECT_EQ(mHypergeometricInvCdf(0.3, 10, 4, 0), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
    mHypergeometricInvCdf(1.5, 10, 4, 3);
    EXPECT_TRUE(capture.mHas("dProb <= 1.0"));
}

TEST(HypergeometricQuantile, InvertsTheDistributionFunction)
{
    for (int k = 0; k < 15; ++k)
        EXPECT_EQ(mHypergeometricInvCdf(mHypergeometricCdf(k, 50, 20, 15, false), 50, 20, 15), k) << k;
}

TEST(HypergeometricReference, ExactSums)
{
    qeltest::mCheckDiscreteFamily("hypergeometric",
        2,
        [](double dX, const std::vector<double>& r) {
            return mHypergeometricPdf(dX, static_cast<int>(r[1]), static_cast<int>(r[2]), static_cast<int>(r[3]));
        },
        [](double dX, const std::vector<double>& r, bool b) {
            return mHypergeometricCdf(dX, static_cast<int>(r[1]), static_cast<int>(r[2]), static_cast<int>(r[3]), b);
        },
        [](double dP, const std::vector<double>& r) {
            return mHypergeometricInvCdf(dP, static_cast<int>(r[1]), static_cast<int>(r[2]), static_cast<int>(r[3]));
        });
}

TEST(HypergeometricInvCdf, MissingProbabilityFailsItsAssertionAndIsMissing)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mHypergeometricInvCdf(mGetMissingValueCode(), 50, 20, 15)));
    EXPECT_TRUE(capture.mHas("dProb <= 1.0"));
}

TEST(HypergeometricCdf, TailsAddUpToOnePlusTheMass)
{
    for (int k = 0; k <= 3; ++k)
        EXPECT_NEAR(mHypergeometricCdf(k, 10, 4, 3, false) + mHypergeometricCdf(k, 10, 4, 3, true),
                    1.0 + mHypergeometricPdf(k, 10, 4, 3), 1e-14)
            << k;
}
