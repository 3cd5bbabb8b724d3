// SPDX-License-Identifier: MIT
#include "tools/metering/limits.h"

#include <algorithm>
#include <cmath>

#include "flow/device.h"
#include "runtime/units.h"

namespace kalorfix::metering {
End last_accepted(const Varied& flow, double refused, double accepted) {
    // The reason of a value that is well outside tells more than that of the last digit.
    FlowResult outside = flow(refused);
    End end{accepted, flow(accepted), outside.refused};
    for (;;) {
        const double middle = refused + (accepted - refused) / 2.0;
        if (middle == refused || middle == accepted) return end;
        FlowResult found = flow(middle);
        if (found.accepted()) {
            accepted = end.at = middle;
            end.flow = std::move(found);
        } else {
            refused = middle;
            if (found.limit == outside.limit) continue;
            end.because = found.refused;
            outside = std::move(found);
        }
    }
}

Accepted accepted_range(const Varied& flow, const std::vector<double>& values) {
    Accepted found;
    for (const double value : values) found.walk.emplace_back(value, flow(value));
    const auto good = [](const auto& step) { return step.second.accepted(); };
    const auto first = std::ranges::find_if(found.walk, good);
    if (first == found.walk.end()) {
        found.refused = found.walk[found.walk.size() / 2].second.refused;
        return found;
    }
    const auto last = std::find_if(found.walk.rbegin(), found.walk.rend(), good).base() - 1;
    found.any = true;
    found.low = first == found.walk.begin() ? End{first->first, first->second, {}}
                                            : last_accepted(flow, (first - 1)->first, first->first);
    found.high = last + 1 == found.walk.end() ? End{last->first, last->second, {}}
                                              : last_accepted(flow, (last + 1)->first, last->first);
    return found;
}

Accepted accepted_dp(const host::Library& library, const Point& point, const Properties& medium) {
    // Two and a half steps to a factor of two, down to a millionth of a millionth of p; dp/p 0.25 is one of them.
    constexpr int steps = 100;
    std::vector<double> values;
    for (int k = steps; k >= 0; --k) values.push_back(medium.p_Pa * std::exp2(-0.4 * k));
    return accepted_range([&](double dp_Pa) { return flow_at(library, point, medium, dp_Pa); }, values);
}

flow::Range reynolds_range(const Pipeline& pipe, const FlowResult& flow) {
    return flow::device_row(pipe.device).reynolds(flow.beta, flow.D_mm * units::m_per_mm);
}

Loss pressure_loss(const Pipeline& pipe, const FlowResult& flow, double dp_Pa) {
    constexpr double least_of_venturi = 0.05, most_of_venturi = 0.20;
    const flow::DeviceRow& device = flow::device_row(pipe.device);
    if (device.family == flow::Family::venturi_tube)
        return {least_of_venturi * dp_Pa, most_of_venturi * dp_Pa, true};
    // A Venturi nozzle has a divergent part, of which nothing is published here.
    if (!device.is_standard() || device.device == flow::Device::venturi_nozzle) return {};
    const double beta2 = flow.beta * flow.beta;
    const double root = std::sqrt(1.0 - beta2 * beta2 * (1.0 - flow.C * flow.C));
    const double loss = dp_Pa * (root - flow.C * beta2) / (root + flow.C * beta2);
    return {loss, loss, true};
}

}  // namespace kalorfix::metering
