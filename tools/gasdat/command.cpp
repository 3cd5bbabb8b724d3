#include "tools/gasdat/command.h"

#include <fmt/format.h>

#include <filesystem>

#include "tools/gasdat/check.h"
#include "tools/gasdat/text.h"
#include "tools/range.h"

namespace kalorfix::tool::gasdat {
namespace {

void build(const Command& command) {
    const Values values = read_sheets(command.source);
    write_whole(command.output, packed(values));
    fmt::print("{}: {} bytes from {}\n", command.output, file_size, command.source);
}

void show(const Command& command) {
    const GasFile file = read_gas_file(command.file);
    if (command.csv_directory.empty()) {
        fmt::print("{}", listing(file, command.file));
        return;
    }
    if (file.count < value_count)
        throw InputError{fmt::format("{}: has only {} of {} values; a set of tables needs all", command.file,
                                     file.count, value_count)};
    std::error_code failed;
    std::filesystem::create_directories(command.csv_directory, failed);
    if (failed)
        throw InputError{
            fmt::format("{}: cannot make this directory: {}", command.csv_directory, failed.message())};
    for (const Sheet& sheet : sheets())
        write_whole(fmt::format("{}/{}.csv", command.csv_directory, sheet.name), csv(sheet, file.values));
    const std::string surplus = file.size > file_size ? fmt::format("; the last {} bytes of {} are ignored",
                                                                    file.size - file_size, command.file)
                                                      : std::string();
    fmt::print("{}: {} tables{}\n", command.csv_directory, sheets().size(), surplus);
}

int check(const Command& command) {
    constexpr std::size_t most_lines = 40;
    const std::vector<std::string> found = faults(read_gas_file(command.file));
    for (std::size_t k = 0; k < std::min(found.size(), most_lines); ++k) fmt::print("{}\n", found[k]);
    if (found.size() > most_lines) fmt::print("... and {} more\n", found.size() - most_lines);
    if (found.empty())
        fmt::print("{}: {} bytes, {} tables, {} values: no faults\n", command.file, file_size, blocks().size(),
                   value_count);
    else
        fmt::print("{}: {} {}\n", command.file, found.size(), found.size() == 1 ? "fault" : "faults");
    return found.empty() ? 0 : 1;
}

}  // namespace

void describe(CLI::App& app, Command& command) {
    command.top = app.add_subcommand("gasdat", "Build, show and check the gas data file.");
    command.top->require_subcommand(1);
    command.build = command.top->add_subcommand("build", "Pack tables into a gas data file.");
    command.build
        ->add_option("SOURCE", command.source, "directory of CSV files such as data/gas, or a listing of show")
        ->required()
        ->option_text(" ");
    command.build->add_option("-o,--output", command.output, "gas data file to write")
        ->required()
        ->option_text("FILE");
    command.show =
        command.top->add_subcommand("show", "Print any gas data file as tables with names, units and offsets.");
    command.show->add_option("FILE", command.file, "gas data file")->required()->option_text(" ");
    command.show->add_option("--csv", command.csv_directory, "write the tables as CSV files into DIR instead")
        ->option_text("DIR");
    command.show->footer("A listing or the CSV files, built again, give the same bytes.");
    command.check = command.top->add_subcommand("check", "Judge a gas data file and name each fault.");
    command.check->add_option("FILE", command.file, "gas data file")->required()->option_text(" ");
    command.check->footer("Exit status 1 when there are faults.");
}

int run(const Command& command) {
    if (*command.build) {
        build(command);
        return 0;
    }
    if (*command.show) {
        show(command);
        return 0;
    }
    return check(command);
}

}  // namespace kalorfix::tool::gasdat
