// The channel functions as a host calls them.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>

#include "tools/host.h"
#include "tools/runtime.h"

namespace {

class Channels : public testing::Test {
protected:
    char status = -1;
    std::array<float, 8> out{};

    void SetUp() override { out.fill(-7.0F); }

    char set_up(int channel, short device, char metering_class = 1, float D20_mm = 200, float d20_mm = 120) {
        status = -1;
        EXPECT_EQ(library->mt_init_tr(channel, metering_class, device, 0, 0, 0, D20_mm, d20_mm, 0, 0, 1, 0,
                                      0.7F, &status),
                  1);
        return status;
    }
    char geometry(int channel) {
        library->mt_param_tr(channel, &status, &out[0], &out[1], &out[2], &out[3], &out[4]);
        return status;
    }
    char state(int channel, float t_C, float p_Pa) {
        short phase = 0;
        library->mt_param_tn(channel, t_C, p_Pa, 0, 0, 1000, 1, &status, &phase, &out[0], &out[1]);
        return status;
    }
    char properties(int channel) {
        library->mt_tf_param(channel, 0, 0, 0, &status, &out[0], &out[1], &out[2], &out[3]);
        return status;
    }
    char flow(int channel, float dp_Pa, float rho) {
        library->mt_mgn_param(channel, 1, dp_Pa, rho, 1000, &status, &out[0], &out[1], &out[2], &out[3],
                              &out[4], &out[5], &out[6]);
        return status;
    }

