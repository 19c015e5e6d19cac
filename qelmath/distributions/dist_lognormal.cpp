// The lognormal distribution object.  A variate is exp(Z) + threshold, Z the
// variate of an owned normal object with the lognormal's location and scale;
// that object draws its variates in pairs (the polar method), so the
// lognormal inherits its economy of one round of uniforms per two variates.
// Copies share the helper, spare variate included.
#include "qel/distclosedform.h"

#include "dist_params.h"
#include "qel/closedform.h"
#include "qel/elementary.h"
#include "qel/qelbt.h"

#include <new>

CmDistLogNormal::CmDistLogNormal(double dLocation, double dScale, double dThreshold)
    : m_dLocation(dLocation), m_dScale(dScale), m_dThreshold(dThreshold)
{
    // A failed allocation leaves the pointer null; mGetRandom then gives the
    // missing value instead of a variate.
    CmDistNormal* pNormal = new (std::nothrow) CmDistNormal(dLocation, dScale);
    if (pNormal != nullptr)
        m_pNormal.reset(pNormal);
}

CmDistLogNormal::CmDistLogNormal(const std::vector<double>& rvdParameters)
    : CmDistLogNormal(qel_dist::mParam(rvdParameters, 0, 0.0),
                      qel_dist::mParam(rvdParameters, 1, 1.0),
                      qel_dist::mParam(rvdParameters, 2, 0.0))
{
}

bool CmDistLogNormal::mAreParamsValid() const { return m_dScale > 0.0; }

double CmDistLogNormal::mPdf(double dX) const
{
    return mLogNormalPdf(dX, m_dLocation, m_dScale, m_dThreshold);
}

double CmDistLogNormal::mCdf(double dX, bool bComplement) const
{
    return mLogNormalCdf(dX, m_dLocation, m_dScale, m_dThreshold, bComplement);
}

double CmDistLogNormal::mInvCdf(double dP) const
{
    return mLogNormalInvCdf(dP, m_dLocation, m_dScale, m_dThreshold);
}

double CmDistLogNormal::mGetRandom() const
{
    if (!m_pNormal)
        return CmQELConst::mInstance()->mGetMissingValueCode();
    return mExponential(m_pNormal->mGetRandom(), false) + m_dThreshold;
}

void CmDistLogNormal::mGetDRefPoints(std::vector<double>& rvdPoints) const
{
    rvdPoints.assign(1, m_dThreshold);
}

bool CmDistLogNormal::mHasLowerBound() const { return mIncludeLowerBoundInGraph(); }

double CmDistLogNormal::mGetLowerBound() const { return m_dThreshold; }

void CmDistLogNormal::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dLocation, m_dScale, m_dThreshold};
}
