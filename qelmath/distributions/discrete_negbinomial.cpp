// Negative binomial distribution of the trial on which the r-th success falls
// (support r, r + 1, ...), and the geometric distribution as its case r = 1.
// The distribution function comes from the binomial by the duality
// P(T <= x) = P(at least r successes in x trials); the geometric case is in
// closed form.  The quantile of the geometric case inverts the closed form
// and steps down; otherwise it starts from the normal approximation with the
// Cornish-Fisher skewness term, widens the bracket upward and finishes with a
// whole-number root search.
#include <cmath>

#include "qel/discrete.h"
#include "qel/elementary.h"
#include "qel/fuzzy.h"
#include "qel/normal.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"
#include "qel/rootsandoptima.h"
#include "qelmath/distributions/discrete_rules.h"
#include "qelmath/distributions/inversion.h"

// The distribution function less a target, for the whole-number root search
// of the quantile.
class CmNegBinomialCdf : public CmInversionFunction
{
public:
    CmNegBinomialCdf(double dP, double dR, double dProb, bool bIntegerX);
    ~CmNegBinomialCdf() override;
    double operator()(double dX) override;

private:
    double m_dP;
    double m_dR;
    double m_dProb;
};

CmNegBinomialCdf::CmNegBinomialCdf(double dP, double dR, double dProb, bool bIntegerX)
    : m_dP(dP), m_dR(dR), m_dProb(dProb)
{
    m_bIntegerX = bIntegerX;
}

CmNegBinomialCdf::~CmNegBinomialCdf() = default;

double CmNegBinomialCdf::operator()(double dX)
{
    return mNegBinomialCdf(dX, m_dP, m_dR, false) - m_dProb;
}

double mNegBinomialPdf(double dX, double dP, double dR)
{
    QEL_ASSERT_TEXT((dP > 0) && (dP < 1), "( dP > 0 ) && ( dP < 1 )");
    double dCount = 0.0;
    if (!qeldiscrete::mIsPoint(dX, dCount))
        return 0.0;
    const INTG iX = mToINTG(dCount);
    if (iX < dR)
        return 0.0;
    try
    {
        if (mEqualWithinFuzz(dR, 1.0, 0.0))
            return dP * mRaiseToPower(1.0 - dP, static_cast<double>(iX) - 1.0, true);
    }
    catch (const CmFloatOverflow&)
    {
        // The base is below 1 and the exponent not negative: no overflow in
        // range; a bad dP lands here and carries no probability.
        return 0.0;
    }
    return dP * mBinomialPdf(dR - 1.0, iX - 1, dP);
}

double mNegBinomialCdf(double dX, double dP, double dR, bool bUpper)
{
    QEL_ASSERT_TEXT((dP > 0) && (dP < 1), "( dP > 0 ) && ( dP < 1 )");
    // dX is deliberately not rounded to a whole number here.
    if (bUpper && dX <= dR)
        return 1.0;
    if (!bUpper && dR > dX)
        return 0.0;
    if (mEqualWithinFuzz(dR, 1.0, 0.0))
    {
        try
        {
            if (bUpper)
                return mRaiseToPower(1.0 - dP, dX - 1.0, true);
            return 1.0 - mRaiseToPower(1.0 - dP, dX, true);
        }
        catch (const CmFloatOverflow&)
        {
            return mGetMissingValueCode();
        }
    }
    // P(T >= x) = P(fewer than r successes in x - 1 trials);
    // P(T <= x) = P(at least r successes in x trials).
    if (bUpper)
        return mBinomialCdf(dR - 1.0, dX - 1.0, dP, false);
    return mBinomialCdf(dR, dX, dP, true);
}

double mNegBinomialInvCdf(double dProb, double dP, double dR)
{
    QEL_ASSERT_TEXT((dProb >= 0.0) && (dProb <= 1.0), "( dProb >= 0.0 ) && ( dProb <= 1.0 )");
    QEL_ASSERT_TEXT((dP > 0) && (dP < 1), "( dP > 0 ) && ( dP < 1 )");
    // Outside [0, 1] (the missing value among them) the searches below would
    // not end.
    if (!(dProb >= 0.0 && dProb <= 1.0))
        return mGetMissingValueCode();
    if (std::pow(dP, dR) >= dProb)
        return dR;
    if (mEqualWithinFuzz(dProb, 1.0, 0.0) || mEqualWithinFuzz(dP, 0.0, 0.0))
        return mGetMissingValueCode();
    if (mEqualWithinFuzz(dR, 1.0, 0.0))
    {
        try
        {
            double dX = std::ceil(std::fabs(mLog(1.0 - dProb, true) / mLog(1.0 - dP, true)));
            while (mNegBinomialCdf(dX - 1.0, dP, dR, false) >= dProb)
                dX -= 1.0;
            return dX;
        }
        catch (const CmFloatException&)
        {
            return mGetMissingValueCode();
        }
    }
    const double dZ = mNormalInvCdf(dProb, 0.0, 1.0);
    double dX = std::ceil((std::sqrt((1.0 - dP) * dR) * dZ + dR + (dZ * dZ - 1.0) * (2.0 - dP) / 6.0) / dP +
                          0.5);
    double dLo = dR;
    while (mNegBinomialCdf(dX, dP, dR, false) < dProb)
    {
        // The step is at least one trial, so that a start at the left end of
        // the bracket still moves.
        const double dStep = std::fmax(1.0, 0.25 * std::fabs(dX - dLo));
        dLo = dX;
        dX += dStep;
    }
    CmNegBinomialCdf oFunction(dP, dR, dProb, true);
    return mRootFinder(dLo, dX, oFunction);
}
