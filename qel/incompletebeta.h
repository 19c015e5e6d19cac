// The regularised incomplete beta function I_x(a, b) and its complement.
#pragma once

#include "qel/qelexport.h"

// I_x(a, b) when bUpper is false, 1 - I_x(a, b) when it is true, with
// dY = 1 - dX given by the caller so that either tail keeps its precision.
// Misuse (negative shapes, both shapes zero, x outside [0, 1], dX + dY not
// exactly 1, x = a = 0 or y = b = 0) is reported through mAssert and the
// computation goes on; a combination the routine refuses then gives 0.
QEL_API double mIncompleteBetaRatio(double dX, double dY, double dA, double dB, bool bUpper);
