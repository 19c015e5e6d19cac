// The blocked product of the value matrices against the reference product
// SlowMatrixMultiply, for every pair of kinds, at orders on both sides of
// the tile of 8 (1, 2, 7, 8, 9, 16, 17, 100) and for rectangular dense
// shapes, with random well-conditioned operands from a fixed seed.
//
// Bound: each of the two products computes every element as a recursive
// sum of n products, so each differs from the exact (AB)(i, j) by at most
// gamma_n (|A||B|)(i, j), gamma_n = n u / (1 - n u), u = 2^-53 (Higham,
// Accuracy and Stability of Numerical Algorithms, 2nd ed., SIAM 2002,
// section 3.5).  The test asserts |blocked - slow| <= 2 gamma_n (|A||B|)(i, j)
// for every element and reports the largest fraction of that bound used.
#include "qel/matrixarithmetic.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iostream>
#include <random>
#include <string>
#include <vector>

namespace ml = matrix_library;
typedef ml::matrix<double> Matrix;
typedef ml::Smatrix<double> Sym;
typedef ml::UTmatrix<double> Upper;
typedef ml::Dmatrix<double> Diag;

namespace
{
const int s_aiOrders[] = {1, 2, 7, 8, 9, 16, 17, 100};

// Uniform on [-1, 1) from the top 53 bits of a 64-bit Mersenne twister, so
// that the operands are the same with every standard library.
class CmOperands
{
public:
    explicit CmOperands(std::uint64_t uSeed) : m_engine(uSeed) {}
    double mNext() { return 2.0 * static_cast<double>(m_engine() >> 11) * 0x1.0p-53 - 1.0; }

    // Off-diagonal elements in [-1, 1), diagonal n + 1 + [-1, 1): strictly
    // diagonally dominant, so well conditioned.
    Matrix mDense(int m, int n)
    {
        Matrix a(m, n, 0.0);
        for (int i = 0; i < m; ++i)
            for (int j = 0; j < n; ++j)
                a(i, j) = mNext() + (i == j ? n + 1.0 : 0.0);
        return a;
    }
    Sym mSymmetric(int n)
    {
        Sym s(n, 0.0);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j <= i; ++j)
                s(i, j) = mNext() + (i == j ? n + 1.0 : 0.0);
        return s;
    }
    Upper mUpper(int n)
    {
        Upper u(n, 0.0);
        for (int i = 0; i < n; ++i)
            for (int j = i; j < n; ++j)
                u(i, j) = mNext() + (i == j ? n + 1.0 : 0.0);
        return u;
    }
    Diag mDiagonal(int n)
    {
        Diag d(n, 0.0);
        for (int i = 0; i < n; ++i)
            d(i, i) = 1.5 + 0.5 * mNext();
        return d;
    }

private:
    std::mt19937_64 m_engine;
};

Matrix mAsDense(const Matrix& a)
{
    return a;
}
template <class K> Matrix mAsDense(const K& a)
{
    return Matrix(a);
}

// Largest fraction of the bound 2 gamma_n (|A||B|)(i, j) that any element
// of the product uses; fails the test when an element exceeds it.
class CmWorst
{
public:
    double m_dFraction = 0.0;
    std::string m_sWhere;
};

template <class L, class R, class P>
void mCompare(const L& left, const R& right, const P& product, const std::string& rsWhat,
              CmWorst& rWorst)
{
    const Matrix a = mAsDense(left);
    const Matrix b = mAsDense(right);
    const Matrix c = mAsDense(product);
    const Matrix slow = ml::SlowMatrixMultiply(a, b);
    ASSERT_EQ(c.rowCount(), slow.rowCount()) << rsWhat;
    ASSERT_EQ(c.colCount(), slow.colCount()) << rsWhat;
    const int n = a.colCount();
    const double u = 0x1.0p-53;
    const double gamma = n * u / (1.0 - n * u);
    for (int i = 0; i < c.rowCount(); ++i)
        for (int j = 0; j < c.colCount(); ++j)
        {
            double dAbs = 0.0;
            for (int k = 0; k < n; ++k)
                dAbs += std::fabs(a(i, k)) * std::fabs(b(k, j));
            const double dBound = 2.0 * gamma * dAbs;
            const double dDiff = std::fabs(c(i, j) - slow(i, j));
            ASSERT_LE(dDiff, dBound) << rsWhat << " at (" << i << ", " << j << ")";
            if (dBound > 0.0 && dDiff / dBound > rWorst.m_dFraction)
            {
                rWorst.m_dFraction = dDiff / dBound;
                rWorst.m_sWhere =
                    rsWhat + " (" + std::to_string(i) + ", " + std::to_string(j) + ")";
            }
        }
}
} // namespace

