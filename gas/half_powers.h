// Powers whose exponents are whole or half numbers, as those of the equations of state are, without the general power
// function.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace kalorfix::gas {

/// An exponent u taken apart once: 2u as a whole number where that is exact and small.
class HalfPower {
public:
    static constexpr int limit = 63;  ///< of 2u, either way

    HalfPower() = default;
    explicit HalfPower(double exponent) : exponent_(exponent) {
        const bool small = std::fabs(exponent) <= 0.5 * limit;  // false for a NaN too
        twice_ = small ? static_cast<int>(2.0 * exponent) : 0;
        exact_ = small && static_cast<double>(twice_) == 2.0 * exponent;
    }

    [[nodiscard]] bool exact() const { return exact_; }
    [[nodiscard]] int twice() const { return twice_; }  ///< 0 for one that is not exact
    [[nodiscard]] double exponent() const { return exponent_; }

private:
    double exponent_ = 0.0;
    int twice_ = 0;
    bool exact_ = false;
};

/// Of some exponents the least and the largest, doubled; 0 is always among them.
struct HalfPowerRange {
    int least = 0, largest = 0;

    void include(const HalfPower& u) {
        least = std::min(least, u.twice());
        largest = std::max(largest, u.twice());
    }
};

/// One number ready to be raised to many such exponents within a range.
class PowerBase {
public:
    explicit PowerBase(double base, HalfPowerRange range = {-HalfPower::limit, HalfPower::limit})
        : base_(base) {
        raise(rising_, std::sqrt(base), base, range.largest);
        if (range.least < 0) raise(falling_, 1.0 / std::sqrt(base), 1.0 / base, -range.least);
    }

    [[nodiscard]] double to(const HalfPower& u) const {
        if (!u.exact()) return std::pow(base_, u.exponent());
        return u.twice() < 0 ? falling_[static_cast<std::size_t>(-u.twice())]
                             : rising_[static_cast<std::size_t>(u.twice())];
    }

private:
    using Powers = std::array<double, HalfPower::limit + 1>;  // by the doubled exponent

    // The even ones come from even ones, since a negative base has whole powers only; a short way to each keeps the rounding
    // small.
    static void raise(Powers& power, double root, double base, int largest) {
        power[0] = 1.0;
        power[1] = root;
        power[2] = base;
        for (std::size_t twice = 3; twice <= static_cast<std::size_t>(largest); ++twice) {
            const std::size_t half = (twice + 1) / 4 * 2;
            power[twice] = power[half] * power[twice - half];
        }
    }

    double base_;
    Powers rising_, falling_;
};

}  // namespace kalorfix::gas
