// Speed of the gamma kernels, nanoseconds per call, over fixed arrays of
// arguments: the central tails (gamma_df), the noncentral distribution
// function (gamma_ncdf) and the two quantiles.  The same questions go, where
// installed, to R's standalone math library (pgamma, pnchisq on the doubled
// arguments, qgamma) and to Boost.Math (gamma_p, gamma_q, the noncentral
// chi-square cdf, gamma_p_inv, gamma_q_inv, with promotion of double to long
// double switched off).  The kernels are internal, so this file is built
// against the library's objects.
#include "qelmath/kernels/gamma.h"
#include "qelmath/kernels/gamma_core.h"

#include <benchmark/benchmark.h>

#include "bench_support.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#if defined(QEL_BENCH_HAVE_RMATH)
#include <Rmath.h>
#endif

#if defined(QEL_BENCH_HAVE_BOOST_MATH)
#include <boost/math/distributions/non_central_chi_squared.hpp>
#include <boost/math/special_functions/gamma.hpp>
#endif

namespace
{
using qelbench::kCount;

using qelbench::Lcg;

struct Args
{
    double a;
    double b;
    double c;
};

// Central: shapes log-uniform in [0.5, 200], x = a + sqrt(a) z with z
// uniform in (-3, 4), kept positive.
const std::vector<Args>& mCentralArguments()
{
    static const std::vector<Args> v = [] {
        Lcg lcg;
        std::vector<Args> out(kCount);
        for (Args& r : out)
        {
            r.a = 0.5 * std::pow(400.0, lcg.mNext());
            const double z = -3.0 + 7.0 * lcg.mNext();
            r.b = std::max(0.01 * r.a, r.a + std::sqrt(r.a) * z);
            r.c = 0.0;
        }
        return out;
    }();
    return v;
}

// Noncentral: shape log-uniform in [0.5, 50], noncentrality log-uniform in
// [0.1, 100], x = mean + sd z with z uniform in (-2, 4), kept positive.
const std::vector<Args>& mNoncentralArguments()
{
    static const std::vector<Args> v = [] {
        Lcg lcg;
        std::vector<Args> out(kCount);
        for (Args& r : out)
        {
            r.a = 0.5 * std::pow(100.0, lcg.mNext());
            r.c = 0.1 * std::pow(1000.0, lcg.mNext());
            const double mean = r.a + r.c;
            const double sd = std::sqrt(r.a + 2.0 * r.c);
            const double z = -2.0 + 6.0 * lcg.mNext();
            r.b = std::max(0.01 * mean, mean + sd * z);
        }
        return out;
    }();
    return v;
}

// Quantiles: shapes log-uniform in [0.5, 200], p log-uniform in [1e-8, 0.5].
const std::vector<Args>& mQuantileArguments()
{
    static const std::vector<Args> v = [] {
        Lcg lcg;
        std::vector<Args> out(kCount);
        for (Args& r : out)
        {
            r.a = 0.5 * std::pow(400.0, lcg.mNext());
            r.b = 1e-8 * std::pow(0.5e8, lcg.mNext());
            r.c = 0.0;
        }
        return out;
    }();
    return v;
}

template <class F>
void mRun(benchmark::State& state, const std::vector<Args>& rvArgs, F f)
{
    for (auto _ : state)
    {
        double dSum = 0.0;
        for (const Args& r : rvArgs)
            dSum += f(r);
        benchmark::DoNotOptimize(dSum);
    }
    state.counters["ns_per_call"] =
        benchmark::Counter(static_cast<double>(rvArgs.size()),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

double mQelGammaLower(const Args& r)
{
    double lower, upper, density;
    gamma_df(r.b, r.a, &lower, &upper, &density);
    return lower;
}

double mQelGammaUpper(const Args& r)
{
    double lower, upper, density;
    gamma_df(r.b, r.a, &lower, &upper, &density);
    return upper;
}

double mQelNcdfLower(const Args& r)
{
    double lower, upper;
    gamma_ncdf(r.b, r.a, r.c, &lower, &upper);
    return lower;
}

double mQelLowerQuant(const Args& r)
{
    double x;
    gamma_lower_quant(r.b, r.a, &x);
    return x;
}

double mQelUpperQuant(const Args& r)
{
    double x;
    gamma_upper_quant(r.b, r.a, &x);
    return x;
}

void BM_GammaDf_Qel_Lower(benchmark::State& state)
{
    mRun(state, mCentralArguments(), mQelGammaLower);
}
void BM_GammaDf_Qel_Upper(benchmark::State& state)
{
    mRun(state, mCentralArguments(), mQelGammaUpper);
}
void BM_GammaNcdf_Qel(benchmark::State& state)
{
    mRun(state, mNoncentralArguments(), mQelNcdfLower);
}
void BM_GammaLowerQuant_Qel(benchmark::State& state)
{
    mRun(state, mQuantileArguments(), mQelLowerQuant);
}
void BM_GammaUpperQuant_Qel(benchmark::State& state)
{
    mRun(state, mQuantileArguments(), mQelUpperQuant);
}
BENCHMARK(BM_GammaDf_Qel_Lower);
BENCHMARK(BM_GammaDf_Qel_Upper);
BENCHMARK(BM_GammaNcdf_Qel);
BENCHMARK(BM_GammaLowerQuant_Qel);
BENCHMARK(BM_GammaUpperQuant_Qel);

#if defined(QEL_BENCH_HAVE_RMATH)
void BM_GammaDf_Rmath_Lower(benchmark::State& state)
{
    mRun(state, mCentralArguments(), [](const Args& r) { return pgamma(r.b, r.a, 1.0, 1, 0); });
}
void BM_GammaDf_Rmath_Upper(benchmark::State& state)
{
    mRun(state, mCentralArguments(), [](const Args& r) { return pgamma(r.b, r.a, 1.0, 0, 0); });
}
void BM_GammaNcdf_Rmath(benchmark::State& state)
{
    // The noncentral gamma at (x, a, delta) is the noncentral chi-square at
    // (2x, 2a, 2 delta).
    mRun(state, mNoncentralArguments(),
         [](const Args& r) { return pnchisq(2.0 * r.b, 2.0 * r.a, 2.0 * r.c, 1, 0); });
}
void BM_GammaLowerQuant_Rmath(benchmark::State& state)
{
    mRun(state, mQuantileArguments(), [](const Args& r) { return qgamma(r.b, r.a, 1.0, 1, 0); });
}
void BM_GammaUpperQuant_Rmath(benchmark::State& state)
{
    mRun(state, mQuantileArguments(), [](const Args& r) { return qgamma(r.b, r.a, 1.0, 0, 0); });
}
BENCHMARK(BM_GammaDf_Rmath_Lower);
BENCHMARK(BM_GammaDf_Rmath_Upper);
BENCHMARK(BM_GammaNcdf_Rmath);
BENCHMARK(BM_GammaLowerQuant_Rmath);
BENCHMARK(BM_GammaUpperQuant_Rmath);
#endif

#if defined(QEL_BENCH_HAVE_BOOST_MATH)
using BoostGammaPolicy = boost::math::policies::policy<boost::math::policies::promote_double<false>>;

void BM_GammaDf_Boost_Lower(benchmark::State& state)
{
    mRun(state, mCentralArguments(),
         [](const Args& r) { return boost::math::gamma_p(r.a, r.b, BoostGammaPolicy()); });
}
void BM_GammaDf_Boost_Upper(benchmark::State& state)
{
    mRun(state, mCentralArguments(),
         [](const Args& r) { return boost::math::gamma_q(r.a, r.b, BoostGammaPolicy()); });
}
void BM_GammaNcdf_Boost(benchmark::State& state)
{
    mRun(state, mNoncentralArguments(), [](const Args& r) {
        const boost::math::non_central_chi_squared_distribution<double, BoostGammaPolicy> dist(
            2.0 * r.a, 2.0 * r.c);
        return boost::math::cdf(dist, 2.0 * r.b);
    });
}
void BM_GammaLowerQuant_Boost(benchmark::State& state)
{
    mRun(state, mQuantileArguments(),
         [](const Args& r) { return boost::math::gamma_p_inv(r.a, r.b, BoostGammaPolicy()); });
}
void BM_GammaUpperQuant_Boost(benchmark::State& state)
{
    mRun(state, mQuantileArguments(),
         [](const Args& r) { return boost::math::gamma_q_inv(r.a, r.b, BoostGammaPolicy()); });
}
BENCHMARK(BM_GammaDf_Boost_Lower);
BENCHMARK(BM_GammaDf_Boost_Upper);
BENCHMARK(BM_GammaNcdf_Boost);
BENCHMARK(BM_GammaLowerQuant_Boost);
BENCHMARK(BM_GammaUpperQuant_Boost);
#endif

} // namespace
