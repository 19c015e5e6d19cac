// Running the built evaluator from a test: the command line, its standard
// output and exit status, and the output split into lines.
#pragma once

#include <string>
#include <vector>

namespace qeltest
{

struct RunResult
{
    std::string out;
    int status = -1;
};

// Runs the evaluator with a shell command line made of its arguments; standard
// error is discarded unless bKeepErr, which merges it into the output.
RunResult mRunEvaluator(const std::string& rsArgs, bool bKeepErr = false);

// The lines of rs, without their newlines.
std::vector<std::string> mLines(const std::string& rs);

} // namespace qeltest
