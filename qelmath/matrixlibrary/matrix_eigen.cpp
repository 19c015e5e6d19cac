// Eigenvalues and eigenvectors of a real symmetric matrix.
//
// Two published stages, with the transformations accumulated so that the
// eigenvectors come out with the eigenvalues:
// - Householder reduction of the matrix to symmetric tridiagonal form
//   (Martin, Reinsch and Wilkinson, "Householder's tridiagonalization of a
//   symmetric matrix", Numerische Mathematik 11, 1968, procedure tred2).
//   Each row i from the last up is scaled by the sum of the magnitudes of
//   its leading part before the reflector is formed, which keeps the squares
//   from under- or overflowing; a row whose scale is zero is skipped.
// - The QL algorithm with implicit shifts on the tridiagonal matrix
//   (Bowdler, Martin, Reinsch and Wilkinson, "The QR and QL algorithms for
//   symmetric matrices", Numerische Mathematik 11, 1968, procedure tql2;
//   both in Wilkinson and Reinsch, Handbook for Automatic Computation,
//   vol. II, Linear Algebra, 1971).  The subdiagonal element that splits the
//   matrix is found against a running threshold, machine precision times
//   the largest |d| + |e| seen so far; at most 30 rounds are spent on one
//   eigenvalue.
//
// The small-number tests are fuzzy comparisons (1e-30 plus one mGetEps()
// relative to the larger operand), and inside each rotation c, s, the
// diagonal element, g, p and h are flushed to an exact zero when their
// magnitude is below machine precision.  That flush is absolute, so it
// assumes a matrix of moderate scale; it is deliberate and callers rely on
// the values it gives.  The eigenvalues are then sorted ascending by a
// selection sort with the fuzzy comparison, ties keeping their order, and
// the eigenvector columns follow their values.
#include "qel/matrixfactorisations.h"

#include "qel/fuzzy.h"

#include <cmath>
#include <cstddef>
#include <utility>

