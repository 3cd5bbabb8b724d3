// SPDX-License-Identifier: MIT
// Properties and phase of water and steam.
#pragma once

namespace kalorfix::water {

/// Accepted range of the properties, all bounds inclusive.
inline constexpr double min_temperature_K = 273.15;
inline constexpr double max_temperature_K = 1073.15;
inline constexpr double max_pressure_MPa = 100.0;

/// Above this temperature the saturation line is left alone: no saturated vapour, no wet steam.
inline constexpr double near_critical_K = 645.0;

struct Properties {
    double rho_kgm3, mu_uPas, h_kJ_kg, kappa;
};

/// Whether a pressure is accepted: 0..100 MPa, not a NaN.
[[nodiscard]] constexpr bool pressure_in_range(double p_MPa) {
    return 0.0 <= p_MPa && p_MPa <= max_pressure_MPa;
}

/// Single-phase state at T_K and p_MPa. Liquid where p is at or above the saturation pressure, vapour
/// below it. False (properties zero) outside 273.15..1073.15 K, 0..100 MPa, for a NaN, and where the
/// density cannot be found or a property is not finite. At p = 0 the ideal-gas limits are given.
/// IAPWS R6-95(2018); IAPS Formulation 1985 for the viscosity.
[[nodiscard]] bool single_phase(double T_K, double p_MPa, Properties& out);

/// Saturated vapour at T_K, 273.15..645 K, at the pressure of the auxiliary saturation equation.
/// False (properties zero) outside.
[[nodiscard]] bool saturated_vapour(double T_K, Properties& out);

/// Phase codes of a heat carrier.
enum class Phase : short { undecided = 0, water = 1, steam = 2, saturated = 3 };

/// Phase at p_MPa (0.001..100) and T_K (273.15..1073.15) with a pressure tolerance in MPa. Above 645 K or
/// 21.5 MPa everything counts as steam, at or below 373.15 K everything counts as water, whatever the
/// pressure. `saturation_MPa` receives the saturation pressure (NaN above the critical temperature), or 0
/// when the state is out of range and the phase undecided.
[[nodiscard]] Phase phase(double p_MPa, double T_K, double tolerance_MPa, double& saturation_MPa);

/// Ideal-gas part of IAPWS-95, which follows from the temperature alone.
struct IdealGas {
    double cv_kJ_kgK;  ///< isochoric heat capacity, -R tau^2 phi0_tt
    double h_kJ_kg;    ///< enthalpy, R T (1 + tau phi0_t)
};

/// The ideal-gas part at T_K > 0 (IAPWS R6-95(2018), eq. 5 and table 4).
[[nodiscard]] IdealGas ideal_gas(double T_K);

/// Dynamic viscosity by the IAPS Formulation 1985 in its revised form (2003), in uPa s at T_K and rho_kgm3. `reduced_compressibility` is chi = (p_c / rho_c^2)
/// rho (drho/dp) in the reducing values of IAPWS-95; at and above 21.93 (after conversion to the reducing
/// values of the viscosity release) the critical enhancement 0.922 chi^0.0263 applies.
[[nodiscard]] double viscosity_uPas(double T_K, double rho_kgm3, double reduced_compressibility);

}  // namespace kalorfix::water
