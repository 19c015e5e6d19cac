// The uniform generator: the base and its round trip, push and pop, the
// by-reference entries, the clock seeding, and two frequency tests of the
// stream at a fixed base.
#include "qel/uniformgenerator.h"

#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "qelmath/distributions/uniform_generator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <limits>
#include <vector>

namespace
{
CmUniformGenerator& Gen()
{
    return *CmUniformGenerator::mInstance();
}

// Number of states: 32362 * 31726 * 31656.
constexpr double kStates = 32501747400672.0;

std::vector<double> Draw(int iCount)
{
    std::vector<double> v;
    for (int i = 0; i < iCount; ++i)
        v.push_back(Gen().mGetRandom());
    return v;
}
} // namespace

TEST(UniformGenerator, InstanceIsOneSingletonOfKindOne)
{
    CmUniformGenerator* p = CmUniformGenerator::mInstance();
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p, CmUniformGenerator::mInstance());
    EXPECT_EQ(p->mGetSingletonKind(), 1);
}

TEST(UniformGenerator, SetBaseZeroGivesSeedsOneAndTheKnownFirstVariate)
{
    Gen().mSetBase(0.0);
    EXPECT_EQ(Gen().mGetBase(), 0.0); // seeds 1, 1, 1
    // By hand: the seeds become 157, 146 and 142, so the variate is the
    // fraction of 146/31727 + 157/32363 + 142/31657
    //   = 0.0046017587543730... + 0.0048512189846429... + 0.0044855798085731...
    //   = 453070066951 / 32504802982957 = 0.013938557547589346 (nearest double).
    EXPECT_EQ(Gen().mGetRandom(), 0.013938557547589346);
    // The state is now (157, 146, 142): ((156 * 31726) + 145) * 31656 + 141.
    EXPECT_EQ(Gen().mGetBase(), 156678238197.0);
}

TEST(UniformGenerator, SecondVariateFromBaseZeroFollowsTheRecurrence)
{
    Gen().mSetBase(0.0);
    Gen().mGetRandom();
    // 157^2 mod 32363 = 24649, 146^2 mod 31727 = 21316, 142^2 mod 31657 = 20164.
    // The exact sum is 67299585313631 / 32504802982957 = 2.07045049154482455...;
    // added in doubles in the generator's order (second stream, first, third)
    // it is 2.0704504915448245, whose fraction is 0.07045049154482452: three
    // units in the 17th digit below the exact fraction, since a sum near 2
    // keeps two bits fewer of it.
    EXPECT_EQ(Gen().mGetRandom(), 0.07045049154482452);
    EXPECT_EQ(Gen().mGetBase(), ((24648.0 * 31726.0) + 21315.0) * 31656.0 + 20163.0);
}

TEST(UniformGenerator, NegativeBaseCountsAsItsAbsoluteValue)
{
    Gen().mSetBase(5.0);
    const std::vector<double> vdPositive = Draw(5);
    Gen().mSetBase(-5.0);
    EXPECT_EQ(Gen().mGetBase(), 5.0);
    EXPECT_EQ(Draw(5), vdPositive);
}

TEST(UniformGenerator, BaseEqualToTheNumberOfStatesIsBaseZero)
{
    Gen().mSetBase(0.0);
    const std::vector<double> vdZero = Draw(5);
    Gen().mSetBase(kStates);
    EXPECT_EQ(Gen().mGetBase(), 0.0);
    EXPECT_EQ(Draw(5), vdZero);
}

TEST(UniformGenerator, GetBaseReturnsEveryWholeBaseThatWasSet)
{
    const double adBases[] = {0.0,          1.0,          31655.0,        31656.0,
                              1004318255.0, 1004318256.0, 123456789012.0, 7654321.0 * 3250000.0,
                              kStates - 1.0};
    for (double dBase : adBases)
    {
        Gen().mSetBase(dBase);
        EXPECT_EQ(Gen().mGetBase(), dBase) << dBase;
    }
    // Beyond the range the base wraps round.
    Gen().mSetBase(kStates + 12345.0);
    EXPECT_EQ(Gen().mGetBase(), 12345.0);
}

TEST(UniformGenerator, FractionalBaseKeepsItsWholePart)
{
    Gen().mSetBase(41.75);
    EXPECT_EQ(Gen().mGetBase(), 41.0);
    // Just below the number of states: the leading seed stays within its
    // stream and the base is the largest one.
    Gen().mSetBase(std::nextafter(kStates, 0.0));
    EXPECT_EQ(Gen().mGetBase(), kStates - 1.0);
}

