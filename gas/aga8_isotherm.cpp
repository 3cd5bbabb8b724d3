#include "gas/aga8_isotherm.h"

#include <algorithm>
#include <numeric>

#include "runtime/exponential.h"

namespace kalorfix::gas::aga8 {

Isotherm::Isotherm(const DensityLayout& layout, const Coefficients& coefficients, double second_virial,
                   double reduced_temperature)
    : layout_(layout),
      second_virial_(second_virial),
      linear_(second_virial - std::accumulate(coefficients.begin() + first_density_term,
                                              coefficients.begin() + virial_terms, 0.0)),
      reduced_temperature_(reduced_temperature) {
    for (std::size_t cell = 0; cell < layout.cell_count; ++cell) weight_[cell] = 0.0;
    for (std::size_t n = 0; n < density_terms; ++n)
        weight_[layout.cell_of[n]] += coefficients[first_density_term + n];
}

// S = sum of C (b - c k r^k) r^b exp(-c r^k). With P_m = sum(b^m C r^b) of the terms of one group, e = exp(-c r^k) and s = c k r^k
// its part and what r d/dr makes of it, once and twice, are
//   e (P1 - s P0)
//   e (P2 - 2 s P1 + s (s - k) P0)
//   e (P3 - 3 s P2 + 3 s (s - k) P1 - s (s^2 - 3 k s + k^2) P0)
template <Order order>
IsothermPoint Isotherm::at(double r) const {
    std::array<double, DensityLayout::power_places> power;
    layout_.raise(r, power);
    std::array<double, density_terms> decay;  // first, so that the sums stay in registers
    for (std::size_t g = 0; g < layout_.group_count; ++g) {
        const DensityLayout::Group& group = layout_.groups[g];
        decay[g] = group.constant ? group.factor
                                  : exponential(std::clamp(-group.c * power[group.power], -700.0, 700.0));
    }
    double S = 0.0;
    double once = 0.0;
    double twice = 0.0;
    const DensityLayout::Cell* cell = layout_.cells.data();
    const double* weight = weight_.data();
    for (std::size_t g = 0; g < layout_.group_count; ++g) {
        const DensityLayout::Group& group = layout_.groups[g];
        Pair P01{}, P23{};
        for (std::size_t n = 0; n < group.cells; ++n, ++cell, ++weight) {
            const Pair moments = *weight * power[cell->power] * cell->one_b;
            P01 += moments;
            P23 += moments * cell->bb;
        }
        const double P0 = P01[0], P1 = P01[1], P2 = P23[0], P3 = P23[1];
        const double k = group.k;
        const double s = k * group.c * power[group.power];
        const double e = decay[g];
        S += e * (P1 - s * P0);
        once += e * (P2 + s * ((s - k) * P0 - 2.0 * P1));
        if constexpr (order == Order::curvature)
            twice += e * (P3 - s * (3.0 * P2 - 3.0 * (s - k) * P1 + (s * s - 3.0 * k * s + k * k) * P0));
    }
    const double linear = linear_ * r;
    return {r, r * (1.0 + linear + S), 1.0 + 2.0 * linear + S + once,
            order == Order::curvature ? 2.0 * linear_ + (once + twice) / r : 0.0};
}
template IsothermPoint Isotherm::at<Order::slope>(double r) const;
template IsothermPoint Isotherm::at<Order::curvature>(double r) const;

Isotherm isotherm(double T_K, const Mixture& mixture, const Coefficients& coefficients,
                  const Constants& constants) {
    const double B = second_virial(T_K, constants, mixture.virial_factors);
    return {constants.density, coefficients, B / mixture.size_cubed, T_K / mixture.energy};
}

}  // namespace kalorfix::gas::aga8
