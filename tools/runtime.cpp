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

std::string make_root() {
    constexpr const char* name = "kalorfix-XXXXXX";
    std::error_code failed;
    fs::path parent = fs::temp_directory_path(failed);
    if (failed || parent.string().size() > longest_root) parent = "/tmp";
    std::string root = (parent / name).string();
    if (!mkdtemp(root.data())) throw std::runtime_error("cannot make a temporary directory: " + root);
    return root;
}

void write_stamp(const std::string& file) {
    const auto now = static_cast<std::uint32_t>(std::time(nullptr));
    std::string stamp(12, '\0');
    for (std::size_t k = 0; k < 4; ++k) stamp[k] = static_cast<char>(now >> (8 * k) & 0xFFU);
    std::ofstream(file, std::ios::binary) << stamp;
}

}  // namespace

Runtime::Runtime(const std::string& gas_data) {
    if (!gas_data.empty() && !fs::is_regular_file(gas_data))
        throw std::runtime_error(gas_data + ": no such gas data file");
    root_ = make_root();
    for (const char* directory : {"/settings", "/system", "/sram/dat"})
        fs::create_directories(root_ + directory);
    std::ofstream(root_ + "/settings/tornkntr.ini") << "[TORNOL]\nNum_gas_trub = 2 : pipelines\n";
    write_stamp(root_ + "/sram/dat/timewait.dat");
    if (!gas_data.empty()) fs::create_symlink(fs::absolute(gas_data), root_ + "/system/gas.dat");
    setenv("SETTINGS", (root_ + "/settings").c_str(), 1);
    setenv("SYSTEM", (root_ + "/system").c_str(), 1);
    setenv("PATHDB", (root_ + "/sram").c_str(), 1);
}

Runtime::~Runtime() {
    std::error_code ignored;
    fs::remove_all(root_, ignored);
}

}  // namespace kalorfix::host
