// SPDX-License-Identifier: MIT
// Devices, methods, components and phases by name: words in station and case files, titles on sheets and in reports.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace kalorfix::tool {

struct Device {
    std::string_view word;  ///< of a station file; case files write it with hyphens
    std::string_view title;
    std::string_view brief;  ///< in the tables of the report
};

/// Code 1 first.
inline constexpr std::array<Device, 23> devices{{
    {"orifice_corner", "orifice plate, corner tappings", "orifice, corner"},
    {"orifice_d_d2", "orifice plate, D and D/2 tappings", "orifice, D and D/2"},
    {"orifice_flange", "orifice plate, flange tappings", "orifice, flange"},
    {"nozzle_isa1932", "ISA 1932 nozzle", "ISA 1932 nozzle"},
    {"nozzle_long_radius", "long-radius nozzle", "long-radius nozzle"},
    {"venturi_nozzle", "Venturi nozzle", "Venturi nozzle"},
    {"venturi_cast", "Venturi tube, as-cast convergent", "Venturi tube, cast"},
    {"venturi_machined", "Venturi tube, machined convergent", "Venturi tube, machined"},
    {"venturi_welded", "Venturi tube, rough-welded convergent", "Venturi tube, welded"},
    {"averaging_10", "averaging device 10", {}},
    {"averaging_11", "averaging device 11", {}},
    {"averaging_12", "averaging device 12", {}},
    {"averaging_13", "averaging device 13", {}},
    {"averaging_14", "averaging device 14", {}},
    {"averaging_15", "averaging device 15", {}},
    {"averaging_16", "averaging device 16", {}},
    {"averaging_17", "averaging device 17", {}},
    {"averaging_18", "averaging device 18", {}},
    {"configured_coefficient", "device of a given flow coefficient", {}},
    {"meter_mass", "mass meter", {}},
    {"meter_volume", "volume meter", {}},
    {"meter_standard_volume", "meter of standard volume", {}},
    {"external", "flows from elsewhere", {}},
}};
inline constexpr std::size_t standard_devices = 9;

struct Method {
    std::string_view word, title;
};
/// Compressibility, code 0 first; the first two by density, nitrogen and carbon dioxide, the others by composition.
inline constexpr std::array<Method, 4> methods{
    {{"nx19", "NX19 mod."}, {"gerg91", "GERG-91 mod."}, {"aga8", "AGA8-92DC"}, {"vnic", "VNIC SMV"}}};
inline constexpr short aga8 = 2, vnic = 3;
[[nodiscard]] constexpr bool is_by_density(short method) { return 0 <= method && method < aga8; }
[[nodiscard]] constexpr std::string_view method_name(short method) {
    return methods[static_cast<std::size_t>(method)].title;
}

/// Heats of combustion of VNIC SMV; row unit + 2 basis, unit 0 kJ, 1 kcal, basis 0 at 0 degC, 1 at 20 degC.
struct HeatUnit {
    std::string_view word, title;
};
inline constexpr std::array<HeatUnit, 4> heat_units{{{"kJ0", "kJ/m3 at 0 degC"},
                                                     {"kcal0", "kcal/m3 at 0 degC"},
                                                     {"kJ20", "kJ/m3 at 20 degC"},
                                                     {"kcal20", "kcal/m3 at 20 degC"}}};
/// The unit of the heats that a method gives: only VNIC SMV has a choice.
[[nodiscard]] constexpr std::string_view heat_unit(short method, char unit, char basis) {
    return method == vnic ? heat_units[static_cast<std::size_t>(unit + 2 * basis)].title : "MJ/m3 at 20 degC";
}

struct Phase {
    std::string_view word;  ///< of a station file
    std::string_view case_word;
    std::string_view title;
    std::string_view brief;  ///< in the tables of `kalorfix water`
};
inline constexpr std::array<Phase, 4> phases{{{"from_state", "undecided", "undecided", ""},
                                              {"water", "water", "water", "water"},
                                              {"steam", "steam", "superheated steam", "steam"},
                                              {"wet_steam", "wet", "wet steam", "saturated"}}};
[[nodiscard]] constexpr const Phase& phase_of(short code) {
    return phases[code >= 0 && code < 4 ? static_cast<std::size_t>(code) : 0];
}

/// The 15 components of a composition, in its order.
inline constexpr std::array<std::string_view, 15> components{
    "methane",   "ethane",         "propane",           "n-butane", "i-butane",
    "n-pentane", "i-pentane",      "hexanes",           "heptanes", "octanes",
    "nitrogen",  "carbon_dioxide", "hydrogen_sulphide", "helium",   "carbon_monoxide"};
inline constexpr std::array<std::string_view, 15> formulas{"CH4",    "C2H6",   "C3H8",  "nC4H10", "iC4H10",
                                                           "nC5H12", "iC5H12", "C6H14", "C7H16",  "C8H18",
                                                           "N2",     "CO2",    "H2S",   "He",     "CO"};
inline constexpr std::size_t nitrogen = 10, carbon_dioxide = 11;
/// Of these the 8 that VNIC SMV folds them onto.
inline constexpr std::array<std::size_t, 8> vnic_components{0, 1, 2, 3, 4, 10, 11, 12};

}  // namespace kalorfix::tool
