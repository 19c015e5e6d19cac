// The beta distribution object: construction, validity, forwarding to the
// flat functions, bounds, and the variates of Cheng's BB and BC against the
// replayed uniform stream (variates_beta.txt, gen_variates_beta.py) and in
// distribution.
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
#include <vector>

namespace
{

const double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kBase = 12345.0;

} // namespace

TEST(DistBeta, ConstructorsKeepTheShapesInOrder)
{
    std::vector<double> vd;
    CmDistBeta(2.5, 0.75).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{2.5, 0.75}));

    CmDistBeta(std::vector<double>{4.0, 6.0}).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{4.0, 6.0}));

    // No defaults: a missing shape reads as NaN, which is invalid.
    const CmDistBeta oneShape(std::vector<double>{4.0});
    oneShape.mGetParameters(vd);
    ASSERT_EQ(vd.size(), 2u);
    EXPECT_EQ(vd[0], 4.0);
    EXPECT_TRUE(std::isnan(vd[1]));
    EXPECT_FALSE(oneShape.mAreParamsValid());
    EXPECT_FALSE(CmDistBeta(std::vector<double>{}).mAreParamsValid());

    const CmDistBeta original(3.0, 7.0);
    const CmDistBeta copy(original);
    copy.mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{3.0, 7.0}));
    CmDistBeta assigned(1.0, 1.0);
    assigned = original;
    assigned.mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{3.0, 7.0}));

    // The quantile takes every parameter.
    original.mGetNonInvCDFParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{3.0, 7.0}));
}

