// Ranks: hand-checked ranks with and without averaged ties, ascending and
// descending, over all rows and over a selection of rows, with missing values
// before and after mAdjustRanksForMisingValues; the row sorter's preconditions;
// rows outside the data and NaNs, which must neither crash nor hang.
#include "qel/qelmath.h"

#include "qelmath/mathutilities/rowsorter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace
{

CbRows mRows(const std::vector<INTG>& rviRows)
{
    CbRows cb;
    cb.mReserve(static_cast<INTG>(rviRows.size()));
    for (std::size_t u = 0; u < rviRows.size(); ++u)
        cb.mSetRow(static_cast<INTG>(u), rviRows[u]);
    return cb;
}

std::vector<INTG> mRowList(const CbRows& rcb)
{
    std::vector<INTG> v;
    for (INTG i = 0; i < rcb.mGetRowCt(); ++i)
        v.push_back(rcb.mGetRow(i));
    return v;
}

std::vector<double> mRanks(const std::vector<double>& rvdData, bool bAverageTies, bool bAscending)
{
    std::vector<double> vdRanks;
    mComputeRanks(rvdData, vdRanks, bAverageTies, bAscending);
    return vdRanks;
}

const double M = mGetMissingValueCode();

} // namespace

TEST(ComputeRanks, DistinctDataRankAscending)
{
    CmAssertCapture capture;
    EXPECT_EQ(mRanks({3, 1, 2}, true, true), (std::vector<double>{3, 1, 2}));
    EXPECT_EQ(mRanks({3, 1, 2}, false, true), (std::vector<double>{3, 1, 2}));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(ComputeRanks, DescendingReversesTheRanks)
{
    EXPECT_EQ(mRanks({3, 1, 2}, true, false), (std::vector<double>{1, 3, 2}));
    EXPECT_EQ(mRanks({3, 1, 2}, false, false), (std::vector<double>{1, 3, 2}));
}

TEST(ComputeRanks, TiesAveragedOrBrokenInStableOrder)
{
    EXPECT_EQ(mRanks({2, 2, 5}, true, true), (std::vector<double>{1.5, 1.5, 3}));
    EXPECT_EQ(mRanks({2, 2, 5}, false, true), (std::vector<double>{1, 2, 3}));
    // Descending: 4 minus the ascending rank, also for a tie.
    EXPECT_EQ(mRanks({2, 2, 5}, true, false), (std::vector<double>{2.5, 2.5, 1}));
    EXPECT_EQ(mRanks({2, 2, 5}, false, false), (std::vector<double>{3, 2, 1}));
}

TEST(ComputeRanks, SeveralTieGroups)
{
    // Sorted: 1.0 (rows 2, 6), 2.0 (row 4), 3.5 (rows 1, 3, 5).
    const std::vector<double> vdData = {3.5, 1.0, 3.5, 2.0, 3.5, 1.0};
    EXPECT_EQ(mRanks(vdData, true, true), (std::vector<double>{5, 1.5, 5, 3, 5, 1.5}));
    EXPECT_EQ(mRanks(vdData, false, true), (std::vector<double>{4, 1, 5, 3, 6, 2}));
    EXPECT_EQ(mRanks(vdData, true, false), (std::vector<double>{2, 5.5, 2, 4, 2, 5.5}));
    EXPECT_EQ(mRanks(vdData, false, false), (std::vector<double>{3, 6, 2, 4, 1, 5}));
}

TEST(ComputeRanks, TiesAreExactWithoutFuzz)
{
    const double dNext = std::nextafter(2.0, 3.0);
    EXPECT_EQ(mRanks({dNext, 2.0, 2.0}, true, true), (std::vector<double>{3, 1.5, 1.5}));
}

TEST(ComputeRanks, SubsetOfRowsRanksOnlyThoseAndGivesTheSortedRows)
{
    CmAssertCapture capture;
    const std::vector<double> vdData = {10, 40, 20, 30, 50};
    const CbRows cbRows = mRows({4, 1, 3});
    std::vector<double> vdRanks;
    CbRows cbSorted;
    mComputeRanks(vdData, cbRows, vdRanks, cbSorted, true, true);
    // Rows 4, 1, 3 hold 30, 10, 20; rows 2 and 5 are outside the selection.
    EXPECT_EQ(vdRanks, (std::vector<double>{1, M, 2, 3, M}));
    EXPECT_EQ(mRowList(cbSorted), (std::vector<INTG>{1, 3, 4}));

    mComputeRanks(vdData, cbRows, vdRanks, true, false);
    EXPECT_EQ(vdRanks, (std::vector<double>{3, M, 2, 1, M}));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(ComputeRanks, SubsetOfRowsWithTies)
{
    const std::vector<double> vdData = {7, 7, 1, 7, 9, 1};
    const CbRows cbRows = mRows({6, 2, 4, 3});
    std::vector<double> vdRanks;
    CbRows cbSorted;
    // Selected: row 6 = 1, row 2 = 7, row 4 = 7, row 3 = 1.
    mComputeRanks(vdData, cbRows, vdRanks, cbSorted, true, true);
    EXPECT_EQ(vdRanks, (std::vector<double>{M, 3.5, 1.5, 3.5, M, 1.5}));
    EXPECT_EQ(mRowList(cbSorted), (std::vector<INTG>{6, 3, 2, 4}));
    mComputeRanks(vdData, cbRows, vdRanks, cbSorted, false, true);
    EXPECT_EQ(vdRanks, (std::vector<double>{M, 3, 2, 4, M, 1}));
}

TEST(ComputeRanks, MissingValuesSortLastAndTieWithEachOther)
{
    const std::vector<double> vdData = {5, M, 3, 5, M};
    std::vector<double> vdRanks;
    CbRows cbSorted;
    mComputeRanks(vdData, mRows({1, 2, 3, 4, 5}), vdRanks, cbSorted, true, true);
    EXPECT_EQ(vdRanks, (std::vector<double>{2.5, 4.5, 1, 2.5, 4.5}));
    EXPECT_EQ(mRowList(cbSorted), (std::vector<INTG>{3, 1, 4, 2, 5}));
}

TEST(ComputeRanks, EmptyDataGiveEmptyRanks)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mRanks({}, true, true).empty());
    std::vector<double> vdRanks = {1, 2};
    CbRows cbSorted = mRows({1, 2});
    mComputeRanks({}, CbRows(), vdRanks, cbSorted, true, true);
    EXPECT_TRUE(vdRanks.empty());
    EXPECT_EQ(cbSorted.mGetRowCt(), 0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(ComputeRanks, RowsOutsideTheDataAreReportedAndGetNoRank)
{
    CmAssertCapture capture;
    const std::vector<double> vdData = {4, 2, 8};
    std::vector<double> vdRanks;
    CbRows cbSorted;
    mComputeRanks(vdData, mRows({7, 3, 0, 1}), vdRanks, cbSorted, true, true);
    EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"false"});
    // Rows 7 and 0 count as missing values and tie in last place.
    EXPECT_EQ(vdRanks, (std::vector<double>{1, M, 2}));
    EXPECT_EQ(mRowList(cbSorted), (std::vector<INTG>{1, 3, 7, 0}));
}

