// Smallest and largest datum of a selection of rows, skipping missing values.
// When nothing was seen (no rows, only missing values, or a single datum equal
// to the largest double) both outputs are the missing value.
#include "qel/fuzzy.h"

#include "qel/qelbt.h"

#include <limits>

void mMinMax(const double* pdData, const CbRows& rcbRows, double* pdMin, double* pdMax)
{
    const double dLargest = std::numeric_limits<double>::max();
    *pdMin = dLargest;
    *pdMax = -dLargest;
    const INTG iRowCt = rcbRows.mGetRowCt();
    for (INTG i = 0; i < iRowCt; ++i)
    {
        const double dValue = pdData[rcbRows.mGetRow(i) - 1];
        if (mIsNumericMissing(dValue))
            continue;
        if (dValue < *pdMin)
            *pdMin = dValue;
        if (dValue > *pdMax)
            *pdMax = dValue;
    }
    if (*pdMin == dLargest)
    {
        *pdMin = mGetMissingValueCode();
        *pdMax = mGetMissingValueCode();
    }
}

void mMinMax(const double* const pdData, int iCount, double* pdMin, double* pdMax)
{
    CbRows cbRows;
    cbRows.mUseAllRows(iCount);
    mMinMax(pdData, cbRows, pdMin, pdMax);
}

void mMinMax(const std::vector<double>& rvdData, const CbRows& rcbRows, double* pdMin,
             double* pdMax)
{
    mMinMax(rvdData.data(), rcbRows, pdMin, pdMax);
}
