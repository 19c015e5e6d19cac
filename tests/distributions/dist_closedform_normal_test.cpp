// The normal and lognormal distribution objects: the pairs of the polar
// method (a spare kept by the object, not by the generator) and the helper
// normal that lognormal copies share.  The expected variates are worked out here from the replayed
// uniform stream by the polar method of Marsaglia and Bray (SIAM Review 6,
// 1964), independently of the library.  (The failed allocation of the helper
// is in dist_closedform_allocation_test.cpp.)
#include "qel/distclosedform.h"
#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"

#include "support/uniformstream.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace
{
// The standard normal pairs of the first accepted rounds of the polar method
// from the stream at dBase; the uniforms consumed up to each round are kept.
struct PolarRound
{
    double dFirst;
    double dSecond;
    int iUsed;
};

std::vector<PolarRound> mPolarRounds(double dBase, int iRounds)
{
    qeltest::UniformStream stream(dBase);
    std::vector<PolarRound> vRounds;
    int iUsed = 0;
    while (static_cast<int>(vRounds.size()) < iRounds)
    {
        const double dX = 2.0 * stream.mNext() - 1.0;
        const double dY = 2.0 * stream.mNext() - 1.0;
        iUsed += 2;
        const double dS = dX * dX + dY * dY;
        if (dS > 1.0)
            continue;
        const double dF = std::sqrt(-2.0 * std::log(dS) / dS);
        vRounds.push_back({dX * dF, dY * dF, iUsed});
    }
    return vRounds;
}

double mRel(double dA, double dB) { return std::fabs(dA - dB) / std::max(std::fabs(dB), 1.0); }

int mUsedSince(double dBase) { return qeltest::mCountDraws(dBase, CmUniformGenerator::mInstance()->mGetBase()); }

const double kBase = 12345.0;
const double kTol = 1e-14;
} // namespace

TEST(DistNormal, FirstCallUsesAPairOfUniformsAndSecondNone)
{
    CmUniformGenerator* pGen = CmUniformGenerator::mInstance();
    CmDistNormal normal(1.5, 2.0);
    const std::vector<PolarRound> vRounds = mPolarRounds(kBase, 1);
    pGen->mSetBase(kBase);
    const double dFirst = normal.mGetRandom();
    const int iAfterFirst = mUsedSince(kBase);
    EXPECT_GE(iAfterFirst, 2);
    EXPECT_EQ(iAfterFirst, vRounds[0].iUsed);
    const double dBaseBetween = pGen->mGetBase();
    const double dSecond = normal.mGetRandom();
    EXPECT_EQ(pGen->mGetBase(), dBaseBetween); // no uniform for the spare
    EXPECT_LE(mRel(dFirst, vRounds[0].dFirst * 2.0 + 1.5), kTol);
    EXPECT_LE(mRel(dSecond, vRounds[0].dSecond * 2.0 + 1.5), kTol);
}

TEST(DistNormal, SpareSurvivesSetBase)
{
    CmUniformGenerator* pGen = CmUniformGenerator::mInstance();
    CmDistNormal normal;
    const std::vector<PolarRound> vFrom12345 = mPolarRounds(kBase, 1);
    const std::vector<PolarRound> vFrom999 = mPolarRounds(999.0, 1);
    pGen->mSetBase(kBase);
    normal.mGetRandom();
    pGen->mSetBase(999.0);
    // The spare of the round drawn at base 12345, without a uniform.
    EXPECT_LE(mRel(normal.mGetRandom(), vFrom12345[0].dSecond), kTol);
    EXPECT_EQ(pGen->mGetBase(), 999.0);
    // Then a new round from base 999.
    EXPECT_LE(mRel(normal.mGetRandom(), vFrom999[0].dFirst), kTol);
    EXPECT_EQ(mUsedSince(999.0), vFrom999[0].iUsed);
}

TEST(DistNormal, TwoObjectsDoNotSharePairs)
{
    CmUniformGenerator* pGen = CmUniformGenerator::mInstance();
    CmDistNormal a;
    CmDistNormal b(10.0, 1.0);
    const std::vector<PolarRound> vRounds = mPolarRounds(kBase, 2);
    pGen->mSetBase(kBase);
    EXPECT_LE(mRel(a.mGetRandom(), vRounds[0].dFirst), kTol);
    // b has no spare of its own: it draws the next round.
    EXPECT_LE(mRel(b.mGetRandom(), vRounds[1].dFirst + 10.0), kTol);
    EXPECT_EQ(mUsedSince(kBase), vRounds[1].iUsed);
    EXPECT_LE(mRel(a.mGetRandom(), vRounds[0].dSecond), kTol);
    EXPECT_LE(mRel(b.mGetRandom(), vRounds[1].dSecond + 10.0), kTol);
    EXPECT_EQ(mUsedSince(kBase), vRounds[1].iUsed);
}

TEST(DistNormal, CopyAndAssignmentCarryTheSpare)
{
    CmUniformGenerator* pGen = CmUniformGenerator::mInstance();
    const std::vector<PolarRound> vRounds = mPolarRounds(kBase, 2);
    CmDistNormal a(0.0, 3.0);
    pGen->mSetBase(kBase);
    a.mGetRandom();
    const CmDistNormal copy(a);
    CmDistNormal assigned(7.0, 7.0);
    assigned = a;
    const double dBase = pGen->mGetBase();
    // Each of the three holds the same spare, now independently.
    EXPECT_LE(mRel(copy.mGetRandom(), 3.0 * vRounds[0].dSecond), kTol);
    EXPECT_LE(mRel(assigned.mGetRandom(), 3.0 * vRounds[0].dSecond), kTol);
    EXPECT_LE(mRel(a.mGetRandom(), 3.0 * vRounds[0].dSecond), kTol);
    EXPECT_EQ(pGen->mGetBase(), dBase);
    // Then the copy starts a new round.
    EXPECT_LE(mRel(copy.mGetRandom(), 3.0 * vRounds[1].dFirst), kTol);
}

