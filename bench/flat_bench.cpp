// Speed of the kernel-backed flat functions, nanoseconds per call, over fixed
// arrays of arguments: the distribution functions and quantiles of the
// Student t (central and noncentral), F, chi-square (central and
// noncentral), gamma and beta families.  The same questions go, where
// installed, to R's standalone math library (pt, pnt, pf, pchisq, pnchisq,
// pgamma, pbeta, qt, qf, qchisq, qgamma, qbeta).  The flat functions add the
// frame (ends, failure rule, polishing of the quantile) to the kernels'
// cost.
#include "qel/kernelbacked.h"

#include <benchmark/benchmark.h>

#include "bench_support.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#if defined(QEL_BENCH_HAVE_RMATH)
#include <Rmath.h>
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
};

// Chi-square: df log-uniform in [0.5, 200], x around df; noncentrality
// uniform in [0, 20] (used by the noncentral runs only).
const std::vector<Args>& mChiSqArguments()
{
    static const std::vector<Args> v = []
    {
        Lcg lcg;
        std::vector<Args> out(kCount);
        for (Args& r : out)
        {
            r.a = 0.5 * std::exp(lcg.mNext() * std::log(400.0));
            r.x = std::max(1e-3, r.a + std::sqrt(2.0 * r.a) * (lcg.mNext() * 7.0 - 3.0));
            r.b = lcg.mNext() * 20.0;
        }
        return out;
    }();
    return v;
}

// Beta: shapes log-uniform in [0.5, 100], x uniform in (0, 1).
const std::vector<Args>& mBetaArguments()
{
    static const std::vector<Args> v = []
    {
        Lcg lcg;
        std::vector<Args> out(kCount);
        for (Args& r : out)
        {
            r.a = 0.5 * std::exp(lcg.mNext() * std::log(200.0));
            r.b = 0.5 * std::exp(lcg.mNext() * std::log(200.0));
            r.x = 0.001 + 0.998 * lcg.mNext();
        }
        return out;
    }();
    return v;
}

// t and F: x = a scaled uniform in (-4, 6) (t) or (0.02, 6) (F); a is the
// (numerator) df log-uniform in [1, 100], b the denominator df log-uniform
// in [2, 200]; the t noncentrality is the F row's x - 1, in (-1, 5).
const std::vector<Args>& mTFArguments()
{
    static const std::vector<Args> v = []
    {
        Lcg lcg;
        std::vector<Args> out(kCount);
        for (Args& r : out)
        {
            r.x = 0.02 + 5.98 * lcg.mNext();
            r.a = std::exp(lcg.mNext() * std::log(100.0));
            r.b = 2.0 * std::exp(lcg.mNext() * std::log(100.0));
        }
        return out;
    }();
    return v;
}

// Probabilities uniform in (1e-6, 1 - 1e-6).
const std::vector<double>& mProbabilities()
{
    static const std::vector<double> v = []
    {
        Lcg lcg;
        std::vector<double> out(kCount);
        for (double& p : out)
            p = 1e-6 + (1.0 - 2e-6) * lcg.mNext();
        return out;
    }();
    return v;
}

