// The continuous distributions whose distribution function and quantile come
// from the distribution kernels: beta, chi-square, F, gamma and Student t;
// chi-square, F and t with a noncentrality.
//
// Shapes: mXxxPdf(dX, <parameters>), mXxxCdf(dX, <parameters>, bUpper) with
// bUpper false for P(X <= dX) and true for P(X > dX), mXxxInvCdf(dProb,
// <parameters>).  The two tails are taken from the kernel as a pair; neither is
// formed as 1 minus the other.  mChiSqCdf, mFCdf and mTCdf give the missing
// value for a missing dX; no other function here tests for it.  Parameter
// conditions are reported through mAssert with the texts given below, and the
// computation goes on with the bad value.  A kernel failure gives the missing
// value, and so does a numeric inversion whose root search cannot start.
// A logarithm of the gamma function at a nonpositive argument (a nonpositive
// shape or degrees of freedom in a density) throws CmInvalidArgument, which
// passes to the caller.
#pragma once

#include "qel/qelexport.h"

// Beta with shapes dA and dB on [0, 1].  The density and the distribution
// function assert "dA > 0" and "dB > 0"; the quantile asserts "dProb >= 0.0"
// and "dProb <= 1.0" only.  The density is the missing value where it is
// unbounded (dX = 0 with dA < 1, dX = 1 with dB < 1).  dProb 0 gives 0 and 1
// gives 1.
QEL_API double mBetaPdf(double dX, double dA, double dB);
QEL_API double mBetaCdf(double dX, double dA, double dB, bool bUpper);
QEL_API double mBetaInvCdf(double dProb, double dA, double dB);

// Chi-square with dDF degrees of freedom and noncentrality dNoncentrality.
// The density asserts nothing; the quantile asserts "dDF > 0.0",
// "dNoncentrality >= 0.0", "dProb >= 0.0" and "dProb <= 1.0", gives 0 at
// dProb 0 and the missing value at 1.  A central quantile whose distribution
// function misses dProb by more than dProb * 1e-9 is refined by root finding;
// a noncentral one is found by root finding on [0, 1e+30].
QEL_API double mChiSqPdf(double dX, double dDF);
QEL_API double mChiSqCdf(double dX, double dDF, double dNoncentrality, bool bUpper);
QEL_API double mChiSqInvCdf(double dProb, double dDF, double dNoncentrality);

// F with dDFNum and dDFDenom degrees of freedom and noncentrality
// dNoncentrality; a noncentrality below 2.2250738585072014e-307 is taken as 0.
// The density asserts nothing; the distribution function and the quantile
// assert "dDFNum > 0.0", "dDFDenom > 0.0", "dNoncentrality >= 0.0", and the
// quantile also "dProb >= 0.0", "dProb <= 1.0".  The quantile gives 0 at
// dProb 0 and the missing value at 1; a noncentral one is found by root
// finding on [0, 1e+30], a central one is the kernel's without refinement.
QEL_API double mFPdf(double dX, double dDFNum, double dDFDenom);
QEL_API double mFCdf(double dX, double dDFNum, double dDFDenom, double dNoncentrality, bool bUpper);
QEL_API double mFInvCdf(double dProb, double dDFNum, double dDFDenom, double dNoncentrality);

// Gamma with shape dShape and scale dScale from dThreshold.  The density
// asserts "dShape > 0.0" and "dScale > 0.0", the distribution function
// "dShape > 0" and "dScale > 0", the quantile "dProb >= 0.0" and
// "dProb <= 1.0".  The quantile at dProb 0 is 0 (not dThreshold), and dProb 1
// gives the missing value; other quantiles are refined by root finding when
// the kernel's answer misses dProb by more than dProb * 1e-9.
QEL_API double mGammaPdf(double dX, double dShape, double dScale, double dThreshold);
QEL_API double mGammaCdf(double dX, double dShape, double dScale, double dThreshold, bool bUpper);
QEL_API double mGammaInvCdf(double dProb, double dShape, double dScale, double dThreshold);

// Student's t with dDF degrees of freedom and noncentrality dNoncentrality
// (the mean of the normal numerator).  Each function asserts "dDF > 0.0", the
// quantile also "dProb >= 0.0" and "dProb <= 1.0".  A noncentrality beyond the
// kernel's reach is answered when the largest one it takes already puts the
// point at the limit (lower tail 0 for a positive noncentrality, upper tail 1
// for a negative one), and is the missing value otherwise.  The quantile gives
// the missing value at dProb 0 and 1; a noncentral one is found by root
// finding.  With noncentrality 0, mTCdf is the central distribution function.
QEL_API double mTPdf(double dX, double dDF, double dNoncentrality);
QEL_API double mTCdf(double dX, double dDF, double dNoncentrality, bool bUpper);
QEL_API double mTInvCdf(double dProb, double dDF, double dNoncentrality);
