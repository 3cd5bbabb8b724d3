// AGA8-92DC: the density terms and the molar density at a given pressure.
#pragma once

#include <array>
#include <cstddef>

#include "gas/aga8.h"

namespace kalorfix::gas::aga8 {

/// Which derivative a step of the density iteration takes.
enum class Derivative {
    prescribed,  ///< the sum that the prescribed iteration has in place of the derivative
    exact,
};

/// The density terms' part S of Z at a reduced density r = K^3 rho, and its derivative with respect to r.
struct DensitySums {
    double S, derivative;
};

/// The density terms of one gas at one temperature. Where the layout collapses, an evaluation needs one coefficient for each
/// cell and one exponential for each group; else the general power function.
class DensityTerms {
public:
    DensityTerms(const DensityLayout& layout, const Coefficients& coefficients);

    template <Derivative derivative>
    [[nodiscard]] DensitySums sums(double r) const;

private:
    template <Derivative derivative>
    [[nodiscard]] DensitySums collapsed(double r) const;
    template <Derivative derivative>
    [[nodiscard]] DensitySums term_by_term(double r) const;

    using ByCell = std::array<double, DensityLayout::max_cells>;

    const DensityLayout& layout_;
    const Coefficients& coefficients_;
    ByCell C_, bC_;                                               // of each cell the sums of C and b C
    std::array<double, DensityLayout::max_exponent + 1> sum_bC_;  // of each group
};

/// Everything that Z depends on, at one temperature and composition: Z = 1 + B rho - Sc r + S(r), r = K^3 rho.
struct Equation {
    double RT;             ///< R T, kJ/kmol
    double second_virial;  ///< B, m3/kmol
    double linear;         ///< Sc, the sum of C*_8..C*_13
    double size_cubed;     ///< K^3, m3/kmol
    const DensityTerms& terms;
};

[[nodiscard]] double compressibility(const Equation& e, double rho_kmol_m3);

struct MolarDensity {
    double rho_kmol_m3;
    bool converged;
    int steps;
};

/// Molar density at T (K) and p (MPa). The prescribed Newton iteration with its own correction term comes first, since for
/// difficult mixtures it decides which root is found; where it does not settle within 100 steps, or on a Z beyond single
/// precision, it starts again with the true derivative, for at most 50. The density may be negative where no gas root is found.
[[nodiscard]] MolarDensity molar_density(const Equation& e, double p_MPa);

}  // namespace kalorfix::gas::aga8
