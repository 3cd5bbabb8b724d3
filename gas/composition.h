// SPDX-License-Identifier: MIT
// The composition of a natural gas and what follows from it alone.
#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace kalorfix::gas {

/// Components of the full composition, in this order: methane, ethane, propane, n-butane, i-butane, two pentanes, hexanes,
/// heptanes, octanes, nitrogen, carbon dioxide, hydrogen sulphide, and two more that the gas data file defines.
inline constexpr std::size_t component_count = 15;
inline constexpr std::size_t nitrogen = 10;
inline constexpr std::size_t carbon_dioxide = 11;

/// Carbon atoms of each component; 0 for those that are no hydrocarbons.
inline constexpr std::array<short, component_count> carbon_number{1, 2, 3, 4, 4, 5, 5, 6, 7, 8, 0, 0, 0, 0, 0};

/// Molar gas constant, kJ/(kmol K); the exported R is a copy of it.
inline constexpr float molar_gas_constant = 8.31451F;

/// Standard conditions: 293.15 K and 0.101325 MPa.
inline constexpr double standard_temperature_K = 293.15;
inline constexpr double standard_pressure_MPa = 0.101325;

using Fractions = std::array<float, component_count>;

/// Mole fractions with the list of the components that are there.
struct Composition {
    Fractions x{};
    std::array<std::size_t, component_count> present{};  ///< ascending, the first `count` are in use
    std::size_t count = 0;

    bool operator==(const Composition&) const = default;
    [[nodiscard]] std::span<const std::size_t> components() const { return {present.data(), count}; }
};

/// The composition of mole per cent, not normalised.
[[nodiscard]] Composition from_mole_percent(const Fractions& percent);

/// The composition of volume fractions, normalised: x_i = (r_i / z_i) / sum(r_j / z_j), z_i the compressibility factors of the pure
/// components at standard conditions. All zero gives NaN.
[[nodiscard]] Composition from_volume_fractions(const Fractions& volume, const float* z_standard);

/// Lists the components whose fraction is not exactly zero.
[[nodiscard]] Composition with_present_components(const Fractions& x);

/// Density at standard conditions, kg/m3: sum(x rho_ideal) / Z, Z = 1 - (sum(x sqrt b))^2. GOST 30319.1-96.
/// Sums in single precision. 0 for no component.
[[nodiscard]] float standard_density(const Composition& gas, const float* summation_factor,
                                     const float* ideal_density);

/// Molar mass, kg/kmol, of components with the given ones.
[[nodiscard]] float molar_mass(const Composition& gas, const float* of_components);

/// Compressibility factor at standard conditions from the carbon numbers, nitrogen and carbon dioxide. GOST 30319.2-96.
[[nodiscard]] double standard_compressibility(const Composition& gas);

/// The same from density (kg/m3), nitrogen and carbon dioxide (mole fractions) at standard conditions. GOST 30319.2-96.
[[nodiscard]] double standard_compressibility(double rho_c, double xa, double xy);

}  // namespace kalorfix::gas