TEST(ComputeRanks, NaNRanksAfterEveryNumberWithoutHanging)
{
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(mRanks({dNaN, 1, M, 0.5}, true, true), (std::vector<double>{4, 2, 3, 1}));
    // Two NaNs are not equal, so they are not averaged.
    EXPECT_EQ(mRanks({dNaN, dNaN, 1}, true, true), (std::vector<double>{2, 3, 1}));
}

TEST(ComputeRanks, OutputsMayBeTheInputs)
{
    std::vector<double> vd = {3, 1, 2};
    CbRows cbRows = mRows({1, 2, 3});
    mComputeRanks(vd, cbRows, vd, cbRows, true, true);
    EXPECT_EQ(vd, (std::vector<double>{3, 1, 2}));
    EXPECT_EQ(mRowList(cbRows), (std::vector<INTG>{2, 3, 1}));
}

// ---------------------------------------------------------------------------
// mAdjustRanksForMisingValues

TEST(AdjustRanksForMissingValues, MissingDatumGetsMissingRankAndTheRestOneToC)
{
    CmAssertCapture capture;
    const std::vector<double> vdData = {5, M, 3, 5};
    std::vector<double> vdRanks;
    CbRows cbSorted;
    mComputeRanks(vdData, mRows({1, 2, 3, 4}), vdRanks, cbSorted, true, true);
    EXPECT_EQ(vdRanks, (std::vector<double>{2.5, 4, 1, 2.5}));
    EXPECT_EQ(mAdjustRanksForMisingValues(vdData, cbSorted, vdRanks), 3);
    EXPECT_EQ(vdRanks, (std::vector<double>{2.5, M, 1, 2.5}));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(AdjustRanksForMissingValues, SeveralMissingDataAndUnaveragedTies)
{
    const std::vector<double> vdData = {M, 4, M, 2, 4, 9};
    std::vector<double> vdRanks;
    CbRows cbSorted;
    mComputeRanks(vdData, mRows({1, 2, 3, 4, 5, 6}), vdRanks, cbSorted, false, true);
    EXPECT_EQ(vdRanks, (std::vector<double>{5, 2, 6, 1, 3, 4}));
    EXPECT_EQ(mAdjustRanksForMisingValues(vdData, cbSorted, vdRanks), 4);
    EXPECT_EQ(vdRanks, (std::vector<double>{M, 2, M, 1, 3, 4}));

    mComputeRanks(vdData, mRows({1, 2, 3, 4, 5, 6}), vdRanks, cbSorted, true, true);
    EXPECT_EQ(vdRanks, (std::vector<double>{5.5, 2.5, 5.5, 1, 2.5, 4}));
    EXPECT_EQ(mAdjustRanksForMisingValues(vdData, cbSorted, vdRanks), 4);
    EXPECT_EQ(vdRanks, (std::vector<double>{M, 2.5, M, 1, 2.5, 4}));
}

TEST(AdjustRanksForMissingValues, OnlyMissingDataGiveZero)
{
    const std::vector<double> vdData = {M, M};
    std::vector<double> vdRanks;
    CbRows cbSorted;
    mComputeRanks(vdData, mRows({1, 2}), vdRanks, cbSorted, true, true);
    EXPECT_EQ(mAdjustRanksForMisingValues(vdData, cbSorted, vdRanks), 0);
    EXPECT_EQ(vdRanks, (std::vector<double>{M, M}));
}

TEST(AdjustRanksForMissingValues, AdjustedRanksAscendAlongTheDataEvenFromDescendingRanks)
{
    const std::vector<double> vdData = {1, M, 2};
    std::vector<double> vdRanks;
    CbRows cbSorted;
    mComputeRanks(vdData, mRows({1, 2, 3}), vdRanks, cbSorted, true, false);
    EXPECT_EQ(vdRanks, (std::vector<double>{3, 1, 2}));
    EXPECT_EQ(mAdjustRanksForMisingValues(vdData, cbSorted, vdRanks), 2);
    EXPECT_EQ(vdRanks, (std::vector<double>{1, M, 2}));
}

TEST(AdjustRanksForMissingValues, GroupsAreFormedByEqualRanksNotEqualData)
{
    // Hand-made ranks: rows 1 and 2 share rank 1 although their data differ.
    const std::vector<double> vdData = {1, 2, 3};
    std::vector<double> vdRanks = {1, 1, 3};
    EXPECT_EQ(mAdjustRanksForMisingValues(vdData, mRows({1, 2, 3}), vdRanks), 3);
    EXPECT_EQ(vdRanks, (std::vector<double>{1.5, 1.5, 3}));
}

TEST(AdjustRanksForMissingValues, SubsetOfRowsLeavesOtherRowsAlone)
{
    const std::vector<double> vdData = {8, M, 6, 7, 5};
    const CbRows cbRows = mRows({5, 1, 2});
    std::vector<double> vdRanks;
    CbRows cbSorted;
    mComputeRanks(vdData, cbRows, vdRanks, cbSorted, true, true);
    EXPECT_EQ(vdRanks, (std::vector<double>{2, 3, M, M, 1}));
    EXPECT_EQ(mAdjustRanksForMisingValues(vdData, cbSorted, vdRanks), 2);
    EXPECT_EQ(vdRanks, (std::vector<double>{2, M, M, M, 1}));
}

TEST(AdjustRanksForMissingValues, RowsBeyondTheRanksAreSkipped)
{
    const std::vector<double> vdData = {1, 2};
    std::vector<double> vdRanks = {1};
    EXPECT_EQ(mAdjustRanksForMisingValues(vdData, mRows({1, 2, 5}), vdRanks), 2);
    EXPECT_EQ(vdRanks, std::vector<double>{1});
}

// ---------------------------------------------------------------------------
// CmRowSorter

TEST(RowSorter, StableAscendingPermutationOfPositions)
{
    CmAssertCapture capture;
    const std::vector<double> vdData = {3, 1, 3, 0};
    const CbRows cbRows = mRows({1, 2, 3, 4});
    CmRowSorter sorter(4);
    sorter.mSortRows(vdData, cbRows);
    std::vector<int> viOrder;
    int iPosition = -1;
    while (sorter.mNextPosition(iPosition))
        viOrder.push_back(iPosition);
    EXPECT_EQ(viOrder, (std::vector<int>{3, 1, 0, 2}));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(RowSorter, CountMismatchIsReported)
{
    CmAssertCapture capture;
    CmRowSorter sorter(3);
    sorter.mSortRows({1, 2, 3}, mRows({1, 2}));
    EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"m_iRowCt == rcbRows.mGetRowCt()"});
}

