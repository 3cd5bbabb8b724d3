// SPDX-License-Identifier: MIT
// Notation of GOST 30319.2-96: xe, xa, xy mole fractions of the equivalent hydrocarbon (1), nitrogen (2) and carbon dioxide (3); H
// the parameter of the hydrocarbon, from its molar mass; Bm and Cm second and third virial coefficient of the mixture, here `second`
// (m3/kmol) and `third` (m6/kmol2); B0 = b Bm, C0 = b^2 Cm with b = 1000 p/(2.7715 T); A0, A1, A2 of the closed form.
#include "gas/by_density.h"

#include <cmath>
#include <limits>

#include "gas/composition.h"
#include "gas/gerg91_tables.h"
#include "runtime/cube_root.h"

namespace kalorfix::gas {
namespace {

constexpr double molar_mass_nitrogen = 28.0135;  // kg/kmol
constexpr double molar_mass_carbon_dioxide = 44.01;
constexpr double molar_volume = 24.05525;  // of an ideal gas at standard conditions, m3/kmol
constexpr double third_of_R = 2.7715;      // kJ/(kmol K)

// The hydrocarbons taken together as one: the parameter that grows with their molar mass, which is carried in single
// precision.
double equivalent_hydrocarbon(const DensityGas& gas) {
    const double Zc = standard_compressibility(gas.rho_c, gas.xa, gas.xy);
    const auto molar_mass = static_cast<float>(
        (molar_volume * Zc * gas.rho_c - molar_mass_nitrogen * gas.xa - molar_mass_carbon_dioxide * gas.xy) /
        (1.0 - gas.xa - gas.xy));
    return 128.64 + 47.479 * molar_mass;
}

}  // namespace

GeometricMeans geometric_means(double C1, double C2, double C3, CubeRoot kind) {
    if (C1 == 0.0) return {};
    // A product of an odd number of negative factors has no power with exponent 1/3, and one such mean is among them.
    if (kind == CubeRoot::power && (C1 < 0.0 || C2 < 0.0 || C3 < 0.0)) {
        constexpr double none = std::numeric_limits<double>::quiet_NaN();
        return {none, none, none, none, none};
    }
    const double second = kalorfix::cube_root(C2 / C1);
    const double third = kalorfix::cube_root(C3 / C1);
    return {C1 * second, C1 * third, C1 * second * second, C1 * second * third, C1 * third * third};
}

Virial gerg91_virial(double T_K, const DensityGas& gas, CubeRoot kind) {
    const double xe = 1.0 - gas.xa - gas.xy;
    const double xa = gas.xa;
    const double xy = gas.xy;
    const double H = equivalent_hydrocarbon(gas);

    const double B1 = gerg91_table::B1(T_K) + H * (gerg91_table::B1_H(T_K) + H * gerg91_table::B1_H2(T_K));
    const double B2 = gerg91_table::B2(T_K);
    const double B3 = gerg91_table::B3(T_K);
    const double cross_B = 0.72 + 1.875e-5 * (320.0 - T_K) * (320.0 - T_K);
    const double second = xe * xe * B1 + xe * xa * cross_B * (B1 + B2) - 1.73 * xe * xy * std::sqrt(B1 * B3) +
                          xa * xa * B2 + 2.0 * xa * xy * gerg91_table::B23(T_K) + xy * xy * B3;

    const double C1 = gerg91_table::C1(T_K) + H * (gerg91_table::C1_H(T_K) + H * gerg91_table::C1_H2(T_K));
    const double C2 = gerg91_table::C2(T_K);
    const double C3 = gerg91_table::C3(T_K);
    const double cross_C = 0.92 + 0.0013 * (T_K - 270.0);
    const GeometricMeans mean = geometric_means(C1, C2, C3, kind);
    const double third = xe * xe * xe * C1 + 3.0 * xe * xe * xa * cross_C * mean.of_112 +
                         2.76 * xe * xe * xy * mean.of_113 + 3.0 * xe * xa * xa * cross_C * mean.of_122 +
                         6.6 * xe * xa * xy * mean.of_123 + 2.76 * xe * xy * xy * mean.of_133 +
                         xa * xa * xa * C2 + 3.0 * xa * xa * xy * gerg91_table::C223(T_K) +
                         3.0 * xa * xy * xy * gerg91_table::C233(T_K) + xy * xy * xy * C3;
    return {second, third};
}

double virial_compressibility(double T_K, double p_MPa, const Virial& v, CubeRoot kind) {
    const double b = 1000.0 * p_MPa / (third_of_R * T_K);
    const double B0 = b * v.second;
    const double C0 = b * b * v.third;
    const double A0 = 1.0 + B0;
    const double A1 = 1.0 + 1.5 * (B0 + C0);
    const double root = std::sqrt(A1 * A1 - A0 * A0 * A0);
    // The published form takes the cube root of this difference, which is negative for dense gas.
    const double difference = A1 - root;
    if (kind == CubeRoot::power && difference < 0.0) return std::numeric_limits<double>::quiet_NaN();
    // Where A0 is small the difference has lost its digits. Its counterpart has not, and cbrt(A1 - root) cbrt(A1 + root) = A0
    // makes the formula the same in either.
    const double A2 = kalorfix::cube_root(A1 > 0.0 ? A1 + root : difference);
    return (1.0 + A2 + A0 / A2) / 3.0;
}

double gerg91(double T_K, double p_MPa, const DensityGas& gas, CubeRoot kind) {
    return virial_compressibility(T_K, p_MPa, gerg91_virial(T_K, gas, kind), kind) /
           standard_compressibility(gas.rho_c, gas.xa, gas.xy);
}

}  // namespace kalorfix::gas
