// The symmetric eigensystem: the identity (values 1, 1, 1, vectors the
// identity, sorted stably), ascending order with the vectors following
// their values, the absolute flush inside the rotations (a matrix of tiny
// scale loses the spread of its eigenvalues), the upper triangle never read, the vectors argument
// allowed to be the matrix itself, the empty matrix, a non-square matrix,
// a matrix holding a NaN (the iteration gives up at index 0 and reports 0,
// the same as success), and at orders that straddle the tile size of the
// products, random symmetric matrices from a fixed sequence:
//   - eigenvalues against tests/data/eigen_reference.txt (mpmath, 40
//     digits; tests/data/gen_eigen_reference.py) to 1e-12 relative to each
//     eigenvalue and 1e-13 relative to the largest eigenvalue magnitude of
//     the matrix, with both worst errors reported;
//   - ||A v - lambda v||_2 <= 10 n u ||A||_F for each pair and
//     |V'V - I| <= 10 n u elementwise, u = 2^-53: the backward stability of
//     orthogonal reductions (Wilkinson, The Algebraic Eigenvalue Problem,
//     1965, ch. 3 and 5) gives errors of order n u ||A||, and the factor 10
//     leaves room for the constants of the two stages.
#include "qel/matrixfactorisations.h"

#include "qel/matrixarithmetic.h"
#include "qel/qelmathlinearalgebra.h"
#include "tests/support/reftable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <iostream>
#include <limits>
#include <map>
#include <sstream>
#include <string>
#include <vector>

using matrix_library::mEigenSystemsIterator;
typedef matrix_library::matrix<double> Matrix;

namespace
{
const double kUnit = std::ldexp(1.0, -53);

// The sequence of tests/data/gen_eigen_reference.py.
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

Matrix mReferenceMatrix(int n)
{
    Lcg lcg(1000003ULL * static_cast<std::uint64_t>(n) + 17ULL);
    Matrix a(n, n, 0.0);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j <= i; ++j)
        {
            const double d = lcg.mNext();
            a(i, j) = d;
            a(j, i) = d;
        }
    return a;
}

Matrix mIdentity(int n)
{
    Matrix a(n, n, 0.0);
    for (int i = 0; i < n; ++i)
        a(i, i) = 1.0;
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

const int kOrders[] = {1, 2, 7, 8, 9, 16, 17, 100};
} // namespace

TEST(EigenSystems, IdentityOfOrderThreeGivesOnesAndTheIdentitySortedStably)
{
    std::vector<double> values;
    Matrix vectors;
    EXPECT_EQ(mEigenSystemsIterator(mIdentity(3), values, vectors), 0);
    EXPECT_EQ(values, (std::vector<double>{1.0, 1.0, 1.0}));
    ASSERT_EQ(vectors.rowCount(), 3);
    ASSERT_EQ(vectors.colCount(), 3);
    EXPECT_EQ(vectors.storage(), mIdentity(3).storage());
}

TEST(EigenSystems, ValuesComeBackAscendingWithTheirVectorsAsColumns)
{
    Matrix a(3, 3, 0.0);
    a(0, 0) = 3.0;
    a(1, 1) = 1.0;
    a(2, 2) = 2.0;
    std::vector<double> values;
    Matrix vectors;
    ASSERT_EQ(mEigenSystemsIterator(a, values, vectors), 0);
    EXPECT_EQ(values, (std::vector<double>{1.0, 2.0, 3.0}));
    // Column k is the unit vector of the diagonal position that held values[k].
    EXPECT_EQ(vectors.storage(),
              (std::vector<double>{0.0, 0.0, 1.0, 1.0, 0.0, 0.0, 0.0, 1.0, 0.0}));
}

TEST(EigenSystems, TwoByTwoHasTheClosedFormPairs)
{
    // [2 1; 1 2]: eigenvalues 1 and 3, vectors (1, -1)/sqrt 2 and (1, 1)/sqrt 2.
    Matrix a(2, 2, 2.0);
    a(1, 0) = 1.0;
    a(0, 1) = 1.0;
    std::vector<double> values;
    Matrix v;
    ASSERT_EQ(mEigenSystemsIterator(a, values, v), 0);
    ASSERT_EQ(values.size(), 2u);
    EXPECT_NEAR(values[0], 1.0, 4.0 * kUnit);
    EXPECT_NEAR(values[1], 3.0, 12.0 * kUnit);
    const double r = std::sqrt(0.5);
    EXPECT_NEAR(std::fabs(v(0, 0)), r, 4.0 * kUnit);
    EXPECT_NEAR(v(0, 0) + v(1, 0), 0.0, 4.0 * kUnit);
    EXPECT_NEAR(std::fabs(v(0, 1)), r, 4.0 * kUnit);
    EXPECT_NEAR(v(0, 1) - v(1, 1), 0.0, 4.0 * kUnit);
}

