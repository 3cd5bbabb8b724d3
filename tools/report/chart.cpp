// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "tools/report/page_parts.h"
#include "tools/report/quantities.h"

namespace kalorfix::tool::report {
namespace {

constexpr double width = 1000.0, left = 120.0, right = 985.0;
constexpr double strip = 84.0, strip_gap = 14.0, head = 8.0, foot = 22.0;
// Beyond this a point stands at the edge of its strip.
constexpr double edge = 1.35;

using Points = std::vector<const Value*>;

std::string band(const svg::Scale& y) {
    std::string out = fmt::format("<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" fill=\"#eef3f7\"/>\n",
                                  left, svg::at(y(1.0)), right - left, svg::at(y(-1.0) - y(1.0)));
    for (const double value : {-1.0, 0.0, 1.0}) {
        out += svg::line(left, y(value), right, y(value), value == 0.0 ? "#9aa5af" : "#7d93a6",
                         value == 0.0 ? 0.8 : 1.0);
        out += svg::text(left - 8.0, y(value) + 3.5,
                         value == 0.0  ? "0"
                         : value > 0.0 ? "+1"
                                       : "-1",
                         {.anchor = "end", .size = 10.0});
    }
    return out;
}

std::string dot(const Wording& w, const Value& value, double x, const svg::Scale& y) {
    const double signed_ratio = std::copysign(value.ratio(), value.deviation);
    const double place = y(std::clamp(std::isfinite(signed_ratio) ? signed_ratio : edge, -edge, edge));
    const bool differs = value.verdict == cases::Verdict::differs_as_declared;
    const std::string tip = svg::escape(
        fmt::format("{} {}: {}, {}", value.place(), value.where->id, w.number(short_number(signed_ratio)),
                    differs ? w("differ as declared") : w("worst / permitted")));
    if (value.passed())
        return fmt::format("<circle cx=\"{}\" cy=\"{}\" r=\"2.3\" fill=\"{}\"><title>{}</title></circle>\n",
                           svg::at(x), svg::at(place), differs ? "#d08a00" : "#1f5a8c", tip);
    return fmt::format(
        "<path d=\"M{0} {1}l-4 -4m4 4l4 4m-4 -4l-4 4m4 -4l4 -4\" stroke=\"#a3261d\" "
        "stroke-width=\"2\" fill=\"none\"><title>{2}</title></path>\n",
        svg::at(x), svg::at(place), tip);
}

std::string strip_of(const Wording& w, const std::string& output, const Points& points, double top) {
    const svg::Scale y{-edge, edge, top + strip, top};
    const svg::Scale x{0.0, static_cast<double>(points.size()), left, right};
    const Quantity q = quantity(output);
    std::string out = band(y);
    out += svg::text(0.0, top + strip / 2.0, q.symbol, {.size = 12.5, .colour = "#1c2126"});
    out += svg::text(0.0, top + strip / 2.0 + 15.0,
                     q.unit.empty() ? fmt::format("{}", points.size())
                                    : w("{}, {} values", translated(w.language, q.unit), points.size()),
                     {.size = 10.0});
    for (std::size_t k = 0; k < points.size(); ++k) {
        const auto index = static_cast<double>(k);
        if (k > 0 && points[k]->table != points[k - 1]->table)
            out += svg::line(x(index), top, x(index), top + strip, "#c3ccd4", 0.7);
        out += dot(w, *points[k], x(index + 0.5), y);
    }
    return out;
}

}  // namespace

std::string deviation_chart(const Wording& w, const Section& section) {
    std::string strips;
    double top = head;
    for (const std::string& output : section.outputs()) {
        Points points;
        for (const Value& value : section.values)
            if (value.expected->column == output && !value.is_exact()) points.push_back(&value);
        if (points.empty()) continue;
        strips += strip_of(w, output, points, top);
        top += strip + strip_gap;
    }
    if (strips.empty()) return {};
    const double height = top - strip_gap + foot;
    return fmt::format(
        "<div class=\"charts\"><svg class=\"chart\" viewBox=\"0 0 {} {}\" role=\"img\" "
        "aria-label=\"{}\">\n{}{}</svg></div>\n",
        width, height, svg::escape(section.subject.key), strips,
        svg::text(left, height - 6.0,
                  w("deviation over permitted deviation (amber: over declared deviation), in the order of the "
                    "tables; thin lines part the sources"),
                  {.size = 10.0}));
}

}  // namespace kalorfix::tool::report
