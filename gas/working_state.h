// Between the exported module state and the methods beneath it.
#pragma once

#include "gas/composition.h"

namespace kalorfix::gas {

/// Whether the methods accept a state: 70 < T < 1500 K, 0 < p < 100 MPa, dp not negative and below a quarter of p. The
/// comparisons refuse what lies outside, so that a NaN passes here and fails in the method.
[[nodiscard]] bool state_accepted(float T_K, float dp_kPa, float p_MPa);

/// Puts the mole fractions into the exported working composition, and takes them from there. Whatever a host has left in
/// the exported list, every component taken is a valid one.
void store_composition(const Fractions& x);
[[nodiscard]] Composition working_composition();

/// Whether the tables that a group of routines reads are there, each read whole.
[[nodiscard]] bool aga8_tables_loaded();
[[nodiscard]] bool vnic_tables_loaded();
[[nodiscard]] bool mole_fraction_tables_loaded();
[[nodiscard]] bool standard_density_tables_loaded();
[[nodiscard]] bool molar_mass_table_loaded();
[[nodiscard]] bool heat_capacity_tables_loaded();

}  // namespace kalorfix::gas
