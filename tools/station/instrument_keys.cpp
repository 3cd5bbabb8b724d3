// SPDX-License-Identifier: MIT
#include "tools/station/instrument_keys.h"

#include <algorithm>
#include <iterator>

namespace kalorfix::tool::station {
namespace {

using metering::Instruments;
using Place = std::optional<double>&;

constexpr Limits percent{0.0, 100.0, "%"}, mol_percent{0.0, 100.0, "mol %"};

template <metering::Transmitter Instruments::*Which, std::optional<double> metering::Transmitter::*Part>
Place of_transmitter(Instruments& all) {
    return all.*Which.*Part;
}
template <std::optional<double> Instruments::*Part>
Place plain(Instruments& all) {
    return all.*Part;
}

using T = metering::Transmitter;
using I = Instruments;
constexpr auto gas = Medium::gas, heat = Medium::heat_carrier;

}  // namespace

// clang-format off
constexpr std::array<InstrumentKey, instrument_key_count> instrument_keys{{
    {"dp_range_kPa", "upper end of the transmitter of dp", {0, 1e5, "kPa"}, 1e3, of_transmitter<&I::dp, &T::range>},
    {"dp_class_pct", "its class, of the range", percent, 1, of_transmitter<&I::dp, &T::class_pct>},
    {"dp_error_kPa", "in place of the class: an error", {0, 1e5, "kPa"}, 1e3, of_transmitter<&I::dp, &T::error>},
    {"p_range_MPa", "the same of p", {0, 1e3, "MPa"}, 1e6, of_transmitter<&I::p, &T::range>},
    {"p_class_pct", "its class", percent, 1, of_transmitter<&I::p, &T::class_pct>},
    {"p_error_MPa", "its error", {0, 1e3, "MPa"}, 1e6, of_transmitter<&I::p, &T::error>},
    {"t_range_K", "span of the thermometer", {0, 2000, "K"}, 1, of_transmitter<&I::t, &T::range>},
    {"t_class_pct", "its class, of the span", percent, 1, of_transmitter<&I::t, &T::class_pct>},
    {"t_error_K", "in place of the class: an error", {0, 100, "K"}, 1, of_transmitter<&I::t, &T::error>},
    {"D20_uncertainty_pct", "of the pipe at 20 degC", percent, 1, plain<&I::D_pct>},
    {"d20_uncertainty_pct", "of the device at 20 degC", percent, 1, plain<&I::d_pct>},
    {"C_uncertainty_pct", "of the discharge or flow coefficient; without it that of ISO 5167, where it has one", percent, 1, plain<&I::C_pct>},
    {"epsilon_uncertainty_pct", "the same of the expansibility factor", percent, 1, plain<&I::epsilon_pct>},
    {"K_uncertainty_pct", "gas: of K, by its method", percent, 1, plain<&I::K_pct>, gas},
    {"rho_c_uncertainty_pct", "gas: of the density at standard conditions, measured or by the formula from a composition", percent, 1, plain<&I::rho_c_pct>, gas},
    {"composition_uncertainty_mol_pct", "gas: of each component but the largest, nx19 and gerg91: of nitrogen and carbon dioxide", mol_percent, 1, plain<&I::x_mol_pct>, gas},
    {"composition_uncertainty_pct", "gas: of each component, of its share; added to that", percent, 1, plain<&I::x_rel_pct>, gas},
    {"vapour_uncertainty_pct", "gas: of the water vapour", percent, 1, plain<&I::vapour_pct>, gas},
    {"rho_uncertainty_pct", "water and steam: of the density", percent, 1, plain<&I::rho_pct>, heat},
    {"heat_uncertainty_pct", "of the heat of combustion, gas", percent, 1, plain<&I::heat_pct>, gas},
    {"h_uncertainty_pct", "of the enthalpy, water and steam", percent, 1, plain<&I::heat_pct>, heat},
}};
// clang-format on

std::string instrument_fault(const Instruments& all) {
    const std::pair<const metering::Transmitter&, std::string> transmitters[] = {
        {all.dp, "dp_range_kPa"}, {all.p, "p_range_MPa"}, {all.t, "t_range_K"}};
    for (const auto& [one, range] : transmitters) {
        const std::string name = range.substr(0, range.find('_'));
        if (one.class_pct && one.error) return name + "_class_pct: stands beside an error; leave one out";
        if (one.class_pct && !one.range)
            return name + "_class_pct: needs " + range + ", of which it is a share";
    }
    return {};
}

void state_instruments(std::string_view option, const std::string& text, std::optional<Medium> medium,
                       Instruments& all) {
    const auto known = [&](const InstrumentKey& one) { return !medium || one.is_of(*medium); };
    Instruments given;
    for (const std::string_view part : split(text, ',')) {
        const std::size_t equals = std::min(part.find('='), part.size());
        const std::string_view name = trimmed(part.substr(0, equals));
        const auto row = std::ranges::find_if(
            instrument_keys, [&](const InstrumentKey& one) { return known(one) && one.name == name; });
        if (row == instrument_keys.end()) {
            std::vector<InstrumentKey> own;
            std::ranges::copy_if(instrument_keys, std::back_inserter(own), known);
            throw InputError(option, " ", quoted(part), ": expected KEY=VALUE,...; the keys are ",
                             joined(own, &InstrumentKey::name));
        }
        if (row->place(given)) throw InputError(option, " ", name, ": stands there for the second time");
        const std::string_view value = trimmed(part.substr(std::min(equals + 1, part.size())));
        const std::optional<double> number = number_within(value, row->limits);
        if (!number) throw InputError(option, " ", name, ": ", expected_within(value, row->limits));
        row->set(given, *number);
    }
    for (const auto which : {&Instruments::dp, &Instruments::p, &Instruments::t}) {
        if ((given.*which).error && !(given.*which).class_pct) (all.*which).class_pct.reset();
        if ((given.*which).class_pct && !(given.*which).error) (all.*which).error.reset();
    }
    for (const InstrumentKey& one : instrument_keys)
        if (one.place(given)) one.place(all) = one.place(given);
    if (const std::string fault = instrument_fault(all); !fault.empty()) throw InputError(option, " ", fault);
}

}  // namespace kalorfix::tool::station
