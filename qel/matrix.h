// The persistent matrices: matrix<T> (for double and int), and the packed
// square kinds Smatrix<T> and UTmatrix<T> (for double).  These are the
// matrices that cross between the distribution objects, the solvers and the
// streams.  They are polymorphic: every routine reads and writes elements
// through the two virtual operator(), so that one routine serves all three
// kinds.
//
// Storage is a std::vector, row by row:
//   matrix    m x n elements, (i, j) at i*n + j;
//   Smatrix   the lower triangle, n(n+1)/2 elements, (i, j) with i >= j at
//             i(i+1)/2 + j, and (i, j) with i < j the same element as (j, i);
//   UTmatrix  the upper triangle, n(n+1)/2 elements, (i, j) with j >= i at
//             n*i - i(i+1)/2 + j; below the diagonal the accessors hand out
//             dummy_, which is 0 until someone writes through it.
// mn_ is the logical size m*n (n*n for the square kinds), not the length of
// the storage.
//
// The accessors do not check the indices; a pair whose storage position
// falls outside the stored elements hands out dummy_, so that no access
// reaches outside the storage.  The row and column surgery throws
// std::domain_error with a plain message.  These matrices do not convert to
// or from those of namespace matrix_library.
#pragma once

#include "qel/qelexport.h"

#include <vector>

template <class T> class Smatrix;
template <class T> class UTmatrix;

template <class T> class QEL_API matrix
{
public:
    matrix();
    // m x n copies of fill.  A negative order, or one whose element count
    // does not fit 32 bits, throws std::domain_error("matrix order out of range").
    matrix(int m, int n, const T& fill = T(0));
    // Dense copy of any kind, element by element through the source's
    // accessors.
    matrix(const matrix<T>& rOther);
    // The same as the copy: the result is dense.
    matrix<T>& operator=(const matrix<T>& rOther);

    // The table of virtual operations, in this order.
    virtual ~matrix();
    virtual const T& operator()(int i, int j) const;
    virtual T& operator()(int i, int j);
    // A new dense matrix without row i (column j).  An index outside the
    // matrix skips nothing: the rows (columns) that fit the smaller result
    // are copied.
    virtual matrix<T> withoutRow(int i) const;
    virtual matrix<T> withoutColumn(int j) const;
    // In place.  An index outside the matrix throws std::domain_error with
    // "matrix access row out of range" ("... column ...").
    virtual matrix<T>& removeRow(int i);
    virtual matrix<T>& removeColumn(int j);
    // In place, before row i (column j), 0 <= i <= m_ (0 <= j <= n_).  The
    // vector forms first check the vector's size:
    //   "addRow\trow vector must be of same order",
    //   "addCol column vector must be of same order".
    virtual matrix<T>& addRow(int i, const std::vector<T>& rvRow);
    virtual matrix<T>& addRow(int i, const T& value);
    virtual matrix<T>& addCol(int j, const std::vector<T>& rvColumn);
    virtual matrix<T>& addCol(int j, const T& value);

    // Keeps the contents when the order is already m x n; otherwise m*n
    // copies of fill.
    void resize(int m, int n, const T& fill = T(0));
    // A new n_ x m_ dense matrix.
    matrix<T> transpose() const;
    // The elements of a one-column matrix; any other throws
    // std::domain_error("vector cast: result not a vector").
    explicit operator std::vector<T>() const;

    int rowCount() const { return m_; }
    int colCount() const { return n_; }
    // m_*n_: the logical element count.
    int elementCount() const { return mn_; }
    const std::vector<T>& storage() const { return v_; }

protected:
    // Storage position of an index pair, or -1 outside the storage.
    long long mStoragePosition(long long llPosition) const
    {
        return (llPosition >= 0 && llPosition < static_cast<long long>(v_.size())) ? llPosition
                                                                                   : -1;
    }
    // Rejects a negative order and one whose logical size overflows.
    static int mCheckedSize(long long m, long long n);
    // The packed symmetric and triangular kinds share these: an order-n
    // square in packed storage filled with one value, a copy of another's
    // shape and storage, and assignment, which takes the order from the
    // source's column count.
    void mMakePacked(int n, const T& fill);
    void mCopyPacked(const matrix<T>& rOther);
    void mAssignPacked(const matrix<T>& rOther);

    int m_;
    int n_;
    int mn_;
    T dummy_;
    std::vector<T> v_;
};

template <class T> class QEL_API Smatrix : public matrix<T>
{
public:
    Smatrix();
    explicit Smatrix(int n, const T& fill = T(0));
    Smatrix(const Smatrix<T>& rOther);
    // Order n, the upper triangle (j >= i) of the source, mirrored.
    explicit Smatrix(const UTmatrix<T>& rOther);
    Smatrix<T>& operator=(const Smatrix<T>& rOther);
    ~Smatrix() override;

    const T& operator()(int i, int j) const override;
    T& operator()(int i, int j) override;
    // Not implemented for the packed symmetric form: each reports through
    // mAssert and returns the matrix unchanged.
    matrix<T>& removeRow(int i) override;
    matrix<T>& removeColumn(int j) override;
    matrix<T>& addRow(int i, const std::vector<T>& rvRow) override;
    matrix<T>& addRow(int i, const T& value) override;
    matrix<T>& addCol(int j, const std::vector<T>& rvColumn) override;
    matrix<T>& addCol(int j, const T& value) override;

    // Keeps the contents when the order is already n; otherwise n(n+1)/2
    // copies of fill.
    void resize(int n, const T& fill = T(0));
    // A copy without row and column k, 0 <= k < n; another k throws
    // std::domain_error("matrix access row out of range").
    Smatrix<T> withoutRowAndColumn(int k) const;
    // In place: a new row and column k, 0 <= k <= n, filled with value;
    // another k throws std::domain_error("matrix access row out of range").
    Smatrix<T>& insertRowAndColumn(int k, const T& value);
};

template <class T> class QEL_API UTmatrix : public matrix<T>
{
public:
    UTmatrix();
    explicit UTmatrix(int n, const T& fill = T(0));
    UTmatrix(const UTmatrix<T>& rOther);
    // Order n, the upper triangle (j >= i) of the source.
    explicit UTmatrix(const Smatrix<T>& rOther);
    UTmatrix<T>& operator=(const UTmatrix<T>& rOther);
    ~UTmatrix() override;

    const T& operator()(int i, int j) const override;
    T& operator()(int i, int j) override;

    // Keeps the contents when the order is already n; otherwise n(n+1)/2
    // copies of fill.
    void resize(int n, const T& fill = T(0));
};

extern template class matrix<double>;
extern template class matrix<int>;
extern template class Smatrix<double>;
extern template class UTmatrix<double>;
