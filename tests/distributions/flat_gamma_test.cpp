// The gamma flat functions: density, distribution function and quantile with
// shape, scale and threshold; their assertion texts, ends, polishing and
// numeric inversion; accuracy against the mpmath tables.
#include "qel/kernelbacked.h"
#include "qelmath/distributions/flat_inversion.h"
#include "qelmath/distributions/flat_tails.h"
#include "qelmath/kernels/gamma.h"
#include "qelmath/kernels/kernel_protocol.h"

#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"
#include "flat_kernelbacked_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <iostream>
#include <sstream>

namespace
{
const double kMissing = mGetMissingValueCode();
}

TEST(GammaInvCdf, ProbabilityZeroIsZeroNotTheThreshold)
{
    CmAssertCapture capture;
    EXPECT_EQ(mGammaInvCdf(0.0, 2.0, 3.0, 5.0), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(GammaInvCdf, ProbabilityOneGoesToTheKernelAndIsMissing)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mGammaInvCdf(1.0, 2.0, 3.0, 5.0)));
    EXPECT_EQ(capture.mGetCount(), 0);
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(GammaInvCdf, ProbabilityOutsideTheUnitIntervalIsReportedAndMissing)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mGammaInvCdf(1.5, 2.0, 1.0, 0.0)));
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dProb <= 1.0");
    capture.mClear();
    EXPECT_TRUE(mIsNumericMissing(mGammaInvCdf(-0.25, 2.0, 1.0, 0.0)));
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dProb >= 0.0");
}

TEST(GammaInvCdf, AppliesScaleAndThreshold)
{
    const double dStandard = mGammaInvCdf(0.3, 2.5, 1.0, 0.0);
    EXPECT_NEAR(mGammaInvCdf(0.3, 2.5, 4.0, 7.0), dStandard * 4.0 + 7.0, 1e-14 * 17.0);
    EXPECT_NEAR(mGammaCdf(mGammaInvCdf(0.3, 2.5, 4.0, 7.0), 2.5, 4.0, 7.0, false), 0.3, 3e-10);
}

