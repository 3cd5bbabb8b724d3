// Heats of combustion of a gas of known composition.
#pragma once

#include "props/gas_by_density.h"

namespace kalorfix::gas {

inline constexpr unsigned heat_rows = 4;

/// Heats of combustion from 15 mole per cent, summed in the order of the components. Row: 0 kJ/m3 at 0 degC, 1 kcal/m3 at
/// 0 degC, 2 kJ/m3 at 20 degC, 3 kcal/m3 at 20 degC; zeros for any other row. GOST 30319.1-96.
[[nodiscard]] HeatOfCombustion heat_of_combustion(unsigned row, const double* mole_percent);

}  // namespace kalorfix::gas