TEST(EigenSystems, AbsoluteFlushInsideTheRotationsLosesTheSpreadOfATinyMatrix)
{
    // 1e-20 [2 1; 1 2] has eigenvalues 1e-20 and 3e-20.  The shift takes
    // both diagonal elements to 1e-20 and f = 1e-20; the rotation then
    // flushes the diagonal element, g and h (all 1e-20, below machine
    // precision in absolute terms) to zero, so both eigenvalues come out as
    // the accumulated shift f.  The flush is absolute on purpose.
    Matrix a(2, 2, 2e-20);
    a(1, 0) = 1e-20;
    a(0, 1) = 1e-20;
    std::vector<double> values;
    Matrix v;
    ASSERT_EQ(mEigenSystemsIterator(a, values, v), 0);
    EXPECT_EQ(values, (std::vector<double>{1e-20, 1e-20}));

    // The same matrix at scale 1 keeps both eigenvalues.
    Matrix b(2, 2, 2.0);
    b(1, 0) = 1.0;
    b(0, 1) = 1.0;
    ASSERT_EQ(mEigenSystemsIterator(b, values, v), 0);
    EXPECT_NEAR(values[1], 3.0, 12.0 * kUnit);
}

TEST(EigenSystems, UpperTriangleIsNotRead)
{
    const Matrix a = mReferenceMatrix(9);
    Matrix b(a);
    for (int i = 0; i < 9; ++i)
        for (int j = i + 1; j < 9; ++j)
            b(i, j) = 1e6 * (i + 1) - j;
    std::vector<double> va;
    std::vector<double> vb;
    Matrix za;
    Matrix zb;
    ASSERT_EQ(mEigenSystemsIterator(a, va, za), 0);
    ASSERT_EQ(mEigenSystemsIterator(b, vb, zb), 0);
    EXPECT_EQ(va, vb);
    EXPECT_EQ(za.storage(), zb.storage());
}

TEST(EigenSystems, VectorsMayBeTheMatrixItself)
{
    const Matrix a = mReferenceMatrix(8);
    std::vector<double> v1;
    Matrix z1;
    ASSERT_EQ(mEigenSystemsIterator(a, v1, z1), 0);
    Matrix same(a);
    std::vector<double> v2(3, 5.0);
    ASSERT_EQ(mEigenSystemsIterator(same, v2, same), 0);
    EXPECT_EQ(v1, v2);
    EXPECT_EQ(z1.storage(), same.storage());
}

TEST(EigenSystems, EmptyMatrixGivesEmptyResults)
{
    std::vector<double> values(4, 1.0);
    Matrix vectors(2, 2, 1.0);
    EXPECT_EQ(mEigenSystemsIterator(Matrix(), values, vectors), 0);
    EXPECT_TRUE(values.empty());
    EXPECT_EQ(vectors.rowCount(), 0);
    EXPECT_EQ(vectors.colCount(), 0);
}

TEST(EigenSystems, NonSquareMatrixIsAnInternalAssertion)
{
    std::vector<double> values;
    Matrix vectors;
    EXPECT_EQ(mMessageOf([&] { mEigenSystemsIterator(Matrix(2, 3, 1.0), values, vectors); })
                  .rfind("assertion failed: (a.rowCount() == a.colCount()) matrix_eigen.cpp: ", 0),
              0u);
    EXPECT_THROW(mEigenSystemsIterator(Matrix(3, 2, 1.0), values, vectors),
                 allege::AllegeException);
}

