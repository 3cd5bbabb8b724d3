// Pipeline set-up: the constants of a channel and its geometry at the working temperature.
#include <numbers>

#include "flow/geometry.h"
#include "kalorfix.h"
#include "runtime/judged.h"

namespace flow = kalorfix::flow;
using kalorfix::all_finite;
using kalorfix::judged;

namespace {

constexpr double m_per_mm = 0.001;
constexpr double mm_per_m = 1000.0;

bool is_flag(char value) { return value == 0 || value == 1; }

}  // namespace

char cCommon2005::Init_TR(char class_code, short type_code, char material_codes, double pipe_material,
                          double device_material, double D20_mm, double d20_mm, double R_sh_mm, double r_n0_mm,
                          char radius_at_end, double interval_years, double alpha_eps_configured,
                          char& first_init) {
    first_init = 0;
    if (!is_flag(class_code)) return 0;
    if (type_code < flow::code(flow::Device::orifice_corner) || type_code > flow::code(flow::Device::external))
        return 0;
    if (!is_flag(material_codes)) return 0;
    if (material_codes == 1 && !(flow::find_material(pipe_material) && flow::find_material(device_material)))
        return 0;
    if (D20_mm < 0.0 || d20_mm < 0.0 || R_sh_mm < 0.0 || r_n0_mm < 0.0) return 0;
    if (!is_flag(radius_at_end)) return 0;
    if (interval_years < 0.0 || alpha_eps_configured < 0.0) return 0;

    constexpr unsigned char frozen_class = 1;
    constexpr unsigned char never_configured = 3;
    if (metering_class == frozen_class) return 1;
    if (metering_class == never_configured) first_init = 1;

    metering_class = static_cast<unsigned char>(class_code);
    device_type = static_cast<unsigned char>(type_code);
    by_material = static_cast<unsigned char>(material_codes);
    mat_D = pipe_material;
    mat_d = device_material;
    D20 = D20_mm * m_per_mm;
    d20 = d20_mm * m_per_mm;
    R_sh = R_sh_mm * m_per_mm;
    r_n0 = r_n0_mm * m_per_mm;
    r_n_at_end = static_cast<unsigned char>(radius_at_end);
    tau = interval_years;
    alpha_eps = alpha_eps_configured;
    valid = 1;
    return 1;
}

char cCommon2005::CountDd() {
    valid = 0;
    R_a = R_sh / std::numbers::pi;

    double device_expansion = mat_d;
    double pipe_expansion = mat_D;
    if (by_material == 1) {
        const flow::Material* const device = flow::find_material(mat_d);
        const flow::Material* const pipe = flow::find_material(mat_D);
        if (!device || t < device->t_min_C || t > device->t_max_C) return 0;
        if (!pipe || t < pipe->t_min_C || t > pipe->t_max_C) return 0;
        device_expansion = flow::expansion_coefficient(*device, t);
        pipe_expansion = flow::expansion_coefficient(*pipe, t);
    }
    D = flow::expanded_diameter(D20, pipe_expansion, t);
    d = flow::expanded_diameter(d20, device_expansion, t);
    const bool accepted = flow::size_accepted(static_cast<flow::Device>(device_type), D, d, R_a);
    return judged(*this, accepted && all_finite(D, d));
}

char cCommon2005::CountbetaEKp() {
    const auto device = static_cast<flow::Device>(device_type);
    valid = 0;
    beta = d / D;
    E = flow::approach_factor(beta);
    if (!flow::beta_accepted(device, beta)) return 0;
    if (flow::is_orifice(device)) {
        constexpr unsigned short liquid_water = 1;
        const double limit_radius_m = flow::limit_edge_radius_m(IsGas(), phase == liquid_water);
        const double radius_m = flow::edge_radius_m({limit_radius_m, r_n0, tau, r_n_at_end == 1});
        K_p = flow::bluntness_correction(radius_m, d);
    } else if (flow::is_standard(device)) {
        K_p = 1.0;
    }
    return judged(*this, all_finite(beta, E, K_p));
}

char cCommon2005::Param_tr(double& D_mm, double& d_mm, double& beta_out, double& E_out, double& K_p_out) {
    const bool was_valid = valid == 1;
    D = d = beta = E = K_p = 0.0;
    if (was_valid) {
        valid = 0;
        if (CountDd() == 1 && flow::is_standard(static_cast<flow::Device>(device_type))) CountbetaEKp();
    }
    D_mm = D * mm_per_m;
    d_mm = d * mm_per_m;
    beta_out = beta;
    E_out = E;
    K_p_out = K_p;
    return static_cast<char>(valid);
}
