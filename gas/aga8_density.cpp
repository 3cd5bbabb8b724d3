#include "gas/aga8_density.h"

#include <cmath>

namespace kalorfix::gas::aga8 {

// The cells are not initialised here: those in use are filled.
DensityTerms::DensityTerms(const DensityLayout& layout, const Coefficients& coefficients)
    : layout_(layout), coefficients_(coefficients) {
    if (!layout.collapses()) return;
    for (std::size_t cell = 0; cell < layout.cell_count; ++cell) C_[cell] = 0.0;
    for (std::size_t n = first_density_term; n < term_count; ++n)
        C_[layout.cell_of[n]] += static_cast<double>(coefficients[n]);
    for (std::size_t g = 0; g < layout.group_count; ++g) {
        sum_bC_[g] = 0.0;
        for (std::size_t cell = layout.groups[g].first_cell; cell < layout.groups[g].end_cell; ++cell) {
            bC_[cell] = static_cast<double>(layout.b[cell]) * C_[cell];
            sum_bC_[g] += bC_[cell];
        }
    }
}

// With P_m = sum(b^m C r^b) of a group, e = exp(-c r^k) and s = c k r^k the group's part is
//   S           e (P1 - s P0)
//   exact       e (P2 - s ((k - s) P0 + 2 P1)) / r
//   prescribed  e (sum(b C) + s ((s - k) P0 - P1) / r)
template <Derivative derivative>
DensitySums DensityTerms::collapsed(double r) const {
    std::array<double, DensityLayout::max_exponent + 1> power;
    power[0] = 1.0;
    for (std::size_t b = 1; b <= static_cast<std::size_t>(layout_.largest_exponent); ++b)
        power[b] = power[b / 2] * (b == 1 ? r : power[b - b / 2]);
    DensitySums sums{0.0, 0.0};
    for (std::size_t g = 0; g < layout_.group_count; ++g) {
        const DensityLayout::Group& group = layout_.groups[g];
        // The P_m over r: the powers of r in the derivatives are lower by one.
        double p0 = 0.0;
        double p1 = 0.0;
        double p2 = 0.0;
        for (std::size_t cell = group.first_cell; cell < group.end_cell; ++cell) {
            const double lower = power[layout_.b[cell] - 1U];
            p0 += C_[cell] * lower;
            p1 += bC_[cell] * lower;
            if constexpr (derivative == Derivative::exact)
                p2 += static_cast<double>(layout_.b[cell]) * bC_[cell] * lower;
        }
        const double k = group.k;
        const double exponent = group.c * power[group.k];
        const double e = group.k == 0 ? 1.0 : std::exp(-exponent);
        const double s = k * exponent;
        sums.S += e * r * (p1 - s * p0);
        if constexpr (derivative == Derivative::exact)
            sums.derivative += e * (p2 - s * ((k - s) * p0 + 2.0 * p1));
        else
            sums.derivative += e * (sum_bC_[g] + s * ((s - k) * p0 - p1));
    }
    return sums;
}

template <Derivative derivative>
DensitySums DensityTerms::term_by_term(double r) const {
    DensitySums sums{0.0, 0.0};
    for (std::size_t n = first_density_term; n < term_count; ++n) {
        const double b = layout_.term_b[n];
        const double c = layout_.term_c[n];
        const double k = layout_.term_k[n];
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
    return layout_.collapses() ? collapsed<derivative>(r) : term_by_term<derivative>(r);
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
