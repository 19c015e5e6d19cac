// Cholesky factorisation, inverse and back-substitution, in both matrix
// families: the empty matrix, the pivot that fails (row, value and the
// partial factor), the restart row, the start row beyond the order, the
// bool and throwing twins, the wrong-sized right-hand side, and, at orders
// that straddle the tile size of the products, the properties of the
// results on random well-conditioned matrices:
//   - U'U reproduces A within the componentwise backward error of the
//     Cholesky factorisation, |U'U - A| <= gamma(n+1) |U'||U| (Higham,
//     Accuracy and Stability of Numerical Algorithms, 2nd ed., Theorem
//     10.3), plus gamma(n) |U'||U| for forming the product, where
//     gamma(k) = k u / (1 - k u) and u = 2^-53;
//   - A X = I for the inverse X within the normwise residual bound of a
//     stable inverse, ||A X - I||_inf <= 4 n u ||A||_inf ||X||_inf;
//   - the back-substitution solves A x = b within the same bound on
//     ||A x - b||_inf / (||A||_inf ||x||_inf).
#include "qel/matrixfactorisations.h"

#include "qel/matrix.h"
#include "qel/matrixarithmetic.h"
#include "qel/qelmathlinearalgebra.h"
#include "qelmath/matrixlibrary/cholesky_persistent.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

using matrix_library::CholeskyBackSub;
using matrix_library::CholeskyDecomp;
using matrix_library::CholeskyDecompWithThrow;
using matrix_library::CholeskyInverse;
using matrix_library::MatrixException;
using matrix_library::MatrixSingular;
typedef matrix_library::matrix<double> Matrix;
typedef matrix_library::Smatrix<double> SMatrix;
typedef matrix_library::UTmatrix<double> UTMatrix;

namespace
{
const double kUnit = std::ldexp(1.0, -53);

double mGamma(int k)
{
    return k * kUnit / (1.0 - k * kUnit);
}

// A fixed 64-bit linear congruential sequence; entries are multiples of
// 1/512 in [-1000/512, 1000/512].
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

// A symmetric positive definite matrix M M' / n + I with M random: its
// eigenvalues lie in [1, 1 + ||M||^2 / n], a modest condition number.
SMatrix mRandomSpd(int n, std::uint64_t uSeed)
{
    Lcg lcg(uSeed);
    Matrix M(n, n, 0.0);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j)
            M(i, j) = lcg.mNext();
    Matrix P;
    matrix_library::multiplyRightTranspose(M, M, P);
    SMatrix A(n, 0.0);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j <= i; ++j)
            A(i, j) = P(i, j) / n + (i == j ? 1.0 : 0.0);
    return A;
}

Matrix mAbs(const Matrix& a)
{
    Matrix r(a);
    for (double& d : r.storage())
        d = std::fabs(d);
    return r;
}

double mNormInf(const Matrix& a)
{
    double dMax = 0.0;
    for (int i = 0; i < a.rowCount(); ++i)
    {
        double s = 0.0;
        for (int j = 0; j < a.colCount(); ++j)
            s += std::fabs(a(i, j));
        dMax = std::max(dMax, s);
    }
    return dMax;
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

// The 3 x 3 matrix whose factor runs 2, 1, 1 / 2, 1 / 0: column 2 has the
// pivot 2 - (1 + 1) = 0 exactly.
UTMatrix mZeroPivotAtColumnTwo()
{
    UTMatrix a(3, 0.0);
    a(0, 0) = 4.0;
    a(0, 1) = 2.0;
    a(0, 2) = 2.0;
    a(1, 1) = 5.0;
    a(1, 2) = 3.0;
    a(2, 2) = 2.0;
    return a;
}

const int kOrders[] = {1, 2, 7, 8, 9, 16, 17, 100};
} // namespace

TEST(CholeskyDecomp, OrderZeroFromRowZeroReportsSuccessAndAnEmptyFactor)
{
    int iFailRow = 7;
    double dFailValue = 7.0;
    UTMatrix u = CholeskyDecomp(UTMatrix(), 0, &iFailRow, &dFailValue);
    EXPECT_EQ(iFailRow, -1);
    EXPECT_EQ(u.order(), 0);
    EXPECT_TRUE(u.storage().empty());

    UTMatrix r(3, 1.0);
    EXPECT_TRUE(CholeskyDecomp(SMatrix(), &r));
    EXPECT_EQ(r.order(), 0);
}

