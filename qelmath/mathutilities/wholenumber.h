// The conversion of a rounded count to int used by the counting routines and
// the subset enumerators.
#pragma once

#include <limits>

namespace qelcount
{

// Truncates toward zero without a range check of the caller's making.  A value
// outside the range of int (or a NaN) gives INT_MIN, the "integer indefinite"
// that the truncating conversion of x86 processors delivers, so that an
// overflowing count wraps to a negative number without notice and without
// undefined behaviour.
inline int mTruncateToInt(double dX)
{
    if (dX > -2147483649.0 && dX < 2147483648.0)
        return static_cast<int>(dX);
    return std::numeric_limits<int>::min();
}

} // namespace qelcount
