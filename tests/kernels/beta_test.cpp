// The central beta kernel: the log density, the polygamma functions and the
// ratio of gamma functions for small shapes, the small-shape tail, the median
// guess, the two series and the continued fraction, every reachable route of
// beta_df with its code (the rows next to the log floor included) and a scan
// showing that row 40 is never taken, the edge cases of its arguments, Newton
// refinement with its two-cycle breaker, and both tails and the density
// against an mpmath table.
#include "qelmath/kernels/beta.h"
#include "qelmath/kernels/kernel_protocol.h"

#include "support/reftable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <initializer_list>
#include <iostream>
#include <limits>
#include <sstream>
#include <string>

namespace
{
double mRel(double dComputed, double dReference)
{
    return std::fabs(dComputed - dReference) / std::fabs(dReference);
}

struct BetaResult
{
    double lower = -7.0;
    double upper = -7.0;
    double density = -7.0;
    int route = -1;
    int code = -1;
    std::string name;
};

BetaResult mBetaDf(double x, double a, double b)
{
    BetaResult r;
    beta_df(x, a, b, &r.lower, &r.upper, &r.density);
    r.route = kernel_method_code;
    r.code = kernel_error_code;
    r.name = kernel_routine_name;
    return r;
}

// The regularised incomplete beta ratio of Beta(2, 3): 6x^2 - 8x^3 + 3x^4.
double mLowerBeta23(double x)
{
    return x * x * (6.0 - 8.0 * x + 3.0 * x * x);
}
} // namespace

// ---------------------------------------------------------------------------
// Helpers.

TEST(BetaHelpers, LogDensityMatchesClosedForms)
{
    double L = 0.0;
    // Beta(2, 3): 12 x (1 - x)^2.
    beta_log_pdf(2.0, 3.0, 0.3, &L);
    EXPECT_LT(mRel(L, std::log(12.0 * 0.3 * 0.49)), 1e-14);
    // Beta(0.5, 0.5): 1 / (pi sqrt(x (1 - x))), both shapes at or below 1.
    beta_log_pdf(0.5, 0.5, 0.2, &L);
    EXPECT_LT(mRel(L, -std::log(std::acos(-1.0) * std::sqrt(0.16))), 5e-14);
    // Beta(1, 1) is uniform.
    beta_log_pdf(1.0, 1.0, 0.7, &L);
    EXPECT_LT(std::fabs(L), 5e-15);
    // Beta(3, 1): 3 x^2, first shape above 1 on both sides of d = 0.
    beta_log_pdf(3.0, 1.0, 0.9, &L);
    EXPECT_LT(mRel(L, std::log(3.0 * 0.81)), 1e-14);
    beta_log_pdf(3.0, 1.0, 0.2, &L);
    EXPECT_LT(mRel(L, std::log(3.0 * 0.04)), 1e-14);
}

TEST(BetaHelpers, PolygammaFunctionsMatchMpmath)
{
    // mpmath psi(0..2, x) at 30 digits.
    EXPECT_LT(mRel(digamma_fn(1.0), -0.57721566490153286061), 1e-14);
    EXPECT_LT(mRel(trigamma_fn(1.0), 1.6449340668482264365), 1e-14);
    EXPECT_LT(mRel(tetragamma_fn(1.0), -2.4041138063191885708), 1e-14);
    EXPECT_LT(mRel(digamma_fn(0.3), -3.5025242222001331249), 1e-14);
    EXPECT_LT(mRel(trigamma_fn(0.3), 12.245364546107731301), 1e-14);
    EXPECT_LT(mRel(tetragamma_fn(0.3), -75.272536588726038917), 1e-14);
    EXPECT_LT(mRel(digamma_fn(10.5), 2.3030010342976863753), 1e-15);
    EXPECT_LT(mRel(trigamma_fn(10.5), 0.099916956059126733204), 1e-14);
    EXPECT_LT(mRel(tetragamma_fn(10.5), -0.0099751442477151692853), 1e-14);
    EXPECT_LT(mRel(digamma_fn(3.7), 1.1671535393615114409), 1e-14);
    EXPECT_LT(mRel(trigamma_fn(3.7), 0.31003785767003830216), 1e-14);
    EXPECT_LT(mRel(tetragamma_fn(3.7), -0.095395308728554033483), 1e-14);
}

