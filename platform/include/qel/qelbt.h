// Scalar types, the missing value, numeric constants, row selection and the
// small enumerations shared by every numerical routine of the package.
//
// The constants keep these relations, which the numerics rely on:
//   * the missing value is finite (never a NaN) and larger than every result a
//     function delivers, except the overflow sentinel 1.7976931348623157e+308
//     that a guarded function returns when asked for a value rather than an
//     exception;
//   * exp(mGetMaxExponent()) is finite and below the missing value, so that
//     every exponential a guarded function lets through compares below it;
//   * mGetMaxDataValue() is below the missing value, and its square is still a
//     finite double (Newton-Raphson squares it when a step overflows).
// The chosen values are listed in docs/CONSTANTS.md.
#pragma once

#include "qel/qelexport.h"

#include <cstdint>
#include <vector>

typedef double DATA;
typedef std::int32_t INTG;

// ---------------------------------------------------------------------------
// Constants, as free functions and as members of the singleton CmQELConst.

QEL_API bool mIsNumericMissing(double dX);
QEL_API double mGetMissingValueCode();
QEL_API double mGetEps();
QEL_API double mGetPi();
QEL_API double mGetEulerConst();
QEL_API double mGetMaxExponent();
QEL_API double mGetMaxTrigArg();
QEL_API double mGetMaxInteger();
QEL_API double mGetMaxDataValue();
QEL_API bool mIsInteger(double dX);

class QEL_API CmQELConst
{
public:
    static const CmQELConst* mInstance();

    double mGetMissingValueCode() const;
    double mGetEps() const;
    double mGetNearlyZero() const;
    double mGetPi() const;
    double mGetE() const;
    double mGetMaxExponent() const;
    double mGetMaxTrigArg() const;

private:
    CmQELConst() = default;
};

// ---------------------------------------------------------------------------
// Conversions of values that are already whole and within range.

QEL_API INTG mToINTG(double dX);
QEL_API INTG mToINTG(unsigned int uX);
QEL_API unsigned int mToUINTG(double dX);

// ---------------------------------------------------------------------------
// Row selection: an ordered list of 1-based row numbers into a data vector.

class QEL_API CbRows
{
public:
    CbRows();
    virtual ~CbRows();

    void mUseAllRows(INTG iRowCt);
    void mReserve(INTG iRowCt);
    void mSetRow(INTG iIndex, INTG iRow);
    INTG mGetRow(INTG iIndex) const;
    INTG mGetRowCt() const;

private:
    std::vector<INTG> m_viRows;
};

// ---------------------------------------------------------------------------
// Base of the process-wide objects of the package.  A derived class keeps its
// one instance in a static of its own, made at first use; the int names the
// kind of singleton for whoever inspects it.

class QEL_API Singleton
{
protected:
    explicit Singleton(int iKind);

public:
    virtual ~Singleton();
    Singleton(const Singleton&) = delete;
    Singleton& operator=(const Singleton&) = delete;

    int mGetSingletonKind() const { return m_iKind; }

private:
    int m_iKind;
};

// ---------------------------------------------------------------------------
// Alternatives of a test, and which confidence bounds are wanted.  Both have
// a fixed underlying type: callers pass any integer, and a value outside the
// enumerators must reach the default branch of a switch, not be undefined.

enum EAlternative : int
{
    eLowerTailed = -1,
    eTwoSided = 0,
    eUpperTailed = 1
};

enum EConfidenceType : int
{
    eLowerBoundOnly = -1,
    eBothBounds = 0,
    eUpperBoundOnly = 1
};

// Maps a confidence type to the alternative of the same sign; any other value
// is reported with mAssert("false") and gives eTwoSided.
QEL_API EAlternative mAlternativeFromConfidence(EConfidenceType eType);