    kalorfix::host::Library library{KALORFIX_LIBRARY};
};

TEST_F(Channels, RefuseIndicesOutsideTheirRange) {
    for (const int channel : {0, -1, -20001, 20001, 2147483647, -2147483647 - 1}) {
        SCOPED_TRACE(channel);
        EXPECT_EQ(set_up(channel, 1), 0);
        for (float& value : out) value = -7.0F;
        EXPECT_EQ(library->mg_param_tr(channel, &status, &out[0], &out[1], &out[2], &out[3], &out[4]), 1);
        EXPECT_EQ(status, 0);
        for (int k = 0; k < 5; ++k) EXPECT_EQ(out[static_cast<std::size_t>(k)], 0.0F);

        short phase = 77;
        EXPECT_EQ(library->mt_param_tn(channel, 100, 1e5F, 0, 0, 0, 0, &status, &phase, &out[0], &out[1]), 1);
        EXPECT_EQ(status, 0);
        EXPECT_EQ(phase, 77) << "the phase is written only by the operation";
        EXPECT_EQ(out[0], 0.0F);
    }
}

TEST_F(Channels, OfTheTwoMediaAreIndependent) {
    EXPECT_EQ(set_up(2, 4), 1);
    EXPECT_EQ(library->mg_param_tr(2, &status, &out[0], &out[1], &out[2], &out[3], &out[4]), 1);
    EXPECT_EQ(status, 0) << "the gas channel of the same number was never set up";
    EXPECT_EQ(geometry(2), 1);
    EXPECT_FLOAT_EQ(out[0], 200.0F);
    EXPECT_FLOAT_EQ(out[2], 0.6F);
    EXPECT_EQ(geometry(1), 0) << "made together with channel 2, but not set up";
}

// The exported functions hand each argument on to the one that it is meant for: a cycle of gas by its channel is that of a
// calculator whose members are called with the same values.
TEST(GasChannel, HandsACycleOnAsItIs) {
    char status = -1;
    std::array<float, 8> out{};
    const kalorfix::host::Runtime runtime(KALORFIX_GAS_DAT);
    const kalorfix::host::Library gas(KALORFIX_LIBRARY);
    ASSERT_EQ(gas->Init(), 1);
    const auto c = gas.gas_calculator();
    char first = 0;
    std::array<double, 9> r{};
    const auto expect_same = [&](std::size_t count, char member, const char* step) {
        EXPECT_EQ(status, member) << step;
        for (std::size_t k = 0; k < count; ++k) EXPECT_EQ(out[k], static_cast<float>(r[k])) << step << ' ' << k;
    };
    for (const double vapour : {0.0, 0.0625}) {
        gas->mg_init_tr(7, 0, 1, 1, 11, 31, 200, 120, 0.25F, 0.0625F, 0, 2, 0.5F, &status);
        EXPECT_EQ(gas->Init_TR(c.get(), 0, 1, 1, 11, 31, 200, 120, 0.25, 0.0625, 0, 2, 0.5, first), status);
        EXPECT_EQ(first, vapour == 0.0 ? 1 : 0) << "the first configuration";
        gas->mg_param_gs(7, 17, 4e6F, 850, 12, 2, 0, 84, 8, 3, 0.75F, 0.5F, 0.25F, 0.125F, 0.0625F, 0.375F,
                         0.625F, 1.25F, 1, 0.03125F, 0.015625F, 0.1875F, 0.75F, &status, &out[0], &out[1],
                         &out[2]);
        const char state =
            gas->Param_gs(c.get(), 17, 4e6, 850, 12, 2, 0, 84, 8, 3, 0.75, 0.5, 0.25, 0.125, 0.0625, 0.375,
                          0.625, 1.25, 1, 0.03125, 0.015625, 0.1875, 0.75, r[0], r[1], r[2]);
        EXPECT_EQ(state, 1);
        expect_same(3, state, "state");
        gas->mg_tf_param(7, 1, 0, static_cast<float>(vapour), &status, &out[0], &out[1], &out[2], &out[3],
                         &out[4]);
        expect_same(5, gas->gas_tf_Param(c.get(), 1, 0, vapour, r[0], r[1], r[2], r[3], r[4]), "properties");
        EXPECT_EQ(status, 1);
        const double viscosity = r[1];
        EXPECT_NEAR(viscosity, static_cast<double>(gas->NF3()), 1e-5);
        gas->mg_param_tr(7, &status, &out[0], &out[1], &out[2], &out[3], &out[4]);
        expect_same(5, gas->Param_tr(c.get(), r[0], r[1], r[2], r[3], r[4]), "geometry");
        gas->mg_mgn_param(7, 1, 25000, 40, 0.75F, 33.5F, &status, &out[0], &out[1], &out[2], &out[3], &out[4],
                          &out[5], &out[6], &out[7]);
        expect_same(8,
                    gas->gas_mgn_Param(c.get(), 1, 25000, 40, 0.75, 33.5, r[0], r[1], r[2], r[3], r[4], r[5],
                                       r[6], r[7]),
                    "flow");
        const double kg_s = static_cast<double>(out[0]) / 3.6;
        EXPECT_NEAR(static_cast<double>(out[6]) * (3.14159265 * 0.2 * viscosity * 1e-6) / (4 * kg_s), 1.0, 6e-5)
            << "Re";
        EXPECT_EQ(status, 1);
    }
    // Above 645 K there is no saturated vapour.
    gas->mg_param_gs(7, 17, 22e6F, 0, 0, 1, 0, 98, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0.5F, 0, 0, 0, 0.7F, &status,
                     &out[0], &out[1], &out[2]);
    EXPECT_EQ(status, 1);
    gas->mg_tf_param(7, 0, 0, 0.02F, &status, &out[0], &out[1], &out[2], &out[3], &out[4]);
    EXPECT_EQ(status, 0);
    gas->Done();
}

TEST_F(Channels, ReachTheHighestIndex) {
    EXPECT_EQ(set_up(20000, 4), 1);
    EXPECT_EQ(geometry(20000), 1);
}

TEST_F(Channels, OfClassOneKeepTheirFirstConfiguration) {
    EXPECT_EQ(set_up(1, 4, 0), 1);
    EXPECT_EQ(set_up(1, 4, 0, 150, 75), 1);
    EXPECT_EQ(set_up(1, 4, 1, 300, 150), 1);
    EXPECT_EQ(set_up(1, 1, 0, 400, 100), 1) << "reported as done";
    EXPECT_EQ(set_up(1, 99), 0) << "refusals come first";
    EXPECT_EQ(geometry(1), 1);
    EXPECT_FLOAT_EQ(out[0], 300.0F);
    EXPECT_FLOAT_EQ(out[1], 150.0F);
}

TEST_F(Channels, RunAHeatCarrierCycleInItsOrder) {
    ASSERT_EQ(set_up(1, 4), 1);
    EXPECT_EQ(state(1, 300, 1.2e6F), 1);
    EXPECT_EQ(properties(1), 1);
    const float rho = out[0];
    EXPECT_NEAR(rho, 4.67599F, 1e-4);
    double density = 0, viscosity = 0, enthalpy = 0, exponent = 0;
    EXPECT_EQ(library->t_param_1(300, 1.2, 1, &density, &viscosity, &enthalpy, &exponent), 0);
    EXPECT_FLOAT_EQ(out[1], static_cast<float>(viscosity));
    EXPECT_FLOAT_EQ(out[2], static_cast<float>(enthalpy));
    EXPECT_FLOAT_EQ(out[3], static_cast<float>(exponent));
    EXPECT_EQ(geometry(1), 1);
    EXPECT_EQ(flow(1, 40000, rho), 1);
    EXPECT_GT(out[0], 0.0F);
    EXPECT_FLOAT_EQ(out[1], out[0] * 1000 / rho);
    EXPECT_FLOAT_EQ(out[2], out[0]);
    const double kg_s = static_cast<double>(out[0]) / 3.6;
    EXPECT_NEAR(static_cast<double>(out[5]) * (3.14159265 * 0.2 * viscosity * 1e-6) / (4 * kg_s), 1.0, 3e-5)
        << "Re";

    // A refused step voids the cycle until the state is established again.
    EXPECT_EQ(flow(1, 400000, rho), 0);
    EXPECT_EQ(flow(1, 40000, rho), 0);
    EXPECT_EQ(geometry(1), 0);
    for (std::size_t k = 0; k < 5; ++k) EXPECT_EQ(out[k], 0.0F);
    EXPECT_EQ(properties(1), 0);
    for (std::size_t k = 0; k < 4; ++k) EXPECT_EQ(out[k], 0.0F);
    EXPECT_EQ(state(1, 300, 1.2e6F), 1);
    EXPECT_EQ(properties(1), 1);
}

// A flow whose Reynolds number lies at a step of the coefficient of a machined Venturi tube alternates between
// two values; the passes are capped, the status is 0 and q_m is what the last pass left, in kg/s.
TEST_F(Channels, EndAnAlternatingFlow) {
    ASSERT_EQ(set_up(1, 8), 1);
    int alternating = 0;
    for (int k = 0; k < 400; ++k) {
        ASSERT_EQ(state(1, 60, 1e6F), 1);
        ASSERT_EQ(properties(1), 1);
        const float rho = out[0];
        ASSERT_EQ(geometry(1), 1);
        const float dp = 1600.0F + 0.5F * static_cast<float>(k);
        if (flow(1, dp, rho) == 1 || out[0] == 0.0F) continue;
        ++alternating;
        EXPECT_EQ(out[1], 0.0F);
        const double ideal = 3.14159265 / 4 * 0.12 * 0.12 / std::sqrt(1 - std::pow(0.6, 4)) *
                             std::sqrt(2.0 * static_cast<double>(dp) * static_cast<double>(rho));
        EXPECT_NEAR(static_cast<double>(out[0]) / ideal, 1.0, 0.02);
    }
    EXPECT_GT(alternating, 0);
}

TEST_F(Channels, AcceptNullPointersForUnwantedOutputs) {
    ASSERT_EQ(set_up(1, 4), 1);
    EXPECT_EQ(library->mt_param_tn(1, 300, 1.2e6F, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(library->mt_tf_param(1, 0, 0, 0, &status, nullptr, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(library->t_param_1(20, 0.1, 1, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(library->t_phase_1(0.1, 20, 0, nullptr), 1);
}

TEST_F(Channels, GiveTheSameBitsForTheSameCall) {
    ASSERT_EQ(set_up(1, 3), 1);
    std::array<float, 8> first{};
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(state(1, 250, 2e6F), 1);
        ASSERT_EQ(properties(1), 1);
        ASSERT_EQ(geometry(1), 1);
        ASSERT_EQ(flow(1, 10000, 9.0F), 1);
        if (round == 0) first = out;
        EXPECT_EQ(std::memcmp(first.data(), out.data(), sizeof first), 0);
    }
}

TEST_F(Channels, ExportTheCriticalConstants) {
    EXPECT_EQ(*library->T_kr, 647.096);
    EXPECT_EQ(*library->p_kr, 22.064);
}

}  // namespace