TEST(CholeskyDecomp, ZeroPivotAtColumnTwoReportsRowTwoValueZeroAndKeepsColumnsZeroAndOne)
{
    int iFailRow = 0;
    double dFailValue = -1.0;
    UTMatrix u = CholeskyDecomp(mZeroPivotAtColumnTwo(), 0, &iFailRow, &dFailValue);
    EXPECT_EQ(iFailRow, 2);
    EXPECT_EQ(dFailValue, 0.0);
    EXPECT_FALSE(std::signbit(dFailValue));
    EXPECT_EQ(u(0, 0), 2.0);
    EXPECT_EQ(u(0, 1), 1.0);
    EXPECT_EQ(u(1, 1), 2.0);
    // Column 2 above the diagonal was computed before the pivot failed; the
    // pivot itself keeps the element of A.
    EXPECT_EQ(u(0, 2), 1.0);
    EXPECT_EQ(u(1, 2), 1.0);
    EXPECT_EQ(u(2, 2), 2.0);
}

TEST(CholeskyDecomp, NegativePivotGivesItsAbsoluteValueAndLeavesLaterColumnsAlone)
{
    UTMatrix a(3, 0.0);
    a(0, 0) = 1.0;
    a(0, 1) = 2.0;
    a(1, 1) = 1.0;
    a(0, 2) = 5.0;
    a(1, 2) = 6.0;
    a(2, 2) = 7.0;
    int iFailRow = 0;
    double dFailValue = 0.0;
    UTMatrix u = CholeskyDecomp(a, 0, &iFailRow, &dFailValue);
    EXPECT_EQ(iFailRow, 1);
    EXPECT_EQ(dFailValue, 3.0); // 1 - 2^2
    EXPECT_EQ(u(0, 0), 1.0);
    EXPECT_EQ(u(0, 1), 2.0);
    EXPECT_EQ(u(1, 1), 1.0);
    EXPECT_EQ(u(0, 2), 5.0);
    EXPECT_EQ(u(1, 2), 6.0);
    EXPECT_EQ(u(2, 2), 7.0);
}

TEST(CholeskyDecomp, StartRowBeyondTheOrderThrows)
{
    int iFailRow = 0;
    double dFailValue = 0.0;
    EXPECT_EQ(mMessageOf([&] { CholeskyDecomp(UTMatrix(2, 1.0), 3, &iFailRow, &dFailValue); }),
              "UTmatrix: starting row greater than dimension");
    EXPECT_THROW(CholeskyDecomp(UTMatrix(2, 1.0), 3, &iFailRow, &dFailValue), MatrixException);
}

TEST(CholeskyDecomp, StartRowEqualToTheOrderReturnsTheMatrixUnchanged)
{
    UTMatrix a = mZeroPivotAtColumnTwo();
    int iFailRow = 5;
    double dFailValue = 5.0;
    UTMatrix u = CholeskyDecomp(a, 3, &iFailRow, &dFailValue);
    EXPECT_EQ(iFailRow, -1);
    EXPECT_EQ(u.storage(), a.storage());
}

TEST(CholeskyDecomp, RepairedPivotRestartsAtTheFailingRowAndKeepsTheLeadingColumns)
{
    UTMatrix a = mZeroPivotAtColumnTwo();
    int iFailRow = 0;
    double dFailValue = 0.0;
    UTMatrix work = CholeskyDecomp(a, 0, &iFailRow, &dFailValue);
    ASSERT_EQ(iFailRow, 2);
    // Raise the failing diagonal element as the Newton solver does; the
    // leading columns are not recomputed.
    work(2, 2) = 3.0;
    work(0, 0) = 99.0; // must not be read again: column 0 lies before the restart
    UTMatrix u = CholeskyDecomp(work, 2, &iFailRow, &dFailValue);
    EXPECT_EQ(iFailRow, -1);
    EXPECT_EQ(u(0, 0), 99.0);
    EXPECT_EQ(u(0, 2), 1.0);
    EXPECT_EQ(u(1, 2), 1.0);
    EXPECT_EQ(u(2, 2), 1.0); // sqrt(3 - 1 - 1)
    EXPECT_EQ(dFailValue, 2.0);
}

