// Flow rate: the members of the calculators that solve the flow equation.
#include <cmath>

#include "flow/equation.h"
#include "flow/fixed_point.h"
#include "kalorfix.h"
#include "runtime/judged.h"

namespace flow = kalorfix::flow;
using kalorfix::all_finite;
using kalorfix::judged;

namespace {

constexpr double th_per_kgs = 3.6;
constexpr double kg_per_t = 1000.0;
constexpr double t_per_kg = 0.001;
constexpr double to_thousands = 0.001;

constexpr unsigned short liquid_water = 1;

flow::Device device_of(const cCommon2005& calculator) {
    return static_cast<flow::Device>(calculator.device_type);
}

flow::DischargeLaw law_of(const cCommon2005& c) {
    return flow::DischargeLaw({device_of(c), c.D, c.beta, c.R_sh, c.R_a});
}

// One pass of the flow equation: from the flow of the pass before, or a Reynolds number of 10^6 in the first.
bool one_pass(cCommon2005& c, const flow::DischargeLaw& law, int pass, double dp, double rho, double q_prev) {
    c.valid = 0;
    c.Re = pass == 0 ? flow::million : flow::reynolds(q_prev, c.D, c.mu);

    flow::Discharge found{};
    if (!law.at(c.Re, found)) return false;
    c.C = found.C;
    c.K_sh = found.K_sh;
    c.q_m = flow::mass_flow_kgs(c.d, c.C * c.E * c.K_sh * c.K_p * c.epsilon, dp, rho);
    c.valid = 1;
    return true;
}

// The expansibility at a differential pressure; false where the pressure ratio is too large.
bool expand(cCommon2005& c, double dp) {
    if (!c.IsGas() && c.phase == liquid_water) {
        c.epsilon = 1.0;
        return true;
    }
    const double ratio = dp / c.p;
    if (ratio > flow::max_pressure_ratio) return false;
    if (flow::is_orifice(device_of(c)))
        c.epsilon = flow::orifice_expansibility(c.beta, c.kappa, 1.0 - ratio);
    else if (flow::is_standard(device_of(c)))
        c.epsilon = flow::nozzle_expansibility(c.beta, c.kappa, 1.0 - ratio);
    return true;
}

// Solves the flow equation of a standard device. Leaves the outcome in `valid`.
void solve_standard(cCommon2005& c, double dp, double rho) {
    if (!expand(c, dp)) return;
    const flow::DischargeLaw law = law_of(c);
    const flow::FixedPoint end =
        flow::fixed_point(flow::tolerance(c.metering_class), [&](int pass, double q_prev, double& q_m) {
            const bool accepted = one_pass(c, law, pass, dp, rho, q_prev);
            q_m = c.q_m;
            return accepted;
        });
    if (!end.converged) c.valid = 0;
}

// From the solved mass flow (or the meter's reading) to t/h and m3/h.
void convert_flow(cCommon2005& c, double reading, double rho) {
    const flow::Device device = device_of(c);
    if (flow::is_standard(device) || flow::is_direct(device)) c.q_m *= th_per_kgs;
    if (device == flow::Device::meter_mass) c.q_m = reading;
    if (device == flow::Device::meter_volume) {
        c.q_v = reading;
        c.q_m = reading * rho * t_per_kg;
    } else if (flow::code(device) <= flow::code(flow::Device::meter_mass)) {
        c.q_v = c.q_m * kg_per_t / rho;
    }
}

}  // namespace

char cCommon2005::mg_Param(char calc, double dp, double rho, double& q_m_out, double& q_v_out) {
    epsilon = Re = C = K_sh = q_v = q_m = 0.0;
    q_m_out = q_v_out = 0.0;
    if (calc == 0 || valid == 0) return 0;

    valid = 0;
    const flow::Device device = device_of(*this);
    if (flow::is_standard(device))
        solve_standard(*this, dp, rho);
    else if (flow::is_direct(device))
        CountqmalphaepsilonRe(dp, rho);
    else if (flow::is_meter(device))
        valid = 1;

    const bool solved = valid != 0;
    if (solved) convert_flow(*this, dp, rho);
    q_m_out = q_m;
    q_v_out = q_v;
    return judged(*this, solved && all_finite(q_m, q_v, epsilon, Re, C, K_sh));
}

