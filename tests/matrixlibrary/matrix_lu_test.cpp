// LU factorisation with implicit scaling and the inverses of the three
// square value kinds: the non-square matrix, the exact test at order 1, the
// fuzzy test at larger orders, ties of the scaled pivots going to the later
// row, the row permutation and its parity, the singular matrix in the bool
// and throwing forms, the internal assertions of the solves, the symmetric
// inverse through Cholesky failing where the dense one succeeds, the
// diagonal inverse, and at orders that straddle the tile size of the
// products the residual of the inverse on random well-conditioned matrices
// whose rows are shifted so that the pivoting has to undo the shift:
//   |A X - I| <= gamma(3n) P'|L||U| |X| + gamma(n) |A||X|, componentwise.
// The first term is the backward error of each column solve with the
// computed factors (Higham, Accuracy and Stability of Numerical Algorithms,
// 2nd ed., Theorem 9.4, applied to A x_j = e_j), the second the rounding of
// the product A X; gamma(k) = k u / (1 - k u) and u = 2^-53.  The factors
// themselves reproduce the row-exchanged matrix within gamma(n) |L||U|
// (Theorem 9.3 there) plus gamma(n) |L||U| for forming the product.
#include "qel/matrixfactorisations.h"

#include "qel/matrixarithmetic.h"
#include "qel/qelmathlinearalgebra.h"
#include "qelmath/matrixlibrary/matrix_ludecomposition.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <iostream>
#include <string>
#include <vector>

using matrix_library::Dmatrix;
using matrix_library::inverse;
using matrix_library::inverseWithThrow;
using matrix_library::LUDecomposition;
using matrix_library::MatrixException;
using matrix_library::MatrixSingular;
using matrix_library::Smatrix;
typedef matrix_library::matrix<double> Matrix;

namespace
{
const double kUnit = std::ldexp(1.0, -53);

double mGamma(int k)
{
    return k * kUnit / (1.0 - k * kUnit);
}

class Lcg
{
public:
    explicit Lcg(std::uint64_t uSeed) : m_uState(uSeed) {}
    double mNext()
    {
        m_uState = m_uState * 6364136223846793005ULL + 1442695040888963407ULL;
        return (static_cast<double>((m_uState >> 33) % 2001ULL) - 1000.0) / 512.0;
    }

private:
    std::uint64_t m_uState;
};

// R + 3 sqrt(n) I with R random in [-1.95, 1.95], its rows then shifted
// cyclically by 1 + n / 3: well conditioned, and the pivots sit off the
// diagonal.
Matrix mRandomShifted(int n, std::uint64_t uSeed)
{
    Lcg lcg(uSeed);
    Matrix B(n, n, 0.0);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j)
            B(i, j) = lcg.mNext() + (i == j ? 3.0 * std::sqrt(static_cast<double>(n)) : 0.0);
    const int iShift = 1 + n / 3;
    Matrix A(n, n, 0.0);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j)
            A((i + iShift) % n, j) = B(i, j);
    return A;
}

Matrix mAbs(const Matrix& a)
{
    Matrix r(a);
    for (double& d : r.storage())
        d = std::fabs(d);
    return r;
}

Matrix mFromRows(int m, int n, std::initializer_list<double> values)
{
    Matrix a(m, n, 0.0);
    a.storage().assign(values.begin(), values.end());
    return a;
}

template <class F> std::string mMessageOf(F f)
{
    try
    {
        f();
    }
    catch (const std::exception& e)
    {
        return e.what();
    }
    return "no exception";
}

bool mStartsWith(const std::string& s, const std::string& prefix)
{
    return s.rfind(prefix, 0) == 0;
}

const int kOrders[] = {1, 2, 7, 8, 9, 16, 17, 100};
} // namespace

TEST(LUDecomposition, NonSquareMatrixThrows)
{
    const Matrix a(2, 3, 1.0);
    EXPECT_EQ(mMessageOf([&] { LUDecomposition lu(a); }),
              "LU Decomp is defined for only square matrices");
    Matrix x;
    EXPECT_EQ(mMessageOf([&] { inverse(a, &x); }), "LU Decomp is defined for only square matrices");
    EXPECT_THROW(inverseWithThrow(a), MatrixException);
}

