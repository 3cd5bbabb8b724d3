// A station run: readings in, flows and totals out, in the place of the controller's runtime.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "tools/commands.h"
#include "tools/station/results.h"

namespace kalorfix::tool::station {

struct RunRequest {
    std::string station_file;
    std::string readings{};        ///< file, or - for standard input
    std::string format{};          ///< empty: a table on a terminal, else CSV
    std::string out{};             ///< results; standard output when empty
    std::string registers_file{};  ///< registers, when they are wanted in a file of their own
    std::string continue_file{};   ///< registers to go on from
    std::string decimal{};  ///< comma or point: the mark of the readings' numbers, where these do not tell
    bool decimal_commas = false;  ///< CSV results with semicolons and decimal commas
    std::string example{};        ///< directory to write a station into, in place of a run
    std::string longest_step{};   ///< seconds; in place of the keys
    std::string downtime = "0";   ///< minutes before the first reading in which the controller was down
};

using ResultsMaker = std::function<std::unique_ptr<Results>(const Station&, TimeKind, OutputFile&)>;

/// Runs the station; `make` makes the results in place of those of the format. Returns the exit status: 0, 1 when a channel with
/// readings computed nothing, or 128 and the signal (SIGHUP, SIGINT, SIGTERM) that ended it, which keeps what was computed. Results
/// and registers are both on the disk before either has its name, the registers last. Throws InputError, which leaves the old files.
[[nodiscard]] int run(const Installation& files, const RunRequest& request, const ResultsMaker& make = {});

}  // namespace kalorfix::tool::station
