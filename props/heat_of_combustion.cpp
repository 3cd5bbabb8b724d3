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

}  // namespace kalorfix::gas
