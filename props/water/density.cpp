#include "props/water/density.h"

#include <cmath>

namespace kalorfix::water {
namespace {

constexpr double newton_tolerance = 1e-6;

// Reduced densities that no state from 273.15 to 1073.15 K and up to 100 MPa exceeds.
constexpr double liquid_bound = 3.6;
// The two-phase region near the critical point lies around delta = 1.
constexpr double middle = 1.0;

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
            return true;
        }
    }
    return false;
}

// Newton steps kept inside a bracket whose ends have opposite signs; bisection where a step leaves it or
// the bracket shrinks too slowly.
bool bracket(const ResidualAt& residual, const DensityProblem& problem, DensityRoot& root) {
    double low = problem.side == Side::liquid ? middle : 0.0;
    double high = problem.side == Side::vapour ? middle : liquid_bound;
    double delta = problem.side == Side::liquid ? high : low;
    for (double width = high - low; root.steps < bracket_step_cap;) {
        const DensityDerivatives at = residual.density_derivatives(delta);
        ++root.steps;
        const double excess = delta * at.compressibility() - problem.target;
        (excess < 0.0 ? low : high) = delta;
        const double step = -excess / at.stiffness();
        double next = delta + step;
        const bool slow = high - low > 0.5 * width;
        if (!(next > low && next < high) || slow) next = 0.5 * (low + high);
        width = high - low;
        if (std::fabs(next - delta) <= 1e-15 * delta || width <= 1e-15 * delta) {
            root.delta = next;
            return std::isfinite(next) && next > 0.0;
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
