// Library start.  Loading the library needs no numerical set-up: the kernel
// error state starts at zero, the uniform generator is made at first use, and
// the persistent classes register themselves by name through their own static
// initialisers.  This file gives the library its version for the host.
#include "qel/qelmath.h"

const char* mGetQelMathVersion() { return QELMATH_VERSION_STRING; }
