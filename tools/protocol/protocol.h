// SPDX-License-Identifier: MIT
// A device against the library at the points of a protocol: pure comparison, and the inputs of the protocol.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/metering/flow.h"
#include "tools/wording/wording.h"

namespace kalorfix::tool::protocol {

/// What a device can show at a point.
struct Shown {
    metering::Flow kind;
    std::string_view column;  ///< of the device's readings and of the CSV
    Text title, unit;
};
/// The flows of a medium, in the order of the interface.
[[nodiscard]] const std::vector<Shown>& shown_by(const metering::Medium& medium);

struct State {
    double t_C = 0, p_Pa = 0, dp_Pa = 0;  ///< p absolute, as the transmitter has it
};

/// Per cent; nothing where both are 0 or the reference is 0.
[[nodiscard]] double deviation_pct(double device, double reference);

enum class Verdict { met, not_met, no_value, refused };

struct Compared {
    double reference = 0;
    std::optional<double> device{};
    double deviation_pct = 0;
    Verdict verdict = Verdict::no_value;
};

struct Point {
    State at;
    metering::Properties medium{};
    metering::FlowResult flow{};
    std::string refused{};           ///< why the reference has no result
    std::vector<Compared> values{};  ///< one for each of shown_by
};

/// The reference results.
[[nodiscard]] Point compute(const host::Library& library, const metering::Point& point, const State& at);

/// What the device showed at a point, in the order of shown_by.
using Readings = std::vector<std::optional<double>>;
void compare(Point& point, const Readings& device, double limit_pct);

/// Of the quantities that the device shows at any point.
struct Summary {
    std::size_t values = 0, met = 0, not_met = 0,
                open = 0;  ///< values: met and not met; open: without a comparison
    double largest_pct = 0;
};
[[nodiscard]] Summary summarize(const std::vector<Point>& points, const std::vector<bool>& shown);

/// Three temperatures, pressures and differential pressures within the ranges, 27 points: both ends and the middle of each. dp keeps to
/// what the library accepts in all nine states, and begins at a twentieth of its end. Throws InputError where there is no such dp.
struct Ranges {
    std::pair<double, double> t_C, p_Pa;
    std::optional<std::pair<double, double>> dp_Pa;
};
[[nodiscard]] std::vector<State> default_points(const host::Library& library, const metering::Point& point,
                                                const Ranges& ranges);

inline constexpr std::size_t most_points = 30;  ///< that two pages hold

/// Points of a file: columns of temperature, absolute pressure and differential pressure such as t_C, p_MPa, dp_kPa. Throws
/// InputError with file, line and column; `decimal` as of Spreadsheet.
[[nodiscard]] std::vector<State> read_points(const std::string& file, char decimal);

/// The device's readings: column point, the number of a point, and of its flows those that it shows, each in its unit (q_m_kg_s).
/// Throws InputError.
struct Device {
    std::vector<Readings> at;  ///< of each point
    std::vector<bool> shown;   ///< which columns there are
};
[[nodiscard]] Device read_device(const std::string& file, std::size_t points, const std::vector<Shown>& shown,
                                 char decimal);

}  // namespace kalorfix::tool::protocol
