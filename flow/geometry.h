// SPDX-License-Identifier: MIT
// Pipe and device at the working temperature.
#pragma once

#include "flow/device.h"

namespace kalorfix::flow {

/// Linear thermal expansion of a material, GOST 8.586.1-2005, annex G:
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

/// A part with its diameter at 20 degC; its material is a code of GOST 8.586.1-2005, annex G, or a coefficient of linear thermal
/// expansion in 1/degC.
struct Part {
    double diameter_20_m;
    double material;
};

struct Diameters {
    double D_m, d_m;  ///< 0 where a material refuses the temperature
    Limit limit;
};

/// The diameters at t, checked against the limits of materials, device and roughness R_a (m). GOST 8.586.1-2005, 5.5.
[[nodiscard]] Diameters working_diameters(const DeviceRow& device, const Part& pipe, const Part& throat,
                                          bool by_material, double R_a_m, double t_C);

/// Velocity-of-approach factor 1 / sqrt(1 - beta^4). GOST 8.586.1-2005, 3.2.
[[nodiscard]] double approach_factor(double beta);

/// Radius in m that a worn edge tends to: gas 0.195 mm, liquid water 0.19 mm, steam 0.2 mm.
[[nodiscard]] double limit_edge_radius_m(bool gas, bool liquid);

/// Radius of the inlet edge in m at the end of the interval between checks, else its mean. That over 0 years is undefined (NaN).
/// GOST 8.586.2-2005, 5.3.2.4.
[[nodiscard]] double edge_radius_m(double limit_m, double initial_m, double interval_years, bool at_end);

/// Correction for the bluntness of the edge: 1 while the radius is at most 0.0004 d (or undefined).
/// GOST 8.586.2-2005, 5.3.2.4.
[[nodiscard]] double bluntness_correction(double edge_radius_m, double d_m);

}  // namespace kalorfix::flow
