#include "tools/water.h"

#include <fmt/format.h>

#include <cmath>
#include <stdexcept>

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
    const char* phase;
};

const char* phase_word(short code) {
    constexpr const char* words[] = {"-", "water", "steam", "saturated"};
    return code >= 0 && code <= 3 ? words[code] : "-";
}

State compute(const host::Library& library, const WaterRequest& request, double t_C, double p_MPa) {
    State s{};
    s.t_C = t_C;
    // The saturation pressure does not depend on the pressure, which only has to lie within the limits.
    const short phase = library->t_phase_1(request.saturated ? 1.0 : p_MPa, t_C, request.dp_MPa, &s.ps_MPa);
    s.phase = request.saturated ? "saturated vapour" : phase_word(phase);
    if (phase == 0) s.ps_MPa = std::nan("");
    s.p_MPa = request.saturated ? s.ps_MPa : p_MPa;
    const short mode = request.saturated ? saturated_mode : state_mode;
    if (library->t_param_1(t_C, request.saturated ? 1.0 : p_MPa, mode, &s.rho, &s.mu, &s.h, &s.kappa) != 0)
        throw std::runtime_error(fmt::format("no state at {} degC and {} MPa", t_C, p_MPa));
    return s;
}

std::string or_dash(double value, const char* format) {
    return std::isnan(value) ? "-" : fmt::format(fmt::runtime(format), value);
}

void print_sheet(const State& s) {
    const auto row = [](const char* label, const std::string& value, const char* unit) {
        fmt::print("  {:<26}{:>16}  {}\n", label, value, unit);
    };
    row("temperature", fmt::format("{:.6g}", s.t_C), "degC");
    row("absolute pressure", fmt::format("{:.8g}", s.p_MPa), "MPa");
    row("phase", s.phase, "");
    row("saturation pressure at t", or_dash(s.ps_MPa, "{:.8g}"), "MPa");
    row("density", fmt::format("{:.8g}", s.rho), "kg/m3");
    row("dynamic viscosity", fmt::format("{:.6g}", s.mu), "uPa s");
    row("specific enthalpy", fmt::format("{:.8g}", s.h), "kJ/kg");
    row("isentropic exponent", fmt::format("{:.7g}", s.kappa), "");
}

void print_table_head() {
    fmt::print("{:>9} {:>11}  {:<16} {:>13} {:>10} {:>11} {:>11}\n", "t", "p", "phase", "density", "viscosity",
               "enthalpy", "isentropic");
    fmt::print("{:>9} {:>11}  {:<16} {:>13} {:>10} {:>11} {:>11}\n", "degC", "MPa", "", "kg/m3", "uPa s",
               "kJ/kg", "exponent");
}

void print_table_row(const State& s) {
    fmt::print("{:>9.6g} {:>11.7g}  {:<16} {:>13.8g} {:>10.6g} {:>11.7g} {:>11.7g}\n", s.t_C, s.p_MPa, s.phase,
               s.rho, s.mu, s.h, s.kappa);
}

void print_csv_row(const State& s) {
    const std::string ps = std::isnan(s.ps_MPa) ? "" : fmt::format("{}", s.ps_MPa);
    fmt::print("{},{},{},{},{},{},{},{}\n", s.t_C, s.p_MPa, s.phase, s.rho, s.mu, s.h, s.kappa, ps);
}

}  // namespace

void water(const host::Library& library, const WaterRequest& request) {
    const Range t = parse_range("--t", request.t);
    require_within("--t", request.t, t, 0.0, request.saturated ? max_saturated_t_C : max_t_C,
                   request.saturated ? "degC for saturated vapour" : "degC");
    Range p{min_phase_p_MPa, 0.0, 1};
    if (!request.p.empty()) {
        if (request.saturated)
            throw InputError{"--p: saturated vapour has the saturation pressure; leave --p out"};
        p = parse_range("--p", request.p);
        require_within("--p", request.p, p, 0.0, max_p_MPa, "MPa");
    } else if (!request.saturated) {
        throw InputError{"--p: give the absolute pressure in MPa, such as --p 0.6, or --mode saturated"};
    }
    if (!(request.dp_MPa >= 0.0 && request.dp_MPa <= max_p_MPa))
        throw InputError{fmt::format("--dp {}: must lie within 0..{} MPa", request.dp_MPa, max_p_MPa)};
    if (t.count > max_rows / p.count)
        throw InputError{fmt::format("--t, --p: at most {} rows in all", max_rows)};

    if (!request.csv && t.count * p.count == 1) {
        print_sheet(compute(library, request, t.start, p.start));
        return;
    }
    if (request.csv)
        fmt::print("t_C,p_MPa,phase,rho_kg_m3,mu_uPa_s,h_kJ_kg,kappa,ps_MPa\n");
    else
        print_table_head();
    for (std::size_t i = 0; i < t.count; ++i)
        for (std::size_t j = 0; j < p.count; ++j) {
            const State s = compute(library, request, t[i], p[j]);
            request.csv ? print_csv_row(s) : print_table_row(s);
        }
}

}  // namespace kalorfix::tool
