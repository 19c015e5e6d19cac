// The binomial kernel: the log mass, the two series, argument checks and
// trivial exits of binomial_df, its routes with their codes (both tails,
// reflected and not, the rows next to the log floor included), both tails
// and the mass against an mpmath table for n up to 10^6, and the two
// quantiles, which must be exact with their fraction.
#include "qelmath/kernels/binomial.h"
#include "qelmath/kernels/kernel_protocol.h"

#include "support/reftable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <iostream>
#include <limits>
#include <sstream>
#include <string>

namespace
{
double mRel(double dComputed, double dReference)
{
    return std::fabs(dComputed - dReference) / std::fabs(dReference);
}

struct BinResult
{
    double lower = -7.0;
    double upper = -7.0;
    double mass = -7.0;
    int route = -1;
    int code = -1;
    std::string name;
};

BinResult mBinomialDf(std::uint32_t k, std::uint32_t n, double p)
{
    BinResult r;
    binomial_df(k, n, p, &r.lower, &r.upper, &r.mass);
    r.route = kernel_method_code;
    r.code = kernel_error_code;
    r.name = kernel_routine_name;
    return r;
}

// P(X = k) by the product formula, for small n.
double mMass(int k, int n, double p)
{
    double c = 1.0;
    for (int i = 1; i <= k; ++i)
        c = c * (n - k + i) / i;
    return c * std::pow(p, k) * std::pow(1.0 - p, n - k);
}
} // namespace

TEST(BinomialHelpers, LogMassMatchesTheProductFormula)
{
    for (int n : {1, 7, 20})
    {
        for (int k = 0; k <= n; ++k)
        {
            for (double p : {0.05, 0.3, 0.5, 0.85})
            {
                double L = 0.0;
                binomial_log_pmf(static_cast<std::uint32_t>(k), static_cast<std::uint32_t>(n), p,
                                 &L);
                EXPECT_LT(mRel(std::exp(L), mMass(k, n, p)), 1e-13)
                    << "k=" << k << " n=" << n << " p=" << p;
            }
        }
    }
}

TEST(BinomialSeries, IkAndJkAreRatiosOfTheTailsToTheMass)
{
    double I = 0.0, J = 0.0;
    // n = 10, p = 0.3, k = 4: P(X > 4) and P(X <= 4) over P(X = 4).
    double above = 0.0, below = 0.0;
    for (int i = 0; i <= 10; ++i)
        (i <= 4 ? below : above) += mMass(i, 10, 0.3);
    ASSERT_EQ(binomial_Ik(4, 10, 0.3, &I), 0);
    EXPECT_LT(mRel(I * mMass(4, 10, 0.3), above), 1e-9);
    ASSERT_EQ(binomial_Jk(4, 10, 0.3, &J), 0);
    EXPECT_LT(mRel(J * mMass(4, 10, 0.3), below), 1e-9);
    // At k = 0 the J series is the single term 1.
    ASSERT_EQ(binomial_Jk(0, 10, 0.3, &J), 0);
    EXPECT_EQ(J, 1.0);
}

TEST(BinomialDf, NoTrialsGiveMassOneWhateverTheProbability)
{
    for (double p : {0.0, 0.3, 0.5, 1.0})
    {
        const BinResult r = mBinomialDf(0, 0, p);
        EXPECT_EQ(r.mass, 1.0) << p;
        EXPECT_EQ(r.lower, 1.0);
        EXPECT_EQ(r.upper, 0.0);
        EXPECT_EQ(r.route, 1);
        EXPECT_EQ(r.code, 0);
    }
}

TEST(BinomialDf, AtTheLastCountTheLowerTailIsExactlyOne)
{
    for (double p : {0.01, 0.5, 0.99})
    {
        const BinResult r = mBinomialDf(12, 12, p);
        EXPECT_EQ(r.lower, 1.0);
        EXPECT_EQ(r.upper, 0.0);
        EXPECT_EQ(r.route, 4);
        EXPECT_EQ(r.code, 0);
        EXPECT_LT(mRel(r.mass, std::pow(p, 12)), 1e-13);
    }
}

