// Compressibility by NX19 mod.: a closed form in density, nitrogen and carbon dioxide.
#pragma once

#include "gas/cube_root.h"
#include "gas/density_gas.h"

namespace kalorfix::gas {

/// Compressibility coefficient K = Z/Zc at T (K) and p (MPa, absolute). GOST 30319.2-96, NX19 mod. Meant for 250..340 K,
/// up to 12 MPa, 0.66..1 kg/m3, up to 15 % nitrogen and carbon dioxide; beyond, a number without warranty or NaN.
[[nodiscard]] double nx19(double T_K, double p_MPa, const DensityGas& gas, CubeRoot kind);

}  // namespace kalorfix::gas
