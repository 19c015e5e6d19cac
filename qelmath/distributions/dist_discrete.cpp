// The general finite distribution object, given by values and their
// probabilities.  Variates by the alias method of A. J. Walker, "An efficient
// method for generating discrete random variables with general
// distributions", ACM TOMS 3 (1977): every slot of a table of n equal
// shares holds its own value up to a cutoff and the value of one alias
// slot above it, so a draw takes one uniform and one comparison whatever n
// is.  The table is built at the first draw and kept with the object.
#include "qel/distdiscrete.h"

#include "qel/checkedcast.h"
#include "qel/discrete.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"

#include <cmath>
#include <cstddef>

CmDistDiscrete::CmDistDiscrete(const std::vector<double>& rvdValues,
                               const std::vector<double>& rvdProbabilities)
    : m_bDidSetUpForRandom(false)
{
    double dRunning = 0.0;
    for (std::size_t i = 0; i < rvdValues.size(); ++i)
    {
        // A NaN has no place in an ordered map: such a value is left out
        // with its probability, and a NaN running sum is no key of the
        // quantile's map.
        if (std::isnan(rvdValues[i]))
            continue;
        // A value without a probability (the second vector shorter than the
        // first) gets probability 0.
        const double dProbability = i < rvdProbabilities.size() ? rvdProbabilities[i] : 0.0;
        dRunning += dProbability;
        // emplace leaves a key that is already there untouched.
        m_mapPdf.emplace(rvdValues[i], dProbability);
        m_mapCdf.emplace(rvdValues[i], dRunning);
        if (!std::isnan(dRunning))
            m_mapInvCdf.emplace(dRunning, rvdValues[i]);
    }
}

double CmDistDiscrete::mPdf(double dX) const { return mDiscretePdf(dX, m_mapPdf); }

double CmDistDiscrete::mCdf(double dX, bool bComplement) const
{
    return mDiscreteCdf(dX, m_mapCdf, bComplement);
}

double CmDistDiscrete::mInvCdf(double dP) const { return mDiscreteInvCdf(dP, m_mapInvCdf); }

void CmDistDiscrete::mSetUpForRandom() const
{
    QEL_ASSERT_TEXT(!m_bDidSetUpForRandom, "! m_bDidSetUpForRandom");
    const std::size_t n = m_mapPdf.size();
    const double dN = static_cast<double>(n);
    const double dOneLessEps = 1.0 - CmQELConst::mInstance()->mGetEps();
    m_vdCutoffs.assign(n, 0.0);
    m_viAliases.assign(n, -1.0);

    double dTotal = 0.0;
    for (const auto& rEntry : m_mapPdf)
        dTotal += rEntry.second;

    // Each slot starts with its own share scaled so that a slot of average
    // probability holds exactly 1; the slots short of 1 (Small) are then
    // filled, one by one, from a slot with a surplus (Large).
    std::vector<INTG> viSmall;
    std::vector<INTG> viLarge;
    INTG iSlot = 0;
    for (const auto& rEntry : m_mapPdf)
    {
        const double dCutoff = rEntry.second * dN / dTotal;
        const std::size_t uSlot = static_cast<std::size_t>(iSlot);
        m_vdCutoffs[uSlot] = dCutoff;
        m_viAliases[uSlot] = static_cast<double>(iSlot);
        if (dCutoff < dOneLessEps)
            viSmall.push_back(iSlot);
        else
            viLarge.push_back(iSlot);
        ++iSlot;
    }

    // Each round retires one Small slot for good, so at most n rounds.
    while (!viSmall.empty() && !viLarge.empty())
    {
        const INTG iValue = viSmall.back();
        viSmall.pop_back();
        const double dCutoff = m_vdCutoffs[static_cast<std::size_t>(iValue)];
        const INTG iAlias = viLarge.back();
        QEL_ASSERT_TEXT(iValue < mCheckedCast<INTG>(m_viAliases.size()),
                        "iValue < mToINTG(m_viAliases.size())");
        QEL_ASSERT_TEXT(iAlias < mCheckedCast<INTG>(m_vdCutoffs.size()),
                        "iAlias < mToINTG(m_vdCutoffs.size())");
        m_viAliases[static_cast<std::size_t>(iValue)] = static_cast<double>(iAlias);
        double& rdAliasCutoff = m_vdCutoffs[static_cast<std::size_t>(iAlias)];
        rdAliasCutoff = rdAliasCutoff - (1.0 - dCutoff);
        if (rdAliasCutoff < dOneLessEps)
        {
            viLarge.pop_back();
            viSmall.push_back(iAlias);
        }
    }
    // What is left in either list keeps its cutoff and its alias to itself.
    m_bDidSetUpForRandom = true;
}

double CmDistDiscrete::mGetRandom() const
{
    if (!m_bDidSetUpForRandom)
        mSetUpForRandom();
    const std::size_t n = m_vdCutoffs.size();
    // An empty distribution has no slot to draw: the missing value, and no
    // uniform is used.
    if (n == 0)
        return CmQELConst::mInstance()->mGetMissingValueCode();
    const double dX = m_pUniformGenerator->mGetRandom() * static_cast<double>(n);
    INTG iSlot = mCheckedCast<INTG>(std::floor(dX));
    // A product that rounds up to n (a uniform within an ulp of 1) belongs
    // to the last slot.
    if (static_cast<std::size_t>(iSlot) >= n)
        iSlot = static_cast<INTG>(n - 1);
    const double dY = 1.0 + static_cast<double>(iSlot) - dX;
    const std::size_t uSlot = static_cast<std::size_t>(iSlot);
    // A NaN cutoff (probabilities that sum to 0) fails the comparison and
    // sends the draw to the alias.
    if (dY <= m_vdCutoffs[uSlot])
        return static_cast<double>(iSlot);
    return m_viAliases[uSlot];
}

bool CmDistDiscrete::mIsContinuous() const { return false; }

void CmDistDiscrete::mGetSupport(double, double, std::vector<double>& rvdSupport) const
{
    rvdSupport.clear();
    rvdSupport.reserve(m_mapPdf.size());
    for (const auto& rEntry : m_mapPdf)
        rvdSupport.push_back(rEntry.first);
}

bool CmDistDiscrete::mHasLowerBound() const { return true; }

bool CmDistDiscrete::mHasUpperBound() const { return true; }

double CmDistDiscrete::mGetLowerBound() const
{
    // An empty distribution has no bounds: the missing value.
    if (m_mapPdf.empty())
        return CmQELConst::mInstance()->mGetMissingValueCode();
    return m_mapPdf.begin()->first;
}

double CmDistDiscrete::mGetUpperBound() const
{
    if (m_mapPdf.empty())
        return CmQELConst::mInstance()->mGetMissingValueCode();
    return m_mapPdf.rbegin()->first;
}
