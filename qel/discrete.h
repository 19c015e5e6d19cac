// The discrete distributions on whole numbers: binomial, negative binomial,
// geometric, hypergeometric, integer uniform, Poisson, and a general discrete
// distribution held in a sorted map.
//
// Shapes: mXxxPdf(dX, <parameters>), mXxxCdf(dX, <parameters>, bUpper),
// mXxxInvCdf(dProb, <parameters>).  dX is a double; a density is 0 unless dX
// is a whole number up to the fuzz of mEqualWithinFuzz (tolerance 0), and a
// distribution function counts a non-integer dX as its floor.  bUpper false
// gives P(X <= x); bUpper true gives P(X >= x), the point included, so the two
// tails at one x add up to 1 + P(X = x).  Quantiles give the smallest count
// whose distribution function reaches dProb; a dProb that lies on a step up to
// rounding (a fraction of the step at or below 1e-9 from a lower quantile, at
// or above 0.999999999 from an upper one) gives the lower count.  None of
// these functions tests for the missing value on entry.  Parameter conditions
// are reported through mAssert with the texts given below, and the
// computation goes on.  A kernel failure gives the missing value, save in
// mBinomialCdf, which falls back to the incomplete beta ratio.
#pragma once

#include <map>

#include "qel/qelexport.h"

// Binomial with iN (dN) trials and success probability dP.  The density
// asserts "iN > 0", "dP >= 0.0", "dP <= 1.0"; the distribution function
// "dN >= 0", "dP > 0.0", "dP < 1.0"; the quantile "iN > 0", "dP > 0.0",
// "dP < 1.0", "dProb >= 0.0", "dProb <= 1.0" and gives 0 at dProb 0, iN at 1.
// A density with dP outside [0, 1] goes on after its assertion into a
// logarithm of a negative number, which throws CmInvalidArgument.
QEL_API double mBinomialPdf(double dX, int iN, double dP);
QEL_API double mBinomialCdf(double dX, double dN, double dP, bool bUpper);
QEL_API double mBinomialInvCdf(double dProb, int iN, double dP);

// Negative binomial: dX is the number of the trial on which the dR-th
// success falls (support dR, dR + 1, ...).  Each function asserts
// "( dP > 0 ) && ( dP < 1 )", the quantile also
// "( dProb >= 0.0 ) && ( dProb <= 1.0 )".  The distribution function does not
// round dX.  The quantile gives the missing value at dProb 1, and also for a
// dProb outside [0, 1] (after the assertion), where its search would not end.
QEL_API double mNegBinomialPdf(double dX, double dP, double dR);
QEL_API double mNegBinomialCdf(double dX, double dP, double dR, bool bUpper);
QEL_API double mNegBinomialInvCdf(double dProb, double dP, double dR);

// Geometric: the negative binomial with dR = 1 (the trial of the first
// success, support 1, 2, ...).
QEL_API double mGeometricPdf(double dX, double dP);
QEL_API double mGeometricCdf(double dX, double dP, bool bUpper);
QEL_API double mGeometricInvCdf(double dProb, double dP);

// Hypergeometric: successes in a sample of iN drawn without replacement from
// a population of iNPop holding iK successes; support max(0, iK + iN - iNPop)
// to min(iK, iN).  Only the quantile asserts ("dProb >= 0.0",
// "dProb <= 1.0").
QEL_API double mHypergeometricPdf(double dX, int iNPop, int iK, int iN);
QEL_API double mHypergeometricCdf(double dX, int iNPop, int iK, int iN, bool bUpper);
QEL_API double mHypergeometricInvCdf(double dProb, int iNPop, int iK, int iN);

// Equal mass on the integers iMin to iMax.  Only the quantile asserts
// ("dProb >= 0.0", "dProb <= 1.0").
QEL_API double mIntegerUniformPdf(double dX, int iMin, int iMax);
QEL_API double mIntegerUniformCdf(double dX, int iMin, int iMax, bool bUpper);
QEL_API double mIntegerUniformInvCdf(double dProb, int iMin, int iMax);

// Poisson with mean dMu.  Each function asserts "dMu > 0.0", the quantile
// also "dProb >= 0.0", "dProb <= 1.0"; the quantile gives 0 at dProb 0 and
// the missing value at 1.  An overflow in the density is reported through
// mAssert ("false") and gives 0; that is the answer at dMu = 0, while a
// negative dMu goes on after its assertion into the logarithm of dMu, which
// throws CmInvalidArgument.  The
// distribution function comes from the
// chi-square distribution function with 2 (x + 1) degrees of freedom at 2 dMu.
QEL_API double mPoissonPdf(double dX, double dMu);
QEL_API double mPoissonCdf(double dX, double dMu, bool bUpper);
QEL_API double mPoissonInvCdf(double dProb, double dMu);

// General discrete distribution.  Each function takes its own map, sorted on
// its key:
//   mDiscretePdf: value -> probability; an exact key match (no fuzz) gives
//     the probability, anything else 0.
//   mDiscreteCdf: value -> cumulative probability.
//   mDiscreteInvCdf: cumulative probability -> value; the first key at or
//     above dProb gives its value, and a dProb beyond the last key gives 1.0
//     (deliberately the constant, not the largest value).
QEL_API double mDiscretePdf(double dX, const std::map<double, double>& rMap);
QEL_API double mDiscreteCdf(double dX, const std::map<double, double>& rMap, bool bUpper);
QEL_API double mDiscreteInvCdf(double dProb, const std::map<double, double>& rMap);
