// The chi-square kernels: noncentral distribution function and quantiles, as
// gamma kernels of half the degrees of freedom at half the argument.
// Reports go through the kernel error state (kernel_protocol.h).
#pragma once

// Lower and upper tails of the noncentral chi-square distribution with df
// degrees of freedom and noncentrality delta at x.
void chi2_ncdf(double x, double df, double delta, double* lower, double* upper);

// The x whose upper tail is p, for 1e-12 <= p <= 0.5 and 0 < df < 189812530.
void chi2_upper_quant(double p, double df, double* x);

// The x whose lower tail is p, for 1e-12 <= p <= 0.5 and 0 < df < 189812530.
void chi2_lower_quant(double p, double df, double* x);
