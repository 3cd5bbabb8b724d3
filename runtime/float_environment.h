// Keeps the host's floating-point settings away from the calculation.
#pragma once

#include <cfenv>

namespace kalorfix {

/// For the life of the object floating-point exceptions do not trap and rounding is to nearest, whatever the
/// host has set; its settings come back afterwards. Costs two reads of a control word when the host left the
/// defaults alone.
class FloatEnvironment {
public:
    FloatEnvironment() {
        if (fegetexcept() == 0 && std::fegetround() == FE_TONEAREST) return;
        changed_ = std::feholdexcept(&host_) == 0;
        std::fesetround(FE_TONEAREST);
    }
    ~FloatEnvironment() {
        if (changed_) std::fesetenv(&host_);
    }
    FloatEnvironment(const FloatEnvironment&) = delete;
    FloatEnvironment& operator=(const FloatEnvironment&) = delete;

private:
    std::fenv_t host_{};
    bool changed_ = false;
};

}  // namespace kalorfix
