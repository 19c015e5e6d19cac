// The normal distribution: the flat functions of the normal family.
//
// mNormalCdf(dX, dMu, dSigma, bUpper) is P(X <= dX) for bUpper false and
// P(X > dX) for bUpper true, X normal with mean dMu and standard deviation
// dSigma.  A missing dX gives the missing value; dSigma <= 0 is reported
// through mAssert ("dSigma > 0.0") and the computation goes on.  Each tail is
// exactly 0 (the other exactly 1) once |dX - dMu| / dSigma exceeds about
// 37.5748.
//
// mNormalPdf(dX, dMu, dSigma) is the density exp(-z^2 / 2) / (sqrt(2 pi)
// dSigma) at z = (dX - dMu) / dSigma.  It makes no test for the missing value:
// a missing dX is a number like any other here.  dSigma <= 0 is reported
// ("dSigma > 0.0") and the arithmetic goes on.  The density is exactly 0 once
// z^2 / 2 exceeds 709.
//
// mNormalInvCdf(dProb, dMu, dSigma) is the x with P(X <= x) = dProb.  dProb 0
// and 1 give the missing value, never an infinity, and 0.5 gives dMu exactly.
// From 1e-100 down to the distribution function at -36 (about 4.18e-284) the
// standard quantile is found by root finding on mNormalCdf; below that the
// result is the missing value.  The assertions, in order, are "dSigma > 0.0",
// "dProb >= 0.0" and "dProb <= 1.0"; a probability outside [0, 1] gives the
// missing value.
#pragma once

#include "qel/qelexport.h"

QEL_API double mNormalCdf(double dX, double dMu, double dSigma, bool bUpper);
QEL_API double mNormalPdf(double dX, double dMu, double dSigma);
QEL_API double mNormalInvCdf(double dProb, double dMu, double dSigma);
