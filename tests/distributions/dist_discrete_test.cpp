// The general discrete distribution object: its three maps, forwarding,
// bounds and support, and Walker's alias table: built at the first draw,
// carried by copies, one uniform a draw, and slot numbers (ranks) as
// variates.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <vector>

#include "qel/discrete.h"
#include "qel/distdiscrete.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"
#include "tests/distributions/dist_discrete_support.h"
#include "tests/support/uniformstream.h"

namespace
{
// The cases of tests/data/variates_discrete.txt, by id.
std::unique_ptr<CmDist> mMakeCase(int iCase)
{
    switch (iCase)
    {
    case 1:
        return std::make_unique<CmDistDiscrete>(std::vector<double>{10.0, 20.0, 30.0},
                                                std::vector<double>{0.5, 0.25, 0.25});
    case 2:
        return std::make_unique<CmDistDiscrete>(
            std::vector<double>{1.5, 2.0, 4.0, 7.0, 11.0, 20.0},
            std::vector<double>{0.05, 0.1, 0.15, 0.2, 0.22, 0.28});
    case 3:
        return std::make_unique<CmDistDiscrete>(std::vector<double>{-2.0, 0.0, 3.0, 5.0, 8.0},
                                                std::vector<double>{3.5, 1.0, 0.25, 2.0, 7.0});
    case 4:
        return std::make_unique<CmDistDiscrete>(std::vector<double>{5.0, 1.0, 3.0},
                                                std::vector<double>{0.2, 0.5, 0.3});
    default:
        return nullptr;
    }
}

// The probability that the alias table gives slot i: a draw lands in slot k
// with probability 1/n and keeps k when its point in (0, 1] is at or below
// the cutoff, else goes to the alias of k.
std::vector<double> mTableMass(const CmDistDiscrete& rDist)
{
    const std::vector<double>& rvdCut = rDist.mGetCutoffs();
    const std::vector<double>& rvdAlias = rDist.mGetAliases();
    const std::size_t n = rvdCut.size();
    std::vector<double> vdMass(n, 0.0);
    for (std::size_t k = 0; k < n; ++k)
    {
        const double dKeep = std::min(1.0, std::max(0.0, rvdCut[k]));
        vdMass[k] += dKeep / static_cast<double>(n);
        vdMass[static_cast<std::size_t>(rvdAlias[k])] += (1.0 - dKeep) / static_cast<double>(n);
    }
    return vdMass;
}

double mDraw(const CmDist& rDist, int& riUsed)
{
    double dX = -1.0;
    riUsed = qeltest::mUniformsUsed([&]() { dX = rDist.mGetRandom(); });
    return dX;
}
} // namespace

TEST(DistDiscrete, ConstructorFillsTheThreeMapsFromARunningSum)
{
    const CmDistDiscrete dist({10.0, 20.0, 30.0}, {0.5, 0.25, 0.25});
    const std::map<double, double> mapPdf{{10.0, 0.5}, {20.0, 0.25}, {30.0, 0.25}};
    const std::map<double, double> mapCdf{{10.0, 0.5}, {20.0, 0.75}, {30.0, 1.0}};
    const std::map<double, double> mapInv{{0.5, 10.0}, {0.75, 20.0}, {1.0, 30.0}};
    for (double dX : {5.0, 10.0, 15.0, 20.0, 30.0, 31.0})
    {
        EXPECT_EQ(dist.mPdf(dX), mDiscretePdf(dX, mapPdf)) << dX;
        EXPECT_EQ(dist.mCdf(dX, false), mDiscreteCdf(dX, mapCdf, false)) << dX;
        EXPECT_EQ(dist.mCdf(dX, true), mDiscreteCdf(dX, mapCdf, true)) << dX;
    }
    for (double dP : {0.0, 0.3, 0.5, 0.6, 0.75, 0.9, 1.0, 1.5})
        EXPECT_EQ(dist.mInvCdf(dP), mDiscreteInvCdf(dP, mapInv)) << dP;
    EXPECT_EQ(dist.mPdf(20.0), 0.25);
    EXPECT_EQ(dist.mCdf(20.0, false), 0.75);
    EXPECT_EQ(dist.mCdf(20.0, true), 0.5);
    EXPECT_EQ(dist.mInvCdf(0.6), 20.0);
}

