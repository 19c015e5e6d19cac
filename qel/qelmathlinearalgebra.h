// The value matrices of namespace matrix_library: matrix<T> (dense, row by
// row), Smatrix<T> (symmetric, packed lower triangle), UTmatrix<T> (upper
// triangular, packed upper triangle) and Dmatrix<T> (diagonal), all used with
// double.  They are plain value classes without virtual operations; the
// operators, factorisations and expression trees work on them.  They do not
// convert to or from the persistent matrices of qel/matrix.h.
//
// Failure: an internal assertion throws allege::AllegeException with
// "assertion failed: (<expression>) <source file>: <line>"; a failed check
// of the family throws matrix_library::MatrixException with its text; a
// singular matrix in a throwing factorisation gives
// matrix_library::MatrixSingular ("Matrix is singular").
//
// Element access checks the indices with an internal assertion, so that no
// access reaches outside the storage.  Off the stored part the triangular
// and diagonal kinds read 0 and swallow writes.
#pragma once

#include "qel/qelexport.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace allege
{
class QEL_API AllegeException : public std::runtime_error
{
public:
    explicit AllegeException(const std::string& rsMessage);
    AllegeException(const AllegeException& rOther);
    AllegeException& operator=(const AllegeException& rOther);
    ~AllegeException() override;
};

// Throws AllegeException with "assertion failed: (" + expression + ") " +
// the file's name without its directories + ": " + line.
[[noreturn]] QEL_API void fail(const char* pszExpression, const char* pszFile, int iLine);
} // namespace allege

// The internal assertion of the matrix_library family; always active.
#define QEL_ALLEGE(cond)                                                                           \
    do                                                                                             \
    {                                                                                              \
        if (!(cond))                                                                               \
            ::allege::fail(#cond, __FILE__, __LINE__);                                             \
    } while (0)

namespace matrix_library
{
class QEL_API MatrixException : public std::runtime_error
{
public:
    explicit MatrixException(const std::string& rsMessage);
    MatrixException(const MatrixException& rOther);
    MatrixException& operator=(const MatrixException& rOther);
    ~MatrixException() override;
};

class QEL_API MatrixSingular : public std::runtime_error
{
public:
    // "Matrix is singular"
    MatrixSingular();
    MatrixSingular(const MatrixSingular& rOther);
    MatrixSingular& operator=(const MatrixSingular& rOther);
    ~MatrixSingular() override;
};

template <class T> class Smatrix;
template <class T> class UTmatrix;
template <class T> class Dmatrix;

template <class T> class QEL_API matrix
{
public:
    // 0 x 0.
    matrix();
    // m x n copies of fill.  Orders are asserted "m >= 0 && n >= 0" and the
    // element count must fit 32 bits.
    explicit matrix(int m, int n, const T& fill = T(0));
    matrix(const matrix<T>& rOther);
    matrix<T>& operator=(const matrix<T>& rOther);
    // n x n with both triangles written.
    explicit matrix(const Smatrix<T>& rOther);
    // n x n with zeros below the diagonal.
    explicit matrix(const UTmatrix<T>& rOther);
    // n x n with zeros off the diagonal.
    explicit matrix(const Dmatrix<T>& rOther);
    ~matrix();

    // Unless the storage already equals the vector element by element, the
    // matrix becomes a column of the vector's size.
    matrix<T>& operator=(const std::vector<T>& rvValues);

    // m x n, every element fill, whether or not the order changes; then
    // asserts "mn_ == static_cast<int>(v_.size())".
    void resize(int m, int n, const T& fill = T(0));

    int rowCount() const { return m_; }
    int colCount() const { return n_; }
    int elementCount() const { return mn_; }

    const T& operator()(int i, int j) const;
    T& operator()(int i, int j);

    // Column j; an empty matrix gives an empty vector whatever j is,
    // otherwise j is asserted "0 <= j && j < n_".
    std::vector<T> getColumn(int j) const;
    // A row or column vector keeps its storage and swaps its counts; any
    // other matrix gives a new n_ x m_ matrix.
    matrix<T> transpose() const;
    // The symmetric matrix of a square one, from its lower triangle.
    // Asserts "rows == cols"; a pair (i, j), (j, i) that is not equal within
    // fuzz 0 throws MatrixException("Smatrix cast: result not a symmetric matrix").
    explicit operator Smatrix<T>() const;

    // The row-major storage, for the arithmetic of the family.
    const std::vector<T>& storage() const { return v_; }
    std::vector<T>& storage() { return v_; }
    unsigned int magic() const { return magic_; }

private:
    unsigned int magic_;
    int m_;
    int n_;
    int mn_;
    std::vector<T> v_;
};

template <class T> class QEL_API Smatrix
{
public:
    Smatrix();
    explicit Smatrix(int n, const T& fill = T(0));
    Smatrix(const Smatrix<T>& rOther);
    Smatrix<T>& operator=(const Smatrix<T>& rOther);
    ~Smatrix();

    int rowCount() const { return n_; }
    int colCount() const { return n_; }
    int order() const { return n_; }

    // (i, j) and (j, i) are the same element.
    const T& operator()(int i, int j) const;
    T& operator()(int i, int j);

    // The packed lower triangle, (i, j) with i >= j at i(i+1)/2 + j.
    const std::vector<T>& storage() const { return v_; }
    std::vector<T>& storage() { return v_; }

private:
    int n_;
    std::vector<T> v_;
};

template <class T> class QEL_API UTmatrix
{
public:
    UTmatrix();
    explicit UTmatrix(int n, const T& fill = T(0));
    UTmatrix(const UTmatrix<T>& rOther);
    UTmatrix<T>& operator=(const UTmatrix<T>& rOther);
    ~UTmatrix();

    int rowCount() const { return n_; }
    int colCount() const { return n_; }
    int order() const { return n_; }

    // Below the diagonal: the reading accessor gives 0; the writing one
    // gives a scratch element reset to 0, so the write is lost.
    const T& operator()(int i, int j) const;
    T& operator()(int i, int j);

    // The packed upper triangle, (i, j) with j >= i at n*i - i(i+1)/2 + j.
    const std::vector<T>& storage() const { return v_; }
    std::vector<T>& storage() { return v_; }

private:
    int n_;
    std::vector<T> v_;
    T zero_;
    T dummy_;
};

template <class T> class QEL_API Dmatrix
{
public:
    Dmatrix();
    explicit Dmatrix(int n, const T& fill = T(0));
    Dmatrix(const Dmatrix<T>& rOther);
    Dmatrix<T>& operator=(const Dmatrix<T>& rOther);
    ~Dmatrix();

    int rowCount() const { return n_; }
    int colCount() const { return n_; }
    int order() const { return n_; }

    // Off the diagonal: the reading accessor gives 0; the writing one gives a
    // scratch element reset to 0, so the write is lost.
    const T& operator()(int i, int j) const;
    T& operator()(int i, int j);

    // The n diagonal elements.
    const std::vector<T>& storage() const { return v_; }
    std::vector<T>& storage() { return v_; }

private:
    T zero_;
    int n_;
    std::vector<T> v_;
    T dummy_;
};

// The UTmatrix holding the upper triangle of a symmetric matrix.
QEL_API UTmatrix<double> SmatrixToUTmatrix(const Smatrix<double>& rS);

extern template class matrix<double>;
extern template class Smatrix<double>;
extern template class UTmatrix<double>;
extern template class Dmatrix<double>;
} // namespace matrix_library
#include "qel/matrixarithmetic.h"
#include "qel/matrixfactorisations.h"
