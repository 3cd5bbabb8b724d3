#include "gas/aga8_constants.h"

#include <cmath>

#include "gas/aga8_density_tables.h"

namespace kalorfix::gas::aga8 {
namespace {

double at(const float* table, std::size_t i) { return static_cast<double>(table[i]); }
double at(const float* table, std::size_t i, std::size_t j) {
    return static_cast<double>(table[i * component_count + j]);
}

double power_2_5(double value) { return value * value * std::sqrt(value); }

double power_5(double value) {
    const double squared = value * value;
    return squared * squared * value;
}

// Energy and orientation of each pair, as they are handed out.
void make_pairs(const Tables& t, Constants& c) {
    for (std::size_t i = 0; i < component_count; ++i)
        for (std::size_t j = 0; j < component_count; ++j) {
            const double mean_energy = std::sqrt(at(t.pure.energy, i) * at(t.pure.energy, j));
            const double mean_orientation = (at(t.pure.orientation, i) + at(t.pure.orientation, j)) / 2.0;
            c.pair_energy[i][j] =
                i == j ? t.pure.energy[i] : static_cast<float>(at(t.pairs.energy, i, j) * mean_energy);
            c.pair_orientation[i][j] =
                i == j ? t.pure.orientation[i]
                       : static_cast<float>(at(t.pairs.orientation, i, j) * mean_orientation);
        }
}

// What x_i x_j is multiplied by in each of the quadratic sums. The squares of the linear sums of size and energy hold the
// like pairs of those two.
void make_forms(const Tables& t, Constants& c) {
    for (std::size_t i = 0; i < component_count; ++i)
        for (std::size_t j = 0; j < component_count; ++j) {
            Forms& forms = c.forms[i][j];
            const double K = at(t.pure.size, i) * at(t.pure.size, j);
            const double size = K * std::sqrt(K);
            const auto G = static_cast<double>(c.pair_orientation[i][j]);
            const double Q = c.quadrupole[i] * c.quadrupole[j];
            const double F = std::sqrt(c.high_temperature[i] * c.high_temperature[j]);
            const PowerBase E(static_cast<double>(c.pair_energy[i][j]), c.virial_u);
            for (std::size_t n = 0; n < virial_terms; ++n)
                forms[n] = size * E.to(c.u[n]) * flagged(G, c.g[n]) * flagged(Q, c.q[n]) * flagged(F, c.f[n]);
            const bool unlike = i != j;
            forms[size_form] = unlike ? (power_5(at(t.pairs.size, i, j)) - 1.0) * c.size[i] * c.size[j] : 0.0;
            forms[energy_form] =
                unlike ? (power_5(at(t.pairs.mixture_energy, i, j)) - 1.0) * c.energy[i] * c.energy[j] : 0.0;
            forms[orientation_form] =
                unlike ? (at(t.pairs.orientation, i, j) - 1.0) * (c.orientation[i] + c.orientation[j]) : 0.0;
        }
}

void make_terms(const Terms& t, Constants& c) {
    c.virial_u = c.term_u = {};
    for (std::size_t n = 0; n < term_count; ++n) {
        c.a[n] = at(t.a, n);
        c.g[n] = at(t.g, n);
        c.q[n] = at(t.q, n);
        c.f[n] = at(t.f, n);
        c.u[n] = HalfPower(at(t.u, n));
        if (n < virial_terms) c.virial_u.include(c.u[n]);
        if (n >= first_density_term) c.term_u.include(c.u[n]);
        c.flags[n] = 0;
        unsigned bit = 1;
        for (const double flag : {c.g[n], c.q[n], c.f[n]}) {
            if (flag == 1.0)
                c.flags[n] = static_cast<std::uint8_t>(c.flags[n] | bit);
            else if (flag != 0.0)
                c.flags[n] |= Constants::other_flags;
            bit *= 2;
        }
    }
}

}  // namespace

double flagged(double value, double flag) {
    if (flag == 0.0) return 1.0;
    const double base = value + 1.0 - flag;
    return flag == 1.0 ? base : std::pow(base, flag);
}

DensityExponents density_exponents(const Terms& terms) {
    DensityExponents given{};
    given.published = true;
    for (std::size_t n = 0; n < term_count; ++n) {
        given.b[n] = at(terms.b, n);
        given.c[n] = at(terms.c, n);
        given.k[n] = at(terms.k, n);
        if (n < first_density_term) continue;
        const std::size_t term = n - first_density_term;
        given.published = given.published && given.b[n] == published_b[term] &&
                          given.k[n] == published_k[term] && given.c[n] == (published_k[term] != 0 ? 1.0 : 0.0);
    }
    return given;
}

void make_constants(const Tables& t, Constants& c) {
    for (std::size_t i = 0; i < component_count; ++i) {
        c.size[i] = power_2_5(at(t.pure.size, i));
        c.energy[i] = power_2_5(at(t.pure.energy, i));
        c.orientation[i] = at(t.pure.orientation, i);
        c.quadrupole[i] = at(t.pure.quadrupole, i);
        c.high_temperature[i] = at(t.pure.high_temperature, i);
    }
    make_terms(t.terms, c);
    make_pairs(t, c);
    make_forms(t, c);
    c.density = density_exponents(t.terms);
}

}  // namespace kalorfix::gas::aga8
