// The inversion objects of the kernel-backed continuous families: their
// distribution functions with the parameters bound and the probability sought
// subtracted, for the root finder.
#include "qelmath/distributions/flat_inversion.h"

#include "qel/kernelbacked.h"
#include "qel/qelbt.h"

namespace
{
// A missing distribution function stays missing, so that the root finder sees
// a point it cannot evaluate rather than a number near the missing value.
double mLessTarget(double dValue, double dTarget)
{
    return mIsNumericMissing(dValue) ? dValue : dValue - dTarget;
}
} // namespace

CmChiSqCdf::CmChiSqCdf(double dDF, double dNoncentrality, double dProb)
    : m_dDF(dDF), m_dNoncentrality(dNoncentrality), m_dProb(dProb)
{
}

CmChiSqCdf::~CmChiSqCdf() = default;

double CmChiSqCdf::operator()(double dX)
{
    return mLessTarget(mChiSqCdf(dX, m_dDF, m_dNoncentrality, false), m_dProb);
}

CmGammaCdf::CmGammaCdf(double dShape, double dProb) : m_dShape(dShape), m_dProb(dProb) {}

CmGammaCdf::~CmGammaCdf() = default;

double CmGammaCdf::operator()(double dX)
{
    return mLessTarget(mGammaCdf(dX, m_dShape, 1.0, 0.0, false), m_dProb);
}

CmFCdf::CmFCdf(double dDFNum, double dDFDenom, double dNoncentrality, double dProb)
    : m_dDFNum(dDFNum), m_dDFDenom(dDFDenom), m_dNoncentrality(dNoncentrality), m_dProb(dProb)
{
}

CmFCdf::~CmFCdf() = default;

double CmFCdf::operator()(double dX)
{
    return mLessTarget(mFCdf(dX, m_dDFNum, m_dDFDenom, m_dNoncentrality, false), m_dProb);
}

CmTCdf::CmTCdf(double dDF, double dNoncentrality, double dProb)
    : m_dDF(dDF), m_dNoncentrality(dNoncentrality), m_dProb(dProb)
{
}

CmTCdf::~CmTCdf() = default;

double CmTCdf::operator()(double dX)
{
    return mLessTarget(mTCdf(dX, m_dDF, m_dNoncentrality, false), m_dProb);
}
