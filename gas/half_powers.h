// Powers whose exponents are whole or half numbers, as those of the equations of state are, without the general power
// function.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>

namespace kalorfix::gas {

/// An exponent u taken apart once: 2u as a whole number where that is exact and small.
class HalfPower {
public:
    static constexpr unsigned limit = 64;  ///< of 2u

    HalfPower() = default;
    explicit HalfPower(double exponent) : exponent_(exponent) {
        const double doubled = 2.0 * std::fabs(exponent);
        const bool small = doubled < limit;  // false for a NaN too
        twice_ = small ? static_cast<unsigned>(doubled) : 0U;
        exact_ = small && static_cast<double>(twice_) == doubled;
    }

    [[nodiscard]] bool exact() const { return exact_; }
    [[nodiscard]] bool negative() const { return exponent_ < 0.0; }
    [[nodiscard]] unsigned twice() const { return twice_; }  ///< of an exact one, without its sign
    [[nodiscard]] double exponent() const { return exponent_; }

private:
    double exponent_ = 0.0;
    bool exact_ = true;
    unsigned twice_ = 0;
};

/// One number ready to be raised to many such exponents, the doubled ones up to `largest`.
class PowerBase {
public:
    explicit PowerBase(double base, unsigned largest = HalfPower::limit - 1) : base_(base) {
        power_[0] = 1.0;
        power_[1] = std::sqrt(base);
        power_[2] = base;  // also for a negative number, whose whole powers exist
        // Even ones from even ones for that reason; a short way to each keeps the rounding small.
        for (std::size_t twice = 3; twice <= largest; ++twice) {
            const std::size_t half = (twice + 1) / 4 * 2;
            power_[twice] = power_[half] * power_[twice - half];
        }
    }

    [[nodiscard]] double to(const HalfPower& u) const {
        if (!u.exact()) return std::pow(base_, u.exponent());
        return u.negative() ? 1.0 / power_[u.twice()] : power_[u.twice()];
    }

private:
    double base_;
    std::array<double, HalfPower::limit> power_;
};

}  // namespace kalorfix::gas
