// The integer uniform distribution object; variates by inversion at one
// uniform.
#include "qel/distdiscrete.h"

#include "dist_params.h"
#include "dist_support.h"
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
    qel_dist::mListIntegers(m_iLower, m_iUpper, rvdSupport);
}

bool CmDistIntegerUniform::mHasLowerBound() const { return true; }

bool CmDistIntegerUniform::mHasUpperBound() const { return true; }

double CmDistIntegerUniform::mGetLowerBound() const { return static_cast<double>(m_iLower); }

double CmDistIntegerUniform::mGetUpperBound() const { return static_cast<double>(m_iUpper); }

void CmDistIntegerUniform::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {static_cast<double>(m_iLower), static_cast<double>(m_iUpper)};
}
