// Factorials, binomial coefficients, permutations and combinations: exact small
// values, the overflow roads of each function, the preconditions and their
// texts, and the accuracy of the log-gamma route against binomial coefficients
// computed exactly in 64-bit integers by Pascal's rule.
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
#include <vector>

namespace
{

// Runs f, which must throw exactly E with the message rsText.
template <class E, class F>
void mExpectThrows(F f, const char* pszClass, const std::string& rsText)
{
    try
    {
        f();
        ADD_FAILURE() << "no exception, expected " << pszClass;
    }
    catch (const E& e)
    {
        EXPECT_STREQ(e.mGetClassName(), pszClass);
        EXPECT_EQ(e.mGetMessage().mGetString(), rsText);
    }
}

// Exact binomial coefficients C(n, k) for n up to 66, where all still fit in
// 64 unsigned bits.
std::vector<std::vector<std::uint64_t>> mPascalTriangle(int iMaxN)
{
    std::vector<std::vector<std::uint64_t>> rows;
    for (int n = 0; n <= iMaxN; ++n)
    {
        std::vector<std::uint64_t> row(static_cast<std::size_t>(n) + 1, 1u);
        for (int k = 1; k < n; ++k)
            row[static_cast<std::size_t>(k)] = rows.back()[static_cast<std::size_t>(k) - 1] +
                                               rows.back()[static_cast<std::size_t>(k)];
        rows.push_back(row);
    }
    return rows;
}

} // namespace

// ---------------------------------------------------------------------------
// mNFactorial

