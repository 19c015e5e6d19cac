// The quantile function of the standard Tukey lambda distribution as a
// function object for the root finder (internal to the library).
#pragma once

#include "qelmath/distributions/inversion.h"

// Q(u) - target, with Q(u) = (u^lambda - (1 - u)^lambda) / lambda computed by
// mRaiseToPower with exceptions on, and the target held in m_dTarget of the
// base, so that the value test is relative to the standardised point sought.
// At u = 0 or 1 and a negative lambda the power raises CmInvalidArgument,
// which the object lets through.
class CmLambdaTransform : public CmInversionFunction
{
public:
    explicit CmLambdaTransform(double dLambda);
    ~CmLambdaTransform() override;
    double operator()(double dU) override;

private:
    double m_dLambda;
};
