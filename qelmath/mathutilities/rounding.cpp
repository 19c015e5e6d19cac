// Rounding: to the nearest integer (halves away from zero), to a number of
// decimal places or significant digits, to a multiple of a base; scaling by a
// power of ten without overflowing an intermediate power; remainder and sign
// transfer.
//
// mRound works by scaling: the value is multiplied by 10^digits, rounded to
// the nearest integer and scaled back.  Values whose scaled magnitude would
// leave the range of doubles (log10 above 308 or below -307) give the missing
// value instead.  mRoundToMultiple forms the quotient through logarithms, so
// that a quotient that would overflow leaves the value unchanged.
#include "qel/fuzzy.h"

#include "qel/elementary.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace
{

// dBase to an integer power by binary exponentiation: each set bit of the
// exponent multiplies the result by the current square of the base; a
// negative exponent takes the reciprocal at the end.
double mIntegerPower(double dBase, int iExponent)
{
    // The magnitude is taken in unsigned arithmetic so that INT_MIN is valid.
    unsigned int uRemaining = iExponent < 0 ? 0u - static_cast<unsigned int>(iExponent)
                                            : static_cast<unsigned int>(iExponent);
    double dResult = 1.0;
    double dSquare = dBase;
    while (uRemaining != 0u)
    {
        if (uRemaining & 1u)
            dResult *= dSquare;
        uRemaining >>= 1;
        if (uRemaining != 0u)
            dSquare *= dSquare;
    }
    return iExponent < 0 ? 1.0 / dResult : dResult;
}

// The largest power of ten applied in one step: 1e308 is still finite.
const int kMaxStepPower = 308;

} // namespace

double mNearestInteger(double dX)
{
    if (dX >= 0.0)
        return std::floor(dX + 0.5);
    return std::ceil(dX - 0.5);
}

double mScaleByPowerOfTen(double dX, int iPower)
{
    long long llRemaining = iPower < 0 ? -static_cast<long long>(iPower) : iPower;
    double dValue = dX;
    while (llRemaining > 0)
    {
        // Once the value is 0, infinite or not a number, further steps by a
        // finite positive factor cannot change it; stopping keeps a huge
        // power from taking millions of steps.
        if (dValue == 0.0 || !std::isfinite(dValue))
            break;
        const int iStep = static_cast<int>(std::min<long long>(llRemaining, kMaxStepPower));
        const double dFactor = mIntegerPower(10.0, iStep);
        if (iPower > 0)
            dValue *= dFactor;
        else
            dValue /= dFactor;
        llRemaining -= iStep;
    }
    return dValue;
}

double mRound(double dX, int iDigits)
{
    if (mIsNumericMissing(dX))
        return dX;
    if (dX == 0.0)
        return 0.0;
    const double dE = std::log10(std::fabs(dX)) + iDigits;
    if (dE > 308.0 || dE < -307.0)
        return mGetMissingValueCode();
    // -INT_MIN is not an int; that value of iDigits only gets here with a
    // value that is not a number, which every scaling leaves as it is.
    const int iBack = (iDigits == INT_MIN) ? INT_MAX : -iDigits;
    return mScaleByPowerOfTen(mNearestInteger(mScaleByPowerOfTen(dX, iDigits)), iBack);
}

double mRoundToSigDigits(double dX, int iDigits)
{
    if (dX == 0.0)
        return mRound(dX, 0);
    const long long llPlaces = static_cast<long long>(iDigits) -
                               mToINTG(std::floor(std::log10(std::fabs(dX)))) - 1;
    // Any count of places beyond the int range already sends mRound out of
    // range of doubles, so clamping does not change the result.
    const long long llClamped =
        std::max<long long>(INT_MIN, std::min<long long>(INT_MAX, llPlaces));
    return mRound(dX, static_cast<int>(llClamped));
}

double mRoundToMultiple(double dX, double dBase)
{
    QEL_ASSERT(0.0 != dBase);
    try
    {
        const double dQuotient =
            mExponential(mLog(std::fabs(dX), true) - mLog(std::fabs(dBase), true), true);
        // The sign of dX goes onto the rounded multiple, whatever the sign of dBase.
        return mTransferSign(mNearestInteger(dQuotient) * dBase, dX);
    }
    catch (const CmFloatOverflow&)
    {
        // Also the road of dX = 0, through the logarithm of 0.
        return dX;
    }
}

double mModulo(double dX, double dModulus)
{
    QEL_ASSERT(dModulus != 0.0);
    return std::fmod(dX, dModulus);
}

double mTransferSign(double dMagnitude, double dSign) { return std::copysign(dMagnitude, dSign); }
