// The closed-form distribution objects as holders of parameters: the
// constructors (plain, vector with its defaults, copy, assignment), the
// validity rules with NaN parameters, the forwarding of density, tails and
// quantile to the flat functions (exact equality), and the answers for a
// graph: bounds, reference points, support, parameters.
#include "qel/closedform.h"
#include "qel/distclosedform.h"
#include "qel/normal.h"
#include "qel/qelmessaging.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace
{
const double kNaN = std::numeric_limits<double>::quiet_NaN();

// Equal element by element, a NaN matching a NaN.
void mExpectSameValues(const std::vector<double>& rvdGot, const std::vector<double>& rvdExpected,
                       const std::string& rsWhat)
{
    ASSERT_EQ(rvdGot.size(), rvdExpected.size()) << rsWhat;
    for (std::size_t i = 0; i < rvdGot.size(); ++i)
    {
        if (std::isnan(rvdExpected[i]))
            EXPECT_TRUE(std::isnan(rvdGot[i])) << rsWhat << " entry " << i;
        else
            EXPECT_EQ(rvdGot[i], rvdExpected[i]) << rsWhat << " entry " << i;
    }
}

// mGetParameters and mGetNonInvCDFParameters both give the parameters, each
// replacing whatever the vector held.
void mExpectParameters(const CmDist& rDist, const std::vector<double>& rvdExpected)
{
    CmAssertCapture capture;
    std::vector<double> vd{-9.0, -9.0, -9.0, -9.0, -9.0};
    rDist.mGetParameters(vd);
    mExpectSameValues(vd, rvdExpected, "mGetParameters");
    vd.assign(5, -9.0);
    rDist.mGetNonInvCDFParameters(vd);
    mExpectSameValues(vd, rvdExpected, "mGetNonInvCDFParameters");
    EXPECT_EQ(capture.mGetCount(), 0);
}

// A copy and an assignment (over an object made from an empty vector) give
// the same parameters.
template <class D> void mExpectCopiesKeepParameters(const D& rDist)
{
    std::vector<double> vdOriginal;
    rDist.mGetParameters(vdOriginal);
    const D copy(rDist);
    mExpectParameters(copy, vdOriginal);
    D assigned{std::vector<double>{}};
    assigned = rDist;
    mExpectParameters(assigned, vdOriginal);
    EXPECT_EQ(copy.mAreParamsValid(), rDist.mAreParamsValid());
    EXPECT_EQ(assigned.mAreParamsValid(), rDist.mAreParamsValid());
}

// The density and both tails at the points, the quantile at a few
// probabilities: the object's answers are the flat function's, bit for bit.
template <class P, class C, class Q>
void mExpectForwarding(const CmDist& rDist, const std::vector<double>& rvdPoints, P pdf, C cdf,
                       Q inv)
{
    CmAssertCapture capture;
    for (double dX : rvdPoints)
    {
        EXPECT_EQ(rDist.mPdf(dX), pdf(dX)) << "x = " << dX;
        EXPECT_EQ(rDist.mCdf(dX, false), cdf(dX, false)) << "x = " << dX;
        EXPECT_EQ(rDist.mCdf(dX, true), cdf(dX, true)) << "x = " << dX;
    }
    for (double dP : {0.001, 0.01, 0.3, 0.5, 0.75, 0.99})
        EXPECT_EQ(rDist.mInvCdf(dP), inv(dP)) << "p = " << dP;
    EXPECT_EQ(capture.mGetCount(), 0);
}

void mExpectNoLowerBound(const CmDist& rDist)
{
    CmAssertCapture capture;
    EXPECT_FALSE(rDist.mHasLowerBound());
    EXPECT_EQ(rDist.mGetLowerBound(), 0.0);
    EXPECT_EQ(capture.mGetCount(), 1);
    EXPECT_TRUE(capture.mHas("false"));
}

void mExpectNoUpperBound(const CmDist& rDist)
{
    CmAssertCapture capture;
    EXPECT_FALSE(rDist.mHasUpperBound());
    EXPECT_EQ(rDist.mGetUpperBound(), 0.0);
    EXPECT_EQ(capture.mGetCount(), 1);
    EXPECT_TRUE(capture.mHas("false"));
}

// Continuous, and mGetSupport is the base's refusal, the vector left alone.
void mExpectContinuousWithoutSupport(const CmDist& rDist)
{
    EXPECT_TRUE(rDist.mIsContinuous());
    CmAssertCapture capture;
    std::vector<double> vd{7.0, 8.0};
    rDist.mGetSupport(0.0, 10.0, vd);
    EXPECT_EQ(vd, (std::vector<double>{7.0, 8.0}));
    EXPECT_EQ(capture.mGetCount(), 1);
    EXPECT_TRUE(capture.mHas("false"));
}

void mExpectRefPoints(const CmDist& rDist, const std::vector<double>& rvdExpected)
{
    std::vector<double> vd{-1.0, -2.0, -3.0, -4.0};
    rDist.mGetDRefPoints(vd);
    EXPECT_EQ(vd, rvdExpected);
}
} // namespace