TEST(CholeskyDecomp, RestartFromAFinalLeadingBlockReproducesTheFullFactorBitForBit)
{
    const int n = 17;
    const SMatrix A = mRandomSpd(n, 4242);
    const UTMatrix ua = matrix_library::SmatrixToUTmatrix(A);
    int iFailRow = 0;
    double dFailValue = 0.0;
    const UTMatrix full = CholeskyDecomp(ua, 0, &iFailRow, &dFailValue);
    ASSERT_EQ(iFailRow, -1);
    for (int k : {1, 8, 9, 16})
    {
        UTMatrix w(full);
        for (int i = k; i < n; ++i)
            for (int j = i; j < n; ++j)
                w(i, j) = ua(i, j);
        UTMatrix u = CholeskyDecomp(w, k, &iFailRow, &dFailValue);
        EXPECT_EQ(iFailRow, -1) << "restart " << k;
        EXPECT_EQ(u.storage(), full.storage()) << "restart " << k;
    }
}

TEST(CholeskyDecomp, NullOutputsAndNegativeStartRowAreInternalAssertions)
{
    int iFailRow = 0;
    double dFailValue = 0.0;
    EXPECT_EQ(mMessageOf([&] { CholeskyDecomp(UTMatrix(2, 1.0), 0, nullptr, &dFailValue); })
                  .rfind("assertion failed: (failRow) matrix_cholesky.cpp: ", 0),
              0u);
    EXPECT_EQ(mMessageOf([&] { CholeskyDecomp(UTMatrix(2, 1.0), 0, &iFailRow, nullptr); })
                  .rfind("assertion failed: (failValue) matrix_cholesky.cpp: ", 0),
              0u);
    EXPECT_EQ(mMessageOf([&] { CholeskyDecomp(UTMatrix(2, 1.0), -1, &iFailRow, &dFailValue); })
                  .rfind("assertion failed: (startRow >= 0) matrix_cholesky.cpp: ", 0),
              0u);
    EXPECT_THROW(CholeskyDecomp(SMatrix(2, 1.0), nullptr), allege::AllegeException);
    EXPECT_EQ(mMessageOf([&] { CholeskyDecomp(SMatrix(2, 1.0), nullptr); })
                  .rfind("assertion failed: (result) matrix_cholesky.cpp: ", 0),
              0u);
}

TEST(CholeskyDecomp, BoolFormFailsWithAnEmptyResultAndTheThrowingTwinSaysSingular)
{
    SMatrix s(2, 0.0);
    s(0, 0) = 1.0;
    s(1, 0) = 2.0;
    s(1, 1) = 1.0;
    UTMatrix r(2, 5.0);
    EXPECT_FALSE(CholeskyDecomp(s, &r));
    EXPECT_EQ(r.order(), 0);
    EXPECT_TRUE(r.storage().empty());
    EXPECT_EQ(mMessageOf([&] { CholeskyDecompWithThrow(s); }), "Matrix is singular");
    EXPECT_THROW(CholeskyDecompWithThrow(s), MatrixSingular);

    s(1, 1) = 5.0;
    ASSERT_TRUE(CholeskyDecomp(s, &r));
    EXPECT_EQ(r(0, 0), 1.0);
    EXPECT_EQ(r(0, 1), 2.0);
    EXPECT_EQ(r(1, 1), 1.0);
    EXPECT_EQ(CholeskyDecompWithThrow(s).storage(), r.storage());
}

TEST(CholeskyBackSub, VectorOfAnotherSizeThrows)
{
    UTMatrix u(3, 1.0);
    EXPECT_EQ(mMessageOf([&] { CholeskyBackSub(u, std::vector<double>(2, 1.0)); }),
              "UTmatrix: matrix and vector have incompatible dimensions");
    EXPECT_THROW(CholeskyBackSub(u, std::vector<double>(4, 1.0)), MatrixException);
    EXPECT_TRUE(CholeskyBackSub(UTMatrix(), std::vector<double>()).empty());
}

TEST(CholeskyBackSub, SolvesASmallSystemExactly)
{
    // U = [2 1 1; 0 2 1; 0 0 1], A = U'U = [4 2 2; 2 5 3; 2 3 3]; x = (1, -1, 2).
    UTMatrix u(3, 0.0);
    u(0, 0) = 2.0;
    u(0, 1) = 1.0;
    u(0, 2) = 1.0;
    u(1, 1) = 2.0;
    u(1, 2) = 1.0;
    u(2, 2) = 1.0;
    std::vector<double> x = CholeskyBackSub(u, {6.0, 3.0, 5.0});
    ASSERT_EQ(x.size(), 3u);
    EXPECT_EQ(x[0], 1.0);
    EXPECT_EQ(x[1], -1.0);
    EXPECT_EQ(x[2], 2.0);
}

