// Speed of the products of the value matrices of namespace matrix_library,
// for every pair of kinds (matrix, Smatrix, UTmatrix, Dmatrix) at orders 8
// to 512, reported as time per product and as the rate 2 n^3 / time
// ("flops", the count of the dense product whatever the kinds).  Where
// Eigen is installed, the same products are put to it in the same run, each
// with the view that suits its kinds (selfadjointView for the symmetric
// operand, triangularView for the upper triangular one, asDiagonal for the
// diagonal one), with the same compiler flags, so that each figure can be
// read as a ratio.
#include "qel/matrixarithmetic.h"

#include <benchmark/benchmark.h>

#include "bench_support.h"

#include <cstdint>

#if defined(QEL_BENCH_HAVE_EIGEN)
#include <Eigen/Dense>
#endif

namespace
{
namespace ml = matrix_library;

using qelbench::Lcg;

struct Operands
{
    explicit Operands(int n)
        : m(n, n, 0.0), m2(n, n, 0.0), s(n, 0.0), u(n, 0.0), d(n, 0.0), d2(n, 0.0)
    {
        Lcg lcg(512ULL);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j)
            {
                m(i, j) = lcg.mNextSigned();
                m2(i, j) = lcg.mNextSigned();
                if (j <= i)
                    s(i, j) = lcg.mNextSigned();
                if (j >= i)
                    u(i, j) = lcg.mNextSigned();
            }
        for (int i = 0; i < n; ++i)
        {
            d(i, i) = 1.0 + lcg.mNextSigned();
            d2(i, i) = 1.0 + lcg.mNextSigned();
        }
    }
    ml::matrix<double> m;
    ml::matrix<double> m2;
    ml::Smatrix<double> s;
    ml::UTmatrix<double> u;
    ml::Dmatrix<double> d;
    ml::Dmatrix<double> d2;
};

void mSetRate(benchmark::State& state)
{
    const double n = static_cast<double>(state.range(0));
    state.counters["flops"] =
        benchmark::Counter(2.0 * n * n * n, benchmark::Counter::kIsIterationInvariantRate);
}

#define QEL_BENCH_PRODUCT(NAME, LEFT, RIGHT)                                                       \
    void NAME(benchmark::State& state)                                                             \
    {                                                                                              \
        const Operands o(static_cast<int>(state.range(0)));                                        \
        for (auto _ : state)                                                                       \
        {                                                                                          \
            auto c = o.LEFT * o.RIGHT;                                                             \
            benchmark::DoNotOptimize(c.storage().data());                                          \
            benchmark::ClobberMemory();                                                            \
        }                                                                                          \
        mSetRate(state);                                                                           \
    }                                                                                              \
    BENCHMARK(NAME)->RangeMultiplier(2)->Range(8, 512)->Unit(benchmark::kMicrosecond)

QEL_BENCH_PRODUCT(BM_Qel_matrix_matrix, m, m2);
QEL_BENCH_PRODUCT(BM_Qel_matrix_Smatrix, m, s);
QEL_BENCH_PRODUCT(BM_Qel_matrix_UTmatrix, m, u);
QEL_BENCH_PRODUCT(BM_Qel_matrix_Dmatrix, m, d);
QEL_BENCH_PRODUCT(BM_Qel_Smatrix_matrix, s, m);
QEL_BENCH_PRODUCT(BM_Qel_Smatrix_Smatrix, s, s);
QEL_BENCH_PRODUCT(BM_Qel_Smatrix_UTmatrix, s, u);
QEL_BENCH_PRODUCT(BM_Qel_Smatrix_Dmatrix, s, d);
QEL_BENCH_PRODUCT(BM_Qel_UTmatrix_matrix, u, m);
QEL_BENCH_PRODUCT(BM_Qel_UTmatrix_Smatrix, u, s);
QEL_BENCH_PRODUCT(BM_Qel_UTmatrix_UTmatrix, u, u);
QEL_BENCH_PRODUCT(BM_Qel_UTmatrix_Dmatrix, u, d);
QEL_BENCH_PRODUCT(BM_Qel_Dmatrix_matrix, d, m);
QEL_BENCH_PRODUCT(BM_Qel_Dmatrix_Smatrix, d, s);
QEL_BENCH_PRODUCT(BM_Qel_Dmatrix_UTmatrix, d, u);
QEL_BENCH_PRODUCT(BM_Qel_Dmatrix_Dmatrix, d, d2);

void BM_Qel_SlowMatrixMultiply(benchmark::State& state)
{
    const Operands o(static_cast<int>(state.range(0)));
    for (auto _ : state)
    {
        auto c = ml::SlowMatrixMultiply(o.m, o.m2);
        benchmark::DoNotOptimize(c.storage().data());
        benchmark::ClobberMemory();
    }
    mSetRate(state);
}
BENCHMARK(BM_Qel_SlowMatrixMultiply)
    ->RangeMultiplier(2)
    ->Range(8, 512)
    ->Unit(benchmark::kMicrosecond);