TEST(DistBeta, ValidOnlyWithTwoPositiveShapes)
{
    EXPECT_TRUE(CmDistBeta(2.0, 3.0).mAreParamsValid());
    EXPECT_TRUE(CmDistBeta(1e-300, 1e300).mAreParamsValid());
    EXPECT_FALSE(CmDistBeta(0.0, 3.0).mAreParamsValid());
    EXPECT_FALSE(CmDistBeta(2.0, 0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistBeta(-1.0, 3.0).mAreParamsValid());
    EXPECT_FALSE(CmDistBeta(2.0, -3.0).mAreParamsValid());
    EXPECT_FALSE(CmDistBeta(kNaN, 3.0).mAreParamsValid());
    EXPECT_FALSE(CmDistBeta(2.0, kNaN).mAreParamsValid());
}

TEST(DistBeta, ForwardsToTheFlatFunctions)
{
    CmAssertCapture capture;
    for (double dA : {0.5, 2.0, 7.5})
        for (double dB : {0.8, 3.0})
        {
            const CmDistBeta dist(dA, dB);
            for (double dX : {0.01, 0.3, 0.5, 0.92})
            {
                EXPECT_EQ(dist.mPdf(dX), mBetaPdf(dX, dA, dB));
                EXPECT_EQ(dist.mCdf(dX, false), mBetaCdf(dX, dA, dB, false));
                EXPECT_EQ(dist.mCdf(dX, true), mBetaCdf(dX, dA, dB, true));
                EXPECT_EQ(dist.mInvCdf(dX), mBetaInvCdf(dX, dA, dB));
            }
        }
    EXPECT_EQ(capture.mGetCount(), 0);
    // A bad shape reaches the flat function, which reports it.
    CmDistBeta(-1.0, 2.0).mCdf(0.5, false);
    EXPECT_TRUE(capture.mHas("dA > 0"));
}

TEST(DistBeta, IsContinuousOnTheUnitInterval)
{
    CmAssertCapture capture;
    const CmDistBeta dist(2.0, 3.0);
    EXPECT_TRUE(dist.mIsContinuous());
    EXPECT_TRUE(dist.mHasLowerBound());
    EXPECT_TRUE(dist.mHasUpperBound());
    EXPECT_EQ(dist.mGetLowerBound(), 0.0);
    EXPECT_EQ(dist.mGetUpperBound(), 1.0);
    std::vector<double> vd{9.0};
    dist.mGetDRefPoints(vd);
    EXPECT_EQ(vd, (std::vector<double>{0.0, 1.0}));
    EXPECT_EQ(capture.mGetCount(), 0);

    // A continuous distribution has no support to list: reported, vector
    // left alone.
    std::vector<double> vdSupport{7.0, 8.0};
    dist.mGetSupport(0.0, 1.0, vdSupport);
    EXPECT_EQ(capture.mGetCount(), 1);
    EXPECT_TRUE(capture.mHas("false"));
    EXPECT_EQ(vdSupport, (std::vector<double>{7.0, 8.0}));
}

TEST(DistBeta, VariatesReplayTheUniformStream)
{
    const double vdSets[][2] = {{2, 3},     {3, 2}, {3, 3},   {0.5, 3},    {3, 0.5},
                                {0.5, 0.5}, {1, 1}, {20, 50}, {2, 1e-300}, {1e-300, 2}};
    qeltest::WorstError worst("beta variates");
    int iCompared = 0;
    for (const auto& rSet : vdSets)
    {
        const auto vRows = qeltest::mBetaTableRows(1.0, rSet[0], rSet[1]);
        ASSERT_GE(vRows.size(), 2u) << rSet[0] << " " << rSet[1];
        const CmDistBeta dist(rSet[0], rSet[1]);
        CmUniformGenerator::mInstance()->mSetBase(kBase);
        for (const auto& rRow : vRows)
        {
            const double dX = dist.mGetRandom();
            const double dErr = qeltest::mRelativeError(dX, rRow[5]);
            worst.mUpdate(dErr, qeltest::mUlpDistance(dX, rRow[5]),
                          std::to_string(rSet[0]) + "," + std::to_string(rSet[1]));
            EXPECT_LE(dErr, 1e-13) << rSet[0] << " " << rSet[1] << " #" << rRow[4];
            EXPECT_EQ(qeltest::mCountDraws(kBase, CmUniformGenerator::mInstance()->mGetBase()),
                      static_cast<int>(rRow[6]))
                << rSet[0] << " " << rSet[1] << " #" << rRow[4];
            ++iCompared;
        }
    }
    EXPECT_EQ(iCompared, 84);
    std::cout << worst.mReport() << "\n";
}

// The first round of BB for (2, 3), worked from the stream: a = 2, b = 3,
// accepted at the first test, and the first shape is a, so w / (w + b).
TEST(DistBeta, TwoThreeRunsBBWithTheSmallerShapeTwo)
{
    qeltest::UniformStream stream(kBase);
    const double dU1 = stream.mNext();
    const double dU2 = stream.mNext();
    const double dA = 2.0, dB = 3.0, dAlpha = 5.0;
    const double dBeta = std::sqrt((dAlpha - 2.0) / (2.0 * dA * dB - dAlpha)); // sqrt(3 / 7)
    const double dGamma = dA + 1.0 / dBeta;
    const double dV = dBeta * std::log(dU1 / (1.0 - dU1));
    const double dW = dA * std::exp(dV);
    const double dZ = dU1 * dU1 * dU2;
    const double dR = dGamma * dV - std::log(4.0);
    const double dS = dR + dA - dW;
    ASSERT_LE(5.0 * dZ, dS + std::log(5.0) + 1.0); // accepted in the first round

    CmUniformGenerator::mInstance()->mSetBase(kBase);
    const double dX = CmDistBeta(2.0, 3.0).mGetRandom();
    EXPECT_NEAR(dX, dW / (dW + dB), 1e-15);
    EXPECT_EQ(qeltest::mCountDraws(kBase, CmUniformGenerator::mInstance()->mGetBase()), 2);

    // With the shapes swapped the same round gives b / (w + b).
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    EXPECT_NEAR(CmDistBeta(3.0, 2.0).mGetRandom(), dB / (dW + dB), 1e-15);
}

// Equal shapes: the first shape equals the smaller, so w / (w + b).
TEST(DistBeta, EqualShapesGiveWOverWPlusB)
{
    qeltest::UniformStream stream(kBase);
    const double dU1 = stream.mNext();
    const double dU2 = stream.mNext();
    const double dA = 3.0, dB = 3.0, dAlpha = 6.0;
    const double dBeta = std::sqrt((dAlpha - 2.0) / (2.0 * dA * dB - dAlpha)); // sqrt(1 / 3)
    const double dGamma = dA + 1.0 / dBeta;
    const double dV = dBeta * std::log(dU1 / (1.0 - dU1));
    const double dW = dA * std::exp(dV);
    const double dZ = dU1 * dU1 * dU2;
    const double dR = dGamma * dV - std::log(4.0);
    const double dS = dR + dA - dW;
    ASSERT_LE(5.0 * dZ, dS + std::log(5.0) + 1.0);
    ASSERT_LT(dU1, 0.5); // w < b, so the two branches differ: w / (w + b) < 1 / 2
    ASSERT_LT(dW, dB);

    CmUniformGenerator::mInstance()->mSetBase(kBase);
    const double dX = CmDistBeta(3.0, 3.0).mGetRandom();
    EXPECT_NEAR(dX, dW / (dW + dB), 1e-15);
    EXPECT_LT(dX, 0.5);
}

// BC for (0.5, 3): A = 3, B = 0.5.  The first uniform is below 1/2, so the
// round passes the k1 test and the final test; the first shape is B, so
// B / (w + B).
TEST(DistBeta, HalfThreeRunsBCWithTheRolesTurned)
{
    qeltest::UniformStream stream(kBase);
    const double dU1 = stream.mNext();
    const double dU2 = stream.mNext();
    const double dA = 3.0, dB = 0.5, dAlpha = 3.5;
    const double dBeta = 2.0;
    const double dDelta = 3.5;
    const double dK1 = (dB * 0.0416667 + 0.0138889) * dDelta / (dBeta * dA - 0.777778);
    ASSERT_LT(dU1, 0.5);
    const double dY = dU1 * dU2;
    const double dZ = dU1 * dY;
    ASSERT_LT(0.25 * dU2 + dZ - dY, dK1);
    const double dV = dBeta * std::log(dU1 / (1.0 - dU1));
    const double dW = dA * std::exp(dV);
    ASSERT_GE((std::log(dAlpha / (dW + dB)) + dV) * dAlpha - std::log(4.0), std::log(dZ));

    CmUniformGenerator::mInstance()->mSetBase(kBase);
    EXPECT_NEAR(CmDistBeta(0.5, 3.0).mGetRandom(), dB / (dW + dB), 1e-15);
    EXPECT_EQ(qeltest::mCountDraws(kBase, CmUniformGenerator::mInstance()->mGetBase()), 2);

    CmUniformGenerator::mInstance()->mSetBase(kBase);
    EXPECT_NEAR(CmDistBeta(3.0, 0.5).mGetRandom(), dW / (dW + dB), 1e-15);
}

// With B = 1e-300 every round overflows (u1 >= 1/2: w = A exp(1e300 ...)) or
// is rejected (u1 < 1/2: k1 is about 7e-303, below any (1/2 - u1)^2 u2 the
// stream can give; u1 >= 1/2 with z > 1/4 fails z < k2 = 1/4 + 5e-301).  The
// draw ends after 10000 rounds, 20000 uniforms, at the limit of w = infinity.
TEST(DistBeta, VanishingShapeEndsAtTheRoundLimit)
{
    CmAssertCapture capture;
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    EXPECT_EQ(CmDistBeta(2.0, 1e-300).mGetRandom(), 1.0);
    EXPECT_EQ(qeltest::mCountDraws(kBase, CmUniformGenerator::mInstance()->mGetBase()), 20000);
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    EXPECT_EQ(CmDistBeta(1e-300, 2.0).mGetRandom(), 0.0);
    EXPECT_EQ(qeltest::mCountDraws(kBase, CmUniformGenerator::mInstance()->mGetBase()), 20000);
    // Both tiny: rounds with u1 < 1/2 are accepted with w = 0 (underflow).
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    const CmDistBeta both(1e-300, 1e-300);
    for (int i = 0; i < 20; ++i)
    {
        const double dX = both.mGetRandom();
        EXPECT_TRUE(dX == 0.0 || dX == 1.0) << dX;
    }
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistBeta, InvalidShapesReportAndDrawNothing)
{
    for (const auto& rShapes : {std::vector<double>{-1.0, 2.0}, std::vector<double>{2.0, 0.0},
                                std::vector<double>{kNaN, 1.0}, std::vector<double>{3.0}})
    {
        CmAssertCapture capture;
        CmUniformGenerator::mInstance()->mSetBase(kBase);
        EXPECT_TRUE(mIsNumericMissing(CmDistBeta(rShapes).mGetRandom()));
        EXPECT_EQ(CmUniformGenerator::mInstance()->mGetBase(), kBase);
        EXPECT_EQ(capture.mGetCount(), 1);
        EXPECT_TRUE(capture.mHas("mAreParamsValid()"));
    }
}

TEST(DistBeta, VariatesStayInTheUnitInterval)
{
    CmAssertCapture capture;
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    for (double dA : {0.01, 0.3, 1.0, 1.5, 40.0})
        for (double dB : {0.02, 0.7, 1.0, 2.5, 1e4})
        {
            const CmDistBeta dist(dA, dB);
            for (int i = 0; i < 200; ++i)
            {
                const double dX = dist.mGetRandom();
                EXPECT_TRUE(dX >= 0.0 && dX <= 1.0) << dA << " " << dB << " " << dX;
            }
        }
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistBeta, BBVariatesFollowTheDistribution)
{
    qeltest::mExpectKsOfVariates(CmDistBeta(2.0, 3.0), "beta(2, 3)", kBase);
    qeltest::mExpectKsOfVariates(CmDistBeta(20.0, 50.0), "beta(20, 50)", kBase);
}

TEST(DistBeta, BCVariatesFollowTheDistribution)
{
    qeltest::mExpectKsOfVariates(CmDistBeta(0.5, 3.0), "beta(0.5, 3)", kBase);
    qeltest::mExpectKsOfVariates(CmDistBeta(0.5, 0.5), "beta(0.5, 0.5)", kBase);
}

TEST(DistBeta, BCVariatesFollowTheDistributionAtShapeOne)
{
    qeltest::mExpectKsOfVariates(CmDistBeta(1.0, 1.0), "beta(1, 1)", kBase);
    qeltest::mExpectKsOfVariates(CmDistBeta(4.0, 0.2), "beta(4, 0.2)", kBase);
}

// Beta(1, 0.0005) runs BC with beta = 2000.  From the base, the first
// variate takes rounds 0 to 4 and the second begins at round 5.  Rounds 8 and
// 9 have u1 >= 1/2 and z <= 1/4, which BC accepts without a test, but their
// exponent log(1) + 2000 log(u1 / (1 - u1)) exceeds 709: the exponential
// overflows and the rounds are abandoned, so the second variate ends only at
// round 13, after 28 uniforms, not at round 8 after 18.
TEST(DistBeta, OverflowingRoundIsAbandoned)
{
    const double dA = 1.0, dB = 0.0005, dBeta = 2000.0, dDelta = dA + 1.0 - dB;
    const double dK1 = (dB * 0.0416667 + 0.0138889) * dDelta / (dBeta * dA - 0.777778);
    const double dK2 = 0.25 + dB * (1.0 / dDelta * 0.25 + 0.5);
    qeltest::UniformStream stream(kBase);
    stream.mNext(10); // rounds 0 to 4: the first variate
    // Rounds 5 to 7: rejected.
    for (int iRound = 5; iRound <= 7; ++iRound)
    {
        const double dU1 = stream.mNext();
        const double dU2 = stream.mNext();
        if (dU1 < 0.5)
            EXPECT_GE(0.25 * dU2 + dU1 * dU1 * dU2 - dU1 * dU2, dK1) << iRound;
        else
            EXPECT_GE(dU1 * dU1 * dU2, dK2) << iRound;
    }
    // Rounds 8 and 9: accepted without a test, but overflowing.
    for (int iRound = 8; iRound <= 9; ++iRound)
    {
        const double dU1 = stream.mNext();
        const double dU2 = stream.mNext();
        EXPECT_GE(dU1, 0.5) << iRound;
        EXPECT_LE(dU1 * dU1 * dU2, 0.25) << iRound;
        EXPECT_GT(dBeta * std::log(dU1 / (1.0 - dU1)), 709.0) << iRound;
    }
    // Rounds 10 to 12: rejected.
    for (int iRound = 10; iRound <= 12; ++iRound)
    {
        const double dU1 = stream.mNext();
        const double dU2 = stream.mNext();
        if (dU1 < 0.5)
            EXPECT_GE(0.25 * dU2 + dU1 * dU1 * dU2 - dU1 * dU2, dK1) << iRound;
        else
            EXPECT_GE(dU1 * dU1 * dU2, dK2) << iRound;
    }
    // Round 13: accepted without a test, w = exp(529.1) and w / (w + B)
    // rounds to 1.
    const double dU1 = stream.mNext();
    const double dU2 = stream.mNext();
    EXPECT_GE(dU1, 0.5);
    EXPECT_LE(dU1 * dU1 * dU2, 0.25);
    const double dExponent = dBeta * std::log(dU1 / (1.0 - dU1));
    EXPECT_LT(dExponent, 709.0);
    EXPECT_GT(dExponent, 40.0);

    CmAssertCapture capture;
    const CmDistBeta dist(1.0, 0.0005);
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    EXPECT_EQ(dist.mGetRandom(), 1.0);
    EXPECT_EQ(qeltest::mCountDraws(kBase, CmUniformGenerator::mInstance()->mGetBase()), 10);
    EXPECT_EQ(dist.mGetRandom(), 1.0);
    EXPECT_EQ(qeltest::mCountDraws(kBase, CmUniformGenerator::mInstance()->mGetBase()), 28);
    EXPECT_EQ(capture.mGetCount(), 0);
}

// An infinite shape is valid but leaves no randomness: no uniform is drawn.
TEST(DistBeta, InfiniteShapesDrawNothing)
{
    const double dInf = std::numeric_limits<double>::infinity();
    CmAssertCapture capture;
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    EXPECT_TRUE(CmDistBeta(dInf, 2.0).mAreParamsValid());
    EXPECT_EQ(CmDistBeta(dInf, 2.0).mGetRandom(), 1.0);
    EXPECT_EQ(CmDistBeta(dInf, 0.5).mGetRandom(), 1.0);
    EXPECT_EQ(CmDistBeta(0.5, dInf).mGetRandom(), 0.0);
    EXPECT_EQ(CmDistBeta(3.0, dInf).mGetRandom(), 0.0);
    EXPECT_TRUE(mIsNumericMissing(CmDistBeta(dInf, dInf).mGetRandom()));
    EXPECT_EQ(CmUniformGenerator::mInstance()->mGetBase(), kBase);
    EXPECT_EQ(capture.mGetCount(), 0);
}

// Shapes so large that 2ab overflows: BB's constants become 0 and infinite,
// every comparison with the resulting NaN fails, and the first round is
// accepted with w = exp(log(a)), giving a / (a + b) up to the rounding of
// the exponential.
TEST(DistBeta, HugeShapesEndInOneRound)
{
    CmAssertCapture capture;
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    EXPECT_NEAR(CmDistBeta(1e300, 1e300).mGetRandom(), 0.5, 1e-13);
    EXPECT_EQ(qeltest::mCountDraws(kBase, CmUniformGenerator::mInstance()->mGetBase()), 2);
    EXPECT_EQ(capture.mGetCount(), 0);
}
