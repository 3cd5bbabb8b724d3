// What the methods prepare of the tables that are loaded: made at the load, and again should a host put other tables in their
// place.
#pragma once

#include "gas/aga8.h"
#include "gas/vnic_smv.h"

namespace kalorfix::gas::edge {

/// The constants of the tables in place, all of which must be there.
[[nodiscard]] const aga8::Constants& aga8_constants();
/// The mixture of a composition by these constants; that of the composition before is kept.
[[nodiscard]] const aga8::Mixture& aga8_mixture(const Composition& gas);
[[nodiscard]] const vnic::Constants& vnic_constants();

/// Makes them anew. To be called whenever tables were loaded, replaced or released.
void tables_changed();

}  // namespace kalorfix::gas::edge
