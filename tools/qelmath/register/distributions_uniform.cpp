// The uniform generator through its by-reference entries: set the base, read
// it, draw.  Each run of the evaluator starts a fresh generator, so a session
// that sets the base first is reproducible.
#include "../registry.h"

#include "qel/uniformgenerator.h"

QEL_EVAL_FUNCTIONS(distributions_uniform)
{
    reg.mAdd("SETBAS", &SETBAS, "dBase");
    reg.mAdd("GTBASE", &GTBASE, "dBase");
    reg.mAdd("XRND", &XRND, "dUnused");
}
