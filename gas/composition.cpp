#include "gas/composition.h"

namespace kalorfix::gas {
namespace {

float sum(const Fractions& values) {
    float total = 0.0F;
    for (const float value : values) total += value;
    return total;
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
    float factor = 0.0F;
    float ideal = 0.0F;
    for (std::size_t n = 0; n < gas.count; ++n) {
        const std::size_t i = gas.present[n];
        factor += gas.x[i] * summation_factor[i];
        ideal += gas.x[i] * ideal_density[i];
    }
    const double squared = static_cast<double>(factor) * factor;
    const auto z = static_cast<float>(1.0 - squared);
    return ideal / z;
}

float molar_mass(const Composition& gas, const float* of_components) {
    double sum = 0.0;
    for (std::size_t n = 0; n < gas.count; ++n) {
        const std::size_t i = gas.present[n];
        sum += static_cast<double>(gas.x[i]) * of_components[i];
    }
    return static_cast<float>(sum);
}

double standard_compressibility(const Composition& gas) {
    double carbon = 0.0;
    for (std::size_t n = 0; n < gas.count; ++n) {
        const std::size_t i = gas.present[n];
        carbon += static_cast<double>(gas.x[i]) * carbon_number[i];
    }
    const double root = 0.0458 * carbon - 0.0022 + 0.0195 * gas.x[nitrogen] + 0.075 * gas.x[carbon_dioxide];
    return 1.0 - root * root;
}

double standard_compressibility(double rho_c, double xa, double xy) {
    const double root = 0.0741 * rho_c - 0.006 - 0.063 * xa - 0.0575 * xy;
    return 1.0 - root * root;
}

}  // namespace kalorfix::gas
