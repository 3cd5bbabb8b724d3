// SPDX-License-Identifier: MIT
// AGA8-92DC: the mixture, and the equation of state in its 53-term form as the isotherm of one gas,
// Z = 1 + (B/K^3 - Sc) r + S(r) over the reduced density r = K^3 rho. AGA Report No. 8 (1992), detail characterisation;
// ISO 12213-2; GOST 30319.2-96. Terms 1..7 are those of ISO 12213-2, 8..53 its 13..58: without the association terms 8..12.
//
// Tables and the arrays that are handed out are single precision, everything in between is double.
#pragma once

#include <algorithm>
#include <array>

#include "gas/aga8_constants.h"
#include "gas/composition.h"
#include "gas/molar_density.h"

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

/// The density terms are summed by groups, with what a gas at a temperature makes of their coefficients.
class Isotherm {
public:
    /// Pseudo-critical pressure of the start value, MPa.
    static constexpr double start_pressure_MPa = 5.0;

    /// `second_virial` is B/K^3.
    Isotherm(const DensityLayout& layout, const Coefficients& coefficients, double second_virial,
             double reduced_temperature);

    [[nodiscard]] IsothermPoint at(double r) const;

    /// B/K^3, what Z rises with at vanishing density.
    [[nodiscard]] double second_virial() const { return second_virial_; }

    /// Isotherms that fall lie beyond these bounds, by a map of mixtures of all kinds over 70..1500 K and up to 100 MPa; pipeline gas
    /// from 250 K up to 30 MPa lies within (docs/accuracy.md).
    [[nodiscard]] bool rises_up_to(double r) const {
        const double t = reduced_temperature_;
        return 1.16 < t && t < 5.0 && linear_ > std::min(-0.92, -1.04 + 0.9 * (t - 1.16)) && r < 2.1;
    }

private:
    const DensityLayout& layout_;
    double second_virial_;
    double linear_;               // B/K^3 - Sc, Sc the sum of C*_8..C*_13
    double reduced_temperature_;  // T/U
    std::array<double, density_terms> weight_;
};

/// The isotherm of a mixture at T.
[[nodiscard]] Isotherm isotherm(double T_K, const Mixture& mixture, const Coefficients& coefficients,
                                const Constants& constants);

}  // namespace kalorfix::gas::aga8