TEST(BetaHelpers, LnRatioInEachOfItsFourRegimes)
{
    // mpmath loggamma(b) + a log b - loggamma(a + b) at 30 digits.
    // a >= 1e-5 and b < 50: the difference of log gamma functions.
    EXPECT_LT(mRel(beta_ln_ratio(0.3, 7.5), 0.014115419371887302614), 1e-12);
    // b >= 50: the expansion in 1/b.
    EXPECT_LT(mRel(beta_ln_ratio(0.25, 120.0), 0.0007817908334469207426), 1e-10);
    // a < 1e-5, b < 0.006: the series of log gamma about 0.
    EXPECT_LT(mRel(beta_ln_ratio(3e-6, 0.004), 0.00073486646571082894787), 1e-6);
    EXPECT_LT(mRel(beta_ln_ratio(4e-6, 0.0061), 0.00063739382802158570659), 1e-6);
    // a < 1e-5, 0.006 <= b < 50: Taylor in a through the polygamma functions.
    EXPECT_LT(mRel(beta_ln_ratio(2e-6, 3.5), 2.9921199498488167494e-7), 1e-9);
    EXPECT_LT(mRel(beta_ln_ratio(5e-6, 49.9), 5.0267275992709279071e-8), 1e-9);
}

TEST(BetaHelpers, SmallTailIsTheUpperTailTimesBetaFunctionAndPower)
{
    // mpmath betainc(a, b, x, 1, regularized) * beta(a, b) * b^a.
    EXPECT_LT(mRel(beta_small_tail(0.1, 0.5, 3.0), 0.82291453050047167889), 1e-9);
    EXPECT_LT(mRel(beta_small_tail(0.02, 0.3, 40.0), 0.34072901868277979616), 1e-9);
    // a < 1e-5 and b >= 50 take exp(ln ratio) - 1.
    EXPECT_LT(mRel(beta_small_tail(0.001, 2e-6, 10.0), 4.0877495615897547095), 1e-9);
    EXPECT_LT(mRel(beta_small_tail(0.005, 0.4, 150.0), 0.37908685085383463245), 1e-9);
    EXPECT_GE(kernel_terms_a, 1);
}

TEST(BetaHelpers, MedianGuessInBothForms)
{
    // b >= 1 and a >= 0.6: mean minus (b - a) / (3 (a + b)^2).
    EXPECT_DOUBLE_EQ(beta_median_guess(2.0, 3.0), 0.4 - 1.0 / 75.0);
    EXPECT_DOUBLE_EQ(beta_median_guess(0.6, 1.0), 0.6 / 1.6 - 0.4 / (3.0 * 1.6 * 1.6));
    // Otherwise (Gamma(1 + a) Gamma(b) / (2 Gamma(a + b)))^(1/a), at most 0.5.
    const double v = std::lgamma(1.3) - std::log(2.0) + std::lgamma(5.0) - std::lgamma(5.3);
    EXPECT_LT(mRel(beta_median_guess(0.3, 5.0), std::exp(v / 0.3)), 1e-12);
    const double w = std::lgamma(1.2) - std::log(2.0) - 0.2 * std::log(500.0);
    EXPECT_LT(mRel(beta_median_guess(0.2, 500.0), std::exp(w / 0.2)), 1e-12);
    EXPECT_EQ(beta_median_guess(0.5, 0.001), 0.5);
    // Beta(1, 1) lands on the first form only through b >= 1 and a >= 0.6.
    EXPECT_DOUBLE_EQ(beta_median_guess(1.0, 1.0), 0.5);
}

TEST(BetaSeries, IabxFirstFormEndsOnAnIntegerSecondShape)
{
    // Beta(2, 3): the lower tail is density I, and the series ends at n = b.
    double I = 0.0;
    ASSERT_EQ(beta_Iabx(2.0, 3.0, 0.3, &I), 0);
    EXPECT_LT(mRel(12.0 * 0.3 * 0.49 * I, mLowerBeta23(0.3)), 1e-14);
    EXPECT_EQ(kernel_terms, 3);
}

