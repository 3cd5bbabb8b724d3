// SPDX-License-Identifier: MIT
// The cube root with the same bits on every target. That of a C library is up to three units of the last place off, and
// differs where the compiler fused its multiplications and additions.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

namespace kalorfix {

/// The number with the last bits of its mantissa cleared.
[[nodiscard]] inline double without_last_bits(double x, int bits) {
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(x) >> bits << bits);
}

/// The real cube root, negative for a negative number, within 0.5001 units of the last place. Rounding must be to nearest.
/// Below 2^-900 and above 2^900, and for what is no number, that of the C library.
///
/// z, some 10 % off 1/a at its third power, comes from a third of the exponent; a polynomial of degree 4 makes it right to
/// 1e-7. From there y, of 24 bits, has a residual a - y^3 without rounding error, and one step of Halley's method ends.
[[nodiscard]] inline double cube_root(double x) {
    constexpr std::uint64_t sign_bit = std::uint64_t{1} << 63;
    constexpr std::uint64_t smallest = std::uint64_t{1023 - 900} << 52,
                            largest = std::uint64_t{1023 + 900} << 52;
    constexpr std::uint32_t start = 0x553EE979;  // least error over all numbers

    const auto sign = std::bit_cast<std::uint64_t>(x) & sign_bit;
    const std::uint64_t magnitude = std::bit_cast<std::uint64_t>(x) ^ sign;
    if (magnitude - smallest >= largest - smallest) return std::cbrt(x);

    const double a = std::bit_cast<double>(magnitude);
    const std::uint32_t third = static_cast<std::uint32_t>(magnitude >> 32) / 3;
    const double z = std::bit_cast<double>(std::uint64_t{start - third} << 32);
    const double e = 1.0 - a * z * (z * z);
    const double e2 = e * e;
    // (1 - e)^(-1/3)
    const double inverse =
        z * ((1.0 + 0.333329033 * e) + e2 * ((0.222218398 + 0.174483079 * e) + 0.145494261 * e2));

    const double y = without_last_bits(a * (inverse * inverse), 29);
    const double y2 = y * y;
    const double y2_high = without_last_bits(y2, 27);
    const double residual = (a - y2_high * y) - (y2 - y2_high) * y;
    const double root = y + y * residual / (3.0 * a - 2.0 * residual);
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(root) | sign);
}

}  // namespace kalorfix
