// Products of the matrix_library value matrices.
//
// Between the dense kinds (matrix, and the packed Smatrix and UTmatrix when
// the result is dense) the product is blocked: the result starts at zero and
// three loops step by tiles of 8 over its rows, its columns and the inner
// index, outermost first, each step clipped to its bound.  A tile kernel
// adds, for each result element of the tile, A(i, k) B(k, j) for k through
// the tile in increasing order, so every element receives its terms in the
// order of the plain triple loop and the two agree up to the rounding of
// the partial sums (in practice exactly).  The tiles keep both operands'
// data in the first-level cache.  One kernel is instantiated for each pair
// of kinds; dense operands are addressed with their row stride, packed ones
// through their packed index.
//
// A Dmatrix operand scales columns (on the right) or rows (on the left).
// UTmatrix with UTmatrix or Dmatrix is the plain triple loop over the whole
// square into a UTmatrix, where sums below the diagonal are discarded.
#include "qel/matrixarithmetic.h"
#include "qelmath/matrixlibrary/matrix_functions_detail.h"

#include <algorithm>
#include <string>

namespace matrix_library
{
namespace
{
using detail::DenseReader;
using detail::DiagonalReader;
using detail::Index;
using detail::SymmetricReader;
using detail::UpperReader;

const Index s_iTile = 8;

// Unrolling the fixed loops of a full tile lets the compiler keep the two
// rows of sums in registers instead of memory.
#if defined(__clang__)
#define QEL_UNROLL_TILE _Pragma("unroll 8")
#elif defined(__GNUC__)
#define QEL_UNROLL_TILE _Pragma("GCC unroll 8")
#else
#define QEL_UNROLL_TILE
#endif

void mCheckProductOrders(int iLeftColumns, int iRightRows)
{
    if (iLeftColumns != iRightRows)
        throw MatrixException("Matrix multiplication: incompatible orders");
}

// One tile: rows [i0, i1), columns [j0, j1), inner index [k0, k1) of
// C += A B, C row-major with stride ldc.  Each result element is loaded,
// receives A(i, k) B(k, j) for k through the tile in increasing order, and
// is stored.  In a full tile two rows of the result are held in registers
// (the fixed loops of 8 are unrolled) while the inner index runs: each
// element of B that is read serves two rows of C, and the sixteen sums are
// independent, so that the additions overlap instead of waiting on one
// another.
template <class ReaderA, class ReaderB>
inline void mTileKernel(const ReaderA& a, const ReaderB& b, double* c, Index ldc, Index i0,
                        Index i1, Index j0, Index j1, Index k0, Index k1)
{
    if (j1 - j0 == s_iTile && k1 - k0 == s_iTile)
    {
        Index i = i0;
        for (; i + 1 < i1; i += 2)
        {
            double* pRow0 = c + i * ldc + j0;
            double* pRow1 = pRow0 + ldc;
            double adAcc0[s_iTile];
            double adAcc1[s_iTile];
            QEL_UNROLL_TILE
            for (Index j = 0; j < s_iTile; ++j)
            {
                adAcc0[j] = pRow0[j];
                adAcc1[j] = pRow1[j];
            }
            for (Index k = k0; k < k0 + s_iTile; ++k)
            {
                const double dA0 = a(i, k);
                const double dA1 = a(i + 1, k);
                QEL_UNROLL_TILE
                for (Index j = 0; j < s_iTile; ++j)
                {
                    const double dB = b(k, j0 + j);
                    adAcc0[j] += dA0 * dB;
                    adAcc1[j] += dA1 * dB;
                }
            }
            QEL_UNROLL_TILE
            for (Index j = 0; j < s_iTile; ++j)
            {
                pRow0[j] = adAcc0[j];
                pRow1[j] = adAcc1[j];
            }
        }
        if (i < i1)
        {
            double* pRow = c + i * ldc + j0;
            double adAcc[s_iTile];
            QEL_UNROLL_TILE
            for (Index j = 0; j < s_iTile; ++j)
                adAcc[j] = pRow[j];
            for (Index k = k0; k < k0 + s_iTile; ++k)
            {
                const double dA = a(i, k);
                QEL_UNROLL_TILE
                for (Index j = 0; j < s_iTile; ++j)
                    adAcc[j] += dA * b(k, j0 + j);
            }
            QEL_UNROLL_TILE
            for (Index j = 0; j < s_iTile; ++j)
                pRow[j] = adAcc[j];
        }
        return;
    }
    for (Index i = i0; i < i1; ++i)
    {
        double* pRow = c + i * ldc;
        for (Index k = k0; k < k1; ++k)
        {
            const double dA = a(i, k);
            for (Index j = j0; j < j1; ++j)
                pRow[j] += dA * b(k, j);
        }
    }
}

// C (M x N) = A (M x K) B (K x N), blocked.
template <class ReaderA, class ReaderB>
matrix<double> mBlockedProduct(const ReaderA& a, const ReaderB& b, int M, int N, int K)
{
    matrix<double> result(M, N, 0.0);
    double* c = result.storage().data();
    for (Index i0 = 0; i0 < M; i0 += s_iTile)
    {
        const Index i1 = std::min<Index>(i0 + s_iTile, M);
        for (Index j0 = 0; j0 < N; j0 += s_iTile)
        {
            const Index j1 = std::min<Index>(j0 + s_iTile, N);
            for (Index k0 = 0; k0 < K; k0 += s_iTile)
            {
                const Index k1 = std::min<Index>(k0 + s_iTile, K);
                mTileKernel(a, b, c, N, i0, i1, j0, j1, k0, k1);
            }
        }
    }
    return result;
}

// C(i, j) = A(i, j) d(j).
template <class ReaderA>
matrix<double> mColumnScaling(const ReaderA& a, const Dmatrix<double>& d, int M)
{
    const int N = d.order();
    matrix<double> result(M, N, 0.0);
    double* c = result.storage().data();
    const double* pd = d.storage().data();
    for (Index i = 0; i < M; ++i)
        for (Index j = 0; j < N; ++j)
            c[i * N + j] = a(i, j) * pd[j];
    return result;
}

// C(i, j) = d(i) B(i, j).
template <class ReaderB>
matrix<double> mRowScaling(const Dmatrix<double>& d, const ReaderB& b, int N)
{
    const int M = d.order();
    matrix<double> result(M, N, 0.0);
    double* c = result.storage().data();
    const double* pd = d.storage().data();
    for (Index i = 0; i < M; ++i)
        for (Index j = 0; j < N; ++j)
            c[i * N + j] = pd[i] * b(i, j);
    return result;
}

// The plain product of two square kinds of order N whose product is upper
// triangular.  Every one of the N^2 sums runs over all N values of k; those
// below the diagonal go where a UTmatrix puts its writes below the
// diagonal, nowhere.  The triangle is deliberately not exploited.
template <class ReaderA, class ReaderB>
UTmatrix<double> mPlainUpperProduct(const ReaderA& a, const ReaderB& b, int M, int N)
{
    QEL_ALLEGE(M == N);
    UTmatrix<double> result(N, 0.0);
    double* c = result.storage().data();
    for (Index i = 0; i < N; ++i)
        for (Index j = 0; j < N; ++j)
        {
            double dSum = 0.0;
            for (Index k = 0; k < N; ++k)
                dSum += a(i, k) * b(k, j);
            if (j >= i)
                c[detail::mUpperPosition(N, i, j)] = dSum;
        }
    return result;
}

void mScaleStorage(std::vector<double>& rv, double k)
{
    for (double& rElement : rv)
        rElement *= k;
}

// A column of M rows: row sums in index order.
template <class ReaderA>
matrix<double> mTimesVector(const ReaderA& a, int M, int N, const std::vector<double>& v)
{
    if (v.size() != static_cast<std::size_t>(N))
        throw MatrixException("matrix and vector must be of same order");
    matrix<double> result(M, 1, 0.0);
    double* c = result.storage().data();
    for (Index i = 0; i < M; ++i)
    {
        double dSum = 0.0;
        for (Index j = 0; j < N; ++j)
            dSum += a(i, j) * v[static_cast<std::size_t>(j)];
        c[i] = dSum;
    }
    return result;
}
} // namespace

// ---------------------------------------------------------------------------
// Blocked products

matrix<double> operator*(const matrix<double>& a, const matrix<double>& b)
{
    mCheckProductOrders(a.colCount(), b.rowCount());
    return mBlockedProduct(DenseReader(a), DenseReader(b), a.rowCount(), b.colCount(),
                           a.colCount());
}

matrix<double> operator*(const matrix<double>& a, const Smatrix<double>& b)
{
    mCheckProductOrders(a.colCount(), b.order());
    return mBlockedProduct(DenseReader(a), SymmetricReader(b), a.rowCount(), b.order(),
                           a.colCount());
}

matrix<double> operator*(const matrix<double>& a, const UTmatrix<double>& b)
{
    mCheckProductOrders(a.colCount(), b.order());
    return mBlockedProduct(DenseReader(a), UpperReader(b), a.rowCount(), b.order(), a.colCount());
}

matrix<double> operator*(const Smatrix<double>& a, const matrix<double>& b)
{
    mCheckProductOrders(a.order(), b.rowCount());
    return mBlockedProduct(SymmetricReader(a), DenseReader(b), a.order(), b.colCount(), a.order());
}

matrix<double> operator*(const Smatrix<double>& a, const Smatrix<double>& b)
{
    mCheckProductOrders(a.order(), b.order());
    return mBlockedProduct(SymmetricReader(a), SymmetricReader(b), a.order(), b.order(), a.order());
}

matrix<double> operator*(const Smatrix<double>& a, const UTmatrix<double>& b)
{
    mCheckProductOrders(a.order(), b.order());
    return mBlockedProduct(SymmetricReader(a), UpperReader(b), a.order(), b.order(), a.order());
}

matrix<double> operator*(const UTmatrix<double>& a, const matrix<double>& b)
{
    mCheckProductOrders(a.order(), b.rowCount());
    return mBlockedProduct(UpperReader(a), DenseReader(b), a.order(), b.colCount(), a.order());
}

matrix<double> operator*(const UTmatrix<double>& a, const Smatrix<double>& b)
{
    mCheckProductOrders(a.order(), b.order());
    return mBlockedProduct(UpperReader(a), SymmetricReader(b), a.order(), b.order(), a.order());
}

// ---------------------------------------------------------------------------
// Scaling by a diagonal matrix

matrix<double> operator*(const matrix<double>& a, const Dmatrix<double>& b)
{
    mCheckProductOrders(a.colCount(), b.order());
    return mColumnScaling(DenseReader(a), b, a.rowCount());
}

matrix<double> operator*(const Smatrix<double>& a, const Dmatrix<double>& b)
{
    mCheckProductOrders(a.order(), b.order());
    return mColumnScaling(SymmetricReader(a), b, a.order());
}

matrix<double> operator*(const Dmatrix<double>& a, const matrix<double>& b)
{
    mCheckProductOrders(a.order(), b.rowCount());
    return mRowScaling(a, DenseReader(b), b.colCount());
}

matrix<double> operator*(const Dmatrix<double>& a, const Smatrix<double>& b)
{
    mCheckProductOrders(a.order(), b.order());
    return mRowScaling(a, SymmetricReader(b), b.order());
}

// ---------------------------------------------------------------------------
// Upper triangular results

UTmatrix<double> operator*(const UTmatrix<double>& a, const UTmatrix<double>& b)
{
    mCheckProductOrders(a.order(), b.order());
    return mPlainUpperProduct(UpperReader(a), UpperReader(b), a.order(), b.order());
}

UTmatrix<double> operator*(const UTmatrix<double>& a, const Dmatrix<double>& b)
{
    mCheckProductOrders(a.order(), b.order());
    return mPlainUpperProduct(UpperReader(a), DiagonalReader(b), a.order(), b.order());
}

UTmatrix<double> operator*(const Dmatrix<double>& a, const UTmatrix<double>& b)
{
    mCheckProductOrders(a.order(), b.order());
    return mPlainUpperProduct(DiagonalReader(a), UpperReader(b), a.order(), b.order());
}

// ---------------------------------------------------------------------------
// Diagonal with diagonal

Dmatrix<double> operator*(const Dmatrix<double>& a, const Dmatrix<double>& b)
{
    mCheckProductOrders(a.order(), b.order());
    // The element-wise test of the diagonal kind, which the product test
    // above has already settled.
    if (a.order() != b.order())
        throw MatrixException(std::string("diagonal matrix elementwise op") +
                              " : row counts are different");
    Dmatrix<double> result(a.order(), 0.0);
    const std::size_t n = result.storage().size();
    for (std::size_t i = 0; i < n; ++i)
        result.storage()[i] = a.storage()[i] * b.storage()[i];
    return result;
}

Dmatrix<double>& operator*=(Dmatrix<double>& a, const Dmatrix<double>& b)
{
    mCheckProductOrders(a.order(), b.order());
    const std::size_t n = a.storage().size();
    for (std::size_t i = 0; i < n; ++i)
        a.storage()[i] *= b.storage()[i];
    return a;
}

// ---------------------------------------------------------------------------
// Products with a vector, and in place

matrix<double> operator*(const matrix<double>& a, const std::vector<double>& v)
{
    return mTimesVector(DenseReader(a), a.rowCount(), a.colCount(), v);
}

matrix<double> operator*(const Smatrix<double>& a, const std::vector<double>& v)
{
    return mTimesVector(SymmetricReader(a), a.order(), a.order(), v);
}

matrix<double>& operator*=(matrix<double>& a, const matrix<double>& b)
{
    matrix<double> product = a * b;
    a = product;
    return a;
}

matrix<double>& operator*=(matrix<double>& a, const std::vector<double>& v)
{
    matrix<double> product = a * v;
    a = product;
    return a;
}

// ---------------------------------------------------------------------------
// Scalar multiples

matrix<double> operator*(double k, const matrix<double>& a)
{
    matrix<double> result(a);
    mScaleStorage(result.storage(), k);
    return result;
}

Smatrix<double> operator*(double k, const Smatrix<double>& a)
{
    Smatrix<double> result(a);
    mScaleStorage(result.storage(), k);
    return result;
}

Smatrix<double> operator*(const Smatrix<double>& a, double k)
{
    return k * a;
}

UTmatrix<double> operator*(double k, const UTmatrix<double>& a)
{
    UTmatrix<double> result(a);
    mScaleStorage(result.storage(), k);
    return result;
}

UTmatrix<double> operator*(const UTmatrix<double>& a, double k)
{
    return k * a;
}

Dmatrix<double> operator*(const Dmatrix<double>& a, double k)
{
    Dmatrix<double> result(a);
    mScaleStorage(result.storage(), k);
    return result;
}

Dmatrix<double> operator*(double k, const Dmatrix<double>& a)
{
    return a * k;
}

// ---------------------------------------------------------------------------
// The reference product and the transposed products

matrix<double> SlowMatrixMultiply(const matrix<double>& a, const matrix<double>& b)
{
    mCheckProductOrders(a.colCount(), b.rowCount());
    const int M = a.rowCount();
    const int N = b.colCount();
    const int K = a.colCount();
    const DenseReader ra(a);
    const DenseReader rb(b);
    matrix<double> result(M, N, 0.0);
    double* c = result.storage().data();
    for (Index i = 0; i < M; ++i)
        for (Index j = 0; j < N; ++j)
        {
            double dSum = 0.0;
            for (Index k = 0; k < K; ++k)
                dSum += ra(i, k) * rb(k, j);
            c[i * N + j] = dSum;
        }
    return result;
}

// The orders are the caller's business; rows of B that the loops would
// need but that do not exist are an internal failure, not a read outside
// the storage.
void multiplyLeftTranspose(const matrix<double>& a, const matrix<double>& b, matrix<double>& c)
{
    const int M = a.rowCount();
    const int I = a.colCount();
    const int J = b.colCount();
    if (I > 0 && J > 0)
        QEL_ALLEGE(M <= b.rowCount());
    // Built aside, so that C may be one of the operands.
    matrix<double> result(I, J, 0.0);
    double* pc = result.storage().data();
    const DenseReader ra(a);
    const DenseReader rb(b);
    for (Index k = 0; k < M; ++k)
        for (Index i = 0; i < I; ++i)
        {
            const double dA = ra(k, i);
            double* pRow = pc + i * J;
            for (Index j = 0; j < J; ++j)
                pRow[j] += rb(k, j) * dA;
        }
    c = result;
}

void multiplyRightTranspose(const matrix<double>& a, const matrix<double>& b, matrix<double>& c)
{
    const int M = a.rowCount();
    const int N = b.rowCount();
    const int K = b.colCount();
    if (M > 0 && N > 0)
        QEL_ALLEGE(K <= a.colCount());
    matrix<double> result(M, N, 0.0);
    double* pc = result.storage().data();
    const DenseReader ra(a);
    const DenseReader rb(b);
    for (Index i = 0; i < M; ++i)
        for (Index j = 0; j < N; ++j)
        {
            double dSum = 0.0;
            for (Index k = 0; k < K; ++k)
                dSum += ra(i, k) * rb(j, k);
            pc[i * N + j] = dSum;
        }
    c = result;
}
} // namespace matrix_library
