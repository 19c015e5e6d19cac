// The gamma kernels: the central tails and density over shapes up to 1e6, the
// noncentral distribution function (argument checks, trivial exits, both sums
// and the switch between them) and the two quantiles (every route with its
// code), against mpmath tables.
#include "qelmath/kernels/gamma.h"
#include "qelmath/kernels/gamma_core.h"
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/normal.h"

#include "support/reftable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <iostream>
#include <limits>
#include <sstream>
#include <string>

namespace
{
constexpr double kSentinel = 1.7976931348623157e+308;
const double kNaN = std::numeric_limits<double>::quiet_NaN();

struct Tails
{
    double lower = -7.0;
    double upper = -7.0;
    int route = -1;
    int code = -1;
    std::string name;
};

Tails mNcdf(double x, double a, double delta)
{
    Tails r;
    gamma_ncdf(x, a, delta, &r.lower, &r.upper);
    r.route = kernel_method_code;
    r.code = kernel_error_code;
    r.name = kernel_routine_name;
    return r;
}

struct Quant
{
    double x = -7.0;
    int route = -1;
    int code = -1;
    int terms = -1;
    std::string name;
};

Quant mUpperQuant(double p, double a)
{
    Quant q;
    gamma_upper_quant(p, a, &q.x);
    q.route = kernel_method_code;
    q.code = kernel_error_code;
    q.terms = kernel_terms;
    q.name = kernel_routine_name;
    return q;
}

Quant mLowerQuant(double p, double a)
{
    Quant q;
    gamma_lower_quant(p, a, &q.x);
    q.route = kernel_method_code;
    q.code = kernel_error_code;
    q.terms = kernel_terms;
    q.name = kernel_routine_name;
    return q;
}

// The Cornish-Fisher start of the upper quantile, written out here with the
// same order of operations, so that the comparison can be exact.
double mCornishFisherStart(double a, double z)
{
    const double s = std::sqrt(a);
    const double z2 = z * z;
    return a + s * z + (z2 - 1.0) / 3.0 + (z2 - 7.0) * z / (36.0 * s) -
           ((3.0 * z2 + 7.0) * z2 - 16.0) / (810.0 * a);
}

std::string mWhere(double a, double b, double c)
{
    std::ostringstream os;
    os.precision(17);
    os << a << " " << b << " " << c;
    return os.str();
}
} // namespace

// ---------------------------------------------------------------------------
// Central gamma at the edges named for the family.