namespace matrix_library
{
namespace
{
// Machine precision found at run time: the largest power of 2 whose sum
// with 1 rounds to 1 (2^-53 in IEEE double).
double mRunTimeEpsilon()
{
    volatile double eps = 1.0;
    volatile double sum = 2.0;
    while (sum != 1.0)
    {
        eps = eps * 0.5;
        sum = 1.0 + eps;
    }
    return eps;
}

inline double mFlush(double x, double eps)
{
    return mCompareWithFuzz(std::fabs(x), eps, 0.0) < 0 ? 0.0 : x;
}

// The Householder stage.  z holds the lower triangle of the matrix (row
// major, order n) and becomes the accumulated orthogonal transformation; d
// the diagonal and e the subdiagonal of the tridiagonal form, e[i] coupling
// rows i - 1 and i.
void mTridiagonalise(std::vector<double>& z, std::vector<double>& d, std::vector<double>& e, int n)
{
    auto Z = [&z, n](int i, int j) -> double&
    {
        return z[static_cast<std::size_t>(i) * static_cast<std::size_t>(n) +
                 static_cast<std::size_t>(j)];
    };
    for (int i = n - 1; i >= 1; --i)
    {
        const int l = i - 1;
        double h = 0.0;
        double scale = 0.0;
        if (l > 0)
            for (int k = 0; k <= l; ++k)
                scale += std::fabs(Z(i, k));
        if (l == 0 || mEqualWithinFuzz(scale, 0.0, 0.0))
        {
            e[static_cast<std::size_t>(i)] = Z(i, l);
        }
        else
        {
            for (int k = 0; k <= l; ++k)
            {
                Z(i, k) /= scale;
                h += Z(i, k) * Z(i, k);
            }
            double f = Z(i, l);
            double g = -mTransferSign(std::sqrt(h), f);
            e[static_cast<std::size_t>(i)] = scale * g;
            h -= f * g;
            Z(i, l) = f - g;
            f = 0.0;
            for (int j = 0; j <= l; ++j)
            {
                Z(j, i) = Z(i, j) / h;
                g = 0.0;
                for (int k = 0; k <= j; ++k)
                    g += Z(j, k) * Z(i, k);
                for (int k = j + 1; k <= l; ++k)
                    g += Z(k, j) * Z(i, k);
                e[static_cast<std::size_t>(j)] = g / h;
                f += e[static_cast<std::size_t>(j)] * Z(i, j);
            }
            const double hh = f / (h + h);
            for (int j = 0; j <= l; ++j)
            {
                f = Z(i, j);
                g = e[static_cast<std::size_t>(j)] - hh * f;
                e[static_cast<std::size_t>(j)] = g;
                for (int k = 0; k <= j; ++k)
                    Z(j, k) -= f * e[static_cast<std::size_t>(k)] + g * Z(i, k);
            }
        }
        d[static_cast<std::size_t>(i)] = h;
    }
    d[0] = 0.0;
    e[0] = 0.0;

    // Accumulate the reflectors, the last applied first.  Row i holds the
    // Householder vector u of step i and column i the vector u / h; for each
    // earlier column j, g_j = sum_k u_k Q(k, j) and Q(k, j) -= g_j u_k / h.
    // The g_j are gathered row by row for unit stride; each is still summed
    // over k in increasing order.
    std::vector<double> gs(static_cast<std::size_t>(n), 0.0);
    for (int i = 0; i < n; ++i)
    {
        if (!mEqualWithinFuzz(d[static_cast<std::size_t>(i)], 0.0, 0.0))
        {
            for (int j = 0; j < i; ++j)
                gs[static_cast<std::size_t>(j)] = 0.0;
            for (int k = 0; k < i; ++k)
            {
                const double u = Z(i, k);
                const double* pdRow = &Z(k, 0);
                for (int j = 0; j < i; ++j)
                    gs[static_cast<std::size_t>(j)] += u * pdRow[j];
            }
            for (int k = 0; k < i; ++k)
            {
                const double w = Z(k, i);
                double* pdRow = &Z(k, 0);
                for (int j = 0; j < i; ++j)
                    pdRow[j] -= gs[static_cast<std::size_t>(j)] * w;
            }
        }
        d[static_cast<std::size_t>(i)] = Z(i, i);
        Z(i, i) = 1.0;
        for (int j = 0; j < i; ++j)
        {
            Z(j, i) = 0.0;
            Z(i, j) = 0.0;
        }
    }
}

// The QL stage.  Returns -1, or the index whose iteration did not settle.
int mQLImplicit(std::vector<double>& z, std::vector<double>& d, std::vector<double>& e, int n)
{
    const double eps = mRunTimeEpsilon();
    for (int i = 1; i < n; ++i)
        e[static_cast<std::size_t>(i - 1)] = e[static_cast<std::size_t>(i)];
    e[static_cast<std::size_t>(n - 1)] = 0.0;

    double f = 0.0;
    double tst = 0.0;
    for (int l = 0; l < n; ++l)
    {
        const std::size_t ul = static_cast<std::size_t>(l);
        const double candidate = (std::fabs(d[ul]) + std::fabs(e[ul])) * eps;
        if (mCompareWithFuzz(tst, candidate, 0.0) < 0)
            tst = candidate;

        // e[n - 1] is zero and ends the search; the bound ends it as well
        // when a NaN has reached tst.
        int m = l;
        while (m < n - 1 &&
               mCompareWithFuzz(std::fabs(e[static_cast<std::size_t>(m)]), tst, 0.0) > 0)
            ++m;

        if (m != l)
        {
            int iRound = 0;
            for (;;)
            {
                if (iRound == 30)
                    return l;
                ++iRound;

                double g = d[ul];
                double p = (d[ul + 1] - g) / (2.0 * e[ul]);
                double r = std::sqrt(p * p + 1.0);
                d[ul] = e[ul] / (p + mTransferSign(r, p));
                double h = g - d[ul];
                for (int i = l + 1; i < n; ++i)
                    d[static_cast<std::size_t>(i)] -= h;
                f += h;

                p = d[static_cast<std::size_t>(m)];
                double c = 1.0;
                double s = 0.0;
                for (int i = m - 1; i >= l; --i)
                {
                    const std::size_t ui = static_cast<std::size_t>(i);
                    g = c * e[ui];
                    h = c * p;
                    if (mCompareWithFuzz(std::fabs(p), std::fabs(e[ui]), 0.0) < 0)
                    {
                        c = p / e[ui];
                        r = std::sqrt(c * c + 1.0);
                        e[ui + 1] = s * e[ui] * r;
                        s = 1.0 / r;
                        c = c * s;
                    }
                    else
                    {
                        const double cc = e[ui] / p;
                        r = std::sqrt(cc * cc + 1.0);
                        e[ui + 1] = s * p * r;
                        s = cc / r;
                        c = 1.0 / r;
                    }
                    c = mFlush(c, eps);
                    d[ui] = mFlush(d[ui], eps);
                    s = mFlush(s, eps);
                    g = mFlush(g, eps);
                    p = c * d[ui] - s * g;
                    p = mFlush(p, eps);
                    h = mFlush(h, eps);
                    d[ui + 1] = h + s * (c * g + s * d[ui]);

                    for (int k = 0; k < n; ++k)
                    {
                        double* pdRow =
                            &z[static_cast<std::size_t>(k) * static_cast<std::size_t>(n)];
                        const double t = pdRow[i + 1];
                        pdRow[i + 1] = s * pdRow[i] + c * t;
                        pdRow[i] = c * pdRow[i] - s * t;
                    }
                }
                e[ul] = s * p;
                d[ul] = c * p;
                if (mCompareWithFuzz(std::fabs(e[ul]), tst, 0.0) <= 0)
                    break;
            }
        }
        d[ul] += f;
    }
    return -1;
}

// Ascending selection sort; a later value replaces the candidate only when
// it is smaller by more than the fuzz, so ties keep their order.
void mSortAscending(std::vector<double>& d, std::vector<double>& z, int n)
{
    for (int k = 0; k + 1 < n; ++k)
    {
        int iMin = k;
        double p = d[static_cast<std::size_t>(k)];
        for (int j = k + 1; j < n; ++j)
        {
            if (mCompareWithFuzz(d[static_cast<std::size_t>(j)], p, 0.0) < 0)
            {
                iMin = j;
                p = d[static_cast<std::size_t>(j)];
            }
        }
        if (iMin != k)
        {
            d[static_cast<std::size_t>(iMin)] = d[static_cast<std::size_t>(k)];
            d[static_cast<std::size_t>(k)] = p;
            for (int r = 0; r < n; ++r)
            {
                double* pdRow = &z[static_cast<std::size_t>(r) * static_cast<std::size_t>(n)];
                std::swap(pdRow[k], pdRow[iMin]);
            }
        }
    }
}
} // namespace

template <class T>
int mEigenSystemsIterator(const matrix<T>& a, std::vector<T>& values, matrix<T>& vectors)
{
    QEL_ALLEGE(a.rowCount() == a.colCount());
    const int n = a.rowCount();
    const std::size_t un = static_cast<std::size_t>(n);

    std::vector<double> z(un * un, 0.0);
    const std::vector<T>& va = a.storage();
    for (std::size_t i = 0; i < un; ++i)
        for (std::size_t j = 0; j <= i; ++j)
            z[i * un + j] = va[i * un + j];

    std::vector<double> d(un, 0.0);
    std::vector<double> e(un, 0.0);
    int iFailed = -1;
    if (n > 0)
    {
        mTridiagonalise(z, d, e, n);
        iFailed = mQLImplicit(z, d, e, n);
        if (iFailed < 0)
            mSortAscending(d, z, n);
    }

    vectors.resize(n, n, T(0));
    vectors.storage() = std::move(z);
    values = std::move(d);
    return iFailed < 0 ? 0 : iFailed;
}

template QEL_API int mEigenSystemsIterator<double>(const matrix<double>& a,
                                                   std::vector<double>& values,
                                                   matrix<double>& vectors);
} // namespace matrix_library