TEST(LUDecomposition, OrderOneIsSingularOnlyForAnExactZero)
{
    Matrix x(3, 3, 7.0);
    EXPECT_FALSE(inverse(Matrix(1, 1, 0.0), &x));
    EXPECT_EQ(x.rowCount(), 0);
    EXPECT_EQ(x.colCount(), 0);
    EXPECT_TRUE(LUDecomposition(Matrix(1, 1, 0.0)).isSingular());

    // 1e-300 lies far inside the fuzz that larger orders apply, but order 1
    // compares exactly.
    ASSERT_TRUE(inverse(Matrix(1, 1, 1e-300), &x));
    ASSERT_EQ(x.rowCount(), 1);
    EXPECT_EQ(x(0, 0), 1.0 / 1e-300);
    EXPECT_FALSE(LUDecomposition(Matrix(1, 1, 1e-300)).isSingular());
}

TEST(LUDecomposition, LargerOrdersTreatAPivotWithinTheAbsoluteFuzzAsZero)
{
    // mGetFuzzMax(1.0) = 0.01 mGetEps(), about 2.2e-18.
    Matrix x;
    EXPECT_FALSE(inverse(mFromRows(2, 2, {1.0, 0.0, 0.0, 1e-18}), &x));
    EXPECT_EQ(x.rowCount(), 0);
    ASSERT_TRUE(inverse(mFromRows(2, 2, {1.0, 0.0, 0.0, 1e-17}), &x));
    EXPECT_EQ(x(1, 1), 1.0 / 1e-17);
    EXPECT_EQ(x(0, 0), 1.0);
    EXPECT_EQ(x(0, 1), 0.0);
    EXPECT_EQ(x(1, 0), 0.0);
}

TEST(LUDecomposition, EqualScaledPivotsExchangeToTheLaterRow)
{
    // Row 0 (1, 1) and row 1 (2, 1) both give the scaled candidate 1.
    const Matrix a = mFromRows(2, 2, {1.0, 1.0, 2.0, 1.0});
    LUDecomposition lu(a);
    ASSERT_FALSE(lu.isSingular());
    EXPECT_EQ(lu.rowPermutation(), (std::vector<int>{1, 1}));
    EXPECT_EQ(lu.permutationParity(), -1.0);
    EXPECT_EQ(lu.factors().storage(), (std::vector<double>{2.0, 1.0, 0.5, 0.5}));

    Matrix x;
    ASSERT_TRUE(inverse(a, &x));
    EXPECT_EQ(x.storage(), (std::vector<double>{-1.0, 1.0, 2.0, -1.0}));
}

TEST(LUDecomposition, PermutationAndParityFollowTheExchanges)
{
    // Scales 1, 1/4, 1/8.  Column 0: the scaled candidates 0, 1/4, 1 pick
    // row 2.  Column 1: 1.875 / 4 against 1 (the old row 0, now row 2)
    // picks row 2 again.  Two exchanges: parity +1, rows in the order 2, 0, 1.
    const Matrix a = mFromRows(3, 3, {0.0, 1.0, 1.0, 1.0, 2.0, 4.0, 8.0, 1.0, 1.0});
    LUDecomposition lu(a);
    ASSERT_FALSE(lu.isSingular());
    EXPECT_EQ(lu.rowPermutation(), (std::vector<int>{2, 2, 2}));
    EXPECT_EQ(lu.permutationParity(), 1.0);
    EXPECT_EQ(lu.factors().storage(),
              (std::vector<double>{8.0, 1.0, 1.0, 0.0, 1.0, 1.0, 0.125, 1.875, 2.0}));
    const Matrix& f = lu.factors();
    const int order[3] = {2, 0, 1};
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
        {
            double s = 0.0;
            for (int k = 0; k <= std::min(i, j); ++k)
                s += (k == i ? 1.0 : f(i, k)) * f(k, j);
            EXPECT_EQ(s, a(order[i], j)) << i << "," << j;
        }
}

