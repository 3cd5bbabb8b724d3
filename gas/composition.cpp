// SPDX-License-Identifier: MIT
#include "gas/composition.h"

#include <numeric>

namespace kalorfix::gas {
namespace {

float sum(const Fractions& values) { return std::accumulate(values.begin(), values.end(), 0.0F); }

// The sum of x_i times what the components have, in the precision of Sum.
template <class Sum, class Table>
Sum weighted_sum(const Composition& gas, const Table& of_components) {
    Sum sum = 0;
    for (const std::size_t i : gas.components()) sum += static_cast<Sum>(gas.x[i]) * of_components[i];
    return sum;
}

}  // namespace

Composition from_mole_percent(const Fractions& percent) {
    Fractions x{};
    for (std::size_t i = 0; i < component_count; ++i) x[i] = percent[i] / 100.0F;
    return with_present_components(x);
}

Composition from_volume_fractions(const Fractions& volume, const float* z_standard) {
    const float given = sum(volume);
    Fractions x{};
    for (std::size_t i = 0; i < component_count; ++i) x[i] = volume[i] / given / z_standard[i];
    const float moles = sum(x);
    for (float& value : x) value /= moles;
    return with_present_components(x);
}

Composition with_present_components(const Fractions& x) {
    Composition gas{.x = x};
    for (std::size_t i = 0; i < component_count; ++i)
        if (x[i] != 0.0F) gas.present[gas.count++] = i;
    return gas;
}

float standard_density(const Composition& gas, const float* summation_factor, const float* ideal_density) {
    const double factor = weighted_sum<float>(gas, summation_factor);
    const auto z = static_cast<float>(1.0 - factor * factor);
    return weighted_sum<float>(gas, ideal_density) / z;
}

float molar_mass(const Composition& gas, const float* of_components) {
    return static_cast<float>(weighted_sum<double>(gas, of_components));
}

double standard_compressibility(const Composition& gas) {
    const double carbon = weighted_sum<double>(gas, carbon_number);
    const double root = 0.0458 * carbon - 0.0022 + 0.0195 * gas.x[nitrogen] + 0.075 * gas.x[carbon_dioxide];
    return 1.0 - root * root;
}

double standard_compressibility(double rho_c, double xa, double xy) {
    const double root = 0.0741 * rho_c - 0.006 - 0.063 * xa - 0.0575 * xy;
    return 1.0 - root * root;
}

}  // namespace kalorfix::gas
