// SPDX-License-Identifier: MIT
#include "gas/aga8_constants.h"

#include <algorithm>
#include <cmath>

namespace kalorfix::gas::aga8 {
namespace {

double at(const float* table, std::size_t i) { return table[i]; }
double at(const float* table, std::size_t i, std::size_t j) { return table[i * component_count + j]; }

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
            Forms forms;
            const double K = at(t.pure.size, i) * at(t.pure.size, j);
            const double size = K * std::sqrt(K);
            const double G = c.pair_orientation[i][j];
            const double Q = c.quadrupole[i] * c.quadrupole[j];
            const double F = std::sqrt(c.high_temperature[i] * c.high_temperature[j]);
            const PowerBase E(c.pair_energy[i][j], c.virial_u);
            for (std::size_t n = 0; n < virial_terms; ++n)
                forms[n] = size * E.to(c.u[n]) * flagged(G, c.g[n]) * flagged(Q, c.q[n]) * flagged(F, c.f[n]);
            const bool unlike = i != j;
            forms[size_form] = unlike ? (power_5(at(t.pairs.size, i, j)) - 1.0) * c.size[i] * c.size[j] : 0.0;
            forms[energy_form] =
                unlike ? (power_5(at(t.pairs.mixture_energy, i, j)) - 1.0) * c.energy[i] * c.energy[j] : 0.0;
            forms[orientation_form] =
                unlike ? (at(t.pairs.orientation, i, j) - 1.0) * (c.orientation[i] + c.orientation[j]) : 0.0;
            for (std::size_t k = 0; k < form_count; k += 2) c.forms[i][j][k / 2] = Pair{forms[k], forms[k + 1]};
        }
}

void make_terms(const Terms& t, Constants& c) {
    c.virial_u = c.term_u = {};
    c.plain_terms = true;
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
        if (n >= first_density_term)
            c.plain_terms = c.plain_terms && c.u[n].exact && c.flags[n] < Constants::other_flags;
    }
}

}  // namespace

double flagged(double value, double flag) {
    if (flag == 0.0) return 1.0;
    const double base = value + 1.0 - flag;
    return flag == 1.0 ? base : std::pow(base, flag);
}

DensityLayout density_layout(const Terms& terms) {
    DensityLayout made{};
    const auto place_of = [&made](double exponent) {
        const bool whole =
            exponent >= 0.0 && exponent <= DensityLayout::largest_whole && exponent == std::trunc(exponent);
        if (whole) {
            const auto place = static_cast<std::size_t>(exponent);
            made.whole_count = std::max(made.whole_count, place + 1);
            return static_cast<std::uint8_t>(place);
        }
        made.other_exponents[made.other_count] = exponent;
        return static_cast<std::uint8_t>(DensityLayout::largest_whole + 1 + made.other_count++);
    };
    std::array<bool, density_terms> placed{};
    const auto term = [](const float* table, std::size_t n) { return at(table, first_density_term + n); };
    const auto like = [&](const float* table, std::size_t n, std::size_t m) {
        return n == m || term(table, n) == term(table, m);
    };
    for (std::size_t n = 0; n < density_terms; ++n) {
        if (placed[n]) continue;
        const double c = term(terms.c, n);
        const double k = term(terms.k, n);
        DensityLayout::Group& group = made.groups[made.group_count++];
        group = {c, k, std::exp(-c), c == 0.0 || k == 0.0, place_of(k), 0};
        for (std::size_t m = n; m < density_terms; ++m) {
            if (placed[m] || !like(terms.c, n, m) || !like(terms.k, n, m)) continue;
            const auto cell = static_cast<std::uint8_t>(made.cell_count++);
            const double b = term(terms.b, m);
            made.cells[cell] = {Pair{1.0, b}, Pair{b * b, b * b}, place_of(b)};
            ++group.cells;
            for (std::size_t l = m; l < density_terms; ++l)
                if (!placed[l] && like(terms.c, n, l) && like(terms.k, n, l) && like(terms.b, m, l)) {
                    made.cell_of[l] = cell;
                    placed[l] = true;
                }
        }
    }
    return made;
}

void DensityLayout::raise(double r, std::array<double, power_places>& power) const {
    power[0] = 1.0;
    power[1] = r;
    for (std::size_t n = 2; n < whole_count; ++n) power[n] = power[n - 1] * r;
    for (std::size_t n = 0; n < other_count; ++n)
        power[largest_whole + 1 + n] = std::pow(r, other_exponents[n]);
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
    c.density = density_layout(t.terms);
}

}  // namespace kalorfix::gas::aga8
