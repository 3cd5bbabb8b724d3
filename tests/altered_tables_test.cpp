// Gas data other than the published: a controller may hold any, and the methods take them as the formulas say.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <utility>
#include <vector>

#include "frame/lifecycle.h"
#include "gas/edge/gas_data.h"
#include "gas/edge/loaded_constants.h"
#include "kalorfix_gas.h"

namespace gas = kalorfix::gas;

namespace {

class AlteredTables : public testing::Test {
protected:
    short failed = 9;

    void SetUp() override {
        std::snprintf(PATH_SRAM_FOR_LOADTABL, sizeof PATH_SRAM_FOR_LOADTABL, "%s", KALORFIX_GAS_DAT);
        ASSERT_EQ(INIT_GAS(), 0);
        PF1_1(80, 5, 0, 0, 0, 0, 0, 0, 0, 0, 5, 10, 0, 0, 0);
    }
    void TearDown() override { REINIT_GAS(); }

    // K of AGA8-92DC after a change of the tables.
    float K_aga8() {
        gas::edge::tables_changed();
        return PF3_3(290.0F, 0.0F, 8.0F, failed);
    }
};

// The coefficient of a term has the factors (G + 1 - g)^g (Q^2 + 1 - q)^q (F + 1 - f)^f: with a flag of 0 the factor is 1, with
// 1 the parameter itself.
TEST_F(AlteredTables, GiveATermAnyFlag) {
    constexpr std::size_t term = 20;
    Fi[0] = 0.3F;  // of the components that are there none has a high-temperature parameter
    const auto coefficient = [&] {
        K_aga8();
        return static_cast<double>(C[term]);
    };
    gn[term] = qn[term] = fn[term] = 0.0F;
    const double none = coefficient();
    double all_squared = 1.0;
    for (float* const flags : {gn, qn, fn}) {
        const auto factor = [&](float flag) {
            flags[term] = flag;
            return coefficient() / none;
        };
        const double parameter = factor(1.0F);
        EXPECT_GT(std::fabs(parameter), 1e-4);
        EXPECT_NEAR(factor(2.0F), std::pow(parameter - 1.0, 2.0), 1e-6);
        EXPECT_NEAR(factor(0.5F), std::sqrt(parameter + 0.5), 1e-6);
        EXPECT_EQ(factor(0.0F), 1.0);
        all_squared *= std::pow(parameter - 1.0, 2.0);
    }
    gn[term] = qn[term] = fn[term] = 2.0F;
    EXPECT_NEAR(coefficient() / none, all_squared, 1e-6);
}

// Like pairs have the parameters of their component whatever stands on the diagonals.
TEST_F(AlteredTables, HaveDiagonalsThatAreNotRead) {
    const float K = K_aga8();
    const std::vector<float> virial(B, B + 13);
    for (float* const pairs : {Eij_, Uij, Kij, Gij_})
        for (std::size_t i = 0; i < gas::component_count; ++i) pairs[i * gas::component_count + i] = 1.5F;
    EXPECT_EQ(K_aga8(), K);
    EXPECT_EQ(std::vector<float>(B, B + 13), virial);
    EXPECT_EQ(EIJM[0][0], Ei[0]);
    EXPECT_EQ(GIJM[11][11], Gi[11]);
}

// A density that is handed out without a failure solves the equation of state, whatever the coefficients are.
TEST_F(AlteredTables, GiveASolutionOrAFailure) {
    std::mt19937 random(4);
    std::normal_distribution<float> any(0.0F, 4.0F);
    int solved = 0;
    constexpr int rounds = 300;
    for (int round = 0; round < rounds; ++round) {
        for (int k = 0; k < 80; ++k) Akl[k] = any(random);
        PF3_4(290.0F, 0.0F, 8.0F, failed);
        if (failed != 0) continue;
        ++solved;
        EXPECT_NEAR(Z * Rom * R * 290.0F, 8000.0F, 80.0F) << round;
    }
    EXPECT_GT(solved, 0);
    EXPECT_LT(solved, rounds);
}

// A table that a host has taken away, and a file that is no longer there.
TEST_F(AlteredTables, AreLoadedAgainOrMissed) {
    const float K = K_aga8();
    for (const gas::edge::Block& block : gas::edge::blocks) {
        float* const table = std::exchange(*block.table, nullptr);
        EXPECT_EQ(Watcom_Load(), 1) << block.name;
        *block.table = table;
    }
    EXPECT_EQ(PF3_3(290.0F, 0.0F, 8.0F, failed), K);
    std::snprintf(PATH_SRAM_FOR_LOADTABL, sizeof PATH_SRAM_FOR_LOADTABL, "/no such file");
    EXPECT_EQ(Watcom_Load(), 1);
    EXPECT_EQ(PF3_3(290.0F, 0.0F, 8.0F, failed), K);
    EXPECT_EQ(Done(), 1);
    EXPECT_NE(V_Mi, nullptr) << "what Init has not begun Done does not end";
    REINIT_GAS();
    EXPECT_EQ(Watcom_Init(), 1);
    EXPECT_EQ(V_Mi, nullptr);
}

}  // namespace
