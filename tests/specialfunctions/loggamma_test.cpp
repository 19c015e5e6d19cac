// mLogGamma and mGamma: guards, exact values, and agreement with mpmath's
// log-gamma on a grid from 1e-6 to 1e6 (tests/data/loggamma.txt, written by
// tests/data/gen_loggamma.py).
#include "qel/qelmath.h"
#include "support/reftable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <limits>
#include <sstream>
#include <string>

namespace
{

const double kLargest = 1.7976931348623157e+308;

std::string mRowText(double dX, double dRef, double dGot)
{
    std::ostringstream os;
    os.precision(17);
    os << "x=" << dX << " ref=" << dRef << " got=" << dGot;
    return os.str();
}

} // namespace

TEST(LogGamma, OneAndTwoAreExactlyZero)
{
    EXPECT_EQ(mLogGamma(1.0), 0.0);
    EXPECT_EQ(mLogGamma(2.0), 0.0);
    EXPECT_FALSE(std::signbit(mLogGamma(1.0)));
    EXPECT_FALSE(std::signbit(mLogGamma(2.0)));
}

TEST(LogGamma, NonpositiveArgumentThrowsInvalidArgument)
{
    for (double dX : {0.0, -0.0, -1.0, -2.5, -std::numeric_limits<double>::infinity()})
    {
        try
        {
            mLogGamma(dX);
            ADD_FAILURE() << "no exception for x=" << dX;
        }
        catch (const CmInvalidArgument& e)
        {
            EXPECT_EQ(e.mGetMessage().mGetString(), "Gamma of a nonpositive argument.");
            EXPECT_STREQ(e.mGetClassName(), "CmInvalidArgument");
            EXPECT_GT(e.mGetLine(), 0u);
            EXPECT_NE(e.mGetFile().mGetString().find("loggamma.cpp"), std::string::npos);
        }
    }
}

TEST(LogGamma, ArgumentLostInSevenPlusXThrowsTooCloseToZero)
{
    // 7 + 4e-16 rounds to 7; 7 + 1e-15 does not.
    for (double dX : {1e-300, 1e-20, 4e-16, std::numeric_limits<double>::denorm_min()})
    {
        try
        {
            mLogGamma(dX);
            ADD_FAILURE() << "no exception for x=" << dX;
        }
        catch (const CmInvalidArgument& e)
        {
            EXPECT_EQ(e.mGetMessage().mGetString(), "Gamma of a value too close to 0.");
        }
    }
    // 1e-15 is admitted; x + 1 keeps only a few of its digits, so the value
    // is rough (the form's cancellation), but it is near -log x.
    EXPECT_NEAR(mLogGamma(1e-15), -std::log(1e-15), 0.2);
}

TEST(LogGamma, AgreesWithMpmathOnGridFromMicroToMega)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("loggamma.txt");
    ASSERT_GT(table.rows.size(), 1500u);
    qeltest::WorstError small("mLogGamma relative error, x < 0.5");
    qeltest::WorstError middle("mLogGamma absolute error, 0.5 <= x < 3", "absolute");
    qeltest::WorstError large("mLogGamma relative error, x >= 3");
    for (const auto& row : table.rows)
    {
        ASSERT_EQ(row.size(), 2u);
        const double dX = row[0];
        const double dRef = row[1];
        const double dGot = mLogGamma(dX);
        const double dUlps = qeltest::mUlpDistance(dGot, dRef);
        const std::string sRow = mRowText(dX, dRef, dGot);
        if (dX < 0.5)
        {
            const double dErr = qeltest::mRelativeError(dGot, dRef);
            small.mUpdate(dErr, dUlps, sRow);
            // The form cancels here: x + i - 1 rounds x in x + 1 (about 6e-12
            // relative at x = 1e-6).
            EXPECT_LE(dErr, 1e-10) << sRow;
        }
        else if (dX < 3.0)
        {
            const double dErr = std::fabs(dGot - dRef);
            middle.mUpdate(dErr, dUlps, sRow);
            EXPECT_LE(dErr, 5e-15) << sRow;
        }
        else
        {
            const double dErr = qeltest::mRelativeError(dGot, dRef);
            large.mUpdate(dErr, dUlps, sRow);
            EXPECT_LE(dErr, 1e-14) << sRow;
        }
    }
    std::cout << small.mReport() << "\n" << middle.mReport() << "\n" << large.mReport() << "\n";
}

TEST(Gamma, IsTheExponentialOfLogGamma)
{
    EXPECT_EQ(mGamma(1.0, true), 1.0);
    EXPECT_EQ(mGamma(2.0, true), 1.0);
    EXPECT_EQ(mGamma(5.0, false), std::exp(mLogGamma(5.0)));
    EXPECT_NEAR(mGamma(5.0, false), 24.0, 24.0 * 1e-14);
    EXPECT_NEAR(mGamma(0.5, true), std::sqrt(mGetPi()), 1e-14);
    EXPECT_NEAR(mGamma(170.5, true), std::tgamma(170.5), std::tgamma(170.5) * 1e-12);
}

TEST(Gamma, LogAboveMaxExponentIsLargestDoubleOrOverflow)
{
    ASSERT_GT(mLogGamma(171.7), mGetMaxExponent());
    EXPECT_EQ(mGamma(171.7, false), kLargest);
    bool bThrown = false;
    try
    {
        mGamma(171.7, true);
    }
    catch (const CmFloatOverflow& e)
    {
        bThrown = true;
        EXPECT_STREQ(e.mGetClassName(), "CmFloatOverflow");
    }
    EXPECT_TRUE(bThrown);
}

TEST(Gamma, NonpositiveArgumentThrowsEvenWithFalse)
{
    for (bool bThrow : {false, true})
    {
        try
        {
            mGamma(-1.0, bThrow);
            ADD_FAILURE() << "no exception with bThrow=" << bThrow;
        }
        catch (const CmInvalidArgument& e)
        {
            EXPECT_EQ(e.mGetMessage().mGetString(), "Gamma of a nonpositive argument.");
        }
    }
}
