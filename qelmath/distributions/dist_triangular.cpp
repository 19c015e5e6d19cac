// The triangular distribution object on [lower, upper] with its peak at the
// mode; variates by inversion at one uniform.  None of the three parameters
// has a default: a vector too short gives NaN, which the validity rule
// refuses.  A mode at either end is allowed, a degenerate interval is not.
#include "qel/distclosedform.h"

#include "dist_params.h"
#include "qel/closedform.h"
#include "qel/uniformgenerator.h"

CmDistTriangular::CmDistTriangular(double dLower, double dMode, double dUpper)
    : m_dLower(dLower), m_dMode(dMode), m_dUpper(dUpper)
{
}

CmDistTriangular::CmDistTriangular(const std::vector<double>& rvdParameters)
    : CmDistTriangular(qel_dist::mRequiredParam(rvdParameters, 0),
                       qel_dist::mRequiredParam(rvdParameters, 1),
                       qel_dist::mRequiredParam(rvdParameters, 2))
{
}

bool CmDistTriangular::mAreParamsValid() const
{
    return m_dLower <= m_dMode && m_dMode <= m_dUpper && m_dUpper > m_dLower;
}

double CmDistTriangular::mPdf(double dX) const
{
    return mTriangularPdf(dX, m_dLower, m_dMode, m_dUpper);
}

double CmDistTriangular::mCdf(double dX, bool bComplement) const
{
    return mTriangularCdf(dX, m_dLower, m_dMode, m_dUpper, bComplement);
}

double CmDistTriangular::mInvCdf(double dP) const
{
    return mTriangularInvCdf(dP, m_dLower, m_dMode, m_dUpper);
}

double CmDistTriangular::mGetRandom() const
{
    return mTriangularInvCdf(m_pUniformGenerator->mGetRandom(), m_dLower, m_dMode, m_dUpper);
}

void CmDistTriangular::mGetDRefPoints(std::vector<double>& rvdPoints) const
{
    rvdPoints = {m_dLower, m_dMode, m_dUpper};
}

bool CmDistTriangular::mHasLowerBound() const { return true; }

bool CmDistTriangular::mHasUpperBound() const { return true; }

double CmDistTriangular::mGetLowerBound() const { return m_dLower; }

double CmDistTriangular::mGetUpperBound() const { return m_dUpper; }

void CmDistTriangular::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dLower, m_dMode, m_dUpper};
}
