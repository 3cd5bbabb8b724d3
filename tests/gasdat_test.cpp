// The gas data file from readable tables and back, and the judgement on it.
#include <gtest/gtest.h>
#include <unistd.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>

#include "tools/gasdat/gas_file.h"
#include "tools/output_file.h"
#include "tools/text.h"

namespace fs = std::filesystem;
namespace gasdat = kalorfix::tool::gasdat;
using kalorfix::tool::InputError;

namespace {

class Gasdat : public testing::Test {
protected:
    fs::path directory = fs::path(testing::TempDir()) / ("gasdat_" + std::to_string(getpid()));
    gasdat::Values shipped = gasdat::read_sheets(KALORFIX_GAS_TABLES);

    void SetUp() override { fs::create_directories(directory); }
    void TearDown() override { fs::remove_all(directory); }

    std::string write(const std::string& name, const std::string& content) const {
        const std::string path = (directory / name).string();
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }
    // A file of the controller as it is read.
    gasdat::GasFile file(const std::string& bytes) const {
        return gasdat::read_gas_file(write("gas.dat", bytes));
    }
    gasdat::GasFile file(const gasdat::Values& values) const { return file(gasdat::packed(values)); }

    static std::string error_of(const std::string& source) {
        try {
            (void)gasdat::read_sheets(source);
        } catch (const InputError& error) {
            return error.what();
        }
        return "accepted";
    }
};

TEST_F(Gasdat, PutsThePublishedNumbersAtTheirOffsets) {
    const struct {
        std::size_t offset;
        float value;
    } places[] = {{0, 16.043F},      {60, 349.37F},       {124, 0.042686F},    {132, -0.074F},
                  {640, 0.6087766F}, {672, -0.4596885F},  {1288, 0.994635F},   {4880, 0.1538326F},
                  {5804, 23.0F},     {6576, 16.043F},     {6636, 0.9981F},     {6812, 0.02F},
                  {6816, 151.3183F}, {7116, 146.696186F}, {7612, 1.087462263F}};
    const std::string bytes = gasdat::packed(shipped);
    ASSERT_EQ(bytes.size(), 7660U);
    for (const auto& place : places) {
        std::uint32_t bits = 0;
        for (std::size_t b = 0; b < 4; ++b)
            bits |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[place.offset + b])) << (8 * b);
        EXPECT_EQ(std::bit_cast<float>(bits), place.value) << place.offset;
    }
    EXPECT_TRUE(gasdat::faults(file(shipped)).empty());
}

TEST_F(Gasdat, ReplacesPlainFilesOnly) {
    kalorfix::tool::write_file("/dev/null", "x");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_THROW(kalorfix::tool::write_file(directory.string(), "x"), InputError);
    EXPECT_TRUE(fs::is_directory(directory));
    const std::string real = write("real", "old");
    const fs::path link = directory / "link";
    fs::create_symlink("real", link);
    kalorfix::tool::write_file(link.string(), "new");
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(fs::file_size(real), 3U);
    std::string content;
    std::ifstream(real) >> content;
    EXPECT_EQ(content, "new");
    kalorfix::tool::write_file((directory / "fresh").string(), "made");
    EXPECT_EQ(fs::file_size(directory / "fresh"), 4U);
    const fs::directory_iterator all(directory);
    EXPECT_EQ(std::distance(begin(all), end(all)), 3) << "nothing is left behind";
}

// Every value stands in one cell of one sheet, and every bit survives both renderings.
TEST_F(Gasdat, ListingAndTablesReadBackToTheSameBytes) {
    std::mt19937 random(31);
    for (int round = 0; round < 20; ++round) {
        gasdat::Values values = shipped;
        if (round > 0)
            for (float& value : values) value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        const gasdat::GasFile made = file(values);
        EXPECT_EQ(gasdat::packed(gasdat::read_sheets(write("listing", gasdat::listing(made, "gas.dat")))),
                  gasdat::packed(values));
        for (const gasdat::Sheet& sheet : gasdat::sheets())
            write(std::string(sheet.name) + ".csv", gasdat::csv(sheet, values));
        EXPECT_EQ(gasdat::packed(gasdat::read_sheets(directory.string())), gasdat::packed(values));
    }
}

TEST_F(Gasdat, ShowsShortAndLongFiles) {
    const std::string bytes = gasdat::packed(shipped);
    const std::string cut = gasdat::listing(file(bytes.substr(0, 102)), "cut");
    EXPECT_NE(cut.find("# too short: the 1890 values shown as - are missing"), std::string::npos);
    EXPECT_NE(cut.find("0.0006467"), std::string::npos);
    EXPECT_NE(error_of(write("cut", cut)).find("no value for acentric_factor"), std::string::npos);
    EXPECT_NE(gasdat::listing(file(bytes + "more"), "long").find("# too long: the last 4 bytes are ignored"),
              std::string::npos);
    EXPECT_EQ(gasdat::faults(file(bytes + "more")).front(), "the file has 7664 bytes, must have 7660");
    EXPECT_EQ(gasdat::faults(file(std::string())).front(), "the file has 0 bytes, must have 7660");
    gasdat::Values values = shipped;
    values[1] = -1.0F;
    const std::vector<std::string> found = gasdat::faults(file(gasdat::packed(values).substr(0, 102)));
    ASSERT_EQ(found.size(), 2U);
    EXPECT_NE(found[1].find("row ethane, column molar_mass_kg_kmol]: -1, must lie"), std::string::npos);
    const std::string strange = gasdat::listing(file(bytes), "two\n[lines");
    EXPECT_EQ(gasdat::packed(gasdat::read_sheets(write("strange", strange))), bytes);
}

