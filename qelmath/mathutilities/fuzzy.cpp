// Fuzzy comparison: whether two computed numbers count as equal, and whether a
// computed number counts as a whole or an even number.
//
// Two numbers are equal when they differ by at most
//     base + mGetEps() * max(|x|, |y|),
// where base is 1e-30 for a zero fuzz (so that tiny quantities near 0 compare
// equal to 0) and mGetFuzzMax(fuzz) otherwise.  A nonzero fuzz therefore adds
// an absolute term; it does not widen the relative one.
#include "qel/fuzzy.h"

#include "qel/qelbt.h"

#include <algorithm>
#include <cmath>

double mGetFuzzMax(double dFuzz) { return mGetEps() * 0.01 * dFuzz; }

int mCompareWithFuzz(double dX, double dY, double dFuzz)
{
    const double dBase = (dFuzz == 0.0) ? 1e-30 : mGetFuzzMax(dFuzz);
    const double dTolerance = dBase + mGetEps() * std::max(std::fabs(dX), std::fabs(dY));
    if (std::fabs(dX - dY) <= dTolerance)
        return 0;
    return (dY > dX) ? -1 : 1;
}

bool mEqualWithinFuzz(double dX, double dY, double dFuzz)
{
    return mCompareWithFuzz(dX, dY, dFuzz) == 0;
}

// The relative term follows the first argument only, so the test is not
// symmetric in dX and dY; callers rely on that.
bool mApproxEqual(double dX, double dY, double dRelative, double dAbsolute)
{
    const double dDiff = std::fabs(dX - dY);
    return std::fabs(dX) * dRelative >= dDiff || dAbsolute >= dDiff;
}

bool mIsIntegerWithinFuzz(double dX, double dFuzz)
{
    return mEqualWithinFuzz(mNearestInteger(dX), dX, dFuzz);
}

bool mIsEven(double dX, double dFuzz)
{
    if (!mIsIntegerWithinFuzz(dX, dFuzz))
        return false;
    const double dN = mNearestInteger(dX);
    return std::floor(dN * 0.5) * 2.0 == dN;
}
