#include <fmt/format.h>

#include <cmath>
#include <memory>

#include "tools/commands.h"
#include "tools/host.h"
#include "tools/names.h"
#include "tools/separate_files.h"
#include "tools/states.h"

namespace kalorfix::tool {
namespace {

constexpr Limits t_limits{0.0, 800.0, "degC"}, saturated_t_limits{0.0, 371.85, "degC for saturated vapour"};
constexpr Limits p_limits{0.0, 100.0, "MPa"};
constexpr short state_mode = 1, saturated_mode = 3;

struct Request : StateRequest {
    std::string mode = "state", dp = "0.001";
    double dp_MPa = 0.0;  // tolerance of the saturated phase
    bool saturated = false;
};

struct State {
    double t_C, p_MPa;
    double rho, mu, h, kappa;
    double ps_MPa;
    std::string_view phase;  // empty where it is not decided
};

State compute(const host::Library& library, const Request& request, double t, double p_MPa) {
    constexpr double any_p_MPa = 1.0;
    const double p = request.saturated ? any_p_MPa : p_MPa;
    State s{};
    s.t_C = t;
    const short phase = library->t_phase_1(p, t, request.dp_MPa, &s.ps_MPa);
    s.phase = request.saturated ? "saturated vapour" : phase_of(phase).brief;
    // Below the limit of the phase decision the saturation pressure is still wanted; it depends on t alone.
    if (phase == 0) library->t_phase_1(any_p_MPa, t, request.dp_MPa, &s.ps_MPa);
    s.p_MPa = request.saturated ? s.ps_MPa : p_MPa;
    if (library->t_param_1(t, p, request.saturated ? saturated_mode : state_mode, &s.rho, &s.mu, &s.h,
                           &s.kappa) != 0)
        throw InputError("no state at ", t, " degC and ", p_MPa, " MPa");
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

// Six digits fit 80 columns; CSV has them all. Saturated vapour has its saturation pressure in the column of p.
void print_head(const Request& request) {
    if (request.csv)
        fmt::print("t_C,p_MPa,phase,rho_kg_m3,mu_uPa_s,h_kJ_kg,kappa,ps_MPa\n");
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
        fmt::print("{},{},{},{},{},{},{},{}\n", s.t_C, s.p_MPa, s.phase, s.rho, s.mu, s.h, s.kappa,
                   std::isnan(s.ps_MPa) ? "" : fmt::format("{}", s.ps_MPa));
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
    const std::optional<double> dp = number_within(request.dp, p_limits);
    if (!dp) throw InputError("--dp: " + expected_within(request.dp, p_limits));
    request.dp_MPa = *dp;
    if (request.t.empty()) throw InputError("--t: give the temperature in degC, such as --t 150");
    // Saturated vapour has its pressure from the temperature.
    Grid grid{parse_range("--t", request.t, request.saturated ? saturated_t_limits : t_limits),
              {std::nan(""), 0.0, 1}};
    if (request.saturated) {
        if (!request.p.empty())
            throw InputError("--p: saturated vapour has the saturation pressure; leave --p out");
        return grid;
    }
    if (request.p.empty())
        throw InputError("--p: give the absolute pressure in MPa, such as --p 0.6, or --mode saturated");
    grid.p_MPa = parse_range("--p", request.p, p_limits);
    require_size(grid);
    return grid;
}

void draw(const host::Library& library, const Request& request, const Grid& grid) {
    draw_curves(request, request.saturated ? "Saturated vapour" : "Water and steam, IAPWS-95",
                {{"rho", "density, kg/m3"},
                 {"mu", "dynamic viscosity, uPa s"},
                 {"h", "specific enthalpy, kJ/kg"},
                 {"kappa", "isentropic exponent"}},
                grid, [&](double t, double p, std::size_t chosen) {
                    const State s = compute(library, request, t, p);
                    const double values[] = {s.rho, s.mu, s.h, s.kappa};
                    // Liquid below the critical pressure ends in a jump; beyond it the curve goes on.
                    const bool liquid = !request.saturated && s.p_MPa >= s.ps_MPa && s.p_MPa < *library->p_kr;
                    return Drawn{values[chosen], liquid ? 1 : 0};
                });
}

int run(const Installation& files, Request& request) {
    const Grid grid = check(request);
    keep_apart({{"--lib", files.library}, {"--gas-data", files.gas_data}}, {{"--svg", request.svg_file}});
    const host::Library library(files.library);
    draw(library, request, grid);
    const bool single = !request.csv && grid.size() == 1;
    if (!single) print_head(request);
    grid.for_each([&](double t, double p) {
        const State s = compute(library, request, t, p);
        single ? print_sheet(s) : print_row(request, s);
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
        "critical temperature).\n\n"
        "The phase is decided from 0.001 MPa up: steam from 371.85 degC or 21.5 MPa on;\n"
        "else water at or below 100 degC; else saturated within DP of the saturation\n"
        "pressure; else water above it and steam below. The properties do not depend on\n"
        "that decision: they are the liquid's from the saturation pressure up.",
        {{"--t", "T", "temperature, 0..800 degC (needed)", &request->t},
         {"--p", "P", "absolute pressure, 0..100 MPa", &request->p},
         {"--mode", "MODE",
          "state: at --t and --p (default)\n"
          "saturated: saturated vapour at --t, 0..371.85 degC, no --p",
          &request->mode},
         {"--dp", "DP", "tolerance of the saturated phase, 0..100 MPa (default 0.001)", &request->dp}}};
    for (const Option& option : output_options(*request, "rho (default), mu, h, kappa"))
        command.options.push_back(option);
    command.run = [request](const Installation& files) { return run(files, *request); };
    return command;
}

}  // namespace kalorfix::tool
