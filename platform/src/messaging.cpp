// mAssert and its capture.
#include "qel/qelmessaging.h"

#include <algorithm>
#include <atomic>
#include <cstdio>

namespace
{
std::atomic<PFnAssertHandler> g_pfnHandler{nullptr};
thread_local CmAssertCapture* t_pCapture = nullptr;

void mDefaultAssertHandler(const char* pszExpression, const char* pszFile, unsigned int uLine)
{
    std::fprintf(stderr, "assertion failed: %s (%s:%u)\n", pszExpression, pszFile, uLine);
}
} // namespace

bool mAssert(const char* pszExpression, const char* pszFile, unsigned int uLine, bool, bool)
{
    const char* pszText = pszExpression ? pszExpression : "";
    if (t_pCapture)
    {
        t_pCapture->mRecord(pszText);
        return false;
    }
    PFnAssertHandler pfn = g_pfnHandler.load();
    (pfn ? pfn : mDefaultAssertHandler)(pszText, pszFile ? pszFile : "", uLine);
    return false;
}

PFnAssertHandler mSetAssertHandler(PFnAssertHandler pfnHandler)
{
    return g_pfnHandler.exchange(pfnHandler);
}

CmAssertCapture::CmAssertCapture() : m_pPrevious(t_pCapture) { t_pCapture = this; }

CmAssertCapture::~CmAssertCapture() { t_pCapture = m_pPrevious; }

bool CmAssertCapture::mHas(const std::string& rsText) const
{
    return std::find(m_vsTexts.begin(), m_vsTexts.end(), rsText) != m_vsTexts.end();
}