TEST(CholeskyInverse, InvertsASmallMatrixExactly)
{
    // A = [4 2; 2 2] = U'U with U = [2 1; 0 1]; A^{-1} = [0.5 -0.5; -0.5 1].
    UTMatrix u(2, 0.0);
    u(0, 0) = 2.0;
    u(0, 1) = 1.0;
    u(1, 1) = 1.0;
    SMatrix x = CholeskyInverse(u);
    EXPECT_EQ(x(0, 0), 0.5);
    EXPECT_EQ(x(1, 0), -0.5);
    EXPECT_EQ(x(1, 1), 1.0);
    EXPECT_EQ(CholeskyInverse(UTMatrix()).order(), 0);
}

TEST(CholeskyProperties, FactorReproducesTheMatrixWithinTheBackwardErrorBound)
{
    for (int n : kOrders)
    {
        const SMatrix A = mRandomSpd(n, 7000u + static_cast<unsigned>(n));
        UTMatrix U;
        ASSERT_TRUE(CholeskyDecomp(A, &U)) << "order " << n;
        const Matrix Ud(U);
        const Matrix UtU = Ud.transpose() * Ud;
        const Matrix absUtU = mAbs(Ud).transpose() * mAbs(Ud);
        const double dBound = mGamma(n + 1) + mGamma(n);
        double dWorst = 0.0;
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j)
            {
                const double dErr = std::fabs(UtU(i, j) - A(i, j));
                EXPECT_LE(dErr, dBound * absUtU(i, j)) << "order " << n << " at " << i << "," << j;
                dWorst = std::max(dWorst, dErr / (kUnit * absUtU(i, j)));
            }
        std::cout << "[ Cholesky ] order " << n << ": worst |U'U - A| / (u |U'||U|) = " << dWorst
                  << " (bound " << dBound / kUnit << ")\n";
    }
}

TEST(CholeskyProperties, InverseTimesMatrixIsTheIdentityWithinTheResidualBound)
{
    for (int n : kOrders)
    {
        const SMatrix A = mRandomSpd(n, 8000u + static_cast<unsigned>(n));
        SMatrix X;
        ASSERT_TRUE(matrix_library::inverse(A, &X)) << "order " << n;
        ASSERT_EQ(X.order(), n);
        const Matrix R = A * X;
        double dResidual = 0.0;
        for (int i = 0; i < n; ++i)
        {
            double s = 0.0;
            for (int j = 0; j < n; ++j)
                s += std::fabs(R(i, j) - (i == j ? 1.0 : 0.0));
            dResidual = std::max(dResidual, s);
        }
        const double dScale = mNormInf(Matrix(A)) * mNormInf(Matrix(X));
        EXPECT_LE(dResidual, 4.0 * n * kUnit * dScale) << "order " << n;
        std::cout << "[ Cholesky inverse ] order " << n
                  << ": ||AX - I|| / (u ||A|| ||X||) = " << dResidual / (kUnit * dScale)
                  << " (bound " << 4.0 * n << ")\n";
    }
}

TEST(CholeskyProperties, BackSubstitutionSolvesWithinTheResidualBound)
{
    for (int n : kOrders)
    {
        const SMatrix A = mRandomSpd(n, 9000u + static_cast<unsigned>(n));
        const UTMatrix U = CholeskyDecompWithThrow(A);
        Lcg lcg(17u * static_cast<unsigned>(n));
        std::vector<double> b(static_cast<std::size_t>(n));
        for (double& d : b)
            d = lcg.mNext();
        const std::vector<double> x = CholeskyBackSub(U, b);
        const Matrix Ax = A * x;
        double dResidual = 0.0;
        double dNormX = 0.0;
        for (int i = 0; i < n; ++i)
        {
            dResidual = std::max(dResidual, std::fabs(Ax(i, 0) - b[static_cast<std::size_t>(i)]));
            dNormX = std::max(dNormX, std::fabs(x[static_cast<std::size_t>(i)]));
        }
        EXPECT_LE(dResidual, 4.0 * n * kUnit * mNormInf(Matrix(A)) * dNormX) << "order " << n;
    }
}

// ---------------------------------------------------------------------------
// The persistent family.

namespace
{
::UTmatrix<double> mPersistentUpper(const UTMatrix& u)
{
    ::UTmatrix<double> p(u.order(), 0.0);
    for (int i = 0; i < u.order(); ++i)
        for (int j = i; j < u.order(); ++j)
            p(i, j) = u(i, j);
    return p;
}
} // namespace

