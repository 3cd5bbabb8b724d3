// SPDX-License-Identifier: MIT
#include "tools/svg.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "tools/text.h"

namespace kalorfix::tool::svg {
namespace {

constexpr std::string_view grid_colour = "#e1e5e9";
constexpr std::string_view axis_colour = "#7c8791";

// Told apart by hue and by lightness.
constexpr std::array<std::string_view, most_curves> colours{"#1f5a8c", "#c0562b", "#2f7d4f", "#7a4a9e",
                                                            "#b3861b", "#3fa0b5", "#8c2f4a", "#5b6b1e",
                                                            "#4d4d9c", "#d08770", "#1c2126", "#8a949d"};

struct Extent {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();
    void take(double value) {
        low = std::fmin(low, value);
        high = std::fmax(high, value);
    }
    [[nodiscard]] bool empty() const { return !(low <= high); }
    // An axis needs a width, and a curve some air.
    void widen(double share) {
        const double air = high > low ? share * (high - low) : std::fmax(std::fabs(high) * 0.05, 1e-9);
        low -= air;
        high += air;
    }
};

bool finite(const std::pair<double, double>& point) {
    return std::isfinite(point.first) && std::isfinite(point.second);
}

// The curve as a path; a point with a gap on both sides is a dot.
std::string path(const Curve& curve, const Scale& x, const Scale& y, std::string_view colour) {
    std::string d, dots;
    const std::vector<std::pair<double, double>>& points = curve.points;
    const auto there = [&](std::size_t k) { return k < points.size() && finite(points[k]); };
    for (std::size_t k = 0; k < points.size(); ++k) {
        if (!there(k)) continue;
        const double at_x = x(points[k].first), at_y = y(points[k].second);
        const bool goes_on = k > 0 && there(k - 1);
        if (!goes_on && !there(k + 1))
            dots +=
                fmt::format("<circle cx=\"{:.2f}\" cy=\"{:.2f}\" r=\"2\" fill=\"{}\"/>\n", at_x, at_y, colour);
        d += fmt::format("{}{:.2f} {:.2f}", goes_on ? "L" : "M", at_x, at_y);
    }
    return fmt::format(
        "<path d=\"{}\" fill=\"none\" stroke=\"{}\" stroke-width=\"1.6\" stroke-linejoin=\"round\"/>\n{}", d,
        colour, dots);
}

// Each curve on the sum of those before it.
std::vector<Curve> stacked(const Plot& plot) {
    std::vector<Curve> sums = plot.curves;
    for (std::size_t k = 1; k < sums.size(); ++k)
        for (std::size_t i = 0; i < sums[k].points.size(); ++i)
            sums[k].points[i].second += sums[k - 1].points[i].second;
    return sums;
}

// The area between two curves over the same x, a piece for each run of finite points.
std::string band(const Curve* below, const Curve& above, const Scale& x, const Scale& y,
                 std::string_view colour) {
    std::string d;
    const auto& points = above.points;
    for (std::size_t begin = 0, end = 0; begin < points.size(); begin = end + 1) {
        for (end = begin; end < points.size() && finite(points[end]);) ++end;
        for (std::size_t k = begin; k < end; ++k)
            d +=
                fmt::format("{}{:.2f} {:.2f}", k == begin ? "M" : "L", x(points[k].first), y(points[k].second));
        for (std::size_t k = end; k-- > begin;)
            d += fmt::format("L{:.2f} {:.2f}", x(points[k].first), y(below ? below->points[k].second : 0.0));
        if (end > begin) d += "Z";
    }
    return fmt::format("<path d=\"{}\" fill=\"{}\" stroke=\"none\"/>\n", d, colour);
}

std::string axes(const Plot& plot, const Scale& x, const Scale& y) {
    std::string out;
    const Ticks xs = ticks(x.low, x.high, 8), ys = ticks(y.low, y.high, 7);
    for (const double value : xs.values) {
        out += line(x(value), y.from, x(value), y.to, grid_colour);
        out += text(x(value), y.from + 18.0, xs.text(value), {.anchor = "middle"});
    }
    for (const double value : ys.values) {
        out += line(x.from, y(value), x.to, y(value), grid_colour);
        out += text(x.from - 8.0, y(value) + 4.0, ys.text(value), {.anchor = "end"});
    }
    out += line(x.from, y.from, x.to, y.from, axis_colour);
    out += line(x.from, y.from, x.from, y.to, axis_colour);
    out += text((x.from + x.to) / 2.0, y.from + 40.0, plot.x_label, {.anchor = "middle", .size = 12.0});
    out += text(20.0, (y.from + y.to) / 2.0, plot.y_label, {.anchor = "middle", .size = 12.0, .upright = true});
    return out;
}

}  // namespace

std::string Ticks::text(double value) const {
    if (std::fabs(value) < 1e-9 * step) return "0";
    const double size = std::fmax(std::fabs(values.front()), std::fabs(values.back()));
    if (size >= 1e6 || size < 1e-4) return fmt::format("{:.6g}", value);
    const int places = std::clamp(static_cast<int>(std::ceil(-std::log10(step) - 1e-9)), 0, 12);
    return fmt::format("{:.{}f}", value, places);
}

Ticks ticks(double low, double high, int about) {
    const double raw = (high - low) / about;
    const double power = std::pow(10.0, std::floor(std::log10(raw)));
    const double lead = raw / power;
    Ticks result;
    result.step = power * (lead < 1.5 ? 1.0 : lead < 3.5 ? 2.0 : lead < 7.5 ? 5.0 : 10.0);
    const double first = std::ceil(low / result.step - 1e-9);
    const double last = std::floor(high / result.step + 1e-9);
    for (double k = first; k <= last; k += 1.0) result.values.push_back(k * result.step);
    if (result.values.empty()) result.values.push_back(low);
    return result;
}

std::string at(double coordinate) { return fmt::format("{:.5g}", std::round(coordinate * 10.0) / 10.0); }

std::string text(double x, double y, std::string_view content, const Text& style) {
    const std::string turn = style.upright ? fmt::format(" transform=\"rotate(-90 {} {})\"", at(x), at(y)) : "";
    return fmt::format("<text x=\"{}\" y=\"{}\" text-anchor=\"{}\" font-size=\"{}\" fill=\"{}\"{}>{}</text>\n",
                       at(x), at(y), style.anchor, style.size, style.colour, turn, escape(content));
}

std::string line(double x1, double y1, double x2, double y2, std::string_view colour, double width) {
    return fmt::format("<line x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\" stroke=\"{}\" stroke-width=\"{}\"/>\n",
                       at(x1), at(y1), at(x2), at(y2), colour, width);
}

std::string draw(const Plot& plot) {
    constexpr double width = 900.0, height = 560.0;
    constexpr double left = 90.0, right = 730.0, top = 50.0, bottom = 490.0;
    Extent xs, ys;
    const std::vector<Curve> curves = plot.stacked ? stacked(plot) : plot.curves;
    for (const Curve& curve : curves)
        for (const auto& point : curve.points)
            if (finite(point)) {
                xs.take(point.first);
                ys.take(point.second);
            }
    if (xs.empty()) throw InputError("--svg: there is nothing to draw, no state has this quantity");
    if (xs.high == xs.low) xs.widen(0.0);
    ys.widen(0.04);
    if (plot.stacked) ys.low = 0.0;
    const Scale x{xs.low, xs.high, left, right}, y{ys.low, ys.high, bottom, top};

    std::string out = fmt::format(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0}\" height=\"{1}\" viewBox=\"0 0 {0} {1}\" "
        "font-family=\"system-ui, 'Segoe UI', 'DejaVu Sans', sans-serif\">\n"
        "<title>{2}</title>\n<rect width=\"{0}\" height=\"{1}\" fill=\"#ffffff\"/>\n",
        width, height, escape(plot.title));
    out += text(left, 28.0, plot.title, {.size = 15.0, .colour = "#1c2126"});
    out += axes(plot, x, y);
    for (std::size_t k = 0; k < plot.curves.size(); ++k)
        out += plot.stacked ? band(k > 0 ? &curves[k - 1] : nullptr, curves[k], x, y, colours[k % most_curves])
                            : path(curves[k], x, y, colours[k % most_curves]);
    if (plot.curves.size() > 1 || !plot.legend_title.empty()) {
        double row = top + 10.0;
        out += text(right + 24.0, row, plot.legend_title, {.size = 12.0});
        for (std::size_t k = 0; k < plot.curves.size(); ++k) {
            row += 22.0;
            // The uppermost band comes first.
            const std::size_t one = plot.stacked ? plot.curves.size() - 1 - k : k;
            out += line(right + 24.0, row - 4.0, right + 48.0, row - 4.0, colours[one % most_curves],
                        plot.stacked ? 12.0 : 2.5);
            out += text(right + 56.0, row, plot.curves[one].label, {.size = 12.0});
        }
    }
    return out + "</svg>\n";
}

}  // namespace kalorfix::tool::svg