TEST(GammaDfEdges, ZeroPointGivesRouteOneAndLeavesTheDensity)
{
    double lower = -7.0, upper = -7.0, density = 42.0;
    gamma_df(0.0, 2.5, &lower, &upper, &density);
    EXPECT_EQ(lower, 0.0);
    EXPECT_EQ(upper, 1.0);
    EXPECT_EQ(density, 42.0);
    EXPECT_EQ(kernel_method_code, 1);
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(GammaDfEdges, IntegerShapeJustAboveItsMedianEndsTheFiniteSeriesOnAZeroFactor)
{
    // For an integer a the factor a - a stops the scan of J: route 60 (J
    // route 0), no continued fraction (kernel_terms_a stays 0), and the scan
    // length is a itself when the terms have not fallen below 1e-9 first.
    for (double a : {1.0, 2.0, 3.0, 5.0, 10.0, 20.0})
    {
        const double x = a - 1.0 / 3.0 + 1e-9;
        double lower, upper, density;
        gamma_df(x, a, &lower, &upper, &density);
        EXPECT_EQ(kernel_method_code, 60) << a;
        EXPECT_EQ(kernel_terms, static_cast<int>(a)) << a;
        EXPECT_EQ(kernel_terms_a, 0) << a;
        EXPECT_EQ(kernel_error_code, 0) << a;
        // Q(a, x) for integer a is the Poisson sum e^-x sum x^k / k!.
        double s = 0.0, t = std::exp(-x);
        for (int k = 0; k < static_cast<int>(a); ++k)
        {
            s += t;
            t *= x / (k + 1);
        }
        EXPECT_LT(std::fabs(upper - s) / s, 2e-9) << a;
    }
    // Any size of x: far in the upper tail the J route is still 0, whether the
    // tail is significant (100), negligible (90) or directly formed (60).
    for (double a : {2.0, 7.0, 40.0, 1e6})
    {
        for (double factor : {1.5, 3.0, 10.0, 150.0})
        {
            double lower, upper, density;
            gamma_df(a * factor, a, &lower, &upper, &density);
            const int route = kernel_method_code;
            EXPECT_TRUE(route == 60 || route == 80 || route == 90 || route == 100)
                << a << " " << factor << " route " << route;
            EXPECT_EQ(kernel_terms_a, 0) << a << " " << factor;
        }
    }
}

TEST(GammaDfEdges, LargestShapeIsAcceptedByTheTailsButNotByTheQuantile)
{
    double lower = -7.0, upper = -7.0, density = -7.0;
    gamma_df(94906265.0, 94906265.0, &lower, &upper, &density);
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_GT(lower, 0.4);
    EXPECT_LT(lower, 0.6);
    EXPECT_NEAR(lower + upper, 1.0, 1e-15);

    const Quant q = mUpperQuant(0.25, 94906265.0);
    EXPECT_EQ(q.code, 2);
    EXPECT_EQ(q.name, "gamma_upper_quant");
    EXPECT_EQ(q.x, -kSentinel);
    // Just below it the Cornish-Fisher start is returned unrefined.
    const Quant below = mUpperQuant(0.25, 94906264.0);
    EXPECT_EQ(below.code, 0);
    EXPECT_EQ(below.route, 5);
}

// ---------------------------------------------------------------------------
// Central gamma against mpmath, shapes 1e-3 to 1e6.

TEST(GammaDfWide, MatchesMpmathForShapesUpToOneMillion)
{
    // Series and continued fraction stop at 1e-9, so about 1e-9 relative is
    // what the algorithm gives; the bound leaves a factor 2 over that.
    const double kBound = 2e-9;
    const qeltest::RefTable table = qeltest::mLoadRefTable("gamma_df_wide.txt");
    ASSERT_GT(table.rows.size(), 300u);
    qeltest::WorstError worstP("gamma_df P(a, x), a to 1e6");
    qeltest::WorstError worstQ("gamma_df Q(a, x), a to 1e6");
    qeltest::WorstError worstD("gamma_df density, a to 1e6");
    int nLargeShapeRows = 0;
    for (const std::vector<double>& row : table.rows)
    {
        ASSERT_EQ(row.size(), 5u);
        const double a = row[0], x = row[1], p = row[2], q = row[3], d = row[4];
        double lower = -7.0, upper = -7.0, density = -7.0;
        gamma_df(x, a, &lower, &upper, &density);
        const std::string where = "a x = " + mWhere(a, x, 0.0);
        ASSERT_LE(kernel_error_code, 1) << where;
        if (a > 1e5)
            ++nLargeShapeRows;
        if (x < KERNEL_TINY)
        {
            EXPECT_EQ(lower, 0.0) << where;
            EXPECT_EQ(upper, 1.0) << where;
            continue;
        }
        if (x > KERNEL_MAX_X)
        {
            EXPECT_EQ(lower, 1.0) << where;
            EXPECT_EQ(upper, 0.0) << where;
            continue;
        }
        if (p > 1e-280)
        {
            const double e = qeltest::mRelativeError(lower, p);
            worstP.mUpdate(e, qeltest::mUlpDistance(lower, p), where);
            EXPECT_LE(e, kBound) << where << " P ref " << p << " got " << lower;
        }
        else
        {
            EXPECT_LT(lower, 1e-270) << where;
        }
        if (q > 1e-280)
        {
            const double e = qeltest::mRelativeError(upper, q);
            worstQ.mUpdate(e, qeltest::mUlpDistance(upper, q), where);
            EXPECT_LE(e, kBound) << where << " Q ref " << q << " got " << upper;
        }
        else
        {
            EXPECT_LT(upper, 1e-270) << where;
        }
        // The density is formed in logarithms from terms of the size of a
        // and x; its relative error grows like 1e-16 (a + x).
        if (d > 1e-280 && d < 1e300)
        {
            const double e = qeltest::mRelativeError(density, d);
            worstD.mUpdate(e, qeltest::mUlpDistance(density, d), where);
            EXPECT_LE(e, 1e-12 + 2e-16 * (a + x)) << where << " density ref " << d << " got " << density;
        }
    }
    EXPECT_GT(nLargeShapeRows, 60);
    std::cout << worstP.mReport() << "\n" << worstQ.mReport() << "\n" << worstD.mReport() << std::endl;
    RecordProperty("worst_P", worstP.mReport());
    RecordProperty("worst_Q", worstQ.mReport());
    RecordProperty("worst_density", worstD.mReport());
}

// ---------------------------------------------------------------------------
// Noncentral gamma: arguments and trivial exits.

TEST(GammaNcdf, BadArgumentsForceCodeTwoAndLeaveTheSlots)
{
    const double bad[][3] = {{-1.0, 2.0, 1.0},    {1.0, -0.5, 1.0}, {1.0, 94906265.5, 1.0},
                             {1.0, 2.0, -1e-300}, {kNaN, 2.0, 1.0}, {1.0, kNaN, 1.0},
                             {1.0, 2.0, kNaN}};
    for (const auto& b : bad)
    {
        const Tails r = mNcdf(b[0], b[1], b[2]);
        EXPECT_EQ(r.code, 2) << b[0] << " " << b[1] << " " << b[2];
        EXPECT_EQ(r.name, "gamma_ncdf");
        EXPECT_EQ(r.lower, -7.0);
        EXPECT_EQ(r.upper, -7.0);
    }
}

TEST(GammaNcdf, TooLargeAShapeAndNoncentralityTogetherIsCodeThree)
{
    // a + delta + 6.1738 sqrt(delta) just above 94906265.
    const double delta = 1e6;
    const double a = 94906265.0 - delta - 6.1738 * 1000.0 + 0.5;
    const Tails r = mNcdf(a, a, delta);
    EXPECT_EQ(r.code, 3);
    EXPECT_EQ(r.name, "gamma_ncdf");
    EXPECT_EQ(r.lower, -7.0);
    const Tails ok = mNcdf(0.0, a - 1.0, delta);
    EXPECT_EQ(ok.code, 0);
    EXPECT_EQ(ok.route, 1);
}

TEST(GammaNcdf, ZeroNoncentralityIsTheCentralDistribution)
{
    for (double x : {0.0, 0.3, 2.0, 7.5, 40.0})
    {
        double lower, upper, density;
        gamma_df(x, 3.25, &lower, &upper, &density);
        const int route = kernel_method_code;
        const Tails r = mNcdf(x, 3.25, 0.0);
        EXPECT_EQ(r.lower, lower) << x;
        EXPECT_EQ(r.upper, upper) << x;
        EXPECT_EQ(r.route, route) << x;
        EXPECT_EQ(r.code, 0) << x;
    }
    // Shape 0 passes the noncentral test but not the central one.
    const Tails r = mNcdf(1.0, 0.0, 0.0);
    EXPECT_EQ(r.code, 2);
    EXPECT_EQ(r.name, "gamma_df");
}

TEST(GammaNcdf, ArgumentsBelowTheSmallestNonzeroAreZero)
{
    // A point below KERNEL_TINY is the point 0, as in gamma_df.
    const Tails r = mNcdf(1e-320, 0.5, 0.004);
    EXPECT_EQ(r.route, 1);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.upper, 1.0);
    EXPECT_EQ(r.code, 0);
    // A noncentrality below it is 0: the central distribution.
    double lower, upper, density;
    gamma_df(0.7, 0.5, &lower, &upper, &density);
    const Tails c = mNcdf(0.7, 0.5, 1e-300);
    EXPECT_EQ(c.lower, lower);
    EXPECT_EQ(c.upper, upper);
    EXPECT_EQ(c.code, 0);
}

