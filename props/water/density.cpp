// SPDX-License-Identifier: MIT
#include "props/water/density.h"

#include <cmath>

#include "props/water/saturation.h"
#include "runtime/bracketed_zero.h"

namespace kalorfix::water {
namespace {

// Reduced density of the ideal gas, and so the left-hand side p / (rho_c R T) of the density equation.
double ideal_density(double p_MPa, double theta) {
    return ideal_reduced_density * (p_MPa / critical_pressure_MPa) / theta;
}

// A relative step of this size leaves, to the fourth power, about the tolerance; where terms 55 and 56 count, the step is no more
// than Newton's.
constexpr double last_step = 1e-2;
constexpr double tolerance = 1e-10;

// Reduced density that no state from 273.15 to 1073.15 K and up to 100 MPa reaches.
constexpr double upper_bound = 3.6;

// The relative step to the root of the isotherm's Taylor polynomial of third order, by Newton's method from its own first step.
double taylor_step(const DensityDerivatives& at, double pressure_ratio) {
    const double a = at.stiffness();
    const double b = at.d + 2.0 * at.dd + 0.5 * at.ddd;
    const double c = at.dd + at.ddd + at.dddd / 6.0;
    const double excess = pressure_ratio - at.compressibility();
    const double newton = excess / a;
    double step = newton;
    for (int k = 0; k < 2; ++k)
        step -= (step * (a + step * (b + step * c)) - excess) / (a + step * (2.0 * b + 3.0 * step * c));
    // Far from the root the polynomial may have none near.
    return std::fabs(step - newton) < 0.5 * std::fabs(newton) ? step : newton;
}

bool iterate(const ResidualAt& residual, const DensityProblem& problem, DensityRoot& root) {
    double delta = problem.start;
    while (root.steps < step_cap) {
        const DensityDerivatives at = residual.density_derivatives(delta);
        ++root.steps;
        const double step = taylor_step(at, problem.target / delta);
        delta += step * delta;
        // Close to the critical point, where the isotherm is level, a step can lead anywhere.
        if (!(delta > 0.0 && delta < upper_bound)) return false;
        if (std::fabs(step) <= (at.critical ? 1e-6 : last_step)) {
            root.delta = delta;
            return true;
        }
    }
    return false;
}

// Newton steps kept inside a bracket. The states that come here lie so close to the critical point that the critical density
// separates the sides: the sign of the equation there tells on which one a root exists.
bool bracket(const ResidualAt& residual, const DensityProblem& problem, DensityRoot& root) {
    constexpr double resolution = 4e-16;
    root.delta = 1.0;
    return bracketed_zero(0.0, upper_bound, resolution, step_cap + bracket_step_cap - root.steps, root.delta,
                          [&](double delta) {
                              const DensityDerivatives at = residual.density_derivatives(delta);
                              ++root.steps;
                              return Tangent{delta * at.compressibility() - problem.target, at.stiffness()};
                          });
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

// Vapour and gas: the virial equation delta (1 + B delta) = target.
double virial_start(double discriminant, double target) {
    return discriminant > 0.0 ? 2.0 * target / (1.0 + std::sqrt(discriminant)) : target;
}

// Dense fluid above T_c: a rational function of the density as an ideal gas, fitted to IAPWS-95 up to 1073.15 K and 100 MPa; within 6 % as a
// rule, 20 % from 680 K and 60 % near the critical point.
double supercritical_start(double theta, double target) {
    const double s = 1.0 - 1.0 / theta;
    const double t = target;
    const double numerator = 1.0 + t * (-5.36266614 + 22.37874764 * s + t * (13.6376642 - 43.3336651 * s));
    const double denominator =
        1.0 + t * (-5.55168915 + 22.17870887 * s +
                   t * (8.46972554 - 34.10104926 * s + t * (0.09544542 + 6.82689498 * s)));
    return t * numerator / denominator;
}

}  // namespace

DensityProblem single_phase_problem(const ResidualAt& residual, double T_K, double p_MPa) {
    const double theta = T_K / critical_temperature_K;
    const double target = ideal_density(p_MPa, theta);
    const double discriminant = 1.0 + 4.0 * residual.second_virial() * target;
    constexpr double dilute = 0.3;
    if (theta < 1.0) {
        const double p_sat_MPa = saturation_pressure_MPa(T_K);
        if (p_MPa / critical_pressure_MPa >= p_sat_MPa / critical_pressure_MPa)
            return {target, liquid_start(T_K, p_MPa, p_sat_MPa)};
    } else if (!(discriminant > dilute)) {
        return {target, supercritical_start(theta, target)};
    }
    return {target, virial_start(discriminant, target)};
}

DensityProblem saturated_vapour_problem(double T_K) {
    const double theta = T_K / critical_temperature_K;
    const double start = saturated_vapour_density_kgm3(T_K) / critical_density_kgm3;
    return {ideal_density(saturation_pressure_MPa(T_K), theta), start};
}

DensityRoot solve_density(const ResidualAt& residual, const DensityProblem& problem) {
    DensityRoot root{};
    root.found = problem.target == 0.0 || iterate(residual, problem, root);
    if (!root.found) root.found = root.bracketed = bracket(residual, problem, root);
    if (!root.found) return root;
    root.at = residual.all(root.delta);
    if (root.bracketed) return root;
    const double rest = (problem.target / root.delta - root.at.compressibility()) / root.at.stiffness();
    if (std::fabs(rest) > tolerance) {
        root.delta += rest * root.delta;
        root.at = residual.all(root.delta);
        ++root.steps;
    }
    return root;
}

}  // namespace kalorfix::water
