// The public incomplete beta ratio: the argument checks of the library over
// BRATIO (DiDonato and Morris, ACM TOMS 708), which computes both tails.
#include "qel/incompletebeta.h"

#include "qel/betaroutines.h"
#include "qel/qelmessaging.h"

double mIncompleteBetaRatio(double dX, double dY, double dA, double dB, bool bUpper)
{
    QEL_ASSERT(dA >= 0.0);
    QEL_ASSERT(dB >= 0.0);
    QEL_ASSERT(dA + dB > 0.0);
    QEL_ASSERT(dX >= 0.0);
    QEL_ASSERT(dY >= 0.0);
    // Exact: the caller forms dY = 1 - dX, even though BRATIO accepts a
    // difference of a few units of rounding.
    QEL_ASSERT(1.0 == dX + dY);
    QEL_ASSERT(dA + dX > 0.0);
    QEL_ASSERT(dY + dB > 0.0);

    double dLower = 0.0, dUpper = 0.0;
    int iReturnCode = 0;
    BRATIO(&dA, &dB, &dX, &dY, &dLower, &dUpper, &iReturnCode);
    QEL_ASSERT(iReturnCode == 0);
    return bUpper ? dUpper : dLower;
}
