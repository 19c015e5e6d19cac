// The flat functions of the normal family.
#include "../registry.h"

#include "qel/normal.h"

QEL_EVAL_FUNCTIONS(distributions_normal)
{
    reg.mAdd("mNormalCdf", &mNormalCdf, "dX, dMu, dSigma, bUpper");
    reg.mAdd("mNormalPdf", &mNormalPdf, "dX, dMu, dSigma");
    reg.mAdd("mNormalInvCdf", &mNormalInvCdf, "dProb, dMu, dSigma");
}
