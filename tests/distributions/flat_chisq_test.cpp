// The chi-square flat functions, central and noncentral: density,
// distribution function and quantile, their assertion texts and ends, the
// polishing of the kernel's quantile and the numeric inversion of the
// noncentral one; accuracy against the mpmath tables.
#include "qel/kernelbacked.h"
#include "qelmath/distributions/flat_inversion.h"
#include "qelmath/distributions/flat_tails.h"
#include "qelmath/kernels/chi2.h"
#include "qelmath/kernels/kernel_protocol.h"

#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "flat_kernelbacked_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <sstream>

TEST(ChiSqInvCdf, ProbabilityOneIsMissingAndZeroIsZero)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mChiSqInvCdf(1.0, 3.0, 0.0)));
    EXPECT_EQ(mChiSqInvCdf(0.0, 3.0, 0.0), 0.0);
    EXPECT_EQ(mChiSqInvCdf(0.0, 3.0, 4.0), 0.0);
    EXPECT_TRUE(mIsNumericMissing(mChiSqInvCdf(1.0, 3.0, 4.0)));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(ChiSqInvCdf, AssertsInOrder)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mChiSqInvCdf(1.5, -1.0, -2.0)));
    ASSERT_EQ(capture.mGetCount(), 3);
    EXPECT_EQ(capture.mGetTexts()[0], "dDF > 0.0");
    EXPECT_EQ(capture.mGetTexts()[1], "dNoncentrality >= 0.0");
    EXPECT_EQ(capture.mGetTexts()[2], "dProb <= 1.0");
    capture.mClear();
    EXPECT_TRUE(mIsNumericMissing(mChiSqInvCdf(-0.5, 2.0, 0.0)));
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dProb >= 0.0");
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(ChiSqInvCdf, NinetyPercentPointAgreesWithTheDistributionFunction)
{
    const double dX = mChiSqInvCdf(0.9, 3.0, 0.0);
    EXPECT_LE(std::fabs(mChiSqCdf(dX, 3.0, 0.0, false) - 0.9), 0.9 * 1e-9);
    EXPECT_NEAR(dX, 6.2513886311703235, 1e-9 * 6.25);
}

TEST(ChiSqInvCdf, PolishingRepairsAnUnrefinedKernelQuantile)
{
    // For small degrees of freedom the kernel's upper quantile can be its
    // unrefined start, which misses the probability by far more than 1e-9.
    double dRaw = 0.0;
    chi2_upper_quant(0.25, 0.02, &dRaw);
    ASSERT_FALSE(kernel_take_failure());
    EXPECT_GT(std::fabs(mChiSqCdf(dRaw, 0.02, 0.0, false) - 0.75), 0.75 * 1e-9);
    const double dX = mChiSqInvCdf(0.75, 0.02, 0.0);
    EXPECT_NE(dX, dRaw);
    EXPECT_LE(std::fabs(mChiSqCdf(dX, 0.02, 0.0, false) - 0.75), 0.75 * 1e-9);
}

TEST(ChiSqInvCdf, DistributionFunctionAtTheAnswerAgreesTo1e9)
{
    qeltest::WorstError worst("mChiSqCdf(mChiSqInvCdf(p)) against p");
    for (double dDF : {0.02, 0.3, 1.0, 2.0, 3.0, 7.0, 19.0, 21.0, 120.0, 2500.0, 1e6})
    {
        for (double dProb : {1e-12, 1e-7, 1e-3, 0.05, 0.3, 0.5, 0.6, 0.9, 0.999, 1 - 1e-9})
        {
            const double dX = mChiSqInvCdf(dProb, dDF, 0.0);
            ASSERT_FALSE(mIsNumericMissing(dX)) << dDF << " " << dProb;
            if (dX == 0.0)
            {
                // The quantile lies below the smallest argument the kernels
                // take: the distribution function there already exceeds p.
                EXPECT_GE(mChiSqCdf(1e-287, dDF, 0.0, false), dProb) << dDF << " " << dProb;
                continue;
            }
            const double dBack = mChiSqCdf(dX, dDF, 0.0, false);
            std::ostringstream row;
            row << "df " << dDF << " p " << dProb;
            worst.mUpdate(qeltest::mRelativeError(dBack, dProb), 0.0, row.str());
            EXPECT_LE(std::fabs(dBack - dProb), dProb * 1e-9) << row.str();
        }
    }
    std::cout << worst.mReport() << std::endl;
}

