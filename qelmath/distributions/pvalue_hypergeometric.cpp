// The hypergeometric p-value.  One-sided values are the hypergeometric
// tails; the two-sided value orders the outcomes by their probability (the
// rule of Fisher's exact test, Fisher, J. Roy. Statist. Soc. 85, 1922): from
// the mode, walk away on the far side of the observed count to the first
// outcome no more probable than it (equal within the machine epsilon
// counts), and add that outcome's tail to the tail of the observed count.
#include "qel/pvalues.h"

#include "qel/discrete.h"
#include "qel/fuzzy.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"

#include <algorithm>
#include <cmath>

namespace
{
double mMass(int iK0, int iNPop, int iK, int iN)
{
    return mHypergeometricPdf(static_cast<double>(iK0), iNPop, iK, iN);
}

double mHypergeometricTwoSided(int iX, int iNPop, int iK, int iN)
{
    const double dEps = mGetEps();
    const int iLo = std::max(0, static_cast<int>(std::max<long long>(
                                    0LL, static_cast<long long>(iK) + iN - iNPop)));
    const int iHi = std::min(iK, iN);
    const double dModeGuess = std::floor((static_cast<double>(iK) + 1.0) *
                                         (static_cast<double>(iN) + 1.0) /
                                         (static_cast<double>(iNPop) + 2.0));
    int iMode = static_cast<int>(dModeGuess);
    const double dAtMode = mMass(iMode, iNPop, iK, iN);
    if (mMass(iMode - 1, iNPop, iK, iN) > dAtMode)
    {
        iMode = iMode - 1;
    }
    else if (mMass(iMode + 1, iNPop, iK, iN) > dAtMode)
    {
        iMode = iMode + 1;
    }
    if (iX == iMode)
    {
        return 1.0;
    }
    const double dX = static_cast<double>(iX);
    const double dPx = mMass(iX, iNPop, iK, iN);
    double dA = 0.0;
    double dB = 0.0;
    if (iX < iMode)
    {
        dA = mHypergeometricCdf(dX, iNPop, iK, iN, false);
        for (int k = iMode; k <= iHi; ++k)
        {
            const double dMassK = mMass(k, iNPop, iK, iN);
            if (dPx > dMassK || mApproxEqual(dPx, dMassK, dEps, dEps))
            {
                dB = mHypergeometricCdf(static_cast<double>(k), iNPop, iK, iN, true);
                break;
            }
        }
    }
    else
    {
        dA = mHypergeometricCdf(dX, iNPop, iK, iN, true);
        for (int k = iMode; k >= iLo; --k)
        {
            const double dMassK = mMass(k, iNPop, iK, iN);
            if (dPx > dMassK || mApproxEqual(dPx, dMassK, dEps, dEps))
            {
                dB = mHypergeometricCdf(static_cast<double>(k), iNPop, iK, iN, false);
                break;
            }
        }
    }
    if (mIsNumericMissing(dA) || mIsNumericMissing(dB))
    {
        return mGetMissingValueCode();
    }
    return dA + dB;
}
}  // namespace

double mHypergeometricPValue(int iX, int iNPop, int iK, int iN, EAlternative eAlternative)
{
    const double dX = static_cast<double>(iX);
    switch (eAlternative)
    {
    case eLowerTailed:
        return mHypergeometricCdf(dX, iNPop, iK, iN, false);
    case eUpperTailed:
        return mHypergeometricCdf(dX, iNPop, iK, iN, true);
    case eTwoSided:
        QEL_ASSERT(iNPop > 0);
        if (iNPop <= 0 || iK < 0 || iN < 0 || iK > iNPop || iN > iNPop)
        {
            return mGetMissingValueCode();
        }
        return mHypergeometricTwoSided(iX, iNPop, iK, iN);
    default:
        QEL_ASSERT_FALSE();
        return mGetMissingValueCode();
    }
}
