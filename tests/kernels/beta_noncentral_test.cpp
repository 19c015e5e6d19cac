// The noncentral beta kernels: argument checks, the trivial exits, the
// hand-over between beta_ncdf and beta_ncdf2, the four sums with their route
// codes (done, peak below the log floor, the switch at 0.9, the failures
// that shapes of 0 provoke), second shapes near the limit, and both tails of
// both mixtures against an mpmath table for noncentralities 0.1 to 500.
#include "qelmath/kernels/beta.h"
#include "qelmath/kernels/kernel_protocol.h"

#include "support/reftable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <iostream>
#include <limits>
#include <sstream>
#include <string>

namespace
{
struct NcResult
{
    double lower = -7.0;
    double upper = -7.0;
    int route = -1;
    int code = -1;
    std::string name;
};

NcResult mNcdf(int kind, double x, double a, double b, double delta)
{
    NcResult r;
    if (kind == 1)
        beta_ncdf(x, a, b, delta, &r.lower, &r.upper);
    else
        beta_ncdf2(x, a, b, delta, &r.lower, &r.upper);
    r.route = kernel_method_code;
    r.code = kernel_error_code;
    r.name = kernel_routine_name;
    return r;
}
} // namespace

TEST(BetaNcdf, BadArgumentsAreCodeTwoAndTooLargeAreCodeThree)
{
    const double kNaN = std::numeric_limits<double>::quiet_NaN();
    const double cases[][4] = {{-0.1, 2.0, 3.0, 1.0}, {1.1, 2.0, 3.0, 1.0},
                               {0.5, -1.0, 3.0, 1.0}, {0.5, 2.0, -1.0, 1.0},
                               {0.5, 2.0, 3.0, -1.0}, {0.5, 94906266.0, 3.0, 1.0},
                               {0.5, 2.0, 94906266.0, 1.0}, {kNaN, 2.0, 3.0, 1.0},
                               {0.5, 2.0, 3.0, kNaN}};
    for (int kind : {1, 2})
    {
        for (const auto& c : cases)
        {
            const NcResult r = mNcdf(kind, c[0], c[1], c[2], c[3]);
            EXPECT_EQ(r.code, 2);
            EXPECT_EQ(r.name, kind == 1 ? "beta_ncdf" : "beta_ncdf2");
            EXPECT_EQ(r.lower, -7.0);
            EXPECT_EQ(r.upper, -7.0);
        }
    }
    // a + delta + 6.1738 sqrt(delta) above 94906265; the shape that grows is
    // the first for beta_ncdf and the second for beta_ncdf2.
    const double delta = 94000000.0;
    const double aLimit = 94906265.0 - delta - 6.1738 * std::sqrt(delta);
    NcResult r = mNcdf(1, 0.3, aLimit + 1.0, 2.0, delta);
    EXPECT_EQ(r.code, 3);
    EXPECT_EQ(r.lower, -7.0);
    r = mNcdf(2, 0.3, 2.0, aLimit + 1.0, delta);
    EXPECT_EQ(r.code, 3);
    EXPECT_EQ(r.name, "beta_ncdf2");
}

TEST(BetaNcdf, ZeroNoncentralityIsTheCentralDistribution)
{
    double lower = 0.0, upper = 0.0, density = 0.0;
    beta_df(0.3, 2.0, 3.0, &lower, &upper, &density);
    for (int kind : {1, 2})
    {
        const NcResult r = mNcdf(kind, 0.3, 2.0, 3.0, 0.0);
        EXPECT_EQ(r.lower, lower);
        EXPECT_EQ(r.upper, upper);
        EXPECT_EQ(r.code, 0);
        EXPECT_EQ(r.route, 10);
    }
}

TEST(BetaNcdf, EndsOfTheUnitIntervalAreExact)
{
    for (int kind : {1, 2})
    {
        NcResult r = mNcdf(kind, 0.0, 2.0, 3.0, 4.0);
        EXPECT_EQ(r.lower, 0.0);
        EXPECT_EQ(r.upper, 1.0);
        EXPECT_EQ(r.code, 0);
        r = mNcdf(kind, 1.0, 2.0, 3.0, 4.0);
        EXPECT_EQ(r.lower, 1.0);
        EXPECT_EQ(r.upper, 0.0);
        EXPECT_EQ(r.code, 0);
    }
}

