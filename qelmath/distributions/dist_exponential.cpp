// The exponential distribution object; variates by inversion at one uniform.
#include "qel/distclosedform.h"

#include "dist_params.h"
#include "qel/closedform.h"
#include "qel/uniformgenerator.h"

CmDistExponential::CmDistExponential(double dScale, double dThreshold)
    : m_dScale(dScale), m_dThreshold(dThreshold)
{
}

CmDistExponential::CmDistExponential(const std::vector<double>& rvdParameters)
    : CmDistExponential(qel_dist::mParam(rvdParameters, 0, 1.0),
                        qel_dist::mParam(rvdParameters, 1, 0.0))
{
}

bool CmDistExponential::mAreParamsValid() const { return m_dScale > 0.0; }

double CmDistExponential::mPdf(double dX) const
{
    return mExponentialPdf(dX, m_dScale, m_dThreshold);
}

double CmDistExponential::mCdf(double dX, bool bComplement) const
{
    return mExponentialCdf(dX, m_dScale, m_dThreshold, bComplement);
}

double CmDistExponential::mInvCdf(double dP) const
{
    return mExponentialInvCdf(dP, m_dScale, m_dThreshold);
}

double CmDistExponential::mGetRandom() const
{
    return mExponentialInvCdf(m_pUniformGenerator->mGetRandom(), m_dScale, m_dThreshold);
}

void CmDistExponential::mGetDRefPoints(std::vector<double>& rvdPoints) const
{
    rvdPoints.assign(1, m_dThreshold);
}

bool CmDistExponential::mHasLowerBound() const { return mIncludeLowerBoundInGraph(); }

double CmDistExponential::mGetLowerBound() const { return m_dThreshold; }

void CmDistExponential::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dScale, m_dThreshold};
}
