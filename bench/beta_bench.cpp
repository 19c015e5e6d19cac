// Speed of the beta kernels, nanoseconds per call, over fixed arrays of
// arguments: the central tails and density (beta_df), the noncentral
// distribution function (beta_ncdf, Poisson mean delta) and the two
// quantiles.  The same questions go, where installed, to R's standalone math
// library (pbeta, pnbeta with noncentrality 2 delta, qbeta) and to Boost.Math
// (ibeta, ibetac, the noncentral beta cdf, ibeta_inv, ibetac_inv, with
// promotion of double to long double switched off).  The kernels are
// internal, so this file is built against the library's objects.
#include "qelmath/kernels/beta.h"

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
#include <boost/math/distributions/non_central_beta.hpp>
#include <boost/math/special_functions/beta.hpp>
#endif

namespace
{
using qelbench::kCount;

using qelbench::Lcg;

struct Args
{
    double x;
    double a;
    double b;
    double d;
};

// Shapes log-uniform in [0.5, 500], x at mean + sd z with z uniform in
// (-3, 4), kept inside (0, 1).
const std::vector<Args>& mCentralArguments()
{
    static const std::vector<Args> v = [] {
        Lcg lcg;
        std::vector<Args> out(kCount);
        for (Args& r : out)
        {
            r.a = 0.5 * std::pow(1000.0, lcg.mNext());
            r.b = 0.5 * std::pow(1000.0, lcg.mNext());
            const double s = r.a + r.b;
            const double mean = r.a / s;
            const double sd = std::sqrt(r.a * r.b / (s * s * (s + 1.0)));
            const double z = -3.0 + 7.0 * lcg.mNext();
            r.x = std::min(0.999, std::max(0.001, mean + sd * z));
            r.d = 0.0;
        }
        return out;
    }();
    return v;
}

// Noncentral: shapes log-uniform in [0.5, 50], Poisson mean log-uniform in
// [0.1, 100], x uniform in (0.05, 0.95).
const std::vector<Args>& mNoncentralArguments()
{
    static const std::vector<Args> v = [] {
        Lcg lcg;
        std::vector<Args> out(kCount);
        for (Args& r : out)
        {
            r.a = 0.5 * std::pow(100.0, lcg.mNext());
            r.b = 0.5 * std::pow(100.0, lcg.mNext());
            r.d = 0.1 * std::pow(1000.0, lcg.mNext());
            r.x = 0.05 + 0.9 * lcg.mNext();
        }
        return out;
    }();
    return v;
}

// Quantiles: shapes log-uniform in [0.5, 500], p log-uniform in [1e-8, 0.5].
const std::vector<Args>& mQuantileArguments()
{
    static const std::vector<Args> v = [] {
        Lcg lcg;
        std::vector<Args> out(kCount);
        for (Args& r : out)
        {
            r.a = 0.5 * std::pow(1000.0, lcg.mNext());
            r.b = 0.5 * std::pow(1000.0, lcg.mNext());
            r.x = 1e-8 * std::pow(0.5e8, lcg.mNext());
            r.d = 0.0;
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
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(rvArgs.size()));
}

double mQelLower(const Args& r)
{
    double lower = 0.0, upper = 0.0, density = 0.0;
    beta_df(r.x, r.a, r.b, &lower, &upper, &density);
    return lower;
}

double mQelUpper(const Args& r)
{
    double lower = 0.0, upper = 0.0, density = 0.0;
    beta_df(r.x, r.a, r.b, &lower, &upper, &density);
    return upper;
}

double mQelNcdf(const Args& r)
{
    double lower = 0.0, upper = 0.0;
    beta_ncdf(r.x, r.a, r.b, r.d, &lower, &upper);
    return lower;
}

double mQelLowerQuant(const Args& r)
{
    double x = 0.0;
    beta_lower_quant(r.x, r.a, r.b, &x);
    return x;
}

double mQelUpperQuant(const Args& r)
{
    double x = 0.0;
    beta_upper_quant(r.x, r.a, r.b, &x);
    return x;
}
} // namespace

static void BM_BetaDf_Qel_Lower(benchmark::State& state)
{
    mRun(state, mCentralArguments(), mQelLower);
}
static void BM_BetaDf_Qel_Upper(benchmark::State& state)
{
    mRun(state, mCentralArguments(), mQelUpper);
}
static void BM_BetaNcdf_Qel(benchmark::State& state)
{
    mRun(state, mNoncentralArguments(), mQelNcdf);
}
static void BM_BetaLowerQuant_Qel(benchmark::State& state)
{
    mRun(state, mQuantileArguments(), mQelLowerQuant);
}
static void BM_BetaUpperQuant_Qel(benchmark::State& state)
{
    mRun(state, mQuantileArguments(), mQelUpperQuant);
}
BENCHMARK(BM_BetaDf_Qel_Lower);
BENCHMARK(BM_BetaDf_Qel_Upper);
BENCHMARK(BM_BetaNcdf_Qel);
BENCHMARK(BM_BetaLowerQuant_Qel);
BENCHMARK(BM_BetaUpperQuant_Qel);

#if defined(QEL_BENCH_HAVE_RMATH)
static void BM_BetaDf_Rmath_Lower(benchmark::State& state)
{
    mRun(state, mCentralArguments(), [](const Args& r) { return pbeta(r.x, r.a, r.b, 1, 0); });
}
static void BM_BetaDf_Rmath_Upper(benchmark::State& state)
{
    mRun(state, mCentralArguments(), [](const Args& r) { return pbeta(r.x, r.a, r.b, 0, 0); });
}
static void BM_BetaNcdf_Rmath(benchmark::State& state)
{
    mRun(state, mNoncentralArguments(),
         [](const Args& r) { return pnbeta(r.x, r.a, r.b, 2.0 * r.d, 1, 0); });
}
static void BM_BetaLowerQuant_Rmath(benchmark::State& state)
{
    mRun(state, mQuantileArguments(), [](const Args& r) { return qbeta(r.x, r.a, r.b, 1, 0); });
}
static void BM_BetaUpperQuant_Rmath(benchmark::State& state)
{
    mRun(state, mQuantileArguments(), [](const Args& r) { return qbeta(r.x, r.a, r.b, 0, 0); });
}
BENCHMARK(BM_BetaDf_Rmath_Lower);
BENCHMARK(BM_BetaDf_Rmath_Upper);
BENCHMARK(BM_BetaNcdf_Rmath);
BENCHMARK(BM_BetaLowerQuant_Rmath);
BENCHMARK(BM_BetaUpperQuant_Rmath);
#endif

#if defined(QEL_BENCH_HAVE_BOOST_MATH)
namespace
{
using BoostPolicy =
    boost::math::policies::policy<boost::math::policies::promote_double<false>>;
}
static void BM_BetaDf_Boost_Lower(benchmark::State& state)
{
    mRun(state, mCentralArguments(),
         [](const Args& r) { return boost::math::ibeta(r.a, r.b, r.x, BoostPolicy()); });
}
static void BM_BetaDf_Boost_Upper(benchmark::State& state)
{
    mRun(state, mCentralArguments(),
         [](const Args& r) { return boost::math::ibetac(r.a, r.b, r.x, BoostPolicy()); });
}
static void BM_BetaNcdf_Boost(benchmark::State& state)
{
    mRun(state, mNoncentralArguments(), [](const Args& r) {
        const boost::math::non_central_beta_distribution<double, BoostPolicy> dist(r.a, r.b,
                                                                                   2.0 * r.d);
        return boost::math::cdf(dist, r.x);
    });
}
static void BM_BetaLowerQuant_Boost(benchmark::State& state)
{
    mRun(state, mQuantileArguments(),
         [](const Args& r) { return boost::math::ibeta_inv(r.a, r.b, r.x, BoostPolicy()); });
}
static void BM_BetaUpperQuant_Boost(benchmark::State& state)
{
    mRun(state, mQuantileArguments(),
         [](const Args& r) { return boost::math::ibetac_inv(r.a, r.b, r.x, BoostPolicy()); });
}
BENCHMARK(BM_BetaDf_Boost_Lower);
BENCHMARK(BM_BetaDf_Boost_Upper);
BENCHMARK(BM_BetaNcdf_Boost);
BENCHMARK(BM_BetaLowerQuant_Boost);
BENCHMARK(BM_BetaUpperQuant_Boost);
#endif
