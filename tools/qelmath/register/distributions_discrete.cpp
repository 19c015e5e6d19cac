// The flat functions of the discrete families.
#include "../registry.h"

#include "qel/discrete.h"

QEL_EVAL_FUNCTIONS(distributions_discrete)
{
    reg.mAdd("mBinomialPdf", &mBinomialPdf, "dX, iN, dP");
    reg.mAdd("mBinomialCdf", &mBinomialCdf, "dX, dN, dP, bUpper");
    reg.mAdd("mBinomialInvCdf", &mBinomialInvCdf, "dProb, iN, dP");

    reg.mAdd("mNegBinomialPdf", &mNegBinomialPdf, "dX, dP, dR");
    reg.mAdd("mNegBinomialCdf", &mNegBinomialCdf, "dX, dP, dR, bUpper");
    reg.mAdd("mNegBinomialInvCdf", &mNegBinomialInvCdf, "dProb, dP, dR");

    reg.mAdd("mGeometricPdf", &mGeometricPdf, "dX, dP");
    reg.mAdd("mGeometricCdf", &mGeometricCdf, "dX, dP, bUpper");
    reg.mAdd("mGeometricInvCdf", &mGeometricInvCdf, "dProb, dP");

    reg.mAdd("mHypergeometricPdf", &mHypergeometricPdf, "dX, iNPop, iK, iN");
    reg.mAdd("mHypergeometricCdf", &mHypergeometricCdf, "dX, iNPop, iK, iN, bUpper");
    reg.mAdd("mHypergeometricInvCdf", &mHypergeometricInvCdf, "dProb, iNPop, iK, iN");

    reg.mAdd("mIntegerUniformPdf", &mIntegerUniformPdf, "dX, iMin, iMax");
    reg.mAdd("mIntegerUniformCdf", &mIntegerUniformCdf, "dX, iMin, iMax, bUpper");
    reg.mAdd("mIntegerUniformInvCdf", &mIntegerUniformInvCdf, "dProb, iMin, iMax");

    reg.mAdd("mPoissonPdf", &mPoissonPdf, "dX, dMu");
    reg.mAdd("mPoissonCdf", &mPoissonCdf, "dX, dMu, bUpper");
    reg.mAdd("mPoissonInvCdf", &mPoissonInvCdf, "dProb, dMu");

    reg.mAdd("mDiscretePdf", &mDiscretePdf, "dX, rMap");
    reg.mAdd("mDiscreteCdf", &mDiscreteCdf, "dX, rMap, bUpper");
    reg.mAdd("mDiscreteInvCdf", &mDiscreteInvCdf, "dProb, rMap");
}
