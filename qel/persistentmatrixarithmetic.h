// Arithmetic of the persistent matrices of qel/matrix.h: the few operations
// the distribution objects and the solvers need (product and in-place sum
// with a vector, the quadratic form, the column primitives).  They read and
// write through the virtual accessors, so one routine serves
// matrix<double>, Smatrix<double> and UTmatrix<double>, and they fail with
// std::domain_error.  The arithmetic of the value matrices of namespace
// matrix_library is in qel/matrixarithmetic.h.
#pragma once

#include "qel/matrix.h"
#include "qel/qelexport.h"

#include <vector>

// Every argument of type matrix<double> also takes an Smatrix<double> or a
// UTmatrix<double>.

// A column of m_ rows.  The vector's size must equal n_, else
// std::domain_error("matrix and vector multiplication: incompatible orders").
QEL_API matrix<double> operator*(const matrix<double>& a, const std::vector<double>& v);
// Needs n_ == 1 and m_ equal to the vector's size, else
// std::domain_error("op+= matrix and vector must be of same order").
QEL_API matrix<double>& operator+=(matrix<double>& a, const std::vector<double>& v);

// x'Ax.  A non-square matrix throws std::domain_error("matrix::quadratic
// form is only defined for square matrices"), a vector of another size
// std::domain_error("matrix::matrix and vector have incompatible
// dimensions").  A result below zero, or not a number, is returned as 0.0,
// so that rounding never yields a negative variance.
QEL_API double mQuadraticForm(const matrix<double>& A, const std::vector<double>& x);
QEL_API double mQuadraticForm(const Smatrix<double>& A, const std::vector<double>& x);

// Column primitives with the semantics of those of matrix_library; count
// greater than m_, or greater than the size of the vector taking part,
// throws std::domain_error("matrix::number of products greater than
// dimension").  Indices are not checked: like every access of these
// matrices, one outside the storage reaches the scratch element.
QEL_API double DotProduct(const matrix<double>& m, int i, int j, int count);
QEL_API double DotProduct(const matrix<double>& m, int i, const std::vector<double>& v, int count);
QEL_API void KTimesColumn(matrix<double>& m, double k, int j, int count);
QEL_API void KTimesColumnPlusColumn(matrix<double>& m, double k, int from, int to, int count);
QEL_API void KTimesColumnPlusVector(const matrix<double>& m, double k, int j,
                                    std::vector<double>& v, int count);
