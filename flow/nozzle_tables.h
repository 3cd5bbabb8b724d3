// SPDX-License-Identifier: MIT
// Nozzles 4 and 6: largest 10^4 R_a/D of a smooth pipe by the diameter ratio, ascending. Dimensionless.
// GOST 8.586.3-2005, 5.1.6.1 and 5.3.4.1.
#pragma once

#include <array>

namespace kalorfix::flow {

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
