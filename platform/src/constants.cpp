// The numeric constants and the missing value; see qel/qelbt.h for the
// relations they keep and docs/CONSTANTS.md for the values.
#include "qel/qelbt.h"

#include <cfloat>
#include <cmath>

namespace
{
// Finite, above exp(kMaxExponent) and above every data value.
constexpr double kMissingValue = 1.0e+308;
// exp(709) = 8.2e+307 is finite and below the missing value; exp(709.79) would
// overflow.
constexpr double kMaxExponent = 709.0;
// Beyond 2^52 doubles are whole numbers spaced one or more apart, and a sine
// of them says nothing.
constexpr double kMaxTrigArg = 4503599627370496.0;
constexpr double kNearlyZero = 1.0e-30;
// Its square, 1e+300, is still finite.
constexpr double kMaxDataValue = 1.0e+150;
constexpr double kPi = 3.14159265358979323846;
constexpr double kE = 2.71828182845904523536;
constexpr double kEuler = 0.57721566490153286061;
} // namespace

bool mIsNumericMissing(double dX) { return dX == kMissingValue; }
double mGetMissingValueCode() { return kMissingValue; }
double mGetEps() { return DBL_EPSILON; }
double mGetPi() { return kPi; }
double mGetEulerConst() { return kEuler; }
double mGetMaxExponent() { return kMaxExponent; }
double mGetMaxTrigArg() { return kMaxTrigArg; }
double mGetMaxInteger() { return 2147483647.0; }
double mGetMaxDataValue() { return kMaxDataValue; }

bool mIsInteger(double dX) { return std::isfinite(dX) && std::floor(dX) == dX; }

const CmQELConst* CmQELConst::mInstance()
{
    static const CmQELConst instance;
    return &instance;
}

double CmQELConst::mGetMissingValueCode() const { return kMissingValue; }
double CmQELConst::mGetEps() const { return DBL_EPSILON; }
double CmQELConst::mGetNearlyZero() const { return kNearlyZero; }
double CmQELConst::mGetPi() const { return kPi; }
double CmQELConst::mGetE() const { return kE; }
double CmQELConst::mGetMaxExponent() const { return kMaxExponent; }
double CmQELConst::mGetMaxTrigArg() const { return kMaxTrigArg; }