TEST(BetaNcdf, SecondFormAtOneHalfGoesToTheFirstWhichDoesNotComeBack)
{
    // beta_ncdf2(0.5, a, b) is beta_ncdf(0.5, b, a) with the tails exchanged;
    // beta_ncdf mirrors only above 0.5, so its own sums run (routes below 1000).
    const NcResult second = mNcdf(2, 0.5, 2.0, 3.0, 5.0);
    const NcResult first = mNcdf(1, 0.5, 3.0, 2.0, 5.0);
    EXPECT_LT(second.route, 1000);
    EXPECT_EQ(second.route, first.route);
    EXPECT_EQ(second.name, "beta_ncdf");
    EXPECT_EQ(second.lower, first.upper);
    EXPECT_EQ(second.upper, first.lower);
    // Just below 0.5 the second form sums for itself.
    EXPECT_GE(mNcdf(2, std::nextafter(0.5, 0.0), 2.0, 3.0, 5.0).route, 1000);
    // Just above 0.5 the first form hands over to the second.
    EXPECT_GE(mNcdf(1, std::nextafter(0.5, 1.0), 2.0, 3.0, 5.0).route, 1000);
}

TEST(BetaNcdfRoute, LowerSumDoneIsThirteenAndPeakBelowTheFloorIsTwelve)
{
    NcResult r = mNcdf(1, 0.3, 2.0, 3.0, 5.0);
    EXPECT_EQ(r.route, 13);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.upper, 1.0 - r.lower);
    r = mNcdf(1, 1e-300, 0.01, 0.01, 1000.0);
    EXPECT_EQ(r.route, 12);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.upper, 1.0);
}

TEST(BetaNcdfRoute, UpperSumDoneIsTwentyFourAndPeakBelowTheFloorIsTwentyThree)
{
    NcResult r = mNcdf(1, 0.1, 0.01, 0.5, 0.001);
    EXPECT_EQ(r.route, 24);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.lower, 1.0 - r.upper);
    r = mNcdf(1, 0.49, 0.01, 1000.0, 0.001);
    EXPECT_EQ(r.route, 23);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.upper, 0.0);
    EXPECT_EQ(r.lower, 1.0);
}

TEST(BetaNcdfRoute, FirstSumAboveNineTenthsHandsOverToTheOpposite)
{
    // x below the mean: the lower sum first; it passes 0.9, so the upper sum
    // is computed (100 + 24) and the lower tail is its complement.
    const NcResult r = mNcdf(1, 0.01, 0.01, 0.5, 0.001);
    EXPECT_EQ(r.route, 124);
    EXPECT_EQ(r.code, 0);
    EXPECT_GT(r.lower, 0.9);
    EXPECT_EQ(r.lower, 1.0 - r.upper);
}

TEST(BetaNcdf2Route, ItsOwnSumsCarryTheThousand)
{
    NcResult r = mNcdf(2, 0.1, 2.0, 3.0, 5.0);
    EXPECT_EQ(r.route, 1014);
    EXPECT_EQ(r.code, 0);
    r = mNcdf(2, 0.3, 2.0, 3.0, 5.0);
    EXPECT_EQ(r.route, 1023);
    EXPECT_EQ(r.code, 0);
    r = mNcdf(2, 1e-300, 1.0, 0.01, 0.001);
    EXPECT_EQ(r.route, 1013);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.lower, 0.0);
    r = mNcdf(2, 0.49, 0.01, 1000.0, 0.001);
    EXPECT_EQ(r.route, 1022);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.upper, 0.0);
    EXPECT_EQ(r.lower, 1.0);
    // The lower sum first passes 0.9: the upper sum follows, 1000 + 100 + 23.
    r = mNcdf(2, 0.0001, 0.01, 0.01, 5.0);
    EXPECT_EQ(r.route, 1123);
    EXPECT_EQ(r.code, 0);
    EXPECT_GT(r.lower, 0.9);
}

