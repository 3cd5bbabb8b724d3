#include "props/gas_by_density.h"

#include <cmath>

namespace kalorfix::gas {

double viscosity(double T_K, double p_MPa, const DensityGas& gas) {
    // The reduced temperature is carried in single precision.
    const double Tr = static_cast<float>(T_K / pseudo_critical_temperature(gas));
    const double pr = p_MPa / pseudo_critical_pressure(gas);
    const double at_low_pressure = 3.24 * (std::sqrt(T_K) + 1.37 - 9.09 * std::pow(gas.rho_c, 0.125)) /
                                   (std::sqrt(gas.rho_c) + 2.08 - 1.5 * (gas.xa + gas.xy));
    return at_low_pressure * (1.0 + pr * pr / (30.0 * (Tr - 1.0)));
}

double isentropic_exponent(double T_K, double p_MPa, const DensityGas& gas) {
    const double ratio = p_MPa / T_K;
    return 1.556 * (1.0 + 0.074 * gas.xa) - 0.00039 * T_K * (1.0 - 0.68 * gas.xa) - 0.208 * gas.rho_c +
           std::pow(ratio, 1.43) * (384.0 * (1.0 - gas.xa) * std::pow(ratio, 0.8) + 26.4 * gas.xa);
}

}  // namespace kalorfix::gas
