// The multivariate normal distribution object: the quiet refusal of a
// covariance that is not positive definite (and of a mean that does not fit
// it), the scalar operations that do not apply, the first vectors against
// those that gen_variates_closedform.py derives from the replayed uniform
// stream, the sample moments of 10^5 vectors, and copies that share the
// helper normal.
#include "qel/distmvnormal.h"
#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"

#include "support/reftable.h"
#include "support/uniformstream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

namespace
{
const double kBase = 12345.0;

// The mean and covariance of the table's header.
const std::vector<double> kMean{1.0, -2.0, 0.5};
const double kCov[3][3] = {{4.0, 1.2, -0.8}, {1.2, 2.25, 0.6}, {-0.8, 0.6, 1.0}};

Smatrix<double> mCovariance()
{
    Smatrix<double> sm(3);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j <= i; ++j)
            sm(i, j) = kCov[i][j];
    return sm;
}

Smatrix<double> mMatrix2(double dA, double dB, double dC)
{
    Smatrix<double> sm(2);
    sm(0, 0) = dA;
    sm(1, 0) = dB;
    sm(1, 1) = dC;
    return sm;
}

int mUsedSince(double dBase)
{
    return qeltest::mCountDraws(dBase, CmUniformGenerator::mInstance()->mGetBase());
}

// The first accepted pair of the polar method (Marsaglia and Bray, SIAM
// Review 6, 1964) from the stream at dBase.
void mFirstPolarPair(double dBase, double& rdFirst, double& rdSecond)
{
    qeltest::UniformStream stream(dBase);
    for (;;)
    {
        const double dX = 2.0 * stream.mNext() - 1.0;
        const double dY = 2.0 * stream.mNext() - 1.0;
        const double dS = dX * dX + dY * dY;
        if (dS > 1.0)
            continue;
        const double dF = std::sqrt(-2.0 * std::log(dS) / dS);
        rdFirst = dX * dF;
        rdSecond = dY * dF;
        return;
    }
}

// The table's rows, grouped by draw: [draw][entry] and the count of uniforms.
struct TableDraw
{
    std::vector<double> vdValue;
    int iUsed;
};

std::vector<TableDraw> mTableDraws()
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("variates_closedform_mvnormal.txt");
    std::vector<TableDraw> vDraws;
    for (const std::vector<double>& row : table.rows)
    {
        const std::size_t uDraw = static_cast<std::size_t>(row[0]);
        if (vDraws.size() <= uDraw)
            vDraws.resize(uDraw + 1);
        vDraws[uDraw].vdValue.push_back(row[2]);
        vDraws[uDraw].iUsed = static_cast<int>(row[3]);
    }
    return vDraws;
}

double mRel(double dA, double dB) { return std::fabs(dA - dB) / std::max(std::fabs(dB), 1.0); }
} // namespace

