// `kalorfix run` on the command line.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

#include "tools/station/run.h"

namespace kalorfix::tool::station {

/// Adds the subcommand; its options are stored in `request` when the line is parsed.
CLI::App* add_command(CLI::App& app, RunRequest& request);

}  // namespace kalorfix::tool::station
