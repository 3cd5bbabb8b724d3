// SPDX-License-Identifier: MIT
// The members that set a pipeline up and bring it to the working temperature.
#include <numbers>
#include <tuple>

#include "flow/geometry.h"
#include "kalorfix_calculators.h"
#include "runtime/judged.h"
#include "runtime/units.h"

namespace flow = kalorfix::flow;
namespace units = kalorfix::units;
using kalorfix::all_finite;
using kalorfix::judged;

namespace {

bool is_flag(char value) { return value == 0 || value == 1; }

// Pipe and device at t; left alone where a material refuses.
bool bring_to_temperature(cCommon2005& c) {
    c.R_a = c.R_sh / std::numbers::pi;
    const flow::Diameters at_t = flow::working_diameters(flow::device_row(c.device_type), {c.D20, c.mat_D},
                                                         {c.d20, c.mat_d}, c.by_material == 1, c.R_a, c.t);
    if (at_t.limit == flow::Limit::device_temperature || at_t.limit == flow::Limit::pipe_temperature)
        return false;
    c.D = at_t.D_m;
    c.d = at_t.d_m;
    return at_t.limit == flow::Limit::none && all_finite(c.D, c.d);
}

bool form_ratio(cCommon2005& c) {
    const flow::DeviceRow& device = flow::device_row(c.device_type);
    c.beta = c.d / c.D;
    c.E = flow::approach_factor(c.beta);
    if (flow::check_ratio(device, c.beta) != flow::Limit::none) return false;
    if (device.family == flow::Family::orifice) {
        const double limit_m = flow::limit_edge_radius_m(c.IsGas(), c.phase == KALORFIX_WATER);
        c.K_p = flow::bluntness_correction(flow::edge_radius_m(limit_m, c.r_n0, c.tau, c.r_n_at_end == 1), c.d);
    } else if (device.is_standard()) {
        c.K_p = 1.0;
    }
    return all_finite(c.beta, c.E, c.K_p);
}

}  // namespace

char cCommon2005::Init_TR(char class_code, short type_code, char material_codes, double pipe_material,
                          double device_material, double D20_mm, double d20_mm, double R_sh_mm, double r_n0_mm,
                          char radius_at_end, double interval_years, double alpha_eps_configured,
                          char& first_init) {
    first_init = 0;
    if (!is_flag(class_code) || !is_flag(material_codes) || !is_flag(radius_at_end)) return 0;
    if (flow::device_row(type_code).family == flow::Family::none) return 0;
    if (material_codes == 1 && !(flow::find_material(pipe_material) && flow::find_material(device_material)))
        return 0;
    if (D20_mm < 0.0 || d20_mm < 0.0 || R_sh_mm < 0.0 || r_n0_mm < 0.0) return 0;
    if (interval_years < 0.0 || alpha_eps_configured < 0.0) return 0;

    constexpr unsigned char never_configured = 3;
    if (metering_class == KALORFIX_CLASS_1) return 1;
    if (metering_class == never_configured) first_init = 1;

    metering_class = static_cast<unsigned char>(class_code);
    device_type = static_cast<unsigned char>(type_code);
    by_material = static_cast<unsigned char>(material_codes);
    mat_D = pipe_material;
    mat_d = device_material;
    D20 = D20_mm * units::m_per_mm;
    d20 = d20_mm * units::m_per_mm;
    R_sh = R_sh_mm * units::m_per_mm;
    r_n0 = r_n0_mm * units::m_per_mm;
    r_n_at_end = static_cast<unsigned char>(radius_at_end);
    tau = interval_years;
    alpha_eps = alpha_eps_configured;
    return judged(*this, true);
}

char cCommon2005::CountDd() { return judged(*this, bring_to_temperature(*this)); }

char cCommon2005::CountbetaEKp() { return judged(*this, form_ratio(*this)); }

char cCommon2005::Param_tr(double& D_mm, double& d_mm, double& beta_out, double& E_out, double& K_p_out) {
    const bool was_valid = valid == 1;
    D = d = beta = E = K_p = 0.0;
    const bool good = was_valid && bring_to_temperature(*this) &&
                      (!flow::device_row(device_type).is_standard() || form_ratio(*this));
    D_mm = D * units::mm_per_m;
    d_mm = d * units::mm_per_m;
    std::tie(beta_out, E_out, K_p_out) = std::tie(beta, E, K_p);
    return judged(*this, good && all_finite(D_mm, d_mm));
}
