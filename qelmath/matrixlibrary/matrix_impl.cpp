// The persistent matrices matrix<T>, Smatrix<T> and UTmatrix<T>: packed
// storage, element access, the row and column surgery of the dense form, the
// order surgery of the packed symmetric form, and the conversions between
// the kinds.  Everything goes through the virtual accessors, so that the
// inherited routines run on the packed kinds as they stand.
#include "qel/matrix.h"

#include "qel/qelmessaging.h"

#include <limits>
#include <stdexcept>

namespace
{
const char* const s_pszRowOutOfRange = "matrix access row out of range";
const char* const s_pszColumnOutOfRange = "matrix access column out of range";

// Packed positions; the caller has put (i, j) into the stored triangle.
inline long long mLowerPosition(long long i, long long j)
{
    return i * (i + 1) / 2 + j;
}

inline long long mUpperPosition(long long n, long long i, long long j)
{
    return n * i - i * (i + 1) / 2 + j;
}

inline std::size_t mPackedSize(int n)
{
    return static_cast<std::size_t>(n) * (static_cast<std::size_t>(n) + 1) / 2;
}

// The iterator offset of a storage position, clipped to the storage: the
// inherited surgery of UTmatrix treats the packed storage as if it were
// dense, and clipping keeps it inside.
template <class T>
typename std::vector<T>::iterator mClippedAt(std::vector<T>& rv, long long llPosition)
{
    if (llPosition < 0)
        llPosition = 0;
    if (llPosition > static_cast<long long>(rv.size()))
        llPosition = static_cast<long long>(rv.size());
    return rv.begin() + static_cast<std::ptrdiff_t>(llPosition);
}
} // namespace

// ---------------------------------------------------------------------------
// matrix<T>

template <class T> void matrix<T>::mMakePacked(int n, const T& fill)
{
    mn_ = mCheckedSize(n, n);
    m_ = n;
    n_ = n;
    v_.assign(mPackedSize(n), fill);
}

template <class T> void matrix<T>::mCopyPacked(const matrix<T>& rOther)
{
    m_ = rOther.m_;
    n_ = rOther.n_;
    mn_ = rOther.mn_;
    v_ = rOther.v_;
}

template <class T> void matrix<T>::mAssignPacked(const matrix<T>& rOther)
{
    v_.clear();
    v_ = rOther.v_;
    m_ = rOther.n_;
    n_ = rOther.n_;
    mn_ = rOther.n_ * rOther.n_;
}

template <class T> int matrix<T>::mCheckedSize(long long m, long long n)
{
    const long long llLimit = std::numeric_limits<int>::max();
    if (m < 0 || n < 0 || m > llLimit || n > llLimit)
        throw std::domain_error("matrix order out of range");
    const long long llSize = m * n;
    if (m < 0 || n < 0 || llSize > std::numeric_limits<int>::max())
        throw std::domain_error("matrix order out of range");
    return static_cast<int>(llSize);
}

template <class T> matrix<T>::matrix() : m_(0), n_(0), mn_(0), dummy_(T(0)), v_() {}

template <class T>
matrix<T>::matrix(int m, int n, const T& fill)
    : m_(m), n_(n), mn_(mCheckedSize(m, n)), dummy_(T(0)), v_(static_cast<std::size_t>(mn_), fill)
{
}

template <class T>
matrix<T>::matrix(const matrix<T>& rOther)
    : m_(rOther.m_), n_(rOther.n_), mn_(rOther.mn_), dummy_(T(0)),
      v_(static_cast<std::size_t>(rOther.m_) * static_cast<std::size_t>(rOther.n_), T(0))
{
    for (int i = 0; i < m_; ++i)
        for (int j = 0; j < n_; ++j)
            v_[static_cast<std::size_t>(i) * n_ + j] = rOther(i, j);
}

template <class T> matrix<T>& matrix<T>::operator=(const matrix<T>& rOther)
{
    if (this != &rOther)
    {
        matrix<T> copy(rOther);
        m_ = copy.m_;
        n_ = copy.n_;
        mn_ = copy.mn_;
        v_.swap(copy.v_);
    }
    return *this;
}

template <class T> matrix<T>::~matrix() = default;

template <class T> const T& matrix<T>::operator()(int i, int j) const
{
    const long long k = mStoragePosition(static_cast<long long>(i) * n_ + j);
    return k < 0 ? dummy_ : v_[static_cast<std::size_t>(k)];
}