char cCommon2005::Countq_mReCK_sh(int pass, double dp, double rho, double q_prev) {
    const bool accepted = one_pass(*this, law_of(*this), pass, dp, rho, q_prev);
    return judged(*this, accepted && all_finite(Re, C, K_sh, q_m));
}

char cCommon2005::CountqmalphaepsilonRe(double dp, double rho) {
    const flow::Device device = device_of(*this);
    const double m = flow::blockage(D, d);
    valid = 0;
    epsilon = flow::averaging_expansibility(m, {p, kappa, mu, phase == liquid_water}, dp);
    if (flow::is_averaging(device)) alpha_eps = epsilon * flow::averaging_coefficient(device, m);

    q_m = flow::mass_flow_kgs(D, alpha_eps, dp, rho);
    Re = flow::averaging_reynolds(q_m, D, d, mu);
    const bool accepted = flow::is_averaging(device) ? Re > flow::averaging_min_Re(device)
                                                     : device == flow::Device::configured_coefficient;
    return judged(*this, accepted && all_finite(epsilon, alpha_eps, q_m, Re));
}

char cCommon2005::Countepsilon(double dp) { return judged(*this, expand(*this, dp) && std::isfinite(epsilon)); }

char cGas2005::mgn_Param(char calc, double dp, double rho, double rho_c, double k, double& q_m_out,
                         double& q_v_out, double& q_c_out, double& q_e_out, double& K_sh_out, double& C_out,
                         double& Re_out, double& epsilon_out) {
    q_c = q_e = 0.0;
    const char status = mg_Param(calc, dp, rho, q_m_out, q_v_out);
    const flow::Device device = device_of(*this);
    if (status == 1 && device != flow::Device::external) {
        switch (device) {
            case flow::Device::meter_mass:
                q_c = dp * kg_per_t / rho_c;
                break;
            case flow::Device::meter_volume:
                q_c = dp * rho / rho_c;
                break;
            case flow::Device::meter_standard_volume:
                q_c = dp;
                q_v = dp * rho_c / rho;
                q_m = dp * rho_c * t_per_kg;
                break;
            default:
                q_c = q_m * kg_per_t / rho_c;
        }
        q_e = q_c * to_thousands * k;
    }
    q_m_out = q_m;
    q_v_out = q_v;
    q_c_out = q_c;
    q_e_out = q_e;
    K_sh_out = K_sh;
    C_out = C;
    Re_out = Re;
    epsilon_out = epsilon;
    if (calc == 0) return 0;
    return judged(*this, status == 1 && all_finite(q_m, q_v, q_c, q_e));
}

char cTeplo2005::mgn_Param(char calc, double dp, double rho, double h, double& q_m_out, double& q_v_out,
                           double& q_h_out, double& K_sh_out, double& C_out, double& Re_out,
                           double& epsilon_out) {
    q_h = 0.0;
    const char status = mg_Param(calc, dp, rho, q_m_out, q_v_out);
    const flow::Device device = device_of(*this);
    const bool supported = device != flow::Device::meter_standard_volume;
    if (status == 1 && supported && device != flow::Device::external)
        q_h = (device == flow::Device::meter_mass ? dp : q_m) * to_thousands * h;
    q_h_out = q_h;
    K_sh_out = K_sh;
    C_out = C;
    Re_out = Re;
    epsilon_out = epsilon;
    if (calc == 0) return 0;
    return judged(*this, status == 1 && supported && std::isfinite(q_h));
}
