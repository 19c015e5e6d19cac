// Ranks of a selection of rows, with ties averaged or broken by row order, in
// ascending or descending direction, and their adjustment for missing data.
//
// The rows are put in stable ascending order of their data; the i-th row of
// that order has rank i (1-based).  With averaging, a run of exactly equal
// data shares the mean of its positions, the mid-rank (Kendall and Gibbons,
// Rank Correlation Methods, 5th ed. 1990, ch. 3); without it the stable order
// breaks the ties.  A descending rank is n + 1 minus the ascending one.
//
// Missing values are large finite numbers and rank last.  The adjustment
// walks the sorted rows by groups of equal rank and gives each group the mean
// of the next positions counting only its rows with a datum; the groups are
// formed by the equality of ranks, not of data.  Because the walk follows the
// ascending order of the data, adjusted ranks ascend along it whatever the
// direction of the ranks it started from.
#include "qel/ranks.h"

#include "qel/qelbt.h"
#include "qel/qelmessaging.h"

#include "rowsorter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace qelrank
{
bool mIsRowInside(const std::vector<double>& rvdData, INTG iRow)
{
    return iRow >= 1 && static_cast<std::size_t>(iRow) <= rvdData.size();
}

double mValueAtRow(const std::vector<double>& rvdData, INTG iRow)
{
    if (!mIsRowInside(rvdData, iRow))
        return mGetMissingValueCode();
    return rvdData[static_cast<std::size_t>(iRow) - 1];
}
} // namespace qelrank

// ---------------------------------------------------------------------------
// CmRowSorter

CmRowSorter::CmRowSorter(int iRowCt)
    : m_iRowCt(iRowCt), m_iPos(0), m_bSubsetOfRows(false),
      m_viPermutation(iRowCt > 0 ? static_cast<std::size_t>(iRowCt) : 0u)
{
    std::iota(m_viPermutation.begin(), m_viPermutation.end(), 0);
}

void CmRowSorter::mSortRows(const std::vector<double>& rvdData, const CbRows& rcbRows)
{
    QEL_ASSERT(m_iRowCt == rcbRows.mGetRowCt());
    auto isBefore = [&](int iA, int iB) {
        const double dA = qelrank::mValueAtRow(rvdData, rcbRows.mGetRow(iA));
        const double dB = qelrank::mValueAtRow(rvdData, rcbRows.mGetRow(iB));
        if (std::isnan(dA))
            return false;
        return std::isnan(dB) || dA < dB;
    };
    std::stable_sort(m_viPermutation.begin(), m_viPermutation.end(), isBefore);
    m_bSubsetOfRows = true;
}

void CmRowSorter::mFillSortedRows(const CbRows& rcbRows, CbRows& rcbSortedRows) const
{
    QEL_ASSERT(0 == m_iPos);
    QEL_ASSERT(m_bSubsetOfRows);
    QEL_ASSERT(rcbRows.mGetRowCt() == m_iRowCt);
    const INTG iRowCt = static_cast<INTG>(m_viPermutation.size());
    rcbSortedRows.mUseAllRows(iRowCt);
    rcbSortedRows.mReserve(iRowCt);
    for (INTG i = 0; i < iRowCt; ++i)
        rcbSortedRows.mSetRow(i, rcbRows.mGetRow(m_viPermutation[static_cast<std::size_t>(i)]));
}

bool CmRowSorter::mNextPosition(int& riPosition)
{
    if (m_iPos < 0 || static_cast<std::size_t>(m_iPos) >= m_viPermutation.size())
        return false;
    riPosition = m_viPermutation[static_cast<std::size_t>(m_iPos)];
    ++m_iPos;
    return true;
}

// ---------------------------------------------------------------------------
// Ranks

