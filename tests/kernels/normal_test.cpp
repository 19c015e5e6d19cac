// The normal kernel: density, erfc branches, both tails and their exact
// limits, the quantile pair with its argument tests, codes and routine names,
// and the AS 111 starting value.
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/normal.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <algorithm>
#include <cmath>
#include <limits>

namespace
{
constexpr double kSentinel = 1.7976931348623157e+308;

double mRel(double dComputed, double dReference)
{
    return std::fabs(dComputed - dReference) / std::fabs(dReference);
}
} // namespace

TEST(NormalDensity, IsTheStandardNormalDensity)
{
    EXPECT_EQ(normal_density(0.0), 0.39894228040143265);
    EXPECT_LT(mRel(normal_density(1.0), 0.241970724519143349797830192936), 1e-15);
    EXPECT_EQ(normal_density(-1.5), normal_density(1.5));
    EXPECT_EQ(normal_density(40.0), 0.0);
}

TEST(NormalErfc, FixedValuesOutsideTheComputedRange)
{
    EXPECT_EQ(normal_erfc(26.5695), 0.0);
    EXPECT_EQ(normal_erfc(1e10), 0.0);
    EXPECT_EQ(normal_erfc(-5.626), 2.0);
    EXPECT_EQ(normal_erfc(9e-15), 1.0);
    EXPECT_EQ(normal_erfc(-9e-15), 1.0);
    EXPECT_EQ(normal_erfc(0.0), 1.0);
}

TEST(NormalErfc, IsTheUpperIncompleteGammaRatioOfShapeOneHalf)
{
    EXPECT_LT(mRel(normal_erfc(1.0), 0.157299207050285130658779364917), 1e-9);
    // For t < 0 it is 1 plus the complement of the computed upper ratio.
    EXPECT_LT(mRel(normal_erfc(-1.0), 2.0 - 0.157299207050285130658779364917), 1e-11);
    // Just inside the cut-off the value is still formed (and may be 0 with
    // code 1 once it falls below the floor).
    EXPECT_GE(normal_erfc(26.5694), 0.0);
    EXPECT_LT(mRel(normal_erfc(-5.625), 2.0), 1e-15);
}

TEST(NormalDf, ZeroGivesExactHalvesWithoutEnteringGammaDf)
{
    kernel_method_code = 77;
    double dLower = -1.0, dUpper = -1.0;
    normal_df(0.0, &dLower, &dUpper);
    EXPECT_EQ(dLower, 0.5);
    EXPECT_EQ(dUpper, 0.5);
    EXPECT_EQ(kernel_error_code, 0);
    // gamma_df would have named itself and cleared the route.
    EXPECT_STREQ(kernel_routine_name, "normal_df");
    EXPECT_EQ(kernel_method_code, 77);

    normal_df(-0.0, &dLower, &dUpper);
    EXPECT_EQ(dLower, 0.5);
    EXPECT_EQ(dUpper, 0.5);
}

TEST(NormalDf, AwayFromZeroTheNestedGammaDfRuns)
{
    double dLower = -1.0, dUpper = -1.0;
    normal_df(1.96, &dLower, &dUpper);
    EXPECT_STREQ(kernel_routine_name, "gamma_df");
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_LT(mRel(dUpper, 0.0249978951482204362128236923956), 1e-9);
    EXPECT_EQ(dLower, 1.0 - dUpper);

    normal_df(-1.0, &dLower, &dUpper);
    EXPECT_LT(mRel(dLower, 0.158655253931457051414767454368), 1e-9);
    EXPECT_EQ(dUpper, 1.0 - dLower);
}

TEST(NormalDf, FarTailsAreExactlyZeroAndOne)
{
    double dLower = -1.0, dUpper = -1.0;
    normal_df(38.0, &dLower, &dUpper);
    EXPECT_EQ(dUpper, 0.0);
    EXPECT_EQ(dLower, 1.0);
    normal_df(-38.0, &dLower, &dUpper);
    EXPECT_EQ(dLower, 0.0);
    EXPECT_EQ(dUpper, 1.0);
    normal_df(std::numeric_limits<double>::infinity(), &dLower, &dUpper);
    EXPECT_EQ(dUpper, 0.0);
    EXPECT_EQ(dLower, 1.0);
    normal_df(-std::numeric_limits<double>::infinity(), &dLower, &dUpper);
    EXPECT_EQ(dLower, 0.0);
    EXPECT_EQ(dUpper, 1.0);
}

