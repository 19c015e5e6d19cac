// Arithmetic of the value matrices of namespace matrix_library: sums, differences and products across the four
// value kinds matrix, Smatrix, UTmatrix and Dmatrix (all of double), with a
// result that keeps the most special structure both operands guarantee;
// products and sums with std::vector; scalar multiples; the reference
// product SlowMatrixMultiply and the transposed products; the column
// primitives the factorisations are built from; quadratic forms.
//
// Result kinds of a sum or difference (left operand down, right across):
//             matrix   Smatrix   UTmatrix   Dmatrix
//   matrix    matrix   matrix    matrix     matrix
//   Smatrix   matrix   Smatrix   matrix     Smatrix
//   UTmatrix  matrix   matrix    UTmatrix   UTmatrix
//   Dmatrix   matrix   Smatrix   UTmatrix   Dmatrix
// Result kinds of a product:
//             matrix   Smatrix   UTmatrix   Dmatrix
//   matrix    matrix   matrix    matrix     matrix
//   Smatrix   matrix   matrix    matrix     matrix
//   UTmatrix  matrix   matrix    UTmatrix   UTmatrix
//   Dmatrix   matrix   matrix    UTmatrix   Dmatrix
//
// Failure: an order mismatch throws matrix_library::MatrixException with
//   "<context> : row counts are different" / "<context> : col counts are different"
// for sums and differences, where the context is "matrix addition" (results
// matrix or Smatrix, differences included), "upper matrix element wise op"
// (UTmatrix results) or "diagonal matrix elementwise op" (Dmatrix with
// Dmatrix); "Matrix multiplication: incompatible orders" for products.
// matrix + matrix and matrix - matrix assert their orders instead
// (allege::AllegeException).  Operands are never changed by a failed call;
// a failed *= leaves its left operand as it was.  Missing values and
// infinities are not looked at: they flow through the arithmetic.
//
// The few operations of the persistent matrices of qel/matrix.h are in
// qel/persistentmatrixarithmetic.h.
#pragma once

#include "qel/qelexport.h"
#include "qel/qelmathlinearalgebra.h"

#include <vector>

