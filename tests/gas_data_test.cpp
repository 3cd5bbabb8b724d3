// The loader of the gas data file.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "gas/edge/gas_data.h"
#include "kalorfix_calculators.h"
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
        for (const gas::edge::Block& block : gas::edge::blocks) count += *block.table != nullptr;
        return count;
    }
};

TEST_F(GasData, FillsEveryTableInTheOrderOfTheFile) {
    write(gas::edge::file_bytes + 100);
    EXPECT_EQ(INIT_GAS(), 0);
    EXPECT_EQ(Gas_Not_Init, 1);
    std::size_t at = 0;
    for (const gas::edge::Block& block : gas::edge::blocks)
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

    write(gas::edge::file_bytes);
    point_to("gas.dat");
    EXPECT_EQ(Watcom_Load(), 1) << "a file, but no tables";
}

TEST_F(GasData, IsReleasedAndLoadedAgain) {
    write(gas::edge::file_bytes);
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
    SM = 16.0F;
    VNIC_FLAG = 0;
    note("PF4_1", PF4_1() == 0.0F);
    PF1_2(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    note("PF1_2", NumXi == 0);
    return names;
}

// Those that read a table.
std::set<std::string> readers(const std::string& name) {
    if (name == "Mi") return {"PF5"};
    if (name == "Zci") return {"PF1_2"};
    if (name == "Rocui" || name == "Bi") return {"PF2"};
    if (name == "L1ij" || name == "B1ij") return {"PF6"};
    for (std::size_t b = 0; b < 8; ++b)
        if (name == gas::edge::blocks[b].name) return {"PF3_4", "PF4_1"};
    return {"PF3_3"};
}

// A table is absent where its pointer is null, and where the file ended within it or before.
TEST_F(GasData, IsRefusedTableByTable) {
    std::ifstream in(KALORFIX_GAS_DAT, std::ios::binary);
    const std::string whole((std::istreambuf_iterator<char>(in)), {});
    std::ofstream(directory / "gas.dat", std::ios::binary) << whole;
    ASSERT_EQ(INIT_GAS(), 0);
    EXPECT_EQ(refusing(), std::set<std::string>());
    for (const gas::edge::Block& block : gas::edge::blocks) {
        float* const table = std::exchange(*block.table, nullptr);
        EXPECT_EQ(refusing(), readers(block.name)) << block.name;
        *block.table = table;
    }
    std::size_t bytes = gas::edge::file_bytes;
    std::set<std::string> expected;
    for (std::size_t b = gas::edge::block_count; b-- > 0;
         bytes -= 4 * static_cast<std::size_t>(gas::edge::blocks[b].values)) {
        expected.merge(readers(gas::edge::blocks[b].name));
        if (expected.contains("PF3_4")) expected.insert("PF5");  // for want of the state that it starts from
        std::ofstream(directory / "gas.dat", std::ios::binary) << whole.substr(0, bytes - 1);
        EXPECT_EQ(INIT_GAS(), 0);
        VNIC_FLAG = 0;
        EXPECT_EQ(refusing(), expected) << "cut within " << gas::edge::blocks[b].name;
    }
    // A channel whose tables are not whole has no state, or no properties.
    cGas2005 c;
    c.metering_class = 0;
    double sum = 0.0, K_c = 0.0, rho_c = 0.0, r[5] = {};
    const struct {
        std::size_t bytes;
        short method;
        char state, properties;
    } rows[] = {{gas::edge::file_bytes, 3, 1, 1},
                {gas::edge::file_bytes - 1, 3, 1, 0},
                {gas::edge::file_bytes - 1, 2, 1, 1},
                {6757, 2, 0, 0},
                {1279, 3, 0, 0},
                {0, 1, 1, 1}};
    for (const auto& row : rows) {
        std::ofstream(directory / "gas.dat", std::ios::binary) << whole.substr(0, row.bytes);
        EXPECT_EQ(INIT_GAS(), 0);
        EXPECT_EQ(c.Param_gs(15, 5e6, 0, 0, row.method, 0, 98, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0.7,
                             sum, K_c, rho_c),
                  row.state)
            << row.bytes << ' ' << row.method;
        EXPECT_EQ(c.tf_Param(0, 0, 0, r[0], r[1], r[2], r[3], r[4]), row.properties)
            << row.bytes << ' ' << row.method;
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
