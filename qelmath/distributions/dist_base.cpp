// The base of the distribution objects: the shared generator and the
// operations that a subclass overrides only when they apply to it.
#include "qel/dist.h"

#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"

CmDist::CmDist() : m_pUniformGenerator(CmUniformGenerator::mInstance()) {}

CmDist::~CmDist() = default;

bool CmDist::mAreParamsValid() const { return true; }

bool CmDist::mIsContinuous() const { return true; }

void CmDist::mGetSupport(double, double, std::vector<double>&) const { QEL_ASSERT_FALSE(); }

void CmDist::mGetDRefPoints(std::vector<double>& rvdPoints) const { rvdPoints.clear(); }

bool CmDist::mHasLowerBound() const { return false; }

bool CmDist::mHasUpperBound() const { return false; }

double CmDist::mGetLowerBound() const
{
    QEL_ASSERT_FALSE();
    return 0.0;
}

double CmDist::mGetUpperBound() const
{
    QEL_ASSERT_FALSE();
    return 0.0;
}

void CmDist::mGetParameters(std::vector<double>& rvdParameters) const
{
    QEL_ASSERT_FALSE();
    rvdParameters.clear();
}

void CmDist::mGetNonInvCDFParameters(std::vector<double>& rvdParameters) const
{
    mGetParameters(rvdParameters);
}

bool CmDist::mIncludeLowerBoundInGraph() const
{
    const double dQ1 = mInvCdf(0.01);
    const double dQ99 = mInvCdf(0.99);
    const double dLower = mGetLowerBound();
    // Written as the negation of "less than" so that a NaN gives true.
    return !(0.2 * (dQ99 - dQ1) < dQ1 - dLower);
}
