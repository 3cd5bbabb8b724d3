// SPDX-License-Identifier: MIT
#include "props/heat_of_combustion.h"

#include "props/heat_of_combustion_tables.h"

namespace kalorfix::gas {

HeatOfCombustion heat_of_combustion(unsigned row, const double* mole_percent) {
    if (row >= heat_rows) return {0.0, 0.0};
    HeatOfCombustion sum{0.0, 0.0};
    for (std::size_t k = 0; k < component_count; ++k) {
        sum.lower += lower_heat[row][k] * mole_percent[k];
        sum.higher += higher_heat[row][k] * mole_percent[k];
    }
    return {0.01 * sum.lower, 0.01 * sum.higher};
}

HeatOfCombustion heat_of_combustion(double rho_c, double nitrogen_pct, double carbon_dioxide_pct) {
    return {85.453 * (0.5219 * rho_c + 0.04242 - 0.0065197 * nitrogen_pct - 0.01 * carbon_dioxide_pct),
            92.819 * (0.51447 * rho_c + 0.05603 - 0.0065689 * nitrogen_pct - 0.01 * carbon_dioxide_pct)};
}

}  // namespace kalorfix::gas
