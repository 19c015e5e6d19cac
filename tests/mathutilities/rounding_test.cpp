// Rounding, scaling by powers of ten, remainder, sign transfer and the
// smallest and largest datum of a selection of rows.
#include "qel/qelmath.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <vector>

namespace
{
const double kLargest = 1.7976931348623157e+308;
}

TEST(ScaleByPowerOfTen, SmallPowersAreTheUsualProducts)
{
    EXPECT_EQ(mScaleByPowerOfTen(1.5, 3), 1500.0);
    EXPECT_EQ(mScaleByPowerOfTen(1500.0, -3), 1.5);
    EXPECT_EQ(mScaleByPowerOfTen(5.0, 0), 5.0);
    EXPECT_EQ(mScaleByPowerOfTen(2.345, 2), 2.345 * 100.0);
}

TEST(ScaleByPowerOfTen, LargePowersGoInStepsOfAtMost308)
{
    // 1 / 1e308 / 1e92 underflows to 0.
    EXPECT_EQ(mScaleByPowerOfTen(1.0, -400), 0.0);
    // One power of 1e400 would be infinite and give 0 here; two steps give
    // 1e-100.
    const double dDown = mScaleByPowerOfTen(1e300, -400);
    EXPECT_NEAR(dDown, 1e-100, 1e-113);
    EXPECT_EQ(dDown, 1e300 / mScaleByPowerOfTen(1.0, 308) / mScaleByPowerOfTen(1.0, 92));
    const double dUp = mScaleByPowerOfTen(1e-300, 400);
    EXPECT_NEAR(dUp, 1e100, 1e87);
    EXPECT_NEAR(mScaleByPowerOfTen(1.0, 308), 1e308, 1e295);
}

TEST(ScaleByPowerOfTen, ExtremePowersSaturateWithoutTrouble)
{
    EXPECT_EQ(mScaleByPowerOfTen(1.0, INT_MIN), 0.0);
    EXPECT_EQ(mScaleByPowerOfTen(1.0, INT_MAX), std::numeric_limits<double>::infinity());
    EXPECT_EQ(mScaleByPowerOfTen(-1.0, INT_MAX), -std::numeric_limits<double>::infinity());
    EXPECT_EQ(mScaleByPowerOfTen(0.0, INT_MAX), 0.0);
}

TEST(Round, ScaledHalfGoesAwayFromZero)
{
    // 2.345 * 100 is 234.50000000000003 in doubles, which rounds to 235.
    EXPECT_GE(mScaleByPowerOfTen(2.345, 2), 234.5);
    EXPECT_EQ(mRound(2.345, 2), 2.35);
    EXPECT_EQ(mRound(-2.345, 2), -2.35);
    EXPECT_EQ(mRound(2.5, 0), 3.0);
    EXPECT_EQ(mRound(1234.5678, 1), 1234.6);
    EXPECT_EQ(mRound(1234.5678, -2), 1200.0);
}

TEST(Round, MissingAndZeroReturnThemselves)
{
    EXPECT_EQ(mRound(mGetMissingValueCode(), 3), mGetMissingValueCode());
    EXPECT_EQ(mRound(0.0, 5), 0.0);
}

TEST(Round, OutOfRangeOfDoublesIsMissing)
{
    EXPECT_EQ(mRound(1e300, 10), mGetMissingValueCode());
    EXPECT_EQ(mRound(1e-310, 0), mGetMissingValueCode());
    EXPECT_EQ(mRound(1.5, INT_MIN), mGetMissingValueCode());
    EXPECT_EQ(mRound(1.5, INT_MAX), mGetMissingValueCode());
    EXPECT_EQ(mRound(std::numeric_limits<double>::infinity(), 2), mGetMissingValueCode());
    EXPECT_TRUE(std::isnan(mRound(std::nan(""), INT_MIN)));
}

TEST(RoundToSigDigits, CountsDigitsFromTheLeadingOne)
{
    EXPECT_EQ(mRoundToSigDigits(1234.5, 2), 1200.0);
    EXPECT_EQ(mRoundToSigDigits(0.012345, 3), 0.0123);
    EXPECT_EQ(mRoundToSigDigits(-987.6, 1), -1000.0);
    EXPECT_EQ(mRoundToSigDigits(0.0, 3), 0.0);
    EXPECT_EQ(mRoundToSigDigits(1234.5, INT_MAX), mGetMissingValueCode());
    EXPECT_EQ(mRoundToSigDigits(1234.5, INT_MIN), mGetMissingValueCode());
}

