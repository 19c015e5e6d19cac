// Numeric helpers of the distribution kernels: a guarded exp(x) - 1, log(1 + x)
// for small x, the gamma function and its logarithm by Stirling's series, the
// Stirling remainder of a factorial, (1 - Gamma(1 + x)) / x, and the log of the
// gamma density computed without cancellation.
//
// The kernels do not use the public special functions; these routines are
// their own.  A domain error sets errno to 33 (EDOM) and an overflow to 34
// (ERANGE); each routine then returns the value given with it.  Nothing reads
// errno afterwards: it is a record for whoever looks.
#pragma once

// exp(x) - 1.  Outside [-662.34472, 709.78271]: errno 33 and
// -1.7976931348623157e+308.  Otherwise errno 0.
double expm1_guarded(double x);

// log(1 + x).  x <= -1: errno 33 and -1.7976931348623157e+308.
double ln_1_plus(double x);

// Gamma(x).  x <= 0: errno 33 and 0; overflow: errno 34 and the largest double.
double gamma_fn(double x);

// log Gamma(x).  x <= 0: errno 33 and -1.7976931348623157e+308.
double ln_gamma(double x);

// log Gamma(x + 1) - x log x + x.  x < 0: errno 33 and the largest double.
double stirling_rem(double x);

// (1 - Gamma(1 + x)) / x for 0 <= x <= 1; outside: errno 33 and the largest
// double.
double gamma_one_minus(double x);

// log of the gamma density x^(a-1) e^(-x) / Gamma(a), into *out.
void gamma_log_pdf(double a, double x, double* out);