TEST(MatrixProductProperty, EveryPairOfKindsEqualsTheReferenceProductWithinRounding)
{
    CmOperands operands(20261121u);
    CmWorst worst;
    for (const int n : s_aiOrders)
    {
        const std::string sOrder = " n=" + std::to_string(n);
        const Matrix m = operands.mDense(n, n);
        const Sym s = operands.mSymmetric(n);
        const Upper u = operands.mUpper(n);
        const Diag d = operands.mDiagonal(n);
        mCompare(m, m, m * m, "matrix*matrix" + sOrder, worst);
        mCompare(m, s, m * s, "matrix*Smatrix" + sOrder, worst);
        mCompare(m, u, m * u, "matrix*UTmatrix" + sOrder, worst);
        mCompare(m, d, m * d, "matrix*Dmatrix" + sOrder, worst);
        mCompare(s, m, s * m, "Smatrix*matrix" + sOrder, worst);
        mCompare(s, s, s * s, "Smatrix*Smatrix" + sOrder, worst);
        mCompare(s, u, s * u, "Smatrix*UTmatrix" + sOrder, worst);
        mCompare(s, d, s * d, "Smatrix*Dmatrix" + sOrder, worst);
        mCompare(u, m, u * m, "UTmatrix*matrix" + sOrder, worst);
        mCompare(u, s, u * s, "UTmatrix*Smatrix" + sOrder, worst);
        mCompare(u, u, u * u, "UTmatrix*UTmatrix" + sOrder, worst);
        mCompare(u, d, u * d, "UTmatrix*Dmatrix" + sOrder, worst);
        mCompare(d, m, d * m, "Dmatrix*matrix" + sOrder, worst);
        mCompare(d, s, d * s, "Dmatrix*Smatrix" + sOrder, worst);
        mCompare(d, u, d * u, "Dmatrix*UTmatrix" + sOrder, worst);
        mCompare(d, d, d * d, "Dmatrix*Dmatrix" + sOrder, worst);
        if (HasFatalFailure())
            return;
    }
    std::cout << "[ worst    ] " << worst.m_dFraction << " of the bound 2 gamma_n |A||B|"
              << (worst.m_sWhere.empty() ? "" : " at " + worst.m_sWhere) << "\n";
    RecordProperty("worst_fraction_of_bound", std::to_string(worst.m_dFraction));
}

TEST(MatrixProductProperty, RectangularDenseShapesEqualTheReferenceProductWithinRounding)
{
    CmOperands operands(7u);
    CmWorst worst;
    const int aiShapes[][3] = {{7, 9, 17}, {100, 8, 1},  {1, 100, 16}, {17, 16, 9},
                               {9, 1, 9},  {2, 17, 100}, {16, 7, 8}};
    for (const auto& shape : aiShapes)
    {
        const Matrix a = operands.mDense(shape[0], shape[1]);
        const Matrix b = operands.mDense(shape[1], shape[2]);
        const Matrix c = a * b;
        EXPECT_EQ(c.rowCount(), shape[0]);
        EXPECT_EQ(c.colCount(), shape[2]);
        mCompare(a, b, c,
                 std::to_string(shape[0]) + "x" + std::to_string(shape[1]) + " * " +
                     std::to_string(shape[1]) + "x" + std::to_string(shape[2]),
                 worst);
        if (HasFatalFailure())
            return;
    }
    std::cout << "[ worst    ] " << worst.m_dFraction << " of the bound 2 gamma_n |A||B|"
              << (worst.m_sWhere.empty() ? "" : " at " + worst.m_sWhere) << "\n";
}

TEST(MatrixProductProperty, NineByNineRunsTwoTilesPerIndexAndEqualsTheReferenceProduct)
{
    CmOperands operands(9u);
    const Matrix a = operands.mDense(9, 9);
    const Matrix b = operands.mDense(9, 9);
    const Matrix blocked = a * b;
    const Matrix slow = ml::SlowMatrixMultiply(a, b);
    CmWorst worst;
    mCompare(a, b, blocked, "9x9", worst);
    // Each element receives its nine terms in the order of the triple loop,
    // so without contraction into fused multiply-adds the two agree bit for
    // bit; the bound above is what is promised.
    double dLargest = 0.0;
    for (std::size_t k = 0; k < slow.storage().size(); ++k)
        dLargest = std::max(dLargest, std::fabs(blocked.storage()[k] - slow.storage()[k]));
    std::cout << "[ 9x9      ] largest |blocked - slow| = " << dLargest << "\n";
    // The last row and column come from the clipped tiles.
    double dSum = 0.0;
    for (int k = 0; k < 9; ++k)
        dSum += a(8, k) * b(k, 8);
    EXPECT_NEAR(blocked(8, 8), dSum, 2.0 * 9.0 * 0x1.0p-53 * 9.0 * 11.0 * 11.0);
}
