// SPDX-License-Identifier: MIT
// m is the blockage of a bar of width d across a pipe D, 4 d/(pi D); alpha the flow coefficient, epsilon the expansibility.
#include "flow/flow_rate.h"

namespace kalorfix::flow {
namespace {

struct Coefficients {
    double A, B;
};
// Devices 12 to 18.
constexpr Coefficients tabulated[] = {{0.92, -1.3452},  {1.265, -1.43},   {1.2075, -1.3416}, {1.24, -1.2613},
                                      {1.4229, -1.515}, {1.4179, -1.492}, {1.3318, -1.5856}};
constexpr std::size_t first_tabulated = 12;

double expansibility(double m, const Medium& medium, double dp_Pa) {
    if (medium.liquid) return 1.0;
    const double free = 1.0 - m;
    return 1.0 - (0.31424 * (free * free) - 0.09484) * dp_Pa / (medium.p_Pa * medium.kappa);
}

// Flow coefficient of devices 10..18: linear for 10 and 11.
double averaging_coefficient(Device device, double blockage) {
    if (Device::averaging_first <= device && device <= Device::averaging_linear_last)
        return 0.7269 - 0.8212 * blockage;
    const Coefficients& row = tabulated[static_cast<std::size_t>(device) - first_tabulated];
    const double free = 1.0 - row.A * blockage;
    return free / std::sqrt(1.0 - row.B * (free * free));
}

}  // namespace

FlowSolution averaging_flow(const AveragingPoint& point, const Medium& medium, const Reading& reading) {
    const double D_m = point.D_m;
    const double m = 4.0 * point.d_m / (std::numbers::pi * D_m);
    FlowSolution found;
    found.epsilon = expansibility(m, medium, reading.dp_Pa);
    found.alpha_eps = point.device.family == Family::averaging
                          ? found.epsilon * averaging_coefficient(point.device.device, m)
                          : point.configured_alpha_eps;
    found.q_m_kgs = mass_flow_kgs(D_m, found.alpha_eps, reading);
    found.Re = 4.0 * found.q_m_kgs * point.d_m / (std::numbers::pi * (D_m * D_m) * medium.mu_Pas);
    const Range reynolds = point.device.reynolds(m, D_m);
    if (point.device.family == Family::averaging && !reynolds.contains(found.Re)) found.limit = Limit::reynolds;
    return found;
}

}  // namespace kalorfix::flow
