// Reading tests/data/variates_gamma.txt (written by gen_variates_gamma.py):
// the reference variates of the gamma, chi-square, negative binomial and
// geometric objects, one case per run of rows with the same kind and
// parameters.
#pragma once

#include "support/reftable.h"

#include <vector>

namespace qeltest
{

struct VariateCase
{
    int iKind;
    double dP1, dP2, dP3;
    std::vector<double> vdVariates;
    std::vector<int> viCounts;
};

// The cases of one kind (1 gamma, 2 chi-square, 3 negative binomial,
// 4 geometric, 5 the small-shape scheme with abandoned rounds).
inline std::vector<VariateCase> mLoadVariateCases(int iKind)
{
    std::vector<VariateCase> vCases;
    const RefTable table = mLoadRefTable("variates_gamma.txt");
    for (const std::vector<double>& rRow : table.rows)
    {
        if (rRow.size() != 7 || static_cast<int>(rRow[0]) != iKind)
            continue;
        if (rRow[4] == 0.0 || vCases.empty())
            vCases.push_back(VariateCase{iKind, rRow[1], rRow[2], rRow[3], {}, {}});
        vCases.back().vdVariates.push_back(rRow[5]);
        vCases.back().viCounts.push_back(static_cast<int>(rRow[6]));
    }
    return vCases;
}

} // namespace qeltest
