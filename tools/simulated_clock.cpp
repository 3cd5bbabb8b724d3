#include "tools/simulated_clock.h"

#include <dlfcn.h>
#include <sys/times.h>
#include <unistd.h>

#include <atomic>
#include <cmath>

namespace {

constexpr clock_t stopped = -1;
std::atomic<clock_t> simulated{stopped};

}  // namespace

// Exported by this program, so the library's calls come here.
extern "C" clock_t times(struct tms* buffer) noexcept {
    const clock_t now = simulated.load();
    if (now == stopped) {
        static const auto real = reinterpret_cast<clock_t (*)(struct tms*)>(dlsym(RTLD_NEXT, "times"));
        return real(buffer);
    }
    if (buffer) *buffer = {};
    return now;
}

namespace kalorfix::tool {

SimulatedClock::SimulatedClock() : rate_(static_cast<double>(sysconf(_SC_CLK_TCK))), ticks_(0.0) {
    advance(0.0);
}

SimulatedClock::~SimulatedClock() { simulated = stopped; }

void SimulatedClock::advance(double seconds) {
    ticks_ += seconds * rate_;
    simulated = static_cast<clock_t>(std::floor(ticks_));
}

void SimulatedClock::set(double seconds) {
    ticks_ = std::round(seconds * rate_);
    advance(0.0);
}

}  // namespace kalorfix::tool