TEST(ChiSqInvCdf, NoncentralQuantileThroughTheRootFinder)
{
    qeltest::WorstError worst("noncentral mChiSqCdf(mChiSqInvCdf(p)) against p");
    for (double dDF : {1.0, 4.0, 30.0})
    {
        for (double dNc : {0.5, 5.0, 80.0})
        {
            for (double dProb : {1e-6, 0.05, 0.5, 0.95, 1 - 1e-6})
            {
                const double dX = mChiSqInvCdf(dProb, dDF, dNc);
                ASSERT_FALSE(mIsNumericMissing(dX));
                const double dBack = mChiSqCdf(dX, dDF, dNc, false);
                std::ostringstream row;
                row << "df " << dDF << " nc " << dNc << " p " << dProb;
                worst.mUpdate(std::fabs(dBack - dProb), 0.0, row.str());
                // The root finder stops when the bracket is within the
                // relative tolerance mGetEps() of the root: the distribution
                // function there is within a few rounding errors of p.
                const double dSlack = mChiSqCdf(dX * (1 + 4e-15), dDF, dNc, false) -
                                      mChiSqCdf(dX * (1 - 4e-15), dDF, dNc, false);
                EXPECT_LE(std::fabs(dBack - dProb), dSlack + 4e-16) << row.str();
            }
        }
    }
    std::cout << worst.mReport() << std::endl;
}

TEST(ChiSqInvCdf, QuantileOfTheDistributionFunctionReturnsThePoint)
{
    for (double dDF : {1.0, 5.0, 40.0})
    {
        for (double dNc : {0.0, 3.0})
        {
            for (double dX : {0.5, 2.0, 9.0, 45.0})
            {
                const double dProb = mChiSqCdf(dX, dDF, dNc, false);
                if (dProb < 1e-10 || dProb > 1.0 - 1e-10)
                    continue;
                // Central: 1e-9 of p in the distribution function; noncentral:
                // the root finder's relative width, plus the kernel's own error.
                const double dDensity = (mChiSqCdf(dX * (1 + 1e-6), dDF, dNc, false) -
                                         mChiSqCdf(dX * (1 - 1e-6), dDF, dNc, false)) /
                                        (2e-6 * dX);
                const double dSlack = 2e-9 * dProb / dDensity;
                EXPECT_NEAR(mChiSqInvCdf(dProb, dDF, dNc), dX, dSlack + 1e-12 * dX)
                    << dDF << " " << dNc << " " << dX;
            }
        }
    }
}

TEST(ChiSqCdf, MissingPointGivesMissingInBothTails)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mChiSqCdf(mGetMissingValueCode(), 3.0, 0.0, false)));
    EXPECT_TRUE(mIsNumericMissing(mChiSqCdf(mGetMissingValueCode(), -3.0, 1.0, true)));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(ChiSqCdf, AtOrBelowZeroTheKernelIsNotEntered)
{
    kernel_enter("none");
    double dLower = -1.0;
    double dUpper = -1.0;
    EXPECT_TRUE(mChiSqTails(0.0, 3.0, 2.0, &dLower, &dUpper));
    EXPECT_EQ(dLower, 0.0);
    EXPECT_EQ(dUpper, 1.0);
    EXPECT_EQ(mChiSqCdf(-4.0, 3.0, 0.0, true), 1.0);
    EXPECT_STREQ(kernel_routine_name, "none");
    kernel_take_failure();
}

