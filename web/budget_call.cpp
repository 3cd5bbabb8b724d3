// SPDX-License-Identifier: MIT
// The budget of uncertainty of a reading, for the page.
#include <emscripten.h>

#include <cmath>

#include "tools/metering/uncertainty.h"
#include "tools/station/instrument_keys.h"
#include "web/call.h"

namespace kalorfix::page {
namespace {

using metering::Budget;
using metering::Entry;
using metering::Standing;
using tool::station::InstrumentKey;

metering::Instruments read_instruments(Form& form) {
    metering::Instruments all;
    for (const InstrumentKey& key : tool::station::instrument_keys)
        if (form.given(key.name)) {
            // Pressures come in their base unit, as all of the form.
            const bool pressure = key.limits.unit == "kPa" || key.limits.unit == "MPa";
            const double high = pressure ? key.factor * key.limits.high : key.limits.high;
            key.place(all) = form.number(key.name, key.limits.low, high, pressure ? "Pa" : key.limits.unit);
        }
    if (const std::string wrong = tool::station::instrument_fault(all); !wrong.empty()) {
        const std::size_t colon = wrong.find(": ");
        form.fail(wrong.substr(0, colon), wrong.substr(colon + 2));
    }
    return all;
}

Json entry_of(const Entry& entry, std::size_t k, double expanded) {
    constexpr const char* words[] = {"stated", "document", "not stated", "outside"};
    const bool figure = entry.standing == Standing::stated || entry.standing == Standing::document;
    const std::string unit = entry.unit.empty() ? "" : " " + entry.unit;
    const std::string own = !entry.absolute ? "%" : entry.unit == "degC" ? "K" : entry.unit;
    const double ratio = expanded > 0.0 ? entry.contribution[k] / expanded : 0.0;
    Json out('{');
    out.add("name", entry.name).add("standing", words[static_cast<std::size_t>(entry.standing)]);
    out.add("source", entry.source);
    out.add("value", entry.key == "composition" ? "" : fmt::format("{:.6g}{}", entry.value, unit));
    if (figure)
        out.add("uncertainty", fmt::format("{:.4g} {}", entry.expanded, own))
            .add("contribution", entry.contribution[k])
            .add("share", 100.0 * ratio * ratio);
    return out;
}

Json flow_of(const Budget& budget, std::size_t k) {
    constexpr const char* titles[] = {"mass flow", "volume flow at standard conditions", "energy flow"};
    constexpr const char* units[] = {"t/h", "m3/h", "GJ/h"};
    const std::optional<double> expanded = metering::expanded_pct(budget, k);
    Json entries('[');
    for (const Entry& entry : budget.entries)
        if (entry.sensitivity[k] != 0.0 || entry.contribution[k] != 0.0 || entry.standing == Standing::outside)
            entries.add(entry_of(entry, k, expanded.value_or(0.0)));
    Json out('{');
    out.add("title", titles[k]).add("unit", units[k]).add("value", budget.flow[k]);
    out.add("expanded", expanded.value_or(std::nan("")));
    out.add("bound", !metering::lacking(budget, k, Standing::not_stated).empty());
    return out.add("entries", entries);
}

}  // namespace

extern "C" {

/// The budgets of mass, standard volume and energy at a reading, whose missing quantity is found first.
EMSCRIPTEN_KEEPALIVE const char* page_uncertainty(const char* lines) {
    Form form(lines);
    const metering::Point point = read_point(form);
    const metering::Question question = read_question(form);
    const metering::Instruments instruments = read_instruments(form);
    if (form.fault()) return hand_out(fault(form));
    const metering::Answer answer = metering::solve(library(), point, question, false);
    if (!answer.solved()) return hand_out(Json('{').add("refused", answer.why));
    const Budget budget =
        metering::budget_of(library(), answer.point, instruments, {question.t_C, question.p_Pa, answer.dp_Pa});
    Json flows('['), notes('[');
    for (std::size_t k = 0; k < budget.flow.size(); ++k)
        if (budget.flow[k] != 0.0) flows.add(flow_of(budget, k));
    for (const std::string& note : budget.notes) notes.add(note);
    return hand_out(Json('{').add("refused", budget.refused).add("flows", flows).add("notes", notes));
}

}  // extern "C"
}  // namespace kalorfix::page
