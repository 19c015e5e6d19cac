#include "support/failingnew.h"

#include <cstddef>
#include <new>

namespace qeltest
{
thread_local bool g_bFailEveryNothrowNew = false;
thread_local int g_iNothrowFailAt = 0;
} // namespace qeltest

void* operator new(std::size_t uSize, const std::nothrow_t&) noexcept
{
    if (qeltest::g_bFailEveryNothrowNew)
        return nullptr;
    if (qeltest::g_iNothrowFailAt > 0 && --qeltest::g_iNothrowFailAt == 0)
        return nullptr;
    try
    {
        return ::operator new(uSize);
    }
    catch (...)
    {
        return nullptr;
    }
}

void operator delete(void* p, const std::nothrow_t&) noexcept { ::operator delete(p); }