namespace matrix_library
{
// ---------------------------------------------------------------------------
// Sums and differences.  matrix + matrix and matrix - matrix copy the left
// operand and work in place over the storage; they assert
// "m_ == other.m_ && n_ == other.n_" then "v_.size() == other.v_.size()".

QEL_API matrix<double> operator+(const matrix<double>& a, const matrix<double>& b);
QEL_API matrix<double> operator+(const matrix<double>& a, const Smatrix<double>& b);
QEL_API matrix<double> operator+(const matrix<double>& a, const UTmatrix<double>& b);
QEL_API matrix<double> operator+(const matrix<double>& a, const Dmatrix<double>& b);
QEL_API matrix<double> operator+(const Smatrix<double>& a, const matrix<double>& b);
QEL_API Smatrix<double> operator+(const Smatrix<double>& a, const Smatrix<double>& b);
QEL_API matrix<double> operator+(const Smatrix<double>& a, const UTmatrix<double>& b);
QEL_API Smatrix<double> operator+(const Smatrix<double>& a, const Dmatrix<double>& b);
QEL_API matrix<double> operator+(const UTmatrix<double>& a, const matrix<double>& b);
QEL_API matrix<double> operator+(const UTmatrix<double>& a, const Smatrix<double>& b);
QEL_API UTmatrix<double> operator+(const UTmatrix<double>& a, const UTmatrix<double>& b);
QEL_API UTmatrix<double> operator+(const UTmatrix<double>& a, const Dmatrix<double>& b);
QEL_API matrix<double> operator+(const Dmatrix<double>& a, const matrix<double>& b);
QEL_API Smatrix<double> operator+(const Dmatrix<double>& a, const Smatrix<double>& b);
QEL_API UTmatrix<double> operator+(const Dmatrix<double>& a, const UTmatrix<double>& b);
QEL_API Dmatrix<double> operator+(const Dmatrix<double>& a, const Dmatrix<double>& b);

QEL_API matrix<double> operator-(const matrix<double>& a, const matrix<double>& b);
QEL_API matrix<double> operator-(const matrix<double>& a, const Smatrix<double>& b);
QEL_API matrix<double> operator-(const matrix<double>& a, const UTmatrix<double>& b);
QEL_API matrix<double> operator-(const matrix<double>& a, const Dmatrix<double>& b);
QEL_API matrix<double> operator-(const Smatrix<double>& a, const matrix<double>& b);
QEL_API Smatrix<double> operator-(const Smatrix<double>& a, const Smatrix<double>& b);
QEL_API matrix<double> operator-(const Smatrix<double>& a, const UTmatrix<double>& b);
QEL_API Smatrix<double> operator-(const Smatrix<double>& a, const Dmatrix<double>& b);
QEL_API matrix<double> operator-(const UTmatrix<double>& a, const matrix<double>& b);
QEL_API matrix<double> operator-(const UTmatrix<double>& a, const Smatrix<double>& b);
QEL_API UTmatrix<double> operator-(const UTmatrix<double>& a, const UTmatrix<double>& b);
QEL_API UTmatrix<double> operator-(const UTmatrix<double>& a, const Dmatrix<double>& b);
QEL_API matrix<double> operator-(const Dmatrix<double>& a, const matrix<double>& b);
QEL_API Smatrix<double> operator-(const Dmatrix<double>& a, const Smatrix<double>& b);
QEL_API UTmatrix<double> operator-(const Dmatrix<double>& a, const UTmatrix<double>& b);
QEL_API Dmatrix<double> operator-(const Dmatrix<double>& a, const Dmatrix<double>& b);

// The matrix must be one column of the vector's size, else MatrixException
// "op+= matrix and vector must be of same order" ("op-= ..." for -=).
QEL_API matrix<double>& operator+=(matrix<double>& a, const std::vector<double>& v);
QEL_API matrix<double>& operator-=(matrix<double>& a, const std::vector<double>& v);
QEL_API matrix<double> operator+(const matrix<double>& a, const std::vector<double>& v);
QEL_API matrix<double> operator+(const std::vector<double>& v, const matrix<double>& a);
QEL_API matrix<double> operator-(const matrix<double>& a, const std::vector<double>& v);
// Adds the diagonal in place; context "matrix += diagonal".
QEL_API matrix<double>& operator+=(matrix<double>& a, const Dmatrix<double>& d);

// ---------------------------------------------------------------------------
// Products.  Dense kinds use the blocked product (tiles of 8 in all three
// loops); a Dmatrix scales rows or columns; UTmatrix with UTmatrix or
// Dmatrix is the plain triple loop into a UTmatrix.

QEL_API matrix<double> operator*(const matrix<double>& a, const matrix<double>& b);
QEL_API matrix<double> operator*(const matrix<double>& a, const Smatrix<double>& b);
QEL_API matrix<double> operator*(const matrix<double>& a, const UTmatrix<double>& b);
QEL_API matrix<double> operator*(const matrix<double>& a, const Dmatrix<double>& b);
QEL_API matrix<double> operator*(const Smatrix<double>& a, const matrix<double>& b);
QEL_API matrix<double> operator*(const Smatrix<double>& a, const Smatrix<double>& b);
QEL_API matrix<double> operator*(const Smatrix<double>& a, const UTmatrix<double>& b);
QEL_API matrix<double> operator*(const Smatrix<double>& a, const Dmatrix<double>& b);
QEL_API matrix<double> operator*(const UTmatrix<double>& a, const matrix<double>& b);
QEL_API matrix<double> operator*(const UTmatrix<double>& a, const Smatrix<double>& b);
QEL_API UTmatrix<double> operator*(const UTmatrix<double>& a, const UTmatrix<double>& b);
QEL_API UTmatrix<double> operator*(const UTmatrix<double>& a, const Dmatrix<double>& b);
QEL_API matrix<double> operator*(const Dmatrix<double>& a, const matrix<double>& b);
QEL_API matrix<double> operator*(const Dmatrix<double>& a, const Smatrix<double>& b);
QEL_API UTmatrix<double> operator*(const Dmatrix<double>& a, const UTmatrix<double>& b);
QEL_API Dmatrix<double> operator*(const Dmatrix<double>& a, const Dmatrix<double>& b);

// The vector's size must equal the column count (the order), else
// MatrixException "matrix and vector must be of same order"; the result is
// a column.
QEL_API matrix<double> operator*(const matrix<double>& a, const std::vector<double>& v);
QEL_API matrix<double> operator*(const Smatrix<double>& a, const std::vector<double>& v);

// The product is built first and then assigned, so a failure leaves the
// left operand unchanged.
QEL_API matrix<double>& operator*=(matrix<double>& a, const matrix<double>& b);
QEL_API matrix<double>& operator*=(matrix<double>& a, const std::vector<double>& v);
QEL_API Dmatrix<double>& operator*=(Dmatrix<double>& a, const Dmatrix<double>& b);

// Scalar multiples of the stored elements.
QEL_API matrix<double> operator*(double k, const matrix<double>& a);
QEL_API Smatrix<double> operator*(double k, const Smatrix<double>& a);
QEL_API Smatrix<double> operator*(const Smatrix<double>& a, double k);
QEL_API UTmatrix<double> operator*(double k, const UTmatrix<double>& a);
QEL_API UTmatrix<double> operator*(const UTmatrix<double>& a, double k);
QEL_API Dmatrix<double> operator*(const Dmatrix<double>& a, double k);
QEL_API Dmatrix<double> operator*(double k, const Dmatrix<double>& a);

// The plain triple loop with one sum per element: the reference for the
// blocked product.  Same order test and message as operator*.
QEL_API matrix<double> SlowMatrixMultiply(const matrix<double>& a, const matrix<double>& b);

// C = A'B and C = AB'.  C is resized and zeroed; no orders are checked, so
// the caller passes A and B with equal row counts (equal column counts).
QEL_API void multiplyLeftTranspose(const matrix<double>& a, const matrix<double>& b,
                                   matrix<double>& c);
QEL_API void multiplyRightTranspose(const matrix<double>& a, const matrix<double>& b,
                                    matrix<double>& c);

// ---------------------------------------------------------------------------
// Column primitives over the leading count rows.  count greater than the
// row count (order), or greater than the size of the vector taking part,
// throws MatrixException("matrix::number of products greater than
// dimension"); count <= 0 gives 0 or changes nothing.  A column index
// outside the matrix throws allege::AllegeException.

// Sum over k < count of m(k, i) m(k, j).
QEL_API double DotProduct(const matrix<double>& m, int i, int j, int count);
// Sum over k < count of m(k, i) v[k].
QEL_API double DotProduct(const matrix<double>& m, int i, const std::vector<double>& v, int count);
// v[r] += k m(r, j) for r < count.
QEL_API void KTimesColumnPlusVector(const matrix<double>& m, double k, int j,
                                    std::vector<double>& v, int count);
QEL_API void KTimesColumnPlusVector(const UTmatrix<double>& m, double k, int j,
                                    std::vector<double>& v, int count);
// m(r, j) *= k for r < count.
QEL_API void KTimesColumn(Smatrix<double>& m, double k, int j, int count);
// m(r, to) += k m(r, from) for r < count.
QEL_API void KTimesColumnPlusColumn(Smatrix<double>& m, double k, int from, int to, int count);

// ---------------------------------------------------------------------------
// Quadratic forms.  x'Ax, not clamped.  The matrix form first requires a
// square matrix ("matrix::quadratic form is only defined for square
// matrices"), both require x of the order's size ("matrix::matrix and
// vector have incompatible dimensions"), thrown as MatrixException.
QEL_API double mQuadraticForm(const matrix<double>& A, const std::vector<double>& x);
QEL_API double mQuadraticForm(const Smatrix<double>& A, const std::vector<double>& x);
// (Bx - v)'(BAB')^{-1}(Bx - v) through the Cholesky factor of BAB'.  A
// nonsymmetric BAB' throws MatrixException("Smatrix cast: result not a
// symmetric matrix"), one that is not positive definite MatrixSingular.
QEL_API double mQuadraticForm(const matrix<double>& A, const matrix<double>& B,
                              const std::vector<double>& x, const std::vector<double>& v);
QEL_API double mQuadraticForm(const Smatrix<double>& A, const matrix<double>& B,
                              const std::vector<double>& x, const std::vector<double>& v);
} // namespace matrix_library
