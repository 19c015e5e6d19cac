// The Poisson kernels: the log mass, every route of poisson_df with its code,
// the series I and J, the two quantiles with their starts and fractions, and
// tails, masses and quantiles against mpmath tables summed term by term.
#include "qelmath/kernels/poisson.h"
#include "qelmath/kernels/kernel_protocol.h"

#include "support/reftable.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <iostream>
#include <limits>
#include <sstream>
#include <string>

namespace
{
const double kNaN = std::numeric_limits<double>::quiet_NaN();

struct PoissonResult
{
    double lower = -7.0;
    double upper = -7.0;
    double mass = -7.0;
    int route = -1;
    int code = -1;
    std::string name;
};

PoissonResult mPoissonDf(std::uint32_t k, double lambda)
{
    PoissonResult r;
    poisson_df(k, lambda, &r.lower, &r.upper, &r.mass);
    r.route = kernel_method_code;
    r.code = kernel_error_code;
    r.name = kernel_routine_name;
    return r;
}

struct QuantResult
{
    std::uint32_t k = 123456;
    double frac = -7.0;
    int code = -1;
    int terms = -1;
    std::string name;
};

QuantResult mLowerQuant(double p, double lambda)
{
    QuantResult q;
    poisson_lower_quant(p, lambda, &q.k, &q.frac);
    q.code = kernel_error_code;
    q.terms = kernel_terms;
    q.name = kernel_routine_name;
    return q;
}

QuantResult mUpperQuant(double p, double lambda)
{
    QuantResult q;
    poisson_upper_quant(p, lambda, &q.k, &q.frac);
    q.code = kernel_error_code;
    q.terms = kernel_terms;
    q.name = kernel_routine_name;
    return q;
}

// log(lambda^k e^-lambda / k!) in long double, for moderate k.
double mDirectLogPmf(int k, double lambda)
{
    long double s = -static_cast<long double>(lambda) + k * std::log(static_cast<long double>(lambda));
    for (int i = 2; i <= k; ++i)
        s -= std::log(static_cast<long double>(i));
    return static_cast<double>(s);
}

double mMass(std::uint32_t k, double lambda)
{
    double lower, upper, mass;
    poisson_df(k, lambda, &lower, &upper, &mass);
    return mass;
}

std::string mWhere(double a, double b)
{
    std::ostringstream os;
    os.precision(17);
    os << a << " " << b;
    return os.str();
}
} // namespace

// ---------------------------------------------------------------------------
// The log mass.

TEST(PoissonLogPmf, CountZeroIsMinusTheMean)
{
    double out = 1.0;
    poisson_log_pmf(0.0, 3.75, &out);
    EXPECT_EQ(out, -3.75);
    poisson_log_pmf(0.0, 0.0, &out);
    EXPECT_EQ(out, 0.0);
}

TEST(PoissonLogPmf, MatchesTheDirectSumOfLogarithms)
{
    for (double lambda : {1e-3, 0.5, 1.0, 1.5, 7.0, 40.0, 300.0})
    {
        for (int k : {1, 2, 3, 7, 20, 100, 400})
        {
            double out = 0.0;
            poisson_log_pmf(k, lambda, &out);
            const double ref = mDirectLogPmf(k, lambda);
            EXPECT_LT(std::fabs(out - ref), 1e-12 * (1.0 + std::fabs(ref))) << lambda << " " << k;
        }
    }
}

TEST(PoissonLogPmf, NegativeArgumentsSetErrnoAndGiveTheNegativeSentinel)
{
    double out = 0.0;
    errno = 0;
    poisson_log_pmf(2.0, -1.0, &out);
    EXPECT_EQ(errno, 33);
    EXPECT_EQ(out, -1.7976931348623157e+308);
    errno = 0;
    poisson_log_pmf(-1.0, 2.0, &out);
    EXPECT_EQ(errno, 33);
    // A positive count has no mass at mean 0.
    poisson_log_pmf(3.0, 0.0, &out);
    EXPECT_EQ(out, -1.7976931348623157e+308);
}

// ---------------------------------------------------------------------------
// poisson_df: arguments and routes.

TEST(PoissonDf, BadArgumentsForceCodeTwoAndLeaveTheSlots)
{
    const double lambdas[] = {-1.0, 94906265.5, kNaN};
    for (double lambda : lambdas)
    {
        const PoissonResult r = mPoissonDf(3, lambda);
        EXPECT_EQ(r.code, 2) << lambda;
        EXPECT_EQ(r.name, "poisson_df");
        EXPECT_EQ(r.lower, -7.0);
        EXPECT_EQ(r.upper, -7.0);
        EXPECT_EQ(r.mass, -7.0);
    }
    const PoissonResult big = mPoissonDf(94906266u, 5.0);
    EXPECT_EQ(big.code, 2);
    EXPECT_EQ(big.mass, -7.0);
    // The largest count and mean are admitted.
    EXPECT_EQ(mPoissonDf(94906265u, 94906265.0).code, 0);
}

