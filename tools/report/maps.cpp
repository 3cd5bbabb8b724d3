#include "tools/report/maps.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <vector>

#include "tools/report/quantities.h"
#include "tools/svg.h"

namespace kalorfix::tool::report {
namespace {

constexpr double low_T_K = 250.0, high_T_K = 340.0, low_p_MPa = 0.1, high_p_MPa = 12.0;
constexpr std::size_t columns = 45, rows = 40;
constexpr double refused = std::numeric_limits<double>::quiet_NaN();
constexpr std::string_view refused_colour = "#b9bfc5";

using Grid = std::array<double, columns * rows>;

double cell_T_K(std::size_t i) {
    return low_T_K + (high_T_K - low_T_K) * (static_cast<double>(i) + 0.5) / static_cast<double>(columns);
}
double cell_p_MPa(std::size_t j) {
    return low_p_MPa + (high_p_MPa - low_p_MPa) * (static_cast<double>(j) + 0.5) / static_cast<double>(rows);
}

struct MapMethod {
    const char* name;
    short code;
};
constexpr std::array<MapMethod, 4> methods{
    {{"NX19 mod.", 0}, {"GERG-91 mod.", 1}, {"AGA8-92DC", 2}, {"VNIC SMV", 3}}};
constexpr std::size_t reference = 2;

Grid compute(const host::Library& library, const GivenComposition& gas, double rho_c, short method) {
    constexpr double zero_C_in_K = 273.15, Pa_per_MPa = 1e6, no_column = 0.0;
    const host::Owned<cGas2005> c = library.gas_calculator();
    c->metering_class = 1;
    const std::array<double, 15>& x = gas.x;
    Grid grid{};
    for (std::size_t j = 0; j < rows; ++j)
        for (std::size_t i = 0; i < columns; ++i) {
            double sum = 0, K = 0, rho_c_out = 0;
            const char valid = library->Param_gs(c.get(), cell_T_K(i) - zero_C_in_K, cell_p_MPa(j) * Pa_per_MPa,
                                                 no_column, no_column, method, gas.volume_fractions ? 1 : 0,
                                                 x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7], x[8], x[9],
                                                 x[10], x[11], x[12], x[13], x[14], rho_c, sum, K, rho_c_out);
            grid[j * columns + i] = valid == 1 ? K : refused;
        }
    return grid;
}

// Classes of equal width, so that the key can be read.
struct Shades {
    double low, high;
    std::vector<std::string> colours;
    [[nodiscard]] std::size_t of(double value) const {
        const double place = (value - low) / (high - low) * static_cast<double>(colours.size());
        return static_cast<std::size_t>(std::clamp(place, 0.0, static_cast<double>(colours.size() - 1)));
    }
};

using Rgb = std::array<double, 3>;

std::string mixed(const std::vector<Rgb>& stops, double share) {
    const double place = share * static_cast<double>(stops.size() - 1);
    const std::size_t k = std::min(static_cast<std::size_t>(place), stops.size() - 2);
    const double f = place - static_cast<double>(k);
    std::array<int, 3> c{};
    for (std::size_t n = 0; n < 3; ++n)
        c[n] = static_cast<int>(std::lround(stops[k][n] + f * (stops[k + 1][n] - stops[k][n])));
    return fmt::format("#{:02x}{:02x}{:02x}", c[0], c[1], c[2]);
}

Shades shades(double low, double high, std::size_t classes, const std::vector<Rgb>& stops) {
    Shades result{low, high, {}};
    for (std::size_t k = 0; k < classes; ++k)
        result.colours.push_back(mixed(stops, static_cast<double>(k) / static_cast<double>(classes - 1)));
    return result;
}

const std::vector<Rgb> sequential{
    {20, 44, 84}, {36, 94, 142}, {88, 152, 180}, {168, 206, 206}, {244, 244, 226}};
const std::vector<Rgb> diverging{
    {33, 82, 140}, {128, 168, 205}, {247, 247, 244}, {226, 156, 116}, {164, 62, 34}};

struct Frame {
    svg::Scale x, y;
};

std::string axes(const Frame& frame, const svg::Ticks& xs, const svg::Ticks& ys,
                 const std::function<std::string(double)>& y_text, std::string_view x_label,
                 std::string_view y_label) {
    constexpr std::string_view colour = "#7c8791";
    const auto& [x, y] = frame;
    std::string out =
        fmt::format("<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" fill=\"none\" stroke=\"{}\"/>\n",
                    svg::at(x.from), svg::at(y.to), svg::at(x.to - x.from), svg::at(y.from - y.to), colour);
    for (const double value : xs.values) {
        out += svg::line(x(value), y.from, x(value), y.from + 4.0, colour);
        out += svg::text(x(value), y.from + 17.0, xs.text(value), {.anchor = "middle"});
    }
    for (const double value : ys.values) {
        out += svg::line(x.from - 4.0, y(value), x.from, y(value), colour);
        out += svg::text(x.from - 7.0, y(value) + 4.0, y_text(value), {.anchor = "end"});
    }
    out += svg::text((x.from + x.to) / 2.0, y.from + 34.0, x_label, {.anchor = "middle"});
    return out + svg::text(14.0, (y.from + y.to) / 2.0, y_label, {.anchor = "middle", .upright = true});
}

// One path a class keeps the page small.
std::string cells(const Grid& grid, const Frame& frame, const Shades& shade) {
    const double w = (frame.x.to - frame.x.from) / static_cast<double>(columns);
    const double h = (frame.y.from - frame.y.to) / static_cast<double>(rows);
    std::vector<std::string> paths(shade.colours.size() + 1);
    for (std::size_t j = 0; j < rows; ++j)
        for (std::size_t i = 0; i < columns;) {
            const auto class_at = [&](std::size_t k) {
                const double value = grid[j * columns + k];
                return std::isnan(value) ? shade.colours.size() : shade.of(value);
            };
            std::size_t end = i + 1;
            while (end < columns && class_at(end) == class_at(i)) ++end;
            paths[class_at(i)] +=
                fmt::format("M{:.2f} {:.2f}h{:.2f}v{:.2f}h{:.2f}z", frame.x.from + w * static_cast<double>(i),
                            frame.y.from - h * static_cast<double>(j + 1), w * static_cast<double>(end - i), h,
                            -w * static_cast<double>(end - i));
            i = end;
        }
    std::string out;
    for (std::size_t k = 0; k < paths.size(); ++k) {
        if (paths[k].empty()) continue;
        const std::string_view colour =
            k < shade.colours.size() ? std::string_view(shade.colours[k]) : refused_colour;
        out += fmt::format("<path d=\"{0}\" fill=\"{1}\" stroke=\"{1}\" stroke-width=\"0.4\"/>\n", paths[k],
                           colour);
    }
    return out;
}

std::string key(const Shades& shade, double x, double top, double bottom, std::string_view title) {
    const svg::Scale y{shade.low, shade.high, bottom, top};
    const double step = (shade.high - shade.low) / static_cast<double>(shade.colours.size());
    std::string out = svg::text(x, top - 8.0, title, {.size = 10.5});
    for (std::size_t k = 0; k < shade.colours.size(); ++k) {
        const double value = shade.low + step * static_cast<double>(k);
        out +=
            fmt::format("<rect x=\"{}\" y=\"{}\" width=\"14\" height=\"{}\" fill=\"{}\"/>\n", svg::at(x),
                        svg::at(y(value + step)), svg::at(y(value) - y(value + step) + 0.2), shade.colours[k]);
    }
    const svg::Ticks marks = svg::ticks(shade.low, shade.high, 6);
    for (const double value : marks.values) {
        out += svg::line(x + 14.0, y(value), x + 18.0, y(value), "#7c8791");
        out += svg::text(x + 21.0, y(value) + 3.5, marks.text(value), {.size = 10.0});
    }
    return out;
}

std::string figure(const Grid& grid, const Shades& shade, const std::string& title,
                   std::string_view key_title) {
    const Frame frame{{low_T_K, high_T_K, 52.0, 420.0}, {low_p_MPa, high_p_MPa, 290.0, 30.0}};
    const svg::Ticks xs = svg::ticks(low_T_K, high_T_K, 6), ys = svg::ticks(low_p_MPa, high_p_MPa, 6);
    std::string out = fmt::format("<figure><svg viewBox=\"0 0 500 330\" role=\"img\" aria-label=\"{}\">\n",
                                  svg::escape(title));
    out += svg::text(52.0, 18.0, title, {.size = 13.0, .colour = "#1c2126"});
    out += cells(grid, frame, shade);
    out += axes(
        frame, xs, ys, [&](double v) { return ys.text(v); }, "T, K", "p, MPa");
    out += key(shade, 436.0, 44.0, 290.0, key_title);
    return out + "</svg></figure>\n";
}

}  // namespace

