// SPDX-License-Identifier: MIT
// Density of a gas that carries water vapour.
#pragma once

namespace kalorfix::gas {

struct HumidState {
    double T_K, p_MPa;
    double rho_c_kgm3;   ///< density of the dry gas at standard conditions
    double K;            ///< its compressibility coefficient
    double vapour_kgm3;  ///< water vapour in the working cubic metre; not above 0: dry
};

/// Density at working conditions, kg/m3: the dry gas under its partial pressure and the vapour with its own mass. False where the
/// content is a NaN or more than the vapour that the cubic metre holds, or the vapour lies outside the range of the water
/// properties.
[[nodiscard]] bool working_density(const HumidState& gas, double& density);

}  // namespace kalorfix::gas
