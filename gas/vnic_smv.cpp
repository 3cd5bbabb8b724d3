// SPDX-License-Identifier: MIT
#include "gas/vnic_smv.h"

#include <cmath>

#include "gas/powers.h"

namespace kalorfix::gas::vnic {
namespace {

double at(const float* table, std::size_t i) { return table[i]; }

}  // namespace

Fractions fold(const gas::Fractions& x) {
    constexpr std::array<std::size_t, gas::component_count> target{0, 1, 2, 3, 4, 3, 3, 3, 3, 3, 5, 6, 7, 5, 5};
    std::array<double, component_count> sums{};
    for (std::size_t i = 0; i < x.size(); ++i) sums[target[i]] += x[i];
    Fractions folded{};
    for (std::size_t i = 0; i < folded.size(); ++i) folded[i] = static_cast<float>(sums[i]);
    return folded;
}

void make_constants(const Tables& tables, Constants& constants) {
    std::array<double, component_count> volume, root, temperature, acentric;
    for (std::size_t i = 0; i < component_count; ++i) {
        volume[i] = at(tables.molar_mass, i) / at(tables.critical_density, i);
        root[i] = cube_root(volume[i], CubeRoot::power);
        temperature[i] = at(tables.critical_temperature, i);
        acentric[i] = at(tables.acentric, i) * volume[i];
    }
    const auto ordered = [&](std::size_t i, std::size_t j) {
        const std::size_t pair = i * component_count + j;
        const double width = root[i] + root[j];
        const double weight = (1.0 - at(tables.volume_correction, pair)) * width * width * width / 8.0;
        const double pair_temperature =
            (1.0 - at(tables.temperature_correction, pair)) * std::sqrt(temperature[i] * temperature[j]);
        return PairConstants{weight, weight * pair_temperature * pair_temperature,
                             (acentric[i] + acentric[j]) / (volume[i] + volume[j]) * weight};
    };
    PairConstants* pair = constants.data();
    for (std::size_t i = 0; i < component_count; ++i) {
        *pair++ = ordered(i, i);
        for (std::size_t j = i + 1; j < component_count; ++j) {
            const PairConstants one = ordered(i, j), other = ordered(j, i);
            *pair++ = {one.volume + other.volume, one.temperature + other.temperature,
                       one.acentric + other.acentric};
        }
    }
}

PseudoCritical pseudo_critical(const Fractions& x, const Constants& constants, double R) {
    PairConstants sum{0.0, 0.0, 0.0};
    const PairConstants* pair = constants.data();
    for (std::size_t i = 0; i < component_count; ++i)
        for (std::size_t j = i; j < component_count; ++j, ++pair) {
            const double weight = static_cast<double>(x[i]) * x[j];
            sum.volume += weight * pair->volume;
            sum.temperature += weight * pair->temperature;
            sum.acentric += weight * pair->acentric;
        }
    PseudoCritical mixture{};
    mixture.density = 1.0 / sum.volume;
    mixture.temperature = static_cast<float>(std::sqrt(sum.temperature * mixture.density));
    mixture.acentric = static_cast<float>(sum.acentric * mixture.density);
    mixture.pressure = static_cast<float>(R * 0.001 * mixture.density * mixture.temperature *
                                          (0.28707 - 0.05559 * mixture.acentric));
    return mixture;
}

void equation_coefficients(const float* a, const float* b, float acentric, Coefficients& c) {
    for (std::size_t k = 0; k < density_powers; ++k)
        for (std::size_t l = 0; l < static_cast<std::size_t>(temperature_terms[k]); ++l) {
            const std::size_t position = k * columns + l;
            c[k][l] = static_cast<float>(at(a, position) + acentric * at(b, position));
        }
}

Isotherm::Isotherm(const Coefficients& c, double reduced_temperature)
    : reduced_temperature_(reduced_temperature) {
    const double inverse = 1.0 / reduced_temperature;
    for (std::size_t k = 0; k < density_powers; ++k) {
        double sum = 0.0;
        for (auto l = static_cast<std::size_t>(temperature_terms[k]); l-- > 0;) sum = sum * inverse + c[k][l];
        coefficient_[k] = sum;
    }
}

IsothermPoint Isotherm::at(double w) const {
    // Z/w - 1/w by Horner's rule, with its first derivative and half of the second.
    double sum = 0.0;
    double first = 0.0;
    double half_second = 0.0;
    for (std::size_t k = density_powers; k-- > 0;) {
        half_second = half_second * w + first;
        first = first * w + sum;
        sum = sum * w + coefficient_[k];
    }
    const double Z = 1.0 + w * sum;
    return {w, w * Z, 1.0 + w * (2.0 * sum + w * first), 2.0 * (sum + w * (2.0 * first + w * half_second))};
}

}  // namespace kalorfix::gas::vnic
