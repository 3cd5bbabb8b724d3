/* A host with floating-point settings of its own, in force from before the library is loaded until it is gone: the results are
 * the same to the bit, and the settings are found as they were left. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <fenv.h>
#include <stdint.h>
#include <stdio.h>

#include "host.h"

enum { no_traps, fatal_traps, all_traps };
enum { keep_denormals, flush_denormals, vector_unit_alone, x87_alone };

static const struct {
    int traps, rounding, more;
} settings[] = {
    {fatal_traps, FE_TONEAREST, keep_denormals}, {all_traps, FE_TONEAREST, keep_denormals},
    {no_traps, FE_UPWARD, keep_denormals},       {no_traps, FE_DOWNWARD, keep_denormals},
    {no_traps, FE_TOWARDZERO, keep_denormals},   {no_traps, FE_TONEAREST, flush_denormals},
    {all_traps, FE_TOWARDZERO, flush_denormals}, {no_traps, FE_TONEAREST, vector_unit_alone},
    {no_traps, FE_TONEAREST, x87_alone},
};

const struct host_mode host_modes[] = {
    {"traps for invalid, division, overflow, underflow", RTLD_NOW | RTLD_LOCAL, 1, 1, 0},
    {"all traps", RTLD_NOW | RTLD_LOCAL, 1, 1, 1},
    {"rounding upward", RTLD_NOW | RTLD_LOCAL, 1, 1, 2},
    {"rounding downward", RTLD_NOW | RTLD_LOCAL, 1, 1, 3},
    {"rounding toward zero", RTLD_NOW | RTLD_LOCAL, 1, 1, 4},
    {"denormals flushed", RTLD_NOW | RTLD_LOCAL, 1, 1, 5},
    {"all traps, toward zero, denormals flushed", RTLD_NOW | RTLD_LOCAL, 1, 1, 6},
    {"vector unit alone: all traps, upward, denormals flushed", RTLD_NOW | RTLD_LOCAL, 1, 1, 7},
    {"x87 alone: all traps, upward, single precision", RTLD_NOW | RTLD_LOCAL, 1, 1, 8},
};
const int host_mode_count = (int)(sizeof host_modes / sizeof *host_modes);

/* The control bits without the flags of what has happened: two registers on x86, one on ARM. */
struct control {
    uint64_t simd;
    uint32_t x87;
};

#if defined(__x86_64__) || defined(__i386__)
enum {
    flush_bits = 0x8040,
    flags = 0x3F,
    can_flush = 1,
    two_units = 1,
    simd_upward = 0x4000,
    x87_upward = 0x0800
};
static uint64_t get_simd(void) {
    uint32_t word;
    __asm__ volatile("stmxcsr %0" : "=m"(word));
    return word;
}
static void set_simd(uint64_t value) {
    const uint32_t word = (uint32_t)value;
    __asm__ volatile("ldmxcsr %0" : : "m"(word));
}
static uint32_t get_x87(void) {
    uint16_t word;
    __asm__ volatile("fnstcw %0" : "=m"(word));
    return word;
}
static void set_x87(uint32_t value) {
    const uint16_t word = (uint16_t)value;
    __asm__ volatile("fldcw %0" : : "m"(word));
}
#elif defined(__arm__) && defined(__ARM_FP)
enum { flush_bits = 1 << 24, flags = 0x9F, can_flush = 1, two_units = 0, simd_upward = 0, x87_upward = 0 };
static uint64_t get_simd(void) {
    uint32_t word;
    __asm__ volatile("vmrs %0, fpscr" : "=r"(word));
    return word & 0x0FFFFFFFU; /* without the outcome of the last comparison */
}
static void set_simd(uint64_t value) { __asm__ volatile("vmsr fpscr, %0" : : "r"((uint32_t)value)); }
static uint32_t get_x87(void) { return 0; }
static void set_x87(uint32_t value) { (void)value; }
#elif defined(__aarch64__)
enum { flush_bits = 1 << 24, flags = 0, can_flush = 1, two_units = 0, simd_upward = 0, x87_upward = 0 };
static uint64_t get_simd(void) {
    uint64_t word;
    __asm__ volatile("mrs %0, fpcr" : "=r"(word));
    return word;
}
static void set_simd(uint64_t value) { __asm__ volatile("msr fpcr, %0" : : "r"(value)); }
static uint32_t get_x87(void) { return 0; }
static void set_x87(uint32_t value) { (void)value; }
#else
enum { flush_bits = 0, flags = 0, can_flush = 0, two_units = 0, simd_upward = 0, x87_upward = 0 };
static uint64_t get_simd(void) { return 0; }
static void set_simd(uint64_t value) { (void)value; }
static uint32_t get_x87(void) { return 0; }
static void set_x87(uint32_t value) { (void)value; }
#endif

static struct control now(void) {
    const struct control found = {get_simd() & ~(uint64_t)flags, get_x87()};
    return found;
}

static struct control left;
static int rounding_left;

int host_ready(void) { return 0; }

int host_before(const struct host_mode* mode) {
    const int traps = settings[mode->setting].traps;
    const int wanted = traps == all_traps     ? FE_ALL_EXCEPT
                       : traps == fatal_traps ? FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW | FE_UNDERFLOW
                                              : 0;
    feclearexcept(FE_ALL_EXCEPT);
    if (fesetround(settings[mode->setting].rounding) != 0) return 1;
    const int more = settings[mode->setting].more;
    if (more >= vector_unit_alone && !two_units) return host_cannot;
    /* As intrinsics and old code set them, without a word to the functions of fenv.h. */
    if (more == vector_unit_alone) set_simd(simd_upward | flush_bits);
    if (more == x87_alone) set_x87(x87_upward | 0x40);
    if (more == flush_denormals) {
        volatile double tiny = 1e-308;
        if (!can_flush) return host_cannot;
        set_simd(get_simd() | flush_bits);
        if (tiny / 4 != 0) return host_cannot;
        feclearexcept(FE_ALL_EXCEPT);
    }
    /* Processors without traps refuse. */
    if (wanted != 0 && (feenableexcept(wanted) == -1 || fegetexcept() != wanted)) {
        printf("feenableexcept is refused\n");
        fflush(stdout);
        return host_cannot;
    }
    left = now();
    rounding_left = fegetround();
    return 0;
}

int host_after(const struct host_mode* mode) {
    (void)mode;
    const struct control found = now();
    const int same = found.simd == left.simd && found.x87 == left.x87 && fegetround() == rounding_left;
    fesetenv(FE_DFL_ENV);
    if (same) return 0;
    fprintf(stderr, "control bits %llx %x, left were %llx %x\n", (unsigned long long)found.simd,
            (unsigned)found.x87, (unsigned long long)left.simd, (unsigned)left.x87);
    return 1;
}
