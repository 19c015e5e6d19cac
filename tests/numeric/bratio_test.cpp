// BRATIO and its method routines (DiDonato and Morris, ACM TOMS 708): the
// error codes, the limits, every regime of the choice of method (each reached
// by arguments from tests/data/incbeta_branches.txt, checked against the
// mpmath reference and against the method routine called directly), and
// arguments that must neither hang nor overflow.
#include "qel/betaroutines.h"
#include "qel/specialroutines.h"

#include "support/reftable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>

namespace
{

struct Tails
{
    double w = -1.0;
    double w1 = -1.0;
    int ierr = -1;
};

Tails bratio(double a, double b, double x, double y)
{
    Tails t;
    BRATIO(&a, &b, &x, &y, &t.w, &t.w1, &t.ierr);
    return t;
}

// The working tolerance of BRATIO: max(SPMPAR(1), 1e-15).
double bratioEps()
{
    int i = 1;
    return std::fmax(SPMPAR(&i), 1.0e-15);
}

double fpser(double a, double b, double x, double eps)
{
    return FPSER(&a, &b, &x, &eps);
}
double apser(double a, double b, double x, double eps)
{
    return APSER(&a, &b, &x, &eps);
}
double bpser(double a, double b, double x, double eps)
{
    return BPSER(&a, &b, &x, &eps);
}
double bup(double a, double b, double x, double y, int n, double eps)
{
    return BUP(&a, &b, &x, &y, &n, &eps);
}
double bfrac(double a, double b, double x, double y, double lambda, double eps)
{
    return BFRAC(&a, &b, &x, &y, &lambda, &eps);
}
double basym(double a, double b, double lambda, double eps)
{
    return BASYM(&a, &b, &lambda, &eps);
}
double bgrat(double a, double b, double x, double y, double w, double eps, int* ierr)
{
    BGRAT(&a, &b, &x, &y, &w, &eps, ierr);
    return w;
}

// I_x(a, b) and its complement, assembled from the method routine that the
// regime with the given label calls, in the order BRATIO calls it.
Tails expectedByMethod(int iLabel, double a, double b, double x, double y)
{
    const double eps = bratioEps();
    Tails t;
    t.ierr = 0;
    int ierr1 = 0;
    auto fromLower = [&t](double w)
    {
        t.w = w;
        t.w1 = 0.5 + (0.5 - w);
    };
    auto fromUpper = [&t](double w1)
    {
        t.w1 = w1;
        t.w = 0.5 + (0.5 - w1);
    };
    // x above one half (small shapes) or above the mean (large shapes) swaps
    // the roles of (a, x) and (b, y): the lower tail of the swapped problem
    // is the upper tail of this one.
    const bool swapSmall = x > 0.5;
    switch (iLabel)
    {
    case 1: // FPSER
        if (swapSmall)
            fromUpper(fpser(b, a, y, eps));
        else
            fromLower(fpser(a, b, x, eps));
        break;
    case 2: // 1 - APSER
        fromUpper(apser(a, b, x, eps));
        break;
    case 3: // BPSER
    case 8:
    case 11:
        fromLower(bpser(a, b, x, eps));
        break;
    case 6:
        if (swapSmall)
            fromUpper(bpser(b, a, y, eps));
        else
            fromLower(bpser(a, b, x, eps));
        break;
    case 4: // 1 - BPSER with the roles swapped
    case 7:
    case 12:
        fromUpper(bpser(b, a, y, eps));
        break;
    case 5: // BUP with n = 20, then BGRAT at b + 20
    case 10:
        fromUpper(bgrat(b + 20.0, a, y, x, bup(b, a, y, x, 20, eps), 15.0 * eps, &ierr1));
        break;
    case 9: // BGRAT alone
        fromUpper(bgrat(b, a, y, x, 0.0, 15.0 * eps, &ierr1));
        break;
    case 13: // b = n + e: BUP, then BPSER
    case 14: // BUP, BUP with n = 20, BGRAT at a + 20
    case 15: // BUP, then BGRAT
    {
        int n = static_cast<int>(b);
        double e = b - n;
        if (e == 0.0)
        {
            --n;
            e = 1.0;
        }
        double w = bup(e, a, y, x, n, eps);
        if (iLabel == 13)
            w += bpser(a, e, x, eps);
        else if (iLabel == 14)
            w = bgrat(a + 20.0, e, x, y, w + bup(a, e, x, y, 20, eps), 15.0 * eps, &ierr1);
        else
            w = bgrat(a, e, x, y, w, 15.0 * eps, &ierr1);
        fromLower(w);
        break;
    }
    case 16: // BFRAC, a > b
    case 17:
        fromLower(bfrac(a, b, x, y, (a + b) * y - b, 15.0 * eps));
        break;
    case 19: // BFRAC, a <= b
    case 20:
        fromLower(bfrac(a, b, x, y, a - (a + b) * x, 15.0 * eps));
        break;
    case 18: // BASYM, a > b
        fromLower(basym(a, b, (a + b) * y - b, 100.0 * eps));
        break;
    case 21: // BASYM, a <= b
        fromLower(basym(a, b, a - (a + b) * x, 100.0 * eps));
        break;
    case 22: // both shapes negligible
        t.w = b / (a + b);
        t.w1 = a / (a + b);
        break;
    default:
        ADD_FAILURE() << "unknown label " << iLabel;
    }
    EXPECT_EQ(ierr1, 0) << "BGRAT failed for label " << iLabel;
    return t;
}

std::string describe(int iLabel, double a, double b, double x)
{
    std::ostringstream os;
    os.precision(17);
    os << "label " << iLabel << " a=" << a << " b=" << b << " x=" << x;
    return os.str();
}

} // namespace

