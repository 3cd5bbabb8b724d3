// The sheets as text: one CSV file each, or all of them in one aligned listing. Both carry every bit and are read back.
#pragma once

#include <string>

#include "tools/gasdat/gas_file.h"

namespace kalorfix::tool::gasdat {

/// Reads all sheets from a directory of CSV files, named after the sheets, or from a listing. Throws InputError naming file,
/// line and what would be right; also when anything is missing, surplus or given twice.
[[nodiscard]] Values read_sheets(const std::string& source);

/// The listing of a file, short ones included; a missing value is "-".
[[nodiscard]] std::string listing(const GasFile& file, const std::string& name);

/// One sheet as CSV with a comment for each block.
[[nodiscard]] std::string csv(const Sheet& sheet, const Values& values);

}  // namespace kalorfix::tool::gasdat
