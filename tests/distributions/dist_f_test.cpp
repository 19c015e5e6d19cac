// The F distribution object: construction, validity, forwarding (the density
// central only), the lower bound of the graph, variates through the shared
// beta helper against the replayed stream (variates_beta.txt), the clamp of
// the beta variate below 1, copies sharing the helper, and a failed helper
// allocation.
//
// The failed allocation is asked of the test program's nothrow operator new
// (support/failingnew.h): the allocation at which g_iNothrowFailAt counts
// down to 0 returns null.  Only the distribution objects allocate through
// the nothrow form.
#include "qel/distkernelbacked.h"

#include "qel/kernelbacked.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"
#include "support/failingnew.h"
#include "dist_variates_support.h"
#include "support/goodness.h"
#include "support/reftable.h"
#include "support/uniformstream.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <limits>
#include <memory>
#include <new>
#include <vector>

using qeltest::g_iNothrowFailAt;

namespace
{

const double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kBase = 12345.0;

// Draws the reference rows of F(dNum, dDen) in order from the base.
void mExpectReferenceVariates(const CmDist& rDist, double dNum, double dDen)
{
    const auto vRows = qeltest::mBetaTableRows(2.0, dNum, dDen);
    ASSERT_EQ(vRows.size(), 10u);
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    for (const auto& rRow : vRows)
    {
        const double dX = rDist.mGetRandom();
        EXPECT_LE(qeltest::mRelativeError(dX, rRow[5]), 1e-13)
            << dNum << " " << dDen << " #" << rRow[4];
        EXPECT_EQ(qeltest::mDrawsSinceBase(kBase), static_cast<int>(rRow[6]))
            << dNum << " " << dDen << " #" << rRow[4];
    }
}

} // namespace

TEST(DistF, ConstructorsKeepTheParametersInOrder)
{
    std::vector<double> vd;
    CmDistF(3.0, 7.0).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{3.0, 7.0, 0.0}));
    CmDistF(3.0, 7.0, 2.5).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{3.0, 7.0, 2.5}));

    // The noncentrality defaults to 0; the degrees of freedom have no default.
    CmDistF(std::vector<double>{4.0, 9.0}).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{4.0, 9.0, 0.0}));
    CmDistF(std::vector<double>{4.0, 9.0, 1.5}).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{4.0, 9.0, 1.5}));
    const CmDistF shortVector(std::vector<double>{4.0});
    shortVector.mGetParameters(vd);
    ASSERT_EQ(vd.size(), 3u);
    EXPECT_EQ(vd[0], 4.0);
    EXPECT_TRUE(std::isnan(vd[1]));
    EXPECT_EQ(vd[2], 0.0);
    EXPECT_FALSE(shortVector.mAreParamsValid());

    const CmDistF original(5.0, 11.0, 0.5);
    CmDistF copy(original);
    copy.mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{5.0, 11.0, 0.5}));
    CmDistF assigned(1.0, 1.0);
    assigned = original;
    assigned.mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{5.0, 11.0, 0.5}));

    // The quantile's other parameters: both degrees of freedom.
    original.mGetNonInvCDFParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{5.0, 11.0}));
}