TEST(ChiSqTails, KernelFailureGivesMissingInBothSlotsAndClearsTheCode)
{
    double dLower = 0.0;
    double dUpper = 0.0;
    // Degrees of freedom beyond the kernel's reach.
    EXPECT_FALSE(mChiSqTails(3.0, 1e9, 0.0, &dLower, &dUpper));
    EXPECT_TRUE(mIsNumericMissing(dLower));
    EXPECT_TRUE(mIsNumericMissing(dUpper));
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(ChiSqCdf, TailsAddToOne)
{
    for (double dDF : {0.5, 2.0, 9.0, 300.0})
    {
        for (double dNc : {0.0, 1.0, 50.0})
        {
            for (double dX : {0.01, 1.0, 8.0, 60.0, 350.0})
            {
                const double dSum = mChiSqCdf(dX, dDF, dNc, false) + mChiSqCdf(dX, dDF, dNc, true);
                EXPECT_NEAR(dSum, 1.0, 1e-15) << dDF << " " << dNc << " " << dX;
            }
        }
    }
}

TEST(ChiSqPdf, ZeroAtAndBelowZeroAndExactForTwoDegrees)
{
    CmAssertCapture capture;
    EXPECT_EQ(mChiSqPdf(0.0, 3.0), 0.0);
    EXPECT_EQ(mChiSqPdf(-2.0, 3.0), 0.0);
    // Two degrees of freedom: exp(-x / 2) / 2.
    EXPECT_NEAR(mChiSqPdf(3.0, 2.0), std::exp(-1.5) / 2.0, 1e-16);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(ChiSqNumericInverse, BracketsByDoublingFromAShortStart)
{
    const double dX = mChiSqNumericInverse(1e-3, 0.99, 6.0, 0.0);
    EXPECT_NEAR(mChiSqCdf(dX, 6.0, 0.0, false), 0.99, 1e-15);
    const double dY = mChiSqNumericInverse(0.5, 0.4, 3.0, 7.0);
    EXPECT_NEAR(mChiSqCdf(dY, 3.0, 7.0, false), 0.4, 1e-15);
}

TEST(ChiSqCdfObject, IsTheLowerTailLessTheTarget)
{
    CmChiSqCdf oFunction(4.0, 1.5, 0.3);
    EXPECT_EQ(oFunction(2.0), mChiSqCdf(2.0, 4.0, 1.5, false) - 0.3);
    EXPECT_EQ(oFunction(0.0), -0.3);
}

TEST(ChiSqFlat, AgreesWithTheReferenceTables)
{
    const auto vCdf = qeltest::mFlatRows("flat_kernelbacked_cdf.txt", qeltest::eFlatChiSq);
    const auto vPdf = qeltest::mFlatRows("flat_kernelbacked_pdf.txt", qeltest::eFlatChiSq);
    const auto vQua = qeltest::mFlatRows("flat_kernelbacked_quantile.txt", qeltest::eFlatChiSq);
    ASSERT_GE(vCdf.size(), 10u);
    ASSERT_GE(vPdf.size(), 4u);
    ASSERT_GE(vQua.size(), 8u);
    qeltest::WorstError central("mChiSqCdf central, both tails");
    qeltest::WorstError noncentral("mChiSqCdf noncentral, both tails");
    for (const qeltest::FlatRow& r : vCdf)
    {
        for (int iTail = 0; iTail < 2; ++iTail)
        {
            const double dGot = mChiSqCdf(r.dPoint, r.dP1, r.dP2, iTail == 1);
            const double dErr = qeltest::mRelativeError(dGot, r.vdRef[iTail]);
            (r.dP2 == 0.0 ? central : noncentral)
                .mUpdate(dErr, qeltest::mUlpDistance(dGot, r.vdRef[iTail]), r.sText);
            EXPECT_LE(dErr, 1e-9) << r.sText << " tail " << iTail;
        }
    }
    qeltest::WorstError pdf("mChiSqPdf");
    for (const qeltest::FlatRow& r : vPdf)
    {
        const double dGot = mChiSqPdf(r.dPoint, r.dP1);
        const double dErr = qeltest::mRelativeError(dGot, r.vdRef[0]);
        pdf.mUpdate(dErr, qeltest::mUlpDistance(dGot, r.vdRef[0]), r.sText);
        EXPECT_LE(dErr, 1e-13) << r.sText;
    }
    qeltest::WorstError quantile("mChiSqInvCdf");
    for (const qeltest::FlatRow& r : vQua)
    {
        const double dGot = mChiSqInvCdf(r.dPoint, r.dP1, r.dP2);
        const double dErr = qeltest::mRelativeError(dGot, r.vdRef[0]);
        quantile.mUpdate(dErr, qeltest::mUlpDistance(dGot, r.vdRef[0]), r.sText);
        EXPECT_LE(dErr, 1e-9) << r.sText;
    }
    std::cout << central.mReport() << "\n"
              << noncentral.mReport() << "\n"
              << pdf.mReport() << "\n"
              << quantile.mReport() << std::endl;
}
