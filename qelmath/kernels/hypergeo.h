// The hypergeometric kernels: the log of the probability mass, both tails and
// the mass, the two series behind the tails, and the two quantiles with the
// fraction of the step at which the probability falls.
// X counts the successes in n draws without replacement from a population of
// N holding M successes.  All four counts are unsigned 32-bit integers.
// Reports go through the kernel error state (kernel_protocol.h).
//
// Routes of hypergeo_df (kernel_method_code): 1 n = 0, 2 n = N, 3 M = 0,
// 4 M = N; otherwise 100 (no reflection, or k at the top of the support),
// 200 (M reflected), 300 (n reflected), 400 (both reflected), plus what
// hypergeo_core adds: 5 k above the support, 6 k at its top; lower tail
// computed 10 series, 11 negligible by its bound, 12 negligible after the
// series, 13 significant after the series; upper tail 20, 21, 22, 23 likewise.
// Routes of the quantiles: 1 lower quantile found, 2 upper quantile found.
#pragma once

#include <cstdint>

// log P(X = k) into *out, for counts inside the support.
void hypergeo_log_pmf(std::uint32_t k, std::uint32_t N, std::uint32_t M, std::uint32_t n,
                      double* out);

// lower = P(X <= k), upper = P(X > k), mass = P(X = k), for
// 2 <= N < 94906266, M <= N, n <= N, k <= n, k <= M and n - k <= N - M.
void hypergeo_df(std::uint32_t k, std::uint32_t N, std::uint32_t M, std::uint32_t n, double* lower,
                 double* upper, double* mass);

// The working routine of hypergeo_df once trivial cases and reflections are
// done: adds its route to kernel_method_code and forces its code.
void hypergeo_core(std::uint32_t k, std::uint32_t N, std::uint32_t M, std::uint32_t n,
                   double* lower, double* upper, double* mass);

// I = sum over i >= 1 of P(X = k + i) / P(X = k), so that P(X > k) = mass I.
// Returns 0, or 4 when the series was not done within 100000 terms.
int hyper_Ik(std::uint32_t k, std::uint32_t N, std::uint32_t M, std::uint32_t n, double* I);

// J = sum over i >= 0 of P(X = k - i) / P(X = k), so that P(X <= k) = mass J.
// Returns 0, or 4 when the series was not done within 100000 terms.
int hyper_Jk(std::uint32_t k, std::uint32_t N, std::uint32_t M, std::uint32_t n, double* J);

// The smallest k with P(X <= k) >= q, and frac = (q - P(X <= k-1)) / P(X = k),
// for 1e-12 <= q <= 0.5, 2 <= N < 94906266, 0 < M < N and 0 < n < N.
void hypergeo_lower_quant(double q, std::uint32_t N, std::uint32_t M, std::uint32_t n,
                          std::uint32_t* k, double* frac);

// The largest k with P(X >= k) >= q, and frac = (q - P(X > k)) / P(X = k),
// for the same arguments.
void hypergeo_upper_quant(double q, std::uint32_t N, std::uint32_t M, std::uint32_t n,
                          std::uint32_t* k, double* frac);
