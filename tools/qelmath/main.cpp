// qelmath: the command-line face of the library.
//
//   qelmath eval [--echo] EXPR...   evaluate each expression
//   qelmath eval [--echo] -         evaluate the lines of standard input
//   qelmath list [PATTERN]          the registered functions
//   qelmath random WORD PARAMS...   variates of a distribution object
//   qelmath help                    how to write expressions
#include "registry.h"

#include "qel/qelexceptions.h"

#include <cxxabi.h>
#include <fnmatch.h>

#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <typeinfo>

namespace
{

std::string mDemangle(const char* pszName)
{
    int status = 0;
    std::unique_ptr<char, void (*)(void*)> p(abi::__cxa_demangle(pszName, nullptr, nullptr, &status),
                                             std::free);
    return status == 0 && p ? std::string(p.get()) : std::string(pszName);
}

std::string mTrim(const std::string& rs)
{
    const char* ws = " \t\r\n";
    const auto b = rs.find_first_not_of(ws);
    if (b == std::string::npos)
        return std::string();
    const auto e = rs.find_last_not_of(ws);
    return rs.substr(b, e - b + 1);
}

// One expression, one line of output.
std::string mEvaluate(const std::string& rsExpr)
{
    using namespace qeltool;
    Call call;
    try
    {
        call = mParseCall(rsExpr);
    }
    catch (const ParseError& e)
    {
        return "error: parse: " + e.what;
    }
    if (call.bHasMethod)
    {
        const Registry::PFnObjectCall pfn = Registry::mInstance().mGetObjectHandler();
        if (!pfn)
            return "error: unknown function " + call.name;
        try
        {
            return pfn(call);
        }
        catch (const ArgError& e)
        {
            return "error: parse: " + call.name + "." + call.method + ": " + e.what;
        }
        catch (const CmException& e)
        {
            return std::string("error: ") + e.mGetClassName() + ": " + e.mGetMessage().mGetString();
        }
        catch (const std::exception& e)
        {
            return "error: " + mDemangle(typeid(e).name()) + ": " + e.what();
        }
    }
    const Entry* pEntry = Registry::mInstance().mFind(call.name);
    if (!pEntry)
        return "error: unknown function " + call.name;
    if (call.args.size() != pEntry->arity)
        return "error: parse: " + call.name + " takes " + std::to_string(pEntry->arity) +
               " argument" + (pEntry->arity == 1 ? "" : "s") + " (" + pEntry->params + "), " +
               std::to_string(call.args.size()) + " given";
    try
    {
        return pEntry->call(call.args);
    }
    catch (const ArgError& e)
    {
        return "error: parse: " + call.name + ": " + e.what;
    }
    catch (const CmException& e)
    {
        return std::string("error: ") + e.mGetClassName() + ": " + e.mGetMessage().mGetString();
    }
    catch (const std::exception& e)
    {
        return "error: " + mDemangle(typeid(e).name()) + ": " + e.what();
    }
}

void mEvaluateLine(const std::string& rsLine, bool bEcho)
{
    const std::string expr = mTrim(rsLine);
    if (expr.empty())
        return;
    if (expr[0] == '#')
    {
        if (bEcho)
            std::cout << expr << '\n';
        return;
    }
    const std::string result = mEvaluate(expr);
    if (bEcho)
        std::cout << expr << " = " << result << '\n';
    else
        std::cout << result << '\n';
    std::cout.flush();
}

int mHelp()
{
    std::cout <<
        R"HELP(qelmath: evaluate QelMath functions from the command line.

Usage
  qelmath eval [--echo] EXPR...   evaluate each expression, one output line each
  qelmath eval [--echo] -         read expressions from standard input, one a line;
                                  empty lines and lines starting with # print nothing
  qelmath list [PATTERN]          the registered functions and their parameters,
                                  then the distribution objects with theirs;
                                  PATTERN is a substring or a glob (mNormal*)
  qelmath random WORD PARAMS... [--n N] [--base B]
                                  N variates (default 1), one a line, from the
                                  distribution object of a command word, e.g.
                                  qelmath random WEIBULL 2 1 --n 5 --base 12345;
                                  without --base the generator is seeded from the clock
  qelmath help                    this text

  --echo prints each expression before its result ("expr = result") and echoes
  comment lines; without it each expression prints its result alone.

Expressions
  name(arg, ...) where name is an exported function, e.g.
      mNormalCdf(1.96, 0, 1, true)
  Arguments: numbers in C syntax (1.96, -3, 1e-5, 0x1p-3, inf, nan), true, false,
  enumerator names (eLowerTailed, eTwoSided, eUpperTailed, ...), * for the missing
  value, [a, b, ...] for a vector, {key: value, ...} for a map.

Distribution objects
  WORD(params...).operation(args...) makes the object of a distribution command
  word with its parameters in the order of the class's parameter vector (short
  lists take the defaults), then calls one of its operations:
      NORMAL(0, 1).mPdf(1.96)          WEIBULL(2, 1).mCdf(1.5)
      GAMMA(2.5, 2).mCdf(3, true)      T(5).mInvCdf(0.975)
      BINOMIAL(10, 0.3).mGetSupport(-3.4, 2.6)
  Words: NORMAL LNORMAL TLNORMAL SEXTREMEVALUE LEXTREMEVALUE WEIBULL TWEIBULL
  EXPONENTIAL TEXPONENTIAL LOGISTIC LLOGISTIC TLLOGISTIC GAMMA TGAMMA BETA BERNOULLI
  BINOMIAL CAUCHY CHISQUARE F HYPERGEOMETRIC INTEGER LAMBDA LAPLACE POISSON T UNIFORM
  TRIANGULAR, the extra words EXTREME EXTVALUE LOGNORMAL LOGLOGISTIC STUDENT, and,
  made by their constructors, NEGBINOMIAL(p, r[, countFailures]),
  GEOMETRIC(p[, countFailures]) and DISCRETE([values], [probabilities]).
  Operations: mPdf(x), mCdf(x[, complement]), mInvCdf(p), mGetRandom(),
  mAreParamsValid(), mIsContinuous(), mGetSupport(lower, upper), mGetDRefPoints(),
  mGetParameters(), mGetNonInvCDFParameters(), mHasLowerBound(), mGetLowerBound(),
  mHasUpperBound(), mGetUpperBound().
  Parameters that the object finds invalid print "error: invalid parameters:
  WORD(...)"; mAreParamsValid and mGetParameters answer regardless.

Output
  A double in %.17g, the missing value as *, integers as integers, bools as true or
  false, vectors as [a, b, ...]. A function without a result prints the values it
  stores through its pointer arguments.
  error: <exception class>: <message>   the call threw
  error: parse: <what>                  the line is malformed or an argument does not fit
  error: unknown function <name>        no such function is registered
  Assertion reports ("assertion failed: <expression> (<file>:<line>)") go to standard
  error; the call still prints its result.
)HELP";
    return 0;
}

