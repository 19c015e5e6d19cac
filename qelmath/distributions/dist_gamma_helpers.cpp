// The operations that the generators of standard gamma variates do not
// offer: they exist for their variates only.
#include "dist_gamma_helpers.h"

#include "qel/qelmessaging.h"

double CmDistGammaGenerator::mPdf(double) const
{
    QEL_ASSERT_FALSE();
    return 0.0;
}

double CmDistGammaGenerator::mCdf(double, bool) const
{
    QEL_ASSERT_FALSE();
    return 0.0;
}

double CmDistGammaGenerator::mInvCdf(double) const
{
    QEL_ASSERT_FALSE();
    return 0.0;
}
