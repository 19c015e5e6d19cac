// The Student t flat functions, central and noncentral: density (closed form
// and by the difference of distribution functions), distribution function
// with the clamp for a noncentrality beyond the kernel's reach, quantile
// central through the kernel and noncentral through the root finder;
// accuracy against the mpmath tables.
#include "qel/kernelbacked.h"
#include "qelmath/distributions/flat_inversion.h"
#include "qelmath/distributions/flat_tails.h"
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/t.h"

#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"
#include "flat_kernelbacked_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <sstream>

TEST(TCdf, MissingPointIsMissingWithNoAssertionOnTheDegrees)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mTCdf(mGetMissingValueCode(), -3.0, 0.0, false)));
    EXPECT_TRUE(mIsNumericMissing(mTCdf(mGetMissingValueCode(), 3.0, 1.0, true)));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(TCdf, AssertsTheDegrees)
{
    CmAssertCapture capture;
    mTCdf(1.0, 0.0, 0.0, false);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dDF > 0.0");
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(TCdf, NoncentralityBeyondTheKernelIsClampedWhenTheTailIsAtItsLimit)
{
    double dLower = -1.0;
    double dUpper = -1.0;
    // The kernel alone refuses this noncentrality.
    t_ncdf(0.5, 3.0, 2e8, &dLower, &dUpper);
    EXPECT_EQ(kernel_error_code, 3);
    kernel_take_failure();

    EXPECT_TRUE(mTTails(0.5, 3.0, 2e8, &dLower, &dUpper));
    EXPECT_EQ(dLower, 0.0);
    EXPECT_EQ(dUpper, 1.0);
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_EQ(mTCdf(0.5, 3.0, 2e8, false), 0.0);

    // A negative noncentrality is accepted only with the upper tail exactly 1:
    // a point far below the whole distribution.  A point merely below the
    // centre, where the upper tail is 0, is not accepted.
    EXPECT_EQ(mTCdf(-1e300, 3.0, -2e8, true), 1.0);
    EXPECT_EQ(mTCdf(-1e300, 3.0, -2e8, false), 0.0);
    EXPECT_TRUE(mIsNumericMissing(mTCdf(-0.5, 3.0, -2e8, true)));
}

TEST(TCdf, ClampedAnswerNotAtItsLimitIsMissing)
{
    double dLower = 0.0;
    double dUpper = 0.0;
    // At x = 2e4 the clamped noncentrality (about 1.378e4) leaves a lower tail
    // far from 0.
    EXPECT_FALSE(mTTails(2e4, 3.0, 2e8, &dLower, &dUpper));
    EXPECT_TRUE(mIsNumericMissing(dLower));
    EXPECT_TRUE(mIsNumericMissing(dUpper));
    EXPECT_TRUE(mIsNumericMissing(mTCdf(2e4, 3.0, 2e8, false)));
}

TEST(TCdf, ZeroNoncentralityIsExactlyTheCentralDistribution)
{
    for (double dDF : {0.5, 1.0, 3.0, 17.5, 400.0})
    {
        for (double dX : {-30.0, -2.0, -0.1, 0.0, 0.7, 4.0, 1e3})
        {
            double dLower;
            double dUpper;
            t_df(dX, dDF, &dLower, &dUpper);
            kernel_take_failure();
            EXPECT_EQ(mTCdf(dX, dDF, 0.0, false), dLower) << dDF << " " << dX;
            EXPECT_EQ(mTCdf(dX, dDF, 0.0, true), dUpper) << dDF << " " << dX;
        }
    }
}

TEST(TCdf, TailsAddToOne)
{
    for (double dDF : {1.0, 4.0, 25.0})
        for (double dNc : {-2.0, 0.0, 1.5})
            for (double dX : {-5.0, -0.5, 0.0, 1.0, 6.0})
                EXPECT_NEAR(mTCdf(dX, dDF, dNc, false) + mTCdf(dX, dDF, dNc, true), 1.0, 1e-15)
                    << dDF << " " << dNc << " " << dX;
}

TEST(TPdf, CentreWithNoncentralityUsesTheClosedFormWithItsFactor)
{
    CmAssertCapture capture;
    EXPECT_NEAR(mTPdf(0.0, 5.0, 2.0), mTPdf(0.0, 5.0, 0.0) * std::exp(-2.0), 1e-16);
    // Central density at 0 with 5 degrees: Gamma(3) / (Gamma(5/2) sqrt(5 pi)).
    EXPECT_NEAR(mTPdf(0.0, 5.0, 0.0), 0.37960668982249451, 1e-15);
    // One degree of freedom: the Cauchy density.
    EXPECT_NEAR(mTPdf(2.0, 1.0, 0.0), 1.0 / (5.0 * std::acos(-1.0)), 1e-16);
    EXPECT_EQ(capture.mGetCount(), 0);
    // The report comes first; the logarithm of the gamma function at a
    // negative argument then throws, and the exception passes to the caller.
    EXPECT_THROW(mTPdf(1.0, -1.0, 0.0), CmInvalidArgument);
    ASSERT_GE(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dDF > 0.0");
}

TEST(TPdf, NoncentralDensityIsTheDifferenceOfDistributionFunctions)
{
    const double dX = 1.3;
    const double dA = mTCdf(dX * std::sqrt(7.0 / 5.0), 7.0, 0.8, false);
    const double dB = mTCdf(dX, 5.0, 0.8, false);
    EXPECT_EQ(mTPdf(dX, 5.0, 0.8), (dA - dB) * 5.0 / dX);
    // And it is the slope of the distribution function.
    const double dSlope =
        (mTCdf(dX + 1e-5, 5.0, 0.8, false) - mTCdf(dX - 1e-5, 5.0, 0.8, false)) / 2e-5;
    EXPECT_NEAR(mTPdf(dX, 5.0, 0.8), dSlope, 1e-7);
}

TEST(TInvCdf, EndsAndAssertions)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mTInvCdf(0.0, 3.0, 0.0)));
    EXPECT_TRUE(mIsNumericMissing(mTInvCdf(1.0, 3.0, 0.0)));
    EXPECT_TRUE(mIsNumericMissing(mTInvCdf(0.0, 3.0, 1.0)));
    EXPECT_EQ(capture.mGetCount(), 0);
    mTInvCdf(1.5, -2.0, 0.0);
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "dDF > 0.0");
    EXPECT_EQ(capture.mGetTexts()[1], "dProb <= 1.0");
    capture.mClear();
    EXPECT_TRUE(mIsNumericMissing(mTInvCdf(-0.5, 2.0, 0.0)));
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dProb >= 0.0");
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(TInvCdf, CentralQuantileIsSymmetricAndMatchesTheDistributionFunction)
{
    qeltest::WorstError worst("mTCdf(mTInvCdf(p)) against p, central");
    for (double dDF : {0.5, 1.0, 2.0, 5.0, 30.0, 1e5})
        for (double dProb : {1e-10, 1e-3, 0.1, 0.5, 0.8, 0.999})
        {
            const double dX = mTInvCdf(dProb, dDF, 0.0);
            ASSERT_FALSE(mIsNumericMissing(dX)) << dDF << " " << dProb;
            const double dBack = mTCdf(dX, dDF, 0.0, false);
            const double dTail = std::min(dProb, 1.0 - dProb);
            std::ostringstream row;
            row << "df " << dDF << " p " << dProb;
            worst.mUpdate(std::fabs(dBack - dProb) / dTail, 0.0, row.str());
            EXPECT_LE(std::fabs(dBack - dProb), 2e-9 * dTail + 2e-16) << row.str();
            // The mirrored probability, formed exactly, gives the mirrored point.
            const double dMirror = 1.0 - dProb;
            const double dExact = 1.0 - dMirror;
            EXPECT_NEAR(mTInvCdf(dMirror, dDF, 0.0), -mTInvCdf(dExact, dDF, 0.0),
                        1e-13 * std::fabs(dX))
                << row.str();
        }
    std::cout << worst.mReport() << std::endl;
}

