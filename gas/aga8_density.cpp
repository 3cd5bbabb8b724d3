#include "gas/aga8_density.h"

#include <algorithm>
#include <cmath>

namespace kalorfix::gas::aga8 {
namespace {

// A whole number from 0 to `largest`, or -1 for anything else.
int small_exponent(float value, int largest) {
    const bool small = value >= 0.0F && value <= static_cast<float>(largest);
    const int whole = small ? static_cast<int>(value) : -1;
    return static_cast<float>(whole) == value ? whole : -1;
}

double at(const float* table, std::size_t n) { return static_cast<double>(table[n]); }

}  // namespace

// The groups are not initialised here: collapse() prepares those that it uses.
DensityTerms::DensityTerms(const Terms& terms, const Coefficients& coefficients)
    : terms_(terms), coefficients_(coefficients), collapsed_(collapse()) {}

bool DensityTerms::collapse() {
    for (std::size_t n = first_density_term; n < term_count; ++n) {
        const int whole_b = small_exponent(terms_.b[n], max_exponent);
        const int whole_k = small_exponent(terms_.k[n], max_exponent);
        if (whole_b < 1 || whole_k < 0) return false;
        const double c = at(terms_.c, n);
        // Without an exponential k has no effect and must be 0, so that all terms of a group have the same c.
        if ((c == 0.0) != (whole_k == 0)) return false;
        while (largest_k_ < whole_k) groups_[static_cast<std::size_t>(++largest_k_)] = Group{};
        const auto b = static_cast<std::size_t>(whole_b);
        const auto k = static_cast<std::size_t>(whole_k);
        Group& group = groups_[k];
        if (group.c != 0.0 && group.c != c) return false;
        group.c = c;
        const double bC = whole_b * static_cast<double>(coefficients_[n]);
        group.C[b] += static_cast<double>(coefficients_[n]);
        group.bC[b] += bC;
        group.bbC[b] += whole_b * bC;
        group.sum_bC += bC;
        largest_b_ = std::max(largest_b_, whole_b);
    }
    return true;
}

// With P_m = sum(b^m C r^b) of a group, e = exp(-c r^k) and s = c k r^k the group's part is
//   S           e (P1 - s P0)
//   exact       e (P2 - s ((k - s) P0 + 2 P1)) / r
//   prescribed  e (sum(b C) + s ((s - k) P0 - P1) / r)
template <Derivative derivative>
DensitySums DensityTerms::collapsed(double r) const {
    ByExponent power;
    power[0] = 1.0;
    const auto highest = static_cast<std::size_t>(std::max(largest_b_, largest_k_));
    const auto last_b = static_cast<std::size_t>(largest_b_);
    for (std::size_t b = 1; b <= highest; ++b) power[b] = power[b - 1] * r;
    DensitySums sums{0.0, 0.0};
    for (std::size_t k = 0; k <= static_cast<std::size_t>(largest_k_); ++k) {
        const Group& group = groups_[k];
        // The P_m over r: the powers of r in the derivatives are lower by one.
        double p0 = 0.0;
        double p1 = 0.0;
        double p2 = 0.0;
        for (std::size_t b = 1; b <= last_b; ++b) {
            p0 += group.C[b] * power[b - 1];
            p1 += group.bC[b] * power[b - 1];
            if constexpr (derivative == Derivative::exact) p2 += group.bbC[b] * power[b - 1];
        }
        const double exponent = group.c * power[k];
        const double e = k == 0 ? 1.0 : std::exp(-exponent);
        const double s = static_cast<double>(k) * exponent;
        sums.S += e * r * (p1 - s * p0);
        if constexpr (derivative == Derivative::exact)
            sums.derivative += e * (p2 - s * ((static_cast<double>(k) - s) * p0 + 2.0 * p1));
        else
            sums.derivative += e * (group.sum_bC + s * ((s - static_cast<double>(k)) * p0 - p1));
    }
    return sums;
}

template <Derivative derivative>
DensitySums DensityTerms::term_by_term(double r) const {
    DensitySums sums{0.0, 0.0};
    for (std::size_t n = first_density_term; n < term_count; ++n) {
        const double b = at(terms_.b, n);
        const double c = at(terms_.c, n);
        const double k = at(terms_.k, n);
        const double rk = std::pow(r, k);
        const double rb = std::pow(r, b);
        const double Ce = static_cast<double>(coefficients_[n]) * std::exp(-c * rk);
        const double inner = b - c * k * rk;
        sums.S += Ce * inner * rb;
        if constexpr (derivative == Derivative::exact)
            sums.derivative += Ce * (inner * inner - c * k * k * rk) * std::pow(r, b - 1.0);
        else
            sums.derivative +=
                Ce * (-c * k * k * std::pow(r, k + b - 1.0) + b -
                      c * k * rk * (b * std::pow(r, b - 1.0) - c * k * rb * std::pow(r, k - 1.0)));
    }
    return sums;
}

template <Derivative derivative>
DensitySums DensityTerms::sums(double r) const {
    return collapsed_ ? collapsed<derivative>(r) : term_by_term<derivative>(r);
}
template DensitySums DensityTerms::sums<Derivative::prescribed>(double r) const;
template DensitySums DensityTerms::sums<Derivative::exact>(double r) const;

double compressibility(const Equation& e, double rho_kmol_m3) {
    const double r = e.size_cubed * rho_kmol_m3;
    return 1.0 + e.second_virial * rho_kmol_m3 - e.linear * r + e.terms.sums<Derivative::prescribed>(r).S;
}

namespace {

template <Derivative derivative>
MolarDensity iterate(const Equation& e, double p_MPa, int max_steps) {
    constexpr double tolerance = 1e-6;
    const double pressure = 1000.0 * p_MPa;
    double rho = 9000.0 * p_MPa / (e.RT * (1.1 * p_MPa / 5.0 + 0.7));
    // An intermediate density may well be negative: nearly half of the states that converge pass through one.
    for (int step = 0; step < max_steps; ++step) {
        const double r = e.size_cubed * rho;
        const DensitySums sums = e.terms.sums<derivative>(r);
        const double linear = e.second_virial * rho - e.linear * r;
        const double Z = 1.0 + linear + sums.S;
        const double delta =
            (pressure - e.RT * Z * rho) / (e.RT * (1.0 + 2.0 * linear + sums.S + r * sums.derivative));
        rho += delta;
        const double relative = std::fabs(delta / rho);
        if (!std::isfinite(relative)) return {rho, false, step + 1};
        // Far below zero the exponentials explode and every step looks small; no K follows from such a Z.
        if (relative <= tolerance) return {rho, std::isfinite(static_cast<float>(Z)), step + 1};
    }
    return {rho, false, max_steps};
}

}  // namespace

MolarDensity molar_density(const Equation& e, double p_MPa) {
    constexpr int prescribed_steps = 100;
    constexpr int exact_steps = 50;
    const MolarDensity prescribed = iterate<Derivative::prescribed>(e, p_MPa, prescribed_steps);
    if (prescribed.converged) return prescribed;
    MolarDensity exact = iterate<Derivative::exact>(e, p_MPa, exact_steps);
    exact.steps += prescribed.steps;
    return exact;
}

}  // namespace kalorfix::gas::aga8
