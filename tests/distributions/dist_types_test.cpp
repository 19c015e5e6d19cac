// The distribution enumeration's tables, and the operations of the CmDist
// base that a subclass inherits when they do not apply to it.
#include "qel/dist.h"
#include "qel/disttypes.h"

#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace
{
const char* const kWords[38] = {
    "NOT_ENTERED",   "NORMAL",       "LNORMAL",     "TLNORMAL",       "SEXTREMEVALUE",
    "LEXTREMEVALUE", "WEIBULL",      "TWEIBULL",    "EXPONENTIAL",    "TEXPONENTIAL",
    "LOGISTIC",      "LLOGISTIC",    "TLLOGISTIC",  "GAMMA",          "TGAMMA",
    "BETA",          "BERNOULLI",    "BINOMIAL",    "CAUCHY",         "CHISQUARE",
    "DISCRETE",      "F",            "GEOMETRIC",   "HYPERGEOMETRIC", "INTEGER",
    "LAMBDA",        "LAPLACE",      "MNORMAL",     "NEGBINOMIAL",    "POISSON",
    "T",             "UNIFORM",      "TRIANGULAR",  "HALF NORMAL",    "THALF NORMAL",
    "MAXMOD",        "STURANGE",     "STUMAX"};

EDistributionType Type(int i) { return static_cast<EDistributionType>(i); }

// A distribution that overrides only the pure operations, with a quantile
// and lower bound that a test sets, to reach the base's own operations.
class BareDist : public CmDist
{
public:
    double m_dQ1 = 0.0, m_dQ99 = 1.0, m_dLower = 0.0;
    double mPdf(double) const override { return 0.0; }
    double mCdf(double, bool) const override { return 0.0; }
    double mInvCdf(double dP) const override { return dP == 0.01 ? m_dQ1 : m_dQ99; }
    double mGetRandom() const override { return 0.0; }
    double mGetLowerBound() const override { return m_dLower; }
    bool mIncludeLowerBound() const { return mIncludeLowerBoundInGraph(); }
    CmUniformGenerator* mGenerator() const { return m_pUniformGenerator; }
};

// Counts the virtual calls of mGetParameters made by mGetNonInvCDFParameters.
class ParamDist : public BareDist
{
public:
    mutable int m_iCalls = 0;
    void mGetParameters(std::vector<double>& rvd) const override
    {
        ++m_iCalls;
        rvd = {1.5, 2.5, 3.5};
    }
};
} // namespace

TEST(DistTypes, EveryWordOfOneToThirtySevenNamesItsValue)
{
    for (int i = 1; i <= 37; ++i)
    {
        EDistributionType e = NOT_ENTERED_DIST;
        EXPECT_TRUE(mGetDistributionType(CmString(kWords[i]), &e)) << kWords[i];
        EXPECT_EQ(static_cast<int>(e), i) << kWords[i];
    }
    EXPECT_EQ(static_cast<int>(T_DIST), 30);
    EXPECT_EQ(static_cast<int>(STUMAX_DIST), 37);
}

TEST(DistTypes, ExtraWordsKeepTheirOldPairing)
{
    const std::pair<const char*, int> extras[] = {
        {"EXTREME", 5}, {"EXTVALUE", 4}, {"LOGNORMAL", 2}, {"LOGLOGISTIC", 11}, {"STUDENT", 30}};
    for (const auto& x : extras)
    {
        EDistributionType e = NOT_ENTERED_DIST;
        EXPECT_TRUE(mGetDistributionType(CmString(x.first), &e)) << x.first;
        EXPECT_EQ(static_cast<int>(e), x.second) << x.first;
    }
}

TEST(DistTypes, UnknownWordsAreRefusedAndLeaveTheTypeAlone)
{
    for (const char* psz : {"normal", "NOT_ENTERED", "", "NORMAL ", "Normal", "HALFNORMAL", "Z"})
    {
        EDistributionType e = BETA_DIST;
        EXPECT_FALSE(mGetDistributionType(CmString(psz), &e)) << psz;
        EXPECT_EQ(e, BETA_DIST) << psz;
    }
}

TEST(DistTypes, CommandNamesCoverZeroToThirtyTwo)
{
    CmAssertCapture cap;
    for (int i = 0; i <= 32; ++i)
        EXPECT_EQ(mGetDistributionCmndName(Type(i)).mGetString(), kWords[i]) << i;
    EXPECT_EQ(cap.mGetCount(), 0);
    // Names and types make a round trip from 1 to 32.
    for (int i = 1; i <= 32; ++i)
    {
        EDistributionType e = NOT_ENTERED_DIST;
        ASSERT_TRUE(mGetDistributionType(mGetDistributionCmndName(Type(i)), &e));
        EXPECT_EQ(static_cast<int>(e), i);
    }
}

TEST(DistTypes, CommandNameBeyondTheTableIsReportedAndEmpty)
{
    for (int i : {33, 37, 38, -1})
    {
        CmAssertCapture cap;
        EXPECT_EQ(mGetDistributionCmndName(Type(i)).mGetString(), "") << i;
        EXPECT_EQ(cap.mGetCount(), 1);
        EXPECT_TRUE(cap.mHas("false"));
    }
}

