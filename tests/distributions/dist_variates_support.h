// Shared by the tests of the distribution objects' variates: the
// Kolmogorov-Smirnov test of a sample drawn from a fixed base, the count of
// uniforms drawn since a base, and the rows of the beta, F and t reference
// table.
#pragma once

#include "qel/dist.h"
#include "qel/uniformgenerator.h"

#include "support/goodness.h"
#include "support/reftable.h"
#include "support/uniformstream.h"

#include <gtest/gtest.h>

#include <iostream>
#include <string>
#include <vector>

namespace qeltest
{

// The rows of variates_beta.txt for one family (1 beta, 2 F, 3 t) and
// parameter set.
inline std::vector<std::vector<double>> mBetaTableRows(double dFamily, double dP1, double dP2)
{
    std::vector<std::vector<double>> vRows;
    for (const auto& rRow : mLoadRefTable("variates_beta.txt").rows)
        if (rRow.size() == 8 && rRow[0] == dFamily && rRow[1] == dP1 && rRow[2] == dP2)
            vRows.push_back(rRow);
    return vRows;
}

// The uniforms drawn since the generator's base was dBase.
inline int mDrawsSinceBase(double dBase)
{
    return mCountDraws(dBase, CmUniformGenerator::mInstance()->mGetBase());
}

// iDraws variates from dBase against the object's own distribution function:
// prints the statistic and expects a p-value above 1e-4.
inline void mExpectKsOfVariates(const CmDist& rDist, const std::string& rsName, double dBase,
                                int iDraws = 100000)
{
    CmUniformGenerator::mInstance()->mSetBase(dBase);
    std::vector<double> vdSample(static_cast<std::size_t>(iDraws));
    for (double& rd : vdSample)
        rd = rDist.mGetRandom();
    const KsResult result =
        mKolmogorovSmirnov(vdSample, [&](double dX) { return rDist.mCdf(dX, false); });
    std::cout << "[ KS       ] " << rsName << ": D = " << result.dStatistic
              << ", p = " << result.dPValue << "\n";
    EXPECT_GT(result.dPValue, 1e-4) << rsName;
}

} // namespace qeltest
