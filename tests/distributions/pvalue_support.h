// Running the continuous p-value and critical-value functions over the
// reference tables written by tests/data/gen_pvalues.py, one family at a
// time, and keeping the worst relative error.
#pragma once

#include "support/reftable.h"

#include "qel/pvalues.h"
#include "qel/qelbt.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace qeltest
{

enum EPValueFamily : int
{
    ePValueNormal = 1,
    ePValueChiSq = 2,
    ePValueF = 3,
    ePValueT = 4
};

inline std::string mRowText(const std::vector<double>& rRow)
{
    std::ostringstream os;
    os.precision(17);
    for (double d : rRow)
    {
        os << d << ' ';
    }
    return os.str();
}

// Columns: family, x, p1, p2, alternative, p-value.
inline WorstError mPValueAgainstTable(int iFamily, const std::string& rsWhat, int* piRows)
{
    WorstError worst(rsWhat);
    *piRows = 0;
    const RefTable table = mLoadRefTable("pvalues_continuous.txt");
    for (const std::vector<double>& rRow : table.rows)
    {
        if (rRow.size() != 6 || static_cast<int>(rRow[0]) != iFamily)
        {
            continue;
        }
        const double dX = rRow[1];
        const EAlternative eAlt = static_cast<EAlternative>(static_cast<int>(rRow[4]));
        double dGot = 0.0;
        switch (iFamily)
        {
        case ePValueNormal:
            dGot = mNormalPValue(dX, eAlt);
            break;
        case ePValueChiSq:
            dGot = mChiSqPValue(dX, rRow[2], eAlt);
            break;
        case ePValueF:
            dGot = mFPValue(dX, rRow[2], rRow[3], eAlt);
            break;
        default:
            dGot = mTPValue(dX, rRow[2], eAlt);
            break;
        }
        ++*piRows;
        const std::string sRow = mRowText(rRow) + " got " + std::to_string(dGot);
        EXPECT_FALSE(mIsNumericMissing(dGot)) << sRow;
        worst.mUpdate(mRelativeError(dGot, rRow[5]), mUlpDistance(dGot, rRow[5]), sRow);
    }
    return worst;
}

// Columns: family, prob, p1, p2, alternative, count, kind, critical value.
inline WorstError mCritValueAgainstTable(int iFamily, const std::string& rsWhat, int* piRows)
{
    WorstError worst(rsWhat);
    *piRows = 0;
    const RefTable table = mLoadRefTable("critvalues_continuous.txt");
    for (const std::vector<double>& rRow : table.rows)
    {
        if (rRow.size() != 8 || static_cast<int>(rRow[0]) != iFamily)
        {
            continue;
        }
        const double dProb = rRow[1];
        const EAlternative eAlt = static_cast<EAlternative>(static_cast<int>(rRow[4]));
        const int iCount = static_cast<int>(rRow[5]);
        const int iKind = static_cast<int>(rRow[6]);
        double dGot = 0.0;
        switch (iFamily)
        {
        case ePValueNormal:
            dGot = mNormalCritValue(dProb, eAlt);
            break;
        case ePValueChiSq:
            dGot = mChiSqCritValue(dProb, rRow[2], eAlt);
            break;
        case ePValueF:
            dGot = mFCritValue(dProb, rRow[2], rRow[3], eAlt);
            break;
        default:
            dGot = iKind == 2 ? mTSidakCritValue(dProb, rRow[2], eAlt, iCount)
                              : mTCritValue(dProb, rRow[2], eAlt, iCount);
            break;
        }
        ++*piRows;
        const std::string sRow = mRowText(rRow) + " got " + std::to_string(dGot);
        EXPECT_FALSE(mIsNumericMissing(dGot)) << sRow;
        worst.mUpdate(mRelativeError(dGot, rRow[7]), mUlpDistance(dGot, rRow[7]), sRow);
    }
    return worst;
}

} // namespace qeltest
