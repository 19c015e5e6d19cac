// Speed of the normal distribution function, nanoseconds per call, over two
// fixed arrays of arguments: standard scores as data give them (roughly
// normal, |x| mostly below 4) and far-tail points (5 <= |x| <= 35).  Each
// array is put to mNormalCdf and, where installed, to R's standalone math
// library (pnorm) and to Boost.Math (cdf of normal_distribution, with
// promotion of double to long double switched off, its fastest double
// setting), lower and upper tail alike.
#include "qel/normal.h"

#include <benchmark/benchmark.h>

#include "bench_support.h"

#include <cstdint>
#include <vector>

#if defined(QEL_BENCH_HAVE_RMATH)
#include <Rmath.h>
#endif

#if defined(QEL_BENCH_HAVE_BOOST_MATH)
#include <boost/math/distributions/normal.hpp>
#endif

namespace
{
using qelbench::kCount;

using qelbench::Lcg;

const std::vector<double>& mCentralArguments()
{
    static const std::vector<double> vd = [] {
        Lcg lcg;
        std::vector<double> v(kCount);
        // The sum of twelve uniforms less six: near-normal scores in (-6, 6).
        for (double& d : v)
        {
            double s = -6.0;
            for (int k = 0; k < 12; ++k)
                s += lcg.mNext();
            d = s;
        }
        return v;
    }();
    return vd;
}

const std::vector<double>& mTailArguments()
{
    static const std::vector<double> vd = [] {
        Lcg lcg;
        std::vector<double> v(kCount);
        for (double& d : v)
        {
            const double dMagnitude = 5.0 + 30.0 * lcg.mNext();
            d = lcg.mNext() < 0.5 ? -dMagnitude : dMagnitude;
        }
        return v;
    }();
    return vd;
}

template <class F>
void mRun(benchmark::State& state, const std::vector<double>& rvdX, F f)
{
    for (auto _ : state)
    {
        double dSum = 0.0;
        for (double x : rvdX)
            dSum += f(x);
        benchmark::DoNotOptimize(dSum);
    }
    state.counters["ns_per_call"] =
        benchmark::Counter(static_cast<double>(rvdX.size()),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void BM_NormalCdf_Qel_Central_Lower(benchmark::State& state)
{
    mRun(state, mCentralArguments(), [](double x) { return mNormalCdf(x, 0.0, 1.0, false); });
}
void BM_NormalCdf_Qel_Central_Upper(benchmark::State& state)
{
    mRun(state, mCentralArguments(), [](double x) { return mNormalCdf(x, 0.0, 1.0, true); });
}
void BM_NormalCdf_Qel_Tail_Upper(benchmark::State& state)
{
    mRun(state, mTailArguments(), [](double x) { return mNormalCdf(x, 0.0, 1.0, true); });
}
BENCHMARK(BM_NormalCdf_Qel_Central_Lower);
BENCHMARK(BM_NormalCdf_Qel_Central_Upper);
BENCHMARK(BM_NormalCdf_Qel_Tail_Upper);

#if defined(QEL_BENCH_HAVE_RMATH)
void BM_NormalCdf_Rmath_Central_Lower(benchmark::State& state)
{
    mRun(state, mCentralArguments(), [](double x) { return pnorm(x, 0.0, 1.0, 1, 0); });
}
void BM_NormalCdf_Rmath_Central_Upper(benchmark::State& state)
{
    mRun(state, mCentralArguments(), [](double x) { return pnorm(x, 0.0, 1.0, 0, 0); });
}
void BM_NormalCdf_Rmath_Tail_Upper(benchmark::State& state)
{
    mRun(state, mTailArguments(), [](double x) { return pnorm(x, 0.0, 1.0, 0, 0); });
}
BENCHMARK(BM_NormalCdf_Rmath_Central_Lower);
BENCHMARK(BM_NormalCdf_Rmath_Central_Upper);
BENCHMARK(BM_NormalCdf_Rmath_Tail_Upper);
#endif

#if defined(QEL_BENCH_HAVE_BOOST_MATH)
using BoostPolicy = boost::math::policies::policy<boost::math::policies::promote_double<false>>;
using BoostNormal = boost::math::normal_distribution<double, BoostPolicy>;

void BM_NormalCdf_Boost_Central_Lower(benchmark::State& state)
{
    const BoostNormal dist(0.0, 1.0);
    mRun(state, mCentralArguments(), [&](double x) { return boost::math::cdf(dist, x); });
}
void BM_NormalCdf_Boost_Central_Upper(benchmark::State& state)
{
    const BoostNormal dist(0.0, 1.0);
    mRun(state, mCentralArguments(),
         [&](double x) { return boost::math::cdf(boost::math::complement(dist, x)); });
}
void BM_NormalCdf_Boost_Tail_Upper(benchmark::State& state)
{
    const BoostNormal dist(0.0, 1.0);
    mRun(state, mTailArguments(),
         [&](double x) { return boost::math::cdf(boost::math::complement(dist, x)); });
}
BENCHMARK(BM_NormalCdf_Boost_Central_Lower);
BENCHMARK(BM_NormalCdf_Boost_Central_Upper);
BENCHMARK(BM_NormalCdf_Boost_Tail_Upper);
#endif

} // namespace
