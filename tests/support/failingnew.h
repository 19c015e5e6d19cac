// Failed allocations on demand.  The test program replaces the nothrow form
// of operator new (the form the distribution objects allocate their helpers
// with): it forwards to the ordinary operator new, turning its exception
// into null, except while a test asks for a failure on its own thread.
#pragma once

namespace qeltest
{

// While set, every nothrow allocation of this thread returns null.
extern thread_local bool g_bFailEveryNothrowNew;

// 0: no failure asked; k > 0: the k-th nothrow allocation of this thread
// from now returns null, and the count is 0 again after it.
extern thread_local int g_iNothrowFailAt;

} // namespace qeltest
