// SPDX-License-Identifier: MIT
// A natural gas known by its density at standard conditions, nitrogen and carbon dioxide, and its compressibility: NX19 mod., a
// closed form, and GERG-91 mod., a virial equation.
#pragma once

#include "gas/powers.h"

namespace kalorfix::gas {

struct DensityGas {
    double rho_c;  ///< density at standard conditions, kg/m3
    double xa;     ///< nitrogen, mole fraction
    double xy;     ///< carbon dioxide, mole fraction
};

/// Pseudo-critical temperature (K) and pressure (MPa). GOST 30319.2-96, NX19 mod.; the viscosity of GOST 30319.1-96 uses
/// the same.
[[nodiscard]] inline double pseudo_critical_temperature(const DensityGas& gas) {
    return 88.25 * (0.9915 + 1.759 * gas.rho_c - gas.xy - 1.681 * gas.xa);
}
[[nodiscard]] inline double pseudo_critical_pressure(const DensityGas& gas) {
    return 2.9585 * (1.608 - 0.05994 * gas.rho_c + gas.xy - 0.392 * gas.xa);
}

/// Compressibility coefficient K = Z/Zc at T (K) and p (MPa, absolute). GOST 30319.2-96, NX19 mod. Meant for 250..340 K,
/// up to 12 MPa, 0.66..1 kg/m3, up to 15 % nitrogen and carbon dioxide; beyond, a number without warranty or NaN.
[[nodiscard]] double nx19(double T_K, double p_MPa, const DensityGas& gas, CubeRoot kind);

/// Second (m3/kmol) and third (m6/kmol2) virial coefficient of a mixture.
struct Virial {
    double second, third;
};

/// The cube roots of C1 C1 C2, C1 C1 C3, C1 C2 C2, C1 C2 C3 and C1 C3 C3, by those of C2/C1 and C3/C1. Taken as powers they are
/// all NaN when one of the three is negative, since one of the products is then.
struct GeometricMeans {
    double of_112, of_113, of_122, of_123, of_133;
};
[[nodiscard]] GeometricMeans geometric_means(double C1, double C2, double C3, CubeRoot kind);

/// Virial coefficients of the gas at T (K). GOST 30319.2-96, GERG-91 mod.
[[nodiscard]] Virial gerg91_virial(double T_K, const DensityGas& gas, CubeRoot kind);

/// The real root z of z^3 - z^2 - B q z - C q^2 = 0, q = 1000 p/(R T), by Cardano's formula.
[[nodiscard]] double virial_compressibility(double T_K, double p_MPa, const Virial& v, CubeRoot kind);

/// Compressibility coefficient K = Z/Zc at T (K) and p (MPa, absolute). GOST 30319.2-96, GERG-91 mod. Meant for
/// 250..340 K, up to 12 MPa, 0.66..1 kg/m3, up to 15 % nitrogen and carbon dioxide.
[[nodiscard]] double gerg91(double T_K, double p_MPa, const DensityGas& gas, CubeRoot kind);

}  // namespace kalorfix::gas
