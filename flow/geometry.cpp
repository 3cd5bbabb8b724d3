#include "flow/geometry.h"

#include <cmath>

namespace kalorfix::flow {

const Material* find_material(double material_code) {
    if (!(material_code >= 1.0 && material_code < material_count + 1.0)) return nullptr;
    return &materials[static_cast<std::size_t>(material_code) - 1];
}

double expansion_coefficient(const Material& material, double t_C) {
    const double x = t_C / 1000.0;
    return (material.a0 + material.a1 * x + material.a2 * (x * x)) * 1e-6;
}

double expanded_diameter(double diameter_20, double expansion, double t_C) {
    return diameter_20 * (1.0 + expansion * (t_C - 20.0));
}

bool size_accepted(Device device, double D_m, double d_m, double R_a_m) {
    if (!is_standard(device)) return is_direct(device) || is_meter(device);
    const SizeLimits& limits = size_limits[static_cast<std::size_t>(code(device)) - 1];
    if (!(limits.D_min_m <= D_m && D_m <= limits.D_max_m)) return false;
    if (limits.d_min_m > 0.0 && !(d_m >= limits.d_min_m)) return false;
    return device != Device::nozzle_long_radius || R_a_m / D_m <= long_radius_max_roughness;
}

bool beta_accepted(Device device, double beta) {
    if (!is_standard(device)) return true;
    const BetaLimits& limits = beta_limits[static_cast<std::size_t>(code(device)) - 1];
    if (is_orifice(device)) return !(beta < limits.min || beta > limits.max);
    return limits.min <= beta && beta <= limits.max;
}

double approach_factor(double beta) {
    const double beta2 = beta * beta;
    return 1.0 / std::sqrt(1.0 - beta2 * beta2);
}

double limit_edge_radius_m(bool gas, bool liquid) {
    if (gas) return 0.000195;
    return liquid ? 0.00019 : 0.0002;
}

double edge_radius_m(const EdgeWear& wear) {
    const double missing = wear.limit_radius_m - wear.initial_radius_m;
    const double decay = std::exp(-wear.interval_years / 3.0);
    if (wear.at_end) return wear.limit_radius_m - missing * decay;
    return wear.limit_radius_m - 3.0 / wear.interval_years * missing * (1.0 - decay);
}

double bluntness_correction(double edge_radius_m, double d_m) {
    if (edge_radius_m > 0.0004 * d_m) return 0.9826 + std::pow(edge_radius_m / d_m + 0.0007773, 0.6);
    return 1.0;
}

}  // namespace kalorfix::flow
