// SPDX-License-Identifier: MIT
// The exported routines of composition and compressibility.
#include "gas/edge/loaded_constants.h"
#include "gas/edge/methods.h"
#include "gas/edge/module_state.h"
#include "kalorfix_gas.h"
#include "runtime/float_environment.h"

namespace gas = kalorfix::gas;
namespace edge = kalorfix::gas::edge;
using edge::Query;
using kalorfix::FloatEnvironment;
using kalorfix::guarded;

namespace {

// K by a method, with its status.
template <class Method, class... Arguments>
float K_by(Method method, short& status, const Arguments&... arguments) {
    const edge::Found found = guarded(method, arguments...);
    status = found.done ? 0 : 1;
    return found.K;
}

}  // namespace

void PF1_1(float x0, float x1, float x2, float x3, float x4, float x5, float x6, float x7, float x8, float x9,
           float x10, float x11, float x12, float x13, float x14) {
    const FloatEnvironment guard;
    edge::store(gas::from_mole_percent({x0, x1, x2, x3, x4, x5, x6, x7, x8, x9, x10, x11, x12, x13, x14}));
}

void PF1_2(float r0, float r1, float r2, float r3, float r4, float r5, float r6, float r7, float r8, float r9,
           float r10, float r11, float r12, float r13, float r14) {
    const FloatEnvironment guard;
    edge::store(edge::from_volume_fractions({r0, r1, r2, r3, r4, r5, r6, r7, r8, r9, r10, r11, r12, r13, r14}));
}

float PF2() {
    return guarded([] { return edge::standard_density(edge::working_composition()); });
}

float NF1_1(float T_K, float dp_kPa, float p_MPa, float N2_pct, float CO2_pct, float rho_c, short& status) {
    return K_by(edge::by_density, status, gas::nx19, Query{T_K, dp_kPa, p_MPa}, N2_pct, CO2_pct, rho_c);
}

float NF1_2(float T_K, float dp_kPa, float p_MPa, float N2_pct, float CO2_pct, float rho_c, short& status) {
    return K_by(edge::by_density, status, gas::gerg91, Query{T_K, dp_kPa, p_MPa}, N2_pct, CO2_pct, rho_c);
}

float PF3_1(float T_K, float dp_kPa, float p_MPa, short& status) {
    return K_by(edge::by_density_of_composition, status, gas::nx19, Query{T_K, dp_kPa, p_MPa});
}

float PF3_2(float T_K, float dp_kPa, float p_MPa, short& status) {
    return K_by(edge::by_density_of_composition, status, gas::gerg91, Query{T_K, dp_kPa, p_MPa});
}

float PF3_3(float T_K, float dp_kPa, float p_MPa, short& status) {
    return K_by(edge::aga8, status, edge::working_composition(), Query{T_K, dp_kPa, p_MPa});
}

float PF3_4(float T_K, float dp_kPa, float p_MPa, short& status) {
    return K_by(edge::vnic, status, edge::working_composition(), Query{T_K, dp_kPa, p_MPa});
}

float PF4_1() {
    const FloatEnvironment guard;
    Plotnomer = 0;
    if (VNIC_FLAG == 0) {
        if (!edge::vnic_constants()) return Ro = 0.0F;
        static_cast<void>(edge::vnic(edge::working_composition(), {T, DeltaP, P}));
    }
    return Ro = Rom * SM;
}
