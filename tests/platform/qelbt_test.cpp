// The frame's constants, the missing value, row lists and conversions.
#include "qel/qelmath.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>

TEST(QelConstants, MissingValueIsFiniteAndAboveEveryGuardedResult)
{
    const double m = mGetMissingValueCode();
    EXPECT_TRUE(std::isfinite(m));
    EXPECT_TRUE(mIsNumericMissing(m));
    EXPECT_FALSE(mIsNumericMissing(0.0));
    EXPECT_FALSE(mIsNumericMissing(std::nextafter(m, 0.0)));
    EXPECT_GT(m, std::exp(mGetMaxExponent()));
    EXPECT_GT(m, mGetMaxDataValue());
    EXPECT_TRUE(std::isfinite(mGetMaxDataValue() * mGetMaxDataValue()));
}

TEST(QelConstants, MaxExponentDoesNotOverflowExp)
{
    EXPECT_TRUE(std::isfinite(std::exp(mGetMaxExponent())));
    EXPECT_LE(mGetMaxExponent(), std::log(DBL_MAX));
}

TEST(QelConstants, FreeAndMemberFormsAgree)
{
    const CmQELConst* c = CmQELConst::mInstance();
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c, CmQELConst::mInstance());
    EXPECT_EQ(c->mGetMissingValueCode(), mGetMissingValueCode());
    EXPECT_EQ(c->mGetEps(), mGetEps());
    EXPECT_EQ(c->mGetPi(), mGetPi());
    EXPECT_EQ(c->mGetMaxExponent(), mGetMaxExponent());
    EXPECT_EQ(c->mGetMaxTrigArg(), mGetMaxTrigArg());
    EXPECT_EQ(mGetEps(), DBL_EPSILON);
    EXPECT_EQ(mGetPi(), 3.141592653589793);
    EXPECT_EQ(c->mGetE(), 2.718281828459045);
    EXPECT_EQ(mGetEulerConst(), 0.5772156649015329);
    EXPECT_EQ(mGetMaxInteger(), 2147483647.0);
    EXPECT_GT(c->mGetNearlyZero(), 0.0);
    EXPECT_LT(c->mGetNearlyZero(), 1e-20);
}

TEST(QelConstants, IsIntegerTellsWholeNumbers)
{
    EXPECT_TRUE(mIsInteger(3.0));
    EXPECT_TRUE(mIsInteger(-7.0));
    EXPECT_TRUE(mIsInteger(0.0));
    EXPECT_FALSE(mIsInteger(3.5));
    EXPECT_FALSE(mIsInteger(std::numeric_limits<double>::infinity()));
    EXPECT_FALSE(mIsInteger(std::numeric_limits<double>::quiet_NaN()));
}

TEST(QelConversions, WholeValuesConvertExactly)
{
    EXPECT_EQ(mToINTG(42.0), 42);
    EXPECT_EQ(mToINTG(-42.0), -42);
    EXPECT_EQ(mToINTG(7u), 7);
    EXPECT_EQ(mToUINTG(9.0), 9u);
}

TEST(QelRows, UseAllRowsSelectsOneToN)
{
    CbRows rows;
    EXPECT_EQ(rows.mGetRowCt(), 0);
    rows.mUseAllRows(4);
    ASSERT_EQ(rows.mGetRowCt(), 4);
    for (INTG i = 0; i < 4; ++i)
        EXPECT_EQ(rows.mGetRow(i), i + 1);
}

TEST(QelRows, ReserveThenSetRowsPicksASubset)
{
    const double data[] = {10.0, 20.0, 30.0, 40.0};
    CbRows rows;
    rows.mReserve(2);
    rows.mSetRow(0, 4);
    rows.mSetRow(1, 2);
    ASSERT_EQ(rows.mGetRowCt(), 2);
    EXPECT_EQ(data[rows.mGetRow(0) - 1], 40.0);
    EXPECT_EQ(data[rows.mGetRow(1) - 1], 20.0);
}

TEST(QelAlternative, ConfidenceTypeMapsToTheAlternativeOfTheSameSign)
{
    EXPECT_EQ(mAlternativeFromConfidence(eLowerBoundOnly), eLowerTailed);
    EXPECT_EQ(mAlternativeFromConfidence(eBothBounds), eTwoSided);
    EXPECT_EQ(mAlternativeFromConfidence(eUpperBoundOnly), eUpperTailed);
    CmAssertCapture capture;
    EXPECT_EQ(mAlternativeFromConfidence(static_cast<EConfidenceType>(5)), eTwoSided);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "false");
}
