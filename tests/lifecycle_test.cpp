// SPDX-License-Identifier: MIT
// Init and Done of the built library on files of every kind.
#include <fenv.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "tools/host.h"

namespace fs = std::filesystem;

namespace {

std::size_t open_descriptors() {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator("/proc/self/fd")) ++count;
    return count;
}

class Lifecycle : public testing::Test {
protected:
    fs::path root = fs::path(testing::TempDir()) / ("lifecycle_" + std::to_string(getpid()));
    fs::path settings = root / "tornkntr.ini";
    fs::path gas = root / "gas.dat";
    fs::path stamp = root / "dat/timewait.dat";

    void SetUp() override {
        fs::create_directories(root / "dat");
        point_to(root.string());
    }
    void TearDown() override { fs::remove_all(root); }

    static void point_to(const std::string& directory) {
        for (const char* variable : {"SETTINGS", "SYSTEM", "PATHDB"}) setenv(variable, directory.c_str(), 1);
    }
    void write_stamp(std::int64_t seconds_ago, std::size_t size = 12) const {
        const auto seconds = static_cast<std::uint32_t>(std::time(nullptr) - seconds_ago);
        std::string bytes(12, '\x7F');
        for (std::size_t k = 0; k < 4; ++k) bytes[k] = static_cast<char>(seconds >> (8 * k) & 0xFFU);
        std::ofstream(stamp, std::ios::binary) << bytes.substr(0, size);
    }
    // What Init writes to a stream.
    static std::string output_of(const kalorfix::host::Library& library, int* result = nullptr) {
        testing::internal::CaptureStdout();
        const int done = library->Init();
        if (result) *result = done;
        return testing::internal::GetCapturedStdout();
    }
};

// "Файл %s не найден. Все установки по умолчанию\n\r" in code page 866.
std::string not_found(const std::string& path) {
    return "\x94\xA0\xA9\xAB " + path +
           " \xAD\xA5 \xAD\xA0\xA9\xA4\xA5\xAD. \x82\xE1\xA5 \xE3\xE1\xE2\xA0\xAD\xAE\xA2\xAA\xA8 \xAF\xAE "
           "\xE3\xAC\xAE\xAB\xE7\xA0\xAD\xA8\xEE\n\r";
}

TEST_F(Lifecycle, ReadsItsSetting) {
    const kalorfix::host::Library library(KALORFIX_LIBRARY);
    EXPECT_EQ(*library->Num_gas_trub, 5);
    const struct {
        const char* text;
        int expected;
    } rows[] = {{"[TORNOL]\nNum_gas_trub = 12 : pipelines\n", 12},
                {"[OTHER]\nNum_gas_trub = 3\n", 12},
                {"[TORNOL]\nnum_gas_trub = 3\n", 12},
                {"[TORNOL A B]\nNum_gas_trub=7", 7},
                {"[TORNOL]\nNum_gas_trub = 1\n", 1},
                {"[TORNOL]\nNum_gas_trub = 0\n", 5},
                {"[TORNOL]\nNum_gas_trub = 70000\n", 4464},
                {"[TORNOL]\nNum_gas_trub = -1\n", 5},
                {"", 5}};
    for (const auto& row : rows) {
        std::ofstream(settings) << row.text;
        int result = 0;
        EXPECT_EQ(output_of(library, &result), "") << row.text;
        EXPECT_EQ(result, 1);
        EXPECT_EQ(*library->Num_gas_trub, row.expected) << row.text;
        std::ofstream(settings) << "[TORNOL]\nNum_gas_trub = 99\n";
        EXPECT_EQ(library->Init(), 1) << "a second Init does nothing";
        EXPECT_EQ(*library->Num_gas_trub, row.expected);
        EXPECT_EQ(library->Done(), 1);
    }
    EXPECT_EQ(library->Done(), 1) << "Done without Init";
}

TEST_F(Lifecycle, SaysWhenTheSettingsAreNotThere) {
    const kalorfix::host::Library library(KALORFIX_LIBRARY);
    const std::function<void()> kinds[] = {
        [] {}, [&] { fs::create_directory(settings); }, [&] { mkfifo(settings.c_str(), 0600); },
        [&] { std::ofstream(settings) << "[TORNOL]\nNum_gas_trub = 3\n[broken"; }};
    for (const auto& make : kinds) {  // none, a directory, a pipe, a malformed one
        make();
        EXPECT_EQ(output_of(library), not_found(settings.string()));
        EXPECT_EQ(*library->Num_gas_trub, 5);
        library->Done();
        fs::remove(settings);
    }
    const_cast<CSRV_PATH*>(library->SRV_Path)->SETTINGS = nullptr;
    EXPECT_EQ(output_of(library), not_found("/tornkntr.ini")) << "a directory that is null is none";
}