TEST(PersistentCholesky, ZeroPivotAtColumnTwoReportsRowTwoAndTheSameMessages)
{
    int iFailRow = 0;
    double dFailValue = -1.0;
    ::UTmatrix<double> u = qel_persistent::CholeskyDecomp(mPersistentUpper(mZeroPivotAtColumnTwo()),
                                                          0, &iFailRow, &dFailValue);
    EXPECT_EQ(iFailRow, 2);
    EXPECT_EQ(dFailValue, 0.0);
    EXPECT_EQ(u(0, 0), 2.0);
    EXPECT_EQ(u(0, 1), 1.0);
    EXPECT_EQ(u(1, 1), 2.0);

    EXPECT_EQ(mMessageOf(
                  [&] {
                      qel_persistent::CholeskyDecomp(::UTmatrix<double>(2, 1.0), 3, &iFailRow,
                                                     &dFailValue);
                  }),
              "UTmatrix: starting row greater than dimension");
    EXPECT_THROW(
        qel_persistent::CholeskyDecomp(::UTmatrix<double>(2, 1.0), 3, &iFailRow, &dFailValue),
        std::domain_error);
    EXPECT_EQ(mMessageOf(
                  [&] {
                      qel_persistent::CholeskyDecomp(::UTmatrix<double>(2, 1.0), 0, nullptr,
                                                     &dFailValue);
                  }),
              "UTmatrix: invalid Cholesky arguments");

    ::Smatrix<double> s(2, 0.0);
    s(0, 0) = 1.0;
    s(1, 0) = 2.0;
    s(1, 1) = 1.0;
    EXPECT_EQ(mMessageOf([&] { qel_persistent::CholeskyDecomp(s); }),
              "Smatrix: matrix is not positive definite");
    EXPECT_THROW(qel_persistent::CholeskyDecomp(s), std::domain_error);

    EXPECT_EQ(mMessageOf(
                  [&] {
                      qel_persistent::CholeskyBackSub(::UTmatrix<double>(2, 1.0),
                                                      std::vector<double>(3, 1.0));
                  }),
              "UTmatrix: matrix and vector have incompatible dimensions");

    ::UTmatrix<double> e =
        qel_persistent::CholeskyDecomp(::UTmatrix<double>(), 0, &iFailRow, &dFailValue);
    EXPECT_EQ(iFailRow, -1);
    EXPECT_EQ(e.rowCount(), 0);
}

TEST(PersistentCholesky, AgreesWithTheValueFamilyBitForBit)
{
    for (int n : {1, 2, 9, 17})
    {
        const SMatrix A = mRandomSpd(n, 5000u + static_cast<unsigned>(n));
        ::Smatrix<double> P(n, 0.0);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j <= i; ++j)
                P(i, j) = A(i, j);

        const UTMatrix U = CholeskyDecompWithThrow(A);
        const ::UTmatrix<double> PU = qel_persistent::CholeskyDecomp(P);
        for (int i = 0; i < n; ++i)
            for (int j = i; j < n; ++j)
                EXPECT_EQ(PU(i, j), U(i, j)) << "factor, order " << n;

        const SMatrix X = CholeskyInverse(U);
        const ::Smatrix<double> PX = qel_persistent::CholeskyInverse(PU);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j <= i; ++j)
                EXPECT_EQ(PX(i, j), X(i, j)) << "inverse, order " << n;

        std::vector<double> b(static_cast<std::size_t>(n));
        for (int i = 0; i < n; ++i)
            b[static_cast<std::size_t>(i)] = 1.0 + i;
        EXPECT_EQ(qel_persistent::CholeskyBackSub(PU, b), CholeskyBackSub(U, b))
            << "solve, order " << n;
    }
}

TEST(PersistentCholesky, RestartAfterRepairKeepsTheLeadingColumns)
{
    int iFailRow = 0;
    double dFailValue = 0.0;
    ::UTmatrix<double> work = qel_persistent::CholeskyDecomp(
        mPersistentUpper(mZeroPivotAtColumnTwo()), 0, &iFailRow, &dFailValue);
    ASSERT_EQ(iFailRow, 2);
    work(2, 2) = 3.0;
    ::UTmatrix<double> u = qel_persistent::CholeskyDecomp(work, 2, &iFailRow, &dFailValue);
    EXPECT_EQ(iFailRow, -1);
    EXPECT_EQ(u(0, 0), 2.0);
    EXPECT_EQ(u(2, 2), 1.0);
}
