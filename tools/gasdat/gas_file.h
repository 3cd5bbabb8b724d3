// Reading and writing the gas data file itself.
#pragma once

#include <string>

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

/// Writes a file under a temporary name beside it and renames it, so that the name never stands for half a file. Throws
/// InputError.
void write_whole(const std::string& path, const std::string& content);

}  // namespace kalorfix::tool::gasdat
