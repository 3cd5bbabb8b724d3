// SPDX-License-Identifier: MIT
// What `calc` found, as a sheet for a person, as CSV and as JSON lines: one list of values serves all three.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/metering/solve.h"

namespace kalorfix::tool {

/// A number of an answer. A heading begins a step of the sheet.
struct Cell {
    std::string_view heading{},
        key{};  ///< key: the column, with its unit; empty for what is on the sheet alone
    std::string label{};
    std::optional<double> value{};
    const char* layout = "{}";  ///< on the sheet
    std::string_view unit{};
    std::string text{};  ///< in place of a number
};

/// The same cells in the same order for every answer to questions about one point; what does not exist has no value.
[[nodiscard]] std::vector<Cell> cells_of(const metering::Question& question, const metering::Answer& answer);

[[nodiscard]] std::string calc_sheet(const std::string& name, const metering::Question& question,
                                     const metering::Answer& answer);
[[nodiscard]] std::string calc_csv_head(const std::vector<Cell>& cells);
[[nodiscard]] std::string calc_csv_row(const metering::Answer& answer, const std::vector<Cell>& cells);
/// `more`: members behind those of the cells.
[[nodiscard]] std::string calc_json(const metering::Answer& answer, const std::vector<Cell>& cells,
                                    const std::string& more = {});

/// A text in quotes.
[[nodiscard]] std::string json_text(std::string_view text);

/// solved, refused, too small, too large, step.
[[nodiscard]] std::string_view status_word(metering::Status status);

}  // namespace kalorfix::tool