TEST(TInvCdf, NoncentralQuantileThroughTheRootFinder)
{
    qeltest::WorstError worst("mTCdf(mTInvCdf(p)) against p, noncentral (absolute)");
    for (double dDF : {0.8, 1.0, 1.5, 2.0, 6.0, 40.0})
        for (double dNc : {-3.0, 0.5, 4.0})
            for (double dProb : {1e-4, 0.1, 0.5, 0.9, 1 - 1e-4})
            {
                const double dX = mTInvCdf(dProb, dDF, dNc);
                std::ostringstream row;
                row << "df " << dDF << " nc " << dNc << " p " << dProb;
                ASSERT_FALSE(mIsNumericMissing(dX)) << row.str();
                const double dBack = mTCdf(dX, dDF, dNc, false);
                worst.mUpdate(std::fabs(dBack - dProb), 0.0, row.str());
                const double dWidth = 4e-15 * std::max(std::fabs(dX), 1e-300);
                const double dSlack =
                    mTCdf(dX + dWidth, dDF, dNc, false) - mTCdf(dX - dWidth, dDF, dNc, false);
                EXPECT_LE(std::fabs(dBack - dProb), dSlack + 4e-16) << row.str();
            }
    std::cout << worst.mReport() << std::endl;
}

TEST(TInvCdf, QuantileOfTheDistributionFunctionReturnsThePoint)
{
    for (double dNc : {0.0, 1.0})
        for (double dX : {-1.5, 0.4, 2.5})
        {
            const double dProb = mTCdf(dX, 6.0, dNc, false);
            const double dDensity = mTPdf(dX, 6.0, dNc);
            const double dSlack = 2e-9 * std::min(dProb, 1.0 - dProb) / dDensity;
            EXPECT_NEAR(mTInvCdf(dProb, 6.0, dNc), dX, dSlack + 1e-12 * std::fabs(dX))
                << dNc << " " << dX;
        }
}

