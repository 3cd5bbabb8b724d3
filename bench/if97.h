// SPDX-License-Identifier: MIT
// IAPWS-IF97 as programs commonly evaluate it: liquid water and steam, the properties that t_param_1 returns but the viscosity.
// A yardstick only. Coefficients: IAPWS R7-97(2012), tables 2, 10 and 11.
#pragma once

namespace kalorfix::bench {

struct If97 {
    double rho_kgm3, h_kJ_kg, kappa;
};

/// One loop over the terms, a general power of pressure and one of temperature for each; 273.15 to 623.15 K.
[[nodiscard]] If97 if97_liquid(double T_K, double p_MPa);
[[nodiscard]] If97 if97_steam(double T_K, double p_MPa);

/// Whether both meet the verification values of R7-97(2012), tables 5 and 15.
[[nodiscard]] bool if97_verified();

}  // namespace kalorfix::bench
