// The hypergeometric kernel: the log mass, the two series and their cap,
// argument checks and certain outcomes of hypergeo_df, the four reflections
// and the routes below the floor with their codes, both tails and the mass
// against an mpmath table for populations up to 10^6, the identities of the
// tails, and the two quantiles with their reductions, exact with their
// fraction against a brute-force table.
#include "qelmath/kernels/hypergeo.h"
#include "qelmath/kernels/kernel_protocol.h"

#include "support/reftable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace
{
double mRel(double dComputed, double dReference)
{
    return std::fabs(dComputed - dReference) / std::fabs(dReference);
}

struct HypResult
{
    double lower = -7.0;
    double upper = -7.0;
    double mass = -7.0;
    int route = -1;
    int code = -1;
    std::string name;
};

HypResult mHypergeoDf(std::uint32_t k, std::uint32_t N, std::uint32_t M, std::uint32_t n)
{
    HypResult r;
    hypergeo_df(k, N, M, n, &r.lower, &r.upper, &r.mass);
    r.route = kernel_method_code;
    r.code = kernel_error_code;
    r.name = kernel_routine_name;
    return r;
}

struct QuantResult
{
    std::uint32_t k = 7u;
    double frac = -7.0;
    int route = -1;
    int code = -1;
    int terms = -1;
    std::string name;
};

QuantResult mQuant(bool bLower, double q, std::uint32_t N, std::uint32_t M, std::uint32_t n)
{
    QuantResult r;
    if (bLower)
        hypergeo_lower_quant(q, N, M, n, &r.k, &r.frac);
    else
        hypergeo_upper_quant(q, N, M, n, &r.k, &r.frac);
    r.route = kernel_method_code;
    r.code = kernel_error_code;
    r.terms = kernel_terms;
    r.name = kernel_routine_name;
    return r;
}

// C(a, b) by the multiplicative formula in long double, for small a.
long double mChoose(int a, int b)
{
    if (b < 0 || b > a)
        return 0.0L;
    long double c = 1.0L;
    for (int i = 1; i <= b; ++i)
        c = c * (a - b + i) / i;
    return c;
}

// P(X = k), P(X <= k) and P(X > k) by sums of binomial coefficients.
struct Exact
{
    long double mass;
    long double lower;
    long double upper;
};

Exact mExact(int k, int N, int M, int n)
{
    const long double total = mChoose(N, n);
    Exact e{0.0L, 0.0L, 0.0L};
    for (int j = 0; j <= n; ++j)
    {
        const long double p = mChoose(M, j) * mChoose(N - M, n - j) / total;
        if (j == k)
            e.mass = p;
        if (j <= k)
            e.lower += p;
        else
            e.upper += p;
    }
    return e;
}

// The largest population the kernel accepts, with half successes and half
// draws: its standard deviation, about 2436, is the largest there is.
constexpr std::uint32_t kBigN = 94906264u;
constexpr std::uint32_t kBigHalf = kBigN / 2u;
} // namespace

// ---------------------------------------------------------------------------
// Helpers and series.

TEST(HypergeoHelpers, LogMassMatchesTheBinomialCoefficients)
{
    const int N = 30;
    double worst = 0.0;
    for (int M = 0; M <= N; ++M)
        for (int n = 0; n <= N; ++n)
            for (int k = std::max(0, n + M - N); k <= std::min(M, n); ++k)
            {
                double L = 0.0;
                hypergeo_log_pmf(static_cast<std::uint32_t>(k), N, static_cast<std::uint32_t>(M),
                                 static_cast<std::uint32_t>(n), &L);
                const double ref = static_cast<double>(mExact(k, N, M, n).mass);
                const double e = mRel(std::exp(L), ref);
                worst = std::max(worst, e);
                ASSERT_LE(e, 1e-13) << "M=" << M << " n=" << n << " k=" << k;
            }
    std::cout << "hypergeo_log_pmf worst relative error for N = 30: " << worst << std::endl;
}

