// SPDX-License-Identifier: MIT
// Coefficients of the IAPS Formulation 1985 for the viscosity of ordinary water substance, revised
// release 2003, tables 1 and 2. Dimensionless.
#pragma once

#include <array>

namespace kalorfix::water {

inline constexpr double viscosity_T_star_K = 647.226;
inline constexpr double viscosity_rho_star_kgm3 = 317.763;
inline constexpr double viscosity_mu_star_uPas = 55.071;

/// Converts chi from the reducing values 22.064 MPa and 322 kg/m3 to 22.115 MPa and 317.763 kg/m3:
/// (22.115 / 22.064) (322 / 317.763)^2.
inline constexpr double viscosity_chi_conversion = 1.0292189746429927;

/// Critical enhancement: factor, exponent and the chi from which it applies.
inline constexpr double enhancement_factor = 0.922;
inline constexpr double enhancement_exponent = 0.0263;
inline constexpr double enhancement_from_chi = 21.93;

/// Dilute gas, powers 0..3 of T_star / T.
inline constexpr std::array<double, 4> viscosity_H{1.0, 0.978197, 0.579829, -0.202354};

/// Row i: power i of (T_star / T - 1); column j: power j of (rho / rho_star - 1).
inline constexpr std::array<std::array<double, 7>, 6> viscosity_Hij{{
    {0.5132047, 0.2151778, -0.2818107, 0.1778064, -0.0417661, 0.0, 0.0},
    {0.3205656, 0.7317883, -1.070786, 0.460504, 0.0, -0.01578386, 0.0},
    {0.0, 1.241044, -1.263184, 0.2340379, 0.0, 0.0, 0.0},
    {0.0, 1.476783, 0.0, -0.4924179, 0.1600435, 0.0, -0.003629481},
    {-0.7782567, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0},
    {0.1885447, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0},
}};

}  // namespace kalorfix::water
