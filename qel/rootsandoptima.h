// One-dimensional roots and optima over a CmRealFunction.
//
//   mRootFinder     false position with the Illinois modification (Dowell and
//                   Jarratt, BIT 11 (1971) 168-174) inside a bracket; it stops
//                   only by the function object's own convergence tests.
//   mGoldenSection  golden-section search for a minimum (Kiefer, Proc. AMS 4
//                   (1953) 502-506).
//   mBracketFinder  clips an interval to limits, pulls an end at which the
//                   function is missing inward by bisection, and widens the
//                   interval by doubling steps until it holds a sign change.
//   mRootOfQuadratic, mCompareFunction  small helpers of the optimisers.
//
// A search that cannot start (the function missing at an end, or no sign
// change) raises error flag 50021 at level 2 for the host and returns the
// missing value, or false.
#pragma once

#include "qel/qelexport.h"
#include "qel/realfunction.h"

// The root of dA x^2 + dB x + dC with the plus sign before the square root of
// the discriminant; the missing value when the roots are not real.
QEL_API double mRootOfQuadratic(double dA, double dB, double dC);

// Whether dNew is at least as good as dOld: larger when bMaximise, smaller
// otherwise, or equal within the fuzz.  A missing dOld is beaten by anything;
// bValid false is never better.
QEL_API bool mCompareFunction(double dOld, double dNew, bool bValid, bool bMaximise);

// A root of rFunction in [dXL, dXR], whose ends must carry values of opposite
// sign (or one of them be within the function's tolerance of zero).  In
// whole-number mode the result is the first whole number from the floor of the
// left end upward at which the function has the sign of the right end.
QEL_API double mRootFinder(double dXL, double dXR, CmRealFunction& rFunction);

// The point of [dXL, dXR] at which rFunction is least; with bIntegerX the
// whole number at the bottom.
QEL_API double mGoldenSection(double dXL, double dXR, CmRealFunction& rFunction, bool bIntegerX);

// Clips [*pdXL, *pdXR] to [dXMin, dXMax], repairs a missing end and widens the
// interval until it brackets a root; true when it does.
QEL_API bool mBracketFinder(double* pdXL, double* pdXR, CmRealFunction& rFunction, double dXMin,
                            double dXMax);
