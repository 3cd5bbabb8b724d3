// The tick clock: a counter that setting the wall clock does not move.
#include "kalorfix_runtime.h"
#include "runtime/tick_source.h"

int OpenAbsClock() { return 0; }

int abs_clock() { return static_cast<int>(kalorfix::tick_count()); }

void timecon(timeval* from, timespec* to) {
    to->tv_sec = from->tv_sec;
    to->tv_nsec = from->tv_usec * 1000;
}
