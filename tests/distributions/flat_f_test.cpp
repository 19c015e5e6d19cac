// The F flat functions, central and noncentral: density, distribution
// function and quantile, their assertion texts and ends, the tiny
// noncentrality taken as 0 and the noncentral quantile through the root
// finder; accuracy against the mpmath tables.
#include "qel/kernelbacked.h"
#include "qelmath/distributions/flat_inversion.h"
#include "qelmath/distributions/flat_tails.h"
#include "qelmath/kernels/kernel_protocol.h"

#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "flat_kernelbacked_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <sstream>

TEST(FCdf, TinyNoncentralityIsTheCentralDistribution)
{
    CmAssertCapture capture;
    EXPECT_EQ(mFCdf(1.0, 2.0, 3.0, 1e-310, false), mFCdf(1.0, 2.0, 3.0, 0.0, false));
    EXPECT_EQ(mFCdf(1.0, 2.0, 3.0, 1e-310, true), mFCdf(1.0, 2.0, 3.0, 0.0, true));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(FCdf, MissingPointGivesMissingWithoutAssertion)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mFCdf(mGetMissingValueCode(), -2.0, 3.0, 0.0, false)));
    EXPECT_TRUE(mIsNumericMissing(mFCdf(mGetMissingValueCode(), 2.0, 3.0, 1.0, true)));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(FCdf, AssertsTheParametersAndAnswersAtOrBelowZero)
{
    CmAssertCapture capture;
    EXPECT_EQ(mFCdf(0.0, -2.0, 0.0, -1.0, false), 0.0);
    EXPECT_EQ(mFCdf(-1.0, 2.0, 3.0, 0.0, true), 1.0);
    ASSERT_EQ(capture.mGetCount(), 3);
    EXPECT_EQ(capture.mGetTexts()[0], "dDFNum > 0.0");
    EXPECT_EQ(capture.mGetTexts()[1], "dDFDenom > 0.0");
    EXPECT_EQ(capture.mGetTexts()[2], "dNoncentrality >= 0.0");
}

TEST(FCdf, TailsAddToOne)
{
    for (double dN : {1.0, 4.0, 30.0})
        for (double dD : {2.0, 12.0, 500.0})
            for (double dNc : {0.0, 3.0})
                for (double dX : {0.05, 0.8, 2.5, 20.0})
                    EXPECT_NEAR(mFCdf(dX, dN, dD, dNc, false) + mFCdf(dX, dN, dD, dNc, true), 1.0,
                                1e-15)
                        << dN << " " << dD << " " << dNc << " " << dX;
}

