// Ranks and element-wise vector utilities.
//
// mComputeRanks ranks the selected rows of a column, with ties either averaged
// (mid-ranks) or broken by the order of the rows, ascending or descending.
// Missing values rank as the large numbers they are, after every datum;
// mAdjustRanksForMisingValues then takes them out of the ranking.  Rows outside
// the selection get the missing value as rank.
//
// The element-wise utilities clear their result and fill it in order.
#pragma once

#include "qel/qelbt.h"
#include "qel/qelexport.h"

#include <vector>

// Ranks of the data at the rows of rcbRows; rcbSortedRows receives those rows
// in ascending order of their data (stable).  rvdRanks is as long as rvdData.
QEL_API void mComputeRanks(const std::vector<double>& rvdData, const CbRows& rcbRows,
                           std::vector<double>& rvdRanks, CbRows& rcbSortedRows,
                           bool bAverageTies, bool bAscending);
QEL_API void mComputeRanks(const std::vector<double>& rvdData, const CbRows& rcbRows,
                           std::vector<double>& rvdRanks, bool bAverageTies, bool bAscending);
// All rows of rvdData.
QEL_API void mComputeRanks(const std::vector<double>& rvdData, std::vector<double>& rvdRanks,
                           bool bAverageTies, bool bAscending);

// Re-ranks the output of mComputeRanks without the missing data, group by group
// of equal rank, from 1 upward along rcbSortedRows; a missing datum gets the
// missing value as rank.  Returns the number of rows with a datum.
QEL_API int mAdjustRanksForMisingValues(const std::vector<double>& rvdData,
                                        const CbRows& rcbSortedRows,
                                        std::vector<double>& rvdRanks);

// v[i] * w[i].
QEL_API void mHadamardProduct(const std::vector<double>& rvdV, const std::vector<double>& rvdW,
                              std::vector<double>& rvdResult);
// mExponential(v[i], true); CmFloatOverflow passes to the caller.
QEL_API void mExponentiateVector(const std::vector<double>& rvdV, std::vector<double>& rvdResult);
// log(v[i]), and 0.0 for an element that is not positive, after a report.
QEL_API void mLogVector(const std::vector<double>& rvdV, std::vector<double>& rvdResult);

// The common elements of two ascending vectors, in order.
QEL_API std::vector<int> mGetINTGVectorIntersection(const std::vector<int>& rviA,
                                                    const std::vector<int>& rviB);
