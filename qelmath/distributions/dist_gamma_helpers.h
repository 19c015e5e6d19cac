// Internal to CmDistGamma: the three generators of standard (scale 1) gamma
// variates between which the gamma object chooses by its shape.  Each is a
// CmDist for the sake of the shared helper pointer only: it has no type
// value, and its one valid operation is mGetRandom.  Density, distribution
// function and quantile report "false" through mAssert and give 0; the
// parameters are not offered (the base reports it).
//
// Every generator runs rounds of a rejection loop.  The logarithms, powers
// and exponentials of a round are taken with their throwing flag set, so that
// an overflow (CmFloatOverflow) abandons the round and the next round starts
// afresh; every other exception passes to the caller.
#pragma once

#include "qel/dist.h"
#include "qel/distclosedform.h"

// What the three generators lack in common: density, distribution function
// and quantile, each reported through mAssert ("false") and giving 0.
class CmDistGammaGenerator : public CmDist
{
public:
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
};

// Shape below 1: Ahrens and Dieter's algorithm GS (Computing 12, 1974), a
// mixture of a power-law piece on [0, 1] and an exponential piece beyond.
class CmDistGammaA : public CmDistGammaGenerator
{
public:
    explicit CmDistGammaA(double dShape);

    double mGetRandom() const override;

private:
    double m_dShape;
    // (shape + e) / e: the total mass of the envelope in units of its
    // power-law piece.
    double m_dB;
};

// Shape from 1 to 4: a two-piece envelope, constant on [0, alpha] and an
// exponential with rate lambda beyond (alpha = shape - 1), accepted against a
// standard exponential variate, with a quick rejection for the constant piece.
class CmDistGammaB : public CmDistGammaGenerator
{
public:
    explicit CmDistGammaB(double dShape);

    double mGetRandom() const override;

private:
    double m_dShape;
    double m_dLog2;
    double m_dAlpha;
    double m_dLambda;
    double m_dOneMinusLambda;
    double m_dPower;
    double m_dArea;
    double m_dInvArea;
    double m_dCut;
};

// Shape 4 and above: a normal body around the mode, truncated to [0, tail],
// and an exponential tail beyond, chosen with a fixed probability.
class CmDistGammaC : public CmDistGammaGenerator
{
public:
    explicit CmDistGammaC(double dShape);

    double mGetRandom() const override;

private:
    // One round: true and the variate in rdX when accepted.
    bool mRound(double& rdX) const;

    double m_dShape;
    double m_dAlpha;
    double m_dSqrtShape;
    double m_dQ;
    double m_dSqrtQ;
    double m_dRatio;
    double m_dW;
    double m_dTail;
    double m_dTailProbability;
    double m_dTailConstant;
    // Held by value: its spare variate carries from one round (and one call)
    // to the next.
    CmDistNormal m_distNormal;
};
