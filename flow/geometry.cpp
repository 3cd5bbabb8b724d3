// SPDX-License-Identifier: MIT
#include "flow/geometry.h"

#include <cmath>

namespace kalorfix::flow {
namespace {

double expanded(const Part& part, double expansion, double t_C) {
    return part.diameter_20_m * (1.0 + expansion * (t_C - 20.0));
}

// The coefficient of a part at t; false for a code that is none, and outside the temperatures of its material. A NaN is not outside.
bool find_expansion(const Part& part, double t_C, double& expansion) {
    const Material* const material = find_material(part.material);
    if (!material || t_C < material->t_min_C || t_C > material->t_max_C) return false;
    expansion = material->expansion(t_C);
    return true;
}

}  // namespace

Diameters working_diameters(const DeviceRow& device, const Part& pipe, const Part& throat, bool by_material,
                            double R_a_m, double t_C) {
    double pipe_expansion = pipe.material;
    double throat_expansion = throat.material;
    if (by_material) {
        if (!find_expansion(throat, t_C, throat_expansion)) return {0.0, 0.0, Limit::device_temperature};
        if (!find_expansion(pipe, t_C, pipe_expansion)) return {0.0, 0.0, Limit::pipe_temperature};
    }
    const double D_m = expanded(pipe, pipe_expansion, t_C);
    const double d_m = expanded(throat, throat_expansion, t_C);
    return {D_m, d_m, check_size(device, D_m, d_m, R_a_m)};
}

double approach_factor(double beta) {
    const double beta2 = beta * beta;
    return 1.0 / std::sqrt(1.0 - beta2 * beta2);
}

double limit_edge_radius_m(bool gas, bool liquid) {
    if (gas) return 0.000195;
    return liquid ? 0.00019 : 0.0002;
}

double edge_radius_m(double limit_m, double initial_m, double interval_years, bool at_end) {
    const double missing = limit_m - initial_m;
    const double decay = std::exp(-interval_years / 3.0);
    return limit_m - (at_end ? missing * decay : 3.0 / interval_years * missing * (1.0 - decay));
}

double bluntness_correction(double edge_radius_m, double d_m) {
    if (edge_radius_m > 0.0004 * d_m) return 0.9826 + std::pow(edge_radius_m / d_m + 0.0007773, 0.6);
    return 1.0;
}

}  // namespace kalorfix::flow
