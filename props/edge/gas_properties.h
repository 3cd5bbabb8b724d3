// SPDX-License-Identifier: MIT
// The properties of gas as they are handed out: from the module state, and left in it.
#pragma once

namespace kalorfix::gas::edge {

/// Viscosity, uPa s, and isentropic exponent from density and contents.
float viscosity_by_density();
float isentropic_exponent_by_density();

/// The same from the composition; 0 while a table is missing. The viscosity runs VNIC SMV first where another method was the last.
float viscosity_by_composition();
float isentropic_exponent_by_composition();

}  // namespace kalorfix::gas::edge
