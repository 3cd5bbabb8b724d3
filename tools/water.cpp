// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <cmath>
#include <limits>
#include <memory>

#include "tools/commands.h"
#include "tools/host.h"
#include "tools/names.h"
#include "tools/separate_files.h"
#include "tools/states.h"

namespace kalorfix::tool {
namespace {

constexpr Limits t_limits{0.0, 800.0, "degC"}, saturated_t_limits{0.0, 371.85, "degC for saturation"};
constexpr Limits p_limits{0.0, 100.0, "MPa"}, saturated_p_limits{0.001, 21.5, "MPa for saturation"};
constexpr short state_mode = 1, saturated_mode = 3;

struct Request : StateRequest {
    std::string mode = "state", dp, dt, phase_by;
    double dp_MPa = 0.001, dt_K = 0.5;  // tolerances of the saturated phase
    bool saturated = false, exported_phase = false;
};

struct State {
    double t_C, p_MPa;
    double rho, mu, h, kappa;
    double ps_MPa, ts_C;     // NaN where there is none
    std::string_view phase;  // empty where it is not decided
};

// The library, and a calculator whose verdict is that of a channel.
struct Water {
    const host::Library& library;
    cTeplo2005& channel;
};

constexpr double Pa_per_MPa = 1e6, nan = std::numeric_limits<double>::quiet_NaN();

// The saturation pressure depends on t alone; below the limit of the phase decision it is wanted too.
double saturation_pressure(const Water& water, double t) {
    constexpr double any_p_MPa = 1.0;
    double ps = nan;
    water.library->t_phase_1(any_p_MPa, t, 0.0, &ps);
    return ps;
}

// The phase and ts(p) as mt_param_tn gives them; undecided and NaN outside its range. Above the critical pressure ts is none.
short channel_phase(const Water& water, const Request& request, double t, double p_MPa, double& ts_C) {
    short phase = 0;
    double ps = 0.0;
    water.channel.metering_class = 1;
    const bool done = water.library->Param_tn(&water.channel, t, p_MPa * Pa_per_MPa, 0.0, 0.0,
                                              request.dp_MPa * Pa_per_MPa, request.dt_K, phase, ps, ts_C) == 1;
    if (!done || p_MPa > *water.library->p_kr) ts_C = nan;
    return done ? phase : static_cast<short>(0);
}

void compute_properties(const Water& water, State& s, short mode, double p_MPa) {
    if (water.library->t_param_1(s.t_C, p_MPa, mode, &s.rho, &s.mu, &s.h, &s.kappa) != 0)
        throw InputError("no state at ", s.t_C, " degC and ", p_MPa, " MPa");
}

State compute(const Water& water, const Request& request, double t, double p_MPa) {
    State s{};
    s.t_C = t;
    s.p_MPa = p_MPa;
    s.ps_MPa = saturation_pressure(water, t);
    short phase = channel_phase(water, request, t, p_MPa, s.ts_C);
    double ps = 0.0;
    if (request.exported_phase) phase = water.library->t_phase_1(p_MPa, t, request.dp_MPa, &ps);
    s.phase = phase_of(phase).brief;
    compute_properties(water, s, state_mode, p_MPa);
    return s;
}

// By the temperature, or with a temperature that is no number by the pressure.
State compute_saturated(const Water& water, const Request& request, double t, double p_MPa, bool vapour) {
    constexpr double any_t_C = 20.0, any_p_MPa = 1.0;
    State s{};
    s.t_C = t;
    if (std::isnan(t)) channel_phase(water, request, any_t_C, p_MPa, s.t_C);
    s.ps_MPa = saturation_pressure(water, s.t_C);
    s.p_MPa = std::isnan(t) ? p_MPa : s.ps_MPa;
    s.ts_C = s.t_C;
    s.phase = vapour ? "saturated vapour" : "saturated water";
    compute_properties(water, s, vapour ? saturated_mode : state_mode, vapour ? any_p_MPa : s.ps_MPa);
    return s;
}

std::string_view or_dash(std::string_view text) { return text.empty() ? "-" : text; }

std::string or_dash(double value, int digits) {
    return std::isnan(value) ? "-" : fmt::format("{:#.{}g}", value, digits);
}

void print_sheet(const State& s) {
    const auto row = [](const char* label, std::string_view value, const char* unit = "") {
        fmt::print("  {:<28}{:>16}{}{}\n", label, value, *unit ? "  " : "", unit);
    };
    row("temperature", fmt::format("{:.8g}", s.t_C), "degC");
    row("absolute pressure", fmt::format("{:.8g}", s.p_MPa), "MPa");
    row("phase", or_dash(s.phase));
    row("saturation pressure at t", or_dash(s.ps_MPa, 8), "MPa");
    row("saturation temperature at p", or_dash(s.ts_C, 7), "degC");
    row("density", fmt::format("{:.8g}", s.rho), "kg/m3");
    row("dynamic viscosity", fmt::format("{:.6g}", s.mu), "uPa s");
    row("specific enthalpy", fmt::format("{:.8g}", s.h), "kJ/kg");
    row("isentropic exponent", fmt::format("{:.7g}", s.kappa));
}

void print_saturated_sheet(const State& water, const State& vapour) {
    const auto row = [](const char* label, std::string_view first, std::string_view second,
                        std::string_view unit) {
        fmt::print("  {:<22}{:>16}{:>16}{}{}\n", label, first, second, unit.empty() ? "" : "  ", unit);
    };
    const auto pair = [&](const char* label, double State::*value, int digits, std::string_view unit) {
        row(label, fmt::format("{:.{}g}", water.*value, digits), fmt::format("{:.{}g}", vapour.*value, digits),
            unit);
    };
    row("temperature", fmt::format("{:.8g}", water.t_C), "", "degC");
    row("absolute pressure", fmt::format("{:.8g}", water.p_MPa), "", "MPa");
    row("saturated", "water", "vapour", "");
    pair("density", &State::rho, 8, "kg/m3");
    pair("dynamic viscosity", &State::mu, 6, "uPa s");
    pair("specific enthalpy", &State::h, 8, "kJ/kg");
    pair("isentropic exponent", &State::kappa, 7, "");
}

// Six digits fit 80 columns; CSV has them all, and ts. Saturated vapour has its saturation pressure in the column of p.
void print_head(const Request& request) {
    if (request.csv)
        fmt::print("t_C,p_MPa,phase,rho_kg_m3,mu_uPa_s,h_kJ_kg,kappa,ps_MPa,ts_C\n");
    else if (request.saturated)
        fmt::print(
            "      t           p  phase               density viscosity   enthalpy    kappa\n"
            "   degC         MPa                        kg/m3     uPa s      kJ/kg\n");
    else
        fmt::print(
            "      t        p  phase        density viscosity   enthalpy    kappa          ps\n"
            "   degC      MPa                 kg/m3     uPa s      kJ/kg                  MPa\n");
}

void print_row(const Request& request, const State& s) {
    if (request.csv)
        fmt::print("{},{},{},{},{},{},{},{},{}\n", s.t_C, s.p_MPa, s.phase, s.rho, s.mu, s.h, s.kappa,
                   std::isnan(s.ps_MPa) ? "" : fmt::format("{}", s.ps_MPa),
                   std::isnan(s.ts_C) ? "" : fmt::format("{}", s.ts_C));
    else if (request.saturated)
        fmt::print("{:>7.6g} {:>#11.6g}  {:<16} {:>#10.6g} {:>#9.6g} {:>#10.6g} {:>#8.6g}\n", s.t_C, s.p_MPa,
                   s.phase, s.rho, s.mu, s.h, s.kappa);
    else
        fmt::print("{:>7.6g} {:>8.6g}  {:<9} {:>#10.6g} {:>#9.6g} {:>#10.6g} {:>#8.6g} {:>11}\n", s.t_C,
                   s.p_MPa, or_dash(s.phase), s.rho, s.mu, s.h, s.kappa, or_dash(s.ps_MPa, 6));
}

// Everything that can be wrong with the request is found here, before the first line of output.
Grid check(Request& request) {
    request.saturated = request.mode == "saturated";
    if (!request.saturated && request.mode != "state")
        throw InputError("--mode: ", request.mode, " not in {state,saturated}");
    request.exported_phase = request.phase_by == "t_phase_1";
    if (!request.exported_phase && !request.phase_by.empty() && request.phase_by != "channel")
        throw InputError("--phase-by: there are channel and t_phase_1, not '", request.phase_by, "'");
    const auto tolerance = [&](const char* option, const std::string& text, const Limits& limits,
                               double& value) {
        if (text.empty()) return;
        const std::optional<double> given = number_within(text, limits);
        if (!given) throw InputError(option, ": ", expected_within(text, limits));
        value = *given;
    };
    tolerance("--dp", request.dp, p_limits, request.dp_MPa);
    tolerance("--dt", request.dt, {0.0, 100.0, "K"}, request.dt_K);
    for (const auto& [option, text] : {std::pair{"--phase-by", &request.phase_by},
                                       std::pair{"--dp", &request.dp}, std::pair{"--dt", &request.dt}})
        if (request.saturated && !text->empty())
            throw InputError(option,
                             ": has no meaning with --mode saturated, which has both phases; leave it out");
    if (request.exported_phase && !request.dt.empty())
        throw InputError(
            "--dt: has no meaning with --phase-by t_phase_1, which knows --dp alone; leave it out");
    constexpr Range none{nan, 0.0, 1};
    if (request.saturated) {
        if (request.t.empty() == request.p.empty())
            throw InputError(request.p.empty()
                                 ? "--t: give the temperature in degC, such as --t 150, or the pressure"
                                 : "--p: saturation has its pressure from --t; leave one out");
        if (request.p.empty()) return {parse_range("--t", request.t, saturated_t_limits), none};
        return {none, parse_range("--p", request.p, saturated_p_limits)};
    }
    if (request.t.empty()) throw InputError("--t: give the temperature in degC, such as --t 150");
    Grid grid{parse_range("--t", request.t, t_limits), none};
    if (request.p.empty())
        throw InputError("--p: give the absolute pressure in MPa, such as --p 0.6, or --mode saturated");
    grid.p_MPa = parse_range("--p", request.p, p_limits);
    require_size(grid);
    return grid;
}

void draw(const Water& water, const Request& request, const Grid& grid) {
    draw_curves(request, request.saturated ? "Saturated vapour" : "Water and steam, IAPWS-95",
                {{"rho", "density, kg/m3"},
                 {"mu", "dynamic viscosity, uPa s"},
                 {"h", "specific enthalpy, kJ/kg"},
                 {"kappa", "isentropic exponent"}},
                grid, [&](double t, double p, std::size_t chosen) {
                    const State s = request.saturated ? compute_saturated(water, request, t, p, true)
                                                      : compute(water, request, t, p);
                    const double values[] = {s.rho, s.mu, s.h, s.kappa};
                    // Liquid below the critical pressure ends in a jump; beyond it the curve goes on.
                    const bool liquid =
                        !request.saturated && s.p_MPa >= s.ps_MPa && s.p_MPa < *water.library->p_kr;
                    return Drawn{values[chosen], liquid ? 1 : 0};
                });
}

int run(const Installation& files, Request& request) {
    const Grid grid = check(request);
    keep_apart({{"--lib", files.library}, {"--gas-data", files.gas_data}}, {{"--svg", request.svg_file}});
    const host::Library library(files.library);
    const host::Owned<cTeplo2005> calculator = library.heat_calculator();
    const Water water{library, *calculator};
    draw(water, request, grid);
    const bool single = !request.csv && grid.size() == 1;
    if (!single) print_head(request);
    grid.for_each([&](double t, double p) {
        if (!request.saturated) {
            const State s = compute(water, request, t, p);
            single ? print_sheet(s) : print_row(request, s);
            return;
        }
        const State liquid = compute_saturated(water, request, t, p, false);
        const State vapour = compute_saturated(water, request, t, p, true);
        if (single) return print_saturated_sheet(liquid, vapour);
        print_row(request, liquid);
        print_row(request, vapour);
    });
    return 0;
}

}  // namespace

Command water_command() {
    const auto request = std::make_shared<Request>();
    Command command{
        "water",
        "Properties and phase of water and steam.",
        "T and P are a number or a range start:stop:step, such as 150 or 20:200:20;\n"
        "ranges give a table, at most 1000000 rows, and curves with --svg: over the first\n"
        "range, a line for each value of the second, at most 12 (else the other way).\n\n"
        "Printed: density kg/m3, dynamic viscosity uPa s, specific enthalpy kJ/kg,\n"
        "isentropic exponent kappa, phase, saturation pressure at T in MPa (- above the\n"
        "critical temperature); for one state and with --csv the saturation temperature at P\n"
        "too (- above the critical pressure).\n\n"
        "The phase is the one that a channel decides (mt_param_tn), from 0.001 MPa up: steam\n"
        "from 371.85 degC on; saturated within DP of the saturation pressure and DT of the\n"
        "saturation temperature; else water above the saturation pressure and steam below.\n"
        "t_phase_1, which other hosts call, decides otherwise: steam from 371.85 degC or\n"
        "21.5 MPa on, else water at or below 100 degC, else by DP. The properties do not depend\n"
        "on that decision: they are the liquid's from the saturation pressure up.",
        {{"--t", "T", "temperature, 0..800 degC", &request->t},
         {"--p", "P", "absolute pressure, 0..100 MPa", &request->p},
         {"--mode", "MODE",
          "state: at --t and --p (default);\n"
          "saturated: water and vapour at --t, 0..371.85 degC, or at --p,\n0.001..21.5 MPa (--svg draws the "
          "vapour)",
          &request->mode},
         {"--phase-by", "WHAT", "channel (default) or t_phase_1", &request->phase_by},
         {"--dp", "DP", "tolerance of the saturated phase, 0..100 MPa (default 0.001)", &request->dp},
         {"--dt", "DT", "the same, 0..100 K (default 0.5); not with t_phase_1", &request->dt}}};
    for (const Option& option : output_options(*request, "rho (default), mu, h, kappa"))
        command.options.push_back(option);
    command.run = [request](const Installation& files) { return run(files, *request); };
    return command;
}

}  // namespace kalorfix::tool