TEST(FInvCdf, EndsAndAssertions)
{
    CmAssertCapture capture;
    EXPECT_EQ(mFInvCdf(0.0, 2.0, 3.0, 0.0), 0.0);
    EXPECT_TRUE(mIsNumericMissing(mFInvCdf(1.0, 2.0, 3.0, 0.0)));
    EXPECT_TRUE(mIsNumericMissing(mFInvCdf(1.0, 2.0, 3.0, 2.0)));
    EXPECT_EQ(capture.mGetCount(), 0);
    EXPECT_TRUE(mIsNumericMissing(mFInvCdf(mGetMissingValueCode(), 2.0, 3.0, 0.0)));
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dProb <= 1.0");
    capture.mClear();
    mFInvCdf(-0.5, 0.0, -1.0, -1.0);
    ASSERT_GE(capture.mGetCount(), 4);
    EXPECT_EQ(capture.mGetTexts()[0], "dDFNum > 0.0");
    EXPECT_EQ(capture.mGetTexts()[1], "dDFDenom > 0.0");
    EXPECT_EQ(capture.mGetTexts()[2], "dNoncentrality >= 0.0");
    EXPECT_EQ(capture.mGetTexts()[3], "dProb >= 0.0");
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(FInvCdf, CentralQuantileMatchesTheDistributionFunction)
{
    qeltest::WorstError worst("mFCdf(mFInvCdf(p)) against p, central");
    for (double dN : {0.5, 1.0, 3.0, 12.0, 200.0})
        for (double dD : {1.0, 4.0, 30.0, 1e4})
            for (double dProb : {1e-10, 1e-4, 0.05, 0.5, 0.7, 0.99, 1 - 1e-8})
            {
                const double dX = mFInvCdf(dProb, dN, dD, 0.0);
                ASSERT_FALSE(mIsNumericMissing(dX)) << dN << " " << dD << " " << dProb;
                const double dBack = mFCdf(dX, dN, dD, 0.0, false);
                const double dTail = std::min(dProb, 1.0 - dProb);
                std::ostringstream row;
                row << "n " << dN << " d " << dD << " p " << dProb;
                worst.mUpdate(std::fabs(dBack - dProb) / dTail, 0.0, row.str());
                // No refinement: the kernel's quantile is held to about 1e-9 of
                // the smaller tail.
                EXPECT_LE(std::fabs(dBack - dProb), 2e-9 * dTail + 2e-16) << row.str();
            }
    std::cout << worst.mReport() << std::endl;
}

TEST(FInvCdf, NoncentralQuantileThroughTheRootFinder)
{
    qeltest::WorstError worst("mFCdf(mFInvCdf(p)) against p, noncentral (absolute)");
    for (double dN : {1.0, 5.0})
        for (double dD : {3.0, 40.0})
            for (double dNc : {0.5, 12.0})
                for (double dProb : {1e-5, 0.1, 0.5, 0.9, 1 - 1e-5})
                {
                    const double dX = mFInvCdf(dProb, dN, dD, dNc);
                    ASSERT_FALSE(mIsNumericMissing(dX));
                    const double dBack = mFCdf(dX, dN, dD, dNc, false);
                    std::ostringstream row;
                    row << "n " << dN << " d " << dD << " nc " << dNc << " p " << dProb;
                    worst.mUpdate(std::fabs(dBack - dProb), 0.0, row.str());
                    // Default tolerances: the bracket is within mGetEps() of the
                    // root, relative.
                    const double dSlack = mFCdf(dX * (1 + 4e-15), dN, dD, dNc, false) -
                                          mFCdf(dX * (1 - 4e-15), dN, dD, dNc, false);
                    EXPECT_LE(std::fabs(dBack - dProb), dSlack + 4e-16) << row.str();
                }
    std::cout << worst.mReport() << std::endl;
}

TEST(FInvCdf, QuantileOfTheDistributionFunctionReturnsThePoint)
{
    for (double dNc : {0.0, 2.0})
        for (double dX : {0.3, 1.0, 4.0})
        {
            const double dProb = mFCdf(dX, 4.0, 9.0, dNc, false);
            const double dDensity = (mFCdf(dX * (1 + 1e-6), 4.0, 9.0, dNc, false) -
                                     mFCdf(dX * (1 - 1e-6), 4.0, 9.0, dNc, false)) /
                                    (2e-6 * dX);
            const double dSlack = 2e-9 * std::min(dProb, 1.0 - dProb) / dDensity;
            EXPECT_NEAR(mFInvCdf(dProb, 4.0, 9.0, dNc), dX, dSlack + 1e-12 * dX)
                << dNc << " " << dX;
        }
}

TEST(FPdf, ZeroAtAndBelowZeroAndClosedCase)
{
    CmAssertCapture capture;
    EXPECT_EQ(mFPdf(0.0, 2.0, 3.0), 0.0);
    EXPECT_EQ(mFPdf(-1.0, 2.0, 3.0), 0.0);
    // F(2, 2): 1 / (1 + x)^2.
    EXPECT_NEAR(mFPdf(3.0, 2.0, 2.0), 1.0 / 16.0, 1e-16);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(FCdfObject, IsTheLowerTailLessTheTarget)
{
    CmFCdf oFunction(3.0, 7.0, 1.5, 0.25);
    EXPECT_EQ(oFunction(2.0), mFCdf(2.0, 3.0, 7.0, 1.5, false) - 0.25);
    EXPECT_EQ(oFunction(0.0), -0.25);
}

TEST(FFlat, AgreesWithTheReferenceTables)
{
    const auto vCdf = qeltest::mFlatRows("flat_kernelbacked_cdf.txt", qeltest::eFlatF);
    const auto vPdf = qeltest::mFlatRows("flat_kernelbacked_pdf.txt", qeltest::eFlatF);
    const auto vQua = qeltest::mFlatRows("flat_kernelbacked_quantile.txt", qeltest::eFlatF);
    ASSERT_GE(vCdf.size(), 8u);
    ASSERT_GE(vPdf.size(), 3u);
    ASSERT_GE(vQua.size(), 4u);
    qeltest::WorstError cdf("mFCdf, both tails");
    for (const qeltest::FlatRow& r : vCdf)
    {
        for (int iTail = 0; iTail < 2; ++iTail)
        {
            const double dGot = mFCdf(r.dPoint, r.dP1, r.dP2, r.dP3, iTail == 1);
            const double dErr = qeltest::mRelativeError(dGot, r.vdRef[iTail]);
            cdf.mUpdate(dErr, qeltest::mUlpDistance(dGot, r.vdRef[iTail]), r.sText);
            EXPECT_LE(dErr, 1e-9) << r.sText << " tail " << iTail;
        }
    }
    qeltest::WorstError pdf("mFPdf");
    for (const qeltest::FlatRow& r : vPdf)
    {
        const double dGot = mFPdf(r.dPoint, r.dP1, r.dP2);
        const double dErr = qeltest::mRelativeError(dGot, r.vdRef[0]);
        pdf.mUpdate(dErr, qeltest::mUlpDistance(dGot, r.vdRef[0]), r.sText);
        EXPECT_LE(dErr, 1e-13) << r.sText;
    }
    qeltest::WorstError quantile("mFInvCdf");
    for (const qeltest::FlatRow& r : vQua)
    {
        const double dGot = mFInvCdf(r.dPoint, r.dP1, r.dP2, r.dP3);
        const double dErr = qeltest::mRelativeError(dGot, r.vdRef[0]);
        quantile.mUpdate(dErr, qeltest::mUlpDistance(dGot, r.vdRef[0]), r.sText);
        EXPECT_LE(dErr, 1e-8) << r.sText;
    }
    std::cout << cdf.mReport() << "\n" << pdf.mReport() << "\n" << quantile.mReport() << std::endl;
}
