// A natural gas known by its density at standard conditions, nitrogen and carbon dioxide.
#pragma once

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

}  // namespace kalorfix::gas
