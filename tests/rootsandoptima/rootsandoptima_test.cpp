// Roots, optima and brackets: mRootFinder, mGoldenSection, mBracketFinder,
// mRootOfQuadratic and mCompareFunction, with their failure reports.
#include "qel/rootsandoptima.h"

#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "qel/qelmsg.h"
#include "support/reftable.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <functional>
#include <iostream>
#include <limits>
#include <string>
#include <vector>

namespace
{
const double M = mGetMissingValueCode();
const double kInf = std::numeric_limits<double>::infinity();

// A function object around a lambda that records where it was evaluated.
class CmLambdaFunction : public CmRealFunction
{
public:
    explicit CmLambdaFunction(std::function<double(double)> fn, bool bIntegerX = false,
                              double dTarget = 0.0)
        : m_fn(std::move(fn))
    {
        m_bIntegerX = bIntegerX;
        m_dTarget = dTarget;
    }
    double operator()(double dX) override
    {
        m_vdCalls.push_back(dX);
        return m_fn(dX) - m_dTarget;
    }
    std::vector<double> m_vdCalls;

private:
    std::function<double(double)> m_fn;
};

bool HasSearchFailureFlag(const CmMessageCapture& rCapture)
{
    const auto& flags = rCapture.mGetErrorFlags();
    return flags.size() == 1 && flags[0].iCode == 50021 && flags[0].iLevel == 2;
}
} // namespace

// ---------------------------------------------------------------------------
// mRootOfQuadratic and mCompareFunction

TEST(RootOfQuadratic, GivesThePlusRootOrMissingWhenComplex)
{
    EXPECT_EQ(mRootOfQuadratic(1.0, 0.0, -4.0), 2.0);
    EXPECT_TRUE(mIsNumericMissing(mRootOfQuadratic(1.0, 0.0, 4.0)));
    // 2x^2 - 3x + 1 has roots 1/2 and 1; the plus sign gives 1.
    EXPECT_EQ(mRootOfQuadratic(2.0, -3.0, 1.0), 1.0);
    // A negative leading coefficient: the plus sign gives the smaller root.
    EXPECT_EQ(mRootOfQuadratic(-1.0, 0.0, 9.0), -3.0);
    // A double root.
    EXPECT_EQ(mRootOfQuadratic(1.0, -6.0, 9.0), 3.0);
    EXPECT_TRUE(mIsNumericMissing(mRootOfQuadratic(1.0, std::nan(""), 1.0)));
}

TEST(RootOfQuadratic, ZeroLeadingCoefficientAssertsAndGoesOn)
{
    CmAssertCapture capture;
    const double dRoot = mRootOfQuadratic(0.0, 2.0, -4.0);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dA != 0.0");
    EXPECT_TRUE(std::isnan(dRoot)); // (2 - 2) / 0, carried on unguarded
}

TEST(CompareFunction, DocumentedCases)
{
    EXPECT_TRUE(mCompareFunction(1.0, 2.0, true, true));
    EXPECT_FALSE(mCompareFunction(1.0, 2.0, true, false));
    EXPECT_FALSE(mCompareFunction(2.0, 1.0, false, true));
    EXPECT_FALSE(mCompareFunction(2.0, 1.0, false, false));
    EXPECT_FALSE(mCompareFunction(M, 1.0, false, false));
    EXPECT_TRUE(mCompareFunction(M, 0.0, true, false));
    EXPECT_TRUE(mCompareFunction(M, 0.0, true, true));
    EXPECT_TRUE(mCompareFunction(2.0, 1.0, true, false));
    EXPECT_FALSE(mCompareFunction(2.0, 1.0, true, true));
}

