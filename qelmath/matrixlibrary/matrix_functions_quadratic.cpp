// Quadratic forms of the matrix_library value matrices.
//
// x'Ax is formed as w = Ax in one temporary vector (each row summed in
// index order), then the sum of x[i] w[i] from index 0 upward.  The result
// is not clamped: an indefinite A gives its negative value.
//
// The two-matrix form (Bx - v)'(BAB')^{-1}(Bx - v), the squared length of a
// linear contrast in the metric of its covariance, goes through the
// Cholesky factor L of T = BAB' (L'L = T): with r = Bx - v, y solves
// L'L y = r and the form is r'y.  T is cast to the symmetric kind, which
// requires exact symmetry within fuzz 0, and a T that is not positive
// definite throws MatrixSingular.
#include "qel/matrixarithmetic.h"
#include "qel/matrixfactorisations.h"
#include "qelmath/matrixlibrary/matrix_functions_detail.h"

namespace matrix_library
{
namespace
{
using detail::Index;

const char* const s_pszNotSquare = "matrix::quadratic form is only defined for square matrices";
const char* const s_pszIncompatible = "matrix::matrix and vector have incompatible dimensions";

template <class Reader> double mForm(const Reader& a, int n, const std::vector<double>& x)
{
    if (x.size() != static_cast<std::size_t>(n))
        throw MatrixException(s_pszIncompatible);
    std::vector<double> w(static_cast<std::size_t>(n), 0.0);
    for (Index i = 0; i < n; ++i)
    {
        double dSum = 0.0;
        for (Index j = 0; j < n; ++j)
            dSum += a(i, j) * x[static_cast<std::size_t>(j)];
        w[static_cast<std::size_t>(i)] = dSum;
    }
    double dForm = 0.0;
    for (std::size_t i = 0; i < w.size(); ++i)
        dForm += x[i] * w[i];
    return dForm;
}

// r = Bx - v, T = (B A) B', then r' (L'L)^{-1} r.
template <class Kind>
double mContrastForm(const Kind& A, const matrix<double>& B, const std::vector<double>& x,
                     const std::vector<double>& v)
{
    const matrix<double> r = B * x - v;
    const Smatrix<double> T = static_cast<Smatrix<double>>((B * A) * B.transpose());
    const UTmatrix<double> L = CholeskyDecompWithThrow(T);
    matrix<double> y;
    y = CholeskyBackSub(L, r.getColumn(0));
    return (r.transpose() * y)(0, 0);
}
} // namespace

double mQuadraticForm(const matrix<double>& A, const std::vector<double>& x)
{
    if (A.rowCount() != A.colCount())
        throw MatrixException(s_pszNotSquare);
    return mForm(detail::DenseReader(A), A.rowCount(), x);
}

double mQuadraticForm(const Smatrix<double>& A, const std::vector<double>& x)
{
    return mForm(detail::SymmetricReader(A), A.order(), x);
}

double mQuadraticForm(const matrix<double>& A, const matrix<double>& B,
                      const std::vector<double>& x, const std::vector<double>& v)
{
    if (A.rowCount() != A.colCount())
        throw MatrixException(s_pszNotSquare);
    return mContrastForm(A, B, x, v);
}

double mQuadraticForm(const Smatrix<double>& A, const matrix<double>& B,
                      const std::vector<double>& x, const std::vector<double>& v)
{
    return mContrastForm(A, B, x, v);
}
} // namespace matrix_library
