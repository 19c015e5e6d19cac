// LU factorisation of a general square matrix and the inverses of the three
// square value kinds.
//
// The factorisation is Crout's method with partial pivoting on implicitly
// scaled pivots: each row is measured by its largest element, and the pivot
// of a column is the candidate largest relative to its own row's measure, so
// that a row scaled by a constant does not win the pivot by its scale alone.
// Among equal scaled candidates the later row is taken.  The result keeps
// the unit lower factor below the diagonal and the upper factor on and above
// it, with the row exchanges and their parity.  A row whose largest element,
// or a pivot, is zero within fuzz 1 makes the matrix singular; that fuzz is
// an absolute 0.01 mGetEps(), not relative to the matrix.  A matrix of order
// 1 skips the fuzz and is singular only when its element is exactly 0.0.
//
// A solve applies the row exchanges while it runs forward through the unit
// lower factor, skipping the leading zeros of the right-hand side, then
// substitutes backwards through the upper factor.
//
// The general inverse solves against the identity; the symmetric one goes
// through the Cholesky factor (so an indefinite symmetric matrix, although
// regular, has no inverse there); the diagonal one takes reciprocals.
#include "qelmath/matrixlibrary/matrix_ludecomposition.h"

#include "qel/fuzzy.h"
#include "qel/matrixfactorisations.h"

#include <cmath>
#include <cstddef>
#include <utility>

