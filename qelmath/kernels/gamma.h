// The noncentral gamma distribution function and the gamma quantiles of the
// distribution kernels.  Reports go through the kernel error state
// (kernel_protocol.h); the central tails are gamma_df of gamma_core.h.
//
// Routes (kernel_method_code):
//   gamma_ncdf: 1 x = 0, 2 x above KERNEL_MAX_X; otherwise the route of the
//     sum computed last: lower sum 11 series failed, 12 peak below the log
//     floor, 13 done; upper sum 21 series failed, 22 peak search ran out,
//     23 peak below the log floor, 24 done; 100 added when the sum passed 0.9
//     and the opposite sum was computed instead.
//   gamma_upper_quant: 0 shape negligible, 1 a <= 1 and start at 1, 2 a <= 1
//     and below the log floor, 3 a <= 1 and start below 1e-9, 4 a <= 1 and
//     refined, 5 Cornish-Fisher start, 6 refined from it.
//   gamma_lower_quant: 0 shape negligible, 1 below the log floor, 2 start
//     below 1e-9, 3 a <= 1 and refined, 4 1 < a <= 10 and refined,
//     5 Cornish-Fisher start, 6 refined from it.
#pragma once

// P and Q of the noncentral gamma distribution of shape a and noncentrality
// delta: the Poisson(delta) mixture of gamma distributions of shape a + j.
// For 0 <= a <= 94906265, x >= 0, delta >= 0 with
// a + delta + 6.1738 sqrt(delta) <= 94906265.  A delta below KERNEL_TINY is
// the central distribution (gamma_df), an x below it the point 0.
void gamma_ncdf(double x, double a, double delta, double* lower, double* upper);

// The x with Q(a, x) = p, for 1e-12 <= p <= 0.5 and 0 < a < 94906265.
void gamma_upper_quant(double p, double a, double* x);

// The x with P(a, x) = p, for 1e-12 <= p <= 0.5 and 0 < a < 94906265.
void gamma_lower_quant(double p, double a, double* x);