TEST(GammaNcdf, HugeTailToDensityRatioAtThePeakKeepsTheTerm)
{
    // Tiny shape and point: the lower sum passes 0.9 and the upper sum peaks
    // at j = 2, where J is near 1e300 and the density near 1e-300.  The upper
    // tail is the sum of w(j) Q(a + j, x), about delta.
    const double x = 1e-287, a = 1e-15, delta = 8.077760785235841e-13;
    double expected = 0.0, w = std::exp(-delta);
    for (int j = 0; j < 6; ++j)
    {
        double lower, upper, density;
        gamma_df(x, a + j, &lower, &upper, &density);
        expected += w * upper;
        w *= delta / (j + 1);
    }
    const Tails r = mNcdf(x, a, delta);
    EXPECT_EQ(r.route, 124);
    EXPECT_EQ(r.code, 0);
    EXPECT_LT(std::fabs(r.upper - expected) / expected, 1e-8) << r.upper << " " << expected;
}

TEST(GammaNcdf, ZeroPointIsRouteOneAndHugePointIsRouteTwo)
{
    const Tails r0 = mNcdf(0.0, 2.0, 5.0);
    EXPECT_EQ(r0.lower, 0.0);
    EXPECT_EQ(r0.upper, 1.0);
    EXPECT_EQ(r0.route, 1);
    EXPECT_EQ(r0.code, 0);
    const Tails r2 = mNcdf(189812530.5, 2.0, 5.0);
    EXPECT_EQ(r2.lower, 1.0);
    EXPECT_EQ(r2.upper, 0.0);
    EXPECT_EQ(r2.route, 2);
    EXPECT_EQ(r2.code, 0);
}