TEST(BinomialDf, CertainOutcomesAtProbabilityZeroAndOne)
{
    BinResult r = mBinomialDf(0, 5, 0.0);
    EXPECT_EQ(r.lower, 1.0);
    EXPECT_EQ(r.upper, 0.0);
    EXPECT_EQ(r.mass, 1.0);
    EXPECT_EQ(r.route, 2);
    r = mBinomialDf(3, 5, 0.0);
    EXPECT_EQ(r.mass, 0.0);
    EXPECT_EQ(r.lower, 1.0);
    r = mBinomialDf(5, 5, 1.0);
    EXPECT_EQ(r.lower, 1.0);
    EXPECT_EQ(r.mass, 1.0);
    EXPECT_EQ(r.upper, 0.0);
    EXPECT_EQ(r.route, 3);
    r = mBinomialDf(4, 5, 1.0);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.mass, 0.0);
    EXPECT_EQ(r.upper, 1.0);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(kernel_terms, 0);
}

TEST(BinomialDf, BadArgumentsAreCodeTwoWithOutputsUntouched)
{
    const double kNaN = std::numeric_limits<double>::quiet_NaN();
    BinResult r = mBinomialDf(1, 94906266u, 0.5);
    EXPECT_EQ(r.code, 2);
    EXPECT_EQ(r.name, "binomial_df");
    EXPECT_EQ(r.lower, -7.0);
    r = mBinomialDf(6, 5, 0.5);
    EXPECT_EQ(r.code, 2);
    EXPECT_EQ(r.mass, -7.0);
    r = mBinomialDf(2, 5, -0.1);
    EXPECT_EQ(r.code, 2);
    r = mBinomialDf(2, 5, 1.1);
    EXPECT_EQ(r.code, 2);
    r = mBinomialDf(2, 5, kNaN);
    EXPECT_EQ(r.code, 2);
    EXPECT_EQ(r.upper, -7.0);
    // The largest count is accepted.
    EXPECT_EQ(mBinomialDf(47453132u, 94906265u, 0.5).code, 0);
}

TEST(BinomialDfRoute, LowerAndUpperSeriesWithAndWithoutReflection)
{
    // n = 10, p = 0.3: mean 3.3, k = 1 lower series, k = 6 upper series.
    BinResult r = mBinomialDf(1, 10, 0.3);
    EXPECT_EQ(r.route, 110);
    EXPECT_LT(mRel(r.lower, mMass(0, 10, 0.3) + mMass(1, 10, 0.3)), 1e-13);
    r = mBinomialDf(6, 10, 0.3);
    EXPECT_EQ(r.route, 120);
    double above = 0.0;
    for (int i = 7; i <= 10; ++i)
        above += mMass(i, 10, 0.3);
    EXPECT_LT(mRel(r.upper, above), 1e-9);
    // p = 0.7 is reflected: k = 8 becomes k' = 1 in Binomial(10, 0.3), whose
    // lower tail is the upper tail asked for.
    r = mBinomialDf(8, 10, 0.7);
    EXPECT_EQ(r.route, 210);
    EXPECT_LT(mRel(r.upper, mMass(9, 10, 0.7) + mMass(10, 10, 0.7)), 1e-13);
    EXPECT_LT(mRel(r.mass, mMass(8, 10, 0.7)), 1e-13);
    r = mBinomialDf(3, 10, 0.7);
    EXPECT_EQ(r.route, 220);
    double below = 0.0;
    for (int i = 0; i <= 3; ++i)
        below += mMass(i, 10, 0.7);
    EXPECT_LT(mRel(r.lower, below), 1e-9);
}

TEST(BinomialDfRoute, TailsBelowTheFloorByTheBoundAreCodeOne)
{
    // 2^-1000 is below the floor and so is the bound of the lower tail.
    BinResult r = mBinomialDf(0, 1000, 0.5);
    EXPECT_EQ(r.route, 111);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.upper, 1.0);
    r = mBinomialDf(1, 2, 1e-300);
    EXPECT_EQ(r.route, 121);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.upper, 0.0);
    EXPECT_EQ(r.lower, 1.0);
    // Reflected: P(X <= 0) for Binomial(100, 1 - 1e-10) is 1e-1000.
    r = mBinomialDf(0, 100, 1.0 - 1e-10);
    EXPECT_EQ(r.route, 221);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.upper, 1.0);
    r = mBinomialDf(990, 1000, 1e-200);
    EXPECT_EQ(r.route, 121);
    EXPECT_EQ(r.upper, 0.0);
    r = mBinomialDf(76000, 100000, 0.7);
    EXPECT_EQ(r.route, 211);
    EXPECT_EQ(r.upper, 0.0);
    EXPECT_EQ(r.lower, 1.0);
}

