// Messages to the host: error flags without text, and messages shown by id.
// The stand-in records every call so that the host (or a test) can read what
// was reported; a display also writes the message text to standard error.
#pragma once

#include "qel/qelexport.h"

#include <vector>

enum EDisplayLocation : int
{
    eDisplayDefault = 0,
    eDisplaySession = 1,
    eDisplayDialog = 2
};

enum ESeverityLevel : int
{
    eSeverityNone = 0,
    eSeverityInformation = 1,
    eSeverityNote = 2,
    eSeverityWarning = 3,
    eSeverityError = 4
};

QEL_API void mSetErrorFlag(int iCode, int iLevel);

struct CmErrorFlagRecord
{
    int iCode;
    int iLevel;
};

struct CmDisplayRecord
{
    unsigned int uMessageId;
    int iLocation;
    int iSeverity;
};

class QEL_API CmQELMessage
{
public:
    static CmQELMessage* mGetGlobalMsg();

    int mDisplay(unsigned int iMessageId, EDisplayLocation eLocation, ESeverityLevel eSeverity,
                 ...);

private:
    CmQELMessage() = default;
};

// While alive, records the error flags and displays of the current thread
// instead of passing them on.
class QEL_API CmMessageCapture
{
public:
    CmMessageCapture();
    ~CmMessageCapture();
    CmMessageCapture(const CmMessageCapture&) = delete;
    CmMessageCapture& operator=(const CmMessageCapture&) = delete;

    const std::vector<CmErrorFlagRecord>& mGetErrorFlags() const { return m_vFlags; }
    const std::vector<CmDisplayRecord>& mGetDisplays() const { return m_vDisplays; }

    void mRecordFlag(int iCode, int iLevel) { m_vFlags.push_back({iCode, iLevel}); }
    void mRecordDisplay(unsigned int uId, int iLocation, int iSeverity)
    {
        m_vDisplays.push_back({uId, iLocation, iSeverity});
    }

private:
    std::vector<CmErrorFlagRecord> m_vFlags;
    std::vector<CmDisplayRecord> m_vDisplays;
    CmMessageCapture* m_pPrevious;
};
