// Speed of the factorisations of namespace matrix_library at orders 10, 30,
// 100 and 300, time per call:
//   - the Cholesky factor of a symmetric positive definite matrix
//     (CholeskyDecomp into a packed UTmatrix);
//   - the inverse of that matrix through Cholesky (inverse of an Smatrix);
//   - the inverse of a general matrix through LU (inverse of a matrix);
//   - the full eigensystem of a symmetric matrix (mEigenSystemsIterator,
//     values and vectors).
// Where Eigen is installed the same questions are put to it in the same run
// and with the same compiler flags: LLT::compute, LLT::solve of the
// identity, PartialPivLU::inverse, and SelfAdjointEigenSolver with
// eigenvectors, so that each figure can be read as a ratio.
#include "qel/matrixfactorisations.h"

#include <benchmark/benchmark.h>

#include "bench_support.h"

#include <cmath>
#include <cstdint>
#include <vector>

#if defined(QEL_BENCH_HAVE_EIGEN)
#include <Eigen/Dense>
#endif

namespace
{
namespace ml = matrix_library;

using qelbench::Lcg;

// The operands of one order: a general matrix R + 3 sqrt(n) I (well
// conditioned, with some pivoting near the small orders), and the symmetric
// positive definite M M' / n + I, both also as dense arrays for Eigen.
struct Operands
{
    explicit Operands(int n) : general(n, n, 0.0), spd(n, 0.0), spdDense(n, n, 0.0)
    {
        Lcg lcg(20261121ULL);
        ml::matrix<double> m(n, n, 0.0);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j)
            {
                general(i, j) =
                    lcg.mNextSigned() + (i == j ? 3.0 * std::sqrt(static_cast<double>(n)) : 0.0);
                m(i, j) = lcg.mNextSigned();
            }
        for (int i = 0; i < n; ++i)
            for (int j = 0; j <= i; ++j)
            {
                double s = 0.0;
                for (int k = 0; k < n; ++k)
                    s += m(i, k) * m(j, k);
                spd(i, j) = s / n + (i == j ? 1.0 : 0.0);
                spdDense(i, j) = spd(i, j);
                spdDense(j, i) = spd(i, j);
            }
    }
    ml::matrix<double> general;
    ml::Smatrix<double> spd;
    ml::matrix<double> spdDense;
};

void mOrders(benchmark::internal::Benchmark* b)
{
    for (int n : {10, 30, 100, 300})
        b->Arg(n);
    b->Unit(benchmark::kMicrosecond);
}

void BM_Qel_Cholesky(benchmark::State& state)
{
    const Operands ops(static_cast<int>(state.range(0)));
    ml::UTmatrix<double> u;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(ml::CholeskyDecomp(ops.spd, &u));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_Qel_Cholesky)->Apply(mOrders);

void BM_Qel_CholeskyInverse(benchmark::State& state)
{
    const Operands ops(static_cast<int>(state.range(0)));
    ml::Smatrix<double> x;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(ml::inverse(ops.spd, &x));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_Qel_CholeskyInverse)->Apply(mOrders);

void BM_Qel_LUInverse(benchmark::State& state)
{
    const Operands ops(static_cast<int>(state.range(0)));
    ml::matrix<double> x;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(ml::inverse(ops.general, &x));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_Qel_LUInverse)->Apply(mOrders);

void BM_Qel_Eigensystem(benchmark::State& state)
{
    const Operands ops(static_cast<int>(state.range(0)));
    std::vector<double> values;
    ml::matrix<double> vectors;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(ml::mEigenSystemsIterator(ops.spdDense, values, vectors));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_Qel_Eigensystem)->Apply(mOrders);

#if defined(QEL_BENCH_HAVE_EIGEN)
Eigen::MatrixXd mToEigen(const ml::matrix<double>& a)
{
    Eigen::MatrixXd e(a.rowCount(), a.colCount());
    for (int i = 0; i < a.rowCount(); ++i)
        for (int j = 0; j < a.colCount(); ++j)
            e(i, j) = a(i, j);
    return e;
}

void BM_Eigen_Cholesky(benchmark::State& state)
{
    const Operands ops(static_cast<int>(state.range(0)));
    const Eigen::MatrixXd a = mToEigen(ops.spdDense);
    Eigen::LLT<Eigen::MatrixXd, Eigen::Upper> llt(a.rows());
    for (auto _ : state)
    {
        llt.compute(a);
        benchmark::DoNotOptimize(llt.matrixLLT().data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_Eigen_Cholesky)->Apply(mOrders);

void BM_Eigen_CholeskyInverse(benchmark::State& state)
{
    const Operands ops(static_cast<int>(state.range(0)));
    const Eigen::MatrixXd a = mToEigen(ops.spdDense);
    const Eigen::MatrixXd identity = Eigen::MatrixXd::Identity(a.rows(), a.cols());
    Eigen::MatrixXd x;
    for (auto _ : state)
    {
        Eigen::LLT<Eigen::MatrixXd, Eigen::Upper> llt(a);
        x = llt.solve(identity);
        benchmark::DoNotOptimize(x.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_Eigen_CholeskyInverse)->Apply(mOrders);

void BM_Eigen_LUInverse(benchmark::State& state)
{
    const Operands ops(static_cast<int>(state.range(0)));
    const Eigen::MatrixXd a = mToEigen(ops.general);
    Eigen::MatrixXd x;
    for (auto _ : state)
    {
        Eigen::PartialPivLU<Eigen::MatrixXd> lu(a);
        x = lu.inverse();
        benchmark::DoNotOptimize(x.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_Eigen_LUInverse)->Apply(mOrders);

void BM_Eigen_Eigensystem(benchmark::State& state)
{
    const Operands ops(static_cast<int>(state.range(0)));
    const Eigen::MatrixXd a = mToEigen(ops.spdDense);
    Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> solver(a.rows());
    for (auto _ : state)
    {
        solver.compute(a, Eigen::ComputeEigenvectors);
        benchmark::DoNotOptimize(solver.eigenvalues().data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_Eigen_Eigensystem)->Apply(mOrders);
#endif
} // namespace
