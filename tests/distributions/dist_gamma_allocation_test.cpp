// The gamma family's objects whose helper cannot be allocated: the gamma,
// chi-square, negative binomial and geometric draw the missing value and no
// uniform.  The failure is asked of the test program's nothrow operator new
// (support/failingnew.h).
#include "qel/distdiscrete.h"
#include "qel/distkernelbacked.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"

#include "support/failingnew.h"
#include "support/uniformstream.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{
// Makes the object with every nothrow allocation failing, then draws once
// with allocation restored: the missing value, no uniform, no report.
template <class Make>
void mExpectMissingWithoutHelper(Make make, const char* pszName)
{
    qeltest::g_bFailEveryNothrowNew = true;
    const auto pDist = make();
    qeltest::g_bFailEveryNothrowNew = false;
    CmUniformGenerator* pGen = CmUniformGenerator::mInstance();
    pGen->mSetBase(4242.0);
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(pDist->mGetRandom())) << pszName;
    EXPECT_EQ(qeltest::mCountDraws(4242.0, pGen->mGetBase()), 0) << pszName;
    EXPECT_EQ(capture.mGetCount(), 0) << pszName;
    // The rest of the object still works: it forwards to the flat functions.
    EXPECT_TRUE(pDist->mAreParamsValid()) << pszName;
}
} // namespace

TEST(DistGammaAllocation, EachHelperlessObjectDrawsTheMissingValue)
{
    mExpectMissingWithoutHelper([] { return std::make_unique<CmDistGamma>(0.5, 2.0, 0.0); },
                                "gamma(0.5)");
    mExpectMissingWithoutHelper([] { return std::make_unique<CmDistGamma>(1.0, 2.0, 0.0); },
                                "gamma(1)");
    mExpectMissingWithoutHelper([] { return std::make_unique<CmDistGamma>(2.5, 2.0, 0.0); },
                                "gamma(2.5)");
    mExpectMissingWithoutHelper([] { return std::make_unique<CmDistGamma>(9.0, 2.0, 0.0); },
                                "gamma(9)");
    mExpectMissingWithoutHelper([] { return std::make_unique<CmDistChiSq>(3.0, 0.0); },
                                "chi-square(3)");
    mExpectMissingWithoutHelper(
        [] { return std::make_unique<CmDistNegBinomial>(0.4, 3.0, true); }, "negbinomial");
    mExpectMissingWithoutHelper([] { return std::make_unique<CmDistGeometric>(0.4, false); },
                                "geometric");
}

TEST(DistGammaAllocation, AChiSquareWhoseGammaLostItsHelperPassesTheMissingValueOn)
{
    // The chi-square's own gamma is allocated; the gamma's helper is not.
    qeltest::g_iNothrowFailAt = 2;
    const CmDistChiSq dist(4.0, 0.0);
    EXPECT_EQ(qeltest::g_iNothrowFailAt, 0);
    CmUniformGenerator* pGen = CmUniformGenerator::mInstance();
    pGen->mSetBase(4242.0);
    EXPECT_TRUE(mIsNumericMissing(dist.mGetRandom()));
    EXPECT_EQ(qeltest::mCountDraws(4242.0, pGen->mGetBase()), 0);
}