TEST(LUDecomposition, ZeroRowOrZeroPivotIsSingularInBothForms)
{
    Matrix x(2, 2, 3.0);
    EXPECT_FALSE(inverse(mFromRows(2, 2, {1.0, 2.0, 0.0, 0.0}), &x));
    EXPECT_EQ(x.rowCount(), 0);
    EXPECT_EQ(x.colCount(), 0);
    EXPECT_TRUE(x.storage().empty());

    const Matrix rankOne = mFromRows(2, 2, {1.0, 2.0, 2.0, 4.0});
    LUDecomposition lu(rankOne);
    EXPECT_TRUE(lu.isSingular());
    EXPECT_EQ(lu.factors().rowCount(), 0);
    EXPECT_EQ(lu.factors().colCount(), 0);
    EXPECT_FALSE(inverse(rankOne, &x));
    EXPECT_EQ(mMessageOf([&] { inverseWithThrow(rankOne); }), "Matrix is singular");
    EXPECT_THROW(inverseWithThrow(rankOne), MatrixSingular);

    Matrix X(4, 4, 1.0);
    EXPECT_FALSE(lu.solve(Matrix(2, 1, 1.0), &X));
    EXPECT_EQ(X.rowCount(), 0);
    std::vector<double> v(2, 1.0);
    EXPECT_FALSE(lu.solve(std::vector<double>{1.0, 2.0}, &v));
    EXPECT_TRUE(v.empty());
}

TEST(LUDecomposition, OrderZeroInvertsToAnEmptyMatrix)
{
    Matrix x(2, 2, 1.0);
    EXPECT_TRUE(inverse(Matrix(), &x));
    EXPECT_EQ(x.rowCount(), 0);
    EXPECT_EQ(x.colCount(), 0);
}

TEST(LUDecomposition, NullResultsAndAliasedRightHandSideAreInternalAssertions)
{
    const Matrix a = mFromRows(2, 2, {2.0, 1.0, 1.0, 3.0});
    EXPECT_TRUE(mStartsWith(mMessageOf([&] { inverse(a, static_cast<Matrix*>(nullptr)); }),
                            "assertion failed: (result) matrix_ludecomposition.cpp: "));
    EXPECT_TRUE(mStartsWith(
        mMessageOf([&]
                   { inverse(Smatrix<double>(2, 1.0), static_cast<Smatrix<double>*>(nullptr)); }),
        "assertion failed: (result) matrix_ludecomposition.cpp: "));
    EXPECT_TRUE(mStartsWith(
        mMessageOf([&]
                   { inverse(Dmatrix<double>(2, 1.0), static_cast<Dmatrix<double>*>(nullptr)); }),
        "assertion failed: (result) matrix_ludecomposition.cpp: "));

    LUDecomposition lu(a);
    Matrix B(2, 2, 1.0);
    EXPECT_TRUE(mStartsWith(mMessageOf([&] { lu.solve(B, &B); }),
                            "assertion failed: (&B != X) matrix_ludecomposition.cpp: "));
    EXPECT_TRUE(mStartsWith(mMessageOf([&] { lu.solve(B, static_cast<Matrix*>(nullptr)); }),
                            "assertion failed: (X) matrix_ludecomposition.cpp: "));
    EXPECT_TRUE(mStartsWith(mMessageOf(
                                [&] {
                                    lu.solve(std::vector<double>{1.0, 1.0}, nullptr);
                                }),
                            "assertion failed: (X) matrix_ludecomposition.cpp: "));
    EXPECT_THROW(inverse(a, static_cast<Matrix*>(nullptr)), allege::AllegeException);
}

