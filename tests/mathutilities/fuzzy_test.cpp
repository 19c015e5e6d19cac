// Fuzzy comparison and its by-reference twins: the tolerance (1e-30 or the
// fuzz term, plus one epsilon relative to the larger operand), the order of
// the answer, the asymmetric approximate equality, whole and even numbers.
#include "qel/qelmath.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

TEST(FuzzMax, IsEpsTimesOneHundredthOfTheFuzz)
{
    EXPECT_EQ(mGetFuzzMax(2.0), mGetEps() * 0.01 * 2.0);
    EXPECT_EQ(mGetFuzzMax(0.0), 0.0);
    EXPECT_EQ(mGetFuzzMax(100.0), mGetEps() * 0.01 * 100.0);
}

TEST(CompareWithFuzz, ZeroFuzzUsesTheTinyAbsoluteTerm)
{
    EXPECT_EQ(mCompareWithFuzz(0.0, 0.0, 0.0), 0);
    EXPECT_EQ(mCompareWithFuzz(0.0, 1e-31, 0.0), 0);
    EXPECT_EQ(mCompareWithFuzz(0.0, 1e-29, 0.0), -1);
    EXPECT_EQ(mCompareWithFuzz(1e-29, 0.0, 0.0), 1);
}

TEST(CompareWithFuzz, OneEpsilonRelativeToTheLargerOperand)
{
    const double dEps = mGetEps();
    EXPECT_EQ(mCompareWithFuzz(1.0, 1.0 + dEps, 0.0), 0);
    EXPECT_EQ(mCompareWithFuzz(1.0 + dEps, 1.0, 0.0), 0);
    EXPECT_EQ(mCompareWithFuzz(1.0, 1.0 + 4.0 * dEps, 0.0), -1);
    EXPECT_EQ(mCompareWithFuzz(1.0 + 4.0 * dEps, 1.0, 0.0), 1);
    EXPECT_EQ(mCompareWithFuzz(1e10, 1e10 + 1e-6, 0.0), 0);
    EXPECT_EQ(mCompareWithFuzz(1e10, 1e10 + 1e-5, 0.0), -1);
}

TEST(CompareWithFuzz, YAboveXIsMinusOneOtherwiseOne)
{
    EXPECT_EQ(mCompareWithFuzz(1.0, 2.0, 0.0), -1);
    EXPECT_EQ(mCompareWithFuzz(2.0, 1.0, 0.0), 1);
    EXPECT_EQ(mCompareWithFuzz(-3.0, -2.0, 0.0), -1);
    EXPECT_EQ(mCompareWithFuzz(-2.0, -3.0, 0.0), 1);
}

TEST(CompareWithFuzz, NonzeroFuzzAddsAnAbsoluteTermNotAMultiplier)
{
    // mGetFuzzMax(100) is one epsilon, absolute.
    EXPECT_EQ(mCompareWithFuzz(0.0, 2e-16, 100.0), 0);
    EXPECT_EQ(mCompareWithFuzz(0.0, 3e-16, 100.0), -1);
    // At 1e10 three relative epsilons stay unequal: the fuzz does not widen
    // the relative term.
    const double dX = 1e10;
    const double dY = dX * (1.0 + 3.0 * mGetEps());
    EXPECT_EQ(mCompareWithFuzz(dX, dY, 100.0), -1);
    // A fuzz replaces the 1e-30 term: with a tiny fuzz 1e-31 is unequal to 0.
    EXPECT_EQ(mCompareWithFuzz(0.0, 1e-31, 1e-30), -1);
}

TEST(CompareWithFuzz, HugeAndInfiniteOperands)
{
    // The difference overflows to infinity while the tolerance stays finite.
    EXPECT_EQ(mCompareWithFuzz(-1e308, 1e308, 0.0), -1);
    EXPECT_EQ(mCompareWithFuzz(1e308, -1e308, 0.0), 1);
    // The tolerance grows with the larger operand, so an infinite operand
    // makes it infinite and everything compares equal to it.
    const double dInf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(mCompareWithFuzz(1.0, dInf, 0.0), 0);
    EXPECT_EQ(mCompareWithFuzz(dInf, 1.0, 0.0), 0);
}

TEST(EqualWithinFuzz, IsCompareEqualToZero)
{
    EXPECT_TRUE(mEqualWithinFuzz(0.0, 1e-31, 0.0));
    EXPECT_FALSE(mEqualWithinFuzz(0.0, 1e-29, 0.0));
    EXPECT_TRUE(mEqualWithinFuzz(1.0, 1.0 + mGetEps(), 0.0));
    EXPECT_FALSE(mEqualWithinFuzz(1.0, 1.001, 0.0));
}