TEST(TCdfObject, IsTheLowerTailLessTheTarget)
{
    CmTCdf oFunction(4.0, 1.0, 0.6);
    EXPECT_EQ(oFunction(0.5), mTCdf(0.5, 4.0, 1.0, false) - 0.6);
}

TEST(TFlat, AgreesWithTheReferenceTables)
{
    const auto vCdf = qeltest::mFlatRows("flat_kernelbacked_cdf.txt", qeltest::eFlatT);
    const auto vPdf = qeltest::mFlatRows("flat_kernelbacked_pdf.txt", qeltest::eFlatT);
    const auto vQua = qeltest::mFlatRows("flat_kernelbacked_quantile.txt", qeltest::eFlatT);
    ASSERT_GE(vCdf.size(), 8u);
    ASSERT_GE(vPdf.size(), 4u);
    ASSERT_GE(vQua.size(), 5u);
    qeltest::WorstError cdf("mTCdf, both tails");
    for (const qeltest::FlatRow& r : vCdf)
    {
        for (int iTail = 0; iTail < 2; ++iTail)
        {
            const double dGot = mTCdf(r.dPoint, r.dP1, r.dP2, iTail == 1);
            const double dErr = qeltest::mRelativeError(dGot, r.vdRef[iTail]);
            cdf.mUpdate(dErr, qeltest::mUlpDistance(dGot, r.vdRef[iTail]), r.sText);
            // The tails come from the beta kernel, which holds about 1e-9
            // relative; the worst row measured is just above that.
            EXPECT_LE(dErr, 2e-9) << r.sText << " tail " << iTail;
        }
    }
    qeltest::WorstError pdf("mTPdf");
    for (const qeltest::FlatRow& r : vPdf)
    {
        const double dGot = mTPdf(r.dPoint, r.dP1, r.dP2);
        const double dErr = qeltest::mRelativeError(dGot, r.vdRef[0]);
        pdf.mUpdate(dErr, qeltest::mUlpDistance(dGot, r.vdRef[0]), r.sText);
        // The noncentral density is a difference of two distribution
        // functions and keeps only their absolute accuracy.
        EXPECT_LE(dErr, r.dP2 == 0.0 ? 1e-13 : 1e-7) << r.sText;
    }
    qeltest::WorstError quantile("mTInvCdf");
    for (const qeltest::FlatRow& r : vQua)
    {
        const double dGot = mTInvCdf(r.dPoint, r.dP1, r.dP2);
        const double dErr = qeltest::mRelativeError(dGot, r.vdRef[0]);
        quantile.mUpdate(dErr, qeltest::mUlpDistance(dGot, r.vdRef[0]), r.sText);
        EXPECT_LE(dErr, 1e-8) << r.sText;
    }
    std::cout << cdf.mReport() << "\n" << pdf.mReport() << "\n" << quantile.mReport() << std::endl;
}