TEST(HypergeoSeries, IkAndJkAreRatiosOfTheTailsToTheMass)
{
    const int N = 40, M = 15, n = 12;
    for (int k = 0; k < 12; ++k)
    {
        const Exact e = mExact(k, N, M, n);
        double I = -7.0, J = -7.0;
        ASSERT_EQ(hyper_Ik(k, N, M, n, &I), 0);
        EXPECT_EQ(kernel_error_code, 0);
        EXPECT_GE(kernel_terms, 1);
        ASSERT_EQ(hyper_Jk(k, N, M, n, &J), 0);
        EXPECT_EQ(kernel_error_code, 0);
        EXPECT_LE(mRel(I, static_cast<double>(e.upper / e.mass)), 1e-13) << "k=" << k;
        EXPECT_LE(mRel(J, static_cast<double>(e.lower / e.mass)), 1e-13) << "k=" << k;
    }
    // At the bottom of the support J is 1 with a single term.
    double J = -7.0;
    ASSERT_EQ(hyper_Jk(0, N, M, n, &J), 0);
    EXPECT_EQ(J, 1.0);
    EXPECT_EQ(kernel_terms, 1);
}

TEST(HypergeoSeries, AVeryLongScanFailsWithCodeFourAtOneHundredThousandTerms)
{
    // Started 36 standard deviations beyond the mode, the terms first rise
    // to about e^648 and then need another 36.6 standard deviations to fall
    // below 1e-9: some 176000 terms.
    const std::uint32_t mode =
        static_cast<std::uint32_t>((kBigHalf + 1.0) * (kBigHalf + 1.0) / (kBigN + 2.0));
    const std::uint32_t sd36 = 36u * 2436u;
    double J = -7.0, I = -7.0;
    EXPECT_EQ(hyper_Jk(mode + sd36, kBigN, kBigHalf, kBigHalf, &J), 4);
    EXPECT_EQ(kernel_error_code, 4);
    EXPECT_STREQ(kernel_routine_name, "hyper_Jk");
    EXPECT_EQ(kernel_terms, 0);
    EXPECT_EQ(J, -7.0);
    EXPECT_EQ(hyper_Ik(mode - sd36, kBigN, kBigHalf, kBigHalf, &I), 4);
    EXPECT_EQ(kernel_error_code, 4);
    EXPECT_STREQ(kernel_routine_name, "hyper_Ik");
    EXPECT_EQ(kernel_terms, 0);
    EXPECT_EQ(I, -7.0);

    // Ten standard deviations out the scan is long but within the cap.
    kernel_enter("test");
    const std::uint32_t sd10 = 10u * 2436u;
    EXPECT_EQ(hyper_Jk(mode + sd10, kBigN, kBigHalf, kBigHalf, &J), 0);
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_GT(kernel_terms, 40000);
    EXPECT_LE(kernel_terms, 100000);
    EXPECT_GT(J, 1e20);
    EXPECT_EQ(hyper_Ik(mode - sd10, kBigN, kBigHalf, kBigHalf, &I), 0);
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_GT(I, 1e20);
}

// ---------------------------------------------------------------------------
// hypergeo_df: arguments and certain outcomes.

TEST(HypergeoDf, NoDrawsGiveMassOneWhateverTheSuccesses)
{
    for (std::uint32_t M : {0u, 1u, 5u, 9u, 10u})
    {
        kernel_raise("test", 3, 'F');
        const HypResult r = mHypergeoDf(0, 10, M, 0);
        EXPECT_EQ(r.mass, 1.0) << "M=" << M;
        EXPECT_EQ(r.lower, 1.0);
        EXPECT_EQ(r.upper, 0.0);
        EXPECT_EQ(r.route, 1);
        EXPECT_EQ(r.code, 0);
        EXPECT_EQ(r.name, "hypergeo_df");
    }
}

TEST(HypergeoDf, PopulationOfOneIsCodeTwoThoughTheDistributionExists)
{
    for (std::uint32_t k : {0u, 1u})
    {
        const HypResult r = mHypergeoDf(k, 1, 1, k);
        EXPECT_EQ(r.code, 2);
        EXPECT_EQ(r.name, "hypergeo_df");
        EXPECT_EQ(r.lower, -7.0);
        EXPECT_EQ(r.upper, -7.0);
        EXPECT_EQ(r.mass, -7.0);
    }
    EXPECT_EQ(mHypergeoDf(0, 0, 0, 0).code, 2);
}

