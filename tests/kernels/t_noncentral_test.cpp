// The noncentral t kernel: argument checks, the mirror in delta, every route
// of the decision of t_ncdf by its method code, the pieces (Owen's V by its
// identity and against quadrature, the closed forms of the far lower tail on
// both sides of their recurrence switch, the saddlepoint value alone, the
// noncentral-beta form) and both tails against an mpmath table computed as an
// integral over the chi distribution.
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/normal.h"
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
const double kNaN = std::numeric_limits<double>::quiet_NaN();
// Measured bounds where t and delta differ in sign (see docs/ACCURACY.md).
// The saddlepoint value of the last resort (routes 2001 to 2003).
constexpr double kSaddleBound = 0.02;
// The saddlepoint value alone on every opposite-sign row of the table, and on
// those with df >= 100 (measured worst in docs/ACCURACY.md).
constexpr double kSaddleAloneBound = 0.3;
constexpr double kSaddleLargeDfBound = 2e-3;
// A sum that lost between three and six digits (the +10000 mark): 1e-9
// relative on the terms times the 1e6 of cancellation the test admits.
constexpr double kMarkedBound = 1e-3;
// Owen's recursion with |delta| >= 10: its terms alternate in sign and cancel
// down to the tiny tail; the measured worst is 2.19 (n = 12, delta = 21,
// t = -1).
constexpr double kOwenLargeDeltaBound = 3.0;
// Every other route: the sum that kept its digits (2), the closed forms,
// Owen's recursion with |delta| < 10.
constexpr double kOtherBound = 1e-6;

struct Result
{
    double lower = -7.0;
    double upper = -7.0;
    int method = -1;
    int code = -1;
};

Result mRun(double t, double df, double delta)
{
    Result r;
    t_ncdf(t, df, delta, &r.lower, &r.upper);
    r.method = kernel_method_code;
    r.code = kernel_error_code;
    return r;
}

std::string mWhere(double a, double b, double c)
{
    std::ostringstream os;
    os.precision(17);
    os << a << " " << b << " " << c;
    return os.str();
}

double mUpperNormal(double x)
{
    double lower = 0.0, upper = 0.0;
    normal_df(x, &lower, &upper);
    return upper;
}
} // namespace

TEST(TNcdf, BadArgumentsForceCodes)
{
    for (double df : {0.0, -2.0, 189812530.5, kNaN})
    {
        const Result r = mRun(1.0, df, 1.0);
        EXPECT_EQ(r.code, 2) << df;
        EXPECT_STREQ(kernel_routine_name, "t_ncdf");
        EXPECT_EQ(r.lower, -7.0);
    }
    EXPECT_EQ(mRun(kNaN, 3.0, 1.0).code, 2);
    EXPECT_EQ(mRun(1.0, 3.0, kNaN).code, 2);
    // delta^2/2 + df/2 + 6.1738 sqrt(delta^2/2) above 94906265.
    const Result big = mRun(1.0, 10.0, 14000.0);
    EXPECT_EQ(big.code, 3);
    EXPECT_STREQ(kernel_routine_name, "t_ncdf");
    EXPECT_EQ(big.lower, -7.0);
}

TEST(TNcdf, ZeroNoncentralityEqualsCentral)
{
    for (double df : {0.5, 3.0, 40.0})
        for (double t : {-8.0, -0.4, 0.0, 1.3, 25.0})
        {
            double lower = 0.0, upper = 0.0;
            t_df(t, df, &lower, &upper);
            const Result r = mRun(t, df, 0.0);
            EXPECT_EQ(r.lower, lower) << mWhere(t, df, 0.0);
            EXPECT_EQ(r.upper, upper) << mWhere(t, df, 0.0);
        }
}

