#include "tools/station/progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace kalorfix::tool::station {
namespace {

constexpr auto patience = std::chrono::seconds(1);
constexpr auto pause = std::chrono::milliseconds(100);
constexpr unsigned calls_between_looks = 256;

}  // namespace

Progress::Progress(std::uint64_t whole, bool wanted)
    : whole_(std::max<std::uint64_t>(whole, 1)),
      watched_(wanted && isatty(STDERR_FILENO) == 1),
      next_(Clock::now() + patience) {}

Progress::~Progress() {
    if (drawn_) std::fputs("\r\033[K", stderr);
}

void Progress::at(std::uint64_t done) {
    if (!watched_ || ++calls_ % calls_between_looks != 0) return;
    const Clock::time_point now = Clock::now();
    if (now < next_) return;
    next_ = now + pause;
    drawn_ = true;
    constexpr std::size_t width = 40;
    const double share = std::min(1.0, static_cast<double>(done) / static_cast<double>(whole_));
    const auto full = static_cast<std::size_t>(share * static_cast<double>(width));
    std::fprintf(stderr, "\r[%s%s] %3.0f %%", std::string(full, '#').c_str(),
                 std::string(width - full, '.').c_str(), 100.0 * share);
    std::fflush(stderr);
}

}  // namespace kalorfix::tool::station
