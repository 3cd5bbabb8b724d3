// The objects as other programs see them: order of fields and virtual slots.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "kalorfix.h"

namespace {

struct Field {
    const void* address;
    std::size_t size;
};

#define FIELD(object, name) \
    Field { &(object).name, sizeof((object).name) }

std::vector<Field> base_fields(const cCommon2005& c) {
    return {FIELD(c, metering_class),
            FIELD(c, device_type),
            FIELD(c, by_material),
            FIELD(c, mat_D),
            FIELD(c, mat_d),
            FIELD(c, D20),
            FIELD(c, d20),
            FIELD(c, R_sh),
            FIELD(c, r_n0),
            FIELD(c, r_n_at_end),
            FIELD(c, tau),
            FIELD(c, alpha_eps),
            FIELD(c, valid),
            FIELD(c, t),
            FIELD(c, T),
            FIELD(c, p),
            FIELD(c, R_a),
            FIELD(c, D),
            FIELD(c, d),
            FIELD(c, beta),
            FIELD(c, E),
            FIELD(c, K_p),
            FIELD(c, rho_w),
            FIELD(c, mu),
            FIELD(c, kappa),
            FIELD(c, phase),
            FIELD(c, q_m),
            FIELD(c, q_v),
            FIELD(c, Re),
            FIELD(c, C),
            FIELD(c, K_sh),
            FIELD(c, epsilon)};
}

std::vector<Field> gas_fields(const cGas2005& c) {
    return {FIELD(c, Method),        FIELD(c, Xi_in),      FIELD(c, Xi_sum),    FIELD(c, Ro_c),
            FIELD(c, K_c),           FIELD(c, H_low),      FIELD(c, H_high),    FIELD(c, Ro_vap),
            FIELD(c, q_c),           FIELD(c, q_e),        FIELD(c, total),     FIELD(c, interval_start),
            FIELD(c, interval_time), FIELD(c, first_call), FIELD(c, last_tick), FIELD(c, dt),
            FIELD(c, downtime_min)};
}

std::vector<Field> heat_fields(const cTeplo2005& c) {
    return {FIELD(c, dP_sat),        FIELD(c, T_sat),      FIELD(c, p_sat),     FIELD(c, phase_tn),
            FIELD(c, h_w),           FIELD(c, q_h),        FIELD(c, total),     FIELD(c, interval_start),
            FIELD(c, interval_time), FIELD(c, first_call), FIELD(c, last_tick), FIELD(c, dt),
            FIELD(c, downtime_min)};
}

// The fields follow one another from the virtual table on, with no gap that alignment does not need.
void expect_in_order(const void* object, const std::vector<Field>& fields) {
    std::uintptr_t end = reinterpret_cast<std::uintptr_t>(object) + sizeof(void*);
    for (std::size_t k = 0; k < fields.size(); ++k) {
        const auto address = reinterpret_cast<std::uintptr_t>(fields[k].address);
        EXPECT_GE(address, end) << "field " << k;
        EXPECT_LT(address - end, 8U) << "field " << k;
        end = address + fields[k].size;
    }
}

TEST(Layout, FieldsStandInTheDeclaredOrder) {
    const cGas2005 gas;
    std::vector<Field> fields = base_fields(gas);
    for (const Field& field : gas_fields(gas)) fields.push_back(field);
    EXPECT_EQ(fields.size(), 49U);
    expect_in_order(&gas, fields);

    const cTeplo2005 heat;
    fields = base_fields(heat);
    for (const Field& field : heat_fields(heat)) fields.push_back(field);
    EXPECT_EQ(fields.size(), 45U);
    expect_in_order(&heat, fields);
}

TEST(Layout, IsGasStandsBehindTheDestructors) {
    // Two slots of the virtual table belong to the destructor, the third to IsGas.
    const auto third_slot = [](cCommon2005& c) {
        using Slot = bool (*)(cCommon2005*);
        const Slot* const table = *reinterpret_cast<const Slot* const*>(&c);
        return table[2](&c);
    };
    cGas2005 gas;
    cTeplo2005 heat;
    EXPECT_TRUE(third_slot(gas));
    EXPECT_FALSE(third_slot(heat));
}

TEST(Layout, NewCalculatorsAreUnconfiguredAndTimed) {
    const auto before = static_cast<std::uint32_t>(abs_clock());
    const cGas2005 gas;
    const cTeplo2005 heat;
    for (const cCommon2005* c :
         {static_cast<const cCommon2005*>(&gas), static_cast<const cCommon2005*>(&heat)}) {
        EXPECT_EQ(c->metering_class, 3);
        EXPECT_EQ(c->valid, 0);
        EXPECT_EQ(c->phase, 0);
    }
    for (const unsigned char first : gas.first_call) EXPECT_EQ(first, 1);
    for (const unsigned char first : heat.first_call) EXPECT_EQ(first, 1);
    for (const unsigned long tick : gas.last_tick) {
        EXPECT_EQ(tick, gas.last_tick[0]);
        EXPECT_LE(static_cast<std::uint32_t>(tick) - before, 100U);
    }
    for (const unsigned long tick : heat.last_tick) EXPECT_EQ(tick, heat.last_tick[2]);
}

}  // namespace