// The rows where the mass is below the floor but the bound of the series is
// not: the series is run and decides.  Each case sits within a fraction of a
// unit of the floor, found by bisection in p with n and k fixed; the
// references are mpmath sums of the masses at 60 digits,
// sum of exp(loggamma(n+1) - loggamma(j+1) - loggamma(n-j+1) + j log p
// + (n-j) log1p(-p)) outward from k until the terms fall below 1e-50 of the
// sum.  Rows 12 and 22 are the cases whose true tail is below exp(floor) =
// 2.2249e-288 while the bound is above it.
TEST(BinomialDfRoute, LowerSeriesPastItsBoundIsRouteThirteenOrTwelve)
{
    BinResult r = mBinomialDf(3000, 10000, 0.4781679186412745);
    EXPECT_EQ(r.route, 113);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.mass, 0.0);
    EXPECT_LT(mRel(r.lower, 4.1697462980639490073e-288), 1e-8);
    EXPECT_EQ(r.upper, 1.0);
    // mpmath: 2.2248736838754120721e-288, log -662.34480664, below the floor.
    r = mBinomialDf(3000, 10000, 0.47825582719961723);
    EXPECT_EQ(r.route, 112);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.upper, 1.0);
}

TEST(BinomialDfRoute, ReflectedLowerSeriesPastItsBoundIsRouteTwoThirteenOrTwoTwelve)
{
    // p > 1/2: k = 7000 becomes k' = 2999 in the mirror, whose lower tail is
    // the upper tail asked for.
    BinResult r = mBinomialDf(7000, 10000, 0.52193877813449108);
    EXPECT_EQ(r.route, 213);
    EXPECT_EQ(r.code, 0);
    EXPECT_LT(mRel(r.upper, 4.1779157327010561282e-288), 1e-8);
    EXPECT_EQ(r.lower, 1.0);
    // mpmath: 2.2247917550417877482e-288, below the floor.
    r = mBinomialDf(7000, 10000, 0.52185058890215563);
    EXPECT_EQ(r.route, 212);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.upper, 0.0);
    EXPECT_EQ(r.lower, 1.0);
}

TEST(BinomialDfRoute, UpperSeriesPastItsBoundIsRouteTwentyThreeOrTwentyTwo)
{
    // The bound r / (1 - r) exceeds 1 only for r > 1/2, that is k below
    // about 2 n p / (1 + p): with the mass below the floor this needs
    // n KL(k/n, p) > 662, so n of 10^5 at p near 1/2, or a large mean n p
    // for a small p.
    BinResult r = mBinomialDf(55000, 100000, 0.49274969284854192);
    EXPECT_EQ(r.route, 123);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.mass, 0.0);
    EXPECT_LT(mRel(r.upper, 8.6106325870780862716e-288), 1e-8);
    EXPECT_EQ(r.lower, 1.0);
    // mpmath: 2.2236991875484394298e-288, below the floor.
    r = mBinomialDf(55000, 100000, 0.49269066724819555);
    EXPECT_EQ(r.route, 122);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.upper, 0.0);
    EXPECT_EQ(r.lower, 1.0);
    // Ninety million trials with p near 1.7e-4: mean 15300, k = 20000.
    r = mBinomialDf(20000, 90000000, 0.00017004477825205509);
    EXPECT_EQ(r.route, 123);
    EXPECT_EQ(r.code, 0);
    EXPECT_LT(mRel(r.upper, 7.2432566681881865023e-288), 1e-8);
    // mpmath: 2.2246069860708657277e-288, below the floor.
    r = mBinomialDf(20000, 90000000, 0.00017000210047019297);
    EXPECT_EQ(r.route, 122);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.upper, 0.0);
    EXPECT_EQ(r.lower, 1.0);
}

TEST(BinomialDfRoute, ReflectedUpperSeriesPastItsBoundIsRouteTwoTwentyThreeOrTwoTwentyTwo)
{
    BinResult r = mBinomialDf(44999, 100000, 0.50725039446880293);
    EXPECT_EQ(r.route, 223);
    EXPECT_EQ(r.code, 0);
    EXPECT_LT(mRel(r.lower, 8.5934139234040085709e-288), 1e-8);
    EXPECT_EQ(r.upper, 1.0);
    // mpmath: 2.2236948362379716259e-288, below the floor.
    r = mBinomialDf(44999, 100000, 0.5073093328370748);
    EXPECT_EQ(r.route, 222);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.lower, 0.0);
    EXPECT_EQ(r.upper, 1.0);
}

