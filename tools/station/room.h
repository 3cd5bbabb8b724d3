// SPDX-License-Identifier: MIT
// Room in the registers: an hour or day tells amounts below 10^6 of its unit, and what is more comes out 10^6 short a time.
#pragma once

#include <vector>

#include "tools/station/cycle.h"

namespace kalorfix::tool::station {

/// The readings of one channel with the largest flows, its longest step that counts, and its longest day.
class Peaks {
public:
    void note(const Measured& row, const Channel& channel);
    void note_step(double seconds);

    std::vector<Measured> rows{};  ///< with the largest differential pressure or reading, mass and volume flow
    double longest_step_s = 0.0;
    double longest_day_s = 86400.0;  ///< a day ends with the step that fills it

private:
    std::array<double, 3 + most_integrators> largest_{};
    double since_s_ = 0.0;  // the day began
};

/// Throws InputError with the exponents that would do, when a day of the largest flow, or the longest step, and a downtime
/// bring 10^6 units or more into a register. The channels must be set up; `peaks` are theirs.
void require_room(const host::Library& library, const Station& station, const std::vector<Peaks>& peaks,
                  TimeKind kind, double downtime_min);

/// The amounts of one channel since its hours and days began, for what the peaks did not foretell.
class Room {
public:
    Room(const Station& station, const Channel& channel, const Registers& registers);

    /// Throws InputError when an hour or a day has come to 10^6 units or more.
    void add(const Outcome& outcome, const Registers& registers);

private:
    const Station& station_;
    const Channel& channel_;
    std::array<double, most_integrators> unit_{};                  ///< of each register
    std::array<std::array<double, 2>, most_integrators> since_{};  ///< in units of the register
    std::array<std::array<bool, 2>, most_integrators> running_{};
};

}  // namespace kalorfix::tool::station
