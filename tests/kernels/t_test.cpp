// The central Student t kernels: argument checks with their codes and routine
// names, the tail at the limit, symmetry, the quantile branches, and both tails
// and the quantiles against mpmath tables over df from 0.1 to 1e7.
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/t.h"

#include "support/reftable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <limits>
#include <sstream>
#include <string>

namespace
{
constexpr double kSentinel = 1.7976931348623157e+308;
const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

std::string mWhere(double a, double b)
{
    std::ostringstream os;
    os.precision(17);
    os << a << " " << b;
    return os.str();
}
} // namespace

TEST(TDf, ZeroGivesOneHalfOnBothSides)
{
    for (double df : {0.1, 1.0, 3.0, 1e7})
    {
        double lower = -1.0, upper = -1.0;
        t_df(0.0, df, &lower, &upper);
        EXPECT_EQ(lower, 0.5) << df;
        EXPECT_EQ(upper, 0.5) << df;
        EXPECT_EQ(kernel_error_code, 0);
    }
}

TEST(TDf, BadDegreesOfFreedomForceCodeTwo)
{
    for (double df : {0.0, -1.0, 189812530.5, kNaN})
    {
        double lower = -7.0, upper = -7.0;
        t_df(1.0, df, &lower, &upper);
        EXPECT_EQ(kernel_error_code, 2) << df;
        EXPECT_STREQ(kernel_routine_name, "t_df");
        EXPECT_EQ(lower, -7.0);
        EXPECT_EQ(upper, -7.0);
    }
    double lower = -7.0, upper = -7.0;
    t_df(kNaN, 3.0, &lower, &upper);
    EXPECT_EQ(kernel_error_code, 2);
    EXPECT_STREQ(kernel_routine_name, "t_df");
}

TEST(TDf, TailAtTheLimitIsExact)
{
    for (double t : {1e145, 1e300, kInf})
    {
        double lower = -1.0, upper = -1.0;
        t_df(t, 2.0, &lower, &upper);
        EXPECT_EQ(lower, 1.0) << t;
        EXPECT_EQ(upper, 0.0) << t;
        t_df(-t, 2.0, &lower, &upper);
        EXPECT_EQ(lower, 0.0) << t;
        EXPECT_EQ(upper, 1.0) << t;
        EXPECT_EQ(kernel_error_code, 0);
    }
}

TEST(TDf, CauchyCaseMatchesTheArctangent)
{
    for (double t : {-40.0, -3.0, -0.5, 0.25, 1.0, 7.5})
    {
        double lower = 0.0, upper = 0.0;
        t_df(t, 1.0, &lower, &upper);
        const double ref = 0.5 + std::atan(t) / 3.14159265358979323846;
        EXPECT_NEAR(lower / ref, 1.0, 1e-10) << t;
        EXPECT_NEAR(upper / (1.0 - ref), 1.0, 1e-10) << t;
    }
}

TEST(TDf, TailsAreMirrorImages)
{
    for (double df : {0.3, 2.0, 45.5})
        for (double t : {0.1, 1.7, 12.0})
        {
            double l1 = 0, u1 = 0, l2 = 0, u2 = 0;
            t_df(t, df, &l1, &u1);
            t_df(-t, df, &l2, &u2);
            EXPECT_EQ(l1, u2);
            EXPECT_EQ(u1, l2);
        }
}