TEST(HypergeoDf, BadArgumentsAreCodeTwoWithOutputsUntouched)
{
    struct Case
    {
        std::uint32_t k, N, M, n;
    };
    const Case cases[] = {
        {0, 94906266u, 10, 10}, // population too large
        {0, 10, 11, 3},         // M > N
        {0, 10, 3, 11},         // n > N
        {4, 10, 5, 3},          // k > n
        {4, 10, 3, 5},          // k > M
        {2, 10, 8, 5},          // n - k > N - M
        {0, 4294967295u, 5, 5}, // the largest unsigned count
    };
    for (const Case& c : cases)
    {
        const HypResult r = mHypergeoDf(c.k, c.N, c.M, c.n);
        EXPECT_EQ(r.code, 2) << c.k << " " << c.N << " " << c.M << " " << c.n;
        EXPECT_EQ(r.name, "hypergeo_df");
        EXPECT_EQ(r.lower, -7.0);
        EXPECT_EQ(r.upper, -7.0);
        EXPECT_EQ(r.mass, -7.0);
    }
    // The largest population accepted, with one success drawn for certain.
    const HypResult r = mHypergeoDf(1, 94906265u, 1, 1);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.route, 106);
    EXPECT_EQ(r.lower, 1.0);
    EXPECT_LE(mRel(r.mass, 1.0 / 94906265.0), 1e-14);
}

TEST(HypergeoDf, AllDrawnNoSuccessesOrAllSuccessesAreCertain)
{
    struct Case
    {
        std::uint32_t k, N, M, n;
        int route;
    };
    // With legal arguments n = N forces k = M, and M = N forces k = n.
    const Case cases[] = {
        {4, 10, 4, 10, 2}, {0, 10, 0, 10, 2}, {0, 10, 0, 4, 3},
        {0, 2, 0, 1, 3},   {4, 10, 10, 4, 4}, {9, 10, 10, 9, 4},
    };
    for (const Case& c : cases)
    {
        kernel_raise("test", 4, 'F');
        const HypResult r = mHypergeoDf(c.k, c.N, c.M, c.n);
        EXPECT_EQ(r.route, c.route) << c.k << " " << c.N << " " << c.M << " " << c.n;
        EXPECT_EQ(r.code, 0);
        EXPECT_EQ(r.mass, 1.0);
        EXPECT_EQ(r.lower, 1.0);
        EXPECT_EQ(r.upper, 0.0);
    }
}

TEST(HypergeoDf, AtTheTopOfTheSupportTheLowerTailIsExactlyOneWithoutReflection)
{
    // n = 14 of 20 is large, yet k = min(M, n) goes straight to the core.
    const HypResult r = mHypergeoDf(6, 20, 6, 14);
    EXPECT_EQ(r.route, 106);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.lower, 1.0);
    EXPECT_EQ(r.upper, 0.0);
    EXPECT_LE(mRel(r.mass, static_cast<double>(mExact(6, 20, 6, 14).mass)), 1e-13);
}

TEST(HypergeoCore, CountAboveTheSupportAddsFiveAndForcesZero)
{
    kernel_enter("test");
    kernel_raise("test", 3, 'F');
    kernel_method_code = 0;
    double lower = -7.0, upper = -7.0, mass = -7.0;
    hypergeo_core(5, 10, 3, 4, &lower, &upper, &mass);
    EXPECT_EQ(kernel_method_code, 5);
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_EQ(mass, 0.0);
    EXPECT_EQ(lower, 1.0);
    EXPECT_EQ(upper, 0.0);
}

// ---------------------------------------------------------------------------
// hypergeo_df: reflections and routes.

TEST(HypergeoDfRoute, HalfOfThePopulationCountsAsSmall)
{
    struct Case
    {
        std::uint32_t k, M, n;
        int reflection;
    };
    const Case cases[] = {{1, 5, 5, 100}, {2, 6, 5, 200}, {2, 5, 6, 300}, {2, 6, 6, 400}};
    for (const Case& c : cases)
    {
        const HypResult r = mHypergeoDf(c.k, 10, c.M, c.n);
        EXPECT_EQ(r.route / 100 * 100, c.reflection) << "M=" << c.M << " n=" << c.n;
        EXPECT_EQ(r.code, 0);
        const Exact e =
            mExact(static_cast<int>(c.k), 10, static_cast<int>(c.M), static_cast<int>(c.n));
        EXPECT_LE(mRel(r.mass, static_cast<double>(e.mass)), 1e-13);
        EXPECT_LE(mRel(r.lower, static_cast<double>(e.lower)), 1e-13);
        EXPECT_LE(mRel(r.upper, static_cast<double>(e.upper)), 1e-13);
    }
}

