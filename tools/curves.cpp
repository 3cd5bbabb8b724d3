#include "tools/curves.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "tools/gasdat/gas_file.h"
#include "tools/svg.h"

namespace kalorfix::tool {

std::size_t drawn_quantity(const Drawing& drawing, const std::vector<Drawable>& offered) {
    if (drawing.quantity.empty()) return 0;
    if (drawing.file.empty())
        throw InputError{
            fmt::format("--quantity {}: says what --svg draws; give --svg FILE too", drawing.quantity)};
    std::string names;
    for (std::size_t k = 0; k < offered.size(); ++k) {
        if (offered[k].name == drawing.quantity) return k;
        names += (k == 0 ? "" : k + 1 == offered.size() ? " and " : ", ") + offered[k].name;
    }
    throw InputError{fmt::format("--quantity {}: there are {}", drawing.quantity, names)};
}

void draw_curves(const std::string& file, const std::string& title, const Drawable& quantity, const Range& t_C,
                 const Range& p_MPa, const std::function<Drawn(double t_C, double p_MPa)>& value) {
    // More than a curve's width has dots would only make the file long.
    constexpr std::size_t most_points = 2000;
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    // Over the first range, unless only the other way leaves few enough lines.
    const bool many_lines = p_MPa.count > svg::most_curves && t_C.count <= svg::most_curves;
    const bool over_t = t_C.count > 1 && !many_lines;
    const Range& along = over_t ? t_C : p_MPa;
    const Range& each = over_t ? p_MPa : t_C;
    if (along.count < 2) throw InputError{"--svg: a curve needs a range, such as --t 20:200:5"};
    if (each.count > svg::most_curves)
        throw InputError{fmt::format("--svg: at most {} lines; the other range has {} values", svg::most_curves,
                                     each.count)};

    const bool other_matters = std::isfinite(each.start);
    svg::Plot plot{title, over_t ? "temperature, degC" : "absolute pressure, MPa", quantity.label, {}, {}};
    if (other_matters) plot.legend_title = over_t ? "pressure, MPa" : "temperature, degC";
    const std::size_t stride = (along.count + most_points - 1) / most_points;
    for (std::size_t k = 0; k < each.count; ++k) {
        svg::Curve curve{other_matters ? fmt::format("{:.6g}", each[k]) : std::string(), {}};
        int branch = 0;
        for (std::size_t n = 0; n < along.count;) {
            const Drawn drawn = over_t ? value(along[n], each[k]) : value(each[k], along[n]);
            if (n > 0 && drawn.branch != branch) curve.points.emplace_back(along[n], nan);
            branch = drawn.branch;
            curve.points.emplace_back(along[n], drawn.value);
            if (n + 1 == along.count) break;
            n = std::min(n + stride, along.count - 1);
        }
        plot.curves.push_back(std::move(curve));
    }
    gasdat::write_whole(file, svg::draw(plot));
}

}  // namespace kalorfix::tool
