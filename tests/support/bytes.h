// Byte images of stream fields, for tests that pin stream layouts.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

namespace qeltest
{

typedef std::vector<unsigned char> Bytes;

// The four bytes of a 32-bit integer as the processor holds them.
inline Bytes mInt32Bytes(std::int32_t i)
{
    Bytes v(4);
    std::memcpy(v.data(), &i, 4);
    return v;
}

// The eight bytes of a double as the processor holds them.
inline Bytes mDoubleBytes(double d)
{
    Bytes v(8);
    std::memcpy(v.data(), &d, 8);
    return v;
}

} // namespace qeltest
