// SPDX-License-Identifier: MIT
// Residual part of the IAPWS-95 Helmholtz function and its derivatives.
//
// Notation: delta = rho / rho_c, tau = T_c / T, phi_r the residual part of f / (R T); an index d or t
// is a derivative with respect to delta or tau.
#pragma once

#include <array>
#include <cstddef>

#include "props/water/iapws95_tables.h"

namespace kalorfix::water {

/// The derivatives that the pressure and its slope follow from.
struct PressureTerms {
    double d;   ///< delta phi_d
    double dd;  ///< delta^2 phi_dd

    /// p / (rho R T)
    [[nodiscard]] double compressibility() const { return 1.0 + d; }
    /// (dp/drho) / (R T)
    [[nodiscard]] double stiffness() const { return 1.0 + 2.0 * d + dd; }
};

/// Derivatives by density alone: all that a step of the density iteration needs. Those of third and fourth order leave out
/// terms 55 and 56: they only make the step longer.
struct DensityDerivatives : PressureTerms {
    double ddd;     ///< delta^3 phi_ddd
    double dddd;    ///< delta^4 phi_dddd
    bool critical;  ///< so close to the critical point that what is left out counts
};

/// The residual function with all its first and second derivatives, in logarithmic form.
struct Helmholtz : PressureTerms {
    double phi;
    double t;   ///< tau phi_t
    double tt;  ///< tau^2 phi_tt
    double dt;  ///< delta tau phi_dt
};

// Terms 55 and 56, n delta Delta^b psi, which bend the isotherms at the critical point.

/// C (delta - 1)^2 + D (tau - 1)^2, the negative logarithm of psi.
[[nodiscard]] constexpr double nonanalytic_exponent(const NonanalyticTerm& term, double delta, double tau) {
    return term.C * (delta - 1.0) * (delta - 1.0) + term.D * (tau - 1.0) * (tau - 1.0);
}

/// Adds the terms whose exponent does not exceed `negligible` to the residual function and its derivatives (IAPWS R6-95(2018),
/// eq. 6 and table 5). Nothing is added where Delta is 0: at the critical point itself the second derivatives do not exist.
void add_nonanalytic(double delta, double tau, double negligible, Helmholtz& sum);

/// Number of power terms that differ in (c, d): at a fixed tau those that do not are one coefficient.
inline constexpr std::size_t merged_term_count = 31;

/// The residual part at one temperature. Construction collapses the 51 power terms into one polynomial
/// in delta for each exponential factor; an evaluation then costs some six exponentials and short sums.
/// tau must be finite and positive; any delta is allowed, the values are finite for 0 <= delta <= 10.
class ResidualAt {
public:
    explicit ResidualAt(double tau);

    /// The derivatives by density at a reduced density.
    [[nodiscard]] DensityDerivatives density_derivatives(double delta) const;

    /// Second virial coefficient, reduced by the critical density: what delta phi_d rises with at delta = 0.
    [[nodiscard]] double second_virial() const { return second_virial_; }

    /// The function and all first and second derivatives at a reduced density.
    [[nodiscard]] Helmholtz all(double delta) const;

private:
    double tau_;
    std::array<double, power_terms.size()> term_;                // n tau^t
    std::array<double, merged_term_count> merged_;               // sums of term_ over equal (c, d)
    std::array<double, gaussian_terms.size()> gaussian_factor_;  // n tau^t exp(-beta (tau - gamma)^2)
    double gaussian_sum_;
    double second_virial_;
    bool near_critical_;  // terms 55 and 56 can be felt at this temperature
};

}  // namespace kalorfix::water