template <class T> T& matrix<T>::operator()(int i, int j)
{
    const long long k = mStoragePosition(static_cast<long long>(i) * n_ + j);
    return k < 0 ? dummy_ : v_[static_cast<std::size_t>(k)];
}

template <class T> matrix<T> matrix<T>::withoutRow(int i) const
{
    const int iRows = m_ > 0 ? m_ - 1 : 0;
    matrix<T> result(iRows, n_, T(0));
    const matrix<T>& rSource = *this;
    for (int c = 0; c < n_; ++c)
        for (int r = 0; r < m_; ++r)
        {
            if (r == i)
                continue;
            const int rTo = r < i ? r : r - 1;
            if (rTo >= 0 && rTo < iRows)
                result(rTo, c) = rSource(r, c);
        }
    return result;
}

template <class T> matrix<T> matrix<T>::withoutColumn(int j) const
{
    const int iCols = n_ > 0 ? n_ - 1 : 0;
    matrix<T> result(m_, iCols, T(0));
    const matrix<T>& rSource = *this;
    for (int r = 0; r < m_; ++r)
        for (int c = 0; c < n_; ++c)
        {
            if (c == j)
                continue;
            const int cTo = c < j ? c : c - 1;
            if (cTo >= 0 && cTo < iCols)
                result(r, cTo) = rSource(r, c);
        }
    return result;
}

template <class T> matrix<T>& matrix<T>::removeRow(int i)
{
    if (i < 0 || i >= m_)
        throw std::domain_error(s_pszRowOutOfRange);
    const long long llStart = static_cast<long long>(i) * n_;
    v_.erase(mClippedAt(v_, llStart), mClippedAt(v_, llStart + n_));
    if (m_ == 1)
        n_ = 0;
    --m_;
    mn_ = m_ * n_;
    return *this;
}

template <class T> matrix<T>& matrix<T>::removeColumn(int j)
{
    if (j < 0 || j >= n_)
        throw std::domain_error(s_pszColumnOutOfRange);
    for (int r = m_ - 1; r >= 0; --r)
    {
        const long long llPosition = static_cast<long long>(r) * n_ + j;
        if (llPosition < static_cast<long long>(v_.size()))
            v_.erase(mClippedAt(v_, llPosition));
    }
    if (n_ == 1)
        m_ = 0;
    --n_;
    mn_ = m_ * n_;
    return *this;
}

template <class T> matrix<T>& matrix<T>::addRow(int i, const std::vector<T>& rvRow)
{
    if (static_cast<long long>(rvRow.size()) != n_)
        throw std::domain_error("addRow\trow vector must be of same order");
    if (i < 0 || i > m_)
        throw std::domain_error(s_pszRowOutOfRange);
    mCheckedSize(m_ + 1LL, n_);
    v_.reserve(rvRow.size() + static_cast<std::size_t>(n_));
    v_.insert(mClippedAt(v_, static_cast<long long>(i) * n_), rvRow.begin(), rvRow.end());
    ++m_;
    mn_ = m_ * n_;
    return *this;
}

template <class T> matrix<T>& matrix<T>::addRow(int i, const T& value)
{
    if (i < 0 || i > m_)
        throw std::domain_error(s_pszRowOutOfRange);
    mCheckedSize(m_ + 1LL, n_);
    // A copy, since value may be an element of this very matrix.
    const T copy = value;
    v_.insert(mClippedAt(v_, static_cast<long long>(i) * n_), static_cast<std::size_t>(n_), copy);
    ++m_;
    mn_ = m_ * n_;
    return *this;
}

template <class T> matrix<T>& matrix<T>::addCol(int j, const std::vector<T>& rvColumn)
{
    if (static_cast<long long>(rvColumn.size()) != m_)
        throw std::domain_error("addCol column vector must be of same order");
    if (j < 0 || j > n_)
        throw std::domain_error(s_pszColumnOutOfRange);
    mCheckedSize(m_, n_ + 1LL);
    v_.reserve(rvColumn.size() + static_cast<std::size_t>(m_));
    // Element k goes to k*n_ + j + k: the + k counts the elements already
    // inserted in the rows above.
    for (int k = 0; k < m_; ++k)
        v_.insert(mClippedAt(v_, static_cast<long long>(k) * n_ + j + k),
                  rvColumn[static_cast<std::size_t>(k)]);
    ++n_;
    mn_ = m_ * n_;
    return *this;
}