TEST(DistF, ValidityNeedsPositiveDegreesOfFreedomAndNoncentralityAtLeastZero)
{
    EXPECT_TRUE(CmDistF(3.0, 7.0).mAreParamsValid());
    EXPECT_TRUE(CmDistF(3.0, 7.0, 0.0).mAreParamsValid());
    EXPECT_TRUE(CmDistF(0.1, 1e-3, 4.0).mAreParamsValid());
    EXPECT_FALSE(CmDistF(0.0, 7.0).mAreParamsValid());
    EXPECT_FALSE(CmDistF(3.0, 0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistF(-3.0, 7.0).mAreParamsValid());
    EXPECT_FALSE(CmDistF(3.0, 7.0, -0.5).mAreParamsValid());
    EXPECT_FALSE(CmDistF(kNaN, 7.0).mAreParamsValid());
    EXPECT_FALSE(CmDistF(3.0, kNaN).mAreParamsValid());
    EXPECT_FALSE(CmDistF(3.0, 7.0, kNaN).mAreParamsValid());
}

TEST(DistF, ForwardsToTheFlatFunctions)
{
    CmAssertCapture capture;
    for (double dNum : {1.0, 3.0, 12.0})
        for (double dDen : {2.0, 7.0, 40.0})
        {
            const CmDistF central(dNum, dDen);
            const CmDistF noncentral(dNum, dDen, 2.0);
            for (double dX : {0.05, 0.7, 1.3, 6.0})
            {
                EXPECT_EQ(central.mPdf(dX), mFPdf(dX, dNum, dDen));
                EXPECT_EQ(central.mCdf(dX, false), mFCdf(dX, dNum, dDen, 0.0, false));
                EXPECT_EQ(central.mCdf(dX, true), mFCdf(dX, dNum, dDen, 0.0, true));
                EXPECT_EQ(noncentral.mCdf(dX, false), mFCdf(dX, dNum, dDen, 2.0, false));
                EXPECT_EQ(noncentral.mCdf(dX, true), mFCdf(dX, dNum, dDen, 2.0, true));
            }
            for (double dP : {0.01, 0.5, 0.95})
            {
                EXPECT_EQ(central.mInvCdf(dP), mFInvCdf(dP, dNum, dDen, 0.0));
                EXPECT_EQ(noncentral.mInvCdf(dP), mFInvCdf(dP, dNum, dDen, 2.0));
            }
        }
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistF, NoncentralDensityReportsAndGivesTheCentralOne)
{
    CmAssertCapture capture;
    const CmDistF dist(3.0, 7.0, 1.0);
    EXPECT_EQ(dist.mPdf(1.2), mFPdf(1.2, 3.0, 7.0));
    EXPECT_EQ(capture.mGetCount(), 1);
    EXPECT_TRUE(capture.mHas("0.0 == m_dNoncentrality"));
}

TEST(DistF, NoncentralVariateReportsAndIsTheCentralOne)
{
    CmAssertCapture capture;
    const auto vRows = qeltest::mBetaTableRows(2.0, 3.0, 7.0);
    ASSERT_EQ(vRows.size(), 10u);
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    const double dX = CmDistF(3.0, 7.0, 1.0).mGetRandom();
    EXPECT_LE(qeltest::mRelativeError(dX, vRows[0][5]), 1e-13);
    EXPECT_EQ(qeltest::mDrawsSinceBase(kBase), static_cast<int>(vRows[0][6]));
    EXPECT_EQ(capture.mGetCount(), 1);
    EXPECT_TRUE(capture.mHas("0.0 == m_dNoncentrality"));
}

TEST(DistF, InvalidParametersReportAndDrawNothing)
{
    for (const auto& rParams : {std::vector<double>{-1.0, 2.0}, std::vector<double>{2.0, 0.0},
                                std::vector<double>{kNaN, 1.0}})
    {
        CmAssertCapture capture;
        CmUniformGenerator::mInstance()->mSetBase(kBase);
        EXPECT_TRUE(mIsNumericMissing(CmDistF(rParams).mGetRandom()));
        EXPECT_EQ(CmUniformGenerator::mInstance()->mGetBase(), kBase);
        EXPECT_EQ(capture.mGetCount(), 1);
        EXPECT_TRUE(capture.mHas("mAreParamsValid()"));
    }
    // A negative noncentrality is reported twice: noncentral, and invalid.
    CmAssertCapture capture;
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    EXPECT_TRUE(mIsNumericMissing(CmDistF(2.0, 3.0, -1.0).mGetRandom()));
    EXPECT_EQ(CmUniformGenerator::mInstance()->mGetBase(), kBase);
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "0.0 == m_dNoncentrality");
    EXPECT_EQ(capture.mGetTexts()[1], "mAreParamsValid()");
}

