// AGA8-92DC: the mixture and the coefficients of the equation of state in its 53-term form, Z = 1 + B rho - ... ; the density
// terms themselves are in aga8_density.h. AGA Report No. 8 (1992), detail characterisation; ISO 12213-2; GOST 30319.2-96.
//
// Tables and the arrays that are handed out are single precision, everything in between is double.
#pragma once

#include <array>
#include <cstddef>

#include "gas/composition.h"

namespace kalorfix::gas::aga8 {

inline constexpr std::size_t term_count = 53;
inline constexpr std::size_t virial_terms = 13;       ///< terms 1..13 make the second virial coefficient
inline constexpr std::size_t first_density_term = 7;  ///< terms 8..53 (position 7 on) are the density terms

/// Parameters of the components, one each.
struct Components {
    const float* energy;            ///< E, K
    const float* size;              ///< K, (m3/kmol)^(1/3)
    const float* orientation;       ///< G
    const float* quadrupole;        ///< Q
    const float* high_temperature;  ///< F
};

/// Parameters of the pairs, 15 x 15 row by row.
struct Binaries {
    const float* energy;          ///< E*, of the second virial coefficient
    const float* mixture_energy;  ///< U
    const float* size;            ///< K
    const float* orientation;     ///< G*
};

/// Coefficients and exponents of the terms.
struct Terms {
    const float *a, *b, *c, *k, *u, *g, *q, *f;
};

struct Mixture {
    double size_cubed = 0.0;        ///< K^3, m3/kmol
    double energy = 0.0;            ///< U, K
    double orientation = 0.0;       ///< G
    double quadrupole = 0.0;        ///< Q
    double high_temperature = 0.0;  ///< F
};

/// Energy (K) and orientation of each pair of components.
using PairTable = float[component_count][component_count];

using VirialFactors = std::array<float, virial_terms>;
using Coefficients = std::array<float, term_count>;

/// Mixing rules. The cross term of the orientation is doubled.
[[nodiscard]] Mixture mix(const Composition& gas, const Components& pure, const Binaries& pairs);

/// E_ij = E*_ij sqrt(E_i E_j) and G_ij = G*_ij (G_i + G_j)/2 of the components that are there; the rest stays.
void pair_parameters(const Composition& gas, const Components& pure, const Binaries& pairs, PairTable& energy,
                     PairTable& orientation);

/// The composition's factors B*_n of the second virial coefficient, n = 1..13.
[[nodiscard]] VirialFactors virial_factors(const Composition& gas, const Components& pure, const Terms& terms,
                                           const PairTable& energy, const PairTable& orientation);

/// Second virial coefficient at T, m3/kmol: sum(a_n B*_n T^-u_n).
[[nodiscard]] double second_virial(double T_K, const Terms& terms, const VirialFactors& factors);

/// Coefficients C*_n of the density terms at T; positions before the first density term stay 0.
[[nodiscard]] Coefficients term_coefficients(double T_K, const Mixture& mixture, const Terms& terms);

}  // namespace kalorfix::gas::aga8
