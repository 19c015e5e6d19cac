// The incomplete gamma ratio routine XGRATIO: one test per regime of its
// table (each naming its branch), the three accuracy settings, the failure
// marker, and the small-shape routine GRAT1.  Reference values:
// gratio_branches.txt (mpmath, 60 digits).
#include "qel/specialroutines.h"
#include "support/reftable.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace
{

struct Tails
{
    double dP;
    double dQ;
};

Tails mGratio(double dA, double dX, int iInd)
{
    Tails tails = {-1.0, -1.0};
    XGRATIO(&dA, &dX, &tails.dP, &tails.dQ, &iInd);
    return tails;
}

// Runs every row of the given branch and checks both tails to dBound
// relative; where the reference is below 1e-300 the result must be below
// it too (the limits of branches 12 and 13 are checked exactly in their
// tests).  Returns the number of rows.
int mCheckBranch(int iBranch, double dBound)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("gratio_branches.txt");
    std::ostringstream name;
    name << "XGRATIO branch " << iBranch;
    qeltest::WorstError worst(name.str());
    int iRows = 0;
    for (const std::vector<double>& row : table.rows)
    {
        if (static_cast<int>(row[0]) != iBranch)
            continue;
        ++iRows;
        const int iInd = static_cast<int>(row[1]);
        const Tails tails = mGratio(row[2], row[3], iInd);
        std::ostringstream os;
        os.precision(17);
        os << "ind=" << iInd << " a=" << row[2] << " x=" << row[3];
        const double adComputed[2] = {tails.dP, tails.dQ};
        for (int k = 0; k < 2; ++k)
        {
            const double dRef = row[4 + k];
            if (dRef < 1e-300)
            {
                EXPECT_LE(adComputed[k], 1e-300) << os.str() << " tail " << k;
                continue;
            }
            const double dErr = qeltest::mRelativeError(adComputed[k], dRef);
            worst.mUpdate(dErr, qeltest::mUlpDistance(adComputed[k], dRef), os.str());
            EXPECT_LE(dErr, dBound) << os.str() << " tail " << k << " got " << adComputed[k]
                                    << " ref " << dRef;
        }
    }
    std::cout << worst.mReport() << "\n";
    return iRows;
}

// exp of an exponent near -360 carries about 360 ulp: the far tails of the
// large-shape branch reach 1.1e-13.
const double kFullAccuracy = 5e-13;

} // namespace

TEST(Xgratio, FiniteSumsForWholeShapeBetweenOneAndBig)
{
    EXPECT_EQ(mCheckBranch(1, kFullAccuracy), 3);
    // Q(3, 5) = e^-5 (1 + 5 + 12.5).
    const Tails tails = mGratio(3.0, 5.0, 0);
    EXPECT_NEAR(tails.dQ, std::exp(-5.0) * 18.5, 1e-16);
}

TEST(Xgratio, FiniteSumsForHalfWholeShapeStartFromErfc)
{
    EXPECT_EQ(mCheckBranch(2, kFullAccuracy), 3);
}

TEST(Xgratio, ShapeOneHalfIsTheErrorFunctionOfRootX)
{
    EXPECT_EQ(mCheckBranch(3, kFullAccuracy), 4);
    double dRoot = std::sqrt(2.0);
    int iZero = 0;
    EXPECT_EQ(mGratio(0.5, 2.0, 0).dQ, ERFC1(&iZero, &dRoot));
}

TEST(Xgratio, SmallShapeSmallPointTaylorSeriesInBothForms)
{
    // x < 0.25 with a ln x below and above -0.13394, x >= 0.25 with a below
    // and above x/2.59: the P form and the REXP form of Q.
    EXPECT_EQ(mCheckBranch(4, kFullAccuracy), 5);
}

TEST(Xgratio, SmallShapeLargePointContinuedFractionWithGam1)
{
    EXPECT_EQ(mCheckBranch(5, kFullAccuracy), 3);
}

TEST(Xgratio, ModerateShapeTaylorSeriesForPOverR)
{
    EXPECT_EQ(mCheckBranch(6, kFullAccuracy), 4);
}

TEST(Xgratio, ModerateShapeContinuedFractionBelowX0)
{
    EXPECT_EQ(mCheckBranch(7, kFullAccuracy), 3);
}

TEST(Xgratio, ModerateShapeAsymptoticSeriesFromX0)
{
    EXPECT_EQ(mCheckBranch(8, kFullAccuracy), 3);
}

TEST(Xgratio, LargeShapeTemmeExpansionAtTheTransitionPoint)
{
    // |1 - x/a| <= e0/sqrt(a), e0 = 0.00025.
    EXPECT_EQ(mCheckBranch(9, kFullAccuracy), 3);
}

TEST(Xgratio, LargeShapeTemmeExpansionWithScaledErfc)
{
    // |1 - x/a| <= 0.4, with the shorter sums for |1 - x/a| <= 1e-3.
    EXPECT_EQ(mCheckBranch(10, kFullAccuracy), 4);
}

TEST(Xgratio, LargeShapeFarFromTransitionStirlingCorrectedR)
{
    // r from (((0.75 t - 1) t + 3.5) t - 105)/(1260 a), then the Taylor
    // series, the continued fraction or the asymptotic series.
    EXPECT_EQ(mCheckBranch(11, kFullAccuracy), 4);
}

TEST(Xgratio, RlogCutOffTakesTheExactLimits)
{
    // RLOG(x/a) >= 700/a: P = 0, Q = 1 below a; P = 1, Q = 0 above.
    EXPECT_EQ(mCheckBranch(12, kFullAccuracy), 2);
    const Tails lower = mGratio(1000.0, 100.0, 0);
    EXPECT_EQ(lower.dP, 0.0);
    EXPECT_EQ(lower.dQ, 1.0);
    const Tails upper = mGratio(1000.0, 5000.0, 0);
    EXPECT_EQ(upper.dP, 1.0);
    EXPECT_EQ(upper.dQ, 0.0);
}

