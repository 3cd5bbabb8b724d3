// SPDX-License-Identifier: MIT
// The density root of the IAPWS-95 equation of state at a given temperature and pressure.
#pragma once

#include "props/water/residual.h"

namespace kalorfix::water {

struct DensityProblem {
    double target;  ///< p / (rho_c R T)
    double start;   ///< start value of the reduced density, near the root that is wanted
};

/// Single phase at T and p: at and above the saturation pressure the liquid root, below it the vapour's.
[[nodiscard]] DensityProblem single_phase_problem(const ResidualAt& residual, double T_K, double p_MPa);

/// Saturated vapour at T, from the auxiliary equation of its density.
[[nodiscard]] DensityProblem saturated_vapour_problem(double T_K);

struct DensityRoot {
    double delta;
    Helmholtz at;    ///< the residual function there
    int steps;       ///< evaluations of the equation, iteration and bracketing together
    bool bracketed;  ///< the iteration failed and the bracketing method found the root
    bool found;
};

/// Solves delta (1 + delta phi_d) = target. Each step goes to the root of the isotherm's Taylor polynomial of third order;
/// the equation is checked once more where the properties are taken, so that delta is good to 1e-10 and mostly to rounding.
/// Where the iteration does not converge to a density within `step_cap` steps, which happens only within some mK of the
/// critical point, a bracketing method solves the same equation.
[[nodiscard]] DensityRoot solve_density(const ResidualAt& residual, const DensityProblem& problem);

inline constexpr int step_cap = 100;
inline constexpr int bracket_step_cap = 200;

}  // namespace kalorfix::water