std::string compressibility_maps(const host::Library& library, const GivenComposition& gas) {
    library->Init();
    const auto f = [&](std::size_t i) { return static_cast<float>(gas.x[i]); };
    (gas.volume_fractions ? library->PF1_2 : library->PF1_1)(f(0), f(1), f(2), f(3), f(4), f(5), f(6), f(7),
                                                             f(8), f(9), f(10), f(11), f(12), f(13), f(14));
    const double rho_c = static_cast<double>(library->PF2());
    std::vector<Grid> K;
    double low = 1.0;
    for (const MapMethod& method : methods) {
        K.push_back(compute(library, gas, rho_c, method.code));
        for (const double value : K.back())
            if (value < low) low = value;
    }
    constexpr double class_width = 0.02, per_cent = 100.0;
    low = std::fmin(std::floor(low / class_width), 1.0 / class_width - 2.0) * class_width;
    const auto classes = static_cast<std::size_t>(std::lround((1.0 - low) / class_width));
    const Shades shade = shades(low, 1.0, classes, sequential);
    std::string out = "<div class=\"maps\">\n";
    for (std::size_t m = 0; m < methods.size(); ++m)
        out += figure(K[m], shade, fmt::format("K by {}", methods[m].name), "K");
    out += "</div>\n<div class=\"maps third\">\n";
    for (std::size_t m = 0; m < methods.size(); ++m) {
        if (m == reference) continue;
        Grid difference{};
        double most = 0.0;
        for (std::size_t k = 0; k < difference.size(); ++k) {
            difference[k] = per_cent * (K[m][k] / K[reference][k] - 1.0);
            if (std::fabs(difference[k]) > most) most = std::fabs(difference[k]);
        }
        const double step = svg::ticks(0.0, std::fmax(most, 1e-3), 4).step;
        const double end = step * std::ceil(std::fmax(most, 1e-3) / step);
        out += figure(difference, shades(-end, end, 17, diverging),
                      fmt::format("{} against {}, up to {} %", methods[m].name, methods[reference].name,
                                  short_number(most)),
                      "%");
    }
    return out + "</div>\n";
}

