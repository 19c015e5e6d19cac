// The binomial distribution object.  A variate is the plain count of the
// trials whose uniform falls at or below the success probability: one
// uniform a trial, so the cost grows linearly with the number of trials.
#include "qel/distdiscrete.h"

#include "dist_params.h"
#include "dist_support.h"
#include "qel/discrete.h"
#include "qel/fuzzy.h"
#include "qel/uniformgenerator.h"

#include <cmath>
#include <limits>

CmDistBinomial::CmDistBinomial(int iTrials, double dProbability)
    : m_iTrials(iTrials), m_dProbability(dProbability)
{
}

CmDistBinomial::CmDistBinomial(const std::vector<double>& rvdParameters)
    : CmDistBinomial(qel_dist::mIntParam(rvdParameters, 0, std::numeric_limits<int>::min()),
                     qel_dist::mRequiredParam(rvdParameters, 1))
{
}

bool CmDistBinomial::mAreParamsValid() const
{
    return m_iTrials >= 1 && m_dProbability >= 0.0 && m_dProbability <= 1.0;
}

double CmDistBinomial::mPdf(double dX) const { return mBinomialPdf(dX, m_iTrials, m_dProbability); }

double CmDistBinomial::mCdf(double dX, bool bComplement) const
{
    return mBinomialCdf(dX, static_cast<double>(m_iTrials), m_dProbability, bComplement);
}

double CmDistBinomial::mInvCdf(double dP) const
{
    return mBinomialInvCdf(dP, m_iTrials, m_dProbability);
}

double CmDistBinomial::mGetRandom() const
{
    int iCount = 0;
    for (int i = 0; i < m_iTrials; ++i)
    {
        if (m_pUniformGenerator->mGetRandom() <= m_dProbability)
            ++iCount;
    }
    return static_cast<double>(iCount);
}

bool CmDistBinomial::mIsContinuous() const { return false; }

void CmDistBinomial::mGetSupport(double dLower, double dUpper,
                                 std::vector<double>& rvdSupport) const
{
    const double dFromEnd = mNearestInteger(dLower);
    const double dToEnd = mNearestInteger(dUpper);
    // A NaN end is read as no limit on its side: the first count is then 0,
    // the last one the number of trials.
    const double dFirst = dFromEnd > 0.0 ? dFromEnd : 0.0;
    const double dReach = dToEnd > dFirst || std::isnan(dToEnd) ? dToEnd : dFirst;
    const double dTrials = static_cast<double>(m_iTrials);
    const double dLast = dReach < dTrials ? dReach : dTrials;
    // Both ends now lie in [0, trials] or the list is empty.
    if (!(dFirst <= dLast))
    {
        rvdSupport.clear();
        return;
    }
    qel_dist::mListIntegers(static_cast<long long>(dFirst), static_cast<long long>(dLast),
                            rvdSupport);
}

bool CmDistBinomial::mHasLowerBound() const { return true; }

bool CmDistBinomial::mHasUpperBound() const { return true; }

double CmDistBinomial::mGetLowerBound() const { return 0.0; }

double CmDistBinomial::mGetUpperBound() const { return static_cast<double>(m_iTrials); }

void CmDistBinomial::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {static_cast<double>(m_iTrials), m_dProbability};
}