TEST(CompareFunction, TieWithinTheFuzzCountsAsNoWorse)
{
    EXPECT_TRUE(mCompareFunction(1.0, 1.0, true, true));
    EXPECT_TRUE(mCompareFunction(1.0, 1.0, true, false));
    // One unit in the last place below, when maximising: a tie.
    EXPECT_TRUE(mCompareFunction(1.0, 1.0 - DBL_EPSILON / 2.0, true, true));
    // Clearly worse is not a tie.
    EXPECT_FALSE(mCompareFunction(1.0, 1.0 - 1e-10, true, true));
    EXPECT_FALSE(mCompareFunction(1.0, 1.0 + 1e-10, true, false));
}

// ---------------------------------------------------------------------------
// mRootFinder

// Smooth roots against their closed forms; the worst distance in units in
// the last place is reported.
TEST(RootFinder, SmoothRootsToTheLastPlaces)
{
    struct Case
    {
        const char* name;
        std::function<double(double)> fn;
        double dXL, dXR, dTarget, dRoot;
    };
    const std::vector<Case> cases = {
        {"x^2 - 2 on [0, 2]", [](double x) { return x * x - 2.0; }, 0.0, 2.0, 0.0,
         1.4142135623730951},
        {"cos x - x on [0, 1]", [](double x) { return std::cos(x) - x; }, 0.0, 1.0, 0.0,
         0.7390851332151607},
        {"exp x - 10 on [0, 5]", [](double x) { return std::exp(x) - 10.0; }, 0.0, 5.0, 0.0,
         2.302585092994046},
        {"x^3 = 27 on [0, 10]", [](double x) { return x * x * x; }, 0.0, 10.0, 27.0, 3.0},
        {"atan(x - 0.3) on [-50, 1]", [](double x) { return std::atan(x - 0.3); }, -50.0, 1.0, 0.0,
         0.3},
        {"x^5 = 32 on [-1, 3]", [](double x) { return std::pow(x, 5); }, -1.0, 3.0, 32.0, 2.0},
        {"1 - 1/x on [0.01, 1e4]", [](double x) { return 1.0 - 1.0 / x; }, 0.01, 1e4, 0.0, 1.0},
    };
    qeltest::WorstError worst("mRootFinder smooth roots");
    for (const Case& c : cases)
    {
        CmLambdaFunction f(c.fn, false, c.dTarget);
        CmMessageCapture messages;
        const double dRoot = mRootFinder(c.dXL, c.dXR, f);
        EXPECT_TRUE(messages.mGetErrorFlags().empty()) << c.name;
        const double dUlps = qeltest::mUlpDistance(dRoot, c.dRoot);
        EXPECT_LE(dUlps, 4.0) << c.name << ": " << dRoot;
        EXPECT_LT(f.m_vdCalls.size(), 200u) << c.name;
        worst.mUpdate(qeltest::mRelativeError(dRoot, c.dRoot), dUlps, c.name);
    }
    std::cout << worst.mReport() << "\n";
    RecordProperty("worst", worst.mReport());
}

// On a tiny scale the absolute tolerance of the value, 1e-30, ends the search
// long before the bracket is narrow: x^5 = 1e-20 stops once |f| <= 1e-30,
// about 2e-11 relative to the root 1e-4.  A derived class with no absolute
// tolerance for the value gets the root to the last places.
TEST(RootFinder, AbsoluteValueToleranceEndsTheSearchOnATinyScale)
{
    CmLambdaFunction f([](double x) { return std::pow(x, 5); }, false, 1e-20);
    const double dRoot = mRootFinder(-1.0, 2.0, f);
    EXPECT_LE(std::fabs(std::pow(dRoot, 5) - 1e-20), 1e-30);
    EXPECT_NEAR(dRoot, 1e-4, 1e-4 * 1e-10);

    class CmNoAbsoluteF : public CmLambdaFunction
    {
    public:
        CmNoAbsoluteF() : CmLambdaFunction([](double x) { return std::pow(x, 5); }, false, 1e-20)
        {
            m_dAbsoluteToleranceForF = 0.0;
        }
    } g;
    EXPECT_LE(qeltest::mUlpDistance(mRootFinder(-1.0, 2.0, g), 1e-4), 4.0);
}

