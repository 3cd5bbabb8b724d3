#include "tools/station/station.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <filesystem>

#include "tools/component_names.h"
#include "tools/composition_file.h"
#include "tools/range.h"
#include "tools/station/station_keys.h"

namespace kalorfix::tool::station {
namespace {

constexpr std::size_t nitrogen = 10, carbon_dioxide = 11;
constexpr int highest_channel = 20000;
constexpr short aga8 = 2, vnic = 3;

constexpr std::array<Integrator, 4> gas_integrators{{{"mass", "t", "t/h"},
                                                     {"volume", "m3", "m3/h"},
                                                     {"standard_volume", "m3", "m3/h"},
                                                     {"energy", "GJ", "GJ/h"}}};
constexpr std::array<Integrator, 3> heat_integrators{
    {{"mass", "t", "t/h"}, {"volume", "m3", "m3/h"}, {"heat", "GJ", "GJ/h"}}};

constexpr Choice devices[] = {{"orifice_corner", 1},
                              {"orifice_d_d2", 2},
                              {"orifice_flange", 3},
                              {"nozzle_isa1932", 4},
                              {"nozzle_long_radius", 5},
                              {"venturi_nozzle", 6},
                              {"venturi_cast", 7},
                              {"venturi_machined", 8},
                              {"venturi_welded", 9},
                              {"averaging_10", 10},
                              {"averaging_11", 11},
                              {"averaging_12", 12},
                              {"averaging_13", 13},
                              {"averaging_14", 14},
                              {"averaging_15", 15},
                              {"averaging_16", 16},
                              {"averaging_17", 17},
                              {"averaging_18", 18},
                              {"configured_coefficient", configured_coefficient},
                              {"meter_mass", meter_mass},
                              {"meter_volume", meter_volume},
                              {"meter_standard_volume", meter_standard_volume},
                              {"external", external_flow}};

constexpr Limits percent{0.0, 100.0, "mol %"};
constexpr Limits millimetres{0.0, 10000.0, "mm"};

std::string flow_unit_in_name(std::string_view unit) {
    std::string name(unit);
    std::replace(name.begin(), name.end(), '/', '_');
    return name;
}

std::string substitute_key(const Integrator& one) {
    return fmt::format("{}_substitute_{}", one.name, flow_unit_in_name(one.flow_unit));
}

std::string exponent_key(const Integrator& one) { return fmt::format("{}_exponent", one.name); }

std::string component_key(std::size_t i) { return fmt::format("x_{}_pct", component_names[i]); }

// Every key that a section of this medium may hold.
std::vector<std::string> known_keys(Medium medium) {
    std::vector<std::string> keys{"device",
                                  "metering_class",
                                  "pipe_material",
                                  "device_material",
                                  "pipe_expansion_1_C",
                                  "device_expansion_1_C",
                                  "D20_mm",
                                  "d20_mm",
                                  "roughness_mm",
                                  "edge_radius_mm",
                                  "edge_radius",
                                  "check_interval_years",
                                  "alpha_eps",
                                  "column_height_m",
                                  "column_density_kg_m3"};
    if (medium == Medium::gas) {
        keys.insert(keys.end(), {"method", "rho_c_kg_m3", "nitrogen_pct", "carbon_dioxide_pct", "composition"});
        for (std::size_t i = 0; i < component_names.size(); ++i) keys.push_back(component_key(i));
        keys.insert(keys.end(), {"vapour_kg_m3", "energy_by", "heat_unit", "heat_basis_C"});
    } else {
        keys.insert(keys.end(), {"phase", "x", "saturation_tolerance_Pa", "saturation_tolerance_K"});
    }
    for (std::size_t k = 0; k < integrator_count(medium); ++k) {
        keys.push_back(exponent_key(integrator(medium, k)));
        keys.push_back(substitute_key(integrator(medium, k)));
    }
    return keys;
}

void read_expansion(Keys& keys, Channel& c) {
    constexpr Limits code{1.0, 39.0, ""};
    constexpr Limits expansion{0.0, 1e-3, "1/degC"};
    c.by_material = !keys.has("pipe_expansion_1_C") && !keys.has("device_expansion_1_C");
    if (!c.by_material) {
        c.pipe_material = keys.number("pipe_expansion_1_C", expansion);
        c.device_material = keys.number("device_expansion_1_C", expansion);
        return;
    }
    for (const char* const key : {"pipe_material", "device_material"})
        if (keys.has(key)) keys.whole(key, 1, 39, 0);
    c.pipe_material = keys.number("pipe_material", code);
    c.device_material = keys.number("device_material", code);
}

void read_pipeline(Keys& keys, Channel& c) {
    c.device = keys.choice("device", devices);
    c.metering_class = static_cast<char>(keys.whole("metering_class", 0, 1, 1));
    if (c.medium == Medium::heat_carrier && c.device == meter_standard_volume)
        keys.fail(*keys.find("device"), "meters standard volume, which a heat carrier has not");
    if (is_meter(c.device)) {
        c.by_material = false;
        return;
    }
    read_expansion(keys, c);
    c.D20_mm = keys.number("D20_mm", millimetres);
    c.d20_mm = keys.number("d20_mm", millimetres);
    c.roughness_mm = keys.number("roughness_mm", {0.0, 100.0, "mm"});
    if (is_orifice(c.device)) {
        constexpr Choice radius[] = {{"mean", 0}, {"at_end", 1}};
        c.edge_radius_mm = keys.number("edge_radius_mm", {0.0, 10.0, "mm"});
        c.interval_years = keys.number("check_interval_years", {0.0, 100.0, "years"});
        c.edge_at_end = keys.choice("edge_radius", radius, 0) == 1;
    }
    if (c.device == configured_coefficient) c.alpha_eps = keys.number("alpha_eps", {0.0, 100.0, ""});
}

void read_composition_keys(Keys& keys, const std::string& station_file, Gas& gas) {
    const Entry* const file = keys.find("composition");
    bool any = false;
    for (std::size_t i = 0; i < component_names.size(); ++i) {
        const std::string key = component_key(i);
        any = any || keys.has(key);
        gas.x[i] = keys.number(key, percent, 0.0F);
        if (file && keys.has(key))
            keys.fail(*keys.find(key), "the composition stands in a file already; leave one out");
    }
    if (!file) {
        if (!any)
            keys.fail(fmt::format("lacks composition (a file) or the keys {} to {} (accepted: 0..100 mol %)",
                                  component_key(0), component_key(component_names.size() - 1)));
        if (std::all_of(gas.x.begin(), gas.x.end(), [](float x) { return x == 0.0F; }))
            keys.fail("has an empty composition; give the components in mol %");
        return;
    }
    const std::filesystem::path path = std::filesystem::path(station_file).parent_path() / file->value;
    std::error_code failed;
    if (!std::filesystem::is_regular_file(path, failed))
        keys.fail(*file, fmt::format("there is no composition file {}", path.string()));
    const GivenComposition given = read_composition(path.string());
    gas.volume_fractions = given.volume_fractions;
    std::transform(given.x.begin(), given.x.end(), gas.x.begin(),
                   [](double x) { return static_cast<float>(x); });
    if (gas.volume_fractions && gas.method == vnic)
        keys.fail(*file, "VNIC SMV takes its heats from mole per cent; give component,mole_percent");
}

void read_gas(Keys& keys, const std::string& station_file, Gas& gas) {
    constexpr Choice methods[] = {{"nx19", 0}, {"gerg91", 1}, {"aga8", aga8}, {"vnic", vnic}};
    constexpr Choice heats[] = {{"lower_heat", 0}, {"higher_heat", 1}};
    gas.method = keys.choice("method", methods);
    if (is_by_density(gas.method)) {
        gas.rho_c = keys.number("rho_c_kg_m3", {0.0, 1.0, "kg/m3"});
        gas.x[nitrogen] = keys.number("nitrogen_pct", percent);
        gas.x[carbon_dioxide] = keys.number("carbon_dioxide_pct", percent);
    } else {
        read_composition_keys(keys, station_file, gas);
    }
    if (gas.method == vnic) {
        constexpr Choice units[] = {{"kJ", 0}, {"kcal", 1}};
        constexpr Choice bases[] = {{"0", 0}, {"20", 1}};
        gas.heat_unit = static_cast<char>(keys.choice("heat_unit", units, 0));
        gas.heat_basis = static_cast<char>(keys.choice("heat_basis_C", bases, 1));
    }
    gas.vapour = keys.number("vapour_kg_m3", {0.0, 1000.0, "kg/m3"}, 0.0F);
    gas.by_higher_heat = keys.choice("energy_by", heats, 0) == 1;
}

void read_heat_carrier(Keys& keys, HeatCarrier& heat) {
    constexpr Choice phases[] = {{"from_state", 0}, {"water", 1}, {"steam", 2}, {"wet_steam", 3}};
    constexpr Limits share{0.0, 1.0, ""};
    const short phase = keys.choice("phase", phases);
    if (phase != 0) heat.phase = static_cast<unsigned short>(phase);
    if (phase == 3)
        heat.x = keys.number("x", share);
    else if (phase == 0)
        heat.x = keys.number("x", share, 0.0F);
    heat.tolerance_Pa = keys.number("saturation_tolerance_Pa", {0.0, 1e6, "Pa"}, heat.tolerance_Pa);
    heat.tolerance_K = keys.number("saturation_tolerance_K", {0.0, 100.0, "K"}, heat.tolerance_K);
}

void read_accounting(Keys& keys, Channel& c) {
    constexpr short most_decades = 9;
    for (std::size_t k = 0; k < integrator_count(c.medium); ++k) {
        const Integrator& one = integrator(c.medium, k);
        c.accounting[k].exponent = keys.whole(exponent_key(one), -most_decades, most_decades, 0);
        c.accounting[k].substitute = keys.number(substitute_key(one), {0.0, 1e9, one.flow_unit}, 0.0F);
    }
}

Channel read_channel(const std::string& file, const Section& section) {
    const auto refuse = [&] {
        throw InputError{fmt::format("{}:{}: {}: expected [GAS N] or [HEAT N] with N within 1..{}", file,
                                     section.line, section.title(), highest_channel)};
    };
    int number = 0;
    if (section.words.size() != 2 || (section.words[0] != "GAS" && section.words[0] != "HEAT")) refuse();
    const std::string& digits = section.words[1];
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    if (error != std::errc() || stop != end || number < 1 || number > highest_channel || digits[0] == '0')
        refuse();

    Channel c{};
    c.medium = section.words[0] == "GAS" ? Medium::gas : Medium::heat_carrier;
    c.number = number;
    c.name = section.words[0] + " " + digits;
    Keys keys(file, section, known_keys(c.medium));
    read_pipeline(keys, c);
    c.column_height_m = keys.number("column_height_m", {-1000.0, 1000.0, "m"}, 0.0F);
    c.column_density = keys.number("column_density_kg_m3", {0.0, 20000.0, "kg/m3"}, 0.0F);
    if (c.medium == Medium::gas)
        read_gas(keys, file, c.gas);
    else
        read_heat_carrier(keys, c.heat);
    read_accounting(keys, c);
    keys.finish(c.medium == Medium::gas ? "with this device and this method"
                                        : "with this device and this phase");
    return c;
}

}  // namespace

std::size_t integrator_count(Medium medium) {
    return medium == Medium::gas ? gas_integrators.size() : heat_integrators.size();
}

const Integrator& integrator(Medium medium, std::size_t k) {
    return medium == Medium::gas ? gas_integrators[k] : heat_integrators[k];
}

Station read_station(const host::Library& library, const std::string& file) {
    Station station{file, {}};
    for (const Section& section : read_sections(library, file))
        station.channels.push_back(read_channel(file, section));
    if (station.channels.empty())
        throw InputError{
            fmt::format("{}: holds no channel; a section [GAS 1] or [HEAT 1] describes one", file)};
    return station;
}

}  // namespace kalorfix::tool::station
