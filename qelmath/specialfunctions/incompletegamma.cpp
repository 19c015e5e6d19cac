// The incomplete gamma ratios P(p, x) and Q(p, x) over GRATIO of DiDonato
// and Morris (ACM TOMS 654) at full accuracy, and the derivatives of the
// incomplete gamma integral over Moore's AS 187, fed with log gamma, digamma
// and trigamma of p and p + 1.

#include "qel/elementary.h"
#include "qel/qelmessaging.h"
#include "qel/specialfunctions.h"
#include "qel/specialroutines.h"

double mIncompleteGammaRatio(double dX, double dP, bool bUpper)
{
    QEL_ASSERT(dX >= 0.0);
    QEL_ASSERT(dP > 0.0);

    double dShape = dP;
    double dPoint = dX;
    // GRATIO leaves both untouched on failure except for its marker 2 in the
    // lower tail; the upper tail carries the same marker.
    double dInteg = 2.0;
    double dComplement = 2.0;
    int iFullAccuracy = 0;
    XGRATIO(&dShape, &dPoint, &dInteg, &dComplement, &iFullAccuracy);
    QEL_ASSERT(dInteg != 2.0);

    return bUpper ? dComplement : dInteg;
}

void mIncompleteGammaDerivatives(double dX, double dP, std::vector<double>& rvdResults)
{
    QEL_ASSERT(dX >= 0.0);
    QEL_ASSERT(dP > 0.0);

    double dLogGamma = mLogGamma(dP);
    double dLogGamma1 = mLogGamma(dP + 1.0);
    double dPsi = mPsi(dP);
    double dPsi1 = mPsi(dP + 1.0);

    std::vector<double> vdTrigamma;
    mPsiDerivatives(dP, 1, false, 1, vdTrigamma, nullptr);
    double dTrigamma = vdTrigamma[0];
    mPsiDerivatives(dP + 1.0, 1, false, 1, vdTrigamma, nullptr);
    double dTrigamma1 = vdTrigamma[0];

    double vdD[6] = {};
    double dPoint = dX;
    double dShape = dP;
    int iFault = 0;
    DIGAMI(vdD, &dPoint, &dShape, &dLogGamma, &dLogGamma1, &dPsi, &dPsi1, &dTrigamma, &dTrigamma1,
           &iFault);

    rvdResults.assign(vdD, vdD + 6);
}