TEST(Xgratio, UnderflowOfRTakesTheExactLimits)
{
    EXPECT_EQ(mCheckBranch(13, kFullAccuracy), 2);
    for (double dA : {0.3, 5.3})
    {
        const Tails tails = mGratio(dA, 1000.0, 0);
        EXPECT_EQ(tails.dP, 1.0) << dA;
        EXPECT_EQ(tails.dQ, 0.0) << dA;
    }
}

TEST(Xgratio, SixDigitSettingUsesBig14AndX017)
{
    EXPECT_EQ(mCheckBranch(14, 1e-6), 7);
}

TEST(Xgratio, ThreeDigitSettingUsesBig10AndX0NinePointSeven)
{
    // Any ind other than 0 and 1 asks for three digits.
    EXPECT_EQ(mCheckBranch(15, 1e-3), 7);
    const Tails seven = mGratio(11.0, 9.0, 7);
    const Tails two = mGratio(11.0, 9.0, 2);
    EXPECT_EQ(seven.dP, two.dP);
    EXPECT_EQ(seven.dQ, two.dQ);
}

TEST(Xgratio, ZeroShapeAndZeroPointGiveTheFailureMarker)
{
    EXPECT_EQ(mGratio(0.0, 0.0, 0).dP, 2.0);
    EXPECT_EQ(mGratio(-1.0, 1.0, 0).dP, 2.0);
    EXPECT_EQ(mGratio(1.0, -1.0, 0).dP, 2.0);
}

TEST(Xgratio, ZeroProductGivesTheLimits)
{
    Tails tails = mGratio(2.0, 0.0, 0);
    EXPECT_EQ(tails.dP, 0.0);
    EXPECT_EQ(tails.dQ, 1.0);
    tails = mGratio(0.0, 2.0, 0);
    EXPECT_EQ(tails.dP, 1.0);
    EXPECT_EQ(tails.dQ, 0.0);
}

TEST(Xgratio, HugeShapeAtTheTransitionIsIndeterminate)
{
    // a e^2 > 3.28e-3: in the transition form, in the general Temme form
    // and behind the RLOG cut-off the routine gives up with the marker.
    EXPECT_EQ(mGratio(1e30, 1e30, 0).dP, 2.0);
    EXPECT_EQ(mGratio(1e30, std::nextafter(1e30, 0.0), 0).dP, 2.0);
    EXPECT_EQ(mGratio(1e40, 1e40 * (1.0 - 2.0 * DBL_EPSILON), 0).dP, 2.0);
}

TEST(Xgratio, ExportedUnderTheSecondName)
{
    double dA = 7.5;
    double dX = 6.0;
    double dP = 0.0;
    double dQ = 0.0;
    int iInd = 0;
    GRATIO(&dA, &dX, &dP, &dQ, &iInd);
    const Tails tails = mGratio(7.5, 6.0, 0);
    EXPECT_EQ(dP, tails.dP);
    EXPECT_EQ(dQ, tails.dQ);
}

TEST(Xgratio, NanArgumentsEndWithoutHanging)
{
    const double dNan = std::nan("");
    EXPECT_TRUE(std::isnan(mGratio(dNan, 3.0, 0).dP));
    EXPECT_TRUE(std::isnan(mGratio(3.3, dNan, 0).dP));
    EXPECT_TRUE(std::isnan(mGratio(0.3, dNan, 0).dP));
    EXPECT_TRUE(std::isnan(mGratio(dNan, 50.0, 0).dP));
}

TEST(Grat1, MatchesTheRatioForSmallShapes)
{
    const double dEps = 1e-15;
    struct Point
    {
        double dA;
        double dX;
        double dP;
    } const aPoints[] = {
        // P(a, x) from gratio_branches.txt.
        {0.3, 0.1, 5.4591284959179650488e-1}, {0.01, 0.1, 9.8186468394901265605e-1},
        {0.1, 0.5, 9.4140244589013351866e-1}, {0.3, 2.0, 9.7797401917285298559e-1},
        {0.5, 2.0, 9.544997361036415856e-1},  {0.5, 0.1, 3.4527915398142297956e-1}};
    for (const Point& point : aPoints)
    {
        double dA = point.dA;
        double dX = point.dX;
        double dR = std::exp(dA * std::log(dX) - dX - std::lgamma(dA));
        double dEpsilon = dEps;
        double dP = -1.0;
        double dQ = -1.0;
        GRAT1(&dA, &dX, &dR, &dP, &dQ, &dEpsilon);
        EXPECT_NEAR(dP, point.dP, 1e-14) << point.dA << " " << point.dX;
        EXPECT_NEAR(dP + dQ, 1.0, 2e-16) << point.dA << " " << point.dX;
    }
}

TEST(Grat1, ZeroProductGivesTheLimits)
{
    double dA = 0.5;
    double dX = 0.0;
    double dR = 0.0;
    double dEps = 1e-15;
    double dP = -1.0;
    double dQ = -1.0;
    GRAT1(&dA, &dX, &dR, &dP, &dQ, &dEps);
    EXPECT_EQ(dP, 0.0);
    EXPECT_EQ(dQ, 1.0);
    dA = 0.0;
    dX = 1.0;
    GRAT1(&dA, &dX, &dR, &dP, &dQ, &dEps);
    EXPECT_EQ(dP, 1.0);
    EXPECT_EQ(dQ, 0.0);
}
