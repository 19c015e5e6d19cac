// The normal density, exp(-z^2 / 2) / (sqrt(2 pi) sigma) with z the
// standardised point, through the guarded exponential.  The exponent is never
// positive, so the exponential cannot overflow; it is 0 once z^2 / 2 exceeds
// the frame's largest exponent.  Relative accuracy is that of the exponent,
// about z^2 / 2 times the rounding of z: a few units in the last place near
// the centre, growing with z^2 in the tails.
#include "qel/normal.h"

#include "qel/elementary.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"

#include <cmath>

double mNormalPdf(double dX, double dMu, double dSigma)
{
    QEL_ASSERT(dSigma > 0.0);
    // No test for the missing value: the density is computed at whatever
    // number comes in, unlike mNormalCdf.  This is deliberate.
    const double dZ = (dX - dMu) / dSigma;
    double dE = 0.0;
    try
    {
        dE = mExponential(-0.5 * dZ * dZ, true);
    }
    catch (const CmFloatOverflow&)
    {
        QEL_ASSERT_FALSE();
    }
    return dE / (std::sqrt(2.0 * CmQELConst::mInstance()->mGetPi()) * dSigma);
}