TEST(HypergeoDfRoute, EachReflectionMatchesExactSumsOverTheWholeSupport)
{
    struct Case
    {
        int M, n, reflection;
    };
    const Case cases[] = {{12, 15, 100}, {28, 15, 200}, {12, 25, 300}, {28, 25, 400}};
    const int N = 40;
    for (const Case& c : cases)
    {
        bool bLowerSeries = false, bUpperSeries = false;
        for (int k = std::max(0, c.n + c.M - N); k < std::min(c.M, c.n); ++k)
        {
            const HypResult r = mHypergeoDf(k, N, c.M, c.n);
            const Exact e = mExact(k, N, c.M, c.n);
            ASSERT_EQ(r.route / 100 * 100, c.reflection)
                << "M=" << c.M << " n=" << c.n << " k=" << k;
            ASSERT_EQ(r.code, 0);
            bLowerSeries = bLowerSeries || r.route % 100 == 10;
            bUpperSeries = bUpperSeries || r.route % 100 == 20;
            EXPECT_LE(mRel(r.mass, static_cast<double>(e.mass)), 1e-13) << "k=" << k;
            EXPECT_LE(mRel(r.lower, static_cast<double>(e.lower)), 1e-13) << "k=" << k;
            EXPECT_LE(mRel(r.upper, static_cast<double>(e.upper)), 1e-13) << "k=" << k;
        }
        EXPECT_TRUE(bLowerSeries && bUpperSeries) << "reflection " << c.reflection;
    }
}

TEST(HypergeoDfRoute, TailsBelowTheFloorByTheBoundAreCodeOne)
{
    struct Case
    {
        std::uint32_t k, N, M, n;
        int route;
        double lower;
    };
    const Case cases[] = {
        {0, 1000, 500, 500, 111, 0.0},      {498, 1000, 500, 500, 121, 1.0},
        {0, 5000, 3500, 500, 221, 0.0},     {2312, 5000, 3500, 2500, 211, 1.0},
        {0, 5000, 500, 3500, 321, 0.0},     {2312, 5000, 2500, 3500, 311, 1.0},
        {2000, 5000, 3500, 3500, 411, 0.0}, {3000, 5000, 3500, 3500, 421, 1.0},
    };
    for (const Case& c : cases)
    {
        const HypResult r = mHypergeoDf(c.k, c.N, c.M, c.n);
        EXPECT_EQ(r.route, c.route) << c.k << " " << c.N << " " << c.M << " " << c.n;
        EXPECT_EQ(r.code, 1);
        EXPECT_EQ(r.name, "hypergeo_df");
        EXPECT_EQ(r.lower, c.lower);
        EXPECT_EQ(r.upper, 1.0 - c.lower);
    }
}

TEST(HypergeoDfRoute, AMassBelowTheFloorWithASignificantTailSumsTheSeries)
{
    // Some 36.4 standard deviations out the mass is below the floor while
    // the tail, about 1/(1 - r) times larger with r near 0.985, is not.
    HypResult r = mHypergeoDf(23638365u, kBigN, kBigHalf, kBigHalf);
    EXPECT_EQ(r.route, 113);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.mass, 0.0);
    EXPECT_GT(r.lower, 0.0);
    EXPECT_LT(r.lower, 1e-285);
    EXPECT_EQ(r.upper, 1.0);
    r = mHypergeoDf(23814765u, kBigN, kBigHalf, kBigHalf);
    EXPECT_EQ(r.route, 123);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.mass, 0.0);
    EXPECT_GT(r.upper, 0.0);
    EXPECT_LT(r.upper, 1e-285);
    EXPECT_EQ(r.lower, 1.0);
}

// ---------------------------------------------------------------------------
// hypergeo_df: accuracy and identities.

