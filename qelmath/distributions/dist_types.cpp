// The tables of EDistributionType: command words, display-name labels and
// the log families.
#include "qel/disttypes.h"

#include "qel/qelmessaging.h"

#include <iterator>

namespace
{
// The command words by value, 0 to 37.
const char* const kWords[] = {
    "NOT_ENTERED",   "NORMAL",       "LNORMAL",     "TLNORMAL",    "SEXTREMEVALUE",
    "LEXTREMEVALUE", "WEIBULL",      "TWEIBULL",    "EXPONENTIAL", "TEXPONENTIAL",
    "LOGISTIC",      "LLOGISTIC",    "TLLOGISTIC",  "GAMMA",       "TGAMMA",
    "BETA",          "BERNOULLI",    "BINOMIAL",    "CAUCHY",      "CHISQUARE",
    "DISCRETE",      "F",            "GEOMETRIC",   "HYPERGEOMETRIC", "INTEGER",
    "LAMBDA",        "LAPLACE",      "MNORMAL",     "NEGBINOMIAL", "POISSON",
    "T",             "UNIFORM",      "TRIANGULAR",  "HALF NORMAL", "THALF NORMAL",
    "MAXMOD",        "STURANGE",     "STUMAX"};
static_assert(std::size(kWords) == 38, "one word per value 0 to 37");

// mGetDistributionCmndName reads the table up to TRIANGULAR only.
constexpr int kLastNamedType = 32;

// Words accepted besides the table.  "EXTREME" is the largest extreme value
// and "EXTVALUE" the smallest: the pairing is old and deliberate.
struct ExtraWord
{
    const char* pszWord;
    EDistributionType eType;
};
const ExtraWord kExtraWords[] = {{"EXTREME", LEXTREMEVALUE_DIST},
                                 {"EXTVALUE", SEXTREMEVALUE_DIST},
                                 {"LOGNORMAL", LNORMAL_DIST},
                                 {"LOGLOGISTIC", LLOGISTIC_DIST},
                                 {"STUDENT", T_DIST}};

// Message numbers of the display names, values 0 to 14.
const unsigned int kLabels[] = {0,     50197, 50196, 50200, 50198, 50205, 50199, 50202,
                                50192, 50201, 50194, 50195, 50204, 50193, 50203};
static_assert(std::size(kLabels) == 15, "one label per value 0 to 14");
} // namespace

bool mGetDistributionType(const CmString& rcsName, EDistributionType* peType)
{
    const std::string& rsName = rcsName.mGetString();
    for (int i = 1; i < static_cast<int>(std::size(kWords)); ++i)
    {
        if (rsName == kWords[i])
        {
            *peType = static_cast<EDistributionType>(i);
            return true;
        }
    }
    for (const ExtraWord& rExtra : kExtraWords)
    {
        if (rsName == rExtra.pszWord)
        {
            *peType = rExtra.eType;
            return true;
        }
    }
    return false;
}

CmString mGetDistributionCmndName(EDistributionType eType)
{
    const int i = static_cast<int>(eType);
    // Callers pass 0 to 32 only; anything else is reported and gives an
    // empty word rather than a read beyond the table.
    if (i < 0 || i > kLastNamedType)
    {
        QEL_ASSERT_FALSE();
        return CmString();
    }
    return CmString(kWords[i]);
}

unsigned int mGetDistributionLabel(EDistributionType eType)
{
    const int i = static_cast<int>(eType);
    if (i < 0 || i >= static_cast<int>(std::size(kLabels)))
    {
        QEL_ASSERT_FALSE();
        return 0;
    }
    return kLabels[i];
}

bool mIsDistributionLogFamily(EDistributionType eType)
{
    switch (eType)
    {
    case LNORMAL_DIST:
    case WEIBULL_DIST:
    case EXPONENTIAL_DIST:
    case LLOGISTIC_DIST:
        return true;
    default:
        break;
    }
    const int i = static_cast<int>(eType);
    if (i < 0 || i > static_cast<int>(TGAMMA_DIST))
        QEL_ASSERT_FALSE();
    return false;
}