TEST(BinomialDfRoute, ReflectionLiftsAMassBelowTheFloorAboveIt)
{
    // P(X = 4000) of Binomial(10000, 0.5805...) is below the floor (stored
    // as 0), but the mass of the reflected point, n - k - 1 = 5999 in the
    // mirror with p' = 0.4195, is 2.07 times larger and above it; the tail
    // must be formed from that mass and not from the stored 0.
    const BinResult r = mBinomialDf(4000, 10000, 0.58050531327546018);
    EXPECT_EQ(r.route, 220);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.mass, 0.0);
    // mpmath sum of the masses 0 to 4000.
    EXPECT_LT(mRel(r.lower, 4.2869947532214922165e-288), 1e-8);
    EXPECT_EQ(r.upper, 1.0);
}

TEST(BinomialDf, MatchesMpmathForUpToAMillionTrials)
{
    const double kBound = 1e-8;
    const qeltest::RefTable table = qeltest::mLoadRefTable("binomial_kernel_df.txt");
    ASSERT_GT(table.rows.size(), 500u);
    qeltest::WorstError worstL("binomial_df lower");
    qeltest::WorstError worstU("binomial_df upper");
    qeltest::WorstError worstM("binomial_df mass");
    for (const std::vector<double>& row : table.rows)
    {
        ASSERT_EQ(row.size(), 6u);
        const auto n = static_cast<std::uint32_t>(row[0]);
        const double p = row[1];
        const auto k = static_cast<std::uint32_t>(row[2]);
        const BinResult r = mBinomialDf(k, n, p);
        std::ostringstream where;
        where.precision(17);
        where << "n=" << n << " p=" << p << " k=" << k;
        ASSERT_LE(r.code, 1) << where.str();
        const auto mCheck = [&](qeltest::WorstError& worst, double got, double ref,
                                const char* what) {
            if (!(ref > 1e-280))
                return;
            const double e = qeltest::mRelativeError(got, ref);
            std::ostringstream text;
            text.precision(17);
            text << where.str() << " " << what << "=" << got << " (mpmath " << ref << ") route "
                 << r.route;
            worst.mUpdate(e, qeltest::mUlpDistance(got, ref), text.str());
            EXPECT_LE(e, kBound) << text.str();
        };
        mCheck(worstL, r.lower, row[3], "lower");
        mCheck(worstU, r.upper, row[4], "upper");
        mCheck(worstM, r.mass, row[5], "mass");
    }
    std::cout << worstL.mReport() << "\n" << worstU.mReport() << "\n"
              << worstM.mReport() << std::endl;
    RecordProperty("worst_lower", worstL.mReport());
    RecordProperty("worst_upper", worstU.mReport());
    RecordProperty("worst_mass", worstM.mReport());
}

// ---------------------------------------------------------------------------
// Quantiles.

TEST(BinomialQuant, UpperQuantileWithATinyMeanStartsAtTheLastCount)
{
    // n p = 0.0005 with n = 2: the start 3 is capped at 2, and P(X >= 2) =
    // p^2 = 6.25e-8 is already above q: no step is taken.
    std::uint32_t k = 99;
    double frac = -1.0;
    binomial_upper_quant(1e-12, 2, 0.00025, &k, &frac);
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_EQ(k, 2u);
    EXPECT_EQ(kernel_terms, 1);
    EXPECT_EQ(kernel_method_code, 4);
    EXPECT_LT(mRel(frac, 1e-12 / (0.00025 * 0.00025)), 1e-12);
}

TEST(BinomialQuant, LowerQuantileAboveOneHalfDelegatesToTheMirror)
{
    std::uint32_t k = 0, kMirror = 0;
    double frac = 0.0, fracMirror = 0.0;
    binomial_upper_quant(0.1, 40, 1.0 - 0.7, &kMirror, &fracMirror);
    binomial_lower_quant(0.1, 40, 0.7, &k, &frac);
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_EQ(kernel_method_code, 4);
    EXPECT_EQ(k, 40u - kMirror);
    EXPECT_EQ(frac, fracMirror);
    // And k is the smallest count whose lower tail reaches 0.1.
    double lower = 0.0, upper = 0.0, mass = 0.0;
    binomial_df(k, 40, 0.7, &lower, &upper, &mass);
    EXPECT_GE(lower, 0.1);
    binomial_df(k - 1, 40, 0.7, &lower, &upper, &mass);
    EXPECT_LT(lower, 0.1);
}

