#include "qel/qelexceptions.h"

CmException::CmException() : m_sWhat("exception") {}

CmException::CmException(const CmString& rcsMessage, const CmString& rcsFile, unsigned int uLine)
    : m_sMessage(rcsMessage), m_sFile(rcsFile), m_uLine(uLine)
{
    m_sWhat = m_sMessage.mGetString();
    if (!m_sFile.mIsEmpty())
        m_sWhat += " (" + m_sFile.mGetString() + ":" + std::to_string(m_uLine) + ")";
}

CmException::~CmException() = default;

const char* CmException::what() const noexcept { return m_sWhat.c_str(); }

const char* CmException::mGetClassName() const { return "CmException"; }
const char* CmLogicError::mGetClassName() const { return "CmLogicError"; }
const char* CmRuntimeError::mGetClassName() const { return "CmRuntimeError"; }
const char* CmInvalidArgument::mGetClassName() const { return "CmInvalidArgument"; }
const char* CmRangeError::mGetClassName() const { return "CmRangeError"; }
const char* CmFloatException::mGetClassName() const { return "CmFloatException"; }
const char* CmFloatOverflow::mGetClassName() const { return "CmFloatOverflow"; }
