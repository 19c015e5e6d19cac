// The normal density mNormalPdf: the value at the centre, symmetry, location
// and scale, the exact zero of the far tails, the sigma assertion and the
// arithmetic that follows it, the absence of a missing-value test, and
// accuracy against mpmath over several means and scales.
#include "qel/normal.h"

#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "support/reftable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace
{
// 1 / sqrt(2 pi), mpmath: 0.398942280401432677939946...
constexpr double kInvSqrt2Pi = 0.3989422804014326779;
} // namespace

TEST(NormalPdf, AtTheCentreIsOneOverSqrtTwoPiSigma)
{
    CmAssertCapture capture;
    EXPECT_NEAR(mNormalPdf(0.0, 0.0, 1.0), kInvSqrt2Pi, 1e-16);
    EXPECT_NEAR(mNormalPdf(3.0, 3.0, 2.0), kInvSqrt2Pi / 2.0, 1e-16);
    EXPECT_NEAR(mNormalPdf(-7.5, -7.5, 1e-3) / (kInvSqrt2Pi * 1e3), 1.0, 5e-16);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(NormalPdf, IsSymmetricAndStandardises)
{
    for (double z : {0.1, 1.0, 1.96, 5.5, 20.0, 37.0})
    {
        EXPECT_EQ(mNormalPdf(z, 0.0, 1.0), mNormalPdf(-z, 0.0, 1.0)) << z;
        // Exactly representable shifts and scales give the same z.
        EXPECT_EQ(mNormalPdf(10.0 + 4.0 * z, 10.0, 4.0), mNormalPdf(z, 0.0, 1.0) / 4.0) << z;
    }
}

TEST(NormalPdf, FarTailIsExactlyZeroOnceTheExponentPassesTheLimit)
{
    // z^2 / 2 = 709.1278 beyond the frame's largest exponent 709: exactly 0.
    EXPECT_EQ(mNormalPdf(37.66, 0.0, 1.0), 0.0);
    EXPECT_EQ(mNormalPdf(-37.66, 0.0, 1.0), 0.0);
    EXPECT_EQ(mNormalPdf(1e6, 0.0, 1.0), 0.0);
    EXPECT_EQ(mNormalPdf(std::numeric_limits<double>::infinity(), 0.0, 1.0), 0.0);
    // z^2 / 2 = 708.76125: still a (subnormal) positive density, mpmath
    // 6.16325595455319e-309.
    const double d = mNormalPdf(37.65, 0.0, 1.0);
    EXPECT_GT(d, 0.0);
    EXPECT_NEAR(d / 6.16325595455319e-309, 1.0, 1e-9);
}

TEST(NormalPdf, NonPositiveSigmaIsReportedAndTheArithmeticRunsOn)
{
    CmAssertCapture capture;
    // A negative sigma gives the density with its sign turned.
    EXPECT_NEAR(mNormalPdf(0.0, 0.0, -1.0), -kInvSqrt2Pi, 1e-16);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dSigma > 0.0");
    EXPECT_NEAR(mNormalPdf(1.0, 0.0, -2.0), -mNormalPdf(1.0, 0.0, 2.0), 1e-17);
    EXPECT_EQ(capture.mGetCount(), 2);
    // Zero sigma divides by zero: away from the mean 0 / 0, at the mean 0 / 0
    // inside the exponent; neither is a number.
    EXPECT_TRUE(std::isnan(mNormalPdf(1.0, 0.0, 0.0)));
    EXPECT_TRUE(std::isnan(mNormalPdf(0.0, 0.0, 0.0)));
    EXPECT_EQ(capture.mGetCount(), 4);
    for (const std::string& s : capture.mGetTexts())
        EXPECT_EQ(s, "dSigma > 0.0");
}

TEST(NormalPdf, MissingValueIsANumberLikeAnyOther)
{
    CmAssertCapture capture;
    const double dMissing = mGetMissingValueCode();
    // The missing value is 1e308 standard deviations out: density 0.
    EXPECT_EQ(mNormalPdf(dMissing, 0.0, 1.0), 0.0);
    // Missing point and missing mean: z = 0, the centre's density.
    EXPECT_NEAR(mNormalPdf(dMissing, dMissing, 1.0), kInvSqrt2Pi, 1e-16);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(NormalPdf, MatchesMpmathOverMeansAndScales)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("normal_pdf.txt");
    ASSERT_GT(table.rows.size(), 4800u);
    qeltest::WorstError worstCentre("mNormalPdf, |z| <= 5");
    qeltest::WorstError worstTail("mNormalPdf, 5 < |z| <= 37.5, in units of (1 + z^2) eps");
    int iCentre = 0, iTail = 0;
    for (std::size_t i = 0; i < table.rows.size(); ++i)
    {
        const std::vector<double>& row = table.rows[i];
        ASSERT_EQ(row.size(), 4u);
        const double x = row[0], dMu = row[1], dSigma = row[2], dRef = row[3];
        const double d = mNormalPdf(x, dMu, dSigma);
        const double z = (x - dMu) / dSigma;
        std::ostringstream where;
        where.precision(17);
        where << "row " << i + 1 << ": x=" << x << " mu=" << dMu << " sigma=" << dSigma
              << " density=" << d << " (mpmath " << dRef << ")";
        if (dRef < 2.2250738585072014e-308)
        {
            // Subnormal or beyond the exponent limit: no relative accuracy
            // to speak of, but never more than the smallest normal double.
            EXPECT_GE(d, 0.0) << where.str();
            EXPECT_LT(d, 2.3e-308) << where.str();
            continue;
        }
        const double e = qeltest::mRelativeError(d, dRef);
        const double dUlps = qeltest::mUlpDistance(d, dRef);
        if (std::fabs(z) <= 5.0)
        {
            worstCentre.mUpdate(e, dUlps, where.str());
            EXPECT_LE(e, 1e-14) << where.str();
            ++iCentre;
        }
        else
        {
            // The rounding of z, and of z * z, is multiplied by z^2 / 2 in
            // the exponent: the error grows with z^2, by the form itself.
            const double dUnits = e / ((1.0 + z * z) * 2.220446049250313e-16);
            worstTail.mUpdate(dUnits, dUlps, where.str());
            EXPECT_LE(dUnits, 2.0) << where.str();
            ++iTail;
        }
    }
    EXPECT_GE(iCentre, 8 * 81);
    EXPECT_GE(iTail, 8 * 400);
    std::cout << worstCentre.mReport() << "\n" << worstTail.mReport() << std::endl;
    RecordProperty("worst", worstCentre.mReport());
}

TEST(NormalPdf, IntegratesToTheDistributionFunction)
{
    // An independent route: Simpson's rule on the density over [-8, x]
    // against the distribution function (both within 1e-9).
    for (double x : {-2.0, -0.5, 0.0, 1.0, 2.5})
    {
        const int n = 4000;
        const double a = -8.0, h = (x - a) / n;
        double s = mNormalPdf(a, 0.0, 1.0) + mNormalPdf(x, 0.0, 1.0);
        for (int k = 1; k < n; ++k)
            s += (k % 2 ? 4.0 : 2.0) * mNormalPdf(a + k * h, 0.0, 1.0);
        const double dIntegral = s * h / 3.0 + mNormalCdf(a, 0.0, 1.0, false);
        EXPECT_NEAR(dIntegral, mNormalCdf(x, 0.0, 1.0, false), 2e-9) << x;
    }
}
