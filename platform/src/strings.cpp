// CmString and the English text table.
#include "qel/qelstrings.h"

#include <cwchar>
#include <ostream>

namespace
{
// UTF-8 encoding of a wide text (UTF-32 on the systems the package runs on).
std::string mToUtf8(const wchar_t* pwsz, std::size_t uLength)
{
    std::string s;
    s.reserve(uLength);
    for (std::size_t i = 0; i < uLength; ++i)
    {
        unsigned long c = static_cast<unsigned long>(pwsz[i]);
        if (c < 0x80)
            s += static_cast<char>(c);
        else if (c < 0x800)
        {
            s += static_cast<char>(0xC0 | (c >> 6));
            s += static_cast<char>(0x80 | (c & 0x3F));
        }
        else if (c < 0x10000)
        {
            s += static_cast<char>(0xE0 | (c >> 12));
            s += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            s += static_cast<char>(0x80 | (c & 0x3F));
        }
        else
        {
            s += static_cast<char>(0xF0 | (c >> 18));
            s += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            s += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            s += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return s;
}

struct StringTableEntry
{
    unsigned int uId;
    const char* pszText;
};

const StringTableEntry kStringTable[] = {
    {985, "A column of the model is a linear combination of earlier columns; "
          "the coefficients cannot be estimated."},
    {50021, "The search for a root or a bracket failed; the result is missing."},
    {50026, "Location"},
    {50027, "Scale"},
    {50028, "Shape"},
    {50029, "Threshold"},
    {50030, "Mean"},
    {50031, "Standard deviation"},
    {50032, "Log-location"},
    {50033, "Threshold (log scale)"},
    {50034, "StDev"},
    {50157, "Half-normal"},
    {50158, "2-parameter half-normal"},
    {50192, "Exponential"},
    {50193, "Gamma"},
    {50194, "Logistic"},
    {50195, "Loglogistic"},
    {50196, "Lognormal"},
    {50197, "Normal"},
    {50198, "Smallest extreme value"},
    {50199, "Weibull"},
    {50200, "3-parameter lognormal"},
    {50201, "2-parameter exponential"},
    {50202, "3-parameter Weibull"},
    {50203, "3-parameter gamma"},
    {50204, "3-parameter loglogistic"},
    {50205, "Largest extreme value"},
};
} // namespace

CmString::CmString() = default;
CmString::CmString(const char* pszText) : m_sText(pszText ? pszText : "") {}
CmString::CmString(const wchar_t* pwszText)
    : m_sText(pwszText ? mToUtf8(pwszText, std::wcslen(pwszText)) : std::string())
{
}
CmString::CmString(const std::string& rsText) : m_sText(rsText) {}
CmString::CmString(const std::wstring& rwsText) : m_sText(mToUtf8(rwsText.data(), rwsText.size()))
{
}

const char* mLookUpStringTable(unsigned int uId)
{
    for (const StringTableEntry& e : kStringTable)
        if (e.uId == uId)
            return e.pszText;
    return nullptr;
}

bool CmString::mLoadString(unsigned int uId)
{
    const char* psz = mLookUpStringTable(uId);
    if (!psz)
        return false;
    m_sText = psz;
    return true;
}

std::ostream& operator<<(std::ostream& os, const CmString& rcs) { return os << rcs.mGetString(); }
