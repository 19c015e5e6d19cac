// Shared by the tests of the discrete distribution objects: counting the
// uniforms an operation consumes, replaying the reference variates of
// tests/data/variates_discrete.txt, and the chi-square check of a sample.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <memory>
#include <vector>

#include "qel/dist.h"
#include "qel/uniformgenerator.h"
#include "tests/support/goodness.h"
#include "tests/support/reftable.h"
#include "tests/support/uniformstream.h"

namespace qeltest
{

// The support that the object lists for [dLower, dUpper], asked with a
// vector that holds a stale entry, so that emptying it first is checked too.
inline std::vector<double> mSupport(const CmDist& rDist, double dLower, double dUpper)
{
    std::vector<double> vd{-99.0};
    rDist.mGetSupport(dLower, dUpper, vd);
    return vd;
}

// The number of uniforms that rFn takes from the process-wide stream.
inline int mUniformsUsed(const std::function<void()>& rFn)
{
    CmUniformGenerator* pGen = CmUniformGenerator::mInstance();
    const double dBefore = pGen->mGetBase();
    rFn();
    return mCountDraws(dBefore, pGen->mGetBase());
}

// Compares the variates of every case of class iClass in the reference
// table: a fresh object from rMake(p1, p2, p3) after mSetBase(12345), its
// variates in turn, and the uniforms consumed so far, both exactly (the
// variates are whole numbers, derived independently by the script).
// Returns the number of rows compared.
inline int mCheckReferenceVariates(
    int iClass, const std::function<std::unique_ptr<CmDist>(double, double, double)>& rMake)
{
    const RefTable table = mLoadRefTable("variates_discrete.txt");
    CmUniformGenerator* pGen = CmUniformGenerator::mInstance();
    std::unique_ptr<CmDist> pDist;
    int iRows = 0;
    for (const std::vector<double>& row : table.rows)
    {
        if (row.size() != 7u)
        {
            ADD_FAILURE() << "a row of " << row.size() << " columns";
            continue;
        }
        if (static_cast<int>(row[0]) != iClass)
            continue;
        if (row[4] == 1.0)
        {
            pDist = rMake(row[1], row[2], row[3]);
            pGen->mSetBase(12345.0);
        }
        if (!pDist)
        {
            ADD_FAILURE() << "no object for the row";
            continue;
        }
        const double dVariate = pDist->mGetRandom();
        EXPECT_EQ(dVariate, row[5]) << "class " << iClass << " parameters " << row[1] << ", "
                                    << row[2] << ", " << row[3] << ", variate " << row[4];
        EXPECT_EQ(mCountDraws(12345.0, pGen->mGetBase()), static_cast<int>(row[6]))
            << "class " << iClass << " parameters " << row[1] << ", " << row[2] << ", " << row[3]
            << ", variate " << row[4];
        ++iRows;
    }
    return iRows;
}

// Pearson's chi-square of iCount variates of rDist, drawn after
// mSetBase(dBase), against rPmf on [iLower, iUpper]; prints and returns the
// result.
inline ChiSquareResult mChiSquareOfVariates(const CmDist& rDist, int iCount, double dBase,
                                            int iLower, int iUpper,
                                            const std::function<double(int)>& rPmf,
                                            const char* pszWhat)
{
    CmUniformGenerator::mInstance()->mSetBase(dBase);
    std::vector<double> vdSample;
    vdSample.reserve(static_cast<std::size_t>(iCount));
    for (int i = 0; i < iCount; ++i)
        vdSample.push_back(rDist.mGetRandom());
    const ChiSquareResult result = mChiSquare(vdSample, iLower, iUpper, rPmf);
    std::cout << "[ chi-square ] " << pszWhat << ": statistic " << result.dStatistic << " on "
              << result.iDegreesOfFreedom << " df, p-value " << result.dPValue << ", outliers "
              << result.iOutliers << std::endl;
    return result;
}

} // namespace qeltest
