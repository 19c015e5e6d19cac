// Distribution objects of the families whose functions rest on the
// distribution kernels: gamma, beta, chi-square, F and Student's t.
//
// Parameter vectors and defaults as in qel/distclosedform.h: a value in
// parentheses is the default for a short vector, and a missing parameter
// without a default reads as NaN, which the validity rules refuse.  Density,
// distribution function and quantile forward to the flat functions of
// qel/kernelbacked.h.
//
// Variates: gamma by one of three helpers chosen by the shape (the
// exponential at shape 1; Ahrens and Dieter's GS below 1; two rejection
// schemes above), beta by R. C. H. Cheng's algorithms BB and BC
// (Communications of the ACM 21, 1978), chi-square through a gamma, F through
// a beta, t through an F and a sign.  The helper object is shared by copies
// of the object (the sharing keeps the stream of draws one), and is freed
// once, with the last of them.
#pragma once

#include "qel/dist.h"

#include <memory>
#include <vector>

// Gamma: shape, scale, threshold (0); valid when shape > 0 and scale > 0.
class QEL_API CmDistGamma : public CmDist
{
public:
    CmDistGamma(double dShape, double dScale, double dThreshold = 0.0);
    explicit CmDistGamma(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    // The standard variate of the helper, times the scale, plus the threshold;
    // the missing value, without a draw, when the helper is null.
    double mGetRandom() const override;
    void mGetDRefPoints(std::vector<double>& rvdPoints) const override;
    bool mHasLowerBound() const override;
    double mGetLowerBound() const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

    // The helper that draws the standard (scale 1) variates; null when its
    // allocation failed.
    const CmDist* mGetGenerator() const { return m_pGenerator.get(); }

private:
    // Chooses the helper by the shape a: a CmDistExponential(1, 0) when a is 1
    // within the fuzz of mEqualWithinFuzz (tolerance 0); for a >= 4 the
    // normal-body scheme; for a >= 1 the two-piece scheme; otherwise (a < 1,
    // or NaN) Ahrens and Dieter's GS.
    void mInitialize();

    double m_dShape;
    double m_dScale;
    double m_dThreshold;
    std::shared_ptr<CmDist> m_pGenerator;
};

// Beta: first shape, second shape; valid when both > 0.  Variates by
// Cheng's BB when the smaller shape exceeds 1, by BC otherwise, two uniforms
// a round.  A round in which the logarithm or the exponential overflows is
// abandoned; after 10000 rounds without a variate (only for a smaller shape
// near 0, where nearly every round overflows) the variate is 1 when the
// larger shape is the first and 0 otherwise.  An infinite shape draws
// nothing: 1 when only the first is infinite, 0 when only the second, the
// missing value when both are.  Invalid shapes make mGetRandom report
// "mAreParamsValid()" and give the missing value without drawing.
class QEL_API CmDistBeta : public CmDist
{
public:
    CmDistBeta(double dShape1, double dShape2);
    explicit CmDistBeta(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    // 0 and 1.
    void mGetDRefPoints(std::vector<double>& rvdPoints) const override;
    bool mHasLowerBound() const override;
    bool mHasUpperBound() const override;
    double mGetLowerBound() const override;
    double mGetUpperBound() const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;

private:
    double m_dShape1;
    double m_dShape2;
};

// Chi-square: degrees of freedom, noncentrality (0); valid when the degrees
// of freedom are > 0 and the noncentrality >= 0.  The distribution function
// and quantile take the noncentrality; the density and the variates exist
// only for the central distribution and report "0.0 == m_dNoncentrality"
// through mAssert otherwise (the variate is then the central one).
class QEL_API CmDistChiSq : public CmDist
{
public:
    CmDistChiSq(double dDF, double dNoncentrality = 0.0);
    explicit CmDistChiSq(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    // The variate of a gamma with shape df / 2, scale 2; the missing value,
    // without a draw, when that helper is null.
    double mGetRandom() const override;
    // 0.
    void mGetDRefPoints(std::vector<double>& rvdPoints) const override;
    bool mHasLowerBound() const override;
    double mGetLowerBound() const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;
    // The degrees of freedom alone.
    void mGetNonInvCDFParameters(std::vector<double>& rvdParameters) const override;

private:
    // Makes the helper, a CmDistGamma(df / 2, 2, 0); null if not allocated.
    void mInitialize();

    double m_dDF;
    double m_dNoncentrality;
    std::shared_ptr<CmDist> m_pGamma;
};

// F: numerator degrees of freedom, denominator degrees of freedom,
// noncentrality (0); valid when both degrees of freedom are > 0 and the
// noncentrality >= 0.  As with the chi-square, the density and the variates
// are central only ("0.0 == m_dNoncentrality").  mGetRandom reports
// "mAreParamsValid()" for invalid parameters and "m_pBeta != nullptr" when
// the helper could not be allocated, and gives the missing value in both
// cases without drawing.
class QEL_API CmDistF : public CmDist
{
public:
    CmDistF(double dDFNum, double dDFDenom, double dNoncentrality = 0.0);
    explicit CmDistF(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    // (denominator / numerator) b / (1 - b) for a beta variate b with shapes
    // numerator / 2 and denominator / 2, b held below 1 - eps.
    double mGetRandom() const override;
    // 0.
    void mGetDRefPoints(std::vector<double>& rvdPoints) const override;
    bool mHasLowerBound() const override;
    double mGetLowerBound() const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;
    // Both degrees of freedom.
    void mGetNonInvCDFParameters(std::vector<double>& rvdParameters) const override;

private:
    // Makes the helper, a CmDistBeta(numerator / 2, denominator / 2).
    void mInitialize();

    double m_dDFNum;
    double m_dDFDenom;
    double m_dNoncentrality;
    std::shared_ptr<CmDist> m_pBeta;
};

// Student's t: degrees of freedom, noncentrality (0); valid when the degrees
// of freedom are > 0.  A central variate is the square root of an F(1, df)
// variate with a sign drawn after it (negative for U >= 0.5); a noncentral
// one is the quantile at one uniform.  mGetRandom reports "mAreParamsValid()"
// for invalid degrees of freedom and "m_pF != nullptr" when the helper could
// not be allocated, and gives the missing value in both cases without
// drawing (a missing F variate is passed on likewise).
class QEL_API CmDistT : public CmDist
{
public:
    CmDistT(double dDF, double dNoncentrality = 0.0);
    explicit CmDistT(const std::vector<double>& rvdParameters);

    bool mAreParamsValid() const override;
    double mPdf(double dX) const override;
    double mCdf(double dX, bool bComplement) const override;
    double mInvCdf(double dP) const override;
    double mGetRandom() const override;
    // 0.
    void mGetDRefPoints(std::vector<double>& rvdPoints) const override;
    void mGetParameters(std::vector<double>& rvdParameters) const override;
    // The degrees of freedom alone.
    void mGetNonInvCDFParameters(std::vector<double>& rvdParameters) const override;

private:
    // Makes the helper, a CmDistF(1, df, 0).
    void mInitialize();

    double m_dDF;
    double m_dNoncentrality;
    std::shared_ptr<CmDist> m_pF;
};
