// The one macro that marks the exported interface of the QelMath libraries.
// Everything else is hidden (the build sets -fvisibility=hidden).
#pragma once

#if defined(_WIN32)
#define QEL_API __declspec(dllexport)
#else
#define QEL_API __attribute__((visibility("default")))
#endif
