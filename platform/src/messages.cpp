// Error flags and displayed messages.
#include "qel/qelmsg.h"
#include "qel/qelstrings.h"

#include <cstdio>

namespace
{
thread_local CmMessageCapture* t_pCapture = nullptr;
}

void mSetErrorFlag(int iCode, int iLevel)
{
    if (t_pCapture)
    {
        t_pCapture->mRecordFlag(iCode, iLevel);
        return;
    }
    const char* pszText = mLookUpStringTable(static_cast<unsigned int>(iCode));
    std::fprintf(stderr, "error %d (level %d): %s\n", iCode, iLevel, pszText ? pszText : "");
}

CmQELMessage* CmQELMessage::mGetGlobalMsg()
{
    static CmQELMessage message;
    return &message;
}

int CmQELMessage::mDisplay(unsigned int iMessageId, EDisplayLocation eLocation,
                           ESeverityLevel eSeverity, ...)
{
    if (t_pCapture)
    {
        t_pCapture->mRecordDisplay(iMessageId, eLocation, eSeverity);
        return 0;
    }
    const char* pszText = mLookUpStringTable(iMessageId);
    std::fprintf(stderr, "message %u: %s\n", iMessageId, pszText ? pszText : "");
    return 0;
}

CmMessageCapture::CmMessageCapture() : m_pPrevious(t_pCapture) { t_pCapture = this; }

CmMessageCapture::~CmMessageCapture() { t_pCapture = m_pPrevious; }
