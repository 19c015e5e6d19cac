// Standard gamma variates for a shape a >= 4 by a composition of two
// rejection schemes for the density of x^b e^-x (b = a - 1).  The body is a
// normal with mean b and variance q = a + sqrt(8 a / 3), truncated to
// [0, t] with t = b + sqrt(6 q); the tail beyond t is an exponential with rate
// w / t, w = sqrt(6 q), entered with the fixed probability p.  The constant c
// = -log(sqrt(2 pi) p / (1 - p)) puts the tail's envelope on the body's
// scale, so that the two pieces join into one density.  Points of the body
// near the mode are kept by the squeeze 1 - y <= e^-y without a logarithm.
#include "dist_gamma_helpers.h"

#include "qel/elementary.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/uniformgenerator.h"

#include <cmath>

CmDistGammaC::CmDistGammaC(double dShape)
    : m_dShape(dShape), m_dAlpha(dShape - 1.0), m_dSqrtShape(std::sqrt(dShape)),
      m_dQ(std::sqrt(8.0 / 3.0) * std::sqrt(dShape) + dShape), m_dSqrtQ(std::sqrt(m_dQ)),
      m_dRatio(m_dQ / m_dAlpha), m_dW(std::sqrt(6.0) * std::sqrt(m_dQ)), m_dTail(m_dW + m_dAlpha),
      m_dTailProbability(0.009572265238289),
      m_dTailConstant(-mLog(std::sqrt(2.0 * CmQELConst::mInstance()->mGetPi()) *
                                m_dTailProbability / (1.0 - m_dTailProbability),
                            false)),
      m_distNormal(0.0, 1.0)
{
}

double CmDistGammaC::mGetRandom() const
{
    // An infinite shape is valid by the gamma's rule but has no finite
    // variate, and every round would compare NaNs and be rejected: the limit
    // is given at once, without a draw.
    if (std::isinf(m_dShape))
        return m_dShape;
    double dX = 0.0;
    for (;;)
    {
        try
        {
            if (mRound(dX))
                return dX;
        }
        catch (const CmFloatOverflow&)
        {
            // The round is abandoned; the next one starts afresh.
        }
    }
}

bool CmDistGammaC::mRound(double& rdX) const
{
    const double dP = m_dTailProbability;
    const double dT = m_dTail;
    const double dW = m_dW;
    const double dB = m_dAlpha;
    const double dR = m_dRatio;
    const double dS = m_dSqrtShape;
    const double dC = m_dTailConstant;
    const double dG = m_dSqrtQ;

    const double dU = m_pUniformGenerator->mGetRandom();
    if (dU < dP)
    {
        // The exponential tail beyond t.
        const double dX = (-mLog(m_pUniformGenerator->mGetRandom(), true) / dW + 1.0) * dT;
        const double dV = m_pUniformGenerator->mGetRandom();
        const double dY = (mLog(dX / dB, true) + 2.0 - dX / dT) * dB + dC - dT;
        rdX = dX;
        return dY - mLog(dG * dW / dT, true) >= mLog(dV, true);
    }

    // The normal body on [0, t].
    const double dZ = m_distNormal.mGetRandom();
    const double dX = dG * dZ + dB;
    if (dX < 0.0 || dX > dT)
        return false;
    const double dV = m_pUniformGenerator->mGetRandom();
    const double dH = dZ * dZ * 0.5;
    rdX = dX;
    if (dZ >= 0.0)
    {
        if (1.0 - (dR - 1.0) * dH >= dV)
            return true;
    }
    else if (1.0 - ((1.0 - 2.0 * dZ / dS) * dR - 1.0) * dH >= dV)
    {
        return true;
    }
    return (mLog(dX / dB, true) + 1.0) * dB - dX + dH >= mLog(dV, true);
}
