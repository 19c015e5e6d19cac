// Identities across the closed-form families, independent of any reference
// table: the quantile of the distribution function returns the point, the
// two tails add up to 1 where neither is formed by cancellation, and the
// density integrated over an interval (composite Simpson rule) gives the
// difference of the distribution function at its ends.
#include "closedform_families.h"

#include "qel/qelmessaging.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

using closedformtest::Family;
using closedformtest::mFindFamily;

namespace
{
struct Case
{
    int iCode;
    double a, b, c;
    // A length that sets the scale of the points (the family's scale).
    double dScale;
    // Relative accuracy of the distribution function and of the quantile:
    // a few eps for the closed forms, 1e-9 through the normal kernel.
    double dAccuracy;
    // Intervals over which the density is integrated, each free of kinks.
    std::vector<std::pair<double, double>> vIntervals;
};

const double kClosed = 8.0 * DBL_EPSILON;
const double kNormalKernel = 1e-9;

std::vector<Case> mCases()
{
    return {
        {1, 0.0, 1.0, 0.0, 1.0, kClosed, {{-3.0, 2.0}, {5.0, 40.0}}},
        {1, 3.0, 2.0, 0.0, 2.0, kClosed, {{-10.0, 3.0}}},
        {2, 2.0, 1.0, 0.0, 2.0, kClosed, {{1.0, 1.5}, {2.0, 9.0}}},
        {3, 0.0, 1.0, 0.0, 1.0, kClosed, {{-3.0, 1.0}, {1.0, 12.0}}},
        {4, 2.0, 3.0, 0.0, 3.0, kClosed, {{-20.0, 0.0}, {0.0, 5.0}}},
        {5, 1.0, 2.0, 0.0, 2.0, kClosed, {{-5.0, 1.0}, {1.0, 8.0}}},
        {6, -1.0, 0.5, 0.0, 0.5, kClosed, {{-4.0, 0.0}, {0.0, 3.0}}},
        {7, 0.5, 0.4, 1.0, 1.0, kClosed, {{1.2, 2.0}, {2.0, 9.0}}},
        {8, 0.0, 0.5, -2.0, 1.0, kNormalKernel, {{-1.8, -1.0}, {-1.0, 1.0}}},
        {9, 2.5, 3.0, 1.0, 3.0, kClosed, {{1.5, 3.0}, {3.0, 10.0}}},
        {9, 0.8, 1.0, 0.0, 1.0, kClosed, {{0.1, 1.0}, {1.0, 6.0}}},
        {10, -1.0, 3.0, 0.0, 4.0, kClosed, {{-0.5, 2.5}}},
        {11, 0.0, 1.0, 4.0, 4.0, kClosed, {{0.2, 1.0}, {1.0, 3.5}}},
        {12, 2.0, 1.0, 0.0, 2.0, kNormalKernel, {{1.0, 2.0}, {2.0, 7.0}}},
        {13, 0.14, 0.0, 1.0, 1.0, kClosed, {{-3.0, 0.0}, {0.0, 4.0}}},
        {13, 0.5, 1.0, 2.0, 2.0, kClosed, {{-2.5, 1.0}, {1.0, 4.5}}},
        {13, 3.0, 0.0, 1.0, 1.0, kClosed, {{-0.3, 0.3}}},
    };
}

std::string mDescribe(const Family& rFamily, const Case& rCase, double dAt)
{
    std::ostringstream os;
    os.precision(17);
    os << rFamily.pszName << " (" << rCase.a << ", " << rCase.b << ", " << rCase.c << ") at "
       << dAt;
    return os.str();
}

const double kProbabilities[] = {0.001, 0.01, 0.1, 0.25, 0.4, 0.5, 0.6, 0.75, 0.9, 0.99, 0.999};
} // namespace

