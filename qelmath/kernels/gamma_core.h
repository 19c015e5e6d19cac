// The incomplete gamma core of the kernels: the regularised tails
// P(a, x) and Q(a, x) with the density, their series, and a Newton refinement
// of a gamma quantile.  Reports go through the kernel error state.
//
// Routes (kernel_method_code after gamma_df):
//   1  x below KERNEL_TINY            2  x above KERNEL_MAX_X
//   lower tail computed: 10 series, 20 negligible by the series bound,
//     40 series and significant, 30 series and negligible;
//   upper tail computed: 50 a < 1 and x < 1, 60 + J route, 70 negligible with
//     a <= 1, 80 negligible by the series bound, 100 + J route significant,
//     90 + J route negligible;
//   J route: 0 finite series, 1 Legendre continued fraction, 2 small-x series.
#pragma once

// P(a, x), Q(a, x) and the density x^(a-1) e^(-x) / Gamma(a).
void gamma_df(double x, double a, double* lower, double* upper, double* density);

// Refines *x so that the tail selected by tail ('L' lower, 'U' upper; any
// other character is taken as 'U') of the gamma distribution with shape a
// equals p.
void gamma_newton(double p, double a, double* x, char tail);

// I(a, x) = sum over k >= 0 of x^k / ((a+1)...(a+k)), so that
// P(a, x) = density * (x / a) * I.  Returns the code: 0, or 4 when the series
// did not end within 1000000 terms.
int gamma_Iax(double a, double x, double* I);

// J(a, x) with Q(a, x) = density * J.  Returns 0, or 4 on failure.
int gamma_Jax(double a, double x, double* J);

// x^(1-p) e^x Gamma(p, x) for 0 <= p < 1.  Returns 0, or 4 when the continued
// fraction did not settle.
int gamma_Jcf(double x, double p, double* out);

// The unnormalised upper tail Gamma(a, x) for a < 1 and x < 1.
double gamma_small_tail(double x, double a);
