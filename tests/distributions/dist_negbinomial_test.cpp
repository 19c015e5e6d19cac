// The negative binomial and geometric distribution objects: the two ways of
// counting (trials, or failures with the flat functions shifted by r),
// parameters, bounds, the support listing, the gamma (exponential) mixture
// of Poissons that draws the variates, and the sharing of the mixing helper.
#include "qel/distdiscrete.h"

#include "dist_gamma_variates.h"
#include "support/goodness.h"
#include "support/reftable.h"
#include "support/uniformstream.h"

#include "qel/discrete.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

namespace
{
const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();
const double kMissing = mGetMissingValueCode();

CmUniformGenerator* mGenerator() { return CmUniformGenerator::mInstance(); }

// Pearson's chi-square of 10^5 variates against a mass function of the
// count above the lower bound (so that a fractional r still gives whole
// cells).
double mChiSquarePValue(const CmDistNegBinomial& rDist, double dBase, const char* pszName,
                        const std::function<double(int)>& rPmf)
{
    const double dLower = rDist.mGetLowerBound();
    mGenerator()->mSetBase(dBase);
    std::vector<double> vdSample(100000);
    for (double& rd : vdSample)
        rd = rDist.mGetRandom() - dLower;
    const qeltest::ChiSquareResult result = qeltest::mChiSquare(vdSample, 0, 2000, rPmf);
    std::printf("%s: chi-square %.2f on %d df, p = %.4f, outliers %d\n", pszName, result.dStatistic,
                result.iDegreesOfFreedom, result.dPValue, result.iOutliers);
    EXPECT_EQ(result.iOutliers, 0) << pszName;
    return result.dPValue;
}

// Against the object's own mass function.
double mChiSquarePValue(const CmDistNegBinomial& rDist, double dBase, const char* pszName)
{
    const double dLower = rDist.mGetLowerBound();
    return mChiSquarePValue(rDist, dBase, pszName,
                            [&rDist, dLower](int k) { return rDist.mPdf(k + dLower); });
}

// The negative binomial mass of k failures written independently:
// Gamma(k + r) / (k! Gamma(r)) p^r (1 - p)^k.
double mFailuresPmf(int k, double dP, double dR)
{
    return std::exp(std::lgamma(k + dR) - std::lgamma(k + 1.0) - std::lgamma(dR) +
                    dR * std::log(dP) + k * std::log1p(-dP));
}
} // namespace

TEST(DistNegBinomial, ConstructorsKeepTheParametersAndTheCounting)
{
    std::vector<double> vd;
    const CmDistNegBinomial byDefault;
    byDefault.mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{0.5, 1.0}));
    // Trials are counted by default: the lower bound is r.
    EXPECT_EQ(byDefault.mGetLowerBound(), 1.0);
    EXPECT_TRUE(byDefault.mAreParamsValid());

    CmDistNegBinomial(0.3, 2.5, true).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{0.3, 2.5}));
    CmDistNegBinomial(std::vector<double>{0.4, 6.0}, false).mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{0.4, 6.0}));
    EXPECT_EQ(CmDistNegBinomial(std::vector<double>{0.4, 6.0}, false).mGetLowerBound(), 6.0);
    EXPECT_EQ(CmDistNegBinomial(std::vector<double>{0.4, 6.0}, true).mGetLowerBound(), 0.0);
    // Neither parameter has a default.
    CmDistNegBinomial(std::vector<double>{0.4}, false).mGetParameters(vd);
    ASSERT_EQ(vd.size(), 2u);
    EXPECT_EQ(vd[0], 0.4);
    EXPECT_TRUE(std::isnan(vd[1]));
    EXPECT_FALSE(CmDistNegBinomial(std::vector<double>{0.4}, false).mAreParamsValid());
    EXPECT_FALSE(CmDistNegBinomial(std::vector<double>{}, true).mAreParamsValid());
    CmDistNegBinomial(0.3, 2.5, true).mGetNonInvCDFParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{0.3, 2.5}));

    const CmDistNegBinomial original(0.3, 4.0, true);
    const CmDistNegBinomial copy(original);
    copy.mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{0.3, 4.0}));
    EXPECT_EQ(copy.mGetLowerBound(), 0.0);
    CmDistNegBinomial assigned(0.9, 1.0, false);
    assigned = original;
    assigned.mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{0.3, 4.0}));
    EXPECT_EQ(assigned.mGetLowerBound(), 0.0);
}

