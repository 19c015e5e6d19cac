// The Tukey lambda family: the closed cases (lambda 0, 1 and 2), the support
// of a positive lambda, the root search for the density and the distribution
// function, the quantile formula with its overflow handler, the domain error
// that a negative lambda lets through, and the function object itself.
#include "qel/closedform.h"

#include "qelmath/distributions/closedform_lambda.h"

#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <string>

namespace
{
const double kMissing = mGetMissingValueCode();
} // namespace

TEST(LambdaFlat, ClosedCasesOfTheDensity)
{
    CmAssertCapture capture;
    EXPECT_EQ(mLambdaPdf(0.0, 1.0, 0.0, 1.0), 0.5);
    EXPECT_EQ(mLambdaPdf(0.0, 2.0, 0.0, 1.0), 1.0);
    EXPECT_EQ(mLambdaPdf(1.0, 1.0, 0.0, 1.0), 0.0);
    EXPECT_EQ(mLambdaPdf(-1.0, 1.0, 0.0, 1.0), 0.0);
    EXPECT_EQ(mLambdaPdf(0.5, 2.0, 0.0, 1.0), 0.0);
    EXPECT_EQ(mLambdaPdf(0.49, 2.0, 0.0, 1.0), 1.0);
    // With location and scale the density is divided by the scale.
    EXPECT_EQ(mLambdaPdf(3.0, 1.0, 2.0, 4.0), 0.125);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(LambdaFlat, LambdaWithinEpsIsTheLogistic)
{
    for (double dLambda : {0.0, 1e-17, -2e-16})
    {
        for (double x : {-3.0, 0.0, 0.7, 12.0})
        {
            EXPECT_EQ(mLambdaPdf(x, dLambda, 1.0, 2.0), mLogisticPdf((x - 1.0) / 2.0, 0.0, 1.0) / 2.0);
            EXPECT_EQ(mLambdaCdf(x, dLambda, 1.0, 2.0, false),
                      mLogisticCdf((x - 1.0) / 2.0, 0.0, 1.0, false));
            EXPECT_EQ(mLambdaCdf(x, dLambda, 1.0, 2.0, true),
                      mLogisticCdf((1.0 - x) / 2.0, 0.0, 1.0, false));
        }
        EXPECT_EQ(mLambdaInvCdf(0.3, dLambda, 1.0, 2.0), mLogisticInvCdf(0.3, 0.0, 1.0) * 2.0 + 1.0);
    }
}

TEST(LambdaFlat, DistributionFunctionAtTheCentreThroughTheRootFinder)
{
    CmAssertCapture capture;
    EXPECT_EQ(mLambdaCdf(0.0, 0.14, 0.0, 1.0, false), 0.5);
    EXPECT_EQ(mLambdaCdf(0.0, 0.14, 0.0, 1.0, true), 0.5);
    EXPECT_EQ(mLambdaCdf(5.0, 3.0, 5.0, 0.25, false), 0.5);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(LambdaFlat, RootSearchAgreesWithAClosedQuantile)
{
    // lambda 1/2: Q(u) = 2 (sqrt(u) - sqrt(1 - u)); Q(0.36) = 2 (0.6 - 0.8).
    EXPECT_NEAR(mLambdaCdf(-0.4, 0.5, 0.0, 1.0, false), 0.36, 2e-16);
    EXPECT_NEAR(mLambdaCdf(0.4, 0.5, 0.0, 1.0, true), 0.36, 2e-16);
    EXPECT_NEAR(mLambdaCdf(0.4, 0.5, 0.0, 1.0, false), 0.64, 2e-16);
    // Density 1 / (0.36^-1/2 + 0.64^-1/2) = 12/35.
    EXPECT_NEAR(mLambdaPdf(-0.4, 0.5, 0.0, 1.0), 12.0 / 35.0, 4e-16);
    EXPECT_NEAR(mLambdaPdf(1.0 + 3.0 * -0.4, 0.5, 1.0, 3.0), 12.0 / 35.0 / 3.0, 4e-16);
}

TEST(LambdaFlat, FarTailIsAccurateOnlyToTheBracketWidthOfTheSearch)
{
    // The search also stops once its bracket is narrower than the default
    // absolute tolerance 1e-30, so a tail below that is known to about 1e-30.
    // lambda 1e-10 is nearly the logistic: at z = -50 the tail is
    // 1.9287496068702010e-22 (mpmath, root of Q at 50 digits).
    const double dTail = mLambdaCdf(-50.0, 1e-10, 0.0, 1.0, false);
    EXPECT_NEAR(dTail, 1.9287496068702010e-22, 1e-28);
    EXPECT_GT(std::fabs(dTail - 1.9287496068702010e-22), 1e-36);
    // At z = -720 the true tail is about 2.4e-313; the search ends on the
    // bracket width with a u below 1e-30, never on an overflow of u^(lambda-1).
    const double dFar = mLambdaCdf(-720.0, 1e-10, 0.0, 1.0, false);
    EXPECT_GE(dFar, 0.0);
    EXPECT_LE(dFar, 1e-30);
    const double dDensity = mLambdaPdf(-720.0, 1e-10, 0.0, 1.0);
    EXPECT_GE(dDensity, 0.0);
    EXPECT_LE(dDensity, 1e-30);
}

TEST(LambdaFlat, SupportOfAPositiveLambdaExcludesItsEnds)
{
    CmAssertCapture capture;
    // lambda 0.5: support (-2, 2).
    EXPECT_EQ(mLambdaCdf(-2.0, 0.5, 0.0, 1.0, false), 0.0);
    EXPECT_EQ(mLambdaCdf(2.0, 0.5, 0.0, 1.0, false), 1.0);
    EXPECT_EQ(mLambdaCdf(-2.0, 0.5, 0.0, 1.0, true), 1.0);
    EXPECT_EQ(mLambdaCdf(7.0, 0.5, 0.0, 1.0, true), 0.0);
    EXPECT_EQ(mLambdaPdf(-2.0, 0.5, 0.0, 1.0), 0.0);
    EXPECT_EQ(mLambdaPdf(2.5, 0.5, 0.0, 1.0), 0.0);
    // lambda 1 and 2: uniform on (-1, 1) and (-1/2, 1/2).
    EXPECT_EQ(mLambdaCdf(0.5, 1.0, 0.0, 1.0, false), 0.75);
    EXPECT_EQ(mLambdaCdf(0.5, 1.0, 0.0, 1.0, true), 0.25);
    EXPECT_EQ(mLambdaCdf(0.25, 2.0, 0.0, 1.0, false), 0.75);
    EXPECT_EQ(mLambdaCdf(0.25, 2.0, 0.0, 1.0, true), 0.25);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(LambdaFlat, NegativeLambdaLetsTheDomainErrorThrough)
{
    for (int i = 0; i < 2; ++i)
    {
        try
        {
            if (i == 0)
                mLambdaPdf(0.3, -0.5, 0.0, 1.0);
            else
                mLambdaCdf(0.3, -0.5, 0.0, 1.0, false);
            ADD_FAILURE() << "no exception from " << (i == 0 ? "mLambdaPdf" : "mLambdaCdf");
        }
        catch (const CmInvalidArgument& e)
        {
            EXPECT_EQ(e.mGetMessage().mGetString(), "Zero raised to a negative power.");
            EXPECT_EQ(std::string(e.mGetClassName()), "CmInvalidArgument");
        }
    }
}

TEST(LambdaFlat, QuantileFormulaAndItsClosedCases)
{
    CmAssertCapture capture;
    EXPECT_EQ(mLambdaInvCdf(0.75, 1.0, 0.0, 1.0), 0.5);
    EXPECT_EQ(mLambdaInvCdf(0.75, 2.0, 0.0, 1.0), 0.25);
    EXPECT_EQ(mLambdaInvCdf(0.75, 2.0, 1.0, 4.0), 2.0);
    EXPECT_NEAR(mLambdaInvCdf(0.36, 0.5, 0.0, 1.0), -0.4, 4e-16);
    EXPECT_EQ(mLambdaInvCdf(0.5, 0.14, 3.0, 2.0), 3.0);
    // A negative lambda is a formula here: u^-1 - (1 - u)^-1 over -1.
    EXPECT_NEAR(mLambdaInvCdf(0.25, -1.0, 0.0, 1.0), -(4.0 - 4.0 / 3.0), 1e-15);
    // No assertion on the scale or the probability.
    EXPECT_EQ(mLambdaInvCdf(0.75, 1.0, 0.0, -2.0), -1.0);
    EXPECT_EQ(mLambdaInvCdf(1.5, 1.0, 0.0, 1.0), 2.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(LambdaFlat, QuantileOverflowAndMissingPassThrough)
{
    CmAssertCapture capture;
    // 1e-300^-2 overflows: the missing value.
    EXPECT_EQ(mLambdaInvCdf(1e-300, -2.0, 0.0, 1.0), kMissing);
    // The logistic quantile at 0 is the missing value; it is not scaled.
    EXPECT_EQ(mLambdaInvCdf(0.0, 0.0, 3.0, 2.0), kMissing);
    EXPECT_EQ(mLambdaInvCdf(1.0, 0.0, 3.0, 2.0), kMissing);
    // The ends of a positive lambda are the ends of the support.
    EXPECT_EQ(mLambdaInvCdf(0.0, 0.5, 0.0, 1.0), -2.0);
    EXPECT_EQ(mLambdaInvCdf(1.0, 0.5, 0.0, 1.0), 2.0);
    EXPECT_EQ(capture.mGetCount(), 0);
    // A negative lambda at 0 meets 0 raised to a negative power.
    EXPECT_THROW(mLambdaInvCdf(0.0, -0.5, 0.0, 1.0), CmInvalidArgument);
}

TEST(LambdaTransform, IsTheStandardQuantileLessTheTargetInTheBase)
{
    CmLambdaTransform transform(0.5);
    EXPECT_NEAR(transform(0.36), -0.4, 4e-16);
    transform.mSetTarget(-0.4);
    EXPECT_NEAR(transform(0.36), 0.0, 4e-16);
    EXPECT_EQ(transform(0.5), 0.4);
    // Convergence is relative to the target held in the base.
    EXPECT_TRUE(transform.mIsConvergedForF(0.4 * DBL_EPSILON));
    EXPECT_FALSE(transform.mIsConvergedForF(0.4 * 4.0 * DBL_EPSILON));
    CmLambdaTransform negative(-1.0);
    EXPECT_THROW(negative(0.0), CmInvalidArgument);
    EXPECT_THROW(negative(1.0), CmInvalidArgument);
    EXPECT_EQ(negative(0.5), 0.0);
}
