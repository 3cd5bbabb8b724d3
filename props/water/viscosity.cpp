// SPDX-License-Identifier: MIT
// Dynamic viscosity of water and steam: IAPS Formulation 1985 in its revised form (2003).
#include <cmath>
#include <cstddef>

#include "props/water/viscosity_tables.h"
#include "props/water/water.h"
#include "runtime/exponential.h"

namespace kalorfix::water {
namespace {

template <std::size_t N>
double horner(const std::array<double, N>& coefficients, double x) {
    double sum = coefficients[N - 1];
    for (std::size_t k = N - 1; k-- > 0;) sum = sum * x + coefficients[k];
    return sum;
}

double dilute_gas(double T_bar) { return std::sqrt(T_bar) / horner(viscosity_H, 1.0 / T_bar); }

double finite_density(double T_bar, double rho_bar) {
    const double x = 1.0 / T_bar - 1.0;
    double sum = 0.0;
    for (std::size_t i = viscosity_Hij.size(); i-- > 0;)
        sum = sum * x + horner(viscosity_Hij[i], rho_bar - 1.0);
    return exponential(rho_bar * sum);
}

double critical_enhancement(double chi_bar) {
    if (chi_bar >= enhancement_from_chi) return enhancement_factor * std::pow(chi_bar, enhancement_exponent);
    return 1.0;
}

}  // namespace

double viscosity_uPas(double T_K, double rho_kgm3, double reduced_compressibility) {
    const double T_bar = T_K / viscosity_T_star_K;
    const double rho_bar = rho_kgm3 / viscosity_rho_star_kgm3;
    const double chi_bar = viscosity_chi_conversion * reduced_compressibility;
    return viscosity_mu_star_uPas * dilute_gas(T_bar) * finite_density(T_bar, rho_bar) *
           critical_enhancement(chi_bar);
}

}  // namespace kalorfix::water