TEST(DistNegBinomial, ValidWhenProbabilityInsideTheUnitIntervalAndRPositive)
{
    EXPECT_TRUE(CmDistNegBinomial(0.5, 3.0, true).mAreParamsValid());
    EXPECT_TRUE(CmDistNegBinomial(1e-9, 0.01, false).mAreParamsValid());
    EXPECT_FALSE(CmDistNegBinomial(0.0, 3.0, true).mAreParamsValid());
    EXPECT_FALSE(CmDistNegBinomial(1.0, 3.0, true).mAreParamsValid());
    EXPECT_FALSE(CmDistNegBinomial(-0.5, 3.0, true).mAreParamsValid());
    EXPECT_FALSE(CmDistNegBinomial(0.5, 0.0, true).mAreParamsValid());
    EXPECT_FALSE(CmDistNegBinomial(0.5, -1.0, false).mAreParamsValid());
    EXPECT_FALSE(CmDistNegBinomial(kNaN, 3.0, true).mAreParamsValid());
    EXPECT_FALSE(CmDistNegBinomial(0.5, kNaN, true).mAreParamsValid());
}

TEST(DistNegBinomial, FailuresShiftTheFlatFunctionsByR)
{
    CmAssertCapture capture;
    const CmDistNegBinomial failures(0.35, 3.0, true);
    const CmDistNegBinomial trials(0.35, 3.0, false);
    for (double x : {-1.0, 0.0, 1.0, 2.0, 2.5, 3.0, 4.0, 7.0, 20.0})
    {
        EXPECT_EQ(failures.mPdf(x), mNegBinomialPdf(x + 3.0, 0.35, 3.0)) << x;
        EXPECT_EQ(failures.mCdf(x, false), mNegBinomialCdf(x + 3.0, 0.35, 3.0, false)) << x;
        EXPECT_EQ(failures.mCdf(x, true), mNegBinomialCdf(x + 3.0, 0.35, 3.0, true)) << x;
        EXPECT_EQ(trials.mPdf(x), mNegBinomialPdf(x, 0.35, 3.0)) << x;
        EXPECT_EQ(trials.mCdf(x, false), mNegBinomialCdf(x, 0.35, 3.0, false)) << x;
        EXPECT_EQ(trials.mCdf(x, true), mNegBinomialCdf(x, 0.35, 3.0, true)) << x;
    }
    for (double p : {0.0, 0.01, 0.3, 0.5, 0.9, 0.999})
    {
        EXPECT_EQ(failures.mInvCdf(p), mNegBinomialInvCdf(p, 0.35, 3.0) - 3.0) << p;
        EXPECT_EQ(trials.mInvCdf(p), mNegBinomialInvCdf(p, 0.35, 3.0)) << p;
    }
    EXPECT_EQ(capture.mGetCount(), 0);
    // Known values at p = 1/2, r = 3: P(no failure) = 1/8, P(2 failures) =
    // C(4, 2) / 32 = 3/16; the median count of failures is 2 (P(X <= 1) =
    // 5/16, P(X <= 2) = 1/2).
    const CmDistNegBinomial half(0.5, 3.0, true);
    EXPECT_NEAR(half.mPdf(0.0), 0.125, 1e-15);
    EXPECT_NEAR(half.mPdf(2.0), 0.1875, 1e-15);
    EXPECT_NEAR(half.mCdf(1.0, false), 0.3125, 1e-14);
    EXPECT_EQ(half.mInvCdf(0.4), 2.0);
    EXPECT_EQ(CmDistNegBinomial(0.5, 3.0, false).mInvCdf(0.4), 5.0);
}

