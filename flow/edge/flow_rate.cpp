// SPDX-License-Identifier: MIT
// The members that solve the flow equation and derive the flows of a medium.
#include "flow/flow_rate.h"

#include <tuple>

#include "flow/fixed_point.h"
#include "kalorfix_calculators.h"
#include "runtime/judged.h"

namespace flow = kalorfix::flow;
using kalorfix::all_finite;
using kalorfix::judged;

namespace {

flow::Medium medium_of(cCommon2005& c) { return {c.p, c.kappa, c.mu, c.phase == KALORFIX_WATER && !c.IsGas()}; }

flow::StandardPoint standard_point(const cCommon2005& c) {
    return {{flow::device_row(c.device_type), c.D, c.beta, c.R_sh, c.R_a}, c.d, c.E, c.K_p};
}

flow::FlowSolution averaging(cCommon2005& c, double dp, double rho) {
    flow::Medium medium = medium_of(c);
    medium.liquid = c.phase == KALORFIX_WATER;
    return flow::averaging_flow({flow::device_row(c.device_type), c.D, c.d, c.alpha_eps}, medium, {dp, rho});
}

void store(cCommon2005& c, const flow::FlowSolution& found) {
    std::tie(c.epsilon, c.Re, c.C, c.K_sh) = std::tie(found.epsilon, found.Re, found.C, found.K_sh);
    c.q_m = found.q_m_kgs;
}

// Flow at the device, t/h and m3/h; where it is refused q_m stays in kg/s, as the last pass left it.
bool find_flow(cCommon2005& c, double dp, double rho) {
    const flow::DeviceRow& device = flow::device_row(c.device_type);
    flow::FlowSolution found;
    if (device.is_standard())
        found = flow::solve_flow(standard_point(c), medium_of(c), {dp, rho}, flow::tolerance(c.metering_class));
    else if (device.is_direct())
        found = averaging(c, dp, rho);
    else if (device.family == flow::Family::none)
        return false;
    store(c, found);
    if (device.is_direct()) c.alpha_eps = found.alpha_eps;
    if (found.limit != flow::Limit::none || !all_finite(found.q_m_kgs, found.alpha_eps)) return false;
    const flow::WorkingFlow working = flow::working_flow(device, found.q_m_kgs, dp, rho);
    c.q_m = working.q_m_th;
    c.q_v = working.q_v_m3h;
    return all_finite(c.q_m, c.q_v, c.epsilon, c.Re, c.C, c.K_sh);
}

// True when a flow was asked for, the steps before were good, and so is the flow.
bool measure(cCommon2005& c, char calc, double dp, double rho) {
    c.epsilon = c.Re = c.C = c.K_sh = c.q_v = c.q_m = 0.0;
    return calc != 0 && c.valid != 0 && find_flow(c, dp, rho);
}

// Without `calc` nothing is computed, and the channel stays as valid as it was.
char outcome(cCommon2005& c, char calc, bool good) { return calc == 0 ? char{0} : judged(c, good); }

}  // namespace

char cCommon2005::mg_Param(char calc, double dp, double rho, double& q_m_out, double& q_v_out) {
    const bool good = measure(*this, calc, dp, rho);
    std::tie(q_m_out, q_v_out) = std::tie(q_m, q_v);
    return outcome(*this, calc, good);
}

char cCommon2005::Countq_mReCK_sh(int pass, double dp, double rho, double q_prev) {
    const flow::StandardPoint point = standard_point(*this);
    flow::FlowSolution found{epsilon, Re, C, K_sh, alpha_eps, q_m};
    flow::flow_pass(flow::flow_equation(point, medium_of(*this), {dp, rho}, epsilon),
                    flow::DischargeLaw(point.bore), pass, q_prev, found);
    store(*this, found);
    return judged(*this, found.limit == flow::Limit::none && all_finite(Re, C, K_sh, q_m));
}

char cCommon2005::CountqmalphaepsilonRe(double dp, double rho) {
    const flow::FlowSolution found = averaging(*this, dp, rho);
    std::tie(epsilon, alpha_eps, q_m, Re) = std::tie(found.epsilon, found.alpha_eps, found.q_m_kgs, found.Re);
    return judged(*this, flow::device_row(device_type).is_direct() && found.limit == flow::Limit::none &&
                             all_finite(epsilon, alpha_eps, q_m, Re));
}

char cCommon2005::Countepsilon(double dp) {
    const flow::Limit limit = flow::expand(flow::device_row(device_type), beta, medium_of(*this), dp, epsilon);
    return judged(*this, limit == flow::Limit::none && all_finite(epsilon));
}

char cGas2005::mgn_Param(char calc, double dp, double rho, double rho_c, double k, double& q_m_out,
                         double& q_v_out, double& q_c_out, double& q_e_out, double& K_sh_out, double& C_out,
                         double& Re_out, double& epsilon_out) {
    q_c = q_e = 0.0;
    bool good = measure(*this, calc, dp, rho);
    if (good) {
        const flow::GasFlow gas = flow::gas_flow(flow::device_row(device_type), {q_m, q_v}, dp, rho, rho_c, k);
        std::tie(q_m, q_v) = std::tie(gas.working.q_m_th, gas.working.q_v_m3h);
        std::tie(q_c, q_e) = std::tie(gas.q_c_m3h, gas.q_e);
        good = all_finite(q_m, q_v, q_c, q_e);
    }
    std::tie(q_m_out, q_v_out, q_c_out, q_e_out) = std::tie(q_m, q_v, q_c, q_e);
    std::tie(K_sh_out, C_out, Re_out, epsilon_out) = std::tie(K_sh, C, Re, epsilon);
    return outcome(*this, calc, good);
}

char cTeplo2005::mgn_Param(char calc, double dp, double rho, double h, double& q_m_out, double& q_v_out,
                           double& q_h_out, double& K_sh_out, double& C_out, double& Re_out,
                           double& epsilon_out) {
    q_h = 0.0;
    bool good = measure(*this, calc, dp, rho);
    const flow::DeviceRow& device = flow::device_row(device_type);
    if (good && device.device == flow::Device::meter_standard_volume) {
        good = false;  // a heat carrier has no standard volume
    } else if (good) {
        q_h = flow::heat_flow(device, {q_m, q_v}, h);
        good = all_finite(q_h);
    }
    std::tie(q_m_out, q_v_out, q_h_out) = std::tie(q_m, q_v, q_h);
    std::tie(K_sh_out, C_out, Re_out, epsilon_out) = std::tie(K_sh, C, Re, epsilon);
    return outcome(*this, calc, good);
}
