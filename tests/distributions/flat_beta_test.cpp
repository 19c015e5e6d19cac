// The beta flat functions: density with its values at the ends, distribution
// function, quantile, their assertion texts; accuracy against the mpmath
// tables.
#include "qel/kernelbacked.h"
#include "qelmath/kernels/kernel_protocol.h"

#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "flat_kernelbacked_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <sstream>

TEST(BetaInvCdf, ProbabilityOneIsOneAndZeroIsZero)
{
    CmAssertCapture capture;
    EXPECT_EQ(mBetaInvCdf(1.0, 2.0, 3.0), 1.0);
    EXPECT_EQ(mBetaInvCdf(0.0, 2.0, 3.0), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(BetaInvCdf, AssertsOnlyTheProbability)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mBetaInvCdf(1.5, 2.0, 3.0)));
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dProb <= 1.0");
    capture.mClear();
    EXPECT_TRUE(mIsNumericMissing(mBetaInvCdf(-0.5, 2.0, 3.0)));
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dProb >= 0.0");
    capture.mClear();
    // Shapes are not asserted here; the kernel refuses them.
    EXPECT_TRUE(mIsNumericMissing(mBetaInvCdf(0.3, -1.0, 3.0)));
    EXPECT_EQ(capture.mGetCount(), 0);
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(BetaPdf, EndsFollowTheShapeAtThatEnd)
{
    CmAssertCapture capture;
    EXPECT_EQ(mBetaPdf(0.0, 1.0, 3.0), 3.0);
    EXPECT_TRUE(mIsNumericMissing(mBetaPdf(0.0, 0.5, 3.0)));
    EXPECT_EQ(mBetaPdf(0.0, 2.0, 3.0), 0.0);
    EXPECT_EQ(mBetaPdf(1.0, 3.0, 1.0), 3.0);
    EXPECT_TRUE(mIsNumericMissing(mBetaPdf(1.0, 3.0, 0.5)));
    EXPECT_EQ(mBetaPdf(1.0, 3.0, 2.0), 0.0);
    EXPECT_EQ(mBetaPdf(-0.1, 3.0, 2.0), 0.0);
    EXPECT_EQ(mBetaPdf(1.1, 0.5, 0.5), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(BetaPdf, AssertsBothShapes)
{
    CmAssertCapture capture;
    mBetaPdf(2.0, 0.0, -1.0);
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "dA > 0");
    EXPECT_EQ(capture.mGetTexts()[1], "dB > 0");
}

TEST(BetaPdf, InteriorValues)
{
    // Beta(2, 3): 12 x (1 - x)^2.
    EXPECT_NEAR(mBetaPdf(0.3, 2.0, 3.0), 12.0 * 0.3 * 0.49, 1e-14);
    EXPECT_NEAR(mBetaPdf(0.5, 1.0, 1.0), 1.0, 1e-15);
}

TEST(BetaCdf, EndsAndAssertions)
{
    CmAssertCapture capture;
    EXPECT_EQ(mBetaCdf(0.0, 2.0, 3.0, false), 0.0);
    EXPECT_EQ(mBetaCdf(-1.0, 2.0, 3.0, true), 1.0);
    EXPECT_EQ(mBetaCdf(1.0, 2.0, 3.0, false), 1.0);
    EXPECT_EQ(mBetaCdf(2.0, 2.0, 3.0, true), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
    // Shapes the kernel refuses: both reported, then the missing value.
    EXPECT_TRUE(mIsNumericMissing(mBetaCdf(0.5, -2.0, 0.0, false)));
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "dA > 0");
    EXPECT_EQ(capture.mGetTexts()[1], "dB > 0");
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(BetaCdf, TailsAddToOne)
{
    for (double dA : {0.2, 1.0, 4.5, 300.0})
        for (double dB : {0.7, 2.0, 60.0})
            for (double dX : {1e-4, 0.1, 0.5, 0.9, 0.9999})
                EXPECT_NEAR(mBetaCdf(dX, dA, dB, false) + mBetaCdf(dX, dA, dB, true), 1.0, 4e-16)
                    << dA << " " << dB << " " << dX;
}

TEST(BetaInvCdf, DistributionFunctionAtTheAnswerAgreesTo1e9)
{
    qeltest::WorstError worst("mBetaCdf(mBetaInvCdf(p)) against p");
    for (double dA : {0.01, 0.3, 1.0, 2.5, 40.0, 2000.0})
    {
        for (double dB : {0.05, 1.0, 7.0, 500.0})
        {
            for (double dProb : {1e-12, 1e-6, 0.01, 0.3, 0.5, 0.7, 0.99, 1 - 1e-8})
            {
                const double dX = mBetaInvCdf(dProb, dA, dB);
                ASSERT_FALSE(mIsNumericMissing(dX)) << dA << " " << dB << " " << dProb;
                if (dX == 0.0)
                {
                    // The quantile lies below the smallest argument the
                    // kernels take: the distribution function there already
                    // exceeds p.
                    EXPECT_GE(mBetaCdf(1e-287, dA, dB, false), dProb)
                        << dA << " " << dB << " " << dProb;
                    continue;
                }
                const double dBack = mBetaCdf(dX, dA, dB, false);
                std::ostringstream row;
                row << "a " << dA << " b " << dB << " p " << dProb;
                worst.mUpdate(qeltest::mRelativeError(dBack, dProb), 0.0, row.str());
                // A quantile whose neighbours straddle p is as good as the
                // doubles allow, however steep the distribution function.
                const double dStep = mBetaCdf(std::nextafter(dX, 1.0), dA, dB, false) -
                                     mBetaCdf(std::nextafter(dX, 0.0), dA, dB, false);
                EXPECT_LE(std::fabs(dBack - dProb), std::max(dProb * 1e-9, dStep)) << row.str();
            }
        }
    }
    std::cout << worst.mReport() << std::endl;
}

TEST(BetaInvCdf, QuantileOfTheDistributionFunctionReturnsThePoint)
{
    for (double dA : {0.5, 3.0, 20.0})
        for (double dB : {0.8, 5.0})
            for (double dX : {0.05, 0.3, 0.6, 0.95})
            {
                const double dProb = mBetaCdf(dX, dA, dB, false);
                if (dProb < 1e-10 || dProb > 1.0 - 1e-10)
                    continue;
                const double dSlack = 2e-9 * std::min(dProb, 1.0 - dProb) / mBetaPdf(dX, dA, dB);
                EXPECT_NEAR(mBetaInvCdf(dProb, dA, dB), dX, dSlack + 1e-12 * dX)
                    << dA << " " << dB << " " << dX;
            }
}

TEST(BetaFlat, AgreesWithTheReferenceTables)
{
    const auto vCdf = qeltest::mFlatRows("flat_kernelbacked_cdf.txt", qeltest::eFlatBeta);
    const auto vPdf = qeltest::mFlatRows("flat_kernelbacked_pdf.txt", qeltest::eFlatBeta);
    const auto vQua = qeltest::mFlatRows("flat_kernelbacked_quantile.txt", qeltest::eFlatBeta);
    ASSERT_GE(vCdf.size(), 8u);
    ASSERT_GE(vPdf.size(), 4u);
    ASSERT_GE(vQua.size(), 6u);
    qeltest::WorstError cdf("mBetaCdf, both tails");
    for (const qeltest::FlatRow& r : vCdf)
    {
        for (int iTail = 0; iTail < 2; ++iTail)
        {
            const double dGot = mBetaCdf(r.dPoint, r.dP1, r.dP2, iTail == 1);
            const double dErr = qeltest::mRelativeError(dGot, r.vdRef[iTail]);
            cdf.mUpdate(dErr, qeltest::mUlpDistance(dGot, r.vdRef[iTail]), r.sText);
            EXPECT_LE(dErr, 1e-9) << r.sText << " tail " << iTail;
        }
    }
    qeltest::WorstError pdf("mBetaPdf");
    for (const qeltest::FlatRow& r : vPdf)
    {
        const double dGot = mBetaPdf(r.dPoint, r.dP1, r.dP2);
        const double dErr = qeltest::mRelativeError(dGot, r.vdRef[0]);
        pdf.mUpdate(dErr, qeltest::mUlpDistance(dGot, r.vdRef[0]), r.sText);
        EXPECT_LE(dErr, 1e-13) << r.sText;
    }
    qeltest::WorstError quantile("mBetaInvCdf");
    for (const qeltest::FlatRow& r : vQua)
    {
        const double dGot = mBetaInvCdf(r.dPoint, r.dP1, r.dP2);
        const double dErr = qeltest::mRelativeError(dGot, r.vdRef[0]);
        quantile.mUpdate(dErr, qeltest::mUlpDistance(dGot, r.vdRef[0]), r.sText);
        EXPECT_LE(dErr, 1e-9) << r.sText;
    }
    std::cout << cdf.mReport() << "\n" << pdf.mReport() << "\n" << quantile.mReport() << std::endl;
}
