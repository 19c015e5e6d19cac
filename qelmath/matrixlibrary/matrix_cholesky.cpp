// Cholesky factorisation, inverse and solve for symmetric positive definite
// matrices, in both matrix families.
//
// The factor is the upper triangular U with U'U = A, computed column by
// column (the inner-product form of the Cholesky recurrence): for column j,
// U(i, j) = (A(i, j) - sum_{k<i} U(k, i) U(k, j)) / U(i, i) for i < j, and
// U(j, j) = sqrt(A(j, j) - sum_{i<j} U(i, j)^2).  Working by columns lets a
// caller restart at a column: the Newton solver raises one failing diagonal
// element and goes on from there, keeping the columns already final.  The
// only test is a pivot d <= 0; there is no tolerance.
//
// The inverse follows the two phases of LINPACK's DPODI (Dongarra, Bunch,
// Moler and Stewart, LINPACK Users' Guide, SIAM 1979): U is inverted in
// place, then U^{-1} U^{-1}' is formed, both inside the packed storage of a
// symmetric matrix whose upper triangle holds U, with column scalings and
// column updates over leading rows.  The solve of U'U x = b is a forward
// substitution with U' followed by a backward one with U, the latter by
// columns so that it too runs down columns of the packed factor.
#include "qel/matrixfactorisations.h"

#include "qel/matrixarithmetic.h"
#include "qel/persistentmatrixarithmetic.h"
#include "qelmath/matrixlibrary/cholesky_persistent.h"
#include "qelmath/matrixlibrary/matrix_detail.h"
#include "qelmath/matrixlibrary/matrix_functions_detail.h"

#include <cmath>
#include <stdexcept>

namespace
{
// The column recurrence shared by both families.  U is the working copy,
// already holding the upper triangle of A; Dot(U, i, j, count) is the sum
// over k < count of U(k, i) U(k, j).
template <class UT, class Dot>
void mCholeskyColumns(UT& U, int startRow, int* failRow, double* failValue, Dot dot)
{
    const int n = U.rowCount();
    for (int j = startRow; j < n; ++j)
    {
        *failRow = j;
        *failValue = 0.0;
        for (int i = 0; i < j; ++i)
        {
            double t = U(i, j);
            if (i >= startRow)
            {
                t = (t - dot(U, i, j, i)) / U(i, i);
                U(i, j) = t;
            }
            *failValue += t * t;
        }
        const double d = U(j, j) - *failValue;
        if (d <= 0.0)
        {
            *failValue = std::fabs(d);
            return;
        }
        U(j, j) = std::sqrt(d);
    }
    *failRow = -1;
}
} // namespace

namespace matrix_library
{
UTmatrix<double> CholeskyDecomp(const UTmatrix<double>& a, int startRow, int* failRow,
                                double* failValue)
{
    QEL_ALLEGE(failRow);
    QEL_ALLEGE(failValue);
    QEL_ALLEGE(startRow >= 0);
    if (startRow > a.order())
        throw MatrixException("UTmatrix: starting row greater than dimension");
    UTmatrix<double> U(a);
    *failRow = -1;
    if (startRow == a.order())
        return U;
    mCholeskyColumns(U, startRow, failRow, failValue,
                     [](const UTmatrix<double>& m, int i, int j, int count)
                     { return DotProduct(m, i, j, count); });
    return U;
}

bool CholeskyDecomp(const Smatrix<double>& a, UTmatrix<double>* result)
{
    QEL_ALLEGE(result);
    int iFailRow = -1;
    double dFailValue = 0.0;
    UTmatrix<double> U = CholeskyDecomp(SmatrixToUTmatrix(a), 0, &iFailRow, &dFailValue);
    if (iFailRow != -1)
    {
        *result = UTmatrix<double>();
        return false;
    }
    *result = U;
    return true;
}

UTmatrix<double> CholeskyDecompWithThrow(const Smatrix<double>& a)
{
    UTmatrix<double> U;
    if (!CholeskyDecomp(a, &U))
        throw MatrixSingular();
    return U;
}

Smatrix<double> CholeskyInverse(const UTmatrix<double>& u)
{
    Smatrix<double> s = UTmatrixToSmatrix(u);
    const int n = s.order();
    // U^{-1} in place of U.
    for (int k = 0; k < n; ++k)
    {
        s(k, k) = 1.0 / s(k, k);
        KTimesColumn(s, -s(k, k), k, k);
        for (int j = k + 1; j < n; ++j)
        {
            const double t = s(k, j);
            s(k, j) = 0.0;
            KTimesColumnPlusColumn(s, t, k, j, k + 1);
        }
    }
    // U^{-1} U^{-1}'.
    for (int j = 0; j < n; ++j)
    {
        for (int k = 0; k < j; ++k)
            KTimesColumnPlusColumn(s, s(k, j), j, k, k + 1);
        KTimesColumn(s, s(j, j), j, j + 1);
    }
    return s;
}

std::vector<double> CholeskyBackSub(const UTmatrix<double>& u, const std::vector<double>& b)
{
    const int n = u.order();
    if (static_cast<long long>(b.size()) != static_cast<long long>(n))
        throw MatrixException("UTmatrix: matrix and vector have incompatible dimensions");
    std::vector<double> x(b);
    for (int i = 0; i < n; ++i)
    {
        double sum = 0.0;
        for (int k = 0; k < i; ++k)
            sum += u(k, i) * x[static_cast<std::size_t>(k)];
        x[static_cast<std::size_t>(i)] = (x[static_cast<std::size_t>(i)] - sum) / u(i, i);
    }
    for (int j = n - 1; j >= 0; --j)
    {
        x[static_cast<std::size_t>(j)] /= u(j, j);
        KTimesColumnPlusVector(u, -x[static_cast<std::size_t>(j)], j, x, j);
    }
    return x;
}
} // namespace matrix_library