TEST(TNcdf, NegativeDeltaIsTheMirrorWithTailsSwapped)
{
    for (double df : {1.0, 4.0, 15.5, 2000.0})
        for (double delta : {0.3, 2.0, 7.0})
            for (double t : {0.2, 1.5, 12.0, 35.0})
            {
                const Result a = mRun(t, df, -delta);
                const Result b = mRun(-t, df, delta);
                EXPECT_EQ(a.lower, b.upper) << mWhere(t, df, delta);
                EXPECT_EQ(a.upper, b.lower) << mWhere(t, df, delta);
                EXPECT_EQ(a.method, b.method);
            }
}

TEST(TNcdf, TailAtTheLimit)
{
    const Result r = mRun(-1e300, 5.0, 2.0);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.upper, 1.0);
    EXPECT_EQ(r.code, 0);
}

TEST(TNcdfRoute, Method1LargeDeltaNegativeT)
{
    const Result r = mRun(-1.0, 5.0, 22.0);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.upper, 1.0);
    EXPECT_EQ(r.method, 1);
    EXPECT_EQ(r.code, 0);
}

TEST(TNcdfRoute, Method2SumKeptItsDigits)
{
    const Result r = mRun(-1.0, 10.0, 0.5);
    EXPECT_EQ(r.method, 2);
    EXPECT_EQ(r.code, 0);
    EXPECT_GT(r.lower, 0.05);
}

TEST(TNcdfRoute, Method2000SaddlepointIsZero)
{
    const Result r = mRun(-40.0, 999.0, 15.0);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.upper, 1.0);
    EXPECT_EQ(r.method, 2000);
    EXPECT_EQ(t_ncdf_left(-40.0, 999.0, 15.0), 0.0);
}

TEST(TNcdfRoute, Method2001ThousandDegreesGiveTheSaddlepointValue)
{
    const double P = t_ncdf_left(-2.0, 1000.0, 1.5);
    const Result r = mRun(-2.0, 1000.0, 1.5);
    EXPECT_EQ(r.lower, P);
    EXPECT_EQ(r.upper, 1.0 - P);
    EXPECT_EQ(r.method, 2001);
    EXPECT_EQ(r.code, 0);
    EXPECT_GT(P, 0.0);
}

TEST(TNcdfRoute, Method2002And2003SumLostAllDigits)
{
    // df above 30: 2002; df at most 30: 2003.  The value is the saddlepoint.
    const Result a = mRun(-5.0, 40.0, 5.0);
    EXPECT_EQ(a.method, 2002);
    EXPECT_EQ(a.code, 1);
    EXPECT_EQ(a.lower, t_ncdf_left(-5.0, 40.0, 5.0));
    const Result b = mRun(-5.0, 20.0, 5.0);
    EXPECT_EQ(b.method, 2003);
    EXPECT_EQ(b.code, 1);
    EXPECT_EQ(b.lower, t_ncdf_left(-5.0, 20.0, 5.0));
    // Through the beta form directly, with its fallback and counters.
    int accurate = 0;
    double lower = 0.0, upper = 0.0;
    kernel_enter("t_ncdf");
    t_ncdf_beta(-5.0, 20.0, 5.0, 0.125, &accurate, &lower, &upper);
    EXPECT_EQ(lower, 0.125);
    EXPECT_EQ(upper, 0.875);
    EXPECT_EQ(accurate, 0);
    EXPECT_EQ(kernel_method_code, 2003);
    EXPECT_EQ(kernel_terms, 0);
    EXPECT_EQ(kernel_terms_a, 0);
    EXPECT_EQ(kernel_terms_b, 0);
    EXPECT_EQ(kernel_error_code, 1);
}

TEST(TNcdfRoute, Method3AtZeroAndWhenTheSumStands)
{
    int accurate = 0;
    double lower = 0.0, upper = 0.0;
    t_ncdf_beta(0.0, 7.0, 1.25, 0.0, &accurate, &lower, &upper);
    EXPECT_EQ(kernel_method_code, 3);
    EXPECT_EQ(lower, mUpperNormal(1.25));
    EXPECT_DOUBLE_EQ(upper, 1.0 - mUpperNormal(1.25));
    const Result r = mRun(0.0, 7.0, 1.25);
    EXPECT_EQ(r.method, 3);
    EXPECT_EQ(r.lower, lower);
    // n from 7 to 12, -25 <= t <= -2, digits partly lost: the sum stands with
    // method 3 and the +10000 mark.
    const Result s = mRun(-5.0, 10.0, 2.0);
    EXPECT_EQ(s.method, 10003);
    EXPECT_EQ(s.code, 1);
    // 13 or more degrees of freedom.
    const Result u = mRun(-5.0, 20.0, 2.0);
    EXPECT_EQ(u.method, 10003);
    EXPECT_EQ(u.code, 1);
}

