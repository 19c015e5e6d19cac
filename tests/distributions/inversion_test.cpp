// The numeric inversion objects and the search by doubling: what
// CmStandardNormalCdf computes, the tolerances it sets and the ones it
// inherits, and how mInvertByDoubling brackets and solves (the points it
// visits, the absolute width tolerance it sets, its answers when the value
// never reaches zero, cannot be evaluated, or the start is not positive).
#include "qelmath/distributions/inversion.h"

#include "qel/normal.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "qel/qelmsg.h"
#include "qel/rootsandoptima.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace
{
bool mFlagged50021(const CmMessageCapture& rCapture)
{
    for (const CmErrorFlagRecord& r : rCapture.mGetErrorFlags())
        if (r.iCode == 50021 && r.iLevel == 2)
            return true;
    return false;
}

// The exponential distribution function 1 - exp(-x / dScale) less a target
// held in a member of its own, as the inversion objects of the gamma family
// hold theirs; it records every point it is asked about.
class CmExponentialCdfProbe : public CmInversionFunction
{
public:
    CmExponentialCdfProbe(double dScale, double dTarget) : m_dScale(dScale), m_dOwnTarget(dTarget)
    {
    }
    ~CmExponentialCdfProbe() override = default;
    double operator()(double dX) override
    {
        m_vdVisited.push_back(dX);
        if (dX <= 0.0)
            return -m_dOwnTarget;
        return -std::expm1(-dX / m_dScale) - m_dOwnTarget;
    }
    double mGetTarget() const { return m_dTarget; }

    std::vector<double> m_vdVisited;

private:
    double m_dScale;
    double m_dOwnTarget;
};

// A function that cannot be evaluated beyond a point.
class CmMissingBeyond : public CmInversionFunction
{
public:
    explicit CmMissingBeyond(double dLimit) : m_dLimit(dLimit) {}
    ~CmMissingBeyond() override = default;
    double operator()(double dX) override
    {
        return dX > m_dLimit ? mGetMissingValueCode() : dX - 1e6;
    }

private:
    double m_dLimit;
};
} // namespace

TEST(StandardNormalCdf, IsTheDistributionFunctionLessTheTarget)
{
    CmStandardNormalCdf function(0.025);
    for (double x : {-40.0, -36.0, -1.96, 0.0, 0.5, 3.0})
        EXPECT_EQ(function(x), mNormalCdf(x, 0.0, 1.0, false) - 0.025) << x;
    CmStandardNormalCdf tiny(1e-200);
    EXPECT_EQ(tiny(-30.0), mNormalCdf(-30.0, 0.0, 1.0, false) - 1e-200);
}

TEST(StandardNormalCdf, ConvergesRelativeToTheTargetWithNoAbsoluteTerm)
{
    const double dTarget = 1e-150;
    CmStandardNormalCdf function(dTarget);
    EXPECT_EQ(function.mGetAbsoluteToleranceForF(), 0.0);
    EXPECT_EQ(function.mGetRelativeToleranceForF(), mGetEps());
    // The target sits in the base: the value test scales by it.
    EXPECT_TRUE(function.mIsConvergedForF(dTarget * mGetEps()));
    EXPECT_TRUE(function.mIsConvergedForF(-dTarget * mGetEps()));
    EXPECT_FALSE(function.mIsConvergedForF(dTarget * mGetEps() * 1.01));
    // With the default absolute term of 1e-30 this would have counted as zero.
    EXPECT_FALSE(function.mIsConvergedForF(1e-160));
    EXPECT_TRUE(function.mIsConvergedForF(0.0));
}

TEST(StandardNormalCdf, InheritsTheOtherDefaults)
{
    const CmStandardNormalCdf function(0.3);
    EXPECT_FALSE(function.mGetIntegerX());
    EXPECT_EQ(function.mGetAbsoluteToleranceForX(), CmQELConst::mInstance()->mGetNearlyZero());
    EXPECT_EQ(function.mGetRelativeToleranceForX(), CmQELConst::mInstance()->mGetEps());
    EXPECT_TRUE(function.mIsConvergedForX(1.0, 1.0 + 1e-16));
    EXPECT_FALSE(function.mIsConvergedForX(1.0, 1.0 + 1e-15));
    // A copy keeps the target and the tolerances.
    CmStandardNormalCdf copy(function);
    EXPECT_EQ(copy(0.0), 0.5 - 0.3);
    EXPECT_EQ(copy.mGetAbsoluteToleranceForF(), 0.0);
}

