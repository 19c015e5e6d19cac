// The missing value, the numeric constants and the enumerations of the frame.
#include "../registry.h"

#include "qel/qelbt.h"

QEL_EVAL_FUNCTIONS(platform_constants)
{
    reg.mAdd("mIsNumericMissing", &mIsNumericMissing, "dX");
    reg.mAdd("mGetMissingValueCode", &mGetMissingValueCode, "");
    reg.mAdd("mIsInteger", &mIsInteger, "dX");
    reg.mAdd("mGetEps", &mGetEps, "");
    reg.mAdd("mGetPi", &mGetPi, "");
    reg.mAdd("mGetEulerConst", &mGetEulerConst, "");
    reg.mAdd("mGetMaxExponent", &mGetMaxExponent, "");
    reg.mAdd("mGetMaxTrigArg", &mGetMaxTrigArg, "");
    reg.mAdd("mGetMaxInteger", &mGetMaxInteger, "");
    reg.mAdd("mGetMaxDataValue", &mGetMaxDataValue, "");
    reg.mAdd("mAlternativeFromConfidence", &mAlternativeFromConfidence, "eType");

    reg.mAddEnum("eLowerTailed", eLowerTailed);
    reg.mAddEnum("eTwoSided", eTwoSided);
    reg.mAddEnum("eUpperTailed", eUpperTailed);
    reg.mAddEnum("eLowerBoundOnly", eLowerBoundOnly);
    reg.mAddEnum("eBothBounds", eBothBounds);
    reg.mAddEnum("eUpperBoundOnly", eUpperBoundOnly);
}
