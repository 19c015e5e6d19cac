// The overflow road shared by the guarded elementary functions.
#include "qelmath/specialfunctions/overflow.h"

#include "qel/qelexceptions.h"

#include <limits>

double mOverflowResult(bool bThrow)
{
    if (bThrow)
        throw CmFloatOverflow();
    return std::numeric_limits<double>::max();
}
