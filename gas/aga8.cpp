// SPDX-License-Identifier: MIT
#include "gas/aga8.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "runtime/exponential.h"
#include "runtime/unrolled.h"

namespace kalorfix::gas::aga8 {
namespace {

// The sums over the pairs i <= j of the components that are there, x_i x_j or twice that.
Forms quadratic_sums(const Composition& gas, const std::array<double, component_count>& x,
                     const Constants& constants) {
    FormPairs sums{};
    for (std::size_t n = 0; n < gas.count; ++n) {
        const auto& row = constants.forms[gas.present[n]];
        double weight = x[n] * x[n];
        const double twice = 2.0 * x[n];
        for (std::size_t m = n; m < gas.count;) {
            const FormPairs& forms = row[gas.present[m]];
            unrolled<form_count / 2>([&]<std::size_t k>() { sums[k] += weight * forms[k]; });
            if (++m < gas.count) weight = twice * x[m];
        }
    }
    Forms result;
    for (std::size_t k = 0; k < form_count; ++k) result[k] = sums[k / 2][k % 2];
    return result;
}

}  // namespace

Mixture mix(const Composition& gas, const Constants& constants) {
    std::array<double, component_count> x;  // indexed like the list of components
    double size_sum = 0.0;
    double energy_sum = 0.0;
    Mixture mixture;
    for (std::size_t n = 0; n < gas.count; ++n) {
        const std::size_t i = gas.present[n];
        x[n] = gas.x[i];
        size_sum += x[n] * constants.size[i];
        energy_sum += x[n] * constants.energy[i];
        mixture.orientation += x[n] * constants.orientation[i];
        mixture.quadrupole += x[n] * constants.quadrupole[i];
        mixture.high_temperature += x[n] * x[n] * constants.high_temperature[i];
    }
    const Forms sums = quadratic_sums(gas, x, constants);
    for (std::size_t n = 0; n < virial_terms; ++n) mixture.virial_factors[n] = static_cast<float>(sums[n]);
    mixture.size_cubed = std::pow(size_sum * size_sum + sums[size_form], 0.6);
    mixture.energy = std::pow(energy_sum * energy_sum + sums[energy_form], 0.2);
    // Doubled like the cross terms of size and energy; the published reference values carry it once.
    mixture.orientation += sums[orientation_form];
    return mixture;
}

double second_virial(double T_K, const Constants& constants, const VirialFactors& factors) {
    const PowerBase inverse(1.0 / T_K, constants.virial_u);
    double sum = 0.0;
    for (std::size_t n = 0; n < virial_terms; ++n)
        sum += constants.a[n] * factors[n] * inverse.to(constants.u[n]);
    return sum;
}

Coefficients term_coefficients(double T_K, const Mixture& mixture, const Constants& constants) {
    // U^u alone overflows single precision at u = 21..23; of U/T it never does.
    const PowerBase reduced(mixture.energy / T_K, constants.term_u);
    const double quadrupole = mixture.quadrupole * mixture.quadrupole;
    // The products of G, Q^2 and F by which of them a term has.
    const double G = flagged(mixture.orientation, 1.0);
    const double Q2 = flagged(quadrupole, 1.0);
    const double F = flagged(mixture.high_temperature, 1.0);
    const std::array<double, Constants::other_flags> products{1.0, G, Q2, G * Q2, F, G * F, Q2 * F, G * Q2 * F};
    Coefficients coefficients{};
    for (std::size_t n = first_density_term; n < term_count; ++n)
        if (constants.plain_terms)
            coefficients[n] = static_cast<float>(constants.a[n] * products[constants.flags[n]] *
                                                 reduced.to_exact(constants.u[n]));
        else
            coefficients[n] = static_cast<float>(constants.a[n] * flagged(mixture.orientation, constants.g[n]) *
                                                 flagged(quadrupole, constants.q[n]) *
                                                 flagged(mixture.high_temperature, constants.f[n]) *
                                                 reduced.to(constants.u[n]));
    return coefficients;
}

Isotherm::Isotherm(const DensityLayout& layout, const Coefficients& coefficients, double second_virial,
                   double reduced_temperature)
    : layout_(layout),
      second_virial_(second_virial),
      linear_(second_virial - std::accumulate(coefficients.begin() + first_density_term,
                                              coefficients.begin() + virial_terms, 0.0)),
      reduced_temperature_(reduced_temperature) {
    for (std::size_t cell = 0; cell < layout.cell_count; ++cell) weight_[cell] = 0.0;
    for (std::size_t n = 0; n < density_terms; ++n)
        weight_[layout.cell_of[n]] += coefficients[first_density_term + n];
}

// S = sum of C (b - c k r^k) r^b exp(-c r^k). With P_m = sum(b^m C r^b) of the terms of one group, e = exp(-c r^k) and s = c k r^k
// its part and what r d/dr makes of it, once and twice, are
//   e (P1 - s P0)
//   e (P2 - 2 s P1 + s (s - k) P0)
//   e (P3 - 3 s P2 + 3 s (s - k) P1 - s (s^2 - 3 k s + k^2) P0)
IsothermPoint Isotherm::at(double r) const {
    std::array<double, DensityLayout::power_places> power;
    layout_.raise(r, power);
    std::array<double, density_terms> decay;  // first, so that the sums stay in registers
    for (std::size_t g = 0; g < layout_.group_count; ++g) {
        const DensityLayout::Group& group = layout_.groups[g];
        decay[g] = group.constant ? group.factor
                                  : exponential(std::clamp(-group.c * power[group.power], -700.0, 700.0));
    }
    double S = 0.0;
    double once = 0.0;
    double twice = 0.0;
    const DensityLayout::Cell* cell = layout_.cells.data();
    const double* weight = weight_.data();
    for (std::size_t g = 0; g < layout_.group_count; ++g) {
        const DensityLayout::Group& group = layout_.groups[g];
        Pair P01{}, P23{};
        for (std::size_t n = 0; n < group.cells; ++n, ++cell, ++weight) {
            const Pair moments = *weight * power[cell->power] * cell->one_b;
            P01 += moments;
            P23 += moments * cell->bb;
        }
        const double P0 = P01[0], P1 = P01[1], P2 = P23[0], P3 = P23[1];
        const double k = group.k;
        const double s = k * group.c * power[group.power];
        const double e = decay[g];
        S += e * (P1 - s * P0);
        once += e * (P2 + s * ((s - k) * P0 - 2.0 * P1));
        twice += e * (P3 - s * (3.0 * P2 - 3.0 * (s - k) * P1 + (s * s - 3.0 * k * s + k * k) * P0));
    }
    const double linear = linear_ * r;
    return {r, r * (1.0 + linear + S), 1.0 + 2.0 * linear + S + once, 2.0 * linear_ + (once + twice) / r};
}

Isotherm isotherm(double T_K, const Mixture& mixture, const Coefficients& coefficients,
                  const Constants& constants) {
    const double B = second_virial(T_K, constants, mixture.virial_factors);
    return {constants.density, coefficients, B / mixture.size_cubed, T_K / mixture.energy};
}

}  // namespace kalorfix::gas::aga8