TEST(PoissonDf, ZeroMeanHasAllItsMassAtZero)
{
    const PoissonResult r0 = mPoissonDf(0, 0.0);
    EXPECT_EQ(r0.mass, 1.0);
    EXPECT_EQ(r0.lower, 1.0);
    EXPECT_EQ(r0.upper, 0.0);
    EXPECT_EQ(r0.route, 1);
    EXPECT_EQ(r0.code, 0);
    const PoissonResult r5 = mPoissonDf(5, 0.0);
    EXPECT_EQ(r5.mass, 0.0);
    EXPECT_EQ(r5.lower, 1.0);
    EXPECT_EQ(r5.upper, 0.0);
    EXPECT_EQ(r5.route, 1);
    EXPECT_EQ(r5.code, 0);
}

TEST(PoissonDf, CountAboveTheMeanSumsTheUpperTail)
{
    const PoissonResult r = mPoissonDf(15, 10.0);
    EXPECT_EQ(r.route, 20);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.lower, 1.0 - r.upper);
    // Exact by summation of the masses beyond 15.
    double s = 0.0;
    double t = std::exp(mDirectLogPmf(16, 10.0));
    for (int i = 16; i < 200; ++i)
    {
        s += t;
        t *= 10.0 / (i + 1);
    }
    EXPECT_LT(std::fabs(r.upper - s) / s, 2e-9);
    EXPECT_LT(std::fabs(r.mass - std::exp(mDirectLogPmf(15, 10.0))), 1e-15);
}

TEST(PoissonDf, CountBelowTheMeanSumsTheLowerTail)
{
    const PoissonResult r = mPoissonDf(5, 10.0);
    EXPECT_EQ(r.route, 10);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.upper, 1.0 - r.lower);
    double s = 0.0;
    for (int i = 0; i <= 5; ++i)
        s += std::exp(mDirectLogPmf(i, 10.0));
    EXPECT_LT(std::fabs(r.lower - s) / s, 2e-9);
    // k = lambda - 1 exactly still takes the lower tail; just above, the upper.
    EXPECT_EQ(mPoissonDf(9, 10.0).route, 10);
    EXPECT_EQ(mPoissonDf(9, 9.999).route, 20);
}

TEST(PoissonDf, NegligibleTailsAreExactZerosWithCodeOne)
{
    // By the bound, without running the series.
    const PoissonResult r21 = mPoissonDf(1000000, 0.5);
    EXPECT_EQ(r21.route, 21);
    EXPECT_EQ(r21.code, 1);
    EXPECT_EQ(r21.upper, 0.0);
    EXPECT_EQ(r21.lower, 1.0);
    EXPECT_EQ(r21.mass, 0.0);
    const PoissonResult r11 = mPoissonDf(100, 1e6);
    EXPECT_EQ(r11.route, 11);
    EXPECT_EQ(r11.code, 1);
    EXPECT_EQ(r11.lower, 0.0);
    EXPECT_EQ(r11.upper, 1.0);
    // After the series: points found where the mass is below the floor, the
    // bound is not, and the series settles it either way.
    const PoissonResult r22 = mPoissonDf(48487, 40932.976722802581);
    EXPECT_EQ(r22.route, 22);
    EXPECT_EQ(r22.code, 1);
    EXPECT_EQ(r22.upper, 0.0);
    EXPECT_EQ(r22.lower, 1.0);
    const PoissonResult r12 = mPoissonDf(469801, 495103.82669189054);
    EXPECT_EQ(r12.route, 12);
    EXPECT_EQ(r12.code, 1);
    EXPECT_EQ(r12.lower, 0.0);
    EXPECT_EQ(r12.upper, 1.0);
}

TEST(PoissonDf, TailsJustAboveTheFloorComeFromTheSeriesInLogarithms)
{
    const PoissonResult r23 = mPoissonDf(13837, 1e4);
    EXPECT_EQ(r23.route, 23);
    EXPECT_EQ(r23.code, 0);
    EXPECT_GT(r23.upper, 0.0);
    EXPECT_LT(r23.upper, 1e-280);
    EXPECT_EQ(r23.mass, 0.0);
    const PoissonResult r13 = mPoissonDf(6599, 1e4);
    EXPECT_EQ(r13.route, 13);
    EXPECT_EQ(r13.code, 0);
    EXPECT_GT(r13.lower, 0.0);
    EXPECT_LT(r13.lower, 1e-280);
}

