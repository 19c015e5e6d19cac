// Guarded elementary functions: square root, logarithms, exponentials, powers,
// trigonometric functions and their inverses, angle conversions, and the
// gamma function with its logarithm.
//
// Each function decides what happens at the edge of its domain.  Where a
// trailing bool bThrow is present, true asks for an exception (CmInvalidArgument
// for a domain error, CmFloatOverflow for overflow) and false for a value (a
// sentinel such as the largest double, 0.0 or the missing value).  The guards
// differ from function to function on purpose; callers rely on each of them.
#pragma once

#include "qel/qelexport.h"

QEL_API double mSqrt(double dX, bool bThrow);
QEL_API double mLog(double dX, bool bThrow);
QEL_API double mLog10(double dX, bool bThrow);
QEL_API double mExponential(double dX, bool bThrow);
QEL_API double mExponentiateOrReturnMissing(double dX);
QEL_API double mRaiseToPower(double dBase, double dExponent, bool bThrow);

QEL_API double mSin(double dX);
QEL_API double mCos(double dX);
QEL_API double mTan(double dX);
QEL_API double mATan(double dX);
QEL_API double mASin(double dX);
QEL_API double mACos(double dX);

QEL_API double mDegreesToRadians(double dDegrees);
QEL_API double mRadiansToDegrees(double dRadians);

QEL_API double mLogGamma(double dX);
QEL_API double mGamma(double dX, bool bThrow);