TEST_F(Lifecycle, NeverOpensAnOverlongPath) {
    const std::string deep = root.string() + "/" + std::string(150, 'd');
    fs::create_directories(deep + "/dat");
    std::ofstream(deep + "/tornkntr.ini") << "[TORNOL]\nNum_gas_trub = 3\n";
    std::ofstream(deep + "/gas.dat") << "x";
    point_to(deep);
    const kalorfix::host::Library library(KALORFIX_LIBRARY);
    EXPECT_EQ(output_of(library), not_found(deep + "/tornkntr.ini"));
    EXPECT_EQ(*library->Num_gas_trub, 5);
    EXPECT_EQ(*library->ProstoyTime, 0.0);
    EXPECT_FALSE(fs::exists(deep + "/dat/timewait.dat"));
    library->Done();
}

TEST_F(Lifecycle, MeasuresTheDowntime) {
    const kalorfix::host::Library library(KALORFIX_LIBRARY);
    const auto downtime = [&] {
        library->Init();
        library->Done();
        return *library->ProstoyTime;
    };
    const double since_epoch = static_cast<double>(std::time(nullptr)) / 60.0;
    EXPECT_NEAR(downtime(), since_epoch, 1.0) << "a stamp made by Init itself is empty";
    struct stat about {};
    ASSERT_EQ(stat(stamp.c_str(), &about), 0);
    EXPECT_EQ(about.st_mode & 0777U, 0600U);
    EXPECT_EQ(about.st_size, 0);

    write_stamp(90);
    EXPECT_NEAR(downtime(), 1.5, 0.1);
    write_stamp(100);
    feenableexcept(FE_ALL_EXCEPT);  // five thirds of a minute are not exact
    const double trapped = downtime();
    fedisableexcept(FE_ALL_EXCEPT);
    EXPECT_NEAR(trapped, 100.0 / 60.0, 0.1);
    write_stamp(90, 4);
    EXPECT_NEAR(downtime(), 1.5, 0.1) << "only the seconds are needed";
    write_stamp(90, 3);
    EXPECT_NEAR(downtime(), since_epoch, 1.0);
    write_stamp(-90);
    EXPECT_EQ(downtime(), 0.0) << "the clock was set back";
    std::ofstream(stamp, std::ios::binary) << std::string(1000, '\xFF');  // a second before the Epoch
    EXPECT_NEAR(downtime(), since_epoch, 1.0);
    fs::remove(stamp);
    fs::create_directory(stamp);
    EXPECT_EQ(downtime(), 0.0) << "a directory";
    fs::remove(stamp);
    ASSERT_EQ(mkfifo(stamp.c_str(), 0600), 0);
    EXPECT_EQ(downtime(), 0.0) << "a pipe";
    fs::remove_all(root / "dat");
    EXPECT_EQ(downtime(), 0.0) << "cannot be created";
}

TEST_F(Lifecycle, LeavesOneDescriptorHoweverOftenItRuns) {
    std::ofstream(settings) << "[TORNOL]\nNum_gas_trub = 2\n";
    std::ofstream(gas, std::ios::binary) << std::string(7660, '\0');
    write_stamp(0);
    const std::size_t before = open_descriptors();
    {
        const kalorfix::host::Library library(KALORFIX_LIBRARY);
        for (int round = 0; round < 1000; ++round) {
            ASSERT_EQ(library->Init(), 1);
            ASSERT_EQ(open_descriptors(), before + 1) << "the settings file stays open";
            ASSERT_EQ(library->Done(), 1);
        }
        ASSERT_EQ(open_descriptors(), before + 1);
    }
    EXPECT_EQ(open_descriptors(), before) << "unloading closes it";
}

TEST_F(Lifecycle, KeepsAndPrintsItsDirectories) {
    for (const char* variable : {"SYSTEM", "PATHDB", "TORNPATH"}) unsetenv(variable);
    setenv("LIB", "", 1);
    const kalorfix::host::Library library(KALORFIX_LIBRARY);
    setenv("SETTINGS", "/elsewhere", 1);
    unsetenv("LIB");
    CSRV_PATH paths = *library->SRV_Path;
    testing::internal::CaptureStdout();
    library->Print(&paths);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "TORN_PATHES:\nTORNPATH = </ubm>\nPATHDB   = </ubm/sram>\nPRG      = </ubm/prg>\n"
              "SYSTEM   = </ubm/system>\nLIB      = <>\nDIC      = </ubm/dic>\nSETTINGS = <" +
                  root.string() + ">\nPRG_DEBUG= </ubm/prg/debug>\nXML_SETTINGS = </ubm/torndb>\n")
        << "set to nothing is set";
}

}  // namespace