TEST(BetaSeries, IabxTakesTheSecondFormOnSlowAlternatingTerms)
{
    // b below 1 and x near 1/2: the first ratio is already below -1/2.
    double I = 0.0;
    kernel_terms_a = 0;
    ASSERT_EQ(beta_Iabx(0.5, 0.2, 0.45, &I), 0);
    // The ratios are -0.436 and then -0.589, which ends the scan at n = 2.
    EXPECT_EQ(kernel_terms, 2);
    EXPECT_GT(kernel_terms_a, 10);
    double L = 0.0;
    beta_log_pdf(0.5, 0.2, 0.45, &L);
    // mpmath betainc(0.5, 0.2, 0, 0.45, regularized=True).
    EXPECT_LT(mRel(std::exp(L) * I, 0.24879377734681853258), 1e-9);
}

TEST(BetaSeries, JabxFiniteSeriesAndBothContinuedFractionRoutes)
{
    double J = 0.0;
    // Integer first shape: finite series, route 0.
    kernel_method_code = 9;
    ASSERT_EQ(beta_Jabx(2.0, 3.0, 0.6, &J), 0);
    EXPECT_EQ(kernel_method_code, 0);
    EXPECT_LT(mRel(12.0 * 0.6 * 0.16 * (0.4 / 3.0) * J, 1.0 - mLowerBeta23(0.6)), 1e-14);
    // Fractional first shape and q x >= 1: the continued fraction, route 1.
    ASSERT_EQ(beta_Jabx(3.7, 1.5, 0.4, &J), 0);
    EXPECT_EQ(kernel_method_code, 1);
    double L = 0.0;
    beta_log_pdf(3.7, 1.5, 0.4, &L);
    // mpmath betainc(3.7, 1.5, 0.4, 1, regularized=True).
    EXPECT_LT(mRel(std::exp(L) * (0.6 / 1.5) * J, 0.93363272612877806167), 1e-9);
    // q x < 1: the small-x tail, route 2, with 12 recorded as its length.
    ASSERT_EQ(beta_Jabx(1.2, 1.1, 0.45, &J), 0);
    EXPECT_EQ(kernel_method_code, 2);
    EXPECT_EQ(kernel_terms_a, 12);
    beta_log_pdf(1.2, 1.1, 0.45, &L);
    // mpmath betainc(1.2, 1.1, 0.45, 1, regularized=True).
    EXPECT_LT(mRel(std::exp(L) * (0.55 / 1.1) * J, 0.58542794890356619444), 1e-9);
}

TEST(BetaSeries, JcfAloneGivesBothBases)
{
    double dCf = 0.0;
    ASSERT_EQ(beta_Jcf(0.5, 4.0, 0.5, &dCf), 0);
    EXPECT_EQ(kernel_method_code, 1);
    double L = 0.0;
    beta_log_pdf(0.5, 4.0, 0.5, &L);
    // mpmath betainc(0.5, 4, 0.5, 1, regularized=True).
    EXPECT_LT(mRel(std::exp(L) * (0.5 / 4.0) * dCf, 0.022203904140477251414), 1e-9);
}

// ---------------------------------------------------------------------------
// beta_df: arguments and trivial exits.

TEST(BetaDf, AtZeroAndAtOneTheDensityIsTheFlagMinusOneWithCodeZero)
{
    kernel_error_code = 3;
    BetaResult r = mBetaDf(0.0, 2.0, 3.0);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.upper, 1.0);
    EXPECT_EQ(r.density, -1.0);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.route, 1);
    r = mBetaDf(1.0, 2.0, 3.0);
    EXPECT_EQ(r.lower, 1.0);
    EXPECT_EQ(r.upper, 0.0);
    EXPECT_EQ(r.density, -1.0);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.route, 2);
    // Below the smallest nonzero argument counts as 0.
    r = mBetaDf(1e-300, 0.5, 0.5);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.density, -1.0);
    EXPECT_EQ(r.route, 1);
}

