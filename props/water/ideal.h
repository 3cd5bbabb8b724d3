// Ideal-gas part of IAPWS-95: heat capacity and enthalpy, functions of the temperature alone.
#pragma once

namespace kalorfix::water {

struct IdealGas {
    double cv_kJ_kgK;  ///< isochoric heat capacity, -R tau^2 phi0_tt
    double h_kJ_kg;    ///< enthalpy, R T (1 + tau phi0_t)
};

/// The ideal-gas part at T_K > 0 (IAPWS R6-95(2018), eq. 5 and table 4).
[[nodiscard]] IdealGas ideal_gas(double T_K);

}  // namespace kalorfix::water
