// Lines that are too long for a terminal, in several.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kalorfix::tool {

inline constexpr std::size_t narrow_width = 80;

/// Whether standard output is a terminal of fewer columns than a table needs.
[[nodiscard]] bool narrow_terminal(std::size_t needed);

/// A line cut before a column; the rest goes on in the next one, so many blanks in.
[[nodiscard]] std::string fold_at(std::string_view line, std::size_t column, std::size_t indent);

/// A line cut at blanks to fit the width, the lines behind the first so many blanks in.
[[nodiscard]] std::string fold_words(std::string_view line, std::size_t indent);

/// Lines, each cut so.
[[nodiscard]] std::string fold_lines(std::string_view text, std::size_t indent);

/// A table with a heading whose columns stand below each other, numbers to the right: from each of the columns `from` on a table of
/// its own follows, behind the part of each row that stands before the column `unit`. The heading has all of these.
[[nodiscard]] std::string fold_table(std::string_view table, const std::vector<std::string_view>& from,
                                     std::string_view unit);

}  // namespace kalorfix::tool
