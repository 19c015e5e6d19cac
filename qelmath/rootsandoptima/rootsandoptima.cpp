// Roots and optima of a function of one real argument.
//
// mRootFinder is false position with the Illinois modification: after a step
// that keeps an end, the function value kept at the other end is halved, which
// restores superlinear convergence where plain regula falsi would creep from
// one side (Dowell and Jarratt, "A modified regula falsi method for computing
// the root of an equation", BIT 11 (1971) 168-174).  It has no iteration count
// of its own: the function object's tests end it.
//
// mGoldenSection is the golden-section search for the minimum of a unimodal
// function (Kiefer, "Sequential minimax search for a maximum", Proceedings of
// the AMS 4 (1953) 502-506): each step keeps one interior point and shrinks
// the interval by the golden ratio.
//
// mBracketFinder prepares an interval for mRootFinder: clipped to limits, ends
// at which the function is missing moved inward by bisection, then widened by
// doubling steps from the end nearer to zero until the sign changes.
//
// Whole-number mode (a discrete distribution function minus a target) ends
// with a walk over the whole numbers, so that the answer is the first whole
// number at which the function reaches the side of zero of the right end.
#include "qel/rootsandoptima.h"

#include "qel/elementary.h"
#include "qel/fuzzy.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "qel/qelmsg.h"

#include <algorithm>
#include <cmath>

namespace
{
// The host's code for a bracketing or root search that gave up.
void mFlagSearchFailure()
{
    mSetErrorFlag(50021, 2);
}

bool mOppositeSigns(double dA, double dB)
{
    return (dA < 0.0 && dB > 0.0) || (dA > 0.0 && dB < 0.0);
}
} // namespace

double mRootOfQuadratic(double dA, double dB, double dC)
{
    QEL_ASSERT(dA != 0.0);
    const double dDisc = dB * dB - 4.0 * dA * dC;
    if (!(dDisc >= 0.0))
        return mGetMissingValueCode();
    return (mSqrt(dDisc, true) - dB) / (dA + dA);
}

bool mCompareFunction(double dOld, double dNew, bool bValid, bool bMaximise)
{
    if (!bValid)
        return false;
    if (mIsNumericMissing(dOld))
        return true;
    if (bMaximise ? dOld < dNew : dOld > dNew)
        return true;
    // A tie within the fuzz counts as no worse.
    return mEqualWithinFuzz(dNew, dOld, 0.0);
}

double mRootFinder(double dXL, double dXR, CmRealFunction& rFunction)
{
    QEL_ASSERT(dXL < dXR);
    double dFL = rFunction(dXL);
    double dFR = rFunction(dXR);

    bool bFound = false;
    double dRoot = 0.0;
    if (!mIsNumericMissing(dFL) && !mIsNumericMissing(dFR))
    {
        if (mOppositeSigns(dFL, dFR))
        {
            for (;;)
            {
                const double dX = dXL - (dXR - dXL) * (dFL / (dFR - dFL));
                // Only an end at infinity (or a function that answers NaN)
                // gives a step that is not a number; the search cannot go on.
                if (std::isnan(dX))
                    break;
                const double dFX = rFunction(dX);
                if (rFunction.mIsConvergedForF(dFX) || rFunction.mIsConvergedForX(dXL, dXR))
                {
                    dRoot = dX;
                    bFound = true;
                    break;
                }
                if ((dFL > 0.0) == (dFX > 0.0))
                {
                    dXL = dX;
                    dFL = dFX;
                    dFR *= 0.5;
                }
                else
                {
                    dXR = dX;
                    dFR = dFX;
                    dFL *= 0.5;
                }
            }
        }
        else if (rFunction.mIsConvergedForF(dFL))
        {
            dRoot = dXL;
            bFound = true;
        }
        else if (rFunction.mIsConvergedForF(dFR))
        {
            dRoot = dXR;
            dXL = dXR;
            bFound = true;
        }
    }

    if (!bFound)
    {
        mFlagSearchFailure();
        return mGetMissingValueCode();
    }

    if (rFunction.mGetIntegerX())
    {
        // The halved end values decide only the sign of the first product.
        double dX = std::floor(dXL);
        double dV = dFR * dFL;
        while (dV < 0.0 && std::isfinite(dX))
        {
            dX += 1.0;
            dV = rFunction(dX) * dFR;
        }
        return dX;
    }
    return dRoot;
}

