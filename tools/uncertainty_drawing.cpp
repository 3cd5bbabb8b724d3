// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "tools/metering/limits.h"
#include "tools/names.h"
#include "tools/svg.h"
#include "tools/text.h"
#include "tools/uncertainty_sheet.h"

namespace kalorfix::tool {
namespace {

using metering::Budget;

// A band, in words that fit beside the plot: the components of a composition are one.
std::string label_of(const metering::Entry& entry) {
    constexpr std::pair<std::string_view, const char*> shorter[] = {
        {"C", "coefficient"}, {"epsilon", "expansibility"}, {"dp", "dp"},     {"p", "pressure"},
        {"K", "K"},           {"rho_c", "density rho_c"},   {"heat", "heat"}, {"rho", "density"}};
    for (const auto& [key, label] : shorter)
        if (entry.key == key) return label;
    return std::ranges::find(components, entry.key) != components.end() ? "composition" : entry.name;
}

double square_of(const Budget& budget, const std::string& label, std::size_t k) {
    double sum = 0.0;
    for (const metering::Entry& entry : budget.entries)
        if (label_of(entry) == label) sum += entry.contribution[k] * entry.contribution[k];
    return sum;
}

}  // namespace

std::string budget_drawing(const host::Library& library, const std::string& name, const metering::Point& point,
                           const metering::Instruments& instruments, const metering::Reading& reading) {
    constexpr int dots = 80;
    constexpr double least_share = 0.02;
    const metering::Properties medium = metering::properties_at(library, point, reading.t_C, reading.p_Pa);
    if (!medium.refused.empty()) throw InputError("--svg: nothing to draw: ", medium.refused);
    const metering::Accepted range = metering::accepted_dp(library, point, medium);
    if (!range.any) throw InputError("--svg: nothing to draw: ", range.refused);
    const double whole_Pa = instruments.dp.range.value_or(2.0 * reading.dp_Pa);
    const double low_Pa = std::max(least_share * whole_Pa, range.low.at);
    const double high_Pa = std::min(whole_Pa, range.high.at);
    if (!(low_Pa < high_Pa))
        throw InputError("--svg: nothing to draw: no differential pressure up to ", whole_Pa / 1000.0,
                         " kPa is accepted");
    // Even steps of the flow, about.
    std::vector<Budget> budgets;
    for (int i = 0; i <= dots; ++i) {
        const double root = std::sqrt(low_Pa) + (std::sqrt(high_Pa) - std::sqrt(low_Pa)) * i / dots;
        const double dp_Pa = std::clamp(root * root, low_Pa, high_Pa);
        Budget one = metering::budget_of(library, point, instruments, {reading.t_C, reading.p_Pa, dp_Pa});
        if (one.accepted()) budgets.push_back(std::move(one));
    }
    if (budgets.empty()) throw InputError("--svg: nothing to draw: ", range.refused);
    const std::size_t k = budgets.front().flow[1] > 0.0 ? 1 : 0;
    bool bound = false;
    svg::Plot plot{{},
                   k == 1 ? "flow at standard conditions, m3/h" : "mass flow, t/h",
                   "expanded uncertainty (95 %), %",
                   "share of its square",
                   {},
                   true};
    for (const metering::Entry& entry : budgets.front().entries) {
        const std::string label = label_of(entry);
        if (std::ranges::find(plot.curves, label, &svg::Curve::label) != plot.curves.end()) continue;
        svg::Curve curve{label, {}};
        bool any = false;
        for (const Budget& one : budgets) {
            const std::optional<double> expanded = metering::expanded_pct(one, k);
            const double square = square_of(one, label, k);
            any = any || square > 0.0;
            curve.points.emplace_back(one.flow[k], !expanded         ? std::nan("")
                                                   : *expanded > 0.0 ? square / *expanded
                                                                     : 0.0);
            bound = bound || !metering::lacking(one, k, metering::Standing::not_stated).empty();
        }
        if (any) plot.curves.push_back(std::move(curve));
    }
    if (plot.curves.empty()) throw InputError("--svg: nothing to draw: no input has a figure here");
    plot.title =
        fmt::format("{}{}uncertainty over flow at {:.4g} degC, {:.4g} MPa{}", name, name.empty() ? "" : ": ",
                    reading.t_C, reading.p_Pa * 1e-6, bound ? "; a lower bound, inputs are not stated" : "");
    return svg::draw(plot);
}

}  // namespace kalorfix::tool
