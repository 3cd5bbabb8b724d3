// SPDX-License-Identifier: MIT
#include "tools/station/calendar.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace kalorfix::tool::station {
namespace {

constexpr std::array<std::int64_t, 2> length_s{3600, 86400};
constexpr std::array<std::string_view, 2> names{"hour", "day"};

// The columns of the amounts, with the number of the integrator of each medium, -1 where it has no such.
struct Kind {
    std::string_view name;
    int of_gas, of_heat_carrier;
};
constexpr std::array<Kind, 5> kinds{{{"mass_t", 0, 0},
                                     {"volume_m3", 1, 1},
                                     {"standard_volume_m3", 2, -1},
                                     {"energy_GJ", 3, -1},
                                     {"heat_GJ", -1, 2}}};

}  // namespace

void Calendar::add(double from_s, double to_s, const Amounts& amount, bool counted) {
    constexpr double two_days_s = 172800.0;
    const bool nothing = !counted && amount == Amounts{};
    // A long time in which nothing counted is no row of noughts for each hour of it.
    if (!(to_s > from_s) || (nothing && to_s - from_s > two_days_s)) return;
    for (std::size_t set = 0; set < periods_.size(); ++set) {
        const std::int64_t offset_s = set == day ? contract_hour_ * length_s[hour] : 0;
        const auto length = static_cast<double>(length_s[set]);
        const auto first = std::floor((from_s - static_cast<double>(offset_s)) / length);
        std::int64_t begin_s = static_cast<std::int64_t>(first) * length_s[set] + offset_s;
        for (; static_cast<double>(begin_s) < to_s; begin_s += length_s[set]) {
            const auto begin = static_cast<double>(begin_s);
            const double part_s = std::min(to_s, begin + length) - std::max(from_s, begin);
            Period& period = periods_[set][begin_s];
            if (counted) period.counted_s += part_s;
            for (std::size_t k = 0; k < amount.size(); ++k)
                period.amount[k] += amount[k] * part_s / (to_s - from_s);
        }
    }
}

void walk_calendar(const Station& station, const std::vector<Calendar>& calendars, TimeKind kind,
                   Calendar::Set first, const TakeRow& take) {
    std::vector<std::string> row{"calendar", "channel", "from", "counted_s"};
    for (const Kind& one : kinds) row.emplace_back(one.name);
    take(row);
    for (std::size_t set = first; set < names.size(); ++set)
        for (std::size_t i = 0; i < calendars.size(); ++i) {
            const Channel& c = station.channels[i];
            for (const auto& [begin_s, period] : calendars[i].periods(static_cast<Calendar::Set>(set))) {
                row = {std::string(names[set]), c.name, print_time(kind, static_cast<double>(begin_s)),
                       fmt::format("{:.8g}", period.counted_s)};
                for (const Kind& one : kinds) {
                    const int k = c.is_gas() ? one.of_gas : one.of_heat_carrier;
                    row.push_back(k < 0 ? ""
                                        : fmt::format("{:.7g}", period.amount[static_cast<std::size_t>(k)]));
                }
                take(row);
            }
        }
}

}  // namespace kalorfix::tool::station
