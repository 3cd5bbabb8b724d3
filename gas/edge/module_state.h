// The exported module state of the gas methods: the working composition, and which tables are there.
#pragma once

#include "gas/composition.h"

namespace kalorfix::gas::edge {

/// Puts the mole fractions into the exported working composition.
void store(const Composition& gas);

/// Takes them from there. Whatever a host has left in the exported list, every component taken is a valid one.
[[nodiscard]] Composition working_composition();

/// Whether the tables that a group of routines reads are there, each read whole.
[[nodiscard]] bool aga8_tables_loaded();
[[nodiscard]] bool vnic_tables_loaded();
[[nodiscard]] bool mole_fraction_tables_loaded();
[[nodiscard]] bool standard_density_tables_loaded();
[[nodiscard]] bool molar_mass_table_loaded();
[[nodiscard]] bool heat_capacity_tables_loaded();

}  // namespace kalorfix::gas::edge
