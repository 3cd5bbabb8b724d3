// SPDX-License-Identifier: MIT
// The flow at a device: what is measured there, the solution of its flow equation, and what is made of the mass flow.
#pragma once

#include <cmath>
#include <numbers>

#include "flow/discharge.h"

namespace kalorfix::flow {

/// The medium at the device.
struct Medium {
    double p_Pa, kappa, mu_Pas;
    bool liquid;
};

/// Differential pressure, and the density at the device.
struct Reading {
    double dp_Pa, rho_kgm3;
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

// ---- Standard devices (1..9) ----

/// Expansibility in a standard device, 1 for a liquid; `epsilon` is left alone by other devices, and where dp/p is above its limit.
[[nodiscard]] Limit expand(const DeviceRow& device, double beta, const Medium& medium, double dp_Pa,
                           double& epsilon);

/// Pipe and device of a metering point at the working temperature.
struct StandardPoint {
    Bore bore;
    double d_m;
    double approach_factor;       ///< E
    double bluntness_correction;  ///< K_p
};

/// What all passes share: q_m = full_flow C K_sh, Re = q_m / (pi/4 D mu). Needs the expansibility.
struct FlowEquation {
    double full_flow_kgs;    ///< pi/4 d^2 E K_p epsilon sqrt(2 dp rho)
    double flow_per_Re_kgs;  ///< pi/4 D mu
};
[[nodiscard]] FlowEquation flow_equation(const StandardPoint& point, const Medium& medium,
                                         const Reading& reading, double epsilon);

/// One pass: Reynolds number of the previous flow (10^6 in the first pass), discharge coefficient, flow. A refusal leaves all but
/// the Reynolds number alone.
void flow_pass(const FlowEquation& equation, const DischargeLaw& law, int pass, double q_prev_kgs,
               FlowSolution& solution);

/// The whole solution, until the relative change of the flow is below the tolerance. GOST 8.586.1-2005, 8.
[[nodiscard]] FlowSolution solve_flow(const StandardPoint& point, const Medium& medium, const Reading& reading,
                                      double tolerance);

// ---- Averaging devices (10..18) and the device with a configured flow coefficient (19): a direct formula ----

/// Pipe and device of such a metering point.
struct AveragingPoint {
    const DeviceRow& device;
    double D_m, d_m;
    double configured_alpha_eps;  ///< of device 19
};

/// The mass flow; the Reynolds number, of the velocity in the pipe with the width of the device as the length, must exceed the
/// least of the device.
[[nodiscard]] FlowSolution averaging_flow(const AveragingPoint& point, const Medium& medium,
                                          const Reading& reading);

// ---- The flows handed out and totalled, from a solved mass flow or the reading of a meter ----

/// Mass flow t/h and volume flow m3/h at the device. `reading` is that of a meter: t/h, m3/h or standard m3/h.
struct WorkingFlow {
    double q_m_th = 0.0;
    double q_v_m3h = 0.0;
};
[[nodiscard]] WorkingFlow working_flow(const DeviceRow& device, double q_m_kgs, double reading,
                                       double rho_kgm3);

/// What a gas channel adds: standard volume flow, and that times 0.001 and the host's factor. A meter of standard volume gives the
/// working flow as well.
struct GasFlow {
    WorkingFlow working;
    double q_c_m3h = 0.0;
    double q_e = 0.0;
};
[[nodiscard]] GasFlow gas_flow(const DeviceRow& device, const WorkingFlow& working, double reading,
                               double rho_kgm3, double rho_c_kgm3, double factor);

/// Heat flow: the mass flow times 0.001 and the host's enthalpy; 0 where the flow is external.
[[nodiscard]] double heat_flow(const DeviceRow& device, const WorkingFlow& working, double h_kJ_kg);

}  // namespace kalorfix::flow
