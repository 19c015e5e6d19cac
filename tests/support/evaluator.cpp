#include "support/evaluator.h"

#include <array>
#include <cstdio>
#include <sys/wait.h>

namespace qeltest
{

RunResult mRunEvaluator(const std::string& rsArgs, bool bKeepErr)
{
    const std::string cmd = std::string("'") + QEL_EVALUATOR_PATH + "' " + rsArgs +
                            (bKeepErr ? " 2>&1" : " 2>/dev/null");
    RunResult r;
    FILE* pipe = popen(cmd.c_str(), "r");
    if (!pipe)
        return r;
    std::array<char, 4096> buffer{};
    std::size_t n;
    while ((n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0)
        r.out.append(buffer.data(), n);
    const int status = pclose(pipe);
    r.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return r;
}

std::vector<std::string> mLines(const std::string& rs)
{
    std::vector<std::string> lines;
    std::string line;
    for (char c : rs)
    {
        if (c == '\n')
        {
            lines.push_back(line);
            line.clear();
        }
        else
            line += c;
    }
    if (!line.empty())
        lines.push_back(line);
    return lines;
}

} // namespace qeltest
