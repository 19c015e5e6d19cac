// The Poisson kernels: the log of the probability mass, both tails and the
// mass, the two series behind the tails, and the two quantiles.
// Reports go through the kernel error state (kernel_protocol.h).
//
// Routes of poisson_df (kernel_method_code): 1 lambda = 0; upper tail
// computed (k > lambda - 1): 20 series, 21 negligible by its bound,
// 22 negligible after the series, 23 significant after the series; lower
// tail computed: 10, 11, 12, 13 likewise.
#pragma once

#include <cstdint>

// log P(X = k) for X Poisson with mean lambda, into *out.
void poisson_log_pmf(double k, double lambda, double* out);

// lower = P(X <= k), upper = P(X > k), mass = P(X = k).
void poisson_df(std::uint32_t k, double lambda, double* lower, double* upper,
                double* mass);

// I = sum over j >= 1 of lambda^j / ((k+1)...(k+j)), so that
// P(X > k) = P(X = k) I.  Returns 0, or 4 when the series did not end.
int poisson_Ik(std::uint32_t k, double lambda, double* I);

// J = 1 + k/lambda + k(k-1)/lambda^2 + ..., so that P(X <= k) = P(X = k) J.
// Returns 0, or 4 when the series did not end.
int poisson_Jk(std::uint32_t k, double lambda, double* J);

// The smallest k with P(X <= k) >= p, and frac = (p - P(X <= k-1)) / P(X = k),
// for 1e-12 <= p <= 0.5 and 0 <= lambda <= 94906265.
void poisson_lower_quant(double p, double lambda, std::uint32_t* k, double* frac);

// The largest k with P(X >= k) >= p, and frac = (p - P(X > k)) / P(X = k),
// for 1e-12 <= p <= 0.5 and 0 <= lambda <= 94906265.
void poisson_upper_quant(double p, double lambda, std::uint32_t* k, double* frac);
