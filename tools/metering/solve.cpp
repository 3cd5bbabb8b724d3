// SPDX-License-Identifier: MIT
#include "tools/metering/solve.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "flow/device.h"
#include "flow/fixed_point.h"

namespace kalorfix::metering {
namespace {

struct Root {
    double at;
    FlowResult flow;
};

bool same_side(double f, double g) { return std::signbit(f) == std::signbit(g); }

// Root of flow - target between two accepted values on its two sides: regula falsi with halved ends (Illinois), each third step a
// bisection. Where the flow equation does not settle, in a step of the discharge coefficient, the search goes on at one edge of what
// is refused, or ends there.
Root find_root(const Varied& flow, double target, Root low, Root high) {
    constexpr int most = 200;
    double f_low = low.flow.mass_th - target, f_high = high.flow.mass_th - target;
    int last_side = 0;
    for (int k = 0; k < most && f_low != 0.0 && f_high != 0.0; ++k) {
        double at = (low.at * f_high - high.at * f_low) / (f_high - f_low);
        if (k % 3 == 2 || !(low.at < at && at < high.at)) at = low.at + (high.at - low.at) / 2.0;
        if (at <= low.at || at >= high.at) break;
        Root found{at, flow(at)};
        bool below = same_side(found.flow.mass_th - target, f_low);
        if (!found.flow.accepted()) {
            const End before = last_accepted(flow, at, low.at), behind = last_accepted(flow, at, high.at);
            const bool root_behind = same_side(before.flow.mass_th - target, f_low);
            if (root_behind && same_side(behind.flow.mass_th - target, f_high)) {
                low = {before.at, before.flow}, high = {behind.at, behind.flow};
                break;
            }
            found = root_behind ? Root{behind.at, behind.flow} : Root{before.at, before.flow};
            below = root_behind;
        }
        const double f = found.flow.mass_th - target;
        const int side = below ? -1 : 1;
        (below ? f_low : f_high) = f;
        if (last_side == side) (below ? f_high : f_low) /= 2.0;
        (below ? low : high) = std::move(found);
        last_side = side;
    }
    const auto off = [&](const Root& root) { return std::fabs(root.flow.mass_th - target); };
    return off(low) <= off(high) ? low : high;
}

std::vector<Root> roots(const Varied& flow, double target, const Accepted& range) {
    std::vector<Root> path{{range.low.at, range.low.flow}};
    for (const auto& [at, one] : range.walk)
        if (one.accepted() && range.low.at < at && at < range.high.at) path.push_back({at, one});
    if (range.high.at > range.low.at) path.push_back({range.high.at, range.high.flow});
    std::vector<Root> found;
    for (std::size_t k = 0; k + 1 < path.size(); ++k) {
        const double a = path[k].flow.mass_th - target, b = path[k + 1].flow.mass_th - target;
        if ((a <= 0.0) != (b <= 0.0) || (a == 0.0 && k == 0))
            found.push_back(find_root(flow, target, path[k], path[k + 1]));
    }
    return found;
}

std::string place(const Answer& answer, Unknown unknown, double at) {
    if (unknown == Unknown::bore) return fmt::format("d20 = {:.6g} mm, beta {:.5g}", at, answer.flow.beta);
    return fmt::format("dp = {:.6g} kPa", at / 1000.0);
}

std::string amount(Flow kind, const FlowResult& flow) {
    constexpr std::string_view names[] = {"t/h", "m3/h", "m3/h at standard conditions", "GJ/h"};
    return fmt::format("{:.7g} {}", flow_of_kind(kind, flow), names[static_cast<std::size_t>(kind)]);
}

void no_such_flow(const Question& q, const End& end, bool more, Answer& answer) {
    answer.status = more ? Status::too_large : Status::too_small;
    answer.flow = end.flow;
    answer.why = fmt::format("at {} the flow is {}; {} is not possible here{}{}",
                             place(answer, q.unknown, end.at), amount(q.kind, end.flow), more ? "more" : "less",
                             end.because.empty() ? "" : ": ", end.because);
}

void search(const Varied& flow, const Question& q, double target, const Accepted& range, Answer& answer,
            double& unknown) {
    if (!range.any) {
        answer.why = range.refused;
        return;
    }
    constexpr double rounding = 1e-12;
    std::vector<Root> found = roots(flow, target, range);
    const bool more = target > range.low.flow.mass_th;
    const End& end = more == (range.high.flow.mass_th > range.low.flow.mass_th) ? range.high : range.low;
    if (found.empty() && std::fabs(end.flow.mass_th - target) <= rounding * target)
        found.push_back({end.at, end.flow});
    if (found.empty()) {
        unknown = end.at;
        return no_such_flow(q, end, more, answer);
    }
    // A root that is a step gives way to one that is none.
    const double tolerance = flow::tolerance(static_cast<unsigned char>(answer.point.pipe.metering_class));
    const auto residual = [&](const Root& root) { return std::fabs(root.flow.mass_th - target) / target; };
    const auto good = [&](const Root& root) { return residual(root) <= tolerance; };
    const auto first = std::ranges::find_if(found, good);
    const Root& root = first == found.end() ? found.front() : *first;
    answer.ambiguous = std::ranges::count_if(found, good) > 1;
    unknown = root.at;
    answer.flow = root.flow;
    answer.residual = residual(root);
    answer.status = first == found.end() ? Status::step : Status::solved;
    if (answer.status == Status::step)
        answer.why = fmt::format(
            "the flow lies in a step of the flow equation at {}, Re {:.5g}: no value gives exactly this flow",
            place(answer, q.unknown, root.at), root.flow.Re);
}

void solve_bore(const host::Library& library, const Question& q, double target, Answer& answer) {
    const flow::DeviceRow& device = flow::device_row(answer.point.pipe.device);
    if (!device.is_standard()) {
        answer.why = "a bore is found for orifice plates, nozzles and Venturi tubes alone";
        return;
    }
    answer.dp_Pa = q.dp_Pa;
    Point tried = answer.point;
    const auto flow = [&](double d20_mm) {
        tried.pipe.d20_mm = d20_mm;
        return flow_at(library, tried, answer.medium, q.dp_Pa);
    };
    // A little beyond both ends at the working temperature, so that these are found as the library sees them.
    constexpr int steps = 80;
    constexpr double beyond = 0.02;
    const double D20_mm = answer.point.pipe.D20_mm;
    const FlowResult same = flow(D20_mm);
    const double beta_1_mm = same.d_mm > 0.0 ? D20_mm * (same.D_mm / same.d_mm) : D20_mm;
    const double low = device.beta_min * (1.0 - beyond), high = device.beta_max * (1.0 + beyond);
    std::vector<double> values;
    for (int k = 0; k <= steps; ++k) values.push_back(beta_1_mm * (low + (high - low) * k / steps));
    search(flow, q, target, accepted_range(flow, values), answer, answer.point.pipe.d20_mm);
    if (!answer.solved() || !(q.round_mm > 0.0)) return;
    const double rounded = std::round(answer.point.pipe.d20_mm / q.round_mm) * q.round_mm;
    answer.rounded = std::pair(rounded, flow(rounded));
}

void solve_flow(const host::Library& library, const Question& q, Answer& answer) {
    answer.dp_Pa = q.dp_Pa;
    answer.flow = flow_at(library, answer.point, answer.medium, q.dp_Pa);
    answer.why = answer.flow.refused;
    if (answer.flow.accepted()) answer.status = Status::solved;
}

}  // namespace

Answer solve(const host::Library& library, const Point& point, const Question& q, bool with_range) {
    Answer answer;
    answer.point = point;
    if (q.unknown != Unknown::dp) answer.dp_Pa = q.dp_Pa;
    answer.medium = properties_at(library, point, q.t_C, q.p_Pa);
    answer.why = answer.medium.refused;
    if (!answer.why.empty()) return answer;
    const double target = mass_of(q.kind, q.flow, point, answer.medium);
    if (q.unknown != Unknown::flow && !(target > 0.0)) {
        answer.why = q.flow > 0.0 ? "this medium has no such flow" : "a flow is above 0";
        return answer;
    }
    if (q.unknown == Unknown::flow) solve_flow(library, q, answer);
    if (q.unknown == Unknown::bore) solve_bore(library, q, target, answer);
    if (!with_range && q.unknown != Unknown::dp) return answer;
    if (q.unknown == Unknown::bore && !answer.solved()) return answer;
    answer.range = accepted_dp(library, answer.point, answer.medium);
    if (q.unknown != Unknown::dp) return answer;
    const auto flow = [&](double dp_Pa) { return flow_at(library, point, answer.medium, dp_Pa); };
    search(flow, q, target, answer.range, answer, answer.dp_Pa);
    return answer;
}

}  // namespace kalorfix::metering