namespace qel_persistent
{
UTmatrix<double> CholeskyDecomp(const UTmatrix<double>& a, int startRow, int* failRow,
                                double* failValue)
{
    if (failRow == nullptr || failValue == nullptr || startRow < 0)
        throw std::domain_error("UTmatrix: invalid Cholesky arguments");
    if (startRow > a.rowCount())
        throw std::domain_error("UTmatrix: starting row greater than dimension");
    UTmatrix<double> U(a);
    *failRow = -1;
    if (startRow == a.rowCount())
        return U;
    mCholeskyColumns(U, startRow, failRow, failValue,
                     [](const UTmatrix<double>& m, int i, int j, int count)
                     { return ::DotProduct(m, i, j, count); });
    return U;
}

UTmatrix<double> CholeskyDecomp(const Smatrix<double>& a)
{
    int iFailRow = -1;
    double dFailValue = 0.0;
    UTmatrix<double> U = CholeskyDecomp(UTmatrix<double>(a), 0, &iFailRow, &dFailValue);
    if (iFailRow != -1)
        throw std::domain_error("Smatrix: matrix is not positive definite");
    return U;
}

Smatrix<double> CholeskyInverse(const UTmatrix<double>& u)
{
    Smatrix<double> s(u);
    const int n = s.rowCount();
    for (int k = 0; k < n; ++k)
    {
        s(k, k) = 1.0 / s(k, k);
        KTimesColumn(s, -s(k, k), k, k);
        for (int j = k + 1; j < n; ++j)
        {
            const double t = s(k, j);
            s(k, j) = 0.0;
            KTimesColumnPlusColumn(s, t, k, j, k + 1);
        }
    }
    for (int j = 0; j < n; ++j)
    {
        for (int k = 0; k < j; ++k)
            KTimesColumnPlusColumn(s, s(k, j), j, k, k + 1);
        KTimesColumn(s, s(j, j), j, j + 1);
    }
    return s;
}

std::vector<double> CholeskyBackSub(const UTmatrix<double>& u, const std::vector<double>& b)
{
    const int n = u.rowCount();
    if (static_cast<long long>(b.size()) != static_cast<long long>(n))
        throw std::domain_error("UTmatrix: matrix and vector have incompatible dimensions");
    std::vector<double> x(b);
    for (int i = 0; i < n; ++i)
    {
        double sum = 0.0;
        for (int k = 0; k < i; ++k)
            sum += u(k, i) * x[static_cast<std::size_t>(k)];
        x[static_cast<std::size_t>(i)] = (x[static_cast<std::size_t>(i)] - sum) / u(i, i);
    }
    for (int j = n - 1; j >= 0; --j)
    {
        x[static_cast<std::size_t>(j)] /= u(j, j);
        KTimesColumnPlusVector(u, -x[static_cast<std::size_t>(j)], j, x, j);
    }
    return x;
}
} // namespace qel_persistent
