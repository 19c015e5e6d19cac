// The value matrices of namespace matrix_library: storage, the magic word,
// resize and its invariant, access to the triangular and diagonal kinds,
// conversions, the symmetric cast with its fuzzy test, the transpose of a
// vector, and the exception classes with their messages.
#include "qel/qelmathlinearalgebra.h"

#include "qel/fuzzy.h"
#include "qel/qelbt.h"
#include "qelmath/matrixlibrary/matrix_detail.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

using matrix_library::Dmatrix;
using matrix_library::MatrixException;
using matrix_library::MatrixSingular;
using matrix_library::Smatrix;
using matrix_library::UTmatrix;
typedef matrix_library::matrix<double> Matrix;

namespace
{
Matrix mNumbered(int m, int n)
{
    Matrix a(m, n, 0.0);
    for (int i = 0; i < m; ++i)
        for (int j = 0; j < n; ++j)
            a(i, j) = 10.0 * i + j;
    return a;
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
    return "<no exception>";
}

// "assertion failed: (<expression>) matrix_values.cpp: <line>", the line
// being a positive number.
void mExpectAllege(const std::string& rsMessage, const std::string& rsExpression)
{
    const std::string sHead = "assertion failed: (" + rsExpression + ") matrix_values.cpp: ";
    ASSERT_EQ(rsMessage.compare(0, sHead.size(), sHead), 0) << rsMessage;
    const std::string sLine = rsMessage.substr(sHead.size());
    ASSERT_FALSE(sLine.empty());
    EXPECT_EQ(sLine.find_first_not_of("0123456789"), std::string::npos) << rsMessage;
    EXPECT_GT(std::stoi(sLine), 0);
}
} // namespace

TEST(AllegeException, MessageHasExpressionFileNameAndLine)
{
    try
    {
        allege::fail("a < b", "/some/dir/file.cpp", 42);
        FAIL() << "no exception";
    }
    catch (const allege::AllegeException& e)
    {
        EXPECT_STREQ(e.what(), "assertion failed: (a < b) file.cpp: 42");
    }
    const int iLine = __LINE__ + 1;
    const std::string s = mAllegeMessage([] { QEL_ALLEGE(1 + 1 == 3); });
    EXPECT_EQ(s, "assertion failed: (1 + 1 == 3) matrix_values_test.cpp: " + std::to_string(iLine));
    const allege::AllegeException copy(allege::AllegeException("x"));
    EXPECT_STREQ(copy.what(), "x");
    const std::runtime_error* pBase = &copy;
    EXPECT_STREQ(pBase->what(), "x");
}

TEST(MatrixExceptions, MessagesAndBases)
{
    const MatrixSingular singular;
    EXPECT_STREQ(singular.what(), "Matrix is singular");
    const MatrixSingular singularCopy(singular);
    EXPECT_STREQ(singularCopy.what(), "Matrix is singular");
    const MatrixException exception("matrix addition : row counts are different");
    const std::runtime_error& rBase = exception;
    EXPECT_STREQ(rBase.what(), "matrix addition : row counts are different");
    const std::runtime_error& rSingularBase = singular;
    EXPECT_STREQ(rSingularBase.what(), "Matrix is singular");
}

TEST(ValueMatrix, ConstructorsSetTheMagicWordAndCopiesKeepIt)
{
    const Matrix empty;
    EXPECT_EQ(empty.magic(), 0xFEEDBAAAu);
    EXPECT_EQ(empty.rowCount(), 0);
    EXPECT_EQ(empty.colCount(), 0);
    EXPECT_EQ(empty.elementCount(), 0);
    const Matrix a(2, 3, 1.5);
    EXPECT_EQ(a.magic(), 0xFEEDBAAAu);
    EXPECT_EQ(a.elementCount(), 6);
    EXPECT_EQ(a.storage(), std::vector<double>(6, 1.5));
    const Matrix b(a);
    EXPECT_EQ(b.magic(), 0xFEEDBAAAu);
    EXPECT_EQ(b.storage(), a.storage());
    EXPECT_EQ(Matrix(Smatrix<double>(2, 1.0)).magic(), 0xFEEDBAAAu);
}