TEST(HypergeoDf, MatchesMpmathForPopulationsUpToAMillion)
{
    const double kBound = 1e-9;
    const qeltest::RefTable table = qeltest::mLoadRefTable("hypergeo_df.txt");
    ASSERT_GT(table.rows.size(), 5000u);
    qeltest::WorstError worstL("hypergeo_df lower");
    qeltest::WorstError worstU("hypergeo_df upper");
    qeltest::WorstError worstM("hypergeo_df mass");
    long lChecked = 0;
    for (const std::vector<double>& row : table.rows)
    {
        ASSERT_EQ(row.size(), 7u);
        const auto N = static_cast<std::uint32_t>(row[0]);
        const auto M = static_cast<std::uint32_t>(row[1]);
        const auto n = static_cast<std::uint32_t>(row[2]);
        const auto k = static_cast<std::uint32_t>(row[3]);
        const HypResult r = mHypergeoDf(k, N, M, n);
        std::ostringstream where;
        where.precision(17);
        where << "N=" << N << " M=" << M << " n=" << n << " k=" << k;
        ASSERT_LE(r.code, 1) << where.str();
        const auto mCheck =
            [&](qeltest::WorstError& worst, double got, double ref, const char* what)
        {
            if (!(ref > 1e-280))
            {
                // Below the range: zero, or as small as the reference.
                EXPECT_LE(got, 1e-279) << where.str() << " " << what;
                return;
            }
            const double e = qeltest::mRelativeError(got, ref);
            std::ostringstream text;
            text.precision(17);
            text << where.str() << " " << what << "=" << got << " (mpmath " << ref << ") route "
                 << r.route;
            worst.mUpdate(e, qeltest::mUlpDistance(got, ref), text.str());
            EXPECT_LE(e, kBound) << text.str();
            ++lChecked;
        };
        mCheck(worstL, r.lower, row[4], "lower");
        mCheck(worstU, r.upper, row[5], "upper");
        mCheck(worstM, r.mass, row[6], "mass");
    }
    std::cout << worstL.mReport() << "\n"
              << worstU.mReport() << "\n"
              << worstM.mReport() << "\n"
              << lChecked << " values above 1e-280 checked" << std::endl;
    RecordProperty("worst_lower", worstL.mReport());
    RecordProperty("worst_upper", worstU.mReport());
    RecordProperty("worst_mass", worstM.mReport());
}

TEST(HypergeoDf, TailsAddToOneAndTheRunningSumOfTheMassIsTheLowerTail)
{
    struct Case
    {
        std::uint32_t N, M, n;
    };
    const Case cases[] = {{2, 1, 1},        {7, 3, 4},         {50, 10, 20},    {50, 40, 20},
                          {50, 10, 45},     {50, 40, 45},      {999, 500, 499}, {2000, 300, 1700},
                          {2000, 1900, 60}, {2000, 1000, 1000}};
    double worst = 0.0;
    for (const Case& c : cases)
    {
        double running = 0.0;
        for (std::uint32_t k = c.n + c.M > c.N ? c.n + c.M - c.N : 0u; k <= std::min(c.M, c.n); ++k)
        {
            const HypResult r = mHypergeoDf(k, c.N, c.M, c.n);
            ASSERT_LE(r.code, 1);
            running += r.mass;
            EXPECT_NEAR(r.lower + r.upper, 1.0, 2.3e-16) << "k=" << k;
            // The series stop at a term below 1e-9 of the first, so a tail
            // carries a relative truncation error of that order.  Masses below
            // the floor (2.2e-288) are exact zeros and missing from the running
            // sum, so the comparison starts well above it.
            if (r.lower > 1e-270)
            {
                const double e = mRel(running, r.lower);
                worst = std::max(worst, e);
                EXPECT_LE(e, 1e-9) << "N=" << c.N << " M=" << c.M << " n=" << c.n << " k=" << k;
            }
        }
        EXPECT_NEAR(running, 1.0, 1e-13);
    }
    std::cout << "running sum of the mass against the lower tail, worst relative error " << worst
              << std::endl;
}

// ---------------------------------------------------------------------------
// Quantiles.

TEST(HypergeoQuant, UpperQuantileWithATinyMeanStartsAtTwo)
{
    // m = n M / N = 4 / 8000 = 0.0005; the start min(3, min(M, n)) = 2 is
    // already the answer, P(X = 2) = 1 / C(8000, 2) being above q.
    const QuantResult r = mQuant(false, 1e-12, 8000, 2, 2);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.k, 2u);
    EXPECT_EQ(r.terms, 1);
    EXPECT_EQ(r.route, 2);
    EXPECT_LE(mRel(r.frac, 1e-12 * 8000.0 * 7999.0 / 2.0), 1e-12);
}

