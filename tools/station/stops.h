// SPDX-License-Identifier: MIT
// What stops a channel of a station whatever is measured, told before a run.
#pragma once

#include <limits>
#include <vector>

#include "tools/station/station.h"

namespace kalorfix::tool::station {

/// The temperatures that a channel meets; empty while none was added.
struct TemperatureSpan {
    double low_C = std::numeric_limits<double>::infinity(), high_C = -std::numeric_limits<double>::infinity();

    void add(double t_C) {
        if (t_C < low_C) low_C = t_C;
        if (t_C > high_C) high_C = t_C;
    }
};

/// A line on standard error for each rule of metering::check_device that refuses a channel at one of the ends of its temperatures:
/// sizes, diameter ratio, roughness, materials, sum of the composition; and a warning of the density of wet steam.
void name_stops(const Station& station, const std::vector<TemperatureSpan>& temperatures);

}  // namespace kalorfix::tool::station
