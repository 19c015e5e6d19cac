// Internal to the uniform generator: the base that the clock seeding derives
// from a time of day, apart from the clock itself so that it can be checked.
#pragma once

// The base for a time of day given in hundredths of a second since midnight:
// its seven lowest decimal digits reversed (the fast-changing digits on top),
// times 3250000, which spreads the 10^7 possible values over nearly the whole
// range of bases.
double mUniformBaseFromTimeOfDay(long lHundredths);
