// What is measured at a device, and what a solution of its flow equation consists of.
#pragma once

#include <cmath>
#include <numbers>

#include "flow/device.h"

namespace kalorfix::flow {

/// The medium at the device.
struct Medium {
    double p_Pa;
    double kappa;
    double mu_Pas;
    bool liquid;
};

/// Differential pressure, and the density at the device.
struct Reading {
    double dp_Pa;
    double rho_kgm3;
};

/// Factors that a solution did not get to are 0.
struct FlowSolution {
    double epsilon = 0.0;    ///< expansibility
    double Re = 0.0;         ///< Reynolds number
    double C = 0.0;          ///< discharge coefficient
    double K_sh = 0.0;       ///< correction for roughness
    double alpha_eps = 0.0;  ///< flow coefficient times expansibility (devices 10..19)
    double q_m_kgs = 0.0;    ///< of the last pass
    Limit limit = Limit::none;
};

/// Mass flow through a cross section of the given diameter: pi/4 diameter^2 coefficient sqrt(2 dp rho). GOST 8.586.1-2005, 5.1.
[[nodiscard]] inline double mass_flow_kgs(double diameter_m, double coefficient, const Reading& reading) {
    return std::numbers::pi / 4.0 * (diameter_m * diameter_m) * coefficient *
           std::sqrt(2.0 * reading.dp_Pa * reading.rho_kgm3);
}

}  // namespace kalorfix::flow
