// P-value and critical values of Student's t distribution: the tails from
// the t kernel through mTTails, the critical values from the t quantile.  Multiple comparisons
// divide the size by the Bonferroni count, or take the per-comparison size
// 1 - (1 - p)^(1/k) of Sidak (J. Amer. Statist. Assoc. 62, 1967).
#include "qel/pvalues.h"

#include "qelmath/distributions/flat_tails.h"
#include "qelmath/distributions/pvalue_tails.h"

#include "qel/elementary.h"
#include "qel/kernelbacked.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"

namespace
{
// The critical value for a per-comparison size dSize: one-sided and
// two-sided magnitudes, or, for an unknown alternative, the report and the
// quantile of the raw probability.
double mTCritFromSize(double dSize, double dProb, double dDF, EAlternative eAlternative)
{
    switch (eAlternative)
    {
    case eLowerTailed:
    case eUpperTailed:
        return mTInvCdf(1.0 - dSize, dDF, 0.0);
    case eTwoSided:
        return mTInvCdf(1.0 - dSize / 2.0, dDF, 0.0);
    default:
        QEL_ASSERT_FALSE();
        return mTInvCdf(dProb, dDF, 0.0);
    }
}
}  // namespace

double mTPValue(double dX, double dDF, EAlternative eAlternative)
{
    if (mIsNumericMissing(dX))
    {
        return mGetMissingValueCode();
    }
    QEL_ASSERT(dDF > 0.0);
    double dLower = 0.0;
    double dUpper = 0.0;
    const bool bOk = mTTails(dX, dDF, 0.0, &dLower, &dUpper);
    return mPValueFromTails(bOk, dLower, dUpper, eAlternative);
}

double mTCritValue(double dProb, double dDF, EAlternative eAlternative, int iBonferroniCt)
{
    QEL_ASSERT(dDF > 0.0);
    QEL_ASSERT(iBonferroniCt >= 1);
    QEL_ASSERT(dProb > 0.0);
    QEL_ASSERT(dProb <= 1.0);
    const double dSize = dProb / static_cast<double>(iBonferroniCt);
    return mTCritFromSize(dSize, dProb, dDF, eAlternative);
}

double mTSidakCritValue(double dProb, double dDF, EAlternative eAlternative, int iComparisonCt)
{
    QEL_ASSERT(dDF > 0.0);
    QEL_ASSERT(iComparisonCt >= 1);
    QEL_ASSERT(dProb > 0.0);
    QEL_ASSERT(dProb < 1.0);
    const double dSize =
        1.0 - mRaiseToPower(1.0 - dProb, 1.0 / static_cast<double>(iComparisonCt), true);
    return mTCritFromSize(dSize, dProb, dDF, eAlternative);
}
