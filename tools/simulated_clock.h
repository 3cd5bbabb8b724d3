// SPDX-License-Identifier: MIT
// A clock that the tool turns, for runs that take their time from readings.
#pragma once

namespace kalorfix::tool {

/// While such an object lives, times() of this process, and so the tick clock of the library that it opened, gives the
/// simulated time. The shipped library keeps its own clock: it asks the C library, whose function this program defines.
class SimulatedClock {
public:
    SimulatedClock();
    ~SimulatedClock();
    SimulatedClock(const SimulatedClock&) = delete;
    SimulatedClock& operator=(const SimulatedClock&) = delete;

    /// Moves the time on; fractions of a tick are kept for the next step.
    void advance(double seconds);

    /// Sets the time to seconds from any origin, rounded to a tick; it may go back.
    void set(double seconds);

private:
    double rate_;
    double ticks_;
};

}  // namespace kalorfix::tool
