// The log-likelihood ratio of a binomial count against its null probability,
// and the function object that lets the root finder find the first count on
// the far side of the mean whose ratio reaches a target.
#pragma once

#include "qelmath/distributions/inversion.h"

#include "qel/qelbt.h"

// k log(r / p) + (n - k) log((1 - r) / (1 - p)) with r = k / n, each term
// left out when its count is 0: the log of the likelihood ratio of the
// observed proportion against p for k successes in n trials.
double mBinomialLogRatio(int iN, int iK, double dP);

// mBinomialLogRatio at the count x truncated to an integer, minus the target.
class CmLRatio : public CmInversionFunction
{
public:
    CmLRatio(INTG iN, double dP, double dTarget);
    ~CmLRatio() override;
    double operator()(double dX) override;

private:
    INTG m_iN;
    double m_dP;
};