TEST(DistF, LowerBoundShownWhenItIsNearTheBody)
{
    CmAssertCapture capture;
    // F(1, 10): the first percentile is 1.65e-4 and the 99th 10.04, so the
    // bound 0 lies well within a fifth of the range below q1.
    const CmDistF wide(1.0, 10.0);
    // F(100, 100): q1 is 0.626 and q99 1.598; 0.2 (q99 - q1) is
    // 0.194, far less than q1 - 0.
    const CmDistF narrow(100.0, 100.0);
    for (const CmDistF* pDist : {&wide, &narrow})
    {
        const double dQ1 = pDist->mInvCdf(0.01);
        const double dQ99 = pDist->mInvCdf(0.99);
        EXPECT_EQ(pDist->mHasLowerBound(), 0.2 * (dQ99 - dQ1) >= dQ1 - 0.0);
    }
    EXPECT_TRUE(wide.mHasLowerBound());
    EXPECT_FALSE(narrow.mHasLowerBound());
    EXPECT_EQ(wide.mGetLowerBound(), 0.0);
    EXPECT_EQ(narrow.mGetLowerBound(), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);

    // No upper bound: the base's answers.
    EXPECT_FALSE(wide.mHasUpperBound());
    EXPECT_EQ(wide.mGetUpperBound(), 0.0);
    EXPECT_TRUE(capture.mHas("false"));
}

TEST(DistF, IsContinuousWithAReferencePointAtZero)
{
    CmAssertCapture capture;
    const CmDistF dist(3.0, 7.0);
    EXPECT_TRUE(dist.mIsContinuous());
    std::vector<double> vd{5.0, 6.0};
    dist.mGetDRefPoints(vd);
    EXPECT_EQ(vd, (std::vector<double>{0.0}));
    EXPECT_EQ(capture.mGetCount(), 0);
    std::vector<double> vdSupport{7.0};
    dist.mGetSupport(0.0, 10.0, vdSupport);
    EXPECT_EQ(capture.mGetCount(), 1);
    EXPECT_TRUE(capture.mHas("false"));
    EXPECT_EQ(vdSupport, (std::vector<double>{7.0}));
}

