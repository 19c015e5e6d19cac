// The chi-square kernels: argument checks with their codes and routine names,
// the bound that uses the whole noncentrality, the halving onto the gamma
// kernels, and the noncentral tails and quantiles against mpmath tables.
#include "qelmath/kernels/chi2.h"
#include "qelmath/kernels/gamma.h"
#include "qelmath/kernels/gamma_core.h"
#include "qelmath/kernels/kernel_protocol.h"

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

std::string mWhere(double a, double b, double c)
{
    std::ostringstream os;
    os.precision(17);
    os << a << " " << b << " " << c;
    return os.str();
}
} // namespace

TEST(Chi2Ncdf, BadArgumentsForceCodeTwoAndLeaveTheSlots)
{
    const double bad[][3] = {{1.0, -1.0, 0.0},        {-1.0, 2.0, 0.0}, {1.0, 189812530.5, 0.0},
                             {1.0, 2.0, -0.5},         {kNaN, 2.0, 1.0}, {1.0, kNaN, 1.0},
                             {1.0, 2.0, kNaN}};
    for (const auto& b : bad)
    {
        double lower = -7.0, upper = -7.0;
        chi2_ncdf(b[0], b[1], b[2], &lower, &upper);
        EXPECT_EQ(kernel_error_code, 2) << b[0] << " " << b[1] << " " << b[2];
        EXPECT_STREQ(kernel_routine_name, "chi2_ncdf");
        EXPECT_EQ(lower, -7.0);
        EXPECT_EQ(upper, -7.0);
    }
}

