// The guarded elementary functions: every guard of every function, with its
// result, exception class and text, and the asymmetries between twins.
#include "qel/qelmath.h"
#include "qelmath/specialfunctions/overflow.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace
{

const double kLargest = 1.7976931348623157e+308;

// Runs f and returns the message of the exception E it throws, after checking
// that the thrown object is of class E itself (by its class name) and that it
// carries the file and line of the raise; "<no exception>" when nothing is
// thrown.  Any other exception propagates and fails the test.
template <class E, class F>
std::string mMessageOf(F f, const char* pszClass)
{
    try
    {
        f();
    }
    catch (const E& e)
    {
        EXPECT_STREQ(e.mGetClassName(), pszClass);
        return e.mGetMessage().mGetString();
    }
    return "<no exception>";
}

template <class F>
std::string mInvalidArgumentText(F f)
{
    try
    {
        f();
    }
    catch (const CmInvalidArgument& e)
    {
        EXPECT_STREQ(e.mGetClassName(), "CmInvalidArgument");
        EXPECT_NE(e.mGetFile().mGetString().find("elementary.cpp"), std::string::npos);
        EXPECT_GT(e.mGetLine(), 0u);
        return e.mGetMessage().mGetString();
    }
    return "<no exception>";
}

template <class F>
bool mThrowsFloatOverflow(F f)
{
    try
    {
        f();
    }
    catch (const CmFloatOverflow& e)
    {
        EXPECT_STREQ(e.mGetClassName(), "CmFloatOverflow");
        return true;
    }
    return false;
}

} // namespace

TEST(OverflowResult, FalseGivesLargestDoubleTrueThrows)
{
    EXPECT_EQ(mOverflowResult(false), kLargest);
    EXPECT_EQ(mOverflowResult(false), std::numeric_limits<double>::max());
    EXPECT_TRUE(mThrowsFloatOverflow([] { mOverflowResult(true); }));
}

TEST(Sqrt, NegativeWithFalseIsZeroWithTrueThrows)
{
    EXPECT_EQ(mSqrt(-1.0, false), 0.0);
    EXPECT_EQ(mInvalidArgumentText([] { mSqrt(-1.0, true); }), "Sqrt of a negative argument.");
    EXPECT_EQ(mSqrt(4.0, true), 2.0);
    EXPECT_EQ(mSqrt(0.0, true), 0.0);
    EXPECT_EQ(mSqrt(2.0, false), std::sqrt(2.0));
}

TEST(Log, ZeroGivesLargestNegativeOrOverflow)
{
    EXPECT_EQ(mLog(0.0, false), -1.7976931348623157e+308);
    EXPECT_TRUE(mThrowsFloatOverflow([] { mLog(0.0, true); }));
}

TEST(Log, NegativeThrowsWhateverTheBool)
{
    EXPECT_EQ(mInvalidArgumentText([] { mLog(-1.0, false); }), "Log of a negative argument.");
    EXPECT_EQ(mInvalidArgumentText([] { mLog(-1.0, true); }), "Log of a negative argument.");
}

TEST(Log, PositiveIsTheLibraryLogarithm)
{
    EXPECT_EQ(mLog(10.0, true), std::log(10.0));
    EXPECT_EQ(mLog(1.0, false), 0.0);
}

TEST(Log10, ZeroAndNegativeWithFalseAreMissing)
{
    EXPECT_EQ(mLog10(0.0, false), mGetMissingValueCode());
    EXPECT_EQ(mLog10(-1.0, false), mGetMissingValueCode());
    EXPECT_TRUE(mIsNumericMissing(mLog10(-1.0, false)));
}

TEST(Log10, WithTrueZeroOverflowsAndNegativeThrowsInvalidArgument)
{
    EXPECT_TRUE(mThrowsFloatOverflow([] { mLog10(0.0, true); }));
    EXPECT_EQ(mInvalidArgumentText([] { mLog10(-1.0, true); }), "Log of a negative argument.");
}

TEST(Log10, PositiveIsTheLibraryLogarithm)
{
    EXPECT_EQ(mLog10(1000.0, true), 3.0);
    EXPECT_EQ(mLog10(2.0, false), std::log10(2.0));
}

TEST(Exponential, AboveMaxExponentIsLargestDoubleOrOverflow)
{
    const double dM = mGetMaxExponent();
    EXPECT_EQ(mExponential(dM + 1.0, false), kLargest);
    EXPECT_TRUE(mThrowsFloatOverflow([dM] { mExponential(dM + 1.0, true); }));
    EXPECT_EQ(mExponential(dM, true), std::exp(dM));
}

