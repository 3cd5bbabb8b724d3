// SPDX-License-Identifier: MIT
// Units of measured values, each with its factor once; names of columns are made of them.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kalorfix::tool {

/// What is measured, and the unit that the interface takes it in: degC, Pa, mm, t/h, m3/h, m3/h, GJ/h, uPa s, kg/m3.
enum class Dimension {
    temperature,
    pressure,
    length,
    mass_flow,
    volume_flow,
    standard_volume_flow,  ///< at 20 degC and 101.325 kPa
    heat_flow,
    viscosity,
    density
};

struct Unit {
    Dimension dimension;
    std::string_view name;        ///< as it is printed: kgf/cm2
    double factor, offset = 0.0;  ///< into the unit of the interface

    [[nodiscard]] double to_interface(double value) const { return value * factor + offset; }
};

[[nodiscard]] std::span<const Unit> all_units();

/// A unit by its name, in which _ may stand for /: kgf_cm2. The case matters: mPa is not MPa. Null when there is none.
[[nodiscard]] const Unit* find_unit(Dimension dimension, std::string_view name);

/// The names of a dimension's units, as columns write them: "Pa, kPa, ..., kgf_cm2".
[[nodiscard]] std::string unit_names(Dimension dimension);

inline constexpr double GJ_per_Gcal = 4.1868;

/// MJ in a cubic metre at standard conditions, of a heat of combustion as VNIC SMV gives it: 0 kJ or 1 kcal, in a cubic metre at 0: 0
/// or 1: 20 degC, of which one holds as much less as an ideal gas expands.
template <class Number>
[[nodiscard]] constexpr Number heat_MJ_m3(Number heat, int unit, int basis) {
    constexpr auto kJ_per_kcal = static_cast<Number>(GJ_per_Gcal), MJ_per_kJ = static_cast<Number>(0.001);
    constexpr Number expansion = static_cast<Number>(293.15) / static_cast<Number>(273.15);
    if (unit == 1) heat *= kJ_per_kcal;
    if (basis == 0) heat /= expansion;
    return heat * MJ_per_kJ;
}

}  // namespace kalorfix::tool
