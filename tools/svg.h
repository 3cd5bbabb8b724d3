// SPDX-License-Identifier: MIT
// Axes, ticks and curves as SVG, for the property tables and the report.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/html.h"

namespace kalorfix::tool::svg {

using html::escape;

/// A linear axis: values low..high onto coordinates from..to.
struct Scale {
    double low = 0.0, high = 1.0;
    double from = 0.0, to = 1.0;
    double operator()(double value) const { return from + (value - low) / (high - low) * (to - from); }
};

/// Round values within low..high, about so many, and the step between them.
struct Ticks {
    std::vector<double> values;
    double step = 1.0;
    [[nodiscard]] std::string text(double value) const;
};
[[nodiscard]] Ticks ticks(double low, double high, int about);

/// A coordinate with one decimal, as short as possible.
[[nodiscard]] std::string at(double coordinate);

struct Text {
    std::string anchor = "start";  ///< start, middle or end
    double size = 11.0;
    std::string colour = "#3c4650";
    bool upright = false;  ///< read from below, for the label of a vertical axis
};
[[nodiscard]] std::string text(double x, double y, std::string_view content, const Text& style = {});
[[nodiscard]] std::string line(double x1, double y1, double x2, double y2, std::string_view colour,
                               double width = 1.0);

/// One line of a plot; a point that is not finite interrupts it.
struct Curve {
    std::string label;
    std::vector<std::pair<double, double>> points;
};

struct Plot {
    std::string title, x_label, y_label;
    std::string legend_title;
    std::vector<Curve> curves;
    bool stacked = false;  ///< bands, the first at the bottom, over the same x: the curves are their heights
};

inline constexpr std::size_t most_curves = 12;

/// A document of its own. Throws InputError when no curve has a finite point.
[[nodiscard]] std::string draw(const Plot& plot);

}  // namespace kalorfix::tool::svg