TEST(BetaDf, TinyShapePutsTheMassAtTheEndsWithCodeOne)
{
    const double a = 1e-13, b = 1.0;
    for (double x : {1e-200, 0.1, 0.5, 0.9, 0.999999})
    {
        const BetaResult r = mBetaDf(x, a, b);
        EXPECT_EQ(r.lower, b / (a + b)) << x;
        EXPECT_EQ(r.upper, a / (a + b)) << x;
        EXPECT_EQ(r.density, -1.0) << x;
        EXPECT_EQ(r.code, 1) << x;
        EXPECT_EQ(r.route, 3) << x;
    }
    // 1.5e-12 itself is above the cut.
    EXPECT_NE(mBetaDf(0.5, 1.6e-12, 1.0).route, 3);
}

TEST(BetaDf, BadArgumentsAreCodeTwoWithOutputsUntouched)
{
    const double kNaN = std::numeric_limits<double>::quiet_NaN();
    const double cases[][3] = {{-0.1, 2.0, 3.0},  {1.1, 2.0, 3.0},   {0.5, 0.0, 3.0},
                               {0.5, 2.0, 0.0},   {0.5, -1.0, 3.0},  {0.5, 94906265.5, 3.0},
                               {0.5, 2.0, 94906266.0}, {kNaN, 2.0, 3.0}, {0.5, kNaN, 3.0},
                               {0.5, 2.0, kNaN}};
    for (const auto& c : cases)
    {
        const BetaResult r = mBetaDf(c[0], c[1], c[2]);
        EXPECT_EQ(r.code, 2) << c[0] << " " << c[1] << " " << c[2];
        EXPECT_EQ(r.name, "beta_df");
        EXPECT_EQ(r.lower, -7.0);
        EXPECT_EQ(r.upper, -7.0);
        EXPECT_EQ(r.density, -7.0);
    }
    // The largest shape itself is accepted.
    EXPECT_EQ(mBetaDf(0.5, 94906265.0, 94906265.0).code, 0);
}

TEST(BetaDf, HalfIsNotSwappedAndJustAboveIsWithTheTailsSwappedBack)
{
    // At 0.5 the first shape 2 is small: right of the median, upper route.
    const BetaResult at = mBetaDf(0.5, 2.0, 30.0);
    EXPECT_EQ(at.route, 60);
    // Just above, the shapes are exchanged and x becomes 1 - x < 0.5: the
    // exchanged Beta(30, 2) has its median far right, so the lower route
    // computes the small tail, which is the upper tail asked for.
    const double xUp = std::nextafter(0.5, 1.0);
    const BetaResult up = mBetaDf(xUp, 2.0, 30.0);
    EXPECT_EQ(up.route, 10);
    // Upper tail of Beta(2, 30) at x: (1 - x)^31 + 31 x (1 - x)^30, at 1/2
    // exactly 2^-26.
    const double dUpper = std::ldexp(1.0, -26);
    EXPECT_LT(mRel(at.upper, dUpper), 1e-13);
    EXPECT_LT(mRel(up.upper, dUpper), 1e-12);
    EXPECT_EQ(up.lower, 1.0 - up.upper);
    EXPECT_LT(up.upper, at.upper);
    EXPECT_LT(mRel(up.density, at.density), 1e-13);
}

// ---------------------------------------------------------------------------
// beta_df: the routes.

TEST(BetaDfRoute, LowerSeriesIsRouteTen)
{
    const BetaResult r = mBetaDf(0.3, 2.0, 3.0);
    EXPECT_EQ(r.route, 10);
    EXPECT_EQ(r.code, 0);
    EXPECT_LT(mRel(r.lower, mLowerBeta23(0.3)), 1e-14);
    EXPECT_LT(mRel(r.density, 12.0 * 0.3 * 0.49), 1e-14);
}

TEST(BetaDfRoute, LowerTailBelowTheFloorAfterTheSeriesIsRouteFifteen)
{
    // Beta(1, 0.5): density near 0 is 1/2, the tail x/2 falls below the floor.
    const BetaResult r = mBetaDf(3e-288, 1.0, 0.5);
    EXPECT_EQ(r.route, 15);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.upper, 1.0);
    EXPECT_LT(mRel(r.density, 0.5), 1e-14);
}

TEST(BetaDfRoute, LowerTailNegligibleWithoutTheSeriesIsRouteTwenty)
{
    const BetaResult r = mBetaDf(0.01, 500.0, 3.0);
    EXPECT_EQ(r.route, 20);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.upper, 1.0);
    EXPECT_EQ(r.density, 0.0);
}

