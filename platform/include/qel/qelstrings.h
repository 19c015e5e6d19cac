// Strings of the package: text held as UTF-8, built from narrow or wide text,
// and the English text table behind the resource ids the numerics use.
#pragma once

#include "qel/qelexport.h"

#include <iosfwd>
#include <string>

class QEL_API CmString
{
public:
    CmString();
    CmString(const char* pszText);
    CmString(const wchar_t* pwszText);
    CmString(const std::string& rsText);
    CmString(const std::wstring& rwsText);

    // Replaces the text by the one of resource id uId; false, and the text
    // unchanged, when the table has no such id.
    bool mLoadString(unsigned int uId);

    const std::string& mGetString() const { return m_sText; }
    const char* c_str() const { return m_sText.c_str(); }
    bool mIsEmpty() const { return m_sText.empty(); }

    bool operator==(const CmString& rcsOther) const { return m_sText == rcsOther.m_sText; }
    bool operator!=(const CmString& rcsOther) const { return m_sText != rcsOther.m_sText; }

private:
    std::string m_sText;
};

QEL_API std::ostream& operator<<(std::ostream& os, const CmString& rcs);

// The text of a resource id, or nullptr when the table has none.
QEL_API const char* mLookUpStringTable(unsigned int uId);