// ---------------------------------------------------------------------------
// Noncentral gamma: the sums.

TEST(GammaNcdf, PointBelowTheMeanSumsTheLowerSide)
{
    const Tails r = mNcdf(3.0, 2.0, 4.0);
    EXPECT_EQ(r.route, 13);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.upper, 1.0 - r.lower);
    EXPECT_GT(kernel_terms, 0);
}

TEST(GammaNcdf, PointAboveTheMeanSumsTheUpperSide)
{
    const Tails r = mNcdf(9.0, 2.0, 4.0);
    EXPECT_EQ(r.route, 24);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.lower, 1.0 - r.upper);
}

TEST(GammaNcdf, LowerSumAboveNineTenthsSwitchesToTheUpperSide)
{
    // With a small shape and noncentrality nearly all the mass lies below the
    // mean: the lower sum passes 0.9 and the upper sum is taken instead.
    const Tails r = mNcdf(0.019, 0.01, 0.01);
    EXPECT_EQ(r.route, 124);
    EXPECT_EQ(r.code, 0);
    EXPECT_GT(r.lower, 0.9);
    EXPECT_EQ(r.lower, 1.0 - r.upper);
}

TEST(GammaNcdf, FarLowerTailBelowTheFloorIsAnExactZeroWithCodeOne)
{
    const Tails r = mNcdf(1e-280, 5.0, 3.0);
    EXPECT_EQ(r.route, 12);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.upper, 1.0);
}

TEST(GammaNcdf, FarUpperTailBelowTheFloorIsAnExactZeroWithCodeOne)
{
    const Tails r = mNcdf(3000.0, 5.0, 3.0);
    EXPECT_EQ(r.route, 23);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.upper, 0.0);
    EXPECT_EQ(r.lower, 1.0);
}

TEST(GammaNcdf, ShapeZeroHasItsPointMassAtZero)
{
    // Shape 0: P(X = 0) = e^-delta, and for x > 0 the lower tail is
    // e^-delta + sum over j >= 1 of w(j) P(j, x).
    const double delta = 0.5, x = 0.7;
    double expected = std::exp(-delta);
    double w = std::exp(-delta);
    for (int j = 1; j < 40; ++j)
    {
        w *= delta / j;
        double lower, upper, density;
        gamma_df(x, j, &lower, &upper, &density);
        expected += w * lower;
    }
    const Tails r = mNcdf(x, 0.0, delta);
    EXPECT_EQ(r.code, 0);
    EXPECT_LT(std::fabs(r.lower - expected) / expected, 1e-9);
    const Tails r1 = mNcdf(1e-200, 0.0, delta);
    EXPECT_LT(std::fabs(r1.lower - std::exp(-delta)), 1e-15);
    // A shape below KERNEL_TINY is a shape 0 at the peak.
    const Tails r2 = mNcdf(x, 1e-320, delta);
    EXPECT_EQ(r2.code, 0);
    EXPECT_LT(std::fabs(r2.lower - expected) / expected, 1e-9);
}