TEST(BinomialQuant, BadArgumentsAreCodeTwoAndCertainOutcomesAreRoutesOneAndTwo)
{
    const double kNaN = std::numeric_limits<double>::quiet_NaN();
    const struct
    {
        double q;
        std::uint32_t n;
        double p;
    } cases[] = {{0.1, 0, 0.5},        {0.1, 94906266u, 0.5}, {0.1, 10, -0.1}, {0.1, 10, 1.1},
                 {0.9e-12, 10, 0.5}, {0.51, 10, 0.5},       {kNaN, 10, 0.5}, {0.1, 10, kNaN}};
    for (const auto& c : cases)
    {
        std::uint32_t k = 7;
        double frac = -3.0;
        binomial_lower_quant(c.q, c.n, c.p, &k, &frac);
        EXPECT_EQ(kernel_error_code, 2);
        EXPECT_EQ(k, 94906265u);
        EXPECT_EQ(frac, -3.0);
        k = 7;
        binomial_upper_quant(c.q, c.n, c.p, &k, &frac);
        EXPECT_EQ(kernel_error_code, 2);
        EXPECT_STREQ(kernel_routine_name, "binomial_upper_quant");
        EXPECT_EQ(k, 94906265u);
    }
    std::uint32_t k = 7;
    double frac = 0.0;
    binomial_lower_quant(0.2, 10, 0.0, &k, &frac);
    EXPECT_EQ(k, 0u);
    EXPECT_EQ(frac, 0.2);
    EXPECT_EQ(kernel_method_code, 1);
    EXPECT_EQ(kernel_error_code, 0);
    binomial_upper_quant(0.2, 10, 1.0, &k, &frac);
    EXPECT_EQ(k, 10u);
    EXPECT_EQ(frac, 0.2);
    EXPECT_EQ(kernel_method_code, 2);
}

TEST(BinomialQuant, BothQuantilesAreExactWithTheirFraction)
{
    const std::uint32_t ns[] = {1, 5, 30, 100, 1000, 12345, 100000, 1000000};
    const double ps[] = {1e-6, 0.001, 0.05, 0.3, 0.5, 0.7, 0.95, 0.999};
    const double qs[] = {1e-12, 1e-6, 0.01, 0.2, 0.5};
    qeltest::WorstError worstFrac("binomial quantile fraction, |q - tail - frac mass| / q",
                                  "relative");
    int iCount = 0;
    for (std::uint32_t n : ns)
    {
        for (double p : ps)
        {
            for (double q : qs)
            {
                std::ostringstream where;
                where.precision(17);
                where << "n=" << n << " p=" << p << " q=" << q;
                double lower = 0.0, upper = 0.0, mass = 0.0;

                std::uint32_t k = 0;
                double frac = 0.0;
                binomial_lower_quant(q, n, p, &k, &frac);
                ASSERT_EQ(kernel_error_code, 0) << where.str();
                binomial_df(k, n, p, &lower, &upper, &mass);
                EXPECT_GE(lower, q * (1.0 - 1e-9)) << where.str() << " k=" << k;
                double below = 0.0;
                if (k > 0)
                {
                    double l1 = 0.0, u1 = 0.0, m1 = 0.0;
                    binomial_df(k - 1, n, p, &l1, &u1, &m1);
                    below = l1;
                    EXPECT_LT(below, q * (1.0 + 1e-9)) << where.str() << " k=" << k;
                }
                double e = std::fabs(q - below - frac * mass) / q;
                worstFrac.mUpdate(e, 0.0, where.str() + " lower");
                EXPECT_LT(e, 1e-8) << where.str() << " k=" << k << " frac=" << frac;

                binomial_upper_quant(q, n, p, &k, &frac);
                ASSERT_EQ(kernel_error_code, 0) << where.str();
                binomial_df(k, n, p, &lower, &upper, &mass);
                // P(X >= k) = P(X > k) + P(X = k) reaches q; P(X > k) does not.
                EXPECT_GE(upper + mass, q * (1.0 - 1e-9)) << where.str() << " k=" << k;
                EXPECT_LT(upper, q * (1.0 + 1e-9)) << where.str() << " k=" << k;
                e = std::fabs(q - upper - frac * mass) / q;
                worstFrac.mUpdate(e, 0.0, where.str() + " upper");
                EXPECT_LT(e, 1e-8) << where.str() << " k=" << k << " frac=" << frac;
                ++iCount;
            }
        }
    }
    std::cout << worstFrac.mReport() << " (" << iCount << " pairs of quantiles)" << std::endl;
    RecordProperty("worst_fraction", worstFrac.mReport());
}