// ---------------------------------------------------------------------------
// Error codes: w and w1 are both 0 on every error.

TEST(Bratio, NegativeShapeIsCodeOne)
{
    Tails t = bratio(-1.0, 2.0, 0.3, 0.7);
    EXPECT_EQ(t.ierr, 1);
    EXPECT_EQ(t.w, 0.0);
    EXPECT_EQ(t.w1, 0.0);
    EXPECT_EQ(bratio(2.0, -1e-300, 0.3, 0.7).ierr, 1);
}

TEST(Bratio, BothShapesZeroIsCodeTwo)
{
    Tails t = bratio(0.0, 0.0, 0.3, 0.7);
    EXPECT_EQ(t.ierr, 2);
    EXPECT_EQ(t.w, 0.0);
    EXPECT_EQ(t.w1, 0.0);
}

TEST(Bratio, XOutsideTheUnitIntervalIsCodeThree)
{
    EXPECT_EQ(bratio(2.0, 3.0, -0.25, 1.25).ierr, 3);
    EXPECT_EQ(bratio(2.0, 3.0, 1.25, -0.25).ierr, 3);
}

TEST(Bratio, YOutsideTheUnitIntervalIsCodeFour)
{
    Tails t = bratio(2.0, 3.0, 0.5, 1.5);
    EXPECT_EQ(t.ierr, 4);
    EXPECT_EQ(t.w, 0.0);
    EXPECT_EQ(t.w1, 0.0);
    EXPECT_EQ(bratio(2.0, 3.0, 0.5, -0.5).ierr, 4);
}

TEST(Bratio, XPlusYAwayFromOneIsCodeFiveButAFewRoundingsAreTolerated)
{
    // The tolerance is 3 max(SPMPAR(1), 1e-15) = 3e-15.
    EXPECT_EQ(bratio(2.0, 3.0, 0.3, 0.71).ierr, 5);
    EXPECT_EQ(bratio(2.0, 3.0, 0.3, 0.7 + 1e-14).ierr, 5);
    Tails t = bratio(2.0, 3.0, 0.5, 0.5 + 2e-15);
    EXPECT_EQ(t.ierr, 0);
    // I_0.5(2, 3) = 11/16.
    EXPECT_NEAR(t.w, 11.0 / 16.0, 1e-14);
}

