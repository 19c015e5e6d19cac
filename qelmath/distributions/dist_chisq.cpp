// The chi-square distribution object.  The distribution function and the
// quantile take the noncentrality; the density and the variates are those of
// the central distribution only, a gamma with shape df / 2 and scale 2, whose
// object is the helper shared by copies.
#include "qel/distkernelbacked.h"

#include "dist_params.h"
#include "qel/kernelbacked.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"

#include <new>

CmDistChiSq::CmDistChiSq(double dDF, double dNoncentrality)
    : m_dDF(dDF), m_dNoncentrality(dNoncentrality)
{
    mInitialize();
}

CmDistChiSq::CmDistChiSq(const std::vector<double>& rvdParameters)
    : CmDistChiSq(qel_dist::mRequiredParam(rvdParameters, 0),
                  qel_dist::mParam(rvdParameters, 1, 0.0))
{
}

void CmDistChiSq::mInitialize()
{
    m_pGamma.reset(new (std::nothrow) CmDistGamma(m_dDF / 2.0, 2.0, 0.0));
}

bool CmDistChiSq::mAreParamsValid() const { return m_dDF > 0.0 && m_dNoncentrality >= 0.0; }

double CmDistChiSq::mPdf(double dX) const
{
    QEL_ASSERT(0.0 == m_dNoncentrality);
    return mChiSqPdf(dX, m_dDF);
}

double CmDistChiSq::mCdf(double dX, bool bComplement) const
{
    return mChiSqCdf(dX, m_dDF, m_dNoncentrality, bComplement);
}

double CmDistChiSq::mInvCdf(double dP) const { return mChiSqInvCdf(dP, m_dDF, m_dNoncentrality); }

double CmDistChiSq::mGetRandom() const
{
    QEL_ASSERT(0.0 == m_dNoncentrality);
    // Without a helper (its allocation failed): the missing value, no draw.
    if (!m_pGamma)
        return mGetMissingValueCode();
    return m_pGamma->mGetRandom();
}

void CmDistChiSq::mGetDRefPoints(std::vector<double>& rvdPoints) const { rvdPoints.assign(1, 0.0); }

bool CmDistChiSq::mHasLowerBound() const { return mIncludeLowerBoundInGraph(); }

double CmDistChiSq::mGetLowerBound() const { return 0.0; }

void CmDistChiSq::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dDF, m_dNoncentrality};
}

void CmDistChiSq::mGetNonInvCDFParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters.assign(1, m_dDF);
}