TEST(ClosedFormIdentities, QuantileOfTheDistributionFunctionReturnsThePoint)
{
    CmAssertCapture capture;
    double dWorst = 0.0;
    std::string sWorst;
    for (const Case& rCase : mCases())
    {
        const Family* pFamily = mFindFamily(rCase.iCode);
        ASSERT_NE(pFamily, nullptr);
        for (double p : kProbabilities)
        {
            const double x = pFamily->pfnInvCdf(p, rCase.a, rCase.b, rCase.c);
            const double dP = pFamily->pfnCdf(x, rCase.a, rCase.b, rCase.c, false);
            const double dBack = pFamily->pfnInvCdf(dP, rCase.a, rCase.b, rCase.c);
            // A probability known to relative accuracy e moves the point by
            // e p / density; the quantile adds its own e |x|.
            const double dDensity = pFamily->pfnPdf(x, rCase.a, rCase.b, rCase.c);
            const double dTol =
                4.0 * rCase.dAccuracy * (std::fabs(x) + rCase.dScale + p / dDensity);
            const double dErr = std::fabs(dBack - x);
            EXPECT_LE(dErr, dTol) << mDescribe(*pFamily, rCase, x) << " p " << p;
            if (dErr / dTol > dWorst)
            {
                dWorst = dErr / dTol;
                sWorst = mDescribe(*pFamily, rCase, x);
            }
        }
    }
    EXPECT_EQ(capture.mGetCount(), 0);
    std::cout << "round trip: worst error " << dWorst << " of its tolerance, " << sWorst << "\n";
}

TEST(ClosedFormIdentities, TailsAddUpToOneAwayFromCancellation)
{
    CmAssertCapture capture;
    for (const Case& rCase : mCases())
    {
        const Family* pFamily = mFindFamily(rCase.iCode);
        for (double p : kProbabilities)
        {
            const double x = pFamily->pfnInvCdf(p, rCase.a, rCase.b, rCase.c);
            const double dLower = pFamily->pfnCdf(x, rCase.a, rCase.b, rCase.c, false);
            const double dUpper = pFamily->pfnCdf(x, rCase.a, rCase.b, rCase.c, true);
            EXPECT_LE(std::fabs(dLower + dUpper - 1.0), 4.0 * DBL_EPSILON)
                << mDescribe(*pFamily, rCase, x) << ": " << dLower << " + " << dUpper;
        }
    }
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(ClosedFormIdentities, DensityIntegratesToTheDistributionFunction)
{
    CmAssertCapture capture;
    double dWorst = 0.0;
    std::string sWorst;
    for (const Case& rCase : mCases())
    {
        const Family* pFamily = mFindFamily(rCase.iCode);
        for (const std::pair<double, double>& rInterval : rCase.vIntervals)
        {
            const double dLo = rInterval.first, dHi = rInterval.second;
            // Composite Simpson rule on 2000 panels: error h^4 (dHi - dLo)
            // max|f''''| / 180, below 1e-11 for these smooth pieces.
            const int n = 2000;
            const double h = (dHi - dLo) / n;
            double dSum = pFamily->pfnPdf(dLo, rCase.a, rCase.b, rCase.c) +
                          pFamily->pfnPdf(dHi, rCase.a, rCase.b, rCase.c);
            for (int i = 1; i < n; ++i)
                dSum += (i % 2 ? 4.0 : 2.0) * pFamily->pfnPdf(dLo + i * h, rCase.a, rCase.b, rCase.c);
            const double dIntegral = dSum * h / 3.0;
            const double dExpected = pFamily->pfnCdf(dHi, rCase.a, rCase.b, rCase.c, false) -
                                     pFamily->pfnCdf(dLo, rCase.a, rCase.b, rCase.c, false);
            const double dErr = std::fabs(dIntegral - dExpected);
            const double dTol = 1e-10 * dExpected + 4.0 * rCase.dAccuracy;
            EXPECT_LE(dErr, dTol) << mDescribe(*pFamily, rCase, dLo) << " to " << dHi << ": "
                                  << dIntegral << " against " << dExpected;
            if (dErr / dExpected > dWorst)
            {
                dWorst = dErr / dExpected;
                sWorst = mDescribe(*pFamily, rCase, dLo) + " to " + std::to_string(dHi);
            }
        }
    }
    EXPECT_EQ(capture.mGetCount(), 0);
    std::cout << "integrated density: worst relative error " << dWorst << ", " << sWorst << "\n";
}
