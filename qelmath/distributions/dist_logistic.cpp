// The logistic distribution object; variates by inversion at one uniform.
#include "qel/distclosedform.h"

#include "dist_params.h"
#include "qel/closedform.h"
#include "qel/uniformgenerator.h"

CmDistLogistic::CmDistLogistic(double dLocation, double dScale)
    : m_dLocation(dLocation), m_dScale(dScale)
{
}

CmDistLogistic::CmDistLogistic(const std::vector<double>& rvdParameters)
    : CmDistLogistic(qel_dist::mParam(rvdParameters, 0, 0.0), qel_dist::mParam(rvdParameters, 1, 1.0))
{
}

bool CmDistLogistic::mAreParamsValid() const { return m_dScale > 0.0; }

double CmDistLogistic::mPdf(double dX) const { return mLogisticPdf(dX, m_dLocation, m_dScale); }

double CmDistLogistic::mCdf(double dX, bool bComplement) const
{
    return mLogisticCdf(dX, m_dLocation, m_dScale, bComplement);
}

double CmDistLogistic::mInvCdf(double dP) const
{
    return mLogisticInvCdf(dP, m_dLocation, m_dScale);
}

double CmDistLogistic::mGetRandom() const
{
    return mLogisticInvCdf(m_pUniformGenerator->mGetRandom(), m_dLocation, m_dScale);
}

// The median, through the virtual quantile.
void CmDistLogistic::mGetDRefPoints(std::vector<double>& rvdPoints) const
{
    rvdPoints.assign(1, mInvCdf(0.5));
}

void CmDistLogistic::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dLocation, m_dScale};
}
