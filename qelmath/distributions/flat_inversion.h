// The function objects by which the kernel-backed flat functions invert their
// distribution functions numerically (internal to the library).  Each holds
// its parameters and the probability sought in members of its own and leaves
// m_dTarget of the base at 0, so that the value test of the root finder is
// absolute.  Objects live on the stack of the flat function that builds them.
#pragma once

#include "qelmath/distributions/inversion.h"

// mChiSqCdf(x, df, noncentrality, false) less the probability sought.
class CmChiSqCdf : public CmInversionFunction
{
public:
    CmChiSqCdf(double dDF, double dNoncentrality, double dProb);
    ~CmChiSqCdf() override;
    double operator()(double dX) override;

private:
    double m_dDF;
    double m_dNoncentrality;
    double m_dProb;
};

// mGammaCdf(x, shape, 1, 0, false) less the probability sought.
class CmGammaCdf : public CmInversionFunction
{
public:
    CmGammaCdf(double dShape, double dProb);
    ~CmGammaCdf() override;
    double operator()(double dX) override;

private:
    double m_dShape;
    double m_dProb;
};

// mFCdf(x, numerator df, denominator df, noncentrality, false) less the
// probability sought.
class CmFCdf : public CmInversionFunction
{
public:
    CmFCdf(double dDFNum, double dDFDenom, double dNoncentrality, double dProb);
    ~CmFCdf() override;
    double operator()(double dX) override;

private:
    double m_dDFNum;
    double m_dDFDenom;
    double m_dNoncentrality;
    double m_dProb;
};

// mTCdf(x, df, noncentrality, false) less the probability sought.
class CmTCdf : public CmInversionFunction
{
public:
    CmTCdf(double dDF, double dNoncentrality, double dProb);
    ~CmTCdf() override;
    double operator()(double dX) override;

private:
    double m_dDF;
    double m_dNoncentrality;
    double m_dProb;
};
