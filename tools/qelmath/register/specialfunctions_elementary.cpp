// The guarded elementary functions: square root, logarithms, exponentials,
// powers, trigonometric functions, angle conversions, gamma and its logarithm.
#include "../registry.h"

#include "qel/elementary.h"

QEL_EVAL_FUNCTIONS(specialfunctions_elementary)
{
    reg.mAdd("mSqrt", &mSqrt, "dX, bThrow");
    reg.mAdd("mLog", &mLog, "dX, bThrow");
    reg.mAdd("mLog10", &mLog10, "dX, bThrow");
    reg.mAdd("mExponential", &mExponential, "dX, bThrow");
    reg.mAdd("mExponentiateOrReturnMissing", &mExponentiateOrReturnMissing, "dX");
    reg.mAdd("mRaiseToPower", &mRaiseToPower, "dBase, dExponent, bThrow");
    reg.mAdd("mSin", &mSin, "dX");
    reg.mAdd("mCos", &mCos, "dX");
    reg.mAdd("mTan", &mTan, "dX");
    reg.mAdd("mATan", &mATan, "dX");
    reg.mAdd("mASin", &mASin, "dX");
    reg.mAdd("mACos", &mACos, "dX");
    reg.mAdd("mDegreesToRadians", &mDegreesToRadians, "dDegrees");
    reg.mAdd("mRadiansToDegrees", &mRadiansToDegrees, "dRadians");
    reg.mAdd("mLogGamma", &mLogGamma, "dX");
    reg.mAdd("mGamma", &mGamma, "dX, bThrow");
}
