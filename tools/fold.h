// Lines that are too long for a terminal, in several.
#pragma once

#include <string>
#include <string_view>

namespace kalorfix::tool {

inline constexpr std::size_t narrow_width = 80;

/// Whether standard output is a terminal of fewer columns than a table needs.
[[nodiscard]] bool narrow_terminal(std::size_t needed);

/// A line cut before a column; the rest goes on in the next one, so many blanks in.
[[nodiscard]] std::string fold_at(std::string_view line, std::size_t column, std::size_t indent);

/// A line cut at blanks to fit the width, the lines behind the first so many blanks in.
[[nodiscard]] std::string fold_words(std::string_view line, std::size_t indent);

/// A table with a heading whose columns stand below each other: the columns from `second` on follow as a second table,
/// behind the part of each row that stands before `unit`.
[[nodiscard]] std::string fold_table(std::string_view table, std::string_view second, std::string_view unit);

}  // namespace kalorfix::tool
