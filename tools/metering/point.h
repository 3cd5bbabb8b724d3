// SPDX-License-Identifier: MIT
// A metering point: pipe, device and medium, as a station's section or a form describes them.
#pragma once

#include <array>
#include <optional>
#include <variant>

namespace kalorfix::metering {

/// Pipe and device, in the units of mg_init_tr.
struct Pipeline {
    short device = 0;
    char metering_class = 1;
    bool by_material = true;
    double pipe_material = 0, device_material = 0;  ///< codes, or expansion coefficients in 1/degC
    double D20_mm = 0, d20_mm = 0, roughness_mm = 0;
    double edge_radius_mm = 0, interval_years = 0;  ///< orifice plates
    bool edge_at_end = false;
    double alpha_eps = 0;  ///< of a configured coefficient
};

/// Liquid between the pressure tap and the transmitter.
struct Column {
    double height_m = 0, density_kgm3 = 0;
};

/// Natural gas by a method of compressibility.
struct Gas {
    short method = 0;
    bool volume_fractions = false;
    std::array<double, 15> x{};  ///< mol %, or volume fractions
    double rho_c = 0;            ///< kg/m3, methods by density
    char heat_unit = 0, heat_basis = 1;
    bool by_higher_heat = false;
    double vapour_kgm3 = 0;
};

/// Water and steam.
struct HeatCarrier {
    std::optional<unsigned short> phase;  ///< given, or decided from the state
    double x = 0;                         ///< wet steam: share of the single phase
    double tolerance_Pa = 1000, tolerance_K = 0.5;
};

/// A medium whose properties are given.
struct GivenMedium {
    double rho_kgm3 = 0, mu_uPas = 0;
    std::optional<double> kappa;  ///< without one it is a liquid, whose density does not change in the device
    std::optional<double> rho_c;  ///< density at standard conditions, if there is one
};

using Medium = std::variant<Gas, HeatCarrier, GivenMedium>;

struct Point {
    Pipeline pipe;
    Column column{};
    Medium medium{};
};

/// Whether the flow is computed as that of a gas channel; else as that of a heat carrier.
[[nodiscard]] inline bool is_gas(const Medium& medium) {
    const auto* const given = std::get_if<GivenMedium>(&medium);
    return std::holds_alternative<Gas>(medium) || (given && given->kappa);
}

}  // namespace kalorfix::metering