TEST(DistNegBinomial, MissingQuantileStaysMissing)
{
    CmAssertCapture capture;
    // The flat quantile is missing at probability 1 (and outside [0, 1]).
    EXPECT_EQ(CmDistNegBinomial(0.4, 2.0, true).mInvCdf(1.0), kMissing);
    EXPECT_EQ(CmDistNegBinomial(0.4, 2.0, false).mInvCdf(1.0), kMissing);
    EXPECT_EQ(CmDistNegBinomial(0.4, 2.0, true).mInvCdf(1.5), kMissing);
    EXPECT_TRUE(capture.mHas("( dProb >= 0.0 ) && ( dProb <= 1.0 )"));
    EXPECT_EQ(capture.mGetCount(), 1);
}

TEST(DistNegBinomial, LowerBoundDependsOnTheCounting)
{
    const CmDistNegBinomial trials(0.5, 3.0, false);
    const CmDistNegBinomial failures(0.5, 3.0, true);
    EXPECT_EQ(trials.mGetLowerBound(), 3.0);
    EXPECT_EQ(failures.mGetLowerBound(), 0.0);
    EXPECT_TRUE(trials.mHasLowerBound());
    EXPECT_TRUE(failures.mHasLowerBound());
    EXPECT_FALSE(trials.mHasUpperBound());
    EXPECT_FALSE(trials.mIsContinuous());
    EXPECT_FALSE(failures.mIsContinuous());
    CmAssertCapture capture;
    EXPECT_EQ(failures.mGetUpperBound(), 0.0);
    EXPECT_EQ(capture.mGetCount(), 1);
    EXPECT_TRUE(capture.mHas("false"));
    std::vector<double> vd{1.0};
    failures.mGetDRefPoints(vd);
    EXPECT_TRUE(vd.empty());
}

TEST(DistNegBinomial, SupportListsFromTheLargerLowerEnd)
{
    const CmDistNegBinomial failures(0.5, 3.0, true);
    const CmDistNegBinomial trials(0.5, 3.0, false);
    std::vector<double> vd{42.0, 43.0};
    failures.mGetSupport(-2.0, 4.0, vd);
    EXPECT_EQ(vd, (std::vector<double>{0.0, 1.0, 2.0, 3.0, 4.0}));
    trials.mGetSupport(1.0, 5.0, vd);
    EXPECT_EQ(vd, (std::vector<double>{3.0, 4.0, 5.0}));
    // The ends are not rounded: dLower's fraction is kept, and the count is
    // last - first + 1 truncated (3.5 -> 3).
    failures.mGetSupport(1.5, 4.0, vd);
    EXPECT_EQ(vd, (std::vector<double>{1.5, 2.5, 3.5}));
    failures.mGetSupport(1.5, 3.9, vd);
    EXPECT_EQ(vd, (std::vector<double>{1.5, 2.5, 3.5}));
    failures.mGetSupport(1.5, 3.4, vd);
    EXPECT_EQ(vd, (std::vector<double>{1.5, 2.5}));
    // An upper end below the first value gives the first value alone.
    trials.mGetSupport(7.0, 2.0, vd);
    EXPECT_EQ(vd, (std::vector<double>{7.0}));
    // A fractional r is a fractional lower bound.
    CmDistNegBinomial(0.5, 2.5, false).mGetSupport(0.0, 5.0, vd);
    EXPECT_EQ(vd, (std::vector<double>{2.5, 3.5, 4.5}));
    // NaN ends: std::max keeps its first argument when a comparison fails.
    failures.mGetSupport(kNaN, kNaN, vd);
    EXPECT_EQ(vd, (std::vector<double>{0.0}));
    failures.mGetSupport(-kInf, 2.0, vd);
    EXPECT_EQ(vd, (std::vector<double>{0.0, 1.0, 2.0}));
    // An infinite first value makes the count NaN, which lists nothing.
    vd.assign(3, 1.0);
    failures.mGetSupport(kInf, kInf, vd);
    EXPECT_TRUE(vd.empty());
}

