// Speed of the hypergeometric kernels, nanoseconds per call, over fixed
// arrays of arguments: both tails and the mass (hypergeo_df) and the two
// quantiles.  The same questions go, where installed, to R's standalone math
// library (phyper, qhyper).  The kernels are internal, so this file is built
// against the library's objects.
#include "qelmath/kernels/hypergeo.h"

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
    std::uint32_t k;
    std::uint32_t N;
    std::uint32_t M;
    std::uint32_t n;
    double q;
};

// N log-uniform in [20, 1e6]; M and n uniform in (0.02 N, 0.98 N); k at
// mean + sd z with z uniform in (-3, 4), kept in the support; q log-uniform
// in [1e-8, 0.5].
const std::vector<Args>& mArguments()
{
    static const std::vector<Args> v = []
    {
        Lcg lcg;
        std::vector<Args> out(kCount);
        for (Args& r : out)
        {
            const double N = std::floor(20.0 * std::pow(50000.0, lcg.mNext()));
            const double M = std::max(1.0, std::floor(N * (0.02 + 0.96 * lcg.mNext())));
            const double n = std::max(1.0, std::floor(N * (0.02 + 0.96 * lcg.mNext())));
            const double mean = n * M / N;
            const double sd = std::sqrt(mean * (N - M) * (N - n) / (N * (N - 1.0)));
            const double lo = std::max(0.0, n + M - N);
            const double hi = std::min(M, n);
            const double z = -3.0 + 7.0 * lcg.mNext();
            r.N = static_cast<std::uint32_t>(N);
            r.M = static_cast<std::uint32_t>(M);
            r.n = static_cast<std::uint32_t>(n);
            r.k = static_cast<std::uint32_t>(std::min(hi, std::max(lo, std::floor(mean + sd * z))));
            r.q = 0.5 * std::pow(2e-8, lcg.mNext());
        }
        return out;
    }();
    return v;
}

void BM_HypergeoDf(benchmark::State& state)
{
    const std::vector<Args>& args = mArguments();
    for (auto _ : state)
    {
        for (const Args& a : args)
        {
            double lower = 0.0, upper = 0.0, mass = 0.0;
            hypergeo_df(a.k, a.N, a.M, a.n, &lower, &upper, &mass);
            benchmark::DoNotOptimize(lower);
            benchmark::DoNotOptimize(upper);
            benchmark::DoNotOptimize(mass);
        }
    }
    state.SetItemsProcessed(state.iterations() * kCount);
    state.counters["ns_per_call"] =
        benchmark::Counter(static_cast<double>(state.iterations() * kCount),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_HypergeoDf);

template <bool bLower> void BM_HypergeoQuant(benchmark::State& state)
{
    const std::vector<Args>& args = mArguments();
    for (auto _ : state)
    {
        for (const Args& a : args)
        {
            std::uint32_t k = 0;
            double frac = 0.0;
            if (bLower)
                hypergeo_lower_quant(a.q, a.N, a.M, a.n, &k, &frac);
            else
                hypergeo_upper_quant(a.q, a.N, a.M, a.n, &k, &frac);
            benchmark::DoNotOptimize(k);
            benchmark::DoNotOptimize(frac);
        }
    }
    state.counters["ns_per_call"] =
        benchmark::Counter(static_cast<double>(state.iterations() * kCount),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK_TEMPLATE(BM_HypergeoQuant, true)->Name("BM_HypergeoLowerQuant");
BENCHMARK_TEMPLATE(BM_HypergeoQuant, false)->Name("BM_HypergeoUpperQuant");

#if defined(QEL_BENCH_HAVE_RMATH)
// R counts the population as m successes and n failures, k drawn.
template <int iLowerTail> void BM_HypergeoRPhyper(benchmark::State& state)
{
    const std::vector<Args>& args = mArguments();
    for (auto _ : state)
    {
        for (const Args& a : args)
            benchmark::DoNotOptimize(
                phyper(a.k, a.M, static_cast<double>(a.N) - a.M, a.n, iLowerTail, 0));
    }
    state.counters["ns_per_call"] =
        benchmark::Counter(static_cast<double>(state.iterations() * kCount),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK_TEMPLATE(BM_HypergeoRPhyper, 1)->Name("BM_HypergeoR_phyper_lower");
BENCHMARK_TEMPLATE(BM_HypergeoRPhyper, 0)->Name("BM_HypergeoR_phyper_upper");

template <int iLowerTail> void BM_HypergeoRQhyper(benchmark::State& state)
{
    const std::vector<Args>& args = mArguments();
    for (auto _ : state)
    {
        for (const Args& a : args)
            benchmark::DoNotOptimize(
                qhyper(a.q, a.M, static_cast<double>(a.N) - a.M, a.n, iLowerTail, 0));
    }
    state.counters["ns_per_call"] =
        benchmark::Counter(static_cast<double>(state.iterations() * kCount),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK_TEMPLATE(BM_HypergeoRQhyper, 1)->Name("BM_HypergeoR_qhyper_lower");
BENCHMARK_TEMPLATE(BM_HypergeoRQhyper, 0)->Name("BM_HypergeoR_qhyper_upper");
#endif
} // namespace
