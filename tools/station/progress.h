// How far a long run has come, on standard error, when a person watches.
#pragma once

#include <chrono>
#include <cstdint>

namespace kalorfix::tool::station {

class Progress {
public:
    /// `whole` is the size of the work in any unit. Nothing is drawn unless it is wanted and standard error is a terminal.
    Progress(std::uint64_t whole, bool wanted);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Draws the bar now and then once the run has taken a second.
    void at(std::uint64_t done);

private:
    using Clock = std::chrono::steady_clock;
    std::uint64_t whole_;
    bool watched_, drawn_ = false;
    unsigned calls_ = 0;
    Clock::time_point next_;
};

}  // namespace kalorfix::tool::station