TEST(DistDiscrete, ARepeatedValueKeepsItsFirstEntriesButAddsItsRunningSum)
{
    const CmDistDiscrete dist({1.0, 2.0, 2.0, 3.0}, {0.1, 0.2, 0.3, 0.4});
    const double dS2 = 0.1 + 0.2;
    const double dS3 = dS2 + 0.3;
    const double dS4 = dS3 + 0.4;
    EXPECT_EQ(dist.mPdf(2.0), 0.2);
    EXPECT_EQ(dist.mCdf(2.0, false), dS2);
    EXPECT_EQ(dist.mCdf(3.0, false), dS4);
    // The running sum after the repeat is a new key of the quantile's map.
    EXPECT_EQ(dist.mInvCdf(dS3), 2.0);
    EXPECT_EQ(dist.mInvCdf(dS4), 3.0);
    std::vector<double> vd;
    dist.mGetSupport(0.0, 0.0, vd);
    EXPECT_EQ(vd, std::vector<double>({1.0, 2.0, 3.0}));
}

TEST(DistDiscrete, AShorterProbabilityVectorGivesTheRestProbabilityZero)
{
    const CmDistDiscrete dist({1.0, 2.0, 3.0}, {0.5});
    EXPECT_EQ(dist.mPdf(1.0), 0.5);
    EXPECT_EQ(dist.mPdf(2.0), 0.0);
    EXPECT_EQ(dist.mPdf(3.0), 0.0);
    EXPECT_EQ(dist.mCdf(3.0, false), 0.5);
    EXPECT_EQ(dist.mInvCdf(0.4), 1.0);
    std::vector<double> vd;
    dist.mGetSupport(0.0, 0.0, vd);
    EXPECT_EQ(vd, std::vector<double>({1.0, 2.0, 3.0}));
    CmUniformGenerator::mInstance()->mSetBase(17.0);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(dist.mGetRandom(), 0.0);
    EXPECT_EQ(dist.mGetCutoffs(), std::vector<double>({1.0, 0.0, 0.0}));
    EXPECT_EQ(dist.mGetAliases(), std::vector<double>({0.0, 0.0, 0.0}));
}

TEST(DistDiscrete, ANaNValueIsLeftOutWithItsProbability)
{
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    const CmDistDiscrete dist({1.0, dNaN, 3.0}, {0.2, 0.3, 0.5});
    std::vector<double> vd;
    dist.mGetSupport(0.0, 0.0, vd);
    EXPECT_EQ(vd, std::vector<double>({1.0, 3.0}));
    EXPECT_EQ(dist.mPdf(3.0), 0.5);
    EXPECT_EQ(dist.mCdf(3.0, false), 0.2 + 0.5);
    EXPECT_EQ(dist.mInvCdf(0.5), 3.0);
    CmUniformGenerator::mInstance()->mSetBase(88.0);
    dist.mGetRandom();
    // Shares 0.2 * 2 / 0.7 and 0.5 * 2 / 0.7: the second fills the first.
    ASSERT_EQ(dist.mGetCutoffs().size(), 2u);
    EXPECT_EQ(dist.mGetCutoffs()[0], 0.2 * 2.0 / (0.2 + 0.5));
    EXPECT_EQ(dist.mGetAliases(), std::vector<double>({1.0, 1.0}));
}

TEST(DistDiscrete, ANaNProbabilityLeavesTheRestOfTheQuantilesMapAlone)
{
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    const CmDistDiscrete dist({1.0, 2.0, 3.0}, {0.2, dNaN, 0.3});
    EXPECT_EQ(dist.mPdf(1.0), 0.2);
    EXPECT_TRUE(std::isnan(dist.mPdf(2.0)));
    EXPECT_TRUE(std::isnan(dist.mCdf(3.0, false)));
    // Only the first running sum is a key: beyond it the constant 1.
    EXPECT_EQ(dist.mInvCdf(0.1), 1.0);
    EXPECT_EQ(dist.mInvCdf(0.5), 1.0);
    // The total is NaN, so is every cutoff: each draw keeps the slot of U n.
    CmUniformGenerator::mInstance()->mSetBase(89.0);
    qeltest::UniformStream stream(89.0);
    for (int i = 0; i < 50; ++i)
        EXPECT_EQ(dist.mGetRandom(), std::floor(stream.mNext() * 3.0)) << i;
}

