// Numeric inversion of distribution functions (internal to the library).
//
// A flat function that has no quantile kernel inverts its distribution
// function by root finding: it builds, on its own stack, a function object
// whose value is the distribution function with the parameters bound, less
// the probability sought, and hands it to mRootFinder.  The objects derive
// from CmRealFunction through CmInversionFunction, which adds no virtual
// operation: each object overrides only the destructor and operator(), and
// inherits the convergence tests and the tolerances.
//
// Two ways of holding the target:
//   * in m_dTarget of the base, which makes the value test relative to the
//     probability sought (CmStandardNormalCdf, whose absolute value tolerance
//     is 0, so that convergence is purely relative);
//   * in a member of the object's own, m_dTarget left at 0, so that the value
//     test is absolute alone.
//
// mInvertByDoubling brackets the root of an object of the second kind on the
// positive half-line by doubling, then calls mRootFinder.
#pragma once

#include "qel/realfunction.h"

// The smallest bracket width worth splitting in a search by doubling: below
// it the search stops on the absolute width test.
constexpr double kInversionAbsoluteToleranceForX = 2.2250738585072014e-288;

// The common base of the inversion objects: a CmRealFunction whose tolerances
// and target the building flat function may set.
class CmInversionFunction : public CmRealFunction
{
public:
    void mSetTarget(double dTarget) { m_dTarget = dTarget; }
    void mSetAbsoluteToleranceForX(double dTolerance) { m_dAbsoluteToleranceForX = dTolerance; }
    void mSetAbsoluteToleranceForF(double dTolerance) { m_dAbsoluteToleranceForF = dTolerance; }
};

// The standard normal distribution function less the target held in
// m_dTarget; built by mNormalInvCdf for probabilities below the reach of the
// quantile kernel.  The absolute value tolerance is 0: the search stops when
// the distribution function agrees with the target to the relative tolerance
// (or the bracket is narrow).
class CmStandardNormalCdf : public CmInversionFunction
{
public:
    explicit CmStandardNormalCdf(double dTarget);
    ~CmStandardNormalCdf() override;
    double operator()(double dX) override;
};

// Inversion on the positive half-line for an object whose value rises with
// its argument from below zero: the bracket starts as [0, dStart]; while the
// value at the upper end is below zero, the lower end moves to the upper end
// and the upper end doubles.  The object's absolute width tolerance is then
// set to kInversionAbsoluteToleranceForX and the root sought by mRootFinder in
// the bracket.  A value that never reaches zero (the doubling runs out of
// finite numbers) or an object that cannot be evaluated gives the missing
// value, with the root finder's error flag.  dStart must be positive and
// finite; otherwise the result is the missing value and nothing is evaluated.
double mInvertByDoubling(CmInversionFunction& rFunction, double dStart);
