// SPDX-License-Identifier: MIT
// Running totals and intervals: the arithmetic, without objects and clocks.
#pragma once

#include <array>
#include <cstdint>

namespace kalorfix::flow {

/// A register wraps, once, when it exceeds this.
inline constexpr double register_limit = 1e6;

/// Seconds of the intervals by set: hour, day.
inline constexpr std::array<double, 2> interval_length_s{3600.0, 86400.0};

/// Seconds between two readings of the 32-bit tick counter, one wrap allowed.
[[nodiscard]] inline double elapsed_s(std::uint32_t now, std::uint32_t before, long ticks_per_second) {
    return static_cast<double>(now - before) / static_cast<double>(ticks_per_second);
}

/// What a flow has brought.
struct Passage {
    double flow_per_h;
    double time_s;
    double substitute_per_h;  ///< flow during the downtime
    double downtime_min;
    short exp10;  ///< decimal exponent of the register
};

/// The increment of the register.
[[nodiscard]] double increment(const Passage& passage);

/// The register after an increment, wrapped once above 10^6.
[[nodiscard]] inline double advance(double total, double increment) {
    const double sum = increment + total;
    return sum > register_limit ? sum - register_limit : sum;
}

/// An interval as the host keeps it between two calls.
struct Interval {
    double time_s;       ///< elapsed; 0: not started
    double start_total;  ///< register at its start
    double result;       ///< amount of the last closed interval
};

/// What the last totalising step left.
struct Step {
    double dt_s;
    double downtime_min;
    double total;
    double tick_s;  ///< length of one clock tick
};

/// The interval after a step: started, carried on, or closed with the difference of the registers. The minutes of
/// the downtime are added to the seconds as they are, on purpose.
[[nodiscard]] Interval carry_on(const Interval& interval, const Step& step, double length_s);

}  // namespace kalorfix::flow
