// Geometric distribution of the trial of the first success (support 1, 2,
// ...): the negative binomial with one success.
#include "qel/discrete.h"

double mGeometricPdf(double dX, double dP)
{
    return mNegBinomialPdf(dX, dP, 1.0);
}

double mGeometricCdf(double dX, double dP, bool bUpper)
{
    return mNegBinomialCdf(dX, dP, 1.0, bUpper);
}

double mGeometricInvCdf(double dProb, double dP)
{
    return mNegBinomialInvCdf(dProb, dP, 1.0);
}
