// Binomial density, distribution function and quantile: the edge cases of the
// point rule, the upper tail and the degenerate probabilities, the identities
// of the family, and exact rational sums from tests/data/gen_discrete.py.
#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <string>
#include <vector>

#include "qel/discrete.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"
#include "tests/support/reftable.h"

namespace
{

// Checks the rows of one family of the reference tables: density, both tails
// (relative error at most 1e-9 where the reference is above 1e-280), the
// identity lower + upper = 1 + mass, the running sum of the density, and the
// quantiles exactly.
template <class Pdf, class Cdf, class Inv>
void mCheckFamily(int iFamily, Pdf fPdf, Cdf fCdf, Inv fInv, bool bOnStep = true)
{
    const qeltest::RefTable values = qeltest::mLoadRefTable("discrete_values.txt");
    qeltest::WorstError worst("family binomial pdf and both tails");
    CmAssertCapture capture;
    int iRows = 0;
    double dRunning = 0.0;
    double dPrevA = -1.0, dPrevB = -1.0, dPrevC = -1.0;
    for (const std::vector<double>& row : values.rows)
    {
        ASSERT_EQ(row.size(), 8u);
        if (static_cast<int>(row[0]) != iFamily)
            continue;
        ++iRows;
        if (row[1] != dPrevA || row[2] != dPrevB || row[3] != dPrevC)
            dRunning = 0.0;
        dPrevA = row[1];
        dPrevB = row[2];
        dPrevC = row[3];
        const double dX = row[4];
        const double dPdf = fPdf(dX, row);
        const double dLower = fCdf(dX, row, false);
        const double dUpper = fCdf(dX, row, true);
        dRunning += dPdf;
        const std::string sRow = "a=" + std::to_string(row[1]) + " b=" + std::to_string(row[2]) +
                                 " c=" + std::to_string(row[3]) + " x=" + std::to_string(dX);
        const double dRefs[3] = {row[5], row[6], row[7]};
        const double dGot[3] = {dPdf, dLower, dUpper};
        for (int i = 0; i < 3; ++i)
        {
            if (dRefs[i] > 1e-280)
            {
                const double dErr = qeltest::mRelativeError(dGot[i], dRefs[i]);
                worst.mUpdate(dErr, qeltest::mUlpDistance(dGot[i], dRefs[i]), sRow);
                EXPECT_LE(dErr, 1e-9) << sRow << " column " << i;
            }
        }
        EXPECT_NEAR(dLower + dUpper, 1.0 + dPdf, 2e-9 * (1.0 + dPdf)) << sRow;
        if (dLower > 1e-280)
        {
            EXPECT_LE(qeltest::mRelativeError(dRunning, dLower), 1e-9) << sRow;
        }
    }
    EXPECT_GT(iRows, 20);
    EXPECT_EQ(capture.mGetCount(), 0);
    std::cout << worst.mReport() << std::endl;

    const qeltest::RefTable quants = qeltest::mLoadRefTable("discrete_quantiles.txt");
    int iQuantiles = 0;
    for (const std::vector<double>& row : quants.rows)
    {
        ASSERT_EQ(row.size(), 7u);
        if (static_cast<int>(row[0]) != iFamily || (!bOnStep && row[6] != 0.0))
            continue;
        ++iQuantiles;
        EXPECT_EQ(fInv(row[4], row), row[5])
            << "a=" << row[1] << " b=" << row[2] << " c=" << row[3] << " prob=" << row[4];
    }
    EXPECT_GT(iQuantiles, 10);
    EXPECT_EQ(capture.mGetCount(), 0);
}

}  // namespace

TEST(BinomialCdf, TailsAddUpToOnePlusTheMass)
{
    const double dLower = mBinomialCdf(3, 10, 0.3, false);
    const double dUpper = mBinomialCdf(3, 10, 0.3, true);
    EXPECT_NEAR(dLower + dUpper - 1.0, mBinomialPdf(3, 10, 0.3), 1e-15);
    EXPECT_NEAR(mBinomialPdf(3, 10, 0.3), 0.266827932, 1e-15);
}

TEST(BinomialCdf, NonIntegerCountsAsItsFloor)
{
    EXPECT_EQ(mBinomialCdf(2.7, 10, 0.3, false), mBinomialCdf(2, 10, 0.3, false));
    EXPECT_EQ(mBinomialPdf(2.7, 10, 0.3), 0.0);
}

TEST(BinomialCdf, CountWithinFuzzIsTheWholeNumber)
{
    EXPECT_EQ(mBinomialCdf(2 + 1e-17, 10, 0.3, false), mBinomialCdf(2, 10, 0.3, false));
    EXPECT_EQ(mBinomialCdf(std::nextafter(3.0, 0.0), 10, 0.3, false), mBinomialCdf(3, 10, 0.3, false));
    EXPECT_EQ(mBinomialPdf(std::nextafter(3.0, 0.0), 10, 0.3), mBinomialPdf(3, 10, 0.3));
    EXPECT_EQ(mBinomialCdf(3 - 1e-12, 10, 0.3, false), mBinomialCdf(2, 10, 0.3, false));
    EXPECT_EQ(mBinomialPdf(3 - 1e-12, 10, 0.3), 0.0);
    EXPECT_EQ(mBinomialCdf(2.999, 10, 0.3, false), mBinomialCdf(2, 10, 0.3, false));
}

