// SPDX-License-Identifier: MIT
// Powers without the general power function: those whose exponents are whole or half numbers, as in the equations of state, and the
// two cube roots of the density methods.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "runtime/cube_root.h"

namespace kalorfix::gas {

/// An exponent u taken apart once: 2u as a whole number where that is exact and small.
struct HalfPower {
    static constexpr int limit = 63;  ///< of 2u, either way

    HalfPower() = default;
    explicit HalfPower(double u) : exponent(u) {
        const bool small = std::fabs(u) <= 0.5 * limit;  // false for a NaN too
        twice = small ? static_cast<int>(2.0 * u) : 0;
        exact = small && static_cast<double>(twice) == 2.0 * u;
    }

    double exponent = 0.0;
    int twice = 0;  ///< 0 for one that is not exact
    bool exact = false;
};

/// Of some exponents the least and the largest, doubled; 0 is always among them.
struct HalfPowerRange {
    int least = 0, largest = 0;

    void include(const HalfPower& u) {
        least = std::min(least, u.twice);
        largest = std::max(largest, u.twice);
    }
};

/// One number ready to be raised to many such exponents within a range.
class PowerBase {
public:
    explicit PowerBase(double base, HalfPowerRange range = {-HalfPower::limit, HalfPower::limit})
        : base_(base) {
        const double root = std::sqrt(base);
        power_[zero] = 1.0;
        raise<1>(root, base, range.largest);
        if (range.least < 0) raise<-1>(1.0 / root, 1.0 / base, -range.least);
    }

    [[nodiscard]] double to(const HalfPower& u) const {
        return u.exact ? to_exact(u) : std::pow(base_, u.exponent);
    }
    /// The same for an exponent that is known to be exact.
    [[nodiscard]] double to_exact(const HalfPower& u) const { return *(power_.data() + zero + u.twice); }

private:
    static constexpr int zero = HalfPower::limit + 4;  // place of the exponent 0; the others by their double

    // The even ones come from even ones, since a negative base has whole powers only; four at a time, each by the square of the
    // base, keeps the rounding small.
    template <std::ptrdiff_t direction>
    void raise(double root, double base, std::ptrdiff_t largest) {
        double* const power = power_.data() + zero;
        const double square = base * base;
        power[direction] = root;
        power[direction * 2] = base;
        power[direction * 3] = base * root;
        for (std::ptrdiff_t n = 4; n <= largest; n += 4)
            for (std::ptrdiff_t k = n; k < n + 4; ++k)
                power[direction * k] = power[direction * (k - 4)] * square;
    }

    double base_;
    std::array<double, 2 * zero + 1> power_;
};

enum class CubeRoot {
    real,   ///< the real root, negative for a negative number
    power,  ///< a power with exponent 1/3: not a number for a negative one
};

inline double cube_root(double value, CubeRoot kind) {
    if (kind == CubeRoot::power && value < 0.0) return std::numeric_limits<double>::quiet_NaN();
    return kalorfix::cube_root(value);
}

}  // namespace kalorfix::gas
