// The loader of the gas data file.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "gas/gas_data.h"
#include "kalorfix_gas.h"

namespace fs = std::filesystem;
namespace gas = kalorfix::gas;

namespace {

class GasData : public testing::Test {
protected:
    fs::path directory = fs::path(testing::TempDir()) / ("gas_data_" + std::to_string(getpid()));

    void SetUp() override {
        fs::create_directories(directory);
        point_to("gas.dat");
    }
    void TearDown() override {
        REINIT_GAS();
        fs::remove_all(directory);
    }
    void point_to(const std::string& name) const {
        std::snprintf(PATH_SRAM_FOR_LOADTABL, sizeof PATH_SRAM_FOR_LOADTABL, "%s/%s", directory.c_str(),
                      name.c_str());
    }
    // A file of n bytes whose k-th float, little-endian, is k + 0.5.
    void write(std::size_t bytes) const {
        std::string content;
        for (std::size_t k = 0; content.size() < bytes; ++k) {
            const float value = static_cast<float>(k) + 0.5F;
            std::uint32_t bits = 0;
            std::memcpy(&bits, &value, 4);
            for (int shift = 0; shift < 32; shift += 8)
                content.push_back(static_cast<char>(bits >> shift & 0xFF));
        }
        content.resize(bytes);
        std::ofstream(directory / "gas.dat", std::ios::binary) << content;
    }
    static std::size_t tables() {
        std::size_t count = 0;
        for (const gas::Block& block : gas::blocks) count += *block.table != nullptr;
        return count;
    }
};

TEST_F(GasData, FillsEveryTableInTheOrderOfTheFile) {
    write(gas::file_bytes + 100);
    EXPECT_EQ(INIT_GAS(), 0);
    EXPECT_EQ(Gas_Not_Init, 1);
    std::size_t at = 0;
    for (const gas::Block& block : gas::blocks)
        for (int k = 0; k < block.values; ++k, ++at)
            ASSERT_EQ((*block.table)[k], static_cast<float>(at) + 0.5F) << block.name << '[' << k << ']';
    EXPECT_EQ(at, 1915U);
    EXPECT_EQ(Eij_[0], 1280 / 4 + 0.5F);
    EXPECT_EQ(fn[52], 6572 / 4 + 0.5F);
    EXPECT_EQ(B1ij[47], 7656 / 4 + 0.5F);
}

TEST_F(GasData, LeavesMissingValuesOfAShortFileZero) {
    write(4 * 10 + 2);  // ten values and half of one: the second block is cut
    EXPECT_EQ(INIT_GAS(), 0);
    EXPECT_EQ(Roki[1], 9.5F);
    EXPECT_EQ(Roki[2], 9.5F) << "the first two blocks repeat the last value";
    EXPECT_EQ(Roki[7], 9.5F);
    EXPECT_EQ(Tki[0], 0.0F);
    EXPECT_EQ(B1ij[47], 0.0F);

    write(0);
    EXPECT_EQ(INIT_GAS(), 0);
    EXPECT_EQ(Gas_Not_Init, 1);
    EXPECT_EQ(V_Mi[0], 0.0F);
}

TEST_F(GasData, FailsWithoutAFile) {
    EXPECT_EQ(INIT_GAS(), 1);
    EXPECT_EQ(Gas_Not_Init, 0);
    EXPECT_EQ(tables(), 0U);
    EXPECT_EQ(Watcom_Load(), 1);

    fs::create_directories(directory / "folder");
    point_to("folder");
    EXPECT_EQ(INIT_GAS(), 1);
    PATH_SRAM_FOR_LOADTABL[0] = '\0';
    EXPECT_EQ(INIT_GAS(), 1);
    EXPECT_EQ(tables(), 0U);

    write(gas::file_bytes);
    point_to("gas.dat");
    EXPECT_EQ(Watcom_Load(), 1) << "a file, but no tables";
}

TEST_F(GasData, IsReleasedAndLoadedAgain) {
    write(gas::file_bytes);
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(INIT_GAS(), 0);
        EXPECT_EQ(tables(), 31U);
        REINIT_GAS();
        EXPECT_EQ(tables(), 0U);
        EXPECT_EQ(Gas_Not_Init, 1) << "the flag tells of the load, not of the tables";
    }
    EXPECT_EQ(INIT_GAS(), 0);
    EXPECT_EQ(INIT_GAS(), 0) << "a second load replaces the first";
    point_to("nothing");
    EXPECT_EQ(INIT_GAS(), 1);
    EXPECT_EQ(tables(), 0U) << "a failed load leaves no tables";
}

