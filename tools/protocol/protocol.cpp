// SPDX-License-Identifier: MIT
#include "tools/protocol/protocol.h"

#include <algorithm>
#include <cmath>

#include "tools/metering/limits.h"
#include "tools/text.h"

namespace kalorfix::tool::protocol {

using metering::Flow;

namespace {

// To so many digits; a value that has no more stays.
template <class Direction>
double rounded(double value, int digits, Direction direction) {
    constexpr double last_bits = 1e-6;
    if (!(value > 0.0) || !std::isfinite(value)) return value;
    const double scale = std::pow(10.0, digits - 1 - static_cast<int>(std::floor(std::log10(value))));
    const double nearest = std::round(value * scale);
    return (std::fabs(nearest - value * scale) < last_bits ? nearest : direction(value * scale)) / scale;
}

}  // namespace

const std::vector<Shown>& shown_by(const metering::Medium& medium) {
    static const std::vector<Shown> gas{{Flow::mass, "q_m_t_h", "mass flow", "t/h"},
                                        {Flow::volume, "q_v_m3_h", "volume flow", "m3/h"},
                                        {Flow::standard_volume, "q_c_m3_h", "standard volume flow", "m3/h"},
                                        {Flow::energy, "q_e_GJ_h", "energy flow", "GJ/h"}};
    static const std::vector<Shown> heat{{Flow::mass, "q_m_t_h", "mass flow", "t/h"},
                                         {Flow::volume, "q_v_m3_h", "volume flow", "m3/h"},
                                         {Flow::energy, "q_h_GJ_h", "heat flow", "GJ/h"}};
    return metering::is_gas(medium) ? gas : heat;
}

double deviation_pct(double device, double reference) {
    if (device == reference) return 0.0;
    return 100.0 * (device - reference) / std::fabs(reference);
}

Point compute(const host::Library& library, const metering::Point& point, const State& at) {
    Point result{at};
    result.medium = metering::properties_at(library, point, at.t_C, at.p_Pa);
    result.refused = result.medium.refused;
    if (result.refused.empty()) {
        result.flow = metering::flow_at(library, point, result.medium, at.dp_Pa);
        result.refused = result.flow.refused;
    }
    for (const Shown& one : shown_by(point.medium)) {
        Compared value;
        if (result.refused.empty()) value.reference = metering::flow_of_kind(one.kind, result.flow);
        result.values.push_back(value);
    }
    return result;
}

void compare(Point& point, const Readings& device, double limit_pct) {
    for (std::size_t k = 0; k < point.values.size(); ++k) {
        Compared& value = point.values[k];
        value.device = device[k];
        if (!point.refused.empty()) {
            value.verdict = Verdict::refused;
        } else if (value.device) {
            value.deviation_pct = deviation_pct(*value.device, value.reference);
            // A deviation of just the limit is within it, whatever the last bit of the division says.
            constexpr double last_bits = 1.0 + 1e-9;
            const bool met = std::fabs(value.deviation_pct) <= limit_pct * last_bits;
            value.verdict = met ? Verdict::met : Verdict::not_met;
        }
    }
}

Summary summarize(const std::vector<Point>& points, const std::vector<bool>& shown) {
    Summary s;
    for (const Point& point : points)
        for (std::size_t k = 0; k < point.values.size(); ++k) {
            if (!shown[k]) continue;
            const Compared& value = point.values[k];
            s.met += value.verdict == Verdict::met ? 1 : 0;
            s.not_met += value.verdict == Verdict::not_met ? 1 : 0;
            if (value.verdict == Verdict::no_value || value.verdict == Verdict::refused) {
                ++s.open;
                continue;
            }
            ++s.values;
            if (std::fabs(value.deviation_pct) > std::fabs(s.largest_pct)) s.largest_pct = value.deviation_pct;
        }
    return s;
}

std::vector<State> default_points(const host::Library& library, const metering::Point& point,
                                  const Ranges& ranges) {
    constexpr double least_share = 0.05;
    const auto three = [](const std::pair<double, double>& range) {
        std::vector<double> values{range.first, 0.5 * (range.first + range.second), range.second};
        values.erase(std::unique(values.begin(), values.end()), values.end());
        return values;
    };
    std::pair<double, double> dp = ranges.dp_Pa.value_or(std::pair{0.0, HUGE_VAL});
    for (const double t_C : three(ranges.t_C))
        for (const double p_Pa : three(ranges.p_Pa)) {
            const metering::Properties medium = metering::properties_at(library, point, t_C, p_Pa);
            const std::string at = cat(" at ", t_C, " degC and ", p_Pa * 1e-6, " MPa: ");
            if (!medium.refused.empty()) throw InputError("--t, --p: no reference result", at, medium.refused);
            const metering::Accepted accepted = metering::accepted_dp(library, point, medium);
            if (!accepted.any) throw InputError("--t, --p: no dp is accepted", at, accepted.refused);
            dp = {std::max(dp.first, accepted.low.at), std::min(dp.second, accepted.high.at)};
        }
    // In figures that the form shows whole and a person sets on the device.
    constexpr int digits = 4;
    dp.second = rounded(dp.second, digits, [](double x) { return std::floor(x); });
    dp.first =
        rounded(std::max(dp.first, least_share * dp.second), digits, [](double x) { return std::ceil(x); });
    if (!(dp.first <= dp.second))
        throw InputError(
            "--dp: the library accepts no dp of this range in all states of --t and --p; see kalorfix check");
    std::vector<State> points;
    for (const double p_Pa : three(ranges.p_Pa))
        for (const double t_C : three(ranges.t_C))
            for (const double dp_Pa : three(dp)) points.push_back({t_C, p_Pa, dp_Pa});
    return points;
}

}  // namespace kalorfix::tool::protocol
