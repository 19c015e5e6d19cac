// The flat functions of the closed-form continuous families and of the Tukey
// lambda family.
#include "../registry.h"

#include "qel/closedform.h"

QEL_EVAL_FUNCTIONS(distributions_closedform)
{
    reg.mAdd("mCauchyPdf", &mCauchyPdf, "dX, dLocation, dScale");
    reg.mAdd("mCauchyCdf", &mCauchyCdf, "dX, dLocation, dScale, bUpper");
    reg.mAdd("mCauchyInvCdf", &mCauchyInvCdf, "dProb, dLocation, dScale");

    reg.mAdd("mExponentialPdf", &mExponentialPdf, "dX, dScale, dThreshold");
    reg.mAdd("mExponentialCdf", &mExponentialCdf, "dX, dScale, dThreshold, bUpper");
    reg.mAdd("mExponentialInvCdf", &mExponentialInvCdf, "dProb, dScale, dThreshold");

    reg.mAdd("mLargestExtremeValuePdf", &mLargestExtremeValuePdf, "dX, dLocation, dScale");
    reg.mAdd("mLargestExtremeValueCdf", &mLargestExtremeValueCdf,
             "dX, dLocation, dScale, bUpper");
    reg.mAdd("mLargestExtremeValueInvCdf", &mLargestExtremeValueInvCdf,
             "dProb, dLocation, dScale");

    reg.mAdd("mSmallestExtremeValuePdf", &mSmallestExtremeValuePdf, "dX, dLocation, dScale");
    reg.mAdd("mSmallestExtremeValueCdf", &mSmallestExtremeValueCdf,
             "dX, dLocation, dScale, bUpper");
    reg.mAdd("mSmallestExtremeValueInvCdf", &mSmallestExtremeValueInvCdf,
             "dProb, dLocation, dScale");

    reg.mAdd("mLaplacePdf", &mLaplacePdf, "dX, dLocation, dScale");
    reg.mAdd("mLaplaceCdf", &mLaplaceCdf, "dX, dLocation, dScale, bUpper");
    reg.mAdd("mLaplaceInvCdf", &mLaplaceInvCdf, "dProb, dLocation, dScale");

    reg.mAdd("mLogisticPdf", &mLogisticPdf, "dX, dLocation, dScale");
    reg.mAdd("mLogisticCdf", &mLogisticCdf, "dX, dLocation, dScale, bUpper");
    reg.mAdd("mLogisticInvCdf", &mLogisticInvCdf, "dProb, dLocation, dScale");

    reg.mAdd("mLogLogisticPdf", &mLogLogisticPdf, "dX, dLocation, dScale, dThreshold");
    reg.mAdd("mLogLogisticCdf", &mLogLogisticCdf, "dX, dLocation, dScale, dThreshold, bUpper");
    reg.mAdd("mLogLogisticInvCdf", &mLogLogisticInvCdf,
             "dProb, dLocation, dScale, dThreshold");

    reg.mAdd("mLogNormalPdf", &mLogNormalPdf, "dX, dMu, dSigma, dThreshold");
    reg.mAdd("mLogNormalCdf", &mLogNormalCdf, "dX, dMu, dSigma, dThreshold, bUpper");
    reg.mAdd("mLogNormalInvCdf", &mLogNormalInvCdf, "dProb, dMu, dSigma, dThreshold");

    reg.mAdd("mWeibullPdf", &mWeibullPdf, "dX, dShape, dScale, dThreshold");
    reg.mAdd("mWeibullCdf", &mWeibullCdf, "dX, dShape, dScale, dThreshold, bUpper");
    reg.mAdd("mWeibullInvCdf", &mWeibullInvCdf, "dProb, dShape, dScale, dThreshold");

    reg.mAdd("mUniformPdf", &mUniformPdf, "dX, dMin, dMax");
    reg.mAdd("mUniformCdf", &mUniformCdf, "dX, dMin, dMax, bUpper");
    reg.mAdd("mUniformInvCdf", &mUniformInvCdf, "dProb, dMin, dMax");

    reg.mAdd("mTriangularPdf", &mTriangularPdf, "dX, dMin, dMode, dMax");
    reg.mAdd("mTriangularCdf", &mTriangularCdf, "dX, dMin, dMode, dMax, bUpper");
    reg.mAdd("mTriangularInvCdf", &mTriangularInvCdf, "dProb, dMin, dMode, dMax");

    reg.mAdd("mHalfNormalPdf", &mHalfNormalPdf, "dX, dScale, dThreshold");
    reg.mAdd("mHalfNormalCdf", &mHalfNormalCdf, "dX, dScale, dThreshold, bUpper");
    reg.mAdd("mHalfNormalInvCdf", &mHalfNormalInvCdf, "dProb, dScale, dThreshold");

    reg.mAdd("mLambdaPdf", &mLambdaPdf, "dX, dLambda, dLocation, dScale");
    reg.mAdd("mLambdaCdf", &mLambdaCdf, "dX, dLambda, dLocation, dScale, bUpper");
    reg.mAdd("mLambdaInvCdf", &mLambdaInvCdf, "dProb, dLambda, dLocation, dScale");
}
