// CbRows, an ordered list of 1-based row numbers, and the Singleton base.
#include "qel/qelbt.h"

#include <cstddef>

CbRows::CbRows() = default;
CbRows::~CbRows() = default;

void CbRows::mUseAllRows(INTG iRowCt)
{
    m_viRows.clear();
    if (iRowCt <= 0)
        return;
    m_viRows.reserve(static_cast<std::size_t>(iRowCt));
    for (INTG i = 1; i <= iRowCt; ++i)
        m_viRows.push_back(i);
}

void CbRows::mReserve(INTG iRowCt)
{
    // Reserving makes room for iRowCt rows, each to be set by mSetRow.
    m_viRows.assign(iRowCt > 0 ? static_cast<std::size_t>(iRowCt) : 0u, 0);
}

void CbRows::mSetRow(INTG iIndex, INTG iRow)
{
    if (iIndex < 0)
        return;
    const std::size_t uIndex = static_cast<std::size_t>(iIndex);
    if (uIndex >= m_viRows.size())
        m_viRows.resize(uIndex + 1, 0);
    m_viRows[uIndex] = iRow;
}

INTG CbRows::mGetRow(INTG iIndex) const
{
    if (iIndex < 0 || static_cast<std::size_t>(iIndex) >= m_viRows.size())
        return 0;
    return m_viRows[static_cast<std::size_t>(iIndex)];
}

INTG CbRows::mGetRowCt() const { return static_cast<INTG>(m_viRows.size()); }

Singleton::Singleton(int iKind) : m_iKind(iKind) {}
Singleton::~Singleton() = default;
