// SPDX-License-Identifier: MIT
// Coefficients of the saturation equations of water. Dimensionless; the variable of the first three is
// 1 - T / T_c, of the last |ln(p / p_c)|.
#pragma once

#include <array>

namespace kalorfix::water {

/// ln(p_s / p_c) T / T_c, exponents 1, 1.5, 3, 3.5, 4, 7.5. IAPWS SR1-86(1992), eq. 1.
inline constexpr std::array<double, 6> vapour_pressure_a{-7.85951783, 1.84408259,  -11.7866497,
                                                         22.6807411,  -15.9618719, 1.80122502};

/// rho' / rho_c - 1, exponents 1/3, 2/3, 5/3, 16/3, 43/3, 110/3. IAPWS SR1-86(1992), eq. 2.
inline constexpr std::array<double, 6> liquid_density_b{1.99274064,  1.09965342,  -0.510839303,
                                                        -1.75493479, -45.5170352, -6.74694450e5};

/// ln(rho'' / rho_c), exponents 2/6, 4/6, 8/6, 18/6, 37/6, 71/6. IAPWS SR1-86(1992), eq. 3.
inline constexpr std::array<double, 6> vapour_density_c{-2.03150240, -2.68302940, -5.38626492,
                                                        -17.2991605, -44.7586581, -63.9201063};

/// T_s / T_c - 1 with the exponents 1, 2.5, 3, 3.5, 4, 4.5, 7 of this table and the coefficient of
/// exponent 2 below: a fit of the saturation line solved for the temperature; not in IAPWS SR1-86.
inline constexpr std::array<double, 7> saturation_temperature_b{
    -0.128855862, 0.0441959604, -0.0303590601, 0.0101118902, -0.00175789291, 0.000130198162, -2.17242085e-9};

/// Exponent 2: the two uses carry slightly different digits, and each keeps its own.
inline constexpr double second_b_heat_carrier = -0.0138861821;
inline constexpr double second_b_humid_gas = -0.013886182;

}  // namespace kalorfix::water
