// SPDX-License-Identifier: MIT
// The tick clock, for the library itself.
#pragma once

#include <cstdint>

namespace kalorfix {

/// The tick counter, 32 bits on every machine; the negated errno where times() fails.
[[nodiscard]] std::uint32_t tick_count();

}  // namespace kalorfix
