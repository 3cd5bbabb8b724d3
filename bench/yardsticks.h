// SPDX-License-Identifier: MIT
// What the library's routines are measured against: the same sums, bare, and evaluated with the general power function.
#pragma once

namespace kalorfix::bench {

/// A state of water or steam with the mode of t_param_1 that takes it.
struct WaterState {
    const char* name;
    double t_C, p_MPa;
    short mode;
};
inline constexpr WaterState water_states[] = {
    {"liquid", 80.0, 0.6, 1},
    {"vapour", 300.0, 1.2, 2},
    {"supercritical", 450.0, 30.0, 1},
    {"saturated vapour", 180.0, 1.0, 3},
};

/// Where the density iteration of a state ends, and after how many steps.
struct WaterRoot {
    double tau, delta;
    int steps;
};
[[nodiscard]] WaterRoot water_root(const WaterState& state);

/// The strength-reduced sums of IAPWS-95 that the Newton steps and the property step of a state need, and nothing else.
[[nodiscard]] double bare_water(const WaterRoot& root);

/// The same sums selector by selector, two a step and five for the properties, each power by the general power function.
[[nodiscard]] double water_by_power(const WaterRoot& root);

/// Mole per cent of eleven components that wander with `round`, so that no call sees the composition of the one before.
struct Percent {
    float x[15];
};
[[nodiscard]] Percent gas_of(int round);

/// State at which the gas methods are measured.
inline constexpr float gas_T_K = 283.15F;
inline constexpr float gas_p_MPa = 6.0F;

/// Compressibility by AGA8-92DC as the formulas are printed, every power by the general power function, from tables and
/// composition of the working state of the library's objects that are linked in.
[[nodiscard]] double aga8_by_power(double T_K, double p_MPa);

}  // namespace kalorfix::bench
