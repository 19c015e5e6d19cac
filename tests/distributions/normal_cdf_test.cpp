// The normal distribution function mNormalCdf and its internal mNormalTails:
// exact centre and far tails, the missing value, the sigma assertion, kernel
// failure, accuracy in both tails against mpmath, and calls from several
// threads at once.  Also the frame's promise that a bad argument is reported
// and the call goes on.
#include "qel/normal.h"
#include "qelmath/distributions/normal_tails.h"
#include "qelmath/kernels/kernel_protocol.h"

#include "qel/checkedcast.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "support/reftable.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <limits>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

TEST(NormalCdf, AtTheMeanIsExactlyHalfForEverySigma)
{
    for (double dMu : {0.0, -3.5, 1e10})
    {
        for (double dSigma : {1e-300, 0.5, 1.0, 1e300})
        {
            kernel_enter("probe");
            EXPECT_EQ(mNormalCdf(dMu, dMu, dSigma, false), 0.5);
            EXPECT_EQ(mNormalCdf(dMu, dMu, dSigma, true), 0.5);
            // The kernel is not entered.
            EXPECT_STREQ(kernel_routine_name, "probe");
        }
    }
}

TEST(NormalCdf, FarUpperTailIsExactlyZero)
{
    EXPECT_EQ(mNormalCdf(40.0, 0.0, 1.0, true), 0.0);
    EXPECT_EQ(mNormalCdf(40.0, 0.0, 1.0, false), 1.0);
    EXPECT_EQ(mNormalCdf(-40.0, 0.0, 1.0, false), 0.0);
    EXPECT_EQ(mNormalCdf(-40.0, 0.0, 1.0, true), 1.0);
    // Standardised: 400 at sigma 10 is the same point.
    EXPECT_EQ(mNormalCdf(400.0, 0.0, 10.0, true), 0.0);
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(NormalCdf, TailBelowTheKernelFloorIsZeroAndCountsAsSuccess)
{
    // The kernel answers 0 with code 1 here; the flat function passes it on.
    double dLower = -1.0, dUpper = -1.0;
    EXPECT_TRUE(mNormalTails(37.5, 0.0, 1.0, &dLower, &dUpper));
    EXPECT_EQ(dUpper, 0.0);
    EXPECT_EQ(dLower, 1.0);
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(NormalCdf, MissingValueGivesMissingValueWithoutAssertion)
{
    CmAssertCapture capture;
    const double dMissing = mGetMissingValueCode();
    EXPECT_TRUE(mIsNumericMissing(mNormalCdf(dMissing, 0.0, 1.0, false)));
    EXPECT_TRUE(mIsNumericMissing(mNormalCdf(dMissing, 0.0, 1.0, true)));
    EXPECT_TRUE(mIsNumericMissing(mNormalCdf(dMissing, 2.0, 3.0, true)));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(NormalCdf, NonPositiveSigmaIsReportedAndTheArithmeticRunsOn)
{
    CmAssertCapture capture;
    // Zero sigma divides by zero: the point goes to +infinity.
    EXPECT_EQ(mNormalCdf(1.0, 0.0, 0.0, false), 1.0);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dSigma > 0.0");
    // A negative sigma mirrors the point.
    const double d = mNormalCdf(1.0, 0.0, -1.0, false);
    EXPECT_EQ(capture.mGetCount(), 2);
    EXPECT_TRUE(capture.mHas("dSigma > 0.0"));
    EXPECT_NEAR(d, 0.158655253931457051414767454368, 1e-10);
    // At the mean the assertion still comes first.
    EXPECT_EQ(mNormalCdf(2.0, 2.0, -1.0, true), 0.5);
    EXPECT_EQ(capture.mGetCount(), 3);
}

namespace
{
int g_iCountedAsserts = 0;
void mCountingHandler(const char*, const char*, unsigned int) { ++g_iCountedAsserts; }
} // namespace

TEST(NumericFrame, WithACountingAssertABadArgumentReturnsNormally)
{
    g_iCountedAsserts = 0;
    const PFnAssertHandler pfnPrevious = mSetAssertHandler(&mCountingHandler);
    const double d = mNormalCdf(-1.0, 0.0, -2.0, true);
    mSetAssertHandler(pfnPrevious);
    EXPECT_EQ(g_iCountedAsserts, 1);
    // (-1 - 0) / -2 = 0.5: the upper tail at 0.5.
    EXPECT_NEAR(d, 0.308537538725986896, 1e-10);
}

TEST(NumericFrame, CheckedCastOfThreeBillionAssertsAndGoesOn)
{
    CmAssertCapture capture;
    const INTG i = mCheckedCast<INTG>(3e9);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "_in <= numeric_limits<_Tout>::max()");
    EXPECT_EQ(i, 2147483647);
}

TEST(NormalCdf, KernelFailureGivesTheMissingValueInBothTails)
{
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    double dLower = 0.0, dUpper = 0.0;
    EXPECT_FALSE(mNormalTails(dNaN, 0.0, 1.0, &dLower, &dUpper));
    EXPECT_TRUE(mIsNumericMissing(dLower));
    EXPECT_TRUE(mIsNumericMissing(dUpper));
    // The failure has been read and cleared.
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_TRUE(mIsNumericMissing(mNormalCdf(dNaN, 0.0, 1.0, true)));
    EXPECT_TRUE(mIsNumericMissing(mNormalCdf(0.0, dNaN, 1.0, false)));
}

TEST(NormalCdf, SuccessfulCallLeavesCodeZeroAndBothTails)
{
    double dLower = 0.0, dUpper = 0.0;
    EXPECT_TRUE(mNormalTails(1.96, 0.0, 1.0, &dLower, &dUpper));
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_EQ(dLower + dUpper, 1.0);
    EXPECT_EQ(mNormalCdf(1.96, 0.0, 1.0, true), dUpper);
    EXPECT_EQ(mNormalCdf(1.96, 0.0, 1.0, false), dLower);
    // The continued fraction under the tail stops at a relative change of 1e-9.
    EXPECT_LT(std::fabs(dUpper / 0.0249978951482204362128236923956 - 1.0), 1e-9);
}

TEST(NormalCdf, LocationAndScaleStandardise)
{
    EXPECT_EQ(mNormalCdf(13.92, 10.0, 2.0, true), mNormalCdf(1.96, 0.0, 1.0, true));
    EXPECT_EQ(mNormalCdf(-3.0, -1.0, 2.0, false), mNormalCdf(-1.0, 0.0, 1.0, false));
}

TEST(NormalCdf, MatchesMpmathInBothTails)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("normal_cdf.txt");
    ASSERT_GT(table.rows.size(), 2800u);
    qeltest::WorstError worst("mNormalCdf, both tails, |x| <= 36");
    int iRowsChecked = 0;
    for (std::size_t i = 0; i < table.rows.size(); ++i)
    {
        const std::vector<double>& row = table.rows[i];
        ASSERT_EQ(row.size(), 3u);
        const double x = row[0], dLowerRef = row[1], dUpperRef = row[2];
        const double dLower = mNormalCdf(x, 0.0, 1.0, false);
        const double dUpper = mNormalCdf(x, 0.0, 1.0, true);
        if (std::fabs(x) > 37.575)
        {
            // Beyond 26.5694 sqrt(2) the far tail is exactly 0.
            EXPECT_EQ(x > 0 ? dUpper : dLower, 0.0) << x;
            EXPECT_EQ(x > 0 ? dLower : dUpper, 1.0) << x;
            continue;
        }
        if (std::fabs(x) > 36.0)
        {
            // The true tail is below 2.2250738585072014e-288 here, where the
            // kernel may set it to 0 (code 1); if it does not, it is accurate.
            const double dSmall = x > 0 ? dUpper : dLower;
            const double dRef = x > 0 ? dUpperRef : dLowerRef;
            EXPECT_TRUE(dSmall == 0.0 || qeltest::mRelativeError(dSmall, dRef) <= 1e-9) << x;
            continue;
        }
        for (int iTail = 0; iTail < 2; ++iTail)
        {
            const double dGot = iTail ? dUpper : dLower;
            const double dRef = iTail ? dUpperRef : dLowerRef;
            const double e = qeltest::mRelativeError(dGot, dRef);
            std::ostringstream where;
            where.precision(17);
            where << "row " << i + 1 << ": x=" << x << (iTail ? " upper=" : " lower=") << dGot
                  << " (mpmath " << dRef << ")";
            worst.mUpdate(e, qeltest::mUlpDistance(dGot, dRef), where.str());
            EXPECT_LE(e, 1e-9) << where.str();
        }
        ++iRowsChecked;
    }
    EXPECT_GE(iRowsChecked, 2881);
    std::cout << worst.mReport() << std::endl;
    RecordProperty("worst", worst.mReport());
}

TEST(NormalCdf, FourThreadsAtOnceGiveTheSequentialResults)
{
    constexpr int kCount = 4000;
    std::vector<double> vdX(kCount);
    for (int i = 0; i < kCount; ++i)
        vdX[i] = -38.0 + 76.0 * i / (kCount - 1);
    vdX[100] = 0.0;
    vdX[200] = mGetMissingValueCode();
    vdX[300] = std::numeric_limits<double>::quiet_NaN();

    std::vector<double> vdSequential(2 * kCount);
    for (int i = 0; i < kCount; ++i)
    {
        vdSequential[2 * i] = mNormalCdf(vdX[i], 0.0, 1.0, false);
        vdSequential[2 * i + 1] = mNormalCdf(vdX[i], 0.0, 1.0, true);
    }

    std::array<std::vector<double>, 4> results;
    std::array<int, 4> codesLeft{};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
    {
        threads.emplace_back([&, t] {
            std::vector<double>& out = results[t];
            out.resize(2 * kCount);
            // Each thread walks the arguments from a different start.
            for (int k = 0; k < kCount; ++k)
            {
                const int i = (k + t * kCount / 4) % kCount;
                out[2 * i] = mNormalCdf(vdX[i], 0.0, 1.0, false);
                out[2 * i + 1] = mNormalCdf(vdX[i], 0.0, 1.0, true);
            }
            codesLeft[t] = kernel_error_code;
        });
    }
    for (std::thread& th : threads)
        th.join();

    for (int t = 0; t < 4; ++t)
    {
        EXPECT_EQ(codesLeft[t], 0);
        int iMismatches = 0;
        for (int j = 0; j < 2 * kCount; ++j)
        {
            // Bitwise equal; the NaN row gives the missing value, not a NaN.
            if (std::memcmp(&results[t][j], &vdSequential[j], sizeof(double)) != 0)
                ++iMismatches;
        }
        EXPECT_EQ(iMismatches, 0) << "thread " << t;
    }
}

namespace
{
// Runs the evaluator on one expression; standard error is kept apart.
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

TEST(NormalCdfEvaluator, PrintsTheTailTheMissingValueAndTheAssertion)
{
    const std::string sValue = mEvaluate("mNormalCdf(1.96, 0, 1, true)", false);
    EXPECT_EQ(sValue.substr(0, 11), "0.024997895") << sValue;
    EXPECT_LT(std::fabs(std::strtod(sValue.c_str(), nullptr) / 0.0249978951482204 - 1.0), 1e-9);
    EXPECT_EQ(sValue.back(), '\n');
    EXPECT_EQ(mEvaluate("mNormalCdf(*, 0, 1, false)", false), "*\n");
    const std::string sBad = mEvaluate("mNormalCdf(1, 0, 0, false)", true);
    EXPECT_NE(sBad.find("dSigma > 0.0"), std::string::npos) << sBad;
    EXPECT_EQ(mEvaluate("mNormalCdf(1, 0, 0, false)", false), "1\n");
}
