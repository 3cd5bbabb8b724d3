#include "runtime/tick_source.h"

#include <sys/times.h>

namespace kalorfix {

long process_ticks() {
    tms unused{};
    return static_cast<long>(times(&unused));
}

}  // namespace kalorfix
