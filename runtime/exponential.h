// SPDX-License-Identifier: MIT
// The exponential function as the sums of the equations of state need it: several at a time, without a special case.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace kalorfix {

/// exp(x) within one unit of the last place for -708 <= x <= 709, without meaning beyond; NaN for NaN. Rounding must be to
/// nearest.
///
/// x = k ln 2 + r with |r| <= ln(2)/2; exp(r) by a polynomial of degree 11 with the error 2e-17.
[[nodiscard]] inline double exponential(double x) {
    constexpr double per_ln2 = 1.4426950408889634;
    constexpr double ln2_high = 6.93147180369123816490e-01, ln2_low = 1.90821492927058770002e-10;
    // 1.5 * 2^52: k ends in the last bits of the sum.
    constexpr double integer_in_last_bits = 6755399441055744.0;

    const double shifted = x * per_ln2 + integer_in_last_bits;
    const double k = shifted - integer_in_last_bits;
    const double r = (x - k * ln2_high) - k * ln2_low;
    const double r2 = r * r, r4 = r2 * r2;
    // The coefficients of r^2 to r^11 in pairs, so that the processor can work on several at a time.
    const double low =
        (0.5000000000000001 + r * 0.16666666666666669) + r2 * (0.041666666666624164 + r * 0.008333333333330065);
    const double high = (0.0013888888917196719 + r * 0.00019841269863040545) +
                        r2 * (2.4801521322368692e-05 + r * 2.7557268480310024e-06) +
                        r4 * (2.7620075879983367e-07 + r * 2.5100375832561234e-08);
    const double sum = 1.0 + r;
    const double exp_r = sum + ((r - (sum - 1.0)) + r2 * (low + r4 * high));
    constexpr std::uint64_t exponent_of_one = 1023;
    const std::uint64_t exponent = std::bit_cast<std::uint64_t>(shifted) + exponent_of_one;
    return exp_r * std::bit_cast<double>(exponent << 52);
}

/// The same for several numbers in place.
template <std::size_t count>
void exponentials(std::array<double, count>& x) {
    for (double& value : x) value = exponential(value);
}

}  // namespace kalorfix
