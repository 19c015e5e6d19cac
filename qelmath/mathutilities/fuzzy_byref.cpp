// By-reference twins of the fuzzy comparison and rounding functions, for
// callers that pass every argument by address.  Undecorated C entry points;
// each forwards to its by-value function or to the library's floor and ceil.
#include "qel/fuzzy.h"

#include <cmath>

extern "C" {

double GET_NEAREST_INTEGER(double* pdX) { return mNearestInteger(*pdX); }

double GET_FLOOR(double* pdX) { return std::floor(*pdX); }

double GET_CEILING(double* pdX) { return std::ceil(*pdX); }

int LEQUAL(double* pdA, double* pdB, double* pdRelative, double* pdAbsolute)
{
    return mApproxEqual(*pdA, *pdB, *pdRelative, *pdAbsolute) ? 1 : 0;
}

int L_COMPARE_WITH_FUZZ(double* pdX, double* pdY, double* pdFuzz)
{
    return mCompareWithFuzz(*pdX, *pdY, *pdFuzz);
}

int L_EQUAL_WITHIN_FUZZ(double* pdX, double* pdY, double* pdFuzz)
{
    return mEqualWithinFuzz(*pdX, *pdY, *pdFuzz) ? 1 : 0;
}

} // extern "C"
