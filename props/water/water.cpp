// SPDX-License-Identifier: MIT
#include "props/water/water.h"

#include <cmath>

#include "props/water/density.h"
#include "props/water/iapws95_tables.h"
#include "props/water/saturation.h"
#include "runtime/exponential.h"

namespace kalorfix::water {
namespace {

bool temperature_in_range(double T_K) { return min_temperature_K <= T_K && T_K <= max_temperature_K; }

// Everything that follows from the temperature and the reduced density (IAPWS R6-95(2018), table 3).
Properties properties_at(double T_K, double delta, const Helmholtz& r) {
    constexpr double R = gas_constant_kJ_kgK;
    const double theta = T_K / critical_temperature_K;
    const IdealGas ideal = ideal_gas(T_K);
    const double z = r.compressibility();
    const double stiffness = r.stiffness();
    const double thermal = 1.0 + r.d - r.dt;

    const double cv = ideal.cv_kJ_kgK - R * r.tt;
    const double cp = cv + R * thermal * thermal / stiffness;
    const double rho = critical_density_kgm3 * delta;
    const double chi = ideal_reduced_density * delta / (stiffness * theta);
    return {rho, viscosity_uPas(T_K, rho, chi), ideal.h_kJ_kg + R * T_K * (r.t + r.d),
            stiffness * cp / (z * cv)};
}

bool solve(double T_K, const ResidualAt& residual, const DensityProblem& problem, Properties& out) {
    const DensityRoot root = solve_density(residual, problem);
    if (!root.found) return false;
    const Properties found = properties_at(T_K, root.delta, root.at);
    if (!std::isfinite(found.rho_kgm3 + found.mu_uPas + found.h_kJ_kg + found.kappa)) return false;
    out = found;
    return true;
}

}  // namespace

IdealGas ideal_gas(double T_K) {
    const double tau = critical_temperature_K / T_K;
    std::array<double, ideal_terms.size()> decay;
    for (std::size_t k = 0; k < decay.size(); ++k) decay[k] = -ideal_terms[k].gamma * tau;
    exponentials(decay);
    double cv = ideal_n3;
    double h = 1.0 + ideal_n3 + ideal_n2 * tau;
    for (std::size_t k = 0; k < decay.size(); ++k) {
        const double x = ideal_terms[k].gamma * tau;
        const double inverse = 1.0 / (1.0 - decay[k]);
        const double share = ideal_terms[k].n * x * decay[k] * inverse;
        h += share;
        cv += share * x * inverse;
    }
    return {gas_constant_kJ_kgK * cv, gas_constant_kJ_kgK * T_K * h};
}

bool single_phase(double T_K, double p_MPa, Properties& out) {
    out = Properties{};
    if (!temperature_in_range(T_K) || !pressure_in_range(p_MPa)) return false;
    const ResidualAt residual(critical_temperature_K / T_K);
    return solve(T_K, residual, single_phase_problem(residual, T_K, p_MPa), out);
}

bool saturated_vapour(double T_K, Properties& out) {
    out = Properties{};
    if (!(min_temperature_K <= T_K && T_K <= near_critical_K)) return false;
    return solve(T_K, ResidualAt(critical_temperature_K / T_K), saturated_vapour_problem(T_K), out);
}

Phase phase(double p_MPa, double T_K, double tolerance_MPa, double& saturation_MPa) {
    constexpr double min_pressure_MPa = 0.001;
    constexpr double steam_from_MPa = 21.5;
    constexpr double water_to_K = 373.15;

    saturation_MPa = 0.0;
    if (!(min_pressure_MPa <= p_MPa && p_MPa <= max_pressure_MPa)) return Phase::undecided;
    if (!temperature_in_range(T_K)) return Phase::undecided;

    saturation_MPa = saturation_pressure_MPa(T_K);
    // The order is deliberate: limits of temperature and pressure come before the saturation line.
    if (T_K >= near_critical_K || p_MPa >= steam_from_MPa) return Phase::steam;
    if (T_K <= water_to_K) return Phase::water;
    if (saturation_MPa - tolerance_MPa <= p_MPa && p_MPa <= saturation_MPa + tolerance_MPa)
        return Phase::saturated;
    return p_MPa > saturation_MPa + tolerance_MPa ? Phase::water : Phase::steam;
}

}  // namespace kalorfix::water