TEST(Bratio, XAndAZeroIsCodeSixAndYAndBZeroIsCodeSeven)
{
    Tails t = bratio(0.0, 2.0, 0.0, 1.0);
    EXPECT_EQ(t.ierr, 6);
    EXPECT_EQ(t.w, 0.0);
    EXPECT_EQ(t.w1, 0.0);
    t = bratio(2.0, 0.0, 1.0, 0.0);
    EXPECT_EQ(t.ierr, 7);
    EXPECT_EQ(t.w, 0.0);
    EXPECT_EQ(t.w1, 0.0);
}

TEST(Bratio, NanOrInfiniteArgumentsFailTheirRangeTest)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(bratio(nan, 2.0, 0.3, 0.7).ierr, 1);
    EXPECT_EQ(bratio(2.0, nan, 0.3, 0.7).ierr, 1);
    EXPECT_EQ(bratio(inf, 2.0, 0.3, 0.7).ierr, 1);
    EXPECT_EQ(bratio(2.0, inf, 0.3, 0.7).ierr, 1);
    EXPECT_EQ(bratio(2.0, 3.0, nan, 0.7).ierr, 3);
    EXPECT_EQ(bratio(2.0, 3.0, 0.3, nan).ierr, 4);
    Tails t = bratio(2.0, 3.0, inf, -inf);
    EXPECT_EQ(t.ierr, 3);
    EXPECT_EQ(t.w, 0.0);
    EXPECT_EQ(t.w1, 0.0);
}

// ---------------------------------------------------------------------------
// Limits.

TEST(Bratio, XZeroGivesLowerTailZero)
{
    Tails t = bratio(2.5, 0.5, 0.0, 1.0);
    EXPECT_EQ(t.ierr, 0);
    EXPECT_EQ(t.w, 0.0);
    EXPECT_EQ(t.w1, 1.0);
    // b = 0 does not matter when x = 0.
    t = bratio(2.5, 0.0, 0.0, 1.0);
    EXPECT_EQ(t.ierr, 0);
    EXPECT_EQ(t.w, 0.0);
    EXPECT_EQ(t.w1, 1.0);
}

TEST(Bratio, YZeroGivesLowerTailOne)
{
    Tails t = bratio(2.5, 0.5, 1.0, 0.0);
    EXPECT_EQ(t.ierr, 0);
    EXPECT_EQ(t.w, 1.0);
    EXPECT_EQ(t.w1, 0.0);
    t = bratio(0.0, 0.5, 1.0, 0.0);
    EXPECT_EQ(t.ierr, 0);
    EXPECT_EQ(t.w, 1.0);
    EXPECT_EQ(t.w1, 0.0);
}

TEST(Bratio, ShapeAZeroGivesLowerTailOne)
{
    Tails t = bratio(0.0, 3.0, 0.25, 0.75);
    EXPECT_EQ(t.ierr, 0);
    EXPECT_EQ(t.w, 1.0);
    EXPECT_EQ(t.w1, 0.0);
}

TEST(Bratio, ShapeBZeroGivesLowerTailZero)
{
    Tails t = bratio(3.0, 0.0, 0.25, 0.75);
    EXPECT_EQ(t.ierr, 0);
    EXPECT_EQ(t.w, 0.0);
    EXPECT_EQ(t.w1, 1.0);
}

// ---------------------------------------------------------------------------
// Every regime of the choice of method.  Label 22 is the limit of both
// shapes below 0.001 eps; the others name the method routines in the table
// of tests/data/gen_incbeta.py.

