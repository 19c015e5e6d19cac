// CmDist: a probability distribution with its parameters fixed, for code that
// holds a distribution without knowing which.  Each subclass is a thin holder
// of parameters: density, distribution function and quantile forward to the
// flat functions of its family, and mGetRandom turns uniforms of the one
// process-wide CmUniformGenerator into a variate of its own.
//
// The subclasses are declared in qel/distclosedform.h (the location-scale and
// other closed-form families), qel/distkernelbacked.h (gamma, beta,
// chi-square, F and t), qel/distdiscrete.h (the discrete families and the
// general discrete distribution) and qel/distmvnormal.h (the multivariate
// normal).
//
// Objects are for one thread at a time: every variate advances the shared
// generator, and a few classes update themselves in const operations (the
// normal's spare variate, the discrete distribution's alias table).
#pragma once

#include "qel/disttypes.h"
#include "qel/qelexport.h"

#include <vector>

class CmUniformGenerator;

class QEL_API CmDist
{
public:
    CmDist();
    CmDist(const CmDist& rOther) = default;
    CmDist& operator=(const CmDist& rOther) = default;

    // The table of virtual operations, in this order.
    virtual ~CmDist();
    // Whether the parameters describe a distribution; true here.
    virtual bool mAreParamsValid() const;
    virtual double mPdf(double dX) const = 0;
    // The lower tail P(X <= x), or with bComplement the upper tail.
    virtual double mCdf(double dX, bool bComplement) const = 0;
    virtual double mInvCdf(double dP) const = 0;
    virtual double mGetRandom() const = 0;
    // True here.
    virtual bool mIsContinuous() const;
    // Empties rvdSupport and lists the values of a discrete distribution that
    // the interval [dLower, dUpper] of the axis shows; the classes differ in
    // how they read the interval.  Here: reported through mAssert ("false"),
    // the vector left alone.
    virtual void mGetSupport(double dLower, double dUpper, std::vector<double>& rvdSupport) const;
    // Empties rvdPoints and lists the points of the axis at which a graph of
    // the distribution wants a reference mark; none here.
    virtual void mGetDRefPoints(std::vector<double>& rvdPoints) const;
    // False here.
    virtual bool mHasLowerBound() const;
    virtual bool mHasUpperBound() const;
    // Reported through mAssert ("false") here, giving 0.0.
    virtual double mGetLowerBound() const;
    virtual double mGetUpperBound() const;
    // The parameters in the order of the vector constructor.  Here: reported
    // through mAssert ("false"), the vector emptied.
    virtual void mGetParameters(std::vector<double>& rvdParameters) const;
    // The parameters that the quantile does not take (those of
    // mGetParameters less the noncentrality); mGetParameters here.
    virtual void mGetNonInvCDFParameters(std::vector<double>& rvdParameters) const;

    // A new object of the class that serves eType, made by its constructor
    // from rvdParameters; the caller owns it.  A type and its threshold twin
    // (2 and 3, 6 and 7, 8 and 9, 11 and 12, 13 and 14) make the same class,
    // the threshold being whatever the vector carries.  Nothing is validated:
    // the caller asks mAreParamsValid.  DISCRETE (20), MNORMAL (27), and
    // through the default case NOT_ENTERED, GEOMETRIC, NEGBINOMIAL, the half
    // normal (33, 34), the studentized families (35 to 37, which have no
    // class yet) and any value outside 1 to 37 are reported through mAssert
    // ("false") and give null; so does a failed allocation.
    static CmDist* mCreateDist(EDistributionType eType, const std::vector<double>& rvdParameters);

protected:
    // For the open-ended positive families: whether the lower bound lies
    // within a fifth of the central 98% range below the first percentile,
    // 0.2 (q99 - q1) >= q1 - lower bound, so that a graph should show it.
    // Computed anew on every call through the virtual operations; a NaN in
    // the comparison gives true.
    bool mIncludeLowerBoundInGraph() const;

    // Not owned: the process-wide generator, shared by copies.
    CmUniformGenerator* m_pUniformGenerator;
};
