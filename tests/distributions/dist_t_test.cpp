// Student's t distribution object: construction, validity, forwarding, no
// bounds, central variates (an F(1, df) variate's root with a sign drawn
// after it) and noncentral ones (the quantile at one uniform) against the
// replayed stream (variates_beta.txt), copies sharing the helper, and the
// distribution of the variates.
#include "qel/distkernelbacked.h"

#include "qel/kernelbacked.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"
#include "dist_variates_support.h"
#include "support/goodness.h"
#include "support/reftable.h"
#include "support/uniformstream.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <limits>
#include <memory>
#include <vector>

namespace
{

const double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kBase = 12345.0;

// Each noncentral variate is a numerical quantile, about 60 to 100
// microseconds in the optimised build (about three times that under the
// sanitizers), so 10^5 of them would take 6 to 10 s; the noncentral sample
// is 20000 variates.
constexpr int kNoncentralKsDraws = 20000;

// Draws the reference rows of t(dDF, dNc) in order from the base.
void mExpectReferenceVariates(const CmDist& rDist, double dDF, double dNc, double dTolerance)
{
    const auto vRows = qeltest::mBetaTableRows(3.0, dDF, dNc);
    ASSERT_GE(vRows.size(), 6u);
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    qeltest::WorstError worst("t variates");
    for (const auto& rRow : vRows)
    {
        const double dX = rDist.mGetRandom();
        const double dErr = qeltest::mRelativeError(dX, rRow[5]);
        worst.mUpdate(dErr, qeltest::mUlpDistance(dX, rRow[5]),
                      std::to_string(dDF) + "," + std::to_string(dNc));
        EXPECT_LE(dErr, dTolerance) << dDF << " " << dNc << " #" << rRow[4];
        EXPECT_EQ(qeltest::mDrawsSinceBase(kBase), static_cast<int>(rRow[6]))
            << dDF << " " << dNc << " #" << rRow[4];
    }
    std::cout << worst.mReport() << "\n";
}

} // namespace

TEST(DistT, ConstructorsKeepTheParametersInOrder)
{
    std::vector<double> vd;
    CmDistT(5.0).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{5.0, 0.0}));
    CmDistT(5.0, -1.5).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{5.0, -1.5}));
    CmDistT(std::vector<double>{8.0}).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{8.0, 0.0}));
    CmDistT(std::vector<double>{8.0, 2.0}).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{8.0, 2.0}));
    const CmDistT empty(std::vector<double>{});
    empty.mGetParameters(vd);
    ASSERT_EQ(vd.size(), 2u);
    EXPECT_TRUE(std::isnan(vd[0]));
    EXPECT_EQ(vd[1], 0.0);
    EXPECT_FALSE(empty.mAreParamsValid());

    const CmDistT original(12.0, 0.25);
    const CmDistT copy(original);
    copy.mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{12.0, 0.25}));
    CmDistT assigned(1.0);
    assigned = original;
    assigned.mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{12.0, 0.25}));
    original.mGetNonInvCDFParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{12.0}));
}

