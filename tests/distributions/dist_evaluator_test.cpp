// Distribution objects through the evaluator: WORD(params).operation(args),
// the random command, and the registered type tables.
#include "qel/distclosedform.h"
#include "qel/distdiscrete.h"
#include "qel/normal.h"
#include "qel/uniformgenerator.h"

#include "support/evaluator.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace
{
using qeltest::mLines;
using qeltest::mRunEvaluator;

std::string Format(double d)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.17g", d);
    return buffer;
}
} // namespace

TEST(DistEvaluator, ObjectOperationsForwardToTheFlatFunctions)
{
    const auto r = mRunEvaluator("eval 'NORMAL(0, 1).mCdf(1.96, true)' 'NORMAL(0, 1).mCdf(1.96)' "
                                 "'NORMAL(1, 2).mPdf(0.5)' 'NORMAL().mInvCdf(0.975)'");
    const auto lines = mLines(r.out);
    ASSERT_EQ(lines.size(), 4u) << r.out;
    EXPECT_EQ(lines[0], Format(mNormalCdf(1.96, 0.0, 1.0, true)));
    EXPECT_EQ(lines[1], Format(mNormalCdf(1.96, 0.0, 1.0, false)));
    EXPECT_EQ(lines[2], Format(mNormalPdf(0.5, 1.0, 2.0)));
    EXPECT_EQ(lines[3], Format(mNormalInvCdf(0.975, 0.0, 1.0)));
}

TEST(DistEvaluator, VectorsBoolsAndBounds)
{
    const auto r = mRunEvaluator(
        "eval 'BINOMIAL(10, 0.3).mGetSupport(-3.4, 2.6)' 'POISSON(2).mGetSupport(-3.4, 2.6)' "
        "'TLNORMAL(1, 2, 5).mGetParameters()' 'LNORMAL(1, 2).mGetParameters()' "
        "'BINOMIAL(10, 0.3).mIsContinuous()' 'UNIFORM(1, 4).mGetUpperBound()' "
        "'NEGBINOMIAL(0.5, 3).mGetLowerBound()' 'NEGBINOMIAL(0.5, 3, true).mGetLowerBound()' "
        "'DISCRETE([10, 20, 30], [0.5, 0.25, 0.25]).mGetSupport(0, 1)' "
        "'GEOMETRIC(0.25).mGetParameters()'");
    const auto lines = mLines(r.out);
    ASSERT_EQ(lines.size(), 10u) << r.out;
    EXPECT_EQ(lines[0], "[0, 1, 2, 3]");
    EXPECT_EQ(lines[1], "[0, 1, 2]");
    EXPECT_EQ(lines[2], "[1, 2, 5]");
    EXPECT_EQ(lines[3], "[1, 2, 0]");
    EXPECT_EQ(lines[4], "false");
    EXPECT_EQ(lines[5], "4");
    EXPECT_EQ(lines[6], "3");
    EXPECT_EQ(lines[7], "0");
    EXPECT_EQ(lines[8], "[10, 20, 30]");
    EXPECT_EQ(lines[9], "[0.25]");
}

TEST(DistEvaluator, ErrorsOfObjects)
{
    const auto r = mRunEvaluator(
        "eval 'NORMAL(0, -1).mCdf(1)' 'NORMAL(0, -1).mAreParamsValid()' 'NOSUCH(1).mPdf(1)' "
        "'MNORMAL(1).mPdf(1)' 'NORMAL(0, 1).mNoSuch()' 'NORMAL(0, 1).mPdf()' "
        "'normal(0, 1).mPdf(1)' 'NORMAL(0, x).mPdf(1)'");
    const auto lines = mLines(r.out);
    ASSERT_EQ(lines.size(), 8u) << r.out;
    EXPECT_EQ(lines[0], "error: invalid parameters of NORMAL");
    EXPECT_EQ(lines[1], "false");
    EXPECT_EQ(lines[2], "error: unknown distribution NOSUCH");
    EXPECT_EQ(lines[3], "error: no distribution object for MNORMAL");
    EXPECT_EQ(lines[4], "error: unknown operation mNoSuch");
    EXPECT_EQ(lines[5], "error: parse: NORMAL.mPdf: takes (dX)");
    EXPECT_EQ(lines[6], "error: unknown distribution normal");
    EXPECT_EQ(lines[7].rfind("error: parse: NORMAL.mPdf: parameter 2:", 0), 0u) << lines[7];
}

