// The Laplace distribution object; variates by inversion at one uniform.
#include "qel/distclosedform.h"

#include "dist_params.h"
#include "qel/closedform.h"
#include "qel/uniformgenerator.h"

CmDistLaplace::CmDistLaplace(double dLocation, double dScale)
    : m_dLocation(dLocation), m_dScale(dScale)
{
}

CmDistLaplace::CmDistLaplace(const std::vector<double>& rvdParameters)
    : CmDistLaplace(qel_dist::mParam(rvdParameters, 0, 0.0), qel_dist::mParam(rvdParameters, 1, 1.0))
{
}

bool CmDistLaplace::mAreParamsValid() const { return m_dScale > 0.0; }

double CmDistLaplace::mPdf(double dX) const { return mLaplacePdf(dX, m_dLocation, m_dScale); }

double CmDistLaplace::mCdf(double dX, bool bComplement) const
{
    return mLaplaceCdf(dX, m_dLocation, m_dScale, bComplement);
}

double CmDistLaplace::mInvCdf(double dP) const
{
    return mLaplaceInvCdf(dP, m_dLocation, m_dScale);
}

double CmDistLaplace::mGetRandom() const
{
    return mLaplaceInvCdf(m_pUniformGenerator->mGetRandom(), m_dLocation, m_dScale);
}

void CmDistLaplace::mGetDRefPoints(std::vector<double>& rvdPoints) const
{
    rvdPoints.assign(1, m_dLocation);
}

void CmDistLaplace::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dLocation, m_dScale};
}
