// Negative binomial and geometric: the support from dR, the unrounded
// distribution function, the quantile's search, and exact rational sums
// from tests/data/gen_discrete.py.
#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <string>
#include <vector>

#include "qel/discrete.h"
#include "qel/qelbt.h"
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
    qeltest::WorstError worst("family negbinomial pdf and both tails");
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

TEST(NegBinomialCdf, SupportStartsAtR)
{
    EXPECT_EQ(mNegBinomialCdf(2, 0.5, 3, false), 0.0);
    EXPECT_EQ(mNegBinomialCdf(3, 0.5, 3, true), 1.0);
    EXPECT_EQ(mNegBinomialPdf(2, 0.5, 3), 0.0);
    EXPECT_NEAR(mNegBinomialPdf(3, 0.5, 3), 0.125, 1e-16);
}

TEST(GeometricPdf, FirstTrial)
{
    EXPECT_EQ(mGeometricPdf(1, 0.25), 0.25);
    EXPECT_EQ(mGeometricPdf(2, 0.25), 0.25 * 0.75);
    EXPECT_EQ(mGeometricPdf(1.5, 0.25), 0.0);
    EXPECT_EQ(mGeometricPdf(0, 0.25), 0.0);
}

TEST(GeometricCdf, ClosedFormIsNotRounded)
{
    EXPECT_NEAR(mGeometricCdf(3, 0.25, false), 1.0 - 0.75 * 0.75 * 0.75, 1e-15);
    EXPECT_NEAR(mGeometricCdf(3, 0.25, true), 0.75 * 0.75, 1e-15);
    // Deliberately unrounded: the closed form is taken at 2.5.
    EXPECT_NEAR(mGeometricCdf(2.5, 0.25, false), 1.0 - std::pow(0.75, 2.5), 1e-15);
}

TEST(NegBinomialInvCdf, EndsAndAssertions)
{
    CmAssertCapture capture;
    EXPECT_EQ(mNegBinomialInvCdf(0.1, 0.5, 3), 3.0);
    EXPECT_EQ(mNegBinomialInvCdf(0, 0.5, 3), 3.0);
    EXPECT_TRUE(mIsNumericMissing(mNegBinomialInvCdf(1, 0.5, 3)));
    EXPECT_TRUE(mIsNumericMissing(mGeometricInvCdf(1, 0.5)));
    EXPECT_EQ(capture.mGetCount(), 0);
    mNegBinomialInvCdf(0.5, 1.5, 3);
    EXPECT_TRUE(capture.mHas("( dP > 0 ) && ( dP < 1 )"));
    capture.mClear();
    EXPECT_TRUE(mIsNumericMissing(mNegBinomialInvCdf(mGetMissingValueCode(), 0.5, 3)));
    EXPECT_TRUE(capture.mHas("( dProb >= 0.0 ) && ( dProb <= 1.0 )"));
}

TEST(NegBinomialQuantile, InvertsTheDistributionFunction)
{
    for (int k = 4; k < 40; ++k)
        EXPECT_EQ(mNegBinomialInvCdf(mNegBinomialCdf(k, 0.3, 4, false), 0.3, 4), k) << k;
    for (int k = 1; k < 30; ++k)
        EXPECT_EQ(mGeometricInvCdf(mGeometricCdf(k, 0.2, false), 0.2), k) << k;
}

TEST(NegBinomialReference, ExactSums)
{
    mCheckFamily(
        1, [](double dX, const std::vector<double>& r) { return mNegBinomialPdf(dX, r[1], r[2]); },
        [](double dX, const std::vector<double>& r, bool b) { return mNegBinomialCdf(dX, r[1], r[2], b); },
        [](double dP, const std::vector<double>& r) { return mNegBinomialInvCdf(dP, r[1], r[2]); },
        // The root search has no step rule: a probability on a step is
        // settled by the rounding of the distribution function there.
        false);
}
