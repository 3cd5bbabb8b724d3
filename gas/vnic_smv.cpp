#include "gas/vnic_smv.h"

#include <cmath>

#include "gas/cube_root.h"

namespace kalorfix::gas::vnic {
namespace {

// Z and the derivative of Z w with respect to w, less 1.
struct Sums {
    double Z, derivative;
};

Sums evaluate(const Isotherm& isotherm, double w) {
    Sums sums{1.0, 0.0};
    double power = 1.0;
    for (std::size_t k = 0; k < density_powers; ++k) {
        power *= w;
        const double term = isotherm[k] * power;
        sums.Z += term;
        sums.derivative += static_cast<double>(k + 2) * term;
    }
    return sums;
}

double at(const float* table, std::size_t i) { return static_cast<double>(table[i]); }

}  // namespace

Fractions fold(const gas::Fractions& x) {
    constexpr std::array<std::size_t, gas::component_count> target{0, 1, 2, 3, 4, 3, 3, 3, 3, 3, 5, 6, 7, 5, 5};
    std::array<double, component_count> sums{};
    for (std::size_t i = 0; i < x.size(); ++i) sums[target[i]] += static_cast<double>(x[i]);
    Fractions folded{};
    for (std::size_t i = 0; i < folded.size(); ++i) folded[i] = static_cast<float>(sums[i]);
    return folded;
}

PseudoCritical pseudo_critical(const Fractions& x, const Tables& tables, double R) {
    std::array<double, component_count> fraction, volume, root, temperature, acentric;
    for (std::size_t i = 0; i < component_count; ++i) {
        fraction[i] = static_cast<double>(x[i]);
        volume[i] = at(tables.molar_mass, i) / at(tables.critical_density, i);
        root[i] = cube_root(volume[i], CubeRoot::power);
        temperature[i] = at(tables.critical_temperature, i);
        acentric[i] = at(tables.acentric, i) * volume[i];
    }
    double volume_sum = 0.0;
    double temperature_sum = 0.0;
    double acentric_sum = 0.0;
    for (std::size_t i = 0; i < component_count; ++i)
        for (std::size_t j = 0; j < component_count; ++j) {
            const std::size_t pair = i * component_count + j;
            const double width = root[i] + root[j];
            const double weight = fraction[i] * fraction[j] * (1.0 - at(tables.volume_correction, pair)) *
                                  width * width * width / 8.0;
            const double pair_temperature =
                (1.0 - at(tables.temperature_correction, pair)) * std::sqrt(temperature[i] * temperature[j]);
            volume_sum += weight;
            temperature_sum += weight * pair_temperature * pair_temperature;
            acentric_sum += (acentric[i] + acentric[j]) / (volume[i] + volume[j]) * weight;
        }
    PseudoCritical mixture{};
    mixture.density = 1.0 / volume_sum;
    mixture.temperature = static_cast<float>(std::sqrt(temperature_sum * mixture.density));
    mixture.acentric = static_cast<float>(acentric_sum * mixture.density);
    mixture.pressure =
        static_cast<float>(R * 0.001 * mixture.density * static_cast<double>(mixture.temperature) *
                           (0.28707 - 0.05559 * static_cast<double>(mixture.acentric)));
    return mixture;
}

void equation_coefficients(const Tables& tables, float acentric, Coefficients& c) {
    for (std::size_t k = 0; k < density_powers; ++k)
        for (std::size_t l = 0; l < static_cast<std::size_t>(temperature_terms[k]); ++l) {
            const std::size_t position = k * columns + l;
            c[k][l] = static_cast<float>(at(tables.a, position) +
                                         static_cast<double>(acentric) * at(tables.b, position));
        }
}

Isotherm isotherm(const Coefficients& c, double reduced_temperature) {
    const double inverse = 1.0 / reduced_temperature;
    Isotherm sums{};
    for (std::size_t k = 0; k < density_powers; ++k) {
        double sum = 0.0;
        for (auto l = static_cast<std::size_t>(temperature_terms[k]); l-- > 0;)
            sum = sum * inverse + static_cast<double>(c[k][l]);
        sums[k] = sum;
    }
    return sums;
}

double compressibility(const Isotherm& isotherm, double reduced_density) {
    return evaluate(isotherm, reduced_density).Z;
}

MolarDensity molar_density(const Isotherm& isotherm, const PseudoCritical& critical, double RT, double p_MPa) {
    constexpr int max_steps = 100;
    constexpr double tolerance = 1e-6;
    double rho = 9000.0 * p_MPa / (RT * (1.1 * p_MPa / static_cast<double>(critical.pressure) + 0.7));
    for (int step = 0; step < max_steps; ++step) {
        const Sums sums = evaluate(isotherm, rho / critical.density);
        const double delta = (1000.0 * p_MPa - sums.Z * RT * rho) / (RT * (1.0 + sums.derivative));
        rho += delta;
        const double relative = std::fabs(delta / rho);
        if (!std::isfinite(relative)) return {rho, false, step + 1};
        if (relative <= tolerance) return {rho, true, step + 1};
    }
    return {rho, false, max_steps};
}

}  // namespace kalorfix::gas::vnic
