// Both tails of the chi-square, F and t families, and the numeric
// inverses of the chi-square and gamma distribution functions (internal to
// the library).
#pragma once

// Store P(X <= dX) in *pdLower and P(X > dX) in *pdUpper.  Each returns false
// when the kernel failed, after storing the missing value in both slots.
bool mChiSqTails(double dX, double dDF, double dNoncentrality, double* pdLower, double* pdUpper);

bool mFTails(double dX, double dDFNum, double dDFDenom, double dNoncentrality, double* pdLower,
             double* pdUpper);
// For a noncentrality the kernel refuses (code 3), the tails at the largest
// one it takes are accepted when they are at the limit; otherwise the missing
// value, and then the kernel's code 3 is left standing.
bool mTTails(double dX, double dDF, double dNoncentrality, double* pdLower, double* pdUpper);

// The x at which the lower tail of the (noncentral) chi-square distribution
// equals dProb, by root finding in a bracket found by doubling from
// [0, dStart]; the missing value when the search cannot start.
double mChiSqNumericInverse(double dStart, double dProb, double dDF, double dNoncentrality);

// The same for the standard gamma distribution (scale 1, threshold 0).
double mGammaNumericInverse(double dStart, double dProb, double dShape);
