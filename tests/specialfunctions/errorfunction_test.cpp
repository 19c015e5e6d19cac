// The public error function: its limits and accuracy of both forms against
// the mpmath table errorfunction.txt.
#include "qel/qelmath.h"
#include "support/reftable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

TEST(ErrorFunction, SixIsExactlyOneAndMinusSixComplementIsExactlyTwo)
{
    EXPECT_EQ(mErrorFunction(6.0, false), 1.0);
    EXPECT_EQ(mErrorFunction(-6.0, false), -1.0);
    EXPECT_EQ(mErrorFunction(-6.0, true), 2.0);
}

TEST(ErrorFunction, ComplementVanishesExactlyWhereExpOfMinusXSquaredUnderflows)
{
    // -EXPARG(1) = 0.99999 * 1022 * log 2 = 708.39...; sqrt of it is 26.615...
    EXPECT_GT(mErrorFunction(26.6, true), 0.0);
    EXPECT_EQ(mErrorFunction(26.62, true), 0.0);
    EXPECT_EQ(mErrorFunction(1e300, true), 0.0);
}

TEST(ErrorFunction, IsOddAndTheFormsAddUp)
{
    for (double dX : {1e-300, 1e-8, 0.3, 0.5, 0.77, 2.0, 4.0, 4.5, 5.7})
    {
        EXPECT_EQ(mErrorFunction(-dX, false), -mErrorFunction(dX, false)) << dX;
        EXPECT_NEAR(mErrorFunction(dX, false) + mErrorFunction(dX, true), 1.0, 2e-16) << dX;
    }
    EXPECT_EQ(mErrorFunction(0.0, false), 0.0);
    EXPECT_EQ(mErrorFunction(0.0, true), 1.0);
}

TEST(ErrorFunction, BothFormsMatchTheReferenceTableToThirteenDigits)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("errorfunction.txt");
    ASSERT_GT(table.rows.size(), 600u);
    qeltest::WorstError worstErf("mErrorFunction erf");
    qeltest::WorstError worstErfc("mErrorFunction erfc");
    for (const std::vector<double>& row : table.rows)
    {
        std::ostringstream os;
        os.precision(17);
        os << "x=" << row[0];
        const double dErf = mErrorFunction(row[0], false);
        const double dErrErf = qeltest::mRelativeError(dErf, row[1]);
        worstErf.mUpdate(dErrErf, qeltest::mUlpDistance(dErf, row[1]), os.str());
        EXPECT_LE(dErrErf, 1e-13) << os.str();

        const double dErfc = mErrorFunction(row[0], true);
        if (row[2] > 1e-300)
        {
            const double dErrErfc = qeltest::mRelativeError(dErfc, row[2]);
            worstErfc.mUpdate(dErrErfc, qeltest::mUlpDistance(dErfc, row[2]), os.str());
            EXPECT_LE(dErrErfc, 1e-13) << os.str();
        }
        else
        {
            EXPECT_LE(dErfc, 1e-300) << os.str();
        }
    }
    std::cout << worstErf.mReport() << "\n" << worstErfc.mReport() << "\n";
    RecordProperty("worst_erf", worstErf.mReport());
    RecordProperty("worst_erfc", worstErfc.mReport());
}
