// The binomial kernels: the log of the probability mass, both tails and the
// mass, the two series behind the tails, and the two quantiles with the
// fraction of the step at which the probability falls.
// Reports go through the kernel error state (kernel_protocol.h).
//
// Routes of binomial_df (kernel_method_code): 1 n = 0, 2 p = 0, 3 p = 1,
// 4 k = n; otherwise 100, plus 100 when p > 0.5 and the reflected problem was
// solved, plus: lower tail computed 10 series, 11 negligible by its bound,
// 12 negligible after the series, 13 significant after the series; upper tail
// computed 20, 21, 22, 23 likewise.
// Routes of the quantiles: 1 p = 0, 2 p = 1, 3 lower quantile found, 4 upper
// quantile found.
#pragma once

#include <cstdint>

// log P(X = k) for X binomial with n trials and success probability p,
// 0 < p < 1 and k <= n, into *out.
void binomial_log_pmf(std::uint32_t k, std::uint32_t n, double p, double* out);

// lower = P(X <= k), upper = P(X > k), mass = P(X = k).
void binomial_df(std::uint32_t k, std::uint32_t n, double p, double* lower, double* upper,
                 double* mass);

// I = sum over i >= 1 of P(X = k + i) / P(X = k), so that P(X > k) = mass I.
// Returns 0, or 4 when the series did not end.
int binomial_Ik(std::uint32_t k, std::uint32_t n, double p, double* I);

// J = sum over i >= 0 of P(X = k - i) / P(X = k), so that P(X <= k) = mass J.
// Returns 0, or 4 when the series did not end.
int binomial_Jk(std::uint32_t k, std::uint32_t n, double p, double* J);

// The smallest k with P(X <= k) >= q, and frac = (q - P(X <= k-1)) / P(X = k),
// for 1e-12 <= q <= 0.5, 0 < n < 94906266 and 0 <= p <= 1.
void binomial_lower_quant(double q, std::uint32_t n, double p, std::uint32_t* k, double* frac);

// The largest k with P(X >= k) >= q, and frac = (q - P(X > k)) / P(X = k),
// for the same arguments.
void binomial_upper_quant(double q, std::uint32_t n, double p, std::uint32_t* k, double* frac);