TEST(GammaNcdf, MatchesMpmathForNoncentralityFromATenthToOneThousand)
{
    // The Poisson weights are cut at 5e-10 and the sums stop when the rest is
    // below 5e-10 of the sum; with the 1e-9 of the central series the kernel
    // stays within 1e-8 relative wherever the tail is above 1e-280.
    const double kBound = 1e-8;
    const qeltest::RefTable table = qeltest::mLoadRefTable("gamma_ncdf.txt");
    ASSERT_GT(table.rows.size(), 1000u);
    qeltest::WorstError worstLower("gamma_ncdf lower tail");
    qeltest::WorstError worstUpper("gamma_ncdf upper tail");
    for (const std::vector<double>& row : table.rows)
    {
        ASSERT_EQ(row.size(), 5u);
        const double a = row[0], delta = row[1], x = row[2], lo = row[3], up = row[4];
        const Tails r = mNcdf(x, a, delta);
        const std::string where = "a delta x = " + mWhere(a, delta, x);
        ASSERT_LE(r.code, 1) << where;
        if (lo > 1e-280)
        {
            const double e = qeltest::mRelativeError(r.lower, lo);
            worstLower.mUpdate(e, qeltest::mUlpDistance(r.lower, lo), where);
            EXPECT_LE(e, kBound) << where << " lower ref " << lo << " got " << r.lower;
        }
        else
        {
            EXPECT_LT(r.lower, 1e-270) << where;
        }
        if (up > 1e-280)
        {
            const double e = qeltest::mRelativeError(r.upper, up);
            worstUpper.mUpdate(e, qeltest::mUlpDistance(r.upper, up), where);
            EXPECT_LE(e, kBound) << where << " upper ref " << up << " got " << r.upper;
        }
        else
        {
            EXPECT_LT(r.upper, 1e-270) << where;
        }
    }
    std::cout << worstLower.mReport() << "\n" << worstUpper.mReport() << std::endl;
    RecordProperty("worst_lower", worstLower.mReport());
    RecordProperty("worst_upper", worstUpper.mReport());
}

// ---------------------------------------------------------------------------
// Quantiles: arguments and routes.

TEST(GammaQuant, BadArgumentsStoreTheNegativeSentinelWithCodeTwo)
{
    const double bad[][2] = {{9e-13, 2.0}, {0.5000001, 2.0}, {0.1, 0.0}, {0.1, -1.0},
                             {0.1, 94906265.0}, {kNaN, 2.0}, {0.1, kNaN}};
    for (const auto& b : bad)
    {
        const Quant u = mUpperQuant(b[0], b[1]);
        EXPECT_EQ(u.code, 2) << b[0] << " " << b[1];
        EXPECT_EQ(u.name, "gamma_upper_quant");
        EXPECT_EQ(u.x, -kSentinel);
        const Quant l = mLowerQuant(b[0], b[1]);
        EXPECT_EQ(l.code, 2) << b[0] << " " << b[1];
        EXPECT_EQ(l.name, "gamma_lower_quant");
        EXPECT_EQ(l.x, -kSentinel);
    }
    // Both ends of p are admitted.
    EXPECT_EQ(mUpperQuant(1e-12, 2.0).code, 0);
    EXPECT_EQ(mUpperQuant(0.5, 2.0).code, 0);
}

