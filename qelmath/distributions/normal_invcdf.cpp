// The normal quantile.
//
// From 1e-100 to just below 1 the standard quantile comes from the normal
// kernel's inv_normal_df: the starting value of Beasley and Springer (Applied
// Statistics AS 111, 1977) refined by Newton's method on the incomplete gamma
// ratio of shape one half.  Below 1e-100, where the kernel refuses, the lower
// tail is inverted numerically: false position with the Illinois modification
// (mRootFinder) on mNormalCdf over [-36, 0], stopped when the distribution
// function agrees with the probability to the relative precision of doubles.
// Probabilities below the distribution function at -36 (about 4.18e-284),
// at 0 and at 1 have no finite answer and give the missing value.
#include "qel/normal.h"

#include "qelmath/distributions/inversion.h"
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/normal.h"

#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "qel/rootsandoptima.h"

namespace
{
// The left end of the numeric inversion; the distribution function there is
// the smallest probability with an answer.
constexpr double kLowestQuantile = -36.0;
} // namespace

double mNormalInvCdf(double dProb, double dMu, double dSigma)
{
    QEL_ASSERT(dSigma > 0.0);
    QEL_ASSERT(dProb >= 0.0);
    QEL_ASSERT(dProb <= 1.0);

    double dZ = 0.0;
    inv_normal_df(dProb, &dZ);
    if (kernel_take_failure())
    {
        // The kernel refuses below 1e-100 and at 1 (and outside [0, 1]); only
        // the far lower tail down to the distribution function at -36 is
        // inverted here.
        if (mNormalCdf(kLowestQuantile, 0.0, 1.0, false) > dProb || dProb > 0.5)
        {
            dZ = CmQELConst::mInstance()->mGetMissingValueCode();
        }
        else
        {
            CmStandardNormalCdf function(dProb);
            dZ = mRootFinder(kLowestQuantile, 0.0, function);
        }
    }

    if (mIsNumericMissing(dZ))
        return CmQELConst::mInstance()->mGetMissingValueCode();
    return dZ * dSigma + dMu;
}