TEST(NormalDf, MinusThirtySixHasANonZeroLowerTail)
{
    double dLower = -1.0, dUpper = -1.0;
    normal_df(-36.0, &dLower, &dUpper);
    EXPECT_GT(dLower, 0.0);
    EXPECT_LT(mRel(dLower, 4.18262406579728333174233233181e-284), 1e-9);
    EXPECT_EQ(dUpper, 1.0);
    EXPECT_EQ(kernel_error_code, 0);
}

TEST(NormalDf, TailBelowTheFloorIsZeroWithCodeOne)
{
    double dLower = -1.0, dUpper = -1.0;
    normal_df(37.5, &dLower, &dUpper);
    EXPECT_EQ(dUpper, 0.0);
    EXPECT_EQ(dLower, 1.0);
    EXPECT_EQ(kernel_error_code, 1);
    EXPECT_STREQ(kernel_routine_name, "gamma_df");
    EXPECT_FALSE(kernel_take_failure());
}

TEST(NormalDf, NestedFailureLeavesThePositiveSentinelInBothTails)
{
    double dLower = -1.0, dUpper = -1.0;
    normal_df(std::numeric_limits<double>::quiet_NaN(), &dLower, &dUpper);
    EXPECT_EQ(dLower, kSentinel);
    EXPECT_EQ(dUpper, kSentinel);
    EXPECT_EQ(kernel_error_code, 2);
    EXPECT_STREQ(kernel_routine_name, "gamma_df");
    EXPECT_TRUE(kernel_take_failure());
}

TEST(NormalUpperQuant, HalfGivesExactlyZero)
{
    double dZ = -1.0;
    normal_upper_quant(0.5, &dZ);
    EXPECT_EQ(dZ, 0.0);
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_STREQ(kernel_routine_name, "normal_upper_quant");
}

TEST(NormalUpperQuant, NearTheCentreTheQuantileIsLinear)
{
    const double p = 0.4999999;
    double dZ = -1.0;
    kernel_terms = 5;
    normal_upper_quant(p, &dZ);
    EXPECT_EQ(dZ, (1.0 - (p + p)) * 1.2533141373155003);
    EXPECT_EQ(kernel_terms, 0); // no Newton rounds
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_LT(mRel(dZ, 2.50662827463102675176567466382e-7), 1e-9);
}

TEST(NormalUpperQuant, JustOutsideTheLinearBandNewtonRuns)
{
    const double p = 0.499994; // d = 1.2e-5, just above 1e-5
    ASSERT_GT(1.0 - (p + p), 1e-5);
    double dZ = -1.0;
    normal_upper_quant(p, &dZ);
    EXPECT_GE(kernel_terms, 1);
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_NE(dZ, (1.0 - (p + p)) * 1.2533141373155003);
    EXPECT_LT(mRel(dZ, 1.503976964835298897258548604046e-5), 1e-9);
}

TEST(NormalUpperQuant, BothTargetsOfNewtonGiveTheQuantile)
{
    struct Case
    {
        double p, z;
    } cases[] = {
        {0.3, 0.5244005127080407840382893250251}, // p above 0.25: lower-tail target
        {0.025, 1.959963984540054235524594430521},
        {1e-10, 6.361340902404056204695375828265},
        {1e-100, 21.27345356096532429511721218866}, // the smallest p admitted
    };
    for (const Case& c : cases)
    {
        double dZ = -1.0;
        normal_upper_quant(c.p, &dZ);
        EXPECT_EQ(kernel_error_code, 0) << c.p;
        EXPECT_LT(mRel(dZ, c.z), 1e-9) << c.p;
    }
}

TEST(NormalUpperQuant, ProbabilityOutsideItsRangeIsCodeTwo)
{
    for (double p : {0.5000001, 0.9, 1e-101, 0.0, -1.0, std::numeric_limits<double>::quiet_NaN()})
    {
        double dZ = -1.0;
        normal_upper_quant(p, &dZ);
        EXPECT_EQ(dZ, -kSentinel) << p;
        EXPECT_EQ(kernel_error_code, 2) << p;
        EXPECT_STREQ(kernel_routine_name, "normal_upper_quant");
    }
    kernel_take_failure();
}

