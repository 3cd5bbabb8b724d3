// SPDX-License-Identifier: MIT
// Notation of GOST 30319.2-96: rho_c density at standard conditions, xa and xy mole fractions of nitrogen and carbon dioxide, Tpk
// and Ppk pseudo-critical temperature and pressure, Ta and pa adjusted temperature and pressure, dT = Ta - 1.09, B the correction
// of the cubic, m, n, B0, B1, B2 its coefficients, Fz the correction of Z. Temperatures in K, pressures in MPa.
#include "gas/by_density.h"

#include <cmath>

#include "gas/composition.h"

namespace kalorfix::gas {
namespace {

// 1.69 * 2^1.25, of the correction for cold dense gas.
const double dense_limit = 1.69 * std::pow(2.0, 1.25);

// Correction of the cubic equation. The ranges touch: where two apply, the later one holds.
double correction(double pa, double dT) {
    const auto cold_factor = [&] { return 0.00075 * std::pow(pa, 2.3) * (2.0 - std::exp(20.0 * dT)); };
    const double dT2 = dT * dT;
    double b = 0.0;
    if (0.0 <= pa && pa <= 2.0 && 0.0 <= dT && dT <= 0.3) {
        const double root = std::sqrt(dT);
        const double inner = pa * (2.17 - pa + 1.4 * root);
        b = 0.00075 * std::pow(pa, 2.3) / std::exp(20.0 * dT) + 0.0011 * root * inner * inner;
    }
    if (0.0 <= pa && pa <= 1.3 && -0.25 <= dT && dT <= 0.0)
        b = cold_factor() + 1.317 * pa * (1.69 - pa * pa) * dT2 * dT2;
    if (1.3 <= pa && pa <= 2.0 && -0.25 <= dT && dT < 0.0)
        b = cold_factor() + 0.455 * (1.3 - pa) * (dense_limit - pa * pa) *
                                (dT * (0.03249 + 18.028 * dT2) + dT2 * (2.0167 + dT2 * (42.844 + 200.0 * dT2)));
    return b;
}

}  // namespace

double nx19(double T_K, double p_MPa, const DensityGas& gas, CubeRoot kind) {
    // The adjusted temperature is carried in single precision.
    const double Ta = static_cast<float>(0.71892 * T_K / pseudo_critical_temperature(gas) + 0.0007);
    const double pa = 0.6714 * p_MPa / pseudo_critical_pressure(gas) + 0.0147;
    const double Ta2 = Ta * Ta;
    const double Ta4 = Ta2 * Ta2;
    const double m = Ta4 * Ta / (Ta2 * (6.60756 * Ta - 4.42646) + 3.22706);
    const double n = (Ta2 * (1.77218 - 0.8879 * Ta) + 0.305131) * m / Ta4;
    const double b = correction(pa, Ta - 1.09);
    const double B0 = n * (m - n * n) + 0.1 * m * pa * (b - 1.0);
    const double B1 = 2.0 * m / 3.0 - n * n;
    const double B2 = cube_root(B0 + std::sqrt(B0 * B0 + B1 * B1 * B1), kind);
    const double Fz = 1.0 + 0.00132 / (Ta2 * Ta * std::sqrt(std::sqrt(Ta)));  // Ta^3.25
    return Fz * Fz * pa / (10.0 * (B1 / B2 - B2 + n)) / standard_compressibility(gas.rho_c, gas.xa, gas.xy);
}

}  // namespace kalorfix::gas
