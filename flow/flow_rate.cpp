// SPDX-License-Identifier: MIT
#include "flow/flow_rate.h"

#include "flow/fixed_point.h"
#include "runtime/units.h"

namespace kalorfix::flow {
namespace {

// Expansibility at the pressure ratio tau = 1 - dp/p. The coefficient of beta^4 is 0.265, not the 0.256 of the standard: kept on purpose.
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
    // 1 - tau^((kappa-1)/kappa), no digit lost in the difference.
    const double one_minus_power = (tau_k - tau) / tau_k;
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

FlowEquation flow_equation(const StandardPoint& point, const Medium& medium, const Reading& reading,
                           double epsilon) {
    const double factors = point.approach_factor * point.bluntness_correction * epsilon;
    return {mass_flow_kgs(point.d_m, factors, reading),
            std::numbers::pi / 4.0 * point.bore.D_m * medium.mu_Pas};
}

void flow_pass(const FlowEquation& equation, const DischargeLaw& law, int pass, double q_prev_kgs,
               FlowSolution& solution) {
    solution.Re = pass == 0 ? million : q_prev_kgs / equation.flow_per_Re_kgs;
    Discharge found{};
    solution.limit = law.at(solution.Re, found);
    if (solution.limit != Limit::none) return;
    solution.C = found.C;
    solution.K_sh = found.K_sh;
    solution.q_m_kgs = equation.full_flow_kgs * found.C * found.K_sh;
}

FlowSolution solve_flow(const StandardPoint& point, const Medium& medium, const Reading& reading,
                        double tolerance) {
    FlowSolution solution;
    solution.limit = expand(point.bore.device, point.bore.beta, medium, reading.dp_Pa, solution.epsilon);
    if (solution.limit != Limit::none) return solution;
    const DischargeLaw law(point.bore);
    const FlowEquation equation = flow_equation(point, medium, reading, solution.epsilon);
    const FixedPoint end = fixed_point(tolerance, [&](int pass, double q_prev, double& q_m) {
        flow_pass(equation, law, pass, q_prev, solution);
        q_m = solution.q_m_kgs;
        return solution.limit == Limit::none;
    });
    if (!end.converged && !end.refused) solution.limit = Limit::passes;
    return solution;
}

WorkingFlow working_flow(const DeviceRow& device, double q_m_kgs, double reading, double rho_kgm3) {
    switch (device.device) {
        case Device::meter_volume: return {reading * rho_kgm3 * units::t_per_kg, reading};
        case Device::meter_standard_volume:
        case Device::external:
        case Device::none: return {};
        default:
            const double q_m_th = device.device == Device::meter_mass ? reading : q_m_kgs * units::th_per_kgs;
            return {q_m_th, q_m_th * units::kg_per_t / rho_kgm3};
    }
}

GasFlow gas_flow(const DeviceRow& device, const WorkingFlow& working, double reading, double rho_kgm3,
                 double rho_c_kgm3, double factor) {
    GasFlow flow{.working = working};
    switch (device.device) {
        case Device::external: return flow;
        case Device::meter_volume: flow.q_c_m3h = reading * rho_kgm3 / rho_c_kgm3; break;
        case Device::meter_standard_volume:
            flow.q_c_m3h = reading;
            flow.working = {reading * rho_c_kgm3 * units::t_per_kg, reading * rho_c_kgm3 / rho_kgm3};
            break;
        default: flow.q_c_m3h = working.q_m_th * units::kg_per_t / rho_c_kgm3;
    }
    flow.q_e = flow.q_c_m3h * units::per_thousand * factor;
    return flow;
}

double heat_flow(const DeviceRow& device, const WorkingFlow& working, double h_kJ_kg) {
    return device.family == Family::external ? 0.0 : working.q_m_th * units::per_thousand * h_kJ_kg;
}

}  // namespace kalorfix::flow
