// A conversion between arithmetic types that reports a value outside the range
// of the target through mAssert and then converts it all the same, by
// truncation toward zero.  The discrete distribution functions use it to turn
// a double count into an INTG.
#pragma once

#include "qel/qelmessaging.h"

#include <cmath>
#include <limits>
#include <type_traits>

template <class Tout, class Tin>
Tout mCheckedCast(Tin in)
{
    using std::numeric_limits;
    QEL_ASSERT_TEXT(in <= static_cast<Tin>(numeric_limits<Tout>::max()),
                    "_in <= numeric_limits<_Tout>::max()");
    QEL_ASSERT_TEXT(in >= static_cast<Tin>(numeric_limits<Tout>::lowest()),
                    "_in >= numeric_limits<_Tout>::min()");
    if constexpr (std::is_floating_point<Tin>::value && std::is_integral<Tout>::value)
    {
        // A reported out-of-range value still converts, saturated, so that the
        // conversion itself is never undefined.
        if (!(in >= static_cast<Tin>(numeric_limits<Tout>::lowest())))
            return std::isnan(in) ? Tout(0) : numeric_limits<Tout>::lowest();
        if (in >= static_cast<Tin>(numeric_limits<Tout>::max()))
            return numeric_limits<Tout>::max();
    }
    return static_cast<Tout>(in);
}
