// The by-reference special-function routines: log gamma and gamma, digamma and
// polygamma, the machine-constant tables, the helpers of the incomplete gamma
// and beta ratios, the incomplete gamma ratio itself, the error function and
// the derivatives of the incomplete gamma integral.
//
// Every argument is passed by address, as a by-reference caller passes it, and
// every name is exported undecorated.  The routines follow
//   * DiDonato and Morris, ACM TOMS 654 (incomplete gamma ratios) and
//     ACM TOMS 708 (incomplete beta ratios and their helpers),
//   * Amos, ACM TOMS 610 (polygamma functions),
//   * Moore, Applied Statistics AS 187 (derivatives of the incomplete gamma
//     integral).
// None of them reports a bad argument: out of range, a routine returns what its
// formula gives, or the failure value its publication names.
#pragma once

#include "qel/qelexport.h"

extern "C" {

// ---------------------------------------------------------------------------
// Machine constants.  The tables are indexed from 1; an index outside a table
// gives 0.

// 14: binary digits of a double; 15: smallest exponent; 16: largest exponent.
QEL_API int I1MACH(int* i);
// 4: relative spacing of doubles; 5: log10 of 2.
QEL_API double D1MACH(int* i);
// 1 to 10: base, digits and largest value of int; base, digits and exponent
// limits of single and of double precision.
QEL_API int IPMPAR(int* i);
// 1: relative precision; 2: smallest positive magnitude; 3: largest magnitude.
QEL_API double SPMPAR(int* i);
// *l == 0: the largest w with exp(w) representable; otherwise the smallest.
QEL_API double EXPARG(int* l);

// ---------------------------------------------------------------------------
// Log gamma and gamma by the library's Lanczos sum.

QEL_API double XGAMMLN(double* x);
QEL_API double GAMMLN(double* x);
QEL_API double XGAMMA(double* x);
QEL_API double GAMMA(double* x);

// ---------------------------------------------------------------------------
// Polygamma (Amos, ACM TOMS 610): ans[k] = (-1)^(k+n+1) psi^(n+k)(x) / (n+k)!
// for k = 0 .. m-1; with kode = 2 the term of order 0 is -psi(x) + log x.
// nz counts terms set to zero by underflow, ierr is the publication's code.

QEL_API void XDPSIFN(double* x, int* n, int* kode, int* m, double* ans, int* nz, int* ierr);
QEL_API void DPSIFN(double* x, int* n, int* kode, int* m, double* ans, int* nz, int* ierr);

// Digamma through DPSIFN.
QEL_API double PSI(double* x);

// ---------------------------------------------------------------------------
// Helpers of DiDonato and Morris, ACM TOMS 708.

// log Gamma(a), a > 0.
QEL_API double GAMLN(double* a);
// log Gamma(1 + a), -0.2 <= a <= 1.25.
QEL_API double GAMLN1(double* a);
// 1/Gamma(a + 1) - 1, -0.5 <= a <= 1.5.
QEL_API double GAM1(double* a);
// log(Gamma(b) / Gamma(a + b)), b >= 8.
QEL_API double ALGDIV(double* a, double* b);
// log(1 + a).
QEL_API double ALNREL(double* a);
// del(a) + del(b) - del(a + b), a, b >= 8, del the remainder of Stirling's
// series for log gamma.
QEL_API double BCORR(double* a, double* b);
// log of the beta function B(a, b).
QEL_API double BETALN(double* a, double* b);
// log Gamma(a + b), 1 <= a, b <= 2.
QEL_API double GSUMLN(double* a, double* b);

// ---------------------------------------------------------------------------
// Incomplete gamma ratio (DiDonato and Morris, ACM TOMS 654) and its helpers.

// ans = P(a, x), qans = Q(a, x); ind 0: 14 digits, 1: 6 digits, else 3.
// ans = 2 marks an argument out of range.
QEL_API void XGRATIO(double* a, double* x, double* ans, double* qans, int* ind);
QEL_API void GRATIO(double* a, double* x, double* ans, double* qans, int* ind);
// P and Q for a <= 1; r = exp(-x) x^a / Gamma(a) is supplied by the caller.
QEL_API void GRAT1(double* a, double* x, double* r, double* p, double* q, double* eps);

// erf(x).
QEL_API double ERF(double* x);
// ind 0: erfc(x); otherwise exp(x*x) erfc(x).
QEL_API double ERFC1(int* ind, double* x);
// x - 1 - log x.
QEL_API double RLOG(double* x);
// x - log(1 + x).
QEL_API double RLOG1(double* x);
// exp(x) - 1.
QEL_API double REXP(double* x);
// exp(mu + x).
QEL_API double ESUM(int* mu, double* x);

// ---------------------------------------------------------------------------
// Derivatives of the incomplete gamma integral (Applied Statistics AS 187).
// d[0..5]: d/dx, d2/dx2, d/dp, d2/dp2, d2/dx dp, and the integral itself.
// The caller supplies log Gamma(p), log Gamma(p + 1), psi(p), psi(p + 1),
// psi'(p), psi'(p + 1).  ifault 0 is success.
QEL_API void DIGAMI(double* d, double* x, double* p, double* gplog, double* gp1log, double* psip,
                    double* psip1, double* psidp, double* psidp1, int* ifault);

} // extern "C"
