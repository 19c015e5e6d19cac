// The normal quantile mNormalInvCdf: the exact centre, probabilities 0 and 1
// and those outside [0, 1], the three assertions in their order, the numeric
// inversion below 1e-100 with its round trip and its lower limit at the
// distribution function at -36, location and scale, accuracy against mpmath
// from about 4.19e-284 up to the largest double below 1, and the evaluator.
#include "qel/normal.h"
#include "qelmath/distributions/inversion.h"
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/normal.h"

#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "qel/qelmsg.h"
#include "qel/rootsandoptima.h"
#include "support/reftable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace
{
constexpr double kEps = 2.220446049250313e-16;

bool mFlagged50021(const CmMessageCapture& rCapture)
{
    for (const CmErrorFlagRecord& r : rCapture.mGetErrorFlags())
        if (r.iCode == 50021 && r.iLevel == 2)
            return true;
    return false;
}
// Whether p lies between the distribution function two doubles either side
// of z: z is then within two doubles of the exact inverse of mNormalCdf.
bool mRoundTripsWithinTwoDoubles(double z, double p)
{
    const double dBelow = std::nextafter(std::nextafter(z, -40.0), -40.0);
    const double dAbove = std::nextafter(std::nextafter(z, 0.0), 0.0);
    return mNormalCdf(dBelow, 0.0, 1.0, false) <= p && p <= mNormalCdf(dAbove, 0.0, 1.0, false);
}
} // namespace

TEST(NormalInvCdf, OneHalfIsExactlyTheMean)
{
    CmAssertCapture capture;
    EXPECT_EQ(mNormalInvCdf(0.5, 3.0, 2.0), 3.0);
    EXPECT_EQ(mNormalInvCdf(0.5, 0.0, 1.0), 0.0);
    EXPECT_EQ(mNormalInvCdf(0.5, -1e10, 1e-300), -1e10);
    EXPECT_EQ(capture.mGetCount(), 0);
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(NormalInvCdf, ZeroAndOneAreMissingWithoutAssertion)
{
    CmAssertCapture capture;
    CmMessageCapture messages;
    EXPECT_TRUE(mIsNumericMissing(mNormalInvCdf(0.0, 0.0, 1.0)));
    EXPECT_TRUE(mIsNumericMissing(mNormalInvCdf(1.0, 0.0, 1.0)));
    // The missing value is not rescaled by sigma and mu.
    EXPECT_TRUE(mIsNumericMissing(mNormalInvCdf(0.0, 5.0, 0.5)));
    EXPECT_TRUE(mIsNumericMissing(mNormalInvCdf(1.0, -5.0, 3.0)));
    EXPECT_EQ(capture.mGetCount(), 0);
    // Refused by the fallback before any root search.
    EXPECT_TRUE(messages.mGetErrorFlags().empty());
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(NormalInvCdf, ProbabilityOutsideZeroToOneIsReportedAndMissing)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mNormalInvCdf(-0.25, 0.0, 1.0)));
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dProb >= 0.0");
    EXPECT_TRUE(mIsNumericMissing(mNormalInvCdf(1.25, 0.0, 1.0)));
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[1], "dProb <= 1.0");
    // A missing probability fails the upper bound and stays missing.
    EXPECT_TRUE(mIsNumericMissing(mNormalInvCdf(mGetMissingValueCode(), 0.0, 1.0)));
    ASSERT_EQ(capture.mGetCount(), 3);
    EXPECT_EQ(capture.mGetTexts()[2], "dProb <= 1.0");
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(NormalInvCdf, AssertionsComeInTheirOrder)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mNormalInvCdf(-1.0, 0.0, 0.0)));
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "dSigma > 0.0");
    EXPECT_EQ(capture.mGetTexts()[1], "dProb >= 0.0");
    capture.mClear();
    EXPECT_TRUE(mIsNumericMissing(mNormalInvCdf(2.0, 0.0, -1.0)));
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "dSigma > 0.0");
    EXPECT_EQ(capture.mGetTexts()[1], "dProb <= 1.0");
    // A NaN fails both bounds, after the sigma test.
    capture.mClear();
    CmMessageCapture messages;
    EXPECT_TRUE(
        mIsNumericMissing(mNormalInvCdf(std::numeric_limits<double>::quiet_NaN(), 0.0, -2.0)));
    ASSERT_EQ(capture.mGetCount(), 3);
    EXPECT_EQ(capture.mGetTexts()[0], "dSigma > 0.0");
    EXPECT_EQ(capture.mGetTexts()[1], "dProb >= 0.0");
    EXPECT_EQ(capture.mGetTexts()[2], "dProb <= 1.0");
    // Neither comparison of the fallback refuses a NaN: the root search gets
    // it, cannot start, and gives up with its flag.
    EXPECT_TRUE(mFlagged50021(messages));
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(NormalInvCdf, NonPositiveSigmaIsReportedAndTheArithmeticRunsOn)
{
    CmAssertCapture capture;
    const double z = mNormalInvCdf(0.975, 0.0, 1.0);
    // Zero sigma collapses every quantile onto the mean.
    EXPECT_EQ(mNormalInvCdf(0.975, 4.0, 0.0), 4.0);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dSigma > 0.0");
    // A negative sigma mirrors the quantile.
    EXPECT_EQ(mNormalInvCdf(0.975, 1.0, -2.0), -2.0 * z + 1.0);
    EXPECT_EQ(capture.mGetCount(), 2);
    EXPECT_TRUE(capture.mHas("dSigma > 0.0"));
}

