// SPDX-License-Identifier: MIT
// The four methods as they are handed out: run on a gas, with the module state left filled.
#pragma once

#include "gas/by_density.h"
#include "gas/composition.h"

namespace kalorfix::gas::edge {

/// What a method is asked for; the differential pressure is only checked.
struct Query {
    float T_K, dp_kPa, p_MPa;
};

/// Whether the K of a method is one, finite and above 0; the others tell that the method failed.
[[nodiscard]] bool usable(double coefficient);

/// By density and contents, nx19 or gerg91.
using DensityMethod = double (&)(double T_K, double p_MPa, const DensityGas& gas, CubeRoot kind);
[[nodiscard]] float by_density(DensityMethod method, const Query& query, float N2_pct, float CO2_pct,
                               float rho_c);

/// By the equation of state of a composition. 0 where the gas has no root or a table is missing.
[[nodiscard]] float by_aga8(const Composition& gas, const Query& query);
[[nodiscard]] float by_vnic(const Composition& gas, const Query& query);

/// Density of a composition at standard conditions, left in Roc; 0 while a table is missing.
float standard_density(const Composition& gas);

/// The composition of volume fractions; empty while the table is missing, so that every method refuses it.
[[nodiscard]] Composition from_volume_fractions(const Fractions& volume);

}  // namespace kalorfix::gas::edge
