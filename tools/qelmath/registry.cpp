#include "registry.h"

#include <cstdio>
#include <vector>

namespace qeltool
{

namespace
{
std::vector<PFnRegister>& mPending()
{
    static std::vector<PFnRegister> pending;
    return pending;
}
} // namespace

Registrar::Registrar(PFnRegister pfn) { mPending().push_back(pfn); }

Registry& Registry::mInstance()
{
    static Registry registry = [] {
        Registry r;
        for (PFnRegister pfn : mPending())
            pfn(r);
        return r;
    }();
    return registry;
}

void Registry::mInsert(Entry e)
{
    std::string name = e.name;
    m_mEntries[name] = std::move(e);
}

const Entry* Registry::mFind(const std::string& rsName) const
{
    auto it = m_mEntries.find(rsName);
    return it == m_mEntries.end() ? nullptr : &it->second;
}

long long mLookUpEnumerator(const std::string& rsName)
{
    const auto& enums = Registry::mInstance().mEnumerators();
    auto it = enums.find(rsName);
    if (it == enums.end())
        throw ArgError{"unknown name '" + rsName + "'"};
    return it->second;
}

std::string mFormatDouble(double d)
{
    if (mIsNumericMissing(d))
        return "*";
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.17g", d);
    return buffer;
}

} // namespace qeltool
