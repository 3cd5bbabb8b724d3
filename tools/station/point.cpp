// SPDX-License-Identifier: MIT
#include "tools/station/point.h"

#include <algorithm>

namespace kalorfix::tool::station {
namespace {

double d(float value) { return static_cast<double>(value); }

metering::Medium medium_of(const Channel& c) {
    if (!c.is_gas())
        return metering::HeatCarrier{c.heat.phase, d(c.heat.x), d(c.heat.tolerance_Pa), d(c.heat.tolerance_K)};
    metering::Gas gas{.method = c.gas.method,
                      .volume_fractions = c.gas.volume_fractions,
                      .rho_c = d(c.gas.rho_c),
                      .heat_unit = c.gas.heat_unit,
                      .heat_basis = c.gas.heat_basis,
                      .by_higher_heat = c.gas.by_higher_heat,
                      .vapour_kgm3 = d(c.gas.vapour)};
    std::ranges::transform(c.gas.x, gas.x.begin(), d);
    return gas;
}

}  // namespace

metering::Point point_of(const Channel& c) {
    return {{c.device, c.metering_class, c.by_material, d(c.pipe_material), d(c.device_material), d(c.D20_mm),
             d(c.d20_mm), d(c.roughness_mm), d(c.edge_radius_mm), d(c.interval_years), c.edge_at_end,
             d(c.alpha_eps)},
            {d(c.column_height_m), d(c.column_density)},
            medium_of(c)};
}

}  // namespace kalorfix::tool::station