TEST(RootFinder, LeftEndExactlyZeroIsTheRootWithoutIterating)
{
    CmLambdaFunction f([](double x) { return x; });
    CmMessageCapture messages;
    EXPECT_EQ(mRootFinder(0.0, 1.0, f), 0.0);
    EXPECT_EQ(f.m_vdCalls, (std::vector<double>{0.0, 1.0}));
    EXPECT_TRUE(messages.mGetErrorFlags().empty());
}

TEST(RootFinder, RightEndWithinToleranceIsTheRoot)
{
    CmLambdaFunction f([](double x) { return x - 1.0; });
    EXPECT_EQ(mRootFinder(-3.0, 1.0, f), 1.0);
    EXPECT_EQ(f.m_vdCalls.size(), 2u);
    // In whole-number mode the walk starts at the right end.
    CmLambdaFunction g([](double x) { return x - 7.0; }, true);
    EXPECT_EQ(mRootFinder(2.0, 7.0, g), 7.0);
}

TEST(RootFinder, BothEndsOnOneSideFailWithMissingAndFlag)
{
    CmLambdaFunction f([](double x) { return x * x + 1.0; });
    CmMessageCapture messages;
    EXPECT_TRUE(mIsNumericMissing(mRootFinder(-1.0, 2.0, f)));
    EXPECT_TRUE(HasSearchFailureFlag(messages));
    EXPECT_EQ(f.m_vdCalls.size(), 2u);
}

TEST(RootFinder, MissingEndFailsWithMissingAndFlag)
{
    CmLambdaFunction f([](double x) { return x < 0.0 ? mGetMissingValueCode() : x - 1.0; });
    CmMessageCapture messages;
    EXPECT_TRUE(mIsNumericMissing(mRootFinder(-1.0, 2.0, f)));
    EXPECT_TRUE(HasSearchFailureFlag(messages));

    CmLambdaFunction g([](double x) { return x > 1.5 ? mGetMissingValueCode() : x - 1.0; });
    CmMessageCapture messages2;
    EXPECT_TRUE(mIsNumericMissing(mRootFinder(0.0, 2.0, g)));
    EXPECT_TRUE(HasSearchFailureFlag(messages2));
}

// With the jump between 4 and 5 and a negative value at 4: the iterates
// 5, 1.67, 3.89 and 4.78 leave the bracket [3.89, 5] less than 2 wide, and the
// walk from floor(3.89) = 3 passes 3 and 4 (negative) to stop at 5.
TEST(RootFinder, StepFunctionInWholeNumberModeGivesTheFirstWholeNumberPastTheJump)
{
    CmLambdaFunction f([](double x) { return x < 4.5 ? -1.0 : 1.0; }, true);
    CmMessageCapture messages;
    EXPECT_EQ(mRootFinder(0.0, 10.0, f), 5.0);
    EXPECT_TRUE(messages.mGetErrorFlags().empty());
    // The walk evaluated 4 and 5 last.
    ASSERT_GE(f.m_vdCalls.size(), 2u);
    EXPECT_EQ(f.m_vdCalls[f.m_vdCalls.size() - 2], 4.0);
    EXPECT_EQ(f.m_vdCalls.back(), 5.0);
}

TEST(RootFinder, WholeNumberModeOnADiscreteFunctionMinusATarget)
{
    // floor(x) - 20 first reaches 0 at 20.
    CmLambdaFunction f([](double x) { return std::floor(x) - 20.0; }, true);
    EXPECT_EQ(mRootFinder(17.0, 33.0, f), 20.0);
    // A distribution-like step function: the smallest n with F(n) >= 0.7,
    // for F(n) = 1 - 0.5^(n + 1) at whole n; F(0) = 0.5, F(1) = 0.75.
    CmLambdaFunction g([](double x) { return 1.0 - std::pow(0.5, std::floor(x) + 1.0); }, true,
                       0.7);
    EXPECT_EQ(mRootFinder(0.0, 30.0, g), 1.0);
}

