// The hypergeometric p-value: exactly 1 at the mode, the one-sided tails, the
// assertion and the refused alternative, and the two-sided value against an
// enumeration of all outcomes ordered by probability, in long double, for
// samples up to 1000.
#include "qel/pvalues.h"

#include "qel/discrete.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "support/reftable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <sstream>

namespace
{
long double mLogChoose(int iN, int iK)
{
    return std::lgamma(static_cast<long double>(iN) + 1.0L) -
           std::lgamma(static_cast<long double>(iK) + 1.0L) -
           std::lgamma(static_cast<long double>(iN - iK) + 1.0L);
}

long double mPmf(int iX, int iNPop, int iK, int iN)
{
    return std::exp(mLogChoose(iK, iX) + mLogChoose(iNPop - iK, iN - iX) -
                    mLogChoose(iNPop, iN));
}

// The probability of every outcome no more probable than iX; *pbTie is set
// when another outcome's probability is so close to iX's that rounding
// decides whether it counts.
long double mEnumerate(int iX, int iNPop, int iK, int iN, bool* pbTie)
{
    const int iLo = std::max(0, iK + iN - iNPop);
    const int iHi = std::min(iK, iN);
    const long double ldPx = mPmf(iX, iNPop, iK, iN);
    long double ldSum = 0.0L;
    *pbTie = false;
    for (int k = iLo; k <= iHi; ++k)
    {
        const long double ldPk = mPmf(k, iNPop, iK, iN);
        const long double ldRel = std::fabs(ldPk - ldPx) / ldPx;
        if (k != iX && ldRel > 1e-13L && ldRel < 1e-8L)
        {
            *pbTie = true;
        }
        if (ldPk <= ldPx || ldRel <= 1e-13L)
        {
            ldSum += ldPk;
        }
    }
    return std::min(ldSum, 1.0L);
}
}  // namespace

TEST(HypergeometricPValue, AtTheModeIsExactlyOne)
{
    CmAssertCapture capture;
    // Population 20 with 8 successes, sample 5: the mode is 2.
    EXPECT_EQ(mHypergeometricPValue(2, 20, 8, 5, eTwoSided), 1.0);
    // Population 1000, 300 successes, sample 100: the mode is 30.
    EXPECT_EQ(mHypergeometricPValue(30, 1000, 300, 100, eTwoSided), 1.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(HypergeometricPValue, OneSidedValuesAreTheTails)
{
    EXPECT_EQ(mHypergeometricPValue(1, 20, 8, 5, eLowerTailed),
              mHypergeometricCdf(1.0, 20, 8, 5, false));
    EXPECT_EQ(mHypergeometricPValue(1, 20, 8, 5, eUpperTailed),
              mHypergeometricCdf(1.0, 20, 8, 5, true));
}

TEST(HypergeometricPValue, AssertionAndUnknownAlternative)
{
    CmAssertCapture capture;
    EXPECT_TRUE(mIsNumericMissing(mHypergeometricPValue(0, 0, 0, 0, eTwoSided)));
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "iNPop > 0");

    CmAssertCapture unknown;
    EXPECT_TRUE(mIsNumericMissing(mHypergeometricPValue(1, 20, 8, 5, static_cast<EAlternative>(5))));
    ASSERT_EQ(unknown.mGetCount(), 1);
    EXPECT_EQ(unknown.mGetTexts()[0], "false");
}

TEST(HypergeometricPValue, TwoSidedAgreesWithProbabilityOrderingEnumeration)
{
    qeltest::WorstError worst("mHypergeometricPValue two-sided against enumeration", "absolute");
    struct Case
    {
        int iNPop;
        int iK;
        int iN;
    };
    int iChecked = 0;
    int iTies = 0;
    for (const Case& c : {Case{10, 4, 3}, Case{20, 8, 5}, Case{20, 10, 10}, Case{50, 7, 30},
                          Case{200, 60, 45}, Case{1000, 300, 100}, Case{2000, 1000, 1000},
                          Case{1500, 20, 1000}})
    {
        const int iLo = std::max(0, c.iK + c.iN - c.iNPop);
        const int iHi = std::min(c.iK, c.iN);
        const int iStep = std::max(1, (iHi - iLo) / 60);
        for (int iX = iLo; iX <= iHi; iX += iStep)
        {
            bool bTie = false;
            const long double ldRef = mEnumerate(iX, c.iNPop, c.iK, c.iN, &bTie);
            if (bTie)
            {
                ++iTies;
                continue;
            }
            const double dGot = mHypergeometricPValue(iX, c.iNPop, c.iK, c.iN, eTwoSided);
            const double dRef = static_cast<double>(ldRef);
            std::ostringstream os;
            os << "NPop " << c.iNPop << " K " << c.iK << " N " << c.iN << " x " << iX << " got "
               << dGot << " ref " << dRef;
            // Outcomes within the machine epsilon of an improbable observed
            // one count as equally probable: an absolute allowance of a few
            // hundred epsilons.
            worst.mUpdate(std::fabs(dGot - dRef), 0.0, os.str());
            EXPECT_LE(std::fabs(dGot - dRef), 1e-9 * dRef + 1e-13) << os.str();
            ++iChecked;
        }
    }
    EXPECT_GT(iChecked, 200);
    std::cout << worst.mReport() << " (" << iTies << " near-ties left out)" << std::endl;
}