TEST(Exponential, UnderflowIsZeroAndNeverThrows)
{
    const double dM = mGetMaxExponent();
    double dResult = -1.0;
    EXPECT_NO_THROW(dResult = mExponential(-dM - 1.0, true));
    EXPECT_EQ(dResult, 0.0);
    EXPECT_EQ(mExponential(-dM, true), std::exp(-dM));
    EXPECT_GT(mExponential(-dM, true), 0.0);
}

TEST(Exponential, MissingArgumentIsAssertedThenOverflows)
{
    CmAssertCapture capture;
    EXPECT_EQ(mExponential(mGetMissingValueCode(), false), kLargest);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "! ::mIsNumericMissing( dX )");
    EXPECT_EQ(mExponential(1.0, false), std::exp(1.0));
    EXPECT_EQ(capture.mGetCount(), 1);
}

TEST(ExponentiateOrReturnMissing, MissingAndOverflowGiveMissing)
{
    CmAssertCapture capture;
    EXPECT_EQ(mExponentiateOrReturnMissing(mGetMissingValueCode()), mGetMissingValueCode());
    EXPECT_EQ(mExponentiateOrReturnMissing(mGetMaxExponent() + 1.0), mGetMissingValueCode());
    EXPECT_EQ(mExponentiateOrReturnMissing(0.0), 1.0);
    EXPECT_EQ(mExponentiateOrReturnMissing(-1000.0), 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(RaiseToPower, NegativeBaseWithIntegerExponent)
{
    EXPECT_EQ(mRaiseToPower(-2.0, 3.0, false), -8.0);
    EXPECT_EQ(mRaiseToPower(-2.0, 2.0, true), 4.0);
    EXPECT_EQ(mRaiseToPower(-2.0, -1.0, true), -0.5);
}

TEST(RaiseToPower, NegativeBaseUsesTheRoundedExponentWithinFuzz)
{
    // The next double above 3 is within the fuzz of 3, and the power is the
    // exact integer power.
    const double dNearThree = std::nextafter(3.0, 4.0);
    EXPECT_EQ(mRaiseToPower(-2.0, dNearThree, false), -8.0);
}

TEST(RaiseToPower, NegativeBaseWithNonintegerExponentThrowsWhateverTheBool)
{
    const std::string sText = "Negative number raised to a noninteger power.";
    EXPECT_EQ(mInvalidArgumentText([] { mRaiseToPower(-2.0, 0.5, false); }), sText);
    EXPECT_EQ(mInvalidArgumentText([] { mRaiseToPower(-2.0, 0.5, true); }), sText);
    EXPECT_EQ(mInvalidArgumentText([] { mRaiseToPower(-2.0, 3.0 + 1e-12, false); }), sText);
}

TEST(RaiseToPower, ZeroBase)
{
    EXPECT_EQ(mRaiseToPower(0.0, 0.0, true), 1.0);
    EXPECT_EQ(mRaiseToPower(0.0, 2.5, true), 0.0);
    const std::string sText = "Zero raised to a negative power.";
    EXPECT_EQ(mInvalidArgumentText([] { mRaiseToPower(0.0, -1.0, false); }), sText);
    EXPECT_EQ(mInvalidArgumentText([] { mRaiseToPower(0.0, -1.0, true); }), sText);
}

TEST(RaiseToPower, NegativeBaseOverflowTakesTheSignOfAnOddExponent)
{
    EXPECT_EQ(mRaiseToPower(-2.0, 2000001.0, false), -kLargest);
    EXPECT_EQ(mRaiseToPower(-2.0, 2000000.0, false), kLargest);
    EXPECT_TRUE(mThrowsFloatOverflow([] { mRaiseToPower(-2.0, 2000001.0, true); }));
    // A negative odd exponent leaves a remainder of -1, so the result is +r.
    EXPECT_EQ(mRaiseToPower(-0.5, -2000001.0, false), kLargest);
    // Beyond the INTG range the parity comes from the exponent itself.
    EXPECT_EQ(mRaiseToPower(-2.0, 5000000001.0, false), -kLargest);
    EXPECT_EQ(mRaiseToPower(-2.0, 5000000000.0, false), kLargest);
}

TEST(RaiseToPower, NegativeBaseUnderflowIsZero)
{
    EXPECT_EQ(mRaiseToPower(-2.0, -2000001.0, false), 0.0);
    EXPECT_EQ(mRaiseToPower(-2.0, -2000001.0, true), 0.0);
}

TEST(RaiseToPower, PositiveBase)
{
    EXPECT_EQ(mRaiseToPower(2.0, 0.5, true), std::pow(2.0, 0.5));
    EXPECT_EQ(mRaiseToPower(2.0, 2000.0, false), kLargest);
    EXPECT_TRUE(mThrowsFloatOverflow([] { mRaiseToPower(2.0, 2000.0, true); }));
    EXPECT_EQ(mRaiseToPower(2.0, -2000.0, true), 0.0);
    EXPECT_EQ(mRaiseToPower(10.0, 3.0, false), 1000.0);
}

TEST(Trig, WithinMaxTrigArgIsTheLibraryFunction)
{
    const double dMax = mGetMaxTrigArg();
    EXPECT_EQ(mSin(0.5), std::sin(0.5));
    EXPECT_EQ(mCos(0.5), std::cos(0.5));
    EXPECT_EQ(mTan(0.5), std::tan(0.5));
    EXPECT_EQ(mATan(0.5), std::atan(0.5));
    EXPECT_EQ(mSin(dMax), std::sin(dMax));
    EXPECT_EQ(mCos(-dMax), std::cos(-dMax));
    EXPECT_EQ(mTan(dMax), std::tan(dMax));
    EXPECT_EQ(mATan(-dMax), std::atan(-dMax));
}

TEST(Trig, BeyondMaxTrigArgThrowsInvalidArgument)
{
    const std::string sText = "Argument out of range for trig function.";
    const double dBeyond = 2.0 * mGetMaxTrigArg();
    EXPECT_EQ(mInvalidArgumentText([dBeyond] { mSin(dBeyond); }), sText);
    EXPECT_EQ(mInvalidArgumentText([dBeyond] { mCos(-dBeyond); }), sText);
    EXPECT_EQ(mInvalidArgumentText([dBeyond] { mTan(dBeyond); }), sText);
    // The arctangent has no such limit mathematically, but keeps the test.
    EXPECT_EQ(mInvalidArgumentText([] { mATan(1e20); }), sText);
    EXPECT_EQ(mInvalidArgumentText([] { mSin(std::numeric_limits<double>::infinity()); }), sText);
}

TEST(ASin, OutsideUnitIntervalIsMissing)
{
    EXPECT_EQ(mASin(1.5), mGetMissingValueCode());
    EXPECT_EQ(mASin(-1.5), mGetMissingValueCode());
}

TEST(ASin, WithinEpsOfOneSnapsToQuarterTurn)
{
    const double dQuarter = mGetPi() / 2.0;
    // 1 + 1e-20 is the double 1.
    EXPECT_EQ(mASin(1.0 + 1e-20), dQuarter);
    EXPECT_EQ(mASin(1.0), dQuarter);
    EXPECT_EQ(mASin(-1.0), -dQuarter);
    EXPECT_EQ(mASin(std::nextafter(1.0, 0.0)), dQuarter);
    EXPECT_EQ(mASin(-std::nextafter(1.0, 0.0)), -dQuarter);
    const double dFarther = 1.0 - 4.0 * mGetEps();
    EXPECT_EQ(mASin(dFarther), std::asin(dFarther));
    EXPECT_NE(mASin(dFarther), dQuarter);
    EXPECT_EQ(mASin(0.5), std::asin(0.5));
}

TEST(ACos, OutsideUnitIntervalIsMissing)
{
    EXPECT_EQ(mACos(1.5), mGetMissingValueCode());
    EXPECT_EQ(mACos(-1.0000001), mGetMissingValueCode());
}

TEST(ACos, NearZeroSnapsToQuarterTurnAndEndsAreTheLibrary)
{
    const double dQuarter = mGetPi() / 2.0;
    EXPECT_EQ(mACos(0.0), dQuarter);
    EXPECT_EQ(mACos(1e-17), dQuarter);
    EXPECT_EQ(mACos(-mGetEps()), dQuarter);
    EXPECT_EQ(mACos(1e-10), std::acos(1e-10));
    EXPECT_EQ(mACos(1.0), std::acos(1.0));
    EXPECT_EQ(mACos(-1.0), std::acos(-1.0));
    EXPECT_EQ(mACos(std::nextafter(1.0, 0.0)), std::acos(std::nextafter(1.0, 0.0)));
}

TEST(AngleConversion, DegreesAndRadians)
{
    const double dPi = mGetPi();
    EXPECT_EQ(mDegreesToRadians(180.0), dPi);
    EXPECT_EQ(mDegreesToRadians(90.0), dPi * 90.0 / 180.0);
    EXPECT_EQ(mRadiansToDegrees(dPi), 180.0);
    EXPECT_EQ(mRadiansToDegrees(1.0), (1.0 * 180.0) / dPi);
    EXPECT_EQ(mDegreesToRadians(0.0), 0.0);
}