TEST(RootFinder, ReversedIntervalAssertsAndGoesOn)
{
    CmLambdaFunction f([](double x) { return x - 0.5; });
    CmAssertCapture capture;
    EXPECT_EQ(mRootFinder(1.0, 0.0, f), 0.5);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dXL < dXR");
}

TEST(RootFinder, EndAtInfinityFailsInsteadOfLooping)
{
    CmLambdaFunction f([](double x) { return x - 1.0; });
    CmMessageCapture messages;
    EXPECT_TRUE(mIsNumericMissing(mRootFinder(0.0, kInf, f)));
    EXPECT_TRUE(HasSearchFailureFlag(messages));

    CmLambdaFunction g([](double) { return std::nan(""); });
    CmMessageCapture messages2;
    EXPECT_TRUE(mIsNumericMissing(mRootFinder(0.0, 1.0, g)));
    EXPECT_TRUE(HasSearchFailureFlag(messages2));
}

// ---------------------------------------------------------------------------
// mGoldenSection

TEST(GoldenSection, ParabolaWithWholeNumberFlagGivesTheWholeNumberAtTheBottom)
{
    CmLambdaFunction f([](double x) { return (x - 3.4) * (x - 3.4); });
    EXPECT_EQ(mGoldenSection(0.0, 10.0, f, true), 3.0);
    CmLambdaFunction g([](double x) { return (x - 3.6) * (x - 3.6); });
    EXPECT_EQ(mGoldenSection(0.0, 10.0, g, true), 4.0);
}

TEST(GoldenSection, ParabolaMinimumToTheLastPlaces)
{
    CmLambdaFunction f([](double x) { return (x - 3.4) * (x - 3.4); });
    CmMessageCapture messages;
    const double dMin = mGoldenSection(0.0, 10.0, f, false);
    const double dUlps = qeltest::mUlpDistance(dMin, 3.4);
    std::cout << "[ mGoldenSection (x - 3.4)^2 ] " << dUlps << " ulp from 3.4\n";
    EXPECT_LE(dUlps, 8.0) << dMin;
    EXPECT_TRUE(messages.mGetErrorFlags().empty());
    // Both ends are evaluated first.
    ASSERT_GE(f.m_vdCalls.size(), 2u);
    EXPECT_EQ(f.m_vdCalls[0], 0.0);
    EXPECT_EQ(f.m_vdCalls[1], 10.0);
}

TEST(GoldenSection, FlatMinimumIsFoundToTheSquareRootOfThePrecision)
{
    // cos is flat at pi: values within eps of -1 cannot be told apart, so
    // the minimum is known to about sqrt(eps) = 1.5e-8.
    CmLambdaFunction f([](double x) { return std::cos(x); });
    EXPECT_NEAR(mGoldenSection(2.0, 4.0, f, false), 3.141592653589793, 1e-7);
    // A minimum at the end of the interval.
    CmLambdaFunction g([](double x) { return x; });
    EXPECT_NEAR(mGoldenSection(1.0, 2.0, g, false), 1.0, 1e-15);
}

TEST(GoldenSection, ParameterNotTheObjectFlagChoosesTheWholeNumberStep)
{
    // The object is in whole-number mode, so the search stops once its two
    // points are less than 2 apart: 10 r^3 = 2.3607 and 10 r^2 = 3.8197 with
    // r = (sqrt 5 - 1) / 2.  Without the parameter the result is their mean.
    CmLambdaFunction f([](double x) { return (x - 3.4) * (x - 3.4); }, true);
    EXPECT_NEAR(mGoldenSection(0.0, 10.0, f, false), 3.0901699437494745, 1e-12);
    CmLambdaFunction g([](double x) { return (x - 3.4) * (x - 3.4); }, true);
    EXPECT_EQ(mGoldenSection(0.0, 10.0, g, true), 3.0);
}

