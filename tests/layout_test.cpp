// SPDX-License-Identifier: MIT
// The objects as other programs see them: places of the fields, virtual slots, results of the members.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <typeinfo>
#include <vector>

#include "kalorfix.h"
#include "kalorfix_calculators.h"
#include "kalorfix_runtime.h"

namespace {

// Where a field stands on each target, in bytes from the start of the object.
struct Field {
    const char* name;
    const void* address;
    std::ptrdiff_t x86_64;
    std::ptrdiff_t arm;
};

#define FIELD(object, name, x86_64, arm) \
    Field { #name, &(object).name, x86_64, arm }

enum class Target { x86_64, arm, other };
#if (defined(__x86_64__) || defined(__aarch64__)) && defined(__LP64__)
constexpr Target target = Target::x86_64;  // 64-bit ARM has the same
#elif defined(__arm__)
constexpr Target target = Target::arm;
#else
constexpr Target target = Target::other;
#endif

std::vector<Field> base_fields(const cCommon2005& c) {
    return {FIELD(c, metering_class, 8, 4), FIELD(c, device_type, 9, 5), FIELD(c, by_material, 10, 6),
            FIELD(c, mat_D, 16, 8),         FIELD(c, mat_d, 24, 16),     FIELD(c, D20, 32, 24),
            FIELD(c, d20, 40, 32),          FIELD(c, R_sh, 48, 40),      FIELD(c, r_n0, 56, 48),
            FIELD(c, r_n_at_end, 64, 56),   FIELD(c, tau, 72, 64),       FIELD(c, alpha_eps, 80, 72),
            FIELD(c, valid, 88, 80),        FIELD(c, t, 96, 88),         FIELD(c, T, 104, 96),
            FIELD(c, p, 112, 104),          FIELD(c, R_a, 120, 112),     FIELD(c, D, 128, 120),
            FIELD(c, d, 136, 128),          FIELD(c, beta, 144, 136),    FIELD(c, E, 152, 144),
            FIELD(c, K_p, 160, 152),        FIELD(c, rho_w, 168, 160),   FIELD(c, mu, 176, 168),
            FIELD(c, kappa, 184, 176),      FIELD(c, phase, 192, 184),   FIELD(c, q_m, 200, 192),
            FIELD(c, q_v, 208, 200),        FIELD(c, Re, 216, 208),      FIELD(c, C, 224, 216),
            FIELD(c, K_sh, 232, 224),       FIELD(c, epsilon, 240, 232)};
}

std::vector<Field> gas_fields(const cGas2005& c) {
    std::vector<Field> fields = base_fields(c);
    fields.insert(fields.end(),
                  {FIELD(c, Method, 248, 240), FIELD(c, Xi_in, 256, 248), FIELD(c, Xi_sum, 376, 368),
                   FIELD(c, Ro_c, 384, 376), FIELD(c, K_c, 392, 384), FIELD(c, H_low, 400, 392),
                   FIELD(c, H_high, 408, 400), FIELD(c, Ro_vap, 416, 408), FIELD(c, q_c, 424, 416),
                   FIELD(c, q_e, 432, 424), FIELD(c, total, 440, 432), FIELD(c, interval_start, 472, 464),
                   FIELD(c, interval_time, 536, 528), FIELD(c, first_call, 600, 592),
                   FIELD(c, last_tick, 608, 596), FIELD(c, dt, 640, 612), FIELD(c, downtime_min, 656, 628)});
    return fields;
}

std::vector<Field> heat_fields(const cTeplo2005& c) {
    std::vector<Field> fields = base_fields(c);
    fields.insert(fields.end(),
                  {FIELD(c, dP_sat, 248, 240), FIELD(c, T_sat, 256, 248), FIELD(c, p_sat, 264, 256),
                   FIELD(c, phase_tn, 272, 264), FIELD(c, h_w, 280, 272), FIELD(c, q_h, 288, 280),
                   FIELD(c, total, 296, 288), FIELD(c, interval_start, 320, 312),
                   FIELD(c, interval_time, 368, 360), FIELD(c, first_call, 416, 408),
                   FIELD(c, last_tick, 424, 412), FIELD(c, dt, 448, 424), FIELD(c, downtime_min, 460, 436)});
    return fields;
}

void expect_in_place(const void* object, const std::vector<Field>& fields) {
    for (const Field& field : fields) {
        const std::ptrdiff_t place = static_cast<const char*>(field.address) - static_cast<const char*>(object);
        EXPECT_EQ(place, target == Target::arm ? field.arm : field.x86_64) << field.name;
    }
}

TEST(Layout, FieldsStandWhereProgramsLookForThem) {
    if (target == Target::other) GTEST_SKIP() << "no table for this target";
    const cGas2005 gas;
    const cTeplo2005 heat;
    expect_in_place(&gas, gas_fields(gas));
    expect_in_place(&heat, heat_fields(heat));
    constexpr bool arm = target == Target::arm;
    EXPECT_EQ(sizeof(cCommon2005), arm ? 240U : 248U);
    EXPECT_EQ(sizeof(cGas2005), arm ? 648U : 672U);
    EXPECT_EQ(sizeof(cTeplo2005), arm ? 448U : 472U);
}

// The functions that stand in the virtual tables, by the names under which they are linked.
#define LINKED(function, name) extern "C" void function() asm(name)
LINKED(common_d1, "_ZN11cCommon2005D1Ev");
LINKED(common_d0, "_ZN11cCommon2005D0Ev");
LINKED(gas_d1, "_ZN8cGas2005D1Ev");
LINKED(gas_d0, "_ZN8cGas2005D0Ev");
LINKED(gas_is_gas, "_ZN8cGas20055IsGasEv");
LINKED(heat_d1, "_ZN10cTeplo2005D1Ev");
LINKED(heat_d0, "_ZN10cTeplo2005D0Ev");
LINKED(heat_is_gas, "_ZN10cTeplo20055IsGasEv");
LINKED(pure_virtual, "__cxa_pure_virtual");

using Slot = void (*)();
extern "C" const std::ptrdiff_t common_table[] asm("_ZTV11cCommon2005");
extern "C" const std::ptrdiff_t gas_table[] asm("_ZTV8cGas2005");
extern "C" const std::ptrdiff_t heat_table[] asm("_ZTV10cTeplo2005");

TEST(Layout, VirtualSlotsStandInTheirOrder) {
    struct Table {
        const char* name;
        const std::ptrdiff_t* words;  ///< offset to the top, type information, then the slots
        const std::type_info& type;
        Slot slots[3];
    };
    const Table tables[] = {
        {"cCommon2005", common_table, typeid(cCommon2005), {common_d1, common_d0, pure_virtual}},
        {"cGas2005", gas_table, typeid(cGas2005), {gas_d1, gas_d0, gas_is_gas}},
        {"cTeplo2005", heat_table, typeid(cTeplo2005), {heat_d1, heat_d0, heat_is_gas}}};
    for (const Table& table : tables) {
        SCOPED_TRACE(table.name);
        EXPECT_EQ(table.words[0], 0);
        EXPECT_EQ(table.words[1], reinterpret_cast<std::ptrdiff_t>(&table.type));
        for (int k = 0; k < 3; ++k) {
            const std::ptrdiff_t word = table.words[2 + k];
            // No object is of an abstract class alone: a compiler may leave its destructors out.
            if (word == 0 && table.words == common_table && k < 2) continue;
            EXPECT_EQ(word, reinterpret_cast<std::ptrdiff_t>(table.slots[k])) << "slot " << k;
        }
    }
    // An object points at the first slot.
    const cGas2005 gas;
    const cTeplo2005 heat;
    EXPECT_EQ(*reinterpret_cast<const std::ptrdiff_t* const*>(&gas), gas_table + 2);
    EXPECT_EQ(*reinterpret_cast<const std::ptrdiff_t* const*>(&heat), heat_table + 2);
}

// The arguments of a member stand in its linked name, its result does not: every operation hands out a char.
template <class Class, class... Arguments>
constexpr bool gives_status(char (Class::*)(Arguments...)) {
    return true;
}
using Base = cCommon2005;
using Gas = cGas2005;
using Heat = cTeplo2005;
static_assert(gives_status(&Base::Init_TR) && gives_status(&Base::CountDd) &&
              gives_status(&Base::CountbetaEKp) && gives_status(&Base::Param_tr) &&
              gives_status(&Base::mg_Param) && gives_status(&Base::Countq_mReCK_sh) &&
              gives_status(&Base::CountqmalphaepsilonRe) && gives_status(&Base::Countepsilon) &&
              gives_status(&Base::in_Param) && gives_status(&Base::in2_Param) && gives_status(&Gas::Param_gs) &&
              gives_status(&Gas::tf_Param) && gives_status(&Gas::mgn_Param) && gives_status(&Gas::int_Param) &&
              gives_status(&Gas::int2_Param) && gives_status(&Heat::Param_tn) &&
              gives_status(&Heat::tf_Param) && gives_status(&Heat::mgn_Param) &&
              gives_status(&Heat::int_Param) && gives_status(&Heat::int2_Param));

TEST(Layout, NewCalculatorsAreUnconfiguredAndTimed) {
    const auto before = static_cast<std::uint32_t>(abs_clock());
    const cGas2005 gas;
    const cTeplo2005 heat;
    EXPECT_TRUE(gas.metering_class == 3 && gas.valid == 0 && gas.phase == 0);
    EXPECT_TRUE(heat.metering_class == 3 && heat.valid == 0 && heat.phase == 0);
    for (const unsigned char first : gas.first_call) EXPECT_EQ(first, 1);
    for (const unsigned char first : heat.first_call) EXPECT_EQ(first, 1);
    for (const unsigned long tick : gas.last_tick) EXPECT_LE(static_cast<std::uint32_t>(tick) - before, 100U);
    for (const unsigned long tick : heat.last_tick) EXPECT_LE(static_cast<std::uint32_t>(tick) - before, 100U);
}

}  // namespace
