// CmDist::mCreateDist: the object of a distribution type, made from a
// parameter vector by the class's own vector constructor.
#include "qel/dist.h"

#include "qel/distclosedform.h"
#include "qel/distdiscrete.h"
#include "qel/distkernelbacked.h"
#include "qel/qelmessaging.h"

#include <new>

namespace
{
template <class Dist>
CmDist* mMake(const std::vector<double>& rvdParameters)
{
    return new (std::nothrow) Dist(rvdParameters);
}
} // namespace

CmDist* CmDist::mCreateDist(EDistributionType eType, const std::vector<double>& rvdParameters)
{
    // A type and its threshold twin share a class: only the length of the
    // vector tells whether a threshold was given.
    switch (eType)
    {
    case NORMAL_DIST:
        return mMake<CmDistNormal>(rvdParameters);
    case LNORMAL_DIST:
    case TLNORMAL_DIST:
        return mMake<CmDistLogNormal>(rvdParameters);
    case SEXTREMEVALUE_DIST:
        return mMake<CmDistSmallestExtremeValue>(rvdParameters);
    case LEXTREMEVALUE_DIST:
        return mMake<CmDistLargestExtremeValue>(rvdParameters);
    case WEIBULL_DIST:
    case TWEIBULL_DIST:
        return mMake<CmDistWeibull>(rvdParameters);
    case EXPONENTIAL_DIST:
    case TEXPONENTIAL_DIST:
        return mMake<CmDistExponential>(rvdParameters);
    case LOGISTIC_DIST:
        return mMake<CmDistLogistic>(rvdParameters);
    case LLOGISTIC_DIST:
    case TLLOGISTIC_DIST:
        return mMake<CmDistLogLogistic>(rvdParameters);
    case GAMMA_DIST:
    case TGAMMA_DIST:
        return mMake<CmDistGamma>(rvdParameters);
    case BETA_DIST:
        return mMake<CmDistBeta>(rvdParameters);
    case BERNOULLI_DIST:
        return mMake<CmDistBernoulli>(rvdParameters);
    case BINOMIAL_DIST:
        return mMake<CmDistBinomial>(rvdParameters);
    case CAUCHY_DIST:
        return mMake<CmDistCauchy>(rvdParameters);
    case CHISQUARE_DIST:
        return mMake<CmDistChiSq>(rvdParameters);
    case DISCRETE_DIST:
    case MNORMAL_DIST:
        // These need more than a vector of numbers.
        QEL_ASSERT_FALSE();
        return nullptr;
    case F_DIST:
        return mMake<CmDistF>(rvdParameters);
    case HYPERGEOMETRIC_DIST:
        return mMake<CmDistHypergeometric>(rvdParameters);
    case INTEGER_DIST:
        return mMake<CmDistIntegerUniform>(rvdParameters);
    case LAMBDA_DIST:
        return mMake<CmDistLambda>(rvdParameters);
    case LAPLACE_DIST:
        return mMake<CmDistLaplace>(rvdParameters);
    case POISSON_DIST:
        return mMake<CmDistPoisson>(rvdParameters);
    case T_DIST:
        return mMake<CmDistT>(rvdParameters);
    case UNIFORM_DIST:
        return mMake<CmDistUniform>(rvdParameters);
    case TRIANGULAR_DIST:
        return mMake<CmDistTriangular>(rvdParameters);
    default:
        // NOT_ENTERED; GEOMETRIC and NEGBINOMIAL, whose objects need the
        // counting mode that a vector cannot carry; the half normal, which
        // has no object; the studentized families; any other value.
        QEL_ASSERT_FALSE();
        return nullptr;
    }
}