// ---------------------------------------------------------------------------
// The series.

TEST(PoissonSeries, IAndJMatchTheirDirectSums)
{
    double I = 0.0, J = 0.0;
    ASSERT_EQ(poisson_Ik(7, 3.0, &I), 0);
    double s = 0.0, t = 1.0;
    for (int j = 1; j < 100; ++j)
    {
        t *= 3.0 / (7 + j);
        s += t;
    }
    EXPECT_LT(std::fabs(I - s) / s, 1e-9);
    EXPECT_GT(kernel_terms, 0);

    ASSERT_EQ(poisson_Jk(6, 10.0, &J), 0);
    s = 1.0;
    t = 1.0;
    for (int j = 0; j < 6; ++j)
    {
        t *= (6.0 - j) / 10.0;
        s += t;
    }
    EXPECT_LT(std::fabs(J - s) / s, 1e-15);
    EXPECT_EQ(kernel_terms, 7);
    ASSERT_EQ(poisson_Jk(0, 10.0, &J), 0);
    EXPECT_EQ(J, 1.0);
}

TEST(PoissonSeries, ScansThatDoNotEndReturnFour)
{
    double I = -7.0, J = -7.0;
    kernel_enter("test");
    EXPECT_EQ(poisson_Ik(0, 1e300, &I), 4);
    EXPECT_EQ(kernel_error_code, 4);
    EXPECT_STREQ(kernel_routine_name, "poisson_Ik");
    EXPECT_EQ(kernel_terms, 0);
    EXPECT_EQ(I, -7.0);
    kernel_enter("test");
    EXPECT_EQ(poisson_Jk(4000000000u, 1.0, &J), 4);
    EXPECT_EQ(kernel_error_code, 4);
    EXPECT_STREQ(kernel_routine_name, "poisson_Jk");
    EXPECT_EQ(J, -7.0);
}

// ---------------------------------------------------------------------------
// Quantiles.

TEST(PoissonQuant, BadArgumentsForceCodeTwoAndLeaveTheSlots)
{
    const double bad[][2] = {{0.1, -1.0}, {0.1, 94906265.5}, {9e-13, 3.0}, {0.5000001, 3.0},
                             {kNaN, 3.0}, {0.1, kNaN}};
    for (const auto& b : bad)
    {
        const QuantResult l = mLowerQuant(b[0], b[1]);
        EXPECT_EQ(l.code, 2) << b[0] << " " << b[1];
        EXPECT_EQ(l.name, "poisson_lower_quant");
        EXPECT_EQ(l.k, 123456u);
        EXPECT_EQ(l.frac, -7.0);
        const QuantResult u = mUpperQuant(b[0], b[1]);
        EXPECT_EQ(u.code, 2);
        EXPECT_EQ(u.name, "poisson_upper_quant");
        EXPECT_EQ(u.k, 123456u);
        EXPECT_EQ(u.frac, -7.0);
    }
}

TEST(PoissonQuant, MeanThirtySixStartsFromTheMassAtZero)
{
    // From the count 0 the walk to the median takes 34 steps, and no nested
    // kernel is entered, so the name stays the routine's own.
    const QuantResult q = mLowerQuant(0.3, 36.0);
    EXPECT_EQ(q.code, 0);
    EXPECT_EQ(q.k, 33u);
    EXPECT_EQ(q.terms, 34);
    EXPECT_EQ(q.name, "poisson_lower_quant");
}

TEST(PoissonQuant, MeanAboveThirtySixStartsFromTheNormalApproximation)
{
    // The start is the Cornish-Fisher count: a few steps, and the last kernel
    // entered is the poisson_df of the start.
    const QuantResult q = mLowerQuant(0.3, 36.5);
    EXPECT_EQ(q.code, 0);
    EXPECT_EQ(q.k, 33u);
    EXPECT_LE(q.terms, 3);
    EXPECT_EQ(q.name, "poisson_df");
}

TEST(PoissonQuant, ZeroMeanGivesCountZero)
{
    const QuantResult l = mLowerQuant(0.25, 0.0);
    EXPECT_EQ(l.code, 0);
    EXPECT_EQ(l.k, 0u);
    EXPECT_EQ(l.frac, 0.25);
    const QuantResult u = mUpperQuant(0.25, 0.0);
    EXPECT_EQ(u.code, 0);
    EXPECT_EQ(u.k, 0u);
    EXPECT_EQ(u.frac, 0.25);
}

