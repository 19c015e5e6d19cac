// The multivariate normal distribution object.  A variate is U'z + mean,
// with U the upper triangular Cholesky factor of the covariance (U'U = A)
// and z a vector of independent standard normal variates; the covariance of
// U'z is U'U = A.  The normals come in order from one owned CmDistNormal(0, 1),
// so the pairs of the polar method run across the entries and across
// successive vectors.
#include "qel/distmvnormal.h"

#include "qel/distclosedform.h"
#include "qel/qelmessaging.h"
#include "qelmath/matrixlibrary/cholesky_persistent.h"

#include <cmath>
#include <cstddef>
#include <new>
#include <stdexcept>

CmDistMVNormal::CmDistMVNormal(const std::vector<double>& rvdMean,
                               const Smatrix<double>& rsmCovariance, bool bCanGenerate)
    : m_bCanGenerate(bCanGenerate)
{
    if (!m_bCanGenerate)
        return;
    // A mean that does not fit the covariance cannot make a variate: met as
    // quietly as a covariance that is not positive definite.
    if (static_cast<long long>(rvdMean.size()) != static_cast<long long>(rsmCovariance.rowCount()))
    {
        m_bCanGenerate = false;
        return;
    }
    try
    {
        const Smatrix<double> smCovariance(rsmCovariance);
        m_utmFactor = qel_persistent::CholeskyDecomp(smCovariance);
    }
    catch (const std::domain_error&)
    {
        m_bCanGenerate = false;
        return;
    }
    // The factorisation refuses a pivot that is not positive, but a NaN
    // passes its test and an infinite pivot has a root: either would make
    // every variate NaN or infinite.  A NaN anywhere in the covariance reaches
    // the diagonal of the factor, so one look there is enough; such a
    // covariance is met as one that is not positive definite.
    for (int i = 0; i < m_utmFactor.rowCount(); ++i)
    {
        const double dPivot = m_utmFactor(i, i);
        if (!(std::isfinite(dPivot) && dPivot > 0.0))
        {
            m_bCanGenerate = false;
            m_utmFactor = UTmatrix<double>();
            return;
        }
    }
    m_vdMean = rvdMean;
    // Without its normals the object cannot generate.
    CmDistNormal* pNormal = new (std::nothrow) CmDistNormal(0.0, 1.0);
    if (pNormal == nullptr)
        m_bCanGenerate = false;
    else
        m_pNormal.reset(pNormal);
}

double CmDistMVNormal::mPdf(double) const
{
    QEL_ASSERT_FALSE();
    return 0.0;
}

double CmDistMVNormal::mCdf(double, bool) const
{
    QEL_ASSERT_FALSE();
    return 0.0;
}

double CmDistMVNormal::mInvCdf(double) const
{
    QEL_ASSERT_FALSE();
    return 0.0;
}

double CmDistMVNormal::mGetRandom() const
{
    QEL_ASSERT_FALSE();
    return 0.0;
}

void CmDistMVNormal::mGetRandom(std::vector<double>& rvdVariate)
{
    if (!m_bCanGenerate || !m_pNormal)
        return;
    const std::size_t n = m_vdMean.size();
    std::vector<double> vdZ(n);
    for (std::size_t i = 0; i < n; ++i)
        vdZ[i] = m_pNormal->mGetRandom();
    // Entry i of U'z is the sum over k <= i of U(k, i) z_k.
    std::vector<double> vdX(n);
    for (std::size_t i = 0; i < n; ++i)
    {
        double dSum = 0.0;
        for (std::size_t k = 0; k <= i; ++k)
            dSum += m_utmFactor(static_cast<int>(k), static_cast<int>(i)) * vdZ[k];
        vdX[i] = dSum + m_vdMean[i];
    }
    rvdVariate.swap(vdX);
}
