// One cycle of a channel as a person reads it.
#pragma once

#include <string>
#include <string_view>

#include "tools/station/cycle.h"

namespace kalorfix::tool::station {

/// Constants, measured values and each step with its status and its results, units beside them. It ends with the step that was
/// refused and the reason.
[[nodiscard]] std::string sheet(const Channel& channel, const Outcome& outcome);

/// A line for a step, and one for a value, as on the sheet.
[[nodiscard]] std::string sheet_step(std::string_view name, std::string_view outcome);
[[nodiscard]] std::string sheet_row(std::string_view label, std::string_view value, std::string_view unit = {});

}  // namespace kalorfix::tool::station
