// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <cmath>

#include "tools/station/results.h"

namespace kalorfix::tool::station {
namespace {

// With so many decimals.
std::string row(std::string_view label, float value, int decimals, std::string_view unit = {}) {
    return sheet_row(label, fmt::format("{:.{}f}", value, decimals), unit);
}

std::string title(const Channel& c, const Outcome& out) {
    constexpr std::array<std::string_view, phases.size()> carriers{"Water or steam", "Water",
                                                                   "Superheated steam", "Wet steam"};
    std::string_view medium = carriers[static_cast<std::size_t>(&phase_of(out.phase) - phases.data())];
    if (c.is_gas())
        medium = is_by_density(c.gas.method) ? "Natural gas by density" : "Natural gas by composition";
    return fmt::format("{} channel {}: {}, {}\n", c.is_gas() ? "Gas" : "Heat-carrier", c.number, medium,
                       devices[static_cast<std::size_t>(c.device - 1)].title);
}

std::string pipeline(const Channel& c) {
    std::string text =
        row("pipe at 20 degC", c.D20_mm, 1, "mm") + row("device at 20 degC", c.d20_mm, 1, "mm") +
        sheet_row(c.by_material ? "material codes, pipe and device" : "expansion, pipe and device",
                  fmt::format("{}, {}", c.pipe_material, c.device_material), c.by_material ? "" : "1/degC") +
        row("roughness of the pipe", c.roughness_mm, 3, "mm");
    if (is_orifice(c.device))
        text += row("initial radius of the edge", c.edge_radius_mm, 3, "mm") +
                row("interval between checks", c.interval_years, 1, "years");
    if (c.device == configured_coefficient) text += row("flow coefficient", c.alpha_eps, 6);
    return text;
}

std::string measured(const Channel& c, const Input& in) {
    std::string text;
    if (c.column_height_m != 0.0F)
        text += row("liquid column", c.column_height_m, 3, "m") +
                row("density of the column", c.column_density, 3, "kg/m3");
    text += row("temperature", in.t_C, 2, "degC") + row("absolute pressure", in.p_Pa / 1e6F, 4, "MPa");
    if (!is_meter(c.device))
        text += row("differential pressure", in.dp / 1e3F, 3, "kPa");
    else if (c.device != external_flow)
        text += row("reading of the meter", in.dp, 4, c.device == meter_mass ? "t/h" : "m3/h");
    return text;
}

std::string gas_constants(const Gas& gas) {
    std::string text = sheet_row("compressibility by", method_name(gas.method));
    if (gas.rho_c > 0.0F) text += row("density at standard conditions", gas.rho_c, 4, "kg/m3");
    for (std::size_t i = 0; i < components.size(); ++i)
        if (gas.x[i] != 0.0F)
            text += gas.volume_fractions ? row(components[i], gas.x[i], 6, "volume fraction")
                                         : row(components[i], gas.x[i], 4, "mol %");
    if (gas.vapour > 0.0F) text += row("water vapour", gas.vapour, 4, "kg/m3");
    return text;
}

std::string_view sum_unit(const Gas& gas) { return gas.volume_fractions ? "" : "mol %"; }

std::string flows(const Channel& c, const Outcome& out) {
    const std::string text = row("mass flow", out.q[0], 4, "t/h") + row("volume flow", out.q[1], 3, "m3/h");
    if (!c.is_gas())
        return text + row("heat flow", out.q[2], 4, "GJ/h") + row("heat flow", out.q[2] / 3.6F, 4, "MW");
    return text + row("volume flow at standard conditions", out.q[2], 2, "m3/h") +
           row(c.gas.by_higher_heat ? "energy flow, higher heat" : "energy flow, lower heat", out.q[3], 4,
               "GJ/h");
}

// A step that passed, with its results.
std::string passed(const Channel& c, const Outcome& out, Step step) {
    const std::string_view state = c.is_gas() ? "computed" : phase_of(out.phase).title;
    const std::array<std::string_view, 4> words{state, "computed", "within the limits of the device",
                                                is_meter(c.device) ? "taken from the reading"
                                                : out.at_rest      ? "none: below the cut-off"
                                                                   : "solved"};
    std::string text = sheet_step(step_name(step), words[static_cast<std::size_t>(step)]);
    for (const Result& one : cycle_results) {
        if (one.step != step || !has(c, one.whose) || (out.at_rest && step == Step::flow)) continue;
        const float value = out.*one.value;
        const bool heat = one.value == &Outcome::lower_heat || one.value == &Outcome::higher_heat;
        text += sheet_row(one.label, std::isnan(value) ? "-" : fmt::format(fmt::runtime(one.layout), value),
                          heat                         ? c.heat_unit()
                          : one.value == &Outcome::sum ? sum_unit(c.gas)
                                                       : one.unit);
    }
    return step == Step::flow ? text + flows(c, out) : text;
}

}  // namespace

std::string sheet_step(std::string_view name, std::string_view outcome) {
    return fmt::format("  {:<12}{}\n", name, outcome);
}

std::string sheet_row(std::string_view label, std::string_view value, std::string_view unit) {
    return fmt::format("    {:<34}{:>14}{}{}\n", label, value, unit.empty() ? "" : "  ", unit);
}

std::string sheet(const Cycle& cycle) {
    const auto& [c, row, out, registers] = cycle;
    const bool meter = is_meter(c.device);
    std::string text = title(c, out) + (meter ? "" : pipeline(c)) + measured(c, out.input);
    if (c.is_gas()) text += gas_constants(c.gas);
    text += sheet_step("set-up", meter ? "constants accepted" : "pipeline constants accepted");
    for (const Step step : {Step::state, Step::properties, Step::geometry, Step::flow})
        if (out.passed(step) && !(meter && step == Step::geometry)) text += passed(c, out, step);
    return cycle.done() ? text : text + sheet_step(step_name(out.reached), "refused: " + out.reason);
}

}  // namespace kalorfix::tool::station
