// The tick clock: a counter that setting the wall clock does not move.
#include <cerrno>
#include <cstdint>

#include "kalorfix_runtime.h"
#include "runtime/tick_source.h"

int OpenAbsClock() { return 0; }

int abs_clock() {
    const long ticks = kalorfix::process_ticks();
    if (ticks == -1) return -errno;
    return static_cast<int>(static_cast<std::uint32_t>(ticks));
}

void timecon(timeval* from, timespec* to) {
    to->tv_sec = from->tv_sec;
    to->tv_nsec = from->tv_usec * 1000;
}
