// The beta distribution object.  Variates by the two rejection algorithms of
// R. C. H. Cheng, "Generating beta variates with nonintegral shape
// parameters", Communications of the ACM 21 (1978): BB when both shapes
// exceed 1, BC when the smaller is at most 1, with the constants of that
// paper.  Both draw a ratio w / (w + n) of two gamma-like quantities from a
// logistic envelope; each round takes exactly two uniforms.
//
// A round in which mLog or mExponential overflows (an exponential beyond
// exp(mGetMaxExponent()), or a logarithm of 0) is abandoned and a new round
// begins.  For ordinary shapes this never happens.  For a smaller shape near
// 0 almost every round overflows (the variate then lies within a rounding
// error of 0 or 1), so the rounds are limited: after kMaxRounds rounds
// without a variate, the draw ends with the value that w = +infinity gives,
// 1 when the larger shape is the first, 0 otherwise.
#include "qel/distkernelbacked.h"

#include "dist_params.h"
#include "qel/elementary.h"
#include "qel/fuzzy.h"
#include "qel/kernelbacked.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"

#include <algorithm>
#include <cmath>

namespace
{

// Far more rounds than an ordinary shape needs: with both shapes 0.05 or
// more a variate takes fewer than four rounds on average.  2 * kMaxRounds
// uniforms at most.
constexpr int kMaxRounds = 10000;

// What a draw found: w and the other quantity n of the ratio, or nothing.
struct ChengPair
{
    bool bAccepted;
    double dW;
    double dN;
};

// dNumerator / (w + n), dNumerator being w or n.  When the sum overflows
// (only for shapes near the largest double) all three are halved first.
double mRatio(double dNumerator, double dW, double dN)
{
    const double dSum = dW + dN;
    if (std::isinf(dSum) && std::isfinite(dW) && std::isfinite(dN))
        return (0.5 * dNumerator) / (0.5 * dW + 0.5 * dN);
    return dNumerator / dSum;
}

// Algorithm BB for the smaller shape dA > 1 and the larger dB.
ChengPair mDrawBB(CmUniformGenerator* pGenerator, double dA, double dB)
{
    const double dAlpha = dA + dB;
    const double dLog4 = mLog(4.0, true);
    const double dBeta = std::sqrt((dAlpha - 2.0) / (2.0 * dA * dB - dAlpha));
    const double dGamma = dA + 1.0 / dBeta;
    const double dK = mLog(5.0, true) + 1.0;
    const double dLogA = mLog(dA, true);
    for (int iRound = 0; iRound < kMaxRounds; ++iRound)
    {
        const double dU1 = pGenerator->mGetRandom();
        const double dU2 = pGenerator->mGetRandom();
        try
        {
            const double dV = dBeta * mLog(dU1 / (1.0 - dU1), true);
            const double dW = mExponential(dLogA + dV, true);
            const double dZ = dU1 * dU1 * dU2;
            const double dR = dGamma * dV - dLog4;
            const double dS = dR + dA - dW;
            if (5.0 * dZ <= dS + dK)
                return {true, dW, dB};
            const double dT = mLog(dZ, true);
            if (dT <= dS)
                return {true, dW, dB};
            if (!(mLog(dAlpha / (dW + dB), true) * dAlpha + dR < dT))
                return {true, dW, dB};
        }
        catch (const CmFloatOverflow&)
        {
            // The round is abandoned.
        }
    }
    return {false, 0.0, dB};
}

// Algorithm BC for the larger shape dA and the smaller dB <= 1.
ChengPair mDrawBC(CmUniformGenerator* pGenerator, double dA, double dB)
{
    const double dAlpha = dA + dB;
    const double dLog4 = mLog(4.0, true);
    const double dBeta = 1.0 / dB;
    const double dDelta = dA + 1.0 - dB;
    const double dK1 = (dB * 0.0416667 + 0.0138889) * dDelta / (dBeta * dA - 0.777778);
    const double dK2 = 0.25 + dB * (1.0 / dDelta * 0.25 + 0.5);
    const double dLogA = mLog(dA, true);
    for (int iRound = 0; iRound < kMaxRounds; ++iRound)
    {
        const double dU1 = pGenerator->mGetRandom();
        const double dU2 = pGenerator->mGetRandom();
        try
        {
            double dZ;
            if (dU1 < 0.5)
            {
                const double dY = dU1 * dU2;
                dZ = dU1 * dY;
                if (0.25 * dU2 + dZ - dY >= dK1)
                    continue;
            }
            else
            {
                dZ = dU1 * dU1 * dU2;
                if (dZ <= 0.25)
                {
                    const double dV = dBeta * mLog(dU1 / (1.0 - dU1), true);
                    return {true, mExponential(dLogA + dV, true), dB};
                }
                if (dZ >= dK2)
                    continue;
            }
            const double dV = dBeta * mLog(dU1 / (1.0 - dU1), true);
            const double dW = mExponential(dLogA + dV, true);
            if ((mLog(dAlpha / (dW + dB), true) + dV) * dAlpha - dLog4 >= mLog(dZ, true))
                return {true, dW, dB};
        }
        catch (const CmFloatOverflow&)
        {
            // The round is abandoned.
        }
    }
    return {false, 0.0, dB};
}

} // namespace

