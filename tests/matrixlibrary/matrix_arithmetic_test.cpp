// Arithmetic of the value matrices of namespace matrix_library: the result
// kinds of sums, differences and products, their values against dense
// element-by-element sums and against a hand computation, the order checks
// with their texts (the context of each pair, differences reporting
// "matrix addition"), the asserted orders of matrix with matrix, the vector
// forms, scalars, the transposed products, the column primitives and the
// quadratic forms.
#include "qel/matrixarithmetic.h"

#include "qel/matrixfactorisations.h"
#include "qelmath/matrixlibrary/matrix_functions_detail.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

namespace ml = matrix_library;
typedef ml::matrix<double> Matrix;
typedef ml::Smatrix<double> Sym;
typedef ml::UTmatrix<double> Upper;
typedef ml::Dmatrix<double> Diag;

namespace
{
// The text of the MatrixException that f throws, or a marker.
template <class F> std::string mMatrixMessage(F f)
{
    try
    {
        f();
    }
    catch (const ml::MatrixException& e)
    {
        return e.what();
    }
    catch (...)
    {
        return "<other exception>";
    }
    return "<no exception>";
}

template <class F> std::string mAllegeMessage(F f)
{
    try
    {
        f();
    }
    catch (const allege::AllegeException& e)
    {
        return e.what();
    }
    catch (...)
    {
        return "<other exception>";
    }
    return "<no exception>";
}

// "assertion failed: (<expression>) <file>: <positive line>".
void mExpectAllege(const std::string& rsMessage, const std::string& rsExpression,
                   const std::string& rsFile)
{
    const std::string sHead = "assertion failed: (" + rsExpression + ") " + rsFile + ": ";
    ASSERT_EQ(rsMessage.compare(0, sHead.size(), sHead), 0) << rsMessage;
    const std::string sLine = rsMessage.substr(sHead.size());
    ASSERT_FALSE(sLine.empty());
    EXPECT_EQ(sLine.find_first_not_of("0123456789"), std::string::npos) << rsMessage;
    EXPECT_GT(std::stoi(sLine), 0);
}

Matrix mNumbered(int m, int n, double dBase = 0.0)
{
    Matrix a(m, n, 0.0);
    for (int i = 0; i < m; ++i)
        for (int j = 0; j < n; ++j)
            a(i, j) = dBase + 10.0 * i + j + 1.0;
    return a;
}

Sym mSymmetric(int n, double dBase)
{
    Sym s(n, 0.0);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j <= i; ++j)
            s(i, j) = dBase + 3.0 * i - 2.0 * j + 0.5;
    return s;
}

Upper mUpper(int n, double dBase)
{
    Upper u(n, 0.0);
    for (int i = 0; i < n; ++i)
        for (int j = i; j < n; ++j)
            u(i, j) = dBase + i + 4.0 * j + 1.0;
    return u;
}

Diag mDiagonal(int n, double dBase)
{
    Diag d(n, 0.0);
    for (int i = 0; i < n; ++i)
        d(i, i) = dBase + 2.0 * i + 1.0;
    return d;
}

// Dense copies, element by element through the accessors.
template <class K> Matrix mDense(const K& a)
{
    Matrix r(a.rowCount(), a.colCount(), 0.0);
    for (int i = 0; i < a.rowCount(); ++i)
        for (int j = 0; j < a.colCount(); ++j)
            r(i, j) = a(i, j);
    return r;
}

template <class K> void mExpectDenseEqual(const K& rResult, const Matrix& rExpected)
{
    ASSERT_EQ(rResult.rowCount(), rExpected.rowCount());
    ASSERT_EQ(rResult.colCount(), rExpected.colCount());
    for (int i = 0; i < rExpected.rowCount(); ++i)
        for (int j = 0; j < rExpected.colCount(); ++j)
            EXPECT_EQ(rResult(i, j), rExpected(i, j)) << "(" << i << ", " << j << ")";
}

template <class A, class B, class Op> Matrix mElementWise(const A& a, const B& b, Op op)
{
    Matrix r(a.rowCount(), a.colCount(), 0.0);
    for (int i = 0; i < a.rowCount(); ++i)
        for (int j = 0; j < a.colCount(); ++j)
            r(i, j) = op(a(i, j), b(i, j));
    return r;
}

template <class A, class B> Matrix mTripleLoop(const A& a, const B& b)
{
    Matrix r(a.rowCount(), b.colCount(), 0.0);
    for (int i = 0; i < a.rowCount(); ++i)
        for (int j = 0; j < b.colCount(); ++j)
        {
            double s = 0.0;
            for (int k = 0; k < a.colCount(); ++k)
                s += a(i, k) * b(k, j);
            r(i, j) = s;
        }
    return r;
}

const std::string s_sAdd = "matrix addition";
const std::string s_sUpper = "upper matrix element wise op";
const std::string s_sDiag = "diagonal matrix elementwise op";
const std::string s_sRows = " : row counts are different";
const std::string s_sCols = " : col counts are different";
const std::string s_sProduct = "Matrix multiplication: incompatible orders";
const std::string s_sCount = "matrix::number of products greater than dimension";
} // namespace

// ---------------------------------------------------------------------------
// Result kinds