TEST(LUDecomposition, SolveOfOneRightHandSideMatchesTheInverseColumn)
{
    const Matrix a = mFromRows(3, 3, {4.0, -2.0, 1.0, -2.0, 4.0, -2.0, 1.0, -2.0, 4.0});
    LUDecomposition lu(a);
    Matrix X;
    Matrix I(3, 3, 0.0);
    for (int i = 0; i < 3; ++i)
        I(i, i) = 1.0;
    ASSERT_TRUE(lu.solve(I, &X));
    std::vector<double> x;
    ASSERT_TRUE(lu.solve(std::vector<double>{0.0, 1.0, 0.0}, &x));
    ASSERT_EQ(x.size(), 3u);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(x[static_cast<std::size_t>(i)], X(i, 1));
    // A x = e1 with x = (1/6, 5/12, 1/6).
    EXPECT_NEAR(x[0], 1.0 / 6.0, 4.0 * kUnit);
    EXPECT_NEAR(x[1], 5.0 / 12.0, 4.0 * kUnit);
    EXPECT_NEAR(x[2], 1.0 / 6.0, 4.0 * kUnit);
}

TEST(Inverse, SymmetricIndefiniteFailsAsSmatrixButSucceedsAsMatrix)
{
    Smatrix<double> s(2, 0.0);
    s(0, 0) = 1.0;
    s(1, 0) = 2.0;
    s(1, 1) = 1.0;
    Smatrix<double> xs(2, 9.0);
    EXPECT_FALSE(inverse(s, &xs));
    EXPECT_EQ(xs.order(), 0);
    EXPECT_EQ(mMessageOf([&] { inverseWithThrow(s); }), "Matrix is singular");

    Matrix x;
    ASSERT_TRUE(inverse(Matrix(s), &x));
    // [1 2; 2 1]^{-1} = [-1/3 2/3; 2/3 -1/3].
    EXPECT_NEAR(x(0, 0), -1.0 / 3.0, 2.0 * kUnit);
    EXPECT_NEAR(x(0, 1), 2.0 / 3.0, 2.0 * kUnit);
    EXPECT_NEAR(x(1, 0), 2.0 / 3.0, 2.0 * kUnit);
    EXPECT_NEAR(x(1, 1), -1.0 / 3.0, 2.0 * kUnit);
}

TEST(Inverse, SymmetricPositiveDefiniteGoesThroughCholesky)
{
    Smatrix<double> s(2, 0.0);
    s(0, 0) = 4.0;
    s(1, 0) = 2.0;
    s(1, 1) = 2.0;
    Smatrix<double> x;
    ASSERT_TRUE(inverse(s, &x));
    EXPECT_EQ(x(0, 0), 0.5);
    EXPECT_EQ(x(1, 0), -0.5);
    EXPECT_EQ(x(1, 1), 1.0);
    EXPECT_EQ(inverseWithThrow(s).storage(), x.storage());
    Smatrix<double> e(1, 1.0);
    EXPECT_TRUE(inverse(Smatrix<double>(), &e));
    EXPECT_EQ(e.order(), 0);
}

TEST(Inverse, DiagonalTakesReciprocalsAndStopsAtAnExactZero)
{
    Dmatrix<double> x(5, 1.0);
    EXPECT_TRUE(inverse(Dmatrix<double>(), &x));
    EXPECT_EQ(x.order(), 0);

    Dmatrix<double> d(3, 0.0);
    d(0, 0) = 2.0;
    d(1, 1) = -4.0;
    d(2, 2) = 1e-300;
    ASSERT_TRUE(inverse(d, &x));
    EXPECT_EQ(x.storage(), (std::vector<double>{0.5, -0.25, 1.0 / 1e-300}));
    EXPECT_EQ(inverseWithThrow(d).storage(), x.storage());

    d(1, 1) = 0.0;
    EXPECT_FALSE(inverse(d, &x));
    EXPECT_EQ(x.order(), 0);
    EXPECT_EQ(mMessageOf([&] { inverseWithThrow(d); }), "Matrix is singular");
    EXPECT_THROW(inverseWithThrow(d), MatrixSingular);

    // The result may be the argument itself.
    Dmatrix<double> self(2, 8.0);
    ASSERT_TRUE(inverse(self, &self));
    EXPECT_EQ(self.storage(), (std::vector<double>{0.125, 0.125}));
}

