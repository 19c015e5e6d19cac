// The normal distribution: the flat functions of the normal family.
//
// mNormalCdf(dX, dMu, dSigma, bUpper) is P(X <= dX) for bUpper false and
// P(X > dX) for bUpper true, X normal with mean dMu and standard deviation
// dSigma.  A missing dX gives the missing value; dSigma <= 0 is reported
// through mAssert ("dSigma > 0.0") and the computation goes on.  Each tail is
// exactly 0 (the other exactly 1) once |dX - dMu| / dSigma exceeds about
// 37.5748.
#pragma once

#include "qel/qelexport.h"

QEL_API double mNormalCdf(double dX, double dMu, double dSigma, bool bUpper);
