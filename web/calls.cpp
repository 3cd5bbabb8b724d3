// SPDX-License-Identifier: MIT
// What the page calls: text in, JSON text out, which lives until the next call.
#include <emscripten.h>

#include <cmath>
#include <limits>
#include <sstream>

#include "flow/device.h"
#include "flow/geometry.h"
#include "gas/composition.h"
#include "tools/calc_sheet.h"
#include "tools/cases/procedures.h"
#include "tools/metering/units.h"
#include "tools/names.h"
#include "tools/station/instrument_keys.h"
#include "tools/text.h"
#include "web/call.h"

namespace kalorfix {
extern const char identity[];
}

namespace kalorfix::page {

const host::Library& library() {
    static const host::Library one;
    return one;
}

const char* hand_out(const Json& json) {
    static std::string text;
    text = json.text();
    return text.c_str();
}

Json fault(const Form& form) {
    return Json('{').add("field", form.fault()->field).add("fault", form.fault()->what);
}

namespace {

Json units_of(metering::Measure measure) {
    Json all('[');
    const std::string words = metering::unit_words(measure);
    for (const std::string_view word : tool::split(words, ',')) {
        const metering::Unit& unit = *metering::find_unit(word, measure);
        all.add(Json('{')
                    .add("word", unit.name)
                    .add("factor", unit.factor)
                    .add("offset", unit.offset)
                    .add("kind", static_cast<double>(metering::flow_kind(unit))));
    }
    return all;
}

template <class Table>
Json words_of(const Table& table) {
    Json all('[');
    for (const auto& row : table) all.add(Json('{').add("word", row.word).add("title", row.title));
    return all;
}

Json materials() {
    Json all('[');
    for (int code = 1; code <= flow::material_count; ++code) {
        const flow::Material& m = *flow::find_material(code);
        all.add(Json('{').add("at20", m.expansion(20.0)).add("low", m.t_min_C).add("high", m.t_max_C));
    }
    return all;
}

Json instruments() {
    Json all('[');
    for (const tool::station::InstrumentKey& key : tool::station::instrument_keys)
        all.add(Json('{')
                    .add("word", key.name)
                    .add("title", key.what)
                    .add("unit", key.limits.unit)
                    .add("gas", key.is_of(tool::station::Medium::gas))
                    .add("heat", key.is_of(tool::station::Medium::heat_carrier)));
    return all;
}

Json devices() {
    Json all('[');
    for (std::size_t k = 0; k < tool::devices.size(); ++k) {
        const flow::DeviceRow& row = flow::device_row(static_cast<short>(k + 1));
        if (!row.is_standard() && !row.is_direct()) continue;
        all.add(Json('{')
                    .add("word", tool::devices[k].word)
                    .add("title", tool::devices[k].title)
                    .add("clause", row.clause)
                    .add("standard", row.is_standard())
                    .add("orifice", row.family == flow::Family::orifice)
                    .add("configured", row.family == flow::Family::configured));
    }
    return all;
}

Json cells_of(const metering::Question& question, const metering::Answer& answer) {
    Json all('[');
    for (const tool::Cell& cell : tool::cells_of(question, answer)) {
        if (cell.heading.empty() && cell.label.empty()) continue;
        Json one('{');
        if (!cell.heading.empty()) one.add("heading", cell.heading);
        if (!cell.label.empty()) one.add("label", cell.label);
        if (!cell.text.empty()) one.add("text", cell.text);
        if (!cell.heading.empty() || !cell.text.empty() || cell.value) {
            if (cell.value && cell.heading.empty())
                one.add("value", *cell.value).add("shown", fmt::format(fmt::runtime(cell.layout), *cell.value));
            if (!cell.unit.empty()) one.add("unit", cell.unit);
            all.add(one);
        }
    }
    return all;
}

double shown_flow(const metering::Question& q, const metering::FlowResult& flow) {
    return flow.accepted() ? metering::flow_of_kind(q.kind, flow) : std::numeric_limits<double>::quiet_NaN();
}

// Flow over the differential pressure, up to twice the reading or as far as it is accepted.
Json over_dp(const metering::Question& q, const metering::Answer& a) {
    constexpr int dots = 300;
    const double top = 2.0 * a.dp_Pa, low = a.range.low.at;
    const double end = top > low ? std::min(top, a.range.high.at) : a.range.high.at;
    Json x('['), y('[');
    for (int k = 0; k <= dots && a.range.any; ++k) {
        const double dp_Pa = low + (end - low) * k / dots;
        x.add(dp_Pa);
        y.add(shown_flow(q, metering::flow_at(library(), a.point, a.medium, dp_Pa)));
    }
    return Json('{').add("x", x).add("y", y);
}

// Flow over the pressure from a fifth to twice that of the reading; where it is refused the curve has a gap.
Json over_p(const metering::Question& q, const metering::Answer& a) {
    constexpr int dots = 180;
    Json x('['), y('['), density('[');
    for (int k = 0; k <= dots; ++k) {
        const double p_Pa = q.p_Pa * (0.2 + 1.8 * k / dots);
        const metering::Properties medium = metering::properties_at(library(), a.point, q.t_C, p_Pa);
        const bool good = medium.refused.empty();
        x.add(p_Pa);
        density.add(good ? medium.rho : std::numeric_limits<double>::quiet_NaN());
        y.add(good ? shown_flow(q, metering::flow_at(library(), a.point, medium, a.dp_Pa))
                   : std::numeric_limits<double>::quiet_NaN());
    }
    return Json('{').add("x", x).add("y", y).add("density", density);
}

// Z of the equation of state is K Zc.
double factor_Z(const metering::Point& point, double K) {
    const auto* const gas = std::get_if<metering::Gas>(&point.medium);
    if (!gas) return std::numeric_limits<double>::quiet_NaN();
    const host::GasState& state = library()->gas;
    if (gas->method == tool::vnic) return static_cast<double>(*state.Z);
    if (tool::is_by_density(gas->method))
        return K * gas::standard_compressibility(static_cast<double>(*state.Roc),
                                                 static_cast<double>(*state.Xa),
                                                 static_cast<double>(*state.Xy));
    gas::Fractions x{};
    std::copy_n(state.Xi, x.size(), x.begin());
    return K * gas::standard_compressibility(gas::with_present_components(x));
}

// AGA8-92DC has no heats of volume fractions.
double known(double heat) { return heat > 0.0 ? heat : std::numeric_limits<double>::quiet_NaN(); }

struct Steps {
    double low, step;
    int count;
};
Steps read_steps(Form& form, const std::string& name, double low, double high, int most) {
    const double from = form.number(name + "_from", low, high);
    const double to = form.number_or(name + "_to", from, from, high);
    const double step = form.number_or(name + "_step", to > from ? to - from : 1.0, 0, high - low);
    // The last value belongs to the range when rounding alone keeps a step from hitting it.
    const double steps = to > from && step > 0.0 ? std::floor((to - from) / step + 1e-9) : 0.0;
    if (!(steps < most)) {
        form.fail(name + "_step", tool::cat("at most ", most, " values"));
        return {from, step, 0};
    }
    return {from, step, static_cast<int>(steps) + 1};
}

}  // namespace
extern "C" {

/// What the form offers.
EMSCRIPTEN_KEEPALIVE const char* page_offers() {
    Json components('[');
    for (std::size_t i = 0; i < tool::components.size(); ++i)
        components.add(Json('{').add("word", tool::components[i]).add("title", tool::formulas[i]));
    using enum metering::Measure;
    const Json units = Json('{')
                           .add("length", units_of(length))
                           .add("pressure", units_of(pressure))
                           .add("temperature", units_of(temperature))
                           .add("viscosity", units_of(viscosity))
                           .add("density", units_of(density))
                           .add("flow", units_of(flow));
    return hand_out(Json('{')
                        .add("identity", identity)
                        .add("devices", devices())
                        .add("methods", words_of(tool::methods))
                        .add("heats", words_of(tool::heat_units))
                        .add("phases", words_of(tool::phases))
                        .add("components", components)
                        .add("materials", materials())
                        .add("instruments", instruments())
                        .add("units", units));
}

/// Starts the library, whose directories hold the gas data by now.
EMSCRIPTEN_KEEPALIVE void page_start() { library()->Init(); }

/// The sheet of a reading, with the curves if they are wanted.
EMSCRIPTEN_KEEPALIVE const char* page_solve(const char* lines) {
    Form form(lines);
    const metering::Point point = read_point(form);
    const metering::Question question = read_question(form);
    if (form.fault()) return hand_out(fault(form));
    const metering::Answer answer = metering::solve(library(), point, question);
    Json out('{');
    out.add("status", tool::status_word(answer.status)).add("why", answer.why);
    out.add("cells", cells_of(question, answer));
    out.add("bore", answer.point.pipe.d20_mm).add("dp", answer.dp_Pa);
    out.add("flow", answer.solved() ? metering::flow_of_kind(question.kind, answer.flow) : 0.0);
    if (form.given("curves") && answer.solved())
        out.add("over_dp", over_dp(question, answer)).add("over_p", over_p(question, answer));
    return hand_out(out);
}

/// The limits of the point, a rule each.
EMSCRIPTEN_KEEPALIVE const char* page_check(const char* lines) {
    Form form(lines);
    const metering::Point point = read_point(form);
    const metering::Envelope envelope = read_envelope(form);
    if (form.fault()) return hand_out(fault(form));
    constexpr const char* words[] = {"OK", "WARN", "STOP", "-"};
    Json rules('[');
    for (const metering::Rule& rule : metering::check(library(), point, envelope, {}))
        rules.add(Json('{')
                      .add("verdict", words[static_cast<std::size_t>(rule.verdict)])
                      .add("what", rule.what)
                      .add("value", rule.value)
                      .add("limit", rule.limit)
                      .add("clause", rule.clause));
    return hand_out(Json('{').add("rules", rules));
}

/// Properties of the medium over temperatures and pressures.
EMSCRIPTEN_KEEPALIVE const char* page_table(const char* lines) {
    Form form(lines);
    constexpr int most = 200;
    constexpr double far_C = 1e4, far_Pa = 1e10;
    const metering::Point point{{}, {}, read_medium(form)};
    const Steps t = read_steps(form, "t", -far_C, far_C, most), p = read_steps(form, "p", 1e-9, far_Pa, most);
    if (t.count * p.count > 10 * most) form.fail("t_step", tool::cat("at most ", 10 * most, " values"));
    if (form.fault()) return hand_out(fault(form));
    Json rows('[');
    for (int i = 0; i < t.count; ++i)
        for (int j = 0; j < p.count; ++j) {
            const metering::Properties m =
                metering::properties_at(library(), point, t.low + i * t.step, p.low + j * p.step);
            Json row('{');
            row.add("t", m.t_C).add("p", p.low + j * p.step).add("refused", m.refused);
            if (m.refused.empty())
                row.add("phase", tool::phase_of(m.phase).title)
                    .add("ps", m.ps_MPa * 1e6)
                    .add("rho", m.rho)
                    .add("mu", m.mu_uPas)
                    .add("kappa", m.kappa)
                    .add("h", m.h_kJ_kg)
                    .add("K", m.K)
                    .add("Z", factor_Z(point, m.K))
                    .add("rho_c", m.rho_c)
                    .add("lower", known(m.lower_heat))
                    .add("higher", known(m.higher_heat));
            rows.add(row);
        }
    return hand_out(Json('{').add("rows", rows));
}

/// Every value of a case file: function, line, case, output, expected, computed, permitted or declared deviation, verdict.
EMSCRIPTEN_KEEPALIVE const char* page_verify(const char* name, const char* text) {
    std::istringstream in(text);
    constexpr const char* words[] = {"met", "differs", "FAILED"};
    Json values('[');
    for (const cases::Table& table : cases::read_tables(in, name))
        for (const cases::Finding& found : cases::run(library(), table)) {
            Json value('[');
            value.add(table.function).add(static_cast<double>(found.where->line)).add(found.where->id);
            value.add(found.expected->column).add(found.expected->text);
            // NaN and infinity, too, for the comparison with the native build.
            value.add(fmt::format("{}", found.computed)).add(found.permitted);
            values.add(value.add(words[static_cast<std::size_t>(found.verdict)]));
        }
    return hand_out(values);
}

}  // extern "C"
}  // namespace kalorfix::page
