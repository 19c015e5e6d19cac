// Element-wise vector utilities and the intersection of two ascending integer
// vectors.
//
// The element-wise functions clear their result, reserve room and append in
// order, so that an exception part way (an overflowing exponential) leaves the
// elements before it in place.  A result that is one of the inputs works on a
// copy of that input.
#include "qel/ranks.h"

#include "qel/elementary.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"

#include <cmath>
#include <cstddef>

namespace
{
INTG mLoopBound(std::size_t uSize) { return mToINTG(static_cast<double>(uSize)); }
} // namespace

void mHadamardProduct(const std::vector<double>& rvdV, const std::vector<double>& rvdW,
                      std::vector<double>& rvdResult)
{
    QEL_ASSERT(rvdV.size() == rvdW.size());
    if (&rvdResult == &rvdV || &rvdResult == &rvdW)
    {
        const std::vector<double> vdV(rvdV);
        const std::vector<double> vdW(rvdW);
        mHadamardProduct(vdV, vdW, rvdResult);
        return;
    }
    // After a reported mismatch only the common length is multiplied.
    const INTG iCount = mLoopBound(rvdV.size() < rvdW.size() ? rvdV.size() : rvdW.size());
    rvdResult.clear();
    rvdResult.reserve(static_cast<std::size_t>(iCount));
    for (INTG i = 0; i < iCount; ++i)
        rvdResult.push_back(rvdV[static_cast<std::size_t>(i)] * rvdW[static_cast<std::size_t>(i)]);
}

void mExponentiateVector(const std::vector<double>& rvdV, std::vector<double>& rvdResult)
{
    if (&rvdResult == &rvdV)
    {
        const std::vector<double> vdV(rvdV);
        mExponentiateVector(vdV, rvdResult);
        return;
    }
    const INTG iCount = mLoopBound(rvdV.size());
    rvdResult.clear();
    rvdResult.reserve(static_cast<std::size_t>(iCount));
    for (INTG i = 0; i < iCount; ++i)
        rvdResult.push_back(mExponential(rvdV[static_cast<std::size_t>(i)], true));
}

void mLogVector(const std::vector<double>& rvdV, std::vector<double>& rvdResult)
{
    if (&rvdResult == &rvdV)
    {
        const std::vector<double> vdV(rvdV);
        mLogVector(vdV, rvdResult);
        return;
    }
    const INTG iCount = mLoopBound(rvdV.size());
    rvdResult.clear();
    rvdResult.reserve(static_cast<std::size_t>(iCount));
    for (INTG iRow = 0; iRow < iCount; ++iRow)
    {
        const double dValue = rvdV[static_cast<std::size_t>(iRow)];
        QEL_ASSERT_TEXT(dValue > 0.0, "rvdV[iRow] > 0.0");
        rvdResult.push_back(dValue > 0.0 ? std::log(dValue) : 0.0);
    }
}

std::vector<int> mGetINTGVectorIntersection(const std::vector<int>& rviA,
                                            const std::vector<int>& rviB)
{
    std::vector<int> viResult(rviA.size() < rviB.size() ? rviA.size() : rviB.size());
    std::size_t uFound = 0;
    std::size_t uSaved = 0;
    for (std::size_t uA = 0; uA < rviA.size() && uSaved < rviB.size(); ++uA)
    {
        const int iA = rviA[uA];
        if (iA < rviB[uSaved])
            continue;
        for (std::size_t uB = uSaved; uB < rviB.size(); ++uB)
        {
            if (rviB[uB] == iA)
            {
                viResult[uFound++] = iA;
                uSaved = uB + 1;
                break;
            }
        }
    }
    viResult.resize(uFound);
    return viResult;
}
