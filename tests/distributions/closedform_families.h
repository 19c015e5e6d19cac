// The closed-form families of qel/closedform.h behind one table, for the
// tests that run every family through the same checks (reference tables,
// identities).  A family is known by the code of tests/data/gen_closedform.py
// and takes up to three parameters a, b, c after the point.
#pragma once

#include "qel/closedform.h"

namespace closedformtest
{

struct Family
{
    int iCode;
    const char* pszName;
    double (*pfnPdf)(double dX, double dA, double dB, double dC);
    double (*pfnCdf)(double dX, double dA, double dB, double dC, bool bUpper);
    double (*pfnInvCdf)(double dProb, double dA, double dB, double dC);
};

// The family of a code, or nullptr.
inline const Family* mFindFamily(int iCode)
{
    static const Family kFamilies[] = {
        {1, "Cauchy", [](double x, double a, double b, double) { return mCauchyPdf(x, a, b); },
         [](double x, double a, double b, double, bool u) { return mCauchyCdf(x, a, b, u); },
         [](double p, double a, double b, double) { return mCauchyInvCdf(p, a, b); }},
        {2, "exponential",
         [](double x, double a, double b, double) { return mExponentialPdf(x, a, b); },
         [](double x, double a, double b, double, bool u) { return mExponentialCdf(x, a, b, u); },
         [](double p, double a, double b, double) { return mExponentialInvCdf(p, a, b); }},
        {3, "largest extreme value",
         [](double x, double a, double b, double) { return mLargestExtremeValuePdf(x, a, b); },
         [](double x, double a, double b, double, bool u) {
             return mLargestExtremeValueCdf(x, a, b, u);
         },
         [](double p, double a, double b, double) { return mLargestExtremeValueInvCdf(p, a, b); }},
        {4, "smallest extreme value",
         [](double x, double a, double b, double) { return mSmallestExtremeValuePdf(x, a, b); },
         [](double x, double a, double b, double, bool u) {
             return mSmallestExtremeValueCdf(x, a, b, u);
         },
         [](double p, double a, double b, double) {
             return mSmallestExtremeValueInvCdf(p, a, b);
         }},
        {5, "Laplace", [](double x, double a, double b, double) { return mLaplacePdf(x, a, b); },
         [](double x, double a, double b, double, bool u) { return mLaplaceCdf(x, a, b, u); },
         [](double p, double a, double b, double) { return mLaplaceInvCdf(p, a, b); }},
        {6, "logistic", [](double x, double a, double b, double) { return mLogisticPdf(x, a, b); },
         [](double x, double a, double b, double, bool u) { return mLogisticCdf(x, a, b, u); },
         [](double p, double a, double b, double) { return mLogisticInvCdf(p, a, b); }},
        {7, "loglogistic", &mLogLogisticPdf, &mLogLogisticCdf, &mLogLogisticInvCdf},
        {8, "lognormal", &mLogNormalPdf, &mLogNormalCdf, &mLogNormalInvCdf},
        {9, "Weibull", &mWeibullPdf, &mWeibullCdf, &mWeibullInvCdf},
        {10, "uniform", [](double x, double a, double b, double) { return mUniformPdf(x, a, b); },
         [](double x, double a, double b, double, bool u) { return mUniformCdf(x, a, b, u); },
         [](double p, double a, double b, double) { return mUniformInvCdf(p, a, b); }},
        {11, "triangular", &mTriangularPdf, &mTriangularCdf, &mTriangularInvCdf},
        {12, "half-normal",
         [](double x, double a, double b, double) { return mHalfNormalPdf(x, a, b); },
         [](double x, double a, double b, double, bool u) { return mHalfNormalCdf(x, a, b, u); },
         [](double p, double a, double b, double) { return mHalfNormalInvCdf(p, a, b); }},
        {13, "Tukey lambda", &mLambdaPdf, &mLambdaCdf, &mLambdaInvCdf},
    };
    for (const Family& rFamily : kFamilies)
        if (rFamily.iCode == iCode)
            return &rFamily;
    return nullptr;
}

constexpr int kFamilyCount = 13;

} // namespace closedformtest
