// The gamma distribution object: parameters, forwarding to the flat gamma
// functions, bounds, the choice of the helper that draws standard variates,
// the variates themselves (against an independent replay of the uniform
// stream, and against the distribution function), and the sharing of the
// helper between copies.
#include "qel/distkernelbacked.h"

#include "qelmath/distributions/dist_gamma_helpers.h"

#include "dist_gamma_variates.h"
#include "dist_variates_support.h"
#include "support/reftable.h"
#include "support/uniformstream.h"

#include "qel/distclosedform.h"
#include "qel/kernelbacked.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace
{
const double kNaN = std::numeric_limits<double>::quiet_NaN();

CmUniformGenerator* mGenerator() { return CmUniformGenerator::mInstance(); }

// The uniforms one call consumed, from the bases before and after it.
int mDrawsOf(double dBefore) { return qeltest::mCountDraws(dBefore, mGenerator()->mGetBase()); }
} // namespace

TEST(DistGamma, ConstructorsKeepTheParametersInOrder)
{
    std::vector<double> vd;
    CmDistGamma(2.5, 3.0, -1.0).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{2.5, 3.0, -1.0}));
    CmDistGamma(2.5, 3.0).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{2.5, 3.0, 0.0}));
    CmDistGamma(std::vector<double>{0.7, 4.0, 9.0}).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{0.7, 4.0, 9.0}));
    // The threshold defaults to 0; shape and scale have no default.
    CmDistGamma(std::vector<double>{0.7, 4.0}).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{0.7, 4.0, 0.0}));
    CmDistGamma(std::vector<double>{0.7}).mGetParameters(vd);
    ASSERT_EQ(vd.size(), 3u);
    EXPECT_EQ(vd[0], 0.7);
    EXPECT_TRUE(std::isnan(vd[1]));
    EXPECT_EQ(vd[2], 0.0);
    CmDistGamma(std::vector<double>{}).mGetParameters(vd);
    EXPECT_TRUE(std::isnan(vd[0]));
    EXPECT_TRUE(std::isnan(vd[1]));
    // The parameters that the quantile does not take are all of them.
    CmDistGamma(2.5, 3.0, -1.0).mGetNonInvCDFParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{2.5, 3.0, -1.0}));
}

