// Quantiles of the beta kernel: the starting values of beta_start in its four
// modes, every row of beta_search with its route code, beta_right_start, the
// argument checks of the two entry routines, and the distribution function
// at the answer against the probability asked for over a grid of shapes
// from 0.001 to 1e7 and probabilities from 1e-12 to 0.5.
#include "qelmath/kernels/beta.h"
#include "qelmath/kernels/kernel_helpers.h"
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

double mRel(double dComputed, double dReference)
{
    return std::fabs(dComputed - dReference) / std::fabs(dReference);
}

struct SearchResult
{
    double x = -7.0;
    double y = -7.0;
    int route = -1;
    int code = -1;
};

SearchResult mSearch(double p, double a, double b)
{
    SearchResult r;
    kernel_enter("test");
    beta_search(p, a, b, &r.x, &r.y);
    r.route = kernel_method_code;
    r.code = kernel_error_code;
    return r;
}

double mLower(double x, double a, double b)
{
    double lower = 0.0, upper = 0.0, density = 0.0;
    beta_df(x, a, b, &lower, &upper, &density);
    return lower;
}

double mUpper(double x, double a, double b)
{
    double lower = 0.0, upper = 0.0, density = 0.0;
    beta_df(x, a, b, &lower, &upper, &density);
    return upper;
}

// Relative error of the answer of the search: the lower tail of Beta(a, b)
// at x against p, or, where the answer lies right of the middle, the upper
// tail of Beta(b, a) at y = 1 - x, which is the same quantity without the
// rounding of 1 - y.
double mSearchError(const SearchResult& r, double p, double a, double b)
{
    if (r.x <= 0.5)
        return mRel(mLower(r.x, a, b), p);
    return mRel(mUpper(r.y, b, a), p);
}

// Expects the row and a refined answer.
void mExpectRow(double p, double a, double b, int route)
{
    const SearchResult r = mSearch(p, a, b);
    EXPECT_EQ(r.route, route) << "p=" << p << " a=" << a << " b=" << b;
    EXPECT_EQ(r.code, 0);
    // One of the two is computed, the other is its complement.
    EXPECT_TRUE(r.y == 1.0 - r.x || r.x == 1.0 - r.y);
    EXPECT_LT(mSearchError(r, p, a, b), 1e-8) << "p=" << p << " a=" << a << " b=" << b;
}

// Expects the row in which the answer underflows to 0 with stored code 1.
void mExpectZeroRow(double p, double a, double b, int route)
{
    const SearchResult r = mSearch(p, a, b);
    EXPECT_EQ(r.route, route);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.x, 0.0);
    EXPECT_EQ(r.y, 1.0);
    // The lower tail at the smallest nonzero argument is already above p.
    EXPECT_LT(p, mLower(KERNEL_TINY, a, b));
}
} // namespace

// ---------------------------------------------------------------------------
// beta_start.

TEST(BetaStart, PowerLawValuesNearZero)
{
    double first = 0.0, second = 0.0;
    // Beta(1, b): lower tail 1 - (1 - x)^b, a B(a, b) = 1/b.
    beta_start(0.01, 1.0, 4.0, -1, &first, &second);
    EXPECT_LT(mRel(first, 0.01), 1e-15);
    EXPECT_LT(mRel(second, 0.01 / 4.0), 1e-12);
    // Mode 1 uses log(1 - p).
    beta_start(0.01, 1.0, 4.0, 1, &first, &second);
    EXPECT_LT(mRel(first, 0.99), 1e-15);
    EXPECT_LT(mRel(second, 0.99 / 4.0), 1e-12);
    // Below the floor both values are the smallest nonzero argument.
    beta_start(1e-12, 0.001, 4.0, -1, &first, &second);
    EXPECT_EQ(first, KERNEL_TINY);
    EXPECT_EQ(second, KERNEL_TINY);
}

