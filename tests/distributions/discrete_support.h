// The reference-table check shared by the discrete families' tests.
#pragma once

#include <gtest/gtest.h>

#include <iostream>
#include <string>
#include <vector>

#include "qel/qelmessaging.h"
#include "tests/support/reftable.h"

namespace qeltest
{

// Checks the rows of one family of the reference tables: density, both tails
// (relative error at most 1e-9 where the reference is above 1e-280), the
// identity lower + upper = 1 + mass, the running sum of the density, and the
// quantiles exactly.
template <class Pdf, class Cdf, class Inv>
void mCheckDiscreteFamily(const char* pszFamily, int iFamily, Pdf fPdf, Cdf fCdf, Inv fInv,
                          bool bOnStep = true)
{
    const qeltest::RefTable values = mLoadRefTable("discrete_values.txt");
    WorstError worst(std::string("family ") + pszFamily + " pdf and both tails");
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
                const double dErr = mRelativeError(dGot[i], dRefs[i]);
                worst.mUpdate(dErr, mUlpDistance(dGot[i], dRefs[i]), sRow);
                EXPECT_LE(dErr, 1e-9) << sRow << " column " << i;
            }
        }
        EXPECT_NEAR(dLower + dUpper, 1.0 + dPdf, 2e-9 * (1.0 + dPdf)) << sRow;
        if (dLower > 1e-280)
        {
            EXPECT_LE(mRelativeError(dRunning, dLower), 1e-9) << sRow;
        }
    }
    EXPECT_GT(iRows, 20);
    EXPECT_EQ(capture.mGetCount(), 0);
    std::cout << worst.mReport() << std::endl;

    const qeltest::RefTable quants = mLoadRefTable("discrete_quantiles.txt");
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

} // namespace qeltest
