#include "gas/aga8_density.h"

#include <algorithm>
#include <cmath>

namespace kalorfix::gas::aga8 {
namespace {

// A whole number from 0 to `largest`, or one more than that for anything else.
std::size_t small_exponent(double value, std::size_t largest) {
    const bool small = value >= 0.0 && value <= static_cast<double>(largest) && value == std::floor(value);
    return small ? static_cast<std::size_t>(value) : largest + 1;
}

double at(const float* table, std::size_t n) { return static_cast<double>(table[n]); }

}  // namespace

DensityTerms::DensityTerms(const Terms& terms, const Coefficients& coefficients)
    : terms_(terms), coefficients_(coefficients), collapsed_(collapse()) {}

bool DensityTerms::collapse() {
    for (std::size_t n = first_density_term; n < term_count; ++n) {
        const double c = at(terms_.c, n);
        const std::size_t k = small_exponent(at(terms_.k, n), max_exponent);
        const std::size_t b = small_exponent(at(terms_.b, n), max_exponent);
        if (k > max_exponent || b > max_exponent || b == 0) return false;
        if ((c != 0.0) != (k != 0)) return false;
        std::size_t group = 0;
        while (group < group_count_ && !(groups_[group].c == c && groups_[group].k == k)) ++group;
        if (group == max_groups) return false;
        if (group == group_count_) {
            groups_[group_count_].c = c;
            groups_[group_count_++].k = k;
        }
        groups_[group].coefficient[b] += static_cast<double>(coefficients_[n]);
        groups_[group].sum_bC += static_cast<double>(b) * static_cast<double>(coefficients_[n]);
        highest_ = std::max({highest_, b, k});
    }
    return true;
}

DensitySums DensityTerms::operator()(double r) const { return collapsed_ ? collapsed(r) : term_by_term(r); }

// With P_m = sum(b^m C r^b) of a group, e = exp(-c r^k) and s = c k r^k the group's part is
//   S           e (P1 - s P0)
//   correction  e (sum(b C) + [s (s - k) P0 - s P1] / r)
//   slope       e (P2 - s (k P0 + 2 P1 - s P0)) / r
DensitySums DensityTerms::collapsed(double r) const {
    std::array<double, max_exponent + 1> power;
    power[0] = 1.0;
    for (std::size_t b = 1; b <= highest_; ++b) power[b] = power[b - 1] * r;
    DensitySums sums{0.0, 0.0, 0.0};
    for (std::size_t g = 0; g < group_count_; ++g) {
        const Group& group = groups_[g];
        // P1/r, P2/r and P0/r: the powers of r in the derivatives are lower by one.
        double p0 = 0.0;
        double p1 = 0.0;
        double p2 = 0.0;
        for (std::size_t b = 1; b <= highest_; ++b) {
            const auto exponent = static_cast<double>(b);
            const double part = group.coefficient[b] * power[b - 1];
            p0 += part;
            p1 += exponent * part;
            p2 += exponent * exponent * part;
        }
        if (group.k == 0) {
            sums.S += p1 * r;
            sums.correction += group.sum_bC;
            sums.slope += p2;
            continue;
        }
        const auto k = static_cast<double>(group.k);
        const double e = std::exp(-group.c * power[group.k]);
        const double s = group.c * k * power[group.k];
        sums.S += e * r * (p1 - s * p0);
        sums.correction += e * (group.sum_bC + s * ((s - k) * p0 - p1));
        sums.slope += e * (p2 - s * ((k - s) * p0 + 2.0 * p1));
    }
    return sums;
}

DensitySums DensityTerms::term_by_term(double r) const {
    DensitySums sums{0.0, 0.0, 0.0};
    for (std::size_t n = first_density_term; n < term_count; ++n) {
        const double b = at(terms_.b, n);
        const double c = at(terms_.c, n);
        const double k = at(terms_.k, n);
        const double coefficient = static_cast<double>(coefficients_[n]);
        const double rk = std::pow(r, k);
        const double rb = std::pow(r, b);
        const double e = std::exp(-c * rk);
        const double inner = b - c * k * rk;
        sums.S += coefficient * inner * rb * e;
        sums.correction += coefficient * e *
                           (-c * k * k * std::pow(r, k + b - 1.0) + b -
                            c * k * rk * (b * std::pow(r, b - 1.0) - c * k * rb * std::pow(r, k - 1.0)));
        sums.slope += coefficient * e * (inner * inner - c * k * k * rk) * std::pow(r, b - 1.0);
    }
    return sums;
}

double compressibility(const Equation& e, double rho_kmol_m3) {
    const double r = e.size_cubed * rho_kmol_m3;
    return 1.0 + e.second_virial * rho_kmol_m3 - e.linear * r + e.terms(r).S;
}

namespace {

enum class Derivative { published, exact };

MolarDensity iterate(const Equation& e, double p_MPa, Derivative derivative, int max_steps) {
    constexpr double tolerance = 1e-6;
    const double pressure = 1000.0 * p_MPa;
    double rho = 9000.0 * p_MPa / (e.RT * (1.1 * p_MPa / 5.0 + 0.7));
    // An intermediate density may well be negative: nearly half of the states that converge pass through one.
    for (int step = 0; step < max_steps; ++step) {
        const double r = e.size_cubed * rho;
        const DensitySums sums = e.terms(r);
        const double linear = e.second_virial * rho - e.linear * r;
        const double Z = 1.0 + linear + sums.S;
        const double terms = derivative == Derivative::published ? sums.correction : sums.slope;
        const double delta = (pressure - e.RT * Z * rho) / (e.RT * (1.0 + 2.0 * linear + sums.S + r * terms));
        rho += delta;
        const double relative = std::fabs(delta / rho);
        if (!std::isfinite(relative)) return {rho, false};
        if (relative <= tolerance) return {rho, true};
    }
    return {rho, false};
}

}  // namespace

MolarDensity molar_density(const Equation& e, double p_MPa) {
    constexpr int published_steps = 100;
    constexpr int exact_steps = 50;
    const MolarDensity published = iterate(e, p_MPa, Derivative::published, published_steps);
    return published.converged ? published : iterate(e, p_MPa, Derivative::exact, exact_steps);
}

}  // namespace kalorfix::gas::aga8
