#include "tools/station/station_keys.h"

#include <fmt/format.h>

#include <algorithm>

#include "tools/closest.h"
#include "tools/names.h"
#include "tools/station/instrument_keys.h"

namespace kalorfix::tool::station {
namespace {

constexpr Limits code{1.0, 39.0, ""}, expansion{0.0, 1e-3, "1/degC"}, diameter{0.0, 10000.0, "mm"};
constexpr Limits percent{0.0, 100.0, "mol %"}, decades{-9.0, 9.0, ""};

template <class Table>
std::vector<std::string_view> words_of(const Table& table) {
    std::vector<std::string_view> all;
    for (const auto& row : table) all.push_back(row.word);
    return all;
}

std::vector<Key> pipeline_keys() {
    return {
        {"device", "what measures the flow", {}, {}, words_of(devices)},
        {"metering_class", "1 solves the flow to 1e-5, 0 to 1e-3", {0, 1, ""}, 1.0F, {}, true},
        {"pipe_material", "code of GOST 8.586.1, annex G", code, {}, {}, true},
        {"device_material", "the same", code, {}, {}, true},
        {"pipe_expansion_1_C", "in place of the materials, for both", expansion},
        {"device_expansion_1_C", "the same", expansion},
        {"D20_mm", "pipe at 20 degC", diameter},
        {"d20_mm", "device at 20 degC", diameter},
        {"roughness_mm", "equivalent uniform roughness of the pipe", {0, 100, "mm"}},
        {"edge_radius_mm", "orifice plates: initial radius of the edge", {0, 10, "mm"}},
        {"edge_radius", "orifice plates: over the check interval or at its end", {}, 0.0F, {"mean", "at_end"}},
        {"check_interval_years", "orifice plates", {0, 100, "years"}},
        {"alpha_eps", "configured_coefficient: its flow coefficient", {0, 100, ""}},
        {"column_height_m", "liquid column between tap and transmitter", {-1000, 1000, "m"}, 0.0F},
        {"column_density_kg_m3", "of this column", {0, 20000, "kg/m3"}, 0.0F},
        {"barometer_kPa", "atmospheric pressure; needed for readings of gauge pressure", {50, 120, "kPa"}},
        {"cut_off_kPa", "a lower differential pressure is no flow; its time counts", {0, 1000, "kPa"}},
        {"longest_step_s", "longer steps between two readings are not counted; 0 counts any", longest_step,
         0.0F},
        {"contract_hour", "at which a day of the calendar begins", {0, 23, ""}, 0.0F, {}, true},
    };
}

std::vector<Key> gas_keys() {
    std::vector<Key> keys{
        {"method", "the first two by density, the others by composition", {}, {}, words_of(methods)},
        {"rho_c_kg_m3", "nx19, gerg91: density at 20 degC and 101.325 kPa", {0, 1, "kg/m3"}},
        {"nitrogen_pct", "nx19, gerg91", percent},
        {"carbon_dioxide_pct", "nx19, gerg91", percent},
        {"composition",
         fmt::format("aga8, vnic: composition file, seen from the station file; or keys {} to {}, mol %",
                     component_key(0), component_key(components.size() - 1))}};
    for (std::size_t i = 0; i < components.size(); ++i)
        keys.push_back({component_key(i), "aga8, vnic", percent, 0.0F});
    const std::vector<Key> rest{
        {"composition_sum", "aga8, vnic: outside 99..101 % refused, or any", {}, 0.0F, {"100", "any"}},
        {"normalise", "aga8, vnic: scale the composition to 100 %", {}, 0.0F, {"no", "yes"}},
        {"contents",
         "aga8: nitrogen and carbon dioxide behind viscosity and exponent",
         {},
         0.0F,
         {"own", "as_left"}},
        {"vapour_kg_m3", "water vapour in the working cubic metre", {0, 1000, "kg/m3"}, 0.0F},
        {"energy_by", "heat of combustion behind the energy", {}, 0.0F, {"lower_heat", "higher_heat"}},
        {"heat_unit", "vnic: heats of combustion", {}, 0.0F, {"kJ", "kcal"}},
        {"heat_basis_C", "vnic: temperature of the cubic metre", {}, 1.0F, {"0", "20"}}};
    keys.insert(keys.end(), rest.begin(), rest.end());
    return keys;
}

std::vector<Key> heat_keys() {
    return {
        {"phase", "decided from the state or known beforehand", {}, {}, words_of(phases)},
        {"x", "wet_steam (from_state, 0): share of the single-phase state", {0, 1, ""}},
        {"saturation_tolerance_Pa", "so close to the saturation line it is wet steam", {0, 1e6, "Pa"}, 1000.0F},
        {"saturation_tolerance_K", "and so close", {0, 100, "K"}, 0.5F}};
}

void add_accounting(std::vector<Key>& keys, Medium medium) {
    for (std::size_t k = 0; k < integrator_count(medium); ++k)
        keys.push_back({exponent_key(integrator(medium, k)),
                        "the register counts in 10^N of its unit",
                        decades,
                        0.0F,
                        {},
                        true});
    for (std::size_t k = 0; k < integrator_count(medium); ++k) {
        const Integrator& one = integrator(medium, k);
        keys.push_back({substitute_key(one), "flow that fills a downtime", {0, 1e9, one.flow_unit}, 0.0F});
    }
}

std::vector<Key> instrument_key_list(std::optional<Medium> medium) {
    std::vector<Key> keys;
    for (const InstrumentKey& one : instrument_keys)
        if (!medium || one.is_of(*medium))
            keys.push_back({std::string(one.name), std::string(one.what), one.limits});
    return keys;
}

std::vector<Key> station_keys() {
    return {
        {"zone", "offset of the station's clock from UTC, such as +03:00, for readings whose times have one"}};
}

const std::vector<Key>& keys_of(std::optional<Medium> medium) {
    static const auto made = [](Medium of) {
        std::vector<Key> all = pipeline_keys();
        const std::vector<Key> own = of == Medium::gas ? gas_keys() : heat_keys();
        all.insert(all.end(), own.begin(), own.end());
        add_accounting(all, of);
        const std::vector<Key> instruments = instrument_key_list(of);
        all.insert(all.end(), instruments.begin(), instruments.end());
        return all;
    };
    static const std::vector<Key> gas = made(Medium::gas), heat = made(Medium::heat_carrier),
                                  station = station_keys();
    if (!medium) return station;
    return medium == Medium::gas ? gas : heat;
}

std::vector<std::string> names_of(const std::vector<Key>& keys) {
    std::vector<std::string> names;
    for (const Key& key : keys) names.push_back(key.name);
    return names;
}

// A name and beside it a text in lines of its own column.
std::string wrapped(const std::string& name, const std::string& text) {
    constexpr std::size_t column = 35, width = 100;
    std::string lines, line = fmt::format("{:<{}}", name, column - 1);
    for (const std::string_view word : words(text)) {
        if (line.size() + 1 + word.size() > width) {
            lines += line + "\n";
            line = std::string(column - 1, ' ');
        }
        line += " " + std::string(word);
    }
    return lines + line + "\n";
}

std::string reference_of(const Key& key) {
    std::string meaning = key.accepted() + (key.accepted().empty() ? "" : ": ") + key.what;
    if (key.otherwise && key.words.empty())
        meaning += fmt::format(" ({})", *key.otherwise);
    else if (key.otherwise)
        meaning += fmt::format(" ({})", key.words[static_cast<std::size_t>(*key.otherwise)]);
    return wrapped("  " + key.name, meaning);
}

std::string reference(const std::string& title, const std::vector<Key>& keys) {
    std::string text = "\n" + title + ":\n";
    for (const Key& key : keys)
        if (!key.name.starts_with("x_")) text += reference_of(key);  // told of with the composition
    return text;
}

}  // namespace

std::string Key::accepted() const {
    if (!words.empty()) return joined(words);
    return limits.high == 0.0 ? "" : limits.text();
}

std::string component_key(std::size_t i) { return fmt::format("x_{}_pct", components[i]); }

std::string substitute_key(const Integrator& one) {
    std::string unit(one.flow_unit);
    std::ranges::replace(unit, '/', '_');
    return fmt::format("{}_substitute_{}", one.name, unit);
}

std::string key_reference() {
    std::vector<Key> gas = gas_keys(), heat = heat_keys();
    add_accounting(gas, Medium::gas);
    add_accounting(heat, Medium::heat_carrier);
    return "Keys of STATION.ini with what they accept; in brackets what holds without them.\n" +
           reference("[STATION], which may be left out", station_keys()) +
           reference("Every other section", pipeline_keys()) + reference("[GAS N]", gas) +
           reference("[HEAT N]", heat) +
           reference(
               "Instruments, for kalorfix uncertainty: expanded (95 %); without its key an entry is "
               "not stated",
               instrument_key_list({}));
}

std::string key_help(std::string_view name) {
    for (const std::optional<Medium> medium :
         {std::optional(Medium::gas), std::optional(Medium::heat_carrier), std::optional<Medium>()})
        for (const Key& key : keys_of(medium))
            if (key.name == name) return reference_of(key);
    return {};
}

std::vector<std::string> key_names() {
    std::vector<std::string> names;
    for (const std::optional<Medium> medium :
         {std::optional(Medium::gas), std::optional(Medium::heat_carrier), std::optional<Medium>()})
        for (const Key& key : keys_of(medium)) names.push_back(key.name);
    return names;
}

std::string exponent_key(const Integrator& one) { return fmt::format("{}_exponent", one.name); }

Keys::Keys(const std::string& file, const Section& section, std::optional<Medium> medium)
    : file_(file), section_(section), known_(keys_of(medium)) {
    for (const Entry& entry : section.entries) {
        if (std::ranges::find(known_, entry.key, &Key::name) == known_.end())
            fail(entry, "no such key", did_you_mean(entry.key, names_of(known_)), "; there are ",
                 joined(known_, &Key::name));
        const auto first = std::ranges::find(section.entries, entry.key, &Entry::key);
        if (&*first != &entry) fail(entry, "stands here for the second time, first in line ", first->line);
    }
}

bool Keys::has(std::string_view key) const {
    return std::ranges::find(section_.entries, key, &Entry::key) != section_.entries.end();
}

const Entry* Keys::find(std::string_view key) {
    asked_.emplace(key);
    const auto found = std::ranges::find(section_.entries, key, &Entry::key);
    return found == section_.entries.end() ? nullptr : &*found;
}

float Keys::number(std::string_view key, std::optional<float> otherwise) {
    const Key& what = *std::ranges::find(known_, key, &Key::name);
    const Entry* const entry = find(key);
    if (!otherwise) otherwise = what.otherwise;
    if (!entry && !otherwise) fail_section("lacks ", key, " (accepted: ", what.accepted(), ")");
    if (!entry) return *otherwise;
    if (!what.words.empty()) {
        const auto found = std::ranges::find(what.words, entry->value);
        if (found != what.words.end()) return static_cast<float>(found - what.words.begin());
        fail(*entry, "expected one of ", what.accepted(), ", not ", quoted(entry->value),
             did_you_mean(entry->value, {what.words.begin(), what.words.end()}));
    }
    const std::optional<double> value = number_within(entry->value, what.limits);
    if (what.whole && (!value || !parse<int>(entry->value)))
        fail(*entry, "expected a whole number within ", what.accepted(), ", not ", quoted(entry->value));
    if (!value) fail(*entry, expected_within(entry->value, what.limits));
    return static_cast<float>(*value);
}

void Keys::finish(std::string_view because) const {
    for (const Entry& entry : section_.entries)
        if (!asked_.contains(entry.key)) fail(entry, "has no meaning ", because, "; leave it out");
}

}  // namespace kalorfix::tool::station
