// SPDX-License-Identifier: MIT
// State, phase and properties of a heat carrier: water, superheated or wet steam.
#pragma once

#include "props/water/water.h"

namespace kalorfix::water {

/// Tolerances of the test whether a state is at saturation.
struct Tolerance {
    double T_K, p_MPa;
};

struct CarrierState {
    double p_sat_MPa;  ///< saturation pressure at T
    double T_sat_K;    ///< saturation temperature at p
    Phase phase;       ///< undecided where a tolerance is no number
};

/// Whether a state is accepted: 273.15..1273.15 K, which reaches higher than the properties on purpose, 0.001..100 MPa.
[[nodiscard]] bool carrier_accepted(double T_K, double p_MPa);

/// The state at T and p.
[[nodiscard]] CarrierState carrier_state(double T_K, double p_MPa, const Tolerance& tolerance);

struct CarrierProperties {
    Properties found;  ///< zeros where they were refused
    bool good;
    bool at_saturation;  ///< wet steam, refused or not: its pressure is the saturation pressure from here on
};

/// Properties in a phase. Wet steam is mixed linearly, `share` of the single-phase state at (T, p) and the rest saturated vapour at
/// T; refused with a share outside 0..1 and above 645 K. Refused too where the phase is none or the state out of range.
[[nodiscard]] CarrierProperties carrier_properties(Phase phase, double T_K, double p_MPa, double share);

}  // namespace kalorfix::water
