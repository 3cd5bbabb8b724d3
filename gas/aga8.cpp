#include "gas/aga8.h"

#include <cmath>

#include "gas/half_powers.h"

namespace kalorfix::gas::aga8 {
namespace {

// Sums over the pairs run in four lanes; the last pairs are filled up with some of weight 0.
constexpr std::size_t lanes = 4;
constexpr std::size_t max_pairs = component_count * (component_count + 1) / 2;
static_assert(max_pairs % lanes == 0);
using PerPair = std::array<double, max_pairs>;
using EnergyPowers = std::array<PerPair, HalfPower::bits>;

// All pairs of components that are there, i <= j.
struct Pairs {
    std::size_t count = 0;                         ///< filled up to a multiple of the lanes
    PerPair weight;                                ///< x_i x_j (K_i K_j)^1.5, twice for i < j
    PerPair orientation, quadrupole, temperature;  ///< G_ij, Q_i Q_j, sqrt(F_i F_j)
    EnergyPowers energy;                           ///< sqrt(E_ij), E_ij, E_ij^2, E_ij^4, ...
    EnergyPowers inverse_energy;                   ///< their reciprocals
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

// What a term multiplies the weights of the pairs with: ready factors by their address, others made up on the spot.
class Factors {
public:
    void use(const PerPair& values) { used_[count_++] = &values; }

    PerPair& make() {
        use(made_[made_count_]);
        return made_[made_count_++];
    }

    [[nodiscard]] double sum(const Pairs& pairs) const {
        switch (count_) {
            case 0:
                return sum_of<0>(pairs);
            case 1:
                return sum_of<1>(pairs);
            case 2:
                return sum_of<2>(pairs);
            case 3:
                return sum_of<3>(pairs);
            default:
                return sum_of<most>(pairs);
        }
    }

private:
    static constexpr std::size_t most = HalfPower::bits + 3;

    // With the number of factors known beforehand, but for the largest, the lanes stay in registers.
    template <std::size_t N>
    [[nodiscard]] double sum_of(const Pairs& pairs) const {
        const std::size_t count = N == most ? count_ : N;
        std::array<double, lanes> sums{};
        for (std::size_t p = 0; p < pairs.count; p += lanes) {
            std::array<double, lanes> products;
            for (std::size_t lane = 0; lane < lanes; ++lane) products[lane] = pairs.weight[p + lane];
            for (std::size_t n = 0; n < count; ++n)
                for (std::size_t lane = 0; lane < lanes; ++lane) products[lane] *= (*used_[n])[p + lane];
            for (std::size_t lane = 0; lane < lanes; ++lane) sums[lane] += products[lane];
        }
        return (sums[0] + sums[1]) + (sums[2] + sums[3]);
    }

    std::array<const PerPair*, most> used_;
    std::size_t count_ = 0;
    std::array<PerPair, 4> made_;
    std::size_t made_count_ = 0;
};

void add_flagged(Factors& factors, const Pairs& pairs, const PerPair& values, double flag) {
    if (flag == 0.0) return;
    if (flag == 1.0) return factors.use(values);
    PerPair& powers = factors.make();
    for (std::size_t p = 0; p < pairs.count; ++p) powers[p] = flagged(values[p], flag);
}

void add_energy(Factors& factors, const Pairs& pairs, const HalfPower& u) {
    if (!u.exact()) {
        PerPair& powers = factors.make();
        for (std::size_t p = 0; p < pairs.count; ++p) powers[p] = std::pow(pairs.energy[1][p], u.exponent());
        return;
    }
    for (int bit = 0; bit < HalfPower::bits; ++bit)
        if (u.uses(bit))
            factors.use((u.negative() ? pairs.inverse_energy : pairs.energy)[static_cast<std::size_t>(bit)]);
}

// Squares from position 1 on.
void square_up(EnergyPowers& powers, std::size_t count) {
    for (std::size_t bit = 2; bit < powers.size(); ++bit)
        for (std::size_t p = 0; p < count; ++p) powers[bit][p] = powers[bit - 1][p] * powers[bit - 1][p];
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
    for (; pairs.count % lanes != 0; ++pairs.count) {
        pairs.weight[pairs.count] = 0.0;
        for (PerPair* const values :
             {&pairs.orientation, &pairs.quadrupole, &pairs.temperature, &pairs.energy[1]})
            (*values)[pairs.count] = 1.0;
    }
    for (std::size_t p = 0; p < pairs.count; ++p) {
        pairs.energy[0][p] = std::sqrt(pairs.energy[1][p]);
        pairs.inverse_energy[0][p] = 1.0 / pairs.energy[0][p];
        pairs.inverse_energy[1][p] = 1.0 / pairs.energy[1][p];
    }
    square_up(pairs.energy, pairs.count);
    square_up(pairs.inverse_energy, pairs.count);
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
    // Doubled like the cross terms of size and energy; the published reference values carry it once.
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
    for (std::size_t n = 0; n < virial_terms; ++n) {
        Factors term;
        add_energy(term, pairs, HalfPower(at(terms.u, n)));
        add_flagged(term, pairs, pairs.orientation, at(terms.g, n));
        add_flagged(term, pairs, pairs.quadrupole, at(terms.q, n));
        add_flagged(term, pairs, pairs.temperature, at(terms.f, n));
        factors[n] = static_cast<float>(term.sum(pairs));
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