TEST(ValueMatrix, ResizeOverwritesEvenWithTheSameOrder)
{
    Matrix a = mNumbered(2, 2);
    a.resize(2, 2, 9.0);
    EXPECT_EQ(a.storage(), std::vector<double>(4, 9.0));
    a.resize(3, 1, -2.0);
    EXPECT_EQ(a.rowCount(), 3);
    EXPECT_EQ(a.colCount(), 1);
    EXPECT_EQ(a.elementCount(), 3);
    EXPECT_EQ(a.storage(), std::vector<double>(3, -2.0));
    a.resize(0, 5, 1.0);
    EXPECT_EQ(a.elementCount(), 0);
    EXPECT_TRUE(a.storage().empty());
}

TEST(ValueMatrix, NegativeOrderFailsTheAssertion)
{
    Matrix a = mNumbered(2, 2);
    mExpectAllege(mAllegeMessage([&] { a.resize(-1, 2, 0.0); }), "m >= 0 && n >= 0");
    EXPECT_EQ(a.storage(), (std::vector<double>{0, 1, 10, 11}));
    mExpectAllege(mAllegeMessage([] { Matrix b(2, -2, 0.0); }), "m >= 0 && n >= 0");
    mExpectAllege(mAllegeMessage([] { Smatrix<double> s(-1, 0.0); }), "n >= 0");
    mExpectAllege(mAllegeMessage([] { Dmatrix<double> d(-1, 0.0); }), "n >= 0");
    mExpectAllege(mAllegeMessage([] { UTmatrix<double> u(-1, 0.0); }), "n >= 0");
}

TEST(ValueMatrix, AccessOutsideTheMatrixFailsTheAssertion)
{
    Matrix a = mNumbered(2, 3);
    EXPECT_EQ(a(1, 2), 12.0);
    const Matrix& rc = a;
    mExpectAllege(mAllegeMessage([&] { return rc(2, 0); }), "0 <= i && i < m_ && 0 <= j && j < n_");
    mExpectAllege(mAllegeMessage([&] { a(0, 3) = 1.0; }), "0 <= i && i < m_ && 0 <= j && j < n_");
    Smatrix<double> s(2, 0.0);
    mExpectAllege(mAllegeMessage([&] { return s(0, 2); }), "0 <= i && i < n_ && 0 <= j && j < n_");
    UTmatrix<double> u(2, 0.0);
    mExpectAllege(mAllegeMessage([&] { return u(-1, 0); }), "0 <= i && i < n_ && 0 <= j && j < n_");
    Dmatrix<double> d(2, 0.0);
    mExpectAllege(mAllegeMessage([&] { return d(2, 2); }), "0 <= i && i < n_ && 0 <= j && j < n_");
}

TEST(ValueSmatrix, MirroredElementsShareStorage)
{
    Smatrix<double> s(3, 0.0);
    EXPECT_EQ(s.order(), 3);
    EXPECT_EQ(s.storage().size(), 6u);
    EXPECT_EQ(&s(1, 2), &s(2, 1));
    s(1, 2) = 7.0;
    EXPECT_EQ(s(2, 1), 7.0);
    s(2, 1) = 8.0;
    EXPECT_EQ(s(1, 2), 8.0);
    // (2, 1) at 2*3/2 + 1.
    EXPECT_EQ(s.storage()[4], 8.0);
}

TEST(ValueUTmatrix, WriteBelowTheDiagonalDisappears)
{
    UTmatrix<double> u(3, 1.0);
    const UTmatrix<double>& rc = u;
    EXPECT_EQ(rc(2, 1), 0.0);
    EXPECT_EQ(u(2, 1), 0.0);
    u(2, 1) = 5.0;
    EXPECT_EQ(rc(2, 1), 0.0);
    EXPECT_EQ(rc(1, 0), 0.0);
    EXPECT_EQ(u(1, 0), 0.0);
    EXPECT_EQ(u.storage(), std::vector<double>(6, 1.0));
    for (int i = 0; i < 3; ++i)
        for (int j = i; j < 3; ++j)
            u(i, j) = 10.0 * i + j;
    EXPECT_EQ(u.storage(), (std::vector<double>{0, 1, 2, 11, 12, 22}));
}