TEST(Bratio, EveryRegimeMatchesItsMethodAndTheReference)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("incbeta_branches.txt");
    ASSERT_GE(table.rows.size(), 31u);
    bool seen[23] = {};
    qeltest::WorstError worst("BRATIO regimes");
    for (const auto& row : table.rows)
    {
        ASSERT_EQ(row.size(), 7u);
        const int label = static_cast<int>(row[0]);
        ASSERT_TRUE(label >= 1 && label <= 22);
        seen[label] = true;
        const double a = row[1], b = row[2], x = row[3], y = row[4];
        const std::string what = describe(label, a, b, x);

        const Tails got = bratio(a, b, x, y);
        ASSERT_EQ(got.ierr, 0) << what;

        // The dispatch: the same numbers as the method routine itself.
        const Tails expected = expectedByMethod(label, a, b, x, y);
        EXPECT_EQ(got.w, expected.w) << what;
        EXPECT_EQ(got.w1, expected.w1) << what;

        // The value: both tails to 1e-13 relative.
        for (int k = 0; k < 2; ++k)
        {
            const double ref = row[5 + k];
            const double val = k == 0 ? got.w : got.w1;
            const double err = qeltest::mRelativeError(val, ref);
            worst.mUpdate(err, qeltest::mUlpDistance(val, ref), what);
            EXPECT_LE(err, 1e-13) << what << (k == 0 ? " lower" : " upper") << " got " << val
                                  << " want " << ref;
        }
    }
    for (int label = 1; label <= 22; ++label)
        EXPECT_TRUE(seen[label]) << "no row for label " << label;
    std::cout << worst.mReport() << std::endl;
}

TEST(Bratio, RegimeOfTinyShapesIsTheRatioOfTheShapesForEveryX)
{
    // Both shapes below 0.001 eps: w = b / (a + b) whatever x is.
    for (double x : {1e-200, 0.25, 0.5, 0.75})
    {
        Tails t = bratio(1e-300, 3e-300, x, 1.0 - x);
        EXPECT_EQ(t.ierr, 0);
        EXPECT_EQ(t.w, 3e-300 / 4e-300);
        EXPECT_EQ(t.w1, 1e-300 / 4e-300);
    }
}

// ---------------------------------------------------------------------------
// The method routines on their own.

TEST(BratioMethods, BrcompIsTheLeadingFactorAndBrcmp1ScalesIt)
{
    // x^a y^b / B(a, b) at a = 2, b = 3, x = 0.4: 0.16 * 0.216 * 12.
    double a = 2.0, b = 3.0, x = 0.4, y = 0.6;
    const double want = 0.16 * 0.216 * 12.0;
    EXPECT_NEAR(BRCOMP(&a, &b, &x, &y), want, 1e-14 * want);
    int mu = 0;
    EXPECT_NEAR(BRCMP1(&mu, &a, &b, &x, &y), want, 1e-14 * want);
    mu = -5;
    EXPECT_NEAR(BRCMP1(&mu, &a, &b, &x, &y), want * std::exp(-5.0), 1e-14 * want);
    // Large shapes, about the mode: the Stirling form.
    a = 20.0;
    b = 30.0;
    x = 0.4;
    y = 0.6;
    // x^a y^b / B(a, b) with log B(20, 30) = lgamma(20) + lgamma(30) - lgamma(50).
    const double big = std::exp(20.0 * std::log(0.4) + 30.0 * std::log(0.6) - std::lgamma(20.0) -
                                std::lgamma(30.0) + std::lgamma(50.0));
    EXPECT_NEAR(BRCOMP(&a, &b, &x, &y), big, 1e-12 * big);
    // Zero at either end.
    x = 0.0;
    y = 1.0;
    EXPECT_EQ(BRCOMP(&a, &b, &x, &y), 0.0);
}

TEST(BratioMethods, BrcmpOneKeepsAFactorBelowTheSmallestDoubleInRange)
{
    // x^a y^b / B(a, b) = exp(-805.4) here, below the smallest double;
    // scaled by exp(708) it is a normal number.
    double a = 600.0, b = 600.0, x = 0.07, y = 0.93;
    const double logFactor =
        a * std::log(x) + b * std::log(y) - (2.0 * std::lgamma(a) - std::lgamma(a + b));
    ASSERT_LT(logFactor, -800.0);
    ASSERT_GT(logFactor, -810.0);
    EXPECT_EQ(BRCOMP(&a, &b, &x, &y), 0.0);
    int mu = 708;
    const double scaled = BRCMP1(&mu, &a, &b, &x, &y);
    EXPECT_GT(scaled, 0.0);
    EXPECT_NEAR(std::log(scaled), logFactor + 708.0, 1e-11 * std::fabs(logFactor));
}

