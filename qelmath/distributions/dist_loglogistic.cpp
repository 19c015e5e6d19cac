// The loglogistic distribution object; variates by inversion at one uniform.
#include "qel/distclosedform.h"

#include "dist_params.h"
#include "qel/closedform.h"
#include "qel/uniformgenerator.h"

CmDistLogLogistic::CmDistLogLogistic(double dLocation, double dScale, double dThreshold)
    : m_dLocation(dLocation), m_dScale(dScale), m_dThreshold(dThreshold)
{
}

CmDistLogLogistic::CmDistLogLogistic(const std::vector<double>& rvdParameters)
    : CmDistLogLogistic(qel_dist::mParam(rvdParameters, 0, 0.0),
                        qel_dist::mParam(rvdParameters, 1, 1.0),
                        qel_dist::mParam(rvdParameters, 2, 0.0))
{
}

bool CmDistLogLogistic::mAreParamsValid() const { return m_dScale > 0.0; }

double CmDistLogLogistic::mPdf(double dX) const
{
    return mLogLogisticPdf(dX, m_dLocation, m_dScale, m_dThreshold);
}

double CmDistLogLogistic::mCdf(double dX, bool bComplement) const
{
    return mLogLogisticCdf(dX, m_dLocation, m_dScale, m_dThreshold, bComplement);
}

double CmDistLogLogistic::mInvCdf(double dP) const
{
    return mLogLogisticInvCdf(dP, m_dLocation, m_dScale, m_dThreshold);
}

double CmDistLogLogistic::mGetRandom() const
{
    return mLogLogisticInvCdf(m_pUniformGenerator->mGetRandom(), m_dLocation, m_dScale,
                              m_dThreshold);
}

void CmDistLogLogistic::mGetDRefPoints(std::vector<double>& rvdPoints) const
{
    rvdPoints.assign(1, m_dThreshold);
}

bool CmDistLogLogistic::mHasLowerBound() const { return mIncludeLowerBoundInGraph(); }

double CmDistLogLogistic::mGetLowerBound() const { return m_dThreshold; }

void CmDistLogLogistic::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dLocation, m_dScale, m_dThreshold};
}
