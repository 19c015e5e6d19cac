// Whether a graph of the open-ended positive families shows the threshold:
// 0.2 (q99 - q1) >= q1 - threshold, with the percentiles worked out here from
// the quantile formulas of each family.  The answer changes with the
// parameters: a spread-out distribution close to its threshold shows it, a
// narrow one far above it does not.
#include "qel/distclosedform.h"
#include "qel/qelmessaging.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{
// The standard normal quantile at 0.99 (a tabulated constant).
const double kZ99 = 2.3263478740408408;

bool mRule(double dQ1, double dQ99, double dLower) { return 0.2 * (dQ99 - dQ1) >= dQ1 - dLower; }

bool mLogNormalRule(double dLoc, double dScale, double dThr)
{
    return mRule(dThr + std::exp(dLoc - dScale * kZ99), dThr + std::exp(dLoc + dScale * kZ99), dThr);
}

bool mWeibullRule(double dShape, double dScale, double dThr)
{
    return mRule(dThr + dScale * std::pow(-std::log(0.99), 1.0 / dShape),
                 dThr + dScale * std::pow(-std::log(0.01), 1.0 / dShape), dThr);
}

bool mLogLogisticRule(double dLoc, double dScale, double dThr)
{
    return mRule(dThr + std::exp(dLoc + dScale * std::log(0.01 / 0.99)),
                 dThr + std::exp(dLoc + dScale * std::log(0.99 / 0.01)), dThr);
}

bool mExponentialRule(double dScale, double dThr)
{
    return mRule(dThr - dScale * std::log(0.99), dThr - dScale * std::log(0.01), dThr);
}
} // namespace

TEST(DistLogNormal, LowerBoundShownOnlyWhenCloseToTheBulk)
{
    CmAssertCapture capture;
    // (0, 1): q1 = 0.0977, q99 = 10.24; 0.2 * 10.14 >= 0.0977.
    ASSERT_TRUE(mLogNormalRule(0.0, 1.0, 0.0));
    EXPECT_TRUE(CmDistLogNormal(0.0, 1.0, 0.0).mHasLowerBound());
    // (5, 0.1): q1 = 117.9, q99 = 187.3; 0.2 * 69.4 < 117.9.
    ASSERT_FALSE(mLogNormalRule(5.0, 0.1, 0.0));
    EXPECT_FALSE(CmDistLogNormal(5.0, 0.1, 0.0).mHasLowerBound());
    // A threshold moves the whole distribution: the answer stays.
    EXPECT_FALSE(CmDistLogNormal(5.0, 0.1, -100.0).mHasLowerBound());
    EXPECT_TRUE(CmDistLogNormal(0.0, 1.0, 40.0).mHasLowerBound());
    // The rule reads exp(2 z99 scale) >= 6 whatever the location: the scale
    // turns at log(6) / (2 z99) = 0.3851, between 0.36 and 0.42.
    ASSERT_TRUE(mLogNormalRule(1.5, 0.42, 0.0));
    ASSERT_FALSE(mLogNormalRule(1.5, 0.36, 0.0));
    EXPECT_TRUE(CmDistLogNormal(1.5, 0.42, 0.0).mHasLowerBound());
    EXPECT_FALSE(CmDistLogNormal(1.5, 0.36, 0.0).mHasLowerBound());
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistLogNormal, LowerBoundAnsweredAnewAfterAssignment)
{
    CmDistLogNormal dist(0.0, 1.0, 0.0);
    EXPECT_TRUE(dist.mHasLowerBound());
    dist = CmDistLogNormal(5.0, 0.1, 0.0);
    EXPECT_FALSE(dist.mHasLowerBound());
}

TEST(DistWeibull, LowerBoundShownOnlyWhenCloseToTheBulk)
{
    CmAssertCapture capture;
    // Shape 1: q1 = 0.01005, q99 = 4.605.
    ASSERT_TRUE(mWeibullRule(1.0, 1.0, 0.0));
    EXPECT_TRUE(CmDistWeibull(1.0, 1.0, 0.0).mHasLowerBound());
    // Shape 10: q1 = 0.631, q99 = 1.165; 0.2 * 0.534 < 0.631.
    ASSERT_FALSE(mWeibullRule(10.0, 1.0, 0.0));
    EXPECT_FALSE(CmDistWeibull(10.0, 1.0, 0.0).mHasLowerBound());
    EXPECT_FALSE(CmDistWeibull(10.0, 3.0, 2.0).mHasLowerBound());
    // The rule reads (log(0.01) / log(0.99))^(1/shape) >= 6: the shape turns
    // at log(458.2) / log(6) = 3.420, between 3 and 4.
    ASSERT_TRUE(mWeibullRule(3.0, 1.0, 0.0));
    ASSERT_FALSE(mWeibullRule(4.0, 1.0, 0.0));
    EXPECT_TRUE(CmDistWeibull(3.0, 1.0, 0.0).mHasLowerBound());
    EXPECT_FALSE(CmDistWeibull(4.0, 1.0, 0.0).mHasLowerBound());
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistLogLogistic, LowerBoundShownOnlyWhenCloseToTheBulk)
{
    CmAssertCapture capture;
    // (0, 1): q1 = 1/99, q99 = 99.
    ASSERT_TRUE(mLogLogisticRule(0.0, 1.0, 0.0));
    EXPECT_TRUE(CmDistLogLogistic(0.0, 1.0, 0.0).mHasLowerBound());
    // (3, 0.05): q1 = 15.96, q99 = 25.27; 0.2 * 9.31 < 15.96.
    ASSERT_FALSE(mLogLogisticRule(3.0, 0.05, 0.0));
    EXPECT_FALSE(CmDistLogLogistic(3.0, 0.05, 0.0).mHasLowerBound());
    EXPECT_FALSE(CmDistLogLogistic(3.0, 0.05, 7.0).mHasLowerBound());
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistExponential, LowerBoundAlwaysShown)
{
    CmAssertCapture capture;
    // q1 - threshold = 0.01005 scale against 0.2 (q99 - q1) = 0.919 scale:
    // true for every scale.
    for (double dScale : {1e-3, 1.0, 2.0, 1e6})
    {
        ASSERT_TRUE(mExponentialRule(dScale, 50.0));
        EXPECT_TRUE(CmDistExponential(dScale, 50.0).mHasLowerBound()) << dScale;
    }
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistExponential, LowerBoundShownWhenTheComparisonMeetsANaN)
{
    // A NaN scale makes both percentiles NaN: the comparison is false either
    // way round, and the rule then answers true.
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    CmAssertCapture capture;
    const CmDistExponential dist(dNaN, 0.0);
    EXPECT_TRUE(std::isnan(dist.mInvCdf(0.01)));
    EXPECT_TRUE(dist.mHasLowerBound());
    EXPECT_EQ(capture.mGetCount(), 0);
}