TEST(DistT, ValidWhenTheDegreesOfFreedomArePositive)
{
    EXPECT_TRUE(CmDistT(5.0).mAreParamsValid());
    EXPECT_TRUE(CmDistT(0.01, -3.0).mAreParamsValid());
    // The noncentrality is not checked.
    EXPECT_TRUE(CmDistT(5.0, kNaN).mAreParamsValid());
    EXPECT_FALSE(CmDistT(0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistT(-2.0, 1.0).mAreParamsValid());
    EXPECT_FALSE(CmDistT(kNaN).mAreParamsValid());
}

TEST(DistT, ForwardsToTheFlatFunctions)
{
    CmAssertCapture capture;
    for (double dDF : {1.0, 5.0, 30.0})
        for (double dNc : {0.0, 1.5, -0.7})
        {
            const CmDistT dist(dDF, dNc);
            for (double dX : {-2.5, -0.3, 0.0, 0.8, 4.0})
            {
                EXPECT_EQ(dist.mPdf(dX), mTPdf(dX, dDF, dNc));
                EXPECT_EQ(dist.mCdf(dX, false), mTCdf(dX, dDF, dNc, false));
                EXPECT_EQ(dist.mCdf(dX, true), mTCdf(dX, dDF, dNc, true));
            }
            for (double dP : {0.02, 0.5, 0.9})
                EXPECT_EQ(dist.mInvCdf(dP), mTInvCdf(dP, dDF, dNc));
        }
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistT, IsContinuousWithoutBounds)
{
    CmAssertCapture capture;
    const CmDistT dist(5.0, 1.0);
    EXPECT_TRUE(dist.mIsContinuous());
    EXPECT_FALSE(dist.mHasLowerBound());
    EXPECT_FALSE(dist.mHasUpperBound());
    std::vector<double> vd{3.0, 4.0};
    dist.mGetDRefPoints(vd);
    EXPECT_EQ(vd, (std::vector<double>{0.0}));
    EXPECT_EQ(capture.mGetCount(), 0);
    EXPECT_EQ(dist.mGetLowerBound(), 0.0);
    EXPECT_EQ(dist.mGetUpperBound(), 0.0);
    std::vector<double> vdSupport{1.0};
    dist.mGetSupport(-1.0, 1.0, vdSupport);
    EXPECT_EQ(capture.mGetCount(), 3);
    EXPECT_EQ(capture.mGetTexts(), (std::vector<std::string>{"false", "false", "false"}));
    EXPECT_EQ(vdSupport, (std::vector<double>{1.0}));
}

TEST(DistT, CentralVariatesReplayTheUniformStream)
{
    CmAssertCapture capture;
    mExpectReferenceVariates(CmDistT(5.0), 5.0, 0.0, 1e-13);
    mExpectReferenceVariates(CmDistT(1.0), 1.0, 0.0, 1e-13);
    EXPECT_EQ(capture.mGetCount(), 0);
}

// The sign comes from the last uniform of each variate, drawn after the F
// variate: negative for U >= 0.5.  Checked against the stream itself.
TEST(DistT, CentralSignIsDrawnAfterTheFVariate)
{
    const CmDistT t(5.0);
    const CmDistF f(1.0, 5.0);
    qeltest::UniformStream stream(kBase);
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    int iNegative = 0, iPositive = 0;
    for (int i = 0; i < 10; ++i)
    {
        const double dFrom = CmUniformGenerator::mInstance()->mGetBase();
        const double dT = t.mGetRandom();
        const double dTo = CmUniformGenerator::mInstance()->mGetBase();
        const int iUsed = qeltest::mCountDraws(dFrom, dTo);
        ASSERT_GE(iUsed, 3); // at least one round of two, then the sign
        const std::vector<double> vdU = stream.mNext(iUsed);
        const double dSignU = vdU.back();
        // The F variate from the same place uses all but the last uniform.
        CmUniformGenerator::mInstance()->mSetBase(dFrom);
        const double dF = f.mGetRandom();
        EXPECT_EQ(qeltest::mCountDraws(dFrom, CmUniformGenerator::mInstance()->mGetBase()),
                  iUsed - 1);
        CmUniformGenerator::mInstance()->mSetBase(dTo);
        if (dSignU >= 0.5)
        {
            EXPECT_EQ(dT, -std::sqrt(dF)) << i;
            ++iNegative;
        }
        else
        {
            EXPECT_EQ(dT, std::sqrt(dF)) << i;
            ++iPositive;
        }
    }
    // Both signs occur in these ten (column aux of the table: the third
    // sign uniform is 0.5427, the first 0.1859).
    EXPECT_GT(iNegative, 0);
    EXPECT_GT(iPositive, 0);

    const auto vRows = qeltest::mBetaTableRows(3.0, 5.0, 0.0);
    ASSERT_EQ(vRows.size(), 10u);
    EXPECT_GE(vRows[2][7], 0.5);
    EXPECT_LT(vRows[2][5], 0.0);
    EXPECT_LT(vRows[0][7], 0.5);
    EXPECT_GT(vRows[0][5], 0.0);
}

// One uniform per noncentral variate; the quantile agrees with mpmath to the
// accuracy of the numerical inversion.
TEST(DistT, NoncentralVariateIsTheQuantileAtOneUniform)
{
    CmAssertCapture capture;
    mExpectReferenceVariates(CmDistT(10.0, 1.5), 10.0, 1.5, 1e-9);
    qeltest::UniformStream stream(kBase);
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    const CmDistT t(10.0, 1.5);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(t.mGetRandom(), mTInvCdf(stream.mNext(), 10.0, 1.5));
    EXPECT_EQ(qeltest::mDrawsSinceBase(kBase), 3);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistT, InvalidDegreesOfFreedomReportAndDrawNothing)
{
    for (const CmDistT& rDist : {CmDistT(0.0), CmDistT(-1.0, 2.0), CmDistT(kNaN)})
    {
        CmAssertCapture capture;
        CmUniformGenerator::mInstance()->mSetBase(kBase);
        EXPECT_TRUE(mIsNumericMissing(rDist.mGetRandom()));
        EXPECT_EQ(CmUniformGenerator::mInstance()->mGetBase(), kBase);
        EXPECT_EQ(capture.mGetCount(), 1);
        EXPECT_TRUE(capture.mHas("mAreParamsValid()"));
    }
}

TEST(DistT, CopiesShareTheHelperInEveryOrder)
{
    auto pOriginal = std::make_unique<CmDistT>(5.0);
    auto pCopy = std::make_unique<CmDistT>(*pOriginal);
    auto pAssigned = std::make_unique<CmDistT>(1.0);
    *pAssigned = *pOriginal;
    pOriginal.reset();
    mExpectReferenceVariates(*pCopy, 5.0, 0.0, 1e-13);
    pCopy.reset();
    mExpectReferenceVariates(*pAssigned, 5.0, 0.0, 1e-13);
    CmDistT other(1.0);
    other = *pAssigned;
    pAssigned.reset();
    mExpectReferenceVariates(other, 5.0, 0.0, 1e-13);

    CmDistT a(1.0);
    {
        CmDistT b(a);
        CmDistT c(5.0);
        c = b;
        b = CmDistT(5.0);
        mExpectReferenceVariates(b, 5.0, 0.0, 1e-13);
        mExpectReferenceVariates(c, 1.0, 0.0, 1e-13);
    }
    mExpectReferenceVariates(a, 1.0, 0.0, 1e-13);
}

TEST(DistT, CentralVariatesFollowTheDistribution)
{
    qeltest::mExpectKsOfVariates(CmDistT(5.0), "t(5)", kBase, 100000);
    qeltest::mExpectKsOfVariates(CmDistT(1.0), "t(1)", kBase, 100000);
}

TEST(DistT, CentralVariatesFollowTheDistributionWithFewAndManyDegrees)
{
    qeltest::mExpectKsOfVariates(CmDistT(0.5), "t(0.5)", kBase, 100000);
    qeltest::mExpectKsOfVariates(CmDistT(40.0), "t(40)", kBase, 100000);
}

// 20000 variates: see kNoncentralKsDraws.  An inversion sample measured by
// its own distribution function tests the quantile's agreement with mCdf
// and the uniforms; one parameter set suffices (another gives the same D).
TEST(DistT, NoncentralVariatesFollowTheDistribution)
{
    qeltest::mExpectKsOfVariates(CmDistT(10.0, 1.5), "t(10, 1.5)", kBase, kNoncentralKsDraws);
}
