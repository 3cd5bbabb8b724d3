// SPDX-License-Identifier: MIT
#include "tools/simulated_clock.h"

#include <dlfcn.h>
#include <sys/times.h>
#include <unistd.h>

#include <atomic>
#include <cmath>
#include <cstdint>

namespace {

std::atomic<bool> simulating{false};
std::atomic<clock_t> simulated{0};

// The counter of a 32-bit machine on every machine: it wraps, and never shows -1, which times() returns for a failure.
clock_t counter(double ticks) {
    const auto wrapped =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::int64_t>(ticks)));
    return wrapped == -1 ? -2 : wrapped;
}

}  // namespace

// Exported by this program, so the library's calls come here.
extern "C" clock_t times(struct tms* buffer) noexcept {
    if (!simulating) {
        static const auto real = reinterpret_cast<clock_t (*)(struct tms*)>(dlsym(RTLD_NEXT, "times"));
        return real(buffer);
    }
    if (buffer) *buffer = {};
    return simulated;
}

namespace kalorfix::tool {

SimulatedClock::SimulatedClock() : rate_(static_cast<double>(sysconf(_SC_CLK_TCK))), ticks_(0.0) {
    advance(0.0);
}

SimulatedClock::~SimulatedClock() { simulating = false; }

void SimulatedClock::advance(double seconds) {
    ticks_ += seconds * rate_;
    simulated = counter(std::floor(ticks_));
    simulating = true;
}

void SimulatedClock::set(double seconds) {
    ticks_ = std::round(seconds * rate_);
    advance(0.0);
}

}  // namespace kalorfix::tool
