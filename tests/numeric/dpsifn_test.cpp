// The polygamma routine XDPSIFN (Amos, ACM TOMS 610) and PSI: its error
// codes, the scaled form, underflow counting, and the recurrence that ties
// neighbouring arguments together in every regime.
#include "qel/specialroutines.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace
{

struct Result
{
    std::vector<double> vdAns;
    int iNz;
    int iErr;
};

Result mDpsifn(double dX, int iN, int iKode, int iM)
{
    Result result;
    result.vdAns.assign(static_cast<std::size_t>(iM > 0 ? iM : 1), -7.0);
    result.iNz = -1;
    result.iErr = -1;
    XDPSIFN(&dX, &iN, &iKode, &iM, result.vdAns.data(), &result.iNz, &result.iErr);
    return result;
}

double mPsi(double dX)
{
    return PSI(&dX);
}

} // namespace

TEST(Dpsifn, BadInputGivesErrorOneAndLeavesTheResultsAlone)
{
    EXPECT_EQ(mDpsifn(0.0, 0, 1, 1).iErr, 1);
    EXPECT_EQ(mDpsifn(-2.0, 0, 1, 1).iErr, 1);
    EXPECT_EQ(mDpsifn(std::nan(""), 0, 1, 1).iErr, 1);
    EXPECT_EQ(mDpsifn(1.0, -1, 1, 1).iErr, 1);
    EXPECT_EQ(mDpsifn(1.0, 0, 0, 1).iErr, 1);
    EXPECT_EQ(mDpsifn(1.0, 0, 3, 1).iErr, 1);
    const Result result = mDpsifn(1.0, 0, 1, 0);
    EXPECT_EQ(result.iErr, 1);
    EXPECT_EQ(result.vdAns[0], -7.0);
}

TEST(Dpsifn, OverflowForTinyArgumentAndHighOrderIsErrorTwo)
{
    // x^-(n+1) = 1e1800 cannot be represented.
    const Result result = mDpsifn(1e-300, 5, 1, 1);
    EXPECT_EQ(result.iErr, 2);
    EXPECT_EQ(result.iNz, 0);
}

TEST(Dpsifn, HighOrdersUnderflowBeforeTheRecurrenceLimitOfErrorThree)
{
    // Error 3 (more than 100 recurrence steps) needs a crossover above 101,
    // hence an order above 216, whose terms at the crossover fall outside the
    // exponent range first: with double-precision constants those orders are
    // counted as underflowed instead.  Order 299 at x = 1: orders 161 to 299
    // go, the rest are computed.
    const Result result = mDpsifn(1.0, 0, 1, 300);
    EXPECT_EQ(result.iErr, 0);
    EXPECT_EQ(result.iNz, 139);
    EXPECT_NEAR(result.vdAns[0], 0.5772156649015329, 1e-15);
    // zeta(161) = 1 + 2^-161 + ...: the scaled derivative at x = 1.
    EXPECT_NEAR(result.vdAns[160], 1.0, 1e-15);
    EXPECT_EQ(result.vdAns[161], 0.0);
    EXPECT_EQ(result.vdAns[299], 0.0);
}

TEST(Dpsifn, OrderZeroIsMinusPsiAndTheScaledFormAddsTheLog)
{
    const Result plain = mDpsifn(1.0, 0, 1, 1);
    EXPECT_EQ(plain.iErr, 0);
    EXPECT_NEAR(plain.vdAns[0], 0.5772156649015329, 1e-15);
    const Result scaled = mDpsifn(7.5, 0, 2, 1);
    EXPECT_NEAR(scaled.vdAns[0], std::log(7.5) - mPsi(7.5), 1e-15);
    // For x at or above the crossover the scaled value is formed directly.
    const Result large = mDpsifn(50.0, 0, 2, 1);
    // -psi(x) + log x = 1/(2x) + 1/(12x^2) - 1/(120x^4) + 1/(252x^6) - ...
    const double dX2 = 2500.0;
    EXPECT_NEAR(large.vdAns[0],
                1.0 / 100.0 + 1.0 / (12.0 * dX2) - 1.0 / (120.0 * dX2 * dX2) +
                    1.0 / (252.0 * dX2 * dX2 * dX2),
                1e-15);
}

