#include "runtime/tick_source.h"

#include <sys/times.h>

namespace kalorfix {

long process_ticks() {
    // Without a place for them Linux leaves out the sums of processor time over all threads, which cost more than the ticks.
    return static_cast<long>(times(nullptr));
}

}  // namespace kalorfix
