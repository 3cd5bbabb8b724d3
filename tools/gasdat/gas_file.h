// SPDX-License-Identifier: MIT
// The gas data file: its bytes, its values as text and back (one CSV file a sheet, or all in one aligned listing), and the judgement on
// it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/gasdat/sheets.h"

namespace kalorfix::tool::gasdat {

struct GasFile {
    Values values{};        ///< those that are missing are 0
    std::size_t count = 0;  ///< whole values that are there, at most 1915
    std::size_t size = 0;   ///< bytes of the file
};

/// Reads a file of any size. Throws InputError when it cannot be read.
[[nodiscard]] GasFile read_gas_file(const std::string& path);

/// The 7660 bytes of the values: little-endian on every machine.
[[nodiscard]] std::string packed(const Values& values);

/// The shortest decimal number that reads back as the same value; inf, -inf; nan: with the bits in hexadecimal.
[[nodiscard]] std::string number_text(float value);

/// The nearest single-precision value of a decimal number, or what number_text has written. Nothing for anything else.
[[nodiscard]] std::optional<float> parse_number(std::string_view text);

/// Every fault in one line: table, place, value and what would be right. Judged are size, finite values, symmetry and diagonals
/// of the binary tables, signs and plausible ranges of the constants, exponents, positions that are no terms, the
/// agreement of the tables with one another, and the ideal-gas heat capacities at 300 K. Of a short file the
/// values that are there are judged one by one.
[[nodiscard]] std::vector<std::string> faults(const GasFile& file);

/// Throws InputError with the first fault of a file and their number.
void require_sound(const std::string& path);

/// The same for the file of --gas-data, which may not be there: an empty path.
void require_gas_data(const std::string& path);

/// Reads all sheets from a directory of CSV files, named after the sheets, or from a listing. Throws InputError naming file,
/// line and what would be right; also when anything is missing, surplus or given twice.
[[nodiscard]] Values read_sheets(const std::string& source);

/// The listing of a file, short ones included; a missing value is "-".
[[nodiscard]] std::string listing(const GasFile& file, const std::string& name);

/// One sheet as CSV with a comment for each block.
[[nodiscard]] std::string csv(const Sheet& sheet, const Values& values);

}  // namespace kalorfix::tool::gasdat
