// The Bernoulli distribution object: construction and its reports, validity,
// forwarding to the one-trial binomial, bounds and support, and variates
// (one uniform each, 1 when U <= p).
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

TEST(DistBernoulli, PlainConstructorKeepsAValidProbabilitySilently)
{
    CmAssertCapture capture;
    const CmDistBernoulli dist(0.3);
    EXPECT_EQ(capture.mGetCount(), 0);
    EXPECT_TRUE(dist.mAreParamsValid());
    std::vector<double> vd{9.0, 9.0};
    dist.mGetParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({0.3}));
    dist.mGetNonInvCDFParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({0.3}));
    EXPECT_TRUE(CmDistBernoulli(0.0).mAreParamsValid());
    EXPECT_TRUE(CmDistBernoulli(1.0).mAreParamsValid());
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistBernoulli, BothConstructorsReportAProbabilityOutOfRangeAndConstructAnyway)
{
    CmAssertCapture capture;
    const CmDistBernoulli below(-0.1);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "m_dP >= 0.0");
    EXPECT_FALSE(below.mAreParamsValid());
    std::vector<double> vd;
    below.mGetParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({-0.1}));

    capture.mClear();
    const CmDistBernoulli above(std::vector<double>{1.5});
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "m_dP <= 1.0");
    EXPECT_FALSE(above.mAreParamsValid());
    above.mGetParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({1.5}));
}

TEST(DistBernoulli, AMissingOrNaNProbabilityFailsBothReportsAndIsInvalid)
{
    CmAssertCapture capture;
    const CmDistBernoulli missing(std::vector<double>{});
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "m_dP >= 0.0");
    EXPECT_EQ(capture.mGetTexts()[1], "m_dP <= 1.0");
    EXPECT_FALSE(missing.mAreParamsValid());
    std::vector<double> vd;
    missing.mGetParameters(vd);
    ASSERT_EQ(vd.size(), 1u);
    EXPECT_TRUE(std::isnan(vd[0]));

    capture.mClear();
    const CmDistBernoulli nan(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(capture.mGetCount(), 2);
    EXPECT_FALSE(nan.mAreParamsValid());
}

TEST(DistBernoulli, VectorConstructorReadsTheFirstEntryOnly)
{
    CmAssertCapture capture;
    const CmDistBernoulli dist(std::vector<double>{0.6, 7.0});
    EXPECT_EQ(capture.mGetCount(), 0);
    std::vector<double> vd;
    dist.mGetParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({0.6}));
}

TEST(DistBernoulli, CopyAndAssignmentKeepTheProbability)
{
    const CmDistBernoulli original(0.25);
    const CmDistBernoulli copy(original);
    CmDistBernoulli assigned(0.9);
    assigned = original;
    std::vector<double> vd;
    copy.mGetParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({0.25}));
    assigned.mGetParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({0.25}));
}

TEST(DistBernoulli, ForwardsToTheBinomialWithOneTrial)
{
    const double dP = 0.3;
    const CmDistBernoulli dist(dP);
    for (double dX : {-1.0, 0.0, 0.5, 1.0, 2.0})
    {
        EXPECT_EQ(dist.mPdf(dX), mBinomialPdf(dX, 1, dP)) << dX;
        EXPECT_EQ(dist.mCdf(dX, false), mBinomialCdf(dX, 1.0, dP, false)) << dX;
        EXPECT_EQ(dist.mCdf(dX, true), mBinomialCdf(dX, 1.0, dP, true)) << dX;
    }
    for (double dQ : {0.0, 0.2, 0.7, 0.71, 1.0})
        EXPECT_EQ(dist.mInvCdf(dQ), mBinomialInvCdf(dQ, 1, dP)) << dQ;
    // The values themselves: mass 0.7 at 0 and 0.3 at 1.
    EXPECT_NEAR(dist.mPdf(0.0), 0.7, 1e-15);
    EXPECT_NEAR(dist.mPdf(1.0), 0.3, 1e-15);
    EXPECT_NEAR(dist.mCdf(0.0, false), 0.7, 1e-9);
    EXPECT_EQ(dist.mInvCdf(0.5), 0.0);
    EXPECT_EQ(dist.mInvCdf(0.8), 1.0);
}

TEST(DistBernoulli, BoundsSupportAndReferencePoints)
{
    const CmDistBernoulli dist(0.4);
    EXPECT_FALSE(dist.mIsContinuous());
    EXPECT_TRUE(dist.mHasLowerBound());
    EXPECT_TRUE(dist.mHasUpperBound());
    EXPECT_EQ(dist.mGetLowerBound(), 0.0);
    EXPECT_EQ(dist.mGetUpperBound(), 1.0);
    std::vector<double> vd{5.0, 6.0, 7.0};
    dist.mGetSupport(5.0, 7.0, vd);
    EXPECT_EQ(vd, std::vector<double>({0.0, 1.0}));
    dist.mGetSupport(std::numeric_limits<double>::quiet_NaN(), -3.0, vd);
    EXPECT_EQ(vd, std::vector<double>({0.0, 1.0}));
    dist.mGetDRefPoints(vd);
    EXPECT_TRUE(vd.empty());
}

TEST(DistBernoulli, AVariateIsOneExactlyWhenItsUniformIsAtOrBelowP)
{
    const CmDistBernoulli dist(0.45);
    CmUniformGenerator::mInstance()->mSetBase(777.0);
    qeltest::UniformStream stream(777.0);
    for (int i = 0; i < 200; ++i)
    {
        const double dU = stream.mNext();
        EXPECT_EQ(dist.mGetRandom(), dU <= 0.45 ? 1.0 : 0.0) << i;
    }
    EXPECT_EQ(CmUniformGenerator::mInstance()->mGetBase(), stream.mBase());
}

TEST(DistBernoulli, ProbabilityOneAlwaysSucceedsAndZeroNeverDoesAtOneUniformEach)
{
    const CmDistBernoulli one(1.0);
    const CmDistBernoulli zero(0.0);
    CmUniformGenerator::mInstance()->mSetBase(4242.0);
    double dSumOne = 0.0, dSumZero = 0.0;
    const int iUsed = qeltest::mUniformsUsed([&]() {
        for (int i = 0; i < 500; ++i)
        {
            dSumOne += one.mGetRandom();
            dSumZero += zero.mGetRandom();
        }
    });
    EXPECT_EQ(dSumOne, 500.0);
    EXPECT_EQ(dSumZero, 0.0);
    EXPECT_EQ(iUsed, 1000);
}

TEST(DistBernoulli, ReferenceVariatesAtBase12345)
{
    const int iRows = qeltest::mCheckReferenceVariates(16, [](double dP, double, double) {
        return std::unique_ptr<CmDist>(new CmDistBernoulli(dP));
    });
    EXPECT_EQ(iRows, 50);
}

TEST(DistBernoulli, ChiSquareOfOneHundredThousandVariates)
{
    const CmDistBernoulli dist(0.3);
    const qeltest::ChiSquareResult result = qeltest::mChiSquareOfVariates(
        dist, 100000, 20240601.0, 0, 1, [&](int k) { return dist.mPdf(k); }, "Bernoulli(0.3)");
    EXPECT_GT(result.dPValue, 1e-4);
    EXPECT_EQ(result.iOutliers, 0);
    EXPECT_EQ(result.iDegreesOfFreedom, 1);
}
