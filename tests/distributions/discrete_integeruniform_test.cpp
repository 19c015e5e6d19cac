// Integer uniform density, distribution function and quantile, with the
// reflection of the upper tail and brute-force sums.
#include <gtest/gtest.h>

#include <cmath>

#include "qel/discrete.h"
#include "qel/qelmessaging.h"

TEST(IntegerUniformCdf, UpperTailReflects)
{
    EXPECT_EQ(mIntegerUniformCdf(3, 1, 6, true), 4.0 / 6.0);
    EXPECT_EQ(mIntegerUniformCdf(3, 1, 6, false), 3.0 / 6.0);
    EXPECT_EQ(mIntegerUniformCdf(3.5, 1, 6, false), 3.0 / 6.0);
    EXPECT_EQ(mIntegerUniformCdf(0, 1, 6, false), 0.0);
    EXPECT_EQ(mIntegerUniformCdf(6, 1, 6, false), 1.0);
    EXPECT_EQ(mIntegerUniformCdf(0, 1, 6, true), 1.0);
    EXPECT_EQ(mIntegerUniformCdf(7, 1, 6, true), 0.0);
}

TEST(IntegerUniformPdf, PointTest)
{
    EXPECT_EQ(mIntegerUniformPdf(3, 1, 6), 1.0 / 6.0);
    EXPECT_EQ(mIntegerUniformPdf(3.5, 1, 6), 0.0);
    EXPECT_EQ(mIntegerUniformPdf(7, 1, 6), 0.0);
    EXPECT_EQ(mIntegerUniformPdf(0, 1, 6), 0.0);
}

TEST(IntegerUniform, IdentitiesAgainstSums)
{
    const int iMin = -3;
    const int iMax = 9;
    double dRunning = 0.0;
    for (int k = iMin; k <= iMax; ++k)
    {
        dRunning += mIntegerUniformPdf(k, iMin, iMax);
        EXPECT_NEAR(mIntegerUniformCdf(k, iMin, iMax, false), dRunning, 1e-15) << k;
        EXPECT_NEAR(mIntegerUniformCdf(k, iMin, iMax, false) + mIntegerUniformCdf(k, iMin, iMax, true),
                    1.0 + mIntegerUniformPdf(k, iMin, iMax), 1e-15)
            << k;
        EXPECT_EQ(mIntegerUniformInvCdf(mIntegerUniformCdf(k, iMin, iMax, false), iMin, iMax), k) << k;
    }
}

TEST(IntegerUniformInvCdf, EndsAndAssertions)
{
    CmAssertCapture capture;
    EXPECT_EQ(mIntegerUniformInvCdf(0, 1, 6), 1.0);
    EXPECT_EQ(mIntegerUniformInvCdf(1, 1, 6), 6.0);
    EXPECT_EQ(mIntegerUniformInvCdf(0.5, 1, 6), 3.0);
    EXPECT_EQ(mIntegerUniformInvCdf(0.51, 1, 6), 4.0);
    EXPECT_EQ(capture.mGetCount(), 0);
    mIntegerUniformInvCdf(2, 1, 6);
    EXPECT_TRUE(capture.mHas("dProb <= 1.0"));
    capture.mClear();
    mIntegerUniformInvCdf(-1, 1, 6);
    EXPECT_TRUE(capture.mHas("dProb >= 0.0"));
}
