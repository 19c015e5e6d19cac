// The incomplete beta ratio.
#include "../registry.h"

#include "qel/incompletebeta.h"

QEL_EVAL_FUNCTIONS(specialfunctions_beta)
{
    reg.mAdd("mIncompleteBetaRatio", &mIncompleteBetaRatio, "dX, dY, dA, dB, bUpper");
}
