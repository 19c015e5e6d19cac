// The error function and its complement, over the rational approximations
// of DiDonato and Morris (ACM TOMS 708).

#include "qel/specialfunctions.h"
#include "qel/specialroutines.h"

double mErrorFunction(double dX, bool bComplement)
{
    double dArgument = dX;
    if (bComplement)
    {
        int iUnscaled = 0;
        return ERFC1(&iUnscaled, &dArgument);
    }
    return ERF(&dArgument);
}
