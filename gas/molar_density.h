// SPDX-License-Identifier: MIT
// The molar density of a gas at a given pressure, by any equation of state.
//
// An isotherm is taken in reduced terms: y = x Z(x), proportional to the pressure, over a reduced density x; for a vanishing
// density y = 0 and dy/dx = 1. The gas root is the density at which y, rising along the isotherm from zero, reaches its target
// before it first falls. Where it falls before, the fluid is no gas.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "runtime/bracketed_zero.h"

namespace kalorfix::gas {

/// A point of an isotherm.
struct IsothermPoint {
    double x;
    double y;          ///< x Z(x)
    double slope;      ///< dy/dx
    double curvature;  ///< d2y/dx2
};

struct GasRoot {
    double x;    ///< reduced density; 0 where there is no gas root
    int points;  ///< of the isotherm that were computed
};

/// Start value, in the terms of the target: by the second virial coefficient as far as it reaches, else that of GOST 30319.2-96 at
/// p and a pseudo-critical pressure (both MPa).
[[nodiscard]] inline double start_density(double target, double second_virial, double p_MPa,
                                          double critical_MPa) {
    constexpr double dilute = 0.25;
    const double discriminant = 1.0 + 4.0 * second_virial * target;
    return discriminant > dilute ? 2.0 * target / (1.0 + std::sqrt(discriminant))
                                 : 9.0 * target / (1.1 * p_MPa / critical_MPa + 0.7);
}

/// Finds the gas root of an isotherm. `Isotherm` has
///   IsothermPoint at(double x) const
///   bool rises_up_to(double x) const   true only where the isotherm cannot have fallen below x: cheap and sufficient
template <class Isotherm>
class GasRootSearch {
public:
    GasRootSearch(const Isotherm& isotherm, double target) : isotherm_(isotherm), target_(target) {}

    /// Halley's method with the true derivatives, which is through in at most six steps for pipeline gas; where its root may
    /// not be that of the gas, the climb.
    [[nodiscard]] GasRoot from(double start) {
        const double x = halley(start);
        if (x > 0.0 && isotherm_.rises_up_to(x)) return {x, points_};
        return {climb(), points_};
    }

private:
    static constexpr double none = 0.0;
    static constexpr int halley_steps = 30;
    static constexpr int climb_steps = 400;
    static constexpr int bracket_steps = 100;

    IsothermPoint point(double x) {
        ++points_;
        return isotherm_.at(x);
    }

    // Newton's step, which the curvature makes good to the third power: a step of the tolerance leaves 1e-11.
    double halley(double x) {
        constexpr double tolerance = 2e-4;
        for (int step = 0; step < halley_steps; ++step) {
            const IsothermPoint here = point(x);
            double change = (target_ - here.y) / here.slope;
            const double bend = 0.5 * change * here.curvature / here.slope;
            if (std::fabs(bend) < 0.5) change /= 1.0 + bend;
            x += change;
            if (std::fabs(change) <= tolerance * x) return x;
            if (!(x > 0.0)) x = target_;  // the ideal gas
        }
        return none;
    }

    // Climbs the isotherm from low density in steps that stay short of the next maximum as long as the slope is convex: a Newton
    // step, but not past where the slope would vanish if it went on falling at its present rate.
    double climb() {
        constexpr double tolerance = 1e-7;
        constexpr double largest_step = 0.05;  // equations of state have no finer structure
        if (!(target_ > 0.0 && std::isfinite(target_))) return none;
        IsothermPoint low{0.0, 0.0, 1.0, 0.0};
        for (int step = 0; step < climb_steps; ++step) {
            const double wanted = (target_ - low.y) / low.slope;
            double change = std::min(wanted, largest_step * (1.0 + low.x));
            if (low.curvature < 0.0) change = std::min(change, -0.9 * low.slope / low.curvature);
            if (step == 0) change = 1e-6 * std::min(target_, 1.0);  // the curvature is not known yet
            const IsothermPoint high = point(low.x + change);
            if (!std::isfinite(high.y) || !std::isfinite(high.slope)) return none;
            if (!(high.slope > 0.0)) return below_maximum(low, high);
            if (low.curvature < 0.0 && high.curvature > 0.0) {
                const IsothermPoint bottom = flattest(low, high);
                if (!(bottom.slope > 0.0)) return below_maximum(low, bottom);
            }
            if (high.y >= target_) return pressure_root(low, high);
            if (change <= tolerance * high.x) return change == wanted ? high.x : none;
            low = high;
        }
        return none;
    }

    // The flattest point between one whose slope falls and one whose slope rises, or any that does not rise.
    IsothermPoint flattest(IsothermPoint low, IsothermPoint high) {
        for (int step = 0; step < bracket_steps; ++step) {
            // Where the tangents of the slope meet, a convex slope is above them.
            const double meet = (high.slope - low.slope + low.curvature * low.x - high.curvature * high.x) /
                                (low.curvature - high.curvature);
            if (low.slope + low.curvature * (meet - low.x) > 0.0) break;
            const double x = 0.5 * (low.x + high.x);
            if (!(low.x < x && x < high.x)) break;
            const IsothermPoint middle = point(x);
            if (!(middle.slope > 0.0)) return middle;
            (middle.curvature < 0.0 ? low : high) = middle;
        }
        return low.slope < high.slope ? low : high;
    }

    // The isotherm rises at one point and falls at the other: the maximum lies between, and the root, if any, below it.
    double below_maximum(const IsothermPoint& rising, const IsothermPoint& falling) {
        const double top = zero(rising, falling, [](const IsothermPoint& at) {
            return Tangent{-at.slope, -at.curvature};
        });
        const IsothermPoint maximum = point(top);
        return maximum.y >= target_ ? pressure_root(rising, maximum) : none;
    }

    double pressure_root(const IsothermPoint& low, const IsothermPoint& high) {
        return zero(low, high, [this](const IsothermPoint& at) { return Tangent{at.y - target_, at.slope}; });
    }

    // The zero of a value that rises from one point to the other.
    template <class Value>
    double zero(const IsothermPoint& low, const IsothermPoint& high, Value&& value) {
        double x = 0.5 * (low.x + high.x);
        bracketed_zero(low.x, high.x, 1e-14, bracket_steps, x, [&](double at) { return value(point(at)); });
        return x;
    }

    const Isotherm& isotherm_;
    double target_;
    int points_ = 0;
};

}  // namespace kalorfix::gas
