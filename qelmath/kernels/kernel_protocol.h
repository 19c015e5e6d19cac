// The error protocol shared by every distribution kernel, and the constants
// that all kernel families use.
//
// A kernel reports how it went through one small error state, never through
// an exception or a message:
//   * kernel_enter(name) starts an entry routine: code 0, name recorded;
//   * kernel_raise(name, code, 'N') only ever raises the severity, while
//     kernel_raise(name, code, 'F') sets it outright, also downward;
//   * kernel_take_failure() reads and clears the code and tells the caller
//     whether it was a failure (2 or more); code 1, a result that lost its
//     significance and was set to 0, counts as success.
// The state and the diagnostics are thread_local: each thread has its own, and
// within one thread the protocol above holds unchanged.  Kernels allocate
// nothing, throw nothing and print nothing.
#pragma once

#include <cstdint>

// Severity of the worst condition since the last reset: 0 none, 1 loss of
// significance (result set to 0), 2 argument out of range, 3 invalid
// combination of parameters, 4 internal failure of the algorithm.
extern thread_local std::int32_t kernel_error_code;

// Name of the routine that last entered or reported, NUL-terminated.
constexpr int KERNEL_ROUTINE_NAME_SIZE = 32;
extern thread_local char kernel_routine_name[KERNEL_ROUTINE_NAME_SIZE];

// The texts of the five codes, indexed by code, for whoever inspects the state.
constexpr int KERNEL_ERROR_MESSAGE_COUNT = 5;
extern const char* const kernel_error_messages[KERNEL_ERROR_MESSAGE_COUNT];

// Diagnostics: the route a kernel took, the length of its last series, and
// the first and last index of a noncentral sum (or the length of a secondary
// series).  No result depends on them.
extern thread_local std::int32_t kernel_method_code;
extern thread_local std::int32_t kernel_terms;
extern thread_local std::int32_t kernel_terms_a;
extern thread_local std::int32_t kernel_terms_b;

// Natural log of KERNEL_TINY: a log-probability below it is taken as zero.
constexpr double KERNEL_LOG_FLOOR = -662.34472;
// Natural log of the largest double.
constexpr double KERNEL_LOG_CEILING = 709.78271;
// Smallest argument treated as nonzero.
constexpr double KERNEL_TINY = 2.2250738585072014e-288;
// Largest shape, mean or count: the integer part of the square root of 2^53.
constexpr double KERNEL_MAX_PARAM = 94906265.0;
// Largest x kept for a gamma argument, and largest chi-square degrees of
// freedom: twice KERNEL_MAX_PARAM.
constexpr double KERNEL_MAX_X = 189812530.0;
// Stopping term of the series of the gamma family, and Newton tolerance.
constexpr double KERNEL_SERIES_EPS = 1e-9;
// Smallest tail probability accepted by a quantile routine.
constexpr double KERNEL_MIN_P = 1e-12;

// The largest double.  It stands in a result slot after a failure: negative
// from the quantile routines, positive in both tails from normal_df.
constexpr double KERNEL_SENTINEL = 1.7976931348623157e+308;

void kernel_enter(const char* routine);
void kernel_raise(const char* routine, int code, char mode);
bool kernel_take_failure();

// Zeroes kernel_method_code and the three counters; entry routines call it
// after kernel_enter.
void kernel_clear_diagnostics();