TEST(TNcdfRoute, Method3000And3001ClosedForms)
{
    const Result a = mRun(-12.0, 5.0, 2.0);
    EXPECT_EQ(a.method, 3000);
    EXPECT_EQ(a.code, 1);
    EXPECT_EQ(a.lower, t_ncdf_table(-12.0, 5.0, 2.0));
    EXPECT_EQ(a.upper, 1.0 - a.lower);
    const Result b = mRun(-30.0, 10.0, 2.0);
    EXPECT_EQ(b.method, 3001);
    EXPECT_EQ(b.code, 1);
    EXPECT_EQ(b.lower, t_ncdf_table(-30.0, 10.0, 2.0));
}

TEST(TNcdfRoute, Method4000To4002OwenRecursion)
{
    const Result a = mRun(-5.0, 1.0, 5.0);
    EXPECT_EQ(a.method, 4000);
    EXPECT_EQ(a.code, 0);
    EXPECT_EQ(a.lower, t_ncdf_owen(-5.0, 1.0, 5.0));
    const Result b = mRun(-5.0, 3.0, 5.0);
    EXPECT_EQ(b.method, 4001);
    EXPECT_EQ(b.code, 1);
    EXPECT_EQ(b.lower, t_ncdf_owen(-5.0, 3.0, 5.0));
    const Result c = mRun(-1.0, 8.0, 5.0);
    EXPECT_EQ(c.method, 4002);
    EXPECT_EQ(c.code, 1);
    EXPECT_EQ(c.lower, t_ncdf_owen(-1.0, 8.0, 5.0));
}

TEST(TNcdfRoute, Mark10000WhenSomeDigitsWereLost)
{
    const Result r = mRun(-12.0, 8.0, 2.0);
    EXPECT_EQ(r.method, 10003);
    EXPECT_EQ(r.code, 1);
    EXPECT_GE(r.method, 10000);
}

TEST(OwenTail, MatchesQuadratureAndItsIdentity)
{
    // V(h, a) = integral from h to infinity of phi(x) Q(a x) dx, from mpmath
    // (30 digits): mp.quad(lambda x: mp.npdf(x)*mp.ncdf(-a*x), [h, h+3, h+10, mp.inf]).
    const double ref[][3] = {{1.0, 0.9, 0.015820702378547601068},
                             {0.5, 0.8, 0.061649096427153043303},
                             {2.0, 1.2, 0.000078146785777480803861},
                             {0.7, 0.5, 0.064314530154702443902},
                             {3.0, 0.3, 0.00022015928318147835809},
                             {0.5, 3.0, 0.003184726286975037116},
                             {2.0, 1.5, 9.9460267378646137076e-6},
                             {0.3, 2.0, 0.028439982972751297522},
                             {1.2, 5.0, 5.8494994591745918289e-12}};
    for (const auto& r : ref)
    {
        double v = 0.0;
        ASSERT_EQ(owen_tail(r[0], r[1], &v), 0);
        EXPECT_NEAR(v / r[2], 1.0, 1e-8) << r[0] << " " << r[1];
        double w = 0.0;
        ASSERT_EQ(owen_tail(r[1] * r[0], 1.0 / r[1], &w), 0);
        EXPECT_NEAR((v + w) / (mUpperNormal(r[0]) * mUpperNormal(r[1] * r[0])), 1.0, 1e-8);
    }
}

