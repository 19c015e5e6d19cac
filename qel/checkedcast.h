// A conversion between arithmetic types that reports a value outside the range
// of the target through mAssert and then converts it all the same, by
// truncation toward zero.  The discrete distribution functions use it to turn
// a double count into an INTG.
#pragma once

#include "qel/qelmessaging.h"

#include <cmath>
#include <limits>
#include <type_traits>

namespace qel_detail
{
// Whether a value lies at or below (bUpper) or at or above the end of the
// range of Tout, compared exactly: two integer types by their signs and their
// unsigned magnitudes, anything else in long double, which holds every 32-bit
// integer and every double exactly.
template <class Tout, class Tin>
bool mWithinLimit(Tin in, bool bUpper)
{
    using std::numeric_limits;
    if constexpr (std::is_integral<Tin>::value && std::is_integral<Tout>::value)
    {
        using UIn = std::make_unsigned_t<Tin>;
        using UOut = std::make_unsigned_t<Tout>;
        if (bUpper)
        {
            if (in < Tin(0))
                return true;
            return static_cast<unsigned long long>(static_cast<UIn>(in)) <=
                   static_cast<unsigned long long>(static_cast<UOut>(numeric_limits<Tout>::max()));
        }
        if (!(in < Tin(0)))
            return true;
        if (!std::is_signed<Tout>::value)
            return false;
        return static_cast<long long>(in) >= static_cast<long long>(numeric_limits<Tout>::lowest());
    }
    else
    {
        const long double dIn = static_cast<long double>(in);
        return bUpper ? dIn <= static_cast<long double>(numeric_limits<Tout>::max())
                      : dIn >= static_cast<long double>(numeric_limits<Tout>::lowest());
    }
}
} // namespace qel_detail

template <class Tout, class Tin>
Tout mCheckedCast(Tin in)
{
    using std::numeric_limits;
    const bool bBelowMax = qel_detail::mWithinLimit<Tout>(in, true);
    const bool bAboveMin = qel_detail::mWithinLimit<Tout>(in, false);
    QEL_ASSERT_TEXT(bBelowMax, "_in <= numeric_limits<_Tout>::max()");
    QEL_ASSERT_TEXT(bAboveMin, "_in >= numeric_limits<_Tout>::min()");
    if constexpr (std::is_floating_point<Tin>::value && std::is_integral<Tout>::value)
    {
        // A reported out-of-range value still converts, saturated, so that the
        // conversion itself is never undefined.
        if (std::isnan(in))
            return Tout(0);
        if (!bAboveMin)
            return numeric_limits<Tout>::lowest();
        if (!bBelowMax || in >= static_cast<Tin>(numeric_limits<Tout>::max()))
            return numeric_limits<Tout>::max();
    }
    return static_cast<Tout>(in);
}
