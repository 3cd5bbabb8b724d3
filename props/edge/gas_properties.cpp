// SPDX-License-Identifier: MIT
// The exported property routines of gas.
#include "props/edge/gas_properties.h"

#include "gas/edge/gas_data.h"
#include "gas/edge/loaded_constants.h"
#include "gas/edge/methods.h"
#include "gas/edge/module_state.h"
#include "kalorfix_gas.h"
#include "props/gas_properties.h"
#include "runtime/float_environment.h"
#include "runtime/units.h"

namespace gas = kalorfix::gas;
namespace edge = kalorfix::gas::edge;
namespace units = kalorfix::units;
using kalorfix::FloatEnvironment;
using kalorfix::guarded;

namespace kalorfix::gas::edge {

float viscosity_by_density() { return Mu = static_cast<float>(viscosity(T, P, {Roc, Xa, Xy})); }

float isentropic_exponent_by_density() {
    return kk = static_cast<float>(isentropic_exponent(T, P, {Roc, Xa, Xy}));
}

float viscosity_by_composition() {
    const bool prepared = VNIC_FLAG != 0;
    if (!table_loaded(Mi) || !(prepared || vnic_constants())) return Mu = 0.0F;
    const Composition composition = working_composition();
    if (!prepared) static_cast<void>(vnic(composition, {T, DeltaP, P}));
    SM = molar_mass(composition, Mi);
    return Mu = viscosity({Tn, Ron, Tnk, Pnk, FP}, SM);
}

float isentropic_exponent_by_composition() {
    if (!table_loaded(L1ij) || !table_loaded(B1ij)) return kk = 0.0F;
    const float ideal_cp = ideal_heat_capacity(std::to_array(Tmp_Xi), T, L1ij, B1ij);
    return kk = isentropic_exponent(Ckl, Tn, Ron, Z, ideal_cp);
}

}  // namespace kalorfix::gas::edge

float NF2_1() {
    const FloatEnvironment guard;
    Plotnomer = 0;
    const double standard = P * gas::standard_temperature_K * Roc;
    const double working = T * gas::standard_pressure_MPa * K;
    return Ro = static_cast<float>(standard / working);
}

float NF2_2(float rho_meter, float T_meter_K, float p_meter_MPa) {
    const FloatEnvironment guard;
    Plotnomer = 1;
    const double p = P;
    const double t = T;
    return Ro = static_cast<float>(rho_meter / (1.0 - (p - p_meter_MPa) / p) * (1.0 - (t - T_meter_K) / t));
}

float NF3() { return guarded(edge::viscosity_by_density); }

float NF4() { return guarded(edge::isentropic_exponent_by_density); }

float NF6() {
    return guarded([] { return qoi = static_cast<float>(qmi * units::kg_per_t / Ro); });
}

float NF7() {
    return guarded([] { return qci = static_cast<float>(qmi * units::kg_per_t / Roc); });
}

float PF5(unsigned long) { return guarded(edge::viscosity_by_composition); }

float PF6() { return guarded(edge::isentropic_exponent_by_composition); }
