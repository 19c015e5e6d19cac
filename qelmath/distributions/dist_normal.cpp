// The normal distribution object.  Variates by the polar method of Marsaglia
// and Bray (SIAM Review 6, 1964): a point uniform in the square [-1, 1)^2 is
// kept when it falls in the unit disc, and its two coordinates, scaled by
// sqrt(-2 log(s) / s), are two independent standard normal variates.  The
// second is the object's spare for the next call: two normal objects do not
// share pairs, and a spare survives a reset of the generator's base.
#include "qel/distclosedform.h"

#include "dist_params.h"
#include "qel/elementary.h"
#include "qel/normal.h"
#include "qel/uniformgenerator.h"

#include <cmath>

CmDistNormal::CmDistNormal(double dLocation, double dScale)
    : m_dLocation(dLocation), m_dScale(dScale), m_bHaveSpare(false), m_dSpare(0.0)
{
}

CmDistNormal::CmDistNormal(const std::vector<double>& rvdParameters)
    : CmDistNormal(qel_dist::mParam(rvdParameters, 0, 0.0), qel_dist::mParam(rvdParameters, 1, 1.0))
{
}

bool CmDistNormal::mAreParamsValid() const { return m_dScale > 0.0; }

double CmDistNormal::mPdf(double dX) const { return mNormalPdf(dX, m_dLocation, m_dScale); }

double CmDistNormal::mCdf(double dX, bool bComplement) const
{
    return mNormalCdf(dX, m_dLocation, m_dScale, bComplement);
}

double CmDistNormal::mInvCdf(double dP) const { return mNormalInvCdf(dP, m_dLocation, m_dScale); }

double CmDistNormal::mGetRandom() const
{
    double dZ;
    if (m_bHaveSpare)
    {
        m_bHaveSpare = false;
        dZ = m_dSpare;
    }
    else
    {
        double dX, dY, dS;
        do
        {
            const double dU = m_pUniformGenerator->mGetRandom();
            const double dV = m_pUniformGenerator->mGetRandom();
            dX = 2.0 * dU - 1.0;
            dY = 2.0 * dV - 1.0;
            dS = dY * dY + dX * dX;
        } while (dS > 1.0);
        // s = 0 would need two uniforms of exactly one half, which a sum of
        // three fractions with odd denominators never is.
        const double dF = std::sqrt(mLog(dS, false) * -2.0 / dS);
        dZ = dX * dF;
        m_dSpare = dY * dF;
        m_bHaveSpare = true;
    }
    return dZ * m_dScale + m_dLocation;
}

void CmDistNormal::mGetDRefPoints(std::vector<double>& rvdPoints) const
{
    rvdPoints.assign(1, m_dLocation);
}

void CmDistNormal::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dLocation, m_dScale};
}