TEST(GammaUpperQuant, NegligibleShapeGivesZeroWithCodeOne)
{
    const Quant q = mUpperQuant(0.1, 1e-15);
    EXPECT_EQ(q.x, 0.0);
    EXPECT_EQ(q.code, 1);
    EXPECT_EQ(q.route, 0);
    EXPECT_EQ(q.name, "gamma_upper_quant");
    // 2e-15 is past the first test: with p = 1e-12 the start exp(-p / a)
    // is below 1e-9 and stands (route 3); with p = 0.5 it is below the floor.
    const Quant past = mUpperQuant(1e-12, 2e-15);
    EXPECT_EQ(past.route, 3);
    EXPECT_EQ(past.code, 0);
    EXPECT_GT(past.x, 0.0);
    EXPECT_LT(past.x, 1e-200);
    const Quant floor = mUpperQuant(0.5, 2e-15);
    EXPECT_EQ(floor.route, 2);
    EXPECT_EQ(floor.code, 1);
    EXPECT_EQ(floor.x, 0.0);
}

TEST(GammaUpperQuant, SmallShapeStartsAtOneWhenTheTargetIsBelowQAtOne)
{
    const Quant q = mUpperQuant(1e-3, 0.5);
    EXPECT_EQ(q.route, 1);
    EXPECT_EQ(q.code, 0);
    EXPECT_GT(q.terms, 0);
    double lower, upper, density;
    gamma_df(q.x, 0.5, &lower, &upper, &density);
    EXPECT_LT(std::fabs(upper - 1e-3) / 1e-3, 1e-8);
    // Above Q(0.5, 1) = 0.157 the start comes from the small-x expansion.
    const Quant q4 = mUpperQuant(0.4, 0.5);
    EXPECT_EQ(q4.route, 4);
    EXPECT_EQ(q4.code, 0);
    gamma_df(q4.x, 0.5, &lower, &upper, &density);
    EXPECT_LT(std::fabs(upper - 0.4) / 0.4, 1e-8);
}

TEST(GammaUpperQuant, ShapeAboveTenThousandReturnsTheCornishFisherStart)
{
    for (double p : {1e-12, 1e-3, 0.3})
    {
        double z = 0.0;
        normal_upper_quant(p, &z);
        // Bit for bit the start: a Newton round would have moved it.
        const Quant q = mUpperQuant(p, 20000.0);
        EXPECT_EQ(q.route, 5);
        EXPECT_EQ(q.code, 0);
        EXPECT_EQ(q.x, mCornishFisherStart(20000.0, z)) << p;
        const Quant l = mLowerQuant(p, 20000.0);
        EXPECT_EQ(l.route, 5);
        EXPECT_EQ(l.code, 0);
        EXPECT_EQ(l.x, mCornishFisherStart(20000.0, -z)) << p;
    }
    // At 10000 the start is still refined, and moves.
    double z = 0.0;
    normal_upper_quant(1e-3, &z);
    const Quant q = mUpperQuant(1e-3, 10000.0);
    EXPECT_EQ(q.route, 6);
    EXPECT_EQ(q.code, 0);
    EXPECT_NE(q.x, mCornishFisherStart(10000.0, z));
}

TEST(GammaLowerQuant, RoutesByShape)
{
    const Quant q0 = mLowerQuant(0.3, 0.001046);
    EXPECT_EQ(q0.route, 0);
    EXPECT_EQ(q0.code, 1);
    EXPECT_EQ(q0.x, 0.0);
    // Just past the first test, p = 0.5 still puts log x below the floor.
    const Quant q1 = mLowerQuant(0.5, 0.0010466);
    EXPECT_EQ(q1.route, 1);
    EXPECT_EQ(q1.code, 1);
    EXPECT_EQ(q1.x, 0.0);
    const Quant q2 = mLowerQuant(1e-6, 0.2);
    EXPECT_EQ(q2.route, 2);
    EXPECT_EQ(q2.code, 0);
    EXPECT_LT(q2.x, 1e-9);
    EXPECT_GT(q2.x, 0.0);
    const Quant q3 = mLowerQuant(0.2, 0.7);
    EXPECT_EQ(q3.route, 3);
    const Quant q4 = mLowerQuant(0.2, 4.0);
    EXPECT_EQ(q4.route, 4);
    const Quant q6 = mLowerQuant(0.2, 40.0);
    EXPECT_EQ(q6.route, 6);
    for (const Quant* q : {&q3, &q4, &q6})
    {
        EXPECT_EQ(q->code, 0);
        EXPECT_GT(q->terms, 0);
    }
}