namespace matrix_library
{
namespace
{
inline std::size_t mAt(int i, int j, int n)
{
    return static_cast<std::size_t>(i) * static_cast<std::size_t>(n) + static_cast<std::size_t>(j);
}
} // namespace

LUDecomposition::LUDecomposition(const matrix<double>& a)
    : lu_(), singular_(false), row_perm(), parity(1.0)
{
    singular_ = decompose(a, &lu_, &row_perm, &parity);
    if (singular_)
        lu_ = matrix<double>();
}

bool LUDecomposition::decompose(const matrix<double>& a, matrix<double>* result,
                                std::vector<int>* row_perm, double* parity)
{
    QEL_ALLEGE(result);
    QEL_ALLEGE(row_perm);
    QEL_ALLEGE(parity);
    if (a.rowCount() != a.colCount())
        throw MatrixException("LU Decomp is defined for only square matrices");

    *result = a;
    const int n = a.rowCount();
    row_perm->assign(static_cast<std::size_t>(n), 0);
    *parity = 1.0;
    std::vector<double>& v = result->storage();

    if (n == 1)
        return v[0] == 0.0;

    std::vector<double> scale(static_cast<std::size_t>(n), 0.0);
    for (int i = 0; i < n; ++i)
    {
        double big = 0.0;
        for (int j = 0; j < n; ++j)
        {
            const double d = std::fabs(v[mAt(i, j, n)]);
            if (d > big)
                big = d;
        }
        if (mEqualWithinFuzz(0.0, big, 1.0))
            return true;
        scale[static_cast<std::size_t>(i)] = 1.0 / big;
    }

    // Column j is worked on in a contiguous copy; row i of the factors is
    // contiguous already, so every inner product runs at unit stride.
    std::vector<double> col(static_cast<std::size_t>(n), 0.0);
    for (int j = 0; j < n; ++j)
    {
        for (int i = 0; i < n; ++i)
            col[static_cast<std::size_t>(i)] = v[mAt(i, j, n)];

        for (int i = 0; i < j; ++i)
        {
            const double* pdRow = &v[mAt(i, 0, n)];
            double sum = 0.0;
            for (int k = 0; k < i; ++k)
                sum += pdRow[k] * col[static_cast<std::size_t>(k)];
            col[static_cast<std::size_t>(i)] -= sum;
        }

        double big = 0.0;
        int imax = 0;
        for (int i = j; i < n; ++i)
        {
            const double* pdRow = &v[mAt(i, 0, n)];
            double sum = 0.0;
            for (int k = 0; k < j; ++k)
                sum += pdRow[k] * col[static_cast<std::size_t>(k)];
            col[static_cast<std::size_t>(i)] -= sum;
            const double dum =
                scale[static_cast<std::size_t>(i)] * std::fabs(col[static_cast<std::size_t>(i)]);
            if (dum >= big)
            {
                big = dum;
                imax = i;
            }
        }

        for (int i = 0; i < n; ++i)
            v[mAt(i, j, n)] = col[static_cast<std::size_t>(i)];

        if (imax != j)
        {
            for (int k = 0; k < n; ++k)
                std::swap(v[mAt(imax, k, n)], v[mAt(j, k, n)]);
            *parity = -*parity;
            scale[static_cast<std::size_t>(imax)] = scale[static_cast<std::size_t>(j)];
        }
        (*row_perm)[static_cast<std::size_t>(j)] = imax;

        if (mEqualWithinFuzz(0.0, v[mAt(j, j, n)], 1.0))
            return true;

        const double dInvPivot = 1.0 / v[mAt(j, j, n)];
        for (int i = j + 1; i < n; ++i)
            v[mAt(i, j, n)] *= dInvPivot;
    }
    return false;
}

void LUDecomposition::solveInPlace(std::vector<double>& x) const
{
    const matrix<double>& lhs = lu_;
    const int n = lhs.rowCount();
    const std::vector<double>& v = lhs.storage();

    // ii is one past the first index with a non-zero sum; 0 while none seen.
    int ii = 0;
    for (int i = 0; i < n; ++i)
    {
        const std::size_t ip = static_cast<std::size_t>(row_perm[static_cast<std::size_t>(i)]);
        double sum = x[ip];
        x[ip] = x[static_cast<std::size_t>(i)];
        if (ii != 0)
        {
            for (int k = ii - 1; k < i; ++k)
                sum -= v[mAt(i, k, n)] * x[static_cast<std::size_t>(k)];
        }
        else if (sum != 0.0)
        {
            ii = i + 1;
        }
        x[static_cast<std::size_t>(i)] = sum;
    }
    for (int i = n - 1; i >= 0; --i)
    {
        double sum = x[static_cast<std::size_t>(i)];
        for (int k = i + 1; k < n; ++k)
            sum -= v[mAt(i, k, n)] * x[static_cast<std::size_t>(k)];
        // The assertion text "lhs(i,i)" is part of the interface.
        // clang-format off
        QEL_ALLEGE(lhs(i,i));
        // clang-format on
        x[static_cast<std::size_t>(i)] = sum / v[mAt(i, i, n)];
    }
}

bool LUDecomposition::solve(const std::vector<double>& b, std::vector<double>* X) const
{
    QEL_ALLEGE(X);
    if (singular_)
    {
        X->clear();
        return false;
    }
    QEL_ALLEGE(static_cast<long long>(b.size()) == static_cast<long long>(lu_.rowCount()));
    *X = b;
    solveInPlace(*X);
    return true;
}

bool LUDecomposition::solve(const matrix<double>& B, matrix<double>* X) const
{
    QEL_ALLEGE(X);
    QEL_ALLEGE(&B != X);
    if (singular_)
    {
        *X = matrix<double>();
        return false;
    }
    const int n = lu_.rowCount();
    QEL_ALLEGE(B.rowCount() == n);
    const int m = B.colCount();
    X->resize(n, m, 0.0);
    std::vector<double> x(static_cast<std::size_t>(n), 0.0);
    const std::vector<double>& vB = B.storage();
    std::vector<double>& vX = X->storage();
    for (int j = 0; j < m; ++j)
    {
        for (int i = 0; i < n; ++i)
            x[static_cast<std::size_t>(i)] = vB[mAt(i, j, m)];
        solveInPlace(x);
        for (int i = 0; i < n; ++i)
            vX[mAt(i, j, m)] = x[static_cast<std::size_t>(i)];
    }
    return true;
}

bool inverse(const matrix<double>& a, matrix<double>* result)
{
    QEL_ALLEGE(result);
    LUDecomposition lu(a);
    const int n = a.rowCount();
    matrix<double> identity(n, n, 0.0);
    for (int i = 0; i < n; ++i)
        identity(i, i) = 1.0;
    return lu.solve(identity, result);
}

bool inverse(const Smatrix<double>& a, Smatrix<double>* result)
{
    QEL_ALLEGE(result);
    UTmatrix<double> U;
    if (!CholeskyDecomp(a, &U))
    {
        *result = Smatrix<double>();
        return false;
    }
    *result = CholeskyInverse(U);
    return true;
}

bool inverse(const Dmatrix<double>& a, Dmatrix<double>* result)
{
    QEL_ALLEGE(result);
    const int n = a.order();
    Dmatrix<double> d(n, 0.0);
    const std::vector<double>& va = a.storage();
    std::vector<double>& vd = d.storage();
    for (std::size_t i = 0; i < va.size(); ++i)
    {
        if (va[i] == 0.0)
        {
            *result = Dmatrix<double>();
            return false;
        }
        vd[i] = 1.0 / va[i];
    }
    *result = d;
    return true;
}

matrix<double> inverseWithThrow(const matrix<double>& a)
{
    matrix<double> x;
    if (!inverse(a, &x))
        throw MatrixSingular();
    return x;
}

Smatrix<double> inverseWithThrow(const Smatrix<double>& a)
{
    Smatrix<double> x;
    if (!inverse(a, &x))
        throw MatrixSingular();
    return x;
}

Dmatrix<double> inverseWithThrow(const Dmatrix<double>& a)
{
    Dmatrix<double> x;
    if (!inverse(a, &x))
        throw MatrixSingular();
    return x;
}
} // namespace matrix_library
