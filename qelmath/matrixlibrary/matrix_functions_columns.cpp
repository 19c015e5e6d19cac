// Column primitives of the matrix_library value matrices: dot products of
// columns, a multiple of a column added to a vector or to another column, a
// column scaled, each over the leading count rows.  They are the steps of
// the Cholesky factor, its back-substitution and the inversion of the
// factor in packed storage (LINPACK DPODI, Dongarra, Bunch, Moler and
// Stewart, LINPACK Users' Guide, SIAM 1979), which is why the symmetric
// forms act on what the symmetric accessor reaches: element (r, j) with
// r < j is the stored (j, r).
//
// count greater than the row count (the order) is a caller's error and
// throws MatrixException("matrix::number of products greater than
// dimension"); so is count greater than the vector's size.  count <= 0
// gives 0 or changes nothing.  A column index outside the matrix is an
// internal failure (allege::AllegeException), checked once before the loop
// runs on the raw storage.
#include "qel/matrixarithmetic.h"
#include "qelmath/matrixlibrary/matrix_functions_detail.h"

#include <algorithm>

namespace matrix_library
{
namespace
{
using detail::Index;

void mCheckCount(int count, int iRows)
{
    if (count > iRows)
        throw MatrixException("matrix::number of products greater than dimension");
}

void mCheckCount(int count, int iRows, const std::vector<double>& v)
{
    mCheckCount(count, iRows);
    if (count > 0 && static_cast<std::size_t>(count) > v.size())
        throw MatrixException("matrix::number of products greater than dimension");
}
} // namespace

double DotProduct(const matrix<double>& m, int i, int j, int count)
{
    mCheckCount(count, m.rowCount());
    if (count <= 0)
        return 0.0;
    QEL_ALLEGE(0 <= i && i < m.colCount() && 0 <= j && j < m.colCount());
    const detail::DenseReader a(m);
    double dSum = 0.0;
    for (Index k = 0; k < count; ++k)
        dSum += a(k, i) * a(k, j);
    return dSum;
}

double DotProduct(const matrix<double>& m, int i, const std::vector<double>& v, int count)
{
    mCheckCount(count, m.rowCount(), v);
    if (count <= 0)
        return 0.0;
    QEL_ALLEGE(0 <= i && i < m.colCount());
    const detail::DenseReader a(m);
    double dSum = 0.0;
    for (Index k = 0; k < count; ++k)
        dSum += a(k, i) * v[static_cast<std::size_t>(k)];
    return dSum;
}

double DotProduct(const UTmatrix<double>& m, int i, int j, int count)
{
    mCheckCount(count, m.order());
    count = std::min(count, std::min(i, j));
    if (count <= 0)
        return 0.0;
    QEL_ALLEGE(0 <= i && i < m.order() && 0 <= j && j < m.order());
    const detail::UpperReader u(m);
    double dSum = 0.0;
    for (Index k = 0; k < count; ++k)
        dSum += u(k, i) * u(k, j);
    return dSum;
}

void KTimesColumnPlusVector(const matrix<double>& m, double k, int j, std::vector<double>& v,
                            int count)
{
    mCheckCount(count, m.rowCount(), v);
    if (count <= 0)
        return;
    QEL_ALLEGE(0 <= j && j < m.colCount());
    const detail::DenseReader a(m);
    for (Index r = 0; r < count; ++r)
        v[static_cast<std::size_t>(r)] += k * a(r, j);
}

void KTimesColumnPlusVector(const UTmatrix<double>& m, double k, int j, std::vector<double>& v,
                            int count)
{
    mCheckCount(count, m.order(), v);
    if (count <= 0)
        return;
    QEL_ALLEGE(0 <= j && j < m.order());
    const detail::UpperReader u(m);
    for (Index r = 0; r < count; ++r)
        v[static_cast<std::size_t>(r)] += k * u(r, j);
}

void KTimesColumn(Smatrix<double>& m, double k, int j, int count)
{
    mCheckCount(count, m.order());
    if (count <= 0)
        return;
    QEL_ALLEGE(0 <= j && j < m.order());
    double* p = m.storage().data();
    for (Index r = 0; r < count; ++r)
        p[detail::mLowerPosition(r, j)] *= k;
}

void KTimesColumnPlusColumn(Smatrix<double>& m, double k, int from, int to, int count)
{
    mCheckCount(count, m.order());
    if (count <= 0)
        return;
    QEL_ALLEGE(0 <= from && from < m.order() && 0 <= to && to < m.order());
    double* p = m.storage().data();
    for (Index r = 0; r < count; ++r)
        p[detail::mLowerPosition(r, to)] += k * p[detail::mLowerPosition(r, from)];
}
} // namespace matrix_library
