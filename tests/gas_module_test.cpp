// SPDX-License-Identifier: MIT
// The gas module: the data file and its loader, tables that are missing, damaged or a site's own, and what the routines hand on
// by the module state.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "gas/edge/gas_data.h"
#include "gas/edge/module_state.h"
#include "kalorfix_calculators.h"
#include "kalorfix_gas.h"

namespace fs = std::filesystem;
namespace gas = kalorfix::gas;
using gas::edge::Block;
using gas::edge::blocks;
using gas::edge::file_bytes;

namespace {

class GasModule : public testing::Test {
protected:
    fs::path directory = fs::path(testing::TempDir()) / ("gas_module_" + std::to_string(getpid()));
    std::string whole;  // the file as it is shipped
    short failed = 9;

    void SetUp() override {
        fs::create_directories(directory);
        std::ifstream in(KALORFIX_GAS_DAT, std::ios::binary);
        whole.assign(std::istreambuf_iterator<char>(in), {});
        load(whole);
        PF1_1(80, 5, 0, 0, 0, 0, 0, 0, 0, 0, 5, 10, 0, 0, 0);
    }
    void TearDown() override {
        REINIT_GAS();
        fs::remove_all(directory);
    }
    void point_to(const std::string& name) const {
        std::snprintf(PATH_SRAM_FOR_LOADTABL, sizeof PATH_SRAM_FOR_LOADTABL, "%s/%s", directory.c_str(),
                      name.c_str());
    }
    void load(const std::string& content) const {
        std::ofstream(directory / "gas.dat", std::ios::binary) << content;
        point_to("gas.dat");
        EXPECT_EQ(INIT_GAS(), 0);
        EXPECT_EQ(Gas_Not_Init, 1);
    }
    static auto tables() {
        return std::ranges::count_if(blocks, [](const Block& block) { return *block.table != nullptr; });
    }
    // K of AGA8-92DC after a change of the tables.
    float K_aga8() {
        gas::edge::tables_changed();
        return PF3_3(290.0F, 0.0F, 8.0F, failed);
    }
};

// A file whose k-th float, little-endian, is k + 0.5.
std::string counting(std::size_t bytes) {
    std::string content;
    for (float value = 0.5F; content.size() < bytes; ++value) {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &value, 4);
        for (int shift = 0; shift < 32; shift += 8) content.push_back(static_cast<char>(bits >> shift & 0xFF));
    }
    return content.substr(0, bytes);
}

TEST_F(GasModule, FillsEveryTableInTheOrderOfTheFile) {
    constexpr int sizes[] = {8,  8,  8,  8,  64, 64, 80, 80, 225, 225, 225, 225, 53, 53, 53, 53,
                             53, 53, 53, 53, 15, 15, 15, 15, 15,  15,  15,  15,  15, 88, 48};
    load(counting(file_bytes + 100));
    float next = 0.5F;
    for (int b = 0; b < 31; ++b) {
        const Block& block = blocks[static_cast<std::size_t>(b)];
        EXPECT_EQ(Step_Init(b), sizes[b]);
        EXPECT_EQ(block.values, static_cast<std::size_t>(sizes[b])) << block.name;
        for (int k = 0; k < sizes[b]; ++k, ++next) ASSERT_EQ((*block.table)[k], next) << block.name << k;
    }
    for (const int none : {-1, 31, 1000, INT32_MIN, INT32_MAX}) EXPECT_EQ(Step_Init(none), 0);
    EXPECT_TRUE(Eij_[0] == 320.5F && fn[52] == 1643.5F && B1ij[47] == 1914.5F);

    load(counting(4 * 10 + 2));  // ten values and half of one: the second block is cut
    EXPECT_TRUE(Roki[1] == 9.5F && Roki[2] == 9.5F && Roki[7] == 9.5F)
        << "the first two blocks repeat the last";
    EXPECT_TRUE(Tki[0] == 0.0F && B1ij[47] == 0.0F);
    load("");
    EXPECT_EQ(V_Mi[0], 0.0F);
}

