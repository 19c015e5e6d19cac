// P-values and critical values of the test distributions.
//
// mXxxPValue(dX, ..., eAlternative) is the probability, under the null
// distribution, of a statistic at least as far out as dX in the direction the
// alternative names: the lower tail for eLowerTailed, the upper tail for
// eUpperTailed, and for eTwoSided twice the smaller of the two tails (the
// lower one on a tie).  The chi-square and F two-sided values double the
// smaller tail too, although those distributions are not symmetric.  A
// missing dX, or a failure of the underlying tail computation, gives the
// missing value.  Any other alternative is reported through mAssert ("false")
// and gives the missing value.  Parameter assertions: chi-square
// "dX >= 0.0", "dDF > 0.0"; F "dX >= 0.0", "dDFNum > 0.0", "dDFDenom > 0.0";
// t "dDF > 0.0"; the normal has none.
//
// mXxxCritValue(dProb, ..., eAlternative) is the point a statistic must pass
// for a test of size dProb.  For the normal and the t the lower-tailed and
// the upper-tailed critical values are the same positive magnitude (the
// caller applies the sign) and the two-sided value splits dProb between the
// tails.  Chi-square and F return the true lower quantile for eLowerTailed
// and the upper one for eUpperTailed; they have no two-sided critical value:
// eTwoSided and any other value are reported ("false") and give the missing
// value.  For the normal and the t an unknown alternative is reported
// ("false") and the quantile of the raw dProb is returned.
//
// mTCritValue divides dProb by the Bonferroni count iBonferroniCt;
// mTSidakCritValue uses the per-comparison size 1 - (1 - dProb)^(1/iComparisonCt)
// (Sidak, JASA 62, 1967).  mTCritValue admits dProb = 1 where
// mTSidakCritValue does not; mFCritValue makes no assertion on dProb.
//
// mBinomialPValue(dX, iN, dP, eAlternative): the one-sided values are the
// binomial tails P(X <= dX) and P(X >= dX).  The two-sided value orders the
// outcomes by the likelihood ratio of the observed proportion against dP: it
// is the probability of every count whose log-likelihood ratio is at least
// that of dX (twice the smaller tail when dP is 1/2, and exactly 1 at the
// centre).  A count outside 0 to iN has two-sided p-value 0.  Assertions
// "iN > 0", "dP > 0.0", "dP < 1.0"; with any of them refused the two-sided
// value is missing.
//
// mHypergeometricPValue(iX, iNPop, iK, iN, eAlternative): iK successes in a
// population of iNPop, a sample of iN.  One-sided values are the tails
// P(X <= iX) and P(X >= iX); the two-sided value is the probability of every
// outcome no more probable than iX (equal within the machine epsilon
// counts), exactly 1 at the mode.  The two-sided value asserts "iNPop > 0"
// and is missing for parameters that describe no population.
#pragma once

#include "qel/qelbt.h"
#include "qel/qelexport.h"

QEL_API double mNormalPValue(double dX, EAlternative eAlternative);
QEL_API double mNormalCritValue(double dProb, EAlternative eAlternative);

QEL_API double mChiSqPValue(double dX, double dDF, EAlternative eAlternative);
QEL_API double mChiSqCritValue(double dProb, double dDF, EAlternative eAlternative);

QEL_API double mFPValue(double dX, double dDFNum, double dDFDenom, EAlternative eAlternative);
QEL_API double mFCritValue(double dProb, double dDFNum, double dDFDenom, EAlternative eAlternative);

QEL_API double mTPValue(double dX, double dDF, EAlternative eAlternative);
QEL_API double mTCritValue(double dProb, double dDF, EAlternative eAlternative, int iBonferroniCt);
QEL_API double mTSidakCritValue(double dProb, double dDF, EAlternative eAlternative, int iComparisonCt);

QEL_API double mBinomialPValue(double dX, int iN, double dP, EAlternative eAlternative);
QEL_API double mHypergeometricPValue(int iX, int iNPop, int iK, int iN, EAlternative eAlternative);