TEST(InvNormalDf, BelowTheSmallestProbabilityFailsInItsOwnName)
{
    double dZ = -1.0;
    inv_normal_df(1e-101, &dZ);
    EXPECT_EQ(kernel_error_code, 2);
    EXPECT_STREQ(kernel_routine_name, "inv_normal_df");
    EXPECT_EQ(dZ, -kSentinel);

    dZ = -1.0;
    inv_normal_df(1.5, &dZ);
    EXPECT_EQ(kernel_error_code, 2);
    EXPECT_STREQ(kernel_routine_name, "inv_normal_df");
    EXPECT_EQ(dZ, -kSentinel);
    kernel_take_failure();
}

TEST(InvNormalDf, ProbabilityOneFailsOneLevelDown)
{
    double dZ = -1.0;
    inv_normal_df(1.0, &dZ);
    EXPECT_EQ(kernel_error_code, 2);
    EXPECT_STREQ(kernel_routine_name, "normal_upper_quant");
    EXPECT_EQ(dZ, -kSentinel);
    kernel_take_failure();
}

TEST(InvNormalDf, LowerQuantilesOnBothSides)
{
    double dZ = 0.0;
    inv_normal_df(0.975, &dZ);
    EXPECT_EQ(kernel_error_code, 0);
    // The last routine to report is the gamma_df of the last Newton round.
    EXPECT_STREQ(kernel_routine_name, "gamma_df");
    EXPECT_LT(mRel(dZ, 1.959963984540054235524594430521), 1e-9);
    inv_normal_df(0.025, &dZ);
    EXPECT_LT(mRel(dZ, -1.959963984540054235524594430521), 1e-9);
    inv_normal_df(0.5, &dZ);
    EXPECT_EQ(dZ, 0.0);
    EXPECT_STREQ(kernel_routine_name, "normal_upper_quant");
    inv_normal_df(1e-100, &dZ);
    EXPECT_LT(mRel(dZ, -21.27345356096532429511721218866), 1e-9);
}

TEST(InvNormalDf, QuantileOfTheDistributionFunctionReturnsThePoint)
{
    // Each point is sought back from its smaller tail: a lower tail near 1
    // carries only the absolute precision of its complement.
    for (double x = -8.0; x <= 8.0; x += 0.125)
    {
        double dLower = 0.0, dUpper = 0.0;
        normal_df(x, &dLower, &dUpper);
        double dZ = 0.0;
        if (x <= 0.0)
        {
            inv_normal_df(dLower, &dZ);
            EXPECT_NEAR(dZ, x, 1e-9 * std::max(1.0, std::fabs(x))) << x;
        }
        else
        {
            normal_upper_quant(dUpper, &dZ);
            EXPECT_NEAR(dZ, x, 1e-9 * x) << x;
        }
        EXPECT_EQ(kernel_error_code, 0) << x;
    }
}

TEST(NormalQuantileEstimate, OutsideTheOpenIntervalGivesTheNegativeSentinel)
{
    for (double p : {0.0, 1.0, -0.5, 1.5, std::numeric_limits<double>::quiet_NaN()})
    {
        errno = 0;
        double dZ = 1.0;
        normal_quantile_estimate(p, &dZ);
        EXPECT_EQ(dZ, -kSentinel) << p;
        EXPECT_EQ(errno, 33) << p;
    }
}

TEST(NormalQuantileEstimate, IsAS111InTheCentreAndTheTails)
{
    // The tolerances are what AS 111 achieves: about 1e-7 relative down to
    // p = 1e-3, 2e-5 at p = 1e-10.  It is only a starting value.
    struct Case
    {
        double p, z, tol;
    } cases[] = {
        {0.5, 0.0, 0.0},
        {0.975, 1.959963984540054235524594430521, 2e-7},  // central form
        {0.92, 1.405071560309632555950931702755, 2e-7},   // split: |q| = 0.42
        {0.001, -3.090232306167813541540399830945, 2e-7}, // tail form, q < 0
        {0.999, 3.090232306167813541540399830945, 2e-7},  // tail form, q > 0
        {1e-10, -6.361340902404056204695375828265, 3e-5},
    };
    kernel_enter("untouched");
    for (const Case& c : cases)
    {
        errno = 5;
        double dZ = 0.0;
        normal_quantile_estimate(c.p, &dZ);
        EXPECT_EQ(errno, 0);
        EXPECT_NEAR(dZ, c.z, c.tol * std::max(1.0, std::fabs(c.z))) << c.p;
    }
    // It takes no part in the error state.
    EXPECT_STREQ(kernel_routine_name, "untouched");
    EXPECT_EQ(kernel_error_code, 0);
}
