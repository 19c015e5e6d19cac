// The logarithm of the gamma function for positive arguments, and the gamma
// function through it.
//
// Lanczos's approximation (C. Lanczos, "A precision approximation of the gamma
// function", SIAM J. Numer. Anal. B 1 (1964) 86-96) with g = 7 and nine
// coefficients:
//     log Gamma(x) = log(c0 + sum_{i=1..8} c_i / (x + i - 1))
//                    + log(sqrt(2 pi)) - t + (x - 0.5) log(t),   t = x + 6.5.
// The coefficients below differ from the commonly printed g = 7 set in their
// last digits; they are the library's own and are kept as they are.  The sum
// is added from the smallest term (i = 8) to the largest, each denominator
// formed as x + i - 1 from left to right, as the form is written.  For small x
// that rounds x in x + 1 before the 1 is taken off again, so the leading term
// c1 / x loses digits: a relative error of about 6e-12 at x = 1e-6.  Callers'
// results are defined by this evaluation, so it is kept.
//
// Accuracy against mpmath on 1e-6 <= x <= 1e6: docs/ACCURACY.md.
#include "qel/elementary.h"

#include "qel/qelexceptions.h"
#include "qel/qelstrings.h"

#include <cmath>

namespace
{

const double kLanczos[9] = {0.9999999999995183,   676.5203681218835,     -1259.139216722289,
                            771.3234287757674,    -176.6150291498386,    12.50734324009056,
                            -0.1385710331296526,  9.934937113930748e-06, 1.659470187408462e-07};

const double kLogSqrtTwoPi = 0.9189385332046727;

} // namespace

double mLogGamma(double dX)
{
    if (dX <= 0.0)
        throw CmInvalidArgument(CmString(L"Gamma of a nonpositive argument."), CmString(__FILE__),
                                __LINE__);
    if (dX == 1.0 || dX == 2.0)
        return 0.0;
    // An argument lost in 7 + x cannot be told apart from 0 by the form below.
    if (7.0 + dX <= 7.0)
        throw CmInvalidArgument(CmString(L"Gamma of a value too close to 0."), CmString(__FILE__),
                                __LINE__);

    double dSum = 0.0;
    for (int i = 8; i >= 1; --i)
        dSum += kLanczos[i] / (dX + i - 1);
    const double dT = dX + 6.5;
    return std::log(kLanczos[0] + dSum) + kLogSqrtTwoPi - dT + (dX - 0.5) * std::log(dT);
}

double mGamma(double dX, bool bThrow) { return mExponential(mLogGamma(dX), bThrow); }
