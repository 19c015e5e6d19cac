// The negative binomial distribution object, and the geometric as its case
// r = 1.  The flat functions count trials; an object that counts failures
// shifts its argument by r on the way in and its quantile by r on the way
// out.  A variate is a Poisson variate whose mean is drawn from the mixing
// distribution (a gamma with shape r and scale (1 - p) / p, an exponential
// for the geometric): the gamma mixture of Poissons is the negative binomial
// count of failures.
#include "qel/distdiscrete.h"

#include "dist_params.h"
#include "qel/discrete.h"
#include "qel/distclosedform.h"
#include "qel/distkernelbacked.h"
#include "qel/qelbt.h"
#include "qel/uniformgenerator.h"

#include <algorithm>
#include <new>

namespace
{

// One Poisson variate with mean dMean, from a Poisson object made for the
// draw.  A mixing variate of exactly 0 (a gamma variate can be 0 for a small
// r) is a Poisson with no mass beyond 0; its quantile would answer 0 too,
// after reporting "dMu > 0.0", so the answer is given here directly.  The
// uniform is drawn in both cases, which keeps the count of draws independent
// of the mean.
double mDrawPoisson(double dMean, CmUniformGenerator* pGenerator)
{
    if (dMean == 0.0)
    {
        pGenerator->mGetRandom();
        return 0.0;
    }
    return CmDistPoisson(dMean).mGetRandom();
}

} // namespace

CmDistNegBinomial::CmDistNegBinomial() : CmDistNegBinomial(0.5, 1.0, false) {}

CmDistNegBinomial::CmDistNegBinomial(double dProbability, double dR, bool bCountFailures)
    : CmDistNegBinomial(dProbability, dR, bCountFailures, NoHelper())
{
    m_pMixing.reset(new (std::nothrow)
                        CmDistGamma(m_dR, (1.0 - m_dProbability) / m_dProbability, 0.0));
}

CmDistNegBinomial::CmDistNegBinomial(const std::vector<double>& rvdParameters, bool bCountFailures)
    : CmDistNegBinomial(qel_dist::mRequiredParam(rvdParameters, 0),
                        qel_dist::mRequiredParam(rvdParameters, 1), bCountFailures)
{
}

CmDistNegBinomial::CmDistNegBinomial(double dProbability, double dR, bool bCountFailures, NoHelper)
    : m_dProbability(dProbability), m_dR(dR), m_bCountFailures(bCountFailures)
{
}

bool CmDistNegBinomial::mAreParamsValid() const
{
    return m_dProbability > 0.0 && m_dProbability < 1.0 && m_dR > 0.0;
}

double CmDistNegBinomial::mPdf(double dX) const
{
    return mNegBinomialPdf(m_bCountFailures ? dX + m_dR : dX, m_dProbability, m_dR);
}

double CmDistNegBinomial::mCdf(double dX, bool bComplement) const
{
    return mNegBinomialCdf(m_bCountFailures ? dX + m_dR : dX, m_dProbability, m_dR, bComplement);
}

double CmDistNegBinomial::mInvCdf(double dP) const
{
    const double dTrials = mNegBinomialInvCdf(dP, m_dProbability, m_dR);
    if (!m_bCountFailures || mIsNumericMissing(dTrials))
        return dTrials;
    return dTrials - m_dR;
}

double CmDistNegBinomial::mGetRandom() const
{
    // Without a mixing helper (its allocation failed): the missing value, no
    // draw.
    if (!m_pMixing)
        return mGetMissingValueCode();
    const double dMean = m_pMixing->mGetRandom();
    const double dFailures = mDrawPoisson(dMean, m_pUniformGenerator);
    if (m_bCountFailures || mIsNumericMissing(dFailures))
        return dFailures;
    return dFailures + m_dR;
}

bool CmDistNegBinomial::mIsContinuous() const { return false; }

void CmDistNegBinomial::mGetSupport(double dLower, double dUpper,
                                    std::vector<double>& rvdSupport) const
{
    rvdSupport.clear();
    const double dFirst = std::max(mGetLowerBound(), dLower);
    const double dLast = std::max(dFirst, dUpper);
    // Saturating: a count beyond the range of int is the largest int, and a
    // NaN (a NaN end) the smallest, which lists nothing.
    const int iCount = qel_dist::mTruncateToInt(dLast - dFirst + 1.0);
    for (int i = 0; i < iCount; ++i)
        rvdSupport.push_back(dFirst + static_cast<double>(i));
}

bool CmDistNegBinomial::mHasLowerBound() const { return true; }

double CmDistNegBinomial::mGetLowerBound() const { return m_bCountFailures ? 0.0 : m_dR; }

void CmDistNegBinomial::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dProbability, m_dR};
}
