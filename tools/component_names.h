// Names of the components of a gas, as files and outputs have them.
#pragma once

#include <array>
#include <string_view>

namespace kalorfix::tool {

/// The 15 of the composition, in its order.
inline constexpr std::array<std::string_view, 15> component_names{
    "methane",   "ethane",         "propane",           "n-butane", "i-butane",
    "n-pentane", "i-pentane",      "hexanes",           "heptanes", "octanes",
    "nitrogen",  "carbon_dioxide", "hydrogen_sulphide", "helium",   "carbon_monoxide"};

/// The 8 that VNIC SMV folds them onto.
inline constexpr std::array<std::string_view, 8> vnic_component_names{
    "methane", "ethane", "propane", "n-butane", "i-butane", "nitrogen", "carbon_dioxide", "hydrogen_sulphide"};

}  // namespace kalorfix::tool
