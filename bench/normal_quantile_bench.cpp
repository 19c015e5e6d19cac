// Speed of the normal quantile, nanoseconds per call, over three fixed arrays
// of probabilities: uniform on (0, 1) as a sampler or a confidence limit asks
// them, tails 1e-100 <= p <= 1e-5 (the quantile kernel's Newton iteration on
// the incomplete gamma ratio), and the far tail 4.2e-284 <= p < 1e-100 (root
// finding on the distribution function).  Each array is put to mNormalInvCdf
// and, where installed, to R's standalone math library (qnorm) and to
// Boost.Math (quantile of normal_distribution, with promotion of double to
// long double switched off, its fastest double setting).
#include "qel/normal.h"

#include <benchmark/benchmark.h>

#include "bench_support.h"

#include <cmath>
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

// Probabilities 10^-e with the exponent e uniform on [dFrom, dTo].
std::vector<double> mDecades(std::uint64_t uSeed, double dFrom, double dTo)
{
    qelbench::Lcg u(uSeed);
    std::vector<double> v(kCount);
    for (double& d : v)
        d = std::pow(10.0, -(dFrom + (dTo - dFrom) * u.mNextPositive()));
    return v;
}

const std::vector<double>& mCentralProbabilities()
{
    static const std::vector<double> vd = []
    {
        qelbench::Lcg u(20261121ULL);
        std::vector<double> v(kCount);
        for (double& d : v)
            d = u.mNextPositive();
        return v;
    }();
    return vd;
}

const std::vector<double>& mTailProbabilities()
{
    static const std::vector<double> vd = mDecades(7ULL, 5.0, 100.0);
    return vd;
}

const std::vector<double>& mFarTailProbabilities()
{
    static const std::vector<double> vd = mDecades(11ULL, 100.01, 283.37);
    return vd;
}

template <class F> void mRun(benchmark::State& state, const std::vector<double>& rvdP, F f)
{
    for (auto _ : state)
    {
        double dSum = 0.0;
        for (double p : rvdP)
            dSum += f(p);
        benchmark::DoNotOptimize(dSum);
    }
    state.counters["ns_per_call"] = benchmark::Counter(
        static_cast<double>(rvdP.size()),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

double mQel(double p)
{
    return mNormalInvCdf(p, 0.0, 1.0);
}

void BM_NormalQuantile_Qel_Central(benchmark::State& state)
{
    mRun(state, mCentralProbabilities(), mQel);
}
void BM_NormalQuantile_Qel_Tail(benchmark::State& state)
{
    mRun(state, mTailProbabilities(), mQel);
}
void BM_NormalQuantile_Qel_FarTail(benchmark::State& state)
{
    mRun(state, mFarTailProbabilities(), mQel);
}
BENCHMARK(BM_NormalQuantile_Qel_Central);
BENCHMARK(BM_NormalQuantile_Qel_Tail);
BENCHMARK(BM_NormalQuantile_Qel_FarTail);

#if defined(QEL_BENCH_HAVE_RMATH)
double mR(double p)
{
    return qnorm(p, 0.0, 1.0, 1, 0);
}

void BM_NormalQuantile_Rmath_Central(benchmark::State& state)
{
    mRun(state, mCentralProbabilities(), mR);
}
void BM_NormalQuantile_Rmath_Tail(benchmark::State& state)
{
    mRun(state, mTailProbabilities(), mR);
}
void BM_NormalQuantile_Rmath_FarTail(benchmark::State& state)
{
    mRun(state, mFarTailProbabilities(), mR);
}
BENCHMARK(BM_NormalQuantile_Rmath_Central);
BENCHMARK(BM_NormalQuantile_Rmath_Tail);
BENCHMARK(BM_NormalQuantile_Rmath_FarTail);
#endif

#if defined(QEL_BENCH_HAVE_BOOST_MATH)
using BoostPolicy = boost::math::policies::policy<boost::math::policies::promote_double<false>>;
using BoostNormal = boost::math::normal_distribution<double, BoostPolicy>;

void mRunBoost(benchmark::State& state, const std::vector<double>& rvdP)
{
    const BoostNormal dist(0.0, 1.0);
    mRun(state, rvdP, [&](double p) { return boost::math::quantile(dist, p); });
}
void BM_NormalQuantile_Boost_Central(benchmark::State& state)
{
    mRunBoost(state, mCentralProbabilities());
}
void BM_NormalQuantile_Boost_Tail(benchmark::State& state)
{
    mRunBoost(state, mTailProbabilities());
}
void BM_NormalQuantile_Boost_FarTail(benchmark::State& state)
{
    mRunBoost(state, mFarTailProbabilities());
}
BENCHMARK(BM_NormalQuantile_Boost_Central);
BENCHMARK(BM_NormalQuantile_Boost_Tail);
BENCHMARK(BM_NormalQuantile_Boost_FarTail);
#endif

} // namespace
