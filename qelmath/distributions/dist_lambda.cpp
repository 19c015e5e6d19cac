// The Tukey lambda distribution object; variates by inversion at one
// uniform, the quantile being the family's one closed formula.  The lambda
// has no default: a vector without it gives NaN, which the flat functions
// meet as they meet any other value.
#include "qel/distclosedform.h"

#include "dist_params.h"
#include "qel/closedform.h"
#include "qel/uniformgenerator.h"

CmDistLambda::CmDistLambda(double dLambda, double dLocation, double dScale)
    : m_dLambda(dLambda), m_dLocation(dLocation), m_dScale(dScale)
{
}

CmDistLambda::CmDistLambda(const std::vector<double>& rvdParameters)
    : CmDistLambda(qel_dist::mRequiredParam(rvdParameters, 0), qel_dist::mParam(rvdParameters, 1, 0.0),
                   qel_dist::mParam(rvdParameters, 2, 1.0))
{
}

bool CmDistLambda::mAreParamsValid() const { return m_dScale > 0.0; }

double CmDistLambda::mPdf(double dX) const
{
    return mLambdaPdf(dX, m_dLambda, m_dLocation, m_dScale);
}

double CmDistLambda::mCdf(double dX, bool bComplement) const
{
    return mLambdaCdf(dX, m_dLambda, m_dLocation, m_dScale, bComplement);
}

double CmDistLambda::mInvCdf(double dP) const
{
    return mLambdaInvCdf(dP, m_dLambda, m_dLocation, m_dScale);
}

double CmDistLambda::mGetRandom() const
{
    return mLambdaInvCdf(m_pUniformGenerator->mGetRandom(), m_dLambda, m_dLocation, m_dScale);
}

void CmDistLambda::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dLambda, m_dLocation, m_dScale};
}
