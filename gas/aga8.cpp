#include "gas/aga8.h"

#include <cmath>

#include "gas/half_powers.h"

namespace kalorfix::gas::aga8 {
namespace {

constexpr std::size_t max_pairs = component_count * (component_count + 1) / 2;
using PerPair = std::array<double, max_pairs>;

// All pairs of components that are there, i <= j, each with its weight in a sum over ordered pairs.
struct Pairs {
    std::size_t count = 0;
    PerPair weight;                                ///< x_i x_j (K_i K_j)^1.5, twice for i < j
    PerPair orientation, quadrupole, temperature;  ///< G_ij, Q_i Q_j, sqrt(F_i F_j)
    std::array<PerPair, HalfPower::bits> energy;   ///< sqrt(E_ij), E_ij, E_ij^2, E_ij^4, ...
};

double power_2_5(double value) { return value * value * std::sqrt(value); }

double power_5(double value) {
    const double squared = value * value;
    return squared * squared * value;
}

double at(const float* table, std::size_t i) { return static_cast<double>(table[i]); }
double at(const float* table, std::size_t i, std::size_t j) {
    return static_cast<double>(table[i * component_count + j]);
}

// (value + 1 - flag)^flag: 1 for a flag of 0, the value itself for 1.
double flagged(double value, double flag) {
    if (flag == 0.0) return 1.0;
    const double base = value + 1.0 - flag;
    return flag == 1.0 ? base : std::pow(base, flag);
}

void multiply_flagged(PerPair& products, std::size_t count, const PerPair& values, double flag) {
    if (flag == 0.0) return;
    for (std::size_t p = 0; p < count; ++p) products[p] *= flagged(values[p], flag);
}

void multiply_energy(PerPair& products, const Pairs& pairs, const HalfPower& u) {
    if (!u.exact()) {
        for (std::size_t p = 0; p < pairs.count; ++p) products[p] *= std::pow(pairs.energy[1][p], u.exponent());
        return;
    }
    PerPair powers;
    powers.fill(1.0);
    for (int bit = 0; bit < HalfPower::bits; ++bit) {
        if (!u.uses(bit)) continue;
        const PerPair& square = pairs.energy[static_cast<std::size_t>(bit)];
        for (std::size_t p = 0; p < pairs.count; ++p) powers[p] *= square[p];
    }
    if (u.negative())
        for (std::size_t p = 0; p < pairs.count; ++p) products[p] /= powers[p];
    else
        for (std::size_t p = 0; p < pairs.count; ++p) products[p] *= powers[p];
}

void list_pairs(Pairs& pairs, const Composition& gas, const Components& pure, const PairTable& energy,
                const PairTable& orientation) {
    std::array<double, component_count> size;  // K^1.5, indexed like the list of components
    for (std::size_t n = 0; n < gas.count; ++n) {
        const double K = at(pure.size, gas.present[n]);
        size[n] = K * std::sqrt(K);
    }
    for (std::size_t n = 0; n < gas.count; ++n)
        for (std::size_t m = n; m < gas.count; ++m) {
            const std::size_t i = gas.present[n];
            const std::size_t j = gas.present[m];
            const std::size_t p = pairs.count++;
            pairs.weight[p] = (n == m ? 1.0 : 2.0) * static_cast<double>(gas.x[i]) *
                              static_cast<double>(gas.x[j]) * size[n] * size[m];
            pairs.orientation[p] = static_cast<double>(orientation[i][j]);
            pairs.quadrupole[p] = at(pure.quadrupole, i) * at(pure.quadrupole, j);
            pairs.temperature[p] = std::sqrt(at(pure.high_temperature, i) * at(pure.high_temperature, j));
            pairs.energy[1][p] = static_cast<double>(energy[i][j]);
        }
    for (std::size_t p = 0; p < pairs.count; ++p) pairs.energy[0][p] = std::sqrt(pairs.energy[1][p]);
    for (std::size_t bit = 2; bit < pairs.energy.size(); ++bit)
        for (std::size_t p = 0; p < pairs.count; ++p)
            pairs.energy[bit][p] = pairs.energy[bit - 1][p] * pairs.energy[bit - 1][p];
}

}  // namespace

Mixture mix(const Composition& gas, const Components& pure, const Binaries& pairs) {
    std::array<double, component_count> x, size, energy, orientation;
    double size_sum = 0.0;
    double energy_sum = 0.0;
    Mixture mixture;
    for (std::size_t n = 0; n < gas.count; ++n) {
        const std::size_t i = gas.present[n];
        x[n] = static_cast<double>(gas.x[i]);
        size[n] = x[n] * power_2_5(at(pure.size, i));
        energy[n] = x[n] * power_2_5(at(pure.energy, i));
        orientation[n] = at(pure.orientation, i);
        size_sum += size[n];
        energy_sum += energy[n];
        mixture.orientation += x[n] * orientation[n];
        mixture.quadrupole += x[n] * at(pure.quadrupole, i);
        mixture.high_temperature += x[n] * x[n] * at(pure.high_temperature, i);
    }
    double size_cross = 0.0;
    double energy_cross = 0.0;
    double orientation_cross = 0.0;
    for (std::size_t n = 0; n < gas.count; ++n)
        for (std::size_t m = n + 1; m < gas.count; ++m) {
            const std::size_t i = gas.present[n];
            const std::size_t j = gas.present[m];
            size_cross += (power_5(at(pairs.size, i, j)) - 1.0) * size[n] * size[m];
            energy_cross += (power_5(at(pairs.mixture_energy, i, j)) - 1.0) * energy[n] * energy[m];
            orientation_cross +=
                x[n] * x[m] * (at(pairs.orientation, i, j) - 1.0) * (orientation[n] + orientation[m]);
        }
    mixture.size_cubed = std::pow(size_sum * size_sum + 2.0 * size_cross, 0.6);
    mixture.energy = std::pow(energy_sum * energy_sum + 2.0 * energy_cross, 0.2);
    // The factor 2 stands in the standard's formula for the gas meters of this family; the published reference values
    // carry the cross term once.
    mixture.orientation += 2.0 * orientation_cross;
    return mixture;
}

void pair_parameters(const Composition& gas, const Components& pure, const Binaries& pairs, PairTable& energy,
                     PairTable& orientation) {
    for (std::size_t n = 0; n < gas.count; ++n) {
        const std::size_t i = gas.present[n];
        energy[i][i] = pure.energy[i];
        orientation[i][i] = pure.orientation[i];
        for (std::size_t m = n + 1; m < gas.count; ++m) {
            const std::size_t j = gas.present[m];
            const double mean_energy = std::sqrt(at(pure.energy, i) * at(pure.energy, j));
            const double mean_orientation = (at(pure.orientation, i) + at(pure.orientation, j)) / 2.0;
            energy[i][j] = static_cast<float>(at(pairs.energy, i, j) * mean_energy);
            energy[j][i] = static_cast<float>(at(pairs.energy, j, i) * mean_energy);
            orientation[i][j] = static_cast<float>(at(pairs.orientation, i, j) * mean_orientation);
            orientation[j][i] = static_cast<float>(at(pairs.orientation, j, i) * mean_orientation);
        }
    }
}

VirialFactors virial_factors(const Composition& gas, const Components& pure, const Terms& terms,
                             const PairTable& energy, const PairTable& orientation) {
    Pairs pairs;
    list_pairs(pairs, gas, pure, energy, orientation);
    VirialFactors factors{};
    PerPair products;
    for (std::size_t n = 0; n < virial_terms; ++n) {
        for (std::size_t p = 0; p < pairs.count; ++p) products[p] = pairs.weight[p];
        multiply_energy(products, pairs, HalfPower(at(terms.u, n)));
        multiply_flagged(products, pairs.count, pairs.orientation, at(terms.g, n));
        multiply_flagged(products, pairs.count, pairs.quadrupole, at(terms.q, n));
        multiply_flagged(products, pairs.count, pairs.temperature, at(terms.f, n));
        double sum = 0.0;
        for (std::size_t p = 0; p < pairs.count; ++p) sum += products[p];
        factors[n] = static_cast<float>(sum);
    }
    return factors;
}

double second_virial(double T_K, const Terms& terms, const VirialFactors& factors) {
    const PowerBase temperature(T_K);
    double sum = 0.0;
    for (std::size_t n = 0; n < virial_terms; ++n)
        sum += at(terms.a, n) * static_cast<double>(factors[n]) / temperature.to(HalfPower(at(terms.u, n)));
    return sum;
}

Coefficients term_coefficients(double T_K, const Mixture& mixture, const Terms& terms) {
    // U^u alone overflows single precision at u = 21..23; of U/T it never does.
    const PowerBase reduced(mixture.energy / T_K);
    const double quadrupole = mixture.quadrupole * mixture.quadrupole;
    Coefficients coefficients{};
    for (std::size_t n = first_density_term; n < term_count; ++n)
        coefficients[n] = static_cast<float>(at(terms.a, n) * flagged(mixture.orientation, at(terms.g, n)) *
                                             flagged(quadrupole, at(terms.q, n)) *
                                             flagged(mixture.high_temperature, at(terms.f, n)) *
                                             reduced.to(HalfPower(at(terms.u, n))));
    return coefficients;
}

}  // namespace kalorfix::gas::aga8
