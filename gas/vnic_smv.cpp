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
            const double weight = static_cast<double>(x[i]) * static_cast<double>(x[j]);
            sum.volume += weight * pair->volume;
            sum.temperature += weight * pair->temperature;
            sum.acentric += weight * pair->acentric;
        }
    PseudoCritical mixture{};
    mixture.density = 1.0 / sum.volume;
    mixture.temperature = static_cast<float>(std::sqrt(sum.temperature * mixture.density));
    mixture.acentric = static_cast<float>(sum.acentric * mixture.density);
    mixture.pressure =
        static_cast<float>(R * 0.001 * mixture.density * static_cast<double>(mixture.temperature) *
                           (0.28707 - 0.05559 * static_cast<double>(mixture.acentric)));
    return mixture;
}

void equation_coefficients(const float* a, const float* b, float acentric, Coefficients& c) {
    for (std::size_t k = 0; k < density_powers; ++k)
        for (std::size_t l = 0; l < static_cast<std::size_t>(temperature_terms[k]); ++l) {
            const std::size_t position = k * columns + l;
            c[k][l] = static_cast<float>(at(a, position) + static_cast<double>(acentric) * at(b, position));
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