TEST(HypergeoQuant, LowerQuantileWithBothLargeComesBackShifted)
{
    // M + n - N = 50.
    for (double q : {1e-9, 0.01, 0.3, 0.5})
    {
        const QuantResult mirror = mQuant(true, q, 100, 30, 20);
        const QuantResult r = mQuant(true, q, 100, 70, 80);
        ASSERT_EQ(r.code, 0);
        EXPECT_EQ(r.k, mirror.k + 50u) << "q=" << q;
        EXPECT_EQ(r.frac, mirror.frac);
        double lower = 0.0, upper = 0.0, mass = 0.0;
        hypergeo_df(r.k, 100, 70, 80, &lower, &upper, &mass);
        EXPECT_GE(lower, q * (1.0 - 1e-12));
        if (r.k == 50u)
            continue; // the bottom of the support: nothing lies below it
        hypergeo_df(r.k - 1u, 100, 70, 80, &lower, &upper, &mass);
        ASSERT_EQ(kernel_error_code, 0);
        EXPECT_LT(lower, q);
    }
}

TEST(HypergeoQuant, EachReductionGivesTheQuantileOfTheMirror)
{
    const double q = 0.07;
    // Lower quantile: M large, n small -> n minus the upper quantile.
    EXPECT_EQ(mQuant(true, q, 100, 70, 20).k, 20u - mQuant(false, q, 100, 30, 20).k);
    // M small, n large -> M minus the upper quantile.
    EXPECT_EQ(mQuant(true, q, 100, 30, 80).k, 30u - mQuant(false, q, 100, 30, 20).k);
    // Upper quantile: the mirrored reductions.
    EXPECT_EQ(mQuant(false, q, 100, 70, 20).k, 20u - mQuant(true, q, 100, 30, 20).k);
    EXPECT_EQ(mQuant(false, q, 100, 70, 80).k, mQuant(false, q, 100, 30, 20).k + 50u);
    EXPECT_EQ(mQuant(false, q, 100, 30, 80).k, 30u - mQuant(true, q, 100, 30, 20).k);
    // And each answer satisfies its definition.
    struct Case
    {
        bool bLower;
        std::uint32_t M, n;
    };
    for (const Case& c : {Case{true, 70, 20}, Case{true, 30, 80}, Case{true, 70, 80},
                          Case{false, 70, 20}, Case{false, 30, 80}, Case{false, 70, 80}})
    {
        const QuantResult r = mQuant(c.bLower, q, 100, c.M, c.n);
        ASSERT_EQ(r.code, 0);
        const Exact e =
            mExact(static_cast<int>(r.k), 100, static_cast<int>(c.M), static_cast<int>(c.n));
        if (c.bLower)
        {
            EXPECT_GE(static_cast<double>(e.lower), q);
            EXPECT_LT(static_cast<double>(e.lower - e.mass), q);
            EXPECT_NEAR(r.frac, static_cast<double>((q - (e.lower - e.mass)) / e.mass), 1e-12);
        }
        else
        {
            EXPECT_GE(static_cast<double>(e.upper + e.mass), q);
            EXPECT_LT(static_cast<double>(e.upper), q);
            EXPECT_NEAR(r.frac, static_cast<double>((q - e.upper) / e.mass), 1e-12);
        }
    }
}

TEST(HypergeoQuant, BadArgumentsAreCodeTwoWithTheLargestCount)
{
    struct Case
    {
        double q;
        std::uint32_t N, M, n;
    };
    const Case cases[] = {
        {0.1, 1, 0, 0},      {0.1, 94906266u, 10, 10}, {0.1, 10, 0, 5},
        {0.1, 10, 10, 5},    {0.1, 10, 5, 0},          {0.1, 10, 5, 10},
        {0.9e-12, 10, 5, 5}, {0.5000001, 10, 5, 5},    {std::nan(""), 10, 5, 5},
    };
    for (bool bLower : {true, false})
        for (const Case& c : cases)
        {
            const QuantResult r = mQuant(bLower, c.q, c.N, c.M, c.n);
            EXPECT_EQ(r.code, 2) << c.q << " " << c.N << " " << c.M << " " << c.n;
            EXPECT_EQ(r.k, 94906265u);
            EXPECT_EQ(r.frac, -7.0);
            EXPECT_EQ(r.name, bLower ? "hypergeo_lower_quant" : "hypergeo_upper_quant");
        }
    // The ends of the probability range are accepted.
    EXPECT_EQ(mQuant(true, 1e-12, 10, 5, 5).code, 0);
    EXPECT_EQ(mQuant(false, 0.5, 10, 5, 5).code, 0);
}