namespace
{
void mRankSelection(const std::vector<double>& rvdData, const CbRows& rcbRows,
                    std::vector<double>& rvdRanks, CbRows& rcbSortedRows, bool bAverageTies,
                    bool bAscending)
{
    const INTG iRowCt = rcbRows.mGetRowCt();
    bool bRowsInside = true;
    for (INTG i = 0; i < iRowCt; ++i)
        bRowsInside = bRowsInside && qelrank::mIsRowInside(rvdData, rcbRows.mGetRow(i));
    // A row beyond the data takes its place in the order as a missing value and
    // receives no rank.
    if (!bRowsInside)
        QEL_ASSERT_FALSE();

    CmRowSorter sorter(iRowCt);
    sorter.mSortRows(rvdData, rcbRows);
    sorter.mFillSortedRows(rcbRows, rcbSortedRows);

    rvdRanks.assign(rvdData.size(), mGetMissingValueCode());
    INTG i = 0;
    while (i < iRowCt)
    {
        const double dValue = qelrank::mValueAtRow(rvdData, rcbSortedRows.mGetRow(i));
        INTG j = i + 1;
        if (bAverageTies)
        {
            while (j < iRowCt && qelrank::mValueAtRow(rvdData, rcbSortedRows.mGetRow(j)) == dValue)
                ++j;
        }
        double dRank = (static_cast<double>(i) + static_cast<double>(j) + 1.0) * 0.5;
        if (!bAscending)
            dRank = static_cast<double>(iRowCt) + 1.0 - dRank;
        for (INTG m = i; m < j; ++m)
        {
            const INTG iRow = rcbSortedRows.mGetRow(m);
            if (qelrank::mIsRowInside(rvdData, iRow))
                rvdRanks[static_cast<std::size_t>(iRow) - 1] = dRank;
        }
        i = j;
    }
}
} // namespace

void mComputeRanks(const std::vector<double>& rvdData, const CbRows& rcbRows,
                   std::vector<double>& rvdRanks, CbRows& rcbSortedRows, bool bAverageTies,
                   bool bAscending)
{
    // Copies guard against outputs that are the inputs themselves.
    if (&rvdRanks == &rvdData || &rcbSortedRows == &rcbRows)
    {
        const std::vector<double> vdData(rvdData);
        CbRows cbRows;
        const INTG iRowCt = rcbRows.mGetRowCt();
        cbRows.mReserve(iRowCt);
        for (INTG i = 0; i < iRowCt; ++i)
            cbRows.mSetRow(i, rcbRows.mGetRow(i));
        mRankSelection(vdData, cbRows, rvdRanks, rcbSortedRows, bAverageTies, bAscending);
        return;
    }
    mRankSelection(rvdData, rcbRows, rvdRanks, rcbSortedRows, bAverageTies, bAscending);
}

void mComputeRanks(const std::vector<double>& rvdData, const CbRows& rcbRows,
                   std::vector<double>& rvdRanks, bool bAverageTies, bool bAscending)
{
    CbRows cbSortedRows;
    mComputeRanks(rvdData, rcbRows, rvdRanks, cbSortedRows, bAverageTies, bAscending);
}

void mComputeRanks(const std::vector<double>& rvdData, std::vector<double>& rvdRanks,
                   bool bAverageTies, bool bAscending)
{
    CbRows cbRows;
    cbRows.mUseAllRows(mToINTG(static_cast<double>(rvdData.size())));
    mComputeRanks(rvdData, cbRows, rvdRanks, bAverageTies, bAscending);
}

int mAdjustRanksForMisingValues(const std::vector<double>& rvdData, const CbRows& rcbSortedRows,
                                std::vector<double>& rvdRanks)
{
    const INTG iRowCt = rcbSortedRows.mGetRowCt();
    const double dMissing = mGetMissingValueCode();
    // The rank of a row that the ranks do not cover counts as missing.
    auto rankAt = [&](INTG iRow) { return qelrank::mValueAtRow(rvdRanks, iRow); };
    auto hasDatum = [&](INTG iRow) {
        return !mIsNumericMissing(qelrank::mValueAtRow(rvdData, iRow));
    };

    int iCount = 0;
    INTG i = 0;
    while (i < iRowCt)
    {
        const double dGroupRank = rankAt(rcbSortedRows.mGetRow(i));
        INTG j = i + 1;
        while (j < iRowCt && rankAt(rcbSortedRows.mGetRow(j)) == dGroupRank)
            ++j;
        int iWithDatum = 0;
        for (INTG m = i; m < j; ++m)
            iWithDatum += hasDatum(rcbSortedRows.mGetRow(m)) ? 1 : 0;
        const double dNewRank =
            (static_cast<double>(iWithDatum) + 2.0 * static_cast<double>(iCount) + 1.0) * 0.5;
        iCount += iWithDatum;
        for (INTG m = i; m < j; ++m)
        {
            const INTG iRow = rcbSortedRows.mGetRow(m);
            if (qelrank::mIsRowInside(rvdRanks, iRow))
                rvdRanks[static_cast<std::size_t>(iRow) - 1] = hasDatum(iRow) ? dNewRank : dMissing;
        }
        i = j;
    }
    return iCount;
}
