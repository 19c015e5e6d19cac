// The variates of the closed-form distribution objects: the first variates
// after mSetBase(12345) against those that gen_variates_closedform.py derives
// from the replayed uniform stream, with the count of uniforms consumed; and
// 10^5 variates of each class against the object's own distribution function
// by the Kolmogorov-Smirnov test.
#include "qel/distclosedform.h"
#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"

#include "dist_variates_support.h"
#include "support/reftable.h"
#include "support/uniformstream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace
{
// The object of the class with enumeration code iCode, from the parameters
// of a table row through the vector constructor.
std::unique_ptr<CmDist> mMake(int iCode, double dA, double dB, double dC)
{
    switch (iCode)
    {
    case 1: return std::make_unique<CmDistNormal>(std::vector<double>{dA, dB});
    case 2: return std::make_unique<CmDistLogNormal>(std::vector<double>{dA, dB, dC});
    case 4: return std::make_unique<CmDistSmallestExtremeValue>(std::vector<double>{dA, dB});
    case 5: return std::make_unique<CmDistLargestExtremeValue>(std::vector<double>{dA, dB});
    case 6: return std::make_unique<CmDistWeibull>(std::vector<double>{dA, dB, dC});
    case 8: return std::make_unique<CmDistExponential>(std::vector<double>{dA, dB});
    case 10: return std::make_unique<CmDistLogistic>(std::vector<double>{dA, dB});
    case 11: return std::make_unique<CmDistLogLogistic>(std::vector<double>{dA, dB, dC});
    case 18: return std::make_unique<CmDistCauchy>(std::vector<double>{dA, dB});
    case 25: return std::make_unique<CmDistLambda>(std::vector<double>{dA, dB, dC});
    case 26: return std::make_unique<CmDistLaplace>(std::vector<double>{dA, dB});
    case 31: return std::make_unique<CmDistUniform>(std::vector<double>{dA, dB});
    case 32: return std::make_unique<CmDistTriangular>(std::vector<double>{dA, dB, dC});
    default: return nullptr;
    }
}

// The uniform, normal and lognormal variates are the same few IEEE
// operations in the script and here (only the last bits of log, sqrt and exp
// may differ); the inversion classes compare the double formula of the flat
// quantile with the exact quantile at the same uniform, which the closed
// formulas meet to a few units in the last place.  Errors are relative to the
// larger of |value| and 1, the parameters being of order one, so that a
// variate near 0 (location + scale * z with the two terms nearly cancelling)
// is measured on the scale of its terms.
const double kTolerance = 1e-13;

const double kBase = 12345.0;
} // namespace

TEST(DistClosedFormVariates, FirstVariatesReproduceTheReplayedStream)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("variates_closedform.txt");
    ASSERT_GE(table.rows.size(), 200u);
    CmUniformGenerator* pGenerator = CmUniformGenerator::mInstance();
    CmAssertCapture capture;
    std::unique_ptr<CmDist> pDist;
    std::vector<double> vdKey;
    double dWorstFloat = 0.0, dWorstInversion = 0.0;
    int iRows = 0;
    for (const std::vector<double>& row : table.rows)
    {
        ASSERT_EQ(row.size(), 7u);
        const int iCode = static_cast<int>(row[0]);
        const std::vector<double> vdThisKey{row[0], row[1], row[2], row[3]};
        // A new object and a fresh stream at the first row of each case.
        if (row[4] == 0.0)
        {
            ASSERT_NE(vdThisKey, vdKey);
            vdKey = vdThisKey;
            pDist = mMake(iCode, row[1], row[2], row[3]);
            ASSERT_TRUE(pDist) << "code " << iCode;
            ASSERT_TRUE(pDist->mAreParamsValid()) << "code " << iCode;
            pGenerator->mSetBase(kBase);
        }
        ASSERT_EQ(vdThisKey, vdKey);
        const double dExpected = row[5];
        const double dGot = pDist->mGetRandom();
        const double dError = std::fabs(dGot - dExpected) / std::max(std::fabs(dExpected), 1.0);
        EXPECT_LE(dError, kTolerance)
            << "code " << iCode << " (" << row[1] << ", " << row[2] << ", " << row[3]
            << ") index " << row[4] << ": " << dGot << " against " << dExpected;
        EXPECT_EQ(qeltest::mCountDraws(kBase, pGenerator->mGetBase()), static_cast<int>(row[6]))
            << "code " << iCode << " index " << row[4];
        double& rdWorst = (iCode == 1 || iCode == 2 || iCode == 31) ? dWorstFloat : dWorstInversion;
        rdWorst = std::max(rdWorst, dError);
        ++iRows;
    }
    EXPECT_EQ(capture.mGetCount(), 0);
    std::printf("%d variates; worst error %.3g (float routes), %.3g (inversion)\n", iRows,
                dWorstFloat, dWorstInversion);
}

