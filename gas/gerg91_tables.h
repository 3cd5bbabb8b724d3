// SPDX-License-Identifier: MIT
// GERG-91 mod., GOST 30319.2-96: polynomials c0 + c1 T + c2 T^2 of the virial coefficients, T in K. Second coefficients in
// m3/kmol, third in m6/kmol2. H is the parameter of the equivalent hydrocarbon.
#pragma once

namespace kalorfix::gas::gerg91_table {

struct Polynomial {
    double c0, c1, c2;
    [[nodiscard]] constexpr double operator()(double T_K) const { return c0 + T_K * (c1 + T_K * c2); }
};

// Equivalent hydrocarbon: constant part, factor of H, factor of H^2.
inline constexpr Polynomial B1{-0.425468, 2.865e-3, -4.62073e-6};
inline constexpr Polynomial B1_H{8.77118e-4, -5.56281e-6, 8.81514e-9};
inline constexpr Polynomial B1_H2{-8.24747e-7, 4.31436e-9, -6.08319e-12};
inline constexpr Polynomial C1{-0.302488, 1.95861e-3, -3.16302e-6};
inline constexpr Polynomial C1_H{6.46422e-4, -4.22876e-6, 6.88157e-9};
inline constexpr Polynomial C1_H2{-3.32805e-7, 2.2316e-9, -3.67713e-12};

// Nitrogen, carbon dioxide, and between the two.
inline constexpr Polynomial B2{-0.1446, 7.4091e-4, -9.1195e-7};
inline constexpr Polynomial B3{-0.86834, 4.0376e-3, -5.1657e-6};
inline constexpr Polynomial B23{-0.339693, 1.61176e-3, -2.04429e-6};
inline constexpr Polynomial C2{7.8498e-3, -3.9895e-5, 6.1187e-8};
inline constexpr Polynomial C3{2.0513e-3, 3.4888e-5, -8.3703e-8};
inline constexpr Polynomial C223{5.52066e-3, -1.68609e-5, 1.57169e-8};
inline constexpr Polynomial C233{3.58783e-3, 8.06674e-6, -3.25798e-8};

}  // namespace kalorfix::gas::gerg91_table
