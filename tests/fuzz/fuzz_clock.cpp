// The tick clock that the programs of the harnesses turn, in place of the library's own.
#include <cerrno>

#include "channel_host.h"
#include "runtime/tick_source.h"

long fuzz::clock_ticks = 0;

long kalorfix::process_ticks() {
    if (fuzz::clock_ticks >= 0) return fuzz::clock_ticks;
    errno = EFAULT;
    return -1;
}
