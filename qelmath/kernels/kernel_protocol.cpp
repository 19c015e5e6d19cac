// The kernel error state and its protocol: reset on entry, raise-only and
// force modes, read-and-clear.  Each thread has its own state, zero when the
// thread starts.
#include "qelmath/kernels/kernel_protocol.h"

thread_local std::int32_t kernel_error_code = 0;
thread_local char kernel_routine_name[KERNEL_ROUTINE_NAME_SIZE] = {};
thread_local std::int32_t kernel_method_code = 0;
thread_local std::int32_t kernel_terms = 0;
thread_local std::int32_t kernel_terms_a = 0;
thread_local std::int32_t kernel_terms_b = 0;

const char* const kernel_error_messages[KERNEL_ERROR_MESSAGE_COUNT] = {
    "no errors detected",
    "partial loss of significance (result set to 0)",
    "argument out of admissable range",
    "invalid combination of parameters",
    "internal failure of algorithm",
};

namespace
{
// Every routine name is a short literal; the copy still stops at the end of
// the buffer so that no name can run past it.
void mRecordName(const char* routine)
{
    int i = 0;
    if (routine != nullptr)
    {
        for (; i < KERNEL_ROUTINE_NAME_SIZE - 1 && routine[i] != '\0'; ++i)
            kernel_routine_name[i] = routine[i];
    }
    kernel_routine_name[i] = '\0';
}
} // namespace

void kernel_enter(const char* routine)
{
    kernel_error_code = 0;
    mRecordName(routine);
}

void kernel_raise(const char* routine, int code, char mode)
{
    if (mode != 'F' && kernel_error_code >= code)
        return;
    kernel_error_code = code;
    mRecordName(routine);
}

bool kernel_take_failure()
{
    const std::int32_t code = kernel_error_code;
    kernel_error_code = 0;
    return code != 0 && code != 1;
}

void kernel_clear_diagnostics()
{
    kernel_method_code = 0;
    kernel_terms = 0;
    kernel_terms_a = 0;
    kernel_terms_b = 0;
}
