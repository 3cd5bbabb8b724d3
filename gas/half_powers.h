// Powers whose exponents are whole or half numbers, as those of the equations of state are, without the general power
// function.
#pragma once

#include <array>
#include <cmath>

namespace kalorfix::gas {

/// An exponent u taken apart once: 2u as a whole number where that is exact and small.
class HalfPower {
public:
    static constexpr int bits = 6;

    explicit HalfPower(double exponent) : exponent_(exponent) {
        const double doubled = 2.0 * std::fabs(exponent);
        const bool small = doubled < 1 << bits;  // false for a NaN too
        twice_ = small ? static_cast<unsigned>(doubled) : 0U;
        exact_ = small && static_cast<double>(twice_) == doubled;
    }

    [[nodiscard]] bool exact() const { return exact_; }
    [[nodiscard]] bool negative() const { return exponent_ < 0.0; }
    [[nodiscard]] bool uses(int bit) const { return (twice_ >> bit & 1U) != 0; }
    [[nodiscard]] unsigned twice() const { return twice_; }  ///< of an exact one, without its sign
    [[nodiscard]] double exponent() const { return exponent_; }

private:
    double exponent_;
    bool exact_;
    unsigned twice_;
};

/// One number ready to be raised to many such exponents.
class PowerBase {
public:
    explicit PowerBase(double base) : base_(base) {
        square_[0] = std::sqrt(base);
        square_[1] = base;  // also for a negative number, whose whole powers exist
        for (std::size_t bit = 2; bit < square_.size(); ++bit)
            square_[bit] = square_[bit - 1] * square_[bit - 1];
    }

    [[nodiscard]] double to(const HalfPower& u) const {
        if (!u.exact()) return std::pow(base_, u.exponent());
        double product = 1.0;
        std::size_t bit = 0;
        for (unsigned left = u.twice(); left != 0; left >>= 1, ++bit)
            if (left & 1U) product *= square_[bit];
        return u.negative() ? 1.0 / product : product;
    }

private:
    double base_;
    std::array<double, HalfPower::bits> square_{};
};

}  // namespace kalorfix::gas
