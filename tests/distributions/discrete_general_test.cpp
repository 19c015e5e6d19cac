// General discrete distribution on maps: exact lookups of the mass, both
// tails of the distribution function at, between and outside the keys, and
// the quantile including its constant beyond the last key.
#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "qel/discrete.h"

namespace
{

const std::map<double, double> kMass = {{2.0, 0.25}, {5.0, 0.5}, {7.5, 0.25}};
const std::map<double, double> kCumulative = {{2.0, 0.25}, {5.0, 0.75}, {7.5, 1.0}};
const std::map<double, double> kInverse = {{0.25, 2.0}, {0.75, 5.0}, {1.0, 7.5}};

}  // namespace

TEST(DiscretePdf, ExactMatchOnly)
{
    EXPECT_EQ(mDiscretePdf(5.0, kMass), 0.5);
    EXPECT_EQ(mDiscretePdf(5.0 + 1e-15, kMass), 0.0);
    EXPECT_EQ(mDiscretePdf(3.0, kMass), 0.0);
    EXPECT_EQ(mDiscretePdf(1.0, std::map<double, double>()), 0.0);
}

TEST(DiscreteCdf, BothTailsAtBetweenAndOutsideKeys)
{
    EXPECT_EQ(mDiscreteCdf(1.0, kCumulative, false), 0.0);
    EXPECT_EQ(mDiscreteCdf(1.0, kCumulative, true), 1.0);
    EXPECT_EQ(mDiscreteCdf(2.0, kCumulative, false), 0.25);
    EXPECT_EQ(mDiscreteCdf(2.0, kCumulative, true), 1.0);
    EXPECT_EQ(mDiscreteCdf(5.0, kCumulative, false), 0.75);
    EXPECT_EQ(mDiscreteCdf(5.0, kCumulative, true), 0.75);
    EXPECT_EQ(mDiscreteCdf(6.0, kCumulative, false), 0.75);
    EXPECT_EQ(mDiscreteCdf(6.0, kCumulative, true), 0.25);
    EXPECT_EQ(mDiscreteCdf(7.5, kCumulative, true), 0.25);
    EXPECT_EQ(mDiscreteCdf(8.0, kCumulative, false), 1.0);
    EXPECT_EQ(mDiscreteCdf(8.0, kCumulative, true), 0.0);
    EXPECT_EQ(mDiscreteCdf(1.0, std::map<double, double>(), false), 1.0);
    EXPECT_EQ(mDiscreteCdf(std::nan(""), kCumulative, false), 0.0);
}

TEST(DiscreteCdf, TailsAddUpToOnePlusTheMass)
{
    for (const auto& rEntry : kMass)
        EXPECT_EQ(mDiscreteCdf(rEntry.first, kCumulative, false) + mDiscreteCdf(rEntry.first, kCumulative, true),
                  1.0 + rEntry.second)
            << rEntry.first;
}

TEST(DiscreteInvCdf, StepsAndBeyondTheLastKey)
{
    EXPECT_EQ(mDiscreteInvCdf(0.1, kInverse), 2.0);
    EXPECT_EQ(mDiscreteInvCdf(0.25, kInverse), 2.0);
    EXPECT_EQ(mDiscreteInvCdf(0.3, kInverse), 5.0);
    EXPECT_EQ(mDiscreteInvCdf(0.75, kInverse), 5.0);
    EXPECT_EQ(mDiscreteInvCdf(0.9, kInverse), 7.5);
    EXPECT_EQ(mDiscreteInvCdf(1.5, kInverse), 1.0);
    EXPECT_EQ(mDiscreteInvCdf(0.5, std::map<double, double>()), 1.0);
    for (const auto& rEntry : kCumulative)
        EXPECT_EQ(mDiscreteInvCdf(mDiscreteCdf(rEntry.first, kCumulative, false), kInverse), rEntry.first);
}