TEST(EigenSystems, NaNStopsTheIterationAtIndexZeroWhichReportsZero)
{
    Matrix a = mReferenceMatrix(4);
    a(2, 1) = std::numeric_limits<double>::quiet_NaN();
    std::vector<double> values;
    Matrix vectors;
    EXPECT_EQ(mEigenSystemsIterator(a, values, vectors), 0);
    ASSERT_EQ(values.size(), 4u);
    ASSERT_EQ(vectors.rowCount(), 4);
    // The values stand as the failed iteration left them: no number came out.
    for (double d : values)
        EXPECT_TRUE(std::isnan(d));
}

TEST(EigenSystems, ValuesAgreeWithTheHighPrecisionReference)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("eigen_reference.txt");
    ASSERT_FALSE(table.rows.empty());
    std::map<int, std::vector<double>> reference;
    for (const std::vector<double>& row : table.rows)
    {
        ASSERT_EQ(row.size(), 3u);
        reference[static_cast<int>(row[0])].push_back(row[2]);
    }
    qeltest::WorstError worstScaled("eigenvalue, relative to the largest |eigenvalue|");
    qeltest::WorstError worstOwn("eigenvalue, relative to itself");
    for (int n : kOrders)
    {
        const std::vector<double>& ref = reference[n];
        ASSERT_EQ(static_cast<int>(ref.size()), n) << "order " << n;
        std::vector<double> values;
        Matrix vectors;
        ASSERT_EQ(mEigenSystemsIterator(mReferenceMatrix(n), values, vectors), 0);
        ASSERT_EQ(static_cast<int>(values.size()), n);
        double dLargest = 0.0;
        for (double d : ref)
            dLargest = std::max(dLargest, std::fabs(d));
        for (int k = 0; k < n; ++k)
        {
            const double dGot = values[static_cast<std::size_t>(k)];
            const double dRef = ref[static_cast<std::size_t>(k)];
            const double dScaled = std::fabs(dGot - dRef) / dLargest;
            std::ostringstream os;
            os << "order " << n << " index " << k << " value " << dRef;
            worstScaled.mUpdate(dScaled, qeltest::mUlpDistance(dGot, dRef), os.str());
            worstOwn.mUpdate(qeltest::mRelativeError(dGot, dRef), qeltest::mUlpDistance(dGot, dRef),
                             os.str());
            EXPECT_LE(qeltest::mRelativeError(dGot, dRef), 1e-12) << os.str() << " got " << dGot;
            EXPECT_LE(dScaled, 1e-13) << os.str() << " got " << dGot;
            if (k > 0)
            {
                EXPECT_LE(values[static_cast<std::size_t>(k - 1)], dGot) << os.str();
            }
        }
    }
    std::cout << worstScaled.mReport() << "\n" << worstOwn.mReport() << "\n";
}

TEST(EigenSystems, PairsSatisfyTheEquationAndVectorsAreOrthonormal)
{
    for (int n : kOrders)
    {
        const Matrix a = mReferenceMatrix(n);
        std::vector<double> values;
        Matrix V;
        ASSERT_EQ(mEigenSystemsIterator(a, values, V), 0);
        double dNormF = 0.0;
        for (double d : a.storage())
            dNormF += d * d;
        dNormF = std::sqrt(dNormF);

        const Matrix AV = a * V;
        double dWorstPair = 0.0;
        for (int k = 0; k < n; ++k)
        {
            double s = 0.0;
            for (int i = 0; i < n; ++i)
            {
                const double r = AV(i, k) - values[static_cast<std::size_t>(k)] * V(i, k);
                s += r * r;
            }
            const double dResidual = std::sqrt(s);
            EXPECT_LE(dResidual, 10.0 * n * kUnit * dNormF) << "order " << n << " pair " << k;
            dWorstPair = std::max(dWorstPair, dResidual / (kUnit * dNormF));
        }

        Matrix VtV;
        matrix_library::multiplyLeftTranspose(V, V, VtV);
        double dWorstOrtho = 0.0;
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j)
            {
                const double dErr = std::fabs(VtV(i, j) - (i == j ? 1.0 : 0.0));
                EXPECT_LE(dErr, 10.0 * n * kUnit) << "order " << n << " at " << i << "," << j;
                dWorstOrtho = std::max(dWorstOrtho, dErr / kUnit);
            }
        std::cout << "[ eigensystem ] order " << n
                  << ": worst ||Av - lv|| / (u ||A||_F) = " << dWorstPair
                  << ", worst |V'V - I| / u = " << dWorstOrtho << " (bound " << 10 * n << ")\n";
    }
}
