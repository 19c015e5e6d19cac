// Distribution objects of the discrete families: Bernoulli, binomial,
// hypergeometric, integer uniform, Poisson, negative binomial, geometric, and
// a general finite distribution given by values and probabilities; and
// mRandMultinomial.
//
// Parameter vectors and defaults as in qel/distclosedform.h.  Integer
// parameters are truncated from the doubles of the vector (a value beyond
// the range of int saturates); a missing integer parameter takes a value that
// the validity rule refuses, as the notes of each class say.  Density,
// distribution function and quantile forward to the flat functions of
// qel/discrete.h, whose upper tail includes the point.
#pragma once

#include "qel/dist.h"

#include <map>
#include <memory>
#include <vector>

// Bernoulli with success probability m_dP: the binomial with one trial.
// Both constructors report "m_dP >= 0.0" and "m_dP <= 1.0" through mAssert
// and construct anyway.  A variate is 1 when U <= m_dP, else 0.
class QEL_API CmDistBernoulli : public CmDist
{
public:
    explicit CmDistBernoulli(double dP);
    explicit CmDistBernoulli(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    bool mIsContinuous() const override;
    // Always 0 and 1; the interval is ignored.
    void mGetSupport(double dLower, double dUpper, std::vector<double>& rvdSupport) const override;
    bool mHasLowerBound() const override;
    bool mHasUpperBound() const override;
    double mGetLowerBound() const override;
    double mGetUpperBound() const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    double m_dP;
};

// Binomial: trials, probability; valid when trials >= 1 and
// 0 <= probability <= 1 (a missing trial count reads as the smallest int).
// A variate counts the trials with U <= probability, one U a trial.
class QEL_API CmDistBinomial : public CmDist
{
public:
    CmDistBinomial(int iTrials, double dProbability);
    explicit CmDistBinomial(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    bool mIsContinuous() const override;
    // The integers from max(0, round(dLower)) to min(trials, max(that,
    // round(dUpper))), the ends rounded by mNearestInteger; a NaN end sets
    // no limit on its side.
    void mGetSupport(double dLower, double dUpper, std::vector<double>& rvdSupport) const override;
    bool mHasLowerBound() const override;
    bool mHasUpperBound() const override;
    double mGetLowerBound() const override;
    double mGetUpperBound() const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    int m_iTrials;
    double m_dProbability;
};

// Hypergeometric: population size N, successes M, sample size n; valid when
// N >= 1, 0 <= M <= N and 0 <= n <= N (a missing entry reads as the smallest
// int).  Variates by sequential sampling without replacement, one U a member
// of the sample; the draw ends early, without further U, once no success is
// left or every member left is a success.  For invalid parameters it still
// ends within the sample, and when the population is used up.
class QEL_API CmDistHypergeometric : public CmDist
{
public:
    CmDistHypergeometric(int iPopulation, int iSuccesses, int iSample);
    explicit CmDistHypergeometric(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    bool mIsContinuous() const override;
    // All integers from the lower to the upper bound; the interval is ignored.
    void mGetSupport(double dLower, double dUpper, std::vector<double>& rvdSupport) const override;
    bool mHasLowerBound() const override;
    bool mHasUpperBound() const override;
    // max(0, n - N + M) and min(M, n).
    double mGetLowerBound() const override;
    double mGetUpperBound() const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    int m_iPopulation;
    int m_iSuccesses;
    int m_iSample;
};

// Equal mass on the integers lower to upper; valid when lower <= upper (a
// missing lower reads as the largest int, a missing upper as the smallest).
// Variates by inversion.
class QEL_API CmDistIntegerUniform : public CmDist
{
public:
    CmDistIntegerUniform(int iLower, int iUpper);
    explicit CmDistIntegerUniform(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    bool mIsContinuous() const override;
    // All integers from lower to upper; the interval is ignored.
    void mGetSupport(double dLower, double dUpper, std::vector<double>& rvdSupport) const override;
    bool mHasLowerBound() const override;
    bool mHasUpperBound() const override;
    double mGetLowerBound() const override;
    double mGetUpperBound() const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    int m_iLower;
    int m_iUpper;
};

// Poisson with the given mean; valid when mean > 0.  Variates by inversion.
class QEL_API CmDistPoisson : public CmDist
{
public:
    explicit CmDistPoisson(double dMean);
    explicit CmDistPoisson(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    bool mIsContinuous() const override;
    // The integers from max(0, lower end) to max(that, upper end), the ends
    // truncated to int by the checked conversion, without rounding (an end
    // out of range is reported and saturates; a NaN end is reported and
    // reads as 0).
    void mGetSupport(double dLower, double dUpper, std::vector<double>& rvdSupport) const override;
    bool mHasLowerBound() const override;
    double mGetLowerBound() const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    double m_dMean;
};

// Negative binomial: probability, r; valid when 0 < probability < 1 and
// r > 0.  With m_bCountFailures the variable counts the failures before the
// r-th success (lower bound 0), and the flat functions, which count trials,
// are called at x + r, their quantile less r.  Without it the variable counts
// trials (lower bound r).  Variates are a gamma mixture of Poissons: a
// Poisson variate whose mean is a gamma variate of shape r and scale
// (1 - p) / p, plus r when trials are counted.
class QEL_API CmDistNegBinomial : public CmDist
{
public:
    // Probability 0.5, r = 1, trials counted.
    CmDistNegBinomial();
    CmDistNegBinomial(double dProbability, double dR, bool bCountFailures);
    CmDistNegBinomial(const std::vector<double>& rvdParameters, bool bCountFailures);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    // One Poisson variate (one U) at the mean drawn from the mixing helper, r
    // added when trials are counted; a mean of exactly 0 gives 0 failures
    // without consulting the Poisson quantile (which would report its mean).
    // The missing value, without a draw, when the helper is null.
    double mGetRandom() const override;
    bool mIsContinuous() const override;
    // first = max(lower bound, dLower), last = max(first, dUpper), both kept
    // as doubles; the (int)(last - first + 1) values first, first + 1, ...
    // (with dLower's fraction when it has one).  The count saturates at the
    // largest int, and a NaN count (an infinite first value) lists nothing.
    void mGetSupport(double dLower, double dUpper, std::vector<double>& rvdSupport) const override;
    bool mHasLowerBound() const override;
    // r when trials are counted, 0 when failures are.
    double mGetLowerBound() const override;
    // Probability, r.
    void mGetParameters(std::vector<double>& rvdParameters) const override;

protected:
    // For CmDistGeometric: the parameters without a mixing helper.
    struct NoHelper
    {
    };
    CmDistNegBinomial(double dProbability, double dR, bool bCountFailures, NoHelper);

