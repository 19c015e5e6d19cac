// Arithmetic of the persistent matrices of qel/matrix.h: the product and the
// in-place sum with a vector, the quadratic form x'Ax, and the column
// primitives, with the semantics of those of namespace matrix_library.
// Every element is read and written through the virtual accessors, so one
// routine serves matrix<double>, Smatrix<double> and UTmatrix<double>.
// Failures throw std::domain_error with a plain message.
//
// The quadratic form here is a variance (a gradient against a covariance
// matrix), so a value below zero, which only rounding can produce from a
// positive semidefinite matrix, or not a number, is returned as 0.0.
#include "qel/persistentmatrixarithmetic.h"

#include <cstddef>
#include <stdexcept>

namespace
{
const char* const s_pszCountTooLarge = "matrix::number of products greater than dimension";

void mCheckCount(int count, int iRows)
{
    if (count > iRows)
        throw std::domain_error(s_pszCountTooLarge);
}

void mCheckCount(int count, int iRows, const std::vector<double>& v)
{
    mCheckCount(count, iRows);
    if (count > 0 && static_cast<std::size_t>(count) > v.size())
        throw std::domain_error(s_pszCountTooLarge);
}

double mForm(const matrix<double>& A, const std::vector<double>& x)
{
    if (A.rowCount() != A.colCount())
        throw std::domain_error("matrix::quadratic form is only defined for square matrices");
    const int n = A.rowCount();
    if (x.size() != static_cast<std::size_t>(n))
        throw std::domain_error("matrix::matrix and vector have incompatible dimensions");
    std::vector<double> w(static_cast<std::size_t>(n), 0.0);
    for (int i = 0; i < n; ++i)
    {
        double dSum = 0.0;
        for (int j = 0; j < n; ++j)
            dSum += A(i, j) * x[static_cast<std::size_t>(j)];
        w[static_cast<std::size_t>(i)] = dSum;
    }
    double dForm = 0.0;
    for (std::size_t i = 0; i < w.size(); ++i)
        dForm += x[i] * w[i];
    return dForm >= 0.0 ? dForm : 0.0;
}
} // namespace

matrix<double> operator*(const matrix<double>& a, const std::vector<double>& v)
{
    if (v.size() != static_cast<std::size_t>(a.colCount()))
        throw std::domain_error("matrix and vector multiplication: incompatible orders");
    const int m = a.rowCount();
    const int n = a.colCount();
    matrix<double> result(m, 1, 0.0);
    for (int i = 0; i < m; ++i)
    {
        double dSum = 0.0;
        for (int j = 0; j < n; ++j)
            dSum += a(i, j) * v[static_cast<std::size_t>(j)];
        result(i, 0) = dSum;
    }
    return result;
}

matrix<double>& operator+=(matrix<double>& a, const std::vector<double>& v)
{
    if (!(a.colCount() == 1 && static_cast<std::size_t>(a.rowCount()) == v.size()))
        throw std::domain_error("op+= matrix and vector must be of same order");
    for (int i = 0; i < a.rowCount(); ++i)
        a(i, 0) += v[static_cast<std::size_t>(i)];
    return a;
}

double mQuadraticForm(const matrix<double>& A, const std::vector<double>& x)
{
    return mForm(A, x);
}

double mQuadraticForm(const Smatrix<double>& A, const std::vector<double>& x)
{
    return mForm(A, x);
}

double DotProduct(const matrix<double>& m, int i, int j, int count)
{
    mCheckCount(count, m.rowCount());
    double dSum = 0.0;
    for (int k = 0; k < count; ++k)
        dSum += m(k, i) * m(k, j);
    return dSum;
}

double DotProduct(const matrix<double>& m, int i, const std::vector<double>& v, int count)
{
    mCheckCount(count, m.rowCount(), v);
    double dSum = 0.0;
    for (int k = 0; k < count; ++k)
        dSum += m(k, i) * v[static_cast<std::size_t>(k)];
    return dSum;
}

void KTimesColumn(matrix<double>& m, double k, int j, int count)
{
    mCheckCount(count, m.rowCount());
    for (int r = 0; r < count; ++r)
        m(r, j) *= k;
}

void KTimesColumnPlusColumn(matrix<double>& m, double k, int from, int to, int count)
{
    mCheckCount(count, m.rowCount());
    for (int r = 0; r < count; ++r)
        m(r, to) += k * m(r, from);
}

void KTimesColumnPlusVector(const matrix<double>& m, double k, int j, std::vector<double>& v,
                            int count)
{
    mCheckCount(count, m.rowCount(), v);
    for (int r = 0; r < count; ++r)
        v[static_cast<std::size_t>(r)] += k * m(r, j);
}
