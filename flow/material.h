// Linear thermal expansion of the materials of pipes and devices. GOST 8.586.1-2005, annex G.
#pragma once

namespace kalorfix::flow {

/// alpha = (a0 + a1 (t/1000) + a2 (t/1000)^2) 1e-6 1/degC for t_min..t_max.
struct Material {
    double a0, a1, a2;
    double t_min_C, t_max_C;

    /// Coefficient of linear thermal expansion, 1/degC.
    [[nodiscard]] constexpr double expansion(double t_C) const {
        const double x = t_C / 1000.0;
        return (a0 + a1 * x + a2 * (x * x)) * 1e-6;
    }
};

inline constexpr int material_count = 39;

/// The row of a material code (its fraction is dropped), or null when the code is not a finite number from 1 to below 40.
[[nodiscard]] const Material* find_material(double code);

}  // namespace kalorfix::flow