double mGoldenSection(double dXL, double dXR, CmRealFunction& rFunction, bool bIntegerX)
{
    const double dR = (std::sqrt(5.0) - 1.0) * 0.5;
    double dA = dXL;
    double dB = dXR;
    // The ends are evaluated once, as a function object may rely on being
    // asked there first; their values play no part.
    rFunction(dA);
    rFunction(dB);

    double dX2 = dR * (dB - dA) + dA;
    double dX1 = (dB - dA) * dR * dR + dA;
    // An interval that is not a pair of finite numbers has no interior points
    // to compare.
    if (!std::isfinite(dX1) || !std::isfinite(dX2))
        return mGetMissingValueCode();
    double dF1 = rFunction(dX1);
    double dF2 = rFunction(dX2);
    if (mIsNumericMissing(dF1) || mIsNumericMissing(dF2))
        return mGetMissingValueCode();

    while (!rFunction.mIsConvergedForX(dX2, dX1))
    {
        if (dF2 <= dF1)
        {
            dA = dX1;
            dX1 = dX2;
            dF1 = dF2;
            dX2 = (dB - dA) * dR + dA;
            dF2 = rFunction(dX2);
        }
        else
        {
            dB = dX2;
            dX2 = dX1;
            dF2 = dF1;
            dX1 = (dB - dA) * dR * dR + dA;
            dF1 = rFunction(dX1);
        }
    }

    if (bIntegerX)
    {
        double dV = std::floor(dX1);
        while (std::isfinite(dV) && rFunction(dV) > rFunction(dV + 1.0))
            dV += 1.0;
        return dV;
    }
    return (dX1 + dX2) * 0.5;
}

bool mBracketFinder(double* pdXL, double* pdXR, CmRealFunction& rFunction, double dXMin,
                    double dXMax)
{
    QEL_ASSERT(dXMin < dXMax);
    *pdXL = std::max(*pdXL, dXMin);
    *pdXR = std::min(*pdXR, dXMax);
    QEL_ASSERT(*pdXL < *pdXR);

    double dFL = rFunction(*pdXL);
    double dFR = rFunction(*pdXR);
    if (mIsNumericMissing(dFL) && mIsNumericMissing(dFR))
    {
        mFlagSearchFailure();
        return false;
    }

    // The end with a value pulls the other inward by bisection.  Bisection
    // that can no longer move the end (the ends adjacent doubles, or not
    // numbers) has found no point with a value: the search gives up.
    while (mIsNumericMissing(dFL))
    {
        const double dMid = (*pdXL + *pdXR) * 0.5;
        if (std::isnan(dMid) || dMid == *pdXL)
        {
            mFlagSearchFailure();
            return false;
        }
        *pdXL = dMid;
        dFL = rFunction(*pdXL);
    }
    while (mIsNumericMissing(dFR))
    {
        const double dMid = (*pdXL + *pdXR) * 0.5;
        if (std::isnan(dMid) || dMid == *pdXR)
        {
            mFlagSearchFailure();
            return false;
        }
        *pdXR = dMid;
        dFR = rFunction(*pdXR);
    }

    if (mOppositeSigns(dFL, dFR) || rFunction.mIsConvergedForF(dFL) ||
        rFunction.mIsConvergedForF(dFR))
        return true;

    // Widen from the end nearer to zero, the right one on a tie.
    double dStart;
    double dFStart;
    double dStep;
    if (std::fabs(dFL) < std::fabs(dFR))
    {
        dStart = *pdXL;
        dFStart = dFL;
        dStep = (*pdXL - *pdXR) * 0.5;
    }
    else
    {
        dStart = *pdXR;
        dFStart = dFR;
        dStep = (*pdXR - *pdXL) * 0.5;
    }

    bool bBracketed = false;
    double dX;
    for (;;)
    {
        dX = dStart + dStep;
        if (rFunction.mGetIntegerX())
            dX = dStep <= 0.0 ? std::floor(dX) : std::ceil(dX);

        bool bLastRound = false;
        if (dX <= dXMin)
        {
            dX = dXMin;
            bLastRound = true;
        }
        if (dX >= dXMax)
        {
            dX = dXMax;
            bLastRound = true;
        }
        // Without finite limits the doubling steps end at infinity.  A step
        // that is not a number (an end that is not one) finds nothing, like a
        // missing value.
        if (std::isinf(dX))
            bLastRound = true;
        if (std::isnan(dX))
            return false;

        const double dFX = rFunction(dX);
        if (mIsNumericMissing(dFX))
            return false;
        if (rFunction.mIsConvergedForF(dFX) || (dFStart > 0.0) != (dFX > 0.0))
        {
            bBracketed = true;
            break;
        }
        if (bLastRound)
            break;
        dStart = dX;
        dFStart = dFX;
        dStep += dStep;
    }

    *pdXL = std::min(dX, dStart);
    *pdXR = std::max(dX, dStart);
    return bBracketed;
}