TEST(RoundToMultiple, SignComesFromTheValue)
{
    CmAssertCapture capture;
    EXPECT_EQ(mRoundToMultiple(7.3, -2.0), 8.0);
    EXPECT_EQ(mRoundToMultiple(7.3, 2.0), 8.0);
    EXPECT_EQ(mRoundToMultiple(-7.3, 2.0), -8.0);
    EXPECT_EQ(mRoundToMultiple(-7.3, -2.0), -8.0);
    EXPECT_EQ(mRoundToMultiple(12.0, 5.0), 10.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(RoundToMultiple, ZeroValueIsZeroThroughTheOverflowOfLogZero)
{
    CmAssertCapture capture;
    EXPECT_EQ(mRoundToMultiple(0.0, 5.0), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(RoundToMultiple, OverflowingQuotientLeavesTheValueUnchanged)
{
    EXPECT_EQ(mRoundToMultiple(1e300, 1e-300), 1e300);
}

TEST(RoundToMultiple, ZeroBaseIsAssertedAndTheValueReturned)
{
    CmAssertCapture capture;
    EXPECT_EQ(mRoundToMultiple(7.3, 0.0), 7.3);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "0.0 != dBase");
}

TEST(Modulo, TakesTheSignOfTheDividend)
{
    EXPECT_EQ(mModulo(-7.0, 3.0), -1.0);
    EXPECT_EQ(mModulo(7.0, -3.0), 1.0);
    EXPECT_EQ(mModulo(7.5, 2.0), 1.5);
}

TEST(Modulo, ZeroModulusIsAssertedThenTheLibraryAnswers)
{
    CmAssertCapture capture;
    const double dResult = mModulo(5.0, 0.0);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dModulus != 0.0");
    EXPECT_TRUE(std::isnan(dResult));
}

TEST(TransferSign, IsCopysign)
{
    EXPECT_EQ(mTransferSign(3.0, -0.5), -3.0);
    EXPECT_EQ(mTransferSign(-3.0, 2.0), 3.0);
    const double dNegZero = mTransferSign(3.0, -0.0);
    EXPECT_EQ(dNegZero, -3.0);
}

TEST(MinMax, SkipsMissingValues)
{
    const double dMiss = mGetMissingValueCode();
    const std::vector<double> vdData = {3.0, dMiss, -1.5, 7.25, dMiss, 0.0};
    double dMin = 0.0, dMax = 0.0;
    mMinMax(vdData.data(), static_cast<int>(vdData.size()), &dMin, &dMax);
    EXPECT_EQ(dMin, -1.5);
    EXPECT_EQ(dMax, 7.25);
}

TEST(MinMax, OnlyMissingValuesGiveMissingInBothOutputs)
{
    const double dMiss = mGetMissingValueCode();
    const std::vector<double> vdOne = {dMiss};
    double dMin = 0.0, dMax = 0.0;
    mMinMax(vdOne.data(), 1, &dMin, &dMax);
    EXPECT_EQ(dMin, dMiss);
    EXPECT_EQ(dMax, dMiss);

    const std::vector<double> vdAll = {dMiss, dMiss, dMiss};
    CbRows cbRows;
    cbRows.mUseAllRows(3);
    dMin = dMax = 0.0;
    mMinMax(vdAll, cbRows, &dMin, &dMax);
    EXPECT_EQ(dMin, dMiss);
    EXPECT_EQ(dMax, dMiss);
}

TEST(MinMax, NoRowsGiveMissingInBothOutputs)
{
    const std::vector<double> vdData = {1.0, 2.0};
    double dMin = 0.0, dMax = 0.0;
    mMinMax(vdData.data(), 0, &dMin, &dMax);
    EXPECT_EQ(dMin, mGetMissingValueCode());
    EXPECT_EQ(dMax, mGetMissingValueCode());

    CbRows cbNone;
    dMin = dMax = 0.0;
    mMinMax(vdData, cbNone, &dMin, &dMax);
    EXPECT_EQ(dMin, mGetMissingValueCode());
    EXPECT_EQ(dMax, mGetMissingValueCode());

    dMin = dMax = 0.0;
    mMinMax(vdData.data(), -4, &dMin, &dMax);
    EXPECT_EQ(dMin, mGetMissingValueCode());
    EXPECT_EQ(dMax, mGetMissingValueCode());
}

TEST(MinMax, SelectedRowsOnly)
{
    const std::vector<double> vdData = {10.0, -20.0, 30.0, 5.0, -1.0};
    CbRows cbRows;
    cbRows.mReserve(3);
    cbRows.mSetRow(0, 4);
    cbRows.mSetRow(1, 1);
    cbRows.mSetRow(2, 5);
    double dMin = 0.0, dMax = 0.0;
    mMinMax(vdData, cbRows, &dMin, &dMax);
    EXPECT_EQ(dMin, -1.0);
    EXPECT_EQ(dMax, 10.0);
    mMinMax(vdData.data(), cbRows, &dMin, &dMax);
    EXPECT_EQ(dMin, -1.0);
    EXPECT_EQ(dMax, 10.0);
}

TEST(MinMax, SingleLargestDoubleCountsAsNoData)
{
    const std::vector<double> vdData = {kLargest};
    double dMin = 0.0, dMax = 0.0;
    mMinMax(vdData.data(), 1, &dMin, &dMax);
    EXPECT_EQ(dMin, mGetMissingValueCode());
    EXPECT_EQ(dMax, mGetMissingValueCode());
}
