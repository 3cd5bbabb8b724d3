// Properties of a gas known by density, nitrogen and carbon dioxide: viscosity, isentropic exponent, heats of combustion.
#pragma once

#include "gas/by_density.h"

namespace kalorfix::gas {

/// Dynamic viscosity, uPa s, at T (K) and p (MPa). GOST 30319.1-96. No limits of its own; near the pseudo-critical
/// temperature, far below the working range, it grows without bound.
[[nodiscard]] double viscosity(double T_K, double p_MPa, const DensityGas& gas);

/// Isentropic exponent at T (K) and p (MPa). GOST 30319.1-96.
[[nodiscard]] double isentropic_exponent(double T_K, double p_MPa, const DensityGas& gas);

struct HeatOfCombustion {
    double lower, higher;
};

/// Heats of combustion, MJ/m3 at 20 degC; contents in mole per cent. GOST 30319.1-96.
[[nodiscard]] HeatOfCombustion heat_of_combustion(double rho_c, double nitrogen_pct, double carbon_dioxide_pct);

}  // namespace kalorfix::gas
