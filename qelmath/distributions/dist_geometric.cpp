// The geometric distribution object: the negative binomial with r = 1, whose
// mixing distribution is the exponential (the gamma of shape 1) with scale
// (1 - p) / p.
#include "qel/distdiscrete.h"

#include "dist_params.h"
#include "qel/distclosedform.h"

#include <new>

CmDistGeometric::CmDistGeometric(double dProbability, bool bCountFailures)
    : CmDistNegBinomial(dProbability, 1.0, bCountFailures, NoHelper())
{
    m_pMixing.reset(new (std::nothrow)
                        CmDistExponential((1.0 - m_dProbability) / m_dProbability, 0.0));
}

CmDistGeometric::CmDistGeometric(const std::vector<double>& rvdParameters, bool bCountFailures)
    : CmDistGeometric(qel_dist::mRequiredParam(rvdParameters, 0), bCountFailures)
{
}

void CmDistGeometric::mGetParameters(std::vector<double>& rvdParameters) const
{
    rvdParameters.assign(1, m_dProbability);
}
