// SPDX-License-Identifier: MIT
// The saturation line of water by the auxiliary equations of IAPWS SR1-86(1992) (Wagner, Pruss 1993),
// and the saturation temperature as an explicit function of the pressure.
//
// The auxiliary pressure differs from the phase equilibrium of IAPWS-95 by up to 2.2e-5 (at 275 K).
#pragma once

namespace kalorfix::water {

/// Saturation pressure in MPa at T_K, 273.15 K to the critical temperature; NaN above it.
[[nodiscard]] double saturation_pressure_MPa(double T_K);

/// Density of saturated liquid at T, kg/m3, 273.15..647.096 K. IAPWS SR1-86(1992), eq. 2.
[[nodiscard]] double saturated_liquid_density_kgm3(double T_K);

/// Density of saturated vapour in kg/m3 at T_K, 273.15 K to the critical temperature; NaN above it.
[[nodiscard]] double saturated_vapour_density_kgm3(double T_K);

/// Two sets of the saturation-temperature coefficients are in use; they differ in the last printed digit
/// of the second coefficient.
enum class SaturationTemperatureSet {
    heat_carrier,  ///< -0.0138861821, state of a heat-carrier channel
    humid_gas,     ///< -0.013886182, water vapour in natural gas
};

/// Saturation temperature in K at p_MPa > 0. Beyond the critical pressure the formula mirrors itself in
/// |ln(p / p_c)|; a negative pressure gives NaN.
[[nodiscard]] double saturation_temperature_K(double p_MPa, SaturationTemperatureSet set);

}  // namespace kalorfix::water