TEST(GoldenSection, MissingAtAFirstInteriorPointIsMissingWithoutFlag)
{
    // The first interior points are 3.82 and 6.18.
    CmLambdaFunction f([](double x) { return x > 5.0 ? mGetMissingValueCode() : -x; });
    CmMessageCapture messages;
    EXPECT_TRUE(mIsNumericMissing(mGoldenSection(0.0, 10.0, f, false)));
    EXPECT_TRUE(messages.mGetErrorFlags().empty());
}

// Inside the loop a missing value is not looked at: being above every
// result, it simply loses each comparison.  Missing on (4.5, 6), the search
// from [0, 10] (first points 3.82 and 6.18) still ends at 3.4.
TEST(GoldenSection, MissingInsideTheLoopLosesEveryComparison)
{
    CmLambdaFunction f(
        [](double x)
        { return (x > 4.5 && x < 6.0) ? mGetMissingValueCode() : (x - 3.4) * (x - 3.4); });
    CmMessageCapture messages;
    const double dMin = mGoldenSection(0.0, 10.0, f, false);
    EXPECT_LE(qeltest::mUlpDistance(dMin, 3.4), 8.0) << dMin;
    bool bSawMissingPoint = false;
    for (double x : f.m_vdCalls)
        bSawMissingPoint = bSawMissingPoint || (x > 4.5 && x < 6.0);
    EXPECT_TRUE(bSawMissingPoint);
    EXPECT_TRUE(messages.mGetErrorFlags().empty());
}

TEST(GoldenSection, IntervalThatIsNotFiniteIsMissing)
{
    CmLambdaFunction f([](double x) { return x * x; });
    EXPECT_TRUE(mIsNumericMissing(mGoldenSection(0.0, kInf, f, false)));
    EXPECT_TRUE(mIsNumericMissing(mGoldenSection(std::nan(""), 1.0, f, false)));
}

// ---------------------------------------------------------------------------
// mBracketFinder

TEST(BracketFinder, WidensRightByDoublingStepsUntilTheSignChanges)
{
    CmLambdaFunction f([](double x) { return x - 100.0; });
    double dXL = 0.0, dXR = 1.0;
    CmMessageCapture messages;
    // Steps from 1 of 0.5, 1, 2, ...: 1.5, 2.5, 4.5, ..., 64.5, 128.5.
    EXPECT_TRUE(mBracketFinder(&dXL, &dXR, f, -1e6, 1e6));
    EXPECT_EQ(dXL, 64.5);
    EXPECT_EQ(dXR, 128.5);
    EXPECT_EQ(mRootFinder(dXL, dXR, f), 100.0);
    EXPECT_TRUE(messages.mGetErrorFlags().empty());
}

TEST(BracketFinder, WidensFromTheEndNearerToZero)
{
    CmLambdaFunction f([](double x) { return x + 100.0; });
    double dXL = 0.0, dXR = 1.0;
    EXPECT_TRUE(mBracketFinder(&dXL, &dXR, f, -1e6, 1e6));
    EXPECT_EQ(dXL, -127.5);
    EXPECT_EQ(dXR, -63.5);
}

TEST(BracketFinder, ReachingTheUpperLimitWithoutSignChangeLeavesTheLastTwoPoints)
{
    CmLambdaFunction f([](double x) { return 1.0 + std::exp(-x); });
    double dXL = 0.0, dXR = 1.0;
    CmMessageCapture messages;
    // 1.5, 2.5, 4.5, 8.5, 16.5, then 32.5 clipped to 20.
    EXPECT_FALSE(mBracketFinder(&dXL, &dXR, f, -10.0, 20.0));
    EXPECT_EQ(dXL, 16.5);
    EXPECT_EQ(dXR, 20.0);
    EXPECT_EQ(f.m_vdCalls.back(), 20.0);
    EXPECT_TRUE(messages.mGetErrorFlags().empty());
}

