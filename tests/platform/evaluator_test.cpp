// The evaluator's contract, exercised through the built qelmath executable:
// one output line per expression, the formats of results and errors, the
// missing value, standard input, list and help.
#include "support/evaluator.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace
{
using qeltest::mLines;
using qeltest::RunResult;

RunResult mRun(const std::string& rsArgs, bool bKeepErr = false)
{
    return qeltest::mRunEvaluator(rsArgs, bKeepErr);
}
} // namespace

TEST(Evaluator, PrintsDoublesIntegersBoolsAndTheMissingValue)
{
    const RunResult r = mRun("eval 'mGetMaxExponent()' 'mGetPi()' 'mIsInteger(3)' "
                             "'mIsNumericMissing(*)' 'mGetMissingValueCode()' "
                             "'mAlternativeFromConfidence(eUpperBoundOnly)'");
    EXPECT_EQ(r.status, 0);
    const std::vector<std::string> lines = mLines(r.out);
    ASSERT_EQ(lines.size(), 6u) << r.out;
    EXPECT_EQ(lines[0], "709");
    EXPECT_EQ(lines[1], "3.1415926535897931");
    EXPECT_EQ(lines[2], "true");
    EXPECT_EQ(lines[3], "true");
    EXPECT_EQ(lines[4], "*");
    EXPECT_EQ(lines[5], "1");
}

TEST(Evaluator, UnknownNamesAndMalformedLinesGiveOneErrorLineEach)
{
    const RunResult r = mRun("eval 'noSuchFunction(1)' 'mIsInteger(1' 'mIsInteger(1, 2)' "
                             "'mIsInteger(true)' 'mIsInteger(3) junk' 'mAlternativeFromConfidence(eNoSuchName)'");
    const std::vector<std::string> lines = mLines(r.out);
    ASSERT_EQ(lines.size(), 6u) << r.out;
    EXPECT_EQ(lines[0], "error: unknown function noSuchFunction");
    EXPECT_EQ(lines[1].rfind("error: parse: ", 0), 0u) << lines[1];
    EXPECT_EQ(lines[2].rfind("error: parse: ", 0), 0u) << lines[2];
    EXPECT_EQ(lines[3].rfind("error: parse: ", 0), 0u) << lines[3];
    EXPECT_EQ(lines[4].rfind("error: parse: ", 0), 0u) << lines[4];
    EXPECT_EQ(lines[5].rfind("error: parse: ", 0), 0u) << lines[5];
}

TEST(Evaluator, StandardInputGivesOneLinePerExpressionSkippingCommentsAndBlanks)
{
    const std::string path = testing::TempDir() + "qel_eval_input.txt";
    {
        std::ofstream f(path);
        f << "# a comment\n\nmIsInteger(2.5)\n   \nmGetMaxInteger()\nbogus(\n";
    }
    const RunResult r = mRun("eval - < '" + path + "'");
    const std::vector<std::string> lines = mLines(r.out);
    ASSERT_EQ(lines.size(), 3u) << r.out;
    EXPECT_EQ(lines[0], "false");
    EXPECT_EQ(lines[1], "2147483647");
    EXPECT_EQ(lines[2].rfind("error: ", 0), 0u);

    const RunResult echoed = mRun("eval --echo - < '" + path + "'");
    const std::vector<std::string> elines = mLines(echoed.out);
    ASSERT_EQ(elines.size(), 4u) << echoed.out;
    EXPECT_EQ(elines[0], "# a comment");
    EXPECT_EQ(elines[1], "mIsInteger(2.5) = false");
}

TEST(Evaluator, AssertionReportGoesToStandardErrorAndTheCallStillPrints)
{
    const RunResult quiet = mRun("eval 'mAlternativeFromConfidence(7)'");
    const std::vector<std::string> lines = mLines(quiet.out);
    ASSERT_EQ(lines.size(), 1u) << quiet.out;
    EXPECT_EQ(lines[0], "0");
    const RunResult both = mRun("eval 'mAlternativeFromConfidence(7)'", true);
    EXPECT_NE(both.out.find("assertion failed: false ("), std::string::npos) << both.out;
}

TEST(Evaluator, ListShowsRegisteredFunctionsWithParametersAndFilters)
{
    const RunResult all = mRun("list");
    EXPECT_NE(all.out.find("mIsNumericMissing(dX)\n"), std::string::npos);
    const RunResult some = mRun("list 'mGetMax*'");
    const std::vector<std::string> lines = mLines(some.out);
    ASSERT_EQ(lines.size(), 4u) << some.out;
    for (const std::string& l : lines)
        EXPECT_EQ(l.rfind("mGetMax", 0), 0u);
    const RunResult sub = mRun("list Missing");
    EXPECT_NE(sub.out.find("mGetMissingValueCode()"), std::string::npos);
}

TEST(Evaluator, HelpExplainsTheSyntax)
{
    const RunResult r = mRun("help");
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("error: unknown function"), std::string::npos);
    EXPECT_NE(r.out.find("missing"), std::string::npos);
}
