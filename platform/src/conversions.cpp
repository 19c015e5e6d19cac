// Conversions of whole values to the package's integer types.  Callers round
// or floor first and keep the value in range; a value out of range saturates
// rather than being undefined.
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"

#include <cmath>
#include <limits>

INTG mToINTG(double dX)
{
    if (!(dX >= static_cast<double>(std::numeric_limits<INTG>::min())))
        return std::numeric_limits<INTG>::min();
    if (dX > static_cast<double>(std::numeric_limits<INTG>::max()))
        return std::numeric_limits<INTG>::max();
    return static_cast<INTG>(dX);
}

INTG mToINTG(unsigned int uX)
{
    if (uX > static_cast<unsigned int>(std::numeric_limits<INTG>::max()))
        return std::numeric_limits<INTG>::max();
    return static_cast<INTG>(uX);
}

unsigned int mToUINTG(double dX)
{
    if (!(dX >= 0.0))
        return 0u;
    if (dX > static_cast<double>(std::numeric_limits<unsigned int>::max()))
        return std::numeric_limits<unsigned int>::max();
    return static_cast<unsigned int>(dX);
}

EAlternative mAlternativeFromConfidence(EConfidenceType eType)
{
    switch (eType)
    {
    case eLowerBoundOnly:
        return eLowerTailed;
    case eBothBounds:
        return eTwoSided;
    case eUpperBoundOnly:
        return eUpperTailed;
    default:
        QEL_ASSERT_FALSE();
        return eTwoSided;
    }
}