    double m_dProbability;
    double m_dR;
    bool m_bCountFailures;
    // The mixing distribution of the Poisson mean; shared by copies, null if
    // not allocated.
    std::shared_ptr<CmDist> m_pMixing;
};

// Geometric: the negative binomial with r = 1, the trial (or with
// bCountFailures the number of failures) of the first success.  Its mixing
// distribution is a CmDistExponential with scale (1 - p) / p.
class QEL_API CmDistGeometric : public CmDistNegBinomial
{
public:
    CmDistGeometric(double dProbability, bool bCountFailures);
    CmDistGeometric(const std::vector<double>& rvdParameters, bool bCountFailures);

    // The probability alone.
    void mGetParameters(std::vector<double>& rvdParameters) const override;
};

// A finite distribution given by values and their probabilities, in two
// vectors read in step (the first one's length rules: a value beyond the end
// of the second vector gets probability 0; a NaN value is left out with its
// probability, and a NaN running sum is not a key of the quantile's map).
// The probabilities are not normalised: a running sum of them makes the
// distribution function, so the values are expected in ascending order.  A
// value met a second time is ignored.
//
// mGetRandom is Walker's alias method (A. J. Walker, ACM TOMS 3, 1977), the
// table built at the first draw: one U and one comparison a draw.  It returns
// the slot of the drawn value, its zero-based rank among the values in
// ascending order, as a double, not the value itself: deliberately, a caller
// looks the value up by rank.  An empty object (no values) has the missing
// value for both bounds and as its variate, which then takes no U.
// Probabilities summing to 0 make every cutoff NaN: each slot is then its own
// alias and a draw gives the slot of U n.
class QEL_API CmDistDiscrete : public CmDist
{
public:
    CmDistDiscrete(const std::vector<double>& rvdValues, const std::vector<double>& rvdProbabilities);

    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    bool mIsContinuous() const override;
    // All values in ascending order; the interval is ignored.
    void mGetSupport(double dLower, double dUpper, std::vector<double>& rvdSupport) const override;
    bool mHasLowerBound() const override;
    bool mHasUpperBound() const override;
    // The smallest and the largest value.
    double mGetLowerBound() const override;
    double mGetUpperBound() const override;

    // The alias table, for inspection: per slot its cutoff and alias slot
    // (empty until the first draw).
    const std::vector<double>& mGetCutoffs() const { return m_vdCutoffs; }
    const std::vector<double>& mGetAliases() const { return m_viAliases; }

private:
    // Builds the alias table; asserts "! m_bDidSetUpForRandom".
    void mSetUpForRandom() const;

    std::map<double, double> m_mapPdf;
    std::map<double, double> m_mapCdf;
    std::map<double, double> m_mapInvCdf;
    mutable bool m_bDidSetUpForRandom;
    mutable std::vector<double> m_viAliases;
    mutable std::vector<double> m_vdCutoffs;
};

// Multinomial counts of iTrials trials over the categories of rvdP: rviCounts
// becomes k = rvdP.size() counts.  The uniforms are drawn in one batch and
// are deliberately not sorted: one cursor walks the cumulative probabilities
// (the last forced to 1) and is never reset, so a uniform below the cursor's
// category counts there, and once the cursor has passed the last category
// the remaining uniforms count for nothing.
QEL_API void mRandMultinomial(int iTrials, const std::vector<double>& rvdP,
                              std::vector<int>& rviCounts);