TEST_F(GasModule, IsLoadedReleasedAndMissed) {
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(INIT_GAS(), 0) << "a second load replaces the first";
        EXPECT_EQ(INIT_GAS(), 0);
        EXPECT_EQ(tables(), 31);
        REINIT_GAS();
        EXPECT_EQ(tables(), 0);
        EXPECT_EQ(Gas_Not_Init, 1) << "the flag tells of the load, not of the tables";
    }
    EXPECT_EQ(Watcom_Load(), 1) << "a file, but no tables";
    fs::create_directories(directory / "folder");
    for (const char* none : {"folder", "nothing"}) {
        point_to("gas.dat");
        EXPECT_EQ(INIT_GAS(), 0);
        point_to(none);
        EXPECT_EQ(Watcom_Load(), 1) << none;
        EXPECT_EQ(tables(), 31) << none;
        EXPECT_EQ(INIT_GAS(), 1) << none;
        EXPECT_EQ(Gas_Not_Init, 0) << none;
        EXPECT_EQ(tables(), 0) << "a failed load leaves no tables";
    }
    PATH_SRAM_FOR_LOADTABL[0] = '\0';
    EXPECT_EQ(Watcom_Init(), 1);
    load(whole);
    EXPECT_EQ(Done(), 1);
    EXPECT_NE(V_Mi, nullptr) << "what Init has not begun Done does not end";
}

