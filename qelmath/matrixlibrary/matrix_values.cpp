// The value matrices of namespace matrix_library: storage, construction,
// element access, resizing, the conversions between the kinds and the
// symmetric cast with its fuzzy test.  Internal checks throw
// allege::AllegeException.
#include "qel/qelmathlinearalgebra.h"

#include "qel/fuzzy.h"
#include "qelmath/matrixlibrary/matrix_detail.h"

#include <limits>

namespace matrix_library
{
namespace
{
const unsigned int s_uMagic = 0xFEEDBAAAu;

inline std::size_t mPackedSize(int n)
{
    return static_cast<std::size_t>(n) * (static_cast<std::size_t>(n) + 1) / 2;
}

inline std::size_t mLowerPosition(int i, int j)
{
    return static_cast<std::size_t>(i) * (static_cast<std::size_t>(i) + 1) / 2 +
           static_cast<std::size_t>(j);
}

inline std::size_t mUpperPosition(int n, int i, int j)
{
    return static_cast<std::size_t>(n) * static_cast<std::size_t>(i) -
           static_cast<std::size_t>(i) * (static_cast<std::size_t>(i) + 1) / 2 +
           static_cast<std::size_t>(j);
}

// The order of a square kind: not negative, and n*n fits 32 bits.
inline int mCheckedOrder(int n)
{
    QEL_ALLEGE(n >= 0);
    QEL_ALLEGE(static_cast<long long>(n) * n <= std::numeric_limits<int>::max());
    return n;
}
} // namespace

// ---------------------------------------------------------------------------
// matrix<T>

template <class T> matrix<T>::matrix() : magic_(s_uMagic), m_(0), n_(0), mn_(0), v_() {}

template <class T>
matrix<T>::matrix(int m, int n, const T& fill) : magic_(s_uMagic), m_(0), n_(0), mn_(0), v_()
{
    resize(m, n, fill);
}

template <class T> matrix<T>::matrix(const matrix<T>& rOther) = default;
template <class T> matrix<T>& matrix<T>::operator=(const matrix<T>& rOther) = default;
template <class T> matrix<T>::~matrix() = default;

template <class T>
matrix<T>::matrix(const Smatrix<T>& rOther) : matrix<T>(rOther.order(), rOther.order(), T(0))
{
    for (int i = 0; i < m_; ++i)
        for (int j = 0; j < n_; ++j)
            (*this)(i, j) = rOther(i, j);
}

template <class T>
matrix<T>::matrix(const UTmatrix<T>& rOther) : matrix<T>(rOther.order(), rOther.order(), T(0))
{
    for (int i = 0; i < m_; ++i)
        for (int j = i; j < n_; ++j)
            (*this)(i, j) = rOther(i, j);
}

template <class T>
matrix<T>::matrix(const Dmatrix<T>& rOther) : matrix<T>(rOther.order(), rOther.order(), T(0))
{
    for (int i = 0; i < m_; ++i)
        (*this)(i, i) = rOther(i, i);
}

template <class T> matrix<T>& matrix<T>::operator=(const std::vector<T>& rvValues)
{
    if (v_ == rvValues)
        return *this;
    QEL_ALLEGE(rvValues.size() <= static_cast<std::size_t>(std::numeric_limits<int>::max()));
    v_ = rvValues;
    m_ = static_cast<int>(rvValues.size());
    n_ = 1;
    mn_ = m_;
    return *this;
}

template <class T> void matrix<T>::resize(int m, int n, const T& fill)
{
    QEL_ALLEGE(m >= 0 && n >= 0);
    QEL_ALLEGE(static_cast<long long>(m) * n <= std::numeric_limits<int>::max());
    const T copy = fill;
    m_ = m;
    n_ = n;
    mn_ = m * n;
    v_.resize(static_cast<std::size_t>(mn_));
    for (T& rElement : v_)
        rElement = copy;
    QEL_ALLEGE(mn_ == static_cast<int>(v_.size()));
}

template <class T> const T& matrix<T>::operator()(int i, int j) const
{
    QEL_ALLEGE(0 <= i && i < m_ && 0 <= j && j < n_);
    return v_[static_cast<std::size_t>(i) * static_cast<std::size_t>(n_) +
              static_cast<std::size_t>(j)];
}

template <class T> T& matrix<T>::operator()(int i, int j)
{
    QEL_ALLEGE(0 <= i && i < m_ && 0 <= j && j < n_);
    return v_[static_cast<std::size_t>(i) * static_cast<std::size_t>(n_) +
              static_cast<std::size_t>(j)];
}

template <class T> std::vector<T> matrix<T>::getColumn(int j) const
{
    std::vector<T> vColumn;
    if (m_ == 0 || n_ == 0)
        return vColumn;
    QEL_ALLEGE(0 <= j && j < n_);
    vColumn.reserve(static_cast<std::size_t>(m_));
    for (int i = 0; i < m_; ++i)
        vColumn.push_back((*this)(i, j));
    return vColumn;
}

template <class T> matrix<T> matrix<T>::transpose() const
{
    if (m_ == 1 || n_ == 1)
    {
        matrix<T> result(*this);
        result.m_ = n_;
        result.n_ = m_;
        return result;
    }
    matrix<T> result(n_, m_, T(0));
    for (int i = 0; i < m_; ++i)
        for (int j = 0; j < n_; ++j)
            result(j, i) = (*this)(i, j);
    return result;
}

template <class T> matrix<T>::operator Smatrix<T>() const
{
    const int rows = m_;
    const int cols = n_;
    QEL_ALLEGE(rows == cols);
    Smatrix<T> result(rows, T(0));
    for (int i = 0; i < rows; ++i)
        for (int j = 0; j <= i; ++j)
        {
            if (j < i && !mEqualWithinFuzz((*this)(i, j), (*this)(j, i), 0.0))
                throw MatrixException("Smatrix cast: result not a symmetric matrix");
            result(i, j) = (*this)(i, j);
        }
    return result;
}

// ---------------------------------------------------------------------------
// Smatrix<T>

template <class T> Smatrix<T>::Smatrix() : n_(0), v_() {}

template <class T>
Smatrix<T>::Smatrix(int n, const T& fill) : n_(mCheckedOrder(n)), v_(mPackedSize(n), fill)
{
}

template <class T> Smatrix<T>::Smatrix(const Smatrix<T>& rOther) = default;
template <class T> Smatrix<T>& Smatrix<T>::operator=(const Smatrix<T>& rOther) = default;
template <class T> Smatrix<T>::~Smatrix() = default;

template <class T> const T& Smatrix<T>::operator()(int i, int j) const
{
    QEL_ALLEGE(0 <= i && i < n_ && 0 <= j && j < n_);
    return i >= j ? v_[mLowerPosition(i, j)] : v_[mLowerPosition(j, i)];
}

template <class T> T& Smatrix<T>::operator()(int i, int j)
{
    QEL_ALLEGE(0 <= i && i < n_ && 0 <= j && j < n_);
    return i >= j ? v_[mLowerPosition(i, j)] : v_[mLowerPosition(j, i)];
}

// ---------------------------------------------------------------------------
// UTmatrix<T>

template <class T> UTmatrix<T>::UTmatrix() : n_(0), v_(), zero_(T(0)), dummy_(T(0)) {}

template <class T>
UTmatrix<T>::UTmatrix(int n, const T& fill)
    : n_(mCheckedOrder(n)), v_(mPackedSize(n), fill), zero_(T(0)), dummy_(T(0))
{
}

template <class T> UTmatrix<T>::UTmatrix(const UTmatrix<T>& rOther) = default;
template <class T> UTmatrix<T>& UTmatrix<T>::operator=(const UTmatrix<T>& rOther) = default;
template <class T> UTmatrix<T>::~UTmatrix() = default;

template <class T> const T& UTmatrix<T>::operator()(int i, int j) const
{
    QEL_ALLEGE(0 <= i && i < n_ && 0 <= j && j < n_);
    if (i > j)
        return zero_;
    return v_[mUpperPosition(n_, i, j)];
}

template <class T> T& UTmatrix<T>::operator()(int i, int j)
{
    QEL_ALLEGE(0 <= i && i < n_ && 0 <= j && j < n_);
    if (i > j)
    {
        dummy_ = T(0);
        return dummy_;
    }
    return v_[mUpperPosition(n_, i, j)];
}

// ---------------------------------------------------------------------------
// Dmatrix<T>

template <class T> Dmatrix<T>::Dmatrix() : zero_(T(0)), n_(0), v_(), dummy_(T(0)) {}

template <class T>
Dmatrix<T>::Dmatrix(int n, const T& fill)
    : zero_(T(0)), n_(mCheckedOrder(n)), v_(static_cast<std::size_t>(n), fill), dummy_(T(0))
{
}

template <class T> Dmatrix<T>::Dmatrix(const Dmatrix<T>& rOther) = default;
template <class T> Dmatrix<T>& Dmatrix<T>::operator=(const Dmatrix<T>& rOther) = default;
template <class T> Dmatrix<T>::~Dmatrix() = default;

template <class T> const T& Dmatrix<T>::operator()(int i, int j) const
{
    QEL_ALLEGE(0 <= i && i < n_ && 0 <= j && j < n_);
    if (i != j)
        return zero_;
    return v_[static_cast<std::size_t>(i)];
}

template <class T> T& Dmatrix<T>::operator()(int i, int j)
{
    QEL_ALLEGE(0 <= i && i < n_ && 0 <= j && j < n_);
    if (i != j)
    {
        dummy_ = T(0);
        return dummy_;
    }
    return v_[static_cast<std::size_t>(i)];
}

// ---------------------------------------------------------------------------
// Conversions between the square kinds

UTmatrix<double> SmatrixToUTmatrix(const Smatrix<double>& rS)
{
    const int n = rS.order();
    UTmatrix<double> result(n, 0.0);
    for (int i = 0; i < n; ++i)
        for (int j = i; j < n; ++j)
            result(i, j) = rS(i, j);
    return result;
}

Smatrix<double> UTmatrixToSmatrix(const UTmatrix<double>& rU)
{
    const int n = rU.order();
    Smatrix<double> result(n, 0.0);
    for (int i = 0; i < n; ++i)
        for (int j = i; j < n; ++j)
            result(i, j) = rU(i, j);
    return result;
}

template class matrix<double>;
template class Smatrix<double>;
template class UTmatrix<double>;
template class Dmatrix<double>;
} // namespace matrix_library
