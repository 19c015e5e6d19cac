// DIGAMI (Applied Statistics AS 187): both expansions, the convergence cap,
// and the values at x = 0.  Accuracy over a grid is measured through the
// public wrapper (tests/specialfunctions/incompletegamma_test.cpp).
#include "qel/specialfunctions.h"
#include "qel/specialroutines.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace
{

struct Digami
{
    double adD[6];
    int iFault;
};

Digami mDigami(double dX, double dP)
{
    Digami result = {{0, 0, 0, 0, 0, 0}, -1};
    double dGpLog = std::lgamma(dP);
    double dGp1Log = std::lgamma(dP + 1.0);
    double dPsip = mPsi(dP);
    double dPsip1 = mPsi(dP + 1.0);
    std::vector<double> vdTrigamma;
    mPsiDerivatives(dP, 1, false, 1, vdTrigamma, nullptr);
    double dPsidp = vdTrigamma[0];
    mPsiDerivatives(dP + 1.0, 1, false, 1, vdTrigamma, nullptr);
    double dPsidp1 = vdTrigamma[0];
    DIGAMI(result.adD, &dX, &dP, &dGpLog, &dGp1Log, &dPsip, &dPsip1, &dPsidp, &dPsidp1,
           &result.iFault);
    return result;
}

} // namespace

TEST(Digami, SeriesBelowTheShapeGivesTheIntegralAndItsDerivatives)
{
    // x = 0.7, p = 1: I = 1 - e^-0.7, dI/dp and d2I/dp2 from mpmath.
    const Digami result = mDigami(0.7, 1.0);
    EXPECT_EQ(result.iFault, 0);
    EXPECT_NEAR(result.adD[5], 1.0 - std::exp(-0.7), 1e-6);
    EXPECT_NEAR(result.adD[0], std::exp(-0.7), 1e-15);
    EXPECT_NEAR(result.adD[1], -std::exp(-0.7), 1e-15);
    EXPECT_NEAR(result.adD[2], -0.483286124151198, 1e-5 * 0.483286124151198);
    EXPECT_NEAR(result.adD[3], 0.223319062984240, 1e-5 * 0.223319062984240);
}

TEST(Digami, ContinuedFractionAboveTheShapeRescalesLargeConvergents)
{
    // x = 10, p = 2.5: the convergents grow past 1e30 within a few dozen
    // terms; the values agree with the series form continued past x = p.
    const Digami result = mDigami(10.0, 2.5);
    EXPECT_EQ(result.iFault, 0);
    // Q(2.5, 10) = erfc(sqrt 10) + e^-10 (2 sqrt(10/pi))(1 + 20/3).
    const double dQ = std::erfc(std::sqrt(10.0)) +
                      std::exp(-10.0) * 2.0 * std::sqrt(10.0 / 3.14159265358979323846) *
                          (1.0 + 20.0 / 3.0);
    EXPECT_NEAR(result.adD[5], 1.0 - dQ, 1e-6 * dQ);
    EXPECT_LT(result.adD[2], 0.0);
}

TEST(Digami, SlowSeriesStopsAtTheCapWithFaultOne)
{
    // x just below a very large p: terms shrink like exp(-k^2/2p), too
    // slowly for 2500 terms.
    const Digami result = mDigami(999999.0, 1e6);
    EXPECT_EQ(result.iFault, 1);
}

TEST(Digami, AtZeroTheIntegralVanishesAndTheDensityTakesItsLimit)
{
    Digami result = mDigami(0.0, 3.0);
    EXPECT_EQ(result.iFault, 0);
    for (double dValue : result.adD)
        EXPECT_EQ(dValue, 0.0);
    result = mDigami(0.0, 0.5);
    EXPECT_TRUE(std::isinf(result.adD[0]));
    EXPECT_GT(result.adD[0], 0.0);
    EXPECT_EQ(result.adD[5], 0.0);
    result = mDigami(0.0, 2.0);
    EXPECT_EQ(result.adD[1], 1.0);
}
