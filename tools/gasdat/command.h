// The gasdat commands of the tool.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace kalorfix::tool::gasdat {

struct Command {
    CLI::App* top = nullptr;
    CLI::App* build = nullptr;
    CLI::App* show = nullptr;
    CLI::App* check = nullptr;
    std::string source;
    std::string output;
    std::string file;
    std::string csv_directory;
};

void describe(CLI::App& app, Command& command);

/// Runs what was asked for. Returns the exit status: 0, or 1 when check has found faults. Throws InputError.
[[nodiscard]] int run(const Command& command);

}  // namespace kalorfix::tool::gasdat
