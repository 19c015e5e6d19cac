// The chi-square distribution object: parameters, forwarding (the
// noncentrality reaching the distribution function and the quantile only),
// bounds, the central-only density and variates, and the variates of its
// gamma helper.
#include "qel/distkernelbacked.h"

#include "dist_gamma_variates.h"
#include "dist_variates_support.h"
#include "support/reftable.h"
#include "support/uniformstream.h"

#include "qel/closedform.h"
#include "qel/kernelbacked.h"
#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

namespace
{
const double kNaN = std::numeric_limits<double>::quiet_NaN();

CmUniformGenerator* mGenerator() { return CmUniformGenerator::mInstance(); }
} // namespace

TEST(DistChiSq, ConstructorsKeepTheParametersInOrder)
{
    std::vector<double> vd;
    CmDistChiSq(5.0).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{5.0, 0.0}));
    CmDistChiSq(5.0, 2.5).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{5.0, 2.5}));
    CmDistChiSq(std::vector<double>{3.0, 1.0}).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{3.0, 1.0}));
    CmDistChiSq(std::vector<double>{3.0}).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{3.0, 0.0}));
    CmDistChiSq(std::vector<double>{}).mGetParameters(vd);
    ASSERT_EQ(vd.size(), 2u);
    EXPECT_TRUE(std::isnan(vd[0]));
    EXPECT_EQ(vd[1], 0.0);
    CmDistChiSq(7.0, 3.0).mGetNonInvCDFParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{7.0}));
}

