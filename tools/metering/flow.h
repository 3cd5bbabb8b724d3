// SPDX-License-Identifier: MIT
// The flow through a metering point, from the library.
#pragma once

#include <string>

#include "flow/device.h"
#include "tools/metering/medium.h"
#include "tools/metering/units.h"

namespace kalorfix::metering {

/// Geometry and flow. Where `refused` is not empty the library refused the point or the reading, or they cannot be: a device wider than
/// its pipe, a differential pressure above the pressure. `limit` is the limit that was broken, if it is one of the device's.
struct FlowResult {
    std::string refused{};
    flow::Limit limit = flow::Limit::none;
    bool geometry_accepted = false;
    double D_mm = 0, d_mm = 0, beta = 0, E = 0, K_p = 0;
    double K_sh = 0, C = 0, Re = 0, epsilon = 0;
    double mass_th = 0, volume_m3h = 0, standard_m3h = 0,
           energy_GJh = 0;  ///< energy: heat flow of water and steam

    [[nodiscard]] bool accepted() const { return refused.empty(); }
};

/// Geometry and flow at a differential pressure, in double precision through the members of a calculator of its own. Needs properties that
/// were not refused.
[[nodiscard]] FlowResult flow_at(const host::Library& library, const Point& point, const Properties& medium,
                                 double dp_Pa);

/// Tonnes an hour that a flow of a kind amounts to in this medium; 0 where the medium has no such flow.
[[nodiscard]] double mass_of(Flow kind, double flow, const Point& point, const Properties& medium);
/// One of the four flows.
[[nodiscard]] double flow_of_kind(Flow kind, const FlowResult& result);

}  // namespace kalorfix::metering