template <class T> matrix<T>& matrix<T>::addCol(int j, const T& value)
{
    if (j < 0 || j > n_)
        throw std::domain_error(s_pszColumnOutOfRange);
    mCheckedSize(m_, n_ + 1LL);
    const T copy = value;
    for (int k = 0; k < m_; ++k)
        v_.insert(mClippedAt(v_, static_cast<long long>(k) * n_ + j + k), copy);
    ++n_;
    mn_ = m_ * n_;
    return *this;
}

template <class T> void matrix<T>::resize(int m, int n, const T& fill)
{
    if (m == m_ && n == n_)
        return;
    const int iSize = mCheckedSize(m, n);
    const T copy = fill;
    v_.clear();
    v_.assign(static_cast<std::size_t>(iSize), copy);
    m_ = m;
    n_ = n;
    mn_ = iSize;
}

template <class T> matrix<T> matrix<T>::transpose() const
{
    matrix<T> result(n_, m_, T(0));
    for (int i = 0; i < m_; ++i)
        for (int j = 0; j < n_; ++j)
            result(j, i) = (*this)(i, j);
    return result;
}

template <class T> matrix<T>::operator std::vector<T>() const
{
    if (n_ != 1)
        throw std::domain_error("vector cast: result not a vector");
    return v_;
}

// ---------------------------------------------------------------------------
// Smatrix<T>

template <class T> Smatrix<T>::Smatrix() = default;

template <class T> Smatrix<T>::Smatrix(int n, const T& fill) : matrix<T>()
{
    this->mMakePacked(n, fill);
}

template <class T> Smatrix<T>::Smatrix(const Smatrix<T>& rOther) : matrix<T>()
{
    this->mCopyPacked(rOther);
}

template <class T>
Smatrix<T>::Smatrix(const UTmatrix<T>& rOther) : Smatrix<T>(rOther.rowCount(), T(0))
{
    const int n = rOther.rowCount();
    for (int i = 0; i < n; ++i)
        for (int j = i; j < n; ++j)
            (*this)(i, j) = rOther(i, j);
}

template <class T> Smatrix<T>& Smatrix<T>::operator=(const Smatrix<T>& rOther)
{
    if (this != &rOther)
        this->mAssignPacked(rOther);
    return *this;
}

template <class T> Smatrix<T>::~Smatrix() = default;

template <class T> const T& Smatrix<T>::operator()(int i, int j) const
{
    const long long k =
        this->mStoragePosition(i >= j ? mLowerPosition(i, j) : mLowerPosition(j, i));
    return k < 0 ? this->dummy_ : this->v_[static_cast<std::size_t>(k)];
}

template <class T> T& Smatrix<T>::operator()(int i, int j)
{
    const long long k =
        this->mStoragePosition(i >= j ? mLowerPosition(i, j) : mLowerPosition(j, i));
    return k < 0 ? this->dummy_ : this->v_[static_cast<std::size_t>(k)];
}

template <class T> matrix<T>& Smatrix<T>::removeRow(int)
{
    QEL_ASSERT_TEXT(false, "! _NT(\"Not implemented.\")");
    return *this;
}

template <class T> matrix<T>& Smatrix<T>::removeColumn(int)
{
    QEL_ASSERT_TEXT(false, "! _NT(\"Not implemented.\")");
    return *this;
}

template <class T> matrix<T>& Smatrix<T>::addRow(int, const std::vector<T>&)
{
    QEL_ASSERT_TEXT(false, "! _NT( \"Not implemented.\" )");
    return *this;
}

template <class T> matrix<T>& Smatrix<T>::addRow(int, const T&)
{
    QEL_ASSERT_TEXT(false, "! _NT( \"Not implemented.\" )");
    return *this;
}

template <class T> matrix<T>& Smatrix<T>::addCol(int, const std::vector<T>&)
{
    QEL_ASSERT_TEXT(false, "! _NT( \"Not implemented.\" )");
    return *this;
}

template <class T> matrix<T>& Smatrix<T>::addCol(int, const T&)
{
    QEL_ASSERT_TEXT(false, "! _NT( \"Not implemented.\" )");
    return *this;
}

template <class T> void Smatrix<T>::resize(int n, const T& fill)
{
    if (n == this->m_ && n == this->n_)
        return;
    const int iSize = matrix<T>::mCheckedSize(n, n);
    const T copy = fill;
    this->v_.clear();
    this->v_.assign(mPackedSize(n), copy);
    this->m_ = n;
    this->n_ = n;
    this->mn_ = iSize;
}

