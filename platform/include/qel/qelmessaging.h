// Assertions.  A precondition that does not hold is reported through mAssert
// with the condition's source text, the file and the line, and the caller then
// goes on: the report is a service to the user, not a stop.
//
// By default a report is one line on standard error,
//     assertion failed: <expression> (<file>:<line>)
// A host may install its own handler.  A test captures the reports of its own
// thread with CmAssertCapture, which also keeps them off standard error.
#pragma once

#include "qel/qelexport.h"

#include <string>
#include <vector>

QEL_API bool mAssert(const char* pszExpression, const char* pszFile, unsigned int uLine, bool,
                     bool);

typedef void (*PFnAssertHandler)(const char* pszExpression, const char* pszFile,
                                 unsigned int uLine);

// Installs a process-wide handler (nullptr restores the default) and returns
// the previous one.
QEL_API PFnAssertHandler mSetAssertHandler(PFnAssertHandler pfnHandler);

// While alive, records the reports of the current thread instead of passing
// them on.  Captures nest; the innermost one records.
class QEL_API CmAssertCapture
{
public:
    CmAssertCapture();
    ~CmAssertCapture();
    CmAssertCapture(const CmAssertCapture&) = delete;
    CmAssertCapture& operator=(const CmAssertCapture&) = delete;

    int mGetCount() const { return static_cast<int>(m_vsTexts.size()); }
    const std::vector<std::string>& mGetTexts() const { return m_vsTexts; }
    bool mHas(const std::string& rsText) const;
    void mClear() { m_vsTexts.clear(); }

    // Used by mAssert.
    void mRecord(const char* pszExpression) { m_vsTexts.emplace_back(pszExpression); }

private:
    std::vector<std::string> m_vsTexts;
    CmAssertCapture* m_pPrevious;
};

// A precondition: reports the condition's own source text when it fails.
#define QEL_ASSERT(cond)                                                                           \
    do                                                                                             \
    {                                                                                              \
        if (!(cond))                                                                               \
            ::mAssert(#cond, __FILE__, __LINE__, false, false);                                    \
    } while (0)

// The same with the text given separately, for a text that cannot be the
// source itself (a reserved name, a branch that must not be reached).
#define QEL_ASSERT_TEXT(cond, text)                                                                \
    do                                                                                             \
    {                                                                                              \
        if (!(cond))                                                                               \
            ::mAssert(text, __FILE__, __LINE__, false, false);                                     \
    } while (0)

// A branch that must not be reached.
#define QEL_ASSERT_FALSE() ::mAssert("false", __FILE__, __LINE__, false, false)
