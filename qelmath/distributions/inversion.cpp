// The numeric inversion objects of the flat functions and the search by
// doubling that brackets a root on the positive half-line before false
// position (mRootFinder) closes in on it.
#include "qelmath/distributions/inversion.h"

#include "qel/normal.h"
#include "qel/qelbt.h"
#include "qel/qelmsg.h"
#include "qel/rootsandoptima.h"

#include <cmath>

CmStandardNormalCdf::CmStandardNormalCdf(double dTarget)
{
    m_dTarget = dTarget;
    m_dAbsoluteToleranceForF = 0.0;
}

CmStandardNormalCdf::~CmStandardNormalCdf() = default;

double CmStandardNormalCdf::operator()(double dX)
{
    return mNormalCdf(dX, 0.0, 1.0, false) - m_dTarget;
}

double mInvertByDoubling(CmInversionFunction& rFunction, double dStart)
{
    if (!(dStart > 0.0) || !std::isfinite(dStart))
        return mGetMissingValueCode();
    rFunction.mSetAbsoluteToleranceForX(kInversionAbsoluteToleranceForX);
    double dLower = 0.0;
    double dUpper = dStart;
    while (rFunction(dUpper) < 0.0)
    {
        dLower = dUpper;
        dUpper += dUpper;
        // A value still below zero at the largest doubles has no root to
        // bracket; the root finder is not handed an infinite end.
        if (!std::isfinite(dUpper))
        {
            mSetErrorFlag(50021, 2);
            return mGetMissingValueCode();
        }
    }
    return mRootFinder(dLower, dUpper, rFunction);
}
