// The half-normal distribution: threshold + s |Z| with Z standard normal.
// Density twice the normal density, distribution function 2 Phi(z) - 1 and
// quantile the normal quantile at (1 + p) / 2, through the normal family
// (qel/normal.h).  The upper tail is formed as 1 - (2 Phi(z) - 1) and keeps
// only absolute accuracy far out.
#include "qel/closedform.h"

#include "qel/normal.h"
#include "qel/qelmessaging.h"

double mHalfNormalPdf(double dX, double dScale, double dThreshold)
{
    QEL_ASSERT(dScale > 0.0);
    if (dX < dThreshold)
        return 0.0;
    return 2.0 * mNormalPdf(dX, dThreshold, dScale);
}

double mHalfNormalCdf(double dX, double dScale, double dThreshold, bool bUpper)
{
    QEL_ASSERT(dScale > 0.0);
    const double dLower =
        (dX < dThreshold) ? 0.0 : 2.0 * mNormalCdf(dX, dThreshold, dScale, false) - 1.0;
    return bUpper ? 1.0 - dLower : dLower;
}

double mHalfNormalInvCdf(double dProb, double dScale, double dThreshold)
{
    QEL_ASSERT(dScale > 0.0);
    QEL_ASSERT(dProb >= 0.0);
    QEL_ASSERT(dProb <= 1.0);
    return mNormalInvCdf((dProb + 1.0) * 0.5, dThreshold, dScale);
}
