// The Poisson distribution object; variates by inversion at one uniform.
#include "qel/distdiscrete.h"

#include "dist_params.h"
#include "dist_support.h"
#include "qel/checkedcast.h"
#include "qel/discrete.h"
#include "qel/qelbt.h"
#include "qel/uniformgenerator.h"

CmDistPoisson::CmDistPoisson(double dMean) : m_dMean(dMean) {}

CmDistPoisson::CmDistPoisson(const std::vector<double>& rvdParameters)
    : CmDistPoisson(qel_dist::mRequiredParam(rvdParameters, 0))
{
}

bool CmDistPoisson::mAreParamsValid() const { return m_dMean > 0.0; }

double CmDistPoisson::mPdf(double dX) const { return mPoissonPdf(dX, m_dMean); }

double CmDistPoisson::mCdf(double dX, bool bComplement) const
{
    return mPoissonCdf(dX, m_dMean, bComplement);
}

double CmDistPoisson::mInvCdf(double dP) const { return mPoissonInvCdf(dP, m_dMean); }

double CmDistPoisson::mGetRandom() const
{
    return mPoissonInvCdf(m_pUniformGenerator->mGetRandom(), m_dMean);
}

bool CmDistPoisson::mIsContinuous() const { return false; }

void CmDistPoisson::mGetSupport(double dLower, double dUpper, std::vector<double>& rvdSupport) const
{
    // The ends are truncated, not rounded; an end beyond the range of INTG
    // is reported and saturates, a NaN end is reported and reads as 0.
    const INTG iFromEnd = mCheckedCast<INTG>(dLower);
    const INTG iToEnd = mCheckedCast<INTG>(dUpper);
    const long long llFirst = iFromEnd > 0 ? iFromEnd : 0;
    const long long llLast = iToEnd > llFirst ? iToEnd : llFirst;
    qel_dist::mListIntegers(llFirst, llLast, rvdSupport);
}

bool CmDistPoisson::mHasLowerBound() const { return true; }

double CmDistPoisson::mGetLowerBound() const { return 0.0; }

void CmDistPoisson::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dMean};
}