TEST(OwenTail, AtOneIsHalfTheSquaredTail)
{
    for (double h : {0.1, 1.0, 2.5})
    {
        double v = 0.0;
        ASSERT_EQ(owen_near_one(h, 1.0, &v), 0);
        EXPECT_NEAR(v / (mUpperNormal(h) * mUpperNormal(h) / 2.0), 1.0, 1e-14);
    }
}

TEST(TNcdfTable, ClosedFormsMatchMpmathFarInTheLowerTail)
{
    const auto table = qeltest::mLoadRefTable("t_noncentral_far.txt");
    ASSERT_EQ(table.rows.size(), 96u);
    qeltest::WorstError worst("t_ncdf_table, n 1 to 12");
    for (const auto& r : table.rows)
    {
        const double got = t_ncdf_table(r[2], r[0], r[1]);
        const double err = qeltest::mRelativeError(got, r[3]);
        worst.mUpdate(err, qeltest::mUlpDistance(got, r[3]), mWhere(r[0], r[1], r[2]));
        EXPECT_LE(err, 1e-9) << mWhere(r[0], r[1], r[2]);
    }
    std::cout << worst.mReport() << "\n";
}

TEST(TNcdf, MatchesMpmathTable)
{
    const auto table = qeltest::mLoadRefTable("t_noncentral_ncdf.txt");
    ASSERT_GT(table.rows.size(), 500u);
    qeltest::WorstError same("t_ncdf, t and delta of the same sign, both tails");
    qeltest::WorstError saddle("t_ncdf, opposite signs, saddlepoint routes 2001-2003");
    qeltest::WorstError marked("t_ncdf, opposite signs, sum with the +10000 mark");
    qeltest::WorstError owenLarge("t_ncdf, opposite signs, Owen's recursion, |delta| >= 10");
    qeltest::WorstError other("t_ncdf, opposite signs, other routes");
    int zeroByDesign = 0;
    for (const auto& r : table.rows)
    {
        const double df = r[0], delta = r[1], t = r[2];
        const Result res = mRun(t, df, delta);
        ASSERT_LT(res.code, 2) << mWhere(df, delta, t);
        if (res.method == 1)
        {
            // |delta| above 21.3 with t on the other side: the far tail is 0
            // by construction (the true one is below 1e-98 on these rows).
            EXPECT_EQ(delta > 0.0 ? res.lower : res.upper, 0.0) << mWhere(df, delta, t);
            EXPECT_LT(delta > 0.0 ? r[3] : r[4], 1e-98) << mWhere(df, delta, t);
            ++zeroByDesign;
            continue;
        }
        const bool bSame = t * delta >= 0.0;
        for (int k = 0; k < 2; ++k)
        {
            const double got = k == 0 ? res.lower : res.upper;
            const double ref = r[3 + k];
            if (ref < 1e-280)
            {
                EXPECT_LE(got, 1e-280) << mWhere(df, delta, t);
                continue;
            }
            const double err = qeltest::mRelativeError(got, ref);
            const double ulps = qeltest::mUlpDistance(got, ref);
            const std::string where = mWhere(df, delta, t) + " m=" + std::to_string(res.method);
            if (bSame)
            {
                same.mUpdate(err, ulps, where);
                EXPECT_LE(err, 1e-8) << where;
            }
            else if (res.method >= 2001 && res.method <= 2003)
            {
                saddle.mUpdate(err, ulps, where);
                EXPECT_LE(err, kSaddleBound) << where;
            }
            else if (res.method >= 10000)
            {
                marked.mUpdate(err, ulps, where);
                EXPECT_LE(err, kMarkedBound) << where;
            }
            else if (res.method >= 4000 && res.method <= 4002 && std::fabs(delta) >= 10.0)
            {
                owenLarge.mUpdate(err, ulps, where);
                EXPECT_LE(err, kOwenLargeDeltaBound) << where;
            }
            else
            {
                other.mUpdate(err, ulps, where);
                EXPECT_LE(err, kOtherBound) << where;
            }
        }
    }
    std::cout << zeroByDesign << " rows with the far tail 0 by design (route 1)\n";
    std::cout << saddle.mReport() << "\n" << marked.mReport() << "\n" << owenLarge.mReport() << "\n";
    std::cout << same.mReport() << "\n" << other.mReport() << "\n";
}