TEST(GammaCdf, AtTheThresholdTheKernelIsEnteredWithZero)
{
    CmAssertCapture capture;
    kernel_enter("none");
    EXPECT_EQ(mGammaCdf(5.0, 2.0, 3.0, 5.0, false), 0.0);
    EXPECT_STREQ(kernel_routine_name, "gamma_df");
    EXPECT_EQ(kernel_method_code, 1);
    kernel_enter("none");
    EXPECT_EQ(mGammaCdf(5.0, 2.0, 3.0, 5.0, true), 1.0);
    EXPECT_STREQ(kernel_routine_name, "gamma_df");
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(GammaCdf, BelowTheThresholdTheKernelIsNotEntered)
{
    kernel_enter("none");
    EXPECT_EQ(mGammaCdf(4.0, 2.0, 3.0, 5.0, false), 0.0);
    EXPECT_EQ(mGammaCdf(4.0, 2.0, 3.0, 5.0, true), 1.0);
    EXPECT_STREQ(kernel_routine_name, "none");
    kernel_take_failure();
}

TEST(GammaCdf, AssertsShapeAndScaleInItsOwnWords)
{
    CmAssertCapture capture;
    mGammaCdf(1.0, -1.0, 1.0, 0.0, false);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dShape > 0");
    capture.mClear();
    mGammaCdf(1.0, 2.0, -1.0, 0.0, false);
    ASSERT_GE(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dScale > 0");
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(GammaPdf, AssertsShapeAndScaleWithDecimalTexts)
{
    CmAssertCapture capture;
    mGammaPdf(1.0, 0.0, 1.0, 0.0);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dShape > 0.0");
    capture.mClear();
    mGammaPdf(1.0, 2.0, 0.0, 0.0);
    ASSERT_GE(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dScale > 0.0");
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(GammaPdf, ZeroAtAndBelowTheThreshold)
{
    EXPECT_EQ(mGammaPdf(5.0, 0.5, 2.0, 5.0), 0.0);
    EXPECT_EQ(mGammaPdf(-1.0, 3.0, 2.0, 0.0), 0.0);
}

TEST(GammaPdf, ExponentialCaseIsExact)
{
    // Shape 1 is the exponential density exp(-z) / scale.
    EXPECT_NEAR(mGammaPdf(3.0, 1.0, 2.0, 1.0), std::exp(-1.0) / 2.0, 1e-15);
}

TEST(GammaCdf, TailsAddToOne)
{
    const double vdShape[] = {0.05, 0.5, 1.0, 2.5, 10.0, 150.0, 4000.0};
    for (double dShape : vdShape)
    {
        for (double dX : {1e-3, 0.1, 0.9, 1.0, 2.0, 7.5, 30.0, 140.0, 3900.0, 4100.0})
        {
            const double dLower = mGammaCdf(dX, dShape, 1.0, 0.0, false);
            const double dUpper = mGammaCdf(dX, dShape, 1.0, 0.0, true);
            EXPECT_NEAR(dLower + dUpper, 1.0, 4e-16) << dShape << " " << dX;
        }
    }
}

TEST(GammaInvCdf, DistributionFunctionAtTheAnswerAgreesTo1e9)
{
    qeltest::WorstError worst("mGammaCdf(mGammaInvCdf(p)) against p");
    const double vdShape[] = {0.01, 0.1, 0.5, 1.0, 1.5, 3.0, 9.5, 10.5, 60.0, 1e3, 1e5};
    const double vdProb[] = {1e-12,     1e-8, 1e-4, 0.01,     0.2,      0.5,
                             0.5000001, 0.8,  0.99, 1 - 1e-6, 1 - 1e-10};
    for (double dShape : vdShape)
    {
        for (double dProb : vdProb)
        {
            const double dX = mGammaInvCdf(dProb, dShape, 1.0, 0.0);
            ASSERT_FALSE(mIsNumericMissing(dX)) << dShape << " " << dProb;
            if (dX == 0.0)
            {
                // The quantile lies below the smallest argument the kernels
                // take: the distribution function there already exceeds p.
                EXPECT_GE(mGammaCdf(1e-287, dShape, 1.0, 0.0, false), dProb)
                    << dShape << " " << dProb;
                continue;
            }
            const double dBack = mGammaCdf(dX, dShape, 1.0, 0.0, false);
            std::ostringstream row;
            row << "shape " << dShape << " p " << dProb;
            worst.mUpdate(qeltest::mRelativeError(dBack, dProb), 0.0, row.str());
            EXPECT_LE(std::fabs(dBack - dProb), dProb * 1e-9) << row.str();
        }
    }
    std::cout << worst.mReport() << std::endl;
}

TEST(GammaInvCdf, PolishingRepairsAnUnrefinedKernelQuantile)
{
    // For a small shape the kernel's upper quantile can be its unrefined
    // start, which misses the probability by far more than 1e-9.
    double dRaw = 0.0;
    gamma_upper_quant(0.25, 0.01, &dRaw);
    ASSERT_FALSE(kernel_take_failure());
    const double dRawBack = mGammaCdf(dRaw, 0.01, 1.0, 0.0, false);
    EXPECT_GT(std::fabs(dRawBack - 0.75), 0.75 * 1e-9);
    const double dX = mGammaInvCdf(0.75, 0.01, 1.0, 0.0);
    EXPECT_NE(dX, dRaw);
    EXPECT_LE(std::fabs(mGammaCdf(dX, 0.01, 1.0, 0.0, false) - 0.75), 0.75 * 1e-9);
}

TEST(GammaInvCdf, QuantileOfTheDistributionFunctionReturnsThePoint)
{
    for (double dShape : {0.3, 2.0, 25.0})
    {
        for (double dX : {0.05, 0.7, 3.0, 20.0, 40.0})
        {
            const double dProb = mGammaCdf(dX, dShape, 2.0, 1.0, false);
            if (dProb < 1e-12 || dProb > 1.0 - 1e-12)
                continue;
            // The quantile is held to 1e-9 of p in the distribution function,
            // which moves x by about that much over the density.
            const double dSlack = 2e-9 * dProb / mGammaPdf(dX, dShape, 2.0, 1.0);
            EXPECT_NEAR(mGammaInvCdf(dProb, dShape, 2.0, 1.0), dX, dSlack + 1e-12 * dX)
                << dShape << " " << dX;
        }
    }
}

TEST(GammaNumericInverse, FindsTheRootFromAPoorStart)
{
    const double dX = mGammaNumericInverse(0.01, 0.9, 4.0);
    EXPECT_NEAR(mGammaCdf(dX, 4.0, 1.0, 0.0, false), 0.9, 1e-15);
    // A start beyond the root ends the doubling at once.
    const double dY = mGammaNumericInverse(1e+30, 0.25, 0.5);
    EXPECT_NEAR(mGammaCdf(dY, 0.5, 1.0, 0.0, false), 0.25, 1e-15);
}

TEST(GammaCdfObject, IsTheStandardDistributionFunctionLessTheTarget)
{
    CmGammaCdf oFunction(3.0, 0.4);
    EXPECT_EQ(oFunction(2.0), mGammaCdf(2.0, 3.0, 1.0, 0.0, false) - 0.4);
    EXPECT_EQ(oFunction(-1.0), -0.4);
}

TEST(GammaFlat, AgreesWithTheReferenceTables)
{
    qeltest::WorstError cdf("mGammaCdf, both tails");
    const auto vCdf = qeltest::mFlatRows("flat_kernelbacked_cdf.txt", qeltest::eFlatGamma);
    const auto vPdf = qeltest::mFlatRows("flat_kernelbacked_pdf.txt", qeltest::eFlatGamma);
    const auto vQua = qeltest::mFlatRows("flat_kernelbacked_quantile.txt", qeltest::eFlatGamma);
    ASSERT_GE(vCdf.size(), 8u);
    ASSERT_GE(vPdf.size(), 4u);
    ASSERT_GE(vQua.size(), 6u);
    for (const qeltest::FlatRow& r : vCdf)
    {
        for (int iTail = 0; iTail < 2; ++iTail)
        {
            const double dGot = mGammaCdf(r.dPoint, r.dP1, r.dP2, r.dP3, iTail == 1);
            const double dErr = qeltest::mRelativeError(dGot, r.vdRef[iTail]);
            cdf.mUpdate(dErr, qeltest::mUlpDistance(dGot, r.vdRef[iTail]), r.sText);
            EXPECT_LE(dErr, 1e-9) << r.sText << " tail " << iTail;
        }
    }
    qeltest::WorstError pdf("mGammaPdf");
    for (const qeltest::FlatRow& r : vPdf)
    {
        const double dGot = mGammaPdf(r.dPoint, r.dP1, r.dP2, r.dP3);
        const double dErr = qeltest::mRelativeError(dGot, r.vdRef[0]);
        pdf.mUpdate(dErr, qeltest::mUlpDistance(dGot, r.vdRef[0]), r.sText);
        EXPECT_LE(dErr, 1e-13) << r.sText;
    }
    qeltest::WorstError quantile("mGammaInvCdf");
    for (const qeltest::FlatRow& r : vQua)
    {
        const double dGot = mGammaInvCdf(r.dPoint, r.dP1, r.dP2, r.dP3);
        const double dErr = qeltest::mRelativeError(dGot, r.vdRef[0]);
        quantile.mUpdate(dErr, qeltest::mUlpDistance(dGot, r.vdRef[0]), r.sText);
        EXPECT_LE(dErr, 1e-9) << r.sText;
    }
    std::cout << cdf.mReport() << "\n" << pdf.mReport() << "\n" << quantile.mReport() << std::endl;
}