// ---------------------------------------------------------------- normal

TEST(DistNormal, ConstructorsReadTheVectorWithDefaults)
{
    mExpectParameters(CmDistNormal(), {0.0, 1.0});
    mExpectParameters(CmDistNormal(1.5, 2.0), {1.5, 2.0});
    mExpectParameters(CmDistNormal(std::vector<double>{1.5, 2.0}), {1.5, 2.0});
    mExpectParameters(CmDistNormal(std::vector<double>{1.5}), {1.5, 1.0});
    mExpectParameters(CmDistNormal(std::vector<double>{}), {0.0, 1.0});
    mExpectCopiesKeepParameters(CmDistNormal(-3.0, 0.25));
}

TEST(DistNormal, ValidWhenTheScaleIsPositive)
{
    EXPECT_TRUE(CmDistNormal(0.0, 1e-300).mAreParamsValid());
    EXPECT_FALSE(CmDistNormal(0.0, 0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistNormal(0.0, -1.0).mAreParamsValid());
    EXPECT_FALSE(CmDistNormal(0.0, kNaN).mAreParamsValid());
    EXPECT_TRUE(CmDistNormal(kNaN, 1.0).mAreParamsValid()); // only the scale is ruled
}

TEST(DistNormal, ForwardsToTheFlatFunctions)
{
    const CmDistNormal dist(1.5, 2.0);
    mExpectForwarding(
        dist, {-5.0, 0.0, 1.5, 2.0, 9.0}, [](double x) { return mNormalPdf(x, 1.5, 2.0); },
        [](double x, bool b) { return mNormalCdf(x, 1.5, 2.0, b); },
        [](double p) { return mNormalInvCdf(p, 1.5, 2.0); });
    EXPECT_EQ(dist.mCdf(1.5, false), 0.5);
    EXPECT_EQ(dist.mInvCdf(0.5), 1.5);
}

TEST(DistNormal, UnboundedWithItsLocationAsReferencePoint)
{
    const CmDistNormal dist(1.5, 2.0);
    mExpectNoLowerBound(dist);
    mExpectNoUpperBound(dist);
    mExpectContinuousWithoutSupport(dist);
    mExpectRefPoints(dist, {1.5});
}

// ---------------------------------------------------------------- lognormal

TEST(DistLogNormal, ConstructorsReadTheVectorWithDefaults)
{
    mExpectParameters(CmDistLogNormal(), {0.0, 1.0, 0.0});
    mExpectParameters(CmDistLogNormal(0.5, 0.75, 2.0), {0.5, 0.75, 2.0});
    mExpectParameters(CmDistLogNormal(std::vector<double>{1.0, 2.0, 5.0}), {1.0, 2.0, 5.0});
    mExpectParameters(CmDistLogNormal(std::vector<double>{1.0, 2.0}), {1.0, 2.0, 0.0});
    mExpectParameters(CmDistLogNormal(std::vector<double>{1.0}), {1.0, 1.0, 0.0});
    mExpectParameters(CmDistLogNormal(std::vector<double>{}), {0.0, 1.0, 0.0});
    mExpectCopiesKeepParameters(CmDistLogNormal(-1.0, 0.5, 3.0));
}

TEST(DistLogNormal, ThresholdFromTheThirdEntryOrZero)
{
    EXPECT_EQ(CmDistLogNormal(std::vector<double>{1.0, 2.0, 5.0}).mGetLowerBound(), 5.0);
    EXPECT_EQ(CmDistLogNormal(std::vector<double>{1.0, 2.0}).mGetLowerBound(), 0.0);
    std::vector<double> vd;
    CmDistLogNormal(std::vector<double>{1.0, 2.0, 5.0}).mGetDRefPoints(vd);
    EXPECT_EQ(vd, (std::vector<double>{5.0}));
    CmDistLogNormal(std::vector<double>{1.0, 2.0}).mGetDRefPoints(vd);
    EXPECT_EQ(vd, (std::vector<double>{0.0}));
}

TEST(DistLogNormal, ValidWhenTheScaleIsPositive)
{
    EXPECT_TRUE(CmDistLogNormal(-4.0, 0.1, -7.0).mAreParamsValid());
    EXPECT_FALSE(CmDistLogNormal(0.0, 0.0, 0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistLogNormal(0.0, -2.0, 0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistLogNormal(0.0, kNaN, 0.0).mAreParamsValid());
}

TEST(DistLogNormal, ForwardsToTheFlatFunctions)
{
    const CmDistLogNormal dist(0.5, 0.75, 2.0);
    mExpectForwarding(
        dist, {1.0, 2.0, 2.5, 3.0, 10.0}, [](double x) { return mLogNormalPdf(x, 0.5, 0.75, 2.0); },
        [](double x, bool b) { return mLogNormalCdf(x, 0.5, 0.75, 2.0, b); },
        [](double p) { return mLogNormalInvCdf(p, 0.5, 0.75, 2.0); });
    // The median is threshold + exp(location).
    EXPECT_NEAR(dist.mInvCdf(0.5), 2.0 + std::exp(0.5), 1e-14);
}

TEST(DistLogNormal, BoundedBelowOnlyWithTheThresholdAsReferencePoint)
{
    const CmDistLogNormal dist(0.5, 0.75, 2.0);
    mExpectNoUpperBound(dist);
    mExpectContinuousWithoutSupport(dist);
    mExpectRefPoints(dist, {2.0});
    EXPECT_EQ(dist.mGetLowerBound(), 2.0);
}

// ------------------------------------------------------ extreme values

TEST(DistSmallestExtremeValue, ConstructorsReadTheVectorWithDefaults)
{
    mExpectParameters(CmDistSmallestExtremeValue(), {0.0, 1.0});
    mExpectParameters(CmDistSmallestExtremeValue(3.0, 2.0), {3.0, 2.0});
    mExpectParameters(CmDistSmallestExtremeValue(std::vector<double>{3.0, 2.0}), {3.0, 2.0});
    mExpectParameters(CmDistSmallestExtremeValue(std::vector<double>{3.0}), {3.0, 1.0});
    mExpectParameters(CmDistSmallestExtremeValue(std::vector<double>{}), {0.0, 1.0});
    mExpectCopiesKeepParameters(CmDistSmallestExtremeValue(-1.0, 4.0));
}

TEST(DistSmallestExtremeValue, ValidWhenTheScaleIsPositive)
{
    EXPECT_TRUE(CmDistSmallestExtremeValue(-3.0, 0.5).mAreParamsValid());
    EXPECT_FALSE(CmDistSmallestExtremeValue(0.0, 0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistSmallestExtremeValue(0.0, kNaN).mAreParamsValid());
}

TEST(DistSmallestExtremeValue, ForwardsToTheFlatFunctions)
{
    const CmDistSmallestExtremeValue dist(3.0, 2.0);
    mExpectForwarding(
        dist, {-5.0, 0.0, 3.0, 4.5, 8.0},
        [](double x) { return mSmallestExtremeValuePdf(x, 3.0, 2.0); },
        [](double x, bool b) { return mSmallestExtremeValueCdf(x, 3.0, 2.0, b); },
        [](double p) { return mSmallestExtremeValueInvCdf(p, 3.0, 2.0); });
    // At the location the lower tail is 1 - 1/e.
    EXPECT_NEAR(dist.mCdf(3.0, false), 1.0 - std::exp(-1.0), 1e-15);
}

TEST(DistSmallestExtremeValue, UnboundedWithItsLocationAsReferencePoint)
{
    const CmDistSmallestExtremeValue dist(3.0, 2.0);
    mExpectNoLowerBound(dist);
    mExpectNoUpperBound(dist);
    mExpectContinuousWithoutSupport(dist);
    mExpectRefPoints(dist, {3.0});
}

TEST(DistLargestExtremeValue, ConstructorsReadTheVectorWithDefaults)
{
    mExpectParameters(CmDistLargestExtremeValue(), {0.0, 1.0});
    mExpectParameters(CmDistLargestExtremeValue(3.0, 2.0), {3.0, 2.0});
    mExpectParameters(CmDistLargestExtremeValue(std::vector<double>{3.0, 2.0}), {3.0, 2.0});
    mExpectParameters(CmDistLargestExtremeValue(std::vector<double>{3.0}), {3.0, 1.0});
    mExpectParameters(CmDistLargestExtremeValue(std::vector<double>{}), {0.0, 1.0});
    mExpectCopiesKeepParameters(CmDistLargestExtremeValue(-1.0, 4.0));
}

TEST(DistLargestExtremeValue, ValidWhenTheScaleIsPositive)
{
    EXPECT_TRUE(CmDistLargestExtremeValue(-3.0, 0.5).mAreParamsValid());
    EXPECT_FALSE(CmDistLargestExtremeValue(0.0, -0.5).mAreParamsValid());
    EXPECT_FALSE(CmDistLargestExtremeValue(0.0, kNaN).mAreParamsValid());
}

TEST(DistLargestExtremeValue, ForwardsToTheFlatFunctions)
{
    const CmDistLargestExtremeValue dist(3.0, 2.0);
    mExpectForwarding(
        dist, {-2.0, 0.0, 3.0, 4.5, 12.0},
        [](double x) { return mLargestExtremeValuePdf(x, 3.0, 2.0); },
        [](double x, bool b) { return mLargestExtremeValueCdf(x, 3.0, 2.0, b); },
        [](double p) { return mLargestExtremeValueInvCdf(p, 3.0, 2.0); });
    // At the location the lower tail is 1/e.
    EXPECT_NEAR(dist.mCdf(3.0, false), std::exp(-1.0), 1e-15);
}

TEST(DistLargestExtremeValue, UnboundedWithItsLocationAsReferencePoint)
{
    const CmDistLargestExtremeValue dist(3.0, 2.0);
    mExpectNoLowerBound(dist);
    mExpectNoUpperBound(dist);
    mExpectContinuousWithoutSupport(dist);
    mExpectRefPoints(dist, {3.0});
}

// ---------------------------------------------------------------- Weibull

TEST(DistWeibull, ConstructorsReadTheVectorWithDefaults)
{
    mExpectParameters(CmDistWeibull(1.7, 2.5, 1.0), {1.7, 2.5, 1.0});
    mExpectParameters(CmDistWeibull(std::vector<double>{1.7, 2.5, 1.0}), {1.7, 2.5, 1.0});
    mExpectParameters(CmDistWeibull(std::vector<double>{1.7, 2.5}), {1.7, 2.5, 0.0});
    mExpectParameters(CmDistWeibull(std::vector<double>{1.7}), {1.7, 1.0, 0.0});
    mExpectParameters(CmDistWeibull(std::vector<double>{}), {0.0, 1.0, 0.0});
    mExpectCopiesKeepParameters(CmDistWeibull(3.0, 0.5, -2.0));
}

TEST(DistWeibull, FromAnEmptyVectorIsInvalid)
{
    const CmDistWeibull dist{std::vector<double>{}};
    EXPECT_FALSE(dist.mAreParamsValid());
    std::vector<double> vd;
    dist.mGetParameters(vd);
    EXPECT_EQ(vd[0], 0.0);
}

TEST(DistWeibull, ValidWhenShapeAndScaleArePositive)
{
    EXPECT_TRUE(CmDistWeibull(0.3, 5.0, -1.0).mAreParamsValid());
    EXPECT_FALSE(CmDistWeibull(0.0, 1.0, 0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistWeibull(-1.0, 1.0, 0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistWeibull(1.0, 0.0, 0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistWeibull(kNaN, 1.0, 0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistWeibull(1.0, kNaN, 0.0).mAreParamsValid());
}

TEST(DistWeibull, ForwardsToTheFlatFunctions)
{
    const CmDistWeibull dist(1.7, 2.5, 1.0);
    mExpectForwarding(
        dist, {0.5, 1.0, 1.5, 3.5, 9.0}, [](double x) { return mWeibullPdf(x, 1.7, 2.5, 1.0); },
        [](double x, bool b) { return mWeibullCdf(x, 1.7, 2.5, 1.0, b); },
        [](double p) { return mWeibullInvCdf(p, 1.7, 2.5, 1.0); });
    // One scale above the threshold the upper tail is 1/e.
    EXPECT_NEAR(dist.mCdf(3.5, true), std::exp(-1.0), 1e-15);
}

TEST(DistWeibull, BoundedBelowOnlyWithTheThresholdAsReferencePoint)
{
    const CmDistWeibull dist(1.7, 2.5, 1.0);
    mExpectNoUpperBound(dist);
    mExpectContinuousWithoutSupport(dist);
    mExpectRefPoints(dist, {1.0});
    EXPECT_EQ(dist.mGetLowerBound(), 1.0);
}

// ------------------------------------------------------------ exponential

TEST(DistExponential, ConstructorsReadTheVectorWithDefaults)
{
    mExpectParameters(CmDistExponential(), {1.0, 0.0});
    mExpectParameters(CmDistExponential(2.0, 1.0), {2.0, 1.0});
    mExpectParameters(CmDistExponential(std::vector<double>{2.0, 1.0}), {2.0, 1.0});
    mExpectParameters(CmDistExponential(std::vector<double>{2.0}), {2.0, 0.0});
    mExpectParameters(CmDistExponential(std::vector<double>{}), {1.0, 0.0});
    mExpectCopiesKeepParameters(CmDistExponential(0.5, -3.0));
}

TEST(DistExponential, ValidWhenTheScaleIsPositive)
{
    EXPECT_TRUE(CmDistExponential(0.01, -5.0).mAreParamsValid());
    EXPECT_FALSE(CmDistExponential(0.0, 0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistExponential(-1.0, 0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistExponential(kNaN, 0.0).mAreParamsValid());
}

TEST(DistExponential, ForwardsToTheFlatFunctions)
{
    const CmDistExponential dist(2.0, 1.0);
    mExpectForwarding(
        dist, {0.0, 1.0, 2.0, 3.0, 30.0}, [](double x) { return mExponentialPdf(x, 2.0, 1.0); },
        [](double x, bool b) { return mExponentialCdf(x, 2.0, 1.0, b); },
        [](double p) { return mExponentialInvCdf(p, 2.0, 1.0); });
    EXPECT_NEAR(dist.mCdf(3.0, true), std::exp(-1.0), 1e-15);
    EXPECT_NEAR(dist.mInvCdf(0.5), 1.0 + 2.0 * std::log(2.0), 1e-15);
}

TEST(DistExponential, BoundedBelowOnlyWithTheThresholdAsReferencePoint)
{
    const CmDistExponential dist(2.0, 1.0);
    mExpectNoUpperBound(dist);
    mExpectContinuousWithoutSupport(dist);
    mExpectRefPoints(dist, {1.0});
    EXPECT_EQ(dist.mGetLowerBound(), 1.0);
}

// ---------------------------------------------------------------- logistic

TEST(DistLogistic, ConstructorsReadTheVectorWithDefaults)
{
    mExpectParameters(CmDistLogistic(), {0.0, 1.0});
    mExpectParameters(CmDistLogistic(4.0, 1.5), {4.0, 1.5});
    mExpectParameters(CmDistLogistic(std::vector<double>{4.0, 1.5}), {4.0, 1.5});
    mExpectParameters(CmDistLogistic(std::vector<double>{4.0}), {4.0, 1.0});
    mExpectParameters(CmDistLogistic(std::vector<double>{}), {0.0, 1.0});
    mExpectCopiesKeepParameters(CmDistLogistic(-2.0, 0.5));
}

TEST(DistLogistic, ValidWhenTheScaleIsPositive)
{
    EXPECT_TRUE(CmDistLogistic(-2.0, 0.5).mAreParamsValid());
    EXPECT_FALSE(CmDistLogistic(0.0, 0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistLogistic(0.0, kNaN).mAreParamsValid());
}

TEST(DistLogistic, ForwardsToTheFlatFunctions)
{
    const CmDistLogistic dist(4.0, 1.5);
    mExpectForwarding(
        dist, {-3.0, 0.0, 4.0, 5.5, 20.0}, [](double x) { return mLogisticPdf(x, 4.0, 1.5); },
        [](double x, bool b) { return mLogisticCdf(x, 4.0, 1.5, b); },
        [](double p) { return mLogisticInvCdf(p, 4.0, 1.5); });
    // One scale above the location the lower tail is e / (1 + e).
    EXPECT_NEAR(dist.mCdf(5.5, false), std::exp(1.0) / (1.0 + std::exp(1.0)), 1e-15);
}

TEST(DistLogistic, UnboundedWithItsMedianAsReferencePoint)
{
    const CmDistLogistic dist(4.0, 1.5);
    mExpectNoLowerBound(dist);
    mExpectNoUpperBound(dist);
    mExpectContinuousWithoutSupport(dist);
    mExpectRefPoints(dist, {4.0});
    mExpectRefPoints(dist, {mLogisticInvCdf(0.5, 4.0, 1.5)});
}

// ------------------------------------------------------------ loglogistic

TEST(DistLogLogistic, ConstructorsReadTheVectorWithDefaults)
{
    mExpectParameters(CmDistLogLogistic(), {0.0, 1.0, 0.0});
    mExpectParameters(CmDistLogLogistic(0.5, 0.4, 2.0), {0.5, 0.4, 2.0});
    mExpectParameters(CmDistLogLogistic(std::vector<double>{0.5, 0.4, 2.0}), {0.5, 0.4, 2.0});
    mExpectParameters(CmDistLogLogistic(std::vector<double>{0.5, 0.4}), {0.5, 0.4, 0.0});
    mExpectParameters(CmDistLogLogistic(std::vector<double>{0.5}), {0.5, 1.0, 0.0});
    mExpectParameters(CmDistLogLogistic(std::vector<double>{}), {0.0, 1.0, 0.0});
    mExpectCopiesKeepParameters(CmDistLogLogistic(1.0, 2.0, -1.0));
}

TEST(DistLogLogistic, ValidWhenTheScaleIsPositive)
{
    EXPECT_TRUE(CmDistLogLogistic(-2.0, 0.5, 3.0).mAreParamsValid());
    EXPECT_FALSE(CmDistLogLogistic(0.0, 0.0, 0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistLogLogistic(0.0, kNaN, 0.0).mAreParamsValid());
}

TEST(DistLogLogistic, ForwardsToTheFlatFunctions)
{
    const CmDistLogLogistic dist(0.5, 0.4, 2.0);
    mExpectForwarding(
        dist, {1.0, 2.0, 2.5, 3.65, 9.0},
        [](double x) { return mLogLogisticPdf(x, 0.5, 0.4, 2.0); },
        [](double x, bool b) { return mLogLogisticCdf(x, 0.5, 0.4, 2.0, b); },
        [](double p) { return mLogLogisticInvCdf(p, 0.5, 0.4, 2.0); });
    EXPECT_NEAR(dist.mInvCdf(0.5), 2.0 + std::exp(0.5), 1e-14);
}

TEST(DistLogLogistic, BoundedBelowOnlyWithTheThresholdAsReferencePoint)
{
    const CmDistLogLogistic dist(0.5, 0.4, 2.0);
    mExpectNoUpperBound(dist);
    mExpectContinuousWithoutSupport(dist);
    mExpectRefPoints(dist, {2.0});
    EXPECT_EQ(dist.mGetLowerBound(), 2.0);
}

// ---------------------------------------------------------------- Cauchy

TEST(DistCauchy, ConstructorsReadTheVectorWithDefaults)
{
    mExpectParameters(CmDistCauchy(), {0.0, 1.0});
    mExpectParameters(CmDistCauchy(5.0, 0.5), {5.0, 0.5});
    mExpectParameters(CmDistCauchy(std::vector<double>{5.0, 0.5}), {5.0, 0.5});
    mExpectParameters(CmDistCauchy(std::vector<double>{5.0}), {5.0, 1.0});
    mExpectParameters(CmDistCauchy(std::vector<double>{}), {0.0, 1.0});
    mExpectCopiesKeepParameters(CmDistCauchy(-5.0, 3.0));
}

TEST(DistCauchy, ValidWhenTheScaleIsPositive)
{
    EXPECT_TRUE(CmDistCauchy(-5.0, 3.0).mAreParamsValid());
    EXPECT_FALSE(CmDistCauchy(0.0, 0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistCauchy(0.0, kNaN).mAreParamsValid());
}

TEST(DistCauchy, ForwardsToTheFlatFunctions)
{
    const CmDistCauchy dist(5.0, 0.5);
    mExpectForwarding(
        dist, {-50.0, 0.0, 5.0, 5.5, 60.0}, [](double x) { return mCauchyPdf(x, 5.0, 0.5); },
        [](double x, bool b) { return mCauchyCdf(x, 5.0, 0.5, b); },
        [](double p) { return mCauchyInvCdf(p, 5.0, 0.5); });
    // One scale above the location the lower tail is 3/4.
    EXPECT_NEAR(dist.mCdf(5.5, false), 0.75, 1e-15);
}

TEST(DistCauchy, UnboundedWithItsLocationAsReferencePoint)
{
    const CmDistCauchy dist(5.0, 0.5);
    mExpectNoLowerBound(dist);
    mExpectNoUpperBound(dist);
    mExpectContinuousWithoutSupport(dist);
    mExpectRefPoints(dist, {5.0});
}

// ------------------------------------------------------------ Tukey lambda

TEST(DistLambda, ConstructorsReadTheVectorWithDefaults)
{
    mExpectParameters(CmDistLambda(0.14, 3.0, 1.0), {0.14, 3.0, 1.0});
    mExpectParameters(CmDistLambda(std::vector<double>{0.14, 3.0, 2.0}), {0.14, 3.0, 2.0});
    mExpectParameters(CmDistLambda(std::vector<double>{0.14, 3.0}), {0.14, 3.0, 1.0});
    mExpectParameters(CmDistLambda(std::vector<double>{0.14}), {0.14, 0.0, 1.0});
    // The lambda has no default.
    mExpectParameters(CmDistLambda(std::vector<double>{}), {kNaN, 0.0, 1.0});
    mExpectCopiesKeepParameters(CmDistLambda(-0.3, 1.0, 2.0));
}

TEST(DistLambda, ValidWhenTheScaleIsPositive)
{
    EXPECT_TRUE(CmDistLambda(-0.3, 1.0, 2.0).mAreParamsValid());
    EXPECT_FALSE(CmDistLambda(0.14, 0.0, 0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistLambda(0.14, 0.0, -1.0).mAreParamsValid());
    EXPECT_FALSE(CmDistLambda(0.14, 0.0, kNaN).mAreParamsValid());
    // A missing lambda is not the object's test: the scale alone is ruled.
    EXPECT_TRUE(CmDistLambda(std::vector<double>{}).mAreParamsValid());
}

TEST(DistLambda, ForwardsToTheFlatFunctions)
{
    const CmDistLambda dist(0.14, 3.0, 1.0);
    mExpectForwarding(
        dist, {-2.0, 1.0, 3.0, 3.5, 6.0}, [](double x) { return mLambdaPdf(x, 0.14, 3.0, 1.0); },
        [](double x, bool b) { return mLambdaCdf(x, 0.14, 3.0, 1.0, b); },
        [](double p) { return mLambdaInvCdf(p, 0.14, 3.0, 1.0); });
    // Q(0.9) = (0.9^0.14 - 0.1^0.14) / 0.14 above the location.
    EXPECT_NEAR(dist.mInvCdf(0.9), 3.0 + (std::pow(0.9, 0.14) - std::pow(0.1, 0.14)) / 0.14,
                1e-14);
}

TEST(DistLambda, UnboundedWithoutReferencePoints)
{
    const CmDistLambda dist(0.14, 3.0, 1.0);
    mExpectNoLowerBound(dist);
    mExpectNoUpperBound(dist);
    mExpectContinuousWithoutSupport(dist);
    mExpectRefPoints(dist, {});
}

// ---------------------------------------------------------------- Laplace

TEST(DistLaplace, ConstructorsReadTheVectorWithDefaults)
{
    mExpectParameters(CmDistLaplace(), {0.0, 1.0});
    mExpectParameters(CmDistLaplace(3.0, 1.25), {3.0, 1.25});
    mExpectParameters(CmDistLaplace(std::vector<double>{3.0, 1.25}), {3.0, 1.25});
    mExpectParameters(CmDistLaplace(std::vector<double>{3.0}), {3.0, 1.0});
    mExpectParameters(CmDistLaplace(std::vector<double>{}), {0.0, 1.0});
    mExpectCopiesKeepParameters(CmDistLaplace(-3.0, 0.25));
}

TEST(DistLaplace, ValidWhenTheScaleIsPositive)
{
    EXPECT_TRUE(CmDistLaplace(-3.0, 0.25).mAreParamsValid());
    EXPECT_FALSE(CmDistLaplace(0.0, 0.0).mAreParamsValid());
    EXPECT_FALSE(CmDistLaplace(0.0, kNaN).mAreParamsValid());
}

TEST(DistLaplace, ForwardsToTheFlatFunctions)
{
    const CmDistLaplace dist(3.0, 1.25);
    mExpectForwarding(
        dist, {-4.0, 0.0, 3.0, 4.25, 12.0}, [](double x) { return mLaplacePdf(x, 3.0, 1.25); },
        [](double x, bool b) { return mLaplaceCdf(x, 3.0, 1.25, b); },
        [](double p) { return mLaplaceInvCdf(p, 3.0, 1.25); });
    // One scale above the location the upper tail is exp(-1) / 2.
    EXPECT_NEAR(dist.mCdf(4.25, true), std::exp(-1.0) / 2.0, 1e-15);
}

TEST(DistLaplace, UnboundedWithItsLocationAsReferencePoint)
{
    const CmDistLaplace dist(3.0, 1.25);
    mExpectNoLowerBound(dist);
    mExpectNoUpperBound(dist);
    mExpectContinuousWithoutSupport(dist);
    mExpectRefPoints(dist, {3.0});
}

// ---------------------------------------------------------------- uniform

TEST(DistUniform, ConstructorsReadTheVectorWithDefaults)
{
    mExpectParameters(CmDistUniform(), {0.0, 1.0});
    mExpectParameters(CmDistUniform(-1.0, 3.0), {-1.0, 3.0});
    mExpectParameters(CmDistUniform(std::vector<double>{-1.0, 3.0}), {-1.0, 3.0});
    mExpectParameters(CmDistUniform(std::vector<double>{-1.0}), {-1.0, 1.0});
    mExpectParameters(CmDistUniform(std::vector<double>{}), {0.0, 1.0});
    mExpectCopiesKeepParameters(CmDistUniform(2.0, 7.0));
}

TEST(DistUniform, ValidWhenTheUpperEndExceedsTheLower)
{
    EXPECT_TRUE(CmDistUniform(-1.0, 3.0).mAreParamsValid());
    EXPECT_FALSE(CmDistUniform(1.0, 1.0).mAreParamsValid());
    EXPECT_FALSE(CmDistUniform(2.0, 1.0).mAreParamsValid());
    EXPECT_FALSE(CmDistUniform(kNaN, 1.0).mAreParamsValid());
    EXPECT_FALSE(CmDistUniform(0.0, kNaN).mAreParamsValid());
    // The vector default of the upper end is 1: a lower end of 2 alone is invalid.
    EXPECT_FALSE(CmDistUniform(std::vector<double>{2.0}).mAreParamsValid());
}

TEST(DistUniform, ForwardsToTheFlatFunctions)
{
    const CmDistUniform dist(-1.0, 3.0);
    mExpectForwarding(
        dist, {-2.0, -1.0, 0.0, 3.0, 4.0}, [](double x) { return mUniformPdf(x, -1.0, 3.0); },
        [](double x, bool b) { return mUniformCdf(x, -1.0, 3.0, b); },
        [](double p) { return mUniformInvCdf(p, -1.0, 3.0); });
    EXPECT_EQ(dist.mPdf(0.0), 0.25);
    EXPECT_EQ(dist.mCdf(0.0, false), 0.25);
}

TEST(DistUniform, BoundedOnBothSidesWithBothEndsAsReferencePoints)
{
    const CmDistUniform dist(-1.0, 3.0);
    CmAssertCapture capture;
    EXPECT_TRUE(dist.mHasLowerBound());
    EXPECT_TRUE(dist.mHasUpperBound());
    EXPECT_EQ(dist.mGetLowerBound(), -1.0);
    EXPECT_EQ(dist.mGetUpperBound(), 3.0);
    EXPECT_EQ(capture.mGetCount(), 0);
    mExpectContinuousWithoutSupport(dist);
    mExpectRefPoints(dist, {-1.0, 3.0});
}

// ------------------------------------------------------------- triangular

TEST(DistTriangular, ConstructorsReadTheVectorWithoutDefaults)
{
    mExpectParameters(CmDistTriangular(1.0, 2.5, 4.0), {1.0, 2.5, 4.0});
    mExpectParameters(CmDistTriangular(std::vector<double>{1.0, 2.5, 4.0}), {1.0, 2.5, 4.0});
    mExpectParameters(CmDistTriangular(std::vector<double>{1.0, 2.5}), {1.0, 2.5, kNaN});
    mExpectParameters(CmDistTriangular(std::vector<double>{}), {kNaN, kNaN, kNaN});
    EXPECT_FALSE(CmDistTriangular(std::vector<double>{1.0, 2.5}).mAreParamsValid());
    EXPECT_FALSE(CmDistTriangular(std::vector<double>{}).mAreParamsValid());
    mExpectCopiesKeepParameters(CmDistTriangular(-1.0, 0.0, 5.0));
}

TEST(DistTriangular, ModeAtAnEndIsValidAPointIsNot)
{
    EXPECT_TRUE(CmDistTriangular(1.0, 1.0, 2.0).mAreParamsValid());
    EXPECT_TRUE(CmDistTriangular(1.0, 2.0, 2.0).mAreParamsValid());
    EXPECT_FALSE(CmDistTriangular(1.0, 1.0, 1.0).mAreParamsValid());
    EXPECT_FALSE(CmDistTriangular(1.0, 0.5, 2.0).mAreParamsValid());
    EXPECT_FALSE(CmDistTriangular(1.0, 2.5, 2.0).mAreParamsValid());
    EXPECT_FALSE(CmDistTriangular(2.0, 2.0, 1.0).mAreParamsValid());
    EXPECT_FALSE(CmDistTriangular(kNaN, 1.0, 2.0).mAreParamsValid());
    EXPECT_FALSE(CmDistTriangular(1.0, kNaN, 2.0).mAreParamsValid());
    EXPECT_FALSE(CmDistTriangular(1.0, 1.5, kNaN).mAreParamsValid());
}

TEST(DistTriangular, ForwardsToTheFlatFunctions)
{
    const CmDistTriangular dist(1.0, 2.5, 4.0);
    mExpectForwarding(
        dist, {0.0, 1.0, 2.0, 2.5, 3.0, 4.0, 5.0},
        [](double x) { return mTriangularPdf(x, 1.0, 2.5, 4.0); },
        [](double x, bool b) { return mTriangularCdf(x, 1.0, 2.5, 4.0, b); },
        [](double p) { return mTriangularInvCdf(p, 1.0, 2.5, 4.0); });
    // Symmetric: half the mass below the mode, where the density is 2 / 3.
    EXPECT_NEAR(dist.mCdf(2.5, false), 0.5, 1e-15);
    EXPECT_NEAR(dist.mPdf(2.5), 2.0 / 3.0, 1e-15);
}

TEST(DistTriangular, BoundedOnBothSidesWithEndsAndModeAsReferencePoints)
{
    const CmDistTriangular dist(1.0, 2.5, 4.0);
    CmAssertCapture capture;
    EXPECT_TRUE(dist.mHasLowerBound());
    EXPECT_TRUE(dist.mHasUpperBound());
    EXPECT_EQ(dist.mGetLowerBound(), 1.0);
    EXPECT_EQ(dist.mGetUpperBound(), 4.0);
    EXPECT_EQ(capture.mGetCount(), 0);
    mExpectContinuousWithoutSupport(dist);
    mExpectRefPoints(dist, {1.0, 2.5, 4.0});
}