TEST(LUProperties, InverseResidualWithinTheComponentwiseBound)
{
    for (int n : kOrders)
    {
        const Matrix A = mRandomShifted(n, 3000u + static_cast<unsigned>(n));
        LUDecomposition lu(A);
        ASSERT_FALSE(lu.isSingular()) << "order " << n;
        Matrix X;
        ASSERT_TRUE(inverse(A, &X)) << "order " << n;
        ASSERT_EQ(X.rowCount(), n);
        ASSERT_EQ(X.colCount(), n);

        // P'|L||U|: the product of the factors' magnitudes, its rows put
        // back in the order of A by undoing the exchanges in reverse.
        const Matrix& F = lu.factors();
        Matrix L(n, n, 0.0);
        Matrix U(n, n, 0.0);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j)
            {
                if (j < i)
                    L(i, j) = std::fabs(F(i, j));
                else
                    U(i, j) = std::fabs(F(i, j));
            }
        for (int i = 0; i < n; ++i)
            L(i, i) = 1.0;
        Matrix LU = L * U;
        const std::vector<int>& perm = lu.rowPermutation();
        for (int j = n - 1; j >= 0; --j)
        {
            const int p = perm[static_cast<std::size_t>(j)];
            if (p != j)
                for (int k = 0; k < n; ++k)
                    std::swap(LU(j, k), LU(p, k));
        }
        const Matrix absX = mAbs(X);
        const Matrix bound1 = LU * absX;
        const Matrix bound2 = mAbs(A) * absX;
        const Matrix R = A * X;
        double dWorst = 0.0;
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j)
            {
                const double dErr = std::fabs(R(i, j) - (i == j ? 1.0 : 0.0));
                const double dBound = mGamma(3 * n) * bound1(i, j) + mGamma(n) * bound2(i, j);
                EXPECT_LE(dErr, dBound) << "order " << n << " at " << i << "," << j;
                const double dScale = kUnit * (bound1(i, j) + bound2(i, j));
                if (dScale > 0.0)
                    dWorst = std::max(dWorst, dErr / dScale);
            }
        std::cout << "[ LU inverse ] order " << n
                  << ": worst |AX - I| / (u (P'|L||U| + |A|)|X|) = " << dWorst << " (bound about "
                  << 3 * n << ")\n";
    }
}

TEST(LUProperties, FactorsReproduceThePermutedMatrix)
{
    for (int n : kOrders)
    {
        const Matrix A = mRandomShifted(n, 6000u + static_cast<unsigned>(n));
        LUDecomposition lu(A);
        ASSERT_FALSE(lu.isSingular());
        const Matrix& F = lu.factors();
        Matrix L(n, n, 0.0);
        Matrix U(n, n, 0.0);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j)
                (j < i ? L(i, j) : U(i, j)) = F(i, j);
        for (int i = 0; i < n; ++i)
            L(i, i) = 1.0;
        Matrix PA(A);
        const std::vector<int>& perm = lu.rowPermutation();
        double dParity = 1.0;
        for (int j = 0; j < n; ++j)
        {
            const int p = perm[static_cast<std::size_t>(j)];
            EXPECT_GE(p, j);
            if (p != j)
            {
                dParity = -dParity;
                for (int k = 0; k < n; ++k)
                    std::swap(PA(j, k), PA(p, k));
            }
        }
        EXPECT_EQ(lu.permutationParity(), dParity);
        if (n >= 2)
        {
            EXPECT_NE(PA.storage(), A.storage()) << "order " << n << ": no row was exchanged";
        }
        const Matrix LUp = L * U;
        const Matrix bound = mAbs(L) * mAbs(U);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j)
                EXPECT_LE(std::fabs(LUp(i, j) - PA(i, j)), 2.0 * mGamma(n) * bound(i, j))
                    << "order " << n << " at " << i << "," << j;
    }
}
