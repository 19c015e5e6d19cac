// The distribution enumeration shared by the distribution objects and the
// life-data distributions, with the command words a command language uses
// for each distribution and the tables built on them.
#pragma once

#include "qel/qelexport.h"
#include "qel/qelstrings.h"

// Values 0 to 37, each named after its command word (the word in the
// comment).  A leading T in a word marks the variant with a threshold.  The
// underlying type is fixed so that any int may be passed through the
// functions below and meet their refusals without undefined behaviour.
enum EDistributionType : int
{
    NOT_ENTERED_DIST = 0,     // "NOT_ENTERED"
    NORMAL_DIST = 1,          // "NORMAL"
    LNORMAL_DIST = 2,         // "LNORMAL"
    TLNORMAL_DIST = 3,        // "TLNORMAL"
    SEXTREMEVALUE_DIST = 4,   // "SEXTREMEVALUE"
    LEXTREMEVALUE_DIST = 5,   // "LEXTREMEVALUE"
    WEIBULL_DIST = 6,         // "WEIBULL"
    TWEIBULL_DIST = 7,        // "TWEIBULL"
    EXPONENTIAL_DIST = 8,     // "EXPONENTIAL"
    TEXPONENTIAL_DIST = 9,    // "TEXPONENTIAL"
    LOGISTIC_DIST = 10,       // "LOGISTIC"
    LLOGISTIC_DIST = 11,      // "LLOGISTIC"
    TLLOGISTIC_DIST = 12,     // "TLLOGISTIC"
    GAMMA_DIST = 13,          // "GAMMA"
    TGAMMA_DIST = 14,         // "TGAMMA"
    BETA_DIST = 15,           // "BETA"
    BERNOULLI_DIST = 16,      // "BERNOULLI"
    BINOMIAL_DIST = 17,       // "BINOMIAL"
    CAUCHY_DIST = 18,         // "CAUCHY"
    CHISQUARE_DIST = 19,      // "CHISQUARE"
    DISCRETE_DIST = 20,       // "DISCRETE"
    F_DIST = 21,              // "F"
    GEOMETRIC_DIST = 22,      // "GEOMETRIC"
    HYPERGEOMETRIC_DIST = 23, // "HYPERGEOMETRIC"
    INTEGER_DIST = 24,        // "INTEGER"
    LAMBDA_DIST = 25,         // "LAMBDA"
    LAPLACE_DIST = 26,        // "LAPLACE"
    MNORMAL_DIST = 27,        // "MNORMAL"
    NEGBINOMIAL_DIST = 28,    // "NEGBINOMIAL"
    POISSON_DIST = 29,        // "POISSON"
    T_DIST = 30,              // "T"
    UNIFORM_DIST = 31,        // "UNIFORM"
    TRIANGULAR_DIST = 32,     // "TRIANGULAR"
    HALF_NORMAL_DIST = 33,    // "HALF NORMAL"
    THALF_NORMAL_DIST = 34,   // "THALF NORMAL"
    MAXMOD_DIST = 35,         // "MAXMOD"
    STURANGE_DIST = 36,       // "STURANGE"
    STUMAX_DIST = 37          // "STUMAX"
};

// The type whose command word is rcsName, compared exactly (case and all)
// with the words of the values 1 to 37 in order; then the extra words
// "EXTREME" (5, the largest extreme value, deliberately), "EXTVALUE" (4, the
// smallest), "LOGNORMAL" (2), "LOGLOGISTIC" (11) and "STUDENT" (30).  On a
// match stores the value and returns true; otherwise returns false and
// leaves *peType alone.  "NOT_ENTERED" is not accepted.
QEL_API bool mGetDistributionType(const CmString& rcsName, EDistributionType* peType);

// The command word of a type, for the values 0 to 32 only: the table stops at
// "TRIANGULAR" and the value is not checked, so a caller passes no other.
QEL_API CmString mGetDistributionCmndName(EDistributionType eType);

// The message number of the display name of a type, for the values 0 to 14
// (0 for NOT_ENTERED); a larger value is reported through mAssert ("false")
// and gives 0.  The texts live in the package's message library.
QEL_API unsigned int mGetDistributionLabel(EDistributionType eType);

// True for the families that are the exponential of a location-scale family
// and have no threshold: LNORMAL, WEIBULL, EXPONENTIAL and LLOGISTIC.  False
// for the other values up to 14, the threshold twins included; a value above
// 14 is reported through mAssert ("false") and gives false.
QEL_API bool mIsDistributionLogFamily(EDistributionType eType);
