// The multivariate normal distribution object, which draws random vectors.
#pragma once

#include "qel/dist.h"
#include "qel/matrix.h"

#include <memory>
#include <vector>

// A multivariate normal with a mean vector and a covariance matrix, for
// variates only.  A variate is U'z + mean, where U'U is the Cholesky
// factorisation of the covariance and z a vector of standard normal
// variates drawn in order from an owned CmDistNormal(0, 1).
//
// Constructed with bCanGenerate false, the object keeps nothing.  A
// covariance that is not positive definite (or whose order differs from the
// length of the mean) is met quietly: the object cannot generate, and the
// vector form of mGetRandom leaves its argument alone.  A covariance with a
// NaN or an infinity among the entries its factor reads counts as not
// positive definite.  The scalar
// operations do not apply: mPdf, mCdf, mInvCdf and the scalar mGetRandom are
// reported through mAssert ("false") and give 0.
class QEL_API CmDistMVNormal : public CmDist
{
public:
    CmDistMVNormal(const std::vector<double>& rvdMean, const Smatrix<double>& rsmCovariance,
                   bool bCanGenerate);

    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    // Replaces the contents of rvdVariate by one variate vector, or leaves it
    // alone when the object cannot generate.
    virtual void mGetRandom(std::vector<double>& rvdVariate);

    bool mCanGenerate() const { return m_bCanGenerate; }

private:
    bool m_bCanGenerate;
    std::vector<double> m_vdMean;
    UTmatrix<double> m_utmFactor;
    std::shared_ptr<CmDist> m_pNormal;
};
