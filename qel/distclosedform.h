// Distribution objects of the closed-form continuous families: normal,
// lognormal, the two extreme-value families, Weibull, exponential, logistic,
// loglogistic, Cauchy, Tukey lambda, Laplace, uniform and triangular.
//
// Each class reads its parameters from a vector in the order given with it
// (that is also the order of mGetParameters); a value in parentheses is the
// default taken when the vector is too short.  A missing parameter without a
// default reads as NaN, which the validity rule refuses.  Density,
// distribution function and quantile forward to the flat function of the
// family (qel/closedform.h, qel/normal.h) with the parameters in that order.
// Copies share what they share by design: the generator, and the helper
// normal of the lognormal (with its spare variate).
#pragma once

#include "qel/dist.h"

#include <memory>
#include <vector>

// Normal: location (0), scale (1); valid when scale > 0.  Variates by
// Marsaglia's polar method, a pair per accepted round, the second kept as the
// object's spare for the next call.
class QEL_API CmDistNormal : public CmDist
{
public:
    CmDistNormal(double dLocation = 0.0, double dScale = 1.0);
    explicit CmDistNormal(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    void mGetDRefPoints(std::vector<double>& rvdPoints) const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    double m_dLocation;
    double m_dScale;
    mutable bool m_bHaveSpare;
    mutable double m_dSpare;
};

// Lognormal: location (0), scale (1), threshold (0) of the normal of
// log(x - threshold); valid when scale > 0.  Variates are the exponential of
// the variate of an owned normal (location, scale), plus the threshold.
class QEL_API CmDistLogNormal : public CmDist
{
public:
    CmDistLogNormal(double dLocation = 0.0, double dScale = 1.0, double dThreshold = 0.0);
    explicit CmDistLogNormal(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    void mGetDRefPoints(std::vector<double>& rvdPoints) const override;
    bool mHasLowerBound() const override;
    double mGetLowerBound() const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    double m_dLocation;
    double m_dScale;
    double m_dThreshold;
    std::shared_ptr<CmDist> m_pNormal; // shared by copies; null if not allocated
};

// Smallest extreme value: location (0), scale (1); valid when scale > 0.
// Variates by inversion.
class QEL_API CmDistSmallestExtremeValue : public CmDist
{
public:
    CmDistSmallestExtremeValue(double dLocation = 0.0, double dScale = 1.0);
    explicit CmDistSmallestExtremeValue(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    void mGetDRefPoints(std::vector<double>& rvdPoints) const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    double m_dLocation;
    double m_dScale;
};

// Largest extreme value: location (0), scale (1); valid when scale > 0.
// Variates by inversion.
class QEL_API CmDistLargestExtremeValue : public CmDist
{
public:
    CmDistLargestExtremeValue(double dLocation = 0.0, double dScale = 1.0);
    explicit CmDistLargestExtremeValue(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    void mGetDRefPoints(std::vector<double>& rvdPoints) const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    double m_dLocation;
    double m_dScale;
};

// Weibull: shape (0), scale (1), threshold (0); valid when shape > 0 and
// scale > 0.  The vector default of the shape is 0, not a valid shape:
// deliberately, a Weibull made from an empty vector is invalid.  Variates by
// inversion.
class QEL_API CmDistWeibull : public CmDist
{
public:
    CmDistWeibull(double dShape, double dScale, double dThreshold);
    explicit CmDistWeibull(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    void mGetDRefPoints(std::vector<double>& rvdPoints) const override;
    bool mHasLowerBound() const override;
    double mGetLowerBound() const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    double m_dShape;
    double m_dScale;
    double m_dThreshold;
};

// Exponential: scale (1), threshold (0); valid when scale > 0.  Variates by
// inversion.
class QEL_API CmDistExponential : public CmDist
{
public:
    CmDistExponential(double dScale = 1.0, double dThreshold = 0.0);
    explicit CmDistExponential(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    void mGetDRefPoints(std::vector<double>& rvdPoints) const override;
    bool mHasLowerBound() const override;
    double mGetLowerBound() const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    double m_dScale;
    double m_dThreshold;
};

// Logistic: location (0), scale (1); valid when scale > 0.  Variates by
// inversion.
class QEL_API CmDistLogistic : public CmDist
{
public:
    CmDistLogistic(double dLocation = 0.0, double dScale = 1.0);
    explicit CmDistLogistic(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    // The median, mInvCdf(0.5).
    void mGetDRefPoints(std::vector<double>& rvdPoints) const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    double m_dLocation;
    double m_dScale;
};

// Loglogistic: location (0), scale (1), threshold (0) of the logistic of
// log(x - threshold); valid when scale > 0.  Variates by inversion.
class QEL_API CmDistLogLogistic : public CmDist
{
public:
    CmDistLogLogistic(double dLocation = 0.0, double dScale = 1.0, double dThreshold = 0.0);
    explicit CmDistLogLogistic(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    void mGetDRefPoints(std::vector<double>& rvdPoints) const override;
    bool mHasLowerBound() const override;
    double mGetLowerBound() const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    double m_dLocation;
    double m_dScale;
    double m_dThreshold;
};

// Cauchy: location (0), scale (1); valid when scale > 0.  Variates by
// inversion.
class QEL_API CmDistCauchy : public CmDist
{
public:
    CmDistCauchy(double dLocation = 0.0, double dScale = 1.0);
    explicit CmDistCauchy(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    void mGetDRefPoints(std::vector<double>& rvdPoints) const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    double m_dLocation;
    double m_dScale;
};

// Tukey lambda: lambda, location (0), scale (1); valid when scale > 0 (a
// missing lambda reads as NaN, which the flat functions meet).  Variates by
// inversion.
class QEL_API CmDistLambda : public CmDist
{
public:
    CmDistLambda(double dLambda, double dLocation, double dScale);
    explicit CmDistLambda(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    double m_dLambda;
    double m_dLocation;
    double m_dScale;
};

// Laplace: location (0), scale (1); valid when scale > 0.  Variates by
// inversion.
class QEL_API CmDistLaplace : public CmDist
{
public:
    CmDistLaplace(double dLocation = 0.0, double dScale = 1.0);
    explicit CmDistLaplace(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    void mGetDRefPoints(std::vector<double>& rvdPoints) const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    double m_dLocation;
    double m_dScale;
};

// Uniform on [lower, upper]: lower (0), upper (1); valid when upper > lower.
// A variate is U * (upper - lower) + lower.
class QEL_API CmDistUniform : public CmDist
{
public:
    CmDistUniform(double dLower = 0.0, double dUpper = 1.0);
    explicit CmDistUniform(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    void mGetDRefPoints(std::vector<double>& rvdPoints) const override;
    bool mHasLowerBound() const override;
    bool mHasUpperBound() const override;
    double mGetLowerBound() const override;
    double mGetUpperBound() const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    double m_dLower;
    double m_dUpper;
};

// Triangular: lower, mode, upper; valid when lower <= mode <= upper and
// upper > lower.  Variates by inversion.
class QEL_API CmDistTriangular : public CmDist
{
public:
    CmDistTriangular(double dLower, double dMode, double dUpper);
    explicit CmDistTriangular(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    void mGetDRefPoints(std::vector<double>& rvdPoints) const override;
    bool mHasLowerBound() const override;
    bool mHasUpperBound() const override;
    double mGetLowerBound() const override;
    double mGetUpperBound() const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    double m_dLower;
    double m_dMode;
    double m_dUpper;
};
