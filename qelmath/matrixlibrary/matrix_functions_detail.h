// Internal pieces of the arithmetic of the matrix_library family: readers
// of the raw storage of each kind, shared by the arithmetic sources, and the
// column primitive of the upper triangular kind that the factorisations of
// the same module use.
//
// The persistent column primitives (qel/persistentmatrixarithmetic.h) come
// along for the factorisations of the persistent kinds.
//
// A reader turns an index pair into the element, as the constant accessor
// of its kind does, but without the index checks, so that it can sit in the
// inner loop of a product.  Callers settle the orders before they loop.
#pragma once

#include "qel/matrixarithmetic.h"
#include "qel/persistentmatrixarithmetic.h"

#include <cstddef>

namespace matrix_library
{
namespace detail
{
using Index = std::ptrdiff_t;

// Row-major dense storage with its row stride.
struct DenseReader
{
    explicit DenseReader(const matrix<double>& a) : p(a.storage().data()), stride(a.colCount()) {}
    double operator()(Index i, Index j) const { return p[i * stride + j]; }
    const double* p;
    Index stride;
};

// Packed lower triangle: (i, j) with i >= j at i(i+1)/2 + j, (i, j) with
// i < j is (j, i).
struct SymmetricReader
{
    explicit SymmetricReader(const Smatrix<double>& a) : p(a.storage().data()) {}
    double operator()(Index i, Index j) const
    {
        return i >= j ? p[i * (i + 1) / 2 + j] : p[j * (j + 1) / 2 + i];
    }
    const double* p;
};

// Packed upper triangle: (i, j) with j >= i at n*i - i(i+1)/2 + j, zero
// below the diagonal.
struct UpperReader
{
    explicit UpperReader(const UTmatrix<double>& a) : p(a.storage().data()), n(a.order()) {}
    double operator()(Index i, Index j) const
    {
        return i <= j ? p[n * i - i * (i + 1) / 2 + j] : 0.0;
    }
    const double* p;
    Index n;
};

// The diagonal, zero elsewhere.
struct DiagonalReader
{
    explicit DiagonalReader(const Dmatrix<double>& a) : p(a.storage().data()) {}
    double operator()(Index i, Index j) const { return i == j ? p[i] : 0.0; }
    const double* p;
};

inline Index mLowerPosition(Index i, Index j)
{
    return i >= j ? i * (i + 1) / 2 + j : j * (j + 1) / 2 + i;
}

inline Index mUpperPosition(Index n, Index i, Index j)
{
    return n * i - i * (i + 1) / 2 + j;
}
} // namespace detail

// Sum over k < count of U(k, i) U(k, j) for an upper triangular U.  count
// greater than the order throws MatrixException("matrix::number of products
// greater than dimension"); otherwise count is cut down to min(i, j) when
// that is smaller: the Cholesky recurrence asks for the rows above the one
// it is computing.
double DotProduct(const UTmatrix<double>& m, int i, int j, int count);
} // namespace matrix_library
