// A function of one real argument together with its own idea of convergence.
//
// The one-dimensional solvers (qel/rootsandoptima.h) work on this object: a
// caller tunes a search by deriving a class and overriding the tests or the
// tolerances, not by passing flags.  A derived class supplies operator(),
// returning the missing value where the function cannot be evaluated, and
// typically subtracts m_dTarget so that the solvers seek a zero.
//
// Convergence in the argument (the width of a bracket) is absolute or relative
// for a real argument; for a whole-number argument (a discrete distribution)
// two points less than 2 apart count as converged, and the solver settles the
// final whole number itself.  Convergence in the value is absolute, or
// relative to the target.
//
// On a stream the object is one base-class layer of version 1: the
// whole-number flag, then the five doubles in member order (target, the
// absolute and relative tolerances for the argument, then for the value).
// The class is abstract; its runtime class is registered under the name
// "CmRealFunction" with schema 1 and no way to make an object, and a concrete
// class that is stored registers its own.
#pragma once

#include "qel/qelexport.h"
#include "qel/qelstreams.h"

class QEL_API CmRealFunction : public CmPersistent
{
public:
    CmRealFunction();
    CmRealFunction(const CmRealFunction& rOther);
    ~CmRealFunction() override;

    // Copies the whole-number flag and the five doubles.
    virtual CmRealFunction& operator=(const CmRealFunction& rOther);

    virtual double operator()(double dX) = 0;

    virtual double mGetAbsoluteToleranceForX() const;
    virtual double mGetRelativeToleranceForX() const;
    virtual double mGetAbsoluteToleranceForF() const;
    virtual double mGetRelativeToleranceForF() const;

    // Whether a bracket [dA, dB] is narrow enough to stop.
    virtual bool mIsConvergedForX(double dA, double dB) const;
    // Whether a function value is close enough to zero to stop.
    virtual bool mIsConvergedForF(double dF) const;

    bool mGetIntegerX() const { return m_bIntegerX; }

protected:
    void mRead(CmIStream& rStream) override;
    void mWrite(CmIStream& rStream) override;

    bool m_bIntegerX;
    double m_dTarget;
    double m_dAbsoluteToleranceForX;
    double m_dRelativeToleranceForX;
    double m_dAbsoluteToleranceForF;
    double m_dRelativeToleranceForF;
};
