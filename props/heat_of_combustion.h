// SPDX-License-Identifier: MIT
// Heats of combustion of a gas.
#pragma once

namespace kalorfix::gas {

struct HeatOfCombustion {
    double lower, higher;
};

/// Heats of combustion, MJ/m3 at 20 degC; contents in mole per cent. GOST 30319.1-96.
[[nodiscard]] HeatOfCombustion heat_of_combustion(double rho_c, double nitrogen_pct, double carbon_dioxide_pct);

inline constexpr unsigned heat_rows = 4;

/// Heats of combustion from 15 mole per cent, summed in the order of the components. Row: 0 kJ/m3 at 0 degC, 1 kcal/m3 at
/// 0 degC, 2 kJ/m3 at 20 degC, 3 kcal/m3 at 20 degC; zeros for any other row. GOST 30319.1-96.
[[nodiscard]] HeatOfCombustion heat_of_combustion(unsigned row, const double* mole_percent);

}  // namespace kalorfix::gas
