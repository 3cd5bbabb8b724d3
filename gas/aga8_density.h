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

/// The density terms of one gas at one temperature; each is C (b - c k r^k) r^b exp(-c r^k) with the exponents of the term.
/// Terms with the same k share their exponential, those with the same b too collapse into one coefficient, so that an
/// evaluation needs one exponential for each k. Exponents that are not small whole numbers are met with the general power
/// function instead.
class DensityTerms {
public:
    DensityTerms(const Terms& terms, const Coefficients& coefficients);

    template <Derivative derivative>
    [[nodiscard]] DensitySums sums(double r) const;

private:
    static constexpr int max_exponent = 12;
    using ByExponent = std::array<double, max_exponent + 1>;

    // The terms with one k, by b: sums of C, b C and b^2 C.
    struct Group {
        double c;
        ByExponent C, bC, bbC;
        double sum_bC;
    };

    bool collapse();
    template <Derivative derivative>
    [[nodiscard]] DensitySums collapsed(double r) const;
    template <Derivative derivative>
    [[nodiscard]] DensitySums term_by_term(double r) const;

    const Terms& terms_;
    const Coefficients& coefficients_;
    std::array<Group, max_exponent + 1> groups_;  // by k; those beyond the largest k in use are left alone
    int largest_k_ = -1;                          ///< of the groups that are in use
    int largest_b_ = 0;
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
    int steps;
};

/// Molar density at T (K) and p (MPa). The prescribed Newton iteration with its own correction term comes first, since for
/// difficult mixtures it decides which root is found; where it does not settle within 100 steps, or on a Z beyond single
/// precision, it starts again with the true derivative, for at most 50. The density may be negative where no gas root is found.
[[nodiscard]] MolarDensity molar_density(const Equation& e, double p_MPa);

}  // namespace kalorfix::gas::aga8
