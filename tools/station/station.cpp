// SPDX-License-Identifier: MIT
#include "tools/station/station.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "tools/composition.h"
#include "tools/composition_sum.h"
#include "tools/station/instrument_keys.h"
#include "tools/station/station_keys.h"
#include "tools/station/time_text.h"

namespace kalorfix::tool::station {
namespace {

constexpr int highest_channel = 20000;

constexpr std::array<Integrator, 4> gas_integrators{{{"mass", "t", "t/h"},
                                                     {"volume", "m3", "m3/h"},
                                                     {"standard_volume", "m3", "m3/h"},
                                                     {"energy", "GJ", "GJ/h"}}};
constexpr std::array<Integrator, 3> heat_integrators{
    {{"mass", "t", "t/h"}, {"volume", "m3", "m3/h"}, {"heat", "GJ", "GJ/h"}}};

void read_pipeline(Keys& keys, Channel& c) {
    c.device = static_cast<short>(keys.choice("device") + 1);
    c.metering_class = static_cast<char>(keys.number("metering_class"));
    if (!c.is_gas() && c.device == meter_standard_volume)
        keys.fail(*keys.find("device"), "meters standard volume, which a heat carrier has not");
    c.by_material = !is_meter(c.device) && !keys.has("pipe_expansion_1_C") && !keys.has("device_expansion_1_C");
    if (is_meter(c.device)) return;
    c.pipe_material = keys.number(c.by_material ? "pipe_material" : "pipe_expansion_1_C");
    c.device_material = keys.number(c.by_material ? "device_material" : "device_expansion_1_C");
    c.D20_mm = keys.number("D20_mm");
    c.d20_mm = keys.number("d20_mm");
    c.roughness_mm = keys.number("roughness_mm");
    if (is_orifice(c.device)) {
        c.edge_radius_mm = keys.number("edge_radius_mm");
        c.interval_years = keys.number("check_interval_years");
        c.edge_at_end = keys.choice("edge_radius") == 1;
    }
    if (c.device == configured_coefficient) c.alpha_eps = keys.number("alpha_eps");
    constexpr float Pa_per_kPa = 1000.0F;
    if (keys.has("cut_off_kPa")) c.cut_off_Pa = keys.number("cut_off_kPa") * Pa_per_kPa;
}

void read_composition_file(Keys& keys, const Entry& entry, const std::string& station_file, Gas& gas) {
    const std::filesystem::path path = std::filesystem::path(station_file).parent_path() / entry.value;
    std::error_code failed;
    if (!std::filesystem::is_regular_file(path, failed))
        keys.fail(entry, "there is no composition file ", path.string());
    gas.composition_file = path.string();
    const GivenComposition given = read_composition(gas.composition_file);
    gas.volume_fractions = given.volume_fractions;
    std::ranges::transform(given.x, gas.x.begin(), [](double x) { return static_cast<float>(x); });
    if (gas.volume_fractions && gas.method == vnic)
        keys.fail(entry, "VNIC SMV takes its heats from mole per cent; give component,mole_percent");
}

void read_composition_keys(Keys& keys, const std::string& station_file, Gas& gas) {
    const Entry* const file = keys.find("composition");
    bool any = false;
    for (std::size_t i = 0; i < components.size(); ++i) {
        const std::string key = component_key(i);
        any = any || keys.has(key);
        gas.x[i] = keys.number(key);
        if (file && keys.has(key))
            keys.fail(*keys.find(key), "the composition stands in a file already; leave one out");
    }
    if (file) return read_composition_file(keys, *file, station_file, gas);
    if (!any)
        keys.fail_section("lacks composition (a file) or the keys ", component_key(0), " to ",
                          component_key(components.size() - 1), " (accepted: 0..100 mol %)");
    if (std::ranges::all_of(gas.x, [](float x) { return x == 0.0F; }))
        keys.fail_section("has an empty composition; give the components in mol %");
}

void judge_composition(Keys& keys, const std::string& station_file, Gas& gas) {
    const bool from_file = keys.has("composition");
    const SumRule rule{keys.choice("composition_sum") == 1, keys.choice("normalise") == 1};
    std::array<double, components.size()> x{};
    std::ranges::copy(gas.x, x.begin());
    gas.normalised = rule.normalise;
    gas.sum_pct = judge_sum(x, gas.volume_fractions, rule,
                            from_file ? keys.find("composition")->value : station_file + ": " + keys.title(),
                            "composition_sum = any or normalise = yes insists");
    if (gas.volume_fractions && gas.method == aga8) warn_of_heats(keys.find("composition")->value);
    if (rule.normalise)
        std::ranges::transform(x, gas.x.begin(), [](double one) { return static_cast<float>(one); });
}

void read_gas(Keys& keys, const std::string& station_file, Gas& gas) {
    gas.method = keys.choice("method");
    if (is_by_density(gas.method)) {
        gas.rho_c = keys.number("rho_c_kg_m3");
        gas.x[nitrogen] = keys.number("nitrogen_pct");
        gas.x[carbon_dioxide] = keys.number("carbon_dioxide_pct");
        judge_contents(static_cast<double>(gas.rho_c), static_cast<double>(gas.x[nitrogen]),
                       static_cast<double>(gas.x[carbon_dioxide]), station_file + ": " + keys.title());
    } else {
        read_composition_keys(keys, station_file, gas);
        judge_composition(keys, station_file, gas);
    }
    if (gas.method == aga8) gas.own_contents = keys.choice("contents") == 0;
    if (gas.method == vnic) {
        gas.heat_unit = static_cast<char>(keys.choice("heat_unit"));
        gas.heat_basis = static_cast<char>(keys.choice("heat_basis_C"));
    }
    gas.vapour = keys.number("vapour_kg_m3");
    gas.by_higher_heat = keys.choice("energy_by") == 1;
}

void read_heat_carrier(Keys& keys, HeatCarrier& heat) {
    constexpr short from_state = 0, wet_steam = 3;
    const short phase = keys.choice("phase");
    if (phase != from_state) heat.phase = static_cast<unsigned short>(phase);
    if (phase == wet_steam) heat.x = keys.number("x");
    if (phase == from_state) heat.x = keys.number("x", 0.0F);
    heat.tolerance_Pa = keys.number("saturation_tolerance_Pa");
    heat.tolerance_K = keys.number("saturation_tolerance_K");
}

void read_instruments(Keys& keys, Channel& c) {
    for (const InstrumentKey& one : instrument_keys)
        if (one.is_of(c.medium) && keys.has(one.name))
            one.set(c.instruments, static_cast<double>(keys.number(one.name)));
    if (const std::string fault = instrument_fault(c.instruments); !fault.empty()) keys.fail_section(fault);
}

Channel read_channel(const std::string& file, const Section& section) {
    const bool named = section.words.size() == 2 && (section.words[0] == "GAS" || section.words[0] == "HEAT");
    const std::optional<int> number = named ? parse<int>(section.words[1]) : std::nullopt;
    if (!number || *number < 1 || *number > highest_channel || section.words[1][0] == '0')
        throw InputError(file, ":", section.line, ": ", section.title(),
                         ": expected [GAS N] or [HEAT N] with N within 1..", highest_channel);
    Channel c{};
    c.medium = section.words[0] == "GAS" ? Medium::gas : Medium::heat_carrier;
    c.number = *number;
    c.name = joined(section.words, {}, " ");
    Keys keys(file, section, c.medium);
    read_pipeline(keys, c);
    c.column_height_m = keys.number("column_height_m");
    c.column_density = keys.number("column_density_kg_m3");
    if (const Entry* const entry = keys.find("barometer_kPa")) {
        static_cast<void>(keys.number("barometer_kPa"));
        c.barometer_Pa = 1e3 * tool::number(entry->value).value_or(0.0);
    }
    c.longest_step_s = static_cast<double>(keys.number("longest_step_s"));
    c.contract_hour = static_cast<int>(keys.number("contract_hour"));
    if (c.is_gas())
        read_gas(keys, file, c.gas);
    else
        read_heat_carrier(keys, c.heat);
    for (std::size_t k = 0; k < integrator_count(c.medium); ++k) {
        const Integrator& one = integrator(c.medium, k);
        c.accounting[k].exponent = static_cast<short>(keys.number(exponent_key(one)));
        c.accounting[k].substitute = keys.number(substitute_key(one));
    }
    if (!is_meter(c.device)) read_instruments(keys, c);
    keys.finish(c.is_gas() ? "with this device and this method" : "with this device and this phase");
    return c;
}

// A colon begins a comment in a station file, so that the reader hands +05:30 out as +05: the first word as it stands there.
std::string word_as_written(const std::string& file, const Entry& entry) {
    Lines lines(file, "this station file");
    std::string_view line;
    while (lines.number() < static_cast<std::uint64_t>(entry.line) && lines.next(line)) {
    }
    const std::vector<std::string_view> behind = words(line.substr(std::min(line.find('=') + 1, line.size())));
    std::string word(behind.empty() ? "" : behind.front());
    if (word.ends_with(':')) word.pop_back();
    return word;
}

void read_station_keys(const std::string& file, const Section& section, Station& station) {
    Keys keys(file, section, std::nullopt);
    if (const Entry* const zone = keys.find("zone")) {
        const std::string written = word_as_written(file, *zone);
        station.zone_s = parse_offset(written);
        if (!station.zone_s)
            keys.fail(*zone, "expected an offset from UTC such as +03:00, not ", tool::quoted(written));
    }
    keys.finish("here");
}

// The lowest number that no gas channel has leaves the contents for AGA8-92DC.
void add_contents_channel(Station& station) {
    const auto by_aga8 = [](const Channel& c) { return c.is_gas() && c.gas.method == aga8; };
    const auto own = [&](const Channel& c) { return by_aga8(c) && c.gas.own_contents; };
    const auto as_left = [&](const Channel& c) { return by_aga8(c) && !c.gas.own_contents; };
    const auto first = std::ranges::find_if(station.channels, own);
    if (first == station.channels.end()) return;
    if (const auto other = std::ranges::find_if(station.channels, as_left); other != station.channels.end())
        throw InputError(station.file, ": [", other->name,
                         "] contents: as_left holds for all channels by aga8, and ", first->name, " has own");
    std::vector<bool> taken(highest_channel + 1);
    for (const Channel& c : station.channels)
        if (c.is_gas()) taken[static_cast<std::size_t>(c.number)] = true;
    const auto free = std::find(taken.begin() + 1, taken.end(), false);
    if (free == taken.end())
        throw InputError(station.file, ": contents: own needs a gas channel that is not in use; give as_left");
    for (Channel& c : station.channels)
        if (own(c)) c.contents_channel = static_cast<int>(free - taken.begin());
}

}  // namespace

std::size_t integrator_count(Medium medium) {
    return medium == Medium::gas ? gas_integrators.size() : heat_integrators.size();
}

const Integrator& integrator(Medium medium, std::size_t k) {
    return medium == Medium::gas ? gas_integrators[k] : heat_integrators[k];
}

Station read_station(const host::Library& library, const std::string& file) {
    Station station{file, {}, {}};
    for (const Section& section : read_sections(library, file)) {
        if (section.title() == "[STATION]")
            read_station_keys(file, section, station);
        else
            station.channels.push_back(read_channel(file, section));
    }
    if (station.channels.empty())
        throw InputError(file, ": holds no channel; a section [GAS 1] or [HEAT 1] describes one");
    add_contents_channel(station);
    return station;
}

}  // namespace kalorfix::tool::station