TEST(DistDiscrete, BoundsSupportAndTheBaseOperations)
{
    const CmDistDiscrete dist({5.0, 1.0, 3.0}, {0.2, 0.5, 0.3});
    EXPECT_FALSE(dist.mIsContinuous());
    EXPECT_TRUE(dist.mHasLowerBound());
    EXPECT_TRUE(dist.mHasUpperBound());
    EXPECT_EQ(dist.mGetLowerBound(), 1.0);
    EXPECT_EQ(dist.mGetUpperBound(), 5.0);
    std::vector<double> vd{7.0};
    dist.mGetSupport(2.0, 2.5, vd);
    EXPECT_EQ(vd, std::vector<double>({1.0, 3.0, 5.0}));
    dist.mGetDRefPoints(vd);
    EXPECT_TRUE(vd.empty());

    // No parameters of its own: the base reports and empties the vector.
    CmAssertCapture capture;
    vd = {1.0};
    dist.mGetParameters(vd);
    EXPECT_TRUE(vd.empty());
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "false");
    vd = {1.0};
    dist.mGetNonInvCDFParameters(vd);
    EXPECT_TRUE(vd.empty());
    EXPECT_EQ(capture.mGetCount(), 2);
    EXPECT_TRUE(dist.mAreParamsValid());
}

TEST(DistDiscrete, AnEmptyObjectGivesTheMissingValueWithoutAUniform)
{
    const CmDistDiscrete dist({}, {0.5, 0.5});
    const double dMissing = CmQELConst::mInstance()->mGetMissingValueCode();
    std::vector<double> vd{1.0};
    dist.mGetSupport(-1.0, 1.0, vd);
    EXPECT_TRUE(vd.empty());
    EXPECT_EQ(dist.mGetLowerBound(), dMissing);
    EXPECT_EQ(dist.mGetUpperBound(), dMissing);
    EXPECT_EQ(dist.mPdf(0.0), 0.0);
    CmAssertCapture capture;
    CmUniformGenerator::mInstance()->mSetBase(3.0);
    int iUsed = -1;
    EXPECT_EQ(mDraw(dist, iUsed), dMissing);
    EXPECT_EQ(iUsed, 0);
    EXPECT_EQ(mDraw(dist, iUsed), dMissing);
    EXPECT_EQ(iUsed, 0);
    EXPECT_TRUE(dist.mGetCutoffs().empty());
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistDiscrete, DrawsAreTheSlotsZeroOneAndTwoNotTheValues)
{
    const CmDistDiscrete dist({10.0, 20.0, 30.0}, {0.5, 0.25, 0.25});
    CmUniformGenerator::mInstance()->mSetBase(1001.0);
    int aiSeen[3] = {0, 0, 0};
    for (int i = 0; i < 1000; ++i)
    {
        const double dX = dist.mGetRandom();
        ASSERT_TRUE(dX == 0.0 || dX == 1.0 || dX == 2.0) << dX;
        ++aiSeen[static_cast<int>(dX)];
    }
    EXPECT_GT(aiSeen[0], 0);
    EXPECT_GT(aiSeen[1], 0);
    EXPECT_GT(aiSeen[2], 0);
}

TEST(DistDiscrete, TheTableOfAHalfAndTwoQuartersFillsBothQuartersFromTheHalf)
{
    // Shares 1.5, 0.75, 0.75: slot 2 then slot 1 take 0.25 each from slot 0.
    const CmDistDiscrete dist({10.0, 20.0, 30.0}, {0.5, 0.25, 0.25});
    dist.mGetRandom();
    EXPECT_EQ(dist.mGetCutoffs(), std::vector<double>({1.0, 0.75, 0.75}));
    EXPECT_EQ(dist.mGetAliases(), std::vector<double>({0.0, 0.0, 0.0}));
}

TEST(DistDiscrete, WeightsTwoOneOneGiveTheSameTableAsTheirProbabilities)
{
    const CmDistDiscrete weights({10.0, 20.0, 30.0}, {2.0, 1.0, 1.0});
    const CmDistDiscrete probabilities({10.0, 20.0, 30.0}, {0.5, 0.25, 0.25});
    weights.mGetRandom();
    probabilities.mGetRandom();
    EXPECT_EQ(weights.mGetCutoffs(), probabilities.mGetCutoffs());
    EXPECT_EQ(weights.mGetAliases(), probabilities.mGetAliases());
    EXPECT_EQ(weights.mGetCutoffs(), std::vector<double>({1.0, 0.75, 0.75}));
}

TEST(DistDiscrete, ProbabilitiesOneZeroZeroDrawOnlyTheFirstSlot)
{
    const CmDistDiscrete dist({1.0, 2.0, 3.0}, {1.0, 0.0, 0.0});
    CmUniformGenerator::mInstance()->mSetBase(2718.0);
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(dist.mGetRandom(), 0.0) << i;
    EXPECT_EQ(dist.mGetCutoffs(), std::vector<double>({1.0, 0.0, 0.0}));
    EXPECT_EQ(dist.mGetAliases()[1], 0.0);
    EXPECT_EQ(dist.mGetAliases()[2], 0.0);
}

