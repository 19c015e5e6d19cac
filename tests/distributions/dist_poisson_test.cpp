// The Poisson distribution object: construction, validity, forwarding, the
// one-sided bounds, the truncated support with its checked conversion, and
// variates by inversion at one uniform.
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

using qeltest::mSupport;
} // namespace

TEST(DistPoisson, ConstructorsKeepTheMean)
{
    std::vector<double> vd;
    CmDistPoisson(3.7).mGetParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({3.7}));
    CmDistPoisson(3.7).mGetNonInvCDFParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({3.7}));
    CmDistPoisson(std::vector<double>{2.5, 8.0}).mGetParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({2.5}));
    const CmDistPoisson missing(std::vector<double>{});
    missing.mGetParameters(vd);
    ASSERT_EQ(vd.size(), 1u);
    EXPECT_TRUE(std::isnan(vd[0]));
    EXPECT_FALSE(missing.mAreParamsValid());

    const CmDistPoisson original(6.25);
    const CmDistPoisson copy(original);
    CmDistPoisson assigned(1.0);
    assigned = original;
    copy.mGetParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({6.25}));
    assigned.mGetParameters(vd);
    EXPECT_EQ(vd, std::vector<double>({6.25}));
}

TEST(DistPoisson, ValidOnlyForAPositiveMean)
{
    CmAssertCapture capture;
    EXPECT_TRUE(CmDistPoisson(1e-300).mAreParamsValid());
    EXPECT_TRUE(CmDistPoisson(40.0).mAreParamsValid());
    EXPECT_FALSE(CmDistPoisson(0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistPoisson(-1.0).mAreParamsValid());
    EXPECT_FALSE(CmDistPoisson(kNaN).mAreParamsValid());
    // The constructors report nothing.
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistPoisson, ForwardsToTheFlatFunctions)
{
    const CmDistPoisson dist(3.7);
    for (double dX : {-1.0, 0.0, 2.0, 3.5, 4.0, 12.0})
    {
        EXPECT_EQ(dist.mPdf(dX), mPoissonPdf(dX, 3.7)) << dX;
        EXPECT_EQ(dist.mCdf(dX, false), mPoissonCdf(dX, 3.7, false)) << dX;
        EXPECT_EQ(dist.mCdf(dX, true), mPoissonCdf(dX, 3.7, true)) << dX;
    }
    for (double dQ : {0.0, 1e-5, 0.3, 0.5, 0.75, 0.999})
        EXPECT_EQ(dist.mInvCdf(dQ), mPoissonInvCdf(dQ, 3.7)) << dQ;
    // P(X = 2) = e^-3.7 3.7^2 / 2.
    EXPECT_NEAR(dist.mPdf(2.0), std::exp(-3.7) * 3.7 * 3.7 / 2.0, 1e-12);
}

TEST(DistPoisson, BoundedBelowAtZeroOnly)
{
    const CmDistPoisson dist(2.0);
    EXPECT_FALSE(dist.mIsContinuous());
    EXPECT_TRUE(dist.mHasLowerBound());
    EXPECT_EQ(dist.mGetLowerBound(), 0.0);
    EXPECT_FALSE(dist.mHasUpperBound());
    CmAssertCapture capture;
    EXPECT_EQ(dist.mGetUpperBound(), 0.0);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "false");
    std::vector<double> vd{1.0};
    dist.mGetDRefPoints(vd);
    EXPECT_TRUE(vd.empty());
}

TEST(DistPoisson, SupportTruncatesBothEndsWithoutRounding)
{
    const CmDistPoisson dist(2.0);
    CmAssertCapture capture;
    EXPECT_EQ(mSupport(dist, -3.4, 2.6), std::vector<double>({0.0, 1.0, 2.0}));
    EXPECT_EQ(mSupport(dist, 1.9, 4.99), std::vector<double>({1.0, 2.0, 3.0, 4.0}));
    EXPECT_EQ(mSupport(dist, 1.0, 1.0), std::vector<double>({1.0}));
    EXPECT_EQ(mSupport(dist, -0.9, 0.9), std::vector<double>({0.0}));
    // An upper end below the lower one gives the lower end alone.
    EXPECT_EQ(mSupport(dist, 6.7, 2.0), std::vector<double>({6.0}));
    // No upper limit from the parameters.
    EXPECT_EQ(mSupport(dist, 98.0, 100.0), std::vector<double>({98.0, 99.0, 100.0}));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistPoisson, SupportEndsBeyondTheRangeOfIntAreReportedAndSaturate)
{
    const CmDistPoisson dist(2.0);
    CmAssertCapture capture;
    EXPECT_EQ(mSupport(dist, 3e9, 4e9), std::vector<double>({2147483647.0}));
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "_in <= numeric_limits<_Tout>::max()");
    EXPECT_EQ(capture.mGetTexts()[1], "_in <= numeric_limits<_Tout>::max()");

    capture.mClear();
    EXPECT_EQ(mSupport(dist, -5e9, 1.0), std::vector<double>({0.0, 1.0}));
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "_in >= numeric_limits<_Tout>::min()");

    // The last integer below the limit, then the step past it: no overflow.
    capture.mClear();
    EXPECT_EQ(mSupport(dist, 2147483646.0, 2147483647.0),
              std::vector<double>({2147483646.0, 2147483647.0}));
    EXPECT_EQ(capture.mGetCount(), 0);

    // A NaN end fails both checks and reads as 0.
    capture.mClear();
    EXPECT_EQ(mSupport(dist, kNaN, 2.0), std::vector<double>({0.0, 1.0, 2.0}));
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_TRUE(capture.mHas("_in <= numeric_limits<_Tout>::max()"));
    EXPECT_TRUE(capture.mHas("_in >= numeric_limits<_Tout>::min()"));
}

TEST(DistPoisson, AVariateIsTheQuantileAtOneUniform)
{
    const CmDistPoisson dist(3.7);
    CmUniformGenerator::mInstance()->mSetBase(37.0);
    qeltest::UniformStream stream(37.0);
    for (int i = 0; i < 200; ++i)
        EXPECT_EQ(dist.mGetRandom(), mPoissonInvCdf(stream.mNext(), 3.7)) << i;
    EXPECT_EQ(CmUniformGenerator::mInstance()->mGetBase(), stream.mBase());
}

TEST(DistPoisson, ReferenceVariatesAtBase12345)
{
    const int iRows = qeltest::mCheckReferenceVariates(29, [](double dMean, double, double) {
        return std::unique_ptr<CmDist>(new CmDistPoisson(dMean));
    });
    EXPECT_EQ(iRows, 75);
}

TEST(DistPoisson, ChiSquareOfOneHundredThousandVariates)
{
    const CmDistPoisson dist(3.7);
    // P(X > 25) is about 1e-12: no variate is expected beyond the last cell.
    const qeltest::ChiSquareResult result = qeltest::mChiSquareOfVariates(
        dist, 100000, 97531.0, 0, 25, [&](int k) { return dist.mPdf(k); }, "Poisson(3.7)");
    EXPECT_GT(result.dPValue, 1e-4);
    EXPECT_EQ(result.iOutliers, 0);
}
