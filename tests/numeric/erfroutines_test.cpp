// ERF and ERFC1: the cut-offs of the published forms and the scaled
// complement against the mpmath table errorfunction.txt.
#include "qel/specialroutines.h"
#include "support/reftable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace
{

double mErf(double dX)
{
    return ERF(&dX);
}
double mErfc1(int iInd, double dX)
{
    return ERFC1(&iInd, &dX);
}

} // namespace

TEST(Erf, IsExactlyPlusOrMinusOneFromFivePointEight)
{
    EXPECT_EQ(mErf(5.8), 1.0);
    EXPECT_EQ(mErf(-5.8), -1.0);
    EXPECT_EQ(mErf(1e300), 1.0);
    EXPECT_LT(mErf(5.7), 1.0);
    EXPECT_EQ(mErf(0.0), 0.0);
}

TEST(Erfc1, IsExactlyTwoBelowMinusFivePointSix)
{
    EXPECT_EQ(mErfc1(0, -5.61), 2.0);
    EXPECT_EQ(mErfc1(0, -1e300), 2.0);
    // At -5.6 itself the outer form still runs: erfc(-5.6) = 2 - 1.5e-15.
    EXPECT_LT(mErfc1(0, -5.6), 2.0);
    EXPECT_NEAR(mErfc1(0, -5.6), 2.0 - 1.4968e-15, 1e-15);
}

TEST(Erfc1, ScaledFormBelowMinusFivePointSixIsTwiceExpOfXSquared)
{
    EXPECT_EQ(mErfc1(1, -6.0), 2.0 * std::exp(36.0));
    EXPECT_EQ(mErfc1(3, -6.0), 2.0 * std::exp(36.0));
}

TEST(Erfc1, UnscaledIsZeroBeyondTheExponentRangeButScaledIsNot)
{
    EXPECT_EQ(mErfc1(0, 26.62), 0.0);
    EXPECT_EQ(mErfc1(0, 101.0), 0.0);
    // exp(x^2) erfc(x) ~ 1/(x sqrt(pi)) for large x.
    EXPECT_NEAR(mErfc1(1, 1e4) * 1e4 * std::sqrt(3.14159265358979323846), 1.0, 1e-8);
}

TEST(Erfc1, ScaledFormMatchesTheReferenceTable)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("errorfunction.txt");
    ASSERT_GT(table.rows.size(), 600u);
    qeltest::WorstError worst("ERFC1 scaled");
    int iRows = 0;
    for (const std::vector<double>& row : table.rows)
    {
        ASSERT_EQ(row.size(), 4u);
        // Below -26.6 exp(x^2) overflows.
        if (row[0] < -26.6)
            continue;
        ++iRows;
        std::ostringstream os;
        os.precision(17);
        os << "x=" << row[0];
        const double dScaled = mErfc1(1, row[0]);
        const double dErr = qeltest::mRelativeError(dScaled, row[3]);
        worst.mUpdate(dErr, qeltest::mUlpDistance(dScaled, row[3]), os.str());
        EXPECT_LE(dErr, 1e-13) << os.str();
    }
    EXPECT_GT(iRows, 600);
    std::cout << worst.mReport() << "\n";
    RecordProperty("worst", worst.mReport());
}
