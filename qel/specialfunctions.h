// Digamma and polygamma functions, the incomplete gamma ratios with the
// derivatives of the incomplete gamma integral, and the error function.
//
// These are thin wrappers over the by-reference routines of
// qel/specialroutines.h: Amos's polygamma routine (ACM TOMS 610), GRATIO of
// DiDonato and Morris (ACM TOMS 654), Moore's AS 187 and the error function
// of ACM TOMS 708.  A misuse is reported through mAssert and the computation
// goes on with the argument as given.
#pragma once

#include "qel/qelexport.h"

#include <vector>

// psi(x), x > 0.
QEL_API double mPsi(double dX);

// Fills rvdResults with iTermCt scaled derivatives of psi,
//     (-1)^(k+1) psi^(k)(dX) / k!,  k = iFirstTerm .. iFirstTerm + iTermCt - 1;
// with bScaled the term of order 0 is -psi(dX) + log dX.  The number of terms
// set to 0 by underflow goes to *piUnderflow when the pointer is given.
// Requires dX > 0, iFirstTerm >= 0, 1 <= iTermCt <= 100.
QEL_API void mPsiDerivatives(double dX, int iFirstTerm, bool bScaled, int iTermCt,
                             std::vector<double>& rvdResults, int* piUnderflow);

// The incomplete gamma ratio of shape dP at dX: Q(dP, dX) if bUpper,
// else P(dP, dX).  Requires dX >= 0, dP > 0.
QEL_API double mIncompleteGammaRatio(double dX, double dP, bool bUpper);

// Six values at (dX, dP) of the incomplete gamma integral I(x, p) = P(p, x):
// dI/dx, d2I/dx2, dI/dp, d2I/dp2, d2I/dx dp and I itself, to about six
// significant digits.  Requires dX >= 0, dP > 0.
QEL_API void mIncompleteGammaDerivatives(double dX, double dP, std::vector<double>& rvdResults);

// erfc(dX) if bComplement, else erf(dX).
QEL_API double mErrorFunction(double dX, bool bComplement);
