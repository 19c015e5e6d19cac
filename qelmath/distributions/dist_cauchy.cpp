// The Cauchy distribution object; variates by inversion at one uniform.
#include "qel/distclosedform.h"

#include "dist_params.h"
#include "qel/closedform.h"
#include "qel/uniformgenerator.h"

CmDistCauchy::CmDistCauchy(double dLocation, double dScale)
    : m_dLocation(dLocation), m_dScale(dScale)
{
}

CmDistCauchy::CmDistCauchy(const std::vector<double>& rvdParameters)
    : CmDistCauchy(qel_dist::mParam(rvdParameters, 0, 0.0), qel_dist::mParam(rvdParameters, 1, 1.0))
{
}

bool CmDistCauchy::mAreParamsValid() const { return m_dScale > 0.0; }

double CmDistCauchy::mPdf(double dX) const { return mCauchyPdf(dX, m_dLocation, m_dScale); }

double CmDistCauchy::mCdf(double dX, bool bComplement) const
{
    return mCauchyCdf(dX, m_dLocation, m_dScale, bComplement);
}

double CmDistCauchy::mInvCdf(double dP) const { return mCauchyInvCdf(dP, m_dLocation, m_dScale); }

double CmDistCauchy::mGetRandom() const
{
    return mCauchyInvCdf(m_pUniformGenerator->mGetRandom(), m_dLocation, m_dScale);
}

void CmDistCauchy::mGetDRefPoints(std::vector<double>& rvdPoints) const
{
    rvdPoints.assign(1, m_dLocation);
}

void CmDistCauchy::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dLocation, m_dScale};
}
