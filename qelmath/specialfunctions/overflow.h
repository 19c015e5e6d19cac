// The overflow road of the guarded elementary functions: an exception or the
// largest double, as the caller's bool asks.  Internal to the library.
#pragma once

// Throws CmFloatOverflow when bThrow is true; otherwise returns the largest
// double, 1.7976931348623157e+308.
double mOverflowResult(bool bThrow);
