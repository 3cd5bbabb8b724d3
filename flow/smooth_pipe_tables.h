// SPDX-License-Identifier: MIT
// The largest roughness of a smooth pipe, 10^4 R_a/D. Dimensionless.
#pragma once

#include <array>

namespace kalorfix::flow {

/// Orifice plates: A b^B + C with b the diameter ratio, each the cubic c0 + c1 L + c2 L^2 + c3 L^3, L = lg Re.
/// GOST 8.586.2-2005, 5.3.1.
struct RoughnessSet {
    double Re_above, Re_to;  ///< applies for Re_above < Re <= Re_to
    std::array<double, 4> A, B, C;
};

// The third coefficient of C in the first set joins the second set only with the opposite sign; it is kept as it stands (see
// docs/deviations.md).
// clang-format off
inline constexpr std::array<RoughnessSet, 3> orifice_roughness{{
    {1e4, 1e5, {{8.87, -3.7114, 0.41841, 0.0}},
               {{6.7307, -5.5844, 0.732485, 0.0}},
               {{-10.244, 5.7094, 0.76477, 0.0}}},
    {1e5, 3e6, {{27.23, -11.458, 1.6117, -0.07567}},
               {{-25.928, 12.426, -2.09397, 0.106143}},
               {{1.7622, -3.8765, 1.05567, -0.076764}}},
    {3e6, 1e8, {{16.5416, -6.60709, 0.88147, -0.039226}},
               {{322.594, -132.2, 17.795, -0.799765}},
               {{-92.029, 37.935, -5.1885, 0.23583}}},
}};
// clang-format on

/// Nozzles 4 and 6: by the diameter ratio, ascending. GOST 8.586.3-2005, 5.1.6.1 and 5.3.4.1.
struct NozzleRoughness {
    double beta, limit;
};
// clang-format off
inline constexpr std::array<NozzleRoughness, 13> nozzle_roughness{{
    {0.35, 8.0}, {0.36, 5.9}, {0.38, 4.3}, {0.40, 3.4}, {0.42, 2.8}, {0.44, 2.4}, {0.46, 2.1},
    {0.48, 1.9}, {0.50, 1.8}, {0.60, 1.4}, {0.70, 1.3}, {0.77, 1.2}, {0.80, 1.2},
}};
// clang-format on

}  // namespace kalorfix::flow
