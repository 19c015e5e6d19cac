// The gamma distribution object.  Density, distribution function and
// quantile forward to the flat gamma functions; a variate is a standard
// gamma variate from a helper chosen by the shape, scaled and shifted.  The
// helper is shared by copies, so that a copy continues the helper's state
// (the spare normal variate of the large-shape scheme) rather than forking it.
#include "qel/distkernelbacked.h"

#include "dist_gamma_helpers.h"
#include "dist_params.h"
#include "qel/distclosedform.h"
#include "qel/fuzzy.h"
#include "qel/kernelbacked.h"
#include "qel/qelbt.h"

#include <new>

CmDistGamma::CmDistGamma(double dShape, double dScale, double dThreshold)
    : m_dShape(dShape), m_dScale(dScale), m_dThreshold(dThreshold)
{
    mInitialize();
}

CmDistGamma::CmDistGamma(const std::vector<double>& rvdParameters)
    : CmDistGamma(qel_dist::mRequiredParam(rvdParameters, 0),
                  qel_dist::mRequiredParam(rvdParameters, 1),
                  qel_dist::mParam(rvdParameters, 2, 0.0))
{
}

void CmDistGamma::mInitialize()
{
    const double dA = m_dShape;
    CmDist* pGenerator;
    if (mEqualWithinFuzz(dA, 1.0, 0.0))
        pGenerator = new (std::nothrow) CmDistExponential(1.0, 0.0);
    else if (dA >= 4.0)
        pGenerator = new (std::nothrow) CmDistGammaC(dA);
    else if (dA >= 1.0)
        pGenerator = new (std::nothrow) CmDistGammaB(dA);
    else
        pGenerator = new (std::nothrow) CmDistGammaA(dA);
    m_pGenerator.reset(pGenerator);
}

bool CmDistGamma::mAreParamsValid() const { return m_dShape > 0.0 && m_dScale > 0.0; }

double CmDistGamma::mPdf(double dX) const
{
    return mGammaPdf(dX, m_dShape, m_dScale, m_dThreshold);
}

double CmDistGamma::mCdf(double dX, bool bComplement) const
{
    return mGammaCdf(dX, m_dShape, m_dScale, m_dThreshold, bComplement);
}

double CmDistGamma::mInvCdf(double dP) const
{
    return mGammaInvCdf(dP, m_dShape, m_dScale, m_dThreshold);
}

double CmDistGamma::mGetRandom() const
{
    // Without a helper (its allocation failed) there is no variate: the
    // missing value, and no uniform is drawn.
    if (!m_pGenerator)
        return mGetMissingValueCode();
    return m_pGenerator->mGetRandom() * m_dScale + m_dThreshold;
}

void CmDistGamma::mGetDRefPoints(std::vector<double>& rvdPoints) const
{
    rvdPoints.assign(1, m_dThreshold);
}

bool CmDistGamma::mHasLowerBound() const { return mIncludeLowerBoundInGraph(); }

double CmDistGamma::mGetLowerBound() const { return m_dThreshold; }

void CmDistGamma::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dShape, m_dScale, m_dThreshold};
}