TEST(ApproxEqual, RelativeTermFollowsTheFirstArgumentOnly)
{
    EXPECT_FALSE(mApproxEqual(1.0, 2.0, 0.6, 0.0));
    EXPECT_TRUE(mApproxEqual(2.0, 1.0, 0.6, 0.0));
    EXPECT_TRUE(mApproxEqual(100.0, 101.0, 0.01, 0.0));
}

TEST(ApproxEqual, AbsoluteTermAlone)
{
    EXPECT_TRUE(mApproxEqual(0.0, 1e-3, 0.0, 1e-3));
    EXPECT_FALSE(mApproxEqual(0.0, 2e-3, 0.0, 1e-3));
    EXPECT_TRUE(mApproxEqual(5.0, 5.0, 0.0, 0.0));
}

TEST(IsIntegerWithinFuzz, WholeAndNearWholeNumbers)
{
    EXPECT_TRUE(mIsIntegerWithinFuzz(3.0, 0.0));
    EXPECT_TRUE(mIsIntegerWithinFuzz(std::nextafter(3.0, 4.0), 0.0));
    EXPECT_TRUE(mIsIntegerWithinFuzz(-7.0, 0.0));
    EXPECT_FALSE(mIsIntegerWithinFuzz(3.0001, 0.0));
    EXPECT_FALSE(mIsIntegerWithinFuzz(2.5, 0.0));
    EXPECT_FALSE(mIsIntegerWithinFuzz(1e6 + 1e-9, 0.0));
    // A fuzz of 1e8 adds 1e6 epsilons absolute, about 2.2e-10: still not enough.
    EXPECT_FALSE(mIsIntegerWithinFuzz(1e6 + 1e-9, 1e8));
    EXPECT_TRUE(mIsIntegerWithinFuzz(1e6 + 1e-9, 1e9));
}

TEST(IsEven, EvenWholeNumbersOnly)
{
    EXPECT_TRUE(mIsEven(4.0, 0.0));
    EXPECT_TRUE(mIsEven(0.0, 0.0));
    EXPECT_TRUE(mIsEven(-2.0, 0.0));
    EXPECT_TRUE(mIsEven(std::nextafter(4.0, 5.0), 0.0));
    EXPECT_FALSE(mIsEven(3.0, 0.0));
    EXPECT_FALSE(mIsEven(-3.0, 0.0));
    EXPECT_FALSE(mIsEven(4.5, 0.0));
    EXPECT_FALSE(mIsEven(4.0001, 0.0));
}

TEST(NearestInteger, HalvesGoAwayFromZero)
{
    EXPECT_EQ(mNearestInteger(-2.5), -3.0);
    EXPECT_EQ(mNearestInteger(2.5), 3.0);
    EXPECT_EQ(mNearestInteger(-0.2), 0.0);
    EXPECT_EQ(mNearestInteger(2.4), 2.0);
    EXPECT_EQ(mNearestInteger(-2.4), -2.0);
    EXPECT_EQ(mNearestInteger(0.0), 0.0);
    EXPECT_EQ(mNearestInteger(1e300), 1e300);
    EXPECT_EQ(mNearestInteger(-1e300), -1e300);
}

TEST(FuzzyByReference, RoundingTwins)
{
    double dX = -2.5;
    EXPECT_EQ(GET_NEAREST_INTEGER(&dX), -3.0);
    EXPECT_EQ(GET_FLOOR(&dX), -3.0);
    EXPECT_EQ(GET_CEILING(&dX), -2.0);
    dX = 2.5;
    EXPECT_EQ(GET_NEAREST_INTEGER(&dX), 3.0);
    EXPECT_EQ(GET_FLOOR(&dX), 2.0);
    EXPECT_EQ(GET_CEILING(&dX), 3.0);
    EXPECT_EQ(dX, 2.5);
}

TEST(FuzzyByReference, ComparisonTwinsReturnIntegers)
{
    double dOne = 1.0, dTwo = 2.0, dRel = 0.6, dAbs = 0.0;
    EXPECT_EQ(LEQUAL(&dOne, &dTwo, &dRel, &dAbs), 0);
    EXPECT_EQ(LEQUAL(&dTwo, &dOne, &dRel, &dAbs), 1);

    double dZero = 0.0, dTiny = 1e-31, dSmall = 1e-29, dFuzz = 0.0;
    EXPECT_EQ(L_COMPARE_WITH_FUZZ(&dZero, &dTiny, &dFuzz), 0);
    EXPECT_EQ(L_COMPARE_WITH_FUZZ(&dZero, &dSmall, &dFuzz), -1);
    EXPECT_EQ(L_COMPARE_WITH_FUZZ(&dSmall, &dZero, &dFuzz), 1);
    EXPECT_EQ(L_EQUAL_WITHIN_FUZZ(&dZero, &dTiny, &dFuzz), 1);
    EXPECT_EQ(L_EQUAL_WITHIN_FUZZ(&dZero, &dSmall, &dFuzz), 0);
}