namespace
{
// 10^5 variates at a fixed base, Kolmogorov-Smirnov against the object's own
// lower tail; the p-value is a fixed number for the fixed base.
void mExpectKolmogorovSmirnov(const CmDist& rDist, const char* pszName)
{
    CmAssertCapture capture;
    qeltest::mExpectKsOfVariates(rDist, pszName, 20240611.0);
    EXPECT_EQ(capture.mGetCount(), 0) << pszName;
}
} // namespace

TEST(DistClosedFormVariates, NormalPassesKolmogorovSmirnov)
{
    mExpectKolmogorovSmirnov(CmDistNormal(1.5, 2.0), "normal(1.5, 2)");
}

TEST(DistClosedFormVariates, LogNormalPassesKolmogorovSmirnov)
{
    mExpectKolmogorovSmirnov(CmDistLogNormal(0.5, 0.75, 2.0), "lognormal(0.5, 0.75, 2)");
}

TEST(DistClosedFormVariates, SmallestExtremeValuePassesKolmogorovSmirnov)
{
    mExpectKolmogorovSmirnov(CmDistSmallestExtremeValue(3.0, 2.0), "smallest extreme value(3, 2)");
}

TEST(DistClosedFormVariates, LargestExtremeValuePassesKolmogorovSmirnov)
{
    mExpectKolmogorovSmirnov(CmDistLargestExtremeValue(3.0, 2.0), "largest extreme value(3, 2)");
}

TEST(DistClosedFormVariates, WeibullPassesKolmogorovSmirnov)
{
    mExpectKolmogorovSmirnov(CmDistWeibull(1.7, 2.5, 1.0), "Weibull(1.7, 2.5, 1)");
}

TEST(DistClosedFormVariates, ExponentialPassesKolmogorovSmirnov)
{
    mExpectKolmogorovSmirnov(CmDistExponential(2.0, 1.0), "exponential(2, 1)");
}

TEST(DistClosedFormVariates, LogisticPassesKolmogorovSmirnov)
{
    mExpectKolmogorovSmirnov(CmDistLogistic(4.0, 1.5), "logistic(4, 1.5)");
}

TEST(DistClosedFormVariates, LogLogisticPassesKolmogorovSmirnov)
{
    mExpectKolmogorovSmirnov(CmDistLogLogistic(0.5, 0.4, 2.0), "loglogistic(0.5, 0.4, 2)");
}

TEST(DistClosedFormVariates, CauchyPassesKolmogorovSmirnov)
{
    mExpectKolmogorovSmirnov(CmDistCauchy(5.0, 0.5), "Cauchy(5, 0.5)");
}

TEST(DistClosedFormVariates, LambdaPassesKolmogorovSmirnov)
{
    mExpectKolmogorovSmirnov(CmDistLambda(0.14, 3.0, 1.0), "lambda(0.14, 3, 1)");
}

TEST(DistClosedFormVariates, LaplacePassesKolmogorovSmirnov)
{
    mExpectKolmogorovSmirnov(CmDistLaplace(3.0, 1.25), "Laplace(3, 1.25)");
}

TEST(DistClosedFormVariates, UniformPassesKolmogorovSmirnov)
{
    mExpectKolmogorovSmirnov(CmDistUniform(-1.0, 3.0), "uniform(-1, 3)");
}

TEST(DistClosedFormVariates, TriangularPassesKolmogorovSmirnov)
{
    mExpectKolmogorovSmirnov(CmDistTriangular(1.0, 2.5, 4.0), "triangular(1, 2.5, 4)");
}

TEST(DistClosedFormVariates, TriangularWithTheModeAtAnEndPassesKolmogorovSmirnov)
{
    mExpectKolmogorovSmirnov(CmDistTriangular(1.0, 1.0, 2.0), "triangular(1, 1, 2)");
}
