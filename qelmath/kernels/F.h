// The F kernels: noncentral distribution function and central quantiles, as
// beta kernels of half the degrees of freedom.
// Reports go through the kernel error state (kernel_protocol.h).
#pragma once

// Lower and upper tails of the F distribution with df1 and df2 degrees of
// freedom and noncentrality delta at x; delta = 0 is the central F.
void F_ncdf(double x, double df1, double df2, double delta, double* lower, double* upper);

// The x with upper (lower) tail p, for 1e-12 <= p <= 0.5, the smaller df at
// least 0.002 and the larger at most 189812530; otherwise
// x = -1.7976931348623157e+308, code 2.  Both report under "F_upper_qt".
void F_upper_qt(double p, double df1, double df2, double* x);
void F_lower_qt(double p, double df1, double df2, double* x);