TEST(DistDiscrete, TheTableIsBuiltAtTheFirstDrawOnly)
{
    const CmDistDiscrete dist({1.5, 2.0, 4.0, 7.0, 11.0, 20.0},
                              {0.05, 0.1, 0.15, 0.2, 0.22, 0.28});
    EXPECT_TRUE(dist.mGetCutoffs().empty());
    EXPECT_TRUE(dist.mGetAliases().empty());
    // Density, distribution function and support leave it alone.
    dist.mPdf(2.0);
    dist.mCdf(2.0, false);
    dist.mInvCdf(0.5);
    std::vector<double> vd;
    dist.mGetSupport(0.0, 1.0, vd);
    EXPECT_TRUE(dist.mGetCutoffs().empty());

    CmAssertCapture capture;
    CmUniformGenerator::mInstance()->mSetBase(64.0);
    int iUsed = -1;
    mDraw(dist, iUsed);
    EXPECT_EQ(iUsed, 1);
    ASSERT_EQ(dist.mGetCutoffs().size(), 6u);
    const std::vector<double> vdCutoffs = dist.mGetCutoffs();
    const std::vector<double> vdAliases = dist.mGetAliases();
    // Later draws keep the table, without a report, one uniform each.
    for (int i = 0; i < 50; ++i)
    {
        mDraw(dist, iUsed);
        EXPECT_EQ(iUsed, 1);
    }
    EXPECT_EQ(dist.mGetCutoffs(), vdCutoffs);
    EXPECT_EQ(dist.mGetAliases(), vdAliases);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistDiscrete, TheTableGivesEachSlotItsProbability)
{
    const std::vector<double> vdP{0.05, 0.1, 0.15, 0.2, 0.22, 0.28};
    const CmDistDiscrete dist({1.5, 2.0, 4.0, 7.0, 11.0, 20.0}, vdP);
    dist.mGetRandom();
    const std::vector<double> vdMass = mTableMass(dist);
    ASSERT_EQ(vdMass.size(), 6u);
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_NEAR(vdMass[i], vdP[i], 1e-15) << i;
    // Every alias names a slot.
    for (const double dAlias : dist.mGetAliases())
        EXPECT_TRUE(dAlias >= 0.0 && dAlias <= 5.0 && dAlias == std::floor(dAlias)) << dAlias;

    // Weights not summing to one: the table follows the normalised weights.
    const std::vector<double> vdW{3.5, 1.0, 0.25, 2.0, 7.0};
    const CmDistDiscrete weights({-2.0, 0.0, 3.0, 5.0, 8.0}, vdW);
    weights.mGetRandom();
    const std::vector<double> vdWMass = mTableMass(weights);
    ASSERT_EQ(vdWMass.size(), 5u);
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_NEAR(vdWMass[i], vdW[i] / 13.75, 1e-15) << i;
}

TEST(DistDiscrete, ADrawKeepsItsSlotAtOrBelowTheCutoffElseTakesTheAlias)
{
    const CmDistDiscrete dist({1.5, 2.0, 4.0, 7.0, 11.0, 20.0},
                              {0.05, 0.1, 0.15, 0.2, 0.22, 0.28});
    CmUniformGenerator::mInstance()->mSetBase(4096.0);
    qeltest::UniformStream stream(4096.0);
    // The first draw builds the table.
    dist.mGetRandom();
    stream.mNext();
    const std::vector<double>& rvdCut = dist.mGetCutoffs();
    const std::vector<double>& rvdAlias = dist.mGetAliases();
    for (int i = 0; i < 500; ++i)
    {
        const double dX = stream.mNext() * 6.0;
        const double dK = std::floor(dX);
        const std::size_t k = static_cast<std::size_t>(dK);
        const double dExpected = 1.0 + dK - dX <= rvdCut[k] ? dK : rvdAlias[k];
        EXPECT_EQ(dist.mGetRandom(), dExpected) << i;
    }
}

TEST(DistDiscrete, ProbabilitiesSummingToZeroDrawTheSlotOfTheUniform)
{
    // Every cutoff is 0 * 2 / 0, NaN: no comparison holds and each slot is
    // its own alias.
    const CmDistDiscrete dist({1.0, 2.0}, {0.0, 0.0});
    CmUniformGenerator::mInstance()->mSetBase(515.0);
    qeltest::UniformStream stream(515.0);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(dist.mGetRandom(), std::floor(stream.mNext() * 2.0)) << i;
    ASSERT_EQ(dist.mGetCutoffs().size(), 2u);
    EXPECT_TRUE(std::isnan(dist.mGetCutoffs()[0]));
    EXPECT_EQ(dist.mGetAliases(), std::vector<double>({0.0, 1.0}));
}

