// The beta kernels: both tails and the density of the beta distribution, the
// two series behind the tails and the continued fraction that closes one of
// them, the noncentral forms (Poisson mixtures in the first or in the second
// shape), Newton refinement and the quantiles, with their helpers.
// Reports go through the kernel error state (kernel_protocol.h).
//
// Routes (kernel_method_code):
//   beta_df: 1 x below KERNEL_TINY, 2 x = 1, 3 a shape below 1.5e-12 (mass at
//     the ends); lower tail computed: 10 series, 15 series and negligible,
//     40 series past its bound and significant, 30 the same and negligible,
//     20 negligible without the series; upper tail computed: 50 small-shape
//     tail, 60 + J route, 70 negligible by its bound, 90 + J route past the
//     bound and significant, 80 + J route the same and negligible;
//     J route: 0 finite series, 1 continued fraction, 2 small-x tail.
//   beta_search and beta_right_start: the row of the search (11, 12, 20,
//     31, 32, 33, 41, 42, 43, 44, 51, 52, 61, 62, 71, 72, 81, 82, 83, 91, 92,
//     93).
//   beta_ncdf: 0 at the start (1000 for beta_ncdf2); the lower sum adds
//     11 series failed, 12 peak below the log floor, 13 done; the upper sum
//     21 series failed, 22 peak search ran out, 23 peak below the floor,
//     24 done; beta_ncdf2 mirrors these (lower 11, 12, 13, 14; upper 21, 22,
//     23); 100 is added when a sum passed 0.9 and the opposite sum followed.
#pragma once

// log of the beta density x^(a-1) (1-x)^(b-1) / B(a, b), into *out.
void beta_log_pdf(double a, double b, double x, double* out);

// Lower tail, upper tail and density of Beta(a, b) at x.  The density is -1
// where it is not given (x at an end, or a shape so small that the mass sits
// at the ends).
void beta_df(double x, double a, double b, double* lower, double* upper, double* density);

// I with lower tail = density I.  Returns 0, or 4 on failure.
int beta_Iabx(double a, double b, double x, double* I);

// J with upper tail = density ((1 - x) / b) J.  Returns 0, or 4 on failure.
int beta_Jabx(double a, double b, double x, double* J);

// The base of J for a fractional first shape 0 <= p < 1 and second shape q.
// Returns 0, or 4 when the continued fraction did not settle.
int beta_Jcf(double p, double q, double x, double* out);

// log(Gamma(b) b^a / Gamma(a + b)), meant for small a.
double beta_ln_ratio(double a, double b);

// Polygamma functions of orders 0, 1 and 2 for x > 0.
double digamma_fn(double x);
double trigamma_fn(double x);
double tetragamma_fn(double x);

// The upper tail times B(a, b) b^a, for a < 1 and x b < 1.
double beta_small_tail(double x, double a, double b);

// A rough median of Beta(a, b), used to choose the tail that is summed.
double beta_median_guess(double a, double b);

// Refines *x so that the tail selected by tail ('L' lower, any other
// character upper) of Beta(a, b) equals p.
void beta_newton(double p, double a, double b, double* x, char tail);

// Starting values of a beta quantile: mode -1 (lower tail p) and 1 (upper
// tail p) give two power-law values near 0 in *first and *second; mode -2
// (lower tail p) and 2 (upper tail p) give a normal-based expansion in *first
// and leave *second as it was.
void beta_start(double p, double a, double b, int mode, double* first, double* second);

// The lower quantile x of Beta(a, b) at p, and y = 1 - x.
void beta_search(double p, double a, double b, double* x, double* y);

// The x near 0 with upper tail p of Beta(a, b).
void beta_right_start(double p, double a, double b, double* x);

// The x with lower (upper) tail p, for 1e-12 <= p <= 0.5 and shapes in
// [0.001, 94906265).
void beta_lower_quant(double p, double a, double b, double* x);
void beta_upper_quant(double p, double a, double b, double* x);

// Tails of the Poisson(delta) mixture of Beta(a + j, b) at x.
void beta_ncdf(double x, double a, double b, double delta, double* lower, double* upper);

// Tails of the Poisson(delta) mixture of Beta(a, b + j) at x.
void beta_ncdf2(double x, double a, double b, double delta, double* lower, double* upper);
