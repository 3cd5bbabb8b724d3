// The verify command of the tool.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace kalorfix::tool::report {

struct Command {
    CLI::App* top = nullptr;
    std::string html_file, csv_file, cases_directory;
};

void describe(CLI::App& app, Command& command);

/// Verifies a library file with a gas data file (empty: none found). Returns the exit status: 0, or 1 when a value is not met.
/// Throws InputError; nothing is written then.
[[nodiscard]] int run(const Command& command, const std::string& library, const std::string& gas_data);

}  // namespace kalorfix::tool::report
