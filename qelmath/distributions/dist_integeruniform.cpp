// The integer uniform distribution object; variates by inversion at one
// uniform.
#include "qel/distdiscrete.h"

#include "dist_params.h"
#include "qel/discrete.h"
#include "qel/uniformgenerator.h"

#include <limits>

CmDistIntegerUniform::CmDistIntegerUniform(int iLower, int iUpper)
    : m_iLower(iLower), m_iUpper(iUpper)
{
}

CmDistIntegerUniform::CmDistIntegerUniform(const std::vector<double>& rvdParameters)
    : CmDistIntegerUniform(qel_dist::mIntParam(rvdParameters, 0, std::numeric_limits<int>::max()),
                           qel_dist::mIntParam(rvdParameters, 1, std::numeric_limits<int>::min()))
{
}

bool CmDistIntegerUniform::mAreParamsValid() const { return m_iLower <= m_iUpper; }

double CmDistIntegerUniform::mPdf(double dX) const
{
    return mIntegerUniformPdf(dX, m_iLower, m_iUpper);
}

double CmDistIntegerUniform::mCdf(double dX, bool bComplement) const
{
    return mIntegerUniformCdf(dX, m_iLower, m_iUpper, bComplement);
}

double CmDistIntegerUniform::mInvCdf(double dP) const
{
    return mIntegerUniformInvCdf(dP, m_iLower, m_iUpper);
}

double CmDistIntegerUniform::mGetRandom() const
{
    return mIntegerUniformInvCdf(m_pUniformGenerator->mGetRandom(), m_iLower, m_iUpper);
}

bool CmDistIntegerUniform::mIsContinuous() const { return false; }

void CmDistIntegerUniform::mGetSupport(double, double, std::vector<double>& rvdSupport) const
{
    rvdSupport.clear();
    if (m_iLower > m_iUpper)
        return;
    // Counted in a wide integer: the step past an upper end of INT_MAX must
    // not overflow.
    const long long llFirst = m_iLower;
    const long long llLast = m_iUpper;
    rvdSupport.reserve(static_cast<std::size_t>(llLast - llFirst + 1));
    for (long long ll = llFirst; ll <= llLast; ++ll)
        rvdSupport.push_back(static_cast<double>(ll));
}

bool CmDistIntegerUniform::mHasLowerBound() const { return true; }

bool CmDistIntegerUniform::mHasUpperBound() const { return true; }

double CmDistIntegerUniform::mGetLowerBound() const { return static_cast<double>(m_iLower); }

double CmDistIntegerUniform::mGetUpperBound() const { return static_cast<double>(m_iUpper); }

void CmDistIntegerUniform::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {static_cast<double>(m_iLower), static_cast<double>(m_iUpper)};
}