// The routines that refuse while one table is missing.
std::set<std::string> refusing() {
    short failed = 0;
    std::set<std::string> names;
    const auto note = [&names](const char* name, bool refused) {
        if (refused) names.insert(name);
    };
    PF1_1(96, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    note("PF2", PF2() == 0.0F);
    note("PF3_3", PF3_3(290, 0, 5, failed) == 0.0F && failed == 1);
    note("PF3_4", PF3_4(290, 0, 5, failed) == 0.0F && failed == 1);
    note("PF5", PF5(0) == 0.0F);
    note("PF6", PF6() == 0.0F);
    SM = 16.0F, VNIC_FLAG = 0;
    note("PF4_1", PF4_1() == 0.0F);
    PF1_2(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    note("PF1_2", NumXi == 0);
    EXPECT_GT(NF1_2(290, 0, 5, 1, 1, 0.7F, failed), 0.8F) << "needs no tables";
    return names;
}

// Those that read a table.
std::set<std::string> readers(const std::string& name) {
    if (name == "Mi") return {"PF5"};
    if (name == "Zci") return {"PF1_2"};
    if (name == "Rocui" || name == "Bi") return {"PF2"};
    if (name == "L1ij" || name == "B1ij") return {"PF6"};
    for (std::size_t b = 0; b < 8; ++b)
        if (name == blocks[b].name) return {"PF3_4", "PF4_1"};
    return {"PF3_3"};
}

// A table is absent where its pointer is null, and where the file ended within it or before.
TEST_F(GasModule, IsRefusedTableByTable) {
    EXPECT_EQ(refusing(), std::set<std::string>());
    for (const Block& block : blocks) {
        float* const table = std::exchange(*block.table, nullptr);
        EXPECT_EQ(Watcom_Load(), 1) << block.name;
        EXPECT_EQ(refusing(), readers(block.name)) << block.name;
        *block.table = table;
    }
    std::size_t bytes = file_bytes;
    std::set<std::string> expected;
    for (std::size_t b = gas::edge::block_count; b-- > 0; bytes -= 4 * blocks[b].values) {
        expected.merge(readers(blocks[b].name));
        if (expected.contains("PF3_4")) expected.insert("PF5");  // for want of the state that it starts from
        load(whole.substr(0, bytes - 1));
        VNIC_FLAG = 0;
        EXPECT_EQ(refusing(), expected) << "cut within " << blocks[b].name;
    }
    // A channel whose tables are not whole has no state, or no properties.
    cGas2005 c;
    c.metering_class = 0;
    double sum = 0.0, K_c = 0.0, rho_c = 0.0, r[5] = {};
    const struct {
        std::size_t bytes;
        short method;
        char state, properties;
    } rows[] = {{file_bytes, 3, 1, 1}, {file_bytes - 1, 3, 1, 0}, {file_bytes - 1, 2, 1, 1},
                {6757, 2, 0, 0},       {1279, 3, 0, 0},           {0, 1, 1, 1}};
    for (const auto& row : rows) {
        load(whole.substr(0, row.bytes));
        EXPECT_EQ(c.Param_gs(15, 5e6, 0, 0, row.method, 0, 98, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0.7,
                             sum, K_c, rho_c),
                  row.state)
            << row.bytes << ' ' << row.method;
        EXPECT_EQ(c.tf_Param(0, 0, 0, r[0], r[1], r[2], r[3], r[4]), row.properties)
            << row.bytes << ' ' << row.method;
    }
}

// A host may have written anything into the list of the components that are there: what is none is passed over.
TEST_F(GasModule, IsReadForListedComponentsAlone) {
    VNIC_FLAG = 1;
    // Beside the tables stands what no sum may hold.
    std::array<std::array<float, 17>, 3> fenced;
    const std::array<float**, 3> read{&Mi, &Bi, &Rocui};
    std::array<float*, 3> loaded;
    for (std::size_t k = 0; k < read.size(); ++k) {
        fenced[k].fill(std::numeric_limits<float>::infinity());
        std::copy_n(*read[k], 15, fenced[k].begin() + 1);
        loaded[k] = std::exchange(*read[k], fenced[k].data() + 1);
    }
    const auto results = [](short listed, short second) {
        PF1_1(90, 10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
        NumXi = listed;
        Index[1] = second;
        const float rho_c = PF2();
        PF5(0);
        return std::pair(rho_c, SM);
    };
    const auto alone = results(1, 1);
    EXPECT_NEAR(alone.second, 0.9F * 16.043F, 1e-4F);
    EXPECT_GT(results(2, 1).second, alone.second + 2.9F);
    for (const short none : std::to_array<short>({-1, 15, 32767})) EXPECT_EQ(results(2, none), alone) << none;
    EXPECT_EQ(results(-1, 1), std::pair(0.0F, 0.0F));
    for (std::size_t k = 0; k < read.size(); ++k) *read[k] = loaded[k];
    // The mixture of the call before is not taken for that of another list.

    PF1_1(90, 10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    const float both = PF3_3(290, 0, 5, failed);
    NumXi = 1;
    EXPECT_GT(PF3_3(290, 0, 5, failed), both + 0.01F);
}

// The coefficient of a term has the factors (G + 1 - g)^g (Q^2 + 1 - q)^q (F + 1 - f)^f: with a flag of 0 the factor is 1, with
// 1 the parameter itself.
TEST_F(GasModule, MayGiveATermAnyFlag) {
    constexpr std::size_t term = 20;
    Fi[0] = 0.3F;  // of the components that are there none has a high-temperature parameter
    const auto coefficient = [&] { return K_aga8(), static_cast<double>(C[term]); };
    gn[term] = qn[term] = fn[term] = 0.0F;
    const double none = coefficient();
    double all_squared = 1.0;
    for (float* const flags : {gn, qn, fn}) {
        const auto factor = [&](float flag) { return flags[term] = flag, coefficient() / none; };
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
TEST_F(GasModule, DoesNotReadDiagonals) {
    const float K_before = K_aga8();
    const std::vector<float> virial(B, B + 13);
    for (float* const pairs : {Eij_, Uij, Kij, Gij_})
        for (std::size_t i = 0; i < gas::component_count; ++i) pairs[i * gas::component_count + i] = 1.5F;
    EXPECT_EQ(K_aga8(), K_before);
    EXPECT_EQ(std::vector<float>(B, B + 13), virial);
    EXPECT_EQ(EIJM[0][0], Ei[0]);
    EXPECT_EQ(GIJM[11][11], Gi[11]);
}

// A density that is handed out without a failure solves the equation of state, whatever the coefficients are.
TEST_F(GasModule, GivesASolutionOrAFailure) {
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
    EXPECT_TRUE(solved > 0 && solved < rounds);
    // A number that is none in a table that every mixture reads.
    V_Mi[0] = Mi[0] = Ki[0] = std::numeric_limits<float>::quiet_NaN();
    gas::edge::tables_changed();
    for (const auto method : {PF3_3, PF3_4})
        EXPECT_TRUE(method(280.0F, 0.0F, 8.0F, failed = 9) == 0.0F && failed == 1);
}

// Over the window of a channel the molar density must rise with the pressure, without a jump: that is the gas root. The
// curvature of K over 0.1 MPa stays small; another root would show as a kink of its whole size.
TEST_F(GasModule, StaysOnTheGasRootOverTheWindow) {
    for (const float heavy : {0.0F, 1.0F, 2.0F}) {
        PF1_1(98 - 6 * heavy, 1 + 2.5F * heavy, 0.5F * heavy, 0.1F, 0.1F, 0, 0.1F * heavy, 0, 0, 0.02F * heavy,
              0.8F, 2 * heavy, 0.1F * heavy, 0, 0);
        for (const auto method : {PF3_3, PF3_4})
            for (float T_K = 250.5F; T_K < 340.0F; T_K += 8.9F) {
                float last_density = 0, before[2] = {1, 1};
                for (float p = 0.0011F; p < 30.0F; p += 0.1F) {
                    const float found = method(T_K, 0.0F, p, failed);
                    ASSERT_TRUE(failed == 0 && p / found > last_density) << T_K << ' ' << p;
                    ASSERT_LT(std::fabs(found - 2.0F * before[1] + before[0]), 0.01F) << T_K << ' ' << p;
                    last_density = p / found;
                    before[0] = std::exchange(before[1], found);
                }
            }
    }
}

// What the routines find in the module state, and what they leave there.
TEST_F(GasModule, HandsOnItsState) {
    PF1_1(98.5F, 0.5F, 0.1F, 0.02F, 0.02F, 0.01F, 0.01F, 0.01F, 0, 0, 0.8F, 0.03F, 0, 0, 0);
    const float rho_c = PF2();
    VNIC_FLAG = 1;
    const float nx19 = PF3_1(290.0F, 0.0F, 5.0F, failed);
    EXPECT_EQ(VNIC_FLAG, 0);
    EXPECT_EQ(nx19, NF1_1(290.0F, 0.0F, 5.0F, 0.8F, 0.03F, rho_c, failed)) << "contents from the composition";
    EXPECT_FLOAT_EQ(PF3_2(290.0F, 0.0F, 5.0F, failed), NF1_2(290.0F, 0.0F, 5.0F, 0.8F, 0.03F, rho_c, failed));
    // A cube root of a negative number is not a number there.
    EXPECT_TRUE(std::isnan(PF3_2(255.0F, 0.0F, 25.0F, failed)) && failed == 1);
    EXPECT_TRUE(std::isfinite(NF1_2(255.0F, 0.0F, 25.0F, 0.8F, 0.03F, rho_c, failed)));

    const float found = PF3_3(290.0F, 0.0F, 5.0F, failed);
    EXPECT_TRUE(K == found && VNIC_FLAG == 0);
    const float dry = NF2_1();
    EXPECT_FLOAT_EQ(dry, 5.0F * 293.15F * rho_c / (290.0F * 0.101325F * found));
    EXPECT_TRUE(Ro == dry && Plotnomer == 0);
    // The viscosity runs the other equation when it has not run yet, and the density follows from it.
    const float mu = PF5(0);
    EXPECT_TRUE(VNIC_FLAG == 1 && Mu == mu);
    T = 250.0F;
    EXPECT_EQ(PF5(0), mu) << "the state of the equation that has run";
    EXPECT_NEAR(PF4_1() / dry, 1.0F, 2e-3F) << "the same";
    T = 290.0F;
    EXPECT_NEAR(SM, 16.28F, 0.02F);
    EXPECT_NEAR(PF4_1() / dry, 1.0F, 2e-3F);
    EXPECT_EQ(PF6(), kk);

    EXPECT_FLOAT_EQ(NF2_2(30.0F, 288.0F, 4.9F),
                    30.0F / (1.0F - (5.0F - 4.9F) / 5.0F) * (1.0F - (290.0F - 288.0F) / 290.0F));
    EXPECT_EQ(Plotnomer, 1);
    qmi = 12.0F;
    EXPECT_FLOAT_EQ(NF6(), 12000.0F / Ro);
    EXPECT_FLOAT_EQ(NF7(), 12000.0F / rho_c);
    EXPECT_EQ(qci, 12000.0F / rho_c);
    EXPECT_TRUE(Tc == 293.15F && Pc == 0.101325F);
}

}  // namespace