TEST_F(Gasdat, NamesEachFault) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const struct {
        const char* block;
        std::size_t k;
        float value;
        const char* message;
    } faults[] = {
        {"V_Mi", 0, 0.0F,
         "V_Mi [vnic_components, row methane, column molar_mass_kg_kmol]: 0, must lie within 1..500"},
        {"Tki", 7, 37318.0F,
         "row hydrogen_sulphide, column critical_temperature_K]: 37318, must lie within 3..1000"},
        {"Roki", 1, nan, "row ethane, column critical_density_kg_m3]: nan:7fc00000, must be a number"},
        {"Lij", 1, -0.07F,
         "Lij [vnic_binary_volume, row ethane, column CH4]: -0.074, must equal its mirror image -0.07"},
        {"Eij_", 0, 1.1F, "row methane, column CH4]: 1.1, must be 1: a component with itself"},
        {"Uij", 11, -0.963827F, "column CO2]: -0.963827, must lie within 0.3..2"},
        {"Akl", 79, 1.0F, "Akl [vnic_a, row 10, column l7]: 1, is no term and must be 0"},
        {"bn", 20, 2.5F, "bn [aga8_terms, row 21, column b]: 2.5, must be a whole number"},
        {"un", 20, 2.25F, "un [aga8_terms, row 21, column u]: 2.25, must be a multiple of 1/2"},
        {"cn", 8, 0.0F, "kn [aga8_terms, row 9, column k]: 2, must be 0 where c is 0"},
        {"Mi", 11, 28.0F, "does not agree with the molar mass in Mi, which asks for 28"},
        {"Zci", 9, 0.95F, "does not agree with the summation factor in Bi, which asks for 0.8169"},
        {"L1ij", 0, 14.6696186F, "row methane]: cp/R at 300 K is"},
    };
    for (const auto& fault : faults) {
        gasdat::Values values = shipped;
        values[gasdat::block(fault.block).first + fault.k] = fault.value;
        std::string found;
        for (const std::string& line : gasdat::faults(file(values))) found += line + "\n";
        EXPECT_NE(found.find(fault.message), std::string::npos) << fault.message << "\nfound: " << found;
    }
}

TEST_F(Gasdat, RefusesTablesThatAreNotWhole) {
    const auto changed = [this](const std::string& table, const std::string& from, const std::string& to) {
        for (const gasdat::Sheet& sheet : gasdat::sheets())
            write(std::string(sheet.name) + ".csv", gasdat::csv(sheet, shipped));
        const std::string path = (directory / (table + ".csv")).string();
        std::ifstream in(path);
        std::string text{std::istreambuf_iterator<char>(in), {}};
        const std::size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        write(table + ".csv", text.replace(at, from.size(), to));
        const std::string error = error_of(directory.string());
        return error.substr(error.find_last_of('/') + 1);
    };
    EXPECT_EQ(changed("vnic_a", "l0,l1", "l0,x"),
              "vnic_a.csv:3: expected the columns k, l0, l1, l2, l3, l4, l5, l6, l7");
    EXPECT_EQ(changed("vnic_components", "16.043", "16,043"),
              "vnic_components.csv:7: expected 5 columns, found 6");
    EXPECT_EQ(
        changed("vnic_components", "16.043", "16.043x"),
        "vnic_components.csv:7: expected a number for molar_mass_kg_kmol in single precision, not '16.043x'");
    const std::string distant = changed("vnic_components", "16.043", std::string(3000, '9'));
    EXPECT_LT(distant.size(), 150U) << distant;
    EXPECT_EQ(changed("vnic_components", "methane", "ethane"),
              "vnic_components.csv:8: row ethane stands here for the second time");
    EXPECT_EQ(changed("vnic_a", "\n10,", "\n# 10,"), "vnic_a.csv:12: row 10 is missing in vnic_a");
    EXPECT_EQ(changed("vnic_a", "\n10,", "\n11,").substr(0, 32), "vnic_a.csv:13: no such row: '11'");
    EXPECT_EQ(changed("vnic_a", "l0", "\r\nl0").substr(0, 12), "vnic_a.csv:3");
    EXPECT_EQ(changed("vnic_a", "\n1,", "\r\n1,"), "accepted") << "line ends of another system";
    write("surplus.csv", "x\n");
    EXPECT_NE(error_of(directory.string()).find("surplus.csv: no such table; there are vnic_components.csv"),
              std::string::npos);
    fs::remove(directory / "surplus.csv");
    fs::remove(directory / "components.csv");
    EXPECT_NE(error_of(directory.string()).find("components.csv: cannot read"), std::string::npos);
    EXPECT_NE(error_of(write("text", "[components] twice\n")).find("the table components is empty"),
              std::string::npos);
    EXPECT_NE(error_of(write("text", "hello\n")).find("text:1: expected what gasdat show prints"),
              std::string::npos);
    EXPECT_NE(error_of(write("text", std::string(5000, '1'))).find("text:1: longer than 4096 characters"),
              std::string::npos);
    const std::string vast = write("vast", "");
    fs::resize_file(vast, std::uintmax_t{1} << 31);
    EXPECT_NE(error_of(vast).find("vast:1: longer than 4096 characters"), std::string::npos);
}

}  // namespace