TEST(BetaStart, NormalExpansionForLargeShapes)
{
    double first = 0.0, second = -3.0;
    // Symmetric shapes: the median is exactly 1/2 and the expansion gives it.
    beta_start(0.5, 500.0, 500.0, -2, &first, &second);
    EXPECT_LT(std::fabs(first - 0.5), 1e-15);
    EXPECT_EQ(second, -3.0);
    // Mode 2 is the same with the upper tail: x(p, mode 2) = x(1 - p, mode -2).
    double upperStart = 0.0, lowerStart = 0.0;
    beta_start(0.1, 300.0, 700.0, 2, &upperStart, &second);
    beta_start(0.9, 300.0, 700.0, -2, &lowerStart, &second);
    EXPECT_LT(mRel(upperStart, lowerStart), 1e-14);
    // Against the distribution function: accurate to about 1/h^2.
    beta_start(0.01, 300.0, 700.0, -2, &first, &second);
    EXPECT_LT(mRel(mLower(first, 300.0, 700.0), 0.01), 1e-4);
}

// ---------------------------------------------------------------------------
// beta_search: every row.

TEST(BetaSearchRow, FirstShapeAtMostOneBelowTheTinyTailIsRouteEleven)
{
    mExpectZeroRow(1e-12, 0.001, 1.0, 11);
}

TEST(BetaSearchRow, FirstShapeAtMostOneIsRouteTwelve)
{
    mExpectRow(0.1, 0.5, 2.0, 12);
}

TEST(BetaSearchRow, SecondShapeAtMostOneLeftOfTheMiddleIsRouteTwenty)
{
    mExpectRow(0.01, 2.0, 0.5, 20);
}

TEST(BetaSearchRow, SecondShapeAtMostOneRightOfTheMiddleGoesToTheRightStart)
{
    // beta_right_start(p, b, a) with b <= 1 and a >= 1: route 52.
    mExpectRow(0.001, 1.0, 0.001, 52);
}

TEST(BetaSearchRow, BothShapesBelowOneFirstSmallerRoutesThirtyOneToThirtyThree)
{
    mExpectZeroRow(1e-12, 0.001, 0.001, 31);
    mExpectRow(0.3, 0.001, 0.001, 32);
    mExpectRow(0.3, 0.3, 0.5, 33);
}

TEST(BetaSearchRow, BothShapesBelowOneFirstLargerRoutesFortyOneToFortyFour)
{
    // p at or above the tail at the antimode (a - 1)/(a + b - 2).
    mExpectRow(0.001, 0.8, 0.0011, 41);
    mExpectZeroRow(1e-12, 0.0011, 0.001, 42);
    mExpectRow(0.3, 0.0011, 0.001, 43);
    mExpectRow(0.3, 0.5, 0.3, 44);
}

TEST(BetaSearchRow, BothShapesBelowOneRightOfTheMiddleGoesToTheRightStart)
{
    // Second value below 0.001: route 61; otherwise the first value: 62.
    mExpectRow(0.5, 0.0011, 0.001, 61);
    mExpectRow(0.1, 0.01, 0.0011, 62);
}

TEST(BetaSearchRow, RightStartBeyondTheTinyTailIsRouteFiftyOne)
{
    // Beta(0.1, 0.001) puts mass 0.99 at 1: the quantile 0.5 is 1 - y with y
    // below the smallest nonzero argument.
    const SearchResult r = mSearch(0.5, 0.1, 0.001);
    EXPECT_EQ(r.route, 51);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.y, 0.0);
    EXPECT_EQ(r.x, 1.0);
    EXPECT_EQ(kernel_terms, 0);
}

TEST(BetaSearchRow, HalfTheHarmonicMeanFromTwentyThousandIsTheExpansionUnrefined)
{
    // a = b = 40000: a b / (a + b) = 20000 exactly.
    double expansion = 0.0, unused = 0.0;
    beta_start(0.1, 40000.0, 40000.0, -2, &expansion, &unused);
    SearchResult r = mSearch(0.1, 40000.0, 40000.0);
    EXPECT_EQ(r.route, 71);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.x, expansion);
    EXPECT_EQ(r.y, 1.0 - expansion);
    EXPECT_LT(mRel(mLower(r.x, 40000.0, 40000.0), 0.1), 1e-9);
    // a > b: the upper-tail expansion with the shapes exchanged gives y.
    beta_start(0.01, 30000.0, 100000.0, 2, &expansion, &unused);
    r = mSearch(0.01, 100000.0, 30000.0);
    EXPECT_EQ(r.route, 72);
    EXPECT_EQ(r.y, expansion);
    EXPECT_EQ(r.x, 1.0 - expansion);
}

