// AGA8-92DC: the density terms and the molar density at a given pressure.
#pragma once

#include <array>
#include <cstddef>

#include "gas/aga8.h"
#include "gas/aga8_density_tables.h"

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

/// Of the published exponents (b, k) the different ones: terms with the same exponents are one cell.
constexpr std::size_t count_cells() {
    std::size_t cells = 0;
    for (std::size_t n = 0; n < published_b.size(); ++n) {
        bool first = true;
        for (std::size_t m = 0; m < n; ++m)
            first = first && (published_b[m] != published_b[n] || published_k[m] != published_k[n]);
        cells += first;
    }
    return cells;
}
inline constexpr std::size_t cell_count = count_cells();

/// The density terms of one gas at one temperature. With the published exponents an evaluation is a polynomial for each k and
/// one exponential; with others every term takes the general power function.
class DensityTerms {
public:
    DensityTerms(const DensityExponents& exponents, const Coefficients& coefficients);

    template <Derivative derivative>
    [[nodiscard]] DensitySums sums(double r) const;

private:
    template <Derivative derivative>
    [[nodiscard]] DensitySums collapsed(double r) const;
    template <Derivative derivative>
    [[nodiscard]] DensitySums term_by_term(double r) const;

    const DensityExponents& exponents_;
    const Coefficients& coefficients_;
    std::array<double, cell_count> cells_;      // of each cell the sum of C
    std::array<double, largest_k + 1> sum_bC_;  // for each k
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
