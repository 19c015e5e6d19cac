// Machine tables and the constants derived from them.
#include "qel/specialroutines.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>

namespace
{

int mI1(int i)
{
    return I1MACH(&i);
}
double mD1(int i)
{
    return D1MACH(&i);
}
int mIp(int i)
{
    return IPMPAR(&i);
}
double mSp(int i)
{
    return SPMPAR(&i);
}
double mExparg(int l)
{
    return EXPARG(&l);
}

} // namespace

TEST(MachineTables, IntegerTableHoldsDigitsAndExponentLimitsOnly)
{
    EXPECT_EQ(mI1(14), 53);
    EXPECT_EQ(mI1(15), -1021);
    EXPECT_EQ(mI1(16), 1024);
    for (int i = 1; i <= 13; ++i)
        EXPECT_EQ(mI1(i), 0) << i;
}

TEST(MachineTables, RealTableHoldsSpacingAndLog10Of2Only)
{
    EXPECT_EQ(mD1(4), 2.220446049250313e-16);
    EXPECT_EQ(mD1(5), 0.3010299956639812);
    for (int i = 1; i <= 3; ++i)
        EXPECT_EQ(mD1(i), 0.0) << i;
}

TEST(MachineTables, ParameterTableHoldsTheTenPublishedEntries)
{
    const int aiExpected[10] = {2, 31, 2147483647, 2, 24, -125, 128, 53, -1021, 1024};
    for (int i = 1; i <= 10; ++i)
        EXPECT_EQ(mIp(i), aiExpected[i - 1]) << i;
}

TEST(MachineTables, IndexOutsideATableGivesZero)
{
    EXPECT_EQ(mI1(0), 0);
    EXPECT_EQ(mI1(17), 0);
    EXPECT_EQ(mD1(0), 0.0);
    EXPECT_EQ(mD1(6), 0.0);
    EXPECT_EQ(mIp(0), 0);
    EXPECT_EQ(mIp(11), 0);
    EXPECT_EQ(mIp(-5), 0);
}

TEST(Spmpar, GivesPrecisionSmallestAndLargestDouble)
{
    EXPECT_EQ(mSp(1), DBL_EPSILON);
    EXPECT_EQ(mSp(2), DBL_MIN);
    EXPECT_EQ(mSp(3), DBL_MAX);
}

TEST(Exparg, IsTheExponentRangeTimesLog2WithAMargin)
{
    // 0.99999 * 1024 * log 2 and 0.99999 * (-1021 - 1) * log 2, with the
    // published fifteen-digit log 2.
    EXPECT_NEAR(mExparg(0), 709.7756, 1e-4);
    EXPECT_NEAR(mExparg(1), -708.3893, 1e-4);
    EXPECT_NEAR(mExparg(7), mExparg(1), 0.0);
    EXPECT_TRUE(std::isfinite(std::exp(mExparg(0))));
    EXPECT_GT(std::exp(mExparg(1)), 0.0);
    EXPECT_LT(mExparg(0), std::log(DBL_MAX));
    EXPECT_GT(mExparg(1), std::log(DBL_MIN));
}
