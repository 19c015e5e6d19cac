// The F distribution object.  A central variate is formed from a beta
// variate b with shapes numerator / 2 and denominator / 2 as
// (denominator / numerator) b / (1 - b); b is held below 1 - eps, so a beta
// variate that rounds to 1 (a denominator near 0) gives a large finite value
// rather than a division by zero.
#include "qel/distkernelbacked.h"

#include "dist_params.h"
#include "qel/kernelbacked.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"

#include <algorithm>
#include <new>

CmDistF::CmDistF(double dDFNum, double dDFDenom, double dNoncentrality)
    : m_dDFNum(dDFNum), m_dDFDenom(dDFDenom), m_dNoncentrality(dNoncentrality)
{
    mInitialize();
}

CmDistF::CmDistF(const std::vector<double>& rvdParameters)
    : CmDistF(qel_dist::mRequiredParam(rvdParameters, 0),
              qel_dist::mRequiredParam(rvdParameters, 1), qel_dist::mParam(rvdParameters, 2, 0.0))
{
}

void CmDistF::mInitialize()
{
    // A failed allocation leaves the helper null; mGetRandom then reports it.
    CmDist* pBeta = new (std::nothrow) CmDistBeta(m_dDFNum / 2.0, m_dDFDenom / 2.0);
    if (pBeta != nullptr)
        m_pBeta.reset(pBeta);
}

bool CmDistF::mAreParamsValid() const
{
    return m_dDFNum > 0.0 && m_dDFDenom > 0.0 && m_dNoncentrality >= 0.0;
}

double CmDistF::mPdf(double dX) const
{
    QEL_ASSERT(0.0 == m_dNoncentrality);
    return mFPdf(dX, m_dDFNum, m_dDFDenom);
}

double CmDistF::mCdf(double dX, bool bComplement) const
{
    return mFCdf(dX, m_dDFNum, m_dDFDenom, m_dNoncentrality, bComplement);
}

double CmDistF::mInvCdf(double dP) const
{
    return mFInvCdf(dP, m_dDFNum, m_dDFDenom, m_dNoncentrality);
}

double CmDistF::mGetRandom() const
{
    // The variate is the central one whatever the noncentrality.
    QEL_ASSERT(0.0 == m_dNoncentrality);
    // Invalid degrees of freedom and a missing helper give the missing value
    // without drawing.
    QEL_ASSERT(mAreParamsValid());
    QEL_ASSERT(m_pBeta != nullptr);
    if (!mAreParamsValid() || m_pBeta == nullptr)
        return mGetMissingValueCode();

    const double dEps = CmQELConst::mInstance()->mGetEps();
    const double dBeta = m_pBeta->mGetRandom();
    // Passed on: the beta of two infinite degrees of freedom is missing.
    if (mIsNumericMissing(dBeta))
        return dBeta;
    const double dB = std::min(dBeta, 1.0 - dEps);
    return (m_dDFDenom / m_dDFNum) * dB / (1.0 - dB);
}

void CmDistF::mGetDRefPoints(std::vector<double>& rvdPoints) const
{
    rvdPoints.assign(1, 0.0);
}

bool CmDistF::mHasLowerBound() const
{
    return mIncludeLowerBoundInGraph();
}

double CmDistF::mGetLowerBound() const
{
    return 0.0;
}

void CmDistF::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dDFNum, m_dDFDenom, m_dNoncentrality};
}

void CmDistF::mGetNonInvCDFParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dDFNum, m_dDFDenom};
}
