// SPDX-License-Identifier: MIT
// Why a cycle was refused, from the documented limits: the value and the bound that it broke, in words.
#pragma once

#include <string>

#include "tools/station/cycle.h"

namespace kalorfix::tool::station {

/// The first check of the refused step that the inputs and results fail, such as "dp/p 0.31 exceeds 0.25"; where the limits
/// do not explain it, that the step was refused. `before` holds the registers that the cycle began with, `accepted` the
/// number of integrators that took it.
[[nodiscard]] std::string diagnose(const host::Library& library, const Channel& channel, const Outcome& outcome,
                                   const Registers& before, std::size_t accepted);

}  // namespace kalorfix::tool::station