TEST(BetaNcdf, DegenerateSecondShapeFailsAtOnceWithCodeFour)
{
    // Beta(a + j, 0) has no density: the ratios of the upper sum are not
    // numbers, and the sum gives up with code 4 instead of walking on.
    const NcResult r = mNcdf(1, 0.3, 2.0, 0.0, 5.0);
    EXPECT_EQ(r.code, 4);
    EXPECT_EQ(r.name, "beta_ncdf");
    // The lower sum ends (13) on a ratio that is not a number, which is not
    // at most 0.9, so the upper sum follows and stops at once (22) with its
    // failure value -2.
    EXPECT_EQ(r.route, 35);
    EXPECT_EQ(r.upper, -2.0);
}

// The failure rows of the sums.  A failing series or an index walk needs a
// shape of 0, which the argument checks admit: for positive shapes the
// series that starts a sum run first is bounded by a geometric product that
// ends it long before its cap (see the comments of the sums), and a scan of
// shapes up to the limit with noncentralities up to 4e6 around the switch
// between the sums met none of these rows.
TEST(BetaNcdfRoute, UpperSumSeriesFailureIsTwentyOne)
{
    // Beta(a + j, 0) with j near 2e6: the finite series of the upper tail
    // grows for about 0.7 (a + j) > 10^6 terms at x = 0.3 and reaches its cap.
    const NcResult r = mNcdf(1, 0.3, 2.0, 0.0, 2e6);
    EXPECT_EQ(r.code, 4);
    EXPECT_EQ(r.name, "beta_ncdf");
    EXPECT_EQ(r.route, 34);
    EXPECT_EQ(r.upper, -1.0);
}

TEST(BetaNcdf2Route, LowerSumFailuresAreElevenAndTwelve)
{
    // First shape 0: the upper sum ends (23) on a ratio that is not a number
    // and the lower sum follows.  With few terms its index walk meets the
    // same and stops at once (12, value -2); with j near 2e6 its series
    // I(0, b + j) grows past its cap first (11, value -1).
    NcResult r = mNcdf(2, 0.3, 0.0, 1.0, 5.0);
    EXPECT_EQ(r.code, 4);
    EXPECT_EQ(r.name, "beta_ncdf2");
    EXPECT_EQ(r.route, 1035);
    EXPECT_EQ(r.lower, -2.0);
    r = mNcdf(2, 0.3, 0.0, 1.0, 2e6);
    EXPECT_EQ(r.code, 4);
    EXPECT_EQ(r.name, "beta_ncdf2");
    EXPECT_EQ(r.route, 1034);
    EXPECT_EQ(r.lower, -1.0);
}

// Around the switch between the sums, x from half to three times the point
// that decides which sum comes first, with positive shapes up to 1e6 and
// second shapes to 9.4e7: no series fails (no row 11 or 21 of either
// mixture), and the cases where the first sum passes 0.9 and the second is
// run are among them.
TEST(BetaNcdfRoute, ScanAroundTheSwitchMeetsNoFailure)
{
    int cases = 0, handovers = 0;
    for (int kind : {1, 2})
        for (double a : {1e-3, 1.0, 1e4, 1e6})
            for (double b : {1e6, 4e7, 9.4e7})
                for (double delta : {1.0, 1e4, 1e6})
                    for (double c : {0.5, 0.999, 1.0001, 1.1, 3.0})
                    {
                        const double mid =
                            kind == 1 ? (a + delta) / (a + b + delta) : a / (a + b + delta);
                        const double x = c * mid;
                        if (!(x < 1.0))
                            continue;
                        const NcResult r = mNcdf(kind, x, a, b, delta);
                        if (r.code == 3)
                            continue;
                        ++cases;
                        EXPECT_LE(r.code, 1) << "kind " << kind << " a=" << a << " b=" << b
                                             << " delta=" << delta << " x=" << x;
                        if (r.route % 1000 >= 100)
                            ++handovers;
                    }
    EXPECT_GT(cases, 300);
    EXPECT_GT(handovers, 10);
}

