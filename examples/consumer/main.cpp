// Prints the upper tail of the standard normal beyond 1.96 and the missing
// value's answer, through the installed headers and libraries.
#include "qel/qelmath.h"

#include <cstdio>

int main()
{
    const double dUpper = mNormalCdf(1.96, 0.0, 1.0, true);
    const double dMissing = mNormalCdf(mGetMissingValueCode(), 0.0, 1.0, false);
    std::printf("%.15g %s\n", dUpper, mIsNumericMissing(dMissing) ? "*" : "?");
    return dUpper > 0.0249 && dUpper < 0.0250 && mIsNumericMissing(dMissing) ? 0 : 1;
}
