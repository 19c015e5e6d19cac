// The incomplete beta ratio I_x(a, b) and its method routines, after
// DiDonato and Morris, "Algorithm 708: Significant digit computation of the
// incomplete beta function ratios", ACM TOMS 18 (1992).
//
// Every argument is passed by address, in the manner of the publication.  The
// routines are internal to the library: the public face is
// mIncompleteBetaRatio (qel/incompletebeta.h); code linked with the library's
// objects (its tests) may call them directly.  The names are undecorated.
#pragma once

extern "C"
{

    // w = I_x(a, b), w1 = 1 - w, with y = 1 - x given by the caller.  ierr: 0 on
    // success; 1 a or b negative, infinite or NaN; 2 a = b = 0; 3 x outside
    // [0, 1] or NaN; 4 y outside [0, 1] or NaN; 5 |x + y - 1| above
    // 3 max(SPMPAR(1), 1e-15); 6 x = a = 0; 7 y = b = 0.  On an error w = w1 = 0.
    void BRATIO(double* a, double* b, double* x, double* y, double* w, double* w1, int* ierr);

    // I_{1-x}(b, a) for a <= min(eps, eps b), b x <= 1, x <= 0.5: very small a.
    double APSER(double* a, double* b, double* x, double* eps);

    // I_x(a, b) by the power series, for b <= 1 or b x <= 0.7.
    double BPSER(double* a, double* b, double* x, double* eps);

    // I_x(a, b) for b < min(eps, eps a) and x <= 0.5: very small b.
    double FPSER(double* a, double* b, double* x, double* eps);

    // I_x(a, b) - I_x(a + n, b) for a positive whole n.
    double BUP(double* a, double* b, double* x, double* y, int* n, double* eps);

    // I_x(a, b) by the continued fraction, for a, b > 1 and
    // lambda = (a + b) y - b >= 0.
    double BFRAC(double* a, double* b, double* x, double* y, double* lambda, double* eps);

    // I_x(a, b) by the asymptotic expansion for large a and b, with
    // lambda = (a + b) y - b >= 0 (a, b >= 15 assumed).
    double BASYM(double* a, double* b, double* lambda, double* eps);

    // Adds to *w the asymptotic expansion of I_x(a, b) for large a and b <= 1
    // (a >= 15 assumed).  *ierr 0 on success, 1 when the expansion cannot be
    // formed (then *w is unchanged).
    void BGRAT(double* a, double* b, double* x, double* y, double* w, double* eps, int* ierr);

    // x^a y^b / B(a, b).
    double BRCOMP(double* a, double* b, double* x, double* y);

    // exp(mu) x^a y^b / B(a, b).
    double BRCMP1(int* mu, double* a, double* b, double* x, double* y);

} // extern "C"
