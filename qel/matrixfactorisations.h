// Factorisations of the value matrices of namespace matrix_library.
//
// - Cholesky: the upper triangular U with U'U = A, computed column by column
//   from the upper triangle of A, with a restart row so that a caller who
//   repairs one diagonal element goes on without redoing the leading
//   columns; the inverse of A from U in packed storage (the two phases of
//   LINPACK's DPODI: Dongarra, Bunch, Moler and Stewart, LINPACK Users'
//   Guide, SIAM 1979); the solve of A x = b by forward and backward
//   substitution.
// - LU with implicit row scaling (Crout's method with partial pivoting on the
//   scaled pivots) and the inverse of a general square matrix built on it.
// - The eigensystem of a symmetric matrix: Householder reduction to
//   tridiagonal form with the transformations accumulated, then the QL
//   algorithm with implicit shifts (Martin, Reinsch and Wilkinson, "tred2"
//   and Bowdler, Martin, Reinsch and Wilkinson, "tql2", Numerische
//   Mathematik 11, 1968; Handbook for Automatic Computation, vol. II), with
//   its small-number tests made fuzzy, and the eigenvalues sorted ascending.
//
// Failure: a start row beyond the order, a non-square matrix to LU and a
// right-hand side of the wrong size throw MatrixException with their texts;
// the bool forms return false and leave their result empty (order 0); the
// twins ending in WithThrow throw MatrixSingular ("Matrix is singular"); a
// null result pointer throws allege::AllegeException ("result").  A
// Cholesky pivot that is not positive stops the factorisation: there is no
// tolerance, the only test is d <= 0.  An LU pivot or a row maximum equal to
// 0 within fuzz 1 (an absolute 0.01 mGetEps()) makes the matrix singular,
// except at order 1, where only an exact 0.0 does.
#pragma once

#include "qel/qelexport.h"
#include "qel/qelmathlinearalgebra.h"

#include <vector>

namespace matrix_library
{
// U with U'U = A from the upper triangle of a, starting at column startRow:
// the columns before it, and the rows before it of every later column, are
// taken as final.  On success *failRow = -1.  When the pivot of column j is
// not positive, *failRow = j, *failValue = its absolute value, and the
// partial factor (columns before j final) is returned.  startRow greater
// than the order throws MatrixException("UTmatrix: starting row greater
// than dimension"); startRow equal to the order returns a with *failRow -1.
// Null failRow or failValue, or a negative startRow, throw
// allege::AllegeException.
QEL_API UTmatrix<double> CholeskyDecomp(const UTmatrix<double>& a, int startRow, int* failRow,
                                        double* failValue);
// The factor from row 0; false, with *result of order 0, when A is not
// positive definite.
QEL_API bool CholeskyDecomp(const Smatrix<double>& a, UTmatrix<double>* result);
// The factor, or MatrixSingular.
QEL_API UTmatrix<double> CholeskyDecompWithThrow(const Smatrix<double>& a);
// (U'U)^{-1} from the factor U, computed inside packed symmetric storage.
QEL_API Smatrix<double> CholeskyInverse(const UTmatrix<double>& u);
// x with U'U x = b.  b of another size than the order throws
// MatrixException("UTmatrix: matrix and vector have incompatible dimensions").
QEL_API std::vector<double> CholeskyBackSub(const UTmatrix<double>& u,
                                            const std::vector<double>& b);

// The inverse through LU.  A non-square matrix throws MatrixException("LU
// Decomp is defined for only square matrices"); a singular one gives false
// and a 0 x 0 result.
QEL_API bool inverse(const matrix<double>& a, matrix<double>* result);
// The inverse through Cholesky: a symmetric matrix that is not positive
// definite has no inverse here, even when it is regular.
QEL_API bool inverse(const Smatrix<double>& a, Smatrix<double>* result);
// 1/d along the diagonal; an exact 0.0 gives false and an order-0 result.
QEL_API bool inverse(const Dmatrix<double>& a, Dmatrix<double>* result);
// The same, throwing MatrixSingular where the bool forms return false.
QEL_API matrix<double> inverseWithThrow(const matrix<double>& a);
QEL_API Smatrix<double> inverseWithThrow(const Smatrix<double>& a);
QEL_API Dmatrix<double> inverseWithThrow(const Dmatrix<double>& a);

// Eigenvalues (ascending, into values) and orthonormal eigenvectors (column
// k of vectors belongs to values[k]) of the symmetric matrix whose lower
// triangle a holds; the upper triangle is not read and symmetry is not
// checked.  a must be square (allege::AllegeException otherwise).  Returns
// 0, or the index l whose QL iteration did not settle in 30 rounds, with
// values and vectors as they stood then; a failure at index 0 therefore
// also returns 0.  vectors may be the same object as a.
template <class T>
QEL_API int mEigenSystemsIterator(const matrix<T>& a, std::vector<T>& values, matrix<T>& vectors);

extern template QEL_API int mEigenSystemsIterator<double>(const matrix<double>& a,
                                                          std::vector<double>& values,
                                                          matrix<double>& vectors);
} // namespace matrix_library
