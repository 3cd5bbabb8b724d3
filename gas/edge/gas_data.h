// SPDX-License-Identifier: MIT
// The tables of the gas data file as they are loaded, and what the methods prepare of them: made at the load, and again should a host
// put other tables in their place.
#pragma once

#include "gas/aga8.h"
#include "gas/vnic_smv.h"

namespace kalorfix::gas::edge {

/// Whether a table is there. One that was allocated but not filled to its end by the file counts as absent.
[[nodiscard]] bool table_loaded(const float* table);

/// The constants of the tables in place; null while one is missing.
[[nodiscard]] const aga8::Constants* aga8_constants();
[[nodiscard]] const vnic::Constants* vnic_constants();

/// The mixture of a composition by the constants that were asked for last; that of the composition before is kept.
[[nodiscard]] const aga8::Mixture& aga8_mixture(const Composition& gas);

/// Makes them anew. To be called whenever tables were loaded, replaced or released.
void tables_changed();

}  // namespace kalorfix::gas::edge