template <class F> void mRun(benchmark::State& state, F fn)
{
    for (auto _ : state)
    {
        for (int i = 0; i < kCount; ++i)
            benchmark::DoNotOptimize(fn(i));
    }
    state.counters["ns_per_call"] = benchmark::Counter(
        static_cast<double>(kCount),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void BM_QelChiSqCdf(benchmark::State& s)
{
    const auto& v = mChiSqArguments();
    mRun(s, [&](int i) { return mChiSqCdf(v[i].x, v[i].a, 0.0, false); });
}
void BM_QelChiSqCdfNoncentral(benchmark::State& s)
{
    const auto& v = mChiSqArguments();
    mRun(s, [&](int i) { return mChiSqCdf(v[i].x, v[i].a, v[i].b, false); });
}
void BM_QelGammaCdf(benchmark::State& s)
{
    const auto& v = mChiSqArguments();
    mRun(s, [&](int i) { return mGammaCdf(v[i].x, v[i].a, 1.0, 0.0, false); });
}
void BM_QelBetaCdf(benchmark::State& s)
{
    const auto& v = mBetaArguments();
    mRun(s, [&](int i) { return mBetaCdf(v[i].x, v[i].a, v[i].b, false); });
}
void BM_QelChiSqInvCdf(benchmark::State& s)
{
    const auto& v = mChiSqArguments();
    const auto& p = mProbabilities();
    mRun(s, [&](int i) { return mChiSqInvCdf(p[i], v[i].a, 0.0); });
}
void BM_QelGammaInvCdf(benchmark::State& s)
{
    const auto& v = mChiSqArguments();
    const auto& p = mProbabilities();
    mRun(s, [&](int i) { return mGammaInvCdf(p[i], v[i].a, 1.0, 0.0); });
}
void BM_QelBetaInvCdf(benchmark::State& s)
{
    const auto& v = mBetaArguments();
    const auto& p = mProbabilities();
    mRun(s, [&](int i) { return mBetaInvCdf(p[i], v[i].a, v[i].b); });
}
void BM_QelTCdf(benchmark::State& s)
{
    const auto& v = mTFArguments();
    mRun(s, [&](int i) { return mTCdf(v[i].x * 10.0 / 6.0 - 4.0, v[i].a, 0.0, false); });
}
void BM_QelTCdfNoncentral(benchmark::State& s)
{
    const auto& v = mTFArguments();
    mRun(s, [&](int i) { return mTCdf(v[i].x * 10.0 / 6.0 - 4.0, v[i].a, v[i].x - 1.0, false); });
}
void BM_QelFCdf(benchmark::State& s)
{
    const auto& v = mTFArguments();
    mRun(s, [&](int i) { return mFCdf(v[i].x, v[i].a, v[i].b, 0.0, false); });
}
void BM_QelTInvCdf(benchmark::State& s)
{
    const auto& v = mTFArguments();
    const auto& p = mProbabilities();
    mRun(s, [&](int i) { return mTInvCdf(p[i], v[i].a, 0.0); });
}
void BM_QelFInvCdf(benchmark::State& s)
{
    const auto& v = mTFArguments();
    const auto& p = mProbabilities();
    mRun(s, [&](int i) { return mFInvCdf(p[i], v[i].a, v[i].b, 0.0); });
}
BENCHMARK(BM_QelTCdf);
BENCHMARK(BM_QelTCdfNoncentral);
BENCHMARK(BM_QelFCdf);
BENCHMARK(BM_QelTInvCdf);
BENCHMARK(BM_QelFInvCdf);
BENCHMARK(BM_QelChiSqCdf);
BENCHMARK(BM_QelChiSqCdfNoncentral);
BENCHMARK(BM_QelGammaCdf);
BENCHMARK(BM_QelBetaCdf);
BENCHMARK(BM_QelChiSqInvCdf);
BENCHMARK(BM_QelGammaInvCdf);
BENCHMARK(BM_QelBetaInvCdf);

#if defined(QEL_BENCH_HAVE_RMATH)
void BM_RChiSqCdf(benchmark::State& s)
{
    const auto& v = mChiSqArguments();
    mRun(s, [&](int i) { return pchisq(v[i].x, v[i].a, 1, 0); });
}
void BM_RChiSqCdfNoncentral(benchmark::State& s)
{
    const auto& v = mChiSqArguments();
    mRun(s, [&](int i) { return pnchisq(v[i].x, v[i].a, v[i].b, 1, 0); });
}
void BM_RGammaCdf(benchmark::State& s)
{
    const auto& v = mChiSqArguments();
    mRun(s, [&](int i) { return pgamma(v[i].x, v[i].a, 1.0, 1, 0); });
}
void BM_RBetaCdf(benchmark::State& s)
{
    const auto& v = mBetaArguments();
    mRun(s, [&](int i) { return pbeta(v[i].x, v[i].a, v[i].b, 1, 0); });
}
void BM_RChiSqInvCdf(benchmark::State& s)
{
    const auto& v = mChiSqArguments();
    const auto& p = mProbabilities();
    mRun(s, [&](int i) { return qchisq(p[i], v[i].a, 1, 0); });
}
void BM_RGammaInvCdf(benchmark::State& s)
{
    const auto& v = mChiSqArguments();
    const auto& p = mProbabilities();
    mRun(s, [&](int i) { return qgamma(p[i], v[i].a, 1.0, 1, 0); });
}
void BM_RBetaInvCdf(benchmark::State& s)
{
    const auto& v = mBetaArguments();
    const auto& p = mProbabilities();
    mRun(s, [&](int i) { return qbeta(p[i], v[i].a, v[i].b, 1, 0); });
}
void BM_RTCdf(benchmark::State& s)
{
    const auto& v = mTFArguments();
    mRun(s, [&](int i) { return pt(v[i].x * 10.0 / 6.0 - 4.0, v[i].a, 1, 0); });
}
void BM_RTCdfNoncentral(benchmark::State& s)
{
    const auto& v = mTFArguments();
    mRun(s, [&](int i) { return pnt(v[i].x * 10.0 / 6.0 - 4.0, v[i].a, v[i].x - 1.0, 1, 0); });
}
void BM_RFCdf(benchmark::State& s)
{
    const auto& v = mTFArguments();
    mRun(s, [&](int i) { return pf(v[i].x, v[i].a, v[i].b, 1, 0); });
}
void BM_RTInvCdf(benchmark::State& s)
{
    const auto& v = mTFArguments();
    const auto& p = mProbabilities();
    mRun(s, [&](int i) { return qt(p[i], v[i].a, 1, 0); });
}
void BM_RFInvCdf(benchmark::State& s)
{
    const auto& v = mTFArguments();
    const auto& p = mProbabilities();
    mRun(s, [&](int i) { return qf(p[i], v[i].a, v[i].b, 1, 0); });
}
BENCHMARK(BM_RTCdf);
BENCHMARK(BM_RTCdfNoncentral);
BENCHMARK(BM_RFCdf);
BENCHMARK(BM_RTInvCdf);
BENCHMARK(BM_RFInvCdf);
BENCHMARK(BM_RChiSqCdf);
BENCHMARK(BM_RChiSqCdfNoncentral);
BENCHMARK(BM_RGammaCdf);
BENCHMARK(BM_RBetaCdf);
BENCHMARK(BM_RChiSqInvCdf);
BENCHMARK(BM_RGammaInvCdf);
BENCHMARK(BM_RBetaInvCdf);
#endif
} // namespace
