// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <memory>

#include "tools/commands.h"
#include "tools/gasdat/gas_file.h"
#include "tools/output_file.h"
#include "tools/separate_files.h"
#include "tools/text.h"

namespace kalorfix::tool {
namespace {

using gasdat::file_size, gasdat::GasFile, gasdat::value_count;

struct Request {
    std::string source, output, file, csv_directory;
};

int build(const Request& request) {
    std::vector<NamedFile> inputs{{"SOURCE", request.source}};
    for (const gasdat::Sheet& sheet : gasdat::sheets())
        inputs.push_back({"the table", fmt::format("{}/{}.csv", request.source, sheet.name)});
    keep_apart(inputs, {{"--output", request.output}});
    const gasdat::Values values = gasdat::read_sheets(request.source);
    write_file(request.output, gasdat::packed(values));
    fmt::print("{}: {} bytes from {}\n", printable(request.output), file_size, printable(request.source));
    return 0;
}

int show(const Request& request) {
    const GasFile file = gasdat::read_gas_file(request.file);
    const std::string& directory = request.csv_directory;
    if (directory.empty()) {
        fmt::print("{}", gasdat::listing(file, request.file));
        return 0;
    }
    if (file.count < value_count)
        throw InputError(request.file, ": has only ", file.count, " of ", value_count,
                         " values; a set of tables needs all");
    std::error_code failed;
    std::filesystem::create_directories(directory, failed);
    if (failed) throw InputError(directory, ": cannot make this directory: ", failed.message());
    std::vector<NamedFile> tables;
    for (const gasdat::Sheet& sheet : gasdat::sheets())
        tables.push_back({"--csv", fmt::format("{}/{}.csv", directory, sheet.name)});
    keep_apart({{"FILE", request.file}}, tables);
    for (std::size_t k = 0; k < tables.size(); ++k)
        write_file(tables[k].file, gasdat::csv(gasdat::sheets()[k], file.values));
    fmt::print("{}: {} tables", printable(directory), gasdat::sheets().size());
    if (file.size > file_size)
        fmt::print("; the last {} bytes of {} are ignored", file.size - file_size, printable(request.file));
    fmt::print("\n");
    return 0;
}

int check(const Request& request) {
    constexpr std::size_t most_lines = 40;
    const std::vector<std::string> found = gasdat::faults(gasdat::read_gas_file(request.file));
    for (std::size_t k = 0; k < std::min(found.size(), most_lines); ++k) fmt::print("{}\n", found[k]);
    if (found.size() > most_lines) fmt::print("... and {} more\n", found.size() - most_lines);
    if (found.empty())
        fmt::print("{}: {} bytes, {} tables, {} values: no faults\n", printable(request.file), file_size,
                   gasdat::blocks().size(), value_count);
    else
        fmt::print("{}: {} {}\n", printable(request.file), found.size(),
                   found.size() == 1 ? "fault" : "faults");
    return found.empty() ? 0 : 1;
}

}  // namespace

Command gasdat_command() {
    const auto request = std::make_shared<Request>();
    const auto part = [&](const char* name, const char* what, const char* notes, std::vector<Option> options,
                          int (*run)(const Request&)) {
        return Command{
            name, what, notes, std::move(options), {}, [=](const Installation&) { return run(*request); }};
    };
    Command all{"gasdat", "Build, show and check the gas data file.", ""};
    all.takes_general_options = false;
    all.commands = {
        part("build", "Pack tables into a gas data file.", "",
             {{"SOURCE", " ", "directory of CSV files such as data/gas, or a listing of show", &request->source,
               true},
              {"-o,--output", "FILE", "gas data file to write", &request->output, true}},
             build),
        part("show", "Print any gas data file as tables with names, units and offsets.",
             "A listing or the CSV files, built again, give the same bytes.",
             {{"FILE", " ", "gas data file", &request->file, true},
              {"--csv", "DIR", "write the tables as CSV files into DIR instead", &request->csv_directory}},
             show),
        part("check", "Judge a gas data file and name each fault.", "Exit status 1 when there are faults.",
             {{"FILE", " ", "gas data file", &request->file, true}}, check)};
    return all;
}

}  // namespace kalorfix::tool
