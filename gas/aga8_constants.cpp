#include "gas/aga8_constants.h"

#include <algorithm>
#include <cmath>

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

// A whole number from 0 to `largest`, or -1 for anything else.
int small_exponent(double value, int largest) {
    const bool small = value >= 0.0 && value <= largest;
    const int whole = small ? static_cast<int>(value) : -1;
    return whole == value ? whole : -1;
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
            const PowerBase E(static_cast<double>(c.pair_energy[i][j]), c.largest_virial_u);
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
    c.largest_virial_u = c.largest_term_u = 0;
    for (std::size_t n = 0; n < term_count; ++n) {
        c.a[n] = at(t.a, n);
        c.g[n] = at(t.g, n);
        c.q[n] = at(t.q, n);
        c.f[n] = at(t.f, n);
        c.u[n] = HalfPower(at(t.u, n));
        unsigned& largest = n < virial_terms ? c.largest_virial_u : c.largest_term_u;
        if (c.u[n].exact()) largest = std::max(largest, c.u[n].twice());
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
    // The terms that are both serve the sums of the density terms as well.
    c.largest_term_u = std::max(c.largest_term_u, c.largest_virial_u);
}

}  // namespace

double flagged(double value, double flag) {
    if (flag == 0.0) return 1.0;
    const double base = value + 1.0 - flag;
    return flag == 1.0 ? base : std::pow(base, flag);
}

DensityLayout::DensityLayout(const Terms& terms) {
    for (std::size_t n = 0; n < term_count; ++n) {
        term_b[n] = at(terms.b, n);
        term_c[n] = at(terms.c, n);
        term_k[n] = at(terms.k, n);
    }
    collapses_ = collapse();
}

bool DensityLayout::collapse() {
    for (std::size_t n = first_density_term; n < term_count; ++n) {
        if (small_exponent(term_b[n], max_exponent) < 1 || small_exponent(term_k[n], max_exponent) < 0)
            return false;
        // Without an exponential k has no effect and must be 0, so that all terms of a group have the same c.
        if ((term_c[n] == 0.0) != (term_k[n] == 0.0)) return false;
    }
    for (int k = 0; k <= max_exponent; ++k) {
        Group group{static_cast<std::uint8_t>(k), static_cast<std::uint8_t>(cell_count), 0, 0.0};
        for (int whole_b = 1; whole_b <= max_exponent; ++whole_b) {
            bool used = false;
            for (std::size_t n = first_density_term; n < term_count; ++n) {
                if (term_k[n] != k || term_b[n] != whole_b) continue;
                if (group.c != 0.0 && group.c != term_c[n]) return false;
                group.c = term_c[n];
                cell_of[n] = static_cast<std::uint8_t>(cell_count);
                used = true;
            }
            if (!used) continue;
            b[cell_count++] = static_cast<std::uint8_t>(whole_b);
            largest_exponent = std::max({largest_exponent, k, whole_b});
        }
        group.end_cell = static_cast<std::uint8_t>(cell_count);
        if (group.end_cell != group.first_cell) groups[group_count++] = group;
    }
    return true;
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
    c.density = DensityLayout(t.terms);
}

}  // namespace kalorfix::gas::aga8
