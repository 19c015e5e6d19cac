// mIncompleteBetaRatio: its assertions and their texts, the limits, and both
// tails against the mpmath table tests/data/incbeta_grid.txt (shapes 1e-2 to
// 1e5, balanced and very unbalanced, x over (0, 1) and both ends).
#include "qel/incompletebeta.h"
#include "qel/qelmessaging.h"

#include "support/reftable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <limits>
#include <sstream>
#include <string>

// ---------------------------------------------------------------------------
// Assertions.

TEST(IncompleteBetaRatio, GoodArgumentsRaiseNoAssertion)
{
    CmAssertCapture capture;
    // I_0.5(2, 3) = 11/16.
    EXPECT_NEAR(mIncompleteBetaRatio(0.5, 0.5, 2.0, 3.0, false), 11.0 / 16.0, 1e-15);
    EXPECT_NEAR(mIncompleteBetaRatio(0.5, 0.5, 2.0, 3.0, true), 5.0 / 16.0, 1e-15);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(IncompleteBetaRatio, NegativeShapeAAssertsAndTheRoutineRefuses)
{
    CmAssertCapture capture;
    EXPECT_EQ(mIncompleteBetaRatio(0.5, 0.5, -0.25, 3.0, false), 0.0);
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "dA >= 0.0");
    EXPECT_EQ(capture.mGetTexts()[1], "iReturnCode == 0");
}

TEST(IncompleteBetaRatio, NegativeShapeBAsserts)
{
    CmAssertCapture capture;
    EXPECT_EQ(mIncompleteBetaRatio(0.5, 0.5, 3.0, -0.25, true), 0.0);
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "dB >= 0.0");
    EXPECT_EQ(capture.mGetTexts()[1], "iReturnCode == 0");
}

TEST(IncompleteBetaRatio, BothShapesZeroAsserts)
{
    CmAssertCapture capture;
    EXPECT_EQ(mIncompleteBetaRatio(0.5, 0.5, 0.0, 0.0, false), 0.0);
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "dA + dB > 0.0");
    EXPECT_EQ(capture.mGetTexts()[1], "iReturnCode == 0");
}

TEST(IncompleteBetaRatio, NegativeXAsserts)
{
    CmAssertCapture capture;
    EXPECT_EQ(mIncompleteBetaRatio(-0.5, 1.5, 2.0, 3.0, false), 0.0);
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "dX >= 0.0");
    EXPECT_EQ(capture.mGetTexts()[1], "iReturnCode == 0");
}

TEST(IncompleteBetaRatio, NegativeYAsserts)
{
    CmAssertCapture capture;
    EXPECT_EQ(mIncompleteBetaRatio(1.5, -0.5, 2.0, 3.0, true), 0.0);
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "dY >= 0.0");
    EXPECT_EQ(capture.mGetTexts()[1], "iReturnCode == 0");
}

TEST(IncompleteBetaRatio, XPlusYNotExactlyOneAssertsThoughTheRoutineTolerates)
{
    CmAssertCapture capture;
    // x + y = 1 + 2^-51: within BRATIO's 3 eps, so it computes I_0.5(2, 3).
    const double dY = 0.5 + std::ldexp(1.0, -51);
    EXPECT_NEAR(mIncompleteBetaRatio(0.5, dY, 2.0, 3.0, false), 11.0 / 16.0, 1e-14);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "1.0 == dX + dY");
}

TEST(IncompleteBetaRatio, XPlusYFarFromOneAssertsTwice)
{
    CmAssertCapture capture;
    EXPECT_EQ(mIncompleteBetaRatio(0.3, 0.6, 2.0, 3.0, false), 0.0);
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "1.0 == dX + dY");
    EXPECT_EQ(capture.mGetTexts()[1], "iReturnCode == 0");
}

TEST(IncompleteBetaRatio, XAndAZeroAsserts)
{
    CmAssertCapture capture;
    EXPECT_EQ(mIncompleteBetaRatio(0.0, 1.0, 0.0, 3.0, false), 0.0);
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "dA + dX > 0.0");
    EXPECT_EQ(capture.mGetTexts()[1], "iReturnCode == 0");
}

TEST(IncompleteBetaRatio, YAndBZeroAsserts)
{
    CmAssertCapture capture;
    EXPECT_EQ(mIncompleteBetaRatio(1.0, 0.0, 3.0, 0.0, true), 0.0);
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "dY + dB > 0.0");
    EXPECT_EQ(capture.mGetTexts()[1], "iReturnCode == 0");
}

