// Assertions, exceptions, messages and strings of the frame.
#include "qel/qelmath.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <thread>

TEST(QelAssert, CaptureRecordsTextsOfThisThreadAndCallerGoesOn)
{
    CmAssertCapture capture;
    bool bReached = false;
    mAssert("dSigma > 0.0", __FILE__, __LINE__, false, false);
    bReached = true;
    EXPECT_TRUE(bReached);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dSigma > 0.0");
    EXPECT_TRUE(capture.mHas("dSigma > 0.0"));
}

TEST(QelAssert, MacroReportsTheSourceTextOnlyWhenTheConditionFails)
{
    CmAssertCapture capture;
    const double dSigma = 1.0;
    QEL_ASSERT(dSigma > 0.0);
    EXPECT_EQ(capture.mGetCount(), 0);
    const double dBad = -1.0;
    QEL_ASSERT(dBad > 0.0);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dBad > 0.0");
}

TEST(QelAssert, CapturesNestAndOtherThreadsAreNotCaptured)
{
    CmAssertCapture outer;
    {
        CmAssertCapture inner;
        mAssert("inner", "f", 1, false, false);
        EXPECT_EQ(inner.mGetCount(), 1);
    }
    mAssert("outer", "f", 2, false, false);
    EXPECT_EQ(outer.mGetCount(), 1);
    EXPECT_EQ(outer.mGetTexts()[0], "outer");

    int iOtherThreadCount = -1;
    std::thread t([&] {
        CmAssertCapture own;
        mAssert("other", "f", 3, false, false);
        iOtherThreadCount = own.mGetCount();
    });
    t.join();
    EXPECT_EQ(iOtherThreadCount, 1);
    EXPECT_EQ(outer.mGetCount(), 1);
}

namespace
{
int g_iHandled = 0;
std::string g_sLast;
void mCountingHandler(const char* pszExpr, const char*, unsigned int)
{
    ++g_iHandled;
    g_sLast = pszExpr;
}
} // namespace

TEST(QelAssert, InstalledHandlerReceivesReports)
{
    g_iHandled = 0;
    PFnAssertHandler pfnOld = mSetAssertHandler(&mCountingHandler);
    mAssert("x > 0", "file.cpp", 12, false, false);
    mSetAssertHandler(pfnOld);
    EXPECT_EQ(g_iHandled, 1);
    EXPECT_EQ(g_sLast, "x > 0");
}

TEST(QelAssert, CheckedCastOutOfRangeAssertsAndGoesOn)
{
    CmAssertCapture capture;
    const INTG i = mCheckedCast<INTG>(3e9);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "_in <= numeric_limits<_Tout>::max()");
    EXPECT_EQ(i, 2147483647);

    capture.mClear();
    EXPECT_EQ(mCheckedCast<INTG>(-3e9), -2147483647 - 1);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "_in >= numeric_limits<_Tout>::min()");

    capture.mClear();
    EXPECT_EQ(mCheckedCast<INTG>(12.9), 12);
    EXPECT_EQ(mCheckedCast<INTG>(-12.9), -12);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(QelAssert, CheckedCastBetweenIntegerTypesComparesExactly)
{
    CmAssertCapture capture;
    EXPECT_EQ(mCheckedCast<std::uint32_t>(7), 7u);
    EXPECT_EQ(mCheckedCast<std::uint32_t>(2147483647), 2147483647u);
    EXPECT_EQ(mCheckedCast<INTG>(4294967295u), 2147483647 * 0 + static_cast<INTG>(4294967295u));
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "_in <= numeric_limits<_Tout>::max()");
    capture.mClear();
    mCheckedCast<std::uint32_t>(-1);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "_in >= numeric_limits<_Tout>::min()");
    capture.mClear();
    EXPECT_EQ(mCheckedCast<std::uint32_t>(4294967295.0), 4294967295u);
    EXPECT_EQ(mCheckedCast<INTG>(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(capture.mGetCount(), 2); // NaN is neither below the top nor above the bottom
}

TEST(QelExceptions, TreesAreAsDesigned)
{
    try
    {
        throw CmInvalidArgument(CmString(L"Sqrt of a negative argument."), CmString("guarded.cpp"),
                                17);
    }
    catch (const CmLogicError& e)
    {
        EXPECT_STREQ(e.mGetClassName(), "CmInvalidArgument");
        EXPECT_EQ(e.mGetMessage().mGetString(), "Sqrt of a negative argument.");
        EXPECT_EQ(e.mGetFile().mGetString(), "guarded.cpp");
        EXPECT_EQ(e.mGetLine(), 17u);
        EXPECT_STREQ(e.what(), "Sqrt of a negative argument. (guarded.cpp:17)");
    }
    EXPECT_THROW(throw CmFloatOverflow(), CmFloatException);
    EXPECT_THROW(throw CmFloatOverflow(), CmRuntimeError);
    EXPECT_THROW(throw CmRangeError(), CmRuntimeError);
    EXPECT_THROW(throw CmRangeError(), CmException);
    EXPECT_THROW(throw CmInvalidArgument(), std::exception);
    EXPECT_STREQ(CmFloatOverflow().mGetClassName(), "CmFloatOverflow");
}

TEST(QelMessages, ErrorFlagAndDisplayAreRecorded)
{
    CmMessageCapture capture;
    mSetErrorFlag(50021, 2);
    CmQELMessage::mGetGlobalMsg()->mDisplay(985, static_cast<EDisplayLocation>(0),
                                             static_cast<ESeverityLevel>(4));
    ASSERT_EQ(capture.mGetErrorFlags().size(), 1u);
    EXPECT_EQ(capture.mGetErrorFlags()[0].iCode, 50021);
    EXPECT_EQ(capture.mGetErrorFlags()[0].iLevel, 2);
    ASSERT_EQ(capture.mGetDisplays().size(), 1u);
    EXPECT_EQ(capture.mGetDisplays()[0].uMessageId, 985u);
    EXPECT_EQ(capture.mGetDisplays()[0].iLocation, 0);
    EXPECT_EQ(capture.mGetDisplays()[0].iSeverity, 4);
}

TEST(QelStrings, WideAndNarrowTextsAgree)
{
    EXPECT_EQ(CmString(L"Normal"), CmString("Normal"));
    EXPECT_EQ(CmString(L"\u00e9").mGetString(), "\xc3\xa9");
}

TEST(QelStrings, EveryIdTheLibraryUsesHasAText)
{
    std::vector<unsigned int> ids = {985, 50021, 50157, 50158};
    for (unsigned int id = 50026; id <= 50034; ++id)
        ids.push_back(id);
    for (unsigned int id = 50192; id <= 50205; ++id)
        ids.push_back(id);
    for (unsigned int id : ids)
    {
        CmString s;
        EXPECT_TRUE(s.mLoadString(id)) << id;
        EXPECT_FALSE(s.mIsEmpty()) << id;
    }
    CmString s("kept");
    EXPECT_FALSE(s.mLoadString(1));
    EXPECT_EQ(s.mGetString(), "kept");
    EXPECT_TRUE(s.mLoadString(50197));
    EXPECT_EQ(s.mGetString(), "Normal");
}
