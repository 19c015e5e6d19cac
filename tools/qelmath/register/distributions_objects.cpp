// Distribution objects in the evaluator: WORD(params).operation(args) in
// expressions, the "random" command, and the free functions of the type
// tables and of multinomial counts.
#include "../registry.h"

#include "qel/dist.h"
#include "qel/distclosedform.h"
#include "qel/distdiscrete.h"
#include "qel/distkernelbacked.h"
#include "qel/uniformgenerator.h"

#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace
{
using qeltool::ArgError;
using qeltool::Call;
using qeltool::Value;

// An error of the expression as a whole, printed as "error: <what>".
struct ObjectError
{
    std::string what;
};

// A number, or an ArgError naming it as the uIndex-th pszWhat ("parameter"
// of the object, "argument" of the operation).
double mNumber(const Value& v, std::size_t uIndex, const char* pszWhat = "parameter")
{
    try
    {
        return qeltool::ArgTraits<double>::mFrom(v);
    }
    catch (const ArgError& e)
    {
        throw ArgError{std::string(pszWhat) + " " + std::to_string(uIndex + 1) + ": " + e.what};
    }
}

bool mFlag(const std::vector<Value>& rvArgs, std::size_t uIndex)
{
    if (uIndex >= rvArgs.size())
        return false;
    try
    {
        return qeltool::ArgTraits<bool>::mFrom(rvArgs[uIndex]);
    }
    catch (const ArgError& e)
    {
        throw ArgError{"parameter " + std::to_string(uIndex + 1) + ": " + e.what};
    }
}

void mExpectCount(const std::vector<Value>& rvArgs, std::size_t uMin, std::size_t uMax,
                  const std::string& rsWhat)
{
    if (rvArgs.size() < uMin || rvArgs.size() > uMax)
        throw ArgError{"takes " + rsWhat};
}

// The object of a command word with its parameters.  The factory makes all
// but three: the negative binomial and geometric objects, whose counting
// mode the factory cannot receive, and the general discrete distribution,
// which takes two vectors; these are made here by their constructors.
std::unique_ptr<CmDist> mMakeObject(const std::string& rsWord, const std::vector<Value>& rvArgs)
{
    EDistributionType eType = NOT_ENTERED_DIST;
    if (!mGetDistributionType(CmString(rsWord), &eType))
        throw ObjectError{"unknown distribution " + rsWord};
    switch (eType)
    {
    case NEGBINOMIAL_DIST:
        mExpectCount(rvArgs, 2, 3, "p, r[, countFailures]");
        return std::make_unique<CmDistNegBinomial>(mNumber(rvArgs[0], 0), mNumber(rvArgs[1], 1),
                                                   mFlag(rvArgs, 2));
    case GEOMETRIC_DIST:
        mExpectCount(rvArgs, 1, 2, "p[, countFailures]");
        return std::make_unique<CmDistGeometric>(mNumber(rvArgs[0], 0), mFlag(rvArgs, 1));
    case DISCRETE_DIST:
        mExpectCount(rvArgs, 2, 2, "[values], [probabilities]");
        return std::make_unique<CmDistDiscrete>(
            qeltool::ArgTraits<std::vector<double>>::mFrom(rvArgs[0]),
            qeltool::ArgTraits<std::vector<double>>::mFrom(rvArgs[1]));
    case MNORMAL_DIST:
    case HALF_NORMAL_DIST:
    case THALF_NORMAL_DIST:
    case MAXMOD_DIST:
    case STURANGE_DIST:
    case STUMAX_DIST:
        throw ObjectError{"no distribution object for " + rsWord};
    default:
        break;
    }
    std::vector<double> vdParameters;
    for (std::size_t i = 0; i < rvArgs.size(); ++i)
        vdParameters.push_back(mNumber(rvArgs[i], i));
    std::unique_ptr<CmDist> p(CmDist::mCreateDist(eType, vdParameters));
    if (!p)
        throw ObjectError{"no distribution object for " + rsWord};
    return p;
}

std::string mVector(const std::vector<double>& rvd)
{
    return qeltool::ResultTraits<std::vector<double>>::mFormat(rvd);
}

std::string mBool(bool b) { return b ? "true" : "false"; }

std::string mCallOperation(const CmDist& rDist, const std::string& rsOp,
                           const std::vector<Value>& rvArgs)
{
    auto number = [&](std::size_t i) { return mNumber(rvArgs[i], i, "argument"); };
    auto count = [&](std::size_t uMin, std::size_t uMax, const char* pszParams) {
        if (rvArgs.size() < uMin || rvArgs.size() > uMax)
            throw ArgError{std::string("takes (") + pszParams + ")"};
    };
    const auto fmt = qeltool::mFormatDouble;
    std::vector<double> v;
    if (rsOp == "mPdf")
        return count(1, 1, "dX"), fmt(rDist.mPdf(number(0)));
    if (rsOp == "mCdf")
    {
        count(1, 2, "dX[, bComplement]");
        return fmt(rDist.mCdf(number(0), rvArgs.size() == 2 && mFlag(rvArgs, 1)));
    }
    if (rsOp == "mInvCdf")
        return count(1, 1, "dP"), fmt(rDist.mInvCdf(number(0)));
    if (rsOp == "mGetRandom")
        return count(0, 0, ""), fmt(rDist.mGetRandom());
    if (rsOp == "mAreParamsValid")
        return count(0, 0, ""), mBool(rDist.mAreParamsValid());
    if (rsOp == "mIsContinuous")
        return count(0, 0, ""), mBool(rDist.mIsContinuous());
    if (rsOp == "mGetSupport")
        return count(2, 2, "dLower, dUpper"), rDist.mGetSupport(number(0), number(1), v), mVector(v);
    if (rsOp == "mGetDRefPoints")
        return count(0, 0, ""), rDist.mGetDRefPoints(v), mVector(v);
    if (rsOp == "mGetParameters")
        return count(0, 0, ""), rDist.mGetParameters(v), mVector(v);
    if (rsOp == "mGetNonInvCDFParameters")
        return count(0, 0, ""), rDist.mGetNonInvCDFParameters(v), mVector(v);
    if (rsOp == "mHasLowerBound")
        return count(0, 0, ""), mBool(rDist.mHasLowerBound());
    if (rsOp == "mGetLowerBound")
        return count(0, 0, ""), fmt(rDist.mGetLowerBound());
    if (rsOp == "mHasUpperBound")
        return count(0, 0, ""), mBool(rDist.mHasUpperBound());
    if (rsOp == "mGetUpperBound")
        return count(0, 0, ""), fmt(rDist.mGetUpperBound());
    throw ObjectError{"unknown operation " + rsOp};
}

std::string mObjectCall(const Call& rCall)
{
    try
    {
        const std::unique_ptr<CmDist> p = mMakeObject(rCall.name, rCall.args);
        const bool bAnswersAnyway = rCall.method == "mAreParamsValid" ||
                                    rCall.method == "mGetParameters";
        if (!bAnswersAnyway && !p->mAreParamsValid())
            return "error: invalid parameters of " + rCall.name;
        return mCallOperation(*p, rCall.method, rCall.methodArgs);
    }
    catch (const ObjectError& e)
    {
        return "error: " + e.what;
    }
}

// qelmath random WORD PARAMS... [--n N] [--base B]
int mRandomCommand(int argc, char** argv)
{
    if (argc < 1)
    {
        std::cerr << "usage: qelmath random WORD PARAMS... [--n N] [--base B]\n";
        return 2;
    }
    std::string expr = std::string(argv[0]) + "(";
    long long llCount = 1;
    bool bBase = false;
    double dBase = 0.0;
    bool bFirst = true;
    for (int i = 1; i < argc; ++i)
    {
        const std::string arg = argv[i];
        if (arg == "--n" || arg == "--base")
        {
            if (i + 1 >= argc)
            {
                std::cerr << "qelmath random: " << arg << " needs a value\n";
                return 2;
            }
            char* pEnd = nullptr;
            const char* pszValue = argv[++i];
            if (arg == "--n")
                llCount = std::strtoll(pszValue, &pEnd, 10);
            else
                dBase = std::strtod(pszValue, &pEnd), bBase = true;
            if (pEnd == pszValue || *pEnd != '\0' || llCount < 0)
            {
                std::cerr << "qelmath random: bad value for " << arg << ": " << pszValue << '\n';
                return 2;
            }
            continue;
        }
        expr += (bFirst ? "" : ", ") + arg;
        bFirst = false;
    }
    expr += ")";
    try
    {
        const Call call = qeltool::mParseCall(expr);
        const std::unique_ptr<CmDist> p = mMakeObject(call.name, call.args);
        if (!p->mAreParamsValid())
        {
            std::cerr << "error: invalid parameters of " << call.name << '\n';
            return 2;
        }
        if (bBase)
            CmUniformGenerator::mInstance()->mSetBase(dBase);
        for (long long k = 0; k < llCount; ++k)
            std::cout << qeltool::mFormatDouble(p->mGetRandom()) << '\n';
        return 0;
    }
    catch (const qeltool::ParseError& e)
    {
        std::cerr << "error: parse: " << e.what << '\n';
    }
    catch (const ArgError& e)
    {
        std::cerr << "error: parse: " << e.what << '\n';
    }
    catch (const ObjectError& e)
    {
        std::cerr << "error: " << e.what << '\n';
    }
    return 2;
}
} // namespace