TEST(TDf, MatchesMpmathTable)
{
    const auto table = qeltest::mLoadRefTable("t_kernel_df.txt");
    ASSERT_GT(table.rows.size(), 100u);
    qeltest::WorstError worst("t_df both tails, df 0.1 to 1e7");
    for (const auto& r : table.rows)
    {
        double lower = 0.0, upper = 0.0;
        t_df(r[1], r[0], &lower, &upper);
        ASSERT_EQ(kernel_error_code, 0) << mWhere(r[0], r[1]);
        if (std::fabs(r[1]) > 1.0 / std::sqrt(KERNEL_TINY))
        {
            // Past the limit the tails are 0 and 1 by construction, whatever
            // the true (for small df still sizeable) far tail.
            EXPECT_EQ(lower, r[1] > 0.0 ? 1.0 : 0.0) << mWhere(r[0], r[1]);
            EXPECT_EQ(upper, r[1] > 0.0 ? 0.0 : 1.0) << mWhere(r[0], r[1]);
            continue;
        }
        for (int k = 0; k < 2; ++k)
        {
            const double got = k == 0 ? lower : upper;
            const double ref = r[2 + k];
            if (ref < 1e-280)
                continue;
            const double err = qeltest::mRelativeError(got, ref);
            worst.mUpdate(err, qeltest::mUlpDistance(got, ref), mWhere(r[0], r[1]));
            EXPECT_LE(err, 1e-8) << mWhere(r[0], r[1]) << (k == 0 ? " lower" : " upper");
        }
    }
    std::cout << worst.mReport() << "\n";
}

TEST(TUpperQt, HalfGivesZeroThroughTheNearHalfBranch)
{
    double x = -1.0;
    t_upper_qt(0.5, 3.0, &x);
    EXPECT_EQ(x, 0.0);
    EXPECT_EQ(kernel_error_code, 0);
    // 1 - 2p below 1e-12, not exactly 0.5.
    t_upper_qt(0.5 - 4e-13, 3.0, &x);
    EXPECT_EQ(x, 0.0);
}

TEST(TUpperQt, BadArgumentsGiveTheNegativeSentinel)
{
    const double bad[][2] = {{0.9e-12, 3.0}, {0.5000001, 3.0}, {0.1, 0.0019},
                             {0.1, 189812530.5}, {kNaN, 3.0}, {0.1, kNaN}};
    for (const auto& b : bad)
    {
        double x = 0.0;
        t_upper_qt(b[0], b[1], &x);
        EXPECT_EQ(x, -kSentinel) << mWhere(b[0], b[1]);
        EXPECT_EQ(kernel_error_code, 2);
        EXPECT_STREQ(kernel_routine_name, "t_upper_qt");
        x = 0.0;
        t_lower_qt(b[0], b[1], &x);
        EXPECT_EQ(x, -kSentinel) << mWhere(b[0], b[1]);
        EXPECT_EQ(kernel_error_code, 2);
        EXPECT_STREQ(kernel_routine_name, "t_lower_qt");
    }
}

TEST(TLowerQt, IsAlwaysMinusTheUpperQuantile)
{
    for (double df : {0.002, 0.1, 1.0, 4.5, 300.0, 1e7})
        for (double p : {1e-12, 1e-5, 0.05, 0.25, 0.26, 0.49, 0.5})
        {
            double xu = 0.0, xl = 0.0;
            t_upper_qt(p, df, &xu);
            t_lower_qt(p, df, &xl);
            EXPECT_EQ(xl, -xu) << mWhere(df, p);
        }
}

TEST(TUpperQt, InvertsTheDistributionFunction)
{
    for (double df : {0.7, 3.0, 60.0})
        for (double p : {1e-9, 0.02, 0.2, 0.3, 0.45})
        {
            double x = 0.0, lower = 0.0, upper = 0.0;
            t_upper_qt(p, df, &x);
            t_df(x, df, &lower, &upper);
            EXPECT_NEAR(upper / p, 1.0, 1e-9) << mWhere(df, p);
        }
}

TEST(TUpperQt, MatchesMpmathTable)
{
    const auto table = qeltest::mLoadRefTable("t_kernel_quant.txt");
    ASSERT_GT(table.rows.size(), 50u);
    qeltest::WorstError worst("t_upper_qt, df 0.1 to 1e7, p 1e-12 to 0.4999");
    for (const auto& r : table.rows)
    {
        double x = 0.0;
        t_upper_qt(r[1], r[0], &x);
        EXPECT_EQ(kernel_error_code, 0) << mWhere(r[0], r[1]);
        const double err = qeltest::mRelativeError(x, r[2]);
        worst.mUpdate(err, qeltest::mUlpDistance(x, r[2]), mWhere(r[0], r[1]));
        EXPECT_LE(err, 1e-8) << mWhere(r[0], r[1]);
    }
    std::cout << worst.mReport() << "\n";
}
