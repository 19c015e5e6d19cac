// The Tukey lambda distribution (Joiner and Rosenblatt, JASA 66 (1971)
// 394-399), with location and scale.  Its standard quantile is
// Q(u) = (u^lambda - (1 - u)^lambda) / lambda, symmetric about 0, the
// logistic at lambda 0, uniform on [-1, 1] at lambda 1 and uniform on
// [-1/2, 1/2] at lambda 2.  There is no closed distribution function: the
// distribution function at z is the root u of Q(u) = z, found in [0, 1] by
// false position (mRootFinder), and the density is 1 / Q'(u) at that root,
// Q'(u) = u^(lambda-1) + (1 - u)^(lambda-1).  For lambda > 0 the support is
// the open interval (-1/lambda, 1/lambda); for lambda < 0 it is the whole
// line.
#include "qelmath/distributions/closedform_lambda.h"

#include "qel/closedform.h"

#include "qel/elementary.h"
#include "qel/fuzzy.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/rootsandoptima.h"

#include <cmath>

CmLambdaTransform::CmLambdaTransform(double dLambda) : m_dLambda(dLambda) {}

CmLambdaTransform::~CmLambdaTransform() = default;

double CmLambdaTransform::operator()(double dU)
{
    return (mRaiseToPower(dU, m_dLambda, true) - mRaiseToPower(1.0 - dU, m_dLambda, true)) /
               m_dLambda -
           m_dTarget;
}

namespace
{
// The u in [0, 1] at which the standard quantile equals dZ.
double mLambdaRoot(double dZ, double dLambda)
{
    CmLambdaTransform transform(dLambda);
    transform.mSetTarget(dZ);
    return mRootFinder(0.0, 1.0, transform);
}
} // namespace

double mLambdaPdf(double dX, double dLambda, double dLocation, double dScale)
{
    const double dMissing = CmQELConst::mInstance()->mGetMissingValueCode();
    const double dEps = CmQELConst::mInstance()->mGetEps();
    const double dZ = (dX - dLocation) / dScale;
    double dR = 0.0;
    try
    {
        if (std::fabs(dLambda) <= dEps)
            dR = mLogisticPdf(dZ, 0.0, 1.0);
        else if (dLambda > 0.0 && (dZ <= -1.0 / dLambda || dZ >= 1.0 / dLambda))
            dR = 0.0;
        else if (dLambda > 0.0 && mEqualWithinFuzz(dLambda, 1.0, 0.0))
            dR = 0.5;
        else if (dLambda > 0.0 && mEqualWithinFuzz(dLambda, 2.0, 0.0))
            dR = 1.0;
        else
        {
            const double dU = mLambdaRoot(dZ, dLambda);
            dR = 1.0 / (mRaiseToPower(dU, dLambda - 1.0, true) +
                        mRaiseToPower(1.0 - dU, dLambda - 1.0, true));
        }
    }
    catch (const CmFloatOverflow&)
    {
        return dMissing;
    }
    return (dR < dMissing) ? dR / dScale : dR;
}

double mLambdaCdf(double dX, double dLambda, double dLocation, double dScale, bool bUpper)
{
    const double dEps = CmQELConst::mInstance()->mGetEps();
    double dZ = (dX - dLocation) / dScale;
    // The distribution is symmetric: the upper tail at z is the lower at -z.
    if (bUpper)
        dZ = -dZ;
    if (std::fabs(dLambda) <= dEps)
        return mLogisticCdf(dZ, 0.0, 1.0, false);
    if (dLambda > 0.0)
    {
        if (dZ <= -1.0 / dLambda)
            return 0.0;
        if (dZ >= 1.0 / dLambda)
            return 1.0;
        if (mEqualWithinFuzz(dLambda, 1.0, 0.0))
            return (dZ + 1.0) * 0.5;
        if (mEqualWithinFuzz(dLambda, 2.0, 0.0))
            return dZ + 0.5;
    }
    try
    {
        return mLambdaRoot(dZ, dLambda);
    }
    catch (const CmFloatOverflow&)
    {
        return CmQELConst::mInstance()->mGetMissingValueCode();
    }
}

double mLambdaInvCdf(double dProb, double dLambda, double dLocation, double dScale)
{
    const double dMissing = CmQELConst::mInstance()->mGetMissingValueCode();
    const double dEps = CmQELConst::mInstance()->mGetEps();
    double dR = 0.0;
    if (std::fabs(dLambda) <= dEps)
        dR = mLogisticInvCdf(dProb, 0.0, 1.0);
    else if (dLambda > 0.0 && mEqualWithinFuzz(dLambda, 1.0, 0.0))
        dR = 2.0 * dProb - 1.0;
    else if (dLambda > 0.0 && mEqualWithinFuzz(dLambda, 2.0, 0.0))
        dR = dProb - 0.5;
    else
    {
        try
        {
            dR = (mRaiseToPower(dProb, dLambda, true) - mRaiseToPower(1.0 - dProb, dLambda, true)) /
                 dLambda;
        }
        catch (const CmFloatOverflow&)
        {
            return dMissing;
        }
    }
    return (dR < dMissing) ? dR * dScale + dLocation : dR;
}
