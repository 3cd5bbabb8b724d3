// SPDX-License-Identifier: MIT
// The differential pressures between which a metering point is valid in one state of its medium.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/metering/flow.h"

namespace kalorfix::metering {

/// A flow over the quantity that is varied, a differential pressure or a bore.
using Varied = std::function<FlowResult(double)>;

/// One end of the accepted values: the last one, its flow, and why the library refuses what lies behind it.
struct End {
    double at = 0;
    FlowResult flow{};
    std::string because{};  ///< empty where the search itself ends
};

/// What a walk over a quantity found. Between the ends lie refused values only where the discharge coefficient has steps.
struct Accepted {
    bool any = false;
    End low{}, high{};
    std::string refused{};  ///< without any: why the value in the middle is refused
    std::vector<std::pair<double, FlowResult>> walk{};
};

/// The accepted value nearest to a refused one, to the last digits, and why the refused one is.
[[nodiscard]] End last_accepted(const Varied& flow, double refused, double accepted);

/// Walks over the values, in rising order, and finds both ends to the last digits by bisection.
[[nodiscard]] Accepted accepted_range(const Varied& flow, const std::vector<double>& values);

/// The differential pressures (Pa) that the library accepts, up to the absolute pressure itself.
[[nodiscard]] Accepted accepted_dp(const host::Library& library, const Point& point, const Properties& medium);

/// The Reynolds numbers of the device at this diameter ratio, by its row of the table of devices.
[[nodiscard]] flow::Range reynolds_range(const Pipeline& pipe, const FlowResult& flow);

/// What is lost of the differential pressure for good, Pa: both ends are the same but for a Venturi tube, whose loss depends on its
/// diverging angle. Nothing for devices without a published loss.
struct Loss {
    double least_Pa = 0, most_Pa = 0;
    bool known = false;
};
/// ISO 5167-2, 5.4 for orifice plates, approximately also for nozzles; ISO 5167-4, 5.9 for Venturi tubes.
[[nodiscard]] Loss pressure_loss(const Pipeline& pipe, const FlowResult& flow, double dp_Pa);

}  // namespace kalorfix::metering