// The routines that refuse while one table is missing.
std::string refusing() {
    short failed = 0;
    std::string names;
    const auto note = [&names](const char* name, bool refused) {
        if (refused) names += std::string(names.empty() ? "" : " ") + name;
    };
    PF1_1(96, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    note("PF2", PF2() == 0.0F);
    note("PF3_3", PF3_3(290, 0, 5, failed) == 0.0F && failed == 1);
    note("PF3_4", PF3_4(290, 0, 5, failed) == 0.0F && failed == 1);
    note("PF5", PF5(0) == 0.0F);
    note("PF6", PF6() == 0.0F);
    SM = 16.0F;
    VNIC_FLAG = 0;
    note("PF4_1", PF4_1() == 0.0F);
    PF1_2(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    note("PF1_2", NumXi == 0);
    return names;
}

TEST_F(GasData, IsRefusedTableByTable) {
    std::ifstream in(KALORFIX_GAS_DAT, std::ios::binary);
    std::ofstream(directory / "gas.dat", std::ios::binary) << in.rdbuf();
    ASSERT_EQ(INIT_GAS(), 0);
    EXPECT_EQ(refusing(), "");
    for (const gas::Block& block : gas::blocks) {
        const std::string name = block.name;
        std::string expected = "PF3_3";
        if (&block - gas::blocks.data() < 8) expected = name == "V_Mi" ? "PF3_4 PF5 PF4_1" : "PF3_4 PF4_1";
        if (name == "Mi") expected = "PF5";
        if (name == "Zci") expected = "PF1_2";
        if (name == "Rocui" || name == "Bi") expected = "PF2";
        if (name == "L1ij" || name == "B1ij") expected = "PF6";
        float* const table = std::exchange(*block.table, nullptr);
        EXPECT_EQ(refusing(), expected) << name;
        *block.table = table;
    }
}

// A host may have written anything into the list of the components that are there: what is none is passed over.
TEST_F(GasData, IsReadForListedComponentsAlone) {
    std::ifstream in(KALORFIX_GAS_DAT, std::ios::binary);
    std::ofstream(directory / "gas.dat", std::ios::binary) << in.rdbuf();
    ASSERT_EQ(INIT_GAS(), 0);
    VNIC_FLAG = 1;
    // Beside the tables stands what no sum may hold.
    std::array<std::array<float, 17>, 3> fenced;
    const std::array<float**, 3> tables{&Mi, &Bi, &Rocui};
    std::array<float*, 3> loaded;
    for (std::size_t k = 0; k < tables.size(); ++k) {
        fenced[k].fill(std::numeric_limits<float>::infinity());
        std::copy_n(*tables[k], 15, fenced[k].begin() + 1);
        loaded[k] = std::exchange(*tables[k], fenced[k].data() + 1);
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
    for (std::size_t k = 0; k < tables.size(); ++k) *tables[k] = loaded[k];
}

// Standard conditions as programs of the interface read them.
TEST(GasConstants, HasItsStandardConditions) {
    EXPECT_EQ(Tc, 293.15F);
    EXPECT_EQ(Pc, 0.101325F);
}

TEST(GasBlocks, HaveTheirSizes) {
    const int sizes[] = {8,  8,  8,  8,  64, 64, 80, 80, 225, 225, 225, 225, 53, 53, 53, 53,
                         53, 53, 53, 53, 15, 15, 15, 15, 15,  15,  15,  15,  15, 88, 48};
    for (int block = 0; block < 31; ++block) EXPECT_EQ(Step_Init(block), sizes[block]);
    for (const int block : {-1, 31, 1000, INT32_MIN, INT32_MAX}) EXPECT_EQ(Step_Init(block), 0);
}

}  // namespace
