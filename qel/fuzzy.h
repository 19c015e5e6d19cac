// Fuzzy comparison and rounding: the one definition in the library of when a
// computed number counts as equal to another or as a whole number, with the
// rounding functions that go with it, and by-reference twins for callers that
// pass every argument by address.
//
// The unit of tolerance is mGetEps().  mCompareWithFuzz treats two numbers as
// equal when they differ by at most a base term (1e-30 for a zero fuzz,
// otherwise mGetFuzzMax(dFuzz)) plus mGetEps() times the larger magnitude.
#pragma once

#include "qel/qelexport.h"
#include "qel/qelbt.h"

#include <vector>

QEL_API double mGetFuzzMax(double dFuzz);
QEL_API int mCompareWithFuzz(double dX, double dY, double dFuzz);
QEL_API bool mEqualWithinFuzz(double dX, double dY, double dFuzz);
QEL_API bool mApproxEqual(double dX, double dY, double dRelative, double dAbsolute);
QEL_API bool mIsIntegerWithinFuzz(double dX, double dFuzz);
QEL_API bool mIsEven(double dX, double dFuzz);

QEL_API double mNearestInteger(double dX);
QEL_API double mRound(double dX, int iDigits);
QEL_API double mRoundToSigDigits(double dX, int iDigits);
QEL_API double mRoundToMultiple(double dX, double dBase);
QEL_API double mScaleByPowerOfTen(double dX, int iPower);
QEL_API double mModulo(double dX, double dModulus);
QEL_API double mTransferSign(double dMagnitude, double dSign);

// Smallest and largest non-missing datum among the selected rows (1-based);
// both outputs are the missing value when there is none.
QEL_API void mMinMax(const double* pdData, const CbRows& rcbRows, double* pdMin, double* pdMax);
QEL_API void mMinMax(const double* const pdData, int iCount, double* pdMin, double* pdMax);
QEL_API void mMinMax(const std::vector<double>& rvdData, const CbRows& rcbRows, double* pdMin,
                     double* pdMax);

// By-reference twins: every argument by address, the result returned.
extern "C" {
QEL_API double GET_NEAREST_INTEGER(double* pdX);
QEL_API double GET_FLOOR(double* pdX);
QEL_API double GET_CEILING(double* pdX);
QEL_API int LEQUAL(double* pdA, double* pdB, double* pdRelative, double* pdAbsolute);
QEL_API int L_COMPARE_WITH_FUZZ(double* pdX, double* pdY, double* pdFuzz);
QEL_API int L_EQUAL_WITHIN_FUZZ(double* pdX, double* pdY, double* pdFuzz);
}