TEST(UniformGenerator, BaseThatIsNotFiniteCountsAsZero)
{
    Gen().mSetBase(std::numeric_limits<double>::infinity());
    EXPECT_EQ(Gen().mGetBase(), 0.0);
    Gen().mSetBase(12.0);
    Gen().mSetBase(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(Gen().mGetBase(), 0.0);
    EXPECT_EQ(Gen().mGetRandom(), 0.013938557547589346);
}

TEST(UniformGenerator, SavedBaseResumesTheStream)
{
    Gen().mSetBase(987654321.0);
    Draw(17);
    const double dSaved = Gen().mGetBase();
    EXPECT_EQ(dSaved, std::floor(dSaved));
    EXPECT_GE(dSaved, 0.0);
    EXPECT_LT(dSaved, kStates);
    const std::vector<double> vdNext = Draw(50);
    Gen().mSetBase(dSaved);
    EXPECT_EQ(Draw(50), vdNext);
}

TEST(UniformGenerator, PushDrawPopRestoresTheStream)
{
    Gen().mSetBase(2024.0);
    Draw(3);
    const double dBefore = Gen().mGetBase();
    const std::vector<double> vdWithoutPush = Draw(10);

    Gen().mSetBase(dBefore);
    CmAssertCapture capture;
    Gen().mPushBase(77.0);
    EXPECT_EQ(Gen().mGetBase(), 77.0);
    Draw(25);
    Gen().mPopBase();
    EXPECT_EQ(capture.mGetCount(), 0);
    EXPECT_EQ(Gen().mGetBase(), dBefore);
    EXPECT_EQ(Draw(10), vdWithoutPush);
}

TEST(UniformGenerator, SecondPushAssertsAndOverwritesTheParkedState)
{
    Gen().mSetBase(10.0);
    CmAssertCapture capture;
    Gen().mPushBase(20.0);
    EXPECT_EQ(capture.mGetCount(), 0);
    Gen().mPushBase(30.0);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "! m_bSeedsSaved");
    EXPECT_EQ(Gen().mGetBase(), 30.0);
    // One level only: the state parked by the second push (base 20) returns.
    Gen().mPopBase();
    EXPECT_EQ(Gen().mGetBase(), 20.0);
    EXPECT_EQ(capture.mGetCount(), 1);
}

TEST(UniformGenerator, PopWithoutPushAssertsAndLoadsTheSavedFields)
{
    Gen().mSetBase(500.0);
    Gen().mPushBase(600.0);
    Gen().mPopBase(); // saved fields hold base 500, flag now clear
    Gen().mSetBase(700.0);
    CmAssertCapture capture;
    Gen().mPopBase();
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "m_bSeedsSaved");
    EXPECT_EQ(Gen().mGetBase(), 500.0);
}

TEST(UniformGenerator, VectorFormDrawsTheSameStreamAndEmptiesFirst)
{
    Gen().mSetBase(31.0);
    const std::vector<double> vdSingles = Draw(6);
    Gen().mSetBase(31.0);
    std::vector<double> v = {9.0, 9.0, 9.0, 9.0, 9.0, 9.0, 9.0, 9.0};
    Gen().mGetRandom(6, v);
    EXPECT_EQ(v, vdSingles);

    Gen().mGetRandom(0, v);
    EXPECT_TRUE(v.empty());
    v.assign(3, 1.0);
    Gen().mGetRandom(-4, v);
    EXPECT_TRUE(v.empty());
}

TEST(UniformGenerator, VariatesLieInTheHalfOpenUnitInterval)
{
    Gen().mSetBase(1.0);
    for (int i = 0; i < 200000; ++i)
    {
        const double u = Gen().mGetRandom();
        ASSERT_GE(u, 0.0);
        ASSERT_LT(u, 1.0);
    }
}

TEST(UniformGenerator, ClockBaseReversesSevenDigitsAndSpreadsThem)
{
    EXPECT_EQ(mUniformBaseFromTimeOfDay(1234567), 7654321.0 * 3250000.0);
    // 23:59:59.99 is 8639999 hundredths.
    EXPECT_EQ(mUniformBaseFromTimeOfDay(8639999), 9999368.0 * 3250000.0);
    // One second after midnight: 0000100 reversed is 0010000.
    EXPECT_EQ(mUniformBaseFromTimeOfDay(100), 10000.0 * 3250000.0);
    EXPECT_EQ(mUniformBaseFromTimeOfDay(0), 0.0);
    // The largest spread value is still a base of its own.
    EXPECT_LT(mUniformBaseFromTimeOfDay(9999999), kStates);
}