TEST(DistNegBinomial, PoissonQuantileAtMeanZeroIsZeroAfterAReport)
{
    // What the mixture avoids: the flat Poisson quantile at mean 0 reports
    // "dMu > 0.0" and then gives 0 (the mass is all at 0), in both of its
    // halves (below and above probability 1/2).
    for (double u : {0.1, 0.5, 0.7, 0.999})
    {
        CmAssertCapture capture;
        EXPECT_EQ(mPoissonInvCdf(u, 0.0), 0.0) << u;
        EXPECT_EQ(capture.mGetCount(), 1) << u;
        EXPECT_TRUE(capture.mHas("dMu > 0.0")) << u;
    }
}

TEST(DistNegBinomial, ZeroMixingVariateGivesZeroFailuresWithoutAReport)
{
    // With r = 1e-5 the gamma variate U^(1 / r) of the small-shape scheme is
    // 0 whenever log(U) / r < -709, i.e. for almost every U: the Poisson mean
    // is then 0.  P(X = 0) = p^r = 0.5^1e-5 = 0.999993, so nearly all of
    // 1000 variates are 0.  Each takes the gamma's uniforms and one more.
    const CmDistNegBinomial failures(0.5, 1e-5, true);
    const CmDistNegBinomial trials(0.5, 1e-5, false);
    CmAssertCapture capture;
    mGenerator()->mSetBase(606.0);
    int iZeros = 0;
    for (int i = 0; i < 1000; ++i)
    {
        const double dBefore = mGenerator()->mGetBase();
        const double x = failures.mGetRandom();
        ASSERT_EQ(x, std::floor(x));
        ASSERT_GE(x, 0.0);
        iZeros += x == 0.0 ? 1 : 0;
        // The gamma takes two uniforms a round, the Poisson one.
        const int iDraws = qeltest::mCountDraws(dBefore, mGenerator()->mGetBase());
        ASSERT_EQ(iDraws % 2, 1);
        ASSERT_GE(iDraws, 3);
    }
    EXPECT_GE(iZeros, 995);
    mGenerator()->mSetBase(606.0);
    const double dFirst = failures.mGetRandom();
    mGenerator()->mSetBase(606.0);
    EXPECT_EQ(trials.mGetRandom(), dFirst + 1e-5);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistNegBinomial, VariatesReplayTheReferenceMixture)
{
    const std::vector<qeltest::VariateCase> vCases = qeltest::mLoadVariateCases(3);
    ASSERT_EQ(vCases.size(), 4u);
    for (const qeltest::VariateCase& rCase : vCases)
    {
        const CmDistNegBinomial dist(rCase.dP1, rCase.dP2, rCase.dP3 == 1.0);
        mGenerator()->mSetBase(12345.0);
        for (std::size_t i = 0; i < rCase.vdVariates.size(); ++i)
        {
            EXPECT_EQ(dist.mGetRandom(), rCase.vdVariates[i])
                << "p " << rCase.dP1 << " r " << rCase.dP2 << " index " << i;
            EXPECT_EQ(qeltest::mCountDraws(12345.0, mGenerator()->mGetBase()), rCase.viCounts[i])
                << "p " << rCase.dP1 << " r " << rCase.dP2 << " index " << i;
        }
    }
}

TEST(DistNegBinomial, VariatesFollowTheMassFunction)
{
    EXPECT_GT(
        mChiSquarePValue(CmDistNegBinomial(0.3, 3.0, true), 161803.0, "negbin p 0.3 r 3 failures"),
        1e-4);
    EXPECT_GT(
        mChiSquarePValue(CmDistNegBinomial(0.3, 3.0, false), 271828.0, "negbin p 0.3 r 3 trials"),
        1e-4);
    EXPECT_GT(
        mChiSquarePValue(CmDistNegBinomial(0.2, 7.0, false), 161803.0, "negbin p 0.2 r 7 trials"),
        1e-4);
    EXPECT_GT(
        mChiSquarePValue(CmDistNegBinomial(0.5, 1.0, true), 161803.0, "negbin p 0.5 r 1 failures"),
        1e-4);
}

