// The scalar helpers of the one-dimensional solvers.  The solvers themselves
// take a function object and have no command-line form.
#include "../registry.h"

#include "qel/rootsandoptima.h"

QEL_EVAL_FUNCTIONS(rootsandoptima_roots)
{
    reg.mAdd("mRootOfQuadratic", &mRootOfQuadratic, "dA, dB, dC");
    reg.mAdd("mCompareFunction", &mCompareFunction, "dOld, dNew, bValid, bMaximise");
}
