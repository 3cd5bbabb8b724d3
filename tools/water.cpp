#include "tools/water.h"

#include <fmt/format.h>

#include <cmath>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "tools/range.h"

namespace kalorfix::tool {
namespace {

constexpr double max_t_C = 800.0;
constexpr double max_saturated_t_C = 371.85;
constexpr double max_p_MPa = 100.0;
constexpr double min_phase_p_MPa = 0.001;
constexpr short state_mode = 1;
constexpr short saturated_mode = 3;

struct State {
    double t_C, p_MPa;
    double rho, mu, h, kappa;
    double ps_MPa;
    std::string_view phase;  ///< empty where it is not decided
};

std::string_view phase_word(short code) {
    constexpr std::string_view words[] = {"", "water", "steam", "saturated"};
    return code >= 0 && code <= 3 ? words[code] : words[0];
}

State compute(const host::Library& library, const WaterRequest& request, double t_C, double p_MPa) {
    constexpr double any_p_MPa = 1.0;
    const double p = request.saturated ? any_p_MPa : p_MPa;
    const short mode = request.saturated ? saturated_mode : state_mode;
    State s{};
    s.t_C = t_C;
    const short phase = library->t_phase_1(p, t_C, request.dp_MPa, &s.ps_MPa);
    s.phase = request.saturated ? "saturated vapour" : phase_word(phase);
    // Below the limit of the phase decision the saturation pressure is still wanted; it depends on t alone.
    if (phase == 0) library->t_phase_1(any_p_MPa, t_C, request.dp_MPa, &s.ps_MPa);
    s.p_MPa = request.saturated ? s.ps_MPa : p_MPa;
    if (library->t_param_1(t_C, p, mode, &s.rho, &s.mu, &s.h, &s.kappa) != 0)
        throw std::runtime_error(fmt::format("no state at {} degC and {} MPa", t_C, p_MPa));
    return s;
}

std::string_view or_dash(std::string_view text) { return text.empty() ? "-" : text; }

std::string or_dash(double value, int digits) {
    return std::isnan(value) ? "-" : fmt::format("{:#.{}g}", value, digits);
}

void print_sheet(const State& s) {
    const auto row = [](const char* label, std::string_view value, const char* unit = "") {
        fmt::print("  {:<26}{:>16}{}{}\n", label, value, *unit ? "  " : "", unit);
    };
    row("temperature", fmt::format("{:.8g}", s.t_C), "degC");
    row("absolute pressure", fmt::format("{:.8g}", s.p_MPa), "MPa");
    row("phase", or_dash(s.phase));
    row("saturation pressure at t", or_dash(s.ps_MPa, 8), "MPa");
    row("density", fmt::format("{:.8g}", s.rho), "kg/m3");
    row("dynamic viscosity", fmt::format("{:.6g}", s.mu), "uPa s");
    row("specific enthalpy", fmt::format("{:.8g}", s.h), "kJ/kg");
    row("isentropic exponent", fmt::format("{:.7g}", s.kappa));
}

// Six digits fit 80 columns; --csv has them all. Saturated vapour has its saturation pressure in the column of p.
void print_table_head(bool saturated) {
    constexpr const char *t = "t", *p = "p", *rho = "density", *mu = "viscosity", *h = "enthalpy";
    constexpr const char *degC = "degC", *MPa = "MPa", *kg_m3 = "kg/m3", *uPas = "uPa s", *kJ_kg = "kJ/kg";
    if (saturated) {
        fmt::print("{:>7} {:>11}  {:<16} {:>10} {:>9} {:>10} {:>8}\n", t, p, "phase", rho, mu, h, "kappa");
        fmt::print("{:>7} {:>11}  {:<16} {:>10} {:>9} {:>10}\n", degC, MPa, "", kg_m3, uPas, kJ_kg);
    } else {
        fmt::print("{:>7} {:>8}  {:<9} {:>10} {:>9} {:>10} {:>8} {:>11}\n", t, p, "phase", rho, mu, h, "kappa",
                   "ps");
        fmt::print("{:>7} {:>8}  {:<9} {:>10} {:>9} {:>10} {:>8} {:>11}\n", degC, MPa, "", kg_m3, uPas, kJ_kg,
                   "", MPa);
    }
}

void print_table_row(const State& s, bool saturated) {
    if (saturated)
        fmt::print("{:>7.6g} {:>#11.6g}  {:<16} {:>#10.6g} {:>#9.6g} {:>#10.6g} {:>#8.6g}\n", s.t_C, s.p_MPa,
                   s.phase, s.rho, s.mu, s.h, s.kappa);
    else
        fmt::print("{:>7.6g} {:>8.6g}  {:<9} {:>#10.6g} {:>#9.6g} {:>#10.6g} {:>#8.6g} {:>11}\n", s.t_C,
                   s.p_MPa, or_dash(s.phase), s.rho, s.mu, s.h, s.kappa, or_dash(s.ps_MPa, 6));
}

void print_csv_row(const State& s) {
    const std::string ps = std::isnan(s.ps_MPa) ? "" : fmt::format("{}", s.ps_MPa);
    fmt::print("{},{},{},{},{},{},{},{}\n", s.t_C, s.p_MPa, s.phase, s.rho, s.mu, s.h, s.kappa, ps);
}

struct Grid {
    Range t, p;
};

// Everything that can be wrong with the request is found here, before the first line of output.
Grid check(const WaterRequest& request) {
    if (request.t.empty()) throw InputError{"--t: give the temperature in degC, such as --t 150"};
    Grid grid{parse_range("--t", request.t), {min_phase_p_MPa, 0.0, 1}};
    require_within("--t", request.t, grid.t, 0.0, request.saturated ? max_saturated_t_C : max_t_C,
                   request.saturated ? "degC for saturated vapour" : "degC");
    if (request.saturated) {
        if (!request.p.empty())
            throw InputError{"--p: saturated vapour has the saturation pressure; leave --p out"};
    } else if (request.p.empty()) {
        throw InputError{"--p: give the absolute pressure in MPa, such as --p 0.6, or --mode saturated"};
    } else {
        grid.p = parse_range("--p", request.p);
        require_within("--p", request.p, grid.p, 0.0, max_p_MPa, "MPa");
    }
    if (!(request.dp_MPa >= 0.0 && request.dp_MPa <= max_p_MPa))
        throw InputError{fmt::format("--dp {}: must lie within 0..{} MPa", request.dp_MPa, max_p_MPa)};
    if (grid.t.count > max_rows / grid.p.count)
        throw InputError{fmt::format("--t, --p: at most {} rows in all", max_rows)};
    return grid;
}

void draw(const host::Library& library, const WaterRequest& request, const Grid& grid) {
    static const std::vector<Drawable> offered{{"rho", "density, kg/m3"},
                                               {"mu", "dynamic viscosity, uPa s"},
                                               {"h", "specific enthalpy, kJ/kg"},
                                               {"kappa", "isentropic exponent"}};
    const std::size_t chosen = drawn_quantity(request.drawing, offered);
    if (request.drawing.file.empty()) return;
    Range p = grid.p;
    // Saturated vapour has its pressure from the temperature.
    if (request.saturated) p = {std::nan(""), 0.0, 1, 0.0};
    const char* const title = request.saturated ? "Saturated vapour" : "Water and steam, IAPWS-95";
    draw_curves(request.drawing.file, title, offered[chosen], grid.t, p, [&](double t_C, double p_MPa) {
        const State s = compute(library, request, t_C, p_MPa);
        const double values[] = {s.rho, s.mu, s.h, s.kappa};
        // Liquid below the critical pressure ends in a jump; beyond it the curve goes on.
        const bool liquid = !request.saturated && s.p_MPa >= s.ps_MPa && s.p_MPa < *library->p_kr;
        return Drawn{values[chosen], liquid ? 1 : 0};
    });
}

}  // namespace

void water(const host::Library& library, const WaterRequest& request) {
    const Grid grid = check(request);
    draw(library, request, grid);
    const auto& [t, p] = grid;
    if (!request.csv && t.count * p.count == 1) {
        print_sheet(compute(library, request, t[0], p[0]));
        return;
    }
    if (request.csv)
        fmt::print("t_C,p_MPa,phase,rho_kg_m3,mu_uPa_s,h_kJ_kg,kappa,ps_MPa\n");
    else
        print_table_head(request.saturated);
    for (std::size_t i = 0; i < t.count; ++i)
        for (std::size_t j = 0; j < p.count; ++j) {
            const State s = compute(library, request, t[i], p[j]);
            request.csv ? print_csv_row(s) : print_table_row(s, request.saturated);
        }
}

}  // namespace kalorfix::tool
