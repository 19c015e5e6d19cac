// The two extreme-value distribution objects, smallest and largest; variates
// by inversion at one uniform.
#include "qel/distclosedform.h"

#include "dist_params.h"
#include "qel/closedform.h"
#include "qel/uniformgenerator.h"

CmDistSmallestExtremeValue::CmDistSmallestExtremeValue(double dLocation, double dScale)
    : m_dLocation(dLocation), m_dScale(dScale)
{
}

CmDistSmallestExtremeValue::CmDistSmallestExtremeValue(const std::vector<double>& rvdParameters)
    : CmDistSmallestExtremeValue(qel_dist::mParam(rvdParameters, 0, 0.0),
                                 qel_dist::mParam(rvdParameters, 1, 1.0))
{
}

bool CmDistSmallestExtremeValue::mAreParamsValid() const { return m_dScale > 0.0; }

double CmDistSmallestExtremeValue::mPdf(double dX) const
{
    return mSmallestExtremeValuePdf(dX, m_dLocation, m_dScale);
}

double CmDistSmallestExtremeValue::mCdf(double dX, bool bComplement) const
{
    return mSmallestExtremeValueCdf(dX, m_dLocation, m_dScale, bComplement);
}

double CmDistSmallestExtremeValue::mInvCdf(double dP) const
{
    return mSmallestExtremeValueInvCdf(dP, m_dLocation, m_dScale);
}

double CmDistSmallestExtremeValue::mGetRandom() const
{
    return mSmallestExtremeValueInvCdf(m_pUniformGenerator->mGetRandom(), m_dLocation, m_dScale);
}

void CmDistSmallestExtremeValue::mGetDRefPoints(std::vector<double>& rvdPoints) const
{
    rvdPoints.assign(1, m_dLocation);
}

void CmDistSmallestExtremeValue::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dLocation, m_dScale};
}

CmDistLargestExtremeValue::CmDistLargestExtremeValue(double dLocation, double dScale)
    : m_dLocation(dLocation), m_dScale(dScale)
{
}

CmDistLargestExtremeValue::CmDistLargestExtremeValue(const std::vector<double>& rvdParameters)
    : CmDistLargestExtremeValue(qel_dist::mParam(rvdParameters, 0, 0.0),
                                qel_dist::mParam(rvdParameters, 1, 1.0))
{
}

bool CmDistLargestExtremeValue::mAreParamsValid() const { return m_dScale > 0.0; }

double CmDistLargestExtremeValue::mPdf(double dX) const
{
    return mLargestExtremeValuePdf(dX, m_dLocation, m_dScale);
}

double CmDistLargestExtremeValue::mCdf(double dX, bool bComplement) const
{
    return mLargestExtremeValueCdf(dX, m_dLocation, m_dScale, bComplement);
}

double CmDistLargestExtremeValue::mInvCdf(double dP) const
{
    return mLargestExtremeValueInvCdf(dP, m_dLocation, m_dScale);
}

double CmDistLargestExtremeValue::mGetRandom() const
{
    return mLargestExtremeValueInvCdf(m_pUniformGenerator->mGetRandom(), m_dLocation, m_dScale);
}

void CmDistLargestExtremeValue::mGetDRefPoints(std::vector<double>& rvdPoints) const
{
    rvdPoints.assign(1, m_dLocation);
}

void CmDistLargestExtremeValue::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dLocation, m_dScale};
}
