// Dynamic viscosity of water and steam: IAPS Formulation 1985 in its revised form (2003).
#pragma once

namespace kalorfix::water {

/// Viscosity in uPa s at T_K and rho_kgm3. `reduced_compressibility` is chi = (p_c / rho_c^2)
/// rho (drho/dp) in the reducing values of IAPWS-95; at and above 21.93 (after conversion to the reducing
/// values of the viscosity release) the critical enhancement 0.922 chi^0.0263 applies.
[[nodiscard]] double viscosity_uPas(double T_K, double rho_kgm3, double reduced_compressibility);

}  // namespace kalorfix::water