TEST(BetaSearchRow, SmallHarmonicMeanStartsAtTheModeRoutesNinetyOneToNinetyThree)
{
    mExpectRow(0.3, 1.5, 1.5, 91);
    mExpectRow(1e-12, 2.0, 1.5, 92);
    mExpectRow(0.4, 2.0, 1.5, 93);
}

TEST(BetaSearchRow, MiddleHarmonicMeanRefinesTheExpansionRoutesEightyOneToEightyThree)
{
    mExpectRow(0.01, 15.0, 30.0, 81);
    mExpectRow(1e-12, 30.0, 15.0, 82);
    mExpectRow(0.05, 30.0, 15.0, 83);
}

TEST(BetaRightStart, SolvesTheUpperTailNearZero)
{
    double x = -1.0;
    kernel_enter("test");
    beta_right_start(0.2, 0.5, 3.0, &x);
    EXPECT_EQ(kernel_method_code, 52);
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_LT(mRel(mUpper(x, 0.5, 3.0), 0.2), 1e-8);
}

// ---------------------------------------------------------------------------
// Entry routines.

TEST(BetaQuant, ShapeBelowOneThousandthIsCodeTwoWhileTheDistributionAcceptsIt)
{
    double x = 0.0;
    beta_lower_quant(0.1, 0.0009, 2.0, &x);
    EXPECT_EQ(kernel_error_code, 2);
    EXPECT_STREQ(kernel_routine_name, "beta_lower_quant");
    EXPECT_EQ(x, -kSentinel);
    double lower = -7.0, upper = -7.0, density = -7.0;
    beta_df(0.1, 0.0009, 2.0, &lower, &upper, &density);
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_GT(lower, 0.99);
}