// Second shapes near the limit of 94906265: the lower sums start their
// series at Beta(a + k + 1, b) (beta_ncdf) or Beta(a, b + k) (beta_ncdf2) on
// the left of its mean, where the series ends after a few hundred terms, far
// from the cap of a million.  A zero lower tail comes back as a peak term
// below the floor with code 1, never as a failure.  References: mpmath at 50
// digits, the Poisson-weighted sum over j of the hypergeometric series of
// each I_x.
TEST(BetaNcdf, SecondShapesNearTheLimitStayWithinTheSeriesCap)
{
    NcResult r = mNcdf(1, 1e-300, 10.0, 9.4e7, 100.0);
    EXPECT_EQ(r.route, 12);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.upper, 1.0);
    r = mNcdf(1, 1e-9, 10.0, 9.4e7, 100.0);
    EXPECT_EQ(r.route, 13);
    EXPECT_EQ(r.code, 0);
    EXPECT_LT(std::fabs(r.lower / 1.1579292943806691315e-60 - 1.0), 1e-8);
    r = mNcdf(1, 1e-6, 10.0, 9.4e7, 100.0);
    EXPECT_EQ(r.route, 13);
    EXPECT_LT(std::fabs(r.lower / 0.13273015952850535735 - 1.0), 1e-8);
    r = mNcdf(1, 1e-5, 1000.0, 9.49e7, 1e5);
    EXPECT_EQ(r.route, 12);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.lower, 0.0);

    r = mNcdf(2, 1e-300, 10.0, 9.4e7, 1e4);
    EXPECT_EQ(r.route, 1013);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.upper, 1.0);
    r = mNcdf(2, 1e-9, 10.0, 9.4e7, 1e4);
    EXPECT_EQ(r.route, 1014);
    EXPECT_EQ(r.code, 0);
    EXPECT_LT(std::fabs(r.lower / 1.3641891339737471716e-17 - 1.0), 1e-8);
    r = mNcdf(2, 1e-6, 1000.0, 9e7, 4e6);
    EXPECT_EQ(r.route, 1013);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.lower, 0.0);
}

TEST(BetaNcdf, BothMixturesMatchMpmathForNoncentralitiesToFiveHundred)
{
    const double kBound = 1e-8;
    const qeltest::RefTable table = qeltest::mLoadRefTable("beta_kernel_ncdf.txt");
    ASSERT_GT(table.rows.size(), 600u);
    qeltest::WorstError worst1("beta_ncdf");
    qeltest::WorstError worst2("beta_ncdf2");
    for (const std::vector<double>& row : table.rows)
    {
        ASSERT_EQ(row.size(), 7u);
        const int kind = static_cast<int>(row[0]);
        const double a = row[1], b = row[2], delta = row[3], x = row[4];
        const NcResult r = mNcdf(kind, x, a, b, delta);
        std::ostringstream where;
        where.precision(17);
        where << "kind " << kind << " a=" << a << " b=" << b << " delta=" << delta << " x=" << x;
        ASSERT_LE(r.code, 1) << where.str();
        qeltest::WorstError& worst = kind == 1 ? worst1 : worst2;
        const double refs[2] = {row[5], row[6]};
        const double got[2] = {r.lower, r.upper};
        for (int i = 0; i < 2; ++i)
        {
            if (!(refs[i] > 1e-280))
                continue;
            const double e = qeltest::mRelativeError(got[i], refs[i]);
            std::ostringstream text;
            text.precision(17);
            text << where.str() << (i == 0 ? " lower=" : " upper=") << got[i] << " (mpmath "
                 << refs[i] << ") route " << r.route;
            worst.mUpdate(e, qeltest::mUlpDistance(got[i], refs[i]), text.str());
            EXPECT_LE(e, kBound) << text.str();
        }
    }
    std::cout << worst1.mReport() << "\n" << worst2.mReport() << std::endl;
    RecordProperty("worst_ncdf", worst1.mReport());
    RecordProperty("worst_ncdf2", worst2.mReport());
}
