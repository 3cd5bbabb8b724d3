// SPDX-License-Identifier: MIT
#include "gas/edge/methods.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "gas/by_density.h"
#include "gas/edge/gas_data.h"
#include "gas/edge/loaded_constants.h"
#include "kalorfix_gas.h"

namespace kalorfix::gas::edge {
namespace {

constexpr Found failed{0.0F, false};

bool usable(float coefficient) { return coefficient > 0.0F && std::isfinite(coefficient); }

// 70 < T < 1500 K, 0 < p < 100 MPa, dp not negative and below a quarter of p. The comparisons refuse what lies outside, so that a
// NaN passes here and fails in the method.
bool accepted(const Query& q) {
    if (q.T_K <= 70.0F || q.T_K >= 1500.0F) return false;
    if (q.p_MPa <= 0.0F || q.p_MPa >= 100.0F) return false;
    if (q.dp_kPa < 0.0F) return false;
    return !(q.dp_kPa / (q.p_MPa * 1000.0) >= 0.25);
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

// R T, kJ/kmol.
double RT_of(const Query& q) { return static_cast<double>(molar_gas_constant) * q.T_K; }

}  // namespace

Found by_density(DensityMethod method, const Query& q, float N2_pct, float CO2_pct, float rho_c) {
    store(q);
    Xa = N2_pct / 100.0F;
    Xy = CO2_pct / 100.0F;
    Roc = rho_c;
    if (!accepted(q)) return failed;
    K = static_cast<float>(method(q.T_K, q.p_MPa, {Roc, Xa, Xy}, CubeRoot::real));
    if (!usable(K)) K = 0.0F;
    return {K, usable(K)};
}

Found by_density_of_composition(DensityMethod method, const Query& q) {
    VNIC_FLAG = 0;
    store(q);
    if (!accepted(q)) return failed;
    K = static_cast<float>(method(q.T_K, q.p_MPa, {Roc, Xi[nitrogen], Xi[carbon_dioxide]}, CubeRoot::power));
    return {K, usable(K)};
}

Found aga8(const Composition& gas, const Query& q) {
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
    const double target = 1000.0 * q.p_MPa / RT_of(q) * mixture.size_cubed;
    const GasRoot root = gas_root(isotherm, target, q, aga8::Isotherm::start_pressure_MPa);
    const auto found = static_cast<float>(target / root.x / standard_compressibility(gas));
    if (!(root.x > 0.0 && usable(found))) return failed;
    return {K = found, true};
}

Found vnic(const Composition& gas, const Query& q) {
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
    const double target = 1000.0 * q.p_MPa / (RT_of(q) * critical.density);
    const GasRoot root = gas_root(isotherm, target, q, Pnk);
    const double compressibility = target / root.x;
    const auto found = static_cast<float>(compressibility / standard_compressibility(gas));
    K = Rom = Ron = 0.0F;
    if (!(root.x > 0.0 && usable(found))) return failed;
    Rom = static_cast<float>(root.x * critical.density);
    Ron = static_cast<float>(root.x);
    Z = static_cast<float>(compressibility);
    return {K = found, true};
}

float standard_density(const Composition& gas) {
    return Roc = table_loaded(Bi) && table_loaded(Rocui) ? gas::standard_density(gas, Bi, Rocui) : 0.0F;
}

Composition from_volume_fractions(const Fractions& volume) {
    return table_loaded(Zci) ? gas::from_volume_fractions(volume, Zci) : Composition{};
}

}  // namespace kalorfix::gas::edge
