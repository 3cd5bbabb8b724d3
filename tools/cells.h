// SPDX-License-Identifier: MIT
// The cells of a line of CSV, in place: parted by commas, or by semicolons or tabs with decimal commas; quoted or not.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace kalorfix::tool {

/// What parts the cells, as the heading shows it.
[[nodiscard]] char separator_of(std::string_view heading);

/// The cells with their quotes and blanks.
[[nodiscard]] std::vector<std::string_view> raw_cells(std::string_view line, char separator);

/// A cell without these.
[[nodiscard]] std::string_view cell_content(std::string_view cell);

/// A finite number; with a decimal comma where commas do not part the cells.
[[nodiscard]] std::optional<double> cell_number(std::string_view cell, char separator);

}  // namespace kalorfix::tool
