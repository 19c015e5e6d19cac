// Student's t distribution object.  A central variate is the square root of
// an F(1, df) variate with a sign drawn after it (negative for U >= 0.5); a
// noncentral one is the quantile at one uniform, found numerically by
// mTInvCdf.
#include "qel/distkernelbacked.h"

#include "dist_params.h"
#include "qel/kernelbacked.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"

#include <cmath>
#include <new>

CmDistT::CmDistT(double dDF, double dNoncentrality) : m_dDF(dDF), m_dNoncentrality(dNoncentrality)
{
    mInitialize();
}

CmDistT::CmDistT(const std::vector<double>& rvdParameters)
    : CmDistT(qel_dist::mRequiredParam(rvdParameters, 0), qel_dist::mParam(rvdParameters, 1, 0.0))
{
}

void CmDistT::mInitialize()
{
    // A failed allocation leaves the helper null; mGetRandom then reports it.
    CmDist* pF = new (std::nothrow) CmDistF(1.0, m_dDF, 0.0);
    if (pF != nullptr)
        m_pF.reset(pF);
}

bool CmDistT::mAreParamsValid() const
{
    return m_dDF > 0.0;
}

double CmDistT::mPdf(double dX) const
{
    return mTPdf(dX, m_dDF, m_dNoncentrality);
}

double CmDistT::mCdf(double dX, bool bComplement) const
{
    return mTCdf(dX, m_dDF, m_dNoncentrality, bComplement);
}

double CmDistT::mInvCdf(double dP) const
{
    return mTInvCdf(dP, m_dDF, m_dNoncentrality);
}

double CmDistT::mGetRandom() const
{
    // Invalid degrees of freedom give the missing value without drawing.
    QEL_ASSERT(mAreParamsValid());
    if (!mAreParamsValid())
        return mGetMissingValueCode();
    if (m_dNoncentrality != 0.0)
        return mTInvCdf(m_pUniformGenerator->mGetRandom(), m_dDF, m_dNoncentrality);

    // A missing helper, or a missing F variate (the F's own helper failed),
    // gives the missing value without the sign's uniform.
    QEL_ASSERT(m_pF != nullptr);
    if (m_pF == nullptr)
        return mGetMissingValueCode();
    const double dF = m_pF->mGetRandom();
    if (mIsNumericMissing(dF))
        return dF;
    const double dT = std::sqrt(dF);
    return m_pUniformGenerator->mGetRandom() < 0.5 ? dT : -dT;
}

void CmDistT::mGetDRefPoints(std::vector<double>& rvdPoints) const
{
    rvdPoints.assign(1, 0.0);
}

void CmDistT::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dDF, m_dNoncentrality};
}

void CmDistT::mGetNonInvCDFParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters.assign(1, m_dDF);
}
