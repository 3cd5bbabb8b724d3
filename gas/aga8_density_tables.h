// The exponents of the density terms of AGA8-92DC, positions 7..52 of the 53 terms. AGA Report No. 8 (1992), table of
// coefficients and exponents; GOST 30319.2-96. c is 1 where k is not 0. Dimensionless.
#pragma once

#include <array>
#include <cstdint>

namespace kalorfix::gas::aga8 {

inline constexpr std::array<std::uint8_t, 46> published_b{
    1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 2, 2, 2, 3, 3, 3, 3, 3, 3, 3, 3,
    3, 3, 4, 4, 4, 4, 4, 4, 4, 5, 5, 5, 5, 5, 6, 6, 7, 7, 8, 8, 8, 9, 9,
};
inline constexpr std::array<std::uint8_t, 46> published_k{
    3, 2, 2, 2, 4, 4, 0, 0, 2, 2, 2, 4, 4, 4, 4, 0, 1, 1, 2, 2, 3, 3, 4,
    4, 4, 0, 0, 2, 2, 2, 4, 4, 0, 2, 2, 4, 4, 0, 2, 0, 2, 1, 2, 2, 2, 2,
};

inline constexpr int largest_b = 9;
inline constexpr int largest_k = 4;

}  // namespace kalorfix::gas::aga8