TEST(ValueDmatrix, OffDiagonalReadsZeroAndSwallowsWrites)
{
    Dmatrix<double> d(3, 2.0);
    EXPECT_EQ(d.order(), 3);
    EXPECT_EQ(d.storage(), std::vector<double>(3, 2.0));
    d(0, 2) = 4.0;
    EXPECT_EQ(d(0, 2), 0.0);
    const Dmatrix<double>& rc = d;
    EXPECT_EQ(rc(2, 0), 0.0);
    d(1, 1) = 6.0;
    EXPECT_EQ(rc(1, 1), 6.0);
    EXPECT_EQ(d.storage(), (std::vector<double>{2, 6, 2}));
    const Dmatrix<double> empty;
    EXPECT_EQ(empty.order(), 0);
}

TEST(ValueMatrix, ConversionsFromTheSquareKinds)
{
    Smatrix<double> s(2, 0.0);
    s(0, 0) = 1.0;
    s(1, 0) = 2.0;
    s(1, 1) = 3.0;
    EXPECT_EQ(Matrix(s).storage(), (std::vector<double>{1, 2, 2, 3}));
    UTmatrix<double> u(2, 0.0);
    u(0, 0) = 1.0;
    u(0, 1) = 2.0;
    u(1, 1) = 3.0;
    EXPECT_EQ(Matrix(u).storage(), (std::vector<double>{1, 2, 0, 3}));
    Dmatrix<double> d(2, 0.0);
    d(0, 0) = 4.0;
    d(1, 1) = 5.0;
    const Matrix md(d);
    EXPECT_EQ(md.rowCount(), 2);
    EXPECT_EQ(md.storage(), (std::vector<double>{4, 0, 0, 5}));
}

TEST(ValueMatrix, AssigningAVectorMakesAColumnUnlessEqual)
{
    Matrix row = mNumbered(1, 3);
    row = std::vector<double>{0.0, 1.0, 2.0};
    // Equal element by element: nothing changes, not even the counts.
    EXPECT_EQ(row.rowCount(), 1);
    EXPECT_EQ(row.colCount(), 3);
    row = std::vector<double>{5.0, 6.0};
    EXPECT_EQ(row.rowCount(), 2);
    EXPECT_EQ(row.colCount(), 1);
    EXPECT_EQ(row.elementCount(), 2);
    EXPECT_EQ(row.storage(), (std::vector<double>{5, 6}));
    row = std::vector<double>();
    EXPECT_EQ(row.rowCount(), 0);
    EXPECT_EQ(row.colCount(), 1);
    EXPECT_EQ(row.elementCount(), 0);
}

TEST(ValueMatrix, GetColumn)
{
    const Matrix a = mNumbered(3, 2);
    EXPECT_EQ(a.getColumn(1), (std::vector<double>{1, 11, 21}));
    EXPECT_TRUE(Matrix().getColumn(7).empty());
    EXPECT_TRUE(Matrix(0, 3, 0.0).getColumn(-4).empty());
    mExpectAllege(mAllegeMessage([&] { a.getColumn(2); }), "0 <= j && j < n_");
    mExpectAllege(mAllegeMessage([&] { a.getColumn(-1); }), "0 <= j && j < n_");
}

TEST(ValueMatrix, TransposeOfARowKeepsTheStorageByteForByte)
{
    Matrix row(1, 4, 0.0);
    row(0, 0) = 0.1;
    row(0, 1) = -2.5e300;
    row(0, 2) = 3.0;
    row(0, 3) = 1.0 / 3.0;
    const Matrix t = row.transpose();
    EXPECT_EQ(t.rowCount(), 4);
    EXPECT_EQ(t.colCount(), 1);
    ASSERT_EQ(t.storage().size(), row.storage().size());
    EXPECT_EQ(std::memcmp(t.storage().data(), row.storage().data(), 4 * sizeof(double)), 0);
    EXPECT_EQ(t(3, 0), 1.0 / 3.0);
    const Matrix back = t.transpose();
    EXPECT_EQ(back.rowCount(), 1);
    EXPECT_EQ(back.colCount(), 4);
}