TEST(BetaDfRoute, SmallShapeUpperTailIsRouteFifty)
{
    const BetaResult r = mBetaDf(0.1, 0.5, 3.0);
    EXPECT_EQ(r.route, 50);
    EXPECT_EQ(r.code, 0);
    // mpmath betainc(0.5, 3, 0.1, 1, regularized=True).
    EXPECT_LT(mRel(r.upper, 0.44541555534797046132), 1e-9);
}

TEST(BetaDfRoute, UpperSeriesRoutesSixtySixtyOneAndSixtyTwo)
{
    // Right of the median guess 0.387 of Beta(2, 3): the finite series.
    BetaResult r = mBetaDf(0.45, 2.0, 3.0);
    EXPECT_EQ(r.route, 60);
    EXPECT_LT(mRel(r.upper, 1.0 - mLowerBeta23(0.45)), 1e-13);
    // Fractional a and (b + 1) x >= 1: the continued fraction.
    r = mBetaDf(0.4, 1.5, 3.7);
    EXPECT_EQ(r.route, 61);
    // mpmath betainc(1.5, 3.7, 0.4, 1, regularized=True).
    EXPECT_LT(mRel(r.upper, 0.26024241172909221672), 1e-9);
    // Right of the guess 0.4686 of Beta(1.0000001, 1.1) with (b + 1) x < 1:
    // the small-x tail.
    r = mBetaDf(0.472, 1.0000001, 1.1);
    EXPECT_EQ(r.route, 62);
    // mpmath betainc(1.0000001, 1.1, 0.472, 1, regularized=True).
    EXPECT_LT(mRel(r.upper, 0.49533309519857346609), 1e-9);
}

TEST(BetaDfRoute, UpperTailNegligibleIsRouteSeventy)
{
    // a <= 1: no series can lift a tail whose log density is below the floor.
    BetaResult r = mBetaDf(0.5, 1e-11, 1000.0);
    EXPECT_EQ(r.route, 70);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.upper, 0.0);
    EXPECT_EQ(r.lower, 1.0);
    // a > 1, by the bound.
    r = mBetaDf(0.4, 3.0, 5000.0);
    EXPECT_EQ(r.route, 70);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.upper, 0.0);
}

// The rows decided by a bound when the log density is below the floor.  Each
// case sits within a fraction of a unit of the floor, found by bisection in
// x; the references are mpmath at 60 digits by the hypergeometric series
// I_x(a, b) = x^a (1-x)^b / (a B(a, b)) sum_k (a+b)_k / (a+1)_k x^k (all
// terms positive), the upper tail as I_(1-x)(b, a).

TEST(BetaDfRoute, LowerSeriesPastItsBoundAndNegligibleIsRouteThirty)
{
    // log density just below the floor, the bound 1/(1 - y) with y = 0.177
    // above it; the series gives the tail 3.504e-292 (mpmath), log -671.1.
    const BetaResult r = mBetaDf(0.15120886150307911, 1000.0, 1000.0);
    EXPECT_EQ(r.route, 30);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.upper, 1.0);
    EXPECT_EQ(r.density, 0.0);
}

TEST(BetaDfRoute, UpperSeriesPastItsBoundIsRouteNinetyOrEighty)
{
    BetaResult r = mBetaDf(0.025736378676500877, 1000.0, 100000.0);
    EXPECT_EQ(r.route, 90);
    EXPECT_EQ(r.code, 0);
    // The density is above the floor; E = L + log((1 - x)/b) is not.
    EXPECT_GT(r.density, 0.0);
    EXPECT_LT(std::log(r.density * (1.0 - 0.025736378676500877) / 100000.0), -662.34472);
    EXPECT_LT(mRel(r.upper, 3.5413448987871279384e-288), 1e-8);
    EXPECT_EQ(r.lower, 1.0);
    // mpmath: 2.2248602153081197417e-288, log -662.3448127, below the floor
    // while the bound of the series is not.
    r = mBetaDf(0.025743657858452354, 1000.0, 100000.0);
    EXPECT_EQ(r.route, 80);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.upper, 0.0);
    EXPECT_EQ(r.lower, 1.0);
    // The mirror: x > 1/2 swaps the shapes, the tails come back swapped.
    r = mBetaDf(0.9742597830730777, 100000.0, 1000.0);
    EXPECT_EQ(r.route, 90);
    EXPECT_EQ(r.code, 0);
    EXPECT_LT(mRel(r.lower, 2.7716021826843709296e-288), 1e-8);
    EXPECT_EQ(r.upper, 1.0);
    // mpmath: 2.2248602153258657449e-288, below the floor.
    r = mBetaDf(0.97425634214154777, 100000.0, 1000.0);
    EXPECT_EQ(r.route, 80);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.upper, 1.0);
}

