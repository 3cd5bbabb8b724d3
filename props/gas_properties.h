// SPDX-License-Identifier: MIT
// The properties of a gas. Viscosity and isentropic exponent: by density, nitrogen and carbon dioxide, or of known composition from
// the state that VNIC SMV has left.
#pragma once

#include "gas/by_density.h"
#include "gas/vnic_smv.h"

namespace kalorfix::gas {

/// Dynamic viscosity, uPa s, at T (K) and p (MPa). GOST 30319.1-96. No limits of its own; near the pseudo-critical
/// temperature, far below the working range, it grows without bound.
[[nodiscard]] double viscosity(double T_K, double p_MPa, const DensityGas& gas);

/// Isentropic exponent at T (K) and p (MPa). GOST 30319.1-96.
[[nodiscard]] double isentropic_exponent(double T_K, double p_MPa, const DensityGas& gas);

struct ReducedState {
    float temperature;           ///< T / pseudo-critical temperature
    float density;               ///< rho / pseudo-critical density
    float critical_temperature;  ///< K
    float critical_pressure;     ///< MPa
    float acentric;
};

/// Dynamic viscosity, uPa s; molar mass in kg/kmol. GOST 30319.3-96.
[[nodiscard]] float viscosity(const ReducedState& state, float molar_mass);

/// Ideal-gas cp/R of a mixture at T (K), over the components that are there. `positive` 8 x 11 and `negative` 8 x 6 coefficients,
/// row by row. Summed in single precision. GOST 30319.3-96, table 2.
[[nodiscard]] float ideal_heat_capacity(const vnic::Fractions& x, float T_K, const float* positive,
                                        const float* negative);

/// Isentropic exponent from the equation of state and the ideal-gas cp/R. Summed in single precision. GOST 30319.3-96.
[[nodiscard]] float isentropic_exponent(const vnic::Coefficients& c, float reduced_temperature,
                                        float reduced_density, float Z_factor, float ideal_cp);

// ---- Heats of combustion ----

struct HeatOfCombustion {
    double lower, higher;
};

/// Heats of combustion, MJ/m3 at 20 degC; contents in mole per cent. GOST 30319.1-96.
[[nodiscard]] HeatOfCombustion heat_of_combustion(double rho_c, double nitrogen_pct, double carbon_dioxide_pct);

inline constexpr unsigned heat_rows = 4;

/// Heats of combustion from 15 mole per cent, summed in the order of the components. Row: 0 kJ/m3 at 0 degC, 1 kcal/m3 at
/// 0 degC, 2 kJ/m3 at 20 degC, 3 kcal/m3 at 20 degC; zeros for any other row. GOST 30319.1-96.
[[nodiscard]] HeatOfCombustion heat_of_combustion(unsigned row, const double* mole_percent);

// ---- Density of a gas that carries water vapour ----

struct HumidState {
    double T_K, p_MPa;
    double rho_c_kgm3;   ///< density of the dry gas at standard conditions
    double K;            ///< its compressibility coefficient
    double vapour_kgm3;  ///< water vapour in the working cubic metre; not above 0: dry
};

/// Density at working conditions, kg/m3: the dry gas under its partial pressure and the vapour with its own mass. False where the
/// content is a NaN or more than the vapour that the cubic metre holds, or the vapour lies outside the range of the water
/// properties.
[[nodiscard]] bool working_density(const HumidState& gas, double& density);

}  // namespace kalorfix::gas
