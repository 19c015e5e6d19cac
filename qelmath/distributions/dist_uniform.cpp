// The uniform distribution object on [lower, upper].  A variate is
// U * (upper - lower) + lower at one uniform U in [0, 1), so it never
// reaches the upper end.
#include "qel/distclosedform.h"

#include "dist_params.h"
#include "qel/closedform.h"
#include "qel/uniformgenerator.h"

CmDistUniform::CmDistUniform(double dLower, double dUpper) : m_dLower(dLower), m_dUpper(dUpper) {}

CmDistUniform::CmDistUniform(const std::vector<double>& rvdParameters)
    : CmDistUniform(qel_dist::mParam(rvdParameters, 0, 0.0), qel_dist::mParam(rvdParameters, 1, 1.0))
{
}

bool CmDistUniform::mAreParamsValid() const { return m_dUpper > m_dLower; }

double CmDistUniform::mPdf(double dX) const { return mUniformPdf(dX, m_dLower, m_dUpper); }

double CmDistUniform::mCdf(double dX, bool bComplement) const
{
    return mUniformCdf(dX, m_dLower, m_dUpper, bComplement);
}

double CmDistUniform::mInvCdf(double dP) const { return mUniformInvCdf(dP, m_dLower, m_dUpper); }

double CmDistUniform::mGetRandom() const
{
    return m_pUniformGenerator->mGetRandom() * (m_dUpper - m_dLower) + m_dLower;
}

void CmDistUniform::mGetDRefPoints(std::vector<double>& rvdPoints) const
{
    rvdPoints = {m_dLower, m_dUpper};
}

bool CmDistUniform::mHasLowerBound() const { return true; }

bool CmDistUniform::mHasUpperBound() const { return true; }

double CmDistUniform::mGetLowerBound() const { return m_dLower; }

double CmDistUniform::mGetUpperBound() const { return m_dUpper; }

void CmDistUniform::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dLower, m_dUpper};
}