template <class T> Smatrix<T> Smatrix<T>::withoutRowAndColumn(int k) const
{
    const int n = this->n_;
    if (k < 0 || k >= n)
        throw std::domain_error(s_pszRowOutOfRange);
    Smatrix<T> result(*this);
    std::vector<T>& rv = result.v_;
    // Row k: its k + 1 stored elements.
    const long long llRowK = mLowerPosition(k, 0);
    rv.erase(mClippedAt(rv, llRowK), mClippedAt(rv, llRowK + k + 1));
    // Each later row r loses its element in column k; row r now starts k + 1
    // places earlier, less one for every later row already shortened.
    for (int r = k + 1; r < n; ++r)
    {
        const long long llStart = mLowerPosition(r, 0) - (k + 1) - (r - (k + 1));
        rv.erase(mClippedAt(rv, llStart + k));
    }
    result.m_ = n - 1;
    result.n_ = n - 1;
    result.mn_ = (n - 1) * (n - 1);
    return result;
}

template <class T> Smatrix<T>& Smatrix<T>::insertRowAndColumn(int k, const T& value)
{
    const int n = this->n_;
    if (k < 0 || k > n)
        throw std::domain_error(s_pszRowOutOfRange);
    const int iSize = matrix<T>::mCheckedSize(n + 1LL, n + 1LL);
    const T copy = value;
    std::vector<T>& rv = this->v_;
    rv.insert(mClippedAt(rv, mLowerPosition(k, 0)), static_cast<std::size_t>(k) + 1, copy);
    // Row r of the new order (r > k) starts at r(r+1)/2; its column k is
    // still missing there.
    for (int r = k + 1; r <= n; ++r)
        rv.insert(mClippedAt(rv, mLowerPosition(r, 0) + k), copy);
    this->m_ = n + 1;
    this->n_ = n + 1;
    this->mn_ = iSize;
    return *this;
}

// ---------------------------------------------------------------------------
// UTmatrix<T>

template <class T> UTmatrix<T>::UTmatrix() = default;

template <class T> UTmatrix<T>::UTmatrix(int n, const T& fill) : matrix<T>()
{
    this->mMakePacked(n, fill);
}

template <class T> UTmatrix<T>::UTmatrix(const UTmatrix<T>& rOther) : matrix<T>()
{
    this->mCopyPacked(rOther);
}

template <class T>
UTmatrix<T>::UTmatrix(const Smatrix<T>& rOther) : UTmatrix<T>(rOther.rowCount(), T(0))
{
    const int n = rOther.rowCount();
    for (int i = 0; i < n; ++i)
        for (int j = i; j < n; ++j)
            (*this)(i, j) = rOther(i, j);
}

template <class T> UTmatrix<T>& UTmatrix<T>::operator=(const UTmatrix<T>& rOther)
{
    if (this != &rOther)
        this->mAssignPacked(rOther);
    return *this;
}

template <class T> UTmatrix<T>::~UTmatrix() = default;

// Below the diagonal both accessors hand out dummy_: a write there lands in
// dummy_ and is what the next read below the diagonal sees.  Deliberate: the
// writing accessor is the same code as the reading one.
template <class T> const T& UTmatrix<T>::operator()(int i, int j) const
{
    if (i > j)
        return this->dummy_;
    const long long k = this->mStoragePosition(mUpperPosition(this->n_, i, j));
    return k < 0 ? this->dummy_ : this->v_[static_cast<std::size_t>(k)];
}

template <class T> T& UTmatrix<T>::operator()(int i, int j)
{
    if (i > j)
        return this->dummy_;
    const long long k = this->mStoragePosition(mUpperPosition(this->n_, i, j));
    return k < 0 ? this->dummy_ : this->v_[static_cast<std::size_t>(k)];
}

template <class T> void UTmatrix<T>::resize(int n, const T& fill)
{
    if (n == this->m_ && n == this->n_)
        return;
    const int iSize = matrix<T>::mCheckedSize(n, n);
    const T copy = fill;
    this->v_.clear();
    this->v_.assign(mPackedSize(n), copy);
    this->m_ = n;
    this->n_ = n;
    this->mn_ = iSize;
}

template class matrix<double>;
template class matrix<int>;
template class Smatrix<double>;
template class UTmatrix<double>;
