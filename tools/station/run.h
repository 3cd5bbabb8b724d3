// A station run: readings in, flows and totals out, in the place of the controller's runtime.
#pragma once

#include <optional>
#include <string>

#include "tools/station/results.h"

namespace kalorfix::tool::station {

struct RunRequest {
    std::string station_file;
    std::string readings;  ///< file, or - for standard input
    std::optional<Format> format;
    std::string out;             ///< results; standard output when empty
    std::string registers_file;  ///< registers, when they are wanted in a file of their own
    std::string continue_file;   ///< registers to go on from
    double downtime_min = 0.0;   ///< minutes before the first reading in which the controller was down
};

/// Runs the station. Returns the exit status: 0, or 130 (143) when an interrupt (a termination) ended it, which keeps what
/// was computed. Throws InputError before anything is written.
[[nodiscard]] int run(const std::string& library_file, const std::string& gas_data_file,
                      const RunRequest& request);

}  // namespace kalorfix::tool::station