TEST(TNcdf, ExtremeArgumentsGiveTailsThatAddUp)
{
    for (double df : {0.5, 1e-3, 1.0, 6.0, 12.0, 999.0, 1e5, 1e8})
        for (double delta : {1e-300, -1e-300, 1e-10, 0.7, -3.0, 21.0, 30.0, -37.0})
            for (double t : {-1e10, -50.0, -1e-300, 1e-300, 0.9, 1e10})
            {
                const Result r = mRun(t, df, delta);
                ASSERT_LT(r.code, 2) << mWhere(t, df, delta) << " " << kernel_routine_name << " m=" << r.method;
                EXPECT_GE(r.lower, 0.0) << mWhere(t, df, delta);
                EXPECT_GE(r.upper, 0.0) << mWhere(t, df, delta);
                EXPECT_NEAR(r.lower + r.upper, 1.0, 1e-9) << mWhere(t, df, delta);
            }
}

TEST(TNcdfLeft, SaddlepointMatchesMpmathOnEveryOppositeSignRow)
{
    // The saddlepoint value alone, on every row of the table where t and
    // delta differ in sign and the far tail is above 1e-280 (mirrored so that
    // t < 0 < delta), whatever route t_ncdf itself takes there.
    const auto table = qeltest::mLoadRefTable("t_noncentral_ncdf.txt");
    qeltest::WorstError all("t_ncdf_left, every opposite-sign row");
    qeltest::WorstError large("t_ncdf_left, df >= 100");
    int rows = 0;
    for (const auto& r : table.rows)
    {
        double df = r[0], delta = r[1], t = r[2];
        if (t * delta >= 0.0)
            continue;
        double ref = r[3];
        if (delta < 0.0)
        {
            delta = -delta;
            t = -t;
            ref = r[4];
        }
        if (ref < 1e-280)
            continue;
        const double got = t_ncdf_left(t, df, delta);
        const double err = qeltest::mRelativeError(got, ref);
        const std::string where = mWhere(df, delta, t);
        all.mUpdate(err, qeltest::mUlpDistance(got, ref), where);
        EXPECT_LE(err, kSaddleAloneBound) << where;
        if (df >= 100.0)
        {
            large.mUpdate(err, qeltest::mUlpDistance(got, ref), where);
            EXPECT_LE(err, kSaddleLargeDfBound) << where;
        }
        ++rows;
    }
    EXPECT_GT(rows, 100);
    std::cout << rows << " rows\n" << all.mReport() << "\n" << large.mReport() << "\n";
}

TEST(TNcdfTable, ClosedFormsMatchMpmathOnBothSidesOfTheRecurrenceSwitch)
{
    // delta from 0.6 to 1.5: the repeated integrals of the normal tail run
    // upward below delta = 0.7 and downward from 0.7 on; both sides of the
    // switch and the switch itself, every n from 1 to 12.
    const auto table = qeltest::mLoadRefTable("t_noncentral_switch.txt");
    ASSERT_EQ(table.rows.size(), 240u);
    qeltest::WorstError below("t_ncdf_table, delta 0.6 (upward)");
    qeltest::WorstError above("t_ncdf_table, delta 0.7 to 1.5 (downward)");
    for (const auto& r : table.rows)
    {
        const double got = t_ncdf_table(r[2], r[0], r[1]);
        const double err = qeltest::mRelativeError(got, r[3]);
        auto& worst = r[1] < 0.7 ? below : above;
        worst.mUpdate(err, qeltest::mUlpDistance(got, r[3]), mWhere(r[0], r[1], r[2]));
        EXPECT_LE(err, 1e-9) << mWhere(r[0], r[1], r[2]);
    }
    std::cout << below.mReport() << "\n" << above.mReport() << "\n";
}
