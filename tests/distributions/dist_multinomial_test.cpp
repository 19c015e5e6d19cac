// mRandMultinomial: one batch of uniforms in the order drawn, one cursor over
// the cumulative probabilities (the last forced to 1) that never moves back.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <numeric>
#include <vector>

#include "qel/distdiscrete.h"
#include "qel/uniformgenerator.h"
#include "tests/distributions/dist_discrete_support.h"
#include "tests/support/reftable.h"
#include "tests/support/uniformstream.h"

namespace
{
std::vector<int> mCounts(int iTrials, const std::vector<double>& rvdP, int& riUsed)
{
    std::vector<int> vi{-7, -7, -7, -7, -7, -7, -7};
    riUsed = qeltest::mUniformsUsed([&]() { mRandMultinomial(iTrials, rvdP, vi); });
    return vi;
}
} // namespace

TEST(DistMultinomial, NoTrialsGiveKZerosWithoutAUniform)
{
    CmUniformGenerator::mInstance()->mSetBase(12.0);
    int iUsed = -1;
    EXPECT_EQ(mCounts(0, {0.2, 0.3, 0.5}, iUsed), std::vector<int>({0, 0, 0}));
    EXPECT_EQ(iUsed, 0);
    EXPECT_EQ(mCounts(-4, {0.5, 0.5}, iUsed), std::vector<int>({0, 0}));
    EXPECT_EQ(iUsed, 0);
}

TEST(DistMultinomial, NoCategoriesGiveNoCountsThoughTheUniformsAreDrawn)
{
    CmUniformGenerator::mInstance()->mSetBase(12.0);
    int iUsed = -1;
    // The counts sum to 0, less than the 5 trials.
    EXPECT_TRUE(mCounts(5, {}, iUsed).empty());
    EXPECT_EQ(iUsed, 5);
}

TEST(DistMultinomial, OneCategoryTakesEveryTrialWhateverItsProbability)
{
    CmUniformGenerator::mInstance()->mSetBase(12.0);
    int iUsed = -1;
    EXPECT_EQ(mCounts(9, {0.01}, iUsed), std::vector<int>({9}));
    EXPECT_EQ(iUsed, 9);
}

TEST(DistMultinomial, ALaterSmallerUniformCountsInTheCursorsCategory)
{
    // Find a base whose first uniform lies above 0.7 and whose second lies
    // below 0.3.  Sorted, the pair would fall one in each half; with the
    // cursor it moves to the second category on the first uniform and
    // counts the second uniform there too.
    double dBase = 1.0;
    for (;; dBase += 1.0)
    {
        qeltest::UniformStream stream(dBase);
        const double dU1 = stream.mNext();
        const double dU2 = stream.mNext();
        if (dU1 > 0.7 && dU2 < 0.3)
            break;
        ASSERT_LT(dBase, 10000.0);
    }
    CmUniformGenerator::mInstance()->mSetBase(dBase);
    int iUsed = -1;
    EXPECT_EQ(mCounts(2, {0.5, 0.5}, iUsed), std::vector<int>({0, 2}));
    EXPECT_EQ(iUsed, 2);
}

TEST(DistMultinomial, CountsReplayTheStreamWithOneCursor)
{
    // The rule stated on the stream itself: the cursor stands at the first
    // category whose cumulative probability reaches the largest uniform so
    // far, and every uniform counts where the cursor stands after it.
    const std::vector<double> vdP{0.1, 0.2, 0.3, 0.15, 0.25};
    const std::vector<double> vdC{0.1, 0.1 + 0.2, 0.1 + 0.2 + 0.3, 0.1 + 0.2 + 0.3 + 0.15, 1.0};
    qeltest::UniformStream stream(9090.0);
    std::vector<int> viExpected(5, 0);
    double dHighest = 0.0;
    for (const double dU : stream.mNext(60))
    {
        dHighest = std::max(dHighest, dU);
        std::size_t j = 0;
        while (vdC[j] < dHighest)
            ++j;
        ++viExpected[j];
    }
    CmUniformGenerator::mInstance()->mSetBase(9090.0);
    int iUsed = -1;
    const std::vector<int> viCounts = mCounts(60, vdP, iUsed);
    EXPECT_EQ(viCounts, viExpected);
    EXPECT_EQ(iUsed, 60);
    EXPECT_EQ(std::accumulate(viCounts.begin(), viCounts.end(), 0), 60);
}

TEST(DistMultinomial, ReferenceCountsAtBase12345)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("variates_discrete_multinomial.txt");
    const std::vector<std::vector<double>> vvdCases{
        {0.2, 0.3, 0.5}, {0.1, 0.1, 0.1, 0.2}, {0.25, 0.25, 0.25, 0.25}, {0.5, 0.5}, {}};
    int iRows = 0;
    for (const std::vector<double>& row : table.rows)
    {
        ASSERT_EQ(row.size(), 6u);
        const int iCase = static_cast<int>(row[0]);
        ASSERT_TRUE(iCase >= 1 && iCase <= 5);
        const std::vector<double>& rvdP = vvdCases[static_cast<std::size_t>(iCase - 1)];
        ASSERT_EQ(static_cast<double>(rvdP.size()), row[2]);
        CmUniformGenerator::mInstance()->mSetBase(12345.0);
        std::vector<int> viCounts{99};
        mRandMultinomial(static_cast<int>(row[1]), rvdP, viCounts);
        EXPECT_EQ(qeltest::mCountDraws(12345.0, CmUniformGenerator::mInstance()->mGetBase()),
                  static_cast<int>(row[5]))
            << "case " << iCase;
        ASSERT_EQ(viCounts.size(), rvdP.size());
        const int iCategory = static_cast<int>(row[3]);
        if (iCategory < 0)
            EXPECT_TRUE(viCounts.empty());
        else
            EXPECT_EQ(viCounts[static_cast<std::size_t>(iCategory)], static_cast<int>(row[4]))
                << "case " << iCase << " category " << iCategory;
        ++iRows;
    }
    EXPECT_EQ(iRows, 14);
}

TEST(DistMultinomial, ChiSquareOfSingleTrials)
{
    // With one trial a call the cursor starts afresh each time: the category
    // of the trial is a draw from the probabilities.
    const std::vector<double> vdP{0.1, 0.2, 0.3, 0.4};
    CmUniformGenerator::mInstance()->mSetBase(6174.0);
    std::vector<double> vdSample;
    std::vector<int> viCounts;
    for (int i = 0; i < 100000; ++i)
    {
        mRandMultinomial(1, vdP, viCounts);
        for (std::size_t j = 0; j < viCounts.size(); ++j)
        {
            if (viCounts[j] == 1)
                vdSample.push_back(static_cast<double>(j));
        }
    }
    ASSERT_EQ(vdSample.size(), 100000u);
    const qeltest::ChiSquareResult result = qeltest::mChiSquare(
        vdSample, 0, 3, [&](int k) { return vdP[static_cast<std::size_t>(k)]; });
    std::cout << "[ chi-square ] multinomial single trials: statistic " << result.dStatistic
              << ", p-value " << result.dPValue << std::endl;
    EXPECT_GT(result.dPValue, 1e-4);
}
