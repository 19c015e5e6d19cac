// Reading the reference tables of the kernel-backed continuous families for
// the flat-function tests: one row per call, filtered by family.
#pragma once

#include "support/reftable.h"

#include <sstream>
#include <string>
#include <vector>

namespace qeltest
{

// Family codes of the tables written by tests/data/gen_flat_kernelbacked.py.
enum EFlatFamily : int
{
    eFlatBeta = 1,
    eFlatChiSq = 2,
    eFlatGamma = 3,
    eFlatF = 4,
    eFlatT = 5
};

// One row: the point (x or probability), three parameters and the reference
// values that follow them.
struct FlatRow
{
    double dPoint;
    double dP1;
    double dP2;
    double dP3;
    std::vector<double> vdRef;
    std::string sText;
};

inline std::vector<FlatRow> mFlatRows(const std::string& rsTable, int iFamily)
{
    std::vector<FlatRow> vRows;
    const RefTable table = mLoadRefTable(rsTable);
    for (const std::vector<double>& rRow : table.rows)
    {
        if (rRow.size() < 6 || static_cast<int>(rRow[0]) != iFamily)
            continue;
        FlatRow row{rRow[1], rRow[2], rRow[3], rRow[4], {}, {}};
        row.vdRef.assign(rRow.begin() + 5, rRow.end());
        std::ostringstream text;
        text.precision(17);
        text << "point " << row.dPoint << " params " << row.dP1 << ", " << row.dP2 << ", "
             << row.dP3;
        row.sText = text.str();
        vRows.push_back(row);
    }
    return vRows;
}

} // namespace qeltest
