// SPDX-License-Identifier: MIT
#include "tools/point_options.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <tuple>

#include "tools/composition.h"
#include "tools/composition_sum.h"
#include "tools/gasdat/gas_file.h"
#include "tools/names.h"
#include "tools/states.h"
#include "tools/station/point.h"
#include "tools/text.h"

namespace kalorfix::tool {
namespace {

using metering::Measure;

constexpr double longest_mm = 10000.0;
constexpr double most_of_any_unit = 1e12;

double plain_number(std::string_view option, const std::string& text, const Limits& limits) {
    const std::optional<double> value = number_within(text, limits);
    if (!value) throw InputError(option, ": ", expected_within(text, limits));
    return *value;
}

double whole_number(std::string_view option, const std::string& text, const Limits& limits) {
    if (!parse<int>(text))
        throw InputError(option, ": expected a whole number within ", limits.text(), ", not ", quoted(text));
    return plain_number(option, text, limits);
}

template <class Table>
std::size_t word_of(std::string_view option, const std::string& text, const Table& table) {
    const auto found = std::ranges::find(table, text, [](const auto& row) { return row.word; });
    if (found != std::end(table)) return static_cast<std::size_t>(found - std::begin(table));
    throw InputError(option, " ", quoted(text), ": there are ",
                     joined(table, [](const auto& row) { return row.word; }));
}

std::pair<double, double> pair_of(std::string_view option, const std::string& text, const Limits& limits,
                                  auto&& number_of) {
    const std::vector<std::string_view> parts = split(text, ',');
    if (parts.size() != 2)
        throw InputError(option, " ", quoted(text),
                         ": expected two numbers, of the pipe and of the device, such as 7,32");
    return {number_of(option, std::string(parts[0]), limits), number_of(option, std::string(parts[1]), limits)};
}

// METHOD:FILE of a composition, or METHOD:RHO_C,N2,CO2.
metering::Gas read_gas(const PointRequest& request) {
    const std::size_t colon = std::min(request.gas.find(':'), request.gas.size());
    metering::Gas gas{.method = static_cast<short>(word_of("--gas", request.gas.substr(0, colon), methods))};
    const std::string rest = request.gas.substr(std::min(colon + 1, request.gas.size()));
    if (is_by_density(gas.method)) {
        const std::vector<std::string_view> parts = split(rest, ',');
        if (parts.size() != 3)
            throw InputError("--gas ", quoted(request.gas), ": expected ",
                             methods[static_cast<std::size_t>(gas.method)].word,
                             ":RHO,N2,CO2 with the density at standard conditions in kg/m3 and mol %, such as "
                             "gerg91:0.68,0.9,0.1");
        gas.rho_c = plain_number("--gas RHO", std::string(parts[0]), {0, 1, "kg/m3"});
        gas.x[nitrogen] = plain_number("--gas N2", std::string(parts[1]), {0, 100, "mol %"});
        gas.x[carbon_dioxide] = plain_number("--gas CO2", std::string(parts[2]), {0, 100, "mol %"});
        judge_contents(gas.rho_c, gas.x[nitrogen], gas.x[carbon_dioxide], "--gas " + request.gas);
    } else {
        if (rest.empty())
            throw InputError("--gas ", quoted(request.gas),
                             ": expected METHOD:FILE with a composition file, such as aga8:natural_gas.csv");
        const GivenComposition given = read_composition(rest);
        gas.volume_fractions = given.volume_fractions;
        gas.x = given.x;
        judge_sum(gas.x, gas.volume_fractions, {}, rest, "composition_sum = any in a station file insists");
    }
    if (!request.vapour.empty()) gas.vapour_kgm3 = plain_number("--vapour", request.vapour, {0, 1000, "kg/m3"});
    if (!request.heat.empty()) {
        if (gas.method != vnic) throw InputError("--heat: only vnic has a choice; leave it out");
        const std::size_t row = word_of("--heat", request.heat, heat_units);
        gas.heat_unit = static_cast<char>(row % 2);
        gas.heat_basis = static_cast<char>(row / 2);
    }
    if (!request.energy.empty() && request.energy != "lower" && request.energy != "higher")
        throw InputError("--energy ", quoted(request.energy),
                         ": there are lower and higher, the heats of combustion");
    gas.by_higher_heat = request.energy == "higher";
    return gas;
}

metering::HeatCarrier read_water(const PointRequest& request) {
    metering::HeatCarrier heat;
    if (!request.phase.empty())
        if (const std::size_t phase = word_of("--phase", request.phase, phases); phase != 0)
            heat.phase = static_cast<unsigned short>(phase);
    if (heat.phase && *heat.phase != KALORFIX_WET_STEAM && !request.x.empty())
        throw InputError("--x: has no meaning with --phase ", request.phase, "; leave it out");
    if (!request.x.empty()) heat.x = plain_number("--x", request.x, {0, 1, ""});
    return heat;
}

metering::GivenMedium read_given(const PointRequest& request) {
    if (request.rho.empty() || request.mu.empty())
        throw InputError(
            "--rho, --mu: give both, and for a gas --kappa, such as --rho 13.93 --mu 11.145uPas --kappa 1.308");
    constexpr double least_uPas =
        0.1;  // of no fluid that is metered: a number of Pa s without its unit lies below
    metering::GivenMedium given{read_value("--rho", request.rho, Measure::density, "kg/m3", 1e-9, 1e5),
                                read_value("--mu", request.mu, Measure::viscosity, "uPas", least_uPas, 1e12),
                                {},
                                {}};
    if (!request.kappa.empty()) given.kappa = plain_number("--kappa", request.kappa, {1.000001, 100, ""});
    if (!request.rho_c.empty()) {
        if (!given.kappa) throw InputError("--rho-c: is of a gas; give --kappa too");
        given.rho_c = read_value("--rho-c", request.rho_c, Measure::density, "kg/m3", 1e-9, 1e3);
    }
    return given;
}

struct Named {
    std::string_view name;
    bool given;
};

void refuse_beside(const std::vector<Named>& options, std::string_view reason) {
    for (const Named& one : options)
        if (one.given) throw InputError(one.name, ": has no meaning ", reason, "; leave it out");
}

metering::Medium read_medium(const PointRequest& r) {
    const bool given = !r.rho.empty() || !r.mu.empty() || !r.kappa.empty();
    if (int{given} + int{r.water} + int{!r.gas.empty()} != 1)
        throw InputError("the medium: give one of --gas METHOD:..., --water, or --rho, --mu and --kappa");
    const std::vector<Named> of_gas{
        {"--vapour", !r.vapour.empty()}, {"--heat", !r.heat.empty()}, {"--energy", !r.energy.empty()}};
    const std::vector<Named> of_water{{"--phase", !r.phase.empty()}, {"--x", !r.x.empty()}};
    if (r.gas.empty()) refuse_beside(of_gas, "without --gas");
    if (!r.water) refuse_beside(of_water, "without --water");
    if (!given) refuse_beside({{"--rho-c", !r.rho_c.empty()}}, "without --rho");
    if (given) return read_given(r);
    if (r.water) return read_water(r);
    return read_gas(r);
}

metering::Pipeline read_pipeline(const PointRequest& r) {
    metering::Pipeline pipe;
    if (r.device.empty())
        throw InputError("--device: give what measures the flow, such as orifice_flange, or a station file");
    pipe.device = static_cast<short>(word_of("--device", r.device, devices) + 1);
    if (station::is_meter(pipe.device))
        throw InputError("--device ", r.device, ": has no differential pressure");
    if (!r.metering_class.empty())
        pipe.metering_class = static_cast<char>(whole_number("--class", r.metering_class, {0, 1, ""}));
    if (r.materials.empty() == r.expansion.empty())
        throw InputError(
            "--materials, --expansion: give one of them: codes of pipe and device such as 7,32, or 1/degC");
    pipe.by_material = r.expansion.empty();
    std::tie(pipe.pipe_material, pipe.device_material) =
        pipe.by_material ? pair_of("--materials", r.materials, {1, 39, ""}, whole_number)
                         : pair_of("--expansion", r.expansion, {0, 1e-3, "1/degC"}, plain_number);
    if (r.D20.empty()) throw InputError("--D20: give the pipe at 20 degC, such as 400mm");
    pipe.D20_mm = read_value("--D20", r.D20, Measure::length, "mm", 1e-3, longest_mm);
    if (!r.roughness.empty())
        pipe.roughness_mm = read_value("--roughness", r.roughness, Measure::length, "mm", 0, 100);
    const bool orifice = station::is_orifice(pipe.device);
    if (!orifice)
        refuse_beside({{"--edge", !r.edge.empty()},
                       {"--interval", !r.interval.empty()},
                       {"--edge-at-end", r.edge_at_end}},
                      "with this device");
    if (orifice) {
        if (r.edge.empty())
            throw InputError("--edge: give the initial radius of the orifice edge, such as 0.05mm");
        pipe.edge_radius_mm = read_value("--edge", r.edge, Measure::length, "mm", 0, 10);
        pipe.interval_years =
            r.interval.empty() ? 1.0 : plain_number("--interval", r.interval, {0, 100, "years"});
        pipe.edge_at_end = r.edge_at_end;
    }
    const bool configured = pipe.device == station::configured_coefficient;
    if (configured != !r.alpha.empty())
        throw InputError(configured ? "--alpha: give the flow coefficient of this device"
                                    : "--alpha: has no meaning with this device; leave it out");
    if (configured) pipe.alpha_eps = plain_number("--alpha", r.alpha, {0, 100, ""});
    return pipe;
}

void refuse_options_beside_station(const PointRequest& r) {
    const auto set = [](const std::string& text) { return !text.empty(); };
    refuse_beside({{"--device", set(r.device)},
                   {"--D20", set(r.D20)},
                   {"--materials", set(r.materials)},
                   {"--expansion", set(r.expansion)},
                   {"--roughness", set(r.roughness)},
                   {"--edge", set(r.edge)},
                   {"--interval", set(r.interval)},
                   {"--alpha", set(r.alpha)},
                   {"--class", set(r.metering_class)},
                   {"--edge-at-end", r.edge_at_end},
                   {"--gas", set(r.gas)},
                   {"--vapour", set(r.vapour)},
                   {"--heat", set(r.heat)},
                   {"--energy", set(r.energy)},
                   {"--water", r.water},
                   {"--phase", set(r.phase)},
                   {"--x", set(r.x)},
                   {"--rho", set(r.rho)},
                   {"--mu", set(r.mu)},
                   {"--kappa", set(r.kappa)},
                   {"--rho-c", set(r.rho_c)}},
                  "beside a station file, which describes the point");
}

// The numbers of a range without their unit, which may stand behind one or each of them.
std::pair<std::string, const metering::Unit*> numbers_of(std::string_view option, const std::string& text,
                                                         Measure measure, std::string_view otherwise) {
    const auto fail = [&] {
        return InputError(
            option, " ", quoted(text),
            ": expected a number or a range such as 1:40:1, with a unit: ", metering::unit_words(measure));
    };
    std::string numbers;
    std::string_view word;
    for (const std::string_view part : split(text, ':')) {
        double value = 0.0;
        const auto [stop, error] = std::from_chars(part.data(), part.data() + part.size(), value);
        const auto length = static_cast<std::size_t>(stop - part.data());
        const std::string_view own = trimmed(part.substr(length));
        if (error != std::errc() || !(std::fabs(value) <= most_of_any_unit) ||
            (!own.empty() && !word.empty() && own != word))
            throw fail();
        if (!own.empty()) word = own;
        numbers += (numbers.empty() ? "" : ":") + std::string(part.substr(0, length));
    }
    const metering::Unit* const found = metering::find_unit(word.empty() ? otherwise : word, measure);
    if (!found) throw fail();
    return {numbers, found};
}

// What is typed is absolute, whatever the readings of the station are.
void warn_of_gauge(const std::vector<DescribedPoint>& points) {
    for (const DescribedPoint& one : points)
        if (one.channel && one.channel->barometer_Pa)
            fmt::print(
                stderr,
                "kalorfix: warning: {} has barometer_kPa, for readings of gauge pressure; --p is absolute "
                "all the same\n",
                one.name);
}

}  // namespace

std::vector<double> read_values(std::string_view option, const std::string& text, Measure measure,
                                std::string_view otherwise, const metering::Unit** unit) {
    const auto [numbers, found] = numbers_of(option, text, measure, otherwise);
    if (unit) *unit = found;
    const Range range = parse_range(option, numbers, {-most_of_any_unit, most_of_any_unit, ""});
    std::vector<double> values;
    for (std::size_t k = 0; k < range.count; ++k) values.push_back(found->factor * range[k] + found->offset);
    return values;
}

std::pair<double, double> read_span(std::string_view option, const std::string& text, Measure measure,
                                    std::string_view otherwise) {
    const auto [numbers, unit] = numbers_of(option, text, measure, otherwise);
    const std::vector<std::string_view> parts = split(numbers, ':');
    const double low = unit->factor * *number(parts.front()) + unit->offset;
    const double high = unit->factor * *number(parts.back()) + unit->offset;
    if (parts.size() > 2 || !(low <= high))
        throw InputError(option, " ", quoted(text), ": expected low:high, such as 0:40");
    return {low, high};
}

double read_value(std::string_view option, const std::string& text, Measure measure, std::string_view otherwise,
                  double low, double high) {
    const auto value = metering::read_quantity(text, measure, otherwise);
    if (!value || !(low <= value->value && value->value <= high))
        throw InputError(option, " ", quoted(text), ": expected a number with a unit (",
                         metering::unit_words(measure), ") within ",
                         fmt::format("{:g}..{:g} {}", low, high, otherwise));
    return value->value;
}

void require_gas_data(const Installation& files, const metering::Point& point) {
    const auto* const gas = std::get_if<metering::Gas>(&point.medium);
    if (gas && !is_by_density(gas->method)) gasdat::require_gas_data(files.gas_data);
}

std::vector<DescribedPoint> read_points(const host::Library& library, const PointRequest& r) {
    std::vector<DescribedPoint> all;
    if (r.station.empty()) {
        all.push_back({{read_pipeline(r), {}, read_medium(r)}, {}, !r.d20.empty() && r.d20 != "?", {}});
    } else {
        refuse_options_beside_station(r);
        const station::Station station = station::read_station(library, r.station);
        for (const station::Channel& channel : station.channels)
            if (r.channel.empty() || channel.name == r.channel)
                all.push_back({station::point_of(channel), channel.name, r.d20 != "?", channel});
        if (all.empty())
            throw InputError(r.station, ": has no channel ", quoted(r.channel), "; there are ",
                             joined(station.channels, &station::Channel::name));
    }
    if (all.size() > 1 && !r.d20.empty())
        throw InputError("--d20: is of one channel; say which, there are ", joined(all, &DescribedPoint::name));
    warn_of_gauge(all);
    for (DescribedPoint& one : all)
        if (one.bore_given && !r.d20.empty())
            one.point.pipe.d20_mm = read_value("--d20", r.d20, Measure::length, "mm", 0, longest_mm);
    return all;
}

DescribedPoint read_point(const host::Library& library, const PointRequest& r) {
    const std::vector<DescribedPoint> all = read_points(library, r);
    if (all.size() > 1)
        throw InputError(r.station, ": say which channel; there are ", joined(all, &DescribedPoint::name));
    if (station::is_meter(all.front().point.pipe.device))
        throw InputError(r.station, ": [", all.front().name, "] is a meter: it has no differential pressure");
    return all.front();
}

std::vector<Option> point_options(PointRequest& r) {
    return {
        {"STATION", "STATION.ini", "station file that describes the point, in place of\nthe options below",
         &r.station},
        {"CHANNEL", "CHANNEL", "its channel, such as 'GAS 2'; may be left out\nwhere there is but one",
         &r.channel},
        {"--device", "DEVICE",
         "what measures, such as orifice_flange, nozzle_isa1932,\nventuri_cast (kalorfix run --help has all)",
         &r.device},
        {"--D20", "D", "pipe at 20 degC", &r.D20},
        {"--d20", "d", "device at 20 degC; ? or left out: to be found", &r.d20},
        {"--materials", "A,B", "codes 1..39 of pipe and device, GOST 8.586.1 annex G", &r.materials},
        {"--expansion", "A,B", "in place of these: linear expansion, 1/degC", &r.expansion},
        {"--roughness", "R", "equivalent uniform roughness of the pipe (0)", &r.roughness},
        {"--edge", "R", "orifice plates: initial radius of the edge", &r.edge},
        {"--interval", "YEARS", "orifice plates: between checks (1)", &r.interval},
        {"--edge-at-end", "", "radius at the end of the interval, not its mean", &r.edge_at_end},
        {"--alpha", "A", "configured_coefficient: its flow coefficient", &r.alpha},
        {"--class", "N", "metering class: 1 (default) solves to 1e-5, 0 to 1e-3", &r.metering_class},
        {"--gas", "METHOD:...",
         "aga8:FILE, vnic:FILE (composition file), or\nnx19:RHO,N2,CO2, gerg91:RHO,N2,CO2 (kg/m3, mol %)",
         &r.gas},
        {"--vapour", "RHO", "gas: water vapour in the working cubic metre, kg (0)", &r.vapour},
        {"--heat", "BASIS", "vnic: heats in kJ0, kcal0, kJ20 (default), kcal20", &r.heat},
        {"--energy", "HEAT", "gas: energy by the lower (default) or higher heat", &r.energy},
        {"--water", "", "water and steam", &r.water},
        {"--phase", "PHASE", "water, steam, wet_steam; from_state by default", &r.phase},
        {"--x", "X", "wet steam: share of the single phase (0)", &r.x},
        {"--rho", "RHO", "in place of --gas and --water: density at the device", &r.rho},
        {"--mu", "MU", "and its dynamic viscosity", &r.mu},
        {"--kappa", "K", "and isentropic exponent; without it a liquid", &r.kappa},
        {"--rho-c", "RHO", "and density at standard conditions", &r.rho_c}};
}

}  // namespace kalorfix::tool