CmDistBeta::CmDistBeta(double dShape1, double dShape2) : m_dShape1(dShape1), m_dShape2(dShape2) {}

CmDistBeta::CmDistBeta(const std::vector<double>& rvdParameters)
    : CmDistBeta(qel_dist::mRequiredParam(rvdParameters, 0),
                 qel_dist::mRequiredParam(rvdParameters, 1))
{
}

bool CmDistBeta::mAreParamsValid() const
{
    return m_dShape1 > 0.0 && m_dShape2 > 0.0;
}

double CmDistBeta::mPdf(double dX) const
{
    return mBetaPdf(dX, m_dShape1, m_dShape2);
}

double CmDistBeta::mCdf(double dX, bool bComplement) const
{
    return mBetaCdf(dX, m_dShape1, m_dShape2, bComplement);
}

double CmDistBeta::mInvCdf(double dP) const
{
    return mBetaInvCdf(dP, m_dShape1, m_dShape2);
}

double CmDistBeta::mGetRandom() const
{
    // Without two positive shapes the algorithms have no meaning (a negative
    // shape would reach a logarithm of a negative number).
    QEL_ASSERT(mAreParamsValid());
    if (!mAreParamsValid())
        return mGetMissingValueCode();

    // An infinite shape leaves no randomness: all the mass is at 1 when only
    // the first shape is infinite, at 0 when only the second is; with both
    // the limit depends on how they grow, and the variate is missing.  No
    // uniform is drawn.  (The fuzzy comparison below cannot tell an infinite
    // shape from a finite one.)
    const bool bInf1 = std::isinf(m_dShape1);
    const bool bInf2 = std::isinf(m_dShape2);
    if (bInf1 || bInf2)
        return bInf1 && bInf2 ? mGetMissingValueCode() : (bInf1 ? 1.0 : 0.0);

    const double dSmall = std::min(m_dShape1, m_dShape2);
    const double dLarge = std::max(m_dShape1, m_dShape2);
    // The algorithm's first quantity: the smaller shape in BB, the larger in
    // BC.  With equal shapes it is the first shape, and w / (w + n) is taken.
    double dFirst;
    ChengPair pair;
    if (dSmall > 1.0)
    {
        dFirst = dSmall;
        pair = mDrawBB(m_pUniformGenerator, dSmall, dLarge);
    }
    else
    {
        dFirst = dLarge;
        pair = mDrawBC(m_pUniformGenerator, dLarge, dSmall);
    }
    const bool bFirstIsShape1 = mEqualWithinFuzz(dFirst, m_dShape1, 0.0);
    if (!pair.bAccepted)
        return bFirstIsShape1 ? 1.0 : 0.0;
    return mRatio(bFirstIsShape1 ? pair.dW : pair.dN, pair.dW, pair.dN);
}

void CmDistBeta::mGetDRefPoints(std::vector<double>& rvdPoints) const
{
    rvdPoints = {0.0, 1.0};
}

bool CmDistBeta::mHasLowerBound() const
{
    return true;
}

bool CmDistBeta::mHasUpperBound() const
{
    return true;
}

double CmDistBeta::mGetLowerBound() const
{
    return 0.0;
}

double CmDistBeta::mGetUpperBound() const
{
    return 1.0;
}

void CmDistBeta::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters = {m_dShape1, m_dShape2};
}
