// P-value and critical value of the central F distribution: the tails from
// the F kernel through mFTails, the critical values from the F quantile.
// Like the chi-square, the F gives the true lower quantile for a
// lower-tailed test and has no two-sided critical value.
#include "qel/pvalues.h"

#include "qelmath/distributions/flat_tails.h"
#include "qelmath/distributions/pvalue_tails.h"

#include "qel/kernelbacked.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"

double mFPValue(double dX, double dDFNum, double dDFDenom, EAlternative eAlternative)
{
    if (mIsNumericMissing(dX))
    {
        return mGetMissingValueCode();
    }
    QEL_ASSERT(dX >= 0.0);
    QEL_ASSERT(dDFNum > 0.0);
    QEL_ASSERT(dDFDenom > 0.0);
    double dLower = 0.0;
    double dUpper = 0.0;
    const bool bOk = mFTails(dX, dDFNum, dDFDenom, 0.0, &dLower, &dUpper);
    return mPValueFromTails(bOk, dLower, dUpper, eAlternative);
}

double mFCritValue(double dProb, double dDFNum, double dDFDenom, EAlternative eAlternative)
{
    QEL_ASSERT(dDFNum > 0.0);
    QEL_ASSERT(dDFDenom > 0.0);
    switch (eAlternative)
    {
    case eLowerTailed:
        return mFInvCdf(dProb, dDFNum, dDFDenom, 0.0);
    case eUpperTailed:
        return mFInvCdf(1.0 - dProb, dDFNum, dDFDenom, 0.0);
    case eTwoSided:
    default:
        QEL_ASSERT_FALSE();
        return mGetMissingValueCode();
    }
}
