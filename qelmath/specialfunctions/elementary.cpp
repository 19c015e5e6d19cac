// Guarded elementary functions: square root, logarithms, exponentials, powers,
// trigonometric functions and their inverses, angle conversions.
//
// The runtime library's functions answer silently at the edge of their domain
// (a NaN, an infinity, a signed zero).  Each function here decides instead:
// a domain error is CmInvalidArgument with a fixed text, an overflow goes
// through mOverflowResult (CmFloatOverflow, or the largest double), and some
// edges give a sentinel (0.0, the missing value).  The guards differ between
// twins on purpose, and callers depend on each of them:
//   * mLog(0, false) is the largest negative double, mLog10(0, false) the
//     missing value;
//   * mLog throws on a negative argument whatever its bool, mLog10 with false
//     returns the missing value;
//   * mSqrt of a negative with false is 0, not the missing value;
//   * mASin snaps to a quarter turn when its argument is within one epsilon
//     of +-1, mACos when its argument is within one epsilon of 0;
//   * the inverse sine and cosine return the missing value outside [-1, 1]
//     where the other functions throw, and mATan keeps a range test although
//     arctangent has no such limit.
// Underflow never throws: an exponential below exp(-mGetMaxExponent()) is 0.
#include "qel/elementary.h"

#include "qel/fuzzy.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"
#include "qel/qelstrings.h"
#include "qelmath/specialfunctions/overflow.h"

#include <cmath>

namespace
{

bool mTrigArgInRange(double dX) { return std::fabs(dX) <= CmQELConst::mInstance()->mGetMaxTrigArg(); }

} // namespace

double mSqrt(double dX, bool bThrow)
{
    if (dX < 0.0)
    {
        if (bThrow)
            throw CmInvalidArgument(CmString(L"Sqrt of a negative argument."), CmString(__FILE__),
                                    __LINE__);
        return 0.0;
    }
    return std::sqrt(dX);
}

double mLog(double dX, bool bThrow)
{
    if (dX > 0.0)
        return std::log(dX);
    if (dX == 0.0)
        return -mOverflowResult(bThrow);
    if (dX < 0.0)
        throw CmInvalidArgument(CmString(L"Log of a negative argument."), CmString(__FILE__),
                                __LINE__);
    return std::log(dX); // not a number: passed through as the library gives it
}

double mLog10(double dX, bool bThrow)
{
    if (dX > 0.0)
        return std::log10(dX);
    if (dX <= 0.0)
    {
        if (!bThrow)
            return mGetMissingValueCode();
        if (dX == 0.0)
            throw CmFloatOverflow();
        throw CmInvalidArgument(CmString(L"Log of a negative argument."), CmString(__FILE__),
                                __LINE__);
    }
    return std::log10(dX); // not a number
}

double mExponential(double dX, bool bThrow)
{
    QEL_ASSERT(! ::mIsNumericMissing( dX ));
    const double dMaxExponent = mGetMaxExponent();
    if (dX > dMaxExponent)
        return mOverflowResult(bThrow);
    if (dX < -dMaxExponent)
        return 0.0;
    return std::exp(dX);
}

double mExponentiateOrReturnMissing(double dX)
{
    if (mIsNumericMissing(dX))
        return dX;
    try
    {
        return mExponential(dX, true);
    }
    catch (const CmFloatOverflow&)
    {
        return mGetMissingValueCode();
    }
}

double mRaiseToPower(double dBase, double dExponent, bool bThrow)
{
    const double dMaxExponent = CmQELConst::mInstance()->mGetMaxExponent();
    if (dBase < 0.0)
    {
        const double dN = mNearestInteger(dExponent);
        if (!mEqualWithinFuzz(dExponent, dN, 0.0))
            throw CmInvalidArgument(CmString(L"Negative number raised to a noninteger power."),
                                    CmString(__FILE__), __LINE__);
        const double dLogResult = std::log(-dBase) * dExponent;
        if (dLogResult < -dMaxExponent)
            return 0.0;
        if (dLogResult > dMaxExponent)
        {
            const double dR = mOverflowResult(bThrow);
            // The remainder keeps the sign of the dividend, so a negative odd
            // exponent gives +r; this is deliberate.  An exponent beyond the
            // INTG range takes its parity from the double itself.
            const bool bInRange = std::fabs(dN) <= mGetMaxInteger();
            const bool bOddRemainder =
                bInRange ? (mToINTG(dN) % 2 == 1) : (std::fmod(dN, 2.0) == 1.0);
            return bOddRemainder ? -dR : dR;
        }
        // The rounded exponent, so that a power within fuzz of a whole number
        // keeps the sign of the true integer power.
        return std::pow(dBase, dN);
    }
    if (dBase == 0.0)
    {
        if (dExponent > 0.0)
            return 0.0;
        if (dExponent == 0.0)
            return 1.0;
        if (dExponent < 0.0)
            throw CmInvalidArgument(CmString(L"Zero raised to a negative power."),
                                    CmString(__FILE__), __LINE__);
        return std::pow(dBase, dExponent); // exponent not a number
    }
    const double dLogResult = std::log(dBase) * dExponent;
    if (dLogResult < -dMaxExponent)
        return 0.0;
    if (dLogResult > dMaxExponent)
        return mOverflowResult(bThrow);
    return std::pow(dBase, dExponent);
}

double mSin(double dX)
{
    if (!mTrigArgInRange(dX))
        throw CmInvalidArgument(CmString(L"Argument out of range for trig function."),
                                CmString(__FILE__), __LINE__);
    return std::sin(dX);
}

double mCos(double dX)
{
    if (!mTrigArgInRange(dX))
        throw CmInvalidArgument(CmString(L"Argument out of range for trig function."),
                                CmString(__FILE__), __LINE__);
    return std::cos(dX);
}

double mTan(double dX)
{
    if (!mTrigArgInRange(dX))
        throw CmInvalidArgument(CmString(L"Argument out of range for trig function."),
                                CmString(__FILE__), __LINE__);
    return std::tan(dX);
}

double mATan(double dX)
{
    if (!(std::fabs(dX) <= mGetMaxTrigArg()))
        throw CmInvalidArgument(CmString(L"Argument out of range for trig function."),
                                CmString(__FILE__), __LINE__);
    return std::atan(dX);
}

double mASin(double dX)
{
    const double dAbs = std::fabs(dX);
    if (dAbs > 1.0)
        return mGetMissingValueCode();
    if (std::fabs(1.0 - dAbs) <= mGetEps())
    {
        const double dQuarter = mGetPi() / 2.0;
        return dX < 0.0 ? -dQuarter : dQuarter;
    }
    return std::asin(dX);
}

double mACos(double dX)
{
    const double dAbs = std::fabs(dX);
    if (dAbs > 1.0)
        return mGetMissingValueCode();
    if (dAbs <= mGetEps())
        return mGetPi() / 2.0;
    return std::acos(dX);
}

double mDegreesToRadians(double dDegrees)
{
    return CmQELConst::mInstance()->mGetPi() * dDegrees / 180.0;
}

double mRadiansToDegrees(double dRadians)
{
    return (dRadians * 180.0) / CmQELConst::mInstance()->mGetPi();
}