TEST(BinomialCdf, UpperTailBelowSupportReflectsToOne)
{
    CmAssertCapture capture;
    EXPECT_EQ(mBinomialCdf(-1, 10, 0.3, true), 1.0);
    EXPECT_EQ(mBinomialCdf(0, 10, 0.3, true), 1.0);
    EXPECT_EQ(mBinomialCdf(11, 10, 0.3, true), 0.0);
    EXPECT_EQ(mBinomialCdf(-1, 10, 0.3, false), 0.0);
    EXPECT_EQ(mBinomialCdf(10, 10, 0.3, false), 1.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(BinomialPdf, DegenerateProbabilities)
{
    CmAssertCapture capture;
    EXPECT_EQ(mBinomialPdf(0, 5, 0), 1.0);
    EXPECT_EQ(mBinomialPdf(1, 5, 0), 0.0);
    EXPECT_EQ(mBinomialPdf(5, 5, 1), 1.0);
    EXPECT_EQ(mBinomialPdf(4, 5, 1), 0.0);
    EXPECT_EQ(mBinomialPdf(6, 5, 0.5), 0.0);
    EXPECT_EQ(mBinomialPdf(-1, 5, 0.5), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(BinomialCdf, ZeroProbabilityFailsItsAssertion)
{
    CmAssertCapture capture;
    mBinomialCdf(0, 5, 0, false);
    EXPECT_TRUE(capture.mHas("dP > 0.0"));
    capture.mClear();
    mBinomialCdf(0, 5, 1, false);
    EXPECT_TRUE(capture.mHas("dP < 1.0"));
    capture.mClear();
    mBinomialCdf(0, -5, 0.5, false);
    EXPECT_TRUE(capture.mHas("dN >= 0"));
}

TEST(BinomialPdf, AssertionTexts)
{
    CmAssertCapture capture;
    mBinomialPdf(0, 0, 0.5);
    EXPECT_TRUE(capture.mHas("iN > 0"));
    capture.mClear();
    // The computation goes on, and the logarithm of the negative
    // probability throws.
    EXPECT_THROW(mBinomialPdf(0, 5, -0.5), CmInvalidArgument);
    EXPECT_TRUE(capture.mHas("dP >= 0.0"));
    capture.mClear();
    EXPECT_THROW(mBinomialPdf(0, 5, 1.5), CmInvalidArgument);
    EXPECT_TRUE(capture.mHas("dP <= 1.0"));
}

TEST(BinomialInvCdf, EndsAndAssertions)
{
    CmAssertCapture capture;
    EXPECT_EQ(mBinomialInvCdf(1, 5, 0.3), 5.0);
    EXPECT_EQ(mBinomialInvCdf(0, 5, 0.3), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
    mBinomialInvCdf(1.5, 5, 0.3);
    EXPECT_TRUE(capture.mHas("dProb <= 1.0"));
    capture.mClear();
    mBinomialInvCdf(-0.5, 5, 0.3);
    EXPECT_TRUE(capture.mHas("dProb >= 0.0"));
    capture.mClear();
    mBinomialInvCdf(0.5, 5, 0.0);
    EXPECT_TRUE(capture.mHas("dP > 0.0"));
}

TEST(BinomialCdf, CountBeyondIntegerRangeUsesTheBetaRatio)
{
    // n = 3e9, p = 1/2: by symmetry P(X <= n/2) = 1/2 + P(X = n/2) / 2, and
    // P(X = n/2) = sqrt(2 / (pi n)) (1 - 1/(4n) + ...) by Stirling's series.
    const double dN = 3e9;
    const double dMass = std::sqrt(2.0 / (3.14159265358979323846 * dN)) * (1.0 - 0.25 / dN);
    const double dLower = mBinomialCdf(1.5e9, dN, 0.5, false);
    EXPECT_NEAR(dLower, 0.5 + 0.5 * dMass, 1e-9);
}

TEST(BinomialInvCdf, TailBeyondTheKernelIsMissing)
{
    EXPECT_TRUE(mIsNumericMissing(mBinomialInvCdf(1.0 - 1e-14, 57, 0.125)));
}

TEST(BinomialQuantile, InvertsTheDistributionFunction)
{
    // Up to the count whose upper tail is still well above the rounding of
    // 1 - p.
    for (int k = 0; k < 16; ++k)
        EXPECT_EQ(mBinomialInvCdf(mBinomialCdf(k, 20, 0.35, false), 20, 0.35), k) << k;
}

TEST(BinomialReference, ExactSums)
{
    mCheckFamily(
        0, [](double dX, const std::vector<double>& r) { return mBinomialPdf(dX, static_cast<int>(r[1]), r[2]); },
        [](double dX, const std::vector<double>& r, bool b) { return mBinomialCdf(dX, r[1], r[2], b); },
        [](double dP, const std::vector<double>& r) { return mBinomialInvCdf(dP, static_cast<int>(r[1]), r[2]); });
}

TEST(BinomialInvCdf, MissingProbabilityFailsItsAssertionAndIsMissing)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mBinomialInvCdf(mGetMissingValueCode(), 5, 0.3)));
    EXPECT_TRUE(capture.mHas("dProb <= 1.0"));
}

TEST(BinomialQuantile, ProbabilityOnAStepGetsTheLowerCount)
{
    // P(X <= 2) for n = 4, p = 1/2 is 11/16, exact in binary.
    EXPECT_EQ(mBinomialInvCdf(11.0 / 16.0, 4, 0.5), 2.0);
    EXPECT_EQ(mBinomialInvCdf(11.0 / 16.0 + 1e-6, 4, 0.5), 3.0);
    // P(X <= 0) = 1/16 on the lower-quantile side.
    EXPECT_EQ(mBinomialInvCdf(1.0 / 16.0, 4, 0.5), 0.0);
    EXPECT_EQ(mBinomialInvCdf(1.0 / 16.0 + 1e-6, 4, 0.5), 1.0);
}
