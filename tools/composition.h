// The composition of a gas as a person writes it down.
#pragma once

#include <array>
#include <string>

namespace kalorfix::tool {

struct GivenComposition {
    std::array<double, 15> x{};
    bool volume_fractions = false;  ///< 0..1 by volume; otherwise mole per cent
};

/// Reads a table with a heading
///
///     component,mole_percent          or   component,volume_fraction
///     methane,96.5
///
/// Cells and numbers as a spreadsheet writes them; components by name or formula in any case. Lines that begin with # are
/// comments; components that are not named are absent. Throws InputError with file, line and what
/// would be right.
[[nodiscard]] GivenComposition read_composition(const std::string& file);

}  // namespace kalorfix::tool