TEST(BracketFinder, TieWidensFromTheRight)
{
    CmLambdaFunction f([](double x) { return (x - 0.5) * (x - 0.5) + 1.0; });
    double dXL = 0.0, dXR = 1.0;
    // 1.5, 2.5, then 4.5 clipped to 3; from the left it would have gone to -2.
    EXPECT_FALSE(mBracketFinder(&dXL, &dXR, f, -2.0, 3.0));
    EXPECT_EQ(dXL, 2.5);
    EXPECT_EQ(dXR, 3.0);
}

TEST(BracketFinder, ClipsTheIntervalToTheLimits)
{
    CmLambdaFunction f([](double x) { return x - 2.0; });
    double dXL = -50.0, dXR = 50.0;
    EXPECT_TRUE(mBracketFinder(&dXL, &dXR, f, 0.0, 5.0));
    EXPECT_EQ(dXL, 0.0);
    EXPECT_EQ(dXR, 5.0);
    EXPECT_EQ(f.m_vdCalls, (std::vector<double>{0.0, 5.0}));
}

TEST(BracketFinder, EndWithinToleranceIsABracketAsItStands)
{
    CmLambdaFunction f([](double x) { return x; });
    double dXL = 0.0, dXR = 1.0;
    EXPECT_TRUE(mBracketFinder(&dXL, &dXR, f, -10.0, 10.0));
    EXPECT_EQ(dXL, 0.0);
    EXPECT_EQ(dXR, 1.0);
    EXPECT_EQ(f.m_vdCalls.size(), 2u);
}

TEST(BracketFinder, MissingLeftPartIsBisectedAwayAndTheRootFound)
{
    CmLambdaFunction f([](double x) { return x < 2.0 ? mGetMissingValueCode() : x - 7.0; });
    double dXL = 0.0, dXR = 10.0;
    CmMessageCapture messages;
    EXPECT_TRUE(mBracketFinder(&dXL, &dXR, f, -100.0, 100.0));
    EXPECT_EQ(dXL, 5.0);
    EXPECT_EQ(dXR, 10.0);
    EXPECT_EQ(mRootFinder(dXL, dXR, f), 7.0);
    EXPECT_TRUE(messages.mGetErrorFlags().empty());
}

TEST(BracketFinder, MissingRightPartIsBisectedAwayAndTheRootFound)
{
    CmLambdaFunction f([](double x) { return x > 3.0 ? mGetMissingValueCode() : x - 1.0; });
    double dXL = 0.0, dXR = 10.0;
    // 10 is missing, so is 5; 2.5 has a value.
    EXPECT_TRUE(mBracketFinder(&dXL, &dXR, f, -100.0, 100.0));
    EXPECT_EQ(dXL, 0.0);
    EXPECT_EQ(dXR, 2.5);
    EXPECT_NEAR(mRootFinder(dXL, dXR, f), 1.0, 1e-15);
}

TEST(BracketFinder, BothEndsMissingFailsWithFlag)
{
    CmLambdaFunction f([](double) { return mGetMissingValueCode(); });
    double dXL = 0.0, dXR = 1.0;
    CmMessageCapture messages;
    EXPECT_FALSE(mBracketFinder(&dXL, &dXR, f, -10.0, 10.0));
    EXPECT_TRUE(HasSearchFailureFlag(messages));
    EXPECT_EQ(dXL, 0.0);
    EXPECT_EQ(dXR, 1.0);
}

TEST(BracketFinder, MissingWhileWideningReturnsFalseAtOnceWithTheRepairedInterval)
{
    CmLambdaFunction f([](double x) { return x < 3.0 ? 10.0 - x : mGetMissingValueCode(); });
    double dXL = 0.0, dXR = 1.0;
    CmMessageCapture messages;
    // 1.5, 2.5, then 4.5 is missing.
    EXPECT_FALSE(mBracketFinder(&dXL, &dXR, f, -100.0, 100.0));
    EXPECT_EQ(dXL, 0.0);
    EXPECT_EQ(dXR, 1.0);
    EXPECT_EQ(f.m_vdCalls.back(), 4.5);
    EXPECT_TRUE(messages.mGetErrorFlags().empty());
}