TEST(DistTypes, LabelsOfZeroToFourteen)
{
    const unsigned int expected[15] = {0,     50197, 50196, 50200, 50198, 50205, 50199, 50202,
                                       50192, 50201, 50194, 50195, 50204, 50193, 50203};
    CmAssertCapture cap;
    for (int i = 0; i <= 14; ++i)
        EXPECT_EQ(mGetDistributionLabel(Type(i)), expected[i]) << i;
    EXPECT_EQ(mGetDistributionLabel(TGAMMA_DIST), 50203u);
    EXPECT_EQ(cap.mGetCount(), 0);
}

TEST(DistTypes, LabelAboveFourteenAsserts)
{
    for (int i : {15, 37, 1000})
    {
        CmAssertCapture cap;
        EXPECT_EQ(mGetDistributionLabel(Type(i)), 0u);
        EXPECT_EQ(cap.mGetCount(), 1);
        EXPECT_TRUE(cap.mHas("false"));
    }
}

TEST(DistTypes, LogFamiliesAreTheFourWithoutThreshold)
{
    CmAssertCapture cap;
    for (int i = 0; i <= 14; ++i)
    {
        const bool bLog = i == 2 || i == 6 || i == 8 || i == 11;
        EXPECT_EQ(mIsDistributionLogFamily(Type(i)), bLog) << i;
    }
    EXPECT_FALSE(mIsDistributionLogFamily(TLNORMAL_DIST));
    EXPECT_TRUE(mIsDistributionLogFamily(LNORMAL_DIST));
    EXPECT_EQ(cap.mGetCount(), 0);
}

TEST(DistTypes, LogFamilyAboveFourteenAssertsAndIsFalse)
{
    CmAssertCapture cap;
    EXPECT_FALSE(mIsDistributionLogFamily(BETA_DIST));
    EXPECT_EQ(cap.mGetCount(), 1);
    EXPECT_TRUE(cap.mHas("false"));
}

TEST(DistBase, HoldsTheProcessGenerator)
{
    BareDist d;
    EXPECT_EQ(d.mGenerator(), CmUniformGenerator::mInstance());
    BareDist c(d);
    EXPECT_EQ(c.mGenerator(), CmUniformGenerator::mInstance());
}

TEST(DistBase, DefaultsOfTheBase)
{
    BareDist d;
    CmAssertCapture cap;
    EXPECT_TRUE(d.mAreParamsValid());
    EXPECT_TRUE(d.mIsContinuous());
    EXPECT_FALSE(d.mHasLowerBound());
    EXPECT_FALSE(d.mHasUpperBound());
    EXPECT_EQ(cap.mGetCount(), 0);

    std::vector<double> v = {7.0, 8.0};
    d.mGetDRefPoints(v);
    EXPECT_TRUE(v.empty());
    EXPECT_EQ(cap.mGetCount(), 0);
}

TEST(DistBase, SupportAssertsAndLeavesTheVectorAlone)
{
    BareDist d;
    CmAssertCapture cap;
    std::vector<double> v = {7.0, 8.0};
    d.mGetSupport(0.0, 10.0, v);
    EXPECT_EQ(v, (std::vector<double>{7.0, 8.0}));
    EXPECT_EQ(cap.mGetCount(), 1);
    EXPECT_TRUE(cap.mHas("false"));
}

TEST(DistBase, UpperBoundAssertsAndIsZero)
{
    BareDist d;
    CmAssertCapture cap;
    EXPECT_EQ(d.CmDist::mGetLowerBound(), 0.0);
    EXPECT_EQ(d.mGetUpperBound(), 0.0);
    EXPECT_EQ(cap.mGetCount(), 2);
}

TEST(DistBase, ParametersAssertAndEmpty)
{
    BareDist d;
    CmAssertCapture cap;
    std::vector<double> v = {1.0};
    d.mGetParameters(v);
    EXPECT_TRUE(v.empty());
    EXPECT_EQ(cap.mGetCount(), 1);
    v = {1.0};
    d.mGetNonInvCDFParameters(v);
    EXPECT_TRUE(v.empty());
    EXPECT_EQ(cap.mGetCount(), 2);
}

TEST(DistBase, NonInvParametersCallTheVirtualParameters)
{
    ParamDist d;
    std::vector<double> v;
    d.mGetNonInvCDFParameters(v);
    EXPECT_EQ(d.m_iCalls, 1);
    EXPECT_EQ(v, (std::vector<double>{1.5, 2.5, 3.5}));
}

TEST(DistBase, LowerBoundInGraphWithinAFifthOfTheCentralRange)
{
    BareDist d;
    // 0.2 (q99 - q1) = 2 against q1 - lb.
    d.m_dQ1 = 1.0;
    d.m_dQ99 = 11.0;
    d.m_dLower = -1.0; // q1 - lb = 2: equal counts as near
    EXPECT_TRUE(d.mIncludeLowerBound());
    d.m_dLower = -1.0000001;
    EXPECT_FALSE(d.mIncludeLowerBound());
    d.m_dLower = 0.9;
    EXPECT_TRUE(d.mIncludeLowerBound());
}

TEST(DistBase, LowerBoundInGraphIsTrueOnNaN)
{
    BareDist d;
    d.m_dQ1 = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(d.mIncludeLowerBound());
    d.m_dQ1 = 1.0;
    d.m_dQ99 = 11.0;
    d.m_dLower = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(d.mIncludeLowerBound());
}
