// SPDX-License-Identifier: MIT
// AGA8-92DC: what the tables alone determine, made once for a set of tables: constants of the pairs of components with their
// powers, and the exponents of the terms taken apart.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "gas/composition.h"
#include "gas/powers.h"
#include "runtime/unrolled.h"

namespace kalorfix::gas::aga8 {

inline constexpr std::size_t term_count = 53;
inline constexpr std::size_t virial_terms = 13;       ///< terms 1..13 make the second virial coefficient
inline constexpr std::size_t first_density_term = 7;  ///< terms 8..53 (position 7 on) are the density terms
inline constexpr std::size_t density_terms = term_count - first_density_term;

/// Parameters of the components, one each: E (K), K ((m3/kmol)^(1/3)), G, Q and F.
struct Components {
    const float *energy, *size, *orientation, *quadrupole, *high_temperature;
};

/// Parameters of the pairs, 15 x 15 row by row: E* of the second virial coefficient, U, K and G*.
struct Binaries {
    const float *energy, *mixture_energy, *size, *orientation;
};

/// Coefficients and exponents of the terms.
struct Terms {
    const float *a, *b, *c, *k, *u, *g, *q, *f;
};

struct Tables {
    Components pure;
    Binaries pairs;
    Terms terms;
};

/// Energy (K) or orientation of each pair of components.
using PairTable = std::array<std::array<float, component_count>, component_count>;

/// What the quadratic sums over pairs of components weigh: the virial factors B*_1..B*_13, then the cross terms of size,
/// energy and orientation.
inline constexpr std::size_t form_count = virial_terms + 3;
inline constexpr std::size_t size_form = virial_terms;
inline constexpr std::size_t energy_form = virial_terms + 1;
inline constexpr std::size_t orientation_form = virial_terms + 2;
using Forms = std::array<double, form_count>;
using FormPairs = std::array<Pair, form_count / 2>;

/// The density terms C (b - c k r^k) r^b exp(-c r^k) sorted for their sums: terms with the same c and k share an exponential and
/// are a group, those of a group with the same b are a cell.
struct DensityLayout {
    static constexpr std::size_t largest_whole = 31;  ///< whole powers are products
    /// The others follow them.
    static constexpr std::size_t power_places = largest_whole + 1 + 2 * density_terms;

    struct Group {
        double c, k;
        double factor;  ///< its exponential where it is constant (c or k is 0)
        bool constant;
        std::uint8_t power;  ///< place of r^k
        std::uint8_t cells;  ///< cells of this group, one behind the other
    };
    struct Cell {
        Pair one_b;          ///< 1 and b
        Pair bb;             ///< b^2, twice
        std::uint8_t power;  ///< place of r^b
    };

    std::array<Group, density_terms> groups;
    std::array<Cell, density_terms> cells;
    std::array<std::uint8_t, density_terms> cell_of;  ///< by term
    std::array<double, 2 * density_terms> other_exponents;
    std::size_t group_count, cell_count, whole_count, other_count;

    /// Powers of r, each at its place.
    void raise(double r, std::array<double, power_places>& power) const;
};
[[nodiscard]] DensityLayout density_layout(const Terms& terms);

/// All that the tables alone determine.
struct Constants {
    std::array<double, component_count> size;    ///< K^2.5
    std::array<double, component_count> energy;  ///< E^2.5
    std::array<double, component_count> orientation, quadrupole, high_temperature;

    PairTable pair_energy;       ///< E_ij = E*_ij sqrt(E_i E_j), E_i on the diagonal, in single precision
    PairTable pair_orientation;  ///< G_ij = G*_ij (G_i + G_j)/2 likewise
    std::array<std::array<FormPairs, component_count>, component_count> forms;

    std::array<double, term_count> a, g, q, f;
    std::array<HalfPower, term_count> u;
    HalfPowerRange virial_u, term_u;             ///< of the exponents u of the virial and of the density terms
    std::array<std::uint8_t, term_count> flags;  ///< which of g, q, f are 1 (bits 0, 1, 2), or other_flags
    static constexpr std::uint8_t other_flags = 8;  ///< one of them is neither 0 nor 1
    bool plain_terms;  ///< no density term has other flags or an exponent u that is not a half number
    DensityLayout density;
};

/// Makes the constants of a set of tables, all of which must be there.
void make_constants(const Tables& tables, Constants& constants);

/// (value + 1 - flag)^flag: 1 for a flag of 0, the value itself for 1.
[[nodiscard]] double flagged(double value, double flag);

}  // namespace kalorfix::gas::aga8
