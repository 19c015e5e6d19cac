// The integer uniform distribution object: construction, validity,
// forwarding, bounds and support, and variates by inversion at one uniform.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include "qel/discrete.h"
#include "qel/distdiscrete.h"
#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"
#include "tests/distributions/dist_discrete_support.h"
#include "tests/support/uniformstream.h"

namespace
{
std::vector<double> mParameters(const CmDist& rDist)
{
    std::vector<double> vd;
    rDist.mGetParameters(vd);
    return vd;
}
} // namespace

TEST(DistIntegerUniform, ConstructorsKeepTheParametersInVectorOrder)
{
    const CmDistIntegerUniform plain(-3, 4);
    EXPECT_EQ(mParameters(plain), std::vector<double>({-3.0, 4.0}));
    std::vector<double> vd;
    plain.mGetNonInvCDFParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({-3.0, 4.0}));
    EXPECT_EQ(mParameters(CmDistIntegerUniform(std::vector<double>{-3.9, 4.9, 0.0})),
              std::vector<double>({-3.0, 4.0}));
    const CmDistIntegerUniform copy(plain);
    CmDistIntegerUniform assigned(0, 0);
    assigned = plain;
    EXPECT_EQ(mParameters(copy), std::vector<double>({-3.0, 4.0}));
    EXPECT_EQ(mParameters(assigned), std::vector<double>({-3.0, 4.0}));
}

TEST(DistIntegerUniform, AMissingLowerReadsAsTheLargestIntAndAMissingUpperAsTheSmallest)
{
    const CmDistIntegerUniform empty(std::vector<double>{});
    EXPECT_EQ(mParameters(empty), std::vector<double>({2147483647.0, -2147483648.0}));
    EXPECT_FALSE(empty.mAreParamsValid());
    const CmDistIntegerUniform lowerOnly(std::vector<double>{3.0});
    EXPECT_EQ(mParameters(lowerOnly), std::vector<double>({3.0, -2147483648.0}));
    EXPECT_FALSE(lowerOnly.mAreParamsValid());
    std::vector<double> vd{1.0};
    empty.mGetSupport(0.0, 1.0, vd);
    EXPECT_TRUE(vd.empty());
}

TEST(DistIntegerUniform, ValidWhenLowerIsAtMostUpper)
{
    EXPECT_TRUE(CmDistIntegerUniform(5, 5).mAreParamsValid());
    EXPECT_TRUE(CmDistIntegerUniform(-7, 2).mAreParamsValid());
    EXPECT_FALSE(CmDistIntegerUniform(6, 5).mAreParamsValid());
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    // NaN truncates to the smallest int: a NaN upper end is invalid.
    EXPECT_FALSE(CmDistIntegerUniform(std::vector<double>{0.0, dNaN}).mAreParamsValid());
}

TEST(DistIntegerUniform, ForwardsToTheFlatFunctions)
{
    const CmDistIntegerUniform dist(-3, 4);
    for (double dX : {-4.0, -3.0, 0.0, 0.5, 4.0, 5.0})
    {
        EXPECT_EQ(dist.mPdf(dX), mIntegerUniformPdf(dX, -3, 4)) << dX;
        EXPECT_EQ(dist.mCdf(dX, false), mIntegerUniformCdf(dX, -3, 4, false)) << dX;
        EXPECT_EQ(dist.mCdf(dX, true), mIntegerUniformCdf(dX, -3, 4, true)) << dX;
    }
    for (double dQ : {0.0, 0.1, 0.125, 0.5, 0.99, 1.0})
        EXPECT_EQ(dist.mInvCdf(dQ), mIntegerUniformInvCdf(dQ, -3, 4)) << dQ;
    // Eight points: mass 1/8 each, P(X <= 0) = 4/8.
    EXPECT_EQ(dist.mPdf(1.0), 0.125);
    EXPECT_EQ(dist.mCdf(0.0, false), 0.5);
}

TEST(DistIntegerUniform, BoundsAndSupportIgnoreTheInterval)
{
    const CmDistIntegerUniform dist(-2, 3);
    EXPECT_FALSE(dist.mIsContinuous());
    EXPECT_TRUE(dist.mHasLowerBound());
    EXPECT_TRUE(dist.mHasUpperBound());
    EXPECT_EQ(dist.mGetLowerBound(), -2.0);
    EXPECT_EQ(dist.mGetUpperBound(), 3.0);
    std::vector<double> vd{42.0};
    dist.mGetSupport(10.0, 20.0, vd);
    EXPECT_EQ(vd, std::vector<double>({-2.0, -1.0, 0.0, 1.0, 2.0, 3.0}));
    dist.mGetDRefPoints(vd);
    EXPECT_TRUE(vd.empty());
}

TEST(DistIntegerUniform, SupportReachingTheLargestIntDoesNotOverflow)
{
    const CmDistIntegerUniform dist(2147483645, 2147483647);
    std::vector<double> vd;
    dist.mGetSupport(0.0, 0.0, vd);
    EXPECT_EQ(vd, std::vector<double>({2147483645.0, 2147483646.0, 2147483647.0}));
}

TEST(DistIntegerUniform, AVariateIsTheQuantileAtOneUniform)
{
    const CmDistIntegerUniform dist(1, 6);
    CmUniformGenerator::mInstance()->mSetBase(6006.0);
    qeltest::UniformStream stream(6006.0);
    for (int i = 0; i < 300; ++i)
    {
        const double dU = stream.mNext();
        const double dX = dist.mGetRandom();
        EXPECT_EQ(dX, mIntegerUniformInvCdf(dU, 1, 6)) << i;
        // And independently: the face k takes U in ((k - 1) / 6, k / 6].
        EXPECT_TRUE((dX - 1.0) / 6.0 < dU && dU <= dX / 6.0) << i << " " << dU << " " << dX;
    }
    EXPECT_EQ(CmUniformGenerator::mInstance()->mGetBase(), stream.mBase());
}

TEST(DistIntegerUniform, ReferenceVariatesAtBase12345)
{
    const int iRows =
        qeltest::mCheckReferenceVariates(24, [](double dLower, double dUpper, double) {
            return std::unique_ptr<CmDist>(
                new CmDistIntegerUniform(static_cast<int>(dLower), static_cast<int>(dUpper)));
        });
    EXPECT_EQ(iRows, 75);
}

TEST(DistIntegerUniform, ChiSquareOfOneHundredThousandVariates)
{
    const CmDistIntegerUniform dist(-3, 4);
    const qeltest::ChiSquareResult result = qeltest::mChiSquareOfVariates(
        dist, 100000, 424242.0, -3, 4, [&](int k) { return dist.mPdf(k); },
        "integer uniform(-3, 4)");
    EXPECT_GT(result.dPValue, 1e-4);
    EXPECT_EQ(result.iOutliers, 0);
    EXPECT_EQ(result.iDegreesOfFreedom, 7);
}