QEL_EVAL_FUNCTIONS(distributions_objects)
{
    reg.mSetObjectHandler(&mObjectCall);
    reg.mAddCommand("random", &mRandomCommand, "WORD PARAMS... [--n N] [--base B]");

    reg.mAdd("mGetDistributionType", +[](CmString cs) {
        EDistributionType e = NOT_ENTERED_DIST;
        return mGetDistributionType(cs, &e) ? CmString(std::to_string(static_cast<int>(e)))
                                            : CmString("false");
    }, "rcsName (prints the type's value, or false)");
    reg.mAdd("mGetDistributionCmndName", &mGetDistributionCmndName, "eType");
    reg.mAdd("mGetDistributionLabel", &mGetDistributionLabel, "eType");
    reg.mAdd("mIsDistributionLogFamily", &mIsDistributionLogFamily, "eType");
    reg.mAdd("mRandMultinomial", +[](int iTrials, std::vector<double> vdP) {
        std::vector<int> vi;
        mRandMultinomial(iTrials, vdP, vi);
        return vi;
    }, "iTrials, rvdP (prints the counts)");

    // The objects by command word, each with its parameter vector: a value
    // after "=" is the default that a short list takes.
    const std::pair<const char*, const char*> objects[] = {
        {"NORMAL", "location = 0, scale = 1"},
        {"LNORMAL", "location = 0, scale = 1, threshold = 0"},
        {"TLNORMAL", "location = 0, scale = 1, threshold = 0"},
        {"SEXTREMEVALUE", "location = 0, scale = 1"},
        {"LEXTREMEVALUE", "location = 0, scale = 1"},
        {"WEIBULL", "shape = 0, scale = 1, threshold = 0"},
        {"TWEIBULL", "shape = 0, scale = 1, threshold = 0"},
        {"EXPONENTIAL", "scale = 1, threshold = 0"},
        {"TEXPONENTIAL", "scale = 1, threshold = 0"},
        {"LOGISTIC", "location = 0, scale = 1"},
        {"LLOGISTIC", "location = 0, scale = 1, threshold = 0"},
        {"TLLOGISTIC", "location = 0, scale = 1, threshold = 0"},
        {"GAMMA", "shape, scale, threshold = 0"},
        {"TGAMMA", "shape, scale, threshold = 0"},
        {"BETA", "shape1, shape2"},
        {"BERNOULLI", "p"},
        {"BINOMIAL", "trials, p"},
        {"CAUCHY", "location = 0, scale = 1"},
        {"CHISQUARE", "df, noncentrality = 0"},
        {"DISCRETE", "[values], [probabilities]"},
        {"F", "dfNum, dfDenom, noncentrality = 0"},
        {"GEOMETRIC", "p, countFailures = false"},
        {"HYPERGEOMETRIC", "population, successes, sample"},
        {"INTEGER", "lower, upper"},
        {"LAMBDA", "lambda, location = 0, scale = 1"},
        {"LAPLACE", "location = 0, scale = 1"},
        {"NEGBINOMIAL", "p, r, countFailures = false"},
        {"POISSON", "mean"},
        {"T", "df, noncentrality = 0"},
        {"UNIFORM", "lower = 0, upper = 1"},
        {"TRIANGULAR", "lower, mode, upper"}};
    for (const auto& o : objects)
        reg.mAddObject(o.first, o.second);

    const std::pair<const char*, EDistributionType> enumerators[] = {
        {"NOT_ENTERED_DIST", NOT_ENTERED_DIST}, {"NORMAL_DIST", NORMAL_DIST},
        {"LNORMAL_DIST", LNORMAL_DIST}, {"TLNORMAL_DIST", TLNORMAL_DIST},
        {"SEXTREMEVALUE_DIST", SEXTREMEVALUE_DIST}, {"LEXTREMEVALUE_DIST", LEXTREMEVALUE_DIST},
        {"WEIBULL_DIST", WEIBULL_DIST}, {"TWEIBULL_DIST", TWEIBULL_DIST},
        {"EXPONENTIAL_DIST", EXPONENTIAL_DIST}, {"TEXPONENTIAL_DIST", TEXPONENTIAL_DIST},
        {"LOGISTIC_DIST", LOGISTIC_DIST}, {"LLOGISTIC_DIST", LLOGISTIC_DIST},
        {"TLLOGISTIC_DIST", TLLOGISTIC_DIST}, {"GAMMA_DIST", GAMMA_DIST},
        {"TGAMMA_DIST", TGAMMA_DIST}, {"BETA_DIST", BETA_DIST},
        {"BERNOULLI_DIST", BERNOULLI_DIST}, {"BINOMIAL_DIST", BINOMIAL_DIST},
        {"CAUCHY_DIST", CAUCHY_DIST}, {"CHISQUARE_DIST", CHISQUARE_DIST},
        {"DISCRETE_DIST", DISCRETE_DIST}, {"F_DIST", F_DIST},
        {"GEOMETRIC_DIST", GEOMETRIC_DIST}, {"HYPERGEOMETRIC_DIST", HYPERGEOMETRIC_DIST},
        {"INTEGER_DIST", INTEGER_DIST}, {"LAMBDA_DIST", LAMBDA_DIST},
        {"LAPLACE_DIST", LAPLACE_DIST}, {"MNORMAL_DIST", MNORMAL_DIST},
        {"NEGBINOMIAL_DIST", NEGBINOMIAL_DIST}, {"POISSON_DIST", POISSON_DIST},
        {"T_DIST", T_DIST}, {"UNIFORM_DIST", UNIFORM_DIST},
        {"TRIANGULAR_DIST", TRIANGULAR_DIST}, {"HALF_NORMAL_DIST", HALF_NORMAL_DIST},
        {"THALF_NORMAL_DIST", THALF_NORMAL_DIST}, {"MAXMOD_DIST", MAXMOD_DIST},
        {"STURANGE_DIST", STURANGE_DIST}, {"STUMAX_DIST", STUMAX_DIST}};
    for (const auto& e : enumerators)
        reg.mAddEnum(e.first, e.second);
}
