// SPDX-License-Identifier: MIT
// The methods with the state that they leave, and below them the exported routines of composition and compressibility.
#include "gas/edge/methods.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "gas/by_density.h"
#include "gas/edge/gas_data.h"
#include "gas/edge/module_state.h"
#include "kalorfix_gas.h"
#include "runtime/float_environment.h"
#include "runtime/units.h"

namespace kalorfix::gas::edge {
namespace {

constexpr float failed = 0.0F;

// 70 < T < 1500 K, 0 < p < 100 MPa, dp not negative and below a quarter of p. The comparisons refuse what lies outside, so that a
// NaN passes here and fails in the method.
bool accepted(const Query& q) {
    if (q.T_K <= 70.0F || q.T_K >= 1500.0F || q.p_MPa <= 0.0F || q.p_MPa >= 100.0F || q.dp_kPa < 0.0F)
        return false;
    return !(q.dp_kPa / (q.p_MPa * units::kPa_per_MPa) >= 0.25);
}

void store(const Query& q) {
    T = q.T_K;
    P = q.p_MPa;
    DeltaP = q.dp_kPa;
}

template <class Isotherm>
GasRoot gas_root(const Isotherm& isotherm, double target, const Query& q, double start_MPa) {
    return GasRootSearch(isotherm, target)
        .from(start_density(target, isotherm.second_virial(), q.p_MPa, start_MPa));
}

// By density and contents as they stand in the working composition.
float by_density_of_composition(DensityMethod method, const Query& q) {
    VNIC_FLAG = 0;
    store(q);
    if (!accepted(q)) return failed;
    return K = static_cast<float>(
               method(q.T_K, q.p_MPa, {Roc, Xi[nitrogen], Xi[carbon_dioxide]}, CubeRoot::power));
}

// R T, kJ/kmol.
double RT_of(const Query& q) { return static_cast<double>(molar_gas_constant) * q.T_K; }

}  // namespace

bool usable(double coefficient) { return coefficient > 0.0 && std::isfinite(coefficient); }

float by_density(DensityMethod method, const Query& q, float N2_pct, float CO2_pct, float rho_c) {
    store(q);
    Xa = N2_pct / 100.0F;
    Xy = CO2_pct / 100.0F;
    Roc = rho_c;
    if (!accepted(q)) return failed;
    K = static_cast<float>(method(q.T_K, q.p_MPa, {Roc, Xa, Xy}, CubeRoot::real));
    if (!usable(K)) K = failed;
    return K;
}

float by_aga8(const Composition& gas, const Query& q) {
    VNIC_FLAG = 0;
    store(q);
    const aga8::Constants* const constants = accepted(q) ? aga8_constants() : nullptr;
    if (!constants) return failed;
    K = 0.0F;
    if (gas.count == 0) return failed;
    const aga8::Mixture& mixture = aga8_mixture(gas);
    const aga8::Coefficients coefficients = aga8::term_coefficients(q.T_K, mixture, *constants);
    for (const std::size_t i : gas.components()) {
        std::memcpy(EIJM[i], constants->pair_energy[i].data(), sizeof EIJM[i]);
        std::memcpy(GIJM[i], constants->pair_orientation[i].data(), sizeof GIJM[i]);
    }
    std::copy(mixture.virial_factors.begin(), mixture.virial_factors.end(), B);
    std::copy(coefficients.begin() + aga8::first_density_term, coefficients.end(),
              C + aga8::first_density_term);

    const aga8::Isotherm isotherm = aga8::isotherm(q.T_K, mixture, coefficients, *constants);
    const double target = units::kPa_per_MPa * q.p_MPa / RT_of(q) * mixture.size_cubed;
    const GasRoot root = gas_root(isotherm, target, q, aga8::Isotherm::start_pressure_MPa);
    const auto found = static_cast<float>(target / root.x / standard_compressibility(gas));
    if (!(root.x > 0.0 && usable(found))) return failed;
    return K = found;
}

float by_vnic(const Composition& gas, const Query& q) {
    VNIC_FLAG = 1;
    FP = 0.0F;
    Z = 0.0F;
    store(q);
    const vnic::Constants* const constants = accepted(q) ? vnic_constants() : nullptr;
    if (!constants) return failed;
    const vnic::Fractions folded = vnic::fold(gas.x);
    std::copy(folded.begin(), folded.end(), Tmp_Xi);

    const vnic::PseudoCritical critical = vnic::pseudo_critical(folded, *constants, molar_gas_constant);
    FP = critical.acentric;
    Tnk = critical.temperature;
    Pnk = critical.pressure;
    Tn = q.T_K / Tnk;
    vnic::equation_coefficients(Akl, Bkl, critical.acentric, Ckl);

    const vnic::Isotherm isotherm(Ckl, Tn);
    const double target = units::kPa_per_MPa * q.p_MPa / (RT_of(q) * critical.density);
    const GasRoot root = gas_root(isotherm, target, q, Pnk);
    const double compressibility = target / root.x;
    const auto found = static_cast<float>(compressibility / standard_compressibility(gas));
    K = Rom = Ron = 0.0F;
    if (!(root.x > 0.0 && usable(found))) return failed;
    Rom = static_cast<float>(root.x * critical.density);
    Ron = static_cast<float>(root.x);
    Z = static_cast<float>(compressibility);
    return K = found;
}

float standard_density(const Composition& gas) {
    return Roc = table_loaded(Bi) && table_loaded(Rocui) ? gas::standard_density(gas, Bi, Rocui) : 0.0F;
}

Composition from_volume_fractions(const Fractions& volume) {
    return table_loaded(Zci) ? gas::from_volume_fractions(volume, Zci) : Composition{};
}

}  // namespace kalorfix::gas::edge

namespace gas = kalorfix::gas;
namespace edge = kalorfix::gas::edge;
using edge::Query;
using kalorfix::FloatEnvironment;
using kalorfix::guarded;

namespace {

// K by a method, with its status.
template <class Method, class... Arguments>
float K_by(Method method, short& status, const Arguments&... arguments) {
    const FloatEnvironment guard;
    const float found = method(arguments...);
    status = edge::usable(found) ? 0 : 1;
    return found;
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
    return K_by(edge::by_aga8, status, edge::working_composition(), Query{T_K, dp_kPa, p_MPa});
}

float PF3_4(float T_K, float dp_kPa, float p_MPa, short& status) {
    return K_by(edge::by_vnic, status, edge::working_composition(), Query{T_K, dp_kPa, p_MPa});
}

float PF4_1() {
    const FloatEnvironment guard;
    Plotnomer = 0;
    if (VNIC_FLAG == 0) {
        if (!edge::vnic_constants()) return Ro = 0.0F;
        static_cast<void>(edge::by_vnic(edge::working_composition(), {T, DeltaP, P}));
    }
    return Ro = Rom * SM;
}
