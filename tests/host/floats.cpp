// A host with floating-point settings of its own, in force from before the library is loaded until it is gone: the results are
// the same to the bit, and the settings are found as they were left.
#include <dlfcn.h>

#include <cfenv>
#include <cstdio>
#include <iterator>

#ifdef __x86_64__
#include <xmmintrin.h>
#endif

extern "C" {
#include "host.h"
}

namespace {

// The control bits without the flags of what has happened: two units on x86, one on ARM.
struct Control {
    unsigned vector, x87;
    bool operator==(const Control&) const = default;
};

#ifdef __x86_64__
constexpr unsigned flush = 0x8040, vector_upward = 0x4000, x87_upward_single = 0x0840;
constexpr bool two_units = true;
Control now() {
    unsigned short x87 = 0;
    __asm__ volatile("fnstcw %0" : "=m"(x87));
    return {_mm_getcsr() & ~0x3FU, x87};
}
void set(const Control& control) {
    const auto x87 = static_cast<unsigned short>(control.x87);
    _mm_setcsr(control.vector);
    __asm__ volatile("fldcw %0" : : "m"(x87));
}
#elif defined(__arm__) && defined(__ARM_FP)
constexpr unsigned flush = 1 << 24, vector_upward = 0, x87_upward_single = 0;
constexpr bool two_units = false;
Control now() {
    fenv_t environment;
    std::fegetenv(&environment);
    return {environment.__cw & 0x0FFFFF60U, 0};
}
void set(const Control& control) {
    fenv_t environment;
    std::fegetenv(&environment);
    environment.__cw = control.vector;
    std::fesetenv(&environment);
}
#else
constexpr unsigned flush = 0, vector_upward = 0, x87_upward_single = 0;
constexpr bool two_units = false;
Control now() { return {}; }
void set(const Control&) {}
#endif

constexpr int fatal = FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW | FE_UNDERFLOW;
enum More { nothing, flush_denormals, vector_unit_alone, x87_alone };
constexpr struct {
    int traps, rounding;
    More more;
} settings[] = {{fatal, FE_TONEAREST, nothing},
                {FE_ALL_EXCEPT, FE_TONEAREST, nothing},
                {0, FE_UPWARD, nothing},
                {0, FE_DOWNWARD, nothing},
                {0, FE_TOWARDZERO, nothing},
                {0, FE_TONEAREST, flush_denormals},
                {FE_ALL_EXCEPT, FE_TOWARDZERO, flush_denormals},
                {0, FE_TONEAREST, vector_unit_alone},
                {0, FE_TONEAREST, x87_alone}};

Control left;

}  // namespace

extern "C" {
const host_mode host_modes[] = {
    {"traps for invalid, division, overflow, underflow", RTLD_NOW, 0},
    {"all traps", RTLD_NOW, 1},
    {"rounding upward", RTLD_NOW, 2},
    {"rounding downward", RTLD_NOW, 3},
    {"rounding toward zero", RTLD_NOW, 4},
    {"denormals flushed", RTLD_NOW, 5},
    {"all traps, toward zero, denormals flushed", RTLD_NOW, 6},
    {"vector unit alone: all traps, upward, denormals flushed", RTLD_NOW, 7},
    {"x87 alone: all traps, upward, single precision", RTLD_NOW, 8},
};
const int host_mode_count = std::size(host_modes);

int host_before(const host_mode* mode) {
    const auto& wanted = settings[mode->setting];
    if (wanted.more >= vector_unit_alone && !two_units) return host_cannot;
    std::fesetround(wanted.rounding);
    // As intrinsics and old code set them, without a word to the functions of fenv.h.
    if (wanted.more == vector_unit_alone) set({vector_upward | flush, now().x87});
    if (wanted.more == x87_alone) set({now().vector, x87_upward_single});
    if (wanted.more == flush_denormals) set({now().vector | flush, now().x87});
    std::feclearexcept(FE_ALL_EXCEPT);
    // Processors without traps refuse.
    const bool can = !wanted.traps || (feenableexcept(wanted.traps) != -1 && fegetexcept() == wanted.traps);
    left = now();
    return can ? 0 : host_cannot;
}

int host_after(const host_mode*) {
    const Control found = now();
    std::fesetenv(FE_DFL_ENV);
    if (found == left) return 0;
    std::fprintf(stderr, "control bits %x %x, left were %x %x\n", found.vector, found.x87, left.vector,
                 left.x87);
    return 1;
}
}