TEST(ValueMatrix, TransposeOfAFullMatrix)
{
    const Matrix t = mNumbered(2, 3).transpose();
    EXPECT_EQ(t.rowCount(), 3);
    EXPECT_EQ(t.colCount(), 2);
    EXPECT_EQ(t.storage(), (std::vector<double>{0, 10, 1, 11, 2, 12}));
    EXPECT_EQ(Matrix().transpose().elementCount(), 0);
}

TEST(ValueMatrix, SmatrixCastWithinFuzzKeepsTheLowerElement)
{
    Matrix a(3, 3, 0.0);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            a(i, j) = 1.0 + i + j;
    // (1, 0) and (0, 1) differ by one unit of eps relative to 2.
    a(0, 1) = 2.0;
    a(1, 0) = 2.0 + 2.0 * mGetEps();
    ASSERT_NE(a(0, 1), a(1, 0));
    ASSERT_TRUE(mEqualWithinFuzz(a(1, 0), a(0, 1), 0.0));
    const Smatrix<double> s = static_cast<Smatrix<double>>(a);
    EXPECT_EQ(s.order(), 3);
    EXPECT_EQ(s(1, 0), 2.0 + 2.0 * mGetEps());
    EXPECT_EQ(s(0, 1), 2.0 + 2.0 * mGetEps());
    EXPECT_EQ(s(2, 2), 5.0);
}

TEST(ValueMatrix, SmatrixCastOfAnAsymmetricMatrixThrows)
{
    Matrix a(3, 3, 1.0);
    a(2, 1) = 1.0 + 1e-6;
    try
    {
        const Smatrix<double> s = static_cast<Smatrix<double>>(a);
        FAIL() << "no exception";
    }
    catch (const MatrixException& e)
    {
        EXPECT_STREQ(e.what(), "Smatrix cast: result not a symmetric matrix");
    }
}

TEST(ValueMatrix, SmatrixCastOfANonSquareMatrixFailsTheAssertion)
{
    const Matrix a(2, 3, 1.0);
    mExpectAllege(
        mAllegeMessage([&] { const Smatrix<double> s = static_cast<Smatrix<double>>(a); }),
        "rows == cols");
}

TEST(ValueSmatrix, ToUTmatrixAndBackKeepTheUpperTriangle)
{
    Smatrix<double> s(3, 0.0);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j <= i; ++j)
            s(i, j) = 10.0 * i + j;
    const UTmatrix<double> u = matrix_library::SmatrixToUTmatrix(s);
    EXPECT_EQ(u.order(), 3);
    EXPECT_EQ(u.storage(), (std::vector<double>{0, 10, 20, 11, 21, 22}));
    EXPECT_EQ(u(2, 0), 0.0);
    const Smatrix<double> back = matrix_library::UTmatrixToSmatrix(u);
    EXPECT_EQ(back.storage(), s.storage());
    EXPECT_EQ(matrix_library::SmatrixToUTmatrix(Smatrix<double>()).order(), 0);
}

TEST(ValueMatrix, CopiesAreIndependent)
{
    Smatrix<double> s(2, 1.0);
    Smatrix<double> t(s);
    t(0, 1) = 9.0;
    EXPECT_EQ(s(0, 1), 1.0);
    UTmatrix<double> u(2, 1.0);
    UTmatrix<double> v;
    v = u;
    v(0, 0) = 3.0;
    EXPECT_EQ(u(0, 0), 1.0);
    Dmatrix<double> d(2, 1.0);
    Dmatrix<double> e;
    e = d;
    e(1, 1) = 4.0;
    EXPECT_EQ(d(1, 1), 1.0);
    EXPECT_EQ(e.order(), 2);
}