TEST(RowSorter, FillingPreconditions)
{
    const std::vector<double> vdData = {2, 1};
    const CbRows cbRows = mRows({1, 2});
    CbRows cbSorted;
    {
        CmAssertCapture capture;
        CmRowSorter unsorted(2);
        unsorted.mFillSortedRows(cbRows, cbSorted);
        EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"m_bSubsetOfRows"});
    }
    {
        CmAssertCapture capture;
        CmRowSorter walked(2);
        walked.mSortRows(vdData, cbRows);
        int iPosition = 0;
        walked.mNextPosition(iPosition);
        walked.mFillSortedRows(cbRows, cbSorted);
        EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"0 == m_iPos"});
        walked.mRewind();
        capture.mClear();
        walked.mFillSortedRows(cbRows, cbSorted);
        EXPECT_EQ(capture.mGetCount(), 0);
        EXPECT_EQ(mRowList(cbSorted), (std::vector<INTG>{2, 1}));
    }
    {
        CmAssertCapture capture;
        CmRowSorter sorter(2);
        sorter.mSortRows(vdData, cbRows);
        sorter.mFillSortedRows(mRows({1, 2, 1}), cbSorted);
        EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"rcbRows.mGetRowCt() == m_iRowCt"});
        EXPECT_EQ(cbSorted.mGetRowCt(), 2);
    }
}
