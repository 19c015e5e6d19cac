// Speed of the discrete flat functions, nanoseconds per call, over fixed
// arrays of arguments: binomial, Poisson and hypergeometric distribution
// functions, the binomial and hypergeometric quantiles, and the two-sided
// binomial and hypergeometric p-values.  Where R's standalone math library is
// installed, the same questions go to pbinom, ppois, phyper, qbinom and qhyper
// (R has no routine for the exact two-sided p-values, which are timed alone).
#include "qel/discrete.h"
#include "qel/pvalues.h"

#include <benchmark/benchmark.h>

#include "bench_support.h"

#include <algorithm>
#include <cmath>
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
    int n;     // binomial trials
    double p;  // binomial success probability
    double x;  // binomial count
    double mu; // Poisson mean
    double k;  // Poisson count
    int pop;   // hypergeometric population
    int succ;  // its successes
    int draws; // the sample drawn
    int hx;    // hypergeometric count
    double q;  // probability for the quantiles
};

double mCountNear(double mean, double sd, double z, double lo, double hi)
{
    return std::min(hi, std::max(lo, std::floor(mean + sd * z)));
}

// Trials log-uniform in [5, 5000] with p uniform in (0.02, 0.98); a Poisson
// mean log-uniform in [0.1, 1e4]; a population log-uniform in [20, 1e5] with
// successes and draws between 2% and 98% of it; each count at its mean plus z
// standard deviations, z uniform in (-3, 3), kept in the support; q
// log-uniform in [1e-8, 0.5].
const std::vector<Args>& mArguments()
{
    static const std::vector<Args> v = [] {
        Lcg lcg;
        std::vector<Args> out(kCount);
        for (Args& r : out)
        {
            r.n = static_cast<int>(std::floor(5.0 * std::pow(1000.0, lcg.mNext())));
            r.p = 0.02 + 0.96 * lcg.mNext();
            const double bmean = r.n * r.p;
            r.x = mCountNear(bmean, std::sqrt(bmean * (1.0 - r.p)), -3.0 + 6.0 * lcg.mNext(), 0.0,
                             r.n);
            r.mu = 0.1 * std::pow(1e5, lcg.mNext());
            r.k = mCountNear(r.mu, std::sqrt(r.mu), -3.0 + 6.0 * lcg.mNext(), 0.0, 1e9);
            r.pop = static_cast<int>(std::floor(20.0 * std::pow(5000.0, lcg.mNext())));
            r.succ = std::max(1, static_cast<int>(r.pop * (0.02 + 0.96 * lcg.mNext())));
            r.draws = std::max(1, static_cast<int>(r.pop * (0.02 + 0.96 * lcg.mNext())));
            const double hmean = static_cast<double>(r.draws) * r.succ / r.pop;
            const double hsd = std::sqrt(hmean * (1.0 - static_cast<double>(r.succ) / r.pop) *
                                         (r.pop - r.draws) / std::max(1, r.pop - 1));
            r.hx = static_cast<int>(mCountNear(hmean, hsd, -3.0 + 6.0 * lcg.mNext(),
                                               std::max(0, r.draws + r.succ - r.pop),
                                               std::min(r.succ, r.draws)));
            r.q = 0.5 * std::pow(2e-8, lcg.mNext());
        }
        return out;
    }();
    return v;
}

template <class F>
void mRun(benchmark::State& state, F f)
{
    const std::vector<Args>& args = mArguments();
    for (auto _ : state)
        for (const Args& a : args)
            benchmark::DoNotOptimize(f(a));
    state.counters["ns_per_call"] =
        benchmark::Counter(static_cast<double>(args.size()),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void BM_BinomialCdf(benchmark::State& s)
{
    mRun(s, [](const Args& a) { return mBinomialCdf(a.x, a.n, a.p, false); });
}
void BM_PoissonCdf(benchmark::State& s)
{
    mRun(s, [](const Args& a) { return mPoissonCdf(a.k, a.mu, false); });
}
void BM_HypergeometricCdf(benchmark::State& s)
{
    mRun(s, [](const Args& a) { return mHypergeometricCdf(a.hx, a.pop, a.succ, a.draws, false); });
}
void BM_BinomialInvCdf(benchmark::State& s)
{
    mRun(s, [](const Args& a) { return mBinomialInvCdf(a.q, a.n, a.p); });
}
void BM_HypergeometricInvCdf(benchmark::State& s)
{
    mRun(s, [](const Args& a) { return mHypergeometricInvCdf(a.q, a.pop, a.succ, a.draws); });
}
void BM_BinomialPValueTwoSided(benchmark::State& s)
{
    mRun(s, [](const Args& a) { return mBinomialPValue(a.x, a.n, a.p, eTwoSided); });
}
void BM_HypergeometricPValueTwoSided(benchmark::State& s)
{
    mRun(s, [](const Args& a) { return mHypergeometricPValue(a.hx, a.pop, a.succ, a.draws, eTwoSided); });
}
BENCHMARK(BM_BinomialCdf);
BENCHMARK(BM_PoissonCdf);
BENCHMARK(BM_HypergeometricCdf);
BENCHMARK(BM_BinomialInvCdf);
BENCHMARK(BM_HypergeometricInvCdf);
BENCHMARK(BM_BinomialPValueTwoSided);
BENCHMARK(BM_HypergeometricPValueTwoSided);

#if defined(QEL_BENCH_HAVE_RMATH)
void BM_R_pbinom(benchmark::State& s)
{
    mRun(s, [](const Args& a) { return pbinom(a.x, a.n, a.p, 1, 0); });
}
void BM_R_ppois(benchmark::State& s)
{
    mRun(s, [](const Args& a) { return ppois(a.k, a.mu, 1, 0); });
}
void BM_R_phyper(benchmark::State& s)
{
    mRun(s, [](const Args& a) { return phyper(a.hx, a.succ, a.pop - a.succ, a.draws, 1, 0); });
}
void BM_R_qbinom(benchmark::State& s)
{
    mRun(s, [](const Args& a) { return qbinom(a.q, a.n, a.p, 1, 0); });
}
void BM_R_qhyper(benchmark::State& s)
{
    mRun(s, [](const Args& a) { return qhyper(a.q, a.succ, a.pop - a.succ, a.draws, 1, 0); });
}
BENCHMARK(BM_R_pbinom);
BENCHMARK(BM_R_ppois);
BENCHMARK(BM_R_phyper);
BENCHMARK(BM_R_qbinom);
BENCHMARK(BM_R_qhyper);
#endif

} // namespace