TEST(DistDiscrete, ACopyOfABuiltObjectCarriesItsTable)
{
    const CmDistDiscrete original({-2.0, 0.0, 3.0, 5.0, 8.0}, {3.5, 1.0, 0.25, 2.0, 7.0});
    const CmDistDiscrete unbuiltCopy(original);
    CmUniformGenerator::mInstance()->mSetBase(1.0);
    original.mGetRandom();
    ASSERT_EQ(original.mGetCutoffs().size(), 5u);
    EXPECT_TRUE(unbuiltCopy.mGetCutoffs().empty());

    const CmDistDiscrete copy(original);
    CmDistDiscrete assigned({0.0}, {1.0});
    assigned = original;
    EXPECT_EQ(copy.mGetCutoffs(), original.mGetCutoffs());
    EXPECT_EQ(copy.mGetAliases(), original.mGetAliases());
    EXPECT_EQ(assigned.mGetCutoffs(), original.mGetCutoffs());
    EXPECT_EQ(assigned.mGetAliases(), original.mGetAliases());

    // The same stream gives the same slots from each.
    CmAssertCapture capture;
    const CmDist* apDist[] = {&original, &copy, &assigned, &unbuiltCopy};
    std::vector<std::vector<double>> vvdDraws(4);
    for (std::size_t i = 0; i < 4; ++i)
    {
        CmUniformGenerator::mInstance()->mSetBase(777.0);
        for (int j = 0; j < 200; ++j)
            vvdDraws[i].push_back(apDist[i]->mGetRandom());
    }
    EXPECT_EQ(vvdDraws[1], vvdDraws[0]);
    EXPECT_EQ(vvdDraws[2], vvdDraws[0]);
    EXPECT_EQ(vvdDraws[3], vvdDraws[0]);
    EXPECT_EQ(unbuiltCopy.mGetCutoffs(), original.mGetCutoffs());
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistDiscrete, CopiesAssignedAndDestroyedInAnyOrder)
{
    auto pFirst = std::make_unique<CmDistDiscrete>(std::vector<double>{1.0, 2.0, 3.0},
                                                   std::vector<double>{0.2, 0.3, 0.5});
    pFirst->mGetRandom();
    auto pSecond = std::make_unique<CmDistDiscrete>(*pFirst);
    auto pThird =
        std::make_unique<CmDistDiscrete>(std::vector<double>{9.0}, std::vector<double>{1.0});
    *pThird = *pSecond;
    pFirst.reset();
    *pSecond = *pThird;
    pThird.reset();
    ASSERT_EQ(pSecond->mGetCutoffs().size(), 3u);
    const double dX = pSecond->mGetRandom();
    EXPECT_TRUE(dX == 0.0 || dX == 1.0 || dX == 2.0);
    EXPECT_EQ(pSecond->mGetUpperBound(), 3.0);
}

TEST(DistDiscrete, ReferenceVariatesAtBase12345)
{
    const int iRows = qeltest::mCheckReferenceVariates(
        20, [](double dCase, double, double) { return mMakeCase(static_cast<int>(dCase)); });
    EXPECT_EQ(iRows, 100);
}

TEST(DistDiscrete, ChiSquareOfSixUnequalValues)
{
    const std::vector<double> vdValues{1.5, 2.0, 4.0, 7.0, 11.0, 20.0};
    const CmDistDiscrete dist(vdValues, {0.05, 0.1, 0.15, 0.2, 0.22, 0.28});
    const qeltest::ChiSquareResult result = qeltest::mChiSquareOfVariates(
        dist, 100000, 11235813.0, 0, 5,
        [&](int k) { return dist.mPdf(vdValues[static_cast<std::size_t>(k)]); },
        "discrete, six values");
    EXPECT_GT(result.dPValue, 1e-4);
    EXPECT_EQ(result.iOutliers, 0);
    EXPECT_EQ(result.iDegreesOfFreedom, 5);
}

TEST(DistDiscrete, ChiSquareOfUnnormalisedWeights)
{
    const std::vector<double> vdW{3.5, 1.0, 0.25, 2.0, 7.0};
    const CmDistDiscrete dist({-2.0, 0.0, 3.0, 5.0, 8.0}, vdW);
    const qeltest::ChiSquareResult result = qeltest::mChiSquareOfVariates(
        dist, 100000, 2357.0, 0, 4,
        [&](int k) { return vdW[static_cast<std::size_t>(k)] / 13.75; }, "discrete, weights");
    EXPECT_GT(result.dPValue, 1e-4);
    EXPECT_EQ(result.iOutliers, 0);
}