TEST(Dpsifn, BelowTheRoundingUnitOnlyTheLeadingTermCounts)
{
    const Result result = mDpsifn(1e-17, 0, 1, 3);
    EXPECT_EQ(result.iErr, 0);
    EXPECT_NEAR(result.vdAns[0], 1e17, 1e17 * 1e-15);
    EXPECT_NEAR(result.vdAns[1], 1e34, 1e34 * 1e-15);
    EXPECT_NEAR(result.vdAns[2], 1e51, 1e51 * 1e-15);
    EXPECT_NEAR(mPsi(1e-17), -1e17, 1e17 * 1e-15);
    const Result scaled = mDpsifn(1e-17, 0, 2, 1);
    EXPECT_NEAR(scaled.vdAns[0], 1e17 + std::log(1e-17), 1e17 * 1e-15);
}

TEST(Dpsifn, UnderflowedHighOrdersAreZeroAndCounted)
{
    const Result result = mDpsifn(1e6, 40, 1, 80);
    EXPECT_EQ(result.iErr, 0);
    EXPECT_GT(result.iNz, 0);
    for (int k = 0; k < 80; ++k)
    {
        if (k >= 80 - result.iNz)
            EXPECT_EQ(result.vdAns[k], 0.0) << k;
        else
            EXPECT_GT(result.vdAns[k], 0.0) << k;
    }
}

TEST(Dpsifn, RecurrenceHoldsForEveryOrderAndRegime)
{
    // W_k(x) = W_k(x + 1) + x^-(k+1) for k >= 1, W_k the scaled derivative;
    // small x reaches the direct series, moderate x the downward recurrence,
    // large x the asymptotic series alone.
    for (double dX : {1e-3, 0.3, 1.7, 6.2, 14.5, 60.0, 3000.0})
    {
        const Result here = mDpsifn(dX, 1, 1, 20);
        const Result next = mDpsifn(dX + 1.0, 1, 1, 20);
        ASSERT_EQ(here.iErr, 0);
        ASSERT_EQ(next.iErr, 0);
        for (int k = 0; k < 20; ++k)
        {
            const double dOrder = k + 1.0;
            const double dExpected = next.vdAns[k] + std::pow(dX, -(dOrder + 1.0));
            if (here.vdAns[k] == 0.0)
                continue;
            EXPECT_NEAR(here.vdAns[k] / dExpected, 1.0, 1e-13) << dX << " order " << dOrder;
        }
    }
}

TEST(Dpsifn, LowerOrdersFromOneCallAgreeWithSeparateCalls)
{
    for (double dX : {0.05, 2.5, 9.0, 120.0})
    {
        const Result block = mDpsifn(dX, 0, 1, 12);
        for (int k = 0; k < 12; ++k)
        {
            const Result single = mDpsifn(dX, k, 1, 1);
            EXPECT_NEAR(block.vdAns[k] / single.vdAns[0], 1.0, 1e-13) << dX << " order " << k;
        }
    }
}

TEST(Dpsifn, ExportedUnderTheSecondName)
{
    double dX = 3.3;
    int iN = 2;
    int iKode = 1;
    int iM = 3;
    double adAns[3] = {};
    int iNz = -1;
    int iErr = -1;
    DPSIFN(&dX, &iN, &iKode, &iM, adAns, &iNz, &iErr);
    const Result result = mDpsifn(3.3, 2, 1, 3);
    for (int k = 0; k < 3; ++k)
        EXPECT_EQ(adAns[k], result.vdAns[k]);
    EXPECT_EQ(iErr, 0);
}

TEST(PsiRoutine, IsMinusTheOrderZeroTermAndZeroWhereTheRoutineRefuses)
{
    EXPECT_EQ(mPsi(4.25), -mDpsifn(4.25, 0, 1, 1).vdAns[0]);
    EXPECT_EQ(mPsi(0.0), 0.0);
    EXPECT_EQ(mPsi(-1.5), 0.0);
    // psi has its positive zero at 1.4616321449683623.
    EXPECT_NEAR(mPsi(1.4616321449683623), 0.0, 1e-15);
}
