// P-value and critical value of the standard normal distribution, and the
// selection of a tail by the alternative that every continuous p-value
// shares.  The tails come from the normal kernel through mNormalTails; the
// critical value is the standard normal quantile (a start after Beasley and
// Springer, Applied Statistics AS 111, refined by Newton's method).
#include "qel/pvalues.h"

#include "qelmath/distributions/normal_tails.h"
#include "qelmath/distributions/pvalue_tails.h"

#include "qel/normal.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"

double mPValueFromTails(bool bTailsOk, double dLower, double dUpper, EAlternative eAlternative)
{
    switch (eAlternative)
    {
    case eLowerTailed:
        return bTailsOk ? dLower : mGetMissingValueCode();
    case eUpperTailed:
        return bTailsOk ? dUpper : mGetMissingValueCode();
    case eTwoSided:
        if (!bTailsOk)
        {
            return mGetMissingValueCode();
        }
        return 2.0 * (dUpper < dLower ? dUpper : dLower);
    default:
        QEL_ASSERT_FALSE();
        return mGetMissingValueCode();
    }
}

double mNormalPValue(double dX, EAlternative eAlternative)
{
    if (mIsNumericMissing(dX))
    {
        return mGetMissingValueCode();
    }
    double dLower = 0.0;
    double dUpper = 0.0;
    const bool bOk = mNormalTails(dX, 0.0, 1.0, &dLower, &dUpper);
    return mPValueFromTails(bOk, dLower, dUpper, eAlternative);
}

double mNormalCritValue(double dProb, EAlternative eAlternative)
{
    QEL_ASSERT(dProb > 0.0);
    QEL_ASSERT(dProb < 1.0);
    switch (eAlternative)
    {
    case eLowerTailed:
    case eUpperTailed:
        return mNormalInvCdf(1.0 - dProb, 0.0, 1.0);
    case eTwoSided:
        return mNormalInvCdf(1.0 - dProb / 2.0, 0.0, 1.0);
    default:
        QEL_ASSERT_FALSE();
        return mNormalInvCdf(dProb, 0.0, 1.0);
    }
}