TEST(IncompleteBetaRatio, NanShapeAssertsAndGivesZero)
{
    CmAssertCapture capture;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(mIncompleteBetaRatio(0.5, 0.5, nan, 3.0, false), 0.0);
    EXPECT_TRUE(capture.mHas("dA >= 0.0"));
    EXPECT_TRUE(capture.mHas("dA + dB > 0.0"));
    EXPECT_TRUE(capture.mHas("iReturnCode == 0"));
}

// ---------------------------------------------------------------------------
// Limits.

TEST(IncompleteBetaRatio, XZeroGivesZeroAndOne)
{
    CmAssertCapture capture;
    EXPECT_EQ(mIncompleteBetaRatio(0.0, 1.0, 2.0, 3.0, false), 0.0);
    EXPECT_EQ(mIncompleteBetaRatio(0.0, 1.0, 2.0, 3.0, true), 1.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(IncompleteBetaRatio, YZeroGivesOneAndZero)
{
    CmAssertCapture capture;
    EXPECT_EQ(mIncompleteBetaRatio(1.0, 0.0, 2.0, 3.0, false), 1.0);
    EXPECT_EQ(mIncompleteBetaRatio(1.0, 0.0, 2.0, 3.0, true), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(IncompleteBetaRatio, ShapeAZeroGivesOne)
{
    CmAssertCapture capture;
    EXPECT_EQ(mIncompleteBetaRatio(0.25, 0.75, 0.0, 3.0, false), 1.0);
    EXPECT_EQ(mIncompleteBetaRatio(0.25, 0.75, 0.0, 3.0, true), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(IncompleteBetaRatio, ShapeBZeroGivesZero)
{
    CmAssertCapture capture;
    EXPECT_EQ(mIncompleteBetaRatio(0.25, 0.75, 3.0, 0.0, false), 0.0);
    EXPECT_EQ(mIncompleteBetaRatio(0.25, 0.75, 3.0, 0.0, true), 1.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(IncompleteBetaRatio, ClosedFormsOfSmallWholeShapes)
{
    // I_x(1, b) = 1 - y^b; I_x(a, 1) = x^a.
    const double x = 0.3, y = 0.7;
    EXPECT_NEAR(mIncompleteBetaRatio(x, y, 1.0, 4.0, true), std::pow(y, 4.0), 1e-15);
    EXPECT_NEAR(mIncompleteBetaRatio(x, y, 5.0, 1.0, false), std::pow(x, 5.0),
                1e-14 * std::pow(x, 5.0));
}

// ---------------------------------------------------------------------------
// Accuracy against the mpmath table.

namespace
{

// The bound of the whole table, relative, where the reference is above 1e-280.
const double kGridTolerance = 1e-12;

std::string describeRow(const std::vector<double>& row, bool bUpper)
{
    std::ostringstream os;
    os.precision(17);
    os << "a=" << row[0] << " b=" << row[1] << " x=" << row[2] << " y=" << row[3]
       << (bUpper ? " upper" : " lower");
    return os.str();
}

} // namespace

TEST(IncompleteBetaRatio, BothTailsMatchTheReferenceTable)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("incbeta_grid.txt");
    ASSERT_GT(table.rows.size(), 5000u);
    qeltest::WorstError worst("mIncompleteBetaRatio, both tails, reference above 1e-280");
    CmAssertCapture capture;
    int iTiny = 0;
    for (const auto& row : table.rows)
    {
        ASSERT_EQ(row.size(), 6u);
        for (int k = 0; k < 2; ++k)
        {
            const bool bUpper = k == 1;
            const double ref = row[4 + k];
            const double val = mIncompleteBetaRatio(row[2], row[3], row[0], row[1], bUpper);
            if (ref > 1e-280)
            {
                const double err = qeltest::mRelativeError(val, ref);
                const std::string what = describeRow(row, bUpper);
                worst.mUpdate(err, qeltest::mUlpDistance(val, ref), what);
                EXPECT_LE(err, kGridTolerance) << what << " got " << val << " want " << ref;
            }
            else
            {
                // Below 1e-280 (or below the doubles altogether): tiny, never
                // negative, never a spurious large value.
                ++iTiny;
                EXPECT_GE(val, 0.0) << describeRow(row, bUpper);
                EXPECT_LE(val, 1e-270) << describeRow(row, bUpper);
            }
        }
    }
    EXPECT_EQ(capture.mGetCount(), 0);
    std::cout << worst.mReport() << "; " << iTiny << " tails below 1e-280" << std::endl;
    RecordProperty("worst", worst.mReport());
}
