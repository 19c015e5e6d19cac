// The continuous distributions whose density, distribution function and
// quantile are formulas: Cauchy, exponential, largest and smallest extreme
// value, Laplace, logistic, loglogistic, lognormal, Weibull, uniform,
// triangular and half-normal; and the Tukey lambda family, whose quantile is a
// formula and whose density and distribution function invert it by root
// finding.
//
// Shapes: mXxxPdf(dX, <parameters>), mXxxCdf(dX, <parameters>, bUpper) with
// bUpper false for P(X <= dX) and true for P(X > dX), mXxxInvCdf(dProb,
// <parameters>).  None of these functions tests for the missing value on
// entry.  Parameter conditions are reported through mAssert, family by family
// and only where stated, and the arithmetic then goes on with the bad value.
// An exponential, logarithm or power that overflows inside a formula is caught
// and gives the limit of the function (0 or 1) or the missing value, as each
// function states; any other exception of the guarded functions (a domain
// error) passes to the caller.
#pragma once

#include "qel/qelexport.h"

// Cauchy, location dLocation and scale dScale.  Each function asserts
// "dScale > 0.0".  The quantile asserts "(0.0 <= dProb) && (dProb <= 1.0)",
// gives the missing value at dProb 0 and 1 and dLocation at 0.5.
QEL_API double mCauchyPdf(double dX, double dLocation, double dScale);
QEL_API double mCauchyCdf(double dX, double dLocation, double dScale, bool bUpper);
QEL_API double mCauchyInvCdf(double dProb, double dLocation, double dScale);

// Exponential with scale dScale from dThreshold.  The density includes the
// threshold (1 / dScale there), the distribution function excludes it.  No
// scale assertion; the quantile asserts "(0.0 <= dProb) && (dProb <= 1.0)" and
// gives the missing value at dProb 1.
QEL_API double mExponentialPdf(double dX, double dScale, double dThreshold);
QEL_API double mExponentialCdf(double dX, double dScale, double dThreshold, bool bUpper);
QEL_API double mExponentialInvCdf(double dProb, double dScale, double dThreshold);

// Largest extreme value (Gumbel for maxima): P(X <= x) = exp(-exp(-z)).  The
// density and the distribution function assert "dScale > 0.0"; the quantile
// asserts "dProb >= 0.0", "dProb <= 1.0" and gives the missing value at 0, 1.
QEL_API double mLargestExtremeValuePdf(double dX, double dLocation, double dScale);
QEL_API double mLargestExtremeValueCdf(double dX, double dLocation, double dScale, bool bUpper);
QEL_API double mLargestExtremeValueInvCdf(double dProb, double dLocation, double dScale);

// Smallest extreme value: the mirror image of the largest, X = -Y.
QEL_API double mSmallestExtremeValuePdf(double dX, double dLocation, double dScale);
QEL_API double mSmallestExtremeValueCdf(double dX, double dLocation, double dScale, bool bUpper);
QEL_API double mSmallestExtremeValueInvCdf(double dProb, double dLocation, double dScale);

// Laplace (double exponential).  No scale assertion; the quantile asserts
// "dProb >= 0.0", "dProb <= 1.0", gives the missing value at 0 and 1 and
// dLocation at 0.5.
QEL_API double mLaplacePdf(double dX, double dLocation, double dScale);
QEL_API double mLaplaceCdf(double dX, double dLocation, double dScale, bool bUpper);
QEL_API double mLaplaceInvCdf(double dProb, double dLocation, double dScale);

// Logistic.  Each function asserts "dScale > 0.0"; the quantile asserts
// "(0.0 <= dProb) && (dProb <= 1.0)" and gives dLocation at 0.5 and the
// missing value at 0 and 1.
QEL_API double mLogisticPdf(double dX, double dLocation, double dScale);
QEL_API double mLogisticCdf(double dX, double dLocation, double dScale, bool bUpper);
QEL_API double mLogisticInvCdf(double dProb, double dLocation, double dScale);

// Loglogistic: log(X - dThreshold) is logistic with dLocation and dScale.
QEL_API double mLogLogisticPdf(double dX, double dLocation, double dScale, double dThreshold);
QEL_API double mLogLogisticCdf(double dX, double dLocation, double dScale, double dThreshold,
                               bool bUpper);
QEL_API double mLogLogisticInvCdf(double dProb, double dLocation, double dScale,
                                  double dThreshold);

// Lognormal: log(X - dThreshold) is normal with mean dMu and standard
// deviation dSigma.  The quantile is dThreshold at dProb 0.
QEL_API double mLogNormalPdf(double dX, double dMu, double dSigma, double dThreshold);
QEL_API double mLogNormalCdf(double dX, double dMu, double dSigma, double dThreshold,
                             bool bUpper);
QEL_API double mLogNormalInvCdf(double dProb, double dMu, double dSigma, double dThreshold);

// Weibull with shape dShape and scale dScale from dThreshold.  Each function
// asserts "dShape > 0.0" and "dScale > 0.0"; the quantile also "(0.0 <= dProb)
// && (dProb <= 1.0)", and is dThreshold at dProb 0, the missing value at 1.
QEL_API double mWeibullPdf(double dX, double dShape, double dScale, double dThreshold);
QEL_API double mWeibullCdf(double dX, double dShape, double dScale, double dThreshold,
                           bool bUpper);
QEL_API double mWeibullInvCdf(double dProb, double dShape, double dScale, double dThreshold);

// Uniform on [dMin, dMax].  Each function asserts "dMin < dMax"; the quantile
// also "(0.0 <= dProb) && (dProb <= 1.0)", and returns the ends exactly.
QEL_API double mUniformPdf(double dX, double dMin, double dMax);
QEL_API double mUniformCdf(double dX, double dMin, double dMax, bool bUpper);
QEL_API double mUniformInvCdf(double dProb, double dMin, double dMax);

// Triangular on [dMin, dMax] with its peak at dMode.  Each function asserts
// "(dMin <= dMode) && (dMode <= dMax) && (dMin < dMax)"; the quantile also
// "(0.0 <= dProb) && (dProb <= 1.0)".
QEL_API double mTriangularPdf(double dX, double dMin, double dMode, double dMax);
QEL_API double mTriangularCdf(double dX, double dMin, double dMode, double dMax, bool bUpper);
QEL_API double mTriangularInvCdf(double dProb, double dMin, double dMode, double dMax);

// Half-normal: dThreshold + |Z| dScale, Z standard normal.  Each function
// asserts "dScale > 0.0".
QEL_API double mHalfNormalPdf(double dX, double dScale, double dThreshold);
QEL_API double mHalfNormalCdf(double dX, double dScale, double dThreshold, bool bUpper);
QEL_API double mHalfNormalInvCdf(double dProb, double dScale, double dThreshold);

// Tukey lambda, shape dLambda, with location and scale: the standard quantile
// is Q(u) = (u^lambda - (1 - u)^lambda) / lambda, the logistic at lambda 0.
// The density and the distribution function solve Q(u) = z by root finding;
// for a negative dLambda the search meets 0 raised to a negative power and
// the CmInvalidArgument "Zero raised to a negative power." reaches the
// caller.  No assertion on dScale or dProb.
QEL_API double mLambdaPdf(double dX, double dLambda, double dLocation, double dScale);
QEL_API double mLambdaCdf(double dX, double dLambda, double dLocation, double dScale,
                          bool bUpper);
QEL_API double mLambdaInvCdf(double dProb, double dLambda, double dLocation, double dScale);