// Row 40 (log density below the floor, lower tail above it) needs
// F(x) > f(x) with f(x) < exp(floor) at an x left of the median guess m.
// Left of the mode of an increasing density F(x) <= x f(x) < f(x); right of
// the mode (or for a < 1, where the density falls everywhere) f(x) >= f(m'),
// m' = min(m, 1/2), and f(m') is nowhere near the floor.  The first part
// checks that last claim over the whole range of admissible shapes; the
// second walks x down to the floor on the lower route and never meets 40.
TEST(BetaDfRoute, RouteFortyIsUnreachable)
{
    const double kMaxShape = 94906265.0;
    double worst = 0.0;
    int pairs = 0;
    for (double la = std::log(1.51e-12); la <= std::log(kMaxShape); la += 0.25)
    {
        for (double lb = 1e-9; lb <= std::log(kMaxShape); lb += 0.25)
        {
            const double a = std::exp(la), b = std::exp(lb);
            const double m = std::min(beta_median_guess(a, b), 0.5);
            if (a >= 1.0 && !(m > (a - 1.0) / (a + b - 2.0)))
                continue;
            double L = 0.0;
            beta_log_pdf(a, b, m, &L);
            worst = std::min(worst, L);
            ++pairs;
        }
    }
    EXPECT_GT(pairs, 3000);
    EXPECT_GT(worst, -1.0);
    std::cout << "least log density at the median guess over " << pairs << " pairs: " << worst
              << std::endl;

    int thirty = 0;
    const double shapes[] = {1.0 + 1e-9, 1.5, 3.0, 20.0, 300.0, 5000.0, 1e5, 3e6, 9.4e7};
    for (double a : shapes)
    {
        for (double b : shapes)
        {
            const double m = std::min(beta_median_guess(a, b), 0.5);
            for (double below : {1e-12, 1e-6, 1e-3, 0.05, 0.3, 1.0, 3.0})
            {
                const double target = KERNEL_LOG_FLOOR - below;
                double lo = 1e-287, hi = m, L = 0.0;
                beta_log_pdf(a, b, lo, &L);
                if (!(L < target))
                    continue;
                for (int i = 0; i < 200 && lo < hi; ++i)
                {
                    const double mid = 0.5 * (lo + hi);
                    beta_log_pdf(a, b, mid, &L);
                    (L < target ? lo : hi) = mid;
                }
                for (double x : {lo, hi})
                {
                    const BetaResult r = mBetaDf(x, a, b);
                    EXPECT_NE(r.route, 40) << "a=" << a << " b=" << b << " x=" << x;
                    if (r.route == 30)
                    {
                        ++thirty;
                        EXPECT_EQ(r.lower, 0.0);
                        EXPECT_EQ(r.code, 1);
                    }
                }
            }
        }
    }
    // The walk does reach the rows next to 40.
    EXPECT_GT(thirty, 50);
    std::cout << "route 30 met " << thirty << " times, route 40 never" << std::endl;
}

// ---------------------------------------------------------------------------
// Newton refinement.

TEST(BetaNewton, RefinesALowerQuantileFromANearbyStart)
{
    // Beta(2, 3) has lower tail 0.3483 at 0.3.
    double x = 0.25;
    beta_newton(mLowerBeta23(0.3), 2.0, 3.0, &x, 'L');
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_GE(kernel_terms, 2);
    EXPECT_LT(mRel(x, 0.3), 1e-10);
    x = 0.75;
    beta_newton(1.0 - mLowerBeta23(0.6), 2.0, 3.0, &x, 'U');
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_LT(mRel(x, 0.6), 1e-10);
}