TEST(DistNegBinomial, FractionalRVariatesFollowTheGammaPoissonMass)
{
    // The object's mass function is 0 off the whole numbers (the flat
    // function's rule), and with a fractional r the counts r + k (trials) or
    // k + r at which it is evaluated (failures) are not whole.  These
    // mixtures are checked against the mass written out here instead.
    EXPECT_GT(mChiSquarePValue(CmDistNegBinomial(0.3, 2.5, true), 161803.0,
                               "negbin p 0.3 r 2.5 failures",
                               [](int k) { return mFailuresPmf(k, 0.3, 2.5); }),
              1e-4);
    EXPECT_GT(mChiSquarePValue(CmDistNegBinomial(0.3, 2.5, false), 271828.0,
                               "negbin p 0.3 r 2.5 trials",
                               [](int k) { return mFailuresPmf(k, 0.3, 2.5); }),
              1e-4);
    EXPECT_GT(mChiSquarePValue(CmDistNegBinomial(0.6, 0.4, true), 161803.0,
                               "negbin p 0.6 r 0.4 failures",
                               [](int k) { return mFailuresPmf(k, 0.6, 0.4); }),
              1e-4);
    EXPECT_EQ(CmDistNegBinomial(0.3, 2.5, true).mPdf(1.0), 0.0);
    // The formula agrees with the object where r is whole.
    EXPECT_NEAR(mFailuresPmf(2, 0.5, 3.0), 0.1875, 1e-14);
}

TEST(DistNegBinomial, CopiesShareTheMixingHelper)
{
    // r = 7 mixes through the normal-body gamma scheme, whose spare normal
    // must be shared for the copies drawn in turn to continue one stream.
    const std::vector<qeltest::VariateCase> vCases = qeltest::mLoadVariateCases(3);
    const qeltest::VariateCase* pCase = nullptr;
    for (const qeltest::VariateCase& rCase : vCases)
        if (rCase.dP2 == 7.0)
            pCase = &rCase;
    ASSERT_NE(pCase, nullptr);
    ASSERT_EQ(pCase->dP3, 0.0);
    mGenerator()->mSetBase(12345.0);
    auto* pOriginal = new CmDistNegBinomial(pCase->dP1, pCase->dP2, false);
    auto* pCopy = new CmDistNegBinomial(*pOriginal);
    CmDistNegBinomial assigned;
    assigned = *pOriginal;
    std::vector<double> vdDrawn;
    vdDrawn.push_back(pOriginal->mGetRandom());
    vdDrawn.push_back(assigned.mGetRandom());
    vdDrawn.push_back(pCopy->mGetRandom());
    delete pOriginal;
    vdDrawn.push_back(pCopy->mGetRandom());
    delete pCopy;
    vdDrawn.push_back(assigned.mGetRandom());
    for (std::size_t i = 0; i < vdDrawn.size(); ++i)
        EXPECT_EQ(vdDrawn[i], pCase->vdVariates[i]) << i;
}

