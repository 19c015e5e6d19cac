// The hypergeometric distribution object: construction, validity,
// forwarding, bounds and support, and variates by sequential sampling
// without replacement, including the draws that end without a uniform and
// invalid objects that must still end.
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "qel/discrete.h"
#include "qel/distdiscrete.h"
#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"
#include "tests/distributions/dist_discrete_support.h"
#include "tests/support/uniformstream.h"

namespace
{
const double kIntMin = -2147483648.0;

std::vector<double> mParameters(const CmDist& rDist)
{
    std::vector<double> vd;
    rDist.mGetParameters(vd);
    return vd;
}

// The variate and the uniforms it took.
std::pair<double, int> mDrawCounted(const CmDist& rDist)
{
    double dX = -1.0;
    const int iUsed = qeltest::mUniformsUsed([&]() { dX = rDist.mGetRandom(); });
    return {dX, iUsed};
}
} // namespace

TEST(DistHypergeometric, ConstructorsKeepTheParametersInVectorOrder)
{
    const CmDistHypergeometric plain(20, 7, 5);
    EXPECT_EQ(mParameters(plain), std::vector<double>({20.0, 7.0, 5.0}));
    std::vector<double> vd;
    plain.mGetNonInvCDFParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({20.0, 7.0, 5.0}));
    const CmDistHypergeometric truncated(std::vector<double>{20.7, 7.2, 5.9, 1.0});
    EXPECT_EQ(mParameters(truncated), std::vector<double>({20.0, 7.0, 5.0}));
    const CmDistHypergeometric shortVector(std::vector<double>{20.0});
    EXPECT_EQ(mParameters(shortVector), std::vector<double>({20.0, kIntMin, kIntMin}));
    EXPECT_FALSE(shortVector.mAreParamsValid());
    const CmDistHypergeometric empty(std::vector<double>{});
    EXPECT_EQ(mParameters(empty), std::vector<double>({kIntMin, kIntMin, kIntMin}));
    EXPECT_FALSE(empty.mAreParamsValid());

    const CmDistHypergeometric copy(plain);
    CmDistHypergeometric assigned(3, 1, 1);
    assigned = plain;
    EXPECT_EQ(mParameters(copy), std::vector<double>({20.0, 7.0, 5.0}));
    EXPECT_EQ(mParameters(assigned), std::vector<double>({20.0, 7.0, 5.0}));
}

TEST(DistHypergeometric, ValidityRule)
{
    EXPECT_TRUE(CmDistHypergeometric(1, 0, 0).mAreParamsValid());
    EXPECT_TRUE(CmDistHypergeometric(1, 1, 1).mAreParamsValid());
    EXPECT_TRUE(CmDistHypergeometric(20, 7, 20).mAreParamsValid());
    EXPECT_FALSE(CmDistHypergeometric(0, 0, 0).mAreParamsValid());
    EXPECT_FALSE(CmDistHypergeometric(10, -1, 3).mAreParamsValid());
    EXPECT_FALSE(CmDistHypergeometric(10, 11, 3).mAreParamsValid());
    EXPECT_FALSE(CmDistHypergeometric(10, 3, -1).mAreParamsValid());
    EXPECT_FALSE(CmDistHypergeometric(10, 3, 11).mAreParamsValid());
    EXPECT_FALSE(
        CmDistHypergeometric(std::vector<double>{std::numeric_limits<double>::quiet_NaN(), 1, 1})
            .mAreParamsValid());
}

TEST(DistHypergeometric, ForwardsToTheFlatFunctions)
{
    const CmDistHypergeometric dist(40, 15, 12);
    for (double dX : {-1.0, 0.0, 2.0, 4.5, 5.0, 12.0, 13.0})
    {
        EXPECT_EQ(dist.mPdf(dX), mHypergeometricPdf(dX, 40, 15, 12)) << dX;
        EXPECT_EQ(dist.mCdf(dX, false), mHypergeometricCdf(dX, 40, 15, 12, false)) << dX;
        EXPECT_EQ(dist.mCdf(dX, true), mHypergeometricCdf(dX, 40, 15, 12, true)) << dX;
    }
    for (double dQ : {0.0, 0.01, 0.5, 0.97, 1.0})
        EXPECT_EQ(dist.mInvCdf(dQ), mHypergeometricInvCdf(dQ, 40, 15, 12)) << dQ;
    // P(X = 2) for N = 20, M = 7, n = 5: C(7, 2) C(13, 3) / C(20, 5)
    // = 21 * 286 / 15504.
    EXPECT_NEAR(CmDistHypergeometric(20, 7, 5).mPdf(2.0), 21.0 * 286.0 / 15504.0, 1e-12);
}

