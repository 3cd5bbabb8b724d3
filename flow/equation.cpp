#include "flow/equation.h"

#include <cmath>
#include <numbers>

namespace kalorfix::flow {

double orifice_expansibility(double beta, double kappa, double tau) {
    const double beta4 = beta * beta * beta * beta;
    return 1.0 - (0.351 + 0.265 * beta4 + 0.93 * (beta4 * beta4)) * (1.0 - std::pow(tau, 1.0 / kappa));
}

double nozzle_expansibility(double beta, double kappa, double tau) {
    const double beta4 = beta * beta * beta * beta;
    const double tau_2k = std::pow(tau, 2.0 / kappa);
    return std::sqrt(kappa * tau_2k / (kappa - 1.0) * ((1.0 - beta4) / (1.0 - beta4 * tau_2k)) *
                     ((1.0 - std::pow(tau, (kappa - 1.0) / kappa)) / (1.0 - tau)));
}

double reynolds(double q_m_kgs, double D_m, double mu_Pas) {
    return 4.0 * q_m_kgs / (std::numbers::pi * D_m * mu_Pas);
}

double mass_flow_kgs(double diameter_m, double coefficient, double dp_Pa, double rho_kgm3) {
    return std::numbers::pi / 4.0 * (diameter_m * diameter_m) * coefficient * std::sqrt(2.0 * dp_Pa * rho_kgm3);
}

double blockage(double D_m, double d_m) { return 4.0 * d_m / (std::numbers::pi * D_m); }

double averaging_expansibility(double blockage, const Medium& medium, double dp_Pa) {
    if (medium.liquid) return 1.0;
    const double open = 1.0 - blockage;
    return 1.0 - (0.31424 * (open * open) - 0.09484) * dp_Pa / (medium.p_Pa * medium.kappa);
}

double averaging_coefficient(Device device, double blockage) {
    if (code(device) <= code(Device::averaging_linear_last)) return 0.7269 - 0.8212 * blockage;
    const AveragingCoefficients& row = averaging_coefficients[static_cast<std::size_t>(code(device)) - 12];
    const double open = 1.0 - row.A * blockage;
    return open / std::sqrt(1.0 - row.B * (open * open));
}

double averaging_reynolds(double q_m_kgs, double D_m, double d_m, double mu_Pas) {
    return 4.0 * q_m_kgs * d_m / (std::numbers::pi * (D_m * D_m) * mu_Pas);
}

double averaging_min_Re(Device device) {
    return averaging_min_reynolds[static_cast<std::size_t>(code(device)) - 10];
}

}  // namespace kalorfix::flow
