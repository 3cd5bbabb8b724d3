// SPDX-License-Identifier: MIT
// Amounts by hours and days of the calendar, which an archive is compared with.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tools/station/cycle.h"

namespace kalorfix::tool::station {

/// What one channel counted in each hour of the clock and in each day from its contract hour on. The library's own intervals
/// are hours and days of computed time, which move on with every refusal.
class Calendar {
public:
    struct Period {
        double counted_s = 0.0;  ///< in which every integrator counted, at most its length
        Amounts amount{};        ///< in units of the interface, downtimes included
    };
    enum Set : std::size_t { hour, day };

    explicit Calendar(int contract_hour) : contract_hour_(contract_hour) {}

    /// Amounts that came evenly from one time to another; `counted` when all integrators took them. More than two days of nothing
    /// leave no periods.
    void add(double from_s, double to_s, const Amounts& amount, bool counted);

    /// By the time at which they begin.
    [[nodiscard]] const std::map<std::int64_t, Period>& periods(Set set) const { return periods_[set]; }

private:
    int contract_hour_;
    std::array<std::map<std::int64_t, Period>, 2> periods_;
};

/// Takes the cells of a row.
using TakeRow = std::function<void(const std::vector<std::string>&)>;

/// The periods of all channels, hours (if wanted) before days: a heading and a row each, in which a cell is empty where the
/// medium has no such amount.
void walk_calendar(const Station& station, const std::vector<Calendar>& calendars, TimeKind kind,
                   Calendar::Set first, const TakeRow& take);

}  // namespace kalorfix::tool::station
