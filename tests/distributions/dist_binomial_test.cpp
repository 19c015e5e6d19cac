// The binomial distribution object: construction, validity, forwarding,
// bounds and the rounded support, and variates that count the trials whose
// uniform is at or below p (one uniform a trial).
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
const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

using qeltest::mSupport;
} // namespace

TEST(DistBinomial, ConstructorsKeepTheParametersInVectorOrder)
{
    CmAssertCapture capture;
    const CmDistBinomial plain(10, 0.35);
    std::vector<double> vd;
    plain.mGetParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({10.0, 0.35}));
    plain.mGetNonInvCDFParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({10.0, 0.35}));

    // Trial counts are truncated toward zero.
    const CmDistBinomial truncated(std::vector<double>{10.9, 0.4, 3.0});
    truncated.mGetParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({10.0, 0.4}));
    const CmDistBinomial negative(std::vector<double>{-2.7, 0.4});
    negative.mGetParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({-2.0, 0.4}));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistBinomial, MissingEntriesReadAsTheSmallestIntAndNaN)
{
    const CmDistBinomial empty(std::vector<double>{});
    std::vector<double> vd;
    empty.mGetParameters(vd);
    ASSERT_EQ(vd.size(), 2u);
    EXPECT_EQ(vd[0], -2147483648.0);
    EXPECT_TRUE(std::isnan(vd[1]));
    EXPECT_FALSE(empty.mAreParamsValid());

    const CmDistBinomial onlyTrials(std::vector<double>{5.0});
    onlyTrials.mGetParameters(vd);
    EXPECT_EQ(vd[0], 5.0);
    EXPECT_TRUE(std::isnan(vd[1]));
    EXPECT_FALSE(onlyTrials.mAreParamsValid());

    // A NaN trial count also reads as the smallest int; a huge one saturates.
    const CmDistBinomial nanTrials(std::vector<double>{kNaN, 0.5});
    nanTrials.mGetParameters(vd);
    EXPECT_EQ(vd[0], -2147483648.0);
    const CmDistBinomial hugeTrials(std::vector<double>{1e12, 0.5});
    hugeTrials.mGetParameters(vd);
    EXPECT_EQ(vd[0], 2147483647.0);
}

TEST(DistBinomial, ValidWhenAtLeastOneTrialAndProbabilityInTheClosedUnitInterval)
{
    EXPECT_TRUE(CmDistBinomial(1, 0.0).mAreParamsValid());
    EXPECT_TRUE(CmDistBinomial(1, 1.0).mAreParamsValid());
    EXPECT_TRUE(CmDistBinomial(1000, 0.5).mAreParamsValid());
    EXPECT_FALSE(CmDistBinomial(0, 0.5).mAreParamsValid());
    EXPECT_FALSE(CmDistBinomial(-3, 0.5).mAreParamsValid());
    EXPECT_FALSE(CmDistBinomial(5, -1e-300).mAreParamsValid());
    EXPECT_FALSE(CmDistBinomial(5, 1.0000000001).mAreParamsValid());
    EXPECT_FALSE(CmDistBinomial(5, kNaN).mAreParamsValid());
}

TEST(DistBinomial, CopyAndAssignmentKeepTheParameters)
{
    const CmDistBinomial original(12, 0.125);
    const CmDistBinomial copy(original);
    CmDistBinomial assigned(3, 0.9);
    assigned = original;
    std::vector<double> vd;
    copy.mGetParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({12.0, 0.125}));
    assigned.mGetParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({12.0, 0.125}));
    EXPECT_EQ(assigned.mGetUpperBound(), 12.0);
}

TEST(DistBinomial, ForwardsToTheFlatFunctions)
{
    const CmDistBinomial dist(20, 0.35);
    for (double dX : {-1.0, 0.0, 3.0, 6.5, 7.0, 20.0, 21.0})
    {
        EXPECT_EQ(dist.mPdf(dX), mBinomialPdf(dX, 20, 0.35)) << dX;
        EXPECT_EQ(dist.mCdf(dX, false), mBinomialCdf(dX, 20.0, 0.35, false)) << dX;
        EXPECT_EQ(dist.mCdf(dX, true), mBinomialCdf(dX, 20.0, 0.35, true)) << dX;
    }
    for (double dQ : {0.0, 1e-6, 0.25, 0.5, 0.99, 1.0})
        EXPECT_EQ(dist.mInvCdf(dQ), mBinomialInvCdf(dQ, 20, 0.35)) << dQ;
    // A value: P(X = 7) = C(20, 7) 0.35^7 0.65^13 = 0.184401... (77520 times
    // the powers).
    EXPECT_NEAR(dist.mPdf(7.0), 77520.0 * std::pow(0.35, 7) * std::pow(0.65, 13), 1e-12);
}

