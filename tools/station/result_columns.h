// The columns of the results of a cycle, for CSV and JSON alike.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "tools/station/cycle.h"

namespace kalorfix::tool::station {

struct ResultRow {
    const Channel& channel;
    const Outcome& outcome;
    const Registers& registers;
};

/// A column of numbers: the unit in its name, nothing where the step that gives it did not pass.
struct ResultColumn {
    std::string_view name;
    std::optional<float> (*get)(const ResultRow& row);
};

[[nodiscard]] std::span<const ResultColumn> result_columns();

}  // namespace kalorfix::tool::station