TEST(DistNormal, RejectedRoundsAreSkipped)
{
    // At base 12345 the seventeenth and eighteenth rounds of two uniforms
    // fall outside the unit disc; the seventeenth accepted pair is drawn
    // from the nineteenth round, after 38 uniforms.
    const std::vector<PolarRound> vRounds = mPolarRounds(kBase, 17);
    ASSERT_EQ(vRounds[15].iUsed, 32);
    ASSERT_EQ(vRounds[16].iUsed, 38);
    CmUniformGenerator* pGen = CmUniformGenerator::mInstance();
    CmDistNormal normal;
    pGen->mSetBase(kBase);
    for (int i = 0; i < 32; ++i)
        normal.mGetRandom();
    EXPECT_EQ(mUsedSince(kBase), 32);
    EXPECT_LE(mRel(normal.mGetRandom(), vRounds[16].dFirst), kTol);
    EXPECT_EQ(mUsedSince(kBase), 38);
}

TEST(DistLogNormal, VariateIsTheExponentialOfTheHelperNormalPlusThreshold)
{
    const std::vector<PolarRound> vRounds = mPolarRounds(kBase, 1);
    CmDistLogNormal logNormal(0.5, 0.75, 2.0);
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    EXPECT_LE(mRel(logNormal.mGetRandom(), std::exp(vRounds[0].dFirst * 0.75 + 0.5) + 2.0), kTol);
    EXPECT_EQ(mUsedSince(kBase), vRounds[0].iUsed);
    EXPECT_LE(mRel(logNormal.mGetRandom(), std::exp(vRounds[0].dSecond * 0.75 + 0.5) + 2.0), kTol);
    EXPECT_EQ(mUsedSince(kBase), vRounds[0].iUsed);
}

TEST(DistLogNormal, CopiesShareTheHelperAndItsSpare)
{
    const std::vector<PolarRound> vRounds = mPolarRounds(kBase, 2);
    CmDistLogNormal a(0.0, 1.0, 0.0);
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    EXPECT_LE(mRel(a.mGetRandom(), std::exp(vRounds[0].dFirst)), kTol);
    CmDistLogNormal copy(a);
    // The copy takes the spare that a's first call left in the shared helper,
    EXPECT_LE(mRel(copy.mGetRandom(), std::exp(vRounds[0].dSecond)), kTol);
    // so a goes on with the next round.
    EXPECT_LE(mRel(a.mGetRandom(), std::exp(vRounds[1].dFirst)), kTol);
    CmDistLogNormal assigned(5.0, 5.0, 5.0);
    assigned = a;
    EXPECT_LE(mRel(assigned.mGetRandom(), std::exp(vRounds[1].dSecond)), kTol);
    EXPECT_EQ(mUsedSince(kBase), vRounds[1].iUsed);
    // The helper carries the location and scale it was made with: an
    // assignment takes the helper with the parameters.
    std::vector<double> vdParameters;
    assigned.mGetParameters(vdParameters);
    EXPECT_EQ(vdParameters, (std::vector<double>{0.0, 1.0, 0.0}));
}

TEST(DistLogNormal, CopiesDestroyedInEveryOrderFreeTheHelperOnce)
{
    // Run under the sanitizers: a double free or a leak fails the build's
    // test run.  Every order of destroying an original, a copy and an
    // assigned object, each having drawn.
    const int aiOrders[6][3] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
    CmUniformGenerator::mInstance()->mSetBase(kBase);
    for (const auto& riOrder : aiOrders)
    {
        std::vector<CmDistLogNormal*> vpObjects(3, nullptr);
        vpObjects[0] = new CmDistLogNormal(0.0, 1.0, 1.0);
        vpObjects[1] = new CmDistLogNormal(*vpObjects[0]);
        vpObjects[2] = new CmDistLogNormal(3.0, 0.5, 0.0);
        *vpObjects[2] = *vpObjects[1];
        for (CmDistLogNormal* p : vpObjects)
            EXPECT_GT(p->mGetRandom(), 1.0);
        for (int i : riOrder)
        {
            delete vpObjects[static_cast<std::size_t>(i)];
            vpObjects[static_cast<std::size_t>(i)] = nullptr;
            // The survivors still draw through the shared helper.
            for (CmDistLogNormal* p : vpObjects)
            {
                if (p == nullptr)
                    continue;
                EXPECT_GT(p->mGetRandom(), 1.0);
            }
        }
    }
    // Self-assignment and assignment over an object with its own helper.
    CmDistLogNormal a(0.0, 1.0, 0.0);
    CmDistLogNormal& rA = a;
    a = rA;
    EXPECT_GT(a.mGetRandom(), 0.0);
    CmDistLogNormal b(1.0, 1.0, 0.0);
    b = a;
    a = CmDistLogNormal(2.0, 1.0, 0.0);
    EXPECT_GT(b.mGetRandom(), 0.0);
    EXPECT_GT(a.mGetRandom(), 0.0);
}
