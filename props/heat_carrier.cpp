// SPDX-License-Identifier: MIT
#include "props/heat_carrier.h"

#include "props/water/saturation.h"

namespace kalorfix::water {
namespace {

// In this order: the temperature, the pressure band, the temperature band.
Phase decide_phase(double T_K, double p_MPa, const CarrierState& s, const Tolerance& tolerance) {
    if (T_K + tolerance.T_K > near_critical_K) return Phase::steam;
    if (p_MPa - tolerance.p_MPa <= s.p_sat_MPa && s.p_sat_MPa <= p_MPa + tolerance.p_MPa) {
        if (T_K - tolerance.T_K <= s.T_sat_K && s.T_sat_K <= T_K + tolerance.T_K) return Phase::saturated;
        if (s.T_sat_K < T_K - tolerance.T_K) return Phase::steam;
        return s.T_sat_K > T_K + tolerance.T_K ? Phase::water : Phase::undecided;
    }
    return p_MPa - tolerance.p_MPa > s.p_sat_MPa ? Phase::water : Phase::steam;
}

double mix(double share, double vapour, double single) { return (1.0 - share) * vapour + share * single; }

Properties mix(double share, const Properties& vapour, const Properties& single) {
    return {mix(share, vapour.rho_kgm3, single.rho_kgm3), mix(share, vapour.mu_uPas, single.mu_uPas),
            mix(share, vapour.h_kJ_kg, single.h_kJ_kg), mix(share, vapour.kappa, single.kappa)};
}

}  // namespace

bool carrier_accepted(double T_K, double p_MPa) {
    constexpr double max_K = 1273.15;
    constexpr double min_MPa = 0.001;
    return min_temperature_K <= T_K && T_K <= max_K && min_MPa <= p_MPa && p_MPa <= max_pressure_MPa;
}

CarrierState carrier_state(double T_K, double p_MPa, const Tolerance& tolerance) {
    CarrierState state{saturation_pressure_MPa(T_K),
                       saturation_temperature_K(p_MPa, SaturationTemperatureSet::heat_carrier),
                       Phase::undecided};
    state.phase = decide_phase(T_K, p_MPa, state, tolerance);
    return state;
}

CarrierProperties carrier_properties(Phase phase, double T_K, double p_MPa, double share) {
    Properties single{};
    const bool known = phase == Phase::water || phase == Phase::steam || phase == Phase::saturated;
    if (!known || !single_phase(T_K, p_MPa, single)) return {{}, false, false};
    if (phase != Phase::saturated) return {single, true, false};
    Properties vapour{};
    const bool good = 0.0 <= share && share <= 1.0 && saturated_vapour(T_K, vapour);
    return {good ? mix(share, vapour, single) : Properties{}, good, true};
}

}  // namespace kalorfix::water