TEST(HypergeoQuant, AProbabilityOnAStepGivesTheSamePointEitherWay)
{
    // q = P(X <= 1) for N = 10, M = 4, n = 5: 1/42 + 10/42 = 11/42.  The
    // smallest k with P(X <= k) >= q is 1 with fraction 1, which the walk
    // may equally give as k = 2 with fraction 0.
    const double q = 11.0 / 42.0;
    const QuantResult r = mQuant(true, q, 10, 4, 5);
    ASSERT_EQ(r.code, 0);
    EXPECT_TRUE((r.k == 1u && std::fabs(r.frac - 1.0) < 1e-12) ||
                (r.k == 2u && std::fabs(r.frac) < 1e-12))
        << r.k << " " << r.frac;
    // P(X >= 3) = 10/42 + 1/42 = 11/42 for the upper quantile.
    const QuantResult u = mQuant(false, q, 10, 4, 5);
    ASSERT_EQ(u.code, 0);
    EXPECT_TRUE((u.k == 3u && std::fabs(u.frac - 1.0) < 1e-12) ||
                (u.k == 2u && std::fabs(u.frac) < 1e-12))
        << u.k << " " << u.frac;
    // Halfway up a step: P(X >= 4) = 1/42, P(X = 3) = 10/42.
    const QuantResult h = mQuant(false, 6.0 / 42.0, 10, 4, 5);
    ASSERT_EQ(h.code, 0);
    EXPECT_EQ(h.k, 3u);
    EXPECT_NEAR(h.frac, 0.5, 1e-14);
}

TEST(HypergeoQuant, BothQuantilesMatchTheBruteForceTable)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("hypergeo_quantiles.txt");
    ASSERT_GT(table.rows.size(), 500u);
    qeltest::WorstError worst("hypergeo quantile position k + frac (lower) or k - frac (upper)",
                              "absolute");
    long lSteps = 0;
    for (const std::vector<double>& row : table.rows)
    {
        ASSERT_EQ(row.size(), 8u);
        const bool bLower = row[0] == 1.0;
        const auto N = static_cast<std::uint32_t>(row[1]);
        const auto M = static_cast<std::uint32_t>(row[2]);
        const auto n = static_cast<std::uint32_t>(row[3]);
        const double q = row[4];
        const auto kRef = static_cast<std::uint32_t>(row[5]);
        const double fracRef = row[6];
        const bool bStep = row[7] == 1.0;
        std::ostringstream where;
        where.precision(17);
        where << (bLower ? "lower" : "upper") << " N=" << N << " M=" << M << " n=" << n
              << " q=" << q;
        const QuantResult r = mQuant(bLower, q, N, M, n);
        ASSERT_EQ(r.code, 0) << where.str() << " " << r.name;
        EXPECT_GE(r.frac, 0.0) << where.str();
        EXPECT_LE(r.frac, 1.0) << where.str();
        const double sign = bLower ? 1.0 : -1.0;
        const double e = std::fabs((static_cast<double>(r.k) + sign * r.frac) -
                                   (static_cast<double>(kRef) + sign * fracRef));
        std::ostringstream text;
        text.precision(17);
        text << where.str() << " k=" << r.k << " frac=" << r.frac << " (reference " << kRef << ", "
             << fracRef << ")";
        worst.mUpdate(e, 0.0, text.str());
        EXPECT_LE(e, 1e-7) << text.str();
        if (bStep)
            ++lSteps;
        else
            EXPECT_EQ(r.k, kRef) << text.str();
    }
    EXPECT_GT(lSteps, 50);
    std::cout << worst.mReport() << " (" << table.rows.size() << " quantiles, " << lSteps
              << " on a step)" << std::endl;
    RecordProperty("worst_position", worst.mReport());
}
