// SPDX-License-Identifier: MIT
#include "tools/units.h"

#include <algorithm>
#include <iterator>

namespace kalorfix::tool {
namespace {

using enum Dimension;

constexpr double kgf_N = 9.80665, mmHg_Pa = 133.322387415, inch_mm = 25.4, pound_kg = 0.45359237;
constexpr double psi_Pa = pound_kg * kgf_N / (inch_mm * inch_mm * 1e-6), foot_m = 12.0 * inch_mm * 1e-3;
constexpr double zero_celsius_K = 273.15, zero_celsius_F = 32.0, K_per_F = 5.0 / 9.0;
constexpr double GJ_per_MWh = 3.6, s_per_h = 3600.0, h_per_d = 24.0;

constexpr Unit units[] = {
    {temperature, "C", 1.0},
    {temperature, "degC", 1.0},
    {temperature, "K", 1.0, -zero_celsius_K},
    {temperature, "F", K_per_F, -zero_celsius_F* K_per_F},
    {temperature, "degF", K_per_F, -zero_celsius_F* K_per_F},
    {pressure, "Pa", 1.0},
    {pressure, "hPa", 1e2},
    {pressure, "kPa", 1e3},
    {pressure, "MPa", 1e6},
    {pressure, "mbar", 1e2},
    {pressure, "bar", 1e5},
    {pressure, "kgf/cm2", kgf_N * 1e4},
    {pressure, "kgf/m2", kgf_N},
    {pressure, "atm", 101325.0},
    {pressure, "psi", psi_Pa},
    {pressure, "mmHg", mmHg_Pa},
    {length, "mm", 1.0},
    {length, "cm", 10.0},
    {length, "m", 1000.0},
    {length, "um", 1e-3},
    {length, "in", inch_mm},
    {mass_flow, "t/h", 1.0},
    {mass_flow, "kg/h", 1e-3},
    {mass_flow, "kg/s", s_per_h * 1e-3},
    {mass_flow, "t/d", 1.0 / h_per_d},
    {volume_flow, "m3/h", 1.0},
    {volume_flow, "m3/s", s_per_h},
    {volume_flow, "m3/d", 1.0 / h_per_d},
    {volume_flow, "l/s", s_per_h * 1e-3},
    {standard_volume_flow, "m3/h", 1.0},
    {standard_volume_flow, "m3/h-std", 1.0},
    {standard_volume_flow, "m3/s-std", s_per_h},
    {standard_volume_flow, "m3/d-std", 1.0 / h_per_d},
    {heat_flow, "GJ/h", 1.0},
    {heat_flow, "Gcal/h", GJ_per_Gcal},
    {heat_flow, "MW", GJ_per_MWh},
    {heat_flow, "kW", GJ_per_MWh * 1e-3},
    {viscosity, "uPas", 1.0},
    {viscosity, "mPas", 1e3},
    {viscosity, "Pas", 1e6},
    {viscosity, "cP", 1e3},
    {density, "kg/m3", 1.0},
    {density, "g/cm3", 1e3},
    {density, "lb/ft3", pound_kg / (foot_m * foot_m * foot_m)},
};

char plain_sign(char c) { return c == '/' ? '_' : c; }

}  // namespace

std::span<const Unit> all_units() { return units; }

const Unit* find_unit(Dimension dimension, std::string_view name) {
    const auto* const found = std::ranges::find_if(units, [&](const Unit& unit) {
        return unit.dimension == dimension && std::ranges::equal(unit.name, name, {}, plain_sign, plain_sign);
    });
    return found == std::end(units) ? nullptr : found;
}

std::string unit_names(Dimension dimension) {
    std::string all;
    for (const Unit& unit : units) {
        if (unit.dimension != dimension) continue;
        if (!all.empty()) all += ", ";
        std::ranges::transform(unit.name, std::back_inserter(all), plain_sign);
    }
    return all;
}

}  // namespace kalorfix::tool