TEST(PoissonQuant, ExactCountsAndFractionsAgainstSummedMasses)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("poisson_quantiles.txt");
    ASSERT_GT(table.rows.size(), 250u);
    qeltest::WorstError worstLower("poisson_lower_quant fraction", "absolute");
    qeltest::WorstError worstUpper("poisson_upper_quant fraction", "absolute");
    for (const std::vector<double>& row : table.rows)
    {
        ASSERT_EQ(row.size(), 6u);
        const double lambda = row[0], p = row[1], fL = row[3], fU = row[5];
        const std::uint32_t kL = static_cast<std::uint32_t>(row[2]);
        const std::uint32_t kU = static_cast<std::uint32_t>(row[4]);
        const std::string where = "lambda p = " + mWhere(lambda, p);

        // The fraction divides p - S by the mass, S a tail good to about
        // 1e-9 relative: its error is about 1e-9 p / P(X = k).
        const QuantResult l = mLowerQuant(p, lambda);
        ASSERT_EQ(l.code, 0) << where;
        EXPECT_EQ(l.k, kL) << where;
        if (l.k == kL)
        {
            const double bound = 3e-9 * (1.0 + p / mMass(kL, lambda));
            const double e = std::fabs(l.frac - fL);
            worstLower.mUpdate(e, 0.0, where);
            EXPECT_LE(e, bound) << where << " frac " << l.frac << " ref " << fL;
        }
        const QuantResult u = mUpperQuant(p, lambda);
        ASSERT_EQ(u.code, 0) << where;
        EXPECT_EQ(u.k, kU) << where;
        if (u.k == kU)
        {
            const double bound = 3e-9 * (1.0 + p / mMass(kU, lambda));
            const double e = std::fabs(u.frac - fU);
            worstUpper.mUpdate(e, 0.0, where);
            EXPECT_LE(e, bound) << where << " frac " << u.frac << " ref " << fU;
        }
    }
    std::cout << worstLower.mReport() << "\n" << worstUpper.mReport() << std::endl;
    RecordProperty("worst_lower", worstLower.mReport());
    RecordProperty("worst_upper", worstUpper.mReport());
}

// ---------------------------------------------------------------------------
// Tails and mass against mpmath.

TEST(PoissonDf, MatchesSummedMassesForMeansUpToOneMillion)
{
    // The series stop at a term of 1e-9: about 1e-9 relative in the tail
    // computed; the mass is formed in logarithms, whose absolute error grows
    // with the size of the mean.
    const double kTailBound = 2e-9;
    const double kMassBound = 1e-9;
    const qeltest::RefTable table = qeltest::mLoadRefTable("poisson_df.txt");
    ASSERT_GT(table.rows.size(), 200u);
    qeltest::WorstError worstLower("poisson_df lower tail");
    qeltest::WorstError worstUpper("poisson_df upper tail");
    qeltest::WorstError worstMass("poisson_df mass");
    for (const std::vector<double>& row : table.rows)
    {
        ASSERT_EQ(row.size(), 5u);
        const double lambda = row[0], lo = row[2], up = row[3], m = row[4];
        const std::uint32_t k = static_cast<std::uint32_t>(row[1]);
        const PoissonResult r = mPoissonDf(k, lambda);
        const std::string where = "lambda k = " + mWhere(lambda, k);
        ASSERT_LE(r.code, 1) << where;
        if (lo > 1e-280)
        {
            const double e = qeltest::mRelativeError(r.lower, lo);
            worstLower.mUpdate(e, qeltest::mUlpDistance(r.lower, lo), where);
            EXPECT_LE(e, kTailBound) << where << " lower ref " << lo << " got " << r.lower;
        }
        else
        {
            EXPECT_LT(r.lower, 1e-270) << where;
        }
        if (up > 1e-280)
        {
            const double e = qeltest::mRelativeError(r.upper, up);
            worstUpper.mUpdate(e, qeltest::mUlpDistance(r.upper, up), where);
            EXPECT_LE(e, kTailBound) << where << " upper ref " << up << " got " << r.upper;
        }
        else
        {
            EXPECT_LT(r.upper, 1e-270) << where;
        }
        if (m > 1e-280)
        {
            const double e = qeltest::mRelativeError(r.mass, m);
            worstMass.mUpdate(e, qeltest::mUlpDistance(r.mass, m), where);
            EXPECT_LE(e, kMassBound) << where << " mass ref " << m << " got " << r.mass;
        }
        else
        {
            EXPECT_LT(r.mass, 1e-270) << where;
        }
    }
    std::cout << worstLower.mReport() << "\n"
              << worstUpper.mReport() << "\n"
              << worstMass.mReport() << std::endl;
    RecordProperty("worst_lower", worstLower.mReport());
    RecordProperty("worst_upper", worstUpper.mReport());
    RecordProperty("worst_mass", worstMass.mReport());
}
