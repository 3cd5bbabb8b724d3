// SPDX-License-Identifier: MIT
// The tick clock: a counter that setting the wall clock does not move.
#include "runtime/clock.h"

#include <sys/times.h>

#include <cerrno>

#include "kalorfix_runtime.h"

std::uint32_t kalorfix::tick_count() {
    // Without a place for them Linux leaves out the sums of processor time over all threads, which cost more than the ticks.
    const clock_t ticks = times(nullptr);
    return static_cast<std::uint32_t>(ticks == -1 ? -errno : ticks);
}

int OpenAbsClock() { return 0; }

int abs_clock() { return static_cast<int>(kalorfix::tick_count()); }

void timecon(timeval* from, timespec* to) {
    to->tv_sec = from->tv_sec;
    to->tv_nsec = from->tv_usec * 1000;
}
