// CmRealFunction: the defaults and convergence tests of the function object
// that the one-dimensional solvers work on.  The default tolerances are the
// relative precision of doubles and a tiny absolute term, so that every
// ordinary search ends by the relative width of its bracket.
//
// Stream form: one base-class layer, version 1, holding the whole-number flag
// and the five doubles in member order; a reader skips whatever a later
// version adds to the layer.
#include "qel/realfunction.h"

#include "qel/qelbt.h"

#include <algorithm>
#include <cmath>

namespace
{
// The abstract class is known by name; it makes no objects of its own.
const CmRuntimeClass s_rcRealFunction("CmRealFunction", nullptr, 1);
} // namespace

CmRealFunction::CmRealFunction()
    : m_bIntegerX(false), m_dTarget(0.0),
      m_dAbsoluteToleranceForX(CmQELConst::mInstance()->mGetNearlyZero()),
      m_dRelativeToleranceForX(CmQELConst::mInstance()->mGetEps()),
      m_dAbsoluteToleranceForF(CmQELConst::mInstance()->mGetNearlyZero()),
      m_dRelativeToleranceForF(CmQELConst::mInstance()->mGetEps())
{
}

CmRealFunction::CmRealFunction(const CmRealFunction& rOther)
    : CmPersistent(rOther), m_bIntegerX(rOther.m_bIntegerX), m_dTarget(rOther.m_dTarget),
      m_dAbsoluteToleranceForX(rOther.m_dAbsoluteToleranceForX),
      m_dRelativeToleranceForX(rOther.m_dRelativeToleranceForX),
      m_dAbsoluteToleranceForF(rOther.m_dAbsoluteToleranceForF),
      m_dRelativeToleranceForF(rOther.m_dRelativeToleranceForF)
{
}

CmRealFunction::~CmRealFunction() = default;

CmRealFunction& CmRealFunction::operator=(const CmRealFunction& rOther)
{
    if (this != &rOther)
    {
        m_bIntegerX = rOther.m_bIntegerX;
        m_dTarget = rOther.m_dTarget;
        m_dAbsoluteToleranceForX = rOther.m_dAbsoluteToleranceForX;
        m_dRelativeToleranceForX = rOther.m_dRelativeToleranceForX;
        m_dAbsoluteToleranceForF = rOther.m_dAbsoluteToleranceForF;
        m_dRelativeToleranceForF = rOther.m_dRelativeToleranceForF;
    }
    return *this;
}

double CmRealFunction::mGetAbsoluteToleranceForX() const
{
    return m_dAbsoluteToleranceForX;
}
double CmRealFunction::mGetRelativeToleranceForX() const
{
    return m_dRelativeToleranceForX;
}
double CmRealFunction::mGetAbsoluteToleranceForF() const
{
    return m_dAbsoluteToleranceForF;
}
double CmRealFunction::mGetRelativeToleranceForF() const
{
    return m_dRelativeToleranceForF;
}

bool CmRealFunction::mIsConvergedForX(double dA, double dB) const
{
    const double dWidth = std::fabs(dA - dB);
    if (m_bIntegerX)
    {
        // Two whole numbers less than 2 apart leave nothing for an interval
        // search to improve; the caller settles the choice between them.
        if (dWidth < 2.0)
            return true;
    }
    else if (dWidth < mGetAbsoluteToleranceForX())
    {
        return true;
    }
    return dWidth < mGetRelativeToleranceForX() * std::max(std::fabs(dA), std::fabs(dB));
}

bool CmRealFunction::mIsConvergedForF(double dF) const
{
    // The members, not the virtual getters, and a relative bound tied to the
    // target rather than to the value: both deliberate.
    const double dAbsF = std::fabs(dF);
    return dAbsF <= m_dAbsoluteToleranceForF ||
           dAbsF <= std::fabs(m_dTarget) * m_dRelativeToleranceForF;
}

void CmRealFunction::mWrite(CmIStream& rStream)
{
    rStream.mWriteBaseVersion(1);
    rStream.mWriteValue(m_bIntegerX);
    rStream.mWrite(&m_dTarget, 8, nullptr, 0);
    rStream.mWrite(&m_dAbsoluteToleranceForX, 8, nullptr, 0);
    rStream.mWrite(&m_dRelativeToleranceForX, 8, nullptr, 0);
    rStream.mWrite(&m_dAbsoluteToleranceForF, 8, nullptr, 0);
    rStream.mWrite(&m_dRelativeToleranceForF, 8, nullptr, 0);
    rStream.mWriteSkipBytes(0);
}

void CmRealFunction::mRead(CmIStream& rStream)
{
    rStream.mReadBaseVersion();
    rStream.mReadValue(m_bIntegerX);
    rStream.mRead(&m_dTarget, 8, nullptr, 0);
    rStream.mRead(&m_dAbsoluteToleranceForX, 8, nullptr, 0);
    rStream.mRead(&m_dRelativeToleranceForX, 8, nullptr, 0);
    rStream.mRead(&m_dAbsoluteToleranceForF, 8, nullptr, 0);
    rStream.mRead(&m_dRelativeToleranceForF, 8, nullptr, 0);
    rStream.mReadSkipBytes(true);
}
