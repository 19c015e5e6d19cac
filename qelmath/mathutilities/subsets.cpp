// Enumerators of the k-subsets of {0, ..., n-1}, without and with replacement.
//
// Without replacement the subsets come in lexicographic order, each formed from
// the one before by the classical successor rule: the rightmost element that
// can still grow is incremented and the elements after it are made consecutive
// (Nijenhuis and Wilf, Combinatorial Algorithms, 2nd ed. 1978, ch. 3; Knuth,
// The Art of Computer Programming, Vol. 4A, Section 7.2.1.3).
//
// With replacement a subset is a non-decreasing sequence.  The n constant
// sequences are handed out first; the others follow in lexicographic order, by
// the successor rule for non-decreasing sequences (the rightmost element below
// n-1 is incremented and the elements after it are set equal to it), skipping
// the constant sequences already delivered.  Their number is C(n+k-1, k).
//
// The counts come from the log-gamma function (see counting.cpp).  A call past
// the last subset is reported with mAssert("false") and changes nothing.
#include "qel/combinatorics.h"

#include "qel/elementary.h"
#include "qel/fuzzy.h"
#include "qel/qelmessaging.h"

#include "wholenumber.h"

#include <cstddef>

namespace
{
// The length of a subset of iK elements; a negative iK, already reported by
// the caller's precondition, gives the empty subset.
std::size_t mSubsetLength(int iK) { return iK > 0 ? static_cast<std::size_t>(iK) : 0u; }
} // namespace

// ---------------------------------------------------------------------------
// Without replacement.

CmSubsetsOfNChooseK::CmSubsetsOfNChooseK() : m_iN(0), m_iK(0), m_iTotal(0), m_iPosition(0) {}

CmSubsetsOfNChooseK::CmSubsetsOfNChooseK(const CmSubsetsOfNChooseK& rOther) = default;

CmSubsetsOfNChooseK::~CmSubsetsOfNChooseK() = default;

CmSubsetsOfNChooseK& CmSubsetsOfNChooseK::operator=(const CmSubsetsOfNChooseK&)
{
    // Deliberate: an enumerator in the middle of its walk is not assigned over.
    QEL_ASSERT_FALSE();
    return *this;
}

int CmSubsetsOfNChooseK::mInitialize(int iN, int iK)
{
    QEL_ASSERT(iK >= 0 && iK <= iN);
    // The count first: when it throws, the enumerator is left as it was.
    const int iTotal = mNChooseK(iN, iK);
    m_iN = iN;
    m_iK = iK;
    m_iTotal = iTotal;
    m_iPosition = 0;
    m_viSubset.assign(mSubsetLength(iK), 0);
    for (std::size_t u = 0; u < m_viSubset.size(); ++u)
        m_viSubset[u] = static_cast<int>(u);
    return m_iTotal;
}

void CmSubsetsOfNChooseK::mNextSubset(std::vector<int>& rviSubset)
{
    if (m_iPosition >= m_iTotal)
    {
        QEL_ASSERT_FALSE();
        return;
    }
    ++m_iPosition;
    rviSubset = m_viSubset;
    if (m_iPosition == m_iTotal)
        return;

    // The j-th element from the right can grow while it stays below iN - j.
    const std::size_t uLength = m_viSubset.size();
    bool bFound = false;
    std::size_t uGrown = 0;
    for (std::size_t j = 0; j < uLength; ++j)
    {
        const std::size_t u = uLength - 1 - j;
        const long long llLimit = static_cast<long long>(m_iN) - static_cast<long long>(j);
        if (static_cast<long long>(m_viSubset[u]) + 1 < llLimit)
        {
            ++m_viSubset[u];
            uGrown = u;
            bFound = true;
            break;
        }
    }
    QEL_ASSERT(bFound);
    if (!bFound)
        return;
    for (std::size_t u = uGrown + 1; u < uLength; ++u)
        m_viSubset[u] = m_viSubset[u - 1] + 1;
}

// ---------------------------------------------------------------------------
// With replacement.

CmSubsetsOfNChooseKWithReplacement::CmSubsetsOfNChooseKWithReplacement()
    : m_iN(0), m_iK(0), m_iTotal(0), m_iPosition(0)
{
}

CmSubsetsOfNChooseKWithReplacement::CmSubsetsOfNChooseKWithReplacement(
    const CmSubsetsOfNChooseKWithReplacement& rOther) = default;

CmSubsetsOfNChooseKWithReplacement::~CmSubsetsOfNChooseKWithReplacement() = default;

CmSubsetsOfNChooseKWithReplacement&
CmSubsetsOfNChooseKWithReplacement::operator=(const CmSubsetsOfNChooseKWithReplacement&)
{
    // Deliberate: an enumerator in the middle of its walk is not assigned over.
    QEL_ASSERT_FALSE();
    return *this;
}

int CmSubsetsOfNChooseKWithReplacement::mInitialize(int iN, int iK)
{
    QEL_ASSERT(iN > 0 && iK > 0);
    // C(n + k - 1, k), the number of multisets of size k; computed first, so
    // that an exception leaves the enumerator as it was.
    const double dN = static_cast<double>(iN);
    const double dK = static_cast<double>(iK);
    const int iTotal = qelcount::mTruncateToInt(mNearestInteger(
        mExponential(mLogGamma(dN + dK) - mLogGamma(dK + 1.0) - mLogGamma(dN), true)));
    m_iN = iN;
    m_iK = iK;
    m_iTotal = iTotal;
    m_iPosition = 0;
    m_viSubset.assign(mSubsetLength(iK), 0);
    return m_iTotal;
}

void CmSubsetsOfNChooseKWithReplacement::mNextSubset(std::vector<int>& rviSubset)
{
    if (m_iPosition >= m_iTotal)
    {
        QEL_ASSERT_FALSE();
        return;
    }
    ++m_iPosition;
    rviSubset = m_viSubset;
    if (m_iPosition == m_iTotal)
        return;

    if (m_iPosition < m_iN)
    {
        m_viSubset.assign(m_viSubset.size(), m_iPosition);
        return;
    }
    if (m_iPosition == m_iN)
        m_viSubset.assign(m_viSubset.size(), 0);

    const std::size_t uLength = m_viSubset.size();
    for (;;)
    {
        std::size_t uGrown = uLength;
        for (std::size_t j = 0; j < uLength; ++j)
        {
            const std::size_t u = uLength - 1 - j;
            if (m_viSubset[u] < m_iN - 1)
            {
                uGrown = u;
                break;
            }
        }
        // Only a count that overstates the multisets could exhaust them here.
        const bool bFound = uGrown < uLength;
        QEL_ASSERT(bFound);
        if (!bFound)
            return;
        const int iValue = m_viSubset[uGrown] + 1;
        for (std::size_t u = uGrown; u < uLength; ++u)
            m_viSubset[u] = iValue;
        // The constant subsets have been handed out first.
        if (m_viSubset.front() != m_viSubset.back())
            return;
    }
}
