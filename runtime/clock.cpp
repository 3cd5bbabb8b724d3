// The tick clock: a counter that setting the wall clock does not move.
#include <sys/times.h>

#include <cerrno>
#include <cstdint>

#include "kalorfix.h"

int OpenAbsClock() { return 0; }

int abs_clock() {
    tms unused{};
    const clock_t ticks = times(&unused);
    if (ticks == static_cast<clock_t>(-1)) return -errno;
    return static_cast<int>(static_cast<std::uint32_t>(ticks));
}

void timecon(timeval* from, timespec* to) {
    to->tv_sec = from->tv_sec;
    to->tv_nsec = from->tv_usec * 1000;
}
