// SPDX-License-Identifier: MIT
#include "props/water/saturation.h"

#include <cmath>

#include "props/water/iapws95_tables.h"
#include "props/water/saturation_tables.h"
#include "runtime/cube_root.h"
#include "runtime/exponential.h"

namespace kalorfix::water {

double saturation_pressure_MPa(double T_K) {
    const double theta = T_K / critical_temperature_K;
    const double v = 1.0 - theta;
    const double root = std::sqrt(v);  // NaN above the critical temperature, on purpose
    const double v2 = v * v, v3 = v2 * v, v4 = v2 * v2;
    const auto& a = vapour_pressure_a;
    const double sum =
        a[0] * v + a[1] * v * root + a[2] * v3 + a[3] * v3 * root + a[4] * v4 + a[5] * v4 * v3 * root;
    return critical_pressure_MPa * exponential(sum / theta);
}

double saturated_liquid_density_kgm3(double T_K) {
    const double v = 1.0 - T_K / critical_temperature_K;
    const double c = cube_root(v);
    const double c2 = c * c, v2 = v * v, v4 = v2 * v2, v8 = v4 * v4, v16 = v8 * v8;
    const auto& b = liquid_density_b;
    // v to the powers 1/3, 2/3, 5/3, 16/3, 43/3, 110/3
    return critical_density_kgm3 * (1.0 + b[0] * c + b[1] * c2 + b[2] * v * c2 + b[3] * v4 * v * c +
                                    b[4] * v8 * v4 * v2 * c + b[5] * v16 * v16 * v4 * c2);
}

double saturated_vapour_density_kgm3(double T_K) {
    const double v = 1.0 - T_K / critical_temperature_K;
    const double s = cube_root(std::sqrt(v));  // v^(1/6)
    const double s2 = s * s, s4 = s2 * s2, s8 = s4 * s4;
    const double v2 = v * v, v3 = v2 * v, v6 = v3 * v3, v11 = v6 * v3 * v2;
    const auto& c = vapour_density_c;
    // v to the powers 2/6, 4/6, 8/6, 18/6, 37/6, 71/6
    const double sum = c[0] * s2 + c[1] * s4 + c[2] * s8 + c[3] * v3 + c[4] * v6 * s + c[5] * v11 * s4 * s;
    return critical_density_kgm3 * exponential(sum);
}

double saturation_temperature_K(double p_MPa, SaturationTemperatureSet set) {
    const double L = std::fabs(std::log(p_MPa / critical_pressure_MPa));
    const double root = std::sqrt(L);
    const double L2 = L * L, L3 = L2 * L, L4 = L2 * L2;
    const auto& b = saturation_temperature_b;
    const double second =
        set == SaturationTemperatureSet::heat_carrier ? second_b_heat_carrier : second_b_humid_gas;
    return critical_temperature_K * (1.0 + b[0] * L + second * L2 + b[1] * L2 * root + b[2] * L3 +
                                     b[3] * L3 * root + b[4] * L4 + b[5] * L4 * root + b[6] * L4 * L3);
}

}  // namespace kalorfix::water