TEST(Chi2Ncdf, BoundUsesTheWholeNoncentrality)
{
    // delta with 0.5 + delta + 6.1738 sqrt(delta) just above 94906265: the
    // chi-square routine refuses (code 3), while the gamma routine with half
    // of delta accepts.
    double delta = 94906265.0 - 6.1738 * std::sqrt(94906265.0);
    while (0.5 + delta + 6.1738 * std::sqrt(delta) <= 94906265.0)
        delta += 1.0;
    while (0.5 + (delta - 0.25) + 6.1738 * std::sqrt(delta - 0.25) > 94906265.0)
        delta -= 0.25;
    ASSERT_GT(0.5 + delta + 6.1738 * std::sqrt(delta), 94906265.0);
    ASSERT_LE(0.5 + (delta - 0.25) + 6.1738 * std::sqrt(delta - 0.25), 94906265.0);

    double lower = -7.0, upper = -7.0;
    chi2_ncdf(0.0, 1.0, delta, &lower, &upper);
    EXPECT_EQ(kernel_error_code, 3);
    EXPECT_STREQ(kernel_routine_name, "chi2_ncdf");
    EXPECT_EQ(lower, -7.0);

    gamma_ncdf(0.0, 0.5, delta / 2.0, &lower, &upper);
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_EQ(kernel_method_code, 1);
    EXPECT_EQ(lower, 0.0);
    EXPECT_EQ(upper, 1.0);

    // A quarter less is accepted by the chi-square routine as well.
    chi2_ncdf(0.0, 1.0, delta - 0.25, &lower, &upper);
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(Chi2Ncdf, IsTheGammaKernelAtHalfTheArguments)
{
    for (double x : {0.5, 3.0, 11.0, 40.0})
    {
        double lower, upper, gLower, gUpper;
        chi2_ncdf(x, 5.0, 3.0, &lower, &upper);
        const int route = kernel_method_code;
        gamma_ncdf(x / 2.0, 2.5, 1.5, &gLower, &gUpper);
        EXPECT_EQ(lower, gLower) << x;
        EXPECT_EQ(upper, gUpper) << x;
        EXPECT_EQ(route, kernel_method_code) << x;
    }
    // Central: zero noncentrality is the gamma distribution function.
    double lower, upper, density;
    chi2_ncdf(3.84, 1.0, 0.0, &lower, &upper);
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_LT(std::fabs(upper - 0.050043521248705147) / 0.050043521248705147, 2e-9);
    double gLower, gUpper;
    gamma_df(1.92, 0.5, &gLower, &gUpper, &density);
    EXPECT_EQ(upper, gUpper);
}

TEST(Chi2Ncdf, MatchesMpmathForNoncentralityFromTwoTenthsToTwoThousand)
{
    const double kBound = 1e-8;
    const qeltest::RefTable table = qeltest::mLoadRefTable("chi2_ncdf.txt");
    ASSERT_GT(table.rows.size(), 1000u);
    qeltest::WorstError worstLower("chi2_ncdf lower tail");
    qeltest::WorstError worstUpper("chi2_ncdf upper tail");
    for (const std::vector<double>& row : table.rows)
    {
        ASSERT_EQ(row.size(), 5u);
        const double df = row[0], ncp = row[1], x = row[2], lo = row[3], up = row[4];
        double lower = -7.0, upper = -7.0;
        chi2_ncdf(x, df, ncp, &lower, &upper);
        const std::string where = "df ncp x = " + mWhere(df, ncp, x);
        ASSERT_LE(kernel_error_code, 1) << where;
        if (lo > 1e-280)
        {
            const double e = qeltest::mRelativeError(lower, lo);
            worstLower.mUpdate(e, qeltest::mUlpDistance(lower, lo), where);
            EXPECT_LE(e, kBound) << where << " lower ref " << lo << " got " << lower;
        }
        else
        {
            EXPECT_LT(lower, 1e-270) << where;
        }
        if (up > 1e-280)
        {
            const double e = qeltest::mRelativeError(upper, up);
            worstUpper.mUpdate(e, qeltest::mUlpDistance(upper, up), where);
            EXPECT_LE(e, kBound) << where << " upper ref " << up << " got " << upper;
        }
        else
        {
            EXPECT_LT(upper, 1e-270) << where;
        }
    }
    std::cout << worstLower.mReport() << "\n" << worstUpper.mReport() << std::endl;
    RecordProperty("worst_lower", worstLower.mReport());
    RecordProperty("worst_upper", worstUpper.mReport());
}

TEST(Chi2Quant, BadArgumentsStoreTheNegativeSentinelWithCodeTwo)
{
    const double bad[][2] = {{9e-13, 2.0}, {0.5000001, 2.0}, {0.1, 0.0},
                             {0.1, 189812530.0}, {kNaN, 2.0}, {0.1, kNaN}};
    for (const auto& b : bad)
    {
        double x = 1.0;
        chi2_upper_quant(b[0], b[1], &x);
        EXPECT_EQ(kernel_error_code, 2) << b[0] << " " << b[1];
        EXPECT_STREQ(kernel_routine_name, "chi2_upper_quant");
        EXPECT_EQ(x, -kSentinel);
        x = 1.0;
        chi2_lower_quant(b[0], b[1], &x);
        EXPECT_EQ(kernel_error_code, 2);
        EXPECT_STREQ(kernel_routine_name, "chi2_lower_quant");
        EXPECT_EQ(x, -kSentinel);
    }
}

TEST(Chi2Quant, IsTwiceTheGammaQuantileOfHalfTheDegreesOfFreedom)
{
    // Against the table of gamma quantiles: the chi-square quantile with
    // 2a degrees of freedom is twice the gamma quantile of shape a.
    const qeltest::RefTable table = qeltest::mLoadRefTable("gamma_quantiles.txt");
    ASSERT_GT(table.rows.size(), 300u);
    qeltest::WorstError worst("chi2 quantiles, probability at x", "relative");
    int nChecked = 0;
    for (const std::vector<double>& row : table.rows)
    {
        const double a = row[0], p = row[1], xL = row[3], eL = row[4], xU = row[5], eU = row[6];
        if (a < 0.01 || a > 10000.0)
            continue;
        const std::string where = "df p = " + mWhere(2.0 * a, p, 0.0);
        double x = 0.0, g = 0.0;
        chi2_upper_quant(p, 2.0 * a, &x);
        ASSERT_EQ(kernel_error_code, 0) << where;
        gamma_upper_quant(p, a, &g);
        EXPECT_EQ(x, 2.0 * g) << where;
        double e = std::fabs(x / (2.0 * xU) - 1.0) * eU;
        if (kernel_method_code != 3)
        {
            worst.mUpdate(e, 0.0, where + " upper");
            EXPECT_LE(e, 1e-8) << where;
        }
        if (row[2] > KERNEL_LOG_FLOOR)
        {
            chi2_lower_quant(p, 2.0 * a, &x);
            ASSERT_LE(kernel_error_code, 1) << where;
            e = std::fabs(x / (2.0 * xL) - 1.0) * eL;
            worst.mUpdate(e, 0.0, where + " lower");
            EXPECT_LE(e, 1e-8) << where;
            ++nChecked;
        }
    }
    EXPECT_GT(nChecked, 150);
    std::cout << worst.mReport() << std::endl;
    RecordProperty("worst", worst.mReport());
}
