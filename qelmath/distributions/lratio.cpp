// The binomial log-likelihood ratio k log(k / (n p)) + (n - k) log((n - k) /
// (n (1 - p))) (the G statistic of a binomial count halved), and the
// function object over it used by the two-sided binomial p-value.
#include "qelmath/distributions/lratio.h"

#include <cmath>

double mBinomialLogRatio(int iN, int iK, double dP)
{
    const double dN = static_cast<double>(iN);
    const double dK = static_cast<double>(iK);
    const double dR = dK / dN;
    double dSum = 0.0;
    if (iK != 0)
    {
        dSum += dK * std::log(dR / dP);
    }
    if (iN - iK != 0)
    {
        dSum += (dN - dK) * std::log((1.0 - dR) / (1.0 - dP));
    }
    return dSum;
}

CmLRatio::CmLRatio(INTG iN, double dP, double dTarget) : m_iN(iN), m_dP(dP)
{
    m_bIntegerX = true;
    m_dTarget = dTarget;
}

CmLRatio::~CmLRatio() = default;

double CmLRatio::operator()(double dX)
{
    // The root finder only looks between the mean and the trial count.
    double dCount = std::trunc(dX);
    if (!(dCount >= 0.0))
    {
        dCount = 0.0;
    }
    if (dCount > static_cast<double>(m_iN))
    {
        dCount = static_cast<double>(m_iN);
    }
    return mBinomialLogRatio(m_iN, static_cast<int>(dCount), m_dP) - m_dTarget;
}
