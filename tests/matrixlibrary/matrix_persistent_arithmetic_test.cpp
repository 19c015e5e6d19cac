// Arithmetic of the persistent matrices: the product and the in-place sum
// with a vector, the quadratic form that returns 0.0 for a negative value
// (where the matrix_library form keeps the negative number), and the column
// primitives, each on the dense and the packed kinds, with their
// std::domain_error texts.
#include "qel/persistentmatrixarithmetic.h"

#include "qel/matrixarithmetic.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{
template <class F> std::string mDomainMessage(F f)
{
    try
    {
        f();
    }
    catch (const std::domain_error& e)
    {
        return e.what();
    }
    catch (...)
    {
        return "<other exception>";
    }
    return "<no exception>";
}

::matrix<double> mNumbered(int m, int n)
{
    ::matrix<double> a(m, n, 0.0);
    for (int i = 0; i < m; ++i)
        for (int j = 0; j < n; ++j)
            a(i, j) = 10.0 * i + j + 1.0;
    return a;
}

// [[1, 2], [2, 1]]: indefinite.
::Smatrix<double> mIndefinite()
{
    ::Smatrix<double> s(2, 0.0);
    s(0, 0) = 1.0;
    s(1, 0) = 2.0;
    s(1, 1) = 1.0;
    return s;
}

const std::string s_sCount = "matrix::number of products greater than dimension";
} // namespace

TEST(PersistentMatrixArithmetic, ProductWithVectorOnEveryKind)
{
    const ::matrix<double> a = mNumbered(2, 3);
    const std::vector<double> v = {1.0, -1.0, 2.0};
    const ::matrix<double> r = a * v;
    EXPECT_EQ(r.rowCount(), 2);
    EXPECT_EQ(r.colCount(), 1);
    EXPECT_EQ(r.storage(), (std::vector<double>{5.0, 25.0}));
    // Symmetric: both triangles through the accessor.
    const ::Smatrix<double> s = mIndefinite();
    const std::vector<double> w = {3.0, 1.0};
    EXPECT_EQ((s * w).storage(), (std::vector<double>{5.0, 7.0}));
    // Upper triangular: zeros below the diagonal.
    ::UTmatrix<double> u(2, 0.0);
    u(0, 0) = 1.0;
    u(0, 1) = 2.0;
    u(1, 1) = 4.0;
    EXPECT_EQ((u * w).storage(), (std::vector<double>{5.0, 4.0}));
    EXPECT_EQ(mDomainMessage([&] { (void)(a * w); }),
              "matrix and vector multiplication: incompatible orders");
    EXPECT_EQ(mDomainMessage([&] { (void)(s * v); }),
              "matrix and vector multiplication: incompatible orders");
}

TEST(PersistentMatrixArithmetic, InPlaceSumWithVectorNeedsAColumnOfItsSize)
{
    ::matrix<double> a(3, 1, 1.0);
    const std::vector<double> v = {1.0, 2.0, 3.0};
    a += v;
    EXPECT_EQ(a.storage(), (std::vector<double>{2.0, 3.0, 4.0}));
    ::matrix<double> b(1, 3, 1.0);
    EXPECT_EQ(mDomainMessage([&] { b += v; }), "op+= matrix and vector must be of same order");
    EXPECT_EQ(b.storage(), (std::vector<double>{1.0, 1.0, 1.0}));
    ::matrix<double> c(2, 1, 0.0);
    EXPECT_EQ(mDomainMessage([&] { c += v; }), "op+= matrix and vector must be of same order");
}

TEST(PersistentMatrixArithmetic, NegativeQuadraticFormIsExactlyZero)
{
    const ::Smatrix<double> s = mIndefinite();
    const std::vector<double> x = {1.0, -1.0};
    // x'Ax = 1 + 1 - 4 = -2.
    EXPECT_EQ(::mQuadraticForm(s, x), 0.0);
    EXPECT_FALSE(std::signbit(::mQuadraticForm(s, x)));
    EXPECT_EQ(::mQuadraticForm(::matrix<double>(s), x), 0.0);
    // The matrix_library form yields the negative number.
    matrix_library::Smatrix<double> t(2, 0.0);
    t(0, 0) = 1.0;
    t(1, 0) = 2.0;
    t(1, 1) = 1.0;
    EXPECT_EQ(matrix_library::mQuadraticForm(t, x), -2.0);
    // A positive value passes unchanged: (1, 1) gives 6.
    EXPECT_EQ(::mQuadraticForm(s, std::vector<double>{1.0, 1.0}), 6.0);
    const std::vector<double> y = {1.0, 2.0, -1.0};
    EXPECT_EQ(::mQuadraticForm(mNumbered(3, 3), y), 4.0);
    // Not a number also gives 0.0.
    const std::vector<double> z = {std::numeric_limits<double>::quiet_NaN(), 1.0};
    EXPECT_EQ(::mQuadraticForm(s, z), 0.0);
}

