// SPDX-License-Identifier: MIT
#include "tools/runtime.h"

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace kalorfix::host {
namespace {

namespace fs = std::filesystem;

// The library takes paths of up to 99 bytes.
constexpr std::size_t longest_root = 60;

void write_stamp(const std::string& file) {
    const auto now = static_cast<std::uint32_t>(std::time(nullptr));
    std::string stamp(12, '\0');
    for (std::size_t k = 0; k < 4; ++k) stamp[k] = static_cast<char>(now >> (8 * k) & 0xFFU);
    std::ofstream(file, std::ios::binary) << stamp;
}

}  // namespace

TemporaryDirectory::TemporaryDirectory() {
    std::error_code failed;
    fs::path parent = fs::temp_directory_path(failed);
    if (failed || parent.string().size() > longest_root) parent = "/tmp";
    path_ = (parent / "kalorfix-XXXXXX").string();
    if (!mkdtemp(path_.data())) throw std::runtime_error("cannot make a temporary directory: " + path_);
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

Runtime::Runtime(const std::string& gas_data) {
    if (!gas_data.empty() && !fs::is_regular_file(gas_data))
        throw std::runtime_error(gas_data + ": no such gas data file");
    const std::string& root = root_.path();
    for (const char* directory : {"/settings", "/system", "/sram/dat"})
        fs::create_directories(root + directory);
    std::ofstream(root + "/settings/tornkntr.ini") << "[TORNOL]\nNum_gas_trub = 2 : pipelines\n";
    write_stamp(root + "/sram/dat/timewait.dat");
    if (!gas_data.empty()) fs::create_symlink(fs::absolute(gas_data), root + "/system/gas.dat");
    setenv("SETTINGS", (root + "/settings").c_str(), 1);
    setenv("SYSTEM", (root + "/system").c_str(), 1);
    setenv("PATHDB", (root + "/sram").c_str(), 1);
}

}  // namespace kalorfix::host