TEST(DistChiSq, ValidWhenDegreesOfFreedomPositiveAndNoncentralityNotNegative)
{
    EXPECT_TRUE(CmDistChiSq(1.0).mAreParamsValid());
    EXPECT_TRUE(CmDistChiSq(0.1, 0.0).mAreParamsValid());
    EXPECT_TRUE(CmDistChiSq(4.0, 3.0).mAreParamsValid());
    EXPECT_FALSE(CmDistChiSq(0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistChiSq(-2.0).mAreParamsValid());
    EXPECT_FALSE(CmDistChiSq(4.0, -1e-300).mAreParamsValid());
    EXPECT_FALSE(CmDistChiSq(kNaN).mAreParamsValid());
    EXPECT_FALSE(CmDistChiSq(4.0, kNaN).mAreParamsValid());
    EXPECT_FALSE(CmDistChiSq(std::vector<double>{}).mAreParamsValid());
}

TEST(DistChiSq, ForwardsToTheFlatFunctions)
{
    CmAssertCapture capture;
    const CmDistChiSq central(4.5);
    const CmDistChiSq noncentral(4.5, 1.5);
    for (double x : {0.0, 0.3, 1.0, 4.5, 12.0})
    {
        EXPECT_EQ(central.mPdf(x), mChiSqPdf(x, 4.5)) << x;
        EXPECT_EQ(central.mCdf(x, false), mChiSqCdf(x, 4.5, 0.0, false)) << x;
        EXPECT_EQ(central.mCdf(x, true), mChiSqCdf(x, 4.5, 0.0, true)) << x;
        EXPECT_EQ(noncentral.mCdf(x, false), mChiSqCdf(x, 4.5, 1.5, false)) << x;
        EXPECT_EQ(noncentral.mCdf(x, true), mChiSqCdf(x, 4.5, 1.5, true)) << x;
    }
    for (double p : {0.0, 0.01, 0.5, 0.99})
    {
        EXPECT_EQ(central.mInvCdf(p), mChiSqInvCdf(p, 4.5, 0.0)) << p;
        EXPECT_EQ(noncentral.mInvCdf(p), mChiSqInvCdf(p, 4.5, 1.5)) << p;
    }
    EXPECT_EQ(capture.mGetCount(), 0);
    // A known value: two degrees of freedom are the exponential with scale 2.
    EXPECT_NEAR(CmDistChiSq(2.0).mCdf(2.0, false), 1.0 - std::exp(-1.0), 1e-14);
}

TEST(DistChiSq, NoncentralDensityAndVariateAreReported)
{
    const CmDistChiSq dist(3.0, 1.0);
    {
        CmAssertCapture capture;
        // The central density is given after the report.
        EXPECT_EQ(dist.mPdf(2.0), mChiSqPdf(2.0, 3.0));
        EXPECT_EQ(capture.mGetCount(), 1);
        EXPECT_TRUE(capture.mHas("0.0 == m_dNoncentrality"));
    }
    {
        CmAssertCapture capture;
        mGenerator()->mSetBase(555.0);
        const double x = dist.mGetRandom();
        EXPECT_EQ(capture.mGetCount(), 1);
        EXPECT_TRUE(capture.mHas("0.0 == m_dNoncentrality"));
        // The variate is the central one.
        mGenerator()->mSetBase(555.0);
        EXPECT_EQ(x, CmDistChiSq(3.0).mGetRandom());
        EXPECT_EQ(capture.mGetCount(), 1);
    }
}

TEST(DistChiSq, BoundsAndReferencePoints)
{
    const CmDistChiSq dist(6.0, 2.0);
    EXPECT_TRUE(dist.mIsContinuous());
    EXPECT_EQ(dist.mGetLowerBound(), 0.0);
    std::vector<double> vd{4.0, 5.0};
    dist.mGetDRefPoints(vd);
    EXPECT_EQ(vd, (std::vector<double>{0.0}));
    // Two degrees of freedom: q1 = 0.0201, q99 = 9.21, 0.2 * 9.19 >= 0.0201,
    // shown.  Two hundred (mpmath): q1 = 156.43, q99 = 249.45,
    // 0.2 * 93.0 = 18.6 < 156.43, not shown.
    EXPECT_TRUE(CmDistChiSq(2.0).mHasLowerBound());
    EXPECT_FALSE(CmDistChiSq(200.0).mHasLowerBound());
}

TEST(DistChiSq, TwoDegreesOfFreedomAreAnExponentialAtOneUniform)
{
    // df 2 makes a gamma helper of shape 1, whose helper is the exponential
    // with scale 1: x = (0 - 1 log(1 - U)) * 2 + 0.  The flat exponential
    // quantile is 0 - 2 log(1 - U).  Multiplying by 1 and by 2, negating,
    // and adding or subtracting from 0 are exact in binary floating point,
    // so both are -2 log(1 - U) to the last bit.
    const CmDistChiSq dist(2.0);
    mGenerator()->mSetBase(8080.0);
    qeltest::UniformStream stream(8080.0);
    for (int i = 0; i < 50; ++i)
    {
        const double dBefore = mGenerator()->mGetBase();
        const double x = dist.mGetRandom();
        EXPECT_EQ(qeltest::mCountDraws(dBefore, mGenerator()->mGetBase()), 1);
        const double dU = stream.mNext();
        EXPECT_EQ(x, mExponentialInvCdf(dU, 2.0, 0.0)) << i;
        EXPECT_EQ(x, -2.0 * std::log(1.0 - dU)) << i;
    }
}

TEST(DistChiSq, VariatesReplayTheReferenceAlgorithms)
{
    const std::vector<qeltest::VariateCase> vCases = qeltest::mLoadVariateCases(2);
    ASSERT_EQ(vCases.size(), 4u);
    double dWorst = 0.0;
    for (const qeltest::VariateCase& rCase : vCases)
    {
        const CmDistChiSq dist(rCase.dP1);
        mGenerator()->mSetBase(12345.0);
        for (std::size_t i = 0; i < rCase.vdVariates.size(); ++i)
        {
            const double x = dist.mGetRandom();
            const double dError = qeltest::mRelativeError(x, rCase.vdVariates[i]);
            dWorst = std::fmax(dWorst, dError);
            EXPECT_LE(dError, 1e-13) << "df " << rCase.dP1 << " index " << i;
            EXPECT_EQ(qeltest::mCountDraws(12345.0, mGenerator()->mGetBase()), rCase.viCounts[i])
                << "df " << rCase.dP1 << " index " << i;
        }
    }
    std::printf("chi-square variates: worst relative error %.3g\n", dWorst);
}

TEST(DistChiSq, VariatesFollowTheDistributionFunction)
{
    for (double df : {1.0, 2.0, 5.0, 12.0, 0.3})
    {
        qeltest::mExpectKsOfVariates(CmDistChiSq(df), "chi-square df " + std::to_string(df),
                                     27182.0);
    }
}

TEST(DistChiSq, CopiesShareTheHelper)
{
    // df 12 draws through the normal-body scheme: the original, a copy and
    // an assigned object drawn in turn give the variates of one object.
    const std::vector<qeltest::VariateCase> vCases = qeltest::mLoadVariateCases(2);
    const qeltest::VariateCase* pCase = nullptr;
    for (const qeltest::VariateCase& rCase : vCases)
        if (rCase.dP1 == 12.0)
            pCase = &rCase;
    ASSERT_NE(pCase, nullptr);
    mGenerator()->mSetBase(12345.0);
    auto* pOriginal = new CmDistChiSq(12.0);
    auto* pCopy = new CmDistChiSq(*pOriginal);
    CmDistChiSq assigned(1.0);
    assigned = *pOriginal;
    std::vector<double> vdDrawn;
    vdDrawn.push_back(pCopy->mGetRandom());
    vdDrawn.push_back(pOriginal->mGetRandom());
    delete pCopy;
    vdDrawn.push_back(assigned.mGetRandom());
    vdDrawn.push_back(pOriginal->mGetRandom());
    delete pOriginal;
    vdDrawn.push_back(assigned.mGetRandom());
    for (std::size_t i = 0; i < vdDrawn.size(); ++i)
        EXPECT_LE(qeltest::mRelativeError(vdDrawn[i], pCase->vdVariates[i]), 1e-13) << i;
    const CmDistChiSq& rSame = assigned;
    assigned = rSame;
    CmDistChiSq other(3.0);
    other = assigned;
    EXPECT_LE(qeltest::mRelativeError(other.mGetRandom(), pCase->vdVariates[5]), 1e-13);
}
