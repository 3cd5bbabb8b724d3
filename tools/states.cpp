// SPDX-License-Identifier: MIT
#include "tools/states.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "tools/output_file.h"
#include "tools/svg.h"

namespace kalorfix::tool {
namespace {

// The quantity asked for; the first without a word.
std::size_t chosen_quantity(const StateRequest& request, const std::vector<Drawable>& offered) {
    if (request.quantity.empty()) return 0;
    if (request.svg_file.empty())
        throw InputError("--quantity ", request.quantity, ": says what --svg draws; give --svg FILE too");
    const auto found = std::ranges::find(offered, request.quantity, &Drawable::name);
    if (found != offered.end()) return static_cast<std::size_t>(found - offered.begin());
    std::string names = joined(offered, &Drawable::name);
    names.replace(names.rfind(", "), 2, " and ");
    throw InputError("--quantity ", request.quantity, ": there are ", names);
}

}  // namespace

std::vector<Option> output_options(StateRequest& request, const std::string& quantities) {
    return {{"--csv", "", "all digits, comma-separated, units in the column names", &request.csv},
            {"--svg", "FILE", "draw a quantity into FILE as well", &request.svg_file},
            {"--quantity", "Q", "what to draw: " + quantities, &request.quantity}};
}

Range parse_range(std::string_view option, const std::string& text, const Limits& limits, bool ends_excluded) {
    const auto fail = [&](const auto&... what) { return InputError(option, " ", text, ": ", what...); };
    const std::string forms = cat("expected a number or start:stop:step", limits.unit.empty() ? "" : " in ",
                                  limits.unit, ", such as 150 or 20:200:20");
    std::vector<double> parts;
    for (const std::string_view part : split(text, ':')) {
        const std::optional<double> value = number(part);
        if (!value) throw fail(forms);
        parts.push_back(*value);
    }
    Range range{parts[0], 0.0, 1};
    if (parts.size() != 1) {
        if (parts.size() != 3) throw fail(forms);
        const double steps = (parts[1] - parts[0]) / parts[2];
        if (!(steps >= 0.0) || std::isinf(steps)) throw fail("the step must lead from start to stop");
        // The stop belongs to the range when rounding alone keeps a step from hitting it.
        constexpr double rounding = 1e-9;
        const double whole = std::floor(steps + rounding);
        if (whole + 1.0 > static_cast<double>(max_rows)) throw fail("at most ", max_rows, " values");
        const double end = steps - whole < rounding ? parts[1] : parts[0] + whole * parts[2];
        range = {parts[0], parts[2], static_cast<std::size_t>(whole) + 1, end};
    }
    for (const double end : {range.start, range.last()})
        if (!(ends_excluded ? limits.low < end && end < limits.high : limits.low <= end && end <= limits.high))
            throw fail("must lie within ", limits.text(), ends_excluded ? ", the ends excluded" : "");
    return range;
}

void Grid::for_each(const std::function<void(double t_C, double p_MPa)>& visit) const {
    for (std::size_t i = 0; i < t_C.count; ++i)
        for (std::size_t j = 0; j < p_MPa.count; ++j) visit(t_C[i], p_MPa[j]);
}

void require_size(const Grid& grid) {
    if (grid.t_C.count > max_rows / grid.p_MPa.count)
        throw InputError("--t, --p: at most ", max_rows, " rows in all");
}

void draw_curves(const StateRequest& request, const std::string& title, const std::vector<Drawable>& offered,
                 const Grid& grid,
                 const std::function<Drawn(double t_C, double p_MPa, std::size_t quantity)>& value) {
    const std::size_t chosen = chosen_quantity(request, offered);
    if (request.svg_file.empty()) return;
    // More than a curve's width has dots would only make the file long.
    constexpr std::size_t most_points = 2000;
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    // Over the first range, unless only the other way leaves few enough lines.
    const bool many_lines = grid.p_MPa.count > svg::most_curves && grid.t_C.count <= svg::most_curves;
    const bool over_t = grid.t_C.count > 1 && !many_lines;
    const Range& along = over_t ? grid.t_C : grid.p_MPa;
    const Range& each = over_t ? grid.p_MPa : grid.t_C;
    if (along.count < 2) throw InputError("--svg: a curve needs a range, such as --t 20:200:5");
    if (each.count > svg::most_curves)
        throw InputError("--svg: at most ", svg::most_curves, " lines; the other range has ", each.count,
                         " values");

    const bool other_matters = std::isfinite(each.start);
    svg::Plot plot{
        title, over_t ? "temperature, degC" : "absolute pressure, MPa", offered[chosen].label, {}, {}};
    if (other_matters) plot.legend_title = over_t ? "pressure, MPa" : "temperature, degC";
    const std::size_t stride = (along.count + most_points - 1) / most_points;
    for (std::size_t k = 0; k < each.count; ++k) {
        svg::Curve curve{other_matters ? fmt::format("{:.6g}", each[k]) : std::string(), {}};
        int branch = 0;
        for (std::size_t n = 0; n < along.count;) {
            const Drawn drawn = over_t ? value(along[n], each[k], chosen) : value(each[k], along[n], chosen);
            if (n > 0 && drawn.branch != branch) curve.points.emplace_back(along[n], nan);
            branch = drawn.branch;
            curve.points.emplace_back(along[n], drawn.value);
            if (n + 1 == along.count) break;
            n = std::min(n + stride, along.count - 1);
        }
        plot.curves.push_back(std::move(curve));
    }
    write_file(request.svg_file, svg::draw(plot));
}

}  // namespace kalorfix::tool
