// The loader of the gas data file.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
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

TEST(GasBlocks, HaveTheirSizes) {
    const int sizes[] = {8,  8,  8,  8,  64, 64, 80, 80, 225, 225, 225, 225, 53, 53, 53, 53,
                         53, 53, 53, 53, 15, 15, 15, 15, 15,  15,  15,  15,  15, 88, 48};
    for (int block = 0; block < 31; ++block) EXPECT_EQ(Step_Init(block), sizes[block]);
    for (const int block : {-1, 31, 1000, INT32_MIN, INT32_MAX}) EXPECT_EQ(Step_Init(block), 0);
}

}  // namespace
