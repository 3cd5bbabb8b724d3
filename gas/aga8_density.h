// AGA8-92DC: the density terms and the molar density at a given pressure.
#pragma once

#include <array>
#include <cstddef>

#include "gas/aga8.h"

namespace kalorfix::gas::aga8 {

/// The sums over the density terms at a reduced density r = K^3 rho. Each term is
/// C (b - c k r^k) r^b exp(-c r^k) with the exponents of the term.
struct DensitySums {
    double S;           ///< the sum itself: the terms' part of Z
    double correction;  ///< the sum that the published iteration uses in place of dS/dr
    double slope;       ///< dS/dr
};

/// The density terms of one gas at one temperature. Terms with the same c and k share their exponential, those with the
/// same b too collapse into one coefficient, so that an evaluation needs one exponential for each k. Exponents that are not
/// small whole numbers are met with the general power function instead.
class DensityTerms {
public:
    DensityTerms(const Terms& terms, const Coefficients& coefficients);
    [[nodiscard]] DensitySums operator()(double r) const;

private:
    static constexpr std::size_t max_exponent = 12;
    static constexpr std::size_t max_groups = 8;

    struct Group {
        double c = 0.0;
        std::size_t k = 0;
        std::array<double, max_exponent + 1> coefficient{};  ///< by exponent b
        double sum_bC = 0.0;
    };

    bool collapse();
    [[nodiscard]] DensitySums collapsed(double r) const;
    [[nodiscard]] DensitySums term_by_term(double r) const;

    const Terms& terms_;
    const Coefficients& coefficients_;
    std::array<Group, max_groups> groups_{};
    std::size_t group_count_ = 0;
    std::size_t highest_ = 0;  ///< largest exponent in use
    bool collapsed_ = false;
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
};

/// Molar density at T (K) and p (MPa). The published Newton iteration with its own correction term comes first, since for
/// difficult mixtures it decides which root is found; where it does not settle within 100 steps it starts again with the
/// true derivative, for at most 50.
[[nodiscard]] MolarDensity molar_density(const Equation& e, double p_MPa);

}  // namespace kalorfix::gas::aga8
