// Standard gamma variates for a shape below 1 by Ahrens and Dieter's
// algorithm GS (Computing 12, 1974).  The envelope is x^(a - 1) on [0, 1] and
// e^-x beyond; with b = (a + e) / e the point p = b U falls in the first piece
// (p <= 1, where x = p^(1 / a)) with the probability of that piece's mass.
// A point of the first piece is kept with probability e^-x, one of the
// second, x = -log((b - p) / a), with probability x^(a - 1).
#include "dist_gamma_helpers.h"

#include "qel/elementary.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/uniformgenerator.h"

CmDistGammaA::CmDistGammaA(double dShape)
    : m_dShape(dShape),
      m_dB((dShape + CmQELConst::mInstance()->mGetE()) / CmQELConst::mInstance()->mGetE())
{
}

double CmDistGammaA::mGetRandom() const
{
    for (;;)
    {
        try
        {
            const double dP = m_pUniformGenerator->mGetRandom() * m_dB;
            if (dP > 1.0)
            {
                const double dX = -mLog((m_dB - dP) / m_dShape, true);
                const double dV = m_pUniformGenerator->mGetRandom();
                if (mRaiseToPower(dX, m_dShape - 1.0, true) >= dV)
                    return dX;
            }
            else
            {
                const double dX = mRaiseToPower(dP, 1.0 / m_dShape, true);
                const double dV = m_pUniformGenerator->mGetRandom();
                if (mExponential(-dX, true) >= dV)
                    return dX;
            }
        }
        catch (const CmFloatOverflow&)
        {
            // The round is abandoned; the next one starts with a fresh point.
        }
    }
}
