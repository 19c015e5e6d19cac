// The Weibull distribution object; variates by inversion at one uniform.
// The shape defaults to 0 in the vector form, so that an object made from
// too short a vector is invalid rather than silently exponential.
#include "qel/distclosedform.h"

#include "dist_params.h"
#include "qel/closedform.h"
#include "qel/uniformgenerator.h"

CmDistWeibull::CmDistWeibull(double dShape, double dScale, double dThreshold)
    : m_dShape(dShape), m_dScale(dScale), m_dThreshold(dThreshold)
{
}

CmDistWeibull::CmDistWeibull(const std::vector<double>& rvdParameters)
    : CmDistWeibull(qel_dist::mParam(rvdParameters, 0, 0.0), qel_dist::mParam(rvdParameters, 1, 1.0),
                    qel_dist::mParam(rvdParameters, 2, 0.0))
{
}

bool CmDistWeibull::mAreParamsValid() const { return m_dShape > 0.0 && m_dScale > 0.0; }

double CmDistWeibull::mPdf(double dX) const
{
    return mWeibullPdf(dX, m_dShape, m_dScale, m_dThreshold);
}

double CmDistWeibull::mCdf(double dX, bool bComplement) const
{
    return mWeibullCdf(dX, m_dShape, m_dScale, m_dThreshold, bComplement);
}

double CmDistWeibull::mInvCdf(double dP) const
{
    return mWeibullInvCdf(dP, m_dShape, m_dScale, m_dThreshold);
}

double CmDistWeibull::mGetRandom() const
{
    return mWeibullInvCdf(m_pUniformGenerator->mGetRandom(), m_dShape, m_dScale, m_dThreshold);
}

void CmDistWeibull::mGetDRefPoints(std::vector<double>& rvdPoints) const
{
    rvdPoints.assign(1, m_dThreshold);
}

bool CmDistWeibull::mHasLowerBound() const { return mIncludeLowerBoundInGraph(); }

double CmDistWeibull::mGetLowerBound() const { return m_dThreshold; }

void CmDistWeibull::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dShape, m_dScale, m_dThreshold};
}
