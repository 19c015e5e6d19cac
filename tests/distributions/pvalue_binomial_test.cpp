// The binomial p-value: the exact ends at the centre, the one-sided tails,
// the assertions and the refused alternative, the log-likelihood ratio and
// its function object, and the two-sided value against an enumeration of
// all counts ordered by their likelihood ratio, in long double, for n up to
// 1000.
#include "qel/pvalues.h"
#include "qelmath/distributions/lratio.h"

#include "qel/discrete.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "support/reftable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <sstream>
#include <vector>

namespace
{
long double mLogPmf(int iN, int iK, long double ldP)
{
    return std::lgamma(static_cast<long double>(iN) + 1.0L) -
           std::lgamma(static_cast<long double>(iK) + 1.0L) -
           std::lgamma(static_cast<long double>(iN - iK) + 1.0L) +
           static_cast<long double>(iK) * std::log(ldP) +
           static_cast<long double>(iN - iK) * std::log1p(-ldP);
}

long double mLogRatio(int iN, int iK, long double ldP)
{
    const long double ldN = iN;
    const long double ldK = iK;
    long double ldSum = 0.0L;
    if (iK > 0)
    {
        ldSum += ldK * std::log(ldK / (ldN * ldP));
    }
    if (iN - iK > 0)
    {
        ldSum += (ldN - ldK) * std::log((ldN - ldK) / (ldN * (1.0L - ldP)));
    }
    return ldSum;
}

// The probability of every count at least as far from the null, by the
// likelihood ratio, as iX.  *pbTie is set when a count other than iX has
// a ratio so close to iX's that rounding decides whether it counts.
long double mEnumerate(int iX, int iN, long double ldP, bool* pbTie)
{
    const long double ldTarget = mLogRatio(iN, iX, ldP);
    const long double ldTol = 1e-9L * (1.0L + std::fabs(ldTarget));
    long double ldSum = 0.0L;
    *pbTie = false;
    for (int k = 0; k <= iN; ++k)
    {
        const long double ldRatio = mLogRatio(iN, k, ldP);
        const bool bNear = std::fabs(ldRatio - ldTarget) <= ldTol;
        if (k != iX && bNear && ldP != 0.5L)
        {
            *pbTie = true;
        }
        if (ldRatio >= ldTarget || bNear)
        {
            ldSum += std::exp(mLogPmf(iN, k, ldP));
        }
    }
    return std::min(ldSum, 1.0L);
}
}  // namespace

TEST(BinomialPValue, CentreOfASymmetricNullIsExactlyOne)
{
    CmAssertCapture capture;
    EXPECT_EQ(mBinomialPValue(5.0, 10, 0.5, eTwoSided), 1.0);
    EXPECT_EQ(mBinomialPValue(3.0, 7, 0.5, eTwoSided), 1.0);
    EXPECT_EQ(mBinomialPValue(3.0, 10, 0.3, eTwoSided), 1.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(BinomialPValue, SymmetricNullDoublesTheSmallerTail)
{
    EXPECT_EQ(mBinomialPValue(2.0, 10, 0.5, eTwoSided), 2.0 * mBinomialCdf(2.0, 10.0, 0.5, false));
    EXPECT_EQ(mBinomialPValue(8.0, 10, 0.5, eTwoSided), 2.0 * mBinomialCdf(2.0, 10.0, 0.5, false));
}

TEST(BinomialPValue, OneSidedValuesAreTheTails)
{
    EXPECT_EQ(mBinomialPValue(4.0, 12, 0.3, eLowerTailed), mBinomialCdf(4.0, 12.0, 0.3, false));
    EXPECT_EQ(mBinomialPValue(4.0, 12, 0.3, eUpperTailed), mBinomialCdf(4.0, 12.0, 0.3, true));
}

TEST(BinomialPValue, AssertionsAndUnknownAlternative)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mBinomialPValue(1.0, 0, 0.3, eTwoSided)));
    EXPECT_TRUE(capture.mHas("iN > 0"));
    EXPECT_TRUE(mIsNumericMissing(mBinomialPValue(1.0, 5, 0.0, eTwoSided)));
    EXPECT_TRUE(capture.mHas("dP > 0.0"));
    EXPECT_TRUE(mIsNumericMissing(mBinomialPValue(1.0, 5, 1.0, eTwoSided)));
    EXPECT_TRUE(capture.mHas("dP < 1.0"));

    CmAssertCapture unknown;
    EXPECT_TRUE(mIsNumericMissing(mBinomialPValue(1.0, 5, 0.3, static_cast<EAlternative>(2))));
    ASSERT_EQ(unknown.mGetCount(), 1);
    EXPECT_EQ(unknown.mGetTexts()[0], "false");
}

TEST(BinomialPValue, ImpossibleCountHasTwoSidedValueZero)
{
    EXPECT_EQ(mBinomialPValue(-1.0, 10, 0.3, eTwoSided), 0.0);
    EXPECT_EQ(mBinomialPValue(11.0, 10, 0.3, eTwoSided), 0.0);
    EXPECT_EQ(mBinomialPValue(-3.0, 10, 0.5, eTwoSided), 0.0);
}

TEST(BinomialLogRatio, LeavesOutEmptyTermsAndObjectTruncates)
{
    EXPECT_EQ(mBinomialLogRatio(10, 3, 0.3), 0.0);
    EXPECT_NEAR(mBinomialLogRatio(10, 0, 0.3), 10.0 * std::log(1.0 / 0.7), 1e-14);
    EXPECT_NEAR(mBinomialLogRatio(10, 10, 0.3), 10.0 * std::log(1.0 / 0.3), 1e-13);
    CmLRatio ratio(10, 0.3, 1.0);
    EXPECT_TRUE(ratio.mGetIntegerX());
    EXPECT_EQ(ratio(7.9), mBinomialLogRatio(10, 7, 0.3) - 1.0);
}

TEST(BinomialPValue, TwoSidedAgreesWithLikelihoodRatioEnumeration)
{
    qeltest::WorstError worst("mBinomialPValue two-sided against enumeration");
    int iChecked = 0;
    int iTies = 0;
    for (int iN : {1, 2, 5, 10, 37, 100, 250, 1000})
    {
        for (double dP : {0.5, 0.01, 0.1, 0.3, 0.77, 0.95})
        {
            const int iStep = iN <= 100 ? 1 : iN / 50;
            for (int iX = 0; iX <= iN; iX += iStep)
            {
                bool bTie = false;
                const long double ldRef = mEnumerate(iX, iN, dP, &bTie);
                if (bTie)
                {
                    ++iTies;
                    continue;
                }
                const double dGot = mBinomialPValue(iX, iN, dP, eTwoSided);
                const double dRef = static_cast<double>(ldRef);
                std::ostringstream os;
                os << "n " << iN << " p " << dP << " x " << iX << " got " << dGot << " ref "
                   << dRef;
                const double dErr = std::fabs(dGot - dRef) / std::max(dRef, 1e-280);
                worst.mUpdate(dErr, 0.0, os.str());
                EXPECT_LT(dErr, 1e-8) << os.str();
                ++iChecked;
            }
        }
    }
    EXPECT_GT(iChecked, 1500);
    std::cout << worst.mReport() << " (" << iTies << " near-ties left out)" << std::endl;
}
