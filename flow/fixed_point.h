// SPDX-License-Identifier: MIT
// The iteration of the flow equation, apart from what is iterated.
#pragma once

#include <cmath>

#include "flow/device.h"

namespace kalorfix::flow {

/// Relative change of the flow at which the iteration ends: class 1 is solved more closely.
[[nodiscard]] constexpr double tolerance(unsigned char metering_class) {
    return metering_class == 1 ? 1e-5 : 1e-3;
}

struct FixedPoint {
    int passes;      ///< passes made
    bool refused;    ///< a pass was refused
    bool converged;  ///< two passes agree
};

/// Between the steps that C (Venturi tubes) and the roughness correction have in Re some flows alternate for ever: hence a cap.
/// Repeats `pass(number, previous flow, flow)`, which gives false to refuse, until the relative change of the flow is below
/// the tolerance. The first pass has no flow to start from and ends nothing; a change that is not finite ends without
/// convergence. What a pass leaves depends on the previous flow alone: once a flow comes back, the passes up to the cap go
/// round the same circle, and whole rounds are left out.
template <class Pass>
[[nodiscard]] FixedPoint fixed_point(double tolerance, Pass&& pass) {
    double previous = 0.0;
    double mark = 0.0;  // the flow of pass 1, 2, 4, 8, ..., to meet again
    int marked = 0;
    for (int number = 0; number < max_passes; ++number) {
        double flow = 0.0;
        if (!pass(number, previous, flow)) return {number + 1, true, false};
        const double change = std::fabs(flow - previous) / flow;
        if (!std::isfinite(change)) return {number + 1, false, false};
        if (number >= 1 && change < tolerance) return {number + 1, false, true};
        if (marked > 0 && flow == mark) {
            const int rest = (max_passes - 1 - number) % (number - marked);
            for (int k = 1; k <= rest; ++k) pass(number + k, flow, flow);
            return {number + 1 + rest, false, false};
        }
        if (number == 1 || number == 2 * marked) {
            mark = flow;
            marked = number;
        }
        previous = flow;
    }
    return {max_passes, false, false};
}

}  // namespace kalorfix::flow