TEST(StandardNormalCdf, RootFinderInvertsItOverTheLowerHalf)
{
    for (double p : {0.3, 1e-5, 1e-60, 1e-200})
    {
        CmStandardNormalCdf function(p);
        const double z = mRootFinder(-36.0, 0.0, function);
        ASSERT_FALSE(mIsNumericMissing(z)) << p;
        // The search ends on the width of its bracket: the distribution
        // function there is the target to within z^2 eps relative (the step
        // it makes between neighbouring doubles), and at least 1e-15.
        const double dBound = std::max(3.0 * z * z, 8.0) * mGetEps();
        EXPECT_LE(std::fabs(mNormalCdf(z, 0.0, 1.0, false) - p), p * dBound) << p;
    }
}

TEST(InvertByDoubling, DoublesTheUpperEndUntilTheValueIsNoLongerBelowZero)
{
    // Median of the exponential with scale 10: 10 log 2 = 6.931...
    CmExponentialCdfProbe probe(10.0, 0.5);
    const double x = mInvertByDoubling(probe, 1.0);
    // Upper ends 1, 2, 4, 8: the value at 8 is the first at or above zero,
    // and the root finder then starts on [4, 8].
    ASSERT_GE(probe.m_vdVisited.size(), 6u);
    EXPECT_EQ(probe.m_vdVisited[0], 1.0);
    EXPECT_EQ(probe.m_vdVisited[1], 2.0);
    EXPECT_EQ(probe.m_vdVisited[2], 4.0);
    EXPECT_EQ(probe.m_vdVisited[3], 8.0);
    EXPECT_EQ(probe.m_vdVisited[4], 4.0);
    EXPECT_EQ(probe.m_vdVisited[5], 8.0);
    for (std::size_t i = 6; i < probe.m_vdVisited.size(); ++i)
    {
        EXPECT_GT(probe.m_vdVisited[i], 4.0);
        EXPECT_LT(probe.m_vdVisited[i], 8.0);
    }
    EXPECT_NEAR(x, 10.0 * std::log(2.0), 1e-12);
    // The absolute width tolerance has been set; the target of the base is
    // untouched, so the value test is absolute.
    EXPECT_EQ(probe.mGetAbsoluteToleranceForX(), 2.2250738585072014e-288);
    EXPECT_EQ(probe.mGetTarget(), 0.0);
}

TEST(InvertByDoubling, AStartAlreadyPastTheRootSearchesFromZero)
{
    CmExponentialCdfProbe probe(1.0, 0.5);
    const double x = mInvertByDoubling(probe, 1e30);
    ASSERT_GE(probe.m_vdVisited.size(), 3u);
    EXPECT_EQ(probe.m_vdVisited[0], 1e30);
    EXPECT_EQ(probe.m_vdVisited[1], 0.0);
    EXPECT_EQ(probe.m_vdVisited[2], 1e30);
    EXPECT_NEAR(x, std::log(2.0), 1e-13);
}

TEST(InvertByDoubling, FindsASmallQuantileToFullRelativePrecision)
{
    // The 1e-20 quantile of the unit exponential is 1e-20 (to 1e-40): far
    // below the default absolute width of 1e-30, above the one it sets.
    CmExponentialCdfProbe probe(1.0, 1e-20);
    probe.mSetAbsoluteToleranceForF(0.0);
    const double x = mInvertByDoubling(probe, 1.0);
    EXPECT_NEAR(x / 1e-20, 1.0, 1e-12);
}

TEST(InvertByDoubling, AValueThatNeverReachesZeroGivesTheMissingValue)
{
    CmMessageCapture messages;
    // A target above 1: the exponential distribution function never gets
    // there.  The doubling stops at the largest doubles.
    CmExponentialCdfProbe probe(1.0, 1.5);
    EXPECT_TRUE(mIsNumericMissing(mInvertByDoubling(probe, 1.0)));
    EXPECT_TRUE(mFlagged50021(messages));
    EXPECT_EQ(probe.m_vdVisited.size(), 1024u);
    EXPECT_EQ(probe.m_vdVisited.back(), std::ldexp(1.0, 1023));
}

TEST(InvertByDoubling, AnEndThatCannotBeEvaluatedGivesTheMissingValue)
{
    CmMessageCapture messages;
    // Below zero up to 1e6, missing beyond 1000: the doubling stops at the
    // missing value (it is not below zero) and the root finder gives up.
    CmMissingBeyond function(1000.0);
    EXPECT_TRUE(mIsNumericMissing(mInvertByDoubling(function, 1.0)));
    EXPECT_TRUE(mFlagged50021(messages));
}

TEST(InvertByDoubling, AStartThatIsNotPositiveIsRefusedWithoutEvaluation)
{
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    const double dInf = std::numeric_limits<double>::infinity();
    for (double dStart : {0.0, -1.0, dNaN, dInf})
    {
        CmAssertCapture capture;
        CmExponentialCdfProbe probe(1.0, 0.5);
        EXPECT_TRUE(mIsNumericMissing(mInvertByDoubling(probe, dStart))) << dStart;
        EXPECT_TRUE(probe.m_vdVisited.empty()) << dStart;
        EXPECT_EQ(capture.mGetCount(), 0);
    }
}
