// The gas data file itself: its bytes, and its values as text and back.
#pragma once

#include <optional>
#include <string>
#include <string_view>

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

}  // namespace kalorfix::tool::gasdat
