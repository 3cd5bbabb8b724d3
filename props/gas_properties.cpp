// SPDX-License-Identifier: MIT
#include "props/gas_properties.h"

#include <array>
#include <cmath>

#include "props/heat_of_combustion_tables.h"
#include "props/water/saturation.h"
#include "props/water/water.h"
#include "runtime/units.h"

namespace kalorfix::gas {
namespace {

// Table 2 of GOST 30319.3-96: the range of the powers of T/theta, by component.
struct HeatCapacityRange {
    double theta_K;        // reference temperature
    short degree;          // highest positive power
    short negative_terms;  // powers -1, -2, ...
};
constexpr HeatCapacityRange ranges[vnic::component_count] = {{100.0, 10, 6}, {100.0, 6, 5}, {100.0, 6, 4},
                                                             {100.0, 6, 5},  {300.0, 5, 2}, {100.0, 6, 6},
                                                             {300.0, 6, 4},  {100.0, 5, 5}};
constexpr std::size_t positive_columns = 11;
constexpr std::size_t negative_columns = 6;

void add(float& sum, double term) { sum = static_cast<float>(sum + term); }

// Of one component.
float ideal_heat_capacity(std::size_t component, float T_K, const float* positive, const float* negative) {
    const HeatCapacityRange& range = ranges[component];
    const double ratio = T_K / range.theta_K;
    float rising = 0.0F;
    double power = 1.0;
    for (std::size_t m = 0; m <= static_cast<std::size_t>(range.degree); ++m, power *= ratio)
        add(rising, positive[component * positive_columns + m] * power);
    float falling = 0.0F;
    power = 1.0 / ratio;
    for (std::size_t m = 0; m < static_cast<std::size_t>(range.negative_terms); ++m, power /= ratio)
        add(falling, negative[component * negative_columns + m] * power);
    return rising + falling;
}

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

double viscosity(double T_K, double p_MPa, const DensityGas& gas) {
    // The reduced temperature is carried in single precision.
    const double Tr = static_cast<float>(T_K / pseudo_critical_temperature(gas));
    const double pr = p_MPa / pseudo_critical_pressure(gas);
    const double at_low_pressure = 3.24 * (std::sqrt(T_K) + 1.37 - 9.09 * std::pow(gas.rho_c, 0.125)) /
                                   (std::sqrt(gas.rho_c) + 2.08 - 1.5 * (gas.xa + gas.xy));
    return at_low_pressure * (1.0 + pr * pr / (30.0 * (Tr - 1.0)));
}

double isentropic_exponent(double T_K, double p_MPa, const DensityGas& gas) {
    const double ratio = p_MPa / T_K;
    return 1.556 * (1.0 + 0.074 * gas.xa) - 0.00039 * T_K * (1.0 - 0.68 * gas.xa) - 0.208 * gas.rho_c +
           std::pow(ratio, 1.43) * (384.0 * (1.0 - gas.xa) * std::pow(ratio, 0.8) + 26.4 * gas.xa);
}

float viscosity(const ReducedState& state, float molar_mass) {
    const double t = state.temperature;
    const double w = state.density;
    const double F = state.acentric;
    const double w2 = w * w;
    const auto density_part =
        static_cast<float>(78.037 + 3.85612 * F - 29.0053 * F * F - 156.728 / t + 145.519 / (t * t) -
                           51.1082 / (t * t * t) + 6.57895 * w + (11.7452 - 95.7215 * F * F / t) * w2 +
                           17.1027 * F * w2 * w + 0.519623 * w2 * w2 * w / (t * t));
    const auto scale = static_cast<float>(
        std::pow(state.critical_temperature, 1.0 / 6.0) /
        (std::sqrt(static_cast<double>(molar_mass)) * std::pow(state.critical_pressure, 2.0 / 3.0)));
    return static_cast<float>(density_part / (10.0 * scale));
}

float ideal_heat_capacity(const vnic::Fractions& x, float T_K, const float* positive, const float* negative) {
    float mixture = 0.0F;
    for (std::size_t k = 0; k < x.size(); ++k)
        if (x[k] != 0.0F)
            add(mixture, static_cast<double>(x[k]) * ideal_heat_capacity(k, T_K, positive, negative));
    return mixture;
}

float isentropic_exponent(const vnic::Coefficients& c, float reduced_temperature, float reduced_density,
                          float Z_factor, float ideal_cp) {
    // 1 + A0 is the derivative of Z w with respect to w, 1 + A1 that of Z t with respect to t at constant density, A2 the
    // real-gas part of cv/R.
    float A0 = 0.0F;
    float A1 = 0.0F;
    float A2 = 0.0F;
    double w_power = 1.0;
    for (std::size_t k = 0; k < vnic::density_powers; ++k) {
        const auto i = static_cast<double>(k + 1);
        w_power *= reduced_density;
        double t_power = 1.0;
        for (short l = 0; l < vnic::temperature_terms[k]; ++l) {
            const double j = l;
            const double term = c[k][l] * w_power / t_power;
            add(A0, (i + 1.0) * term);
            add(A1, (1.0 - j) * term);
            add(A2, j * (1.0 - j) * term / i);
            t_power *= reduced_temperature;
        }
    }
    const float ideal_cv = ideal_cp - 1.0F;
    const double cv = A2 + ideal_cv;
    const double bulk = 1.0 + A0;
    const double thermal = 1.0 + A1;
    return static_cast<float>(bulk * (cv + thermal * thermal / bulk) / (cv * Z_factor));
}

HeatOfCombustion heat_of_combustion(unsigned row, const double* mole_percent) {
    if (row >= heat_rows) return {0.0, 0.0};
    HeatOfCombustion sum{0.0, 0.0};
    for (std::size_t k = 0; k < component_count; ++k) {
        sum.lower += lower_heat[row][k] * mole_percent[k];
        sum.higher += higher_heat[row][k] * mole_percent[k];
    }
    return {0.01 * sum.lower, 0.01 * sum.higher};
}

HeatOfCombustion heat_of_combustion(double rho_c, double nitrogen_pct, double carbon_dioxide_pct) {
    return {85.453 * (0.5219 * rho_c + 0.04242 - 0.0065197 * nitrogen_pct - 0.01 * carbon_dioxide_pct),
            92.819 * (0.51447 * rho_c + 0.05603 - 0.0065689 * nitrogen_pct - 0.01 * carbon_dioxide_pct)};
}

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
