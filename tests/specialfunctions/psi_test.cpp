// Digamma and its scaled derivatives: the published edge cases, the
// assertions, and accuracy against the mpmath table psi.txt.
#include "qel/qelmath.h"
#include "support/reftable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

TEST(Psi, AtOneIsMinusEulersConstant)
{
    CmAssertCapture capture;
    EXPECT_NEAR(mPsi(1.0), -0.5772156649015329, 1e-15);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(Psi, RecurrencePsiOfXPlusOneIsPsiOfXPlusReciprocal)
{
    for (double dX : {0.01, 0.3, 1.7, 4.2, 11.5, 250.0})
        EXPECT_NEAR(mPsi(dX + 1.0), mPsi(dX) + 1.0 / dX, 1e-13 * (1.0 + std::fabs(mPsi(dX))))
            << dX;
}

TEST(Psi, NonPositiveArgumentIsAssertedTwice)
{
    CmAssertCapture capture;
    // The routine refuses x <= 0 and leaves the vector at 0.
    EXPECT_EQ(mPsi(0.0), 0.0);
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "dX > 0.0");
    EXPECT_EQ(capture.mGetTexts()[1], "fiError == 0");
}

TEST(PsiDerivatives, HundredTermsAreAcceptedAndHundredAndOneAreAsserted)
{
    CmAssertCapture capture;
    std::vector<double> vdResults;
    int iUnderflow = -1;
    mPsiDerivatives(2.0, 0, false, 100, vdResults, &iUnderflow);
    EXPECT_EQ(capture.mGetCount(), 0);
    ASSERT_EQ(vdResults.size(), 100u);
    EXPECT_EQ(iUnderflow, 0);
    // Order 99 at x = 2: sum over k of (2 + k)^-100, dominated by 2^-100.
    EXPECT_NEAR(vdResults[99] / std::pow(2.0, -100.0), 1.0, 1e-12);

    mPsiDerivatives(2.0, 0, false, 101, vdResults, nullptr);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "(iTermCt >= 1) && (iTermCt <= 100)");
    // The count is held to 100 after the report.
    EXPECT_EQ(vdResults.size(), 100u);
}

TEST(PsiDerivatives, ZeroTermsAreAssertedAndRefusedByTheRoutine)
{
    CmAssertCapture capture;
    std::vector<double> vdResults(3, 7.0);
    mPsiDerivatives(2.0, 0, false, 0, vdResults, nullptr);
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "(iTermCt >= 1) && (iTermCt <= 100)");
    EXPECT_EQ(capture.mGetTexts()[1], "fiError == 0");
    EXPECT_TRUE(vdResults.empty());
}

TEST(PsiDerivatives, NegativeFirstTermIsAsserted)
{
    CmAssertCapture capture;
    std::vector<double> vdResults;
    mPsiDerivatives(2.0, -1, false, 1, vdResults, nullptr);
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "iFirstTerm >= 0");
    EXPECT_EQ(capture.mGetTexts()[1], "fiError == 0");
    ASSERT_EQ(vdResults.size(), 1u);
    EXPECT_EQ(vdResults[0], 0.0);
}

TEST(PsiDerivatives, ScaledOrderZeroIsLogMinusPsi)
{
    std::vector<double> vdResults;
    for (double dX : {0.2, 3.0, 40.0, 1e5})
    {
        mPsiDerivatives(dX, 0, true, 2, vdResults, nullptr);
        EXPECT_NEAR(vdResults[0], std::log(dX) - mPsi(dX), 1e-14 * (1.0 + std::fabs(mPsi(dX))))
            << dX;
        // Higher orders are not affected by the scaling.
        std::vector<double> vdPlain;
        mPsiDerivatives(dX, 0, false, 2, vdPlain, nullptr);
        EXPECT_EQ(vdResults[1], vdPlain[1]) << dX;
    }
    // At x = 1e5 the scaled value keeps digits that log x - psi(x) loses:
    // -psi(x) + log x = 1/(2x) + 1/(12 x^2) - ...
    mPsiDerivatives(1e5, 0, true, 1, vdResults, nullptr);
    EXPECT_NEAR(vdResults[0], 0.5e-5 + 1.0 / 12.0 * 1e-10, 1e-20);
}

TEST(PsiDerivatives, UnderflowedOrdersAreCountedAndSetToZero)
{
    CmAssertCapture capture;
    std::vector<double> vdResults;
    int iUnderflow = -1;
    // At x = 1e6 the scaled derivative of order k is about x^-k/k: order 60
    // and beyond fall below the exponent range the routine allows.
    mPsiDerivatives(1e6, 40, false, 30, vdResults, &iUnderflow);
    EXPECT_EQ(capture.mGetCount(), 0);
    ASSERT_EQ(vdResults.size(), 30u);
    EXPECT_GT(iUnderflow, 0);
    for (int k = 0; k < 30; ++k)
    {
        if (k >= 30 - iUnderflow)
            EXPECT_EQ(vdResults[k], 0.0) << k;
        else
            EXPECT_GT(vdResults[k], 0.0) << k;
    }
}

TEST(Psi, MatchesTheReferenceTableToTwelveDigits)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("psi.txt");
    ASSERT_GT(table.rows.size(), 300u);
    qeltest::WorstError worst("mPsi");
    for (const std::vector<double>& row : table.rows)
    {
        std::ostringstream os;
        os.precision(17);
        os << "x=" << row[0];
        const double dPsi = mPsi(row[0]);
        const double dErr = qeltest::mRelativeError(dPsi, row[1]);
        worst.mUpdate(dErr, qeltest::mUlpDistance(dPsi, row[1]), os.str());
        EXPECT_LE(dErr, 1e-12) << os.str();
    }
    std::cout << worst.mReport() << "\n";
    RecordProperty("worst", worst.mReport());
}

TEST(PsiDerivatives, OrdersOneToFourMatchTheReferenceTableToTwelveDigits)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("psi.txt");
    ASSERT_GT(table.rows.size(), 300u);
    qeltest::WorstError worst[4] = {qeltest::WorstError("mPsiDerivatives order 1"),
                                    qeltest::WorstError("mPsiDerivatives order 2"),
                                    qeltest::WorstError("mPsiDerivatives order 3"),
                                    qeltest::WorstError("mPsiDerivatives order 4")};
    const double dFactorial[5] = {1.0, 1.0, 2.0, 6.0, 24.0};
    std::vector<double> vdResults;
    for (const std::vector<double>& row : table.rows)
    {
        std::ostringstream os;
        os.precision(17);
        os << "x=" << row[0];
        mPsiDerivatives(row[0], 1, false, 4, vdResults, nullptr);
        for (int k = 1; k <= 4; ++k)
        {
            // The routine gives (-1)^(k+1) psi^(k)(x) / k!.
            const double dSign = (k % 2 == 1) ? 1.0 : -1.0;
            const double dComputed = dSign * vdResults[k - 1] * dFactorial[k];
            const double dErr = qeltest::mRelativeError(dComputed, row[1 + k]);
            worst[k - 1].mUpdate(dErr, qeltest::mUlpDistance(dComputed, row[1 + k]), os.str());
            EXPECT_LE(dErr, 1e-12) << os.str() << " order " << k;
        }
    }
    for (const qeltest::WorstError& w : worst)
    {
        std::cout << w.mReport() << "\n";
        RecordProperty("worst", w.mReport());
    }
}