#if defined(QEL_BENCH_HAVE_EIGEN)
// The same operands as dense Eigen matrices (the packed kinds with zeros
// outside what they store) and diagonal vectors.  A Dmatrix product in Eigen
// is the vector of products, as it is here.
struct EigenOperands
{
    explicit EigenOperands(int n)
    {
        const Operands o(n);
        m.resize(n, n);
        m2.resize(n, n);
        s.setZero(n, n);
        sf.resize(n, n);
        u.setZero(n, n);
        d.resize(n);
        d2.resize(n);
        for (int i = 0; i < n; ++i)
        {
            for (int j = 0; j < n; ++j)
            {
                m(i, j) = o.m(i, j);
                m2(i, j) = o.m2(i, j);
                s(i, j) = o.s(i, j);
                u(i, j) = o.u(i, j);
            }
            for (int j = 0; j < n; ++j)
                sf(i, j) = o.s(i, j);
            d(i) = o.d(i, i);
            d2(i) = o.d2(i, i);
        }
    }
    Eigen::MatrixXd m;
    Eigen::MatrixXd m2;
    // The lower triangle only, for selfadjointView, and both triangles.
    Eigen::MatrixXd s;
    Eigen::MatrixXd sf;
    Eigen::MatrixXd u;
    Eigen::VectorXd d;
    Eigen::VectorXd d2;
};

#define QEL_BENCH_EIGEN(NAME, TYPE, EXPRESSION)                                                    \
    void NAME(benchmark::State& state)                                                             \
    {                                                                                              \
        const EigenOperands e(static_cast<int>(state.range(0)));                                   \
        for (auto _ : state)                                                                       \
        {                                                                                          \
            TYPE c = EXPRESSION;                                                                   \
            benchmark::DoNotOptimize(c.data());                                                    \
            benchmark::ClobberMemory();                                                            \
        }                                                                                          \
        mSetRate(state);                                                                           \
    }                                                                                              \
    BENCHMARK(NAME)->RangeMultiplier(2)->Range(8, 512)->Unit(benchmark::kMicrosecond)

QEL_BENCH_EIGEN(BM_Eigen_matrix_matrix, Eigen::MatrixXd, (e.m * e.m2));
QEL_BENCH_EIGEN(BM_Eigen_matrix_Smatrix, Eigen::MatrixXd,
                (e.m * e.s.selfadjointView<Eigen::Lower>()));
QEL_BENCH_EIGEN(BM_Eigen_matrix_UTmatrix, Eigen::MatrixXd,
                (e.m * e.u.triangularView<Eigen::Upper>()));
QEL_BENCH_EIGEN(BM_Eigen_matrix_Dmatrix, Eigen::MatrixXd, (e.m * e.d.asDiagonal()));
QEL_BENCH_EIGEN(BM_Eigen_Smatrix_matrix, Eigen::MatrixXd,
                (e.s.selfadjointView<Eigen::Lower>() * e.m));
QEL_BENCH_EIGEN(BM_Eigen_Smatrix_Smatrix, Eigen::MatrixXd,
                (e.s.selfadjointView<Eigen::Lower>() * e.sf));
QEL_BENCH_EIGEN(BM_Eigen_Smatrix_UTmatrix, Eigen::MatrixXd,
                (e.s.selfadjointView<Eigen::Lower>() * e.u));
QEL_BENCH_EIGEN(BM_Eigen_Smatrix_Dmatrix, Eigen::MatrixXd, (e.sf * e.d.asDiagonal()));
QEL_BENCH_EIGEN(BM_Eigen_UTmatrix_matrix, Eigen::MatrixXd,
                (e.u.triangularView<Eigen::Upper>() * e.m));
QEL_BENCH_EIGEN(BM_Eigen_UTmatrix_Smatrix, Eigen::MatrixXd,
                (e.u.triangularView<Eigen::Upper>() * e.sf));
QEL_BENCH_EIGEN(BM_Eigen_UTmatrix_UTmatrix, Eigen::MatrixXd,
                (e.u.triangularView<Eigen::Upper>() * e.u));
QEL_BENCH_EIGEN(BM_Eigen_UTmatrix_Dmatrix, Eigen::MatrixXd, (e.u * e.d.asDiagonal()));
QEL_BENCH_EIGEN(BM_Eigen_Dmatrix_matrix, Eigen::MatrixXd, (e.d.asDiagonal() * e.m));
QEL_BENCH_EIGEN(BM_Eigen_Dmatrix_Smatrix, Eigen::MatrixXd, (e.d.asDiagonal() * e.sf));
QEL_BENCH_EIGEN(BM_Eigen_Dmatrix_UTmatrix, Eigen::MatrixXd, (e.d.asDiagonal() * e.u));
QEL_BENCH_EIGEN(BM_Eigen_Dmatrix_Dmatrix, Eigen::VectorXd, (e.d.cwiseProduct(e.d2)));
#endif
} // namespace
