// SPDX-License-Identifier: MIT
// The zero of a function that lies between two bounds.
#pragma once

#include <cmath>

namespace kalorfix {

/// Value and slope of a function at a point.
struct Tangent {
    double value, slope;
};

/// Of a function that is negative at the lower bound and positive at the upper one. Newton steps from `x`; halvings where they leave
/// the bracket or shrink it too slowly. Ends with a relative step of at most `resolution`: true; or where the steps run out.
template <class Function>
bool bracketed_zero(double low, double high, double resolution, int most_steps, double& x,
                    Function&& function) {
    double width = 2.0 * (high - low);
    for (int step = 0; step < most_steps; ++step) {
        const Tangent at = function(x);
        (at.value < 0.0 ? low : high) = x;
        double next = x - at.value / at.slope;
        if (!(next > low && next < high) || high - low > 0.5 * width) next = 0.5 * (low + high);
        const bool settled = std::fabs(next - x) <= resolution * x;
        x = next;
        if (settled) return true;
        width = high - low;
    }
    return false;
}

}  // namespace kalorfix