TEST(UniformGenerator, ResetGivesAClockBaseAndLeavesTheParkedStateAlone)
{
    Gen().mSetBase(4242.0);
    Gen().mPushBase(1.0);
    Gen().mReset();
    const double dBase = Gen().mGetBase();
    EXPECT_EQ(std::fmod(dBase, 3250000.0), 0.0);
    EXPECT_LE(dBase / 3250000.0, 9999999.0);
    CmAssertCapture capture;
    Gen().mPopBase();
    EXPECT_EQ(capture.mGetCount(), 0);
    EXPECT_EQ(Gen().mGetBase(), 4242.0);
}

TEST(UniformGenerator, ByReferenceEntriesApplyToTheInstance)
{
    double dBase = 99.0;
    SETBAS(&dBase);
    EXPECT_EQ(Gen().mGetBase(), 99.0);
    const std::vector<double> vdDirect = Draw(3);

    SETBAS(&dBase);
    double dIgnored = -7.0;
    EXPECT_EQ(XRND(&dIgnored), vdDirect[0]);
    EXPECT_EQ(XRND(nullptr), vdDirect[1]);
    double dRead = -1.0;
    GTBASE(&dRead);
    EXPECT_EQ(dRead, Gen().mGetBase());
    EXPECT_EQ(XRND(&dIgnored), vdDirect[2]);
    EXPECT_EQ(dIgnored, -7.0);

    INIT_RANDOM();
    GTBASE(&dRead);
    EXPECT_EQ(std::fmod(dRead, 3250000.0), 0.0);

    // A null address is passed over.
    SETBAS(&dBase);
    SETBAS(nullptr);
    GTBASE(nullptr);
    EXPECT_EQ(Gen().mGetBase(), 99.0);
}

// Frequencies of 10^6 draws in 100 equal cells at base 12345.  Under
// uniformity the statistic is chi-square with 99 degrees of freedom, whose
// 0.001 and 0.999 quantiles are 61.137 and 148.230; the test asks for the
// statistic to lie between them.  Fixed base: the outcome is deterministic.
TEST(UniformGenerator, ChiSquareOfAMillionDrawsInOneHundredCells)
{
    Gen().mSetBase(12345.0);
    const int iDraws = 1000000;
    std::vector<long> vlCount(100, 0);
    for (int i = 0; i < iDraws; ++i)
        ++vlCount[static_cast<std::size_t>(Gen().mGetRandom() * 100.0)];
    const double dExpected = iDraws / 100.0;
    double dChi2 = 0.0;
    for (long lCount : vlCount)
        dChi2 += (lCount - dExpected) * (lCount - dExpected) / dExpected;
    std::cout << "[ chi-square, 10^6 draws, 100 cells, 99 df ] " << dChi2 << "\n";
    RecordProperty("chi2_cells", std::to_string(dChi2));
    EXPECT_GT(dChi2, 61.137);
    EXPECT_LT(dChi2, 148.230);
}

// Successive pairs (u1, u2), (u3, u4), ... of 10^6 draws at base 777 in a
// 10 by 10 grid: 500000 pairs in 100 cells, chi-square with 99 degrees of
// freedom, between the same 0.001 and 0.999 quantiles 61.137 and 148.230.
TEST(UniformGenerator, SerialPairsFillTheUnitSquareEvenly)
{
    Gen().mSetBase(777.0);
    const int iPairs = 500000;
    std::vector<long> vlCount(100, 0);
    for (int i = 0; i < iPairs; ++i)
    {
        const std::size_t uRow = static_cast<std::size_t>(Gen().mGetRandom() * 10.0);
        const std::size_t uCol = static_cast<std::size_t>(Gen().mGetRandom() * 10.0);
        ++vlCount[uRow * 10 + uCol];
    }
    const double dExpected = iPairs / 100.0;
    double dChi2 = 0.0;
    for (long lCount : vlCount)
        dChi2 += (lCount - dExpected) * (lCount - dExpected) / dExpected;
    std::cout << "[ serial pairs chi-square, 5*10^5 pairs, 100 cells, 99 df ] " << dChi2 << "\n";
    RecordProperty("chi2_pairs", std::to_string(dChi2));
    EXPECT_GT(dChi2, 61.137);
    EXPECT_LT(dChi2, 148.230);
}
