// Rules shared by the discrete distribution functions: when a double counts
// as a point of a distribution on whole numbers, which count a distribution
// function reads at a double, and how a kernel quantile's count and step
// fraction become the result.
#pragma once

#include <cmath>
#include <cstdint>

#include "qel/checkedcast.h"
#include "qel/fuzzy.h"

namespace qeldiscrete
{

// Density point test: true with the count in rdCount when dX is a whole
// number up to the fuzz; false when the density there is 0.
inline bool mIsPoint(double dX, double& rdCount)
{
    rdCount = mNearestInteger(dX);
    return mEqualWithinFuzz(dX, rdCount, 0.0);
}

// Distribution function point rule: the nearest whole number when dX is one
// up to the fuzz, otherwise the floor.
inline double mPointCount(double dX)
{
    const double dNear = mNearestInteger(dX);
    return mEqualWithinFuzz(dX, dNear, 0.0) ? dNear : std::floor(dX);
}

// A count for the kernels.  The conversion goes through a wider signed type so
// that the range check compares in a type holding both ranges.
inline std::uint32_t mKernelCount(int iCount)
{
    return mCheckedCast<std::uint32_t>(static_cast<long long>(iCount));
}

constexpr double kLowerStepFraction = 1e-9;
constexpr double kUpperStepFraction = 0.999999999;

// A probability that lies on a step of the distribution function up to
// rounding gets the lower count.  The count never moves below 0.
inline double mQuantileCount(std::uint32_t uK, double dFrac, bool bLowerQuantile)
{
    const bool bOnStep =
        bLowerQuantile ? (dFrac <= kLowerStepFraction) : (dFrac >= kUpperStepFraction);
    if (bOnStep && uK > 0)
        --uK;
    return static_cast<double>(uK);
}

}  // namespace qeldiscrete