bool mMatches(const char* pszPattern, const std::string& rsName)
{
    if (!pszPattern)
        return true;
    const std::string pattern(pszPattern);
    const bool bGlob = pattern.find_first_of("*?[") != std::string::npos;
    return bGlob ? fnmatch(pszPattern, rsName.c_str(), 0) == 0
                 : rsName.find(pattern) != std::string::npos;
}

int mList(const char* pszPattern)
{
    const auto& registry = qeltool::Registry::mInstance();
    for (const auto& kv : registry.mEntries())
        if (mMatches(pszPattern, kv.first))
            std::cout << kv.first << "(" << kv.second.params << ")\n";
    for (const auto& kv : registry.mObjects())
        if (mMatches(pszPattern, kv.first))
            std::cout << kv.first << "(" << kv.second << ").operation(...)\n";
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2)
    {
        mHelp();
        return 2;
    }
    const std::string command = argv[1];
    if (command == "help" || command == "--help" || command == "-h")
        return mHelp();
    if (command == "list")
        return mList(argc > 2 ? argv[2] : nullptr);
    if (command == "eval")
    {
        int i = 2;
        bool bEcho = false;
        if (i < argc && std::string(argv[i]) == "--echo")
        {
            bEcho = true;
            ++i;
        }
        for (; i < argc; ++i)
        {
            if (std::string(argv[i]) == "-")
            {
                std::string line;
                while (std::getline(std::cin, line))
                    mEvaluateLine(line, bEcho);
            }
            else
                mEvaluateLine(argv[i], bEcho);
        }
        return 0;
    }
    const auto& commands = qeltool::Registry::mInstance().mCommands();
    const auto it = commands.find(command);
    if (it != commands.end())
        return it->second.pfn(argc - 2, argv + 2);
    std::cerr << "qelmath: unknown command '" << command << "'; try 'qelmath help'\n";
    return 2;
}
