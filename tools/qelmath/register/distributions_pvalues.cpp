// P-values and critical values of the test distributions (the alternatives
// themselves are registered with the platform constants).
#include "../registry.h"

#include "qel/pvalues.h"
#include "qel/qelbt.h"

QEL_EVAL_FUNCTIONS(distributions_pvalues)
{
    reg.mAdd("mNormalPValue", &mNormalPValue, "dX, eAlternative");
    reg.mAdd("mNormalCritValue", &mNormalCritValue, "dProb, eAlternative");
    reg.mAdd("mChiSqPValue", &mChiSqPValue, "dX, dDF, eAlternative");
    reg.mAdd("mChiSqCritValue", &mChiSqCritValue, "dProb, dDF, eAlternative");
    reg.mAdd("mFPValue", &mFPValue, "dX, dDFNum, dDFDenom, eAlternative");
    reg.mAdd("mFCritValue", &mFCritValue, "dProb, dDFNum, dDFDenom, eAlternative");
    reg.mAdd("mTPValue", &mTPValue, "dX, dDF, eAlternative");
    reg.mAdd("mTCritValue", &mTCritValue, "dProb, dDF, eAlternative, iBonferroniCt");
    reg.mAdd("mBinomialPValue", &mBinomialPValue, "dX, iN, dP, eAlternative");
    reg.mAdd("mHypergeometricPValue", &mHypergeometricPValue, "iX, iNPop, iK, iN, eAlternative");
    reg.mAdd("mTSidakCritValue", &mTSidakCritValue, "dProb, dDF, eAlternative, iComparisonCt");
}
