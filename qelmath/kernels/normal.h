// The normal kernel: density, complementary error function, both tails, the
// upper and lower quantiles, and the starting value of the quantile.
// Reports go through the kernel error state (kernel_protocol.h).
#pragma once

// The standard normal density.
double normal_density(double x);

// erfc(t), through the incomplete gamma ratio of shape one half at t^2.
double normal_erfc(double t);

// Both tails of the standard normal distribution at x.  Every double is
// admissible; on a failure of the nested gamma_df both slots hold
// +1.7976931348623157e+308.
void normal_df(double x, double* lower, double* upper);

// The z with upper tail p, for 1e-100 <= p <= 0.5.
void normal_upper_quant(double p, double* out);

// The z with lower tail p, for 1e-100 <= p < 1.
void inv_normal_df(double p, double* out);

// Starting value of the quantile with lower tail p (Applied Statistics AS 111).
// Takes no part in the kernel error state; p outside (0, 1) sets errno to 33
// and stores -1.7976931348623157e+308.
void normal_quantile_estimate(double p, double* out);
