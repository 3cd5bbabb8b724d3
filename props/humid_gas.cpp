// SPDX-License-Identifier: MIT
#include "props/humid_gas.h"

#include "props/water/saturation.h"
#include "props/water/water.h"
#include "runtime/units.h"

namespace kalorfix::gas {
namespace {

// Standard temperature over standard pressure, K/MPa.
constexpr double standard_ratio = 2893.1655563779914;

// Density of the vapour at the gas pressure: saturated where the gas is colder than the saturation temperature, the single phase
// there otherwise.
bool vapour_density(double T_K, double p_MPa, double& density) {
    const double T_sat_K = water::saturation_temperature_K(p_MPa, water::SaturationTemperatureSet::humid_gas);
    // Through degrees Celsius, as the water routine is asked: the sum may differ in its last bit.
    const double asked_K = T_sat_K - units::zero_celsius_K + units::zero_celsius_K;
    water::Properties saturated{};
    water::Properties single{};
    if (!water::pressure_in_range(p_MPa) || !water::saturated_vapour(asked_K, saturated) ||
        !water::single_phase(asked_K, p_MPa, single))
        return false;
    density = T_sat_K >= T_K ? saturated.rho_kgm3 : single.rho_kgm3;
    return true;
}

}  // namespace

bool working_density(const HumidState& gas, double& density) {
    double vapour = 1.0;
    double share = 0.0;
    if (!(gas.vapour_kgm3 <= 0.0)) {
        if (!vapour_density(gas.T_K, gas.p_MPa, vapour)) return false;
        share = gas.vapour_kgm3 / vapour;
        if (!(share <= 1.0)) return false;
    }
    density =
        gas.rho_c_kgm3 * standard_ratio * (gas.p_MPa - share * gas.p_MPa) / (gas.T_K * gas.K) + vapour * share;
    return true;
}

}  // namespace kalorfix::gas