TEST(BetaQuant, BadArgumentsGiveTheNegativeSentinelWithCodeTwo)
{
    const double kNaN = std::numeric_limits<double>::quiet_NaN();
    const double cases[][3] = {{0.9e-12, 2.0, 3.0}, {0.5000001, 2.0, 3.0}, {0.1, 2.0, 0.0009},
                               {0.1, 94906265.0, 3.0}, {0.1, 2.0, 94906265.0}, {kNaN, 2.0, 3.0},
                               {0.1, kNaN, 3.0}};
    for (const auto& c : cases)
    {
        double x = 0.0;
        beta_lower_quant(c[0], c[1], c[2], &x);
        EXPECT_EQ(kernel_error_code, 2);
        EXPECT_EQ(x, -kSentinel);
        x = 0.0;
        beta_upper_quant(c[0], c[1], c[2], &x);
        EXPECT_EQ(kernel_error_code, 2);
        EXPECT_STREQ(kernel_routine_name, "beta_upper_quant");
        EXPECT_EQ(x, -kSentinel);
    }
    // The ends of the ranges are admitted.
    double x = 0.0;
    beta_lower_quant(1e-12, 0.001, 94906264.0, &x);
    EXPECT_LE(kernel_error_code, 1);
    beta_upper_quant(0.5, 2.0, 3.0, &x);
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(BetaQuant, UpperQuantileRestatesTheStoredCodeUnderItsName)
{
    double x = -1.0;
    // The upper quantile of Beta(1, 0.001) at 1e-12 is the lower quantile of
    // Beta(0.001, 1), which underflows: code 1 under this routine's name.
    beta_upper_quant(1e-12, 1.0, 0.001, &x);
    EXPECT_EQ(kernel_error_code, 1);
    EXPECT_STREQ(kernel_routine_name, "beta_upper_quant");
    EXPECT_EQ(x, 1.0);
    beta_upper_quant(0.05, 2.0, 3.0, &x);
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_STREQ(kernel_routine_name, "beta_upper_quant");
    EXPECT_LT(mRel(mUpper(x, 2.0, 3.0), 0.05), 1e-9);
}

TEST(BetaQuant, LowerAndUpperQuantilesHitTheProbabilityOnAGrid)
{
    const double shapes[] = {0.001, 0.01, 0.3, 0.9, 1.0, 1.5, 4.0, 12.0, 150.0,
                             3000.0, 39000.0, 1e5, 1e6, 1e7};
    const double probs[] = {1e-12, 1e-9, 1e-6, 1e-3, 0.02, 0.1, 0.25, 0.4, 0.5};
    qeltest::WorstError worstLower("beta_lower_quant: |F(x) / p - 1|");
    qeltest::WorstError worstUpper("beta_upper_quant: |Q(x) / p - 1|");
    qeltest::WorstError worstExpansion("beta quantile expansion, h >= 20000: |F(x) / p - 1|");
    int iUnderflow = 0;
    for (double a : shapes)
    {
        for (double b : shapes)
        {
            for (double p : probs)
            {
                std::ostringstream where;
                where.precision(17);
                where << "a=" << a << " b=" << b << " p=" << p;
                const bool bExpansion = a > 1.0 && b > 1.0 && a * b / (a + b) >= 20000.0;
                const SearchResult r = mSearch(p, a, b);
                ASSERT_LE(r.code, 1) << where.str();
                if (r.code == 1)
                {
                    // The answer is below the smallest nonzero argument, or
                    // closer to 1 than that: the lower tail at KERNEL_TINY is
                    // above p, or the one at 1 - KERNEL_TINY is below it.
                    ++iUnderflow;
                    if (r.x == 0.0)
                        EXPECT_LT(p, mLower(KERNEL_TINY, a, b)) << where.str();
                    else
                        EXPECT_GT(p, mUpper(KERNEL_TINY, b, a)) << where.str();
                    continue;
                }
                const double e = mSearchError(r, p, a, b);
                std::ostringstream text;
                text.precision(17);
                text << where.str() << " x=" << r.x << " route " << r.route;
                if (bExpansion)
                {
                    worstExpansion.mUpdate(e, 0.0, text.str());
                    EXPECT_TRUE(r.route == 71 || r.route == 72) << text.str();
                    // Measured worst about 2.2e-5, in the far tail of the
                    // most unbalanced pair; bounded here with a margin.
                    EXPECT_LT(e, 1e-4) << text.str();
                    continue;
                }
                worstLower.mUpdate(e, 0.0, text.str());
                EXPECT_LT(e, 1e-8) << text.str();

                // The entries are the search itself: the lower quantile is x, and
                // the upper quantile of Beta(b, a) at p is y.
                double xl = -1.0, xu = -1.0;
                beta_lower_quant(p, a, b, &xl);
                EXPECT_EQ(kernel_error_code, 0) << text.str();
                EXPECT_EQ(xl, r.x) << text.str();
                beta_upper_quant(p, b, a, &xu);
                EXPECT_EQ(kernel_error_code, 0) << text.str();
                EXPECT_EQ(xu, r.y) << text.str();
                const double eu = xu <= 0.5 ? mRel(mUpper(xu, b, a), p) : e;
                worstUpper.mUpdate(eu, 0.0, text.str());
                EXPECT_LT(eu, 1e-8) << text.str();
            }
        }
    }
    std::cout << worstLower.mReport() << "\n"
              << worstUpper.mReport() << "\n"
              << worstExpansion.mReport() << "\n"
              << "answers below the smallest nonzero argument (code 1): " << iUnderflow
              << std::endl;
    RecordProperty("worst_lower", worstLower.mReport());
    RecordProperty("worst_upper", worstUpper.mReport());
    RecordProperty("worst_expansion", worstExpansion.mReport());
}
