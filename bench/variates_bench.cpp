// Speed of the random variates: nanoseconds per variate (read the rate as
// the items-per-second counter) for the normal, the gamma through each of
// its three helpers, the beta through Cheng's BB and BC, the binomial, the
// Poisson, the general discrete distribution (the alias table) and the
// trivariate normal, each drawing from the library's own uniform stream.
// Where installed, R's standalone math library draws the same kinds of
// variates (norm_rand, rgamma, rbeta, rbinom, rpois) from its own default
// generator, in the same run.
#include "qel/distclosedform.h"
#include "qel/distdiscrete.h"
#include "qel/distkernelbacked.h"
#include "qel/distmvnormal.h"
#include "qel/uniformgenerator.h"

#include <benchmark/benchmark.h>

#include <vector>

#if defined(QEL_BENCH_HAVE_RMATH)
#include <Rmath.h>
#endif

namespace
{
// Every benchmark starts from the same base so that runs repeat.
void mFixBase() { CmUniformGenerator::mInstance()->mSetBase(12345.0); }

void mDraw(benchmark::State& state, const CmDist& rDist)
{
    mFixBase();
    for (auto _ : state)
        benchmark::DoNotOptimize(rDist.mGetRandom());
    state.SetItemsProcessed(state.iterations());
}

void BM_NormalVariate(benchmark::State& state) { mDraw(state, CmDistNormal(0.0, 1.0)); }
BENCHMARK(BM_NormalVariate);

void BM_GammaVariate(benchmark::State& state)
{
    mDraw(state, CmDistGamma(static_cast<double>(state.range(0)) / 10.0, 1.0, 0.0));
}
// Shapes 0.5 (Ahrens-Dieter GS), 1 (exponential), 2.5 (the two-piece
// scheme), 10 and 100 (the normal-body scheme).
BENCHMARK(BM_GammaVariate)->Arg(5)->Arg(10)->Arg(25)->Arg(100)->Arg(1000);

void BM_BetaVariateBB(benchmark::State& state) { mDraw(state, CmDistBeta(2.0, 3.0)); }
BENCHMARK(BM_BetaVariateBB);

void BM_BetaVariateBC(benchmark::State& state) { mDraw(state, CmDistBeta(0.5, 3.0)); }
BENCHMARK(BM_BetaVariateBC);

void BM_BinomialVariate(benchmark::State& state)
{
    mDraw(state, CmDistBinomial(static_cast<int>(state.range(0)), 0.3));
}
BENCHMARK(BM_BinomialVariate)->Arg(10)->Arg(100);

void BM_PoissonVariate(benchmark::State& state)
{
    mDraw(state, CmDistPoisson(static_cast<double>(state.range(0))));
}
BENCHMARK(BM_PoissonVariate)->Arg(3)->Arg(100);

void BM_DiscreteAliasVariate(benchmark::State& state)
{
    std::vector<double> vdValues, vdProbabilities;
    for (int i = 0; i < state.range(0); ++i)
    {
        vdValues.push_back(i);
        vdProbabilities.push_back(1.0 + (i * 7) % 13);
    }
    const CmDistDiscrete dist(vdValues, vdProbabilities);
    dist.mGetRandom(); // the table is built at the first draw
    mDraw(state, dist);
}
BENCHMARK(BM_DiscreteAliasVariate)->Arg(10)->Arg(1000);

void BM_MVNormalVariate(benchmark::State& state)
{
    Smatrix<double> sm(3);
    const double cov[3][3] = {{4.0, 1.2, -0.8}, {1.2, 2.0, 0.3}, {-0.8, 0.3, 1.0}};
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j <= i; ++j)
            sm(i, j) = cov[i][j];
    CmDistMVNormal dist({1.0, -2.0, 0.5}, sm, true);
    std::vector<double> v;
    mFixBase();
    for (auto _ : state)
    {
        dist.mGetRandom(v);
        benchmark::DoNotOptimize(v.data());
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_MVNormalVariate);

#if defined(QEL_BENCH_HAVE_RMATH)
template <class F>
void mDrawR(benchmark::State& state, F f)
{
    set_seed(12345u, 67890u);
    for (auto _ : state)
        benchmark::DoNotOptimize(f());
    state.SetItemsProcessed(state.iterations());
}

void BM_R_norm_rand(benchmark::State& state)
{
    mDrawR(state, [] { return norm_rand(); });
}
BENCHMARK(BM_R_norm_rand);

void BM_R_rgamma(benchmark::State& state)
{
    const double a = static_cast<double>(state.range(0)) / 10.0;
    mDrawR(state, [a] { return rgamma(a, 1.0); });
}
BENCHMARK(BM_R_rgamma)->Arg(5)->Arg(10)->Arg(25)->Arg(100)->Arg(1000);

void BM_R_rbetaBB(benchmark::State& state)
{
    mDrawR(state, [] { return rbeta(2.0, 3.0); });
}
BENCHMARK(BM_R_rbetaBB);

void BM_R_rbetaBC(benchmark::State& state)
{
    mDrawR(state, [] { return rbeta(0.5, 3.0); });
}
BENCHMARK(BM_R_rbetaBC);

void BM_R_rbinom(benchmark::State& state)
{
    const double n = static_cast<double>(state.range(0));
    mDrawR(state, [n] { return rbinom(n, 0.3); });
}
BENCHMARK(BM_R_rbinom)->Arg(10)->Arg(100);

void BM_R_rpois(benchmark::State& state)
{
    const double mu = static_cast<double>(state.range(0));
    mDrawR(state, [mu] { return rpois(mu); });
}
BENCHMARK(BM_R_rpois)->Arg(3)->Arg(100);
#endif
} // namespace