TEST(DistEvaluator, RandomDrawsTheObjectsVariatesAtTheBase)
{
    const auto r = mRunEvaluator("random NORMAL 1 2 --n 5 --base 12345");
    EXPECT_EQ(r.status, 0);
    const auto lines = mLines(r.out);
    ASSERT_EQ(lines.size(), 5u) << r.out;
    CmUniformGenerator::mInstance()->mSetBase(12345.0);
    const CmDistNormal dist(1.0, 2.0);
    for (const std::string& line : lines)
        EXPECT_EQ(line, Format(dist.mGetRandom()));
}

TEST(DistEvaluator, RandomDefaultsToOneVariateAndTakesVectors)
{
    const auto one = mRunEvaluator("random POISSON 3 --base 7");
    EXPECT_EQ(mLines(one.out).size(), 1u);
    const auto slots = mRunEvaluator("random DISCRETE '[10, 20]' '[1, 3]' --n 50 --base 99");
    const auto lines = mLines(slots.out);
    ASSERT_EQ(lines.size(), 50u);
    for (const std::string& line : lines)
        EXPECT_TRUE(line == "0" || line == "1") << line;
}

TEST(DistEvaluator, RandomRefusesBadInput)
{
    EXPECT_EQ(mRunEvaluator("random NORMAL 0 -1 --n 2").status, 2);
    EXPECT_EQ(mRunEvaluator("random NOSUCH 1").status, 2);
    EXPECT_EQ(mRunEvaluator("random NORMAL 0 1 --n").status, 2);
    EXPECT_EQ(mRunEvaluator("random NORMAL 0 1 --n -3").status, 2);
    EXPECT_EQ(mRunEvaluator("random").status, 2);
    const auto r = mRunEvaluator("random NORMAL 0 -1", true);
    EXPECT_EQ(r.out, "error: invalid parameters of NORMAL\n");
}

TEST(DistEvaluator, TypeTablesAreRegistered)
{
    const auto r = mRunEvaluator(
        "eval 'mGetDistributionType(EXTREME)' 'mGetDistributionType(normal)' "
        "'mGetDistributionCmndName(TRIANGULAR_DIST)' 'mGetDistributionLabel(14)' "
        "'mIsDistributionLogFamily(LNORMAL_DIST)' 'mRandMultinomial(0, [0.5, 0.5])'");
    const auto lines = mLines(r.out);
    ASSERT_EQ(lines.size(), 6u) << r.out;
    EXPECT_EQ(lines[0], "5");
    EXPECT_EQ(lines[1], "false");
    EXPECT_EQ(lines[2], "TRIANGULAR");
    EXPECT_EQ(lines[3], "50203");
    EXPECT_EQ(lines[4], "true");
    EXPECT_EQ(lines[5], "[0, 0]");
    const auto list = mRunEvaluator("list 'mGetDistribution*'");
    EXPECT_EQ(mLines(list.out).size(), 3u) << list.out;
}

TEST(DistEvaluator, ListShowsTheObjectsWithTheirParameters)
{
    const auto r = mRunEvaluator("list 'T*'");
    const auto lines = mLines(r.out);
    const std::vector<std::string> expected = {
        "T(df, noncentrality = 0).operation(...)",
        "TEXPONENTIAL(scale = 1, threshold = 0).operation(...)",
        "TGAMMA(shape, scale, threshold = 0).operation(...)",
        "TLLOGISTIC(location = 0, scale = 1, threshold = 0).operation(...)",
        "TLNORMAL(location = 0, scale = 1, threshold = 0).operation(...)",
        "TRIANGULAR(lower, mode, upper).operation(...)",
        "TWEIBULL(shape = 0, scale = 1, threshold = 0).operation(...)"};
    EXPECT_EQ(lines, expected) << r.out;
    // All thirty-one objects that expressions can make are listed.
    const auto all = mRunEvaluator("list");
    int iObjects = 0;
    for (const std::string& line : mLines(all.out))
        iObjects += line.find(").operation(...)") != std::string::npos;
    EXPECT_EQ(iObjects, 31);
}
