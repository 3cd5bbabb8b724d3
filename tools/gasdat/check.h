// Judging a gas data file.
#pragma once

#include <string>
#include <vector>

#include "tools/gasdat/gas_file.h"

namespace kalorfix::tool::gasdat {

/// Every fault in one line: table, place, value and what would be right. Judged are size, finite values, symmetry and diagonals
/// of the binary tables, signs and plausible ranges of the constants, exponents, positions that are no terms, the
/// agreement of the tables with one another, and the ideal-gas heat capacities at 300 K. Of a short file the
/// values that are there are judged one by one.
[[nodiscard]] std::vector<std::string> faults(const GasFile& file);

}  // namespace kalorfix::tool::gasdat