TEST(NormalInvCdf, LocationAndScaleApplyToTheStandardQuantile)
{
    for (double p : {1e-260, 1e-120, 1e-100, 1e-5, 0.025, 0.3, 0.7, 0.975, 1.0 - 1e-12})
    {
        const double z = mNormalInvCdf(p, 0.0, 1.0);
        ASSERT_FALSE(mIsNumericMissing(z)) << p;
        EXPECT_EQ(mNormalInvCdf(p, 10.0, 2.0), z * 2.0 + 10.0) << p;
        EXPECT_EQ(mNormalInvCdf(p, -3.0, 0.5), z * 0.5 - 3.0) << p;
    }
}

TEST(NormalInvCdf, BelowTheKernelsReachTheRootFinderAnswersWithARoundTrip)
{
    // The kernel refuses 1e-150.
    double dKernel = 0.0;
    inv_normal_df(1e-150, &dKernel);
    EXPECT_TRUE(kernel_take_failure());

    CmAssertCapture capture;
    CmMessageCapture messages;
    const double z = mNormalInvCdf(1e-150, 0.0, 1.0);
    ASSERT_TRUE(std::isfinite(z));
    ASSERT_FALSE(mIsNumericMissing(z));
    // mpmath: the quantile is -26.122961190593984; the answer is as close as
    // mNormalCdf's own accuracy (1e-9 relative in the tail) allows.
    EXPECT_NEAR(z, -26.122961190593984, 26.12 * 1e-12);
    // It is the root found by false position over [-36, 0].
    CmStandardNormalCdf function(1e-150);
    EXPECT_EQ(z, mRootFinder(-36.0, 0.0, function));
    // Round trip.  Between neighbouring doubles near z the distribution
    // function moves by about z^2 eps relative (9.3e-14 here), so agreement to
    // eps itself is out of reach of any double; the search ends on the width
    // of its bracket, and the answer lies within two doubles of the exact
    // inverse of mNormalCdf, the probability within 3 z^2 eps of the target.
    EXPECT_TRUE(mRoundTripsWithinTwoDoubles(z, 1e-150));
    const double p = mNormalCdf(z, 0.0, 1.0, false);
    EXPECT_LE(std::fabs(p - 1e-150), 1e-150 * 3.0 * z * z * mGetEps()) << p;
    // What was seen: 1.6e-14 relative, 0.02 z^2 eps.
    EXPECT_LE(std::fabs(p - 1e-150), 1e-150 * 1e-13) << p;
    EXPECT_EQ(capture.mGetCount(), 0);
    EXPECT_TRUE(messages.mGetErrorFlags().empty());
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(NormalInvCdf, EveryDecadeBelowTheKernelRoundTripsWithinTwoDoubles)
{
    // From 1e-101 down to 1e-283 the answer lies within two doubles of the
    // exact inverse of mNormalCdf, so that the distribution function at it
    // is the probability to within 3 z^2 eps relative.
    int iChecked = 0;
    double dWorst = 0.0;
    for (int k = 101; k <= 283; ++k)
    {
        for (double m : {1.0, 3.0, 7.0})
        {
            const double p = m * std::pow(10.0, -k);
            if (p < 4.19e-284)
                continue;
            const double z = mNormalInvCdf(p, 0.0, 1.0);
            ASSERT_FALSE(mIsNumericMissing(z)) << p;
            EXPECT_GE(z, -36.0) << p;
            EXPECT_TRUE(mRoundTripsWithinTwoDoubles(z, p)) << "p=" << p << " z=" << z;
            const double dBack = mNormalCdf(z, 0.0, 1.0, false);
            const double dUnits = std::fabs(dBack - p) / (p * z * z * kEps);
            EXPECT_LE(dUnits, 3.0) << "p=" << p << " z=" << z;
            dWorst = std::max(dWorst, dUnits);
            ++iChecked;
        }
    }
    EXPECT_EQ(iChecked, 3 * 183);
    std::cout << "round trip below 1e-100: worst |F(z) - p| / p = " << dWorst << " z^2 eps"
              << std::endl;
}

TEST(NormalInvCdf, BelowTheDistributionFunctionAtMinus36IsMissing)
{
    const double dFloor = mNormalCdf(-36.0, 0.0, 1.0, false);
    // mpmath: ncdf(-36) = 4.1826240657972833e-284; the kernel is within 1e-9.
    EXPECT_NEAR(dFloor / 4.1826240657972833e-284, 1.0, 1e-9);
    CmAssertCapture capture;
    CmMessageCapture messages;
    EXPECT_TRUE(mIsNumericMissing(mNormalInvCdf(std::nextafter(dFloor, 0.0), 0.0, 1.0)));
    EXPECT_TRUE(mIsNumericMissing(mNormalInvCdf(4.17e-284, 0.0, 1.0)));
    EXPECT_TRUE(mIsNumericMissing(mNormalInvCdf(1e-300, 0.0, 1.0)));
    EXPECT_TRUE(mIsNumericMissing(mNormalInvCdf(4.9406564584124654e-324, 0.0, 1.0)));
    EXPECT_EQ(capture.mGetCount(), 0);
    EXPECT_TRUE(messages.mGetErrorFlags().empty());
    // At the floor itself the left end of the search is the root.
    EXPECT_EQ(mNormalInvCdf(dFloor, 0.0, 1.0), -36.0);
    EXPECT_EQ(mNormalInvCdf(dFloor, 1.0, 2.0), -71.0);
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(NormalInvCdf, EitherSideOfTheKernelsLimitAgrees)
{
    // 1e-100 is the kernel's; the next double below it is the root finder's.
    const double dAt = mNormalInvCdf(1e-100, 0.0, 1.0);
    const double dBelow = mNormalInvCdf(std::nextafter(1e-100, 0.0), 0.0, 1.0);
    double dKernel = 0.0;
    inv_normal_df(1e-100, &dKernel);
    EXPECT_FALSE(kernel_take_failure());
    EXPECT_EQ(dAt, dKernel);
    // mpmath: z(1e-100) = -21.273453560965324; one ulp of p moves z by 5e-18.
    EXPECT_NEAR(dAt, -21.273453560965324, 21.27 * 1e-9);
    EXPECT_NEAR(dBelow, -21.273453560965324, 21.27 * 1e-9);
    EXPECT_LE(dBelow, dAt + 21.27 * 2e-9);
}

TEST(NormalInvCdf, MatchesMpmathFromTheFloorToTheLargestDoubleBelowOne)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("normal_quantile.txt");
    ASSERT_GT(table.rows.size(), 1900u);
    qeltest::WorstError worstAll("mNormalInvCdf, 4.19e-284 <= p <= 1 - 2^-53");
    qeltest::WorstError worstRoot("mNormalInvCdf, root finder, p < 1e-100");
    qeltest::WorstError worstKernel("mNormalInvCdf, kernel, p >= 1e-100");
    double dLowest = 1.0, dHighest = 0.0;
    for (std::size_t i = 0; i < table.rows.size(); ++i)
    {
        const std::vector<double>& row = table.rows[i];
        ASSERT_EQ(row.size(), 2u);
        const double p = row[0], dRef = row[1];
        const double z = mNormalInvCdf(p, 0.0, 1.0);
        ASSERT_FALSE(mIsNumericMissing(z)) << "p=" << p;
        const double e = qeltest::mRelativeError(z, dRef);
        std::ostringstream where;
        where.precision(17);
        where << "row " << i + 1 << ": p=" << p << " z=" << z << " (mpmath " << dRef << ")";
        const double dUlps = qeltest::mUlpDistance(z, dRef);
        worstAll.mUpdate(e, dUlps, where.str());
        (p < 1e-100 ? worstRoot : worstKernel).mUpdate(e, dUlps, where.str());
        EXPECT_LE(e, 1e-9) << where.str();
        dLowest = std::min(dLowest, p);
        dHighest = std::max(dHighest, p);
    }
    EXPECT_LE(dLowest, 4.19e-284);
    EXPECT_EQ(dHighest, 1.0 - 0x1p-53);
    EXPECT_EQ(kernel_error_code, 0);
    std::cout << worstAll.mReport() << "\n"
              << worstRoot.mReport() << "\n"
              << worstKernel.mReport() << std::endl;
    RecordProperty("worst", worstAll.mReport());
}

TEST(NormalInvCdf, IsIncreasingAcrossTheWholeRange)
{
    // The root finder below 1e-100, the kernel's tail form up to 0.08 and its
    // centre beyond: the quantile never steps back.
    double dPrevious = -std::numeric_limits<double>::infinity();
    for (int k = -2830; k <= -4; ++k)
    {
        const double p = std::pow(10.0, k / 10.0);
        if (p < 4.19e-284)
            continue;
        const double z = mNormalInvCdf(p, 0.0, 1.0);
        ASSERT_FALSE(mIsNumericMissing(z)) << p;
        EXPECT_GT(z, dPrevious) << "p=" << p;
        dPrevious = z;
    }
    for (int i = 1; i < 2000; ++i)
    {
        const double z = mNormalInvCdf(0.5 + i / 4000.0, 0.0, 1.0);
        EXPECT_GT(z, dPrevious) << i;
        dPrevious = z;
    }
}

TEST(NormalInvCdf, RoundTripOfTheDistributionFunction)
{
    // The quantile of the distribution function returns the point, to the
    // accuracy the kernels share (1e-9 relative).
    for (int i = -288; i <= 64; ++i)
    {
        const double x = i / 8.0;
        if (x == 0.0)
            continue;
        const double p = mNormalCdf(x, 0.0, 1.0, false);
        // The quantile's own 1e-9 relative error, and the 1e-9 relative error
        // of the tail moved to the point by the density (the tail over the
        // density is below 1.26 on the far side of the centre).  Above the
        // centre the lower tail near 1 also carries the rounding of 1 - q,
        // half an ulp of 1, which the density turns into an error of the point.
        const double dDensity = std::exp(-0.5 * x * x) / 2.5066282746310002;
        const double dBound = 1e-9 * (std::fabs(x) + 2.0) + (x > 0.0 ? 1.2e-16 / dDensity : 0.0);
        EXPECT_NEAR(mNormalInvCdf(p, 0.0, 1.0), x, dBound) << "x=" << x;
    }
}

namespace
{
std::string mEvaluate(const std::string& rsExpr, bool bWithStderr)
{
    const std::string cmd = std::string("'") + QEL_EVALUATOR_PATH + "' eval '" + rsExpr + "'" +
                            (bWithStderr ? " 2>&1" : " 2>/dev/null");
    std::string out;
    FILE* pipe = popen(cmd.c_str(), "r");
    if (!pipe)
        return out;
    char buffer[512];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0)
        out.append(buffer, n);
    pclose(pipe);
    return out;
}
} // namespace

TEST(NormalInvCdfEvaluator, PrintsTheQuantileTheMeanAndTheMissingValue)
{
    EXPECT_EQ(mEvaluate("mNormalInvCdf(0.5, 3, 2)", false), "3\n");
    EXPECT_EQ(mEvaluate("mNormalInvCdf(0, 0, 1)", true), "*\n");
    EXPECT_EQ(mEvaluate("mNormalInvCdf(1, 0, 1)", true), "*\n");
    const std::string s = mEvaluate("mNormalInvCdf(0.975, 0, 1)", false);
    EXPECT_LT(std::fabs(std::strtod(s.c_str(), nullptr) / 1.959963984540054 - 1.0), 1e-9) << s;
    const std::string sBad = mEvaluate("mNormalInvCdf(2, 0, 1)", true);
    EXPECT_NE(sBad.find("dProb <= 1.0"), std::string::npos) << sBad;
    EXPECT_EQ(mEvaluate("mNormalInvCdf(2, 0, 1)", false), "*\n");
}