#define QEL_EXPECT_KIND(op, L, R, Result)                                                          \
    static_assert(std::is_same<decltype(std::declval<const L&>() op std::declval<const R&>()),     \
                               Result>::value,                                                     \
                  #L " " #op " " #R)

QEL_EXPECT_KIND(+, Matrix, Matrix, Matrix);
QEL_EXPECT_KIND(+, Matrix, Sym, Matrix);
QEL_EXPECT_KIND(+, Matrix, Upper, Matrix);
QEL_EXPECT_KIND(+, Matrix, Diag, Matrix);
QEL_EXPECT_KIND(+, Sym, Matrix, Matrix);
QEL_EXPECT_KIND(+, Sym, Sym, Sym);
QEL_EXPECT_KIND(+, Sym, Upper, Matrix);
QEL_EXPECT_KIND(+, Sym, Diag, Sym);
QEL_EXPECT_KIND(+, Upper, Matrix, Matrix);
QEL_EXPECT_KIND(+, Upper, Sym, Matrix);
QEL_EXPECT_KIND(+, Upper, Upper, Upper);
QEL_EXPECT_KIND(+, Upper, Diag, Upper);
QEL_EXPECT_KIND(+, Diag, Matrix, Matrix);
QEL_EXPECT_KIND(+, Diag, Sym, Sym);
QEL_EXPECT_KIND(+, Diag, Upper, Upper);
QEL_EXPECT_KIND(+, Diag, Diag, Diag);
QEL_EXPECT_KIND(-, Sym, Diag, Sym);
QEL_EXPECT_KIND(-, Upper, Diag, Upper);
QEL_EXPECT_KIND(-, Diag, Upper, Upper);
QEL_EXPECT_KIND(-, Diag, Diag, Diag);
QEL_EXPECT_KIND(-, Sym, Upper, Matrix);
QEL_EXPECT_KIND(*, Matrix, Matrix, Matrix);
QEL_EXPECT_KIND(*, Matrix, Sym, Matrix);
QEL_EXPECT_KIND(*, Matrix, Upper, Matrix);
QEL_EXPECT_KIND(*, Matrix, Diag, Matrix);
QEL_EXPECT_KIND(*, Sym, Matrix, Matrix);
QEL_EXPECT_KIND(*, Sym, Sym, Matrix);
QEL_EXPECT_KIND(*, Sym, Upper, Matrix);
QEL_EXPECT_KIND(*, Sym, Diag, Matrix);
QEL_EXPECT_KIND(*, Upper, Matrix, Matrix);
QEL_EXPECT_KIND(*, Upper, Sym, Matrix);
QEL_EXPECT_KIND(*, Upper, Upper, Upper);
QEL_EXPECT_KIND(*, Upper, Diag, Upper);
QEL_EXPECT_KIND(*, Diag, Matrix, Matrix);
QEL_EXPECT_KIND(*, Diag, Sym, Matrix);
QEL_EXPECT_KIND(*, Diag, Upper, Upper);
QEL_EXPECT_KIND(*, Diag, Diag, Diag);
QEL_EXPECT_KIND(*, Matrix, std::vector<double>, Matrix);
QEL_EXPECT_KIND(*, Sym, std::vector<double>, Matrix);
QEL_EXPECT_KIND(*, double, Sym, Sym);
QEL_EXPECT_KIND(*, Upper, double, Upper);

// ---------------------------------------------------------------------------
// Sums and differences

TEST(MatrixSum, SymmetricPlusDiagonalIsSymmetric)
{
    const Sym s = mSymmetric(3, 1.0);
    const Diag d = mDiagonal(3, 0.0);
    const Sym r = s + d;
    EXPECT_EQ(r.order(), 3);
    EXPECT_EQ(r.storage().size(), 6u);
    // Packed lower triangle: (0,0) (1,0) (1,1) (2,0) (2,1) (2,2).
    const std::vector<double> expected = {1.5 + 1.0, 4.5, 2.5 + 3.0, 7.5, 5.5, 3.5 + 5.0};
    EXPECT_EQ(r.storage(), expected);
    const Sym r2 = d + s;
    EXPECT_EQ(r2.storage(), expected);
}

TEST(MatrixSum, SymmetricPlusUpperIsDenseWithZeroLowerTriangleOfTheUpperOperand)
{
    const Sym s = mSymmetric(3, 0.0);
    const Upper u = mUpper(3, 0.0);
    const Matrix r = s + u;
    const Matrix expected = mElementWise(mDense(s), mDense(u), std::plus<double>());
    mExpectDenseEqual(r, expected);
    // Below the diagonal only the symmetric matrix counts.
    EXPECT_EQ(r(2, 0), s(2, 0));
    EXPECT_EQ(r(2, 1), s(2, 1));
    EXPECT_EQ(r(0, 2), s(0, 2) + u(0, 2));
    EXPECT_EQ(r(0, 2), 6.5 + 9.0);
}

TEST(MatrixSum, EveryPairMatchesTheDenseElementWiseOperation)
{
    const int n = 4;
    const Matrix m = mNumbered(n, n);
    const Sym s = mSymmetric(n, 1.25);
    const Upper u = mUpper(n, -3.0);
    const Diag d = mDiagonal(n, 0.5);
    const Matrix M = mDense(m), S = mDense(s), U = mDense(u), D = mDense(d);
    const std::plus<double> add;
    const std::minus<double> sub;

    mExpectDenseEqual(m + m, mElementWise(M, M, add));
    mExpectDenseEqual(m + s, mElementWise(M, S, add));
    mExpectDenseEqual(m + u, mElementWise(M, U, add));
    mExpectDenseEqual(m + d, mElementWise(M, D, add));
    mExpectDenseEqual(s + m, mElementWise(S, M, add));
    mExpectDenseEqual(s + s, mElementWise(S, S, add));
    mExpectDenseEqual(s + u, mElementWise(S, U, add));
    mExpectDenseEqual(s + d, mElementWise(S, D, add));
    mExpectDenseEqual(u + m, mElementWise(U, M, add));
    mExpectDenseEqual(u + s, mElementWise(U, S, add));
    mExpectDenseEqual(u + u, mElementWise(U, U, add));
    mExpectDenseEqual(u + d, mElementWise(U, D, add));
    mExpectDenseEqual(d + m, mElementWise(D, M, add));
    mExpectDenseEqual(d + s, mElementWise(D, S, add));
    mExpectDenseEqual(d + u, mElementWise(D, U, add));
    mExpectDenseEqual(d + d, mElementWise(D, D, add));

    mExpectDenseEqual(m - m, mElementWise(M, M, sub));
    mExpectDenseEqual(m - s, mElementWise(M, S, sub));
    mExpectDenseEqual(m - u, mElementWise(M, U, sub));
    mExpectDenseEqual(m - d, mElementWise(M, D, sub));
    mExpectDenseEqual(s - m, mElementWise(S, M, sub));
    mExpectDenseEqual(s - s, mElementWise(S, S, sub));
    mExpectDenseEqual(s - u, mElementWise(S, U, sub));
    mExpectDenseEqual(s - d, mElementWise(S, D, sub));
    mExpectDenseEqual(u - m, mElementWise(U, M, sub));
    mExpectDenseEqual(u - s, mElementWise(U, S, sub));
    mExpectDenseEqual(u - u, mElementWise(U, U, sub));
    mExpectDenseEqual(u - d, mElementWise(U, D, sub));
    mExpectDenseEqual(d - m, mElementWise(D, M, sub));
    mExpectDenseEqual(d - s, mElementWise(D, S, sub));
    mExpectDenseEqual(d - u, mElementWise(D, U, sub));
    mExpectDenseEqual(d - d, mElementWise(D, D, sub));
}

TEST(MatrixSum, DenseTwoByThreeWithDiagonalOfOrderTwoReportsColumns)
{
    const Matrix m = mNumbered(2, 3);
    const Diag d = mDiagonal(2, 0.0);
    EXPECT_EQ(mMatrixMessage([&] { (void)(m + d); }), "matrix addition : col counts are different");
    EXPECT_EQ(mMatrixMessage([&] { (void)(m - d); }), "matrix addition : col counts are different");
    EXPECT_EQ(mMatrixMessage([&] { (void)(d + m); }), s_sAdd + s_sCols);
    EXPECT_EQ(mMatrixMessage([&] { (void)(d - m); }), s_sAdd + s_sCols);
}

TEST(MatrixSum, UpperMinusDiagonalOfOtherOrderReportsRows)
{
    const Upper u = mUpper(3, 0.0);
    const Diag d = mDiagonal(2, 0.0);
    EXPECT_EQ(mMatrixMessage([&] { (void)(u - d); }),
              "upper matrix element wise op : row counts are different");
}

TEST(MatrixSum, DiagonalPlusDiagonalOfOtherOrderReportsRows)
{
    const Diag a = mDiagonal(3, 0.0);
    const Diag b = mDiagonal(4, 0.0);
    EXPECT_EQ(mMatrixMessage([&] { (void)(a + b); }),
              "diagonal matrix elementwise op : row counts are different");
    EXPECT_EQ(mMatrixMessage([&] { (void)(a - b); }), s_sDiag + s_sRows);
}

TEST(MatrixSum, EveryPairReportsItsContextAndTheFirstCountThatDiffers)
{
    const Matrix m23 = mNumbered(2, 3); // rows differ from order 3
    const Matrix m32 = mNumbered(3, 2); // rows agree with order 3, columns do not
    const Sym s = mSymmetric(3, 0.0);
    const Upper u = mUpper(3, 0.0);
    const Diag d = mDiagonal(3, 0.0);
    const Sym s2 = mSymmetric(2, 0.0);
    const Upper u2 = mUpper(2, 0.0);
    const Diag d2 = mDiagonal(2, 0.0);

    // Dense with a square kind: rows first, then columns; context always
    // "matrix addition", for sums and differences, on either side.
    EXPECT_EQ(mMatrixMessage([&] { (void)(m23 + s); }), s_sAdd + s_sRows);
    EXPECT_EQ(mMatrixMessage([&] { (void)(m32 + s); }), s_sAdd + s_sCols);
    EXPECT_EQ(mMatrixMessage([&] { (void)(s - m23); }), s_sAdd + s_sRows);
    EXPECT_EQ(mMatrixMessage([&] { (void)(s - m32); }), s_sAdd + s_sCols);
    EXPECT_EQ(mMatrixMessage([&] { (void)(m23 - u); }), s_sAdd + s_sRows);
    EXPECT_EQ(mMatrixMessage([&] { (void)(m32 + u); }), s_sAdd + s_sCols);
    EXPECT_EQ(mMatrixMessage([&] { (void)(u + m23); }), s_sAdd + s_sRows);
    EXPECT_EQ(mMatrixMessage([&] { (void)(u - m32); }), s_sAdd + s_sCols);
    EXPECT_EQ(mMatrixMessage([&] { (void)(m23 + d); }), s_sAdd + s_sRows);
    EXPECT_EQ(mMatrixMessage([&] { (void)(m32 - d); }), s_sAdd + s_sCols);
    EXPECT_EQ(mMatrixMessage([&] { (void)(d + m32); }), s_sAdd + s_sCols);
    EXPECT_EQ(mMatrixMessage([&] { (void)(d - m23); }), s_sAdd + s_sRows);

    // Two square kinds: the orders, reported as rows.
    EXPECT_EQ(mMatrixMessage([&] { (void)(s - s2); }),
              "matrix addition : row counts are different");
    EXPECT_EQ(mMatrixMessage([&] { (void)(s + s2); }), s_sAdd + s_sRows);
    EXPECT_EQ(mMatrixMessage([&] { (void)(s + u2); }), s_sAdd + s_sRows);
    EXPECT_EQ(mMatrixMessage([&] { (void)(u - s2); }), s_sAdd + s_sRows);
    EXPECT_EQ(mMatrixMessage([&] { (void)(s + d2); }), s_sAdd + s_sRows);
    EXPECT_EQ(mMatrixMessage([&] { (void)(d - s2); }), s_sAdd + s_sRows);
    EXPECT_EQ(mMatrixMessage([&] { (void)(u + u2); }), s_sUpper + s_sRows);
    EXPECT_EQ(mMatrixMessage([&] { (void)(u - u2); }), s_sUpper + s_sRows);
    EXPECT_EQ(mMatrixMessage([&] { (void)(u + d2); }), s_sUpper + s_sRows);
    EXPECT_EQ(mMatrixMessage([&] { (void)(d + u2); }), s_sUpper + s_sRows);
    EXPECT_EQ(mMatrixMessage([&] { (void)(d - u2); }), s_sUpper + s_sRows);
    EXPECT_EQ(mMatrixMessage([&] { (void)(d - d2); }), s_sDiag + s_sRows);

    // The operands are untouched by the failures.
    EXPECT_EQ(m23.rowCount(), 2);
    EXPECT_EQ(s.storage(), mSymmetric(3, 0.0).storage());
}

TEST(MatrixSum, DenseWithDenseAssertsItsOrders)
{
    const Matrix a = mNumbered(2, 3);
    const Matrix b = mNumbered(3, 2);
    mExpectAllege(mAllegeMessage([&] { (void)(a + b); }), "m_ == other.m_ && n_ == other.n_",
                  "matrix_functions_sums.cpp");
    mExpectAllege(mAllegeMessage([&] { (void)(a - b); }), "m_ == other.m_ && n_ == other.n_",
                  "matrix_functions_sums.cpp");
    // Not a MatrixException.
    EXPECT_EQ(mMatrixMessage([&] { (void)(a + b); }), "<other exception>");
}

TEST(MatrixSum, EmptyOperandsPassEveryCheckAndGiveEmptyResults)
{
    const Matrix m;
    const Sym s;
    const Upper u;
    const Diag d;
    EXPECT_EQ((m + m).rowCount(), 0);
    EXPECT_EQ((m - s).colCount(), 0);
    EXPECT_EQ((m + u).rowCount(), 0);
    EXPECT_EQ((m - d).rowCount(), 0);
    EXPECT_EQ((s + m).rowCount(), 0);
    EXPECT_EQ((s - s).order(), 0);
    EXPECT_EQ((s + u).rowCount(), 0);
    EXPECT_EQ((s + d).order(), 0);
    EXPECT_EQ((u - m).rowCount(), 0);
    EXPECT_EQ((u + s).rowCount(), 0);
    EXPECT_EQ((u + u).order(), 0);
    EXPECT_EQ((u - d).order(), 0);
    EXPECT_EQ((d + m).rowCount(), 0);
    EXPECT_EQ((d + s).order(), 0);
    EXPECT_EQ((d - u).order(), 0);
    EXPECT_EQ((d + d).order(), 0);
    EXPECT_TRUE((d - d).storage().empty());
}

// ---------------------------------------------------------------------------
// Sums with a vector

TEST(MatrixVectorSum, ColumnOfTheVectorsSizeAddsInPlace)
{
    Matrix a(3, 1, 1.0);
    const std::vector<double> v = {1.0, 2.0, 3.0};
    a += v;
    EXPECT_EQ(a.storage(), (std::vector<double>{2.0, 3.0, 4.0}));
    a -= v;
    EXPECT_EQ(a.storage(), (std::vector<double>{1.0, 1.0, 1.0}));
    EXPECT_EQ((a + v).storage(), (std::vector<double>{2.0, 3.0, 4.0}));
    EXPECT_EQ((v + a).storage(), (std::vector<double>{2.0, 3.0, 4.0}));
    EXPECT_EQ((a - v).storage(), (std::vector<double>{0.0, -1.0, -2.0}));
    EXPECT_EQ(a.storage(), (std::vector<double>{1.0, 1.0, 1.0}));
}

TEST(MatrixVectorSum, RowMatrixPlusVectorThrows)
{
    Matrix a(1, 3, 1.0);
    const std::vector<double> v = {1.0, 2.0, 3.0};
    EXPECT_EQ(mMatrixMessage([&] { a += v; }), "op+= matrix and vector must be of same order");
    EXPECT_EQ(mMatrixMessage([&] { a -= v; }), "op-= matrix and vector must be of same order");
    EXPECT_EQ(mMatrixMessage([&] { (void)(a + v); }),
              "op+= matrix and vector must be of same order");
    EXPECT_EQ(mMatrixMessage([&] { (void)(v + a); }),
              "op+= matrix and vector must be of same order");
    EXPECT_EQ(mMatrixMessage([&] { (void)(a - v); }),
              "op-= matrix and vector must be of same order");
    Matrix b(2, 1, 0.0);
    EXPECT_EQ(mMatrixMessage([&] { b += v; }), "op+= matrix and vector must be of same order");
    EXPECT_EQ(a.storage(), (std::vector<double>{1.0, 1.0, 1.0}));
    EXPECT_EQ(b.storage(), (std::vector<double>{0.0, 0.0}));
    // The rule asks for one column: an empty column takes an empty vector,
    // a 0 x 0 matrix has no column and does not.
    const std::vector<double> empty;
    Matrix column(0, 1, 0.0);
    column += empty;
    EXPECT_EQ(column.rowCount(), 0);
    EXPECT_EQ(column.colCount(), 1);
    Matrix none;
    EXPECT_EQ(mMatrixMessage([&] { none += empty; }),
              "op+= matrix and vector must be of same order");
}

TEST(MatrixVectorSum, PlusEqualsDiagonalAddsTheDiagonal)
{
    Matrix a = mNumbered(3, 3);
    a += mDiagonal(3, 0.0);
    EXPECT_EQ(a.storage(), (std::vector<double>{1.0 + 1.0, 2.0, 3.0, 11.0, 12.0 + 3.0, 13.0, 21.0,
                                                22.0, 23.0 + 5.0}));
    Matrix b = mNumbered(2, 3);
    EXPECT_EQ(mMatrixMessage([&] { b += mDiagonal(2, 0.0); }),
              "matrix += diagonal : col counts are different");
    EXPECT_EQ(mMatrixMessage([&] { b += mDiagonal(3, 0.0); }),
              "matrix += diagonal : row counts are different");
    EXPECT_EQ(b.storage(), mNumbered(2, 3).storage());
}

// ---------------------------------------------------------------------------
// Products

TEST(MatrixProduct, DenseTwoByThreeTimesDiagonalOfOrderTwoThrows)
{
    const Matrix m = mNumbered(2, 3);
    const Diag d = mDiagonal(2, 0.0);
    EXPECT_EQ(mMatrixMessage([&] { (void)(m * d); }), "Matrix multiplication: incompatible orders");
    // The column count of the left against the row count of the right.
    EXPECT_EQ(mMatrixMessage([&] { (void)(d * m); }), "<no exception>");
    const Diag d3 = mDiagonal(3, 0.0);
    EXPECT_EQ(mMatrixMessage([&] { (void)(d3 * m); }), s_sProduct);
}

TEST(MatrixProduct, EveryPairChecksLeftColumnsAgainstRightRows)
{
    const Matrix m = mNumbered(3, 2);
    const Sym s = mSymmetric(3, 0.0);
    const Upper u = mUpper(3, 0.0);
    const Diag d = mDiagonal(3, 0.0);
    const Sym s2 = mSymmetric(2, 0.0);
    const Upper u2 = mUpper(2, 0.0);
    const Diag d2 = mDiagonal(2, 0.0);
    EXPECT_EQ(mMatrixMessage([&] { (void)(m * m); }), s_sProduct);
    EXPECT_EQ(mMatrixMessage([&] { (void)(m * s); }), s_sProduct);
    EXPECT_EQ(mMatrixMessage([&] { (void)(m * u); }), s_sProduct);
    EXPECT_EQ(mMatrixMessage([&] { (void)(m * d); }), s_sProduct);
    EXPECT_EQ(mMatrixMessage([&] { (void)(s2 * m); }), s_sProduct);
    EXPECT_EQ(mMatrixMessage([&] { (void)(s * s2); }), s_sProduct);
    EXPECT_EQ(mMatrixMessage([&] { (void)(s * u2); }), s_sProduct);
    EXPECT_EQ(mMatrixMessage([&] { (void)(s * d2); }), s_sProduct);
    EXPECT_EQ(mMatrixMessage([&] { (void)(u2 * m); }), s_sProduct);
    EXPECT_EQ(mMatrixMessage([&] { (void)(u * s2); }), s_sProduct);
    EXPECT_EQ(mMatrixMessage([&] { (void)(u * u2); }), s_sProduct);
    EXPECT_EQ(mMatrixMessage([&] { (void)(u * d2); }), s_sProduct);
    EXPECT_EQ(mMatrixMessage([&] { (void)(d2 * m); }), s_sProduct);
    EXPECT_EQ(mMatrixMessage([&] { (void)(d * s2); }), s_sProduct);
    EXPECT_EQ(mMatrixMessage([&] { (void)(d * u2); }), s_sProduct);
    EXPECT_EQ(mMatrixMessage([&] { (void)(d * d2); }), s_sProduct);
    EXPECT_EQ(mMatrixMessage([&] { (void)ml::SlowMatrixMultiply(m, m); }), s_sProduct);
    // The accepted shapes.
    EXPECT_EQ((s * m).rowCount(), 3);
    EXPECT_EQ((s * m).colCount(), 2);
    EXPECT_EQ((u * m).colCount(), 2);
    EXPECT_EQ((d * m).colCount(), 2);
    EXPECT_EQ((m * s2).rowCount(), 3);
}

TEST(MatrixProduct, EveryPairMatchesTheTripleLoopOverDenseCopies)
{
    const int n = 5;
    const Matrix m = mNumbered(n, n, -20.0);
    const Sym s = mSymmetric(n, 0.75);
    const Upper u = mUpper(n, -2.5);
    const Diag d = mDiagonal(n, -4.0);
    const Matrix M = mDense(m), S = mDense(s), U = mDense(u), D = mDense(d);
    // Small integers and halves: every product and partial sum is exact.
    mExpectDenseEqual(m * m, mTripleLoop(M, M));
    mExpectDenseEqual(m * s, mTripleLoop(M, S));
    mExpectDenseEqual(m * u, mTripleLoop(M, U));
    mExpectDenseEqual(m * d, mTripleLoop(M, D));
    mExpectDenseEqual(s * m, mTripleLoop(S, M));
    mExpectDenseEqual(s * s, mTripleLoop(S, S));
    mExpectDenseEqual(s * u, mTripleLoop(S, U));
    mExpectDenseEqual(s * d, mTripleLoop(S, D));
    mExpectDenseEqual(u * m, mTripleLoop(U, M));
    mExpectDenseEqual(u * s, mTripleLoop(U, S));
    mExpectDenseEqual(u * u, mTripleLoop(U, U));
    mExpectDenseEqual(u * d, mTripleLoop(U, D));
    mExpectDenseEqual(d * m, mTripleLoop(D, M));
    mExpectDenseEqual(d * s, mTripleLoop(D, S));
    mExpectDenseEqual(d * u, mTripleLoop(D, U));
    mExpectDenseEqual(d * d, mTripleLoop(D, D));
}

TEST(MatrixProduct, HandComputedTwoByTwoAndScaling)
{
    Matrix a(2, 2, 0.0);
    a(0, 0) = 1.0;
    a(0, 1) = 2.0;
    a(1, 0) = 3.0;
    a(1, 1) = 4.0;
    Matrix b(2, 3, 0.0);
    b(0, 0) = 5.0;
    b(0, 1) = 6.0;
    b(0, 2) = 7.0;
    b(1, 0) = 8.0;
    b(1, 1) = 9.0;
    b(1, 2) = 10.0;
    EXPECT_EQ((a * b).storage(), (std::vector<double>{21.0, 24.0, 27.0, 47.0, 54.0, 61.0}));
    Diag d(3, 0.0);
    d(0, 0) = 2.0;
    d(1, 1) = -1.0;
    d(2, 2) = 0.5;
    EXPECT_EQ((b * d).storage(), (std::vector<double>{10.0, -6.0, 3.5, 16.0, -9.0, 5.0}));
    Diag d2(2, 0.0);
    d2(0, 0) = 3.0;
    d2(1, 1) = -2.0;
    EXPECT_EQ((d2 * b).storage(), (std::vector<double>{15.0, 18.0, 21.0, -16.0, -18.0, -20.0}));
}

TEST(MatrixProduct, UpperTimesUpperKeepsOnlyTheUpperTriangle)
{
    Upper a(2, 0.0);
    a(0, 0) = 1.0;
    a(0, 1) = 2.0;
    a(1, 1) = 3.0;
    Upper b(2, 0.0);
    b(0, 0) = 4.0;
    b(0, 1) = 5.0;
    b(1, 1) = 6.0;
    const Upper c = a * b;
    EXPECT_EQ(c.storage(), (std::vector<double>{4.0, 5.0 + 12.0, 18.0}));
    EXPECT_EQ(c(1, 0), 0.0);
}

TEST(MatrixProduct, DiagonalTimesDiagonalElementByElement)
{
    const Diag a = mDiagonal(3, 0.0);
    const Diag b = mDiagonal(3, 1.0);
    EXPECT_EQ((a * b).storage(), (std::vector<double>{2.0, 12.0, 30.0}));
    Diag c = a;
    c *= b;
    EXPECT_EQ(c.storage(), (std::vector<double>{2.0, 12.0, 30.0}));
    Diag e = mDiagonal(2, 0.0);
    EXPECT_EQ(mMatrixMessage([&] { e *= b; }), s_sProduct);
    EXPECT_EQ(e.storage(), (std::vector<double>{1.0, 3.0}));
}

TEST(MatrixProduct, TimesEqualsBuildsTheProductFirst)
{
    Matrix a = mNumbered(2, 3);
    const Matrix b = mNumbered(3, 2, 1.0);
    const Matrix expected = SlowMatrixMultiply(a, b);
    a *= b;
    mExpectDenseEqual(a, expected);
    // A failing *= leaves the left operand unchanged.
    Matrix c = mNumbered(2, 3);
    EXPECT_EQ(mMatrixMessage([&] { c *= mNumbered(2, 3); }), s_sProduct);
    EXPECT_EQ(c.storage(), mNumbered(2, 3).storage());
    EXPECT_EQ(c.rowCount(), 2);
    // With itself as the right operand.
    Matrix q = mNumbered(3, 3);
    q *= q;
    mExpectDenseEqual(q, mTripleLoop(mNumbered(3, 3), mNumbered(3, 3)));
}

TEST(MatrixProduct, WithVector)
{
    const Matrix m = mNumbered(2, 3);
    const std::vector<double> v = {1.0, -1.0, 2.0};
    const Matrix r = m * v;
    EXPECT_EQ(r.rowCount(), 2);
    EXPECT_EQ(r.colCount(), 1);
    EXPECT_EQ(r.storage(), (std::vector<double>{1.0 - 2.0 + 6.0, 11.0 - 12.0 + 26.0}));
    const Sym s = mSymmetric(3, 0.0);
    const Matrix rs = s * v;
    EXPECT_EQ(rs.storage(), (std::vector<double>{s(0, 0) - s(0, 1) + 2.0 * s(0, 2),
                                                 s(1, 0) - s(1, 1) + 2.0 * s(1, 2),
                                                 s(2, 0) - s(2, 1) + 2.0 * s(2, 2)}));
    const std::vector<double> w = {1.0, 2.0};
    EXPECT_EQ(mMatrixMessage([&] { (void)(m * w); }), "matrix and vector must be of same order");
    EXPECT_EQ(mMatrixMessage([&] { (void)(s * w); }), "matrix and vector must be of same order");
    Matrix a = mNumbered(2, 3);
    a *= v;
    EXPECT_EQ(a.storage(), r.storage());
    EXPECT_EQ(a.colCount(), 1);
    Matrix b = mNumbered(2, 3);
    EXPECT_EQ(mMatrixMessage([&] { b *= w; }), "matrix and vector must be of same order");
    EXPECT_EQ(b.storage(), mNumbered(2, 3).storage());
}

TEST(MatrixProduct, ScalarsScaleTheStoredElements)
{
    const Matrix m = mNumbered(2, 2);
    EXPECT_EQ((2.0 * m).storage(), (std::vector<double>{2.0, 4.0, 22.0, 24.0}));
    const Sym s = mSymmetric(2, 0.0);
    const std::vector<double> sExpected = {-1.0, -7.0, -3.0};
    EXPECT_EQ((-2.0 * s).storage(), sExpected);
    EXPECT_EQ((s * -2.0).storage(), sExpected);
    const Upper u = mUpper(2, 0.0);
    EXPECT_EQ((0.5 * u).storage(), (std::vector<double>{0.5, 2.5, 3.0}));
    EXPECT_EQ((u * 0.5).storage(), (std::vector<double>{0.5, 2.5, 3.0}));
    const Diag d = mDiagonal(2, 0.0);
    EXPECT_EQ((d * 3.0).storage(), (std::vector<double>{3.0, 9.0}));
    EXPECT_EQ((3.0 * d).storage(), (std::vector<double>{3.0, 9.0}));
}

TEST(MatrixProduct, EmptyOperandsPassEveryCheckAndGiveEmptyResults)
{
    const Matrix m;
    const Sym s;
    const Upper u;
    const Diag d;
    EXPECT_EQ((m * m).rowCount(), 0);
    EXPECT_EQ((m * s).rowCount(), 0);
    EXPECT_EQ((m * u).colCount(), 0);
    EXPECT_EQ((m * d).rowCount(), 0);
    EXPECT_EQ((s * m).rowCount(), 0);
    EXPECT_EQ((s * s).rowCount(), 0);
    EXPECT_EQ((s * u).rowCount(), 0);
    EXPECT_EQ((s * d).rowCount(), 0);
    EXPECT_EQ((u * m).rowCount(), 0);
    EXPECT_EQ((u * s).rowCount(), 0);
    EXPECT_EQ((u * u).order(), 0);
    EXPECT_EQ((u * d).order(), 0);
    EXPECT_EQ((d * m).rowCount(), 0);
    EXPECT_EQ((d * s).rowCount(), 0);
    EXPECT_EQ((d * u).order(), 0);
    EXPECT_EQ((d * d).order(), 0);
    EXPECT_EQ(ml::SlowMatrixMultiply(m, m).rowCount(), 0);
    const std::vector<double> empty;
    EXPECT_EQ((m * empty).rowCount(), 0);
    EXPECT_EQ((s * empty).rowCount(), 0);
    EXPECT_EQ(ml::mQuadraticForm(m, empty), 0.0);
    EXPECT_EQ(ml::mQuadraticForm(s, empty), 0.0);
    Matrix c(2, 2, 7.0);
    ml::multiplyLeftTranspose(m, m, c);
    EXPECT_EQ(c.rowCount(), 0);
    // A 3 x 0 times 0 x 2 is a 3 x 2 zero matrix.
    const Matrix a(3, 0, 0.0);
    const Matrix b(0, 2, 0.0);
    EXPECT_EQ((a * b).storage(), std::vector<double>(6, 0.0));
    EXPECT_EQ(ml::SlowMatrixMultiply(a, b).storage(), std::vector<double>(6, 0.0));
}

TEST(MatrixProduct, MissingValuesAndInfinitiesFlowThrough)
{
    Matrix a(1, 2, 1.0);
    a(0, 1) = std::numeric_limits<double>::infinity();
    Matrix b(2, 1, 1.0);
    const Matrix c = a * b;
    EXPECT_EQ(c(0, 0), std::numeric_limits<double>::infinity());
    b(1, 0) = 0.0;
    EXPECT_TRUE(std::isnan((a * b)(0, 0)));
}

TEST(MatrixProduct, TransposedProducts)
{
    const Matrix a = mNumbered(3, 2);
    const Matrix b = mNumbered(3, 4, 1.0);
    Matrix c(1, 1, 9.0);
    ml::multiplyLeftTranspose(a, b, c);
    mExpectDenseEqual(c, mTripleLoop(a.transpose(), b));
    const Matrix e = mNumbered(4, 2, -3.0);
    ml::multiplyRightTranspose(a, e, c);
    mExpectDenseEqual(c, mTripleLoop(a, e.transpose()));
    // The result may be one of the operands.
    Matrix f = mNumbered(3, 3);
    ml::multiplyLeftTranspose(f, f, f);
    mExpectDenseEqual(f, mTripleLoop(mNumbered(3, 3).transpose(), mNumbered(3, 3)));
    // Missing rows of B are an internal failure, not a read past the storage.
    mExpectAllege(mAllegeMessage([&] { ml::multiplyLeftTranspose(b, a.transpose(), c); }),
                  "M <= b.rowCount()", "matrix_functions_products.cpp");
    mExpectAllege(mAllegeMessage([&] { ml::multiplyRightTranspose(a, b, c); }), "K <= a.colCount()",
                  "matrix_functions_products.cpp");
}

// ---------------------------------------------------------------------------
// Column primitives

TEST(MatrixColumns, DotProductOverAllRowsIsAllowedOneMoreThrows)
{
    const Matrix m = mNumbered(3, 2);
    EXPECT_EQ(ml::DotProduct(m, 0, 1, m.rowCount()), 1.0 * 2.0 + 11.0 * 12.0 + 21.0 * 22.0);
    EXPECT_EQ(mMatrixMessage([&] { (void)ml::DotProduct(m, 0, 1, m.rowCount() + 1); }),
              "matrix::number of products greater than dimension");
    EXPECT_EQ(ml::DotProduct(m, 0, 1, 2), 1.0 * 2.0 + 11.0 * 12.0);
    EXPECT_EQ(ml::DotProduct(m, 0, 1, 0), 0.0);
    EXPECT_EQ(ml::DotProduct(m, 0, 1, -4), 0.0);
    const std::vector<double> v = {1.0, 2.0, 3.0};
    EXPECT_EQ(ml::DotProduct(m, 1, v, 3), 2.0 + 24.0 + 66.0);
    EXPECT_EQ(mMatrixMessage([&] { (void)ml::DotProduct(m, 1, v, 4); }), s_sCount);
    const std::vector<double> shortV = {1.0};
    EXPECT_EQ(mMatrixMessage([&] { (void)ml::DotProduct(m, 1, shortV, 2); }), s_sCount);
    mExpectAllege(mAllegeMessage([&] { (void)ml::DotProduct(m, 0, 2, 3); }),
                  "0 <= i && i < m.colCount() && 0 <= j && j < m.colCount()",
                  "matrix_functions_columns.cpp");
}

TEST(MatrixColumns, MultipleOfAColumnAddedToAVector)
{
    const Matrix m = mNumbered(3, 2);
    std::vector<double> v = {1.0, 1.0, 1.0};
    ml::KTimesColumnPlusVector(m, 2.0, 1, v, 2);
    EXPECT_EQ(v, (std::vector<double>{5.0, 25.0, 1.0}));
    ml::KTimesColumnPlusVector(m, 2.0, 1, v, 0);
    EXPECT_EQ(v, (std::vector<double>{5.0, 25.0, 1.0}));
    EXPECT_EQ(mMatrixMessage([&] { ml::KTimesColumnPlusVector(m, 2.0, 1, v, 4); }), s_sCount);
    const Upper u = mUpper(3, 0.0);
    std::vector<double> w = {0.0, 0.0, 0.0};
    ml::KTimesColumnPlusVector(u, -1.0, 1, w, 3);
    EXPECT_EQ(w, (std::vector<double>{-u(0, 1), -u(1, 1), 0.0}));
    EXPECT_EQ(mMatrixMessage([&] { ml::KTimesColumnPlusVector(u, 1.0, 1, w, 4); }), s_sCount);
    EXPECT_EQ(w, (std::vector<double>{-u(0, 1), -u(1, 1), 0.0}));
}

TEST(MatrixColumns, SymmetricColumnScalingActsOnWhatTheAccessorReaches)
{
    Sym s = mSymmetric(3, 0.0);
    const Sym s0 = s;
    ml::KTimesColumn(s, 2.0, 1, 2);
    // Rows 0 and 1 of column 1: the stored (1, 0) and (1, 1).
    EXPECT_EQ(s(0, 1), 2.0 * s0(0, 1));
    EXPECT_EQ(s(1, 1), 2.0 * s0(1, 1));
    EXPECT_EQ(s(2, 1), s0(2, 1));
    EXPECT_EQ(mMatrixMessage([&] { ml::KTimesColumn(s, 2.0, 1, 4); }), s_sCount);
    Sym t = s0;
    ml::KTimesColumnPlusColumn(t, -1.0, 0, 2, 3);
    EXPECT_EQ(t(0, 2), s0(0, 2) - s0(0, 0));
    EXPECT_EQ(t(1, 2), s0(1, 2) - s0(1, 0));
    // Row 2 reads column 0 after the update of (0, 2) = (2, 0).
    EXPECT_EQ(t(2, 2), s0(2, 2) - (s0(0, 2) - s0(0, 0)));
    EXPECT_EQ(mMatrixMessage([&] { ml::KTimesColumnPlusColumn(t, 1.0, 0, 2, 4); }), s_sCount);
    Sym e = s0;
    ml::KTimesColumnPlusColumn(e, 5.0, 0, 2, -1);
    ml::KTimesColumn(e, 5.0, 0, 0);
    EXPECT_EQ(e.storage(), s0.storage());
}

TEST(MatrixColumns, UpperDotProductCutsCountToTheSmallerColumn)
{
    const Upper u = mUpper(4, 0.0);
    // Columns 1 and 3 with count 4: only row 0 is taken (min(i, j) = 1).
    EXPECT_EQ(ml::DotProduct(u, 1, 3, 4), u(0, 1) * u(0, 3));
    EXPECT_EQ(ml::DotProduct(u, 3, 2, 4), u(0, 3) * u(0, 2) + u(1, 3) * u(1, 2));
    EXPECT_EQ(ml::DotProduct(u, 3, 3, 1), u(0, 3) * u(0, 3));
    EXPECT_EQ(ml::DotProduct(u, 0, 3, 4), 0.0);
    EXPECT_EQ(mMatrixMessage([&] { (void)ml::DotProduct(u, 3, 3, 5); }), s_sCount);
}

// ---------------------------------------------------------------------------
// Quadratic forms

TEST(MatrixQuadraticForm, ValuesAndTheNegativeFormIsNotClamped)
{
    Sym s(2, 0.0);
    s(0, 0) = 1.0;
    s(1, 1) = 1.0;
    s(1, 0) = 2.0;
    const std::vector<double> x = {1.0, -1.0};
    // 1 + 1 - 2 * 2 = -2: indefinite.
    EXPECT_EQ(ml::mQuadraticForm(s, x), -2.0);
    EXPECT_EQ(ml::mQuadraticForm(Matrix(s), x), -2.0);
    const Matrix m = mNumbered(3, 3);
    const std::vector<double> y = {1.0, 2.0, -1.0};
    // w = (1+4-3, 11+24-13, 21+44-23) = (2, 22, 42); x'w = 2 + 44 - 42.
    EXPECT_EQ(ml::mQuadraticForm(m, y), 4.0);
}

TEST(MatrixQuadraticForm, OrderChecks)
{
    const Matrix m = mNumbered(2, 3);
    const std::vector<double> x = {1.0, 2.0, 3.0};
    EXPECT_EQ(mMatrixMessage([&] { (void)ml::mQuadraticForm(m, x); }),
              "matrix::quadratic form is only defined for square matrices");
    EXPECT_EQ(mMatrixMessage([&] { (void)ml::mQuadraticForm(mNumbered(2, 2), x); }),
              "matrix::matrix and vector have incompatible dimensions");
    EXPECT_EQ(mMatrixMessage([&] { (void)ml::mQuadraticForm(mSymmetric(2, 0.0), x); }),
              "matrix::matrix and vector have incompatible dimensions");
}

TEST(MatrixQuadraticForm, TwoMatrixFormAgainstAHandComputation)
{
    // A = diag(4, 9), B = I: (x - v)' A^{-1} (x - v).
    Sym a(2, 0.0);
    a(0, 0) = 4.0;
    a(1, 1) = 9.0;
    Matrix b(2, 2, 0.0);
    b(0, 0) = 1.0;
    b(1, 1) = 1.0;
    const std::vector<double> x = {3.0, 5.0};
    const std::vector<double> v = {1.0, -1.0};
    EXPECT_DOUBLE_EQ(ml::mQuadraticForm(a, b, x, v), 4.0 / 4.0 + 36.0 / 9.0);
    EXPECT_DOUBLE_EQ(ml::mQuadraticForm(Matrix(a), b, x, v), 5.0);
    // One contrast: B = (1, 1), so BAB' = 13 and r = 8 - 0.
    Matrix c(1, 2, 1.0);
    const std::vector<double> v1 = {0.0};
    EXPECT_DOUBLE_EQ(ml::mQuadraticForm(a, c, x, v1), 64.0 / 13.0);
    // A correlated A, against its explicit inverse.
    Sym g(2, 0.0);
    g(0, 0) = 2.0;
    g(1, 0) = 1.0;
    g(1, 1) = 3.0;
    // inverse = (1/5) [[3, -1], [-1, 2]]; r = (2, 6): (12 - 24 + 72) / 5 = 12.
    EXPECT_NEAR(ml::mQuadraticForm(g, b, x, v), 12.0, 1e-14);
}

TEST(MatrixQuadraticForm, TwoMatrixFormFailures)
{
    Matrix b(2, 2, 0.0);
    b(0, 0) = 1.0;
    b(1, 1) = 1.0;
    const std::vector<double> x = {3.0, 5.0};
    const std::vector<double> v = {1.0, -1.0};
    EXPECT_EQ(mMatrixMessage([&] { (void)ml::mQuadraticForm(mNumbered(2, 3), b, x, v); }),
              "matrix::quadratic form is only defined for square matrices");
    // A nonsymmetric A makes BAB' nonsymmetric.
    EXPECT_EQ(mMatrixMessage([&] { (void)ml::mQuadraticForm(mNumbered(2, 2), b, x, v); }),
              "Smatrix cast: result not a symmetric matrix");
    // An indefinite A.
    Sym s(2, 0.0);
    s(0, 0) = 1.0;
    s(1, 1) = 1.0;
    s(1, 0) = 2.0;
    EXPECT_THROW((void)ml::mQuadraticForm(s, b, x, v), ml::MatrixSingular);
}