TEST(DistBinomial, BoundsAreZeroAndTheTrials)
{
    const CmDistBinomial dist(17, 0.2);
    EXPECT_FALSE(dist.mIsContinuous());
    EXPECT_TRUE(dist.mHasLowerBound());
    EXPECT_TRUE(dist.mHasUpperBound());
    EXPECT_EQ(dist.mGetLowerBound(), 0.0);
    EXPECT_EQ(dist.mGetUpperBound(), 17.0);
    std::vector<double> vd{1.0};
    dist.mGetDRefPoints(vd);
    EXPECT_TRUE(vd.empty());
}

TEST(DistBinomial, SupportRoundsBothEndsAndClipsToZeroAndTheTrials)
{
    const CmDistBinomial dist(10, 0.5);
    EXPECT_EQ(mSupport(dist, -3.4, 2.6), std::vector<double>({0.0, 1.0, 2.0, 3.0}));
    EXPECT_EQ(mSupport(dist, 1.5, 3.49), std::vector<double>({2.0, 3.0}));
    EXPECT_EQ(mSupport(dist, 0.6, 2.2), std::vector<double>({1.0, 2.0}));
    EXPECT_EQ(mSupport(dist, -0.4, 0.4), std::vector<double>({0.0}));
    EXPECT_EQ(mSupport(dist, 8.2, 25.0), std::vector<double>({8.0, 9.0, 10.0}));
    // An upper end below the lower one gives the lower end alone.
    EXPECT_EQ(mSupport(dist, 5.0, 2.0), std::vector<double>({5.0}));
    // Beyond the trials: nothing.
    EXPECT_TRUE(mSupport(dist, 11.6, 15.0).empty());
    EXPECT_EQ(mSupport(dist, -kInf, kInf).size(), 11u);
    EXPECT_EQ(mSupport(dist, kNaN, kNaN).size(), 11u);
    // An invalid object with no trials lists nothing.
    EXPECT_TRUE(mSupport(CmDistBinomial(std::vector<double>{}), -5.0, 5.0).empty());
}

TEST(DistBinomial, AVariateCountsTheTrialsWithAUniformAtOrBelowP)
{
    const CmDistBinomial dist(9, 0.4);
    CmUniformGenerator::mInstance()->mSetBase(31337.0);
    qeltest::UniformStream stream(31337.0);
    for (int i = 0; i < 100; ++i)
    {
        int iExpected = 0;
        for (const double dU : stream.mNext(9))
            iExpected += dU <= 0.4 ? 1 : 0;
        EXPECT_EQ(dist.mGetRandom(), static_cast<double>(iExpected)) << i;
    }
    EXPECT_EQ(CmUniformGenerator::mInstance()->mGetBase(), stream.mBase());
}

TEST(DistBinomial, ProbabilityOneCountsEveryTrial)
{
    const CmDistBinomial dist(7, 1.0);
    CmUniformGenerator::mInstance()->mSetBase(99.0);
    for (int i = 0; i < 50; ++i)
    {
        double dX = -1.0;
        EXPECT_EQ(qeltest::mUniformsUsed([&]() { dX = dist.mGetRandom(); }), 7);
        EXPECT_EQ(dX, 7.0);
    }
}

TEST(DistBinomial, ProbabilityZeroGivesZeroAtOneUniformATrial)
{
    const CmDistBinomial dist(10, 0.0);
    CmUniformGenerator::mInstance()->mSetBase(5150.0);
    double dSum = 0.0;
    const int iUsed = qeltest::mUniformsUsed([&]() {
        for (int i = 0; i < 2000; ++i)
            dSum += dist.mGetRandom();
    });
    EXPECT_EQ(dSum, 0.0);
    EXPECT_EQ(iUsed, 20000);
}

TEST(DistBinomial, FewerThanOneTrialGivesZeroWithoutAUniform)
{
    CmUniformGenerator::mInstance()->mSetBase(8.0);
    for (const int iTrials : {0, -5, -2147483647 - 1})
    {
        const CmDistBinomial dist(iTrials, 0.5);
        double dX = -1.0;
        EXPECT_EQ(qeltest::mUniformsUsed([&]() { dX = dist.mGetRandom(); }), 0);
        EXPECT_EQ(dX, 0.0);
    }
}

TEST(DistBinomial, ReferenceVariatesAtBase12345)
{
    const int iRows = qeltest::mCheckReferenceVariates(17, [](double dN, double dP, double) {
        return std::unique_ptr<CmDist>(new CmDistBinomial(static_cast<int>(dN), dP));
    });
    EXPECT_EQ(iRows, 75);
}

TEST(DistBinomial, ChiSquareOfOneHundredThousandVariates)
{
    const CmDistBinomial dist(10, 0.35);
    const qeltest::ChiSquareResult result = qeltest::mChiSquareOfVariates(
        dist, 100000, 1357911.0, 0, 10, [&](int k) { return dist.mPdf(k); }, "binomial(10, 0.35)");
    EXPECT_GT(result.dPValue, 1e-4);
    EXPECT_EQ(result.iOutliers, 0);
}
