// SPDX-License-Identifier: MIT
#include "tools/uncertainty_sheet.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "tools/text.h"

namespace kalorfix::tool {
namespace {

using metering::Budget;
using metering::Entry;
using metering::Standing;

struct Title {
    std::string_view word, name, flow_unit, amount_unit;
};
constexpr std::array<Title, metering::judged_flows.size()> titles{
    {{"mass", "mass", "t/h", "t"},
     {"standard_volume", "volume at standard conditions", "m3/h", "m3"},
     {"energy", "energy", "GJ/h", "GJ"}}};

std::string_view unit_of(const BudgetRecord& record, std::size_t k) {
    return record.amount ? titles[k].amount_unit : titles[k].flow_unit;
}

std::string_view word_of(Standing standing) {
    constexpr std::string_view words[] = {"stated", "document", "not stated", "outside"};
    return words[static_cast<std::size_t>(standing)];
}

bool exists(const Budget& budget, std::size_t k) { return budget.flow[k] != 0.0; }

std::string unit_of_uncertainty(const Entry& entry) {
    if (!entry.absolute) return "%";
    return entry.unit == "degC" ? "K" : std::string(entry.unit);
}
std::string unit_of_sensitivity(const Entry& entry) {
    return "%/" + (entry.per_unit ? unit_of_uncertainty(entry) : "%");
}

bool has_figure(const Entry& entry) {
    return entry.standing == Standing::stated || entry.standing == Standing::document;
}

double share_pct(const Entry& entry, std::size_t k, double expanded) {
    const double ratio = expanded > 0.0 ? entry.contribution[k] / expanded : 0.0;
    return 100.0 * ratio * ratio;
}

std::string lacks(const Budget& budget) {
    std::string text;
    for (const Entry& entry : budget.entries) {
        std::vector<std::string_view> of;
        std::size_t all = 0;
        for (std::size_t k = 0; k < titles.size(); ++k) {
            if (!exists(budget, k)) continue;
            ++all;
            if (entry.sensitivity[k] != 0.0) of.push_back(titles[k].name);
        }
        if (entry.standing == Standing::outside)
            text += fmt::format("  NOT COMPUTED  {}: {}\n", entry.name, entry.source);
        else if (entry.standing == Standing::not_stated && !of.empty())
            text += fmt::format("  NOT STATED    {}{}: give {}\n", entry.name,
                                of.size() < all ? " (" + joined(of) + ")" : "", entry.source);
    }
    return text;
}

std::string table(const Budget& budget, std::size_t k) {
    const double expanded = metering::expanded_pct(budget, k).value_or(0.0);
    std::vector<std::vector<std::string>> rows{
        {"  input", "from", "value", "uncertainty", "sensitivity", "contributes", "share"}};
    for (const Entry& entry : budget.entries) {
        if (entry.sensitivity[k] == 0.0 && entry.contribution[k] == 0.0) continue;
        const bool figure = has_figure(entry);
        const double slope = entry.sensitivity[k];
        rows.push_back(
            {"  " + entry.name,
             entry.standing == Standing::document ? entry.source : std::string(word_of(entry.standing)),
             entry.value == 0.0 && !entry.absolute
                 ? "-"
                 : fmt::format("{:.6g}{}{}", entry.value, entry.unit.empty() ? "" : " ", entry.unit),
             figure ? fmt::format("{:.4g} {}", entry.expanded, unit_of_uncertainty(entry)) : "-",
             std::isfinite(slope) ? fmt::format("{:.3f} {}", slope, unit_of_sensitivity(entry)) : "-",
             figure ? fmt::format("{:.3f} %", entry.contribution[k]) : "-",
             figure && expanded > 0.0 ? fmt::format("{:.1f} %", share_pct(entry, k, expanded)) : "-"});
    }
    return aligned(rows, 2);
}

std::string outcome(const BudgetRecord& record, std::size_t k) {
    const Budget& budget = record.budget;
    const std::optional<double> expanded = metering::expanded_pct(budget, k);
    if (!expanded) return "  not computed: an input lies outside the range of its figure\n";
    const bool bound = !metering::lacking(budget, k, Standing::not_stated).empty();
    if (bound && *expanded == 0.0) return "  not computed: nothing is stated\n";
    std::string text = fmt::format("  combined{} {:.3f} %, expanded (k = 2, 95 %) {:.3f} %, {:.6g} {}\n",
                                   bound ? ", at least" : "", *expanded / metering::coverage, *expanded,
                                   *expanded / 100.0 * budget.flow[k], unit_of(record, k));
    if (record.uncovered[k] > 0.0)
        text += fmt::format("  of {:.3g} % of the amount: the rest has an input outside its range\n",
                            100.0 * (1.0 - record.uncovered[k]));
    return text;
}

std::string number_or_nothing(double value) { return std::isfinite(value) ? fmt::format("{}", value) : ""; }

std::string json_inputs(const Budget& budget, std::size_t k, double expanded) {
    std::string text;
    for (const Entry& entry : budget.entries) {
        text += fmt::format("{}{{\"key\":\"{}\",\"value\":{},\"unit\":\"{}\",\"standing\":\"{}\",\"source\":{}",
                            text.empty() ? "" : ",", entry.key, entry.value, entry.unit,
                            word_of(entry.standing), json_text(entry.source));
        if (std::isfinite(entry.sensitivity[k]))
            text += fmt::format(",\"sensitivity\":{},\"sensitivity_unit\":\"{}\"", entry.sensitivity[k],
                                unit_of_sensitivity(entry));
        if (has_figure(entry))
            text += fmt::format(
                ",\"uncertainty\":{:.7g},\"uncertainty_unit\":\"{}\",\"contribution_pct\":{},\"share_pct\":{}",
                entry.expanded, unit_of_uncertainty(entry), entry.contribution[k],
                share_pct(entry, k, expanded));
        text += "}";
    }
    return text;
}

}  // namespace

std::string status_of(const Budget& budget, std::size_t k) {
    if (!budget.accepted()) return "refused";
    if (!metering::lacking(budget, k, Standing::outside).empty()) return "not computed";
    return metering::lacking(budget, k, Standing::not_stated).empty() ? "complete" : "lower bound";
}

bool is_complete(const Budget& budget) {
    if (!budget.accepted()) return false;
    for (std::size_t k = 0; k < titles.size(); ++k)
        if (exists(budget, k) && status_of(budget, k) != "complete") return false;
    return true;
}

std::string budget_sheet(const BudgetRecord& record) {
    const Budget& budget = record.budget;
    if (!budget.accepted()) return "  refused: " + budget.refused + "\n";
    std::string text;
    if (record.uncovered[0] > 0.0 && record.uncovered[0] < 1.0)
        text = fmt::format("  NOT COMPUTED  {:.3g} % of the amount, {}\n", 100.0 * record.uncovered[0],
                           record.why_uncovered);
    text += lacks(budget);
    for (std::size_t k = 0; k < titles.size(); ++k)
        if (exists(budget, k))
            text += fmt::format("{}, {:.7g} {}\n", titles[k].name, budget.flow[k], unit_of(record, k)) +
                    table(budget, k) + outcome(record, k);
    return text;
}

std::string budget_words(const Budget& budget, bool amount) {
    std::string text;
    for (const std::string& note : budget.notes) text += note + ".\n";
    text += "Classes and errors count as expanded uncertainties (95 %, k = 2), and the lines as independent.\n";
    if (std::ranges::find(budget.entries, "K", &Entry::key) != budget.entries.end())
        text +=
            "One composition moves density, K and heat together, so that the lines of K and of the density\n"
            "are those of their methods.\n";
    text += "Viscosity, isentropic exponent, roughness, edge and liquid column count as exact.\n";
    if (amount)
        text +=
            "Over the time every error counts as systematic: contributions add with the amounts as weights,\n"
            "and the number of readings does not make them smaller.\n";
    return text;
}

void add_budget_cells(const Budget& budget, std::vector<Cell>& cells) {
    constexpr std::array<std::string_view, titles.size()> keys{"U_mass_pct", "U_standard_volume_pct",
                                                               "U_energy_pct"};
    for (std::size_t k = 0; k < keys.size(); ++k) {
        Cell cell{.key = keys[k]};
        if (budget.accepted() && exists(budget, k)) cell.value = metering::expanded_pct(budget, k);
        cells.push_back(cell);
    }
    // Where it is the heat alone that is missing, the last says so.
    const bool mass = is_complete(budget) || status_of(budget, 0) != "complete";
    cells.push_back({.key = "U_status", .text = status_of(budget, mass ? 0 : titles.size() - 1)});
}

std::string budget_csv_head() {
    return "channel,when,quantity,value,unit,status,combined_pct,expanded_pct,uncovered_pct,input,input_value,"
           "input_unit,standing,source,uncertainty,uncertainty_unit,sensitivity,sensitivity_unit,contribution_"
           "pct,share_pct\n";
}

std::string budget_csv(const BudgetRecord& record) {
    const Budget& budget = record.budget;
    const std::string place = csv_cell(record.channel) + "," + record.when;
    if (!budget.accepted())
        return fmt::format("{},,,,refused,,,,,,,,{},,,,,,\n", place, csv_cell(printable(budget.refused)));
    std::string text;
    for (std::size_t k = 0; k < titles.size(); ++k) {
        if (!exists(budget, k)) continue;
        const std::optional<double> expanded = metering::expanded_pct(budget, k);
        const std::string total =
            expanded ? fmt::format("{},{}", *expanded / metering::coverage, *expanded) : ",";
        for (const Entry& entry : budget.entries)
            text += fmt::format(
                "{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{}\n", place, titles[k].word, budget.flow[k],
                unit_of(record, k), status_of(budget, k), total, 100.0 * record.uncovered[k], entry.key,
                entry.value, entry.unit, word_of(entry.standing), csv_cell(entry.source),
                has_figure(entry) ? fmt::format("{:.7g},{}", entry.expanded, unit_of_uncertainty(entry)) : ",",
                number_or_nothing(entry.sensitivity[k]), unit_of_sensitivity(entry),
                has_figure(entry) ? fmt::format("{}", entry.contribution[k]) : "",
                has_figure(entry) && expanded ? fmt::format("{}", share_pct(entry, k, *expanded)) : "");
    }
    return text;
}

std::string budget_json(const BudgetRecord& record) {
    const Budget& budget = record.budget;
    std::string text =
        fmt::format("\"channel\":{},\"when\":{}", json_text(record.channel), json_text(record.when));
    if (!budget.accepted()) return text + ",\"refused\":" + json_text(budget.refused);
    std::string all;
    for (std::size_t k = 0; k < titles.size(); ++k) {
        if (!exists(budget, k)) continue;
        const std::optional<double> expanded = metering::expanded_pct(budget, k);
        all += fmt::format("{}{{\"quantity\":\"{}\",\"value\":{},\"unit\":\"{}\",\"status\":\"{}\"",
                           all.empty() ? "" : ",", titles[k].word, budget.flow[k], unit_of(record, k),
                           status_of(budget, k));
        if (expanded)
            all += fmt::format(",\"combined_pct\":{},\"expanded_pct\":{}", *expanded / metering::coverage,
                               *expanded);
        all += fmt::format(",\"uncovered_pct\":{},\"inputs\":[{}]}}", 100.0 * record.uncovered[k],
                           json_inputs(budget, k, expanded.value_or(0.0)));
    }
    return text + ",\"notes\":[" + joined(budget.notes, json_text, ",") + "],\"quantities\":[" + all + "]";
}

}  // namespace kalorfix::tool
