// SPDX-License-Identifier: MIT
// Keeps the host's floating-point settings away from the calculation.
#pragma once

#include <cfenv>
#include <cstdint>

namespace kalorfix {

/// Whether the unit that computes is set as a new process finds it: no traps, rounding to nearest, denormals kept. Its control
/// register is read itself, once: hosts set it by other means than fenv.h too, and what flushes denormal numbers is none of
/// fenv.h's settings.
inline bool computing_unit_at_defaults() {
#if defined(__SSE2_MATH__)
    // The x87 unit, which fenv.h sets as well, takes no part.
    std::uint32_t mxcsr = 0;
    asm volatile("stmxcsr %0" : "=m"(mxcsr));
    constexpr std::uint32_t flags = 0x3F, all_masked = 0x1F80;
    return (mxcsr & ~flags) == all_masked;
#elif defined(__arm__) && defined(__ARM_FP)
    std::uint32_t fpscr = 0;
    asm volatile("vmrs %0, fpscr" : "=r"(fpscr));
    constexpr std::uint32_t default_nan_flush_rounding = 0x03C00000, traps = 0x9F00;
    return (fpscr & (default_nan_flush_rounding | traps)) == 0;
#elif defined(__aarch64__)
    std::uint64_t fpcr = 0;
    asm volatile("mrs %0, fpcr" : "=r"(fpcr));
    return fpcr == 0;
#elif defined(__wasm__)
    return true;  // has no such register: it never traps, rounds to nearest and keeps denormals
#else
    return fegetexcept() == 0 && std::fegetround() == FE_TONEAREST;
#endif
}

/// For the life of the object floating-point exceptions do not trap, rounding is to nearest and denormal numbers are kept,
/// whatever the host has set; its settings come back afterwards. Costs one read of a control register when the host left the
/// defaults alone.
class FloatEnvironment {
public:
    FloatEnvironment() {
        if (!computing_unit_at_defaults()) set_defaults();
    }
    ~FloatEnvironment() {
        if (changed_) give_back();
    }
    FloatEnvironment(const FloatEnvironment&) = delete;
    FloatEnvironment& operator=(const FloatEnvironment&) = delete;

private:
    // Apart, so that the usual case is a comparison and no more.
    [[gnu::noinline, gnu::cold]] void set_defaults() {
        changed_ = std::fegetenv(&host_) == 0 && std::fesetenv(FE_DFL_ENV) == 0;
    }
    [[gnu::noinline, gnu::cold]] void give_back() { std::fesetenv(&host_); }

    std::fenv_t host_;  // filled when changed
    bool changed_ = false;
};

/// Calls a function with these settings.
template <class Function, class... Arguments>
auto guarded(Function&& function, Arguments&&... arguments) {
    const FloatEnvironment guard;
    return function(arguments...);
}

}  // namespace kalorfix