TEST(BratioMethods, BupIsTheDifferenceOfTwoRatios)
{
    // I_x(a, b) - I_x(a + n, b) against BRATIO at both shapes; n = 1 is the
    // leading term alone, n = 5 and 20 scale the terms by exp(-mu).
    const double a = 2.5, b = 3.5, x = 0.4, y = 0.6;
    for (int n : {1, 5, 20})
    {
        const Tails t0 = bratio(a, b, x, y);
        const Tails tn = bratio(a + n, b, x, y);
        const double diff = t0.w - tn.w;
        EXPECT_NEAR(bup(a, b, x, y, n, bratioEps()), diff, 1e-14) << "n=" << n;
    }
    // y <= 1e-4: every term up to the last is taken as growing.  The
    // difference is that of the two upper tails, each about y^b.
    const double yTiny = 5e-5, xNear = 1.0 - yTiny;
    const Tails u0 = bratio(a, b, xNear, yTiny);
    const Tails u5 = bratio(a + 5, b, xNear, yTiny);
    const double want = u5.w1 - u0.w1;
    EXPECT_NEAR(bup(a, b, xNear, yTiny, 5, bratioEps()), want, 1e-12 * want);
}

TEST(BratioMethods, FpserForAShapeBelowOneThousandthOfEpsIsTheRatioOfTheShapes)
{
    // a <= 0.001 eps: x^a is taken as 1, and I_x(a, b) = (b/a)(1 + a s)
    // with s of order one: b / a to the last digit here.
    EXPECT_NEAR(fpser(1e-19, 1e-40, 0.3, bratioEps()), 1e-21, 1e-36);
}

TEST(BratioMethods, BgratReportsWhenTheExpansionCannotBeFormed)
{
    // b z = 0 (x = 1): nothing is added and the code is 1.
    int ierr = -1;
    EXPECT_EQ(bgrat(30.0, 0.5, 1.0, 0.0, 0.25, 1e-14, &ierr), 0.25);
    EXPECT_EQ(ierr, 1);
}

// ---------------------------------------------------------------------------
// Arguments that test the robustness of the loops and of the scaling.

TEST(Bratio, ExtremeArgumentsGiveFiniteTailsThatAddToOne)
{
    const double shapes[] = {1e-300, 1e-20, 1e-10, 1e-3, 0.5,  1.0,  7.9,  8.0,  39.999,
                             40.0,   100.0, 1e3,   1e6,  1e10, 1e15, 1e30, 1e300};
    const double xs[] = {1e-310, 1e-300, 1e-30, 1e-8, 0.1, 0.5, 0.7, 0.9, 1.0 - 1e-9};
    for (double a : shapes)
        for (double b : shapes)
            for (double x : xs)
            {
                const Tails t = bratio(a, b, x, 1.0 - x);
                const std::string what = describe(0, a, b, x);
                ASSERT_EQ(t.ierr, 0) << what;
                ASSERT_TRUE(std::isfinite(t.w) && std::isfinite(t.w1)) << what;
                EXPECT_GE(t.w, 0.0) << what;
                EXPECT_GE(t.w1, 0.0) << what;
                EXPECT_LE(t.w, 1.0) << what;
                EXPECT_LE(t.w1, 1.0) << what;
                EXPECT_NEAR(t.w + t.w1, 1.0, 1e-14) << what;
            }
}

TEST(BratioMethods, NanArgumentsOfTheLoopsReturnInsteadOfRunningOn)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double eps = bratioEps();
    EXPECT_TRUE(std::isnan(bpser(0.5, nan, 0.3, eps)));
    EXPECT_TRUE(std::isnan(apser(1e-20, 0.5, nan, eps)));
    EXPECT_TRUE(std::isnan(fpser(0.5, 1e-20, nan, eps)));
    EXPECT_TRUE(std::isnan(bfrac(50.0, 60.0, nan, nan, 17.0, eps)));
    EXPECT_TRUE(std::isnan(basym(300.0, 200.0, nan, eps)));
}
