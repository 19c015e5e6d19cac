// Internal: the LU factorisation object behind inverse(matrix).  Built once
// from one square matrix, it then answers solves until it is destroyed; its
// singular_ flag decides every later call.
#pragma once

#include "qel/qelmathlinearalgebra.h"

#include <vector>

namespace matrix_library
{
class LUDecomposition
{
public:
    // Factorises a.  A non-square a throws MatrixException("LU Decomp is
    // defined for only square matrices").
    explicit LUDecomposition(const matrix<double>& a);

    bool isSingular() const { return singular_; }
    // The factors in one square matrix: the unit lower triangle below the
    // diagonal, the upper triangle on and above it; 0 x 0 when singular.
    const matrix<double>& factors() const { return lu_; }
    // rowPermutation()[j] is the row exchanged with row j at step j.
    const std::vector<int>& rowPermutation() const { return row_perm; }
    // +1 or -1: the sign of the row permutation.
    double permutationParity() const { return parity; }

    // x with A x = b.  Asserts X (non-null) and that b has n elements; false
    // with an empty *X when the matrix is singular.
    bool solve(const std::vector<double>& b, std::vector<double>* X) const;
    // X with A X = B, column by column.  Asserts X and &B != X; when singular
    // *X becomes 0 x 0 and the result is false.
    bool solve(const matrix<double>& B, matrix<double>* X) const;

private:
    // Crout's method with implicit scaling; returns true when the matrix is
    // singular (*result is then left as the partial work).
    static bool decompose(const matrix<double>& a, matrix<double>* result,
                          std::vector<int>* row_perm, double* parity);
    void solveInPlace(std::vector<double>& x) const;

    matrix<double> lu_;
    bool singular_;
    std::vector<int> row_perm;
    double parity;
};
} // namespace matrix_library
