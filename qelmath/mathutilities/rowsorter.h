// The sorter behind the ranks: a permutation of the positions 0 .. n-1 of a
// row selection, put in stable ascending order of the data at those rows.
#pragma once

#include "qel/qelbt.h"

#include <vector>

class CmRowSorter
{
public:
    // The identity permutation of iRowCt positions (none for a negative count).
    explicit CmRowSorter(int iRowCt);

    // Sorts the positions stably by ascending rvdData[rcbRows.mGetRow(i) - 1].
    // A row outside the data counts as the missing value, and a NaN as larger
    // than any number, so that the order is always a strict weak one.
    void mSortRows(const std::vector<double>& rvdData, const CbRows& rcbRows);

    // rcbSortedRows becomes the rows of rcbRows in the sorted order.  Meant to
    // follow mSortRows and to precede a walk with mNextPosition.
    void mFillSortedRows(const CbRows& rcbRows, CbRows& rcbSortedRows) const;

    // Walks the sorted positions: stores the next one and returns true, or
    // returns false after the last.  mRewind starts the walk again.
    bool mNextPosition(int& riPosition);
    void mRewind() { m_iPos = 0; }

    int mGetRowCt() const { return m_iRowCt; }

private:
    int m_iRowCt;
    int m_iPos;
    bool m_bSubsetOfRows; // set once the positions are sorted by a row selection
    std::vector<int> m_viPermutation;
};

namespace qelrank
{
// The datum at a 1-based row, or the missing value for a row outside the data.
double mValueAtRow(const std::vector<double>& rvdData, INTG iRow);
// The row is one of the data's, 1 to size.
bool mIsRowInside(const std::vector<double>& rvdData, INTG iRow);
} // namespace qelrank
