// SPDX-License-Identifier: MIT
#include "tools/report/quantities.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>

#include "tools/names.h"
#include "tools/text.h"

namespace kalorfix::tool::report {
namespace {

// Endings of names with the unit that they carry, longest first, and whole names that carry none with theirs.
constexpr std::string_view endings[] = {
    "_kmol_m3", "kmol/m3", "_kg_m3", "kg/m3", "_kJ_kg", "kJ/kg", "_uPa_s", "uPa s", "_kg_s", "kg/s", "_years",
    "years",    "_Pa_s",   "Pa s",   "_t_h",  "t/h",    "_MPa",  "MPa",    "_kPa",  "kPa",   "_pct", "mol %",
    "_Pa",      "Pa",      "_mm",    "mm",    "_C",     "degC",  "_K",     "K",     "_m",    "m"};
constexpr std::string_view plain_units[] = {"rho",   "kg/m3",  "rho_c", "kg/m3", "rho_c_in", "kg/m3", "rho_col",
                                            "kg/m3", "vapour", "kg/m3", "h_col", "m",        "hA",    "m",
                                            "hB",    "kg/m3",  "q_v",   "m3/h",  "q_c",      "m3/h",  "q_e",
                                            "1/h",   "q_h",    "GJ/h",  "sum",   ""};

// One to two digits behind the first of the permitted deviation.
int decimals(double permitted) {
    return std::clamp(1 - static_cast<int>(std::floor(std::log10(permitted))), 0, 17);
}

bool status_like(const std::string& column) {
    return column == "status" || column == "state" || column == "geometry" || column == "set_up";
}

}  // namespace

Quantity quantity(const std::string& name) {
    if (const std::string_view part = component(name); !part.empty()) return {std::string(part), "mol %"};
    for (std::size_t k = 0; k < std::size(plain_units); k += 2)
        if (name == plain_units[k]) return {name, std::string(plain_units[k + 1])};
    if (name == "K" || name == "Z" || name == "C") return {name, {}};
    for (std::size_t k = 0; k < std::size(endings); k += 2)
        if (const std::size_t length = endings[k].size(); name.size() > length && name.ends_with(endings[k]))
            return {name.substr(0, name.size() - length), std::string(endings[k + 1])};
    return {name, {}};
}

std::string_view component(const std::string& name) {
    if (!name.starts_with('x')) return {};
    const auto index = parse<std::size_t>(std::string_view(name).substr(1));
    return index && *index < components.size() ? components[*index] : std::string_view();
}

std::string word_text(const Wording& w, const std::string& word) {
    const std::string_view text = of_case_file(w.language, word);
    return text.empty() ? w.number(word) : std::string(text);
}

std::string symbol_text(const Wording& w, const std::string& name) {
    const std::string symbol = quantity(name).symbol;
    if (!component(name).empty()) return std::string(translated(w.language, symbol));
    const std::string_view word = of_case_file(w.language, symbol);
    return word.empty() ? symbol : std::string(word);
}

std::string input_text(const Wording& w, const std::string& name, double value) {
    const bool standard = value >= 1.0 && value <= static_cast<double>(standard_devices);
    if (name == "device" && standard && value == std::floor(value))
        return word_text(w, std::string(devices[static_cast<std::size_t>(value) - 1].brief));
    return w.number(fmt::format("{:.10g}", value));
}

std::string all_inputs(const cases::Case& one) {
    return joined(
        one.inputs, [](const auto& input) { return fmt::format("{}={}", input.first, input.second); }, " ");
}

bool is_word(const cases::Expected& expected) {
    const char first = expected.text.empty() ? '0' : expected.text.front();
    return first >= 'a' && first <= 'z' && expected.text != "nan" && expected.text != "inf";
}

std::string computed_word(const cases::Finding& finding) {
    if (finding.passed()) return finding.expected->text;
    if (status_like(finding.expected->column) && finding.computed == 1.0) return "computed";
    if (status_like(finding.expected->column) && finding.computed == 0.0) return "refused";
    return fmt::format("{:g}", finding.computed);
}

std::string with_digits_of(double value, double permitted) {
    constexpr int all_digits = 16;
    if (!std::isfinite(value) || !(permitted > 0.0)) return fmt::format("{}", value);
    if (value == 0.0) return "0";
    const int places = decimals(permitted);
    const int leading = static_cast<int>(std::floor(std::log10(std::fabs(value)))) + 1;
    if (leading < -3 || leading > 9)
        return fmt::format("{:.{}e}", value, std::clamp(places + leading - 1, 0, all_digits));
    return fmt::format("{:.{}f}", value, std::clamp(places, 0, std::max(0, all_digits - std::max(leading, 0))));
}

std::string percent(double relative) { return fmt::format("{:.2g} %", 100.0 * relative); }

std::string bound_text(const cases::Tolerance& bound) {
    return bound.absolute > 0.0 ? fmt::format("{:g}", bound.absolute)
                                : fmt::format("{:g} %", 100.0 * bound.relative);
}

std::string short_number(double value) {
    if (value == 0.0) return "0";
    if (!std::isfinite(value)) return fmt::format("{}", value);
    const double size = std::fabs(value);
    if (size >= 1e-3 && size < 100.0) return fmt::format("{:.2g}", value);
    return fmt::format("{:.1e}", value);
}

}  // namespace kalorfix::tool::report