// ---------------------------------------------------------------------------
// Quantiles against mpmath.

TEST(GammaQuant, ProbabilityAtTheReturnedPointMatchesTheTarget)
{
    // The error of the probability is the relative error of x times the
    // elasticity x f(x) / p from the table (first order).  Newton stops at a
    // relative step of 1e-9; the unrefined starts below 1e-9 are good to
    // about x itself, except that the upper quantile's start uses
    // log(2 - Gamma(a + 1)) on purpose, about a^2 (1 - p) / p relative.
    const qeltest::RefTable table = qeltest::mLoadRefTable("gamma_quantiles.txt");
    ASSERT_GT(table.rows.size(), 300u);
    qeltest::WorstError worstLower("gamma_lower_quant P at x, a 1e-3 to 1e4");
    qeltest::WorstError worstUpper("gamma_upper_quant Q at x, a 1e-3 to 1e4");
    qeltest::WorstError worstUpperStart("gamma_upper_quant unrefined small-x start (route 3)");
    qeltest::WorstError worstLowerCf("gamma_lower_quant Cornish-Fisher, a above 1e4");
    qeltest::WorstError worstUpperCf("gamma_upper_quant Cornish-Fisher, a above 1e4");
    for (const std::vector<double>& row : table.rows)
    {
        ASSERT_EQ(row.size(), 7u);
        const double a = row[0], p = row[1], logxL = row[2], xL = row[3], eL = row[4];
        const double xU = row[5], eU = row[6];
        const std::string where = "a p = " + mWhere(a, p, 0.0);

        const Quant l = mLowerQuant(p, a);
        if (a < 0.001046505180202758 || logxL < KERNEL_LOG_FLOOR - 1e-9)
        {
            EXPECT_EQ(l.code, 1) << where;
            EXPECT_EQ(l.x, 0.0) << where;
        }
        else
        {
            EXPECT_EQ(l.code, 0) << where;
            const double e = std::fabs(l.x / xL - 1.0) * eL;
            if (a > 10000.0)
            {
                worstLowerCf.mUpdate(e, 0.0, where);
                EXPECT_EQ(l.route, 5) << where;
                EXPECT_LE(e, 1e-6) << where;
            }
            else
            {
                worstLower.mUpdate(e, 0.0, where);
                EXPECT_LE(e, 1e-8) << where << " x " << l.x << " ref " << xL;
            }
        }

        const Quant u = mUpperQuant(p, a);
        if (xU < KERNEL_TINY)
        {
            // log x below the floor: 0 with code 1.
            EXPECT_EQ(u.code, 1) << where;
            EXPECT_EQ(u.x, 0.0) << where;
            continue;
        }
        ASSERT_EQ(u.code, 0) << where;
        const double e = std::fabs(u.x / xU - 1.0) * eU;
        if (a > 10000.0)
        {
            worstUpperCf.mUpdate(e, 0.0, where);
            EXPECT_EQ(u.route, 5) << where;
            EXPECT_LE(e, 1e-6) << where;
        }
        else if (u.route == 3)
        {
            const double bound = 1e-8 + 2.0 * a * a * (1.0 - p) / p;
            worstUpperStart.mUpdate(e, 0.0, where);
            EXPECT_LE(e, bound) << where;
        }
        else
        {
            worstUpper.mUpdate(e, 0.0, where);
            EXPECT_LE(e, 1e-8) << where << " x " << u.x << " ref " << xU;
        }
    }
    std::cout << worstLower.mReport() << "\n"
              << worstUpper.mReport() << "\n"
              << worstUpperStart.mReport() << "\n"
              << worstLowerCf.mReport() << "\n"
              << worstUpperCf.mReport() << std::endl;
    RecordProperty("worst_lower", worstLower.mReport());
    RecordProperty("worst_upper", worstUpper.mReport());
    RecordProperty("worst_upper_start", worstUpperStart.mReport());
    RecordProperty("worst_lower_cf", worstLowerCf.mReport());
    RecordProperty("worst_upper_cf", worstUpperCf.mReport());
}
