// AGA8-92DC: the mixture and the coefficients of the equation of state in its 53-term form, Z = 1 + B rho - ... ; the density
// terms themselves are in aga8_isotherm.h. AGA Report No. 8 (1992), detail characterisation; ISO 12213-2; GOST 30319.2-96.
//
// Tables and the arrays that are handed out are single precision, everything in between is double.
#pragma once

#include <array>
#include <cstddef>

#include "gas/aga8_constants.h"
#include "gas/composition.h"

namespace kalorfix::gas::aga8 {

using VirialFactors = std::array<float, virial_terms>;
using Coefficients = std::array<float, term_count>;

struct Mixture {
    double size_cubed = 0.0;         ///< K^3, m3/kmol
    double energy = 0.0;             ///< U, K
    double orientation = 0.0;        ///< G
    double quadrupole = 0.0;         ///< Q
    double high_temperature = 0.0;   ///< F
    VirialFactors virial_factors{};  ///< B*_n of the second virial coefficient, n = 1..13
};

/// Mixing rules: all sums over components and pairs of components. The cross term of the orientation is doubled.
[[nodiscard]] Mixture mix(const Composition& gas, const Constants& constants);

/// Second virial coefficient at T, m3/kmol: sum(a_n B*_n T^-u_n).
[[nodiscard]] double second_virial(double T_K, const Constants& constants, const VirialFactors& factors);

/// Coefficients C*_n of the density terms at T; positions before the first density term stay 0.
[[nodiscard]] Coefficients term_coefficients(double T_K, const Mixture& mixture, const Constants& constants);

}  // namespace kalorfix::gas::aga8