std::string density_map(const host::Library& library, const Verification& verification) {
    constexpr double low_lg_p = -4.0, high_lg_p = 2.3;
    const Frame frame{{-10.0, 810.0, 70.0, 830.0}, {low_lg_p, high_lg_p, 380.0, 20.0}};
    struct Step {
        double below;
        const char* label;
        std::string colour;
    };
    const std::array<Step, 5> steps{{{1e-10, "below 1e-10", "#cfe0ea"},
                                     {1e-9, "1e-10 to 1e-9", "#8fb8d0"},
                                     {1e-8, "1e-9 to 1e-8", "#4a86b0"},
                                     {1e-7, "1e-8 to 1e-7", "#1f4f85"},
                                     {std::numeric_limits<double>::infinity(), "1e-7 and more", "#7a2b52"}}};
    std::string dots;
    for (const Section& section : verification.sections)
        for (const Block& block : section.blocks)
            for (const cases::Finding& f : block.findings) {
                const cases::Values& in = f.where->inputs;
                if (section.subject.key != "t_param_1" || f.expected->column != "rho_kg_m3" || is_exact(f))
                    continue;
                if (!in.contains("t_C") || !in.contains("p_MPa") || !(in.at("p_MPa") > 0.0)) continue;
                const double relative = std::fabs(f.deviation / f.expected->value);
                const auto step =
                    std::find_if(steps.begin(), steps.end(), [&](const Step& s) { return relative < s.below; });
                dots += fmt::format(
                    "<circle cx=\"{}\" cy=\"{}\" r=\"5\" fill=\"{}\" stroke=\"{}\" "
                    "stroke-width=\"{}\"><title>{}</title></circle>\n",
                    svg::at(frame.x(in.at("t_C"))), svg::at(frame.y(std::log10(in.at("p_MPa")))),
                    step == steps.end() ? steps.back().colour : step->colour,
                    f.passed() ? "#ffffff" : "#a3261d", f.passed() ? 0.6 : 2.0,
                    svg::escape(fmt::format("{}:{} {}: relative deviation {}", block.file->name, f.where->line,
                                            f.where->id, short_number(relative))));
            }
    if (dots.empty()) return {};
    std::string saturation;
    constexpr double critical_t_C = 373.9, any_p_MPa = 1.0;
    for (double t_C = 0.0; t_C <= critical_t_C; t_C += 5.0) {
        double ps_MPa = 0.0;
        library->t_phase_1(any_p_MPa, t_C, 0.0, &ps_MPa);
        saturation += fmt::format("{}{} {}", saturation.empty() ? "M" : "L", svg::at(frame.x(t_C)),
                                  svg::at(frame.y(std::log10(ps_MPa))));
    }
    saturation =
        fmt::format("<path d=\"{}\" fill=\"none\" stroke=\"#7c8791\" stroke-width=\"1.2\"/>\n", saturation);
    const svg::Ticks xs = svg::ticks(0.0, 800.0, 8);
    const svg::Ticks ys{{-4.0, -3.0, -2.0, -1.0, 0.0, 1.0, 2.0}, 1.0};
    std::string out =
        "<figure><svg viewBox=\"0 0 1000 430\" role=\"img\" aria-label=\"Deviation of the density of water and "
        "steam\">\n" +
        axes(
            frame, xs, ys, [](double v) { return fmt::format("{:g}", std::pow(10.0, v)); }, "t, degC",
            "p, MPa") +
        saturation + dots;
    double row = 40.0;
    out += svg::text(850.0, row - 18.0, "relative deviation", {.size = 11.5, .colour = "#1c2126"});
    for (const Step& step : steps) {
        out += fmt::format("<circle cx=\"856\" cy=\"{}\" r=\"5\" fill=\"{}\"/>\n", row - 4.0, step.colour);
        out += svg::text(870.0, row, step.label);
        row += 20.0;
    }
    out += svg::line(848.0, row + 2.0, 864.0, row + 2.0, "#7c8791", 1.2) +
           svg::text(870.0, row + 6.0, "saturation");
    return out + "</svg></figure>\n";
}

}  // namespace kalorfix::tool::report
