#include "tools/station/example_day.h"

#include <fmt/format.h>

#include <filesystem>

#include "tools/station/run.h"

namespace kalorfix::tool::station {
namespace {

constexpr const char* station_name = "station.ini";
constexpr const char* readings_name = "readings_day.csv";

}  // namespace

std::string examples_directory() {
    namespace fs = std::filesystem;
    std::error_code failed;
    const fs::path program = fs::read_symlink("/proc/self/exe", failed).parent_path();
    if (failed) return {};
    for (const char* const place : {"../../examples", "../share/kalorfix/examples"}) {
        const fs::path directory = (program / place).lexically_normal();
        if (fs::is_regular_file(directory / station_name, failed) &&
            fs::is_regular_file(directory / readings_name, failed))
            return directory.string();
    }
    return {};
}

int run_example_day(const std::string& library_file, const std::string& gas_data_file) {
    const std::string directory = examples_directory();
    if (directory.empty() || gas_data_file.empty()) {
        fmt::print("\nNo day of a station: the {} not here\n",
                   directory.empty() ? "examples are" : "gas data file is");
        return 0;
    }
    RunRequest request;
    request.station_file = directory + "/" + station_name;
    request.readings = directory + "/" + readings_name;
    request.format = Format::days;
    fmt::print("\nA day of a station, a cycle every two minutes: kalorfix run examples/{} examples/{}\n",
               station_name, readings_name);
    return run(library_file, gas_data_file, request);
}

}  // namespace kalorfix::tool::station