TEST(DistF, VariatesReplayTheUniformStream)
{
    CmAssertCapture capture;
    mExpectReferenceVariates(CmDistF(3.0, 7.0), 3.0, 7.0);
    mExpectReferenceVariates(CmDistF(1.0, 10.0), 1.0, 10.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

// F(2, 0.001) draws beta(1, 0.0005) variates, which at this base all round to
// 1 (column aux of the table).  Held at 1 - 2^-52, each gives
// (0.001 / 2) (1 - 2^-52) / 2^-52, finite.
TEST(DistF, BetaVariateOfOneIsHeldBelowOne)
{
    const auto vRows = qeltest::mBetaTableRows(2.0, 2.0, 0.001);
    ASSERT_EQ(vRows.size(), 10u);
    const double dEps = std::ldexp(1.0, -52);
    const double dExpected = (0.001 / 2.0) * (1.0 - dEps) / dEps;
    const CmDistF dist(2.0, 0.001);
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    for (const auto& rRow : vRows)
    {
        EXPECT_EQ(rRow[7], 1.0);
        const double dX = dist.mGetRandom();
        EXPECT_TRUE(std::isfinite(dX));
        EXPECT_EQ(dX, dExpected);
        EXPECT_EQ(dX, rRow[5]);
        EXPECT_EQ(qeltest::mDrawsSinceBase(kBase), static_cast<int>(rRow[6]));
    }
}

// Copies share one helper, which outlives whichever object goes last; the
// stream of draws is the same whichever copy draws.
TEST(DistF, CopiesShareTheHelperInEveryOrder)
{
    auto pOriginal = std::make_unique<CmDistF>(3.0, 7.0);
    auto pCopy = std::make_unique<CmDistF>(*pOriginal);
    auto pAssigned = std::make_unique<CmDistF>(1.0, 10.0);
    *pAssigned = *pOriginal;
    pOriginal.reset();
    mExpectReferenceVariates(*pCopy, 3.0, 7.0);
    pCopy.reset();
    mExpectReferenceVariates(*pAssigned, 3.0, 7.0);
    // Assignment over an object whose own helper was its last owner.
    CmDistF other(1.0, 10.0);
    other = *pAssigned;
    pAssigned.reset();
    mExpectReferenceVariates(other, 3.0, 7.0);
    const CmDistF& rSame = other;
    other = rSame;
    mExpectReferenceVariates(other, 3.0, 7.0);

    CmDistF a(1.0, 10.0);
    {
        CmDistF b(a);
        CmDistF c(3.0, 7.0);
        c = b;
        b = CmDistF(3.0, 7.0);
        mExpectReferenceVariates(b, 3.0, 7.0);
        mExpectReferenceVariates(c, 1.0, 10.0);
    }
    mExpectReferenceVariates(a, 1.0, 10.0);
}

TEST(DistF, MissingHelperReportsAndDrawsNothing)
{
    g_iNothrowFailAt = 1;
    const CmDistF dist(3.0, 7.0);
    ASSERT_EQ(g_iNothrowFailAt, 0);
    CmAssertCapture capture;
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    EXPECT_TRUE(mIsNumericMissing(dist.mGetRandom()));
    EXPECT_EQ(CmUniformGenerator::mInstance()->mGetBase(), kBase);
    EXPECT_EQ(capture.mGetCount(), 1);
    EXPECT_TRUE(capture.mHas("m_pBeta != nullptr"));
    // The rest of the object works without its helper.
    EXPECT_EQ(dist.mCdf(1.0, false), mFCdf(1.0, 3.0, 7.0, 0.0, false));
    const CmDistF copy(dist);
    EXPECT_TRUE(mIsNumericMissing(copy.mGetRandom()));
    EXPECT_EQ(capture.mGetCount(), 2);
}

// A failed helper of a t object's F helper: the F reports, and the t passes
// the missing value on without drawing its sign.
TEST(DistF, MissingHelperInsideATObjectIsPassedOn)
{
    g_iNothrowFailAt = 2; // the t's F succeeds, the F's beta fails
    const CmDistT t(5.0);
    ASSERT_EQ(g_iNothrowFailAt, 0);
    CmAssertCapture capture;
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    EXPECT_TRUE(mIsNumericMissing(t.mGetRandom()));
    EXPECT_EQ(CmUniformGenerator::mInstance()->mGetBase(), kBase);
    EXPECT_EQ(capture.mGetCount(), 1);
    EXPECT_TRUE(capture.mHas("m_pBeta != nullptr"));

    g_iNothrowFailAt = 1; // the t's own helper fails
    const CmDistT tWithout(5.0);
    ASSERT_EQ(g_iNothrowFailAt, 0);
    capture.mClear();
    EXPECT_TRUE(mIsNumericMissing(tWithout.mGetRandom()));
    EXPECT_EQ(CmUniformGenerator::mInstance()->mGetBase(), kBase);
    EXPECT_EQ(capture.mGetCount(), 1);
    EXPECT_TRUE(capture.mHas("m_pF != nullptr"));
    // A noncentral t needs no helper.
    const CmDistT noncentral(10.0, 1.5);
    EXPECT_FALSE(mIsNumericMissing(noncentral.mGetRandom()));
    EXPECT_EQ(capture.mGetCount(), 1);
}

TEST(DistF, VariatesFollowTheDistribution)
{
    qeltest::mExpectKsOfVariates(CmDistF(3.0, 7.0), "F(3, 7)", kBase);
    qeltest::mExpectKsOfVariates(CmDistF(1.0, 10.0), "F(1, 10)", kBase);
}

TEST(DistF, VariatesFollowTheDistributionWithLargeDegreesOfFreedom)
{
    qeltest::mExpectKsOfVariates(CmDistF(12.0, 40.0), "F(12, 40)", kBase);
    qeltest::mExpectKsOfVariates(CmDistF(0.6, 2.5), "F(0.6, 2.5)", kBase);
}

// Two infinite degrees of freedom: the beta helper has two infinite shapes
// and gives the missing value, which the F passes on.
TEST(DistF, InfiniteDegreesOfFreedomPassTheMissingBetaOn)
{
    const double dInf = std::numeric_limits<double>::infinity();
    CmAssertCapture capture;
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    EXPECT_TRUE(mIsNumericMissing(CmDistF(dInf, dInf).mGetRandom()));
    EXPECT_EQ(CmUniformGenerator::mInstance()->mGetBase(), kBase);
    EXPECT_EQ(capture.mGetCount(), 0);
}
