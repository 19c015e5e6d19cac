// Internal: the Cholesky operations on the persistent matrices of
// qel/matrix.h, for the Newton solver and the life distributions.  They
// mirror those of namespace matrix_library (qel/matrixfactorisations.h),
// read and write through the virtual accessors, and fail with
// std::domain_error.
#pragma once

#include "qel/matrix.h"

#include <vector>

namespace qel_persistent
{
// U with U'U = A from the upper triangle of a, restarted at column startRow
// (the columns before it, and the rows before it of every later column,
// are taken as final).  *failRow = -1 on success; otherwise the column whose
// pivot was not positive, with *failValue its absolute value and the partial
// factor returned.  startRow greater than the order throws
// std::domain_error("UTmatrix: starting row greater than dimension").  Null
// failRow or failValue, or a negative startRow, throw
// std::domain_error("UTmatrix: invalid Cholesky arguments").
UTmatrix<double> CholeskyDecomp(const UTmatrix<double>& a, int startRow, int* failRow,
                                double* failValue);
// The factor from row 0, or std::domain_error("Smatrix: matrix is not
// positive definite").
UTmatrix<double> CholeskyDecomp(const Smatrix<double>& a);
// (U'U)^{-1} from the factor U, in packed symmetric storage.
Smatrix<double> CholeskyInverse(const UTmatrix<double>& u);
// x with U'U x = b; b of another size than the order throws
// std::domain_error("UTmatrix: matrix and vector have incompatible
// dimensions").
std::vector<double> CholeskyBackSub(const UTmatrix<double>& u, const std::vector<double>& b);
} // namespace qel_persistent
