// Sums and differences of the matrix_library value matrices, element by
// element, and the sums of a column matrix with a std::vector.
//
// Each pair builds its context text, checks the orders, allocates a zero
// result of the kind that keeps the structure both operands guarantee, and
// fills it: a dense result over every (i, j), where the triangular and
// diagonal operands supply 0 off what they store; a symmetric result over
// its lower triangle; an upper triangular one over j >= i; a diagonal one
// along the diagonal.
//
// A pair with a dense matrix compares its row count with the other's order
// and, only when that agrees, its column count; two square kinds compare
// their orders.  Differences deliberately report "matrix addition", like
// sums.
#include "qel/matrixarithmetic.h"
#include "qelmath/matrixlibrary/matrix_functions_detail.h"

#include <functional>
#include <string>

namespace matrix_library
{
namespace
{
using detail::DenseReader;
using detail::DiagonalReader;
using detail::Index;
using detail::SymmetricReader;
using detail::UpperReader;

const char* const s_pszAddition = "matrix addition";
const char* const s_pszUpper = "upper matrix element wise op";
const char* const s_pszDiagonal = "diagonal matrix elementwise op";

[[noreturn]] void mThrowRows(const std::string& rsContext)
{
    throw MatrixException(rsContext + " : row counts are different");
}

[[noreturn]] void mThrowColumns(const std::string& rsContext)
{
    throw MatrixException(rsContext + " : col counts are different");
}

// A dense operand of rows x cols against a square one of the given order.
void mCheckDenseAgainstOrder(const char* pszContext, int iRows, int iColumns, int iOrder)
{
    const std::string sContext(pszContext);
    if (iRows != iOrder)
        mThrowRows(sContext);
    if (iColumns != iOrder)
        mThrowColumns(sContext);
}

void mCheckOrders(const char* pszContext, int iLeftOrder, int iRightOrder)
{
    const std::string sContext(pszContext);
    if (iLeftOrder != iRightOrder)
        mThrowRows(sContext);
}

template <class ReaderA, class ReaderB, class Op>
matrix<double> mDenseResult(const ReaderA& a, const ReaderB& b, int M, int N, Op op)
{
    matrix<double> result(M, N, 0.0);
    double* c = result.storage().data();
    for (Index i = 0; i < M; ++i)
        for (Index j = 0; j < N; ++j)
            c[i * N + j] = op(a(i, j), b(i, j));
    return result;
}

template <class ReaderA, class ReaderB, class Op>
Smatrix<double> mSymmetricResult(const ReaderA& a, const ReaderB& b, int N, Op op)
{
    Smatrix<double> result(N, 0.0);
    double* c = result.storage().data();
    for (Index i = 0; i < N; ++i)
        for (Index j = 0; j <= i; ++j)
            c[i * (i + 1) / 2 + j] = op(a(i, j), b(i, j));
    return result;
}

template <class ReaderA, class ReaderB, class Op>
UTmatrix<double> mUpperResult(const ReaderA& a, const ReaderB& b, int N, Op op)
{
    UTmatrix<double> result(N, 0.0);
    double* c = result.storage().data();
    for (Index i = 0; i < N; ++i)
        for (Index j = i; j < N; ++j)
            c[detail::mUpperPosition(N, i, j)] = op(a(i, j), b(i, j));
    return result;
}

template <class Op>
Dmatrix<double> mDiagonalResult(const Dmatrix<double>& a, const Dmatrix<double>& b, Op op)
{
    Dmatrix<double> result(a.order(), 0.0);
    const std::size_t n = result.storage().size();
    for (std::size_t i = 0; i < n; ++i)
        result.storage()[i] = op(a.storage()[i], b.storage()[i]);
    return result;
}

// matrix with matrix: the operand orders are asserted, not reported as a
// MatrixException.
template <class Op>
matrix<double> mDenseWithDense(const matrix<double>& a, const matrix<double>& b, Op op)
{
    if (!(a.rowCount() == b.rowCount() && a.colCount() == b.colCount()))
        ::allege::fail("m_ == other.m_ && n_ == other.n_", __FILE__, __LINE__);
    if (!(a.storage().size() == b.storage().size()))
        ::allege::fail("v_.size() == other.v_.size()", __FILE__, __LINE__);
    matrix<double> result(a);
    std::vector<double>& rv = result.storage();
    const std::vector<double>& rvOther = b.storage();
    for (std::size_t i = 0; i < rv.size(); ++i)
        rv[i] = op(rv[i], rvOther[i]);
    return result;
}

// Every pair of kinds, for one operation.
template <class Op> struct ElementWise
{
    static matrix<double> mm(const matrix<double>& a, const matrix<double>& b)
    {
        return mDenseWithDense(a, b, Op());
    }
    static matrix<double> ms(const matrix<double>& a, const Smatrix<double>& b)
    {
        mCheckDenseAgainstOrder(s_pszAddition, a.rowCount(), a.colCount(), b.order());
        return mDenseResult(DenseReader(a), SymmetricReader(b), a.rowCount(), a.colCount(), Op());
    }
    static matrix<double> mu(const matrix<double>& a, const UTmatrix<double>& b)
    {
        mCheckDenseAgainstOrder(s_pszAddition, a.rowCount(), a.colCount(), b.order());
        return mDenseResult(DenseReader(a), UpperReader(b), a.rowCount(), a.colCount(), Op());
    }
    static matrix<double> md(const matrix<double>& a, const Dmatrix<double>& b)
    {
        mCheckDenseAgainstOrder(s_pszAddition, a.rowCount(), a.colCount(), b.order());
        return mDenseResult(DenseReader(a), DiagonalReader(b), a.rowCount(), a.colCount(), Op());
    }
    static matrix<double> sm(const Smatrix<double>& a, const matrix<double>& b)
    {
        mCheckDenseAgainstOrder(s_pszAddition, b.rowCount(), b.colCount(), a.order());
        return mDenseResult(SymmetricReader(a), DenseReader(b), b.rowCount(), b.colCount(), Op());
    }
    static Smatrix<double> ss(const Smatrix<double>& a, const Smatrix<double>& b)
    {
        mCheckOrders(s_pszAddition, a.order(), b.order());
        return mSymmetricResult(SymmetricReader(a), SymmetricReader(b), a.order(), Op());
    }
    static matrix<double> su(const Smatrix<double>& a, const UTmatrix<double>& b)
    {
        mCheckOrders(s_pszAddition, a.order(), b.order());
        return mDenseResult(SymmetricReader(a), UpperReader(b), a.order(), a.order(), Op());
    }
    static Smatrix<double> sd(const Smatrix<double>& a, const Dmatrix<double>& b)
    {
        mCheckOrders(s_pszAddition, a.order(), b.order());
        return mSymmetricResult(SymmetricReader(a), DiagonalReader(b), a.order(), Op());
    }
    static matrix<double> um(const UTmatrix<double>& a, const matrix<double>& b)
    {
        mCheckDenseAgainstOrder(s_pszAddition, b.rowCount(), b.colCount(), a.order());
        return mDenseResult(UpperReader(a), DenseReader(b), b.rowCount(), b.colCount(), Op());
    }
    static matrix<double> us(const UTmatrix<double>& a, const Smatrix<double>& b)
    {
        mCheckOrders(s_pszAddition, a.order(), b.order());
        return mDenseResult(UpperReader(a), SymmetricReader(b), a.order(), a.order(), Op());
    }
    static UTmatrix<double> uu(const UTmatrix<double>& a, const UTmatrix<double>& b)
    {
        mCheckOrders(s_pszUpper, a.order(), b.order());
        return mUpperResult(UpperReader(a), UpperReader(b), a.order(), Op());
    }
    static UTmatrix<double> ud(const UTmatrix<double>& a, const Dmatrix<double>& b)
    {
        mCheckOrders(s_pszUpper, a.order(), b.order());
        return mUpperResult(UpperReader(a), DiagonalReader(b), a.order(), Op());
    }
    static matrix<double> dm(const Dmatrix<double>& a, const matrix<double>& b)
    {
        mCheckDenseAgainstOrder(s_pszAddition, b.rowCount(), b.colCount(), a.order());
        return mDenseResult(DiagonalReader(a), DenseReader(b), b.rowCount(), b.colCount(), Op());
    }
    static Smatrix<double> ds(const Dmatrix<double>& a, const Smatrix<double>& b)
    {
        mCheckOrders(s_pszAddition, a.order(), b.order());
        return mSymmetricResult(DiagonalReader(a), SymmetricReader(b), a.order(), Op());
    }
    static UTmatrix<double> du(const Dmatrix<double>& a, const UTmatrix<double>& b)
    {
        mCheckOrders(s_pszUpper, a.order(), b.order());
        return mUpperResult(DiagonalReader(a), UpperReader(b), a.order(), Op());
    }
    static Dmatrix<double> dd(const Dmatrix<double>& a, const Dmatrix<double>& b)
    {
        mCheckOrders(s_pszDiagonal, a.order(), b.order());
        return mDiagonalResult(a, b, Op());
    }
};

using Sum = ElementWise<std::plus<double>>;
using Difference = ElementWise<std::minus<double>>;

// Column matrix with vector, in place.
template <class Op>
matrix<double>& mColumnWithVector(matrix<double>& a, const std::vector<double>& v,
                                  const char* pszMessage, Op op)
{
    if (!(a.colCount() == 1 && static_cast<std::size_t>(a.rowCount()) == v.size()))
        throw MatrixException(pszMessage);
    std::vector<double>& rv = a.storage();
    for (std::size_t i = 0; i < v.size(); ++i)
        rv[i] = op(rv[i], v[i]);
    return a;
}
} // namespace

// clang-format off
matrix<double> operator+(const matrix<double>& a, const matrix<double>& b) { return Sum::mm(a, b); }
matrix<double> operator+(const matrix<double>& a, const Smatrix<double>& b) { return Sum::ms(a, b); }
matrix<double> operator+(const matrix<double>& a, const UTmatrix<double>& b) { return Sum::mu(a, b); }
matrix<double> operator+(const matrix<double>& a, const Dmatrix<double>& b) { return Sum::md(a, b); }
matrix<double> operator+(const Smatrix<double>& a, const matrix<double>& b) { return Sum::sm(a, b); }
Smatrix<double> operator+(const Smatrix<double>& a, const Smatrix<double>& b) { return Sum::ss(a, b); }
matrix<double> operator+(const Smatrix<double>& a, const UTmatrix<double>& b) { return Sum::su(a, b); }
Smatrix<double> operator+(const Smatrix<double>& a, const Dmatrix<double>& b) { return Sum::sd(a, b); }
matrix<double> operator+(const UTmatrix<double>& a, const matrix<double>& b) { return Sum::um(a, b); }
matrix<double> operator+(const UTmatrix<double>& a, const Smatrix<double>& b) { return Sum::us(a, b); }
UTmatrix<double> operator+(const UTmatrix<double>& a, const UTmatrix<double>& b) { return Sum::uu(a, b); }
UTmatrix<double> operator+(const UTmatrix<double>& a, const Dmatrix<double>& b) { return Sum::ud(a, b); }
matrix<double> operator+(const Dmatrix<double>& a, const matrix<double>& b) { return Sum::dm(a, b); }
Smatrix<double> operator+(const Dmatrix<double>& a, const Smatrix<double>& b) { return Sum::ds(a, b); }
UTmatrix<double> operator+(const Dmatrix<double>& a, const UTmatrix<double>& b) { return Sum::du(a, b); }
Dmatrix<double> operator+(const Dmatrix<double>& a, const Dmatrix<double>& b) { return Sum::dd(a, b); }

matrix<double> operator-(const matrix<double>& a, const matrix<double>& b) { return Difference::mm(a, b); }
matrix<double> operator-(const matrix<double>& a, const Smatrix<double>& b) { return Difference::ms(a, b); }
matrix<double> operator-(const matrix<double>& a, const UTmatrix<double>& b) { return Difference::mu(a, b); }
matrix<double> operator-(const matrix<double>& a, const Dmatrix<double>& b) { return Difference::md(a, b); }
matrix<double> operator-(const Smatrix<double>& a, const matrix<double>& b) { return Difference::sm(a, b); }
Smatrix<double> operator-(const Smatrix<double>& a, const Smatrix<double>& b) { return Difference::ss(a, b); }
matrix<double> operator-(const Smatrix<double>& a, const UTmatrix<double>& b) { return Difference::su(a, b); }
Smatrix<double> operator-(const Smatrix<double>& a, const Dmatrix<double>& b) { return Difference::sd(a, b); }
matrix<double> operator-(const UTmatrix<double>& a, const matrix<double>& b) { return Difference::um(a, b); }
matrix<double> operator-(const UTmatrix<double>& a, const Smatrix<double>& b) { return Difference::us(a, b); }
UTmatrix<double> operator-(const UTmatrix<double>& a, const UTmatrix<double>& b) { return Difference::uu(a, b); }
UTmatrix<double> operator-(const UTmatrix<double>& a, const Dmatrix<double>& b) { return Difference::ud(a, b); }
matrix<double> operator-(const Dmatrix<double>& a, const matrix<double>& b) { return Difference::dm(a, b); }
Smatrix<double> operator-(const Dmatrix<double>& a, const Smatrix<double>& b) { return Difference::ds(a, b); }
UTmatrix<double> operator-(const Dmatrix<double>& a, const UTmatrix<double>& b) { return Difference::du(a, b); }
Dmatrix<double> operator-(const Dmatrix<double>& a, const Dmatrix<double>& b) { return Difference::dd(a, b); }
// clang-format on

matrix<double>& operator+=(matrix<double>& a, const std::vector<double>& v)
{
    return mColumnWithVector(a, v, "op+= matrix and vector must be of same order",
                             std::plus<double>());
}

matrix<double>& operator-=(matrix<double>& a, const std::vector<double>& v)
{
    return mColumnWithVector(a, v, "op-= matrix and vector must be of same order",
                             std::minus<double>());
}

matrix<double> operator+(const matrix<double>& a, const std::vector<double>& v)
{
    matrix<double> result(a);
    result += v;
    return result;
}

matrix<double> operator+(const std::vector<double>& v, const matrix<double>& a)
{
    return a + v;
}

matrix<double> operator-(const matrix<double>& a, const std::vector<double>& v)
{
    matrix<double> result(a);
    result -= v;
    return result;
}

matrix<double>& operator+=(matrix<double>& a, const Dmatrix<double>& d)
{
    mCheckDenseAgainstOrder("matrix += diagonal", a.rowCount(), a.colCount(), d.order());
    std::vector<double>& rv = a.storage();
    const std::vector<double>& rvDiagonal = d.storage();
    const std::size_t n = rvDiagonal.size();
    for (std::size_t i = 0; i < n; ++i)
        rv[i * n + i] += rvDiagonal[i];
    return a;
}
} // namespace matrix_library
