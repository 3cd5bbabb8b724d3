// SPDX-License-Identifier: MIT
#include "tools/calc_sheet.h"

#include <fmt/format.h>

#include <cmath>

#include "flow/device.h"
#include "tools/names.h"
#include "tools/station/results.h"
#include "tools/text.h"

namespace kalorfix::tool {
namespace {

using metering::Answer;
using metering::Question;
using metering::Unknown;

constexpr double kPa = 1e-3, MPa = 1e-6;

// Collects cells; a value that does not exist keeps its place.
class Collector {
public:
    std::vector<Cell> cells{};
    bool exists = true;  ///< of what is added

    void step(std::string_view name, std::string outcome) {
        if (exists) cells.push_back({.heading = name, .text = std::move(outcome)});
    }
    void add(std::string_view key, std::string label, double value, const char* layout,
             std::string_view unit = {}, bool has = true) {
        const bool there = exists && has && std::isfinite(value);
        cells.push_back(
            {{}, key, std::move(label), there ? std::optional(value) : std::nullopt, layout, unit, {}});
    }
    void say(std::string label, std::string text, std::string_view unit = {}) {
        if (exists) cells.push_back({{}, {}, std::move(label), {}, "{}", unit, std::move(text)});
    }
};

std::string title(const Answer& answer) {
    std::string_view medium = "Medium of given properties";
    if (const auto* const gas = std::get_if<metering::Gas>(&answer.point.medium))
        medium = is_by_density(gas->method) ? "Natural gas by density" : "Natural gas by composition";
    else if (std::holds_alternative<metering::HeatCarrier>(answer.point.medium))
        medium = "Water or steam";
    return fmt::format("{}, {}", medium, devices[static_cast<std::size_t>(answer.point.pipe.device - 1)].title);
}

void pipeline(const Answer& answer, const Question& q, Collector& out) {
    const metering::Pipeline& pipe = answer.point.pipe;
    out.add("D20_mm", "pipe at 20 degC", pipe.D20_mm, "{:.3f}", "mm");
    const bool unknown = q.unknown == Unknown::bore && answer.status == metering::Status::refused;
    out.add("d20_mm", q.unknown == Unknown::bore ? "device at 20 degC, found" : "device at 20 degC",
            pipe.d20_mm, "{:.4f}", "mm", !unknown);
    out.say(pipe.by_material ? "material codes, pipe and device" : "expansion, pipe and device",
            fmt::format("{}, {}", pipe.pipe_material, pipe.device_material), pipe.by_material ? "" : "1/degC");
    out.add("", "roughness of the pipe", pipe.roughness_mm, "{:.3f}", "mm");
    const bool orifice = flow::device_row(pipe.device).family == flow::Family::orifice;
    out.add("", "initial radius of the edge", pipe.edge_radius_mm, "{:.3f}", "mm", orifice);
    out.add("", "interval between checks", pipe.interval_years, "{:.1f}", "years", orifice);
    out.add("", "flow coefficient", pipe.alpha_eps, "{:.6f}", "",
            flow::device_row(pipe.device).family == flow::Family::configured);
}

void measured(const Answer& answer, const Question& q, Collector& out) {
    const bool found = q.unknown != Unknown::dp || answer.status != metering::Status::refused;
    out.add("", "liquid column", answer.point.column.height_m, "{:.3f}", "m",
            answer.point.column.height_m != 0.0);
    out.add("", "density of the column", answer.point.column.density_kgm3, "{:.3f}", "kg/m3",
            answer.point.column.height_m != 0.0);
    out.add("t_C", "temperature", q.t_C, "{:.2f}", "degC");
    out.add("p_Pa", "", q.p_Pa, "{}");
    out.add("", "absolute pressure", q.p_Pa * MPa, "{:.4f}", "MPa");
    out.add("dp_Pa", "", answer.dp_Pa, "{}", {}, found);
    out.add("", q.unknown == Unknown::dp ? "differential pressure, found" : "differential pressure",
            answer.dp_Pa * kPa, "{:.4f}", "kPa", found);
}

void gas_constants(const Answer& answer, Collector& out) {
    const auto* const gas = std::get_if<metering::Gas>(&answer.point.medium);
    if (!gas) return;
    out.say("compressibility by", std::string(method_name(gas->method)));
    out.add("", "density at standard conditions", gas->rho_c, "{:.4f}", "kg/m3", gas->rho_c > 0.0);
    for (std::size_t i = 0; i < components.size(); ++i)
        out.add("", std::string(components[i]), gas->x[i], gas->volume_fractions ? "{:.6f}" : "{:.4f}",
                gas->volume_fractions ? "volume fraction" : "mol %", gas->x[i] != 0.0);
    out.add("", "water vapour", gas->vapour_kgm3, "{:.4f}", "kg/m3", gas->vapour_kgm3 > 0.0);
}

void medium(const Answer& answer, Collector& out) {
    const metering::Properties& m = answer.medium;
    const auto* const gas = std::get_if<metering::Gas>(&answer.point.medium);
    const bool heat = std::holds_alternative<metering::HeatCarrier>(answer.point.medium);
    const bool good = m.refused.empty();
    out.exists = good && (gas || heat);
    out.step("state", heat ? std::string(phase_of(m.phase).title) : "computed");
    out.add("ps_MPa", "saturation pressure at t", m.ps_MPa, "{:.5f}", "MPa", heat);
    out.add("ts_C", "saturation temperature at p", m.ts_C, "{:.3f}", "degC", heat);
    out.add("", "sum of the composition as given", m.sum, "{:.4f}", gas && gas->volume_fractions ? "" : "mol %",
            gas && !is_by_density(gas->method));
    out.add("K", "compressibility coefficient K", m.K, "{:.6f}", "", gas);
    out.exists = good;
    out.add("rho_c_kg_m3", "density at standard conditions", m.rho_c, "{:.5f}", "kg/m3", m.rho_c > 0.0);
    const bool liquid = !metering::is_gas(answer.point.medium);
    out.step("properties", gas || heat ? "computed" : liquid ? "as given, of a liquid" : "as given, of a gas");
    out.add("rho_kg_m3", "density", m.rho, "{:.4f}", "kg/m3");
    out.add("mu_uPa_s", "dynamic viscosity", m.mu_uPas, "{:.3f}", "uPa s");
    out.add("kappa", "isentropic exponent", m.kappa, "{:#.6g}", "", m.kappa > 0.0);
    out.add("h_kJ_kg", "specific enthalpy", m.h_kJ_kg, "{:.3f}", "kJ/kg", heat);
    const std::string_view unit = gas ? heat_unit(gas->method, gas->heat_unit, gas->heat_basis) : "";
    out.add("lower_heat", "lower heat of combustion", m.lower_heat, "{:.4f}", unit, gas && m.lower_heat > 0.0);
    out.add("higher_heat", "higher heat of combustion", m.higher_heat, "{:.4f}", unit,
            gas && m.higher_heat > 0.0);
}

void flows(const metering::FlowResult& flow, const Answer& answer, Collector& out) {
    const bool gas = metering::is_gas(answer.point.medium);
    const bool heat = std::holds_alternative<metering::HeatCarrier>(answer.point.medium);
    const auto* const natural = std::get_if<metering::Gas>(&answer.point.medium);
    out.add("q_m_t_h", "mass flow", flow.mass_th, "{:.4f}", "t/h");
    out.add("q_v_m3_h", "volume flow", flow.volume_m3h, "{:.3f}", "m3/h");
    out.add("q_c_m3_h", "volume flow at standard conditions", flow.standard_m3h, "{:.2f}", "m3/h",
            gas && answer.medium.rho_c > 0.0);
    out.add("q_e_GJ_h",
            natural && natural->by_higher_heat ? "energy flow, higher heat" : "energy flow, lower heat",
            flow.energy_GJh, "{:.4f}", "GJ/h", natural && flow.energy_GJh > 0.0);
    out.add("q_h_GJ_h", "heat flow", flow.energy_GJh, "{:.4f}", "GJ/h", heat);
}

void geometry_and_flow(const Answer& answer, Collector& out) {
    const metering::FlowResult& f = answer.flow;
    const bool standard = flow::device_row(answer.point.pipe.device).is_standard();
    out.exists = f.geometry_accepted;
    out.step("geometry", "within the limits of the device");
    out.add("D_mm", "pipe at working temperature", f.D_mm, "{:.4f}", "mm");
    out.add("d_mm", "device at working temperature", f.d_mm, "{:.4f}", "mm");
    out.add("beta", "diameter ratio", f.beta, "{:.6f}", "", standard);
    out.add("E", "velocity-of-approach factor", f.E, "{:.6f}", "", standard);
    out.add("K_p", "correction for edge bluntness", f.K_p, "{:.6f}", "", standard);
    out.exists = answer.solved();
    out.step("flow", answer.ambiguous ? "solved, the least of several" : "solved");
    out.add("Re", "Reynolds number", f.Re, "{:.5e}");
    out.add("C", "discharge coefficient", f.C, "{:.6f}", "", standard);
    out.add("K_sh", "correction for roughness", f.K_sh, "{:.6f}", "", standard);
    out.add("epsilon", "expansibility factor", f.epsilon, "{:.6f}");
    flows(f, answer, out);
    out.add("residual", "off the flow asked for, relative", answer.residual, "{:.2g}", "",
            answer.residual > 1e-9);
    const metering::Loss loss = metering::pressure_loss(answer.point.pipe, f, answer.dp_Pa);
    const bool range = loss.least_Pa != loss.most_Pa;
    out.add("loss_Pa", "permanent pressure loss", loss.least_Pa, "{}", "", loss.known && !range);
    out.cells.back().label.clear();
    out.add("", range ? "permanent pressure loss, from" : "permanent pressure loss", loss.least_Pa * kPa,
            "{:.3f}", "kPa", loss.known);
    out.add("", "up to, by the diverging angle", loss.most_Pa * kPa, "{:.3f}", "kPa", loss.known && range);
}

void rounded(const Answer& answer, Collector& out) {
    out.exists = answer.rounded.has_value();
    const auto [bore, flow] = answer.rounded.value_or(std::pair(0.0, metering::FlowResult{}));
    out.step("rounded", flow.accepted() ? "the bore as it is made" : "refused: " + flow.refused);
    out.add("rounded_d20_mm", "device at 20 degC", bore, "{:.6g}", "mm");
    out.exists = out.exists && flow.accepted();
    const std::size_t first = out.cells.size();
    flows(flow, answer, out);
    constexpr std::string_view keys[] = {"rounded_q_m_t_h", "rounded_q_v_m3_h", "rounded_q_c_m3_h",
                                         "rounded_q_e_GJ_h", "rounded_q_h_GJ_h"};
    for (std::size_t k = first; k < out.cells.size(); ++k) out.cells[k].key = keys[k - first];
}

void limits(const Question& q, const Answer& answer, Collector& out) {
    const metering::Accepted& range = answer.range;
    out.exists = range.any;
    const flow::Range Re =
        out.exists ? metering::reynolds_range(answer.point.pipe, range.high.flow) : flow::Range{};
    constexpr std::string_view units[] = {"t/h", "m3/h", "m3/h", "GJ/h"};
    out.step("limits", "at this temperature and pressure");
    out.add("Re_min", "least Reynolds number of the device", Re.min, "{:.6g}");
    out.add("Re_max", "largest", Re.max, "{:.6g}");
    constexpr std::string_view least[] = {"q_m_min_t_h", "q_v_min_m3_h", "q_c_min_m3_h", "q_e_min_GJ_h"};
    constexpr std::string_view most[] = {"q_m_max_t_h", "q_v_max_m3_h", "q_c_max_m3_h", "q_e_max_GJ_h"};
    const metering::Flow kind = q.kind;
    const std::string_view unit = units[static_cast<std::size_t>(kind)];
    for (const bool low : {true, false}) {
        const metering::End& end = low ? range.low : range.high;
        out.add(low ? "dp_min_Pa" : "dp_max_Pa", "", end.at, "{}");
        out.add("", low ? "valid from differential pressure" : "valid up to differential pressure",
                end.at * kPa, "{:.6g}", "kPa");
        out.add((low ? least : most)[static_cast<std::size_t>(kind)], low ? "from flow" : "up to flow",
                metering::flow_of_kind(kind, end.flow), "{:.7g}", unit);
        out.say(low ? "below it" : "above it", end.because.empty() ? "no limit found" : end.because);
    }
}

}  // namespace

std::string json_text(std::string_view text) {
    std::string quote = "\"";
    for (const char c : printable(std::string(text))) {
        if (c == '"' || c == '\\') quote += '\\';
        quote += c;
    }
    return quote + '"';
}

std::string_view status_word(metering::Status status) {
    constexpr std::string_view words[] = {"solved", "refused", "too small", "too large", "step"};
    return words[static_cast<std::size_t>(status)];
}

std::vector<Cell> cells_of(const Question& question, const Answer& answer) {
    Collector out;
    pipeline(answer, question, out);
    measured(answer, question, out);
    gas_constants(answer, out);
    medium(answer, out);
    geometry_and_flow(answer, out);
    rounded(answer, out);
    limits(question, answer, out);
    return out.cells;
}

std::string calc_sheet(const std::string& name, const Question& question, const Answer& answer) {
    std::string text = (name.empty() ? "" : name + ": ") + title(answer) + "\n";
    for (const Cell& cell : cells_of(question, answer)) {
        if (!cell.heading.empty())
            text += station::sheet_step(cell.heading, cell.text);
        else if (!cell.text.empty() && cell.text.size() > 14)
            text += fmt::format("    {:<34}  {}\n", cell.label, cell.text);
        else if (!cell.text.empty())
            text += station::sheet_row(cell.label, cell.text, cell.unit);
        else if (cell.value && !cell.label.empty())
            text +=
                station::sheet_row(cell.label, fmt::format(fmt::runtime(cell.layout), *cell.value), cell.unit);
    }
    return answer.solved() ? text : text + station::sheet_step("not solved", answer.why);
}

std::string calc_csv_head(const std::vector<Cell>& cells) {
    std::string line = "status,reason";
    for (const Cell& cell : cells)
        if (!cell.key.empty()) line += "," + std::string(cell.key);
    return line + "\n";
}

std::string calc_csv_row(const Answer& answer, const std::vector<Cell>& cells) {
    std::string line = std::string(status_word(answer.status)) + "," + csv_cell(printable(answer.why));
    for (const Cell& cell : cells)
        if (!cell.key.empty()) line += cell.value ? fmt::format(",{}", *cell.value) : "," + cell.text;
    return line + "\n";
}

std::string calc_json(const Answer& answer, const std::vector<Cell>& cells, const std::string& more) {
    std::string line = fmt::format("{{\"status\":\"{}\"", status_word(answer.status));
    if (!answer.why.empty()) line += ",\"reason\":" + json_text(answer.why);
    for (const Cell& cell : cells)
        if (!cell.key.empty() && cell.value) line += fmt::format(",\"{}\":{}", cell.key, *cell.value);
    return line + (more.empty() ? "" : ",") + more + "}\n";
}

}  // namespace kalorfix::tool