TEST(PersistentMatrixArithmetic, QuadraticFormOrderChecks)
{
    const std::vector<double> x = {1.0, 2.0, 3.0};
    EXPECT_EQ(mDomainMessage([&] { (void)::mQuadraticForm(mNumbered(2, 3), x); }),
              "matrix::quadratic form is only defined for square matrices");
    EXPECT_EQ(mDomainMessage([&] { (void)::mQuadraticForm(mIndefinite(), x); }),
              "matrix::matrix and vector have incompatible dimensions");
    EXPECT_EQ(mDomainMessage([&] { (void)::mQuadraticForm(mNumbered(2, 2), x); }),
              "matrix::matrix and vector have incompatible dimensions");
    EXPECT_EQ(::mQuadraticForm(::Smatrix<double>(), std::vector<double>()), 0.0);
}

TEST(PersistentMatrixArithmetic, ColumnPrimitives)
{
    ::matrix<double> m = mNumbered(3, 2);
    EXPECT_EQ(::DotProduct(m, 0, 1, 3), 2.0 + 132.0 + 462.0);
    EXPECT_EQ(::DotProduct(m, 0, 1, 0), 0.0);
    EXPECT_EQ(mDomainMessage([&] { (void)::DotProduct(m, 0, 1, 4); }), s_sCount);
    const std::vector<double> v = {1.0, 2.0, 3.0};
    EXPECT_EQ(::DotProduct(m, 1, v, 2), 2.0 + 24.0);
    EXPECT_EQ(mDomainMessage([&] { (void)::DotProduct(m, 1, v, 4); }), s_sCount);
    EXPECT_EQ(mDomainMessage([&] { (void)::DotProduct(m, 1, std::vector<double>{1.0}, 2); }),
              s_sCount);

    ::KTimesColumn(m, -1.0, 0, 2);
    EXPECT_EQ(m.storage(), (std::vector<double>{-1.0, 2.0, -11.0, 12.0, 21.0, 22.0}));
    EXPECT_EQ(mDomainMessage([&] { ::KTimesColumn(m, 2.0, 0, 4); }), s_sCount);
    ::KTimesColumnPlusColumn(m, 2.0, 0, 1, 3);
    EXPECT_EQ(m.storage(), (std::vector<double>{-1.0, 0.0, -11.0, -10.0, 21.0, 64.0}));
    EXPECT_EQ(mDomainMessage([&] { ::KTimesColumnPlusColumn(m, 2.0, 0, 1, 4); }), s_sCount);
    std::vector<double> w = {1.0, 1.0, 1.0};
    ::KTimesColumnPlusVector(m, 0.5, 1, w, 3);
    EXPECT_EQ(w, (std::vector<double>{1.0, -4.0, 33.0}));
    EXPECT_EQ(mDomainMessage([&] { ::KTimesColumnPlusVector(m, 0.5, 1, w, 4); }), s_sCount);
    EXPECT_EQ(w, (std::vector<double>{1.0, -4.0, 33.0}));

    // The packed symmetric kind through its accessor: (0, 1) is (1, 0).
    ::Smatrix<double> s = mIndefinite();
    ::KTimesColumn(s, 3.0, 1, 1);
    EXPECT_EQ(s(1, 0), 6.0);
    EXPECT_EQ(s(0, 1), 6.0);
    EXPECT_EQ(s(1, 1), 1.0);
    EXPECT_EQ(::DotProduct(s, 0, 1, 2), 1.0 * 6.0 + 6.0 * 1.0);
    EXPECT_EQ(mDomainMessage([&] { (void)::DotProduct(s, 0, 1, 3); }), s_sCount);
    // The upper triangular kind reads zeros below the diagonal.
    ::UTmatrix<double> u(2, 0.0);
    u(0, 0) = 2.0;
    u(0, 1) = 3.0;
    u(1, 1) = 5.0;
    std::vector<double> x = {0.0, 0.0};
    ::KTimesColumnPlusVector(u, -1.0, 0, x, 2);
    EXPECT_EQ(x, (std::vector<double>{-2.0, 0.0}));
}
