// The kernel error protocol: constants, message texts, reset on entry, the
// raise-only and force modes, read-and-clear with code 1 as success, and one
// state per thread.
#include "qelmath/kernels/kernel_protocol.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <thread>

namespace
{
// Leaves the calling thread's state as a fresh thread has it.
void mResetState()
{
    kernel_enter("");
    kernel_clear_diagnostics();
}
} // namespace

TEST(KernelProtocol, ConstantsHaveTheirExactValues)
{
    EXPECT_EQ(KERNEL_LOG_FLOOR, -662.34472);
    EXPECT_EQ(KERNEL_LOG_CEILING, 709.78271);
    EXPECT_EQ(KERNEL_TINY, 2.2250738585072014e-288);
    EXPECT_EQ(KERNEL_MAX_PARAM, 94906265.0);
    EXPECT_EQ(KERNEL_MAX_X, 189812530.0);
    EXPECT_EQ(KERNEL_SERIES_EPS, 1e-9);
    EXPECT_EQ(KERNEL_MIN_P, 1e-12);
    EXPECT_EQ(KERNEL_SENTINEL, 1.7976931348623157e+308);
    EXPECT_EQ(KERNEL_SENTINEL, std::numeric_limits<double>::max());
}

TEST(KernelProtocol, ConstantsKeepTheirRelations)
{
    // The floor is the log of the tiny argument, the ceiling that of the
    // largest double, both to the digits given.
    EXPECT_NEAR(std::log(KERNEL_TINY), KERNEL_LOG_FLOOR, 5e-6);
    EXPECT_NEAR(std::log(KERNEL_SENTINEL), KERNEL_LOG_CEILING, 5e-6);
    EXPECT_EQ(KERNEL_MAX_X, 2.0 * KERNEL_MAX_PARAM);
    EXPECT_EQ(KERNEL_MAX_PARAM, std::floor(std::sqrt(9007199254740992.0)));
}

TEST(KernelProtocol, MessagesAreIndexedByCodeAndSpelledExactly)
{
    EXPECT_STREQ(kernel_error_messages[0], "no errors detected");
    EXPECT_STREQ(kernel_error_messages[1], "partial loss of significance (result set to 0)");
    EXPECT_STREQ(kernel_error_messages[2], "argument out of admissable range");
    EXPECT_STREQ(kernel_error_messages[3], "invalid combination of parameters");
    EXPECT_STREQ(kernel_error_messages[4], "internal failure of algorithm");
    EXPECT_EQ(sizeof(kernel_routine_name), 32u);
}

TEST(KernelProtocol, EnterClearsTheCodeAndRecordsTheName)
{
    kernel_raise("earlier", 3, 'F');
    kernel_enter("normal_df");
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_STREQ(kernel_routine_name, "normal_df");
    mResetState();
}

TEST(KernelProtocol, NormalModeOnlyRaisesSeverity)
{
    kernel_enter("first");
    kernel_raise("failing", 2, 'N');
    EXPECT_EQ(kernel_error_code, 2);
    EXPECT_STREQ(kernel_routine_name, "failing");

    kernel_raise("x", 1, 'N');
    EXPECT_EQ(kernel_error_code, 2);
    EXPECT_STREQ(kernel_routine_name, "failing");

    // The same code again changes nothing either, name included.
    kernel_raise("y", 2, 'N');
    EXPECT_EQ(kernel_error_code, 2);
    EXPECT_STREQ(kernel_routine_name, "failing");

    kernel_raise("worse", 4, 'N');
    EXPECT_EQ(kernel_error_code, 4);
    EXPECT_STREQ(kernel_routine_name, "worse");
    mResetState();
}

TEST(KernelProtocol, NormalEndOfARoutineLeavesANestedFailureInPlace)
{
    kernel_enter("outer");
    kernel_raise("inner", 2, 'F');
    kernel_raise("outer", 0, 'N');
    EXPECT_EQ(kernel_error_code, 2);
    EXPECT_STREQ(kernel_routine_name, "inner");
    mResetState();
}

TEST(KernelProtocol, ForceModeSetsTheCodeOutrightAlsoDownward)
{
    kernel_enter("k");
    kernel_raise("k", 2, 'F');
    kernel_raise("x", 0, 'F');
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_STREQ(kernel_routine_name, "x");

    kernel_raise("k", 4, 'F');
    kernel_raise("z", 1, 'F');
    EXPECT_EQ(kernel_error_code, 1);
    EXPECT_STREQ(kernel_routine_name, "z");
    mResetState();
}

TEST(KernelProtocol, TakeFailureCountsCodeOneAsSuccessAndClears)
{
    kernel_enter("k");
    kernel_raise("k", 1, 'F');
    EXPECT_FALSE(kernel_take_failure());
    EXPECT_EQ(kernel_error_code, 0);

    kernel_raise("k", 3, 'F');
    EXPECT_TRUE(kernel_take_failure());
    EXPECT_EQ(kernel_error_code, 0);
    EXPECT_FALSE(kernel_take_failure());

    for (int code = 2; code <= 4; ++code)
    {
        kernel_raise("k", code, 'F');
        EXPECT_TRUE(kernel_take_failure()) << "code " << code;
        EXPECT_EQ(kernel_error_code, 0);
    }
    EXPECT_FALSE(kernel_take_failure());
    mResetState();
}

TEST(KernelProtocol, NameLongerThanTheBufferIsCutAndTerminated)
{
    const std::string sLong(40, 'n');
    kernel_enter(sLong.c_str());
    EXPECT_EQ(std::strlen(kernel_routine_name), 31u);
    EXPECT_EQ(std::string(kernel_routine_name), sLong.substr(0, 31));
    mResetState();
}

TEST(KernelProtocol, ClearDiagnosticsZeroesRouteAndCounters)
{
    kernel_method_code = 61;
    kernel_terms = 5;
    kernel_terms_a = 6;
    kernel_terms_b = 7;
    kernel_clear_diagnostics();
    EXPECT_EQ(kernel_method_code, 0);
    EXPECT_EQ(kernel_terms, 0);
    EXPECT_EQ(kernel_terms_a, 0);
    EXPECT_EQ(kernel_terms_b, 0);
}

TEST(KernelProtocol, EachThreadHasItsOwnState)
{
    kernel_enter("main_thread");
    kernel_raise("main_thread", 3, 'F');
    kernel_method_code = 42;

    int iSeenCode = -1;
    int iSeenRoute = -1;
    std::string sSeenName = "unset";
    int iCodeAfter = -1;
    std::thread worker([&] {
        iSeenCode = kernel_error_code;
        iSeenRoute = kernel_method_code;
        sSeenName = kernel_routine_name;
        kernel_enter("worker");
        kernel_raise("worker", 4, 'F');
        iCodeAfter = kernel_error_code;
    });
    worker.join();

    EXPECT_EQ(iSeenCode, 0);
    EXPECT_EQ(iSeenRoute, 0);
    EXPECT_EQ(sSeenName, "");
    EXPECT_EQ(iCodeAfter, 4);
    EXPECT_EQ(kernel_error_code, 3);
    EXPECT_STREQ(kernel_routine_name, "main_thread");
    EXPECT_EQ(kernel_method_code, 42);
    EXPECT_TRUE(kernel_take_failure());
    mResetState();
}
