// Pipe and device at the working temperature.
#pragma once

#include "flow/device_tables.h"

namespace kalorfix::flow {

/// The row of a material code (its fraction is dropped), or null when the code is not a finite number from 1
/// to below 40. GOST 8.586.1-2005, annex G.
[[nodiscard]] const Material* find_material(double material_code);

/// Linear thermal-expansion coefficient in 1/degC at t_C.
[[nodiscard]] double expansion_coefficient(const Material& material, double t_C);

/// A diameter at t_C from the one at 20 degC. GOST 8.586.1-2005, 5.5.
[[nodiscard]] double expanded_diameter(double diameter_20, double expansion, double t_C);

/// Whether pipe, device and roughness (all m) lie within the size limits of the device; devices 10..23 have
/// none, other codes never pass. GOST 8.586.2..4-2005, limits of use.
[[nodiscard]] bool size_accepted(Device device, double D_m, double d_m, double R_a_m);

/// Whether the diameter ratio is within the limits of a standard device (1..9). An orifice plate refuses a
/// ratio outside its limits, the others accept one inside theirs: only an orifice passes a NaN on.
[[nodiscard]] bool beta_accepted(Device device, double beta);

/// Velocity-of-approach factor 1 / sqrt(1 - beta^4). GOST 8.586.1-2005, 3.2.
[[nodiscard]] double approach_factor(double beta);

/// What an orifice edge is worn to.
struct EdgeWear {
    double limit_radius_m;  ///< radius that the edge tends to, by the medium
    double initial_radius_m;
    double interval_years;
    bool at_end;  ///< radius at the end of the interval, else its mean
};

/// Radius in m that a worn edge tends to: gas 0.195 mm, liquid water 0.19 mm, steam 0.2 mm.
[[nodiscard]] double limit_edge_radius_m(bool gas, bool liquid);

/// Radius of the inlet edge in m. A mean over an interval of 0 years is undefined (NaN).
/// GOST 8.586.2-2005, 5.3.2.4.
[[nodiscard]] double edge_radius_m(const EdgeWear& wear);

/// Correction for the bluntness of the edge: 1 while the radius is at most 0.0004 d (or undefined).
/// GOST 8.586.2-2005, 5.3.2.4.
[[nodiscard]] double bluntness_correction(double edge_radius_m, double d_m);

}  // namespace kalorfix::flow
