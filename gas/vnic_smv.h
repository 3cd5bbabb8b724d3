// SPDX-License-Identifier: MIT
// VNIC SMV: the 8-component mixture and the equation of state Z = 1 + sum c_kl w^k / t^l in reduced density w and reduced
// temperature t. GOST 30319.2-96.
//
// Tables and what is handed out are single precision, everything in between is double.
#pragma once

#include <array>
#include <cstddef>

#include "gas/composition.h"
#include "gas/molar_density.h"

namespace kalorfix::gas::vnic {

/// Methane, ethane, propane, n-butane with all heavier hydrocarbons, i-butane, nitrogen with the other inert components,
/// carbon dioxide, hydrogen sulphide.
inline constexpr std::size_t component_count = 8;
inline constexpr std::size_t density_powers = 10;
inline constexpr std::size_t columns = 8;

/// Temperature terms of each density power 1..10: 54 in all.
inline constexpr std::array<short, density_powers> temperature_terms{8, 7, 7, 6, 6, 5, 4, 4, 4, 3};

using Fractions = std::array<float, component_count>;
using Coefficients = float[density_powers][columns];

/// The tables of the gas data file. Of the components molar mass (kg/kmol), critical density (kg/m3) and temperature (K), acentric
/// factor; of their pairs, 8 x 8 row by row, lambda and xi; the coefficients of the equation, 10 x 8.
struct Tables {
    const float *molar_mass, *critical_density, *critical_temperature, *acentric;
    const float *volume_correction, *temperature_correction;
    const float *a, *b;
};

/// What x_i x_j is multiplied by in the sums over pairs i <= j, both orders of a pair in one: critical volume (m3/kmol), and
/// that times the square of the critical temperature (K), times the acentric factor. Made once for a set of tables.
struct PairConstants {
    double volume, temperature, acentric;
};
using Constants = std::array<PairConstants, component_count*(component_count + 1) / 2>;
void make_constants(const Tables& tables, Constants& constants);

/// The 15 components folded onto the 8.
[[nodiscard]] Fractions fold(const gas::Fractions& x);

struct PseudoCritical {
    double density;     ///< kmol/m3
    float temperature;  ///< K
    float pressure;     ///< MPa
    float acentric;
};

/// Pseudo-critical parameters of the mixture; R in kJ/(kmol K).
[[nodiscard]] PseudoCritical pseudo_critical(const Fractions& x, const Constants& constants, double R);

/// c_kl = a_kl + acentric factor * b_kl, a and b 10 x 8; positions that are no terms stay as they are.
void equation_coefficients(const float* a, const float* b, float acentric, Coefficients& c);

/// The equation at one reduced temperature t over the reduced density w: Z = 1 + sum of coefficients of w^1..w^10.
class Isotherm {
public:
    Isotherm(const Coefficients& c, double reduced_temperature);

    [[nodiscard]] IsothermPoint at(double w) const;

    /// What Z rises with at vanishing density.
    [[nodiscard]] double second_virial() const { return coefficient_[0]; }

    /// Isotherms that fall before w = 4 lie below t = 1.006 (docs/accuracy.md), pipeline gas from 250 K on above 1.1.
    [[nodiscard]] bool rises_up_to(double w) const { return reduced_temperature_ > 1.02 && w < 3.3; }

private:
    double reduced_temperature_;
    std::array<double, density_powers> coefficient_;
};

}  // namespace kalorfix::gas::vnic