TEST(BetaNewton, StepsReturningWithinEpsilonOfThePreviousPointAreHalved)
{
    // On the uniform distribution Newton's method is exact in one step: from
    // 0.3 to the quantile 0.1 it takes two rounds (the step, then the check).
    double x = 0.3;
    beta_newton(0.1, 1.0, 1.0, &x, 'L');
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_EQ(kernel_terms, 2);
    EXPECT_LT(mRel(x, 0.1), 1e-14);
    // The same problem scaled by 1e-19: every step lands within
    // 2.220446049250313e-16 of the point before, so the cycle breaker halves
    // each of them.  The distance 2e-20 to the answer halves per round until
    // it is below 1e-9 of the answer: 2e-20 / 2^31 = 9.3e-30 after 32 rounds.
    x = 3e-20;
    beta_newton(1e-20, 1.0, 1.0, &x, 'L');
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_EQ(kernel_terms, 32);
    EXPECT_NEAR(x, 1e-20 + 2e-20 / 2147483648.0, 1e-34);
    // The same at 4e-17 towards 1e-17: 3e-17 / 2^32 = 7.0e-27 after 33.
    x = 4e-17;
    beta_newton(1e-17, 1.0, 1.0, &x, 'L');
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_EQ(kernel_terms, 33);
    EXPECT_NEAR(x, 1e-17 + 3e-17 / 4294967296.0, 1e-31);
}

TEST(BetaNewton, StepOutsideTheUnitIntervalIsCodeFour)
{
    // From 0.99 the lower tail of Beta(2, 3) is nearly 1 and the density
    // nearly 0: the first step leaves (0, 1) and beta_df refuses it.
    double x = 0.99;
    beta_newton(1e-6, 2.0, 3.0, &x, 'L');
    EXPECT_EQ(kernel_error_code, 4);
    EXPECT_STREQ(kernel_routine_name, "beta_newton");
}

// ---------------------------------------------------------------------------
// Accuracy.

TEST(BetaDf, MatchesMpmathOnShapesFromOneThousandthToOneHundredThousand)
{
    // Series stop at a term of 1e-9 and the continued fractions at a relative
    // change of 1e-9, so about 1e-9 relative is what the algorithm gives.
    const double kBound = 1e-8;
    const qeltest::RefTable table = qeltest::mLoadRefTable("beta_kernel_df.txt");
    ASSERT_GT(table.rows.size(), 1500u);
    qeltest::WorstError worstL("beta_df lower");
    qeltest::WorstError worstU("beta_df upper");
    qeltest::WorstError worstD("beta_df density");
    for (const std::vector<double>& row : table.rows)
    {
        ASSERT_EQ(row.size(), 6u);
        const double a = row[0], b = row[1], x = row[2];
        const double lo = row[3], up = row[4], dens = row[5];
        const BetaResult r = mBetaDf(x, a, b);
        std::ostringstream where;
        where.precision(17);
        where << "a=" << a << " b=" << b << " x=" << x;
        ASSERT_LE(r.code, 1) << where.str();
        if (x < KERNEL_TINY)
        {
            EXPECT_EQ(r.route, 1);
            continue;
        }
        const auto mCheck = [&](qeltest::WorstError& worst, double got, double ref,
                                const char* what) {
            if (!(ref > 1e-280))
                return;
            const double e = qeltest::mRelativeError(got, ref);
            std::ostringstream text;
            text.precision(17);
            text << where.str() << " " << what << "=" << got << " (mpmath " << ref << ")";
            worst.mUpdate(e, qeltest::mUlpDistance(got, ref), text.str());
            EXPECT_LE(e, kBound) << text.str();
        };
        mCheck(worstL, r.lower, lo, "lower");
        mCheck(worstU, r.upper, up, "upper");
        if (r.density != -1.0)
            mCheck(worstD, r.density, dens, "density");
    }
    std::cout << worstL.mReport() << "\n" << worstU.mReport() << "\n"
              << worstD.mReport() << std::endl;
    RecordProperty("worst_lower", worstL.mReport());
    RecordProperty("worst_upper", worstU.mReport());
    RecordProperty("worst_density", worstD.mReport());
}
