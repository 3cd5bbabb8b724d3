#include "gas/aga8_density.h"

#include <cmath>
#include <utility>

namespace kalorfix::gas::aga8 {
namespace {

struct Cell {
    int b, k;
};

// The cells in order of k, then of b.
struct Layout {
    std::array<Cell, cell_count> cells{};
    std::array<std::size_t, published_b.size()> cell_of{};  // by term
    std::array<std::size_t, largest_k + 2> first_cell{};    // by k
};

constexpr Layout make_layout() {
    Layout layout;
    std::size_t count = 0;
    for (int k = 0; k <= largest_k; ++k) {
        layout.first_cell[static_cast<std::size_t>(k)] = count;
        for (int b = 1; b <= largest_b; ++b) {
            bool used = false;
            for (std::size_t n = 0; n < published_b.size(); ++n) {
                if (published_b[n] != b || published_k[n] != k) continue;
                layout.cell_of[n] = count;
                used = true;
            }
            if (used) layout.cells[count++] = {b, k};
        }
    }
    layout.first_cell[largest_k + 1] = count;
    return layout;
}

constexpr Layout layout = make_layout();
static_assert(layout.first_cell[largest_k + 1] == cell_count, "an exponent is larger than it is said to be");

// Calls f.operator()<0>() to f.operator()<count - 1>(): straight-line code with constant indices.
template <std::size_t count, class Function>
void unrolled(Function&& f) {
    [&]<std::size_t... k>(std::index_sequence<k...>) { (f.template operator()<k>(), ...); }
    (std::make_index_sequence<count>{});
}

}  // namespace

// The cells are initialised only where they serve.
DensityTerms::DensityTerms(const DensityExponents& exponents, const Coefficients& coefficients)
    : exponents_(exponents), coefficients_(coefficients) {
    if (!exponents.published) return;
    cells_.fill(0.0);
    sum_bC_.fill(0.0);
    unrolled<published_b.size()>([&]<std::size_t n>() {
        cells_[layout.cell_of[n]] += static_cast<double>(coefficients[first_density_term + n]);
    });
    unrolled<cell_count>([&]<std::size_t n>() {
        constexpr Cell cell = layout.cells[n];
        sum_bC_[static_cast<std::size_t>(cell.k)] += static_cast<double>(cell.b) * cells_[n];
    });
}

// With P_m = sum(b^m C r^b) of the terms with one k, e = exp(-r^k) and s = k r^k their part is
//   S           e (P1 - s P0)
//   exact       e (P2 - s ((k - s) P0 + 2 P1)) / r
//   prescribed  e (sum(b C) + s ((s - k) P0 - P1) / r)
template <Derivative derivative>
DensitySums DensityTerms::collapsed(double r) const {
    std::array<double, largest_b> power;
    power[0] = 1.0;
    power[1] = r;
    for (std::size_t b = 2; b < power.size(); ++b) power[b] = power[b / 2] * power[b - b / 2];
    DensitySums sums{0.0, 0.0};
    unrolled<largest_k + 1>([&]<std::size_t group>() {
        constexpr std::size_t first = layout.first_cell[group];
        constexpr auto k = static_cast<double>(group);
        // The P_m over r: the powers of r in the derivatives are lower by one.
        double p0 = 0.0;
        double p1 = 0.0;
        double p2 = 0.0;
        unrolled<layout.first_cell[group + 1] - first>([&]<std::size_t n>() {
            constexpr int b = layout.cells[first + n].b;
            const double x = cells_[first + n] * power[static_cast<std::size_t>(b) - 1];
            p0 += x;
            p1 += static_cast<double>(b) * x;
            if constexpr (derivative == Derivative::exact) p2 += static_cast<double>(b * b) * x;
        });
        if constexpr (group == 0) {
            sums.S += r * p1;
            sums.derivative += derivative == Derivative::exact ? p2 : sum_bC_[0];
            return;
        }
        const double e = std::exp(-power[group]);
        const double s = k * power[group];
        sums.S += e * r * (p1 - s * p0);
        if constexpr (derivative == Derivative::exact)
            sums.derivative += e * (p2 - s * ((k - s) * p0 + 2.0 * p1));
        else
            sums.derivative += e * (sum_bC_[group] + s * ((s - k) * p0 - p1));
    });
    return sums;
}

template <Derivative derivative>
DensitySums DensityTerms::term_by_term(double r) const {
    DensitySums sums{0.0, 0.0};
    for (std::size_t n = first_density_term; n < term_count; ++n) {
        const double b = exponents_.b[n];
        const double c = exponents_.c[n];
        const double k = exponents_.k[n];
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
    return exponents_.published ? collapsed<derivative>(r) : term_by_term<derivative>(r);
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
