// By-reference entries of the subset enumeration, for callers that pass every
// argument by address and count from 1.  They drive one enumerator kept for
// the whole process: one enumeration at a time, from one thread at a time.
#include "qel/combinatorics.h"

#include "qel/qelmessaging.h"

#include <cstddef>
#include <vector>

namespace
{
CmSubsetsOfNChooseK& mProcessEnumerator()
{
    static CmSubsetsOfNChooseK s_enumerator;
    return s_enumerator;
}
} // namespace

int INIT_N_CHOOSE_K_SUBSETS(int* iN, int* iK)
{
    if (iN == nullptr || iK == nullptr)
    {
        QEL_ASSERT_FALSE();
        return 0;
    }
    return mProcessEnumerator().mInitialize(*iN, *iK);
}

void NEXT_N_CHOOSE_K_SUBSET(int* piSubset, int* pfiSize)
{
    if (pfiSize == nullptr)
    {
        QEL_ASSERT_FALSE();
        return;
    }
    std::vector<int> viSubscripts;
    mProcessEnumerator().mNextSubset(viSubscripts);
    QEL_ASSERT_TEXT(*pfiSize >= 0 &&
                        static_cast<std::size_t>(*pfiSize) == viSubscripts.size(),
                    "*pfiSize == viSubscripts.size()");
    // Never more than the caller's array holds, nor more than there is.
    std::size_t uCount = viSubscripts.size();
    if (*pfiSize < 0)
        uCount = 0;
    else if (static_cast<std::size_t>(*pfiSize) < uCount)
        uCount = static_cast<std::size_t>(*pfiSize);
    if (uCount > 0 && piSubset == nullptr)
    {
        QEL_ASSERT_FALSE();
        return;
    }
    for (std::size_t u = 0; u < uCount; ++u)
        piSubset[u] = viSubscripts[u] + 1;
}