TEST(DistHypergeometric, BoundsAndSupportIgnoreTheInterval)
{
    const CmDistHypergeometric dist(20, 15, 10);
    EXPECT_FALSE(dist.mIsContinuous());
    EXPECT_TRUE(dist.mHasLowerBound());
    EXPECT_TRUE(dist.mHasUpperBound());
    // max(0, 10 - 20 + 15) = 5 and min(15, 10) = 10.
    EXPECT_EQ(dist.mGetLowerBound(), 5.0);
    EXPECT_EQ(dist.mGetUpperBound(), 10.0);
    std::vector<double> vd{1.0};
    dist.mGetSupport(7.0, 8.0, vd);
    EXPECT_EQ(vd, std::vector<double>({5.0, 6.0, 7.0, 8.0, 9.0, 10.0}));
    dist.mGetDRefPoints(vd);
    EXPECT_TRUE(vd.empty());

    const CmDistHypergeometric small(10, 3, 8);
    EXPECT_EQ(small.mGetLowerBound(), 1.0);
    EXPECT_EQ(small.mGetUpperBound(), 3.0);
    small.mGetSupport(-100.0, 100.0, vd);
    EXPECT_EQ(vd, std::vector<double>({1.0, 2.0, 3.0}));

    // Missing parameters: bounds from wide arithmetic, an empty support.
    const CmDistHypergeometric empty(std::vector<double>{});
    EXPECT_EQ(empty.mGetLowerBound(), 0.0);
    EXPECT_EQ(empty.mGetUpperBound(), kIntMin);
    empty.mGetSupport(0.0, 1.0, vd);
    EXPECT_TRUE(vd.empty());
}

TEST(DistHypergeometric, AllSuccessesReturnTheSampleWithoutAUniform)
{
    CmUniformGenerator::mInstance()->mSetBase(2024.0);
    const std::pair<double, int> result = mDrawCounted(CmDistHypergeometric(10, 10, 3));
    EXPECT_EQ(result.first, 3.0);
    EXPECT_EQ(result.second, 0);
}

TEST(DistHypergeometric, NoSuccessesReturnZeroWithoutAUniform)
{
    CmUniformGenerator::mInstance()->mSetBase(2024.0);
    const std::pair<double, int> result = mDrawCounted(CmDistHypergeometric(10, 0, 3));
    EXPECT_EQ(result.first, 0.0);
    EXPECT_EQ(result.second, 0);
}

TEST(DistHypergeometric, AnEmptySampleReturnsZeroWithoutAUniform)
{
    CmUniformGenerator::mInstance()->mSetBase(2024.0);
    EXPECT_EQ(mDrawCounted(CmDistHypergeometric(10, 4, 0)), std::make_pair(0.0, 0));
    EXPECT_EQ(mDrawCounted(CmDistHypergeometric(std::vector<double>{})), std::make_pair(0.0, 0));
}

TEST(DistHypergeometric, EachMemberOfTheSampleTakesOneUniformAgainstTheRatioLeft)
{
    // N = 6, M = 3, n = 2 after base 55: the first member is a success when
    // 3 / 6 >= U1; the second when (3 - s) / 5 >= U2.
    qeltest::UniformStream stream(55.0);
    const double dU1 = stream.mNext();
    const double dU2 = stream.mNext();
    double dExpected = 0.0;
    if (0.5 >= dU1)
        dExpected += 1.0;
    if ((3.0 - dExpected) / 5.0 >= dU2)
        dExpected += 1.0;
    CmUniformGenerator::mInstance()->mSetBase(55.0);
    EXPECT_EQ(mDrawCounted(CmDistHypergeometric(6, 3, 2)), std::make_pair(dExpected, 2));
}

TEST(DistHypergeometric, InvalidObjectsEndWithinTheSample)
{
    CmUniformGenerator::mInstance()->mSetBase(321.0);
    // More successes than members: every ratio is above 1, every member a
    // success, one uniform each.
    EXPECT_EQ(mDrawCounted(CmDistHypergeometric(5, 8, 4)), std::make_pair(4.0, 4));
    // A negative count of successes: no ratio reaches a uniform, and the
    // population runs out after 3 members: 0 at 3 uniforms, no division by
    // zero.
    EXPECT_EQ(mDrawCounted(CmDistHypergeometric(3, -1, 10)), std::make_pair(0.0, 3));
    // A sample larger than the population of successes only: at once q = r.
    EXPECT_EQ(mDrawCounted(CmDistHypergeometric(4, 4, 9)), std::make_pair(9.0, 0));
}

TEST(DistHypergeometric, ReferenceVariatesAtBase12345)
{
    const int iRows =
        qeltest::mCheckReferenceVariates(23, [](double dN, double dM, double dSample) {
            return std::unique_ptr<CmDist>(new CmDistHypergeometric(
                static_cast<int>(dN), static_cast<int>(dM), static_cast<int>(dSample)));
        });
    EXPECT_EQ(iRows, 125);
}

TEST(DistHypergeometric, ChiSquareOfOneHundredThousandVariates)
{
    const CmDistHypergeometric dist(40, 15, 12);
    const qeltest::ChiSquareResult result = qeltest::mChiSquareOfVariates(
        dist, 100000, 8675309.0, 0, 12, [&](int k) { return dist.mPdf(k); },
        "hypergeometric(40, 15, 12)");
    EXPECT_GT(result.dPValue, 1e-4);
    EXPECT_EQ(result.iOutliers, 0);
}