TEST(BracketFinder, WholeNumberModeWidensOnWholeNumbers)
{
    CmLambdaFunction f([](double x) { return std::floor(x) - 20.0; }, true);
    double dXL = 0.0, dXR = 1.0;
    // ceil(1.5) = 2, then 3, 5, 9, 17, 33.
    EXPECT_TRUE(mBracketFinder(&dXL, &dXR, f, 0.0, 1000.0));
    EXPECT_EQ(dXL, 17.0);
    EXPECT_EQ(dXR, 33.0);
    EXPECT_EQ(mRootFinder(dXL, dXR, f), 20.0);

    // Widening to the left floors: floor(-0.5) = -1, then -2, -4, -8.
    CmLambdaFunction g([](double x) { return std::floor(x) + 6.0; }, true);
    dXL = 0.0;
    dXR = 1.0;
    EXPECT_TRUE(mBracketFinder(&dXL, &dXR, g, -1000.0, 1000.0));
    EXPECT_EQ(dXL, -8.0);
    EXPECT_EQ(dXR, -4.0);
    EXPECT_EQ(mRootFinder(dXL, dXR, g), -6.0);
}

TEST(BracketFinder, BadIntervalsAssertAndGoOn)
{
    CmLambdaFunction f([](double x) { return x - 3.0; });
    CmAssertCapture capture;
    double dXL = 5.0, dXR = 1.0;
    EXPECT_TRUE(mBracketFinder(&dXL, &dXR, f, 0.0, 10.0));
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "*pdXL < *pdXR");

    capture.mClear();
    dXL = 0.0;
    dXR = 1.0;
    mBracketFinder(&dXL, &dXR, f, 10.0, 10.0);
    EXPECT_TRUE(capture.mHas("dXMin < dXMax"));
}

TEST(BracketFinder, UnboundedWideningEndsAtInfinity)
{
    CmLambdaFunction f([](double x) { return 1.0 + std::exp(-x); });
    double dXL = 0.0, dXR = 1.0;
    EXPECT_FALSE(mBracketFinder(&dXL, &dXR, f, -kInf, kInf));
    EXPECT_EQ(dXR, kInf);
    EXPECT_TRUE(std::isfinite(dXL));
    EXPECT_GT(dXL, 1e300);
}

TEST(BracketFinder, MissingPartThatBisectionCannotLeaveFailsWithFlag)
{
    // Missing everywhere but exactly at 1 + 2^-52, whose left neighbour 1 is
    // missing: bisection of [1, 1 + 2^-52] cannot move the left end.
    const double dOnly = 1.0 + DBL_EPSILON;
    CmLambdaFunction f([dOnly](double x) { return x == dOnly ? 1.0 : mGetMissingValueCode(); });
    double dXL = 1.0, dXR = dOnly;
    CmMessageCapture messages;
    EXPECT_FALSE(mBracketFinder(&dXL, &dXR, f, 0.0, 2.0));
    EXPECT_TRUE(HasSearchFailureFlag(messages));
}

TEST(BracketFinder, EndThatIsNotANumberAssertsAndFindsNothing)
{
    CmLambdaFunction f([](double x) { return x - 3.0; });
    double dXL = std::nan(""), dXR = 10.0;
    CmAssertCapture capture;
    CmMessageCapture messages;
    EXPECT_FALSE(mBracketFinder(&dXL, &dXR, f, 0.0, 100.0));
    EXPECT_TRUE(capture.mHas("*pdXL < *pdXR"));
    EXPECT_TRUE(std::isnan(dXL));
    EXPECT_EQ(dXR, 10.0);
    EXPECT_TRUE(messages.mGetErrorFlags().empty());
}
