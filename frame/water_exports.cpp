// SPDX-License-Identifier: MIT
// Exported functions of water and steam.
#include "kalorfix.h"
#include "props/water/iapws95_tables.h"
#include "props/water/water.h"
#include "runtime/float_environment.h"
#include "runtime/units.h"

namespace water = kalorfix::water;

const double T_kr = water::critical_temperature_K;
const double p_kr = water::critical_pressure_MPa;

namespace {

constexpr short saturated_vapour_mode = 3;

void store(double* output, double value) {
    if (output) *output = value;
}

}  // namespace

short t_param_1(double t_C, double p_MPa, short mode, double* ro, double* mu, double* h, double* kappa) {
    const kalorfix::FloatEnvironment guard;
    const double T_K = t_C + kalorfix::units::zero_celsius_K;
    water::Properties found{};
    const bool done = mode == saturated_vapour_mode
                          ? water::pressure_in_range(p_MPa) && water::saturated_vapour(T_K, found)
                          : water::single_phase(T_K, p_MPa, found);
    store(ro, found.rho_kgm3);
    store(mu, found.mu_uPas);
    store(h, found.h_kJ_kg);
    store(kappa, found.kappa);
    return done ? 0 : 1;
}

short t_phase_1(double p_MPa, double t_C, double dp_MPa, double* ps) {
    const kalorfix::FloatEnvironment guard;
    double saturation_MPa = 0.0;
    const water::Phase phase =
        water::phase(p_MPa, t_C + kalorfix::units::zero_celsius_K, dp_MPa, saturation_MPa);
    store(ps, saturation_MPa);
    return static_cast<short>(phase);
}
