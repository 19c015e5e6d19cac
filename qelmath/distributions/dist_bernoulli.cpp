// The Bernoulli distribution object: the binomial with one trial.  Variates
// compare one uniform with the success probability.
#include "qel/distdiscrete.h"

#include "dist_params.h"
#include "qel/discrete.h"
#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"

CmDistBernoulli::CmDistBernoulli(double dP) : m_dP(dP)
{
    QEL_ASSERT(m_dP >= 0.0);
    QEL_ASSERT(m_dP <= 1.0);
}

CmDistBernoulli::CmDistBernoulli(const std::vector<double>& rvdParameters)
    : m_dP(qel_dist::mRequiredParam(rvdParameters, 0))
{
    QEL_ASSERT(m_dP >= 0.0);
    QEL_ASSERT(m_dP <= 1.0);
}

bool CmDistBernoulli::mAreParamsValid() const { return m_dP >= 0.0 && m_dP <= 1.0; }

double CmDistBernoulli::mPdf(double dX) const { return mBinomialPdf(dX, 1, m_dP); }

double CmDistBernoulli::mCdf(double dX, bool bComplement) const
{
    return mBinomialCdf(dX, 1.0, m_dP, bComplement);
}

double CmDistBernoulli::mInvCdf(double dP) const { return mBinomialInvCdf(dP, 1, m_dP); }

double CmDistBernoulli::mGetRandom() const
{
    return m_pUniformGenerator->mGetRandom() <= m_dP ? 1.0 : 0.0;
}

bool CmDistBernoulli::mIsContinuous() const { return false; }

void CmDistBernoulli::mGetSupport(double, double, std::vector<double>& rvdSupport) const
{
    rvdSupport = {0.0, 1.0};
}

bool CmDistBernoulli::mHasLowerBound() const { return true; }

bool CmDistBernoulli::mHasUpperBound() const { return true; }

double CmDistBernoulli::mGetLowerBound() const { return 0.0; }

double CmDistBernoulli::mGetUpperBound() const { return 1.0; }

void CmDistBernoulli::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dP};
}
