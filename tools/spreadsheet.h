// SPDX-License-Identifier: MIT
// Tables as spreadsheets write them: cells parted by commas, semicolons or tabs, quoted or not, numbers with a decimal point or a
// decimal comma. A number that can be read in two ways is never read in one of them without a proof.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/text.h"

namespace kalorfix::tool {

class Spreadsheet {
public:
    /// `decimal`: '.' or ',' where the user said which mark the numbers have, 0 where the file has to show it.
    explicit Spreadsheet(char decimal = 0) : mark_(decimal), told_(decimal != 0) {}

    /// The next line that is an entry as the heading: it shows what parts the cells; "sep=;" before it is passed over. False at
    /// the end of the file. Throws InputError for a workbook and for text in UTF-16.
    bool heading(Lines& lines, std::string_view& line);

    /// The cells of a line, trimmed and without their quotes, in place. Throws InputError for quotes that are not closed.
    void split(const Lines& lines, std::string_view line, std::vector<std::string_view>& cells) const;

    /// A finite number; nothing for other text. Throws InputError for parted thousands and for a decimal mark that differs from
    /// the one that the file had before.
    std::optional<double> number(const Lines& lines, std::string_view cell);

    /// At the end of the file. Throws InputError where 1,234 stood and nothing in the file told whether it is 1.234 or 1234.
    void finish(const Lines& lines) const;

    /// What to say of a row that has other than `expected` cells: what was found, and a guess at the reason.
    [[nodiscard]] std::string wrong_count(std::size_t expected, std::size_t found) const;

    [[nodiscard]] char separator() const { return separator_; }

private:
    std::optional<double> with_comma(const Lines& lines, std::string_view cell);
    void note(const Lines& lines, std::string_view cell, char mark);

    char separator_ = ',';
    char mark_;
    bool told_;
    std::uint64_t mark_line_ = 0;       ///< where the file showed its mark
    std::uint64_t ambiguous_line_ = 0;  ///< of the first number that can be read in two ways; 0: none
    std::string ambiguous_;
};

/// The mark that an option --decimal says: comma, point, or 0 where it is not given. Throws InputError for another word.
[[nodiscard]] char decimal_mark(const std::string& option);

/// A line of CSV with commas and decimal points, as a spreadsheet set up in Russian reads it: semicolons and decimal commas.
[[nodiscard]] std::string with_decimal_commas(std::string_view line);

}  // namespace kalorfix::tool
