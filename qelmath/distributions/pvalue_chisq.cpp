// P-value and critical value of the central chi-square distribution: the
// tails from the chi-square kernel through mChiSqTails, the critical values
// from the chi-square quantile.  The distribution is not symmetric: the
// critical value of a lower-tailed test is the lower quantile, and there is
// no two-sided critical value.
#include "qel/pvalues.h"

#include "qelmath/distributions/flat_tails.h"
#include "qelmath/distributions/pvalue_tails.h"

#include "qel/kernelbacked.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"

double mChiSqPValue(double dX, double dDF, EAlternative eAlternative)
{
    if (mIsNumericMissing(dX))
    {
        return mGetMissingValueCode();
    }
    QEL_ASSERT(dX >= 0.0);
    QEL_ASSERT(dDF > 0.0);
    double dLower = 0.0;
    double dUpper = 0.0;
    const bool bOk = mChiSqTails(dX, dDF, 0.0, &dLower, &dUpper);
    return mPValueFromTails(bOk, dLower, dUpper, eAlternative);
}

double mChiSqCritValue(double dProb, double dDF, EAlternative eAlternative)
{
    QEL_ASSERT(dProb > 0.0);
    QEL_ASSERT(dProb < 1.0);
    switch (eAlternative)
    {
    case eLowerTailed:
        return mChiSqInvCdf(dProb, dDF, 0.0);
    case eUpperTailed:
        return mChiSqInvCdf(1.0 - dProb, dDF, 0.0);
    case eTwoSided:
    default:
        QEL_ASSERT_FALSE();
        return mGetMissingValueCode();
    }
}
