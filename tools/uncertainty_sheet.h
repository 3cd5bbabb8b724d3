// SPDX-License-Identifier: MIT
// An uncertainty budget as a sheet for a person, as CSV and as JSON lines, and drawn over the flow.
#pragma once

#include <string>

#include "tools/calc_sheet.h"
#include "tools/metering/uncertainty.h"

namespace kalorfix::tool {

/// A budget with what it is of: a reading, whose values are flows, or an amount over a time.
struct BudgetRecord {
    std::string channel{}, when{};
    metering::Budget budget{};
    bool amount = false;
    metering::Flows uncovered{};  ///< shares of the amount without a figure, 0..1
    std::string why_uncovered{};
};

/// complete, lower bound (an entry is not stated), not computed (an entry is outside its range), refused.
[[nodiscard]] std::string status_of(const metering::Budget& budget, std::size_t k);
[[nodiscard]] bool is_complete(const metering::Budget& budget);

/// What the budget lacks comes first, then a table for each flow.
[[nodiscard]] std::string budget_sheet(const BudgetRecord& record);
/// What was taken for granted, in words; of an amount how errors add over a time.
[[nodiscard]] std::string budget_words(const metering::Budget& budget, bool amount);

/// Columns for a row of `calc`: the expanded uncertainty of each flow in per cent, and the status.
void add_budget_cells(const metering::Budget& budget, std::vector<Cell>& cells);

/// A line an entry and flow.
[[nodiscard]] std::string budget_csv_head();
[[nodiscard]] std::string budget_csv(const BudgetRecord& record);
/// An object; members without braces for one that contains it.
[[nodiscard]] std::string budget_json(const BudgetRecord& record);

/// Expanded uncertainty over the flow at the temperature and pressure of a reading, stacked by the share of each input in its square; from a
/// fiftieth of the transmitter's range, or of twice the reading, to the whole. Throws InputError when nothing can be drawn.
[[nodiscard]] std::string budget_drawing(const host::Library& library, const std::string& name,
                                         const metering::Point& point, const metering::Instruments& instruments,
                                         const metering::Reading& reading);

}  // namespace kalorfix::tool
