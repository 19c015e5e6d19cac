// Standard gamma variates for a shape a between 1 and 4 (alpha = a - 1 > 0)
// by rejection from a two-piece envelope of x^alpha e^-x: the constant
// (1 - lambda)^alpha on [0, alpha] and e^(-lambda x) beyond, both scaled to
// touch the density once.  A point is kept when the logarithm T of the
// envelope over the density is at most a standard exponential variate E.  On
// the constant piece T >= alpha log 2 - x, which rejects many points before
// any logarithm of x is taken.  The rate lambda, the positive root of
// alpha lambda^2 + lambda - 1 = 0, balances the two pieces; any lambda in
// (0, 1) gives the same distribution, only the rate of rejection differs.
#include "dist_gamma_helpers.h"

#include "qel/elementary.h"
#include "qel/qelexceptions.h"
#include "qel/uniformgenerator.h"

#include <cmath>

CmDistGammaB::CmDistGammaB(double dShape)
    : m_dShape(dShape), m_dLog2(mLog(2.0, false)), m_dAlpha(dShape - 1.0)
{
    m_dLambda = (std::sqrt(1.0 + 4.0 * m_dAlpha) - 1.0) / (2.0 * m_dAlpha);
    // For a shape within a few hundred units in the last place of 1 the
    // subtraction above cancels and may give lambda >= 1, where the envelope
    // degenerates (1 - lambda <= 0).  The same root without the cancellation
    // lies in (0, 1) for every alpha > 0.
    if (!(m_dLambda < 1.0))
        m_dLambda = 2.0 / (std::sqrt(1.0 + 4.0 * m_dAlpha) + 1.0);
    m_dOneMinusLambda = 1.0 - m_dLambda;
    // Neither can overflow for a shape in (1, 4): the power has a base in
    // (0, 1) and a positive exponent, the exponential a negative argument.
    m_dPower = mRaiseToPower(m_dOneMinusLambda, m_dAlpha, false);
    m_dArea = mExponential(-m_dLambda * m_dAlpha, false) / m_dLambda + m_dAlpha * m_dPower;
    m_dInvArea = 1.0 / m_dArea;
    m_dCut = m_dAlpha * m_dPower / m_dArea;
}

double CmDistGammaB::mGetRandom() const
{
    for (;;)
    {
        try
        {
            const double dE = -mLog(m_pUniformGenerator->mGetRandom(), true);
            const double dW = m_pUniformGenerator->mGetRandom();
            double dX;
            double dT;
            if (dW <= m_dCut)
            {
                // Uniform on [0, alpha].
                dX = dW * m_dArea * (1.0 / m_dPower);
                if (m_dAlpha * m_dLog2 - dX > dE)
                    continue;
                dT = mLog(m_dAlpha, true) * m_dAlpha - m_dAlpha - mLog(dX, true) * m_dAlpha + dX;
            }
            else
            {
                // Exponential with rate lambda beyond alpha.
                dX = mLog((1.0 - dW) * m_dLambda * m_dArea, true) * (-1.0 / m_dLambda);
                dT = mLog(m_dAlpha / (dX * m_dOneMinusLambda), true) * m_dAlpha +
                     dX * m_dOneMinusLambda - m_dAlpha;
            }
            if (dT <= dE)
                return dX;
        }
        catch (const CmFloatOverflow&)
        {
            // The round is abandoned; the next one starts afresh.
        }
    }
}
