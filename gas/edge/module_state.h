// SPDX-License-Identifier: MIT
// The exported module state of the gas methods: the working composition.
#pragma once

#include "gas/composition.h"

namespace kalorfix::gas::edge {

/// Puts the mole fractions into the exported working composition.
void store(const Composition& gas);

/// Takes them from there. Whatever a host has left in the exported list, every component taken is a valid one.
[[nodiscard]] Composition working_composition();

}  // namespace kalorfix::gas::edge
