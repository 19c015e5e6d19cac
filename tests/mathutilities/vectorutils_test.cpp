// Element-wise vector utilities and the intersection of ascending integer
// vectors: values, the reports of bad elements, the overflow that passes to
// the caller, results that are their own inputs, and the intersection checked
// against the standard library's multiset intersection on seeded random data.
#include "qel/qelmath.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <vector>

TEST(HadamardProduct, MultipliesElementByElementIntoAClearedResult)
{
    CmAssertCapture capture;
    std::vector<double> vdResult = {99, 99, 99, 99, 99};
    mHadamardProduct({1, 2, 3}, {4, -5, 0.5}, vdResult);
    EXPECT_EQ(vdResult, (std::vector<double>{4, -10, 1.5}));
    mHadamardProduct({}, {}, vdResult);
    EXPECT_TRUE(vdResult.empty());
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(HadamardProduct, SizeMismatchIsReportedAndTheCommonLengthMultiplied)
{
    CmAssertCapture capture;
    std::vector<double> vdResult;
    mHadamardProduct({1, 2, 3}, {2, 2}, vdResult);
    EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"rvdV.size() == rvdW.size()"});
    EXPECT_EQ(vdResult, (std::vector<double>{2, 4}));
    capture.mClear();
    mHadamardProduct({3}, {2, 2}, vdResult);
    EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"rvdV.size() == rvdW.size()"});
    EXPECT_EQ(vdResult, (std::vector<double>{6}));
}

TEST(HadamardProduct, ResultMayBeAnInput)
{
    std::vector<double> vd = {1, 2, 3};
    mHadamardProduct(vd, vd, vd);
    EXPECT_EQ(vd, (std::vector<double>{1, 4, 9}));
}

TEST(ExponentiateVector, ExponentialOfEachElement)
{
    CmAssertCapture capture;
    std::vector<double> vdResult = {7};
    mExponentiateVector({0, 1, -2.5, -800}, vdResult);
    ASSERT_EQ(vdResult.size(), 4u);
    EXPECT_EQ(vdResult[0], 1.0);
    EXPECT_EQ(vdResult[1], std::exp(1.0));
    EXPECT_EQ(vdResult[2], std::exp(-2.5));
    // Underflow below minus the largest exponent is 0, without an exception.
    EXPECT_EQ(vdResult[3], 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(ExponentiateVector, OverflowPassesToTheCallerAfterTheEarlierElements)
{
    std::vector<double> vdResult = {7, 7, 7};
    EXPECT_THROW(mExponentiateVector({0, 710, 1}, vdResult), CmFloatOverflow);
    EXPECT_EQ(vdResult, std::vector<double>{1.0});
}

TEST(ExponentiateVector, MissingElementIsReportedThenOverflows)
{
    CmAssertCapture capture;
    std::vector<double> vdResult;
    EXPECT_THROW(mExponentiateVector({mGetMissingValueCode()}, vdResult), CmFloatOverflow);
    EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"! ::mIsNumericMissing( dX )"});
    EXPECT_TRUE(vdResult.empty());
}

TEST(ExponentiateVector, ResultMayBeTheInput)
{
    std::vector<double> vd = {0, 0};
    mExponentiateVector(vd, vd);
    EXPECT_EQ(vd, (std::vector<double>{1, 1}));
}

TEST(LogVector, LogarithmOfPositiveElements)
{
    CmAssertCapture capture;
    std::vector<double> vdResult;
    mLogVector({1, std::exp(2.0), 0.25}, vdResult);
    ASSERT_EQ(vdResult.size(), 3u);
    EXPECT_EQ(vdResult[0], 0.0);
    EXPECT_EQ(vdResult[1], std::log(std::exp(2.0)));
    EXPECT_EQ(vdResult[2], std::log(0.25));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(LogVector, ZeroIsReportedAndGivesZero)
{
    CmAssertCapture capture;
    std::vector<double> vdResult;
    mLogVector({0.0}, vdResult);
    EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"rvdV[iRow] > 0.0"});
    EXPECT_EQ(vdResult, std::vector<double>{0.0});
}

TEST(LogVector, EveryNonPositiveElementIsReportedInTurn)
{
    CmAssertCapture capture;
    std::vector<double> vdResult;
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    mLogVector({-3.0, 1.0, dNaN, -0.0}, vdResult);
    EXPECT_EQ(capture.mGetTexts(), (std::vector<std::string>{"rvdV[iRow] > 0.0", "rvdV[iRow] > 0.0",
                                                             "rvdV[iRow] > 0.0"}));
    EXPECT_EQ(vdResult, (std::vector<double>{0.0, 0.0, 0.0, 0.0}));
}

TEST(LogVector, ResultMayBeTheInput)
{
    std::vector<double> vd = {1, 1};
    mLogVector(vd, vd);
    EXPECT_EQ(vd, (std::vector<double>{0, 0}));
}

TEST(INTGVectorIntersection, CommonElementsOfTwoAscendingVectors)
{
    EXPECT_EQ(mGetINTGVectorIntersection({1, 3, 5}, {3, 4, 5}), (std::vector<int>{3, 5}));
    EXPECT_EQ(mGetINTGVectorIntersection({3, 4, 5}, {1, 3, 5}), (std::vector<int>{3, 5}));
    EXPECT_TRUE(mGetINTGVectorIntersection({1, 2}, {3, 4}).empty());
    EXPECT_TRUE(mGetINTGVectorIntersection({}, {3, 4}).empty());
    EXPECT_TRUE(mGetINTGVectorIntersection({3, 4}, {}).empty());
    EXPECT_EQ(mGetINTGVectorIntersection({-5, 0, 7}, {-5, 7, 8}), (std::vector<int>{-5, 7}));
}

TEST(INTGVectorIntersection, RepeatedElementsMatchOnceEach)
{
    EXPECT_EQ(mGetINTGVectorIntersection({3, 3}, {3}), std::vector<int>{3});
    EXPECT_EQ(mGetINTGVectorIntersection({3}, {3, 3}), std::vector<int>{3});
    EXPECT_EQ(mGetINTGVectorIntersection({2, 3, 3, 3}, {3, 3, 9}), (std::vector<int>{3, 3}));
}

TEST(INTGVectorIntersection, UnsortedInputGivesTheWalksAnswerSafely)
{
    // 5 is found at the end of the second vector, which ends the walk.
    EXPECT_EQ(mGetINTGVectorIntersection({5, 1}, {1, 5}), std::vector<int>{5});
}

TEST(INTGVectorIntersection, AgreesWithTheMultisetIntersectionOnRandomData)
{
    std::mt19937 gen(20261121u);
    std::uniform_int_distribution<int> value(-6, 6);
    std::uniform_int_distribution<int> length(0, 12);
    for (int iTrial = 0; iTrial < 500; ++iTrial)
    {
        std::vector<int> viA(static_cast<std::size_t>(length(gen)));
        std::vector<int> viB(static_cast<std::size_t>(length(gen)));
        for (int& i : viA)
            i = value(gen);
        for (int& i : viB)
            i = value(gen);
        std::sort(viA.begin(), viA.end());
        std::sort(viB.begin(), viB.end());
        std::vector<int> viExpected;
        std::set_intersection(viA.begin(), viA.end(), viB.begin(), viB.end(),
                              std::back_inserter(viExpected));
        EXPECT_EQ(mGetINTGVectorIntersection(viA, viB), viExpected) << "trial " << iTrial;
    }
}