TEST(DistGamma, ValidWhenShapeAndScaleArePositive)
{
    EXPECT_TRUE(CmDistGamma(1.0, 1.0).mAreParamsValid());
    EXPECT_TRUE(CmDistGamma(1e-300, 1e300, -5.0).mAreParamsValid());
    EXPECT_FALSE(CmDistGamma(0.0, 1.0).mAreParamsValid());
    EXPECT_FALSE(CmDistGamma(-1.0, 1.0).mAreParamsValid());
    EXPECT_FALSE(CmDistGamma(1.0, 0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistGamma(1.0, -2.0).mAreParamsValid());
    EXPECT_FALSE(CmDistGamma(kNaN, 1.0).mAreParamsValid());
    EXPECT_FALSE(CmDistGamma(1.0, kNaN).mAreParamsValid());
    EXPECT_FALSE(CmDistGamma(std::vector<double>{2.0}).mAreParamsValid());
    // The threshold is free.
    EXPECT_TRUE(CmDistGamma(1.0, 1.0, kNaN).mAreParamsValid());
}

TEST(DistGamma, ForwardsToTheFlatFunctions)
{
    const CmDistGamma dist(2.5, 1.5, 0.75);
    for (double x : {0.75, 0.8, 1.0, 2.5, 7.0, 30.0})
    {
        EXPECT_EQ(dist.mPdf(x), mGammaPdf(x, 2.5, 1.5, 0.75)) << x;
        EXPECT_EQ(dist.mCdf(x, false), mGammaCdf(x, 2.5, 1.5, 0.75, false)) << x;
        EXPECT_EQ(dist.mCdf(x, true), mGammaCdf(x, 2.5, 1.5, 0.75, true)) << x;
    }
    for (double p : {0.0, 1e-6, 0.01, 0.5, 0.99, 0.999999})
        EXPECT_EQ(dist.mInvCdf(p), mGammaInvCdf(p, 2.5, 1.5, 0.75)) << p;
    // A known value: shape 1 is the exponential, P(X <= t + 1.5) = 1 - 1/e.
    EXPECT_NEAR(CmDistGamma(1.0, 1.5, 0.75).mCdf(2.25, false), 1.0 - std::exp(-1.0), 1e-14);
}

TEST(DistGamma, BoundsAndReferencePoints)
{
    const CmDistGamma dist(2.0, 3.0, -4.5);
    EXPECT_TRUE(dist.mIsContinuous());
    EXPECT_EQ(dist.mGetLowerBound(), -4.5);
    EXPECT_FALSE(dist.mHasUpperBound());
    std::vector<double> vd{1.0, 2.0};
    dist.mGetDRefPoints(vd);
    EXPECT_EQ(vd, (std::vector<double>{-4.5}));
    CmAssertCapture capture;
    EXPECT_EQ(dist.mGetUpperBound(), 0.0);
    EXPECT_TRUE(capture.mHas("false"));
    EXPECT_EQ(capture.mGetCount(), 1);
}

TEST(DistGamma, LowerBoundIsShownOnlyWhenNearTheBulk)
{
    // Shape 1 from 0: q1 = -log(0.99) = 0.01005, q99 = log(100) = 4.605;
    // 0.2 (q99 - q1) = 0.919 >= q1 - 0: shown.  The test does not depend on
    // the scale or the threshold, which move q1, q99 and the bound together.
    EXPECT_TRUE(CmDistGamma(1.0, 1.0, 0.0).mHasLowerBound());
    EXPECT_TRUE(CmDistGamma(1.0, 250.0, -3.0).mHasLowerBound());
    // Shape 100: q1 = 78.22 and q99 = 124.72 (mpmath), 0.2 (q99 - q1) = 9.30
    // < 78.22: not shown.
    EXPECT_FALSE(CmDistGamma(100.0, 1.0, 0.0).mHasLowerBound());
    EXPECT_FALSE(CmDistGamma(100.0, 0.01, 50.0).mHasLowerBound());
    // Shape 4: q1 = 0.823 and q99 = 10.05 (mpmath): 0.2 * 9.22 = 1.84 >=
    // 0.823, shown.  Shape 25: q1 = 14.85, q99 = 38.08: 4.64 < 14.85, not
    // shown.
    EXPECT_TRUE(CmDistGamma(4.0, 1.0).mHasLowerBound());
    EXPECT_FALSE(CmDistGamma(25.0, 1.0).mHasLowerBound());
}

TEST(DistGamma, HelperIsChosenByTheShape)
{
    auto mIsExponential = [](double a) {
        return dynamic_cast<const CmDistExponential*>(CmDistGamma(a, 1.0).mGetGenerator()) !=
               nullptr;
    };
    auto mIsA = [](double a) {
        return dynamic_cast<const CmDistGammaA*>(CmDistGamma(a, 1.0).mGetGenerator()) != nullptr;
    };
    auto mIsB = [](double a) {
        return dynamic_cast<const CmDistGammaB*>(CmDistGamma(a, 1.0).mGetGenerator()) != nullptr;
    };
    auto mIsC = [](double a) {
        return dynamic_cast<const CmDistGammaC*>(CmDistGamma(a, 1.0).mGetGenerator()) != nullptr;
    };
    EXPECT_TRUE(mIsExponential(1.0));
    // Within the fuzz of 1: eps times the larger magnitude.
    EXPECT_TRUE(mIsExponential(1.0 + DBL_EPSILON));
    EXPECT_TRUE(mIsExponential(1.0 - DBL_EPSILON));
    EXPECT_TRUE(mIsB(1.0 + 2.0 * DBL_EPSILON));
    EXPECT_TRUE(mIsA(1.0 - 4.0 * DBL_EPSILON));
    EXPECT_TRUE(mIsA(0.5));
    EXPECT_TRUE(mIsA(1e-300));
    EXPECT_TRUE(mIsA(kNaN));
    EXPECT_TRUE(mIsA(-2.0));
    EXPECT_TRUE(mIsB(1.5));
    EXPECT_TRUE(mIsB(3.9));
    EXPECT_TRUE(mIsB(std::nextafter(4.0, 0.0)));
    EXPECT_TRUE(mIsC(4.0));
    EXPECT_TRUE(mIsC(10.0));
    EXPECT_TRUE(mIsC(100.0));
    // An infinite shape is within the fuzz of 1 (the tolerance, eps times
    // the larger magnitude, is infinite too): the exponential.
    EXPECT_TRUE(mIsExponential(std::numeric_limits<double>::infinity()));
    EXPECT_TRUE(mIsExponential(-std::numeric_limits<double>::infinity()));
}

TEST(DistGamma, ShapeOneUsesOneUniformPerVariate)
{
    // Shape 1 + eps is within the fuzz of 1: the exponential helper, one U
    // a variate, x = -log(1 - U) * scale + threshold.
    const double kScale = 2.5, kThreshold = -1.0;
    const CmDistGamma dist(1.0 + DBL_EPSILON, kScale, kThreshold);
    mGenerator()->mSetBase(777.0);
    qeltest::UniformStream stream(777.0);
    for (int i = 0; i < 50; ++i)
    {
        const double dBefore = mGenerator()->mGetBase();
        const double x = dist.mGetRandom();
        EXPECT_EQ(mDrawsOf(dBefore), 1);
        const double dU = stream.mNext();
        EXPECT_EQ(x, (0.0 - 1.0 * std::log(1.0 - dU)) * kScale + kThreshold) << i;
    }
}

TEST(DistGamma, HelpersOfferOnlyVariates)
{
    const CmDistGammaA a(0.5);
    const CmDistGammaB b(2.0);
    const CmDistGammaC c(8.0);
    for (const CmDist* p : {static_cast<const CmDist*>(&a), static_cast<const CmDist*>(&b),
                            static_cast<const CmDist*>(&c)})
    {
        CmAssertCapture capture;
        EXPECT_EQ(p->mPdf(1.0), 0.0);
        EXPECT_EQ(p->mCdf(1.0, false), 0.0);
        EXPECT_EQ(p->mCdf(1.0, true), 0.0);
        EXPECT_EQ(p->mInvCdf(0.5), 0.0);
        std::vector<double> vd{1.0};
        p->mGetParameters(vd);
        EXPECT_TRUE(vd.empty());
        EXPECT_EQ(capture.mGetCount(), 5);
        for (const std::string& rs : capture.mGetTexts())
            EXPECT_EQ(rs, "false");
    }
}

TEST(DistGamma, VariatesReplayTheReferenceAlgorithms)
{
    const std::vector<qeltest::VariateCase> vCases = qeltest::mLoadVariateCases(1);
    ASSERT_EQ(vCases.size(), 7u);
    double dWorst = 0.0;
    for (const qeltest::VariateCase& rCase : vCases)
    {
        const CmDistGamma dist(rCase.dP1, rCase.dP2, rCase.dP3);
        mGenerator()->mSetBase(12345.0);
        for (std::size_t i = 0; i < rCase.vdVariates.size(); ++i)
        {
            const double x = dist.mGetRandom();
            const double dError = qeltest::mRelativeError(x, rCase.vdVariates[i]);
            dWorst = std::fmax(dWorst, dError);
            EXPECT_LE(dError, 1e-13) << "shape " << rCase.dP1 << " index " << i;
            EXPECT_EQ(qeltest::mCountDraws(12345.0, mGenerator()->mGetBase()), rCase.viCounts[i])
                << "shape " << rCase.dP1 << " index " << i;
        }
    }
    std::printf("gamma variates: worst relative error %.3g\n", dWorst);
}

TEST(DistGamma, OverflowInARoundAbandonsTheRound)
{
    // Only an invalid shape reaches an overflow: with shape -0.01 the point
    // p = U b of the small-shape scheme is raised to the power -100, which
    // overflows for p below exp(-7.09).  The reference names the base whose
    // first round does so, the rounds abandoned, and the variate that the
    // rounds after them give.
    const std::vector<qeltest::VariateCase> vCases = qeltest::mLoadVariateCases(5);
    ASSERT_EQ(vCases.size(), 1u);
    const qeltest::VariateCase& rCase = vCases[0];
    ASSERT_EQ(rCase.dP1, -0.01);
    ASSERT_GE(rCase.dP3, 1.0);
    const CmDistGamma dist(rCase.dP1, 1.0, 0.0);
    ASSERT_NE(dynamic_cast<const CmDistGammaA*>(dist.mGetGenerator()), nullptr);
    // The first round overflows on its first uniform.
    qeltest::UniformStream stream(rCase.dP2);
    const double dB = (-0.01 + CmQELConst::mInstance()->mGetE()) / CmQELConst::mInstance()->mGetE();
    EXPECT_GT(std::log(stream.mNext() * dB) * (1.0 / -0.01), 709.0);
    CmAssertCapture capture;
    mGenerator()->mSetBase(rCase.dP2);
    const double x = dist.mGetRandom();
    EXPECT_LE(qeltest::mRelativeError(x, rCase.vdVariates[0]), 1e-13);
    EXPECT_EQ(qeltest::mCountDraws(rCase.dP2, mGenerator()->mGetBase()), rCase.viCounts[0]);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistGamma, OtherExceptionsPassThrough)
{
    // Shape -e gives b = 0, so p = 0 and the power 0^(-1/e) is a domain
    // error: CmInvalidArgument reaches the caller after one uniform.
    const CmDistGamma dist(-CmQELConst::mInstance()->mGetE(), 1.0);
    mGenerator()->mSetBase(4242.0);
    EXPECT_THROW(dist.mGetRandom(), CmInvalidArgument);
    EXPECT_EQ(qeltest::mCountDraws(4242.0, mGenerator()->mGetBase()), 1);
}

TEST(DistGamma, InfiniteShapeDrawsTheExponential)
{
    // Valid by the rule (shape > 0), and sent to the exponential helper by
    // the fuzzy comparison with 1: one U, -log(1 - U) * scale + threshold.
    const CmDistGamma dist(std::numeric_limits<double>::infinity(), 2.0, 1.0);
    EXPECT_TRUE(dist.mAreParamsValid());
    mGenerator()->mSetBase(99.0);
    qeltest::UniformStream stream(99.0);
    EXPECT_EQ(dist.mGetRandom(), (0.0 - 1.0 * std::log(1.0 - stream.mNext())) * 2.0 + 1.0);
    EXPECT_EQ(qeltest::mCountDraws(99.0, mGenerator()->mGetBase()), 1);
    // The normal-body scheme itself, made directly with an infinite shape,
    // would reject every round on NaN comparisons; it gives the limit at once.
    const CmDistGammaC c(std::numeric_limits<double>::infinity());
    mGenerator()->mSetBase(99.0);
    EXPECT_EQ(c.mGetRandom(), std::numeric_limits<double>::infinity());
    EXPECT_EQ(mGenerator()->mGetBase(), 99.0);
}

TEST(DistGamma, ShapesJustAboveOneDrawFromTheMiddleScheme)
{
    // For alpha = shape - 1 of a few units in the last place, the root
    // lambda of the middle scheme is taken without cancellation, so the
    // envelope stays proper and the variates come (a gamma of shape near 1
    // is near the exponential: mean about 1).
    for (double a : {1.0 + 2.0 * DBL_EPSILON, 1.0 + 1e-13, 1.0 + 1e-10, 1.0 + 1e-7})
    {
        const CmDistGamma dist(a, 1.0);
        ASSERT_NE(dynamic_cast<const CmDistGammaB*>(dist.mGetGenerator()), nullptr) << a;
        mGenerator()->mSetBase(2024.0);
        double dSum = 0.0;
        const int kN = 20000;
        for (int i = 0; i < kN; ++i)
        {
            const double x = dist.mGetRandom();
            ASSERT_TRUE(x > 0.0 && std::isfinite(x)) << a;
            dSum += x;
        }
        // The standard error of the mean is 1 / sqrt(20000) = 0.007.
        EXPECT_NEAR(dSum / kN, 1.0, 0.04) << a;
    }
}

TEST(DistGamma, VariatesFollowTheDistributionFunction)
{
    struct Case
    {
        double dShape, dScale, dThreshold;
    };
    for (const Case& c : {Case{0.5, 2.0, 1.0}, Case{1.0, 3.0, -1.0}, Case{1.5, 0.5, 0.0},
                          Case{3.9, 1.25, 2.0}, Case{4.0, 2.0, 0.0}, Case{10.0, 0.1, 5.0},
                          Case{100.0, 1.0, 0.0}, Case{0.05, 1.0, 0.0}})
    {
        qeltest::mExpectKsOfVariates(CmDistGamma(c.dShape, c.dScale, c.dThreshold),
                                     "gamma shape " + std::to_string(c.dShape), 31415.0);
    }
}

TEST(DistGamma, CopiesShareTheHelperAndContinueItsStream)
{
    // Shape 10 uses the normal-body scheme, whose normal keeps a spare: a
    // copy continues the pairs of the original, so that the variates of the
    // original and its copies, drawn in turn, are those of one object.
    const std::vector<qeltest::VariateCase> vCases = qeltest::mLoadVariateCases(1);
    const qeltest::VariateCase* pCase = nullptr;
    for (const qeltest::VariateCase& rCase : vCases)
        if (rCase.dP1 == 10.0)
            pCase = &rCase;
    ASSERT_NE(pCase, nullptr);
    mGenerator()->mSetBase(12345.0);
    auto* pOriginal = new CmDistGamma(pCase->dP1, pCase->dP2, pCase->dP3);
    auto* pCopy = new CmDistGamma(*pOriginal);
    CmDistGamma assigned(0.5, 1.0);
    assigned = *pOriginal;
    EXPECT_EQ(pCopy->mGetGenerator(), pOriginal->mGetGenerator());
    EXPECT_EQ(assigned.mGetGenerator(), pOriginal->mGetGenerator());
    std::vector<double> vdDrawn;
    vdDrawn.push_back(pOriginal->mGetRandom());
    vdDrawn.push_back(pCopy->mGetRandom());
    vdDrawn.push_back(assigned.mGetRandom());
    delete pOriginal;
    vdDrawn.push_back(pCopy->mGetRandom());
    vdDrawn.push_back(assigned.mGetRandom());
    delete pCopy;
    vdDrawn.push_back(assigned.mGetRandom());
    for (std::size_t i = 0; i < vdDrawn.size(); ++i)
        EXPECT_LE(qeltest::mRelativeError(vdDrawn[i], pCase->vdVariates[i]), 1e-13) << i;
    // Assignment over an object with its own helper, self-assignment, and
    // destruction in the other order.
    auto* pFirst = new CmDistGamma(3.0, 1.0);
    auto* pSecond = new CmDistGamma(0.3, 1.0);
    *pSecond = *pFirst;
    const CmDistGamma& rSame = *pSecond;
    *pSecond = rSame;
    EXPECT_EQ(pSecond->mGetGenerator(), pFirst->mGetGenerator());
    delete pSecond;
    EXPECT_NE(dynamic_cast<const CmDistGammaB*>(pFirst->mGetGenerator()), nullptr);
    delete pFirst;
}
