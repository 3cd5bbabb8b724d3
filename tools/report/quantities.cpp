#include "tools/report/quantities.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "tools/component_names.h"

namespace kalorfix::tool::report {
namespace {

// Endings of names that carry a unit, longest first.
constexpr std::array<std::pair<std::string_view, std::string_view>, 20> endings{{{"_kmol_m3", "kmol/m3"},
                                                                                 {"_kg_m3", "kg/m3"},
                                                                                 {"_kJ_kg", "kJ/kg"},
                                                                                 {"_uPa_s", "uPa s"},
                                                                                 {"_kg_s", "kg/s"},
                                                                                 {"_years", "years"},
                                                                                 {"_Pa_s", "Pa s"},
                                                                                 {"_t_h", "t/h"},
                                                                                 {"_MPa", "MPa"},
                                                                                 {"_kPa", "kPa"},
                                                                                 {"_pct", "mol %"},
                                                                                 {"_Pa", "Pa"},
                                                                                 {"_mm", "mm"},
                                                                                 {"_C", "degC"},
                                                                                 {"_K", "K"},
                                                                                 {"_m", "m"},
                                                                                 {"_col", ""},
                                                                                 {"_in", ""},
                                                                                 {"_out", ""},
                                                                                 {"_req", ""}}};

// Names that carry none.
constexpr std::array<std::pair<std::string_view, std::string_view>, 13> plain_units{{{"rho", "kg/m3"},
                                                                                     {"rho_c", "kg/m3"},
                                                                                     {"rho_c_in", "kg/m3"},
                                                                                     {"rho_col", "kg/m3"},
                                                                                     {"vapour", "kg/m3"},
                                                                                     {"h_col", "m"},
                                                                                     {"hA", "m"},
                                                                                     {"hB", "kg/m3"},
                                                                                     {"q_v", "m3/h"},
                                                                                     {"q_c", "m3/h"},
                                                                                     {"q_e", "1/h"},
                                                                                     {"q_h", "GJ/h"},
                                                                                     {"sum", ""}}};

constexpr std::array<std::string_view, 10> devices{"",
                                                   "orifice, corner",
                                                   "orifice, D and D/2",
                                                   "orifice, flange",
                                                   "ISA 1932 nozzle",
                                                   "long-radius nozzle",
                                                   "Venturi nozzle",
                                                   "Venturi tube, cast",
                                                   "Venturi tube, machined",
                                                   "Venturi tube, welded"};

// One to two digits behind the first of the permitted deviation.
int decimals(double permitted) {
    return std::clamp(1 - static_cast<int>(std::floor(std::log10(permitted))), 0, 17);
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

bool status_like(const std::string& column) {
    return column == "status" || column == "state" || column == "geometry" || column == "set_up";
}

}  // namespace

Quantity quantity(const std::string& name) {
    if (const std::string_view part = component(name); !part.empty()) return {std::string(part), "mol %"};
    for (const auto& [plain, unit] : plain_units)
        if (name == plain) return {name, std::string(unit)};
    if (name == "K" || name == "Z" || name == "C") return {name, {}};
    for (const auto& [ending, unit] : endings)
        if (!unit.empty() && name.size() > ending.size() && name.ends_with(ending))
            return {name.substr(0, name.size() - ending.size()), std::string(unit)};
    return {name, {}};
}

std::string_view component(const std::string& name) {
    if (name.size() < 2 || name.front() != 'x') return {};
    std::size_t index = 0;
    const char* const end = name.data() + name.size();
    const auto [stop, error] = std::from_chars(name.data() + 1, end, index);
    if (error != std::errc() || stop != end || index >= component_names.size()) return {};
    return component_names[index];
}

std::string input_text(const std::string& name, double value) {
    if (name == "device" && value >= 1.0 && value < 10.0 && value == std::floor(value))
        return std::string(devices[static_cast<std::size_t>(value)]);
    return fmt::format("{:.10g}", value);
}

std::string all_inputs(const cases::Case& one) {
    std::string text;
    for (const auto& [name, value] : one.inputs)
        text += fmt::format("{}{}={}", text.empty() ? "" : " ", name, value);
    return text;
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

std::string expected_text(const cases::Finding& finding) {
    const std::string& text = finding.expected->text;
    const std::string digits = with_digits_of(finding.expected->value, finding.permitted);
    return text.size() <= digits.size() ? text : digits;
}

std::string computed_text(const cases::Finding& finding) {
    return with_digits_of(finding.computed, finding.permitted);
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
