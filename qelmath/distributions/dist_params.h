// Internal to the distribution objects: reading parameters from the vector
// a constructor is given.
#pragma once

#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace qel_dist
{

// Entry i, or dDefault when the vector is too short.
inline double mParam(const std::vector<double>& rvd, std::size_t i, double dDefault)
{
    return i < rvd.size() ? rvd[i] : dDefault;
}

// Entry i, which has no default: a missing one reads as NaN, which fails
// every validity test of the form "greater than".
inline double mRequiredParam(const std::vector<double>& rvd, std::size_t i)
{
    return mParam(rvd, i, std::numeric_limits<double>::quiet_NaN());
}

// A double truncated to int.  A value beyond the range of int saturates and
// NaN reads as the smallest int, so the conversion is never undefined.
inline int mTruncateToInt(double d)
{
    if (std::isnan(d) || d <= static_cast<double>(std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    if (d >= static_cast<double>(std::numeric_limits<int>::max()))
        return std::numeric_limits<int>::max();
    return static_cast<int>(d);
}

// Integer entry i, truncated; iMissing when the vector is too short.
inline int mIntParam(const std::vector<double>& rvd, std::size_t i, int iMissing)
{
    return i < rvd.size() ? mTruncateToInt(rvd[i]) : iMissing;
}

} // namespace qel_dist