TEST(NFactorial, ZeroIsOne)
{
    CmAssertCapture capture;
    EXPECT_EQ(mNFactorial(0), 1);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(NFactorial, ExactUpToTwelve)
{
    int iProduct = 1;
    for (int n = 1; n <= 12; ++n)
    {
        iProduct *= n;
        EXPECT_EQ(mNFactorial(n), iProduct) << "n=" << n;
    }
    EXPECT_EQ(mNFactorial(12), 479001600);
}

TEST(NFactorial, ThirteenExceedsTheLargestIntegerAndGivesZero)
{
    // 13! = 6227020800 is above mGetMaxInteger() = 2147483647.
    CmAssertCapture capture;
    EXPECT_GT(6227020800.0, mGetMaxInteger());
    EXPECT_EQ(mNFactorial(13), 0);
    EXPECT_EQ(mNFactorial(100), 0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(NFactorial, OverflowOfTheExponentialIsCaughtAndGivesZero)
{
    // log(201!) is about 863, beyond mGetMaxExponent() = 709.
    EXPECT_GT(mLogGamma(201.0), mGetMaxExponent());
    int iResult = -1;
    EXPECT_NO_THROW(iResult = mNFactorial(200));
    EXPECT_EQ(iResult, 0);
    EXPECT_NO_THROW(iResult = mNFactorial(std::numeric_limits<int>::max()));
    EXPECT_EQ(iResult, 0);
}

TEST(NFactorial, NegativeArgumentIsReportedThenTheLogGammaRefusesIt)
{
    CmAssertCapture capture;
    mExpectThrows<CmInvalidArgument>([] { mNFactorial(-1); }, "CmInvalidArgument",
                                     "Gamma of a nonpositive argument.");
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "iN >= 0");
}

// ---------------------------------------------------------------------------
// mLogNChooseK and mNChooseK

TEST(LogNChooseK, ZeroOfZeroIsExactlyZero)
{
    CmAssertCapture capture;
    EXPECT_EQ(mLogNChooseK(0, 0), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(LogNChooseK, ZeroElementsGiveZeroEvenForATooLargeK)
{
    // For iN = 0 the answer is 0 after the report, without the log-gamma.
    CmAssertCapture capture;
    EXPECT_EQ(mLogNChooseK(0, 3), 0.0);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "iK <= iN");
}

TEST(LogNChooseK, PreconditionTextsInOrder)
{
    CmAssertCapture capture;
    mExpectThrows<CmInvalidArgument>([] { mLogNChooseK(-2, -3); }, "CmInvalidArgument",
                                     "Gamma of a nonpositive argument.");
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "iN >= 0");
    EXPECT_EQ(capture.mGetTexts()[1], "iK >= 0");

    capture.mClear();
    mExpectThrows<CmInvalidArgument>([] { mLogNChooseK(4, 6); }, "CmInvalidArgument",
                                     "Gamma of a nonpositive argument.");
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "iK <= iN");
}

TEST(LogNChooseK, AgreesWithExactCoefficientsUpToSixtySix)
{
    const auto triangle = mPascalTriangle(66);
    qeltest::WorstError worst("mLogNChooseK against the logarithm of exact C(n,k)");
    for (int n = 0; n <= 66; ++n)
    {
        for (int k = 0; k <= n; ++k)
        {
            const long double ldExact =
                std::log(static_cast<long double>(triangle[static_cast<std::size_t>(n)]
                                                          [static_cast<std::size_t>(k)]));
            const double dGot = mLogNChooseK(n, k);
            const double dExact = static_cast<double>(ldExact);
            std::ostringstream os;
            os << "n=" << n << " k=" << k;
            worst.mUpdate(qeltest::mRelativeError(dGot, dExact), qeltest::mUlpDistance(dGot, dExact),
                          os.str());
            // The absolute error of the logarithm is the relative error of the
            // coefficient.
            EXPECT_LT(std::fabs(dGot - dExact), 1e-12) << os.str();
        }
    }
    std::cout << worst.mReport() << std::endl;
}

TEST(NChooseK, KZeroIsOne)
{
    CmAssertCapture capture;
    EXPECT_EQ(mNChooseK(5, 0), 1);
    EXPECT_EQ(mNChooseK(0, 0), 1);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(NChooseK, ExactWhileTheCoefficientFitsInt)
{
    // C(33, 16) = 1166803110 is the largest middle coefficient below 2^31 - 1.
    const auto triangle = mPascalTriangle(33);
    qeltest::WorstError worst("mNChooseK before rounding: exp(mLogNChooseK) against exact C(n,k)");
    for (int n = 0; n <= 33; ++n)
    {
        for (int k = 0; k <= n; ++k)
        {
            const std::uint64_t uExact =
                triangle[static_cast<std::size_t>(n)][static_cast<std::size_t>(k)];
            EXPECT_EQ(static_cast<std::uint64_t>(mNChooseK(n, k)), uExact)
                << "n=" << n << " k=" << k;
            const double dUnrounded = std::exp(mLogNChooseK(n, k));
            std::ostringstream os;
            os << "n=" << n << " k=" << k;
            worst.mUpdate(qeltest::mRelativeError(dUnrounded, static_cast<double>(uExact)),
                          qeltest::mUlpDistance(dUnrounded, static_cast<double>(uExact)), os.str());
        }
    }
    std::cout << worst.mReport() << std::endl;
}

TEST(NChooseK, FortyChooseTwentyOverflowsIntWithoutNotice)
{
    // C(40, 20) = 137846528820 does not fit int; the conversion is unchecked
    // and yields the integer indefinite, INT_MIN, with no report and no throw.
    CmAssertCapture capture;
    int iResult = 0;
    EXPECT_NO_THROW(iResult = mNChooseK(40, 20));
    EXPECT_EQ(iResult, std::numeric_limits<int>::min());
    EXPECT_EQ(capture.mGetCount(), 0);
    EXPECT_NEAR(std::exp(mLogNChooseK(40, 20)), 137846528820.0, 0.05);
}

TEST(NChooseK, OverflowOfTheExponentialIsCaughtAndGivesZero)
{
    // log C(2000, 1000) is about 1382.
    EXPECT_GT(mLogNChooseK(2000, 1000), mGetMaxExponent());
    int iResult = -1;
    EXPECT_NO_THROW(iResult = mNChooseK(2000, 1000));
    EXPECT_EQ(iResult, 0);
}

TEST(NChooseK, KAboveNIsReportedThenTheLogGammaRefusesIt)
{
    CmAssertCapture capture;
    mExpectThrows<CmInvalidArgument>([] { mNChooseK(3, 5); }, "CmInvalidArgument",
                                     "Gamma of a nonpositive argument.");
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "iK <= iN");
}

TEST(NChooseKByRef, ForwardsToNChooseKAndLeavesTheArguments)
{
    int iN = 7;
    int iK = 3;
    EXPECT_EQ(N_CHOOSE_K(&iN, &iK), 35);
    EXPECT_EQ(iN, 7);
    EXPECT_EQ(iK, 3);
    iN = 40;
    iK = 20;
    EXPECT_EQ(N_CHOOSE_K(&iN, &iK), mNChooseK(40, 20));
}

TEST(NChooseKByRef, NullArgumentIsReportedAndGivesZero)
{
    CmAssertCapture capture;
    int iK = 1;
    EXPECT_EQ(N_CHOOSE_K(nullptr, &iK), 0);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "false");
}

