// The flat functions of the kernel-backed continuous families.
#include "../registry.h"

#include "qel/kernelbacked.h"

QEL_EVAL_FUNCTIONS(distributions_kernelbacked)
{
    reg.mAdd("mBetaPdf", &mBetaPdf, "dX, dA, dB");
    reg.mAdd("mBetaCdf", &mBetaCdf, "dX, dA, dB, bUpper");
    reg.mAdd("mBetaInvCdf", &mBetaInvCdf, "dProb, dA, dB");

    reg.mAdd("mChiSqPdf", &mChiSqPdf, "dX, dDF");
    reg.mAdd("mChiSqCdf", &mChiSqCdf, "dX, dDF, dNoncentrality, bUpper");
    reg.mAdd("mChiSqInvCdf", &mChiSqInvCdf, "dProb, dDF, dNoncentrality");

    reg.mAdd("mFPdf", &mFPdf, "dX, dDFNum, dDFDenom");
    reg.mAdd("mFCdf", &mFCdf, "dX, dDFNum, dDFDenom, dNoncentrality, bUpper");
    reg.mAdd("mFInvCdf", &mFInvCdf, "dProb, dDFNum, dDFDenom, dNoncentrality");

    reg.mAdd("mGammaPdf", &mGammaPdf, "dX, dShape, dScale, dThreshold");
    reg.mAdd("mGammaCdf", &mGammaCdf, "dX, dShape, dScale, dThreshold, bUpper");
    reg.mAdd("mGammaInvCdf", &mGammaInvCdf, "dProb, dShape, dScale, dThreshold");

    reg.mAdd("mTPdf", &mTPdf, "dX, dDF, dNoncentrality");
    reg.mAdd("mTCdf", &mTCdf, "dX, dDF, dNoncentrality, bUpper");
    reg.mAdd("mTInvCdf", &mTInvCdf, "dProb, dDF, dNoncentrality");
}
