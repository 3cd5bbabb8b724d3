// Channels from pipeline constants to totals, on input that is compiled in.
#pragma once

#include "tools/host.h"

namespace kalorfix::tool {

/// Prints every channel's sheet: steam, water, gas by density, gas by composition. False when a step was refused, which the
/// sheet then says.
[[nodiscard]] bool demo(const host::Library& library);

}  // namespace kalorfix::tool
