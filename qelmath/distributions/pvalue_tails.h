// The choice of tail shared by the continuous p-values: the lower or the
// upper tail for a one-sided alternative, and for a two-sided one twice the
// smaller tail (the lower one on a tie).  A failed tail computation or an
// unknown alternative (reported through mAssert, "false") gives the missing
// value.
#pragma once

#include "qel/qelbt.h"

double mPValueFromTails(bool bTailsOk, double dLower, double dUpper, EAlternative eAlternative);