TEST(DistGeometric, IsTheNegativeBinomialWithROne)
{
    CmAssertCapture capture;
    const CmDistGeometric trials(0.25, false);
    const CmDistGeometric failures(std::vector<double>{0.25}, true);
    std::vector<double> vd;
    trials.mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{0.25}));
    failures.mGetParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{0.25}));
    failures.mGetNonInvCDFParameters(vd);
    EXPECT_EQ(vd, (std::vector<double>{0.25}));
    EXPECT_EQ(trials.mGetLowerBound(), 1.0);
    EXPECT_EQ(failures.mGetLowerBound(), 0.0);
    EXPECT_TRUE(trials.mHasLowerBound());
    EXPECT_FALSE(trials.mIsContinuous());
    EXPECT_TRUE(trials.mAreParamsValid());
    EXPECT_FALSE(CmDistGeometric(1.0, false).mAreParamsValid());
    EXPECT_FALSE(CmDistGeometric(std::vector<double>{}, false).mAreParamsValid());
    for (double x : {0.0, 1.0, 2.0, 5.0})
    {
        EXPECT_EQ(trials.mPdf(x), mNegBinomialPdf(x, 0.25, 1.0)) << x;
        EXPECT_EQ(failures.mPdf(x), mNegBinomialPdf(x + 1.0, 0.25, 1.0)) << x;
        EXPECT_EQ(failures.mCdf(x, false), mNegBinomialCdf(x + 1.0, 0.25, 1.0, false)) << x;
        EXPECT_EQ(trials.mCdf(x, true), mNegBinomialCdf(x, 0.25, 1.0, true)) << x;
    }
    // P(first success on trial 3) = 0.75^2 * 0.25.
    EXPECT_NEAR(trials.mPdf(3.0), 0.140625, 1e-15);
    EXPECT_NEAR(failures.mPdf(2.0), 0.140625, 1e-15);
    EXPECT_EQ(failures.mInvCdf(0.5), mNegBinomialInvCdf(0.5, 0.25, 1.0) - 1.0);
    failures.mGetSupport(-1.0, 2.0, vd);
    EXPECT_EQ(vd, (std::vector<double>{0.0, 1.0, 2.0}));
    trials.mGetSupport(-1.0, 2.0, vd);
    EXPECT_EQ(vd, (std::vector<double>{1.0, 2.0}));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistGeometric, VariatesReplayTheReferenceMixture)
{
    const std::vector<qeltest::VariateCase> vCases = qeltest::mLoadVariateCases(4);
    ASSERT_EQ(vCases.size(), 2u);
    for (const qeltest::VariateCase& rCase : vCases)
    {
        const CmDistGeometric dist(rCase.dP1, rCase.dP3 == 1.0);
        mGenerator()->mSetBase(12345.0);
        for (std::size_t i = 0; i < rCase.vdVariates.size(); ++i)
        {
            EXPECT_EQ(dist.mGetRandom(), rCase.vdVariates[i])
                << "p " << rCase.dP1 << " index " << i;
            // One uniform for the exponential mean, one for the Poisson.
            EXPECT_EQ(qeltest::mCountDraws(12345.0, mGenerator()->mGetBase()), rCase.viCounts[i]);
            EXPECT_EQ(rCase.viCounts[i], 2 * static_cast<int>(i + 1));
        }
    }
}

TEST(DistGeometric, VariatesFollowTheMassFunction)
{
    EXPECT_GT(mChiSquarePValue(CmDistGeometric(0.25, false), 141421.0, "geometric p 0.25 trials"),
              1e-4);
    EXPECT_GT(mChiSquarePValue(CmDistGeometric(0.7, true), 141421.0, "geometric p 0.7 failures"),
              1e-4);
}

TEST(DistGeometric, CopiesAndSlicesShareTheMixingHelper)
{
    const std::vector<qeltest::VariateCase> vCases = qeltest::mLoadVariateCases(4);
    ASSERT_FALSE(vCases.empty());
    const qeltest::VariateCase& rCase = vCases[0];
    mGenerator()->mSetBase(12345.0);
    auto* pOriginal = new CmDistGeometric(rCase.dP1, rCase.dP3 == 1.0);
    auto* pCopy = new CmDistGeometric(*pOriginal);
    auto pSlice = std::make_unique<CmDistNegBinomial>(*pOriginal);
    CmDistGeometric assigned(0.9, true);
    assigned = *pCopy;
    std::vector<double> vdDrawn;
    vdDrawn.push_back(pCopy->mGetRandom());
    delete pCopy;
    vdDrawn.push_back(pSlice->mGetRandom());
    vdDrawn.push_back(assigned.mGetRandom());
    delete pOriginal;
    vdDrawn.push_back(pSlice->mGetRandom());
    pSlice.reset();
    vdDrawn.push_back(assigned.mGetRandom());
    for (std::size_t i = 0; i < vdDrawn.size(); ++i)
        EXPECT_EQ(vdDrawn[i], rCase.vdVariates[i]) << i;
}
