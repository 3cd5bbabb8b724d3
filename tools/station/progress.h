// SPDX-License-Identifier: MIT
// How far a long run has come.
#pragma once

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>

namespace kalorfix::tool::station {

/// A bar on standard error when a person watches; now and then, once the run has taken a second.
class Progress {
public:
    Progress(std::uint64_t whole, bool wanted)
        : whole_(whole), watched_(wanted && isatty(STDERR_FILENO) == 1) {}
    ~Progress() {
        if (drawn_) std::fputs("\r\033[K", stderr);
    }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void at(std::uint64_t done) {
        constexpr unsigned calls_between_looks = 256;
        if (!watched_ || ++calls_ % calls_between_looks != 0 || Clock::now() < next_) return;
        next_ = Clock::now() + std::chrono::milliseconds(100);
        drawn_ = true;
        const auto percent = static_cast<int>(std::min(done, whole_) * 100 / whole_);
        fmt::print(stderr, "\r[{:#<{}}{:.<{}}] {:3} %", "", percent / 2, "", 50 - percent / 2, percent);
        std::fflush(stderr);
    }

private:
    using Clock = std::chrono::steady_clock;
    std::uint64_t whole_;
    bool watched_, drawn_ = false;
    unsigned calls_ = 0;
    Clock::time_point next_ = Clock::now() + std::chrono::seconds(1);
};

}  // namespace kalorfix::tool::station
