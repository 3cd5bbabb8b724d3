// SPDX-License-Identifier: MIT
// The two cube roots of the density methods.
#pragma once

#include <limits>

#include "runtime/cube_root.h"

namespace kalorfix::gas {

enum class CubeRoot {
    real,   ///< the real root, negative for a negative number
    power,  ///< a power with exponent 1/3: not a number for a negative one
};

inline double cube_root(double value, CubeRoot kind) {
    if (kind == CubeRoot::power && value < 0.0) return std::numeric_limits<double>::quiet_NaN();
    return kalorfix::cube_root(value);
}

}  // namespace kalorfix::gas
