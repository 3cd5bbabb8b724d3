// SPDX-License-Identifier: MIT
// The medium of a metering point at a state, from the library.
#pragma once

#include <string>

#include "tools/host.h"
#include "tools/metering/point.h"

namespace kalorfix::metering {

/// What the flow needs and a sheet shows. Where `refused` is not empty the library refused the state or its properties, and the rest
/// is what it handed out up to there.
struct Properties {
    std::string refused{};
    double t_C = 0, p_Pa = 0;  ///< p at the device: less the column, or on the saturation line for wet steam
    short phase = 0;           ///< heat carriers
    double ps_MPa = 0, ts_C = 0, h_kJ_kg = 0;
    double sum = 0, K = 0, rho_c = 0, lower_heat = 0, higher_heat = 0;  ///< gas; heats 0: unknown
    double energy_MJ_m3 = 0;  ///< of a cubic metre at standard conditions, by the heat chosen
    double rho = 0, mu_uPas = 0, kappa = 0;
};

/// The library mixes the densities of wet steam, where a mixture without slip mixes the volumes: with a share of water its density,
/// and so the flow, are too high, of 10 % water at 150 degC 33 and 5.8 times.
[[nodiscard]] inline bool is_mixed(const HeatCarrier& heat, short phase) {
    return phase == KALORFIX_WET_STEAM && heat.x > 0.0;
}

/// State and properties at t and the measured absolute pressure, in double precision through the members of the calculators. AGA8-92DC
/// takes its viscosity and exponent with the contents of nitrogen and carbon dioxide that a method by density left, here those of
/// the gas itself. A method by composition needs Init with gas data.
[[nodiscard]] Properties properties_at(const host::Library& library, const Point& point, double t_C,
                                       double p_measured_Pa);

}  // namespace kalorfix::metering
