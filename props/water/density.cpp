#include "props/water/density.h"

#include <cmath>

#include "props/water/saturation.h"

namespace kalorfix::water {
namespace {

// Reduced density of the ideal gas, and so the left-hand side p / (rho_c R T) of the density equation.
double ideal_density(double p_MPa, double theta) {
    return ideal_reduced_density * (p_MPa / critical_pressure_MPa) / theta;
}

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

// Compressed liquid: Tait's equation over the saturated liquid, its constants fitted to IAPWS-95 up to 610 K and 100 MPa, where it
// is within 0.2 %. Closer to the critical point a density above all roots is the safer start.
double liquid_start(double T_K, double p_MPa, double p_sat_MPa) {
    constexpr double fitted_to_K = 630.0;
    constexpr double dense = 3.2;
    if (T_K > fitted_to_K) return dense;
    const double x = T_K / critical_temperature_K;
    const double B_MPa = -2708.29291 + x * (16841.4359 + x * (-32573.9465 + x * (25791.9053 - x * 7355.92341)));
    const double compression = (0.161114622 - 0.0164353062 * x) * std::log1p((p_MPa - p_sat_MPa) / B_MPa);
    return saturated_liquid_density_kgm3(T_K) / critical_density_kgm3 * (1.0 + compression);
}

// Vapour and gas: the virial equation delta (1 + B delta) = target, as far as it has a solution.
double gas_start(double second_virial, double target) {
    const double discriminant = 1.0 + 4.0 * second_virial * target;
    return discriminant > 0.0 ? 2.0 * target / (1.0 + std::sqrt(discriminant)) : target;
}

}  // namespace

DensityProblem single_phase_problem(const ResidualAt& residual, double T_K, double p_MPa) {
    const double theta = T_K / critical_temperature_K;
    const double target = ideal_density(p_MPa, theta);
    if (theta < 1.0) {
        const double p_sat_MPa = saturation_pressure_MPa(T_K);
        if (p_MPa / critical_pressure_MPa >= p_sat_MPa / critical_pressure_MPa)
            return {target, liquid_start(T_K, p_MPa, p_sat_MPa)};
        return {target, gas_start(residual.second_virial(), target)};
    }
    const double pi = p_MPa / critical_pressure_MPa;
    const double start = pi < 1.05 ? gas_start(residual.second_virial(), target)
                                   : 9.0 * ideal_reduced_density * pi / ((1.1 * pi + 0.7) * theta);
    return {target, start};
}

DensityProblem saturated_vapour_problem(double T_K) {
    const double theta = T_K / critical_temperature_K;
    const double start = saturated_vapour_density_kgm3(T_K) / critical_density_kgm3;
    return {ideal_density(saturation_pressure_MPa(T_K), theta), start};
}

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
