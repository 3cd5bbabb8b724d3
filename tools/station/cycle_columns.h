// SPDX-License-Identifier: MIT
// The columns of a cycle, for CSV and JSON alike.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/station/cycle.h"

namespace kalorfix::tool::station {

inline constexpr double tick_s = 0.01;  ///< lengths of intervals that differ by less are the same

[[nodiscard]] const std::vector<std::string>& column_names();

/// An amount of a register in the unit of its integrator: with an exponent it counts tens, thousands and so on of it.
[[nodiscard]] float in_unit(const Channel& channel, std::size_t integrator, float amount);

/// A value for each of the names, or nothing where it does not exist or the step that gives it did not pass.
using Values = std::vector<std::optional<float>>;
void fill(const Cycle& cycle, Values& values);

}  // namespace kalorfix::tool::station
