#include "props/water/density.h"

#include <cmath>

namespace kalorfix::water {
namespace {

constexpr double newton_tolerance = 1e-6;

// Reduced density that no state from 273.15 to 1073.15 K and up to 100 MPa reaches.
constexpr double upper_bound = 3.6;

bool newton(const ResidualAt& residual, const DensityProblem& problem, DensityRoot& root) {
    double delta = problem.start;
    while (root.steps < newton_step_cap) {
        const DensityDerivatives at = residual.density_derivatives(delta);
        ++root.steps;
        const double step = (problem.target - delta * at.compressibility()) / at.stiffness();
        delta += step;
        if (!std::isfinite(delta)) return false;
        if (std::fabs(step) <= newton_tolerance * std::fabs(delta)) {
            root.delta = delta;
            // Close to the critical point a step can be thrown onto a root of the equation below zero.
            return delta >= 0.0;
        }
    }
    return false;
}

// Newton steps kept inside a bracket whose ends have opposite signs; bisection where a step leaves the bracket
// or the bracket shrinks too slowly. The states that come here lie so close to the critical point that the
// critical density separates the sides: the sign of the equation there tells on which one a root exists.
bool bracket(const ResidualAt& residual, const DensityProblem& problem, DensityRoot& root) {
    constexpr double resolution = 4e-16;
    double low = 0.0;
    double high = upper_bound;
    double width = 2.0 * (high - low);
    for (double delta = 1.0; root.steps < newton_step_cap + bracket_step_cap;) {
        const DensityDerivatives at = residual.density_derivatives(delta);
        ++root.steps;
        const double excess = delta * at.compressibility() - problem.target;
        (excess < 0.0 ? low : high) = delta;
        double next = delta - excess / at.stiffness();
        if (!(next > low && next < high) || high - low > 0.5 * width) next = 0.5 * (low + high);
        width = high - low;
        if (std::fabs(next - delta) <= resolution * delta) {
            root.delta = next;
            return true;
        }
        delta = next;
    }
    return false;
}

}  // namespace

DensityRoot solve_density(const ResidualAt& residual, const DensityProblem& problem) {
    DensityRoot root{0.0, 0, false, false};
    root.found = newton(residual, problem, root);
    if (!root.found) {
        root.bracketed = true;
        root.found = bracket(residual, problem, root);
    }
    return root;
}

}  // namespace kalorfix::water
