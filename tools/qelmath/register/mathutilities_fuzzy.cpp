// Fuzzy comparison, rounding, the smallest and largest datum, and the
// by-reference twins (their pointer arguments take the value given).
#include "../registry.h"

#include "qel/fuzzy.h"

#include <vector>

QEL_EVAL_FUNCTIONS(mathutilities_fuzzy)
{
    reg.mAdd("mGetFuzzMax", &mGetFuzzMax, "dFuzz");
    reg.mAdd("mCompareWithFuzz", &mCompareWithFuzz, "dX, dY, dFuzz");
    reg.mAdd("mEqualWithinFuzz", &mEqualWithinFuzz, "dX, dY, dFuzz");
    reg.mAdd("mApproxEqual", &mApproxEqual, "dX, dY, dRelative, dAbsolute");
    reg.mAdd("mIsIntegerWithinFuzz", &mIsIntegerWithinFuzz, "dX, dFuzz");
    reg.mAdd("mIsEven", &mIsEven, "dX, dFuzz");
    reg.mAdd("mNearestInteger", &mNearestInteger, "dX");
    reg.mAdd("mRound", &mRound, "dX, iDigits");
    reg.mAdd("mRoundToSigDigits", &mRoundToSigDigits, "dX, iDigits");
    reg.mAdd("mRoundToMultiple", &mRoundToMultiple, "dX, dBase");
    reg.mAdd("mScaleByPowerOfTen", &mScaleByPowerOfTen, "dX, iPower");
    reg.mAdd("mModulo", &mModulo, "dX, dModulus");
    reg.mAdd("mTransferSign", &mTransferSign, "dMagnitude, dSign");
    // The overload over a count of data, every row selected; the answer is
    // [min, max].
    reg.mAdd(
        "mMinMax",
        +[](std::vector<double> vdData) {
            double dMin = 0.0;
            double dMax = 0.0;
            mMinMax(vdData.data(), static_cast<int>(vdData.size()), &dMin, &dMax);
            return std::vector<double>{dMin, dMax};
        },
        "rvdData");

    reg.mAdd("GET_NEAREST_INTEGER", &GET_NEAREST_INTEGER, "pdX");
    reg.mAdd("GET_FLOOR", &GET_FLOOR, "pdX");
    reg.mAdd("GET_CEILING", &GET_CEILING, "pdX");
    reg.mAdd("LEQUAL", &LEQUAL, "pdA, pdB, pdRelative, pdAbsolute");
    reg.mAdd("L_COMPARE_WITH_FUZZ", &L_COMPARE_WITH_FUZZ, "pdX, pdY, pdFuzz");
    reg.mAdd("L_EQUAL_WITHIN_FUZZ", &L_EQUAL_WITHIN_FUZZ, "pdX, pdY, pdFuzz");
}
