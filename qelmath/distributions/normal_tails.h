// Both tails of the normal distribution for the flat functions of the normal
// family (internal to the library).
#pragma once

// Stores P(X <= dX) in *pdLower and P(X > dX) in *pdUpper for X normal with
// mean dMu and standard deviation dSigma.  Returns false when the kernel
// failed, after storing the missing value in both slots.
bool mNormalTails(double dX, double dMu, double dSigma, double* pdLower, double* pdUpper);
