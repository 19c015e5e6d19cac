// The hypergeometric distribution object.  Variates by sequential sampling
// without replacement: the sample is drawn one member at a time, each a
// success with the probability that the population still left gives it.
#include "qel/distdiscrete.h"

#include "dist_params.h"
#include "dist_support.h"
#include "qel/discrete.h"
#include "qel/uniformgenerator.h"

#include <limits>

CmDistHypergeometric::CmDistHypergeometric(int iPopulation, int iSuccesses, int iSample)
    : m_iPopulation(iPopulation), m_iSuccesses(iSuccesses), m_iSample(iSample)
{
}

CmDistHypergeometric::CmDistHypergeometric(const std::vector<double>& rvdParameters)
    : CmDistHypergeometric(qel_dist::mIntParam(rvdParameters, 0, std::numeric_limits<int>::min()),
                           qel_dist::mIntParam(rvdParameters, 1, std::numeric_limits<int>::min()),
                           qel_dist::mIntParam(rvdParameters, 2, std::numeric_limits<int>::min()))
{
}

bool CmDistHypergeometric::mAreParamsValid() const
{
    return m_iPopulation >= 1 && m_iSuccesses >= 0 && m_iSuccesses <= m_iPopulation &&
           m_iSample >= 0 && m_iSample <= m_iPopulation;
}

double CmDistHypergeometric::mPdf(double dX) const
{
    return mHypergeometricPdf(dX, m_iPopulation, m_iSuccesses, m_iSample);
}

double CmDistHypergeometric::mCdf(double dX, bool bComplement) const
{
    return mHypergeometricCdf(dX, m_iPopulation, m_iSuccesses, m_iSample, bComplement);
}

double CmDistHypergeometric::mInvCdf(double dP) const
{
    return mHypergeometricInvCdf(dP, m_iPopulation, m_iSuccesses, m_iSample);
}

double CmDistHypergeometric::mGetRandom() const
{
    if (m_iSample < 1)
        return 0.0;
    // Wide integers: the differences of arbitrary (invalid) parameters fit.
    const long long llPopulation = m_iPopulation;
    const long long llSuccesses = m_iSuccesses;
    const long long llSample = m_iSample;
    long long llDrawn = 0;
    long long llHits = 0;
    for (;;)
    {
        const long long llLeft = llSuccesses - llHits;
        const long long llPopulationLeft = llPopulation - llDrawn;
        if (llLeft == 0)
            return static_cast<double>(llHits);
        // Everything left is a success.
        if (llPopulationLeft == llLeft)
            return static_cast<double>(llHits + (llSample - llDrawn));
        // Only invalid parameters (more successes than members, a sample
        // larger than the population) exhaust the population here.
        if (llPopulationLeft <= 0)
            return static_cast<double>(llHits);
        const double dU = m_pUniformGenerator->mGetRandom();
        if (static_cast<double>(llLeft) / static_cast<double>(llPopulationLeft) >= dU)
            ++llHits;
        ++llDrawn;
        if (llDrawn >= llSample)
            return static_cast<double>(llHits);
    }
}

bool CmDistHypergeometric::mIsContinuous() const { return false; }

void CmDistHypergeometric::mGetSupport(double, double, std::vector<double>& rvdSupport) const
{
    qel_dist::mListIntegers(static_cast<long long>(mGetLowerBound()),
                  static_cast<long long>(mGetUpperBound()), rvdSupport);
}

bool CmDistHypergeometric::mHasLowerBound() const { return true; }

bool CmDistHypergeometric::mHasUpperBound() const { return true; }

double CmDistHypergeometric::mGetLowerBound() const
{
    const long long llLower = static_cast<long long>(m_iSample) - m_iPopulation + m_iSuccesses;
    return static_cast<double>(llLower > 0 ? llLower : 0);
}

double CmDistHypergeometric::mGetUpperBound() const
{
    return static_cast<double>(m_iSuccesses < m_iSample ? m_iSuccesses : m_iSample);
}

void CmDistHypergeometric::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {static_cast<double>(m_iPopulation), static_cast<double>(m_iSuccesses),
                     static_cast<double>(m_iSample)};
}