TEST(DistMVNormal, NotPositiveDefiniteConstructsQuietlyAndLeavesTheVectorAlone)
{
    CmAssertCapture capture;
    for (const Smatrix<double>& rsm :
         {mMatrix2(1.0, 2.0, 1.0), mMatrix2(1.0, 1.0, 1.0), mMatrix2(-1.0, 0.0, 1.0)})
    {
        bool bMade = false;
        const auto construct = [&]()
        {
            CmDistMVNormal dist({0.0, 0.0}, rsm, true);
            bMade = true;
            EXPECT_FALSE(dist.mCanGenerate());
            CmUniformGenerator::mInstance()->mSetBase(kBase);
            std::vector<double> vd{9.0, 8.0, 7.0};
            dist.mGetRandom(vd);
            EXPECT_EQ(vd, (std::vector<double>{9.0, 8.0, 7.0}));
            EXPECT_EQ(mUsedSince(kBase), 0);
        };
        EXPECT_NO_THROW(construct());
        EXPECT_TRUE(bMade);
    }
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistMVNormal, NaNOrInfinityInTheCovarianceIsMetAsNotPositiveDefinite)
{
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    const double dInf = std::numeric_limits<double>::infinity();
    CmAssertCapture capture;
    for (const Smatrix<double>& rsm :
         {mMatrix2(dNaN, 0.0, 1.0), mMatrix2(1.0, dNaN, 1.0), mMatrix2(1.0, 0.0, dNaN),
          mMatrix2(dInf, 0.0, 1.0), mMatrix2(1.0, 0.0, dInf), mMatrix2(1.0, dInf, 1.0)})
    {
        CmDistMVNormal dist({0.0, 0.0}, rsm, true);
        EXPECT_FALSE(dist.mCanGenerate());
        CmUniformGenerator::mInstance()->mSetBase(kBase);
        std::vector<double> vd{9.0};
        dist.mGetRandom(vd);
        EXPECT_EQ(vd, (std::vector<double>{9.0}));
        EXPECT_EQ(mUsedSince(kBase), 0);
    }
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistMVNormal, OrderZeroGivesTheEmptyVector)
{
    CmAssertCapture capture;
    CmDistMVNormal dist({}, Smatrix<double>(0), true);
    EXPECT_TRUE(dist.mCanGenerate());
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    std::vector<double> vd{9.0};
    dist.mGetRandom(vd);
    EXPECT_TRUE(vd.empty());
    EXPECT_EQ(mUsedSince(kBase), 0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistMVNormal, ToldNotToGenerateLeavesTheVectorAlone)
{
    CmAssertCapture capture;
    CmDistMVNormal dist(kMean, mCovariance(), false);
    EXPECT_FALSE(dist.mCanGenerate());
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    std::vector<double> vd{1.5, -2.5};
    dist.mGetRandom(vd);
    EXPECT_EQ(vd, (std::vector<double>{1.5, -2.5}));
    std::vector<double> vdEmpty;
    dist.mGetRandom(vdEmpty);
    EXPECT_TRUE(vdEmpty.empty());
    EXPECT_EQ(mUsedSince(kBase), 0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistMVNormal, MeanOfAnotherLengthThanTheCovarianceIsMetQuietly)
{
    CmAssertCapture capture;
    CmDistMVNormal dist({1.0, 2.0}, mCovariance(), true);
    EXPECT_FALSE(dist.mCanGenerate());
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    std::vector<double> vd{4.0};
    dist.mGetRandom(vd);
    EXPECT_EQ(vd, (std::vector<double>{4.0}));
    EXPECT_EQ(mUsedSince(kBase), 0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistMVNormal, ScalarOperationsAreRefused)
{
    const CmDistMVNormal dist(kMean, mCovariance(), true);
    CmAssertCapture capture;
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    EXPECT_EQ(dist.mPdf(1.0), 0.0);
    EXPECT_EQ(dist.mCdf(1.0, false), 0.0);
    EXPECT_EQ(dist.mCdf(1.0, true), 0.0);
    EXPECT_EQ(dist.mInvCdf(0.5), 0.0);
    EXPECT_EQ(dist.mGetRandom(), 0.0);
    EXPECT_EQ(mUsedSince(kBase), 0);
    EXPECT_EQ(capture.mGetCount(), 5);
    for (const std::string& rs : capture.mGetTexts())
        EXPECT_EQ(rs, "false");
    // mGetParameters is the base's refusal.
    capture.mClear();
    std::vector<double> vd{1.0, 2.0};
    dist.mGetParameters(vd);
    EXPECT_TRUE(vd.empty());
    EXPECT_EQ(capture.mGetCount(), 1);
    EXPECT_TRUE(capture.mHas("false"));
}

TEST(DistMVNormal, OrderOneIsScaleTimesNormalPlusMean)
{
    Smatrix<double> sm(1);
    sm(0, 0) = 4.0;
    CmDistMVNormal dist({1.0}, sm, true);
    ASSERT_TRUE(dist.mCanGenerate());
    double dZ1 = 0.0, dZ2 = 0.0;
    mFirstPolarPair(kBase, dZ1, dZ2);
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    std::vector<double> vd{5.0, 5.0, 5.0};
    dist.mGetRandom(vd);
    ASSERT_EQ(vd.size(), 1u);
    EXPECT_LE(mRel(vd[0], 2.0 * dZ1 + 1.0), 1e-15);
    dist.mGetRandom(vd);
    ASSERT_EQ(vd.size(), 1u);
    EXPECT_LE(mRel(vd[0], 2.0 * dZ2 + 1.0), 1e-15);
}

TEST(DistMVNormal, FirstVectorsReproduceTheReplayedStream)
{
    const std::vector<TableDraw> vDraws = mTableDraws();
    ASSERT_EQ(vDraws.size(), 12u);
    CmAssertCapture capture;
    CmDistMVNormal dist(kMean, mCovariance(), true);
    ASSERT_TRUE(dist.mCanGenerate());
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    double dWorst = 0.0;
    for (std::size_t d = 0; d < vDraws.size(); ++d)
    {
        std::vector<double> vd{42.0};
        dist.mGetRandom(vd);
        ASSERT_EQ(vd.size(), 3u);
        ASSERT_EQ(vDraws[d].vdValue.size(), 3u);
        for (std::size_t i = 0; i < 3; ++i)
        {
            // A few roundings in the factor and the products.
            const double dError = mRel(vd[i], vDraws[d].vdValue[i]);
            EXPECT_LE(dError, 1e-13) << "draw " << d << " entry " << i;
            dWorst = std::max(dWorst, dError);
        }
        EXPECT_EQ(mUsedSince(kBase), vDraws[d].iUsed) << "draw " << d;
    }
    EXPECT_EQ(capture.mGetCount(), 0);
    std::printf("12 vectors; worst error %.3g\n", dWorst);
}

TEST(DistMVNormal, SampleMeansAndCovariancesMatchWithinThreeStandardErrors)
{
    CmDistMVNormal dist(kMean, mCovariance(), true);
    ASSERT_TRUE(dist.mCanGenerate());
    CmUniformGenerator::mInstance()->mSetBase(20240611.0);
    const int n = 100000;
    double adSum[3] = {0.0, 0.0, 0.0};
    double adCross[3][3] = {};
    std::vector<double> vd;
    std::vector<std::vector<double>> vvdSample(static_cast<std::size_t>(n));
    for (int k = 0; k < n; ++k)
    {
        dist.mGetRandom(vd);
        ASSERT_EQ(vd.size(), 3u);
        vvdSample[static_cast<std::size_t>(k)] = vd;
        for (int i = 0; i < 3; ++i)
            adSum[i] += vd[static_cast<std::size_t>(i)];
    }
    double adMean[3];
    for (int i = 0; i < 3; ++i)
        adMean[i] = adSum[i] / n;
    for (const std::vector<double>& rvd : vvdSample)
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j)
                adCross[i][j] += (rvd[static_cast<std::size_t>(i)] - adMean[i]) *
                                 (rvd[static_cast<std::size_t>(j)] - adMean[j]);
    for (int i = 0; i < 3; ++i)
    {
        const double dSe = std::sqrt(kCov[i][i] / n);
        std::printf("mean %d: %.5f (expected %.5f, %.2f standard errors)\n", i, adMean[i],
                    kMean[static_cast<std::size_t>(i)],
                    (adMean[i] - kMean[static_cast<std::size_t>(i)]) / dSe);
        EXPECT_LE(std::fabs(adMean[i] - kMean[static_cast<std::size_t>(i)]), 3.0 * dSe) << i;
        for (int j = 0; j <= i; ++j)
        {
            const double dCov = adCross[i][j] / (n - 1);
            const double dSeCov =
                std::sqrt((kCov[i][i] * kCov[j][j] + kCov[i][j] * kCov[i][j]) / n);
            std::printf("cov %d %d: %.5f (expected %.5f, %.2f standard errors)\n", i, j, dCov,
                        kCov[i][j], (dCov - kCov[i][j]) / dSeCov);
            EXPECT_LE(std::fabs(dCov - kCov[i][j]), 3.0 * dSeCov) << i << ", " << j;
        }
    }
}

TEST(DistMVNormal, CopiesShareTheHelperNormal)
{
    const std::vector<TableDraw> vDraws = mTableDraws();
    ASSERT_GE(vDraws.size(), 3u);
    CmDistMVNormal a(kMean, mCovariance(), true);
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    std::vector<double> vd;
    a.mGetRandom(vd);
    // The first vector used three normals: the spare of the second pair is in
    // the helper, which the copy shares, so the copy draws the second vector
    // of the stream and the original the third.
    CmDistMVNormal copy(a);
    copy.mGetRandom(vd);
    ASSERT_EQ(vd.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_LE(mRel(vd[i], vDraws[1].vdValue[i]), 1e-13) << i;
    a.mGetRandom(vd);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_LE(mRel(vd[i], vDraws[2].vdValue[i]), 1e-13) << i;
    EXPECT_EQ(mUsedSince(kBase), vDraws[2].iUsed);
    // An assignment takes the mean, the factor and the helper.
    CmDistMVNormal assigned({0.0}, mMatrix2(1.0, 2.0, 1.0), true);
    EXPECT_FALSE(assigned.mCanGenerate());
    assigned = a;
    EXPECT_TRUE(assigned.mCanGenerate());
    assigned.mGetRandom(vd);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_LE(mRel(vd[i], vDraws[3].vdValue[i]), 1e-13) << i;
}

TEST(DistMVNormal, CopiesDestroyedInEveryOrderFreeTheHelperOnce)
{
    // Under the sanitizers a double free or a leak fails the run.
    const int aiOrders[6][3] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    for (const auto& riOrder : aiOrders)
    {
        std::vector<CmDistMVNormal*> vp(3, nullptr);
        vp[0] = new CmDistMVNormal(kMean, mCovariance(), true);
        vp[1] = new CmDistMVNormal(*vp[0]);
        vp[2] = new CmDistMVNormal({0.0, 0.0}, mMatrix2(2.0, 1.0, 2.0), true);
        *vp[2] = *vp[1];
        for (int i : riOrder)
        {
            delete vp[static_cast<std::size_t>(i)];
            vp[static_cast<std::size_t>(i)] = nullptr;
            for (CmDistMVNormal* p : vp)
            {
                if (p == nullptr)
                    continue;
                std::vector<double> vd;
                p->mGetRandom(vd);
                EXPECT_EQ(vd.size(), 3u);
            }
        }
    }
    // Through the base pointer, as a holder of distributions would.
    CmDist* pDist = new CmDistMVNormal(kMean, mCovariance(), true);
    CmDistMVNormal* pCopy = new CmDistMVNormal(*static_cast<CmDistMVNormal*>(pDist));
    delete pDist;
    std::vector<double> vd;
    pCopy->mGetRandom(vd);
    EXPECT_EQ(vd.size(), 3u);
    delete pCopy;
}
