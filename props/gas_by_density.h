// Properties of a gas known by density, nitrogen and carbon dioxide: viscosity, isentropic exponent.
#pragma once

#include "gas/by_density.h"

namespace kalorfix::gas {

/// Dynamic viscosity, uPa s, at T (K) and p (MPa). GOST 30319.1-96. No limits of its own; near the pseudo-critical
/// temperature, far below the working range, it grows without bound.
[[nodiscard]] double viscosity(double T_K, double p_MPa, const DensityGas& gas);

/// Isentropic exponent at T (K) and p (MPa). GOST 30319.1-96.
[[nodiscard]] double isentropic_exponent(double T_K, double p_MPa, const DensityGas& gas);

}  // namespace kalorfix::gas
