// The exception classes of the package.  Every exception carries its message
// and, when it was given, the source file and line at which it was raised;
// what() says all three.
#pragma once

#include "qel/qelexport.h"
#include "qel/qelstrings.h"

#include <exception>
#include <string>

class QEL_API CmException : public std::exception
{
public:
    CmException();
    CmException(const CmString& rcsMessage, const CmString& rcsFile, unsigned int uLine);
    ~CmException() override;

    // The message alone, the file and the line as given at the raise.
    const CmString& mGetMessage() const { return m_sMessage; }
    const CmString& mGetFile() const { return m_sFile; }
    unsigned int mGetLine() const { return m_uLine; }

    // The class name as a user reads it ("CmInvalidArgument").
    virtual const char* mGetClassName() const;

    // "<message> (<file>:<line>)", or the message alone without a file.
    const char* what() const noexcept override;

private:
    CmString m_sMessage;
    CmString m_sFile;
    unsigned int m_uLine = 0;
    std::string m_sWhat;
};

class QEL_API CmLogicError : public CmException
{
public:
    using CmException::CmException;
    const char* mGetClassName() const override;
};

class QEL_API CmRuntimeError : public CmException
{
public:
    using CmException::CmException;
    const char* mGetClassName() const override;
};

class QEL_API CmInvalidArgument : public CmLogicError
{
public:
    using CmLogicError::CmLogicError;
    const char* mGetClassName() const override;
};

class QEL_API CmRangeError : public CmRuntimeError
{
public:
    using CmRuntimeError::CmRuntimeError;
    const char* mGetClassName() const override;
};

class QEL_API CmFloatException : public CmRuntimeError
{
public:
    using CmRuntimeError::CmRuntimeError;
    const char* mGetClassName() const override;
};

class QEL_API CmFloatOverflow : public CmFloatException
{
public:
    using CmFloatException::CmFloatException;
    const char* mGetClassName() const override;
};