// ---------------------------------------------------------------------------
// mPermutations and mCombinations

TEST(Permutations, FiveTakeTwoIsTwenty)
{
    CmAssertCapture capture;
    EXPECT_EQ(mPermutations(5, 2), 20.0);
    EXPECT_EQ(mPermutations(10, 3), 720.0);
    EXPECT_EQ(mPermutations(7, 0), 1.0);
    EXPECT_EQ(mPermutations(6, 6), 720.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(Combinations, FiveChooseTwoIsTen)
{
    CmAssertCapture capture;
    EXPECT_EQ(mCombinations(5, 2), 10.0);
    EXPECT_EQ(mCombinations(52, 5), 2598960.0);
    EXPECT_EQ(mCombinations(0, 0), 1.0);
    // Beyond int: C(40, 20) as a double.
    EXPECT_EQ(mCombinations(40, 20), 137846528820.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(Permutations, NonIntegerArgumentIsReportedAndRounded)
{
    CmAssertCapture capture;
    EXPECT_EQ(mPermutations(5.4, 2), 20.0);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "mIsIntegerWithinFuzz( dN )");

    capture.mClear();
    EXPECT_EQ(mCombinations(5, 1.6), 10.0);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "mIsIntegerWithinFuzz( dK )");
}

TEST(Combinations, AllFivePreconditionsAreReportedInOrder)
{
    // -1.5 and -0.5 break all five; the rounded -2 then meets the log-gamma.
    CmAssertCapture capture;
    mExpectThrows<CmInvalidArgument>([] { mCombinations(-1.5, -0.5); }, "CmInvalidArgument",
                                     "Gamma of a nonpositive argument.");
    const std::vector<std::string> vsExpected = {"dN >= 0.0", "dK >= 0.0", "dK <= dN",
                                                 "mIsIntegerWithinFuzz( dN )",
                                                 "mIsIntegerWithinFuzz( dK )"};
    EXPECT_EQ(capture.mGetTexts(), vsExpected);

    capture.mClear();
    mExpectThrows<CmInvalidArgument>([] { mPermutations(-1.5, -0.5); }, "CmInvalidArgument",
                                     "Gamma of a nonpositive argument.");
    EXPECT_EQ(capture.mGetTexts(), vsExpected);
}

TEST(Permutations, KAboveNIsReportedThenTheLogGammaRefusesIt)
{
    CmAssertCapture capture;
    mExpectThrows<CmInvalidArgument>([] { mPermutations(2, 3); }, "CmInvalidArgument",
                                     "Gamma of a nonpositive argument.");
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dK <= dN");
}

TEST(Permutations, OverflowPassesToTheCaller)
{
    // log(200! / 50!) is about 718.6, beyond mGetMaxExponent() = 709.
    EXPECT_THROW(mPermutations(200, 150), CmFloatOverflow);
    EXPECT_THROW(mCombinations(2000, 1000), CmFloatOverflow);
    // Just below the limit the value comes back.
    EXPECT_NO_THROW(mPermutations(170, 170));
}
